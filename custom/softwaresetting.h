#pragma once

#include <QString>
#include <optional>

namespace tarvel {

// One row of the `setting` table, addressed by section and key.
class SoftwareSetting {
public:
    // Reads a row; a missing row or null column reads as a single blank " ".
    bool GetValue(const QString& type, const QString& key);
    // Overwrites name, visibility, value and description of an existing row;
    // a section and key without a row is not stored.
    bool WriteValue(const QString& type, const QString& key, const QString& name,
                    const QString& visible, const QString& value, const QString& description);
    // Rewrites the value or the mark (or both) of an existing row, keeping
    // every column not given as stored.
    bool ChangeValue(const QString& type, const QString& key, const std::optional<QString>& value,
                     const std::optional<QString>& visible = std::nullopt);

    QString Set_Type() const { return type_; }
    void setSet_Type(const QString& v) { type_ = v; }
    QString Set_Key() const { return key_; }
    void setSet_Key(const QString& v) { key_ = v; }
    QString Set_Name() const { return name_; }
    void setSet_Name(const QString& v) { name_ = v; }
    QString Set_Visible() const { return visible_; }
    void setSet_Visible(const QString& v) { visible_ = v; }
    QString Set_Value() const { return value_; }
    void setSet_Value(const QString& v) { value_ = v; }
    QString Set_Description() const { return description_; }
    void setSet_Description(const QString& v) { description_ = v; }
    int ID() const { return id_; }
    void setID(int v) { id_ = v; }
    QString ErrMsg() const { return errMsg_; }

private:
    QString type_, key_, name_, visible_, value_, description_, errMsg_;
    int id_ = 0;
};

}  // namespace tarvel
