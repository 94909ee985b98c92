// The relation matrix: each class x kind of AddRelative, DeleteRelative and
// DeleteRelation, checked by the exact statements issued, the link rows left
// behind and the "recent" stamps moved.

#include <QFile>
#include <QRegularExpression>
#include <type_traits>

#include "records/account.h"
#include "records/contact.h"
#include "records/document.h"
#include "records/opportunity.h"
#include "store/connectionstring.h"
#include "tests/records/recordfixture.h"

using namespace tarvel;
using records_test::withId;

namespace {

enum class Cls { Contact, Account, Opportunity, Document };

// The seeded records, with distinct keys so a swapped id shows. In the tables
// below a token (C3, A4, ...) stands for that record's stamp statement.
struct Seed {
    const char* token;
    const char* stamp;
    // Table, recent-date column and key column, as the stamp names them.
    QStringList parts() const {
        const QStringList w = QString::fromLatin1(stamp).split(' ', Qt::SkipEmptyParts);
        return {w[1], w[3].section('=', 0, 0), w[5].section('=', 0, 0), QLatin1String(token + 1)};
    }
};
const Seed kSeeds[] = {
    {"C3", "UPDATE contacts SET con_recent_contact_date=now WHERE con_id=3"},
    {"C7", "UPDATE contacts SET con_recent_contact_date=now WHERE con_id=7"},
    {"A4", "UPDATE accounts SET acc_recent_contact_date=now  WHERE acc_id= 4"},
    {"A8", "UPDATE accounts SET acc_recent_contact_date=now  WHERE acc_id= 8"},
    {"O5", "UPDATE opportunities SET opp_recent_contact_date=now  WHERE opp_id=5"},
    {"T6", "UPDATE tasks SET tas_recent_contact_date=now WHERE tas_id=6"},
    {"D9", "UPDATE documents SET doc_recentedit_date=now WHERE doc_id=9"},
};

// One link per table, each joining two seeded records.
const QStringList kLinks = {"accounts_contacts (acc_id, con_id) VALUES (4, 3)",
                            "opportunities_contacts (opp_id, con_id) VALUES (5, 3)",
                            "contacts_contacts (con_id1, con_id2) VALUES (7, 3)",
                            "contacts_tasks (con_id, tas_id) VALUES (3, 6)",
                            "contacts_documents (con_id, doc_id) VALUES (3, 9)",
                            "opportunities_accounts (opp_id, acc_id) VALUES (5, 4)",
                            "accounts_tasks (acc_id, tas_id) VALUES (4, 6)",
                            "accounts_documents (acc_id, doc_id) VALUES (4, 9)",
                            "opportunities_tasks (opp_id, tas_id) VALUES (5, 6)",
                            "opportunities_documents (opp_id, doc_id) VALUES (5, 9)",
                            "tasks_documents (tas_id, doc_id) VALUES (6, 9)"};

// "C3|SELECT ...|O5" as statements, the tokens expanded.
QStringList expand(const char* list) {
    QStringList out = QString::fromUtf8(list).split(QLatin1Char('|'), Qt::SkipEmptyParts);
    for (QString& part : out)
        for (const Seed& s : kSeeds)
            if (part == QLatin1String(s.token)) part = QLatin1String(s.stamp);
    return out;
}

class Relations : public records_test::RecordFixture {
protected:
    void SetUp() override {
        for (const Seed& s : kSeeds) {
            const QStringList p = s.parts();
            run(QStringLiteral("INSERT INTO %1 (%3, %2) VALUES (%4, #2020-1-1 8:00:00#)")
                    .arg(p[0], p[1], p[2], p[3]));
        }
        Clock::advance(3600);
    }
    void seedLinks() {
        for (const QString& link : kLinks) run("DELETE * FROM " + link.section(' ', 0, 0));
        for (const QString& link : kLinks) run("INSERT INTO " + link);
    }
    qsizetype links() {
        qsizetype n = 0;
        for (const QString& link : kLinks)
            n += count("SELECT COUNT(*) FROM " + link.section(' ', 0, 0));
        return n;
    }
    // Exactly the records whose tokens appear in `list` carry the current time.
    void expectStamps(const char* list) {
        const QStringList tokens = QString::fromUtf8(list).split(QLatin1Char('|'));
        for (const Seed& s : kSeeds) {
            const QStringList p = s.parts();
            const QString sql =
                QStringLiteral("SELECT %2 FROM %1 WHERE %3=%4").arg(p[0], p[1], p[2], p[3]);
            EXPECT_EQ(scalar(sql) == Clock::now(), tokens.contains(s.token)) << s.token;
        }
    }
};

// Runs `call`, which must succeed, on a record of the class with key `self`;
// gives the record's ErrMsg.
template <typename Call>
QString on(Cls cls, int self, Call&& call) {
    auto with = [&](auto record) {
        record.setID(self);
        EXPECT_TRUE(call(record)) << record.ErrMsg().toStdString();
        return record.ErrMsg();
    };
    if (cls == Cls::Contact) return with(Contact());
    if (cls == Cls::Account) return with(Account());
    if (cls == Cls::Opportunity) return with(Opportunity());
    return with(document());
}

struct MatrixRow {
    Cls cls;
    int self;
    qint16 kind;
    int other;
    const char* text;  // the role or relation, where the class takes one
    const char* added;
    const char* removed;  // DeleteRelative with one link in every table
};

const MatrixRow kMatrix[] = {
    {Cls::Contact, 3, kind::Opportunity, 5, "O'Brien's buyer",
     "C3|SELECT * FROM opportunities_contacts WHERE con_id=3 AND opp_id=5|O5|INSERT INTO "
     "opportunities_contacts(con_id,opp_id,con_part_in_opp) VALUES(3,5,'O''Brien''s buyer')",
     "C3|O5|DELETE * FROM opportunities_contacts WHERE con_id=3 AND opp_id=5"},
    // One account per contact: the removal takes the link whatever the other id.
    {Cls::Contact, 3, kind::Account, 8, "",
     "C3|SELECT * FROM   accounts_contacts  WHERE  con_id = 3|A8|INSERT INTO "
     "accounts_contacts(con_id,acc_id) VALUES(3,8)|SELECT * FROM   accounts_contacts ",
     "C3|A8|DELETE * FROM accounts_contacts WHERE con_id=3|SELECT * FROM   accounts_contacts  "
     "WHERE  con_id = 3"},
    // The pair is seeded as (7, 3).
    {Cls::Contact, 3, kind::Contact, 7, "同学",
     "C3|SELECT * FROM contacts_contacts WHERE (con_id1=3 AND con_id2=7) OR (con_id2=3 AND "
     "con_id1=7)|C7|INSERT INTO contacts_contacts(con_id1,con_id2,con_relation) VALUES(3,7,'同学')",
     "C3|C7|DELETE * FROM contacts_contacts WHERE (con_id1=3 AND con_id2=7) OR (con_id2=3 AND "
     "con_id1=7)"},
    {Cls::Contact, 3, kind::Task, 6, "ignored",
     "C3|SELECT * FROM contacts_tasks WHERE con_id=3 AND tas_id=6|T6|INSERT INTO contacts_tasks "
     "(con_id,tas_id) VALUES(3,6)",
     "C3|T6|DELETE * FROM contacts_tasks WHERE con_id=3 AND tas_id=6"},
    {Cls::Contact, 3, kind::Document, 9, "",
     "C3|SELECT * FROM contacts_documents WHERE con_id=3 AND doc_id=9|D9|INSERT INTO "
     "contacts_documents (con_id,doc_id) VALUES(3,9)",
     "C3|D9|DELETE * FROM contacts_documents WHERE con_id=3 AND doc_id=9"},
    {Cls::Account, 4, kind::Opportunity, 5, "甲方's",
     "A4|SELECT acc_part_in_opp FROM opportunities_accounts WHERE acc_id=4 AND opp_id=5|O5|INSERT "
     "INTO opportunities_accounts(acc_id,opp_id,acc_part_in_opp) VALUES(4,5, '甲方''s')",
     "A4|O5|DELETE * FROM opportunities_accounts WHERE acc_id=4 AND opp_id=5"},
    {Cls::Account, 4, kind::Account, 8, "", "A4", "A4"},
    {Cls::Account, 4, kind::Contact, 3, "", "A4",
     "A4|C3|DELETE * FROM accounts_contacts WHERE acc_id=4 AND con_id=3"},
    {Cls::Account, 4, kind::Task, 6, "",
     "A4|SELECT * FROM accounts_tasks WHERE acc_id=4 and tas_id=6|T6|INSERT INTO accounts_tasks "
     "(acc_id, tas_id) VALUES ( 4,6)",
     "A4|T6|DELETE * FROM accounts_tasks WHERE acc_id=4 AND tas_id=6"},
    {Cls::Account, 4, kind::Document, 9, "",
     "A4|SELECT * FROM accounts_documents WHERE acc_id=4 and doc_id=9|D9|INSERT INTO "
     "accounts_documents (acc_id, doc_id) VALUES ( 4,9)",
     "A4|D9|DELETE * FROM accounts_documents WHERE acc_id=4 AND doc_id=9"},
    // Removals from a deal or a document stamp nothing.
    {Cls::Opportunity, 5, kind::Opportunity, 5, "", "O5", ""},
    {Cls::Opportunity, 5, kind::Account, 4, "",
     "O5|SELECT  * FROM opportunities_accounts WHERE opp_id = 5 AND acc_id= 4|A4|INSERT INTO "
     "opportunities_accounts(opp_id,acc_id) VALUES(5,4)",
     "DELETE * FROM opportunities_accounts WHERE opp_id=5 AND acc_id=4"},
    {Cls::Opportunity, 5, kind::Contact, 3, "",
     "O5|SELECT * FROM opportunities_contacts WHERE opp_id = 5 AND con_id= 3|C3|INSERT INTO "
     "opportunities_contacts(opp_id,con_id) VALUES(5,3)",
     "DELETE * FROM opportunities_contacts WHERE opp_id=5 AND con_id=3"},
    {Cls::Opportunity, 5, kind::Task, 6, "",
     "O5|SELECT * FROM opportunities_tasks WHERE opp_id = 5 AND tas_id= 6|T6|INSERT INTO "
     "opportunities_tasks(opp_id,tas_id) VALUES(5,6)",
     "DELETE * FROM opportunities_tasks WHERE opp_id=5 AND tas_id=6"},
    {Cls::Opportunity, 5, kind::Document, 9, "",
     "O5|SELECT * FROM opportunities_documents WHERE opp_id = 5 AND doc_id= 9|D9|INSERT INTO "
     "opportunities_documents(opp_id,doc_id) VALUES(5,9)",
     "DELETE * FROM opportunities_documents WHERE opp_id=5 AND doc_id=9"},
    {Cls::Document, 9, kind::Opportunity, 5, "",
     "D9|SELECT * FROM opportunities_documents WHERE doc_id=9 AND opp_id=5|O5|INSERT INTO  "
     "opportunities_documents  (doc_id, opp_id) VALUES ( 9,5)",
     "DELETE * FROM opportunities_documents WHERE doc_id=9 AND opp_id=5"},
    {Cls::Document, 9, kind::Account, 4, "",
     "D9|SELECT * FROM accounts_documents WHERE doc_id=9 and acc_id=4|A4|INSERT INTO "
     "accounts_documents (doc_id, acc_id) VALUES ( 9,4)",
     "DELETE * FROM accounts_documents WHERE doc_id=9 AND acc_id=4"},
    {Cls::Document, 9, kind::Contact, 3, "",
     "D9|SELECT * FROM contacts_documents WHERE doc_id=9 and con_id=3|C3|INSERT INTO "
     "contacts_documents (doc_id, con_id) VALUES ( 9,3)",
     "DELETE * FROM contacts_documents WHERE  doc_id=9 AND con_id=3"},
    {Cls::Document, 9, kind::Task, 6, "",
     "D9|SELECT * FROM tasks_documents WHERE doc_id=9 and tas_id=6|T6|INSERT INTO tasks_documents "
     "(doc_id, tas_id) VALUES ( 9,6)",
     "DELETE * FROM tasks_documents WHERE doc_id=9 AND tas_id=6"},
    {Cls::Document, 9, kind::Document, 9, "", "D9", ""},
};

class Matrix : public Relations, public ::testing::WithParamInterface<MatrixRow> {};

TEST_P(Matrix, AddAndDeleteIssueTheirStatementsLinksAndStamps) {
    const MatrixRow& c = GetParam();
    QString err;
    const QStringList added = traced([&] {
        err = on(c.cls, c.self, [&](auto& r) {
            if constexpr (std::is_same_v<std::decay_t<decltype(r)>, Opportunity> ||
                          std::is_same_v<std::decay_t<decltype(r)>, document>)
                return r.AddRelative(c.kind, c.other);
            else
                return r.AddRelative(c.kind, c.other, QString::fromUtf8(c.text));
        });
    });
    EXPECT_TRUE(err.isEmpty());
    EXPECT_EQ(added, expand(c.added));
    EXPECT_EQ(links(), added.filter("INSERT").size());
    expectStamps(c.added);

    seedLinks();
    Clock::advance(60);
    const QStringList removed = traced([&] {
        err = on(c.cls, c.self, [&](auto& r) { return r.DeleteRelative(c.kind, c.other); });
    });
    EXPECT_EQ(removed, expand(c.removed));
    EXPECT_EQ(links(), kLinks.size() - removed.filter("DELETE").size());
    expectStamps(c.removed);
    // A contact keeps a trace of what it executed; the read-back is no execution.
    EXPECT_EQ(err, c.cls == Cls::Contact
                       ? removed.filter(QRegularExpression("^(?!SELECT)")).join(" ; ")
                       : QString());
}

INSTANTIATE_TEST_SUITE_P(EachClassAndKind, Matrix, ::testing::ValuesIn(kMatrix));

TEST_F(Relations, DeleteRelationRemovesEveryLinkNamingTheRecordInOrder) {
    const std::tuple<Cls, int, const char*> cascades[] = {
        {Cls::Contact, 3,
         "DELETE * FROM accounts_contacts WHERE con_id=3|DELETE * FROM opportunities_contacts "
         "WHERE con_id=3|DELETE * FROM contacts_contacts WHERE con_id1=3 OR  con_id2=3|DELETE * "
         "FROM contacts_tasks WHERE con_id=3|DELETE * FROM contacts_documents WHERE con_id=3"},
        {Cls::Account, 4,
         "DELETE * FROM accounts_contacts WHERE acc_id=4|DELETE * FROM opportunities_accounts "
         "WHERE acc_id=4|DELETE * FROM accounts_tasks WHERE acc_id=4|DELETE * FROM "
         "accounts_documents WHERE acc_id=4"},
        {Cls::Opportunity, 5,
         "DELETE * FROM opportunities_accounts WHERE opp_id=5|DELETE * FROM opportunities_contacts "
         "WHERE opp_id=5|DELETE * FROM opportunities_tasks WHERE opp_id=5|DELETE * FROM "
         "opportunities_documents WHERE opp_id=5"},
        {Cls::Document, 9,
         "DELETE * FROM opportunities_documents WHERE doc_id=9|DELETE * FROM contacts_documents "
         "WHERE doc_id=9|DELETE * FROM accounts_documents WHERE doc_id=9|DELETE * FROM "
         "tasks_documents WHERE doc_id=9"},
    };
    for (const auto& [cls, self, expected] : cascades) {
        seedLinks();
        const QStringList statements =
            traced([&] { on(cls, self, [](auto& r) { return r.DeleteRelation(); }); });
        EXPECT_EQ(statements, expand(expected));
        // Each statement took its one row, and no other.
        EXPECT_EQ(links(), kLinks.size() - statements.size()) << expected;
    }
}

TEST_F(Relations, ExistingLinksAreUpdatedKeptOrReplaced) {
    run("INSERT INTO contacts_contacts (con_id1, con_id2, con_relation) VALUES (7, 3, '朋友')");
    run("INSERT INTO opportunities_contacts (con_id, opp_id, con_part_in_opp) VALUES (3, 5, 'a')");
    run("INSERT INTO opportunities_accounts (acc_id, opp_id, acc_part_in_opp) VALUES (4, 5, 'b')");
    run("INSERT INTO accounts_contacts (acc_id, con_id) VALUES (4, 3)");
    auto c = withId<Contact>(3);
    auto a = withId<Account>(4);
    auto o = withId<Opportunity>(5);
    const QStringList statements = traced([&] {
        ASSERT_TRUE(c.AddRelative(kind::Opportunity, 5, "O'Neil 用户"));
        ASSERT_TRUE(c.AddRelative(kind::Contact, 7, "同事"));  // stored as (7, 3)
        ASSERT_TRUE(a.AddRelative(kind::Opportunity, 5, "乙方's"));
        // From the deal's side an existing link, and its role, stay as they are.
        ASSERT_TRUE(o.AddRelative(kind::Contact, 3));
        // One account per contact: joining another leaves the first.
        ASSERT_TRUE(c.AddRelative(kind::Account, 8));
    });
    // The writes to link tables, with the texts quoted.
    EXPECT_EQ(statements.filter(QRegularExpression("^(UPDATE [a-z]+_|INSERT|DELETE)")),
              QStringList({"UPDATE opportunities_contacts SET con_part_in_opp = 'O''Neil 用户' "
                           "WHERE con_id=3 AND opp_id=5",
                           "UPDATE contacts_contacts SET con_relation = '同事' WHERE (con_id1=3 "
                           "AND con_id2=7) OR (con_id2=3 AND con_id1=7)",
                           "UPDATE opportunities_accounts SET acc_part_in_opp = '乙方''s' WHERE "
                           "acc_id=4 AND opp_id=5",
                           "DELETE * FROM accounts_contacts WHERE con_id=3",
                           "INSERT INTO accounts_contacts(con_id,acc_id) VALUES(3,8)"}));
    EXPECT_EQ(links(), 4);
}

TEST_F(Relations, AnOtherIdOfZeroOrAnUnsavedRecordChangesNothing) {
    const QStringList statements = traced([&] {
        for (qint16 k = 1; k <= 5; ++k)
            for (Cls cls : {Cls::Contact, Cls::Account, Cls::Opportunity, Cls::Document}) {
                on(cls, 3, [&](auto& r) { return r.AddRelative(k, 0); });
                on(cls, 3, [&](auto& r) { return r.DeleteRelative(k, 0); });
                on(cls, 0, [&](auto& r) { return r.AddRelative(k, 5); });
            }
    });
    EXPECT_TRUE(statements.isEmpty()) << statements.join(QLatin1Char('\n')).toStdString();
    expectStamps("");
}

TEST_F(Relations, TheLinkRunsOnTheGridConnectionWhenOneIsSet) {
    // The grid is bound to a second file, so where the link lands shows which
    // connection ran it; the stamps go through the program's own file.
    const QString other = file.folder() + QStringLiteral("/grid.tvg");
    ASSERT_TRUE(QFile::copy(tarvel::testing::TempDataFile::pristinePath(), other));
    QFile::setPermissions(other, QFile::ReadOwner | QFile::WriteOwner);
    DataControl grid;
    grid.ConnectionString = connectionStringFor(other);
    grid.RecordSource = QStringLiteral("SELECT * FROM contacts");
    ASSERT_TRUE(grid.Refresh()) << grid.ErrorDescription().toStdString();
    auto inGrid = [&] {
        return grid.ActiveConnection()->Execute("SELECT COUNT(*) FROM contacts_tasks")->value(0);
    };
    auto c = withId<Contact>(3);
    c.setOAdodc(&grid);
    ASSERT_TRUE(c.AddRelative(kind::Task, 6)) << c.ErrMsg().toStdString();
    EXPECT_EQ(inGrid(), 1);
    EXPECT_EQ(links(), 0);
    expectStamps("C3|T6");
    ASSERT_TRUE(c.DeleteRelative(kind::Task, 6));
    EXPECT_EQ(inGrid(), 0);
}

TEST_F(Relations, AFailingStatementStopsTheOperationAndIsReported) {
    run("DROP TABLE contacts_tasks");
    auto c = withId<Contact>(3);
    EXPECT_FALSE(c.AddRelative(kind::Task, 6));
    EXPECT_TRUE(c.ErrMsg().startsWith("AddRelative出错，原因可能是no such table"))
        << c.ErrMsg().toStdString();
    // The probe failed, so the task was never stamped; the contact's stamp stays.
    expectStamps("C3");

    // DeleteRelation stops at the failing statement: earlier links are gone, later ones stay.
    run("INSERT INTO accounts_contacts (acc_id, con_id) VALUES (4, 3)");
    run("INSERT INTO contacts_documents (con_id, doc_id) VALUES (3, 9)");
    c.setErrMsg(QString());
    EXPECT_FALSE(c.DeleteRelation());
    EXPECT_TRUE(c.ErrMsg().startsWith("DeleteRelation出错，原因可能是no such table"));
    EXPECT_EQ(count("SELECT COUNT(*) FROM accounts_contacts"), 0);
    EXPECT_EQ(count("SELECT COUNT(*) FROM contacts_documents"), 1);
}

}  // namespace
