#include "shell/pagehistory.h"

#include "store/clock.h"

namespace tarvel {

void PageHistory::Init() {
    resizeAll(1);
    store(0, 1, QString(), 0, Clock::today(), -1);
    listIndex_ = 0;
    listCount_ = 1;
    maxCount_ = 20;
    loadCurrent();
}

void PageHistory::AddItem(qint16 RelatedPage, const QString& StrCondition, qint32 RecordID,
                          const QDate& Date, qint16 PageNo) {
    listCount_ = qint16(aRelatedPage_.size());
    // The arrays are settable one by one; keep them parallel before touching them.
    resizeAll(listCount_);
    if (listCount_ >= maxCount_ && listCount_ > 0) {
        for (int i = 0; i <= listCount_ - 2; ++i) {
            aRelatedPage_[i] = aRelatedPage_[i + 1];
            aStrCondition_[i] = aStrCondition_[i + 1];
            aRecordID_[i] = aRecordID_[i + 1];
            aDate_[i] = aDate_[i + 1];
            aPageNo_[i] = aPageNo_[i + 1];
        }
        listIndex_ = qint16(listCount_ - 1);
        store(listIndex_, RelatedPage, StrCondition, RecordID, Date, PageNo);
    } else {
        resizeAll(listCount_ + 1);
        listIndex_ = listCount_;
        store(listIndex_, RelatedPage, StrCondition, RecordID, Date, PageNo);
        ++listCount_;
    }
    loadCurrent();
}

void PageHistory::MoveNext() {
    if (listIndex_ < listCount_ - 1)
        ++listIndex_;
    else
        listIndex_ = qint16(listCount_ - 1);
    loadCurrent();
}

void PageHistory::MovePrevious() {
    if (listIndex_ > 0)
        --listIndex_;
    else
        listIndex_ = 0;
    loadCurrent();
}

void PageHistory::Update() {
    if (listIndex_ < 0 || listIndex_ >= aRelatedPage_.size()) return;
    resizeAll(int(aRelatedPage_.size()));
    store(listIndex_, cRelatedPage_, cStrCondition_, cRecordID_, cDate_, cPageNo_);
}

void PageHistory::loadCurrent() {
    const int i = listIndex_;
    if (i < 0 || i >= aRelatedPage_.size() || i >= aStrCondition_.size() ||
        i >= aRecordID_.size() || i >= aDate_.size() || i >= aPageNo_.size())
        return;
    cRelatedPage_ = aRelatedPage_[i];
    cStrCondition_ = aStrCondition_[i];
    cRecordID_ = aRecordID_[i];
    cDate_ = aDate_[i];
    cPageNo_ = aPageNo_[i];
}

void PageHistory::store(int i, qint16 page, const QString& condition, qint32 record,
                        const QDate& date, qint16 pageNo) {
    aRelatedPage_[i] = page;
    aStrCondition_[i] = condition;
    aRecordID_[i] = record;
    aDate_[i] = date;
    aPageNo_[i] = pageNo;
}

void PageHistory::resizeAll(int size) {
    aRelatedPage_.resize(size);
    aStrCondition_.resize(size);
    aRecordID_.resize(size);
    aDate_.resize(size);
    aPageNo_.resize(size);
}

}  // namespace tarvel
