#include "shell/pagehistory.h"

#include <gtest/gtest.h>

#include "store/clock.h"

using namespace tarvel;

namespace {

class History : public ::testing::Test {
protected:
    void SetUp() override {
        Clock::setFixed(QDateTime(QDate(2024, 5, 1), QTime(9, 0)));
        h.Init();
    }
    void TearDown() override { Clock::reset(); }

    // A visit whose other four values follow from the page code.
    void add(qint16 page) {
        h.AddItem(page, QString::number(page), page * 10, QDate(2024, 6, page % 28 + 1),
                  qint16(page % 7));
    }
    // The arrays stay parallel and the c_ properties mirror the entry at ListIndex.
    void expectConsistent() {
        const int i = h.ListIndex();
        ASSERT_GE(i, 0);
        ASSERT_LT(i, h.ListCount());
        for (qsizetype size : {h.aRelatedPage().size(), h.aStrCondition().size(),
                               h.aRecordID().size(), h.aDate().size(), h.aPageNo().size()})
            ASSERT_EQ(size, h.ListCount());
        EXPECT_EQ(h.c_RelatedPage(), h.aRelatedPage()[i]);
        EXPECT_EQ(h.c_StrCondition(), h.aStrCondition()[i]);
        EXPECT_EQ(h.c_RecordID(), h.aRecordID()[i]);
        EXPECT_EQ(h.c_Date(), h.aDate()[i]);
        EXPECT_EQ(h.c_PageNo(), h.aPageNo()[i]);
    }

    PageHistory h;
};

}  // namespace

TEST_F(History, AfterInitBackAndForwardStayOnTheHomePage) {
    h.MovePrevious();
    h.MoveNext();
    EXPECT_EQ(h.ListIndex(), 0);
    EXPECT_EQ(h.ListCount(), 1);
    EXPECT_EQ(h.c_RelatedPage(), 1);
    EXPECT_EQ(h.c_Date(), QDate(2024, 5, 1));
    EXPECT_EQ(h.c_PageNo(), -1);
    expectConsistent();
}

TEST_F(History, TheTwentyFirstVisitDropsTheOldest) {
    for (qint16 p = 2; p <= 21; ++p) add(p);  // Init's entry and 20 visits
    EXPECT_EQ(h.ListCount(), 20);
    EXPECT_EQ(h.ListIndex(), 19);
    for (int i = 0; i < 20; ++i) {  // every array moved along
        EXPECT_EQ(h.aRelatedPage()[i], i + 2);
        EXPECT_EQ(h.aStrCondition()[i], QString::number(i + 2));
        EXPECT_EQ(h.aRecordID()[i], (i + 2) * 10);
        EXPECT_EQ(h.aDate()[i], QDate(2024, 6, (i + 2) % 28 + 1));
        EXPECT_EQ(h.aPageNo()[i], (i + 2) % 7);
    }
    expectConsistent();
    h.MovePrevious();  // still full: a visit after going back also lands at the end
    h.MovePrevious();
    add(30);
    EXPECT_EQ(h.ListIndex(), 19);
    EXPECT_EQ(h.aRelatedPage()[18], 21);
    EXPECT_EQ(h.c_RelatedPage(), 30);
}

// Update rewrites the entry gone back to; a visit from there appends after
// the entries skipped over rather than dropping them.
TEST_F(History, UpdateAltersTheCurrentEntryAndAVisitAfterGoingBackAppends) {
    add(22);
    add(12);
    add(3);
    h.MovePrevious();
    const auto pages = h.aRelatedPage();
    h.setC_StrCondition(QStringLiteral("WHERE acc_name LIKE '%x%'"));
    h.setC_PageNo(4);
    h.Update();
    EXPECT_EQ(h.ListCount(), 4);
    EXPECT_EQ(h.aStrCondition(), (QVector<QString>{"", "22", "WHERE acc_name LIKE '%x%'", "3"}));
    EXPECT_EQ(h.aPageNo(), (QVector<qint16>{-1, 22 % 7, 4, 3 % 7}));
    EXPECT_EQ(h.aRelatedPage(), pages);
    h.MoveNext();
    h.MovePrevious();
    EXPECT_EQ(h.c_StrCondition(), QStringLiteral("WHERE acc_name LIKE '%x%'"));
    h.MovePrevious();
    add(40);
    EXPECT_EQ(h.aRelatedPage(), (QVector<qint16>{1, 22, 12, 3, 40}));
    EXPECT_EQ(h.ListIndex(), 4);
    expectConsistent();
}
