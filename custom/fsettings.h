#pragma once

#include <QString>

#include "custom/keyedcollection.h"

namespace tarvel {

// One column that a record list can show: a row of `fields`, identified by
// (FieldType, FieldName). FieldType is the record kind: 1 opportunities,
// 2 accounts, 3 contacts, 4 tasks, 5 documents.
class FSetting {
public:
    // Writes caption, position and visibility (not the width); the statement
    // goes to ErrMsg, followed by the error text when it fails.
    bool SaveObj();

    QString FieldName() const { return fieldName_; }
    void setFieldName(const QString& v) { fieldName_ = v; }
    qint16 FieldType() const { return fieldType_; }
    void setFieldType(qint16 v) { fieldType_ = v; }
    QString Description() const { return description_; }
    void setDescription(const QString& v) { description_ = v; }
    qint16 Index() const { return index_; }
    void setIndex(qint16 v) { index_ = v; }
    bool Visible() const { return visible_; }
    void setVisible(bool v) { visible_ = v; }
    qint32 FieldWidth() const { return fieldWidth_; }
    void setFieldWidth(qint32 v) { fieldWidth_ = v; }
    QString ErrMsg() const { return errMsg_; }
    void setErrMsg(const QString& v) { errMsg_ = v; }

private:
    QString fieldName_;
    qint16 fieldType_ = 0;
    QString description_;
    qint16 index_ = 0;
    bool visible_ = false;
    qint32 fieldWidth_ = 0;
    QString errMsg_;
};

// The columns of one record list, in position order, keyed by their position
// as text. ErrMsg logs every statement (" ; " between entries).
// Collection access (Add, Item, Count, Remove, clear, enumeration) is inherited.
class FSettings : public KeyedCollection<FSetting> {
public:
    // Reloads the columns of a kind, hidden ones included, and builds
    // SelectFields: the kind's tick column, then the column names joined by
    // commas, then a blank, ready to stand between SELECT and FROM. A kind
    // outside 1 to 5 has no tick column and keeps the previous SelectFields.
    bool GetMySetting(qint16 fieldType);
    // The caption of a column, or "无" when the list has no such column.
    QString FindCaption(const QString& fieldName) const;

    QString SelectFields() const { return selectFields_; }
    void setSelectFields(const QString& v) { selectFields_ = v; }
    QString ErrMsg() const { return errMsg_; }
    void setErrMsg(const QString& v) { errMsg_ = v; }

private:
    QString selectFields_;
    QString errMsg_;
};

// The tick column that leads a kind's select list; empty outside 1 to 5.
QString checkColumn(int fieldType);

// The program-wide columns of the five lists, read by the list views. Null for
// a kind outside 1 to 5.
FSettings* programFieldSettings(int fieldType);
// Start-up: loads all five.
void loadProgramFieldSettings();

// Stores the width a list column was dragged to and, for kinds 1 to 5,
// reloads that kind's program-wide columns so a list opened next uses it.
bool SaveFieldWidth(qint16 fieldType, const QString& fieldName, qint32 width);

}  // namespace tarvel
