#pragma once

#include <QHash>
#include <QString>

namespace tarvel {

// How many records of each kind are linked to one record: the numbers a
// related panel writes into its tab captions. Each count reads the link rows
// of the pair ("SELECT * FROM contacts_tasks WHERE con_id= 7"); a contact's
// related contacts are the pairs that name it on either side.
class RelatedCounts {
public:
    // Reads the counts of every kind linked to record `id` of kind `ownerKind`
    // (relation kind codes); false with the reason in ErrMsg.
    bool read(qint16 ownerKind, int id);
    // The count of `relatedKind` after read(); 0 for a kind with no link table.
    int count(qint16 relatedKind) const { return counts_.value(relatedKind); }

    // The statement that reads the links of `relatedKind` to record `id`;
    // empty when the two kinds have no link table.
    static QString statement(qint16 ownerKind, qint16 relatedKind, int id);

    QString ErrMsg() const { return errMsg_; }
    void setErrMsg(const QString& value) { errMsg_ = value; }

private:
    QHash<qint16, int> counts_;
    QString errMsg_;
};

}  // namespace tarvel
