#pragma once

#include <QList>
#include <QString>
#include <QVariant>
#include <memory>

#include "store/connection.h"
#include "store/recordset.h"

namespace tarvel {

// One parameter of a stored-procedure call: name, type, direction, size, value.
struct ProcParam {
    QString name;
    int type = 0;
    int direction = 1;
    int size = 0;
    QVariant value;
};

// The command object of CallProc.
struct Command {
    ConnectionPtr ActiveConnection;
    QString CommandText;
    QList<ProcParam> Parameters;
};
using CommandPtr = std::shared_ptr<Command>;

// The access object every operation creates for itself: it opens a connection
// from the global connection string and runs one statement of the program's
// dialect. Errors never escape: a failing open gives a closed recordset, a
// failing statement an empty result, and the text lands in ErrMsg.
class tarveldatabase {
public:
    tarveldatabase();

    RecordsetPtr GetWriteRs(const QString& sql);
    RecordsetPtr GetReadRs(const QString& sql);
    // Runs a statement; `recordsAffected` receives the number of rows changed.
    RecordsetPtr Execute(const QString& sql, qint64* recordsAffected = nullptr);
    // Runs a stored query by its name, or a statement, with the values of
    // arrParam bound to its ? marks in order (as many values as marks).
    RecordsetPtr CallProc(const QString& name);
    QString SafeSql() const;
    void OpenConnection();

    QString ErrMsg() const { return errMsg_; }
    void setErrMsg(const QString& value) { errMsg_ = value; }
    QList<ProcParam>& arrParam() { return arrParam_; }
    void setArrParam(const QList<ProcParam>& value) { arrParam_ = value; }
    QString strConnString() const { return strConnString_; }
    void setStrConnString(const QString& value) { strConnString_ = value; }
    QString StrSql() const { return strSql_; }
    void setStrSql(const QString& value) { strSql_ = value; }
    CommandPtr oCommand() const { return oCommand_; }
    void setOCommand(const CommandPtr& value) { oCommand_ = value; }
    ConnectionPtr oConn() const { return oConn_; }
    void setOConn(const ConnectionPtr& value) { oConn_ = value; }

    // Adds an error text, newest first.
    void addError(const QString& text);

    // Quote doubling for user text placed between single quotes.
    static QString SafeSql(const QString& text);

private:
    RecordsetPtr openRecordset(const QString& sql, int lockType);

    ConnectionPtr oConn_;
    CommandPtr oCommand_;
    QString strSql_;
    QString strConnString_;
    QList<ProcParam> arrParam_;
    QString errMsg_;
};

}  // namespace tarvel
