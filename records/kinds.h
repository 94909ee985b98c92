#pragma once

#include <QList>
#include <QString>

namespace tarvel {

// Relation kind codes: the first argument of AddRelative, DeleteRelative and
// GetByIdEx, and the kind code of the list fields.
namespace kind {
inline constexpr qint16 Opportunity = 1;
inline constexpr qint16 Account = 2;
inline constexpr qint16 Contact = 3;
inline constexpr qint16 Task = 4;
inline constexpr qint16 Document = 5;
}  // namespace kind

// Page codes of the page-switching routine, as stored in the page history.
// Each module keeps a band of codes: its list, then its detail page.
namespace page {
enum : qint16 {
    Home = 1,
    OpportunityList = 3,
    OpportunityDetail = 4,
    AccountList = 12,
    AccountDetail = 13,
    ContactList = 22,
    ContactDetail = 23,
    Schedule = 30,
    Task = 31,
    ScheduleStatistics = 32,
    TaskDetail = 33,
    DocumentList = 40,
    DocumentDetail = 41,
    DataExchange = 42,
    Email = 43,
    Settings = 44,
};
}  // namespace page

// Everything the program knows of one of the five record kinds, in one row.
// The two numberings stay apart: `code` is the relation and field kind code
// (1 opportunities .. 5 documents), `listNumber` the number of the shared list
// routines (0 opportunities, 1 accounts, 2 contacts, 3 tasks, 4 documents).
struct RecordKindInfo {
    qint16 code;
    int listNumber;
    const char* prefix;      // column prefix: "con"
    const char* word;        // control word of panels and pages: "con", "sch" for tasks
    const char* table;       // "contacts", also the word of the exchange commands
    const char* key;         // "con_id"
    const char* tick;        // "con_check"
    const char* listSource;  // the table or stored query the lists read
    const char* moduleKey;   // toolbar key of its module: "contact"
    const char* caption;     // the module's built-in caption: "联系人"
    const char* noun;        // what one record is called in messages: "联系人", "任务"
    const char* nameColumn;  // the column that names a record
    qint16 listPage;
    qint16 detailPage;
    const char* listForm;      // "form_con_all"
    const char* detailForm;    // "form_con_detail"
    const char* panelForm;     // "form_con_related"
    const char* shownId;       // form property of the record a panel section shows: "g_ConID"
    const char* nameBox;       // the panel section's box that must not stay empty
    const char* recentColumn;  // the date a list sorts by, newest first
    // The "recent" stamp statement; its blanks are the program's own.
    const char* stampPrefix;

    QString upgradeTable() const { return QStringLiteral("upgrade_") + QLatin1String(table); }
    QString oldKey() const { return QStringLiteral("old_") + QLatin1String(key); }
    QString newKey() const { return QStringLiteral("new_") + QLatin1String(key); }
    QString captionText() const { return QString::fromUtf8(caption); }
    // The kinds a record's related panel shows, in tab order.
    QList<qint16> panelKinds() const;
    // The same kinds in the order of the stored interface layout (the panel
    // rows "con_sch", "con_con", ... of a new data file and the settings).
    QList<qint16> layoutPanels() const;
};

// The five kinds in code order.
const QList<RecordKindInfo>& recordKinds();
// Null for an unknown code.
const RecordKindInfo* kindByCode(qint16 code);
// Null when no kind has this column prefix (or, with tables, this table name).
const RecordKindInfo* kindByPrefix(const QString& prefixOrTable);
const RecordKindInfo* kindByListNumber(int number);
const RecordKindInfo* kindByPage(qint16 page);
// The kind whose related panel has this form name.
const RecordKindInfo* kindByPanelForm(const QString& formName);

// The condition that opens one record's page, as the page history keeps it:
// "WHERE con_id=5".
QString recordCondition(qint16 code, qint64 id);
// The record a condition of that form names; 0 when it names none.
qint64 recordOfCondition(const QString& condition);

}  // namespace tarvel
