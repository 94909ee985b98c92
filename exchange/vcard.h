#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QVariant>

#include "exchange/progress.h"

namespace tarvel::exchange {

// A contact as a vCard carries it: contact columns by name, and the name of
// its organisation (the account it belongs to).
struct VCardContact {
    QHash<QString, QVariant> columns;
    QString organisation;
};

// vCard 4.0 (RFC 6350) text of contacts, CR LF line ends, long lines folded.
QString writeVCards(const QList<VCardContact>& contacts);
// The contacts of vCard 3.0 or 4.0 text.
QList<VCardContact> readVCards(const QString& text);

// Writes the ticked contacts to a .vcf file (UTF-8).
Outcome exportVCards(const QString& path, int* written = nullptr, const Progress& progress = {});
// Adds the contacts of a .vcf file in one transaction, linking each to its
// organisation's account (added when missing).
Outcome importVCards(const QString& path, int* added = nullptr, const Progress& progress = {});

}  // namespace tarvel::exchange
