#include "custom/softwaresetting.h"

#include "store/tarveldatabase.h"

namespace tarvel {

namespace {
QString quote(const QString& text) {
    return tarveldatabase::SafeSql(text);
}

QString blankIfNull(const QVariant& v) {
    return v.isNull() ? QStringLiteral(" ") : v.toString();
}

// A column read back for rewriting: a null one reads as " " and stays empty.
QString kept(const QString& value) {
    return value == QLatin1String(" ") ? QString() : value;
}
}  // namespace

bool SoftwareSetting::GetValue(const QString& type, const QString& key) {
    type_ = type;
    key_ = key;
    tarveldatabase db;
    RecordsetPtr rs =
        db.GetReadRs(QStringLiteral("SELECT * FROM setting WHERE set_type='") + quote(type) +
                     QStringLiteral("' AND set_key='") + quote(key) + QStringLiteral("'"));
    if (rs && rs->State() == adStateOpen && !rs->Eof()) {
        description_ = blankIfNull(rs->value(QStringLiteral("set_description")));
        value_ = blankIfNull(rs->value(QStringLiteral("set_value")));
        visible_ = blankIfNull(rs->value(QStringLiteral("set_visible")));
        name_ = blankIfNull(rs->value(QStringLiteral("set_name")));
    } else {
        description_ = value_ = visible_ = name_ = QStringLiteral(" ");
    }
    if (!db.ErrMsg().isEmpty()) errMsg_ = db.ErrMsg();
    return true;
}

bool SoftwareSetting::WriteValue(const QString& type, const QString& key, const QString& name,
                                 const QString& visible, const QString& value,
                                 const QString& description) {
    type_ = type;
    key_ = key;
    name_ = name;
    visible_ = visible;
    value_ = value;
    description_ = description;
    // Typed values are quoted, so a quote in them is stored as typed.
    tarveldatabase db;
    db.Execute(QStringLiteral("UPDATE setting SET set_name='") + quote(name) +
               QStringLiteral("',") + QStringLiteral(" set_visible='") + quote(visible) +
               QStringLiteral("',") + QStringLiteral(" set_value='") + quote(value) +
               QStringLiteral("',") + QStringLiteral(" set_description='") + quote(description) +
               QStringLiteral("'") + QStringLiteral(" WHERE Set_Type='") + quote(type) +
               QStringLiteral("' AND Set_Key='") + quote(key) + QStringLiteral("'"));
    if (!db.ErrMsg().isEmpty()) {
        errMsg_ = db.ErrMsg();
        return false;
    }
    return true;
}

bool SoftwareSetting::ChangeValue(const QString& type, const QString& key,
                                  const std::optional<QString>& value,
                                  const std::optional<QString>& visible) {
    GetValue(type, key);
    return WriteValue(type, key, kept(name_), visible.value_or(kept(visible_)),
                      value.value_or(kept(value_)), kept(description_));
}

}  // namespace tarvel
