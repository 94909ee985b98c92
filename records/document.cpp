#include "records/document.h"

namespace tarvel {

namespace {
QString num(int id) {
    return QString::number(id);
}
}  // namespace

using recordvalue::leftChars;

bool document::Add() {
    return guarded("Add", [&] {
        RecordsetPtr rs = openWritable(QStringLiteral("SELECT * FROM documents WHERE doc_id=0"));
        check(*rs, rs->AddNew());
        setField(*rs, "doc_id", id_);
        setField(*rs, "doc_name", docName_);
        setField(*rs, "doc_path", docPath_);
        setField(*rs, "doc_description", docDescription_);
        setField(*rs, "doc_create_date", recordvalue::field(creatDate_));
        setField(*rs, "doc_tag", docTag_);
        setField(*rs, "doc_recentedit_date", recordvalue::field(recentEditDate_));
        storeNewRow(*rs);
        id_ = recordvalue::int32(columnValue(*rs, "doc_id"));
    });
}

bool document::Update() {
    return guarded("Update", [&] {
        RecordsetPtr rs =
            openWritable(QStringLiteral("SELECT * FROM documents WHERE doc_id=") + num(id_));
        setField(*rs, "doc_id", id_);
        setField(*rs, "doc_name", docName_);
        setField(*rs, "doc_path", docPath_);
        setField(*rs, "doc_description", docDescription_);
        setField(*rs, "doc_create_date", recordvalue::field(creatDate_));
        setField(*rs, "doc_tag", docTag_);
        setField(*rs, "doc_recentedit_date", recordvalue::field(recentEditDate_));
        check(*rs, rs->Update());
    });
}

bool document::Delete() {
    return guarded("Delete", [&] {
        execute(QStringLiteral("DELETE * FROM documents WHERE doc_id=") + num(id_));
    });
}

bool document::DeleteRelation() {
    return guarded("DeleteRelation", [&] {
        const QString me = num(id_);
        execute(QStringLiteral("DELETE * FROM opportunities_documents WHERE doc_id=") + me);
        execute(QStringLiteral("DELETE * FROM contacts_documents WHERE doc_id=") + me);
        execute(QStringLiteral("DELETE * FROM accounts_documents WHERE doc_id=") + me);
        execute(QStringLiteral("DELETE * FROM tasks_documents WHERE doc_id=") + me);
    });
}

bool document::GetById() {
    return guarded("GetById", [&] {
        RecordsetPtr rs = read(QStringLiteral("SELECT * FROM documents WHERE doc_id=") + num(id_));
        if (!rs->Eof()) LoadRow(*rs);
    });
}

void document::LoadRow(const Recordset& rs) {
    static const ColumnSlots columns({QStringLiteral("doc_id"), QStringLiteral("doc_name"),
                                      QStringLiteral("doc_path"), QStringLiteral("doc_description"),
                                      QStringLiteral("doc_create_date"), QStringLiteral("doc_tag"),
                                      QStringLiteral("doc_recentedit_date")});
    using recordvalue::text;
    const QVector<QVariant> v = columns.read(rs);
    id_ = recordvalue::int32(v[0]);
    docName_ = text(v[1]);
    docPath_ = text(v[2]);
    docDescription_ = text(v[3]);
    creatDate_ = recordvalue::dateTime(v[4]);
    docTag_ = text(v[5]);
    recentEditDate_ = recordvalue::dateTime(v[6]);
}

bool document::AddRelative(qint16 relationKind, int otherId) {
    return guarded("AddRelative", [&] {
        if (otherId == 0 || id_ == 0) return;
        const QString me = num(id_), other = num(otherId);
        execute(stampStatement(kind::Document, id_));
        QString probe, insert;
        switch (relationKind) {
            case kind::Opportunity:
                probe = QStringLiteral("SELECT * FROM opportunities_documents WHERE doc_id=") + me +
                        QStringLiteral(" AND opp_id=") + other;
                insert = QStringLiteral(
                    "INSERT INTO  opportunities_documents  (doc_id, opp_id) "
                    "VALUES ( ");
                break;
            case kind::Account:
                probe = QStringLiteral("SELECT * FROM accounts_documents WHERE doc_id=") + me +
                        QStringLiteral(" and acc_id=") + other;
                insert =
                    QStringLiteral("INSERT INTO accounts_documents (doc_id, acc_id) VALUES ( ");
                break;
            case kind::Contact:
                probe = QStringLiteral("SELECT * FROM contacts_documents WHERE doc_id=") + me +
                        QStringLiteral(" and con_id=") + other;
                insert =
                    QStringLiteral("INSERT INTO contacts_documents (doc_id, con_id) VALUES ( ");
                break;
            case kind::Task:
                probe = QStringLiteral("SELECT * FROM tasks_documents WHERE doc_id=") + me +
                        QStringLiteral(" and tas_id=") + other;
                insert = QStringLiteral("INSERT INTO tasks_documents (doc_id, tas_id) VALUES ( ");
                break;
            default:
                return;
        }
        QString sql;
        if (!hasRows(probe)) sql = insert + me + QLatin1Char(',') + other + QLatin1Char(')');
        execute(stampStatement(relationKind, otherId));
        executeLink(sql);
    });
}

bool document::DeleteRelative(qint16 relationKind, int otherId) {
    return guarded("DeleteRelative", [&] {
        if (otherId == 0 || id_ == 0) return;
        const QString me = num(id_), other = num(otherId);
        QString sql;
        switch (relationKind) {
            case kind::Opportunity:
                sql = QStringLiteral("DELETE * FROM opportunities_documents WHERE doc_id=") + me +
                      QStringLiteral(" AND opp_id=") + other;
                break;
            case kind::Account:
                sql = QStringLiteral("DELETE * FROM accounts_documents WHERE doc_id=") + me +
                      QStringLiteral(" AND acc_id=") + other;
                break;
            case kind::Contact:
                sql = QStringLiteral("DELETE * FROM contacts_documents WHERE  doc_id=") + me +
                      QStringLiteral(" AND con_id=") + other;
                break;
            case kind::Task:
                sql = QStringLiteral("DELETE * FROM tasks_documents WHERE doc_id=") + me +
                      QStringLiteral(" AND tas_id=") + other;
                break;
            default:
                return;
        }
        // Removing a link stamps neither record.
        executeLink(sql);
    });
}

bool document::CalcByTag() {
    return guarded("CalcByTag", [&] {
        groupedCounts(QStringLiteral("SELECT first(documents.doc_tag) AS doc_option, "
                                     "count(documents.doc_id) AS option_count  From documents "
                                     "GROUP BY documents.doc_tag "),
                      "doc_option");
    });
}

bool document::InitDocument(int documentId, bool load) {
    return guarded("InitDocument", [&] {
        if (!load) return;
        id_ = documentId;
        if (!GetById()) failLogged();
    });
}

bool document::ShowDocument(int documentId, bool load) {
    return guarded("ShowDocument", [&] {
        if (!InitDocument(documentId, load)) failLogged();
        setFormValue("txt_doc_name", docName_);
        setFormValue("txt_doc_path", docPath_);
        setFormValue("cbo_doc_tag", docTag_);
        setFormValue("txt_doc_createdate", recordvalue::displayDate(creatDate_));
        setFormValue("rtxt_doc_memo", docDescription_);
        setFormProperty("g_DocID", documentId);
    });
}

bool document::SetQuery(int otherId) {
    return guarded("SetQuery", [&] {
        const QString name = panelName();
        const char* link = nullptr;
        if (name == QLatin1String(panel::Opportunity))
            link = "opportunities_documents WHERE opp_id=";
        else if (name == QLatin1String(panel::Task))
            link = "tasks_documents WHERE tas_id=";
        else if (name == QLatin1String(panel::Account))
            link = "accounts_documents WHERE acc_id=";
        else if (name == QLatin1String(panel::Contact))
            link = "contacts_documents WHERE con_id=";
        else
            return;
        showInGrid(
            QStringLiteral("SELECT doc_id,doc_name,doc_path,doc_description,doc_tag,"
                           "doc_create_date,doc_recentedit_date FROM documents  WHERE "
                           "doc_id IN (SELECT doc_id FROM ") +
                QLatin1String(link) + num(otherId) + QLatin1Char(')'),
            "dgrid_doc",
            {QStringLiteral("文档附件名称"), QStringLiteral("路径"), QStringLiteral("简介"),
             QStringLiteral("分类"), QStringLiteral("创建日期"), QStringLiteral("最近修改日期")});
    });
}

void document::readQuickEdit() {
    docName_ = leftChars(formText("txt_doc_name"), 255);
    docPath_ = leftChars(formText("txt_doc_path"), 255);
    docTag_ = leftChars(formText("cbo_doc_tag"), 255);
    docDescription_ = formText("rtxt_doc_memo");
}

bool document::AddDocument() {
    return guarded("AddDocument", [&] {
        readQuickEdit();
        creatDate_ = recordvalue::today();
        recentEditDate_ = recordvalue::now();
    });
}

bool document::ChangeDocument(int documentId) {
    return guarded("ChangeDocument", [&] {
        id_ = documentId;
        readQuickEdit();
        recentEditDate_ = recordvalue::now();
    });
}

void document::linkToPanelRecord() {
    const qint16 panelKind = panel::kindOf(panelName());
    if (panelKind == 0 || panelKind == kind::Document) return;
    if (!AddRelative(panelKind, panelRecordId())) failLogged();
}

bool document::AddToList() {
    return guarded("AddToList", [&] {
        setPanelFlags();
        Recordset& rs = gridRows();
        check(rs, rs.AddNew());
        setField(rs, "doc_name", docName_);
        setField(rs, "doc_path", docPath_);
        setField(rs, "doc_description", docDescription_);
        setField(rs, "doc_create_date", recordvalue::field(creatDate_));
        setField(rs, "doc_tag", docTag_);
        setField(rs, "doc_recentedit_date", recordvalue::field(recentEditDate_));
        storeNewRow(rs);
        id_ = recordvalue::int32(columnValue(rs, "doc_id"));
        setFormProperty("g_DocID", id_);
        linkToPanelRecord();
    });
}

bool document::UpdateIndex(int documentId) {
    return guarded("UpdateIndex", [&] {
        if (gridRowHolds("doc_id", documentId)) {
            Recordset& rs = gridRows();
            setField(rs, "doc_id", id_);
            setField(rs, "doc_name", docName_);
            setField(rs, "doc_path", docPath_);
            setField(rs, "doc_description", docDescription_);
            setField(rs, "doc_create_date", recordvalue::field(creatDate_));
            setField(rs, "doc_tag", docTag_);
            setField(rs, "doc_recentedit_date", recordvalue::field(recentEditDate_));
            check(rs, rs.Update());
        } else if (!Update()) {
            failLogged();
        }
        linkToPanelRecord();
        setPanelFlags();
        if (!SetQuery(panelRecordId())) failLogged();
        Recordset& rs = gridRows();
        findKey(rs, "doc_id", documentId);
    });
}

}  // namespace tarvel
