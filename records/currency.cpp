#include "records/currency.h"

#include <cmath>

namespace tarvel {

Currency Currency::fromDouble(double value) {
    return Currency(qint64(std::llround(value * 10000.0)));
}

Currency Currency::fromVariant(const QVariant& value) {
    return value.isNull() ? Currency() : fromDouble(value.toDouble());
}

std::optional<Currency> Currency::parse(const QString& text) {
    QString cleaned = text.trimmed();
    cleaned.remove(QLatin1Char(','));
    cleaned.remove(QLatin1Char(' '));
    if (cleaned.isEmpty()) return Currency();
    bool ok = false;
    const double value = cleaned.toDouble(&ok);
    if (!ok || !std::isfinite(value) || std::fabs(value) > 9.2e14) return std::nullopt;
    return fromDouble(value);
}

QString Currency::toString() const {
    const qint64 magnitude = units_ < 0 ? -units_ : units_;
    QString out = QString::number(magnitude / 10000);
    if (const qint64 fraction = magnitude % 10000) {
        QString decimals = QString::number(fraction).rightJustified(4, QLatin1Char('0'));
        while (decimals.endsWith(QLatin1Char('0'))) decimals.chop(1);
        out += QLatin1Char('.') + decimals;
    }
    return units_ < 0 ? QLatin1Char('-') + out : out;
}

}  // namespace tarvel
