#pragma once

#include <QString>

#include "custom/statementlog.h"

namespace tarvel {

// One row of the `interface` table: a toolbar or module entry (object_type 1)
// or a related-record panel (object_type 2).
class AppSetting {
public:
    // Each save runs one UPDATE and appends its text to ErrMsg; false when the
    // data file refused it (the error text follows the statement in ErrMsg).
    bool SaveToolbarIndex();
    bool SaveToolbarName();
    bool SaveRelationInfo();
    bool SaveObj();

    qint16 AppType() const { return appType_; }
    void setAppType(qint16 v) { appType_ = v; }
    qint16 ObjType() const { return objType_; }
    void setObjType(qint16 v) { objType_ = v; }
    QString ObjName() const { return objName_; }
    void setObjName(const QString& v) { objName_ = v; }
    QString ObjDesc() const { return objDesc_; }
    void setObjDesc(const QString& v) { objDesc_ = v; }
    qint16 ObjVisible() const { return objVisible_; }
    void setObjVisible(qint16 v) { objVisible_ = v; }
    qint16 ObjIndex() const { return objIndex_; }
    void setObjIndex(qint16 v) { objIndex_ = v; }
    qint16 ObjEditType() const { return objEditType_; }
    void setObjEditType(qint16 v) { objEditType_ = v; }
    QString ErrMsg() const { return errMsg_; }
    void setErrMsg(const QString& v) { errMsg_ = v; }

private:
    bool run(const QString& sql);

    qint16 appType_ = 0;
    qint16 objType_ = 0;
    QString objName_;
    QString objDesc_;
    qint16 objVisible_ = 0;
    qint16 objIndex_ = 0;
    qint16 objEditType_ = 0;
    QString errMsg_;
};

}  // namespace tarvel
