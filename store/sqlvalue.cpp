#include "store/sqlvalue.h"

#include <sqlite3.h>

#include <QDateTime>
#include <cmath>
#include <limits>

#include "store/jetdate.h"
#include "store/schema.h"

namespace tarvel::sqlvalue {

namespace {
bool isType(const QString& declared, const char* type) {
    return declared.compare(QLatin1String(type), Qt::CaseInsensitive) == 0;
}
}  // namespace

double roundCurrency(double value) {
    return std::round(value * 10000.0) / 10000.0;
}

int kindOf(const QString& declaredType) {
    if (declaredType.isEmpty()) return Untyped;
    if (isType(declaredType, schema::kDateType)) return Date;
    if (isType(declaredType, schema::kYesNoType)) return YesNo;
    if (isType(declaredType, schema::kCurrencyType)) return Currency;
    return Plain;
}

QVariant read(sqlite3_stmt* stmt, int column, const QString& declaredType) {
    const int kind = kindOf(declaredType);
    const int type = sqlite3_column_type(stmt, column);
    switch (type) {
        case SQLITE_INTEGER:
            return decode(type, sqlite3_column_int64(stmt, column), 0, nullptr, 0, kind);
        case SQLITE_FLOAT:
            return decode(type, 0, sqlite3_column_double(stmt, column), nullptr, 0, kind);
        case SQLITE_BLOB:
            return decode(type, 0, 0, static_cast<const char*>(sqlite3_column_blob(stmt, column)),
                          sqlite3_column_bytes(stmt, column), kind);
        case SQLITE_TEXT:
            return decode(type, 0, 0,
                          reinterpret_cast<const char*>(sqlite3_column_text(stmt, column)),
                          sqlite3_column_bytes(stmt, column), kind);
        default:
            return QVariant();
    }
}

QVariant decode(int type, qint64 integer, double real, const char* bytes, int size, int kind) {
    switch (type) {
        case SQLITE_NULL:
            return QVariant();
        case SQLITE_INTEGER: {
            const qint64 v = integer;
            if (kind == YesNo) return QVariant(v != 0 ? -1 : 0);
            if (kind == Currency) return QVariant(double(v));
            if (v >= std::numeric_limits<int>::min() && v <= std::numeric_limits<int>::max())
                return QVariant(int(v));
            return QVariant(qlonglong(v));
        }
        case SQLITE_FLOAT:
            return QVariant(kind == Currency ? roundCurrency(real) : real);
        case SQLITE_BLOB:
            return QVariant(QByteArray(bytes, size));
        default: {
            // Dates are stored as canonical text; computed columns carry no type, so
            // their canonical texts are dates too.
            if (size == 19 && (kind == Untyped || kind == Date)) {
                if (auto d = jetdate::fromCanonical(QLatin1String(bytes, size)))
                    return QVariant(*d);
            }
            return QVariant(QString::fromUtf8(bytes, size));
        }
    }
}

bool toStorage(const QVariant& value, const QString& declaredType, QVariant& stored,
               QString* error) {
    if (value.isNull()) {
        stored = QVariant();
        return true;
    }
    if (isType(declaredType, schema::kDateType)) {
        if (value.typeId() == QMetaType::QString && value.toString().trimmed().isEmpty()) {
            stored = QVariant();
            return true;
        }
        const auto d = jetdate::fromVariant(value);
        if (!d) {
            if (error) *error = QStringLiteral("“%1”不是有效的日期").arg(value.toString());
            return false;
        }
        stored = jetdate::canonical(*d);
        return true;
    }
    if (isType(declaredType, schema::kYesNoType)) {
        bool ok = true;
        const qint64 number =
            value.typeId() == QMetaType::Bool ? (value.toBool() ? -1 : 0) : value.toLongLong(&ok);
        if (!ok) {
            if (error) *error = QStringLiteral("“%1”不是是/否值").arg(value.toString());
            return false;
        }
        stored = QVariant(qint64(number != 0 ? -1 : 0));
        return true;
    }
    if (isType(declaredType, schema::kCurrencyType)) {
        bool ok = true;
        const double number = value.toDouble(&ok);
        if (!ok) {
            if (error) *error = QStringLiteral("“%1”不是有效的金额").arg(value.toString());
            return false;
        }
        stored = roundCurrency(number);
        return true;
    }
    switch (value.typeId()) {
        case QMetaType::QDateTime:
        case QMetaType::QDate:
        case QMetaType::QTime: {
            const auto d = jetdate::fromVariant(value);
            stored = d ? QVariant(jetdate::canonical(*d)) : QVariant();
            return true;
        }
        case QMetaType::Bool:
            stored = QVariant(qint64(value.toBool() ? -1 : 0));
            return true;
        default:
            stored = value;
            return true;
    }
}

void bind(sqlite3_stmt* stmt, int parameter, const QVariant& stored) {
    if (stored.isNull()) {
        sqlite3_bind_null(stmt, parameter);
        return;
    }
    switch (stored.typeId()) {
        case QMetaType::Int:
        case QMetaType::LongLong:
        case QMetaType::UInt:
        case QMetaType::Short:
        case QMetaType::UShort:
        case QMetaType::Long:
        case QMetaType::ULongLong:
            sqlite3_bind_int64(stmt, parameter, stored.toLongLong());
            return;
        case QMetaType::Double:
        case QMetaType::Float:
            sqlite3_bind_double(stmt, parameter, stored.toDouble());
            return;
        case QMetaType::QByteArray: {
            const QByteArray data = stored.toByteArray();
            sqlite3_bind_blob(stmt, parameter, data.constData(), int(data.size()),
                              SQLITE_TRANSIENT);
            return;
        }
        default: {
            const QByteArray text = stored.toString().toUtf8();
            sqlite3_bind_text(stmt, parameter, text.constData(), int(text.size()),
                              SQLITE_TRANSIENT);
            return;
        }
    }
}

}  // namespace tarvel::sqlvalue
