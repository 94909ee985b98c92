// The panel operations against a form held in maps and a real grid data control.

#include <QHash>
#include <algorithm>
#include <functional>
#include <vector>

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
            if (property(QLatin1String(flag)).toBool())
                raisedDuring[control] << QLatin1String(flag);
        MapForm::setControlValue(control, value);
    }
    QHash<QString, QStringList> raisedDuring;
};

class Panels : public records_test::RecordFixture {
protected:
    void openPanel(const char* name, int recordId) {
        form.setName(QLatin1String(name));
        form.setProperty(QLatin1String(panel::RecordId), recordId);
    }
    template <typename Record>
    void attach(Record& r) {
        r.setOForm(&form);
        r.setOAdodc(&grid);
    }
    QString text(const char* control) {
        return form.controlValue(QLatin1String(control)).toString();
    }
    int gridId(const char* column) {
        return grid.Recordset && !grid.Recordset->Eof() ? keyOf(*grid.Recordset, column) : -1;
    }
    // The key of the current row; a join names its qualified columns "table.column".
    static int keyOf(const Recordset& rs, const char* column) {
        for (int i = 0; i < rs.FieldCount(); ++i)
            if (rs.fieldName(i) == QLatin1String(column) ||
                rs.fieldName(i).endsWith(QLatin1Char('.') + QLatin1String(column)))
                return rs.value(i).toInt();
        return -1;
    }

    RecordingForm form;
    DataControl grid;
};

QString repeated(const QString& unit, int times) {
    QString out;
    for (int i = 0; i < times; ++i) out += unit;
    return out;
}

TEST_F(Panels, ANewContactFromAnOpportunityPanelIsCutStoredAndLinkedWithItsAccount) {
    run("INSERT INTO opportunities (opp_id, opp_subject) VALUES (20, '项目')");
    openPanel(panel::Opportunity, 20);
    Contact c;
    attach(c);
    ASSERT_TRUE(c.SetQuery(20)) << c.ErrMsg().toStdString();

    const QString name = repeated(QStringLiteral("王"), 60);
    form.setControlValue(QStringLiteral("txt_con_name"), name);
    form.setControlValue(QStringLiteral("txt_con_nickname"), QStringLiteral("小王"));
    form.setControlValue(QStringLiteral("txt_con_account"), QStringLiteral("新世纪软件"));
    form.setControlValue(QStringLiteral("txt_con_accaddr"), repeated(QStringLiteral("路"), 300));
    form.setControlValue(QStringLiteral("txt_con_tel"), QStringLiteral("010-12345678"));
    form.setControlValue(QStringLiteral("txt_con_part"), QStringLiteral("O'Brien's buyer"));
    form.setControlValue(QStringLiteral("rtxt_con_memo"), repeated(QStringLiteral("记"), 400));
    ASSERT_TRUE(c.AddContact());
    EXPECT_EQ(c.LastName(), name.left(50));
    EXPECT_EQ(c.Account().Address().size(), 255);
    EXPECT_EQ(c.Description().size(), 400);
    EXPECT_EQ(c.CreateDate(), jetdate::naive(start().date()));
    EXPECT_EQ(c.Birthday(), jetdate::naive(QDate(1900, 1, 1)));
    EXPECT_EQ(c.RCDate(), start());

    ASSERT_TRUE(c.AddToList()) << c.ErrMsg().toStdString();
    EXPECT_EQ(c.ID(), 1);
    EXPECT_EQ(form.property(QStringLiteral("g_ConID")).toInt(), 1);
    EXPECT_EQ(scalar("SELECT con_lastname FROM contacts WHERE con_id=1").toString(), name.left(50));
    EXPECT_EQ(scalar("SELECT con_birthday FROM contacts").toDateTime(),
              jetdate::naive(QDate(1900, 1, 1)));
    EXPECT_EQ(scalar("SELECT con_create_date FROM contacts").toDateTime(),
              jetdate::naive(start().date()));
    EXPECT_EQ(scalar("SELECT con_recent_contact_date FROM contacts").toDateTime(), start());
    EXPECT_EQ(scalar("SELECT acc_name FROM accounts").toString(), QStringLiteral("新世纪软件"));
    EXPECT_EQ(scalar("SELECT length(acc_address) FROM accounts").toInt(), 255);
    EXPECT_EQ(count("SELECT COUNT(*) FROM accounts_contacts WHERE con_id=1 AND acc_id=1"), 1);
    EXPECT_EQ(scalar("SELECT con_part_in_opp FROM opportunities_contacts WHERE con_id=1 AND "
                     "opp_id=20")
                  .toString(),
              QStringLiteral("O'Brien's buyer"));
    EXPECT_EQ(count("SELECT COUNT(*) FROM opportunities_accounts WHERE acc_id=1 AND opp_id=20"), 1);
}

TEST_F(Panels, CutsCountCharactersAndNeverSplitAPair) {
    openPanel(panel::Contact, 1);
    Contact c;
    attach(c);
    // 49 letters, then a character outside the basic plane (two UTF-16 units).
    const QString wide = QString::fromUcs4(U"\U00020000");
    form.setControlValue(QStringLiteral("txt_con_name"),
                         repeated(QStringLiteral("a"), 49) + wide + QStringLiteral("bc"));
    ASSERT_TRUE(c.AddContact());
    EXPECT_EQ(c.LastName(), repeated(QStringLiteral("a"), 49) + wide);

    Account a;
    attach(a);
    form.setControlValue(QStringLiteral("txt_acc_name"), repeated(QStringLiteral("华"), 80));
    ASSERT_TRUE(a.AddAccount());
    EXPECT_EQ(a.AccName(), repeated(QStringLiteral("华"), 50));

    document d;
    attach(d);
    form.setControlValue(QStringLiteral("txt_doc_path"), repeated(QStringLiteral("p"), 300));
    ASSERT_TRUE(d.AddDocument());
    EXPECT_EQ(d.DocPath().size(), 255);
}

TEST_F(Panels, ShowContactFillsTheQuickEditRaisingTheNameFlags) {
    run("INSERT INTO accounts (acc_id, acc_name, acc_address) VALUES (10, '华信', '人民路1号')");
    run("INSERT INTO contacts (con_id, con_lastname, con_nickname, con_telephone, con_description) "
        "VALUES (1, '张三', '老张', '010-1', '备注')");
    run("INSERT INTO accounts_contacts (acc_id, con_id) VALUES (10, 1)");
    run("INSERT INTO opportunities_contacts (opp_id, con_id, con_part_in_opp) VALUES (20, 1, "
        "'决策人')");
    run("INSERT INTO tasks (tas_id, tas_subject, tas_date, tas_time, tas_tag, tas_description) "
        "VALUES (1, '旧的', #2026-1-5#, #9:30:00#, '工作', NULL), "
        "(2, '新的', #2026-2-7#, #14:05:00#, NULL, '带样品')");
    run("INSERT INTO contacts_tasks (con_id, tas_id) VALUES (1, 1), (1, 2)");
    openPanel(panel::Opportunity, 20);
    Contact c;
    attach(c);
    ASSERT_TRUE(c.ShowContact(1, true)) << c.ErrMsg().toStdString();

    EXPECT_EQ(text("txt_con_name"), QStringLiteral("张三"));
    EXPECT_EQ(text("txt_con_nickname"), QStringLiteral("老张"));
    EXPECT_EQ(text("txt_con_account"), QStringLiteral("华信"));
    EXPECT_EQ(text("txt_con_accaddr"), QStringLiteral("人民路1号"));
    EXPECT_EQ(text("txt_con_tel"), QStringLiteral("010-1"));
    EXPECT_EQ(text("txt_con_part"), QStringLiteral("决策人"));
    EXPECT_EQ(text("rtxt_con_memo"), QStringLiteral("备注"));
    EXPECT_EQ(form.raisedDuring.value(QStringLiteral("txt_con_name")),
              QStringList{QStringLiteral("bCantChgFlag_ConName")});
    EXPECT_EQ(form.raisedDuring.value(QStringLiteral("txt_con_account")),
              QStringList{QStringLiteral("bCantChgFlag_AccName")});
    EXPECT_TRUE(form.raisedDuring.value(QStringLiteral("txt_con_nickname")).isEmpty());
    EXPECT_FALSE(form.property(QStringLiteral("bCantChgFlag_ConName")).toBool());
    EXPECT_FALSE(form.property(QStringLiteral("bCantChgFlag_AccName")).toBool());
    EXPECT_EQ(form.property(QStringLiteral("g_ConID")).toInt(), 1);
    EXPECT_EQ(form.property(QStringLiteral("OldAccountID")).toInt(), 10);
    EXPECT_EQ(text("rtxt_con_sch"),
              QStringLiteral("2026-2-7,14:05:00,\r\n新的\r\n带样品\r\n===================\r\n"
                             "2026-1-5,9:30:00,工作\r\n旧的\r\n\r\n===================\r\n"));

    // Without the load flag the object shows what it holds.
    c.setLastName(QStringLiteral("改过"));
    const QStringList statements = traced([&] { ASSERT_TRUE(c.ShowContact(1, false)); });
    EXPECT_EQ(text("txt_con_name"), QStringLiteral("改过"));
    EXPECT_EQ(statements.size(), 1);  // the digest only
}

struct QueryCase {
    const char* name;
    const char* panel;
    std::function<bool(Form*, DataControl*, int)> setQuery;
    int other;
    QString source;
    const char* grid;
    const char* firstCaption;
    const char* key;
    QList<int> ids;
};

template <typename Record>
std::function<bool(Form*, DataControl*, int)> query() {
    return [](Form* f, DataControl* g, int other) {
        Record r;
        r.setOForm(f);
        r.setOAdodc(g);
        return r.SetQuery(other);
    };
}

const QString kConColumns = QStringLiteral(
    "SELECT con_id,con_lastname,con_nickname,acc_name,con_department_title,acc_address,"
    "con_telephone,con_mobile,con_email,con_fax,con_description,con_create_date,"
    "con_recent_contact_date,con_birthday,con_private ");
const QString kAccColumns = QStringLiteral(
    "SELECT acc_id,acc_name,acc_telephone,acc_fax,acc_website,acc_type,acc_industry,acc_province,"
    "acc_address,acc_description,acc_create_date,acc_recent_contact_date,acc_private  FROM "
    "accounts ");
const QString kOppColumns = QStringLiteral(
    "SELECT opp_id,opp_subject,opp_die_date,opp_estimate_sale,opp_sale,opp_succeed_probability,"
    "opp_type,opp_phase,opp_important,opp_tag,opp_description,opp_create_date,"
    "opp_recent_contact_date,opp_private  FROM opportunities ");
const QString kDocColumns = QStringLiteral(
    "SELECT doc_id,doc_name,doc_path,doc_description,doc_tag,doc_create_date,doc_recentedit_date "
    "FROM documents ");

std::vector<QueryCase> queryCases() {
    return {
        {"ContactsOfADeal",
         panel::Opportunity,
         query<Contact>(),
         20,
         kConColumns + " FROM  que_contacts_accounts  WHERE con_id IN (SELECT con_id FROM "
                       "opportunities_contacts WHERE opp_id=20)",
         "dgrid_con",
         "联系人名称",
         "con_id",
         {1, 2}},
        {"ContactsOfAnAccount",
         panel::Account,
         query<Contact>(),
         10,
         kConColumns + " FROM que_contacts_accounts  WHERE con_id IN (SELECT con_id FROM "
                       "accounts_contacts WHERE acc_id=10)",
         "dgrid_con",
         "联系人名称",
         "con_id",
         {1}},
        {"ContactsOfAContactEitherWayButNotItself",
         panel::Contact,
         query<Contact>(),
         1,
         "SELECT que_contacts_accounts.con_id,que_contacts_accounts.con_lastname,"
         "que_contacts_accounts.con_nickname,que_contacts_accounts.acc_name,"
         "que_contacts_accounts.con_department_title,que_contacts_accounts.acc_address,"
         "que_contacts_accounts.con_telephone,que_contacts_accounts.con_mobile,"
         "que_contacts_accounts.con_email,que_contacts_accounts.con_fax,"
         "que_contacts_accounts.con_description,que_contacts_accounts.con_create_date,"
         "que_contacts_accounts.con_recent_contact_date,que_contacts_accounts.con_birthday,"
         "que_contacts_accounts.con_private  FROM que_contacts_accounts INNER JOIN "
         "contacts_contacts  ON (que_contacts_accounts.con_id =contacts_contacts.con_id1) OR "
         "(que_contacts_accounts.con_id=contacts_contacts.con_id2) WHERE "
         "que_contacts_accounts.con_id <>1 AND (contacts_contacts.con_id2=1 OR "
         "contacts_contacts.con_id1=1)",
         "dgrid_con",
         "联系人名称",
         "con_id",
         {2, 3}},
        {"ContactsOfATask",
         panel::Task,
         query<Contact>(),
         6,
         kConColumns + " FROM que_contacts_accounts  WHERE con_id IN (SELECT con_id FROM "
                       "contacts_tasks WHERE tas_id=6)",
         "dgrid_con",
         "联系人名称",
         "con_id",
         {3}},
        {"ContactsOfADocument",
         panel::Document,
         query<Contact>(),
         9,
         kConColumns + " FROM que_contacts_accounts  WHERE con_id IN (SELECT con_id FROM "
                       "contacts_documents WHERE doc_id=9)",
         "dgrid_con",
         "联系人名称",
         "con_id",
         {2}},
        {"AccountsOfADeal",
         panel::Opportunity,
         query<Account>(),
         20,
         kAccColumns +
             " WHERE acc_id IN (SELECT acc_id FROM opportunities_accounts WHERE opp_id=20)",
         "dgrid_acc",
         "客户/单位名称",
         "acc_id",
         {10}},
        {"AccountsOfATask",
         panel::Task,
         query<Account>(),
         6,
         kAccColumns + " WHERE acc_id IN (SELECT acc_id FROM accounts_tasks WHERE tas_id=6)",
         "dgrid_acc",
         "客户/单位名称",
         "acc_id",
         {}},
        {"AccountsOfADocument",
         panel::Document,
         query<Account>(),
         9,
         kAccColumns + " WHERE acc_id IN (SELECT acc_id FROM accounts_documents WHERE doc_id=9)",
         "dgrid_acc",
         "客户/单位名称",
         "acc_id",
         {10}},
        {"DealsOfAnAccount",
         panel::Account,
         query<Opportunity>(),
         10,
         kOppColumns +
             " WHERE opp_id IN (SELECT opp_id FROM opportunities_accounts WHERE acc_id=10)",
         "dgrid_opp",
         "项目机会",
         "opp_id",
         {20}},
        {"DealsOfAContact",
         panel::Contact,
         query<Opportunity>(),
         1,
         kOppColumns +
             " WHERE opp_id IN (SELECT opp_id FROM opportunities_contacts WHERE con_id=1)",
         "dgrid_opp",
         "项目机会",
         "opp_id",
         {20}},
        {"DealsOfATask",
         panel::Task,
         query<Opportunity>(),
         6,
         kOppColumns + " WHERE opp_id IN (SELECT opp_id FROM opportunities_tasks WHERE tas_id=6)",
         "dgrid_opp",
         "项目机会",
         "opp_id",
         {}},
        {"DealsOfADocument",
         panel::Document,
         query<Opportunity>(),
         9,
         kOppColumns +
             " WHERE opp_id IN (SELECT opp_id FROM opportunities_documents WHERE doc_id=9)",
         "dgrid_opp",
         "项目机会",
         "opp_id",
         {}},
        {"DocumentsOfADeal",
         panel::Opportunity,
         query<document>(),
         20,
         kDocColumns +
             " WHERE doc_id IN (SELECT doc_id FROM opportunities_documents WHERE opp_id=20)",
         "dgrid_doc",
         "文档附件名称",
         "doc_id",
         {}},
        {"DocumentsOfATask",
         panel::Task,
         query<document>(),
         6,
         kDocColumns + " WHERE doc_id IN (SELECT doc_id FROM tasks_documents WHERE tas_id=6)",
         "dgrid_doc",
         "文档附件名称",
         "doc_id",
         {}},
        {"DocumentsOfAnAccount",
         panel::Account,
         query<document>(),
         10,
         kDocColumns + " WHERE doc_id IN (SELECT doc_id FROM accounts_documents WHERE acc_id=10)",
         "dgrid_doc",
         "文档附件名称",
         "doc_id",
         {9}},
        {"DocumentsOfAContact",
         panel::Contact,
         query<document>(),
         2,
         kDocColumns + " WHERE doc_id IN (SELECT doc_id FROM contacts_documents WHERE con_id=2)",
         "dgrid_doc",
         "文档附件名称",
         "doc_id",
         {9}},
    };
}

TEST_F(Panels, SetQueryPicksTheGridQueryByPanelName) {
    run("INSERT INTO contacts (con_id, con_lastname) VALUES (1, 'a'), (2, 'b'), (3, 'c'), (4, "
        "'d')");
    run("INSERT INTO accounts (acc_id, acc_name) VALUES (10, 'x'), (11, 'y')");
    run("INSERT INTO accounts_contacts (acc_id, con_id) VALUES (10, 1), (11, 2)");
    run("INSERT INTO opportunities (opp_id, opp_subject) VALUES (20, 'p')");
    run("INSERT INTO documents (doc_id, doc_name) VALUES (9, 'd')");
    run("INSERT INTO opportunities_contacts (opp_id, con_id) VALUES (20, 1), (20, 2)");
    run("INSERT INTO opportunities_accounts (opp_id, acc_id) VALUES (20, 10)");
    // Contact 1 is related to 2 as the first of the pair and to 3 as the second.
    run("INSERT INTO contacts_contacts (con_id1, con_id2) VALUES (1, 2), (3, 1), (2, 4)");
    run("INSERT INTO contacts_tasks (con_id, tas_id) VALUES (3, 6)");
    run("INSERT INTO contacts_documents (con_id, doc_id) VALUES (2, 9)");
    run("INSERT INTO accounts_documents (acc_id, doc_id) VALUES (10, 9)");
    for (const QueryCase& q : queryCases()) {
        SCOPED_TRACE(q.name);
        RecordingForm f(QLatin1String(q.panel));
        DataControl g;
        const QStringList statements = traced([&] { ASSERT_TRUE(q.setQuery(&f, &g, q.other)); });
        EXPECT_EQ(g.RecordSource, q.source);
        EXPECT_EQ(statements, QStringList{q.source});
        EXPECT_EQ(f.controlItems(QLatin1String(q.grid)).value(0),
                  QString::fromUtf8(q.firstCaption));
        // Each panel shows every kind but its own.
        const qint16 own = panel::kindOf(f.Name());
        EXPECT_EQ(f.property(QStringLiteral("iShowCon")).toInt(), own == kind::Contact ? 0 : 1);
        EXPECT_EQ(f.property(QStringLiteral("iShowAcc")).toInt(), own == kind::Account ? 0 : 1);
        EXPECT_EQ(f.property(QStringLiteral("iShowTas")).toInt(), own == kind::Task ? 0 : 1);
        QList<int> ids;
        for (g.Recordset->MoveFirst(); !g.Recordset->Eof(); g.Recordset->MoveNext())
            ids << keyOf(*g.Recordset, q.key);
        std::sort(ids.begin(), ids.end());
        EXPECT_EQ(ids, q.ids);
    }
    // An account has no grid on a contact's panel: nothing is touched.
    RecordingForm contactPanel(QLatin1String(panel::Contact));
    DataControl untouched;
    EXPECT_TRUE(query<Account>()(&contactPanel, &untouched, 1));
    EXPECT_TRUE(untouched.RecordSource.isEmpty());
}

TEST_F(Panels, UpdateIndexMovesTheContactToANewAccountAndRepositionsTheGrid) {
    run("INSERT INTO accounts (acc_id, acc_name, acc_industry) VALUES (10, '华信', 'IT')");
    run("INSERT INTO contacts (con_id, con_lastname) VALUES (1, '张三'), (2, '李四')");
    run("INSERT INTO accounts_contacts (acc_id, con_id) VALUES (10, 1)");
    run("INSERT INTO opportunities (opp_id, opp_subject) VALUES (20, '项目')");
    run("INSERT INTO opportunities_contacts (opp_id, con_id) VALUES (20, 2), (20, 1)");
    run("INSERT INTO opportunities_accounts (opp_id, acc_id, acc_part_in_opp) VALUES (20, 10, "
        "'甲方')");
    openPanel(panel::Opportunity, 20);
    Contact c;
    attach(c);
    ASSERT_TRUE(c.SetQuery(20));
    ASSERT_TRUE(c.ShowContact(1, true));

    // Same account, renamed in place: it keeps its key, its other fields and its role.
    form.setControlValue(QStringLiteral("txt_con_account"), QStringLiteral("华信集团"));
    form.setControlValue(QStringLiteral("txt_con_part"), QStringLiteral("用户"));
    ASSERT_TRUE(c.ChangeContact(1));
    Clock::advance(60);
    ASSERT_TRUE(c.UpdateIndex(1, true)) << c.ErrMsg().toStdString();
    EXPECT_EQ(scalar("SELECT acc_name FROM accounts WHERE acc_id=10").toString(),
              QStringLiteral("华信集团"));
    EXPECT_EQ(scalar("SELECT acc_industry FROM accounts WHERE acc_id=10").toString(),
              QStringLiteral("IT"));
    EXPECT_EQ(scalar("SELECT acc_part_in_opp FROM opportunities_accounts").toString(),
              QStringLiteral("甲方"));
    EXPECT_EQ(
        scalar("SELECT con_part_in_opp FROM opportunities_contacts WHERE con_id=1").toString(),
        QStringLiteral("用户"));
    EXPECT_EQ(scalar("SELECT con_recent_contact_date FROM contacts WHERE con_id=1").toDateTime(),
              Clock::now());
    EXPECT_EQ(gridId("con_id"), 1);

    // Another account (the panel cleared the key to create one): the contact moves.
    ASSERT_TRUE(c.ShowContact(1, true));
    form.setControlValue(QStringLiteral("txt_con_account"), QStringLiteral("东方贸易"));
    ASSERT_TRUE(c.ChangeContact(1));
    c.Account().setID(0);
    ASSERT_TRUE(c.UpdateIndex(1, false)) << c.ErrMsg().toStdString();
    const int moved = c.Account().ID();
    EXPECT_GT(moved, 10);
    EXPECT_EQ(count("SELECT COUNT(*) FROM accounts_contacts WHERE con_id=1"), 1);
    EXPECT_EQ(count("SELECT acc_id FROM accounts_contacts WHERE con_id=1"), moved);
    EXPECT_EQ(
        scalar("SELECT acc_name FROM accounts WHERE acc_id=" + QString::number(moved)).toString(),
        QStringLiteral("东方贸易"));
    EXPECT_EQ(count("SELECT COUNT(*) FROM opportunities_accounts WHERE opp_id=20"), 2);
    EXPECT_EQ(form.property(QStringLiteral("OldAccountID")).toInt(), moved);
    EXPECT_EQ(gridId("con_id"), 1);
}

TEST_F(Panels, ARelatedContactIsAddedAndEditedThroughTheJoinedGrid) {
    run("INSERT INTO contacts (con_id, con_lastname) VALUES (1, '张三')");
    openPanel(panel::Contact, 1);
    Contact c;
    attach(c);
    ASSERT_TRUE(c.SetQuery(1));
    form.setControlValue(QStringLiteral("txt_con_name"), QStringLiteral("李四"));
    form.setControlValue(QStringLiteral("txt_con_part"), QStringLiteral("表兄's"));
    ASSERT_TRUE(c.AddContact());
    ASSERT_TRUE(c.AddToList()) << c.ErrMsg().toStdString();
    EXPECT_EQ(c.ID(), 2);
    EXPECT_EQ(scalar("SELECT con_relation FROM contacts_contacts WHERE con_id1=2 AND con_id2=1")
                  .toString(),
              QStringLiteral("表兄's"));
    EXPECT_EQ(count("SELECT COUNT(*) FROM accounts_contacts"), 0);

    ASSERT_TRUE(c.SetQuery(1));
    ASSERT_EQ(gridId("con_id"), 2);
    form.setControlValue(QStringLiteral("txt_con_name"), QStringLiteral("李四四"));
    ASSERT_TRUE(c.ChangeContact(2));
    ASSERT_TRUE(c.UpdateIndex(2, false)) << c.ErrMsg().toStdString();
    EXPECT_EQ(scalar("SELECT con_lastname FROM contacts WHERE con_id=2").toString(),
              QStringLiteral("李四四"));
    EXPECT_EQ(count("SELECT COUNT(*) FROM contacts_contacts"), 1);
    EXPECT_EQ(gridId("con_id"), 2);
}

TEST_F(Panels, OpportunityReadersConvertTheComboAndClearThePrivacyFlag) {
    run("INSERT INTO accounts (acc_id, acc_name) VALUES (10, '华信')");
    openPanel(panel::Account, 10);
    Opportunity o;
    attach(o);
    ASSERT_TRUE(o.SetQuery(10));
    form.setControlValue(QStringLiteral("txt_opp_name"), QStringLiteral("数据中心"));
    form.setControlValue(QStringLiteral("dt_opp_enddate"), QDate(2026, 9, 30));
    form.setControlValue(QStringLiteral("txt_opp_revenue"), QStringLiteral("1,200.50"));
    form.setControlValue(QStringLiteral("txt_opp_revenue2"), QString());
    form.setControlValue(QStringLiteral("cbo_opp_probability"), QStringLiteral("80%"));
    ASSERT_TRUE(o.AddOpportunity());
    EXPECT_EQ(o.Probability(), 80);
    EXPECT_EQ(o.ESale().units(), 12005000);
    EXPECT_EQ(o.Sale().units(), 0);
    ASSERT_TRUE(o.AddToList()) << o.ErrMsg().toStdString();
    EXPECT_EQ(count("SELECT COUNT(*) FROM opportunities_accounts WHERE opp_id=1 AND acc_id=10"), 1);
    EXPECT_EQ(scalar("SELECT opp_die_date FROM opportunities").toDateTime(),
              jetdate::naive(QDate(2026, 9, 30)));
    EXPECT_EQ(form.property(QStringLiteral("g_OppID")).toInt(), 1);

    run("UPDATE opportunities SET opp_private=1");
    ASSERT_TRUE(o.ShowOpportunity(1, true));
    EXPECT_EQ(text("cbo_opp_probability"), QStringLiteral("80%"));
    EXPECT_EQ(text("txt_opp_revenue"), QStringLiteral("1200.5"));
    EXPECT_EQ(form.raisedDuring.value(QStringLiteral("txt_opp_name")),
              QStringList{QStringLiteral("bCantChgFlag_OppName")});
    form.setControlValue(QStringLiteral("cbo_opp_probability"), QString());
    ASSERT_TRUE(o.ChangeOpportunity(1));
    EXPECT_EQ(o.Probability(), 0);
    ASSERT_TRUE(o.UpdateIndex(1)) << o.ErrMsg().toStdString();
    EXPECT_EQ(count("SELECT opp_private FROM opportunities WHERE opp_id=1"), 0);
    EXPECT_EQ(count("SELECT opp_succeed_probability FROM opportunities WHERE opp_id=1"), 0);
    EXPECT_EQ(gridId("opp_id"), 1);

    form.setControlValue(QStringLiteral("txt_opp_revenue"), QStringLiteral("很多"));
    EXPECT_FALSE(o.AddOpportunity());
    EXPECT_TRUE(o.ErrMsg().startsWith(QStringLiteral("AddOpportunity出错，原因可能是")));
}

TEST_F(Panels, AccountsAndDocumentsAddedFromAPanelAreLinkedToItsRecord) {
    run("INSERT INTO documents (doc_id, doc_name) VALUES (9, '合同')");
    run("INSERT INTO tasks (tas_id, tas_subject) VALUES (6, '拜访')");
    openPanel(panel::Document, 9);
    Account a;
    attach(a);
    ASSERT_TRUE(a.SetQuery(9));
    form.setControlValue(QStringLiteral("txt_acc_name"), QStringLiteral("华信"));
    form.setControlValue(QStringLiteral("cbo_acc_type"), QStringLiteral("客户"));
    ASSERT_TRUE(a.AddAccount());
    ASSERT_TRUE(a.AddToList()) << a.ErrMsg().toStdString();
    EXPECT_EQ(count("SELECT COUNT(*) FROM accounts_documents WHERE acc_id=1 AND doc_id=9"), 1);
    EXPECT_EQ(form.property(QStringLiteral("g_AccID")).toInt(), 1);

    // A document and a contact added on a task's panel; the contact's account follows it.
    openPanel(panel::Task, 6);
    document d;
    attach(d);
    ASSERT_TRUE(d.SetQuery(6));
    form.setControlValue(QStringLiteral("txt_doc_name"), QStringLiteral("纪要"));
    form.setControlValue(QStringLiteral("txt_doc_path"), QStringLiteral("/tmp/纪要.txt"));
    ASSERT_TRUE(d.AddDocument());
    ASSERT_TRUE(d.AddToList()) << d.ErrMsg().toStdString();
    EXPECT_EQ(d.ID(), 10);
    EXPECT_EQ(count("SELECT COUNT(*) FROM tasks_documents WHERE doc_id=10 AND tas_id=6"), 1);
    ASSERT_TRUE(d.ShowDocument(10, true));
    EXPECT_EQ(text("txt_doc_createdate"), QStringLiteral("2026-3-2"));
    EXPECT_EQ(form.property(QStringLiteral("g_DocID")).toInt(), 10);

    Contact c;
    attach(c);
    ASSERT_TRUE(c.SetQuery(6));
    form.setControlValue(QStringLiteral("txt_con_name"), QStringLiteral("赵六"));
    form.setControlValue(QStringLiteral("txt_con_account"), QStringLiteral("东方"));
    ASSERT_TRUE(c.AddContact());
    ASSERT_TRUE(c.AddToList()) << c.ErrMsg().toStdString();
    EXPECT_EQ(count("SELECT COUNT(*) FROM contacts_tasks WHERE con_id=1 AND tas_id=6"), 1);
    EXPECT_EQ(count("SELECT COUNT(*) FROM accounts_tasks WHERE acc_id=2 AND tas_id=6"), 1);
}

TEST_F(Panels, ANewContactOnAnAccountPanelJoinsThatAccount) {
    run("INSERT INTO accounts (acc_id, acc_name) VALUES (10, '华信')");
    openPanel(panel::Account, 10);
    Contact c;
    attach(c);
    ASSERT_TRUE(c.SetQuery(10));
    form.setControlValue(QStringLiteral("txt_con_name"), QStringLiteral("新人"));
    form.setControlValue(QStringLiteral("txt_con_account"), QStringLiteral("华信"));
    ASSERT_TRUE(c.AddContact());
    ASSERT_TRUE(c.AddToList()) << c.ErrMsg().toStdString();
    EXPECT_EQ(count("SELECT COUNT(*) FROM accounts"), 1);
    EXPECT_EQ(count("SELECT COUNT(*) FROM accounts_contacts WHERE acc_id=10 AND con_id=1"), 1);
    ASSERT_TRUE(c.SetQuery(10));
    EXPECT_EQ(gridId("con_id"), 1);
}

TEST_F(Panels, PanelOperationsWithoutAFormFailInsteadOfCrashing) {
    Contact c;
    EXPECT_FALSE(c.AddContact());
    EXPECT_FALSE(c.AddToList());
    const QStringList parts = c.ErrMsg().split(QStringLiteral(" ; "));
    ASSERT_EQ(parts.size(), 2);
    EXPECT_TRUE(parts[0].startsWith(QStringLiteral("AddContact出错，原因可能是")));
    EXPECT_TRUE(parts[1].startsWith(QStringLiteral("AddToList出错，原因可能是")));
}

}  // namespace
