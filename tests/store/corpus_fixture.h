#pragma once

// A real data file filled, through the access layer, with a small data set whose
// every row is chosen to tell one behaviour of the original engine from another.
//
//  accounts      1 Acme Ltd (IT, Customer)  2 Borealis (Finance, Supplier, ticked)
//                3 Cobalt Works (no industry, Customer, private)
//  contacts      1 Zhang (Acme, birthday 1900-1-1, ticked)   2 Li (Acme, born 3-5)
//                3 Wang (Borealis, born 2-29, ticked)        4 Zhao (no account, born 3-5)
//                5 O'Brien (Cobalt, private, never contacted) 6 Sun (no account, ticked)
//  opportunities 1 Server deal (10 %, ticked)  2 Audit (50 %, private)  3 Licences (100 %)
//  tasks         1 once 3-5          2 daily 3-1..3-10     3 weekly from Wed 2-7
//                4 monthly on 1-31   5 yearly on 2020-2-29 6 daily, closes before it starts
//                7 once 3-5, done    8 unknown cycle 14    9 weekly Tue 2-27..3-5
//  documents     1 Contract.pdf (ticked)  2 Quote.xls  3 Notes.txt
//  "Today" is Tuesday 5 March 2024, 10:30.

#include <gtest/gtest.h>

#include <QDate>
#include <QDateTime>
#include <QStringList>
#include <QVariant>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "store/recordset.h"
#include "tests/support/tempdatafile.h"

namespace tarvel::testing::corpus {

using Ids = std::vector<int>;
using Groups = std::vector<std::pair<std::string, int>>;  // label ("(null)" for null), count

inline const QDate kToday(2024, 3, 5);

QDateTime at(int y, int mo, int d, int h = 0, int mi = 0, int s = 0);
std::string str(const QString& s);
QString lit(const QDate& d);  // y-m-d without leading zeros
QString num(int n);
QString stamp(const QVariant& dateTime);  // "yyyy-MM-dd HH:mm:ss"

// Statement runners; an error fails the current test.
qint64 run(const QString& sql);  // rows changed
RecordsetPtr read(const QString& sql);
QVariantList values(const QString& sql, const QString& column = QString());  // default: first
Ids ids(const QString& sql, const QString& column = QString());
QStringList texts(const QString& sql, const QString& column = QString());
Ids sorted(Ids v);
int rows(const QString& sql);
QVariant scalar(const QString& sql);  // first column of the first row
Groups groups(const QString& sql, const QString& label);
void tickAll(const QString& sql, const QString& column);  // through an updatable recordset
int linkRows();                                           // rows of all eleven link tables

// Conditions as the program assembles them.
QString taskDateCondition(const QDate& d);
QString statisticsTaskCondition(const QDate& d);
QString birthdayCondition(int month, int day);

class CorpusData {
public:
    CorpusData();

private:
    TempDataFile file_;
};

class Corpus : public ::testing::Test {
protected:
    void fresh() {
        data_.reset();
        data_.emplace();
    }
    std::optional<CorpusData> data_{std::in_place};
};

}  // namespace tarvel::testing::corpus
