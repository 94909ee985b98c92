#pragma once

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QProcess>

#include "custom/userprofile.h"
#include "store/clock.h"
#include "store/jetdate.h"
#include "store/schema.h"
#include "store/tarveldatabase.h"
#include "store/trace.h"
#include "tests/records/recordfixture.h"
#include "tests/support/tempdatafile.h"

QT_BEGIN_NAMESPACE
inline void PrintTo(const QString& s, std::ostream* os) {
    *os << '"' << s.toStdString() << '"';
}
QT_END_NAMESPACE

namespace exchange_test {

// Rows of `sql` on a data file, read by the sqlcipher command-line program with
// the database password; one line per row, columns joined by '|'.
inline QStringList sqlcipherRows(const QString& path, const QString& sql) {
    QProcess p;
    p.start(QStringLiteral("sqlcipher"), {QStringLiteral("-batch"), path});
    p.write(QStringLiteral("PRAGMA key='%1';\n%2;\n")
                .arg(QLatin1String(tarvel::schema::kDatabasePassword), sql)
                .toUtf8());
    p.closeWriteChannel();
    if (!p.waitForFinished(30000)) return {QStringLiteral("sqlcipher did not finish")};
    const QString out = QString::fromUtf8(p.readAllStandardOutput()).trimmed();
    QStringList rows = out.isEmpty() ? QStringList() : out.split(QLatin1Char('\n'));
    if (p.exitCode() != 0)
        rows << QStringLiteral("error: ") + QString::fromUtf8(p.readAllStandardError());
    return rows;
}

// What a python3 script prints as JSON about the file named by argv[1].
inline QJsonValue python(const QString& script, const QString& path) {
    QProcess p;
    // Debian's interpreter, where python3-vobject, python3-openpyxl and the other
    // readers are installed.
    p.start(QStringLiteral("/usr/bin/python3"), {QStringLiteral("-c"), script, path});
    if (!p.waitForFinished(30000) || p.exitCode() != 0) {
        ADD_FAILURE() << p.readAllStandardError().toStdString();
        return {};
    }
    return QJsonDocument::fromJson("{\"v\":" + p.readAllStandardOutput() + "}")
        .object()
        .value(QStringLiteral("v"));
}

inline QByteArray fileBytes(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

inline void writeBytes(const QString& path, const QByteArray& bytes) {
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(bytes);
}

// A fresh data file with the clock on 2026-8-5 9:07 (one-digit month, day,
// hour and minute) and the statement trace on.
class ExchangeFixture : public records_test::RecordFixture {
protected:
    ExchangeFixture() {
        tarvel::Clock::setFixed(tarvel::jetdate::naive(QDate(2026, 8, 5), QTime(9, 7, 3)));
    }

    QStringList column(const QString& sql) {
        tarvel::tarveldatabase db;
        QStringList values;
        auto rs = db.GetReadRs(sql);
        EXPECT_TRUE(rs && rs->State() == tarvel::adStateOpen) << sql.toStdString();
        for (bool more = rs && !rs->Eof(); more; more = rs->MoveNext() && !rs->Eof())
            values << rs->value(0).toString();
        return values;
    }
    int rows(const QString& table) {
        return count(QStringLiteral("SELECT COUNT(*) FROM ") + table);
    }
    void completeProfile() {
        ASSERT_TRUE((tarvel::UserProfile{QStringLiteral("王经理"), QStringLiteral("甲公司"),
                                         QStringLiteral("经理"), QStringLiteral("w@example.cn")})
                        .save());
    }
    QString inFolder(const QString& name) const { return QDir(file.folder()).filePath(name); }

    // Two accounts, four contacts, two opportunities, two tasks and a document,
    // linked to one another; the second account, the third contact and the
    // second opportunity are private. Ticks: the first contact, the private
    // contact and opportunity, the first account and task.
    void fillSample() {
        for (const char* sql : {
                 "INSERT INTO accounts (acc_name, acc_private, acc_check) VALUES ('甲公司', 0, "
                 "true), ('乙公司', 1, false)",
                 "INSERT INTO contacts (con_lastname, con_private, con_check) VALUES ('张三', 0, "
                 "true), ('李四', 0, false), ('王五', 1, true), ('赵六', 0, false)",
                 "INSERT INTO opportunities (opp_subject, opp_private, opp_check) VALUES ('大单', "
                 "0, true), ('密单', 1, true)",
                 "INSERT INTO tasks (tas_subject, tas_private, tas_check) VALUES ('拜访', 0, "
                 "true), ('回访', 0, false)",
                 "INSERT INTO documents (doc_id, doc_name, doc_check) VALUES (1, '合同', false)",
                 "INSERT INTO accounts_contacts (acc_id, con_id) VALUES (1, 1), (2, 1), (1, 4)",
                 "INSERT INTO contacts_contacts (con_id1, con_id2, con_relation) VALUES (1, 2, "
                 "'同事'), (3, 1, '朋友')",
                 "INSERT INTO opportunities_contacts (opp_id, con_id, con_part_in_opp) VALUES (1, "
                 "1, '决策人')",
                 "INSERT INTO opportunities_accounts (opp_id, acc_id, acc_part_in_opp) VALUES (1, "
                 "1, '买方'), (2, 1, '买方')",
                 "INSERT INTO contacts_tasks (con_id, tas_id) VALUES (1, 1), (4, 2)",
                 "INSERT INTO contacts_documents (con_id, doc_id) VALUES (1, 1)",
             })
            run(QString::fromUtf8(sql));
    }
};

}  // namespace exchange_test
