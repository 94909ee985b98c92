#pragma once

#include <QList>
#include <QString>

namespace tarvel {

// A record offered by a name search: its key, its name and, for a contact,
// the name of its account.
struct FoundRecord {
    int id = 0;
    QString name;
    QString account;
};

// The statements behind the name boxes of the detail pages, the related
// panels and the add-related dialog, in the texts the program has always
// issued. The typed text goes in through likeContains, so no text can break
// the statement and each one finds the characters typed.
namespace recordsearch {
// form_con_detail's txt_name.
QString contactsByName(const QString& text);
// txt_account, form_acc_detail's txt_subject and the panels' txt_con_account.
QString accountsByName(const QString& text);
// form_opp_detail's txt_opportunity and the panels' txt_opp_name.
QString opportunitiesBySubject(const QString& text);
// The panels' txt_con_name: never the contact `exceptId` itself.
QString panelContacts(const QString& text, int exceptId);
// form_addrelated, by relation kind (kind::Contact, Account, Opportunity,
// Document, Task); empty for a kind it cannot add.
QString addable(qint16 relationKind, const QString& text);
}  // namespace recordsearch

// Runs one of the searches above. The first column is the key, the second
// the name, a third (contacts) the account.
class RecordSearch {
public:
    // At most `limit` records are kept; more() tells whether there were more.
    bool run(const QString& sql, int limit = 500);
    const QList<FoundRecord>& found() const { return found_; }
    bool more() const { return more_; }
    QString ErrMsg() const { return errMsg_; }
    void setErrMsg(const QString& value) { errMsg_ = value; }

private:
    QList<FoundRecord> found_;
    bool more_ = false;
    QString errMsg_;
};

}  // namespace tarvel
