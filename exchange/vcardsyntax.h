#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

namespace tarvel::exchange {

// One content line of a card, its value decoded to text (escapes still in).
struct VCardProperty {
    QString group;                       // "ITEM1" of "item1.EMAIL", upper case; empty when none
    QString name;                        // upper case
    QStringList types;                   // lower case, from TYPE= and from bare words ("TEL;CELL:")
    QHash<QString, QString> parameters;  // the others; names upper case, values unquoted
    QString value;
    int line = 0;           // 1-based line of the file where the property begins
    bool badBytes = false;  // bytes not valid in its encoding, shown as U+FFFD
};

// The properties between BEGIN:VCARD and END:VCARD.
struct VCardCard {
    QList<VCardProperty> properties;
    QString version;    // "2.1", "3.0", "4.0" as the card says
    int number = 0;     // 1-based place among the file's cards
    int firstLine = 0;  // the line of its BEGIN:VCARD

    bool oldStyle() const { return version.startsWith(QLatin1String("2.")); }
    // The first property of that name, or null.
    const VCardProperty* find(const QString& name) const;
};

// What reading a file's bytes gave.
struct VCardText {
    QList<VCardCard> cards;
    // Cards left out, each a Chinese sentence naming the card by its place.
    QStringList broken;
    QByteArray encoding;  // what values without a CHARSET were read as
};

// Reads every card of a .vcf file's bytes: UTF-16 first turned to text; line
// ends CR LF, LF, lone CR or CR CR LF; folded lines joined on the bytes (so a
// fold inside a multi-byte character is mended before decoding), vCard 2.1's
// quoted-printable soft breaks joined; then each value decoded with its
// CHARSET, else with the encoding the file's bytes show. Binary values
// (photos, sounds, keys) are left out; invalid base64 makes its card broken.
VCardText readVCardText(const QByteArray& bytes);

// A value split at unescaped `separator`, each part unescaped. vCard 2.1 only
// escapes ';' (other backslashes are kept as they are).
QStringList vcardParts(const QString& value, QChar separator, bool oldStyle);
// A text value unescaped (\n, \, \; \\; in 2.1 only \;).
QString vcardUnescaped(const QString& value, bool oldStyle);

}  // namespace tarvel::exchange
