#include "exchange/reportexport.h"

#include <QDir>
#include <QFileInfo>

#include "custom/userprofile.h"
#include "exchange/filedatabase.h"
#include "exchange/filetools.h"
#include "exchange/recyclebin.h"
#include "store/transaction.h"

namespace tarvel::exchange {

namespace {

// A record table whose private rows never leave the installation, and the
// link tables cleared with each such row.
struct PrivateRows {
    const char* table;
    const char* key;
    const char* flag;
    QStringList links;
};

const std::vector<PrivateRows>& privateRows() {
    static const std::vector<PrivateRows> rows = {
        {"accounts",
         "acc_id",
         "acc_private",
         {"accounts_contacts", "accounts_documents", "accounts_tasks", "opportunities_accounts"}},
        {"contacts",
         "con_id",
         "con_private",
         {"accounts_contacts", "contacts_contacts", "opportunities_contacts", "contacts_tasks",
          "contacts_documents"}},
        {"opportunities",
         "opp_id",
         "opp_private",
         {"opportunities_documents", "opportunities_accounts", "opportunities_contacts",
          "opportunities_tasks"}},
        {"tasks",
         "tas_id",
         "tas_private",
         {"contacts_tasks", "opportunities_tasks", "accounts_tasks", "tasks_documents"}}};
    return rows;
}

bool removePrivateRecords(FileDatabase& db) {
    for (const PrivateRows& p : privateRows()) {
        const QString key = QLatin1String(p.key);
        const auto rs = db.read(QStringLiteral("SELECT %1, %2  FROM %3")
                                    .arg(key, QLatin1String(p.flag), QLatin1String(p.table)));
        if (!rs) return false;
        for (bool more = !rs->Eof(); more; more = rs->MoveNext() && !rs->Eof()) {
            if (rs->value(1).toInt() == 0) continue;
            const QString id = rs->value(0).toString();
            if (!db.run(
                    QStringLiteral("Delete * from %1 WHERE %2 =").arg(QLatin1String(p.table), key) +
                    id))
                return false;
            for (const QString& link : p.links) {
                const QString sql =
                    link == QStringLiteral("contacts_contacts")
                        ? QStringLiteral("Delete * from contacts_contacts WHERE con_id1 =") + id +
                              QStringLiteral(" OR  con_id2= ") + id
                        : QStringLiteral("Delete * from %1 WHERE %2 =").arg(link, key) + id;
                if (!db.run(sql)) return false;
            }
        }
    }
    return true;
}

// The statements that cut the copy down to one kind's ticked records: the
// unticked records, their link rows, then the records no longer linked.
struct Cut {
    const char* table;
    const char* key;
    const char* check;
    QStringList links;                              // link rows of unticked records
    std::vector<std::pair<QString, QString>> kept;  // record table -> link table that keeps it
};

const Cut* cutFor(int kind) {
    using P = std::pair<QString, QString>;
    static const Cut opportunities{
        "opportunities",
        "opp_id",
        "opp_check",
        {"opportunities_documents", "opportunities_accounts", "opportunities_contacts",
         "opportunities_tasks"},
        {P("documents", "opportunities_documents"), P("accounts", "opportunities_accounts"),
         P("contacts", "opportunities_contacts"), P("tasks", "opportunities_tasks")}};
    static const Cut accounts{
        "accounts",
        "acc_id",
        "acc_check",
        {"accounts_contacts", "opportunities_accounts", "accounts_tasks", "accounts_documents"},
        {P("documents", "accounts_documents"), P("contacts", "accounts_contacts"),
         P("tasks", "accounts_tasks"), P("opportunities", "opportunities_accounts")}};
    static const Cut contacts{
        "contacts",
        "con_id",
        "con_check",
        {"accounts_contacts", "contacts_tasks", "opportunities_contacts", "contacts_documents"},
        {P("documents", "contacts_documents"), P("opportunities", "opportunities_contacts"),
         P("tasks", "contacts_tasks"), P("accounts", "accounts_contacts")}};
    static const Cut tasks{
        "tasks",
        "tas_id",
        "tas_check",
        {"accounts_tasks", "contacts_tasks", "opportunities_tasks", "tasks_documents"},
        {P("documents", "tasks_documents"), P("accounts", "accounts_tasks"),
         P("contacts", "contacts_tasks"), P("opportunities", "opportunities_tasks")}};
    switch (kind) {
        case 1:
            return &opportunities;
        case 2:
            return &accounts;
        case 3:
            return &contacts;
        case 4:
            return &tasks;
        default:
            return nullptr;
    }
}

QString deleteUnticked(const Cut& cut) {
    return QStringLiteral("DELETE * FROM %1 WHERE %2= false ")
        .arg(QLatin1String(cut.table), QLatin1String(cut.check));
}

bool removeUnlinked(FileDatabase& db, const Cut& cut) {
    const QString key = QLatin1String(cut.key);
    for (const QString& link : cut.links) {
        if (!db.run(
                QStringLiteral("Delete * FROM %1 WHERE %2 NOT IN (SELECT %2 FROM %3 WHERE %4=true)")
                    .arg(link, key, QLatin1String(cut.table), QLatin1String(cut.check))))
            return false;
    }
    for (const auto& [table, link] : cut.kept) {
        const QString tableKey = table.left(3) + QStringLiteral("_id");
        // The documents' statement has a blank before its closing bracket.
        const QString close =
            table == QStringLiteral("documents") ? QStringLiteral(" )") : QStringLiteral(")");
        if (!db.run(QStringLiteral("Delete * FROM %1 WHERE %2 NOT IN (SELECT %2 FROM %3")
                        .arg(table, tableKey, link) +
                    close))
            return false;
    }
    return true;
}

// A contact related to a ticked contact travels too, ticked only after the
// link rows of unticked contacts are gone, so it arrives without links.
bool tickRelatedContacts(FileDatabase& db) {
    const auto ticked = db.read(QStringLiteral("SELECT con_id FROM contacts WHERE con_check=true"));
    if (!ticked) return false;
    for (bool more = !ticked->Eof(); more; more = ticked->MoveNext() && !ticked->Eof()) {
        const QString id = ticked->value(0).toString();
        const auto pairs = db.read(
            QStringLiteral("SELECT con_id1, con_id2 FROM contacts_contacts WHERE con_id2=") + id +
            QStringLiteral(" OR con_id1=") + id);
        if (!pairs) return false;
        for (bool row = !pairs->Eof(); row; row = pairs->MoveNext() && !pairs->Eof()) {
            const QString other = pairs->value(0).toString() == id ? pairs->value(1).toString()
                                                                   : pairs->value(0).toString();
            if (!db.run(QStringLiteral("UPDATE  contacts SET con_check=true WHERE con_id= ") +
                        other))
                return false;
        }
    }
    return true;
}

bool cutToKind(FileDatabase& db, int kind) {
    const Cut* cut = cutFor(kind);
    if (!cut) return true;
    if (kind != int(ReportKind::Contacts))
        return db.run(deleteUnticked(*cut)) && removeUnlinked(db, *cut);
    return removeUnlinked(db, *cut) && tickRelatedContacts(db) && db.run(deleteUnticked(*cut));
}

}  // namespace

QString profileProblem() {
    if (UserProfile::load().isComplete()) return {};
    return QStringLiteral(
        "请先在个人信息中填写并保存完整的姓名、单位、职务和电子邮件。"
        "电子邮件地址用来识别报告的发送人。");
}

QString proposedReportName(const QString& folder, const QString& userName, const QDate& date) {
    return QDir(folder).filePath(userName + date.toString(QStringLiteral("yyyy-M-d")) +
                                 QStringLiteral(" - 日志报告文件.tvr3"));
}

Outcome exportReport(int kind, const QString& chosen, const Progress& progress) {
    if (const QString problem = profileProblem(); !problem.isEmpty())
        return Outcome::failure(problem);
    if (chosen.trimmed().isEmpty()) return Outcome{true, false, {}, {}};
    const QString target = QFileInfo(chosen.trimmed()).absoluteFilePath();
    // Beside the other working files, where a later start removes a killed run's copy.
    const QString copy = QDir(scratchFolder()).filePath(QStringLiteral("tdb.tmp"));
    QDir().mkpath(scratchFolder());
    Leftovers leftovers{{copy}};
    const QString prefix = QStringLiteral("导出Tarvel报表没有完成：");
    QString error;
    if (!settleDataFile(liveDataFile(), &error) ||
        !copyFile(liveDataFile(), copy, stepProgress(progress, 0, 30), &error) ||
        !recyclebin::clearFile(copy, &error))
        return Outcome::from(prefix, error);
    {
        FileDatabase db(copy);
        Transaction transaction(db.connectionString());
        if (!db.isOpen() || !transaction.isActive())
            return Outcome::failure(prefix + db.ErrMsg() + transaction.error());
        if (!removePrivateRecords(db) || !cutToKind(db, kind))
            return Outcome::failure(prefix + db.ErrMsg());
        if (!transaction.commit()) return Outcome::failure(prefix + transaction.error());
    }
    if (progress && !progress(50)) return Outcome::cancel();
    if (!compactDataFile(copy, target, stepProgress(progress, 50, 100), &error))
        return Outcome::from(prefix, error);
    return Outcome{true, false, target, {}};
}

}  // namespace tarvel::exchange
