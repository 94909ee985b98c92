#include "browse/shownrow.h"

#include "exchange/boundsql.h"
#include "records/kinds.h"
#include "store/connectionstring.h"
#include "store/sqlitehandle.h"

namespace tarvel::lists {

namespace {

// The column the kind's stamp statement sets ("UPDATE t SET col=now ...").
QString stampColumn(const RecordKindInfo& k) {
    const QString statement = QLatin1String(k.stampPrefix);
    const qsizetype from = statement.indexOf(QLatin1String(" SET ")) + 5;
    return statement.mid(from, statement.indexOf(QLatin1Char('='), from) - from);
}

// Columns that change without anyone editing the record: the list's tick and
// the stamp a new link puts on both ends (the page's own panel makes those).
bool stamped(const RecordKindInfo& k, const QString& column) {
    return column == QLatin1String(k.tick) || column == stampColumn(k);
}

}  // namespace

bool ShownRow::read(QHash<QString, QVariant>* values, bool* exists, QString* error) const {
    const RecordKindInfo* k = kindByCode(code_);
    if (!k) return (*error = QStringLiteral("没有这种记录"), false);
    const auto h = acquireHandle(globalConnectionString(), error);
    if (!h) return false;
    *exists = false;
    return exchange::runBound(*h,
                              QStringLiteral("SELECT * FROM %1 WHERE %2=?")
                                  .arg(QLatin1String(k->table), QLatin1String(k->key)),
                              {id_}, error, [&](sqlite3_stmt* s) {
                                  *exists = true;
                                  for (int i = 0; i < sqlite3_column_count(s); ++i) {
                                      const QString name =
                                          QString::fromUtf8(sqlite3_column_name(s, i));
                                      if (!stamped(*k, name))
                                          values->insert(name, exchange::columnValue(s, i));
                                  }
                              });
}

bool ShownRow::remember(qint16 code, qint64 id, QString* error) {
    forget();
    if (id == 0) return true;
    code_ = code;
    id_ = id;
    bool exists = false;
    QString why;
    if (read(&values_, &exists, &why) && exists) return true;
    if (error) *error = why.isEmpty() ? QStringLiteral("记录已不存在") : why;
    forget();
    return false;
}

void ShownRow::forget() {
    code_ = 0;
    id_ = 0;
    values_.clear();
    found_ = Since::Unchanged;
}

bool ShownRow::check(QString* error) {
    found_ = Since::Unchanged;
    if (id_ == 0) return true;
    QHash<QString, QVariant> now;
    bool exists = false;
    if (!read(&now, &exists, error)) return false;
    found_ = !exists ? Since::Deleted : now != values_ ? Since::Changed : Since::Unchanged;
    return true;
}

QString ShownRow::changedQuestion() {
    return QStringLiteral(
        "这条记录在您打开后已被修改（可能是在别处保存的）。要用您现在的内容覆盖吗？");
}

QString ShownRow::deletedQuestion(const QString& noun) {
    return QStringLiteral(
               "这条%1在您打开后已被删除（可能是在别处删除的）。要把您现在的内容保存为一"
               "条新记录吗？")
        .arg(noun);
}

}  // namespace tarvel::lists
