#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QVariant>

namespace tarvel::exchange {

// A contact to write on a card: its columns by name (con_id and
// con_create_date make its UID) and its account's name and columns.
struct ContactForCard {
    QHash<QString, QVariant> columns;
    QString organisation;
    QHash<QString, QVariant> accountColumns;  // acc_address, acc_postcode
    QString uid;  // the UID of the card it came from; empty: one made from the contact
};

enum class VCardVersion {
    Four,   // vCard 4.0, what current programs read
    Three,  // vCard 3.0, for older phones
};

// The cards' text: CR LF line ends, long lines folded at 75 octets (never
// inside a character). FN is the whole name, N the family and given name, a
// birthday without a year "--MMDD" (3.0: Apple's 1604 year, marked so).
QString writeVCards(const QList<ContactForCard>& contacts, VCardVersion version);

// The UID a contact's card carries: the same on every export of that contact.
QString contactCardUid(const QHash<QString, QVariant>& columns);

}  // namespace tarvel::exchange
