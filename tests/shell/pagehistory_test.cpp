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

    void add(qint16 page, const QString& condition = QString(), qint32 id = 0) {
        h.AddItem(page, condition, id, QDate(2024, 6, page % 28 + 1), qint16(page % 7));
    }
    void expectInvariant() {
        EXPECT_GE(h.ListIndex(), 0);
        EXPECT_LT(h.ListIndex(), h.ListCount());
        EXPECT_LE(h.ListCount(), h.MaxCount());
        EXPECT_EQ(h.aRelatedPage().size(), h.ListCount());
        EXPECT_EQ(h.aStrCondition().size(), h.ListCount());
        EXPECT_EQ(h.aRecordID().size(), h.ListCount());
        EXPECT_EQ(h.aDate().size(), h.ListCount());
        EXPECT_EQ(h.aPageNo().size(), h.ListCount());
    }
    // The c_ properties mirror the entry at ListIndex.
    void expectCurrentMirrored() {
        const int i = h.ListIndex();
        EXPECT_EQ(h.c_RelatedPage(), h.aRelatedPage()[i]);
        EXPECT_EQ(h.c_StrCondition(), h.aStrCondition()[i]);
        EXPECT_EQ(h.c_RecordID(), h.aRecordID()[i]);
        EXPECT_EQ(h.c_Date(), h.aDate()[i]);
        EXPECT_EQ(h.c_PageNo(), h.aPageNo()[i]);
    }

    PageHistory h;
};

}  // namespace

TEST_F(History, InitHoldsTheHomePageOfToday) {
    EXPECT_EQ(h.ListCount(), 1);
    EXPECT_EQ(h.ListIndex(), 0);
    EXPECT_EQ(h.MaxCount(), 20);
    EXPECT_EQ(h.c_RelatedPage(), 1);
    EXPECT_EQ(h.c_StrCondition(), QString());
    EXPECT_EQ(h.c_RecordID(), 0);
    EXPECT_EQ(h.c_Date(), QDate(2024, 5, 1));
    EXPECT_EQ(h.c_PageNo(), -1);
    expectInvariant();
}

TEST_F(History, BackAndForwardStayPutAtTheEnds) {
    h.MovePrevious();
    EXPECT_EQ(h.ListIndex(), 0);
    h.MoveNext();
    EXPECT_EQ(h.ListIndex(), 0);
    EXPECT_EQ(h.c_RelatedPage(), 1);

    add(22, "con_id=1", 7);
    add(12);
    h.MoveNext();
    EXPECT_EQ(h.ListIndex(), 2);
    EXPECT_EQ(h.c_RelatedPage(), 12);
    h.MovePrevious();
    h.MovePrevious();
    h.MovePrevious();
    EXPECT_EQ(h.ListIndex(), 0);
    EXPECT_EQ(h.c_RelatedPage(), 1);
    h.MoveNext();
    EXPECT_EQ(h.c_RelatedPage(), 22);
    EXPECT_EQ(h.c_StrCondition(), QStringLiteral("con_id=1"));
    EXPECT_EQ(h.c_RecordID(), 7);
    expectCurrentMirrored();
}

TEST_F(History, AddItemAppendsAndMakesTheEntryCurrent) {
    const QDate d(2023, 12, 31);
    h.AddItem(40, QStringLiteral("WHERE doc_name LIKE '%合同%'"), 15, d, 2);
    EXPECT_EQ(h.ListCount(), 2);
    EXPECT_EQ(h.ListIndex(), 1);
    EXPECT_EQ(h.aRelatedPage(), (QVector<qint16>{1, 40}));
    EXPECT_EQ(h.aStrCondition()[1], QStringLiteral("WHERE doc_name LIKE '%合同%'"));
    EXPECT_EQ(h.aRecordID()[1], 15);
    EXPECT_EQ(h.aDate()[1], d);
    EXPECT_EQ(h.aPageNo()[1], 2);
    expectCurrentMirrored();
    expectInvariant();
}

TEST_F(History, TheTwentyFirstVisitDropsTheOldest) {
    for (qint16 p = 2; p <= 20; ++p) add(p);  // 19 visits after Init: full
    EXPECT_EQ(h.ListCount(), 20);
    EXPECT_EQ(h.aRelatedPage().first(), 1);
    add(21);
    EXPECT_EQ(h.ListCount(), 20);
    EXPECT_EQ(h.ListIndex(), 19);
    EXPECT_EQ(h.aRelatedPage().first(), 2);  // Init's entry is gone
    EXPECT_EQ(h.aRelatedPage().last(), 21);
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(h.aRelatedPage()[i], i + 2);
        // The other arrays moved with it.
        EXPECT_EQ(h.aDate()[i], QDate(2024, 6, (i + 2) % 28 + 1));
        EXPECT_EQ(h.aPageNo()[i], (i + 2) % 7);
    }
    expectCurrentMirrored();
    expectInvariant();

    // Still full: a visit made after going back also lands at the end.
    h.MovePrevious();
    h.MovePrevious();
    add(30);
    EXPECT_EQ(h.ListCount(), 20);
    EXPECT_EQ(h.ListIndex(), 19);
    EXPECT_EQ(h.aRelatedPage().first(), 3);
    EXPECT_EQ(h.aRelatedPage()[18], 21);
    EXPECT_EQ(h.c_RelatedPage(), 30);
}

TEST_F(History, AVisitAfterGoingBackKeepsTheSkippedEntries) {
    add(22);
    add(12);
    add(3);
    h.MovePrevious();
    h.MovePrevious();
    EXPECT_EQ(h.c_RelatedPage(), 22);
    add(40);
    EXPECT_EQ(h.aRelatedPage(), (QVector<qint16>{1, 22, 12, 3, 40}));
    EXPECT_EQ(h.ListIndex(), 4);
    EXPECT_EQ(h.ListCount(), 5);
    EXPECT_EQ(h.c_RelatedPage(), 40);
    h.MovePrevious();
    EXPECT_EQ(h.c_RelatedPage(), 3);  // reached again by going back
    expectInvariant();
}

TEST_F(History, UpdateChangesOnlyTheCurrentEntry) {
    add(22, "a");
    add(12, "b");
    add(3, "c");
    h.MovePrevious();
    const auto pagesBefore = h.aRelatedPage();
    h.setC_StrCondition(QStringLiteral("WHERE acc_name LIKE '%x%'"));
    h.setC_PageNo(4);
    h.Update();
    EXPECT_EQ(h.ListCount(), 4);  // nothing added
    EXPECT_EQ(h.aStrCondition(), (QVector<QString>{"", "a", "WHERE acc_name LIKE '%x%'", "c"}));
    EXPECT_EQ(h.aPageNo()[2], 4);
    EXPECT_EQ(h.aPageNo()[3], 3 % 7);
    EXPECT_EQ(h.aRelatedPage(), pagesBefore);
    h.MoveNext();
    h.MovePrevious();
    EXPECT_EQ(h.c_StrCondition(), QStringLiteral("WHERE acc_name LIKE '%x%'"));
}

TEST(HistoryBeforeInit, FirstVisitStartsTheList) {
    PageHistory h;
    h.AddItem(22, QString(), 0, QDate(2024, 1, 1), -1);
    EXPECT_EQ(h.ListCount(), 1);
    EXPECT_EQ(h.ListIndex(), 0);
    EXPECT_EQ(h.c_RelatedPage(), 22);
    PageHistory empty;
    empty.MoveNext();  // nothing to load, nothing to crash on
    empty.MovePrevious();
    empty.Update();
    EXPECT_TRUE(empty.aRelatedPage().isEmpty());
}
