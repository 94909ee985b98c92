#pragma once

#include <QDateTime>
#include <QString>

#include "records/recordbase.h"

namespace tarvel {

// One row of `documents`: a file on disk recorded with a name, a tag and a
// description. Unlike the other records, the key is written by the program
// (an ID of 0 lets the database number it) and Update rewrites the creation
// date. Nothing here touches the file itself.
class document : public RecordBase {
public:
    int ID() const { return id_; }
    void setID(int value) { id_ = value; }
    QString DocName() const { return docName_; }
    void setDocName(const QString& value) { docName_ = value; }
    QString DocPath() const { return docPath_; }
    void setDocPath(const QString& value) { docPath_ = value; }
    QString DocDescription() const { return docDescription_; }
    void setDocDescription(const QString& value) { docDescription_ = value; }
    QString DocTag() const { return docTag_; }
    void setDocTag(const QString& value) { docTag_ = value; }
    QDateTime CreatDate() const { return creatDate_; }
    void setCreatDate(const QDateTime& value) { creatDate_ = value; }
    QDateTime DocRecentEditDate() const { return recentEditDate_; }
    void setDocRecentEditDate(const QDateTime& value) { recentEditDate_ = value; }
    // Held for callers; not stored.
    QString DocType() const { return docType_; }
    void setDocType(const QString& value) { docType_ = value; }

    bool Add();
    bool Update();
    bool Delete();
    bool DeleteRelation();
    bool GetById();
    void LoadRow(const Recordset& rs);

    // Kinds 1 to 4; removing a link stamps nothing.
    bool AddRelative(qint16 relationKind, int otherId);
    bool DeleteRelative(qint16 relationKind, int otherId);

    bool CalcByTag();

    // Panel operations over oForm / oAdodc.
    bool ShowDocument(int documentId, bool load);
    bool SetQuery(int otherId);
    bool AddDocument();
    bool AddToList();
    bool ChangeDocument(int documentId);
    bool UpdateIndex(int documentId);
    bool InitDocument(int documentId, bool load);

private:
    void readQuickEdit();
    void linkToPanelRecord();

    int id_ = 0;
    QString docName_, docPath_, docDescription_, docTag_;
    QDateTime creatDate_, recentEditDate_;
    QString docType_;
};

}  // namespace tarvel
