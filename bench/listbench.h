#pragma once

// What the two list benchmarks share: contacts written through the raw
// engine, the list screen on the offscreen platform, and the raw reading of
// a statement's rows that the list is compared with.

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QString>
#include <cstdio>
#include <string>

#include "bench/rawengine.h"
#include "browse/listkind.h"
#include "browse/listsql.h"
#include "browse/liststore.h"
#include "views/common/filedialogs.h"

namespace tarvel::bench {

// `contacts` contacts, one account per ten of them, nine in ten contacts
// linked to an account; Chinese names, numbers, addresses and e-mail.
inline bool fillContacts(sqlite3* db, int contacts) {
    const char* surnames[] = {"王", "李", "张", "刘", "陈", "杨", "黄", "赵", "吴", "周"};
    const char* given[] = {"伟", "芳", "娜", "敏", "静", "强", "磊", "军", "洋", "勇"};
    const char* provinces[] = {"北京", "上海", "广东", "浙江", "四川", "江苏"};
    if (!check(db, sqlite3_exec(db, "BEGIN", nullptr, nullptr, nullptr), "begin")) return false;
    sqlite3_stmt* account =
        prepare(db,
                "INSERT INTO accounts (acc_name, acc_province, acc_address, acc_check) "
                "VALUES (?, ?, ?, 0)");
    sqlite3_stmt* contact =
        prepare(db,
                "INSERT INTO contacts (con_lastname, con_department_title, con_telephone, "
                "con_mobile, con_email, con_province, con_description, con_recent_contact_date, "
                "con_check) VALUES (?, ?, ?, ?, ?, ?, ?, ?, 0)");
    sqlite3_stmt* link =
        prepare(db, "INSERT INTO accounts_contacts (acc_id, con_id) VALUES (?, ?)");
    if (!account || !contact || !link) return false;
    const int accounts = contacts / 10 + 1;
    bool ok = true;
    for (int i = 1; ok && i <= accounts; ++i) {
        bindText(account, 1, std::string(provinces[i % 6]) + "贸易有限公司" + std::to_string(i));
        bindText(account, 2, provinces[i % 6]);
        bindText(account, 3, "人民路" + std::to_string(i) + "号");
        ok = check(db, sqlite3_step(account), "account insert");
        sqlite3_reset(account);
    }
    for (int i = 1; ok && i <= contacts; ++i) {
        bindText(contact, 1,
                 std::string(surnames[i % 10]) + given[(i / 10) % 10] + given[(i / 100) % 10]);
        bindText(contact, 2, "销售部/经理");
        bindText(contact, 3, "010-" + std::to_string(60000000 + i));
        bindText(contact, 4, "139" + std::to_string(10000000 + i));
        bindText(contact, 5, "user" + std::to_string(i) + "@example.com");
        bindText(contact, 6, provinces[(i / 7) % 6]);
        bindText(contact, 7, "第" + std::to_string(i) + "位联系人");
        char date[32];  // the engine's fixed-width date text
        std::snprintf(date, sizeof date, "2024-%02d-%02d 09:00:00", 1 + i % 12, 1 + i % 28);
        bindText(contact, 8, date);
        ok = check(db, sqlite3_step(contact), "contact insert");
        sqlite3_reset(contact);
        if (ok && i % 10 != 0) {
            sqlite3_bind_int(link, 1, 1 + i % accounts);
            sqlite3_bind_int(link, 2, i);
            ok = check(db, sqlite3_step(link), "link insert");
            sqlite3_reset(link);
        }
    }
    sqlite3_finalize(account);
    sqlite3_finalize(contact);
    sqlite3_finalize(link);
    return check(db, sqlite3_exec(db, ok ? "COMMIT" : "ROLLBACK", nullptr, nullptr, nullptr),
                 "commit") &&
           ok;
}

// Opens the raw side on the new data file and fills it with `contacts`.
inline bool openAndFill(const QString& path, int contacts, sqlite3** db) {
    *db = openRaw(path);
    if (*db && fillContacts(*db, contacts)) return true;
    std::fprintf(stderr, "cannot fill the data file with contacts\n");
    return false;
}

// The contacts list's statement for a condition, over the loaded list fields.
inline QString contactListStatement(const QString& condition) {
    const lists::ListKind& kind = lists::listKind(lists::listno::Contacts);
    return lists::listQuery(kind, lists::ListStore(kind).columns(), condition);
}

// Steps through every row of `sql` reading each column as the grid would;
// the number of rows.
inline int readAll(sqlite3* db, const QString& sql) {
    sqlite3_stmt* stmt = prepare(db, sql);
    if (!stmt) return -1;
    const int columns = sqlite3_column_count(stmt);
    int rows = 0;
    while (sqlite3_step(stmt) == SQLITE_ROW) {
        for (int c = 0; c < columns; ++c) {
            const unsigned char* text = sqlite3_column_text(stmt, c);
            benchmark::DoNotOptimize(text);
        }
        ++rows;
    }
    sqlite3_finalize(stmt);
    return rows;
}

// Answers the export's file dialog with a fixed name.
class FixedSaveFile : public FileDialogs {
public:
    explicit FixedSaveFile(QString path) : path_(std::move(path)) {}
    QString getOpenFileName(const QString&, const QString&, const QString&) override {
        return QString();
    }
    QString getSaveFileName(const QString&, const QString&, const QString&) override {
        return path_;
    }

private:
    QString path_;
};

}  // namespace tarvel::bench
