#pragma once

#include <QString>
#include <QVariant>
#include <QVector>

#include "custom/keyedcollection.h"

namespace tarvel {

// The older storage of option lists: one table per kind, with a description
// and a count column. No screen uses it; the classes stay for template files.
struct OptionKindTable {
    QString table;
    QString descriptionColumn;
    QString countColumn;
};
// Kinds 1 to 9 (phase, importance, opportunity type, relation, province,
// industry, account type, task type, title); any other kind has empty names.
OptionKindTable optionKindTable(int kind);

// One entry of a per-kind table. Every statement is logged in ErrMsg before it
// runs (" ; " between entries), followed by the error text when it fails.
class SelectOption {
public:
    // Dormant by design: they never issue a statement, and the count columns
    // are therefore never maintained.
    bool Add() { return false; }
    int GetMyTickCount() { return -1; }
    bool AddTickCount() { return false; }

    // Renames the entry in its kind's table; false for a kind without a table.
    bool Update(const QString& newText);
    // Removes every entry with this text; false for a kind without a table.
    bool Delete();

    qint16 Kind() const { return kind_; }
    void setKind(qint16 v) { kind_ = v; }
    QString Description() const { return description_; }
    void setDescription(const QString& v) { description_ = v; }
    qint32 Count() const { return count_; }
    void setCount(qint32 v) { count_ = v; }
    QString ErrMsg() const { return errMsg_; }
    void setErrMsg(const QString& v) { errMsg_ = v; }

private:
    bool run(const QString& sql);

    qint16 kind_ = 0;
    QString description_;
    qint32 count_ = 0;
    QString errMsg_;
};

// The entries of one kind, plus arrDesc: a zero-based array filled by the
// GetAll operations, always one slot longer than the values it holds (the
// last slot is an empty value).
// Collection access (Add, Item, Count, Remove, clear, enumeration) is inherited.
class SelectOptions : public KeyedCollection<SelectOption> {
public:
    // Reads every row of Kind's table into the collection; false when the kind
    // has no table or the table cannot be read.
    bool GetAllOptions();

    bool GetAllPhase() { return copyKind(1); }
    bool GetAllImportant() { return copyKind(2); }
    bool GetAllOppType() { return copyKind(3); }
    bool GetAllRelation() { return copyKind(4); }
    bool GetAllProvince() { return copyKind(5); }
    bool GetAllIndustry() { return copyKind(6); }
    bool GetAllAccType() { return copyKind(7); }
    bool GetAllTaskType() { return copyKind(8); }
    bool GetAllTitle() { return copyKind(9); }
    // Built in: 0, 10, ... 100.
    bool GetAllProbability();
    bool GetAllTaskCycle();
    bool GetAllTaskHour();

    qint16 Kind() const { return kind_; }
    void setKind(qint16 v) { kind_ = v; }
    const QVector<QVariant>& arrDesc() const { return arrDesc_; }
    QString ErrMsg() const { return errMsg_; }
    void setErrMsg(const QString& v) { errMsg_ = v; }

private:
    bool copyKind(qint16 kind);
    void fill(const QVariantList& values);

    qint16 kind_ = 0;
    QVector<QVariant> arrDesc_;
    QString errMsg_;
};

}  // namespace tarvel
