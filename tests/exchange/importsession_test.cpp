#include "exchange/importsession.h"

#include "store/sqlitehandle.h"
#include "tests/exchange/exchangefixture.h"

using namespace tarvel::exchange;
using exchange_test::ExchangeFixture;
using exchange_test::sqlcipherRows;

namespace {

IncomingRecord contact(const QString& name, const QString& mobile, const QString& email = {},
                       const QString& organisation = {}) {
    IncomingRecord r;
    r.columns.insert(QStringLiteral("con_lastname"), name);
    if (!mobile.isEmpty()) r.columns.insert(QStringLiteral("con_mobile"), mobile);
    if (!email.isEmpty()) r.columns.insert(QStringLiteral("con_email"), email);
    r.organisation = organisation;
    return r;
}

class ImportSessionTest : public ExchangeFixture {
protected:
    // Imports the records in one session; the tally, or a failure.
    ImportTally import(const QList<IncomingRecord>& records, const QString& table = "contacts",
                       OnMatch onMatch = OnMatch::FillEmpty) {
        ImportSession session(table, QStringLiteral("test"), inFolder("in.txt"), onMatch);
        EXPECT_TRUE(session.isOpen()) << session.ErrMsg().toStdString();
        QString error;
        for (const IncomingRecord& r : records)
            EXPECT_NE(session.put(r, &error), 0) << error.toStdString();
        EXPECT_TRUE(session.commit(&error)) << error.toStdString();
        return session.tally();
    }
    // Every row of the record and link tables, as the sqlcipher program reads them.
    QStringList wholeFile() {
        QStringList rows;
        for (const char* t : {"contacts", "accounts", "tasks", "accounts_contacts"})
            rows << sqlcipherRows(
                file.path(),
                QStringLiteral("SELECT * FROM %1 ORDER BY 1, 2").arg(QLatin1String(t)));
        return rows;
    }
};

}  // namespace

TEST(ImportSessionNormalising, ComparesNumbersAndAddressesAsPeopleWriteThem) {
    const struct {
        const char* a;
        const char* b;
    } samePhones[] = {{"+86 138 0013 8000", "13800138000"},
                      {"１３８００１３８０００", "138-0013-8000"},
                      {"0086 13800138000", "(138) 0013 8000"},
                      {"8613800138000", "13800138000"}};
    for (const auto& c : samePhones)
        EXPECT_EQ(ImportSession::normalisedPhone(QString::fromUtf8(c.a)),
                  ImportSession::normalisedPhone(QString::fromUtf8(c.b)))
            << c.a;
    EXPECT_NE(ImportSession::normalisedPhone("13800138000"),
              ImportSession::normalisedPhone("13800138001"));
    EXPECT_EQ(ImportSession::normalisedEmail(" Wang.Yi@Example.CN "),
              ImportSession::normalisedEmail("wang.yi@example.cn"));
}

// A second import of the same people adds nothing; only empty fields are
// filled, and what the user typed stays.
TEST_F(ImportSessionTest, RecognisesRecordsAlreadyThereAndFillsOnlyEmptyFields) {
    const ImportTally first =
        import({contact("王一明", "+86 138 0013 8000", {}, "甲乙科技"),
                contact("John Doe", {}, "john@example.com"), contact("王一明", "13900000000")});
    EXPECT_EQ(first.added, 3);
    EXPECT_EQ(first.accountsAdded, 1);
    run("UPDATE contacts SET con_description='用户写的备注' WHERE con_lastname='John Doe'");

    IncomingRecord john = contact("john doe", {}, "JOHN@example.com ");
    john.columns.insert("con_description", "文件里的备注");
    john.columns.insert("con_telephone", "010-12345678");
    IncomingRecord wang = contact("王一明", "13800138000", {}, "甲乙科技");
    const ImportTally second = import({wang, john, contact("李四", "13700000000")});
    EXPECT_EQ(second.summary(),
              QStringLiteral("新增 1，更新 1，跳过 1；1 处已有内容与文件不同，保留了已有内容"));
    EXPECT_EQ(rows("contacts"), 4);
    EXPECT_EQ(rows("accounts"), 1);
    EXPECT_EQ(rows("accounts_contacts"), 1);
    EXPECT_EQ(column("SELECT con_description FROM contacts WHERE con_email='john@example.com'"),
              QStringList{"用户写的备注"});
    EXPECT_EQ(column("SELECT con_telephone FROM contacts WHERE con_email='john@example.com'"),
              QStringList{"010-12345678"});
}

TEST_F(ImportSessionTest, TheSameExternalIdIsTheSameRecordWhateverItsName) {
    IncomingRecord a = contact("Jane", "111");
    a.externalId = "uid-1";
    import({a});
    IncomingRecord renamed = contact("Jane Roe", "222");
    renamed.externalId = "uid-1";
    const ImportTally t = import({renamed});
    EXPECT_EQ(t.added, 0);
    EXPECT_EQ(rows("contacts"), 1);
    EXPECT_EQ(column("SELECT con_mobile FROM contacts"), QStringList{"111"});
    // Deleted by the user since: the card comes back as a new record.
    run("DELETE FROM contacts");
    EXPECT_EQ(import({renamed}).added, 1);
}

// Taking the import back removes what it added and empties what it filled,
// but leaves whatever the user changed since.
TEST_F(ImportSessionTest, UndoTakesTheImportBackButNotTheUsersChanges) {
    fillSample();  // 张三 (con 1) is linked to accounts 1 and 2, 赵六 (con 4) to account 1
    run("UPDATE contacts SET con_mobile='13800000001' WHERE con_id=2");
    const QStringList before = wholeFile();
    IncomingRecord li = contact("李四", "13800000001", "li@example.cn", "新公司");
    IncomingRecord fresh = contact("新人甲", "13811111111", {}, "新公司");
    IncomingRecord edited = contact("新人乙", "13822222222", {}, "乙公司");
    const ImportTally t = import({li, fresh, edited});
    EXPECT_EQ(t.added, 2);
    EXPECT_EQ(t.updated, 1);
    EXPECT_EQ(column("SELECT con_email FROM contacts WHERE con_id=2"),
              QStringList{"li@example.cn"});
    EXPECT_FALSE(lastImportDescription().isEmpty());

    run("UPDATE contacts SET con_nickname='小乙' WHERE con_lastname='新人乙'");
    UndoImportResult result;
    const Outcome undone = undoLastImport(&result);
    ASSERT_TRUE(undone.ok) << undone.ErrMsg.toStdString();
    EXPECT_EQ(result.removed, 2);  // 新人甲 and the account 新公司 made for the import
    EXPECT_EQ(result.restored, 1);
    ASSERT_EQ(result.keptChanged.size(), 1);
    EXPECT_TRUE(result.keptChanged[0].contains("新人乙"));
    // All but the record the user edited is as before the import.
    run("DELETE FROM accounts_contacts WHERE con_id IN (SELECT con_id FROM contacts WHERE "
        "con_lastname='新人乙')");
    run("DELETE FROM contacts WHERE con_lastname='新人乙'");
    EXPECT_EQ(wholeFile(), before);
    EXPECT_FALSE(undoLastImport().ok);  // once only
    EXPECT_TRUE(lastImportDescription().isEmpty());
}

// A second run of the same file changes nothing, so the first can still be
// taken back.
TEST_F(ImportSessionTest, AnImportThatChangedNothingLeavesTheOneBeforeToUndo) {
    const QList<IncomingRecord> people = {contact("王一明", "13800138000"),
                                          contact("李四", "13700000000")};
    import(people);
    EXPECT_EQ(import(people).skipped, 2);
    ASSERT_TRUE(undoLastImport().ok);
    EXPECT_EQ(rows("contacts"), 0);
}

TEST_F(ImportSessionTest, ChangedEventsAreOverwrittenAndTheUndoPutsThemBack) {
    IncomingRecord task;
    task.externalId = "event-1";
    task.columns = {{"tas_subject", "周会"},
                    {"tas_date", tarvel::jetdate::naive(QDate(2026, 9, 1))},
                    {"tas_description", "A"}};
    import({task}, "tasks", OnMatch::Overwrite);
    const QStringList before = wholeFile();
    task.columns.insert("tas_subject", "周会（改期）");
    task.columns.insert("tas_date", tarvel::jetdate::naive(QDate(2026, 9, 2)));
    const ImportTally t = import({task}, "tasks", OnMatch::Overwrite);
    EXPECT_EQ(t.updated, 1);
    EXPECT_EQ(rows("tasks"), 1);
    EXPECT_EQ(column("SELECT tas_subject FROM tasks"), QStringList{"周会（改期）"});
    ASSERT_TRUE(undoLastImport().ok);
    EXPECT_EQ(wholeFile(), before);
}

// A data file made before the journal existed gets its tables on the first
// import and loses nothing.
TEST_F(ImportSessionTest, AnOlderDataFileGetsTheNewTables) {
    fillSample();
    for (const char* t : {"import_changes", "import_journal", "external_ids"})
        run(QStringLiteral("DROP TABLE IF EXISTS %1").arg(QLatin1String(t)));
    tarvel::closeAllHandles();
    EXPECT_EQ(import({contact("新客户", "13500000000")}).added, 1);
    EXPECT_EQ(rows("contacts"), 5);
    EXPECT_EQ(sqlcipherRows(file.path(), "PRAGMA integrity_check"), QStringList{"ok"});
    EXPECT_TRUE(undoLastImport().ok);
    EXPECT_EQ(rows("contacts"), 4);
}
