// A merge killed with SIGKILL at random moments leaves the data file whole and
// as it was before the merge or after it, never half merged.
#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QThread>
#include <cstdio>

#include "exchange/recordmerge.h"
#include "records/kinds.h"
#include "store/connectionstring.h"
#include "store/sqlitehandle.h"
#include "tests/exchange/exchangefixture.h"

using namespace tarvel;
using namespace tarvel::exchange;
using exchange_test::ExchangeFixture;

namespace {

constexpr int kContacts = 3000;
constexpr int kKills = 12;
const char* const kChildFile = "TARVEL_MERGE_CHILD_FILE";
// What the child prints as the merge begins, so kills land in the merge
// rather than in the start of the process.
const char* const kMerging = "merging now\n";

bool waitForMerge(QProcess& child) {
    QByteArray out;
    while (!out.contains(kMerging)) {
        if (!child.waitForReadyRead(60000)) return false;
        out += child.readAllStandardOutput();
    }
    return true;
}

// Whether the file is whole, and counts that tell before, after and a mix apart.
QString fingerprint(const QString& path) {
    const QStringList rows = exchange_test::sqlcipherRows(
        path,
        "PRAGMA integrity_check; SELECT COUNT(*) FROM contacts; "
        "SELECT COUNT(*) FROM contacts_tasks; SELECT COUNT(*) FROM contacts_tasks WHERE con_id=1; "
        "SELECT COUNT(*) FROM opportunities_contacts WHERE con_id=1; "
        "SELECT COUNT(*) FROM contacts_contacts; SELECT COUNT(*) FROM accounts_contacts; "
        "SELECT con_create_date FROM contacts WHERE con_id=1");
    return rows.join(QLatin1Char(','));
}

class MergeKill : public ExchangeFixture {
protected:
    // Contacts that all share one mobile, each with its own task and one shared
    // task, an opportunity role, an account and a relation to the next.
    void prepare() {
        QString error;
        auto h = acquireHandle(file.connectionString(), &error);
        ASSERT_TRUE(h) << error.toStdString();
        const QString n = QString(
                              "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n "
                              "WHERE i<%1) ")
                              .arg(kContacts);
        for (const QString& sql : {
                 n + "INSERT INTO contacts (con_id, con_lastname, con_mobile, con_create_date) "
                     "SELECT i, '王伟', '138 0013 8000', '2025-01-01 00:00:00' FROM n",
                 n + "INSERT INTO tasks (tas_id, tas_subject) SELECT i, '拜访' || i FROM n",
                 n + "INSERT INTO accounts (acc_id, acc_name) SELECT i, '单位' || i FROM n",
                 QString("INSERT INTO opportunities (opp_id, opp_subject) VALUES (1, '大单')"),
                 QString("UPDATE contacts SET con_create_date='2024-01-01 00:00:00' WHERE "
                         "con_id=%1")
                     .arg(kContacts),
                 QString("INSERT INTO contacts_tasks SELECT con_id, con_id FROM contacts"),
                 QString("INSERT INTO contacts_tasks SELECT con_id, 1 FROM contacts"),
                 QString("INSERT INTO accounts_contacts SELECT con_id, con_id FROM contacts"),
                 QString("INSERT INTO opportunities_contacts SELECT 1, con_id, '角色' || con_id "
                         "FROM contacts"),
                 QString("INSERT INTO contacts_contacts SELECT con_id, con_id + 1, '同事' FROM "
                         "contacts WHERE con_id < %1")
                     .arg(kContacts),
             })
            ASSERT_TRUE(h->exec(sql, &error)) << error.toStdString();
        closeAllHandles();
    }

    QString freshCopy(const QString& name) {
        const QString path = inFolder(name + ".tvg");
        QFile::remove(path);
        EXPECT_TRUE(QFile::copy(file.path(), path));
        return path;
    }

    void startChild(QProcess& child, const QString& path) {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(kChildFile, path);
        child.setProcessEnvironment(env);
        child.start(QStringLiteral(MERGE_TEST_BINARY),
                    {"--gtest_filter=MergeKillChild.MergesEveryContactIntoTheFirst"});
    }
};

}  // namespace

// Run by the test below in a child process on the file it names; skipped otherwise.
TEST(MergeKillChild, MergesEveryContactIntoTheFirst) {
    const QString path = qEnvironmentVariable(kChildFile);
    if (path.isEmpty()) GTEST_SKIP() << "only run as the child of MergeKill";
    setGlobalConnectionString(connectionStringFor(path));
    MergeRequest request{kind::Contact, 1, {}, {}, 0, {}};
    for (int i = 2; i <= kContacts; ++i) request.others << i;
    std::fputs(kMerging, stdout);
    std::fflush(stdout);
    const Outcome o = mergeRecords(request);
    ASSERT_TRUE(o.ok) << o.ErrMsg.toStdString();
}

TEST_F(MergeKill, KilledAtRandomMomentsLeavesTheStateBeforeOrAfter) {
    prepare();
    const QString before = fingerprint(file.path());
    ASSERT_TRUE(before.startsWith("ok,")) << before.toStdString();

    const QString reference = freshCopy("whole");
    QProcess whole;
    startChild(whole, reference);
    ASSERT_TRUE(waitForMerge(whole));
    QElapsedTimer timer;
    timer.start();
    ASSERT_TRUE(whole.waitForFinished(120000));
    ASSERT_EQ(whole.exitCode(), 0) << whole.readAllStandardOutput().toStdString();
    const qint64 duration = timer.elapsed();
    const QString after = fingerprint(reference);
    ASSERT_TRUE(after.startsWith("ok,1,")) << after.toStdString();
    ASSERT_NE(after, before);

    const quint32 seed = QRandomGenerator::global()->generate();
    QRandomGenerator random(seed);
    int killedWorking = 0;
    for (int i = 0; i < kKills; ++i) {
        const QString live = freshCopy(QString("kill%1").arg(i));
        QProcess child;
        startChild(child, live);
        ASSERT_TRUE(waitForMerge(child));
        QThread::msleep(random.bounded(int(duration) + 1));
        child.kill();  // SIGKILL
        child.waitForFinished();
        if (child.exitStatus() == QProcess::CrashExit) ++killedWorking;
        const QString state = fingerprint(live);
        EXPECT_TRUE(state == before || state == after)
            << "kill " << i << " (seed " << seed << "): " << state.toStdString() << " is neither "
            << before.toStdString() << " nor " << after.toStdString();
    }
    EXPECT_GE(killedWorking, kKills / 2) << "seed " << seed;
}
