#pragma once

#include <QDate>
#include <QStringList>
#include <optional>

#include "exchange/importsession.h"
#include "exchange/vcardsyntax.h"

namespace tarvel::exchange {

// A card as a contact to import, and what the user should hear about it.
struct VCardContact {
    IncomingRecord record;
    // Captions of values kept in the note because their fields were full
    // ("其他电话") or because they have no field ("纪念日").
    QStringList movedToNote;
    // Lines whose bytes could not all be read (shown as U+FFFD).
    QList<int> badLines;

    QString name() const { return record.columns.value(QStringLiteral("con_lastname")).toString(); }
};

// The contact of one card: the whole name in con_lastname (FN, else N put
// together, else organisation, e-mail or telephone, never empty), the given
// name in con_firstname, telephones, mobiles, faxes and e-mails in their
// three slots each, the organisation and a work address for its account, the
// UID as the external id; what does not fit goes into the note.
VCardContact contactOfCard(const VCardCard& card);

// The contacts of a .vcf file's bytes and what the user should hear about them.
struct VCardReading {
    QList<VCardContact> contacts;
    QStringList skipped;     // broken cards, each named by its place
    QStringList unreadable;  // "第2张名片「王一明」第5行": bytes shown as U+FFFD
    QStringList moved;       // "「张三」的其他电话": values kept in the note
};
VCardReading readVCards(const QByteArray& bytes);
// Adds what the user should hear about the contact of `card` (damaged lines,
// values kept in the note) to `reading`.
void tellAbout(const VCardCard& card, VCardContact* contact, VCardReading* reading);

// A birthday as cards write it (19800102, 1980-01-02, 1980-01-02T00:00:00Z);
// one without a year (--0102, --01-02) falls in kYearlessBirthdayYear.
std::optional<QDate> vcardBirthday(const QString& value);

}  // namespace tarvel::exchange
