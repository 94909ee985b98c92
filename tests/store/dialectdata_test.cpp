// The dialect against a small data set whose every row is chosen to tell one behaviour of
// the original Jet engine from another: date literals, now and date, yes/no words, WEEKDAY
// and first(), and the stored query of contacts with their account.
//
//  accounts      1 Acme Ltd (IT, Customer)  2 Borealis (Finance, Supplier)
//                3 Cobalt Works (no industry, Customer)
//  contacts      1 Zhang (Acme, birthday 1900-1-1, ticked)   2 Li (Acme and Borealis, born 3-5)
//                3 Wang (Borealis, born 2-29, ticked)        4 Zhao (no account, born 3-5)
//                5 O'Brien (Cobalt, never contacted)         6 Sun (no account, ticked)
//  tasks         dated 3-5 (1 and 7 once, 6 daily), 2-4 (a Sunday), 2020-2-29 (a Saturday)
//  "Today" is Tuesday 5 March 2024, 10:30.
#include <gtest/gtest.h>

#include <QDate>
#include <QDateTime>
#include <QStringList>

#include "store/clock.h"
#include "store/recordset.h"
#include "store/tarveldatabase.h"
#include "tests/support/tempdatafile.h"

namespace tarvel::testing {
namespace {

// Inserted in this order, so keys count from 1 down each list.
const char* const kDataSet[] = {
    "INSERT INTO accounts (acc_name, acc_type, acc_industry, acc_address) VALUES ('Acme Ltd', "
    "'Customer', 'IT', '1 Main St'), ('Borealis', 'Supplier', 'Finance', NULL), ('Cobalt Works', "
    "'Customer', NULL, NULL)",
    "INSERT INTO contacts (con_lastname, con_important, con_birthday, con_create_date, "
    "con_recent_contact_date, con_check) VALUES "
    "('Zhang', 'High', #1900-1-1#, #2024-1-15#, #2024-2-19 14:00#, true), "
    "('Li', 'Low', #1985-3-5#, #2024-3-5 10:00#, #2024-3-1 9:00#, false), "
    "('Wang', 'High', #1988-2-29#, #2024-2-19#, #2024-1-10 8:00#, true), "
    "('Zhao', NULL, #1970-3-5#, #2024-3-5#, #2024-2-18 23:59#, false), "
    "('O''Brien', 'Medium', NULL, #2023-12-1#, NULL, false), "
    "('Sun', 'low', #1980-1-1#, #2024-2-25#, #2024-3-4#, true)",
    "INSERT INTO tasks (tas_date, tas_time, tas_cycle) VALUES (#2024-3-5#, #9:30#, 0), "
    "(#2024-3-1#, #8:00#, 1), (#2024-2-7#, #16:00#, 7), (#2024-1-31#, #17:00#, 30), "
    "(#2020-2-29#, #12:00#, 365), (#2024-3-5#, #11:00#, 1), (#2024-3-5#, #12:30#, 0), "
    "(#2024-2-4#, #10:00#, 14), (#2024-2-27#, #19:00#, 7)",
    // Contact 2's second account is linked first: the lower account key still decides.
    "INSERT INTO accounts_contacts (acc_id, con_id) VALUES (2, 2), (1, 1), (1, 2), (2, 3), (3, 5)",
};

QDateTime at(int y, int mo, int d, int h = 0, int mi = 0, int s = 0) {
    return QDateTime(QDate(y, mo, d), QTime(h, mi, s), Qt::UTC);
}

QString cell(const QVariant& v) {
    if (v.isNull()) return QStringLiteral("null");
    if (v.typeId() == QMetaType::QDateTime)
        return v.toDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    return v.toString();
}

// What a statement gives on the data set. A read gives one line per row, joined by ",";
// a row is the value of `columns` (names; default: the first column), joined by ":", null
// as "null", dates as "yyyy-MM-dd HH:mm:ss". Any other statement gives the number of rows
// it changed.
QString outcome(const QString& sql, const QString& columns) {
    tarveldatabase db;
    if (!sql.startsWith(QLatin1String("SELECT"))) {
        qint64 changed = -1;
        db.Execute(sql, &changed);
        return db.ErrMsg().isEmpty() ? QString::number(changed) : "error: " + db.ErrMsg();
    }
    RecordsetPtr rs = db.GetReadRs(sql);
    if (!rs || rs->State() != adStateOpen) return "error: " + db.ErrMsg();
    QStringList rows;
    for (; !rs->Eof(); rs->MoveNext()) {
        QStringList cells;
        for (const QString& name : columns.split(' ', Qt::SkipEmptyParts))
            cells << (rs->fieldIndex(name) < 0 ? "no " + name : cell(rs->value(name)));
        rows << (columns.isEmpty() ? cell(rs->value(0)) : cells.join(':'));
    }
    return rows.join(',');
}

// One step per line, "statement|result" or "statement|columns|result", the statement
// exactly as written up to the bar.
void play(const QString& text) {
    for (const QString& line : text.split('\n', Qt::SkipEmptyParts)) {
        const QStringList f = line.split('|');
        ASSERT_TRUE(f.size() == 2 || f.size() == 3) << line.toStdString();
        EXPECT_EQ(outcome(f[0], f.size() == 3 ? f[1] : QString()).toStdString(),
                  f.last().toStdString())
            << f[0].toStdString();
    }
}

class Corpus : public ::testing::Test {
protected:
    void SetUp() override {
        Clock::setFixed(at(2024, 3, 5, 10, 30));
        for (const char* insert : kDataSet) run(QString::fromUtf8(insert));
    }
    static void run(const QString& sql) {
        tarveldatabase db;
        db.Execute(sql);
        ASSERT_EQ(db.ErrMsg().toStdString(), "") << sql.toStdString();
    }
    TempDataFile file_;
};

TEST_F(Corpus, StoredQueryJoinsTheFirstAccount) {
    play(R"(
SELECT * FROM que_contacts_accounts ORDER BY con_id|con_id|1,2,3,4,5,6
SELECT * FROM que_contacts_accounts WHERE con_id=5|con_lastname con_check con_birthday acc_id acc_name acc_type acc_industry acc_address|O'Brien:0:null:3:Cobalt Works:Customer:null:null
SELECT * FROM que_contacts_accounts WHERE con_id=2|acc_id acc_name|1:Acme Ltd
SELECT * FROM que_contacts_accounts WHERE con_id=4|con_lastname acc_id acc_name|Zhao:null:null
)");
}

TEST_F(Corpus, NowAndDateFollowTheClock) {
    play(R"(
SELECT con_id FROM contacts WHERE con_create_date = date|4
SELECT con_id FROM contacts WHERE con_create_date >= date AND con_create_date <= now ORDER BY con_id|2,4
)");
    Clock::setFixed(at(2024, 3, 5, 9, 0));
    play("SELECT con_id FROM contacts WHERE con_create_date >= date AND con_create_date <= now|4");
    // Across midnight.
    Clock::setFixed(at(2024, 3, 5, 23, 59, 30));
    play("UPDATE tasks SET tas_last_remind_date= date WHERE tas_id = 2|1");
    Clock::advance(60);
    play(R"(
UPDATE tasks SET tas_last_remind_date= date WHERE tas_id = 9|1
UPDATE contacts SET con_recent_contact_date=now WHERE con_id=5|1
SELECT tas_last_remind_date FROM tasks WHERE tas_id IN (2, 9) ORDER BY tas_id|2024-03-05 00:00:00,2024-03-06 00:00:00
SELECT con_recent_contact_date FROM contacts WHERE con_id=5|2024-03-06 00:00:30
SELECT tas_id FROM tasks WHERE tas_last_remind_date = date|9
SELECT tas_id FROM tasks WHERE tas_last_remind_date < date|2
)");
}

TEST_F(Corpus, DatesWordsFunctionsAndText) {
    // Month first in m/d/y; midnight is another moment than 14:00 (the other written forms of
    // a date are the translation table's). WEEKDAY counts from Sunday: 2024-2-4 is a Sunday,
    // 2020-2-29 a Saturday. first() gives the first row's value, a null included. NOT on a
    // yes/no column flips -1 and 0, and back.
    play(R"(
SELECT tas_id FROM tasks WHERE tas_cycle=0 AND tas_date=#2024-3-5# ORDER BY tas_id|1,7
SELECT tas_id FROM tasks WHERE tas_cycle=0 AND tas_date=#3/5/2024# ORDER BY tas_id|1,7
SELECT con_id FROM contacts WHERE con_recent_contact_date=#2024-2-19 2:00 PM#|1
SELECT con_id FROM contacts WHERE con_recent_contact_date=#2024-2-19#|
SELECT con_id FROM contacts WHERE con_create_date > #2024-3-5#|2
SELECT tas_id FROM tasks WHERE tas_time=#9:30#|1
SELECT con_id FROM contacts WHERE con_birthday<> # 1900-1-1# ORDER BY con_id|2,3,4,6
SELECT con_id FROM contacts WHERE con_check=true ORDER BY con_id|1,3,6
SELECT con_id FROM contacts WHERE con_check= false ORDER BY con_id|2,4,5
SELECT con_id FROM contacts WHERE con_check ORDER BY con_id|1,3,6
SELECT con_id FROM contacts WHERE NOT con_check ORDER BY con_id|2,4,5
SELECT con_id FROM contacts WHERE NOT con_check = 0 ORDER BY con_id|1,3,6
SELECT con_id FROM contacts WHERE NOT (con_check) = 0 ORDER BY con_id|1,3,6
SELECT NOT con_check AS a, NOT (con_check) AS b, NOT ((contacts.con_check)) AS c FROM contacts WHERE con_id IN (1, 2) ORDER BY con_id|a b c|0:0:0,-1:-1:-1
SELECT tas_id FROM tasks WHERE WEEKDAY(tas_date)=1|8
SELECT tas_id FROM tasks WHERE WEEKDAY(tas_date)=7|5
SELECT tas_id FROM tasks WHERE WEEKDAY (tas_date)=3 ORDER BY tas_id|1,6,7,9
SELECT tas_id FROM tasks WHERE YEAR(tas_date)=2020|5
SELECT con_id FROM contacts WHERE con_id=4AND con_check=0|4
SELECT con_id FROM contacts WHERE con_id=1AND con_check=0|
SELECT con_id FROM contacts WHERE con_lastname='ZHANG'|1
SELECT con_id FROM contacts WHERE con_lastname LIKE 'zh%' ORDER BY con_id|1,4
SELECT con_id FROM contacts WHERE con_lastname='O''Brien'|5
SELECT first(con_important) AS f, count(con_id) AS n FROM contacts WHERE con_id IN (4,5)|f n|null:2
UPDATE contacts SET con_check= NOT (con_check) WHERE con_id=1|1
SELECT con_check FROM contacts WHERE con_id=1|0
UPDATE que_contacts_accounts SET con_check= NOT con_check  WHERE con_id=1|1
SELECT con_check FROM contacts WHERE con_id=1|-1
)");
}

}  // namespace
}  // namespace tarvel::testing
