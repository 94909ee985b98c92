#pragma once

#include <QList>
#include <QString>

#include "custom/appsetting.h"

namespace tarvel {

// A set of `interface` rows. Each read replaces the contents with the rows it
// selects and logs its statements in ErrMsg; it returns false when a statement
// could not be run (the error follows the statement in ErrMsg).
class AppSettings {
public:
    // Toolbar and module entries of a layout set, in toolbar order.
    bool GetToolbarIndex(qint16 appType);
    // The five module captions, in the fixed order account, opportunity,
    // contact, schedule, document; a module without a row is left out.
    bool GetToolbarName(qint16 appType);
    // Related panels: kind 0 all, 1 opportunity's, 2 account's, 3 contact's,
    // 4 schedule's, 5 document's; any other kind selects nothing.
    bool GetRelationInfo(qint16 appType, int kind);
    bool GetObjs(qint16 appType, qint16 objectType);

    // 1-based position of the first entry named `name`; 0 when there is none.
    int FindIndex(const QString& name) const;

    void AddObject(const AppSetting& entry) { items_.append(entry); }
    // 1-based, as the collection is addressed elsewhere.
    AppSetting& Item(int index) { return items_[index - 1]; }
    const AppSetting& Item(int index) const { return items_[index - 1]; }
    int Count() const { return int(items_.size()); }
    void Remove(int index) { items_.removeAt(index - 1); }
    void clear() { items_.clear(); }
    QList<AppSetting>::const_iterator begin() const { return items_.cbegin(); }
    QList<AppSetting>::const_iterator end() const { return items_.cend(); }

    QString ErrMsg() const { return errMsg_; }
    void setErrMsg(const QString& v) { errMsg_ = v; }

private:
    bool loadRows(const QString& sql);

    QList<AppSetting> items_;
    QString errMsg_;
};

}  // namespace tarvel
