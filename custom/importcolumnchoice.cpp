#include "custom/importcolumnchoice.h"

#include <QCryptographicHash>

#include "store/tarveldatabase.h"

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
    tarveldatabase db;
    const auto rs = db.GetReadRs(
        QStringLiteral("SELECT set_value FROM setting WHERE set_type='%1' AND set_key='%2'")
            .arg(kSection, key_));
    if (!rs || rs->State() != adStateOpen || rs->Eof()) return {};
    const QStringList targets = rs->value(0).toString().split(kSeparator);
    return targets.size() == columns_ ? targets : QStringList();
}

bool ImportColumnChoice::remember(const QStringList& targets) {
    tarveldatabase db;
    const auto rs =
        db.GetWriteRs(QStringLiteral("SELECT * FROM setting WHERE set_type='%1' AND set_key='%2'")
                          .arg(kSection, key_));
    if (!rs || rs->State() != adStateOpen) {
        errMsg_ = db.ErrMsg();
        return false;
    }
    if (rs->Eof()) {
        rs->AddNew();
        rs->setValue(rs->fieldIndex(QStringLiteral("set_type")), kSection);
        rs->setValue(rs->fieldIndex(QStringLiteral("set_key")), key_);
        rs->setValue(rs->fieldIndex(QStringLiteral("set_name")), QStringLiteral("导入表格的列"));
        rs->setValue(rs->fieldIndex(QStringLiteral("set_visible")), QStringLiteral("0"));
    }
    if (rs->setValue(rs->fieldIndex(QStringLiteral("set_value")), targets.join(kSeparator)) &&
        rs->Update())
        return true;
    errMsg_ = rs->ErrorDescription();
    rs->CancelUpdate();
    return false;
}

}  // namespace tarvel
