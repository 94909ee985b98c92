// Runs the statement texts that the program builds, exactly as it builds them, against the
// corpus data set (see corpus_fixture.h), and checks each result against what the original
// Jet engine gives for the same text on the same rows.
#include <gtest/gtest.h>

#include <QDate>
#include <QStringList>
#include <algorithm>
#include <vector>

#include "store/clock.h"
#include "store/recordset.h"
#include "store/tarveldatabase.h"
#include "tests/store/corpus_fixture.h"

namespace tarvel::testing::corpus {
namespace {

// A statement and the keys (first column) of the rows it gives, in its order.
struct Query {
    QString sql;
    Ids expected;
};

class CorpusSchema : public Corpus {};
class CorpusRecords : public Corpus {};
class CorpusRelations : public Corpus {};
class CorpusStatistics : public Corpus {};
class CorpusSchedule : public Corpus {};
class CorpusCustom : public Corpus {};
class CorpusLists : public Corpus {};
class CorpusExchange : public Corpus {};
class CorpusDialect : public Corpus {};

TEST_F(CorpusSchema, ContactsWithAccountQuery) {
    EXPECT_EQ(rows("SELECT * FROM que_contacts_accounts"), 6);
    RecordsetPtr rs = read("SELECT * FROM que_contacts_accounts WHERE con_id=5");
    ASSERT_TRUE(rs && rs->RecordCount() == 1);
    EXPECT_EQ(rs->value("con_lastname").toString(), "O'Brien");
    EXPECT_EQ(rs->value("acc_id").toInt(), 3);
    EXPECT_EQ(rs->value("acc_name").toString(), "Cobalt Works");
    for (const char* column : {"acc_type", "acc_industry", "acc_address", "acc_postcode",
                               "acc_website", "acc_telephone", "con_check", "con_birthday"})
        EXPECT_GE(rs->fieldIndex(column), 0) << column;
    rs = read("SELECT * FROM que_contacts_accounts WHERE con_id=4");
    ASSERT_TRUE(rs && !rs->Eof());
    EXPECT_TRUE(rs->value("acc_id").isNull());
    EXPECT_TRUE(rs->value("acc_name").isNull());
    EXPECT_EQ(sorted(ids("SELECT con_id FROM que_contacts_accounts WHERE acc_name IS NULL")),
              (Ids{4, 6}));
    // Tick marks toggled through the query land in contacts.con_check, -1 <-> 0.
    EXPECT_EQ(run("UPDATE que_contacts_accounts SET con_check= NOT con_check "
                  " WHERE acc_name IS NULL"),
              2);
    EXPECT_EQ(ids("SELECT con_id FROM contacts WHERE con_check=-1 ORDER BY con_id"),
              (Ids{1, 3, 4}));
    EXPECT_EQ(run("UPDATE que_contacts_accounts SET con_check= NOT con_check  WHERE con_id=1"), 1);
    EXPECT_EQ(ids("SELECT con_id FROM contacts WHERE con_check=0 ORDER BY con_id"),
              (Ids{1, 2, 5, 6}));
}

TEST_F(CorpusRecords, DeleteRelationLeavesNoLinkRow) {
    // Each record's own delete, then its link deletes in order, and the link rows left of 28.
    const auto links = [](const char* key, int id, std::initializer_list<const char*> tables) {
        QStringList out;
        for (const char* t : tables)
            out << QStringLiteral("DELETE * FROM %1 WHERE %2=%3").arg(t, key, num(id));
        return out;
    };
    struct Cascade {
        QString row;
        QStringList links;
        int linksLeft;
    };
    const Cascade cascades[] = {
        {"DELETE * FROM contacts WHERE con_id=1",
         links("con_id", 1, {"accounts_contacts", "opportunities_contacts"}) +
             QStringList{"DELETE * FROM contacts_contacts WHERE con_id1=1 OR  con_id2=1"} +
             links("con_id", 1, {"contacts_tasks", "contacts_documents"}),
         21},
        {"DELETE * FROM accounts WHERE acc_id=1",
         links("acc_id", 1,
               {"accounts_contacts", "opportunities_accounts", "accounts_tasks",
                "accounts_documents"}),
         23},
        {"DELETE * FROM opportunities WHERE opp_id=1",
         links("opp_id", 1,
               {"opportunities_accounts", "opportunities_contacts", "opportunities_tasks",
                "opportunities_documents"}),
         23},
        {"DELETE * FROM tasks WHERE tas_id=6",
         links("tas_id", 6,
               {"tasks_documents", "accounts_tasks", "opportunities_tasks", "contacts_tasks"}),
         26},
        {"DELETE * FROM documents WHERE doc_id=1",
         links("doc_id", 1,
               {"opportunities_documents", "contacts_documents", "accounts_documents",
                "tasks_documents"}),
         24},
    };
    const auto asQuery = [](QString sql) { return sql.replace("DELETE * FROM", "SELECT * FROM"); };
    for (const Cascade& c : cascades) {
        fresh();
        SCOPED_TRACE(str(c.row));
        EXPECT_EQ(run(c.row), 1);
        EXPECT_EQ(rows(asQuery(c.row)), 0);
        for (const QString& statement : c.links) {
            const int before = rows(asQuery(statement));
            EXPECT_EQ(run(statement), before) << str(statement);
            EXPECT_EQ(rows(asQuery(statement)), 0) << str(statement);
        }
        EXPECT_EQ(linkRows(), c.linksLeft);
    }
}

TEST_F(CorpusRecords, RecentStampsFollowTheClock) {
    const std::pair<const char*, const char*> stamps[] = {
        {"UPDATE contacts SET con_recent_contact_date=now WHERE con_id=3",
         "SELECT con_recent_contact_date FROM contacts WHERE con_id=3"},
        {"UPDATE contacts SET con_recent_contact_date=now WHERE con_id= 5",
         "SELECT con_recent_contact_date FROM contacts WHERE con_id=5"},
        {"UPDATE accounts SET acc_recent_contact_date=now  WHERE acc_id= 3",
         "SELECT acc_recent_contact_date FROM accounts WHERE acc_id=3"},
        {"UPDATE opportunities SET opp_recent_contact_date=now  WHERE opp_id=3",
         "SELECT opp_recent_contact_date FROM opportunities WHERE opp_id=3"},
        {"UPDATE tasks SET tas_recent_contact_date=now WHERE tas_id=4",
         "SELECT tas_recent_contact_date FROM tasks WHERE tas_id=4"},
        {"UPDATE documents SET doc_recentedit_date=now WHERE doc_id=3",
         "SELECT doc_recentedit_date FROM documents WHERE doc_id=3"},
    };
    Clock::setFixed(at(2024, 3, 5, 16, 45, 12));
    for (const auto& [statement, readBack] : stamps) {
        EXPECT_EQ(run(statement), 1) << statement;
        EXPECT_EQ(str(stamp(scalar(readBack))), "2024-03-05 16:45:12") << statement;
    }
    EXPECT_EQ(str(stamp(scalar("SELECT con_recent_contact_date FROM contacts WHERE con_id=1"))),
              "2024-02-19 14:00:00");
    EXPECT_EQ(run("UPDATE contacts SET con_sendmail= 1 WHERE con_id= 2"), 1);
    EXPECT_EQ(ids("SELECT con_id FROM contacts WHERE con_sendmail=1"), (Ids{2}));
}

TEST_F(CorpusRecords, KeysAndLookups) {
    const char* newest = "SELECT MAX(con_id) FROM contacts";
    EXPECT_EQ(scalar(newest).toInt(), 6);
    {
        // The insert path: an empty writable recordset, AddNew, Update, the key read back.
        tarveldatabase db;
        RecordsetPtr rs = db.GetWriteRs("SELECT * FROM contacts WHERE con_id=0");
        ASSERT_TRUE(rs && rs->State() == adStateOpen) << str(db.ErrMsg());
        EXPECT_TRUE(rs->Eof());
        ASSERT_TRUE(rs->AddNew());
        rs->Fields("con_lastname") = QVariant("Qian");
        rs->Fields("con_create_date") = QVariant(at(2024, 3, 5));
        rs->Fields("con_recent_contact_date") = QVariant(Clock::now());
        rs->Fields("con_birthday") = QVariant("1900-1-1");
        ASSERT_TRUE(rs->Update()) << str(rs->ErrorDescription());
        rs->MovePrevious();
        rs->MoveNext();
        EXPECT_EQ(rs->value("con_id").toInt(), 7);
    }
    EXPECT_EQ(scalar(newest).toInt(), 7);
    EXPECT_EQ(str(stamp(scalar("SELECT con_birthday FROM contacts WHERE con_id=7"))),
              "1900-01-01 00:00:00");
    // A deleted key is not handed out again.
    EXPECT_EQ(run("DELETE * FROM contacts WHERE con_id=7"), 1);
    EXPECT_EQ(scalar(newest).toInt(), 6);
    run("INSERT INTO contacts (con_lastname) VALUES ('Zhou')");
    EXPECT_EQ(scalar(newest).toInt(), 8);
    {
        // Opportunities open their empty recordset through the key -1.
        tarveldatabase db;
        RecordsetPtr rs = db.GetWriteRs("SELECT * FROM opportunities WHERE opp_id=-1");
        ASSERT_TRUE(rs && rs->State() == adStateOpen) << str(db.ErrMsg());
        ASSERT_TRUE(rs->AddNew());
        rs->Fields("opp_subject") = QVariant("Upgrade");
        ASSERT_TRUE(rs->Update()) << str(rs->ErrorDescription());
        rs->MovePrevious();
        rs->MoveNext();
        EXPECT_EQ(rs->value("opp_id").toInt(), 4);
    }
    // The roles read by GetByIdEx; the contact pair is found from either side.
    for (const char* sql :
         {"SELECT * FROM  contacts_contacts  WHERE (contacts_contacts.con_id1=2AND "
          "contacts_contacts.con_id2= 5) OR (contacts_contacts.con_id1=5AND "
          "contacts_contacts.con_id2= 2)",
          "SELECT * FROM  contacts_contacts  WHERE (contacts_contacts.con_id1=5AND "
          "contacts_contacts.con_id2= 2) OR (contacts_contacts.con_id1=2AND "
          "contacts_contacts.con_id2= 5)"})
        EXPECT_EQ(texts(sql, "con_relation"), QStringList{"Sibling"}) << sql;
    const QVariantList role = values(
        "SELECT * FROM opportunities_contacts WHERE con_id=1 AND opp_id=2", "con_part_in_opp");
    ASSERT_EQ(role.size(), 1);
    EXPECT_TRUE(role[0].isNull());
    EXPECT_EQ(texts("SELECT * FROM opportunities_accounts WHERE acc_id=2 AND opp_id=3",
                    "acc_part_in_opp"),
              QStringList{"Reseller"});
}

TEST_F(CorpusRelations, LinkInserts) {
    // Each insert as AddRelative writes it, and the read that looks for the pair first.
    const std::pair<const char*, const char*> links[] = {
        {"INSERT INTO opportunities_contacts(con_id,opp_id,con_part_in_opp) VALUES(2,3,'Engineer')",
         "SELECT * FROM opportunities_contacts WHERE con_id=2 AND opp_id=3"},
        {"INSERT INTO accounts_contacts(con_id,acc_id) VALUES(4,2)",
         "SELECT * FROM   accounts_contacts  WHERE  con_id = 4"},
        {"INSERT INTO contacts_contacts(con_id1,con_id2,con_relation) VALUES(6,2,'Neighbour')",
         "SELECT * FROM contacts_contacts WHERE (con_id1=6 AND con_id2=2) OR (con_id2=6 AND "
         "con_id1=2)"},
        {"INSERT INTO contacts_tasks (con_id,tas_id) VALUES(2,7)",
         "SELECT * FROM contacts_tasks WHERE con_id=2 AND tas_id=7"},
        {"INSERT INTO contacts_documents (con_id,doc_id) VALUES(2,3)",
         "SELECT * FROM contacts_documents WHERE con_id=2 AND doc_id=3"},
        {"INSERT INTO opportunities_accounts(acc_id,opp_id,acc_part_in_opp) VALUES(3,2, 'Partner')",
         "SELECT acc_part_in_opp FROM opportunities_accounts WHERE acc_id=3 AND opp_id=2"},
        {"INSERT INTO accounts_tasks (acc_id, tas_id) VALUES ( 2,7)",
         "SELECT * FROM accounts_tasks WHERE acc_id=2 and tas_id=7"},
        {"INSERT INTO accounts_documents (acc_id, doc_id) VALUES ( 3,3)",
         "SELECT * FROM accounts_documents WHERE acc_id=3 and doc_id=3"},
        {"INSERT INTO opportunities_accounts(opp_id,acc_id) VALUES(2,2)",
         "SELECT  * FROM opportunities_accounts WHERE opp_id = 2 AND acc_id= 2"},
        {"INSERT INTO opportunities_contacts(opp_id,con_id) VALUES(3,6)",
         "SELECT * FROM opportunities_contacts WHERE opp_id = 3 AND con_id= 6"},
        {"INSERT INTO opportunities_tasks(opp_id,tas_id) VALUES(3,7)",
         "SELECT * FROM opportunities_tasks WHERE opp_id = 3 AND tas_id= 7"},
        {"INSERT INTO opportunities_documents(opp_id,doc_id) VALUES(3,3)",
         "SELECT * FROM opportunities_documents WHERE opp_id = 3 AND doc_id= 3"},
        {"INSERT INTO opportunities_tasks(tas_id,opp_id) VALUES(1,3)",
         "SELECT * FROM opportunities_tasks WHERE tas_id=1 AND opp_id=3"},
        {"INSERT INTO accounts_tasks(tas_id,acc_id) VALUES(1,2)",
         "SELECT * FROM accounts_tasks WHERE tas_id=1 AND acc_id=2"},
        {"INSERT INTO contacts_tasks(tas_id,con_id) VALUES(1,6)",
         "SELECT * FROM contacts_tasks WHERE tas_id=1 AND con_id=6"},
        {"INSERT INTO tasks_documents(tas_id,doc_id) VALUES(1,3)",
         "SELECT * FROM tasks_documents WHERE tas_id=1 AND doc_id=3"},
        {"INSERT INTO  opportunities_documents  (doc_id, opp_id) VALUES ( 3,2)",
         "SELECT * FROM opportunities_documents WHERE doc_id=3 AND opp_id=2"},
        {"INSERT INTO accounts_documents (doc_id, acc_id) VALUES ( 2,3)",
         "SELECT * FROM accounts_documents WHERE doc_id=2 and acc_id=3"},
        {"INSERT INTO contacts_documents (doc_id, con_id) VALUES ( 2,6)",
         "SELECT * FROM contacts_documents WHERE doc_id=2 and con_id=6"},
        {"INSERT INTO tasks_documents (doc_id, tas_id) VALUES ( 3,2)",
         "SELECT * FROM tasks_documents WHERE doc_id=3 and tas_id=2"},
    };
    int total = linkRows();
    for (const auto& [insert, pair] : links) {
        EXPECT_EQ(rows(pair), 0) << insert;
        EXPECT_EQ(run(insert), 1) << insert;
        EXPECT_EQ(rows(pair), 1) << insert;
        EXPECT_EQ(linkRows(), ++total) << insert;
    }
    EXPECT_EQ(texts(links[0].second, "con_part_in_opp"), QStringList{"Engineer"});
    EXPECT_EQ(texts(links[2].second, "con_relation"), QStringList{"Neighbour"});
    EXPECT_EQ(texts(links[5].second, "acc_part_in_opp"), QStringList{"Partner"});
    EXPECT_TRUE(scalar("SELECT acc_part_in_opp FROM opportunities_accounts WHERE opp_id=2 AND "
                       "acc_id=2")
                    .isNull());
}

TEST_F(CorpusRelations, ContactSideUpdatesAndBothDirections) {
    // An existing pair gets its role rewritten in place.
    EXPECT_EQ(run("UPDATE opportunities_contacts SET con_part_in_opp = 'Sponsor' "
                  "WHERE con_id=3 AND opp_id=1"),
              1);
    EXPECT_EQ(texts("SELECT con_part_in_opp FROM opportunities_contacts WHERE opp_id=1 ORDER BY "
                    "con_id"),
              (QStringList{"Buyer", "Sponsor"}));
    EXPECT_EQ(run("UPDATE opportunities_accounts SET acc_part_in_opp = 'Owner' "
                  "WHERE acc_id=1 AND opp_id=1"),
              1);
    // Contact 2 leaves Acme for Cobalt Works.
    EXPECT_EQ(run("DELETE * FROM accounts_contacts WHERE con_id=2"), 1);
    EXPECT_EQ(run("INSERT INTO accounts_contacts(con_id,acc_id) VALUES(2,3)"), 1);
    EXPECT_EQ(rows("SELECT * FROM   accounts_contacts "), 4);
    EXPECT_EQ(texts("SELECT * FROM que_contacts_accounts WHERE con_id=2", "acc_name"),
              QStringList{"Cobalt Works"});
    // The pair stored as (5, 2) is updated from contact 2's side.
    const QString pair = "(con_id1=2 AND con_id2=5) OR (con_id2=2 AND con_id1=5)";
    EXPECT_EQ(rows("SELECT * FROM contacts_contacts WHERE " + pair), 1);
    EXPECT_EQ(run("UPDATE contacts_contacts SET con_relation = 'Cousin' WHERE " + pair), 1);
    EXPECT_EQ(texts("SELECT con_relation FROM contacts_contacts WHERE con_id1=5"),
              QStringList{"Cousin"});

    // The related-contacts grids of a contact, either way round, never the contact itself.
    const QString cols =
        "con_id,con_lastname,con_nickname,acc_name,con_department_title,acc_address,"
        "con_telephone,con_mobile,con_email,con_fax,con_description,con_create_date,"
        "con_recent_contact_date,con_birthday,con_private ";
    QStringList qualified = cols.trimmed().split(',');
    for (QString& c : qualified) c.prepend("que_contacts_accounts.");
    const auto panel = [&](int id) {
        return "SELECT " + qualified.join(',') + " " +
               " FROM que_contacts_accounts INNER JOIN contacts_contacts " +
               " ON (que_contacts_accounts.con_id =contacts_contacts.con_id1) OR "
               "(que_contacts_accounts.con_id=contacts_contacts.con_id2)" +
               " WHERE que_contacts_accounts.con_id <>" + num(id) +
               " AND (contacts_contacts.con_id2=" + num(id) +
               " OR contacts_contacts.con_id1=" + num(id) + ")";
    };
    const auto grid = [&](int id) {
        return "SELECT " + cols + " FROM que_contacts_accounts WHERE con_id <>" + num(id) +
               " AND  ( con_id IN (SELECT con_id1 FROM contacts_contacts WHERE con_id2= " +
               num(id) +
               ") OR    con_id IN (SELECT con_id2 FROM contacts_contacts WHERE con_id1 = " +
               num(id) + "))";
    };
    const Query related[] = {
        {panel(1), {3, 4}},
        {panel(2), {5}},
        {panel(5), {2}},
        {grid(1), {3, 4}},
        {grid(5), {2}},
        {"SELECT * FROM contacts_contacts WHERE con_id1= 1 OR con_id2 = 1", {1, 4}},
        {"SELECT " + cols + " FROM  que_contacts_accounts " +
             " WHERE con_id IN (SELECT con_id FROM opportunities_contacts WHERE opp_id=1)",
         {1, 3}},
        {"SELECT " + cols + " FROM que_contacts_accounts " +
             " WHERE con_id IN (SELECT con_id FROM accounts_contacts WHERE acc_id=3)",
         {2, 5}},
        {"SELECT acc_id,acc_name,acc_telephone,acc_fax,acc_website,acc_type,acc_industry,"
         "acc_province,acc_address,acc_description,acc_create_date,acc_recent_contact_date,"
         "acc_private  FROM accounts  WHERE acc_id IN (SELECT acc_id FROM opportunities_accounts"
         " WHERE opp_id=3)",
         {2}},
        {"SELECT opp_id,opp_subject,opp_die_date,opp_estimate_sale,opp_sale,"
         "opp_succeed_probability,opp_type,opp_phase,opp_important,opp_tag,opp_description,"
         "opp_create_date,opp_recent_contact_date,opp_private  FROM opportunities  WHERE opp_id IN "
         "(SELECT opp_id FROM opportunities_contacts WHERE con_id=1)",
         {1, 2}},
        {"SELECT doc_id,doc_name,doc_path,doc_description,doc_tag,doc_create_date,"
         "doc_recentedit_date FROM documents  WHERE doc_id IN (SELECT doc_id FROM tasks_documents"
         " WHERE tas_id=9)",
         {1}},
    };
    for (const Query& q : related) EXPECT_EQ(sorted(ids(q.sql)), q.expected) << str(q.sql);
    // The program reads and finds rows of this grid by "con_id".
    RecordsetPtr rs = read(panel(1));
    ASSERT_TRUE(rs);
    EXPECT_GE(rs->fieldIndex("con_id"), 0) << "fields of the related-contacts grid";
    EXPECT_EQ(run("DELETE * FROM contacts_contacts WHERE " + pair), 1);
    EXPECT_EQ(ids(panel(5)), Ids{});
}

TEST_F(CorpusStatistics, GroupedCounts) {
    // The two fragments of each count, joined with nothing between them.
    struct Count {
        const char* select;
        const char* group;
        Groups expected;
    };
    const Count counts[] = {
        {"SELECT first(contacts.con_important) AS con_option, count(contacts.con_id) AS "
         "option_count  From contacts ",
         "GROUP BY contacts.con_important ",
         {{"(null)", 1}, {"high", 2}, {"low", 2}, {"medium", 1}}},
        {"SELECT first(accounts.acc_type) AS con_option, count(contacts.con_id) AS option_count  "
         "From que_contacts_accounts ",
         "GROUP BY accounts.acc_type",
         {{"(null)", 2}, {"customer", 3}, {"supplier", 1}}},
        {"SELECT first(contacts.con_relation) AS con_option, count(contacts.con_id) AS "
         "option_count  From contacts ",
         "GROUP BY contacts.con_relation ",
         {{"(null)", 2}, {"business", 1}, {"family", 1}, {"friend", 2}}},
        {"SELECT first(accounts.acc_industry) AS con_option, count(contacts.con_id) AS "
         "option_count  From que_contacts_accounts ",
         "GROUP BY accounts.acc_industry",
         {{"(null)", 3}, {"finance", 1}, {"it", 2}}},
        {"SELECT first(contacts.con_province) AS con_option, count(contacts.con_id) AS "
         "option_count  From contacts ",
         "GROUP BY contacts.con_province ",
         {{"(null)", 1}, {"beijing", 3}, {"guangdong", 1}, {"shanghai", 1}}},
        {"SELECT first(accounts.acc_name) AS con_option, count(contacts.con_id) AS option_count  "
         "From que_contacts_accounts ",
         "GROUP BY accounts.acc_id ",
         {{"(null)", 2}, {"acme ltd", 2}, {"borealis", 1}, {"cobalt works", 1}}},
        {"SELECT first(accounts.acc_important) AS acc_option, count(accounts.acc_id) AS "
         "option_count  From accounts ",
         "GROUP BY accounts.acc_important ",
         {{"(null)", 1}, {"high", 2}}},
        {"SELECT first(accounts.acc_type) AS acc_option, count(accounts.acc_id) AS option_count  "
         "From accounts ",
         "GROUP BY accounts.acc_type ",
         {{"customer", 2}, {"supplier", 1}}},
        {"SELECT first(accounts.acc_relation) AS acc_option, count(accounts.acc_id) AS "
         "option_count  From accounts ",
         "GROUP BY accounts.acc_relation ",
         {{"(null)", 1}, {"client", 2}}},
        {"SELECT first(accounts.acc_industry) AS acc_option, count(accounts.acc_id) AS "
         "option_count  From accounts ",
         "GROUP BY accounts.acc_industry ",
         {{"(null)", 1}, {"finance", 1}, {"it", 1}}},
        {"SELECT first(accounts.acc_province) AS acc_option, count(accounts.acc_id) AS "
         "option_count  From accounts ",
         " GROUP BY accounts.acc_province ",
         {{"beijing", 2}, {"shanghai", 1}}},
        {"SELECT first(opportunities.opp_important) AS opp_option, count(opportunities.opp_id) AS "
         "option_count  From opportunities ",
         "GROUP BY opportunities.opp_important",
         {{"high", 2}, {"low", 1}}},
        {"SELECT first(opportunities.opp_type) AS opp_option, count(opportunities.opp_id) AS "
         "option_count  From opportunities ",
         "GROUP BY opportunities.opp_type",
         {{"new", 2}, {"renewal", 1}}},
        {"SELECT first(opportunities.opp_industry) AS opp_option, count(opportunities.opp_id) AS "
         "option_count  From opportunities ",
         "GROUP BY opportunities.opp_industry",
         {{"finance", 1}, {"it", 2}}},
        {"SELECT first(opportunities.opp_province) AS opp_option, count(opportunities.opp_id) AS "
         "option_count  From opportunities ",
         "GROUP BY opportunities.opp_province",
         {{"(null)", 1}, {"beijing", 2}}},
        {"SELECT first(documents.doc_tag) AS doc_option, count(documents.doc_id) AS option_count  "
         "From documents ",
         "GROUP BY documents.doc_tag ",
         {{"legal", 2}, {"sales", 1}}},
        // Only the phase count orders its rows.
        {"SELECT first(opportunities.opp_phase) AS opp_option, count(opportunities.opp_id) AS "
         "option_count  From opportunities ",
         "GROUP BY opportunities.opp_phase ORDER BY opportunities.opp_phase",
         {{"closed", 1}, {"negotiation", 2}}},
    };
    for (const Count& k : counts) {
        const QString sql = QString::fromUtf8(k.select) + k.group;
        const QString label = sql.section(QStringLiteral(" AS "), 1, 1).section(',', 0, 0);
        Groups got = groups(sql, label);
        // Apart from the phase count the rows come in the engine's own grouping order.
        if (!sql.contains("ORDER BY")) std::sort(got.begin(), got.end());
        EXPECT_EQ(got, k.expected) << str(sql);
    }
}

TEST_F(CorpusStatistics, TagProbabilityAndParticipation) {
    // Tags count by substring, one query per defined tag, in the tags' order.
    struct TagCount {
        const char* object;
        const char* head;
        Groups expected;
    };
    const TagCount tagCounts[] = {
        {"con",
         "SELECT count(contacts.con_id) AS option_count FROM contacts WHERE  con_tag LIKE '%",
         {{"Golf", 2}, {"VIP", 3}, {"VIP2", 1}}},
        {"acc",
         "SELECT count(accounts.acc_id) AS option_count FROM accounts WHERE  acc_tag LIKE '%",
         {{"Partner", 1}, {"VIP", 2}}},
        {"opp",
         "SELECT count(opportunities.opp_id) AS option_count FROM opportunities WHERE  opp_tag "
         "LIKE '%",
         {{"Q1", 2}, {"Q2", 1}}},
    };
    for (const TagCount& t : tagCounts) {
        Groups got;
        const QString tags =
            QStringLiteral("SELECT opt_description FROM  options WHERE opt_object= '") + t.object +
            "'  AND  opt_name='tag' ORDER BY  opt_description";
        for (const QString& tag : texts(tags))
            got.emplace_back(str(tag), scalar(t.head + tag + "%' ").toInt());
        EXPECT_EQ(got, t.expected) << t.object;
    }
    // The probability list is stored as "Probability"; this read names it in lower case.
    Groups probabilities;
    for (const QString& value : texts("SELECT opt_description FROM options WHERE opt_object= "
                                      "'opp'  AND  opt_name='probability'  "))
        probabilities.emplace_back(str(value),
                                   scalar("SELECT count(opportunities.opp_id) AS option_count FROM "
                                          "opportunities WHERE  opp_succeed_probability =" +
                                          value)
                                       .toInt());
    std::sort(probabilities.begin(), probabilities.end());
    EXPECT_EQ(probabilities, (Groups{{"0", 0}, {"10", 1}, {"100", 1}, {"50", 1}}));

    const std::pair<const char*, int> participation[] = {
        {"SELECT COUNT(*) AS con_count FROM contacts WHERE con_id IN "
         "(SELECT DISTINCT con_id FROM opportunities_contacts)",
         2},
        {"SELECT COUNT(*) AS con_count FROM contacts WHERE con_id NOT IN "
         "(SELECT DISTINCT con_id FROM opportunities_contacts)",
         4},
        {"SELECT COUNT(*) AS acc_count FROM accounts WHERE acc_id IN "
         "(SELECT DISTINCT acc_id FROM opportunities_accounts)",
         2},
        {"SELECT COUNT(*) AS acc_count FROM accounts WHERE acc_id NOT IN "
         "(SELECT DISTINCT acc_id FROM opportunities_accounts)",
         1},
    };
    for (const auto& [sql, expected] : participation)
        EXPECT_EQ(scalar(sql).toInt(), expected) << sql;
}

TEST_F(CorpusSchedule, TaskDateCondition) {
    const std::pair<QDate, Ids> days[] = {
        {kToday, {1, 2, 7, 9}},  // two one-offs, a daily range, a weekly task's close date
        {{2024, 3, 1}, {2}},     // first day of the daily range
        {{2024, 3, 10}, {2}},    // its close date; the Sunday task of cycle 14 stays out
        {{2024, 3, 11}, {}},     // past the close date
        {{2024, 2, 27}, {9}},    // start of a weekly task
        {{2024, 2, 28}, {3}},    // a Wednesday
        {{2024, 3, 13}, {3}},    // another Wednesday
        {{2024, 2, 7}, {3}},     // the Wednesday task's start
        {{2024, 3, 31}, {4}},    // monthly on the 31st
        {{2024, 4, 30}, {}},     // no 31 April, and no moving to the 30th
        {{2024, 2, 29}, {5}},    // yearly on 29 February
        {{2025, 2, 28}, {}},     // not in a common year
        {{2028, 2, 29}, {5}},    // the next leap year
    };
    for (const auto& [day, expected] : days)
        EXPECT_EQ(ids("SELECT tas_id FROM tasks " + taskDateCondition(day) + " ORDER BY tas_id"),
                  expected)
            << str(lit(day));
    // The outer parentheses keep an appended term on every alternative.
    EXPECT_EQ(ids("SELECT tas_id FROM tasks " + taskDateCondition(kToday) +
                  " AND tas_closed=0 ORDER BY tas_id"),
              (Ids{1, 2, 9}));
    EXPECT_EQ(ids("SELECT  tas_id, tas_date, tas_time, tas_subject, tas_closed, tas_remind,"
                  "tas_again,tas_last_remind_date FROM tasks " +
                  taskDateCondition(kToday) + " ORDER BY tas_time"),
              (Ids{2, 1, 7, 9}));
}

TEST_F(CorpusSchedule, OutlayAndReminders) {
    // Outlays are summed by stored date: the daily task counts on its first day only.
    EXPECT_DOUBLE_EQ(
        scalar("SELECT SUM(tas_outlay) FROM tasks WHERE tas_date=#2024-3-5#").toDouble(), 20.0);
    EXPECT_DOUBLE_EQ(
        scalar("SELECT SUM(tas_outlay) FROM tasks WHERE tas_date=#2024-3-1#").toDouble(), 3.0);
    EXPECT_EQ(rows("SELECT SUM(tas_outlay) FROM tasks WHERE tas_date=#2024-3-6#"), 1);
    EXPECT_TRUE(scalar("SELECT SUM(tas_outlay) FROM tasks WHERE tas_date=#2024-3-6#").isNull());
    // Dismissing a repeating reminder stamps today with no time; a one-time one is cleared.
    EXPECT_EQ(run("UPDATE tasks SET tas_last_remind_date= date WHERE tas_id = 2"), 1);
    EXPECT_EQ(str(stamp(scalar("SELECT tas_last_remind_date FROM tasks WHERE tas_id=2"))),
              "2024-03-05 00:00:00");
    EXPECT_EQ(run("UPDATE tasks SET tas_remind= 0 WHERE tas_id = 1"), 1);
    EXPECT_EQ(ids("SELECT tas_id FROM tasks WHERE tas_remind=1"), (Ids{2}));
    EXPECT_EQ(ids("SELECT tas_id FROM tasks WHERE tas_id= 2"), (Ids{2}));
    EXPECT_EQ(ids("SELECT tas_id FROM tasks WHERE tas_closed=0  ORDER BY tas_id"),
              (Ids{1, 2, 3, 4, 5, 6, 8, 9}));
}

TEST_F(CorpusSchedule, StatisticsSelections) {
    // Selections 7 to 10 mark the tasks of every day of the period, then filter by the marks.
    EXPECT_EQ(run("UPDATE tasks SET tas_check=0"), 9);
    for (QDate d(2024, 2, 27); d <= kToday; d = d.addDays(1))
        tickAll("SELECT  tas_check, tas_id FROM tasks  " + statisticsTaskCondition(d), "tas_check");
    EXPECT_EQ(ids("SELECT tas_id FROM tasks WHERE tas_check=true ORDER BY tas_id"),
              (Ids{1, 2, 3, 5, 7, 9}));
    const auto marked = [](const QString& link, const QString& key) {
        return "WHERE " + key + " IN (SELECT DISTINCT " + link + "." + key + " " + " FROM " + link +
               " LEFT Join tasks ON " + link + ".tas_id = tasks.tas_id " +
               " WHERE  tasks.tas_check = true)";
    };
    const QString L = lit(kToday.addDays(-15)), D1 = L, D2 = lit(kToday);
    const QString contacts = "SELECT con_id FROM que_contacts_accounts ";
    const QString recent = " ORDER BY con_recent_contact_date DESC";
    const Query selections[] = {
        {contacts + marked("contacts_tasks", "con_id") + recent, {1, 3}},
        {"SELECT acc_id FROM accounts " + marked("accounts_tasks", "acc_id"), {1}},
        {"SELECT opp_id FROM opportunities " + marked("opportunities_tasks", "opp_id"), {2}},
        {"SELECT doc_id FROM documents " + marked("tasks_documents", "doc_id"), {1}},
        // A stamp later on the day L is past L.
        {contacts + "WHERE con_recent_contact_date <= #" + L + "#" + recent, {4, 3}},
        {"SELECT acc_id FROM accounts WHERE acc_recent_contact_date <= #" + L + "#", {1}},
        {"SELECT opp_id FROM opportunities WHERE opp_recent_contact_date <= #" + L + "#", {1}},
        {contacts + "WHERE con_create_date <= #" + D2 + "#  AND con_create_date>=#" + D1 + "#" +
             recent,
         {6, 4, 3}},
        {"SELECT acc_id FROM accounts WHERE acc_create_date <= #" + D2 +
             "#  AND acc_create_date>=#" + D1 + "#",
         {3}},
        {"SELECT opp_id FROM opportunities WHERE opp_create_date <= #" + D2 +
             "#  AND opp_create_date>=#" + D1 + "#",
         {3}},
        {"SELECT doc_id FROM documents WHERE doc_create_date <= #" + D2 +
             "#  AND doc_create_date>=#" + D1 + "# ORDER BY doc_id",
         {1, 2}},
        {"SELECT opp_id FROM opportunities WHERE opp_die_date <= #2024-3-31#  AND "
         "opp_die_date>=#2024-3-1# ORDER BY opp_id",
         {1, 3}},
    };
    for (const Query& q : selections) EXPECT_EQ(ids(q.sql), q.expected) << str(q.sql);
}

TEST_F(CorpusSchedule, Birthdays) {
    const std::pair<QDate, Ids> days[] = {
        {{2024, 3, 5}, {2, 4}}, {{2024, 1, 1}, {6}}, {{2024, 2, 29}, {3}}, {{2024, 12, 31}, {}}};
    for (const auto& [day, expected] : days)
        EXPECT_EQ(ids("SELECT con_id FROM que_contacts_accounts " +
                      birthdayCondition(day.month(), day.day()) + " ORDER BY con_id"),
                  expected)
            << str(lit(day));
    // Selection 11 marks the contacts whose birthday falls in the period.
    const std::tuple<QDate, QDate, Ids> periods[] = {{{2024, 2, 28}, kToday, {2, 4, 3}},
                                                     {{2023, 12, 31}, {2024, 1, 1}, {6}}};
    for (const auto& [from, to, expected] : periods) {
        EXPECT_EQ(run("UPDATE contacts SET con_check=0"), 6);
        for (QDate d = from; d <= to; d = d.addDays(1))
            tickAll(
                "SELECT con_check, con_id FROM contacts " + birthdayCondition(d.month(), d.day()),
                "con_check");
        EXPECT_EQ(ids("SELECT con_id FROM que_contacts_accounts WHERE con_check= true ORDER BY "
                      "con_recent_contact_date DESC"),
                  expected)
            << str(lit(from));
    }
}

TEST_F(CorpusCustom, OptionsFieldsAndInterface) {
    const QString columns = "SELECT fie_name FROM fields WHERE fie_type=3 ORDER BY fie_index";
    const QString toolbar =
        "SELECT object_name FROM interface WHERE app_type=0 AND object_type=1 ORDER BY app_type, "
        "object_type, object_index";
    const QString caption =
        "SELECT object_description FROM interface WHERE app_type=0 AND object_type=1 AND "
        "object_name='contact'";
    const std::pair<QString, QStringList> lists[] = {
        {"SELECT  opt_description FROM options WHERE opt_object = 'con'  AND opt_name = "
         "'importance' ORDER BY opt_description",
         {"High", "Low", "Medium"}},
        // Probabilities keep their stored order.
        {"SELECT  opt_description FROM options WHERE opt_object = 'opp'  AND opt_name = "
         "'Probability'",
         {"10", "50", "100", "0"}},
        {columns, {"con_lastname", "acc_name", "con_description"}},
        {toolbar, {"account", "opportunity", "contact", "sepline1", "schedule", "document"}},
        {caption, {"Caption contact"}},
    };
    for (const auto& [sql, expected] : lists) EXPECT_EQ(texts(sql), expected) << str(sql);
    EXPECT_EQ(texts("SELECT  opt_id,opt_description,opt_object, opt_name FROM options WHERE "
                    "opt_object = 'con'  AND opt_name = 'tag' ORDER BY opt_description",
                    "opt_description"),
              (QStringList{"Golf", "VIP", "VIP2"}));
    EXPECT_EQ(texts("SELECT * FROM fields WHERE fie_type=3 ORDER BY fie_index", "fie_name"),
              texts(columns));

    // "_" is a one-character wildcard: '%opp_%' leaves out acc_opp, which ends in opp.
    const std::pair<const char*, QStringList> panels[] = {
        {"opp", {"opp_acc", "opp_con", "opp_doc", "opp_sch"}},
        {"acc", {"acc_con", "acc_doc", "acc_opp", "acc_sch"}},
        {"con", {"con_con", "con_doc", "con_opp", "con_sch"}},
        {"sch", {"sch_acc", "sch_con", "sch_doc", "sch_opp"}},
        {"doc", {"doc_acc", "doc_con", "doc_opp", "doc_sch"}},
    };
    const QString relation = "SELECT * FROM interface WHERE app_type=0";
    for (const auto& [owner, expected] : panels)
        EXPECT_EQ(texts(relation + " AND object_type=2 AND object_name LIKE '%" + owner +
                            "_%' ORDER BY object_name,object_index",
                        "object_name"),
                  expected)
            << owner;
    EXPECT_EQ(rows(relation + " AND object_type=2 ORDER BY object_name,object_index"), 20);

    EXPECT_EQ(run("UPDATE fields SET fie_width = 1800 WHERE fie_type = 3 AND fie_name ='acc_name'"),
              1);
    EXPECT_EQ(ids("SELECT fie_width FROM fields WHERE fie_name='acc_name' ORDER BY fie_type"),
              (Ids{1000, 1800}));
    EXPECT_EQ(run("UPDATE fields SET fie_index=4,fie_description='Employer',fie_visible=0 WHERE "
                  "fie_type=3 AND fie_name='acc_name'"),
              1);
    EXPECT_EQ(texts(columns), (QStringList{"con_lastname", "con_description", "acc_name"}));

    EXPECT_EQ(run("UPDATE interface SET object_index=7 ,object_visible= 0 WHERE app_type=0 AND "
                  "object_type=1 AND object_name='sepline1'"),
              1);
    EXPECT_EQ(texts(toolbar).last(), "sepline1");
    EXPECT_EQ(run("UPDATE interface SET object_description='People'  WHERE app_type=0 AND "
                  "object_type=1 AND object_name='contact'"),
              1);
    EXPECT_EQ(texts(caption), QStringList{"People"});
    EXPECT_EQ(
        run("UPDATE interface SET object_description='Deals',object_visible=0,"
            "object_edittype=-1 WHERE app_type=0 AND object_type=2 AND object_name='con_opp'"),
        1);
    EXPECT_EQ(
        run("UPDATE interface SET object_description='Tasks',object_index=2,object_visible=-1,"
            "object_edittype=0 WHERE app_type=1 AND object_type=2 AND object_name='con_sch'"),
        1);
    EXPECT_EQ(texts("SELECT object_description FROM interface WHERE object_name='con_sch' ORDER BY "
                    "app_type"),
              (QStringList{"con_sch", "Tasks"}));
    EXPECT_EQ(texts("SELECT * FROM interface WHERE app_type=1 AND object_type=2", "object_name"),
              QStringList{"con_sch"});
    EXPECT_EQ(run("DELETE * FROM interface WHERE app_type=0 "), 26);
    EXPECT_EQ(rows("SELECT * FROM interface"), 1);
}

TEST_F(CorpusCustom, Settings) {
    const QString agreement =
        "SELECT * FROM setting WHERE set_type='login' AND set_key='agreement'";
    EXPECT_EQ(texts(agreement, "set_visible"), QStringList{"0"});
    EXPECT_EQ(texts(agreement, "set_description"), QStringList{"Terms"});
    // Section and key match in any case.
    EXPECT_EQ(
        texts("SELECT * FROM setting WHERE set_type='Login' AND set_key='PASSWORD'", "set_value"),
        QStringList{"e80b5017098950fc58aad83c8c14978e"});
    EXPECT_EQ(rows("SELECT * FROM setting WHERE set_type='login' AND set_key='nothing'"), 0);
    const auto write = [](const char* type, const char* key, const char* value) {
        return QStringLiteral(
                   "UPDATE setting SET set_name='', set_visible='1', set_value='%1', "
                   "set_description='' WHERE Set_Type='%2' AND Set_Key='%3'")
            .arg(QLatin1String(value), QLatin1String(type), QLatin1String(key));
    };
    EXPECT_EQ(run(write("login", "agreement", "")), 1);
    EXPECT_EQ(texts(agreement, "set_visible"), QStringList{"1"});
    EXPECT_EQ(run(write("personal", "user_phone", "123")), 0);  // no row, nothing stored
    EXPECT_EQ(run("UPDATE setting SET set_visible ='0' WHERE set_type='software' AND "
                  "set_key='date_upgrade'"),
              1);
    EXPECT_EQ(texts("SELECT set_visible FROM setting WHERE set_type='software' ORDER BY set_key"),
              (QStringList{"1", "0"}));
    EXPECT_EQ(run("DELETE * FROM setting WHERE set_type='model_pp'"), 2);
    EXPECT_EQ(rows("SELECT * FROM setting WHERE set_type= 'model_pp'"), 0);
    EXPECT_EQ(rows("SELECT * FROM setting"), 5);
}

TEST_F(CorpusLists, ContactListConditions) {
    const QString columns = " con_check, con_id,con_lastname,acc_name,con_description ";
    QStringList search;
    for (const char* c :
         {"con_lastname",         "acc_name",      "con_description", "con_nickname",
          "con_department_title", "con_telephone", "con_telephone3",  "con_telephone2",
          "con_mobile",           "con_mobile3",   "con_mobile2",     "con_fax",
          "con_website",          "acc_website",   "con_email",       "con_email3",
          "con_email2",           "acc_postcode",  "acc_address",     "con_postcode_family",
          "con_address_family",   "con_im",        "con_im2",         "con_im3"})
        search << QString::fromUtf8(c) + " LIKE '%acme%'";
    // In list order: most recent contact first, never contacted last.
    const Query conditions[] = {
        {"", {6, 2, 1, 4, 3, 5}},
        {"WHERE   " + search.join(" OR "), {2, 1, 3}},
        {" WHERE con_important='High'", {1, 3}},
        {" WHERE acc_type='Customer'", {2, 1, 5}},
        {" WHERE con_relation='Friend'", {1, 3}},
        {" WHERE acc_industry='IT'", {2, 1}},
        {" WHERE con_province='Beijing'", {6, 1, 3}},
        {" WHERE con_tag Like  '%VIP%' ", {6, 2, 1}},
        {" WHERE acc_name='Acme Ltd'", {2, 1}},
        {" WHERE acc_name IS NULL", {6, 4}},
        {" WHERE con_id IN (SELECT DISTINCT con_id FROM opportunities_contacts)", {1, 3}},
        {" WHERE con_id NOT IN (SELECT DISTINCT con_id FROM opportunities_contacts)", {6, 2, 4, 5}},
        {"  WHERE con_id = -1", {}},
        {"WHERE con_check= true", {6, 1, 3}},
        {birthdayCondition(3, 5), {2, 4}},
    };
    for (const Query& c : conditions) {
        const QString tail = c.sql + " ORDER BY con_recent_contact_date DESC";
        EXPECT_EQ(ids("SELECT " + columns + " FROM que_contacts_accounts " + tail, "con_id"),
                  c.expected)
            << str(c.sql);
        EXPECT_EQ(ids("SELECT " + columns + "FROM  que_contacts_accounts " + tail, "con_id"),
                  c.expected)
            << str(c.sql);
    }
    // A condition that brings its own order keeps it.
    EXPECT_EQ(ids("SELECT " + columns +
                      "FROM  que_contacts_accounts WHERE con_id>3 ORDER BY "
                      "con_lastname",
                  "con_id"),
              (Ids{5, 6, 4}));
    // The detail page's name search doubles the quote of the typed text.
    const QString typed = tarveldatabase::SafeSql(QStringLiteral("o'b"));
    EXPECT_EQ(ids("SELECT con_id,con_lastname,acc_name FROM que_contacts_accounts WHERE "
                  "con_lastname LIKE '%" +
                  typed + "%' OR acc_name LIKE '%" + typed + "%'"),
              (Ids{5}));
}

TEST_F(CorpusLists, SearchesOfOtherLists) {
    // "WHERE   " and a LIKE test of the typed text per column, joined by OR.
    const auto any = [](const char* text, std::initializer_list<const char*> columns) {
        QStringList tests;
        for (const char* c : columns) tests << QString::fromUtf8(c) + " LIKE '%" + text + "%'";
        return "WHERE   " + tests.join(" OR ");
    };
    const Query searches[] = {
        {"SELECT opp_id FROM opportunities " + any("AUD", {"opp_subject", "opp_description"}), {2}},
        {"SELECT acc_id FROM accounts WHERE   acc_name LIKE '%1 main%' OR acc_description LIKE "
         "'%1 main%'  OR acc_address LIKE '%1 main%' OR acc_postcode LIKE '%1 main%'  OR "
         "acc_telephone LIKE '%1 main%'  OR acc_fax LIKE '%1 main%' OR acc_website LIKE "
         "'%1 main%'",
         {1}},
        {"SELECT tas_id FROM tasks " + any("LUNCH", {"tas_subject", "tas_description"}), {7}},
        {"SELECT doc_id FROM documents " + any(".PDF", {"doc_name", "doc_description"}), {1}},
        {"SELECT acc_id,acc_name FROM accounts WHERE acc_name LIKE '%o%'", {2, 3}},
        {"SELECT opp_id, opp_subject FROM opportunities  WHERE opp_subject LIKE '%e%'", {1, 3}},
    };
    for (const Query& q : searches) EXPECT_EQ(sorted(ids(q.sql)), q.expected) << str(q.sql);
}

TEST_F(CorpusLists, CheckMarks) {
    struct Step {
        const char* statement;
        int affected;
        const char* ticked;
        Ids expected;
    };
    const char* acc = "SELECT acc_id FROM accounts WHERE acc_check=-1 ORDER BY acc_id";
    const char* con = "SELECT con_id FROM contacts WHERE con_check=-1 ORDER BY con_id";
    const char* tas = "SELECT tas_id FROM tasks WHERE tas_check=-1 ORDER BY tas_id";
    const char* doc = "SELECT doc_id FROM documents WHERE doc_check=-1 ORDER BY doc_id";
    const Step steps[] = {
        {"UPDATE accounts SET acc_check=NOT acc_check   WHERE acc_type='Customer'",
         2,
         acc,
         {1, 2, 3}},
        {"UPDATE accounts SET acc_check=NOT acc_check  ", 3, acc, {}},
        {"UPDATE accounts SET acc_check= -1  WHERE acc_province='Beijing'", 2, acc, {1, 3}},
        {"UPDATE accounts SET acc_check=acc_check ", 3, acc, {1, 3}},
        {"UPDATE accounts SET acc_check=0  WHERE acc_id=1", 1, acc, {3}},
        {" UPDATE accounts SET acc_check=0", 3, acc, {}},
        {"UPDATE opportunities SET opp_check= NOT opp_check ",
         3,
         "SELECT opp_id FROM opportunities WHERE opp_check=-1 ORDER BY opp_id",
         {2, 3}},
        {"UPDATE que_contacts_accounts SET con_check= NOT con_check  WHERE acc_name IS NULL",
         2,
         con,
         {1, 3, 4}},
        {"UPDATE que_contacts_accounts SET con_check= -1  WHERE acc_industry='IT'",
         2,
         con,
         {1, 2, 3, 4}},
        {"UPDATE que_contacts_accounts SET con_check=con_check  WHERE con_id=5",
         1,
         con,
         {1, 2, 3, 4}},
        {" UPDATE contacts SET con_check=0", 6, con, {}},
        {"UPDATE tasks SET tas_check= -1  WHERE tas_closed=0 ", 8, tas, {1, 2, 3, 4, 5, 6, 8, 9}},
        {" UPDATE tasks SET tas_check=0", 9, tas, {}},
        {"UPDATE documents SET doc_check=NOT doc_check  ", 3, doc, {2, 3}},
        {" UPDATE documents SET doc_check=0", 3, doc, {}},
    };
    for (const Step& s : steps) {
        EXPECT_EQ(run(s.statement), s.affected) << s.statement;
        EXPECT_EQ(ids(s.ticked), s.expected) << s.statement;
    }
}

TEST_F(CorpusLists, BulkOperationReads) {
    EXPECT_EQ(sorted(ids("SELECT  con_check, con_id,con_lastname  FROM que_contacts_accounts "
                         "WHERE con_check=true",
                         "con_id")),
              (Ids{1, 3, 6}));
    EXPECT_EQ(sorted(ids("SELECT opp_id FROM opportunities WHERE opp_id IN (SELECT DISTINCT "
                         "opportunities_contacts.opp_id  FROM opportunities_contacts LEFT Join "
                         "contacts ON opportunities_contacts.con_id  = contacts.con_id  WHERE  "
                         "contacts.con_check = true)")),
              (Ids{1, 2}));
    // The expense and weighted revenue table; Jet's "/" divides without truncating.
    const std::tuple<int, QVariant, QVariant, QVariant> sums[] = {
        {1, 12.5, 4002.0, 1200.6}, {3, 0.0, 2001.0, 200.1}, {6, {}, {}, {}}};
    for (const auto& [contact, outlay, sales1, sales2] : sums) {
        const QString id = num(contact);
        RecordsetPtr rs = read(
            "SELECT Sum(opportunities.opp_estimate_sale*opportunities.opp_sale) AS sales1,  "
            "Sum(opportunities.opp_succeed_probability*opportunities.opp_estimate_sale*"
            "opportunities.opp_sale / 100) AS sales2  FROM opportunities_contacts LEFT JOIN "
            "opportunities ON opportunities_contacts.opp_id = opportunities.opp_id  WHERE "
            "opportunities_contacts.con_id = " +
            id);
        ASSERT_TRUE(rs && !rs->Eof());
        const std::pair<QVariant, QVariant> checks[] = {
            {scalar("SELECT Sum(tasks.tas_outlay) AS Sum_Outlay    FROM contacts_tasks LEFT JOIN "
                    "tasks ON contacts_tasks.tas_id = tasks.tas_id  WHERE contacts_tasks.con_id= " +
                    id),
             outlay},
            {rs->value("sales1"), sales1},
            {rs->value("sales2"), sales2}};
        for (const auto& [got, expected] : checks) {
            EXPECT_EQ(got.isNull(), expected.isNull()) << "contact " << contact;
            if (!expected.isNull()) {
                EXPECT_NEAR(got.toDouble(), expected.toDouble(), 1e-9) << "contact " << contact;
            }
        }
    }
}

// One step of a report cut: the statement, then what is left (keys of the first column).
struct Cut {
    QString statement;
    QString left;
    Ids expected;
};

void runCuts(const std::vector<Cut>& cuts) {
    for (const Cut& c : cuts) {
        run(c.statement);
        EXPECT_EQ(sorted(ids(c.left)), c.expected) << str(c.statement);
    }
}

TEST_F(CorpusExchange, OpportunityReportCut) {
    const auto unticked = [](const char* table) {
        return QStringLiteral("Delete * FROM ") + table +
               " WHERE opp_id NOT IN (SELECT opp_id FROM opportunities WHERE opp_check=true)";
    };
    runCuts({
        {"DELETE * FROM opportunities WHERE opp_check= false ",
         "SELECT opp_id FROM opportunities",
         {1}},
        {unticked("opportunities_documents"), "SELECT doc_id FROM opportunities_documents", {2}},
        {unticked("opportunities_accounts"), "SELECT acc_id FROM opportunities_accounts", {1}},
        {unticked("opportunities_contacts"), "SELECT con_id FROM opportunities_contacts", {1, 3}},
        {unticked("opportunities_tasks"), "SELECT tas_id FROM opportunities_tasks", {4}},
        {"Delete * FROM documents WHERE doc_id NOT IN (SELECT doc_id FROM opportunities_documents "
         ")",
         "SELECT doc_id FROM documents",
         {2}},
        {"Delete * FROM accounts WHERE acc_id NOT IN (SELECT acc_id FROM opportunities_accounts)",
         "SELECT acc_id FROM accounts",
         {1}},
        {"Delete * FROM contacts WHERE con_id NOT IN (SELECT con_id FROM opportunities_contacts)",
         "SELECT con_id FROM contacts",
         {1, 3}},
        {"Delete * FROM tasks WHERE tas_id NOT IN (SELECT tas_id FROM opportunities_tasks)",
         "SELECT tas_id FROM tasks",
         {4}},
    });
}

TEST_F(CorpusExchange, ContactReportCut) {
    // Private records leave first, each with its link rows.
    const auto privateIds = [](const char* sql) {
        Ids out;
        RecordsetPtr rs = read(sql);
        for (; rs && !rs->Eof(); rs->MoveNext())
            if (rs->value(1).toInt() != 0) out.push_back(rs->value(0).toInt());
        return out;
    };
    EXPECT_EQ(privateIds("SELECT acc_id, acc_private  FROM accounts"), (Ids{3}));
    EXPECT_EQ(privateIds("SELECT opp_id, opp_private  FROM opportunities"), (Ids{2}));
    EXPECT_EQ(privateIds("SELECT tas_id, tas_private  FROM tasks"), Ids{});
    ASSERT_EQ(privateIds("SELECT con_id, con_private  FROM contacts"), (Ids{5}));
    const auto unticked = [](const char* table) {
        return QStringLiteral("Delete * FROM ") + table +
               " WHERE con_id NOT IN (SELECT con_id FROM contacts WHERE con_check=true)";
    };
    runCuts({
        {"Delete * from contacts WHERE con_id =5", "SELECT con_id FROM contacts", {1, 2, 3, 4, 6}},
        {"Delete * from accounts_contacts WHERE con_id =5",
         "SELECT con_id FROM accounts_contacts",
         {1, 2, 3}},
        {"Delete * from contacts_contacts WHERE con_id1 =5 OR  con_id2= 5",
         "SELECT con_id2 FROM contacts_contacts",
         {1, 3}},
        {"Delete * from opportunities_contacts WHERE con_id =5",
         "SELECT con_id FROM opportunities_contacts",
         {1, 1, 3}},
        {"Delete * from contacts_tasks WHERE con_id =5",
         "SELECT con_id FROM contacts_tasks",
         {1, 2, 3, 4}},
        {"Delete * from contacts_documents WHERE con_id =5",
         "SELECT con_id FROM contacts_documents",
         {1, 3}},
        // The cut for the ticked contacts 1, 3 and 6.
        {unticked("accounts_contacts"), "SELECT con_id FROM accounts_contacts", {1, 3}},
        {unticked("contacts_tasks"), "SELECT tas_id FROM contacts_tasks", {1, 3}},
        {unticked("opportunities_contacts"),
         "SELECT con_id FROM opportunities_contacts",
         {1, 1, 3}},
        {unticked("contacts_documents"), "SELECT doc_id FROM contacts_documents", {1, 3}},
        {"Delete * FROM documents WHERE doc_id NOT IN (SELECT doc_id FROM contacts_documents )",
         "SELECT doc_id FROM documents",
         {1, 3}},
        {"Delete * FROM opportunities WHERE opp_id NOT IN (SELECT opp_id FROM "
         "opportunities_contacts)",
         "SELECT opp_id FROM opportunities",
         {1, 2}},
        {"Delete * FROM tasks WHERE tas_id NOT IN (SELECT tas_id FROM contacts_tasks)",
         "SELECT tas_id FROM tasks",
         {1, 3}},
        {"Delete * FROM accounts WHERE acc_id NOT IN (SELECT acc_id FROM accounts_contacts)",
         "SELECT acc_id FROM accounts",
         {1, 2}},
    });
    // Contacts related to a ticked contact, in either direction, are ticked as well.
    for (int id : ids("SELECT con_id FROM contacts WHERE con_check=true")) {
        RecordsetPtr pairs =
            read("SELECT con_id1, con_id2 FROM contacts_contacts WHERE con_id2=" + num(id) +
                 " OR con_id1=" + num(id));
        for (; pairs && !pairs->Eof(); pairs->MoveNext()) {
            const int one = pairs->value("con_id1").toInt(), two = pairs->value("con_id2").toInt();
            run("UPDATE  contacts SET con_check=true WHERE con_id= " + num(one == id ? two : one));
        }
    }
    runCuts({{"DELETE * FROM contacts WHERE con_check= false ",
              "SELECT con_id FROM contacts",
              {1, 3, 4, 6}}});
    // Contact 4 travels bare: its task link went before it was ticked.
    EXPECT_EQ(rows("SELECT * FROM contacts_tasks WHERE con_id=4"), 0);
}

TEST_F(CorpusExchange, IdTranslationTables) {
    EXPECT_EQ(ids("SELECT  * FROM upgrade_accounts WHERE old_acc_id = 7", "new_acc_id"), (Ids{2}));
    EXPECT_EQ(ids("SELECT  * FROM upgrade_contacts WHERE old_con_id = 11", "new_con_id"), (Ids{3}));
    EXPECT_EQ(run("DELETE * FROM upgrade_accounts"), 2);
    EXPECT_EQ(rows("SELECT * FROM upgrade_accounts"), 0);
    EXPECT_EQ(rows("SELECT * FROM upgrade_contacts"), 1);
}

TEST_F(CorpusDialect, DateLiterals) {
    const QString onceOn = "SELECT tas_id FROM tasks WHERE tas_cycle=0 AND tas_date=";
    const QString contactAt = "SELECT con_id FROM contacts WHERE con_recent_contact_date=";
    const QString taskAt = "SELECT tas_id FROM tasks WHERE tas_time=";
    const Query cases[] = {
        {onceOn + "#2024-3-5# ORDER BY tas_id", {1, 7}},
        {onceOn + "#2024-03-05# ORDER BY tas_id", {1, 7}},
        {onceOn + "#2024/3/5# ORDER BY tas_id", {1, 7}},
        {onceOn + "#2024/03/05# ORDER BY tas_id", {1, 7}},
        {onceOn + "#3/5/2024# ORDER BY tas_id", {1, 7}},  // month first
        {onceOn + "#03/05/2024# ORDER BY tas_id", {1, 7}},
        {onceOn + "# 2024-3-5# ORDER BY tas_id", {1, 7}},
        {contactAt + "#2024-2-19 14:00#", {1}},
        {contactAt + "#2024-2-19 14:00:00#", {1}},
        {contactAt + "#2024-2-19 2:00 PM#", {1}},
        {contactAt + "#2/19/2024 14:00#", {1}},
        {contactAt + "#2024-2-19#", {}},  // midnight is another moment
        {"SELECT con_id FROM contacts WHERE con_create_date > #2024-3-5#", {2}},
        {taskAt + "#9:30#", {1}},
        {taskAt + "#09:30:00#", {1}},
        {taskAt + "#9:30 AM#", {1}},
        {"SELECT con_id FROM contacts WHERE con_birthday<> # 1900-1-1# ORDER BY con_id",
         {2, 3, 4, 6}},
    };
    for (const Query& q : cases) EXPECT_EQ(ids(q.sql), q.expected) << str(q.sql);
}

TEST_F(CorpusDialect, NowAndDateFollowTheClock) {
    const char* madeToday =
        "SELECT con_id FROM contacts WHERE con_create_date >= date AND con_create_date <= now "
        "ORDER BY con_id";
    EXPECT_EQ(ids("SELECT con_id FROM contacts WHERE con_create_date = date"), (Ids{4}));
    EXPECT_EQ(ids(madeToday), (Ids{2, 4}));
    Clock::setFixed(at(2024, 3, 5, 9, 0));
    EXPECT_EQ(ids(madeToday), (Ids{4}));
    // Across midnight.
    Clock::setFixed(at(2024, 3, 5, 23, 59, 30));
    run("UPDATE tasks SET tas_last_remind_date= date WHERE tas_id = 2");
    Clock::advance(60);
    run("UPDATE tasks SET tas_last_remind_date= date WHERE tas_id = 9");
    run("UPDATE contacts SET con_recent_contact_date=now WHERE con_id=5");
    EXPECT_EQ(str(stamp(scalar("SELECT tas_last_remind_date FROM tasks WHERE tas_id=2"))),
              "2024-03-05 00:00:00");
    EXPECT_EQ(str(stamp(scalar("SELECT tas_last_remind_date FROM tasks WHERE tas_id=9"))),
              "2024-03-06 00:00:00");
    EXPECT_EQ(str(stamp(scalar("SELECT con_recent_contact_date FROM contacts WHERE con_id=5"))),
              "2024-03-06 00:00:30");
    EXPECT_EQ(ids("SELECT tas_id FROM tasks WHERE tas_last_remind_date = date"), (Ids{9}));
    EXPECT_EQ(ids("SELECT tas_id FROM tasks WHERE tas_last_remind_date < date"), (Ids{2}));
}

TEST_F(CorpusDialect, WordsFunctionsAndText) {
    const Query cases[] = {
        {"SELECT con_id FROM contacts WHERE con_check=true ORDER BY con_id", {1, 3, 6}},
        {"SELECT con_id FROM contacts WHERE con_check= false ORDER BY con_id", {2, 4, 5}},
        {"SELECT con_id FROM contacts WHERE con_check ORDER BY con_id", {1, 3, 6}},
        {"SELECT con_id FROM contacts WHERE NOT con_check ORDER BY con_id", {2, 4, 5}},
        {"SELECT con_id FROM contacts WHERE NOT con_check = 0 ORDER BY con_id", {1, 3, 6}},
        {"SELECT tas_id FROM tasks WHERE WEEKDAY(tas_date)=1", {8}},  // 2024-2-4, a Sunday
        {"SELECT tas_id FROM tasks WHERE WEEKDAY(tas_date)=7", {5}},  // 2020-2-29, a Saturday
        {"SELECT tas_id FROM tasks WHERE WEEKDAY (tas_date)=3 ORDER BY tas_id", {1, 6, 7, 9}},
        {"SELECT tas_id FROM tasks WHERE DAY(tas_date)=31", {4}},
        {"SELECT tas_id FROM tasks WHERE MONTH(tas_date)=2 ORDER BY tas_id", {3, 5, 8, 9}},
        {"SELECT tas_id FROM tasks WHERE YEAR(tas_date)=2020", {5}},
        {"SELECT tas_id FROM tasks WHERE tas_cycle / 2 = 3.5 ORDER BY tas_id", {3, 9}},
        {"SELECT con_id FROM contacts WHERE con_id=4AND con_check=0", {4}},
        {"SELECT con_id FROM contacts WHERE con_id=1AND con_check=0", {}},
        {"SELECT con_id FROM contacts WHERE con_lastname='ZHANG'", {1}},
        {"SELECT con_id FROM contacts WHERE con_lastname LIKE 'zh%' ORDER BY con_id", {1, 4}},
        {"SELECT con_id FROM contacts WHERE con_lastname='O''Brien'", {5}},
        {"SELECT con_id FROM contacts WHERE con_lastname LIKE '%''%'", {5}},
    };
    for (const Query& q : cases) EXPECT_EQ(ids(q.sql), q.expected) << str(q.sql);
    EXPECT_EQ(rows("SELECT set_key FROM setting WHERE set_type='Login'"), 2);

    EXPECT_EQ(texts("SELECT first(acc_name) AS f FROM accounts WHERE acc_id=2"),
              QStringList{"Borealis"});
    // first() gives the first row's value, a null included.
    RecordsetPtr rs = read(
        "SELECT first(con_important) AS f, count(con_id) AS n FROM contacts "
        "WHERE con_id IN (4,5)");
    ASSERT_TRUE(rs && !rs->Eof());
    EXPECT_TRUE(rs->value("f").isNull());
    EXPECT_EQ(rs->value("n").toInt(), 2);

    // NOT on a yes/no column flips -1 and 0, and back.
    EXPECT_EQ(run("UPDATE contacts SET con_check= NOT con_check WHERE con_id=1"), 1);
    EXPECT_EQ(rows("SELECT * FROM contacts WHERE con_id=1 AND con_check=0"), 1);
    EXPECT_EQ(run("UPDATE contacts SET con_check= NOT con_check WHERE con_id=1"), 1);
    EXPECT_EQ(rows("SELECT * FROM contacts WHERE con_id=1 AND con_check=-1"), 1);

    EXPECT_EQ(run("DELETE * FROM contacts_tasks WHERE con_id=4"), 1);
    EXPECT_EQ(run("Delete * from contacts_documents WHERE con_id =3"), 1);
    EXPECT_EQ(run("INSERT INTO options (opt_object, opt_name, opt_description) VALUES "
                  "('con', 'title', 'Ma''am')"),
              1);
    EXPECT_EQ(texts("SELECT  opt_description FROM options WHERE opt_object = 'con'  AND opt_name "
                    "= 'title' ORDER BY opt_description"),
              QStringList{"Ma'am"});
}

}  // namespace
}  // namespace tarvel::testing::corpus
