#include "exchange/duplicates.h"

#include <QHash>
#include <QRegularExpression>
#include <numeric>
#include <vector>

#include "exchange/boundsql.h"
#include "exchange/importsession.h"
#include "records/kinds.h"
#include "store/connectionstring.h"
#include "store/sqlitehandle.h"

namespace tarvel::exchange {

namespace {

// Shorter numbers are extensions or typing slips, not someone's mobile.
constexpr int kShortestMobile = 5;

// Records joined by a shared value, each set kept by its smallest index.
class Sets {
public:
    explicit Sets(int size) : parent_(size_t(size)) {
        std::iota(parent_.begin(), parent_.end(), 0);
    }
    int root(int i) {
        while (parent_[size_t(i)] != i)
            i = parent_[size_t(i)] = parent_[size_t(parent_[size_t(i)])];
        return i;
    }
    void join(int a, int b) {
        a = root(a), b = root(b);
        if (a != b) parent_[size_t(std::max(a, b))] = std::min(a, b);
    }

private:
    std::vector<int> parent_;
};

// The records that share one value, and how the user is told about it.
struct Shared {
    QList<int> members;  // indexes into the records read
    QString reason;
};

class Grouping {
public:
    void add(const QString& key, int record, const QString& reason) {
        Shared& s = byKey_[key];
        if (s.members.isEmpty()) {
            s.reason = reason;
            order_ << key;
        }
        if (s.members.isEmpty() || s.members.last() != record) s.members << record;
    }

    QList<DuplicateGroup> groups(const QList<qint64>& keys) {
        Sets sets(int(keys.size()));
        for (const Shared& s : std::as_const(byKey_))
            for (int m : s.members) sets.join(s.members.first(), m);
        QHash<int, DuplicateGroup> byRoot;
        QList<int> roots;
        for (const QString& key : std::as_const(order_)) {
            const Shared& s = byKey_[key];
            if (s.members.size() < 2) continue;
            const int r = sets.root(s.members.first());
            if (!byRoot.contains(r)) roots << r;
            byRoot[r].reasons << s.reason;
        }
        for (int i = 0; i < keys.size(); ++i)
            if (auto it = byRoot.find(sets.root(i)); it != byRoot.end()) it->keys << keys.at(i);
        std::sort(roots.begin(), roots.end());
        QList<DuplicateGroup> out;
        for (int r : roots) {
            DuplicateGroup g = byRoot.take(r);
            std::sort(g.keys.begin(), g.keys.end());
            out << g;
        }
        std::sort(out.begin(), out.end(), [](const DuplicateGroup& a, const DuplicateGroup& b) {
            return a.keys.first() < b.keys.first();
        });
        return out;
    }

private:
    QHash<QString, Shared> byKey_;
    QStringList order_;  // first seen first, so reasons keep the file's order
};

Outcome contactGroups(Handle& h, QList<DuplicateGroup>* groups) {
    QList<qint64> keys;
    Grouping grouping;
    QString error;
    const bool ok = runBound(
        h,
        QStringLiteral(
            "SELECT c.con_id, c.con_lastname, c.con_mobile, c.con_mobile2, c.con_mobile3, "
            "c.con_email, c.con_email2, c.con_email3, a.acc_id, a.acc_name FROM contacts c "
            "LEFT JOIN accounts a ON a.acc_id = (SELECT MIN(acc_id) FROM accounts_contacts l "
            "WHERE l.con_id = c.con_id) ORDER BY c.con_id"),
        {}, &error, [&](sqlite3_stmt* s) {
            const int record = int(keys.size());
            keys << sqlite3_column_int64(s, 0);
            auto text = [s](int i) { return columnValue(s, i).toString(); };
            for (int i = 2; i <= 4; ++i) {
                const QString m = ImportSession::normalisedPhone(text(i));
                if (m.size() >= kShortestMobile)
                    grouping.add(QStringLiteral("m") + m, record, QStringLiteral("相同手机：") + m);
            }
            for (int i = 5; i <= 7; ++i) {
                const QString e = ImportSession::normalisedEmail(text(i));
                if (!e.isEmpty())
                    grouping.add(QStringLiteral("e") + e, record, QStringLiteral("相同邮箱：") + e);
            }
            // A common name alone says little; with the same account it does.
            const QString name = ImportSession::normalisedName(text(1));
            if (!name.isEmpty() && sqlite3_column_type(s, 8) != SQLITE_NULL)
                grouping.add(QStringLiteral("n%1\x1F%2").arg(sqlite3_column_int64(s, 8)).arg(name),
                             record,
                             QStringLiteral("相同姓名和单位：%1（%2）")
                                 .arg(text(1).simplified(), text(9).simplified()));
        });
    if (!ok) return Outcome::failure(QStringLiteral("查找重复联系人没有完成：") + error);
    *groups = grouping.groups(keys);
    return Outcome{true, false, {}, {}};
}

Outcome accountGroups(Handle& h, QList<DuplicateGroup>* groups) {
    QList<qint64> keys;
    QStringList names;
    Grouping grouping;
    QString error;
    const bool ok =
        runBound(h, QStringLiteral("SELECT acc_id, acc_name FROM accounts ORDER BY acc_id"), {},
                 &error, [&](sqlite3_stmt* s) {
                     const int record = int(keys.size());
                     keys << sqlite3_column_int64(s, 0);
                     names << columnValue(s, 1).toString().simplified();
                     if (const QString core = companyNameCore(names.last()); !core.isEmpty())
                         grouping.add(core, record, core);
                 });
    if (!ok) return Outcome::failure(QStringLiteral("查找重复单位没有完成：") + error);
    QHash<qint64, QString> nameOf;
    for (int i = 0; i < keys.size(); ++i) nameOf.insert(keys.at(i), names.at(i));
    *groups = grouping.groups(keys);
    // Only the name can join accounts, so the group's names are its reason.
    for (DuplicateGroup& g : *groups) {
        QStringList distinct;
        for (qint64 k : std::as_const(g.keys))
            if (!distinct.contains(nameOf.value(k))) distinct << nameOf.value(k);
        g.reasons = {QStringLiteral("名称相同（不计公司字样）：") +
                     distinct.join(QStringLiteral("、"))};
    }
    return Outcome{true, false, {}, {}};
}

}  // namespace

QString companyNameCore(const QString& name) {
    // Full-width letters, digits and brackets read as their ASCII forms.
    QString n = name.normalized(QString::NormalizationForm_KC).toCaseFolded();
    static const QRegularExpression latinWords(
        QStringLiteral("\\b(co|ltd|inc|corp|corporation|company|limited)\\b\\.?"));
    n.remove(latinWords);
    for (const char* word : {"(中国)", "股份有限公司", "有限责任公司", "有限公司", "集团", "公司"})
        n.remove(QString::fromUtf8(word));
    QString core;
    for (const QChar c : std::as_const(n))
        if (!c.isPunct() && !c.isSpace() && !c.isSymbol()) core += c;
    return core;
}

Outcome findDuplicates(qint16 kindCode, QList<DuplicateGroup>* groups) {
    groups->clear();
    QString error;
    const auto h = acquireHandle(globalConnectionString(), &error);
    if (!h) return Outcome::failure(QStringLiteral("无法打开数据文件：") + error);
    if (kindCode == kind::Contact) return contactGroups(*h, groups);
    if (kindCode == kind::Account) return accountGroups(*h, groups);
    return Outcome::failure(QStringLiteral("只能查找重复的联系人和单位"));
}

}  // namespace tarvel::exchange
