#include "exchange/boundsql.h"

#include "store/sqlitehandle.h"

namespace tarvel::exchange {

namespace {

int bind(sqlite3_stmt* stmt, int index, const QVariant& v) {
    if (v.isNull()) return sqlite3_bind_null(stmt, index);
    switch (v.typeId()) {
        case QMetaType::Int:
        case QMetaType::LongLong:
        case QMetaType::Short:
        case QMetaType::Bool:
            return sqlite3_bind_int64(stmt, index, v.toLongLong());
        case QMetaType::Double:
            return sqlite3_bind_double(stmt, index, v.toDouble());
        default: {
            const QByteArray text = v.toString().toUtf8();
            return sqlite3_bind_text(stmt, index, text.constData(), int(text.size()),
                                     SQLITE_TRANSIENT);
        }
    }
}

}  // namespace

bool runBound(Handle& handle, const QString& sql, const QVariantList& values, QString* error,
              const std::function<void(sqlite3_stmt*)>& row) {
    sqlite3_stmt* stmt = handle.prepare(sql, error);
    if (!stmt) return false;
    StatementLease lease(stmt);
    for (int i = 0; i < values.size(); ++i)
        if (bind(stmt, i + 1, values.at(i)) != SQLITE_OK)
            return (*error = handle.lastError(), false);
    for (;;) {
        const int rc = sqlite3_step(stmt);
        if (rc == SQLITE_DONE) return true;
        if (rc != SQLITE_ROW) return (*error = handle.lastError(), false);
        if (row) row(stmt);
    }
}

QVariant columnValue(sqlite3_stmt* stmt, int index) {
    switch (sqlite3_column_type(stmt, index)) {
        case SQLITE_INTEGER:
            return QVariant(qint64(sqlite3_column_int64(stmt, index)));
        case SQLITE_FLOAT:
            return QVariant(sqlite3_column_double(stmt, index));
        case SQLITE_NULL:
            return QVariant();
        default:
            return QString::fromUtf8(
                reinterpret_cast<const char*>(sqlite3_column_text(stmt, index)),
                sqlite3_column_bytes(stmt, index));
    }
}

QString keyList(const QList<qint64>& keys) {
    QStringList ids;
    for (qint64 k : keys) ids << QString::number(k);
    return ids.join(QLatin1Char(','));
}

}  // namespace tarvel::exchange
