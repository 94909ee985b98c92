// The relation matrix: each class x kind of AddRelative, DeleteRelative and
// DeleteRelation, checked by the exact statements issued, the link rows left
// behind and the "recent" stamps moved.

#include <QFile>
#include <algorithm>
#include <functional>
#include <type_traits>
#include <vector>

#include "records/account.h"
#include "records/contact.h"
#include "records/document.h"
#include "records/opportunity.h"
#include "store/connectionstring.h"
#include "tests/records/recordfixture.h"

using namespace tarvel;

namespace {

enum class Cls { Contact, Account, Opportunity, Document };

// Distinct keys for every record, so a swapped id shows in the statements.
// Contacts 3 and 7, accounts 4 and 8, opportunity 5, task 6, document 9.
struct Ref {
    qint16 kind;
    int id;
};

const char* recentColumn(qint16 k) {
    switch (k) {
        case kind::Contact:
            return "con_recent_contact_date FROM contacts WHERE con_id=";
        case kind::Account:
            return "acc_recent_contact_date FROM accounts WHERE acc_id=";
        case kind::Opportunity:
            return "opp_recent_contact_date FROM opportunities WHERE opp_id=";
        case kind::Task:
            return "tas_recent_contact_date FROM tasks WHERE tas_id=";
        default:
            return "doc_recentedit_date FROM documents WHERE doc_id=";
    }
}

const std::vector<Ref> kAllRecords = {
    {kind::Contact, 3},     {kind::Contact, 7}, {kind::Account, 4}, {kind::Account, 8},
    {kind::Opportunity, 5}, {kind::Task, 6},    {kind::Document, 9}};

class Relations : public records_test::RecordFixture {
protected:
    void SetUp() override {
        const QString old = QStringLiteral("#2020-1-1 8:00:00#");
        for (int id : {3, 7})
            run(QStringLiteral("INSERT INTO contacts (con_id, con_lastname, "
                               "con_recent_contact_date) VALUES (%1, '联系人%1', %2)")
                    .arg(id)
                    .arg(old));
        for (int id : {4, 8})
            run(QStringLiteral("INSERT INTO accounts (acc_id, acc_name, acc_recent_contact_date) "
                               "VALUES (%1, '单位%1', %2)")
                    .arg(id)
                    .arg(old));
        run(QStringLiteral("INSERT INTO opportunities (opp_id, opp_subject, "
                           "opp_recent_contact_date) VALUES (5, '项目', %1)")
                .arg(old));
        run(QStringLiteral("INSERT INTO tasks (tas_id, tas_subject, tas_recent_contact_date) "
                           "VALUES (6, '拜访', %1)")
                .arg(old));
        run(QStringLiteral("INSERT INTO documents (doc_id, doc_name, doc_recentedit_date) VALUES "
                           "(9, '合同', %1)")
                .arg(old));
        Clock::advance(3600);
    }

    QDateTime recent(const Ref& r) {
        return scalar(QStringLiteral("SELECT ") + QLatin1String(recentColumn(r.kind)) +
                      QString::number(r.id))
            .toDateTime();
    }

    // Every record but those in `stamped` keeps its old date; those carry now.
    void expectStamps(const std::vector<Ref>& stamped) {
        for (const Ref& r : kAllRecords) {
            const bool expected = std::any_of(stamped.begin(), stamped.end(), [&](const Ref& s) {
                return s.kind == r.kind && s.id == r.id;
            });
            EXPECT_EQ(recent(r),
                      expected ? Clock::now() : jetdate::naive(QDate(2020, 1, 1), QTime(8, 0)))
                << "kind " << r.kind << " id " << r.id;
        }
    }
};

struct Outcome {
    bool ok;
    QString errMsg;
};

// Runs `call` on a record of the class with key `self`.
template <typename Call>
Outcome on(Cls cls, int self, Call&& call) {
    auto run = [&](auto record) {
        record.setID(self);
        const bool ok = call(record);
        return Outcome{ok, record.ErrMsg()};
    };
    switch (cls) {
        case Cls::Contact:
            return run(Contact());
        case Cls::Account:
            return run(Account());
        case Cls::Opportunity:
            return run(Opportunity());
        case Cls::Document:
            return run(document());
    }
    return {false, QString()};
}

Outcome addRelative(Cls cls, int self, qint16 k, int other, const QString& text) {
    return on(cls, self, [&](auto& r) {
        using R = std::decay_t<decltype(r)>;
        if constexpr (std::is_same_v<R, Contact> || std::is_same_v<R, Account>)
            return r.AddRelative(k, other, text);
        else
            return r.AddRelative(k, other);
    });
}

Outcome deleteRelative(Cls cls, int self, qint16 k, int other) {
    return on(cls, self, [&](auto& r) { return r.DeleteRelative(k, other); });
}

struct AddCase {
    const char* name;
    Cls cls;
    int self;
    qint16 kind;
    int other;
    const char* text;
    QStringList statements;
    const char* link;  // counts the link row afterwards (1 expected); null: no link is made
    std::vector<Ref> stamped;
};

const QString kStampC3 =
    QStringLiteral("UPDATE contacts SET con_recent_contact_date=now WHERE con_id=3");
const QString kStampC7 =
    QStringLiteral("UPDATE contacts SET con_recent_contact_date=now WHERE con_id=7");
const QString kStampA4 =
    QStringLiteral("UPDATE accounts SET acc_recent_contact_date=now  WHERE acc_id= 4");
const QString kStampA8 =
    QStringLiteral("UPDATE accounts SET acc_recent_contact_date=now  WHERE acc_id= 8");
const QString kStampO5 =
    QStringLiteral("UPDATE opportunities SET opp_recent_contact_date=now  WHERE opp_id=5");
const QString kStampT6 =
    QStringLiteral("UPDATE tasks SET tas_recent_contact_date=now WHERE tas_id=6");
const QString kStampD9 =
    QStringLiteral("UPDATE documents SET doc_recentedit_date=now WHERE doc_id=9");

const Ref C3{kind::Contact, 3}, C7{kind::Contact, 7}, A4{kind::Account, 4}, A8{kind::Account, 8},
    O5{kind::Opportunity, 5}, T6{kind::Task, 6}, D9{kind::Document, 9};

const std::vector<AddCase> kAddCases = {
    {"ContactOpportunity",
     Cls::Contact,
     3,
     kind::Opportunity,
     5,
     "O'Brien's buyer",
     {kStampC3, "SELECT * FROM opportunities_contacts WHERE con_id=3 AND opp_id=5", kStampO5,
      "INSERT INTO opportunities_contacts(con_id,opp_id,con_part_in_opp) "
      "VALUES(3,5,'O''Brien''s buyer')"},
     "SELECT COUNT(*) FROM opportunities_contacts WHERE con_id=3 AND opp_id=5 AND "
     "con_part_in_opp='O''Brien''s buyer'",
     {C3, O5}},
    {"ContactAccount",
     Cls::Contact,
     3,
     kind::Account,
     8,
     "",
     {kStampC3, "SELECT * FROM   accounts_contacts  WHERE  con_id = 3", kStampA8,
      "INSERT INTO accounts_contacts(con_id,acc_id) VALUES(3,8)",
      "SELECT * FROM   accounts_contacts "},
     "SELECT COUNT(*) FROM accounts_contacts WHERE con_id=3 AND acc_id=8",
     {C3, A8}},
    {"ContactContact",
     Cls::Contact,
     3,
     kind::Contact,
     7,
     "同学",
     {kStampC3,
      "SELECT * FROM contacts_contacts WHERE (con_id1=3 AND con_id2=7) OR (con_id2=3 AND "
      "con_id1=7)",
      kStampC7, "INSERT INTO contacts_contacts(con_id1,con_id2,con_relation) VALUES(3,7,'同学')"},
     "SELECT COUNT(*) FROM contacts_contacts WHERE con_id1=3 AND con_id2=7 AND con_relation='同学'",
     {C3, C7}},
    {"ContactTask",
     Cls::Contact,
     3,
     kind::Task,
     6,
     "ignored",
     {kStampC3, "SELECT * FROM contacts_tasks WHERE con_id=3 AND tas_id=6", kStampT6,
      "INSERT INTO contacts_tasks (con_id,tas_id) VALUES(3,6)"},
     "SELECT COUNT(*) FROM contacts_tasks WHERE con_id=3 AND tas_id=6",
     {C3, T6}},
    {"ContactDocument",
     Cls::Contact,
     3,
     kind::Document,
     9,
     "",
     {kStampC3, "SELECT * FROM contacts_documents WHERE con_id=3 AND doc_id=9", kStampD9,
      "INSERT INTO contacts_documents (con_id,doc_id) VALUES(3,9)"},
     "SELECT COUNT(*) FROM contacts_documents WHERE con_id=3 AND doc_id=9",
     {C3, D9}},
    {"AccountOpportunity",
     Cls::Account,
     4,
     kind::Opportunity,
     5,
     "甲方's",
     {kStampA4, "SELECT acc_part_in_opp FROM opportunities_accounts WHERE acc_id=4 AND opp_id=5",
      kStampO5,
      "INSERT INTO opportunities_accounts(acc_id,opp_id,acc_part_in_opp) VALUES(4,5, '甲方''s')"},
     "SELECT COUNT(*) FROM opportunities_accounts WHERE acc_id=4 AND opp_id=5 AND "
     "acc_part_in_opp='甲方''s'",
     {A4, O5}},
    {"AccountAccountOnlyStamps", Cls::Account, 4, kind::Account, 8, "", {kStampA4}, nullptr, {A4}},
    {"AccountContactOnlyStamps", Cls::Account, 4, kind::Contact, 7, "", {kStampA4}, nullptr, {A4}},
    {"AccountTask",
     Cls::Account,
     4,
     kind::Task,
     6,
     "",
     {kStampA4, "SELECT * FROM accounts_tasks WHERE acc_id=4 and tas_id=6", kStampT6,
      "INSERT INTO accounts_tasks (acc_id, tas_id) VALUES ( 4,6)"},
     "SELECT COUNT(*) FROM accounts_tasks WHERE acc_id=4 AND tas_id=6",
     {A4, T6}},
    {"AccountDocument",
     Cls::Account,
     4,
     kind::Document,
     9,
     "",
     {kStampA4, "SELECT * FROM accounts_documents WHERE acc_id=4 and doc_id=9", kStampD9,
      "INSERT INTO accounts_documents (acc_id, doc_id) VALUES ( 4,9)"},
     "SELECT COUNT(*) FROM accounts_documents WHERE acc_id=4 AND doc_id=9",
     {A4, D9}},
    {"OpportunityOpportunityOnlyStamps",
     Cls::Opportunity,
     5,
     kind::Opportunity,
     5,
     "",
     {kStampO5},
     nullptr,
     {O5}},
    {"OpportunityAccount",
     Cls::Opportunity,
     5,
     kind::Account,
     8,
     "",
     {kStampO5, "SELECT  * FROM opportunities_accounts WHERE opp_id = 5 AND acc_id= 8", kStampA8,
      "INSERT INTO opportunities_accounts(opp_id,acc_id) VALUES(5,8)"},
     "SELECT COUNT(*) FROM opportunities_accounts WHERE opp_id=5 AND acc_id=8 AND "
     "acc_part_in_opp IS NULL",
     {O5, A8}},
    {"OpportunityContact",
     Cls::Opportunity,
     5,
     kind::Contact,
     7,
     "",
     {kStampO5, "SELECT * FROM opportunities_contacts WHERE opp_id = 5 AND con_id= 7", kStampC7,
      "INSERT INTO opportunities_contacts(opp_id,con_id) VALUES(5,7)"},
     "SELECT COUNT(*) FROM opportunities_contacts WHERE opp_id=5 AND con_id=7",
     {O5, C7}},
    {"OpportunityTask",
     Cls::Opportunity,
     5,
     kind::Task,
     6,
     "",
     {kStampO5, "SELECT * FROM opportunities_tasks WHERE opp_id = 5 AND tas_id= 6", kStampT6,
      "INSERT INTO opportunities_tasks(opp_id,tas_id) VALUES(5,6)"},
     "SELECT COUNT(*) FROM opportunities_tasks WHERE opp_id=5 AND tas_id=6",
     {O5, T6}},
    {"OpportunityDocument",
     Cls::Opportunity,
     5,
     kind::Document,
     9,
     "",
     {kStampO5, "SELECT * FROM opportunities_documents WHERE opp_id = 5 AND doc_id= 9", kStampD9,
      "INSERT INTO opportunities_documents(opp_id,doc_id) VALUES(5,9)"},
     "SELECT COUNT(*) FROM opportunities_documents WHERE opp_id=5 AND doc_id=9",
     {O5, D9}},
    {"DocumentOpportunity",
     Cls::Document,
     9,
     kind::Opportunity,
     5,
     "",
     {kStampD9, "SELECT * FROM opportunities_documents WHERE doc_id=9 AND opp_id=5", kStampO5,
      "INSERT INTO  opportunities_documents  (doc_id, opp_id) VALUES ( 9,5)"},
     "SELECT COUNT(*) FROM opportunities_documents WHERE doc_id=9 AND opp_id=5",
     {D9, O5}},
    {"DocumentAccount",
     Cls::Document,
     9,
     kind::Account,
     4,
     "",
     {kStampD9, "SELECT * FROM accounts_documents WHERE doc_id=9 and acc_id=4", kStampA4,
      "INSERT INTO accounts_documents (doc_id, acc_id) VALUES ( 9,4)"},
     "SELECT COUNT(*) FROM accounts_documents WHERE doc_id=9 AND acc_id=4",
     {D9, A4}},
    {"DocumentContact",
     Cls::Document,
     9,
     kind::Contact,
     3,
     "",
     {kStampD9, "SELECT * FROM contacts_documents WHERE doc_id=9 and con_id=3", kStampC3,
      "INSERT INTO contacts_documents (doc_id, con_id) VALUES ( 9,3)"},
     "SELECT COUNT(*) FROM contacts_documents WHERE doc_id=9 AND con_id=3",
     {D9, C3}},
    {"DocumentTask",
     Cls::Document,
     9,
     kind::Task,
     6,
     "",
     {kStampD9, "SELECT * FROM tasks_documents WHERE doc_id=9 and tas_id=6", kStampT6,
      "INSERT INTO tasks_documents (doc_id, tas_id) VALUES ( 9,6)"},
     "SELECT COUNT(*) FROM tasks_documents WHERE doc_id=9 AND tas_id=6",
     {D9, T6}},
    {"DocumentDocumentOnlyStamps",
     Cls::Document,
     9,
     kind::Document,
     9,
     "",
     {kStampD9},
     nullptr,
     {D9}},
};

// Every link row that could exist between the seeded records.
const char* kLinkTables[] = {
    "accounts_contacts",   "opportunities_contacts",  "contacts_contacts", "contacts_tasks",
    "contacts_documents",  "opportunities_accounts",  "accounts_tasks",    "accounts_documents",
    "opportunities_tasks", "opportunities_documents", "tasks_documents"};

class AddRelativeMatrix : public Relations, public ::testing::WithParamInterface<AddCase> {};

TEST_P(AddRelativeMatrix, IssuesTheStatementsLinksAndStamps) {
    const AddCase& c = GetParam();
    Outcome outcome{};
    const QStringList statements = traced(
        [&] { outcome = addRelative(c.cls, c.self, c.kind, c.other, QString::fromUtf8(c.text)); });
    ASSERT_TRUE(outcome.ok) << outcome.errMsg.toStdString();
    EXPECT_TRUE(outcome.errMsg.isEmpty());
    EXPECT_EQ(statements, c.statements);
    int links = 0;
    for (const char* table : kLinkTables)
        links += count(QStringLiteral("SELECT COUNT(*) FROM ") + QLatin1String(table));
    if (c.link) {
        EXPECT_EQ(count(QString::fromUtf8(c.link)), 1);
        EXPECT_EQ(links, 1);
    } else {
        EXPECT_EQ(links, 0);
    }
    expectStamps(c.stamped);
}

INSTANTIATE_TEST_SUITE_P(EachClassAndKind, AddRelativeMatrix, ::testing::ValuesIn(kAddCases),
                         [](const auto& info) { return std::string(info.param.name); });

struct DeleteCase {
    const char* name;
    Cls cls;
    int self;
    qint16 kind;
    int other;
    const char* setup;  // the link row the call removes
    QStringList statements;
    const char* gone;  // counts what must be gone afterwards
    std::vector<Ref> stamped;
};

const std::vector<DeleteCase> kDeleteCases = {
    {"ContactOpportunity",
     Cls::Contact,
     3,
     kind::Opportunity,
     5,
     "INSERT INTO opportunities_contacts (con_id, opp_id) VALUES (3, 5)",
     {kStampC3, kStampO5, "DELETE * FROM opportunities_contacts WHERE con_id=3 AND opp_id=5"},
     "SELECT COUNT(*) FROM opportunities_contacts",
     {C3, O5}},
    {"ContactAccountWhateverTheOtherId",
     Cls::Contact,
     3,
     kind::Account,
     8,
     "INSERT INTO accounts_contacts (con_id, acc_id) VALUES (3, 4)",
     {kStampC3, kStampA8, "DELETE * FROM accounts_contacts WHERE con_id=3",
      "SELECT * FROM   accounts_contacts  WHERE  con_id = 3"},
     "SELECT COUNT(*) FROM accounts_contacts",
     {C3, A8}},
    {"ContactContactStoredTheOtherWay",
     Cls::Contact,
     3,
     kind::Contact,
     7,
     "INSERT INTO contacts_contacts (con_id1, con_id2) VALUES (7, 3)",
     {kStampC3, kStampC7,
      "DELETE * FROM contacts_contacts WHERE (con_id1=3 AND con_id2=7) OR (con_id2=3 AND "
      "con_id1=7)"},
     "SELECT COUNT(*) FROM contacts_contacts",
     {C3, C7}},
    {"ContactTask",
     Cls::Contact,
     3,
     kind::Task,
     6,
     "INSERT INTO contacts_tasks (con_id, tas_id) VALUES (3, 6)",
     {kStampC3, kStampT6, "DELETE * FROM contacts_tasks WHERE con_id=3 AND tas_id=6"},
     "SELECT COUNT(*) FROM contacts_tasks",
     {C3, T6}},
    {"ContactDocument",
     Cls::Contact,
     3,
     kind::Document,
     9,
     "INSERT INTO contacts_documents (con_id, doc_id) VALUES (3, 9)",
     {kStampC3, kStampD9, "DELETE * FROM contacts_documents WHERE con_id=3 AND doc_id=9"},
     "SELECT COUNT(*) FROM contacts_documents",
     {C3, D9}},
    {"AccountOpportunity",
     Cls::Account,
     4,
     kind::Opportunity,
     5,
     "INSERT INTO opportunities_accounts (acc_id, opp_id) VALUES (4, 5)",
     {kStampA4, kStampO5, "DELETE * FROM opportunities_accounts WHERE acc_id=4 AND opp_id=5"},
     "SELECT COUNT(*) FROM opportunities_accounts",
     {A4, O5}},
    {"AccountContact",
     Cls::Account,
     4,
     kind::Contact,
     7,
     "INSERT INTO accounts_contacts (acc_id, con_id) VALUES (4, 7)",
     {kStampA4, kStampC7, "DELETE * FROM accounts_contacts WHERE acc_id=4 AND con_id=7"},
     "SELECT COUNT(*) FROM accounts_contacts",
     {A4, C7}},
    {"AccountTask",
     Cls::Account,
     4,
     kind::Task,
     6,
     "INSERT INTO accounts_tasks (acc_id, tas_id) VALUES (4, 6)",
     {kStampA4, kStampT6, "DELETE * FROM accounts_tasks WHERE acc_id=4 AND tas_id=6"},
     "SELECT COUNT(*) FROM accounts_tasks",
     {A4, T6}},
    {"AccountDocument",
     Cls::Account,
     4,
     kind::Document,
     9,
     "INSERT INTO accounts_documents (acc_id, doc_id) VALUES (4, 9)",
     {kStampA4, kStampD9, "DELETE * FROM accounts_documents WHERE acc_id=4 AND doc_id=9"},
     "SELECT COUNT(*) FROM accounts_documents",
     {A4, D9}},
    {"OpportunityAccount",
     Cls::Opportunity,
     5,
     kind::Account,
     8,
     "INSERT INTO opportunities_accounts (opp_id, acc_id) VALUES (5, 8)",
     {"DELETE * FROM opportunities_accounts WHERE opp_id=5 AND acc_id=8"},
     "SELECT COUNT(*) FROM opportunities_accounts",
     {}},
    {"OpportunityContact",
     Cls::Opportunity,
     5,
     kind::Contact,
     7,
     "INSERT INTO opportunities_contacts (opp_id, con_id) VALUES (5, 7)",
     {"DELETE * FROM opportunities_contacts WHERE opp_id=5 AND con_id=7"},
     "SELECT COUNT(*) FROM opportunities_contacts",
     {}},
    {"OpportunityTask",
     Cls::Opportunity,
     5,
     kind::Task,
     6,
     "INSERT INTO opportunities_tasks (opp_id, tas_id) VALUES (5, 6)",
     {"DELETE * FROM opportunities_tasks WHERE opp_id=5 AND tas_id=6"},
     "SELECT COUNT(*) FROM opportunities_tasks",
     {}},
    {"OpportunityDocument",
     Cls::Opportunity,
     5,
     kind::Document,
     9,
     "INSERT INTO opportunities_documents (opp_id, doc_id) VALUES (5, 9)",
     {"DELETE * FROM opportunities_documents WHERE opp_id=5 AND doc_id=9"},
     "SELECT COUNT(*) FROM opportunities_documents",
     {}},
    {"DocumentOpportunity",
     Cls::Document,
     9,
     kind::Opportunity,
     5,
     "INSERT INTO opportunities_documents (doc_id, opp_id) VALUES (9, 5)",
     {"DELETE * FROM opportunities_documents WHERE doc_id=9 AND opp_id=5"},
     "SELECT COUNT(*) FROM opportunities_documents",
     {}},
    {"DocumentAccount",
     Cls::Document,
     9,
     kind::Account,
     4,
     "INSERT INTO accounts_documents (doc_id, acc_id) VALUES (9, 4)",
     {"DELETE * FROM accounts_documents WHERE doc_id=9 AND acc_id=4"},
     "SELECT COUNT(*) FROM accounts_documents",
     {}},
    {"DocumentContact",
     Cls::Document,
     9,
     kind::Contact,
     3,
     "INSERT INTO contacts_documents (doc_id, con_id) VALUES (9, 3)",
     {"DELETE * FROM contacts_documents WHERE  doc_id=9 AND con_id=3"},
     "SELECT COUNT(*) FROM contacts_documents",
     {}},
    {"DocumentTask",
     Cls::Document,
     9,
     kind::Task,
     6,
     "INSERT INTO tasks_documents (doc_id, tas_id) VALUES (9, 6)",
     {"DELETE * FROM tasks_documents WHERE doc_id=9 AND tas_id=6"},
     "SELECT COUNT(*) FROM tasks_documents",
     {}},
};

class DeleteRelativeMatrix : public Relations, public ::testing::WithParamInterface<DeleteCase> {};

TEST_P(DeleteRelativeMatrix, IssuesTheStatementsRemovesTheLinkAndStamps) {
    const DeleteCase& c = GetParam();
    run(QString::fromUtf8(c.setup));
    Outcome outcome{};
    const QStringList statements =
        traced([&] { outcome = deleteRelative(c.cls, c.self, c.kind, c.other); });
    ASSERT_TRUE(outcome.ok) << outcome.errMsg.toStdString();
    EXPECT_EQ(statements, c.statements);
    EXPECT_EQ(count(QString::fromUtf8(c.gone)), 0);
    expectStamps(c.stamped);
    if (c.cls == Cls::Contact) {
        // The contact keeps a trace of what it executed; the read-back is no execution.
        QStringList executed = c.statements;
        if (c.kind == kind::Account) executed.removeLast();
        EXPECT_EQ(outcome.errMsg, executed.join(QStringLiteral(" ; ")));
    } else {
        EXPECT_TRUE(outcome.errMsg.isEmpty());
    }
}

INSTANTIATE_TEST_SUITE_P(EachClassAndKind, DeleteRelativeMatrix, ::testing::ValuesIn(kDeleteCases),
                         [](const auto& info) { return std::string(info.param.name); });

struct CascadeCase {
    const char* name;
    Cls cls;
    int id;
    const char* key;  // the record's key column in the link tables
    QStringList statements;
};

const std::vector<CascadeCase> kCascadeCases = {
    {"Contact",
     Cls::Contact,
     3,
     "con_id",
     {"DELETE * FROM accounts_contacts WHERE con_id=3",
      "DELETE * FROM opportunities_contacts WHERE con_id=3",
      "DELETE * FROM contacts_contacts WHERE con_id1=3 OR  con_id2=3",
      "DELETE * FROM contacts_tasks WHERE con_id=3",
      "DELETE * FROM contacts_documents WHERE con_id=3"}},
    {"Account",
     Cls::Account,
     4,
     "acc_id",
     {"DELETE * FROM accounts_contacts WHERE acc_id=4",
      "DELETE * FROM opportunities_accounts WHERE acc_id=4",
      "DELETE * FROM accounts_tasks WHERE acc_id=4",
      "DELETE * FROM accounts_documents WHERE acc_id=4"}},
    {"Opportunity",
     Cls::Opportunity,
     5,
     "opp_id",
     {"DELETE * FROM opportunities_accounts WHERE opp_id=5",
      "DELETE * FROM opportunities_contacts WHERE opp_id=5",
      "DELETE * FROM opportunities_tasks WHERE opp_id=5",
      "DELETE * FROM opportunities_documents WHERE opp_id=5"}},
    {"Document",
     Cls::Document,
     9,
     "doc_id",
     {"DELETE * FROM opportunities_documents WHERE doc_id=9",
      "DELETE * FROM contacts_documents WHERE doc_id=9",
      "DELETE * FROM accounts_documents WHERE doc_id=9",
      "DELETE * FROM tasks_documents WHERE doc_id=9"}},
};

class DeleteRelationCascade : public Relations,
                              public ::testing::WithParamInterface<CascadeCase> {};

TEST_P(DeleteRelationCascade, RemovesEveryLinkNamingTheRecordOnly) {
    const CascadeCase& c = GetParam();
    // One row per link table, each joining two of the seeded records.
    for (const char* sql : {
             "INSERT INTO accounts_contacts (acc_id, con_id) VALUES (4, 3)",
             "INSERT INTO opportunities_contacts (opp_id, con_id) VALUES (5, 3)",
             "INSERT INTO contacts_contacts (con_id1, con_id2) VALUES (7, 3)",
             "INSERT INTO contacts_tasks (con_id, tas_id) VALUES (3, 6)",
             "INSERT INTO contacts_documents (con_id, doc_id) VALUES (3, 9)",
             "INSERT INTO opportunities_accounts (opp_id, acc_id) VALUES (5, 4)",
             "INSERT INTO accounts_tasks (acc_id, tas_id) VALUES (4, 6)",
             "INSERT INTO accounts_documents (acc_id, doc_id) VALUES (4, 9)",
             "INSERT INTO opportunities_tasks (opp_id, tas_id) VALUES (5, 6)",
             "INSERT INTO opportunities_documents (opp_id, doc_id) VALUES (5, 9)",
             "INSERT INTO tasks_documents (tas_id, doc_id) VALUES (6, 9)",
         })
        run(QString::fromLatin1(sql));
    Outcome outcome{};
    const QStringList statements =
        traced([&] { outcome = on(c.cls, c.id, [](auto& r) { return r.DeleteRelation(); }); });
    ASSERT_TRUE(outcome.ok) << outcome.errMsg.toStdString();
    EXPECT_EQ(statements, c.statements);
    // Every row naming the record is gone, and only those: one per statement.
    int left = 0;
    for (const char* table : kLinkTables) {
        const QString t = QLatin1String(table);
        left += count(QStringLiteral("SELECT COUNT(*) FROM ") + t);
        if (t == QLatin1String("contacts_contacts")) continue;
        if (!t.contains(QLatin1String(c.key).left(3))) continue;
        EXPECT_EQ(count(QStringLiteral("SELECT COUNT(*) FROM ") + t + QStringLiteral(" WHERE ") +
                        QLatin1String(c.key) + QLatin1Char('=') + QString::number(c.id)),
                  0)
            << table;
    }
    EXPECT_EQ(left, 11 - int(c.statements.size()));
}

INSTANTIATE_TEST_SUITE_P(EachClass, DeleteRelationCascade, ::testing::ValuesIn(kCascadeCases),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(Relations, AddingAPairAgainKeepsOneRowWithTheLastRole) {
    Contact c;
    c.setID(3);
    ASSERT_TRUE(c.AddRelative(kind::Opportunity, 5, QStringLiteral("决策人")));
    const QStringList second =
        traced([&] { ASSERT_TRUE(c.AddRelative(kind::Opportunity, 5, QStringLiteral("用户"))); });
    EXPECT_EQ(second.last(), QStringLiteral("UPDATE opportunities_contacts SET con_part_in_opp = "
                                            "'用户' WHERE con_id=3 AND opp_id=5"));
    EXPECT_EQ(count("SELECT COUNT(*) FROM opportunities_contacts"), 1);
    EXPECT_EQ(scalar("SELECT con_part_in_opp FROM opportunities_contacts").toString(),
              QStringLiteral("用户"));

    Account a;
    a.setID(4);
    ASSERT_TRUE(a.AddRelative(kind::Opportunity, 5, QStringLiteral("甲方")));
    ASSERT_TRUE(a.AddRelative(kind::Opportunity, 5, QStringLiteral("乙方")));
    EXPECT_EQ(count("SELECT COUNT(*) FROM opportunities_accounts"), 1);
    EXPECT_EQ(scalar("SELECT acc_part_in_opp FROM opportunities_accounts").toString(),
              QStringLiteral("乙方"));

    // From the deal's side an existing link, and its role, stay as they are.
    Opportunity o;
    o.setID(5);
    const QStringList fromDeal = traced([&] { ASSERT_TRUE(o.AddRelative(kind::Contact, 3)); });
    EXPECT_EQ(fromDeal.size(), 3);  // stamp, probe, stamp: no insert
    EXPECT_EQ(count("SELECT COUNT(*) FROM opportunities_contacts"), 1);
}

TEST_F(Relations, AContactJoiningASecondAccountLeavesTheFirst) {
    Contact c;
    c.setID(3);
    ASSERT_TRUE(c.AddRelative(kind::Account, 4));
    const QStringList statements = traced([&] { ASSERT_TRUE(c.AddRelative(kind::Account, 8)); });
    EXPECT_EQ(statements,
              (QStringList{kStampC3, "SELECT * FROM   accounts_contacts  WHERE  con_id = 3",
                           "DELETE * FROM accounts_contacts WHERE con_id=3", kStampA8,
                           "INSERT INTO accounts_contacts(con_id,acc_id) VALUES(3,8)",
                           "SELECT * FROM   accounts_contacts "}));
    EXPECT_EQ(count("SELECT COUNT(*) FROM accounts_contacts WHERE con_id=3"), 1);
    EXPECT_EQ(count("SELECT acc_id FROM accounts_contacts WHERE con_id=3"), 8);
}

TEST_F(Relations, AContactPairIsFoundUpdatedAndDeletedFromEitherSide) {
    run("INSERT INTO contacts_contacts (con_id1, con_id2, con_relation) VALUES (7, 3, '朋友')");
    Contact three;
    three.setID(3);
    ASSERT_TRUE(three.AddRelative(kind::Contact, 7, QStringLiteral("同事")));
    EXPECT_EQ(count("SELECT COUNT(*) FROM contacts_contacts"), 1);
    EXPECT_EQ(scalar("SELECT con_relation FROM contacts_contacts WHERE con_id1=7").toString(),
              QStringLiteral("同事"));

    Contact seven;
    seven.setID(7);
    ASSERT_TRUE(seven.GetByIdEx(3, kind::Contact));
    EXPECT_EQ(seven.PartInOpp(), QStringLiteral("同事"));
    ASSERT_TRUE(three.GetByIdEx(7, kind::Contact));
    EXPECT_EQ(three.PartInOpp(), QStringLiteral("同事"));

    ASSERT_TRUE(three.DeleteRelative(kind::Contact, 7));
    EXPECT_EQ(count("SELECT COUNT(*) FROM contacts_contacts"), 0);
}

TEST_F(Relations, AnOtherIdOfZeroChangesNothing) {
    Contact c;
    c.setID(3);
    Account a;
    a.setID(4);
    Opportunity o;
    o.setID(5);
    document d;
    d.setID(9);
    const QStringList statements = traced([&] {
        for (qint16 k = 1; k <= 5; ++k) {
            EXPECT_TRUE(c.AddRelative(k, 0, QStringLiteral("x")));
            EXPECT_TRUE(c.DeleteRelative(k, 0));
            EXPECT_TRUE(a.AddRelative(k, 0));
            EXPECT_TRUE(a.DeleteRelative(k, 0));
            EXPECT_TRUE(o.AddRelative(k, 0));
            EXPECT_TRUE(o.DeleteRelative(k, 0));
            EXPECT_TRUE(d.AddRelative(k, 0));
            EXPECT_TRUE(d.DeleteRelative(k, 0));
        }
        Contact unsaved;
        EXPECT_TRUE(unsaved.AddRelative(kind::Opportunity, 5));
    });
    EXPECT_TRUE(statements.isEmpty()) << statements.join(QLatin1Char('\n')).toStdString();
    EXPECT_TRUE(c.ErrMsg().isEmpty());
    expectStamps({});
}

TEST_F(Relations, TheLinkRunsOnTheGridConnectionWhenOneIsSet) {
    // The grid is bound to a second file, so where the insert lands shows which
    // connection ran it; the stamps go through the program's own file.
    const QString other = file.folder() + QStringLiteral("/grid.tvg");
    ASSERT_TRUE(QFile::copy(tarvel::testing::TempDataFile::pristinePath(), other));
    QFile::setPermissions(other, QFile::ReadOwner | QFile::WriteOwner);
    DataControl grid;
    grid.ConnectionString = connectionStringFor(other);
    grid.RecordSource = QStringLiteral("SELECT * FROM contacts");
    ASSERT_TRUE(grid.Refresh()) << grid.ErrorDescription().toStdString();

    Contact c;
    c.setID(3);
    c.setOAdodc(&grid);
    const QStringList statements =
        traced([&] { ASSERT_TRUE(c.AddRelative(kind::Task, 6)) << c.ErrMsg().toStdString(); });
    EXPECT_EQ(statements.last(),
              QStringLiteral("INSERT INTO contacts_tasks (con_id,tas_id) VALUES(3,6)"));
    EXPECT_EQ(count("SELECT COUNT(*) FROM contacts_tasks"), 0);
    expectStamps({C3, T6});
    tarvel::RecordsetPtr inGrid = grid.ActiveConnection()->Execute(
        QStringLiteral("SELECT COUNT(*) FROM contacts_tasks WHERE con_id=3 AND tas_id=6"));
    EXPECT_EQ(inGrid->value(0).toInt(), 1);

    ASSERT_TRUE(c.DeleteRelative(kind::Task, 6));
    inGrid =
        grid.ActiveConnection()->Execute(QStringLiteral("SELECT COUNT(*) FROM contacts_tasks"));
    EXPECT_EQ(inGrid->value(0).toInt(), 0);
}

TEST_F(Relations, AFailingStatementStopsTheOperationAndIsReported) {
    run("DROP TABLE contacts_tasks");
    Contact c;
    c.setID(3);
    EXPECT_FALSE(c.AddRelative(kind::Task, 6));
    EXPECT_TRUE(c.ErrMsg().startsWith(QStringLiteral("AddRelative出错，原因可能是")))
        << c.ErrMsg().toStdString();
    EXPECT_GT(c.ErrMsg().size(), QStringLiteral("AddRelative出错，原因可能是").size());
    // The probe failed, so the task was never stamped; the contact's stamp stays.
    expectStamps({C3});

    // DeleteRelation stops at the failing statement: earlier links are gone, later ones stay.
    run("INSERT INTO accounts_contacts (acc_id, con_id) VALUES (4, 3)");
    run("INSERT INTO contacts_documents (con_id, doc_id) VALUES (3, 9)");
    c.setErrMsg(QString());
    EXPECT_FALSE(c.DeleteRelation());
    EXPECT_TRUE(c.ErrMsg().startsWith(QStringLiteral("DeleteRelation出错，原因可能是")));
    EXPECT_EQ(count("SELECT COUNT(*) FROM accounts_contacts"), 0);
    EXPECT_EQ(count("SELECT COUNT(*) FROM contacts_documents"), 1);
}

}  // namespace
