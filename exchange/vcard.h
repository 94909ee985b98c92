#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include "exchange/importsession.h"
#include "exchange/progress.h"
#include "exchange/vcardcontact.h"
#include "exchange/vcardwriter.h"

namespace tarvel::exchange {

// What an import of a .vcf file did.
struct VCardImport {
    ImportTally tally;
    VCardReading reading;  // without its contacts
    // "新增 N，更新 M，跳过 K…" and the broken cards, damaged lines and values
    // moved into notes.
    QString summary() const;
};

// Writes the ticked contacts to a .vcf file (UTF-8).
Outcome exportVCards(const QString& path, VCardVersion version = VCardVersion::Four,
                     int* written = nullptr, const Progress& progress = {});
// Imports the contacts of a .vcf file in one transaction: a contact already
// there (same UID, or same name with the same mobile or e-mail) is brought up
// to date instead of added again; broken cards are skipped and named. A file
// without a single readable card is refused.
Outcome importVCards(const QString& path, VCardImport* result = nullptr,
                     const Progress& progress = {});

}  // namespace tarvel::exchange
