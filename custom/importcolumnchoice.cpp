#include "custom/importcolumnchoice.h"

#include <QCryptographicHash>

#include "custom/settingrow.h"

namespace tarvel {

namespace {

// Rows of the `setting` table this choice lives in.
const QString kSection = QStringLiteral("import_columns");
const QChar kSeparator = QChar(0x1f);

}  // namespace

ImportColumnChoice::ImportColumnChoice(const QString& kind, const QStringList& header)
    : columns_(int(header.size())) {
    // A hex digest: safe to put in a statement, and the same for the same header.
    key_ = QString::fromLatin1(
        QCryptographicHash::hash((kind + kSeparator + header.join(kSeparator)).toUtf8(),
                                 QCryptographicHash::Sha1)
            .toHex());
}

QStringList ImportColumnChoice::recall() const {
    const std::optional<QString> value = settingrow::read(kSection, key_);
    if (!value) return {};
    const QStringList targets = value->split(kSeparator);
    return targets.size() == columns_ ? targets : QStringList();
}

bool ImportColumnChoice::remember(const QStringList& targets) {
    return settingrow::write(kSection, key_, QStringLiteral("导入表格的列"),
                             targets.join(kSeparator), &errMsg_);
}

}  // namespace tarvel
