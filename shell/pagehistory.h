#pragma once

#include <QDate>
#include <QString>
#include <QVector>

namespace tarvel {

// The pages the user has visited, for the toolbar's back and forward. Five
// parallel arrays hold the entries; the c_ properties mirror the current one.
// A new visit always goes to the end, even after going back: the entries
// passed over stay in the list and "forward" reaches them again.
class PageHistory {
public:
    QString c_StrCondition() const { return cStrCondition_; }
    void setC_StrCondition(const QString& v) { cStrCondition_ = v; }
    qint16 c_RelatedPage() const { return cRelatedPage_; }
    void setC_RelatedPage(qint16 v) { cRelatedPage_ = v; }
    qint32 c_RecordID() const { return cRecordID_; }
    void setC_RecordID(qint32 v) { cRecordID_ = v; }
    qint16 c_PageNo() const { return cPageNo_; }
    void setC_PageNo(qint16 v) { cPageNo_ = v; }
    QDate c_Date() const { return cDate_; }
    void setC_Date(const QDate& v) { cDate_ = v; }

    QVector<qint16> aRelatedPage() const { return aRelatedPage_; }
    void setARelatedPage(const QVector<qint16>& v) { aRelatedPage_ = v; }
    QVector<QDate> aDate() const { return aDate_; }
    void setADate(const QVector<QDate>& v) { aDate_ = v; }
    QVector<qint32> aRecordID() const { return aRecordID_; }
    void setARecordID(const QVector<qint32>& v) { aRecordID_ = v; }
    QVector<QString> aStrCondition() const { return aStrCondition_; }
    void setAStrCondition(const QVector<QString>& v) { aStrCondition_ = v; }
    QVector<qint16> aPageNo() const { return aPageNo_; }
    void setAPageNo(const QVector<qint16>& v) { aPageNo_ = v; }

    qint16 MaxCount() const { return maxCount_; }
    void setMaxCount(qint16 v) { maxCount_ = v; }
    qint16 ListCount() const { return listCount_; }
    void setListCount(qint16 v) { listCount_ = v; }
    qint16 ListIndex() const { return listIndex_; }
    void setListIndex(qint16 v) { listIndex_ = v; }

    void MoveNext();
    void MovePrevious();
    // Appends an entry (dropping the oldest when full) and makes it current.
    void AddItem(qint16 RelatedPage, const QString& StrCondition, qint32 RecordID,
                 const QDate& Date, qint16 PageNo);
    // One entry: the home page (1), no condition, no record, today, no page number.
    void Init();
    // Writes the c_ properties back into the current entry.
    void Update();

private:
    void loadCurrent();
    void store(int i, qint16 page, const QString& condition, qint32 record, const QDate& date,
               qint16 pageNo);
    void resizeAll(int size);

    QString cStrCondition_;
    qint16 cRelatedPage_ = 0;
    qint32 cRecordID_ = 0;
    qint16 cPageNo_ = -1;
    QDate cDate_;
    QVector<qint16> aRelatedPage_;
    QVector<QDate> aDate_;
    QVector<qint32> aRecordID_;
    QVector<QString> aStrCondition_;
    QVector<qint16> aPageNo_;
    qint16 maxCount_ = 20;
    qint16 listCount_ = 0;
    qint16 listIndex_ = 0;
};

}  // namespace tarvel
