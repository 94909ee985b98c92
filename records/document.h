#pragma once

#include <QDateTime>
#include <QString>

#include "records/recorddescription.h"

namespace tarvel {

// One row of `documents`: a file on disk recorded with a name, a tag and a
// description. Unlike the other records, the key is written by the program
// (an ID of 0 lets the database number it) and Update rewrites the creation
// date. Nothing here touches the file itself.
class document : public RecordRow<document> {
public:
    TARVEL_PROPERTY(int, ID, id_)
    TARVEL_PROPERTY(QString, DocName, docName_)
    TARVEL_PROPERTY(QString, DocPath, docPath_)
    TARVEL_PROPERTY(QString, DocDescription, docDescription_)
    TARVEL_PROPERTY(QString, DocTag, docTag_)
    TARVEL_PROPERTY(QDateTime, CreatDate, creatDate_)
    TARVEL_PROPERTY(QDateTime, DocRecentEditDate, recentEditDate_)
    // Held for callers; not stored.
    TARVEL_PROPERTY(QString, DocType, docType_)

    bool CalcByTag() { return count("CalcByTag"); }

    // Panel operations over oForm / oAdodc.
    bool ShowDocument(int documentId, bool load);
    bool SetQuery(int otherId);
    bool AddDocument();
    bool ChangeDocument(int documentId);
    bool InitDocument(int documentId, bool load);

    // Columns, properties and the panel's controls (txt_doc_name, ...).
    static const RecordDescription<document>& description();
    static const RecordLinks& links();
    // The grouped and tag counts of the CalcBy... operations.
    static const std::vector<CategoryCount>& counts();

private:
    int id_ = 0;
    QString docName_, docPath_, docDescription_, docTag_;
    QDateTime creatDate_, recentEditDate_;
    QString docType_;
};

}  // namespace tarvel
