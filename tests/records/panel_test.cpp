// The panel operations against a form held in maps and a real grid data control.

#include <QHash>
#include <algorithm>

#include "records/account.h"
#include "records/contact.h"
#include "records/document.h"
#include "records/opportunity.h"
#include "tests/records/recordfixture.h"

using namespace tarvel;

namespace {

// Remembers the bCantChgFlag_* values at the moment each control is written.
class RecordingForm : public MapForm {
public:
    using MapForm::MapForm;
    void setControlValue(const QString& control, const QVariant& value) override {
        for (const char* flag :
             {"bCantChgFlag_ConName", "bCantChgFlag_AccName", "bCantChgFlag_OppName"})
            if (property(QLatin1String(flag)).toBool()) raisedDuring[control] << flag;
        MapForm::setControlValue(control, value);
    }
    QHash<QString, QStringList> raisedDuring;
};

// The key of the current row; a join names its qualified columns "table.column".
int keyOf(const Recordset& rs, const QString& column) {
    for (int i = 0; i < rs.FieldCount(); ++i)
        if (rs.fieldName(i).section(QLatin1Char('.'), -1) == column) return rs.value(i).toInt();
    return -1;
}

class Panels : public records_test::RecordFixture {
protected:
    template <typename Record>
    void open(Record& r, const char* panelName, int recordId) {
        form.setName(QLatin1String(panelName));
        form.setProperty(QLatin1String(panel::RecordId), recordId);
        r.setOForm(&form);
        r.setOAdodc(&grid);
        ASSERT_TRUE(r.SetQuery(recordId)) << r.ErrMsg().toStdString();
    }
    void type(const char* control, const QVariant& value) {
        form.setControlValue(QLatin1String(control), value);
    }
    QString text(const char* control) { return form.controlValue(control).toString(); }
    int gridId(const char* column) {
        return grid.Recordset && !grid.Recordset->Eof() ? keyOf(*grid.Recordset, column) : -1;
    }

    RecordingForm form;
    DataControl grid;
};

QString repeated(const char* unit, int times) {
    return QString::fromUtf8(unit).repeated(times);
}

template <typename Record>
bool setQuery(Form* form, DataControl* grid, int other) {
    Record r;
    r.setOForm(form);
    r.setOAdodc(grid);
    return r.SetQuery(other);
}

TEST_F(Panels, SetQueryListsTheRecordsRelatedToThePanelsRecord) {
    run("INSERT INTO contacts (con_id) VALUES (1), (2), (3), (4)");
    run("INSERT INTO accounts (acc_id) VALUES (10), (11)");
    run("INSERT INTO opportunities (opp_id) VALUES (20), (21)");
    run("INSERT INTO documents (doc_id) VALUES (8), (9)");
    run("INSERT INTO accounts_contacts (acc_id, con_id) VALUES (10, 1), (11, 2)");
    run("INSERT INTO opportunities_contacts (opp_id, con_id) VALUES (20, 1), (20, 2)");
    // Contact 1 is related to 2 as the first of the pair and to 3 as the second.
    run("INSERT INTO contacts_contacts (con_id1, con_id2) VALUES (1, 2), (3, 1), (2, 4)");
    run("INSERT INTO contacts_tasks (con_id, tas_id) VALUES (3, 6)");
    run("INSERT INTO contacts_documents (con_id, doc_id) VALUES (1, 9)");
    run("INSERT INTO opportunities_accounts (opp_id, acc_id) VALUES (20, 10)");
    run("INSERT INTO accounts_tasks (acc_id, tas_id) VALUES (11, 6)");
    run("INSERT INTO accounts_documents (acc_id, doc_id) VALUES (10, 9)");
    run("INSERT INTO opportunities_tasks (opp_id, tas_id) VALUES (21, 6)");
    run("INSERT INTO opportunities_documents (opp_id, doc_id) VALUES (21, 9), (20, 8)");
    run("INSERT INTO tasks_documents (tas_id, doc_id) VALUES (6, 9)");
    const int records[] = {20, 10, 1, 6, 9};  // on the panels of each kind, in kind order
    const struct {
        bool (*setQuery)(Form*, DataControl*, int);
        const char* kind;  // names the grid dgrid_<kind> and the key <kind>_id
        // The keys the grid lists on the panels of deal 20, account 10, contact
        // 1, task 6 and document 9, in that order; "-": the panel has no such grid.
        const char* keys;
    } grids[] = {{&setQuery<Contact>, "con", "1 2|1|2 3|3|1"},
                 {&setQuery<Account>, "acc", "10|-|-|11|10"},
                 {&setQuery<Opportunity>, "opp", "-|20|20|21|21"},
                 {&setQuery<document>, "doc", "8|9|9|9|-"}};
    for (const auto& list : grids) {
        for (int p = 0; p < 5; ++p) {
            const char* name = panel::formName(qint16(kind::Opportunity + p));
            SCOPED_TRACE(std::string(name) + " " + list.kind);
            const QString expected = QString::fromLatin1(list.keys).section(QLatin1Char('|'), p, p);
            RecordingForm f{QLatin1String(name)};
            DataControl g;
            const QStringList statements =
                traced([&] { ASSERT_TRUE(list.setQuery(&f, &g, records[p])); });
            if (expected == "-") {
                EXPECT_TRUE(statements.isEmpty() && g.RecordSource.isEmpty());
                continue;
            }
            EXPECT_EQ(statements, QStringList{g.RecordSource});
            // The first column, hidden, is the key; every other one has its caption.
            EXPECT_EQ(f.controlItems(QStringLiteral("dgrid_") + list.kind).size() + 1,
                      g.Recordset->FieldCount());
            EXPECT_TRUE(g.Recordset->fieldName(0).endsWith(list.kind + QStringLiteral("_id")));
            // Each panel shows every kind but its own.
            const char* flags[] = {"", "iShowOpp", "iShowAcc", "iShowCon", "iShowTas", "iShowDoc"};
            for (qint16 k = kind::Opportunity; k <= kind::Document; ++k)
                EXPECT_EQ(f.property(flags[k]).toInt(), panel::kindOf(f.Name()) == k ? 0 : 1);
            QStringList ids;
            for (g.Recordset->MoveFirst(); !g.Recordset->Eof(); g.Recordset->MoveNext())
                ids << QString::number(keyOf(*g.Recordset, list.kind + QStringLiteral("_id")));
            ids.sort();
            EXPECT_EQ(ids.join(QLatin1Char(' ')), expected);
        }
    }
}

TEST_F(Panels, ShowContactFillsTheQuickEditAndUpdateIndexRenamesMovesOrGivesTheAccount) {
    run("INSERT INTO accounts (acc_id, acc_name, acc_address, acc_industry) VALUES (10, '华信', "
        "'人民路1号', 'IT')");
    run("INSERT INTO contacts (con_id, con_lastname, con_nickname, con_telephone, con_description) "
        "VALUES (1, '张三', '老张', '010-1', '备注'), (2, '李四', NULL, NULL, NULL)");
    run("INSERT INTO accounts_contacts (acc_id, con_id) VALUES (10, 1)");
    run("INSERT INTO opportunities_contacts (opp_id, con_id, con_part_in_opp) VALUES (20, 2, "
        "NULL), (20, 1, 'a')");
    run("INSERT INTO opportunities_accounts (opp_id, acc_id, acc_part_in_opp) VALUES (20, 10, "
        "'甲方')");
    run("INSERT INTO tasks (tas_id, tas_subject, tas_date, tas_time, tas_tag, tas_description) "
        "VALUES (1, '旧的', #2026-1-5#, #9:30:00#, '工作', NULL), (2, '新的', #2026-2-7#, "
        "#14:05:00#, NULL, '带样品')");
    run("INSERT INTO contacts_tasks (con_id, tas_id) VALUES (1, 1), (1, 2)");
    Contact c;
    open(c, panel::formName(kind::Opportunity), 20);
    ASSERT_TRUE(c.ShowContact(1, true)) << c.ErrMsg().toStdString();
    QStringList shown;
    for (const char* control : {"txt_con_name", "txt_con_nickname", "txt_con_account",
                                "txt_con_accaddr", "txt_con_tel", "txt_con_part", "rtxt_con_memo"})
        shown << text(control);
    EXPECT_EQ(shown, QStringList({"张三", "老张", "华信", "人民路1号", "010-1", "a", "备注"}));
    // Each name box is written with its own flag raised, and only then.
    EXPECT_EQ(form.raisedDuring.value("txt_con_name"), QStringList{"bCantChgFlag_ConName"});
    EXPECT_EQ(form.raisedDuring.value("txt_con_account"), QStringList{"bCantChgFlag_AccName"});
    EXPECT_EQ(form.raisedDuring.size(), 2);
    EXPECT_EQ(form.property("g_ConID").toInt(), 1);
    EXPECT_EQ(form.property("OldAccountID").toInt(), 10);
    EXPECT_EQ(text("rtxt_con_sch"),
              "2026-2-7,14:05:00,\r\n新的\r\n带样品\r\n===================\r\n2026-1-5,9:30:00,"
              "工作\r\n旧的\r\n\r\n===================\r\n");
    // Without the load flag the object shows what it holds.
    c.setLastName(QStringLiteral("改过"));
    ASSERT_TRUE(c.ShowContact(1, false));
    EXPECT_EQ(text("txt_con_name"), QStringLiteral("改过"));
    // Same account, renamed: it keeps its key, its other fields and its role.
    ASSERT_TRUE(c.ShowContact(1, true));
    type("txt_con_account", QStringLiteral("华信集团"));
    type("txt_con_part", QStringLiteral("用户"));
    ASSERT_TRUE(c.ChangeContact(1));
    Clock::advance(60);
    ASSERT_TRUE(c.UpdateIndex(1, true)) << c.ErrMsg().toStdString();
    EXPECT_EQ(
        scalar(
            "SELECT acc_name || acc_industry || acc_part_in_opp || con_part_in_opp FROM accounts, "
            "opportunities_accounts, opportunities_contacts WHERE accounts.acc_id=10 AND con_id=1"),
        "华信集团IT甲方用户");
    EXPECT_EQ(scalar("SELECT con_recent_contact_date FROM contacts WHERE con_id=1"), Clock::now());

    // Another account (the panel cleared the key to create one): the contact moves.
    ASSERT_TRUE(c.ShowContact(1, true));
    type("txt_con_account", QStringLiteral("东方贸易"));
    ASSERT_TRUE(c.ChangeContact(1));
    c.Account().setID(0);
    ASSERT_TRUE(c.UpdateIndex(1, false)) << c.ErrMsg().toStdString();
    const int moved = c.Account().ID();
    EXPECT_GT(moved, 10);
    EXPECT_EQ(count("SELECT COUNT(*) FROM accounts_contacts WHERE con_id=1"), 1);
    EXPECT_EQ(count("SELECT acc_id FROM accounts_contacts WHERE con_id=1"), moved);
    EXPECT_EQ(count("SELECT COUNT(*) FROM opportunities_accounts WHERE opp_id=20"), 2);
    EXPECT_EQ(form.property("OldAccountID").toInt(), moved);
    EXPECT_EQ(gridId("con_id"), 1);

    // A contact that had no account is given the one typed, which joins the deal too.
    ASSERT_TRUE(c.ShowContact(2, true));
    EXPECT_EQ(form.property("OldAccountID").toInt(), 0);
    type("txt_con_account", QStringLiteral("新世纪软件"));
    ASSERT_TRUE(c.ChangeContact(2));
    ASSERT_TRUE(c.UpdateIndex(2, false)) << c.ErrMsg().toStdString();
    EXPECT_EQ(scalar("SELECT acc_name FROM que_contacts_accounts WHERE con_id=2"), "新世纪软件");
    EXPECT_EQ(form.property("OldAccountID").toInt(), c.Account().ID());
    EXPECT_EQ(count("SELECT COUNT(*) FROM opportunities_accounts WHERE opp_id=20"), 3);
}

TEST_F(Panels, OpportunityReadersConvertTheComboAndClearThePrivacyFlag) {
    run("INSERT INTO accounts (acc_id, acc_name) VALUES (10, '华信')");
    Opportunity o;
    open(o, panel::formName(kind::Account), 10);
    type("txt_opp_name", QStringLiteral("数据中心"));
    type("dt_opp_enddate", QDate(2026, 9, 30));
    type("txt_opp_revenue", QStringLiteral("1,200.50"));
    type("cbo_opp_probability", QStringLiteral("80%"));
    ASSERT_TRUE(o.AddOpportunity());
    ASSERT_TRUE(o.AddToList()) << o.ErrMsg().toStdString();
    EXPECT_EQ(form.property("g_OppID").toInt(), 1);
    EXPECT_EQ(count("SELECT COUNT(*) FROM opportunities_accounts WHERE opp_id=1 AND acc_id=10"), 1);
    EXPECT_EQ(count("SELECT COUNT(*) FROM opportunities WHERE opp_die_date=#2026-9-30# AND "
                    "opp_succeed_probability=80 AND opp_estimate_sale=1200.5"),
              1);

    run("UPDATE opportunities SET opp_private=1");
    ASSERT_TRUE(o.ShowOpportunity(1, true));
    EXPECT_EQ(text("cbo_opp_probability"), "80%");
    EXPECT_EQ(text("txt_opp_revenue"), "1200.5");
    EXPECT_EQ(form.raisedDuring.value("txt_opp_name"), QStringList{"bCantChgFlag_OppName"});
    type("cbo_opp_probability", QString());
    ASSERT_TRUE(o.ChangeOpportunity(1));
    ASSERT_TRUE(o.UpdateIndex(1)) << o.ErrMsg().toStdString();
    EXPECT_EQ(count("SELECT opp_private + opp_succeed_probability FROM opportunities"), 0);
    EXPECT_EQ(gridId("opp_id"), 1);

    type("txt_opp_revenue", QStringLiteral("很多"));
    EXPECT_FALSE(o.AddOpportunity());
    EXPECT_TRUE(o.ErrMsg().startsWith(QStringLiteral("AddOpportunity出错，原因可能是")));
}

// The panel and the detail page hold a probability to one rule.
TEST(OpportunityProbability, WholeNumbersFromNoneToAHundred) {
    const struct {
        const char* typed;
        int stored;  // -1: refused
    } cases[] = {{"", 0},      {"80%", 80}, {" 80 % ", 80}, {"100", 100}, {"0%", 0},
                 {"101%", -1}, {"-5%", -1}, {"12.5%", -1},  {"很高", -1}, {"%", 0}};
    for (const auto& c : cases) {
        const auto parsed = Opportunity::parseProbability(QString::fromUtf8(c.typed));
        EXPECT_EQ(parsed ? int(*parsed) : -1, c.stored) << c.typed;
    }
}

TEST_F(Panels, RecordsAddedOnPanelsAreCutStoredAndLinked) {
    run("INSERT INTO opportunities (opp_id, opp_subject) VALUES (20, '项目')");
    run("INSERT INTO documents (doc_id, doc_name) VALUES (9, '合同')");
    Contact c;
    open(c, panel::formName(kind::Opportunity), 20);
    // Cut to 50 characters, counted as characters: a pair of UTF-16 units stays whole.
    const QString wide = QString::fromUcs4(U"\U00020000");
    type("txt_con_name", repeated("王", 49) + wide + repeated("王", 10));
    type("txt_con_account", QStringLiteral("新世纪软件"));
    type("txt_con_accaddr", repeated("路", 300));
    type("txt_con_part", QStringLiteral("O'Brien's buyer"));
    type("rtxt_con_memo", repeated("记", 400));
    ASSERT_TRUE(c.AddContact());
    ASSERT_TRUE(c.AddToList()) << c.ErrMsg().toStdString();
    EXPECT_EQ(form.property("g_ConID").toInt(), 1);
    EXPECT_EQ(scalar("SELECT con_lastname FROM contacts").toString(), repeated("王", 49) + wide);
    EXPECT_EQ(count("SELECT COUNT(*) FROM contacts WHERE con_birthday=#1900-1-1# AND "
                    "con_create_date=#2026-3-2# AND con_recent_contact_date=#2026-3-2 9:15:30# AND "
                    "length(con_description)=400"),
              1);
    // The typed account is stored, cut, and linked to the contact and to the deal.
    EXPECT_EQ(count("SELECT COUNT(*) FROM accounts INNER JOIN accounts_contacts ON accounts.acc_id "
                    "= accounts_contacts.acc_id WHERE con_id=1 AND acc_name='新世纪软件' AND "
                    "length(acc_address)=255"),
              1);
    EXPECT_EQ(count("SELECT COUNT(*) FROM opportunities_accounts WHERE acc_id=1 AND opp_id=20"), 1);
    EXPECT_EQ(scalar("SELECT con_part_in_opp FROM opportunities_contacts WHERE opp_id=20"),
              "O'Brien's buyer");

    Account a;
    open(a, panel::formName(kind::Document), 9);
    type("txt_acc_name", repeated("华", 80));
    ASSERT_TRUE(a.AddAccount());
    ASSERT_TRUE(a.AddToList()) << a.ErrMsg().toStdString();
    EXPECT_EQ(form.property("g_AccID").toInt(), 2);
    EXPECT_EQ(count("SELECT COUNT(*) FROM accounts_documents WHERE acc_id=2 AND doc_id=9"), 1);
    EXPECT_EQ(scalar("SELECT acc_name FROM accounts WHERE acc_id=2"), repeated("华", 50));

    document d;
    open(d, panel::formName(kind::Task), 6);
    type("txt_doc_path", repeated("p", 300));
    ASSERT_TRUE(d.AddDocument());
    ASSERT_TRUE(d.AddToList()) << d.ErrMsg().toStdString();
    EXPECT_EQ(count("SELECT COUNT(*) FROM tasks_documents WHERE doc_id=10 AND tas_id=6"), 1);
    ASSERT_TRUE(d.ShowDocument(10, true));
    EXPECT_EQ(text("txt_doc_path"), repeated("p", 255));
    EXPECT_EQ(text("txt_doc_createdate"), QStringLiteral("2026-3-2"));
    EXPECT_EQ(form.property("g_DocID").toInt(), 10);

    // On an account's panel a new contact joins that account rather than a namesake.
    Contact joining;
    open(joining, panel::formName(kind::Account), 2);
    type("txt_con_account", repeated("华", 50));
    ASSERT_TRUE(joining.AddContact());
    ASSERT_TRUE(joining.AddToList()) << joining.ErrMsg().toStdString();
    EXPECT_EQ(count("SELECT COUNT(*) FROM accounts"), 2);
    EXPECT_EQ(count("SELECT COUNT(*) FROM accounts_contacts WHERE acc_id=2 AND con_id=2"), 1);
    // A new contact on a contact's panel is the related panel's test (related_test).
}

// A failing account inside a contact's save is reported once, by the
// contact, with the account's own entry: not with what the account had
// gathered before.
TEST_F(Panels, ANestedFailureOfTheAccountIsReportedWithItsOwnEntryOnly) {
    run("CREATE TRIGGER refuse_account BEFORE INSERT ON accounts BEGIN SELECT RAISE(ABORT, "
        "'refused by trigger'); END");
    Contact c;
    open(c, panel::formName(kind::Opportunity), 20);
    type("txt_con_name", QStringLiteral("张三"));
    type("txt_con_account", QStringLiteral("新世纪软件"));
    ASSERT_TRUE(c.AddContact());
    c.Account().setErrMsg(QStringLiteral("earlier"));
    EXPECT_FALSE(c.AddToList());
    const QString entry = c.Account().lastError();
    EXPECT_TRUE(entry.startsWith(QStringLiteral("Add出错，原因可能是")) &&
                entry.contains(QStringLiteral("refused by trigger")))
        << entry.toStdString();
    EXPECT_EQ(c.Account().ErrMsg(), QStringLiteral("earlier ; ") + entry);
    EXPECT_EQ(c.ErrMsg(), QStringLiteral("AddToList出错，原因可能是") + entry);
}

}  // namespace
