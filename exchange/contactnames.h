#pragma once

#include <QString>

namespace tarvel::exchange {

// The year a birthday without a year is kept in: a leap year, so 29 February
// stays, and one nobody living was born in. The birthday lists compare month
// and day only, so they find it; exports write it without a year.
constexpr int kYearlessBirthdayYear = 1904;

// True when the text holds Chinese, Japanese or Korean letters.
bool hasEastAsianLetters(const QString& text);

// The whole name the lists show, put together from its parts: family, middle
// and given name without blanks for Chinese, Japanese and Korean names
// ("欧阳" + "娜娜"), given, middle and family name with one blank otherwise
// ("John Q Doe"); a suffix follows Western names.
QString wholeName(const QString& family, const QString& given, const QString& middle = {},
                  const QString& suffix = {});

// The family part of a whole name whose given name is known ("杜英春" and
// "英春" give "杜", "John Doe" and "John" give "Doe"); the whole name when the
// given name is not part of it.
QString familyOf(const QString& whole, const QString& given);

// A postal address by its parts, as address books keep it.
struct PostalAddress {
    QString poBox, extended, street, locality, region, postcode, country;
};

// One readable line of an address, without its postcode, in the order of its
// country: from country to street for China, Japan and Korea (no separators
// needed between their characters), from street to country with ", " for
// others.
QString addressLine(const PostalAddress& address);

}  // namespace tarvel::exchange
