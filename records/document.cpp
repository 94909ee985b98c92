#include "records/document.h"

namespace tarvel {

const RecordDescription<document>& document::description() {
    // The key is written too: callers choose it (0 lets the database number it).
    static const RecordDescription<document> d{
        "documents",
        "doc_id",
        "documents",
        "0",
        "g_DocID",
        nullptr,
        nullptr,
        {{"doc_id", "ID", &document::id_, nullptr, 0, {1, 1, 0, 1}},
         {"doc_name", "DocName", &document::docName_, "txt_doc_name", 255, {2, 2, 1, 2}},
         {"doc_path", "DocPath", &document::docPath_, "txt_doc_path", 255, {3, 3, 2, 3}},
         {"doc_tag", "DocTag", &document::docTag_, "cbo_doc_tag", 255, {6, 6, 5, 6}},
         {"doc_description",
          "DocDescription",
          &document::docDescription_,
          "rtxt_doc_memo",
          0,
          {4, 4, 3, 4}},
         {"doc_create_date", "CreatDate", &document::creatDate_, nullptr, 0, {5, 5, 4, 5}},
         {"doc_recentedit_date",
          "DocRecentEditDate",
          &document::recentEditDate_,
          nullptr,
          0,
          {7, 7, 6, 7}}}};
    return d;
}

const RecordLinks& document::links() {
    static const RecordLinks l{
        kind::Document,
        {{kind::Opportunity, "SELECT * FROM opportunities_documents WHERE doc_id=%1 AND opp_id=%2",
          "INSERT INTO  opportunities_documents  (doc_id, opp_id) VALUES ( %1,%2)", nullptr,
          "DELETE * FROM opportunities_documents WHERE doc_id=%1 AND opp_id=%2"},
         {kind::Account, "SELECT * FROM accounts_documents WHERE doc_id=%1 and acc_id=%2",
          "INSERT INTO accounts_documents (doc_id, acc_id) VALUES ( %1,%2)", nullptr,
          "DELETE * FROM accounts_documents WHERE doc_id=%1 AND acc_id=%2"},
         {kind::Contact, "SELECT * FROM contacts_documents WHERE doc_id=%1 and con_id=%2",
          "INSERT INTO contacts_documents (doc_id, con_id) VALUES ( %1,%2)", nullptr,
          "DELETE * FROM contacts_documents WHERE  doc_id=%1 AND con_id=%2"},
         {kind::Task, "SELECT * FROM tasks_documents WHERE doc_id=%1 and tas_id=%2",
          "INSERT INTO tasks_documents (doc_id, tas_id) VALUES ( %1,%2)", nullptr,
          "DELETE * FROM tasks_documents WHERE doc_id=%1 AND tas_id=%2"}},
        {"DELETE * FROM opportunities_documents WHERE doc_id=%1",
         "DELETE * FROM contacts_documents WHERE doc_id=%1",
         "DELETE * FROM accounts_documents WHERE doc_id=%1",
         "DELETE * FROM tasks_documents WHERE doc_id=%1"}};
    return l;
}

const std::vector<CategoryCount>& document::counts() {
    static const std::vector<CategoryCount> c{
        {"CalcByTag", "documents.doc_tag", "documents GROUP BY documents.doc_tag "}};
    return c;
}

bool document::InitDocument(int documentId, bool load) {
    return loadForPanel("InitDocument", documentId, load);
}

bool document::ShowDocument(int documentId, bool load) {
    if (!InitDocument(documentId, load) || !needForm()) return report("ShowDocument", false);
    showControls(*this, description());
    setFormValue("txt_doc_createdate", recordvalue::displayDate(creatDate_));
    setFormProperty("g_DocID", documentId);
    return true;
}

bool document::SetQuery(int otherId) {
    return report(
        "SetQuery",
        showRelated(QStringLiteral("SELECT doc_id,doc_name,doc_path,doc_description,doc_tag,"
                                   "doc_create_date,doc_recentedit_date FROM documents  WHERE "
                                   "doc_id IN (SELECT doc_id FROM "),
                    {{kind::Opportunity, "opportunities_documents WHERE opp_id="},
                     {kind::Task, "tasks_documents WHERE tas_id="},
                     {kind::Account, "accounts_documents WHERE acc_id="},
                     {kind::Contact, "contacts_documents WHERE con_id="}},
                    otherId, "dgrid_doc", "文档附件名称,路径,简介,分类,创建日期,最近修改日期"));
}

bool document::AddDocument() {
    if (!readControls(*this, description())) return report("AddDocument", false);
    creatDate_ = recordvalue::today();
    recentEditDate_ = recordvalue::now();
    return true;
}

bool document::ChangeDocument(int documentId) {
    id_ = documentId;
    if (!readControls(*this, description())) return report("ChangeDocument", false);
    recentEditDate_ = recordvalue::now();
    return true;
}

}  // namespace tarvel
