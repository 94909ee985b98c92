#pragma once

#include <QString>
#include <QVariant>
#include <QtGlobal>
#include <optional>

namespace tarvel {

// A currency amount as the data file keeps it: fixed point, ten-thousandths.
class Currency {
public:
    constexpr Currency() = default;
    static constexpr Currency fromUnits(qint64 units) { return Currency(units); }
    // Rounds half away from zero to four decimals.
    static Currency fromDouble(double value);
    // A field value; null reads as 0.
    static Currency fromVariant(const QVariant& value);
    // Typed text: blanks and thousands separators are ignored, an empty text is 0;
    // nullopt when the text is no number.
    static std::optional<Currency> parse(const QString& text);

    constexpr qint64 units() const { return units_; }
    double toDouble() const { return double(units_) / 10000.0; }
    QVariant toVariant() const { return QVariant(toDouble()); }
    // Shortest text: no trailing zeros, no decimal point for whole amounts.
    QString toString() const;

    friend constexpr bool operator==(Currency a, Currency b) { return a.units_ == b.units_; }

private:
    constexpr explicit Currency(qint64 units) : units_(units) {}
    qint64 units_ = 0;
};

}  // namespace tarvel
