#include "custom/settingrow.h"

#include "store/tarveldatabase.h"

namespace tarvel::settingrow {

namespace {

QString rowQuery(const QString& columns, const QString& section, const QString& key) {
    return QStringLiteral("SELECT %1 FROM setting WHERE set_type='%2' AND set_key='%3'")
        .arg(columns, tarveldatabase::SafeSql(section), tarveldatabase::SafeSql(key));
}

}  // namespace

std::optional<QString> read(const QString& section, const QString& key) {
    tarveldatabase db;
    const auto rs = db.GetReadRs(rowQuery(QStringLiteral("set_value"), section, key));
    if (!rs || rs->State() != adStateOpen || rs->Eof()) return std::nullopt;
    return rs->value(0).toString();
}

bool write(const QString& section, const QString& key, const QString& name, const QString& value,
           QString* error) {
    tarveldatabase db;
    const auto rs = db.GetWriteRs(rowQuery(QStringLiteral("*"), section, key));
    if (!rs || rs->State() != adStateOpen) {
        *error = db.ErrMsg();
        return false;
    }
    if (rs->Eof()) {
        rs->AddNew();
        rs->setValue(rs->fieldIndex(QStringLiteral("set_type")), section);
        rs->setValue(rs->fieldIndex(QStringLiteral("set_key")), key);
        rs->setValue(rs->fieldIndex(QStringLiteral("set_name")), name);
        rs->setValue(rs->fieldIndex(QStringLiteral("set_visible")), QStringLiteral("0"));
    }
    if (rs->setValue(rs->fieldIndex(QStringLiteral("set_value")), value) && rs->Update())
        return true;
    *error = rs->ErrorDescription();
    rs->CancelUpdate();
    return false;
}

}  // namespace tarvel::settingrow
