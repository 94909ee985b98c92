// The relation matrix: each class x kind of AddRelative, DeleteRelative and
// DeleteRelation, checked by the link rows left behind and the "recent" stamps
// moved.

#include <QFile>
#include <QHash>
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

// The seeded records, with distinct keys so a swapped id shows; a token names
// a record by its kind's letter and its key.
const char* const kSeeds[] = {"C3", "C7", "A4", "A8", "O5", "T6", "D9"};

// The table, recent-date column and key column of the record a token names, and its key.
QStringList whereIs(const char* token) {
    static const QHash<char, QStringList> kinds = {
        {'C', {"contacts", "con_recent_contact_date", "con_id"}},
        {'A', {"accounts", "acc_recent_contact_date", "acc_id"}},
        {'O', {"opportunities", "opp_recent_contact_date", "opp_id"}},
        {'T', {"tasks", "tas_recent_contact_date", "tas_id"}},
        {'D', {"documents", "doc_recentedit_date", "doc_id"}}};
    return kinds.value(token[0]) << QLatin1String(token + 1);
}

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

class Relations : public records_test::RecordFixture {
protected:
    void SetUp() override {
        for (const char* token : kSeeds) {
            const QStringList p = whereIs(token);
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
    void expectStamps(const QString& list) {
        const QStringList tokens = list.split(QLatin1Char('|'));
        for (const char* token : kSeeds) {
            const QStringList p = whereIs(token);
            const QString sql =
                QStringLiteral("SELECT %2 FROM %1 WHERE %3=%4").arg(p[0], p[1], p[2], p[3]);
            EXPECT_EQ(scalar(sql) == Clock::now(), tokens.contains(token)) << token;
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
    const char* text;       // the role or relation, where the class takes one
    const char* added;      // the link table that gains the pair, if any
    const char* role = "";  // the role the pair is stored with
    // The link table that loses its row (one link in every table); null: `added`.
    const char* removed = nullptr;
};

const MatrixRow kMatrix[] = {
    {Cls::Contact, 3, kind::Opportunity, 5, "O'Brien's buyer", "opportunities_contacts",
     " AND con_part_in_opp='O''Brien''s buyer'"},
    // One account per contact: the removal takes the link whatever the other id.
    {Cls::Contact, 3, kind::Account, 8, "", "accounts_contacts"},
    {Cls::Contact, 3, kind::Contact, 7, "同学", "contacts_contacts", " AND con_relation='同学'"},
    {Cls::Contact, 3, kind::Task, 6, "ignored", "contacts_tasks"},
    {Cls::Contact, 3, kind::Document, 9, "", "contacts_documents"},
    {Cls::Account, 4, kind::Opportunity, 5, "甲方's", "opportunities_accounts",
     " AND acc_part_in_opp='甲方''s'"},
    {Cls::Account, 4, kind::Account, 8, "", ""},
    {Cls::Account, 4, kind::Contact, 3, "", "", "", "accounts_contacts"},
    {Cls::Account, 4, kind::Task, 6, "", "accounts_tasks"},
    {Cls::Account, 4, kind::Document, 9, "", "accounts_documents"},
    {Cls::Opportunity, 5, kind::Opportunity, 5, "", ""},
    {Cls::Opportunity, 5, kind::Account, 4, "", "opportunities_accounts"},
    {Cls::Opportunity, 5, kind::Contact, 3, "", "opportunities_contacts"},
    {Cls::Opportunity, 5, kind::Task, 6, "", "opportunities_tasks"},
    {Cls::Opportunity, 5, kind::Document, 9, "", "opportunities_documents"},
    {Cls::Document, 9, kind::Opportunity, 5, "", "opportunities_documents"},
    {Cls::Document, 9, kind::Account, 4, "", "accounts_documents"},
    {Cls::Document, 9, kind::Contact, 3, "", "contacts_documents"},
    {Cls::Document, 9, kind::Task, 6, "", "tasks_documents"},
    {Cls::Document, 9, kind::Document, 9, "", ""},
};

// How a link table names the row's pair: by each side's key, a contact pair
// in the order given.
QString pair(const MatrixRow& c) {
    static const char* const selfKeys[] = {"con_id", "acc_id", "opp_id", "doc_id"};
    static const char* const otherKeys[] = {"", "opp_id", "acc_id", "con_id", "tas_id", "doc_id"};
    const bool contacts = c.cls == Cls::Contact && c.kind == kind::Contact;
    return QStringLiteral("%1=%2 AND %3=%4%5")
        .arg(contacts ? "con_id1" : selfKeys[int(c.cls)])
        .arg(c.self)
        .arg(contacts ? "con_id2" : otherKeys[c.kind])
        .arg(c.other)
        .arg(QString::fromUtf8(c.role));
}

// The stamps a change leaves: the record's own, and the other record's when a
// link of it changed. Removals from a deal or a document stamp nothing.
QString stamps(const MatrixRow& c, const char* table, bool removal) {
    if (removal && (c.cls == Cls::Opportunity || c.cls == Cls::Document)) return QString();
    const QString self = QLatin1Char("CAOD"[int(c.cls)]) + QString::number(c.self);
    if (!*table) return self;
    return self + QLatin1Char('|') + QLatin1Char(" OACTD"[c.kind]) + QString::number(c.other);
}

class Matrix : public Relations, public ::testing::WithParamInterface<MatrixRow> {};

TEST_P(Matrix, AddAndDeleteLeaveTheirLinksAndStamps) {
    const MatrixRow& c = GetParam();
    on(c.cls, c.self, [&](auto& r) {
        if constexpr (std::is_same_v<std::decay_t<decltype(r)>, Opportunity> ||
                      std::is_same_v<std::decay_t<decltype(r)>, document>)
            return r.AddRelative(c.kind, c.other);
        else
            return r.AddRelative(c.kind, c.other, QString::fromUtf8(c.text));
    });
    const QString added = QString::fromUtf8(c.added);
    EXPECT_EQ(links(), added.isEmpty() ? 0 : 1);
    if (!added.isEmpty())
        EXPECT_EQ(count("SELECT COUNT(*) FROM " + added + " WHERE " + pair(c)), 1);
    expectStamps(stamps(c, c.added, false));

    seedLinks();
    Clock::advance(60);
    on(c.cls, c.self, [&](auto& r) { return r.DeleteRelative(c.kind, c.other); });
    const QString removed = c.removed ? QString::fromUtf8(c.removed) : added;
    EXPECT_EQ(links(), kLinks.size() - (removed.isEmpty() ? 0 : 1));
    if (!removed.isEmpty()) EXPECT_EQ(count("SELECT COUNT(*) FROM " + removed), 0);
    expectStamps(stamps(c, c.removed ? c.removed : c.added, true));
}

INSTANTIATE_TEST_SUITE_P(EachClassAndKind, Matrix, ::testing::ValuesIn(kMatrix));

TEST_F(Relations, DeleteRelationRemovesEveryLinkNamingTheRecord) {
    const std::tuple<Cls, int, const char*> cascades[] = {{Cls::Contact, 3, "con_id"},
                                                          {Cls::Account, 4, "acc_id"},
                                                          {Cls::Opportunity, 5, "opp_id"},
                                                          {Cls::Document, 9, "doc_id"}};
    for (const auto& [cls, self, key] : cascades) {
        seedLinks();
        on(cls, self, [](auto& r) { return r.DeleteRelation(); });
        // The links that name the record are gone, and no other.
        for (const QString& link : kLinks)
            EXPECT_EQ(count("SELECT COUNT(*) FROM " + link.section(' ', 0, 0)),
                      link.contains(QLatin1String(key).chopped(3)) ? 0 : 1)
                << key << ' ' << link.toStdString();
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
    ASSERT_TRUE(c.AddRelative(kind::Opportunity, 5, "O'Neil 用户"));
    ASSERT_TRUE(c.AddRelative(kind::Contact, 7, "同事"));  // stored as (7, 3)
    ASSERT_TRUE(a.AddRelative(kind::Opportunity, 5, "乙方's"));
    // From the deal's side an existing link, and its role, stay as they are.
    ASSERT_TRUE(o.AddRelative(kind::Contact, 3));
    // One account per contact: joining another leaves the first.
    ASSERT_TRUE(c.AddRelative(kind::Account, 8));
    EXPECT_EQ(scalar("SELECT con_part_in_opp & '|' & con_relation & '|' & acc_part_in_opp & '|' & "
                     "a.acc_id FROM opportunities_contacts, contacts_contacts, "
                     "opportunities_accounts, accounts_contacts a WHERE con_id1=7 AND a.con_id=3")
                  .toString(),
              "O'Neil 用户|同事|乙方's|8");
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
