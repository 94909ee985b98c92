// Option lists as the combos and list boxes read them, and the older per-kind
// option classes.
#include <gtest/gtest.h>

#include <QTemporaryDir>

#include "custom/optionlists.h"
#include "custom/selectoptions.h"
#include "store/connectionstring.h"
#include "store/tarveldatabase.h"
#include "store/trace.h"
#include "tests/custom/fixture.h"
#include "tests/custom/printers.h"
#include "tests/support/tempdatafile.h"

using namespace tarvel;

namespace {

class Options : public tarvel::testsupport::TracedDataFile {
protected:
    static QStringList column(const QString& sql) {
        tarveldatabase db;
        RecordsetPtr rs = db.GetReadRs(sql);
        QStringList out;
        for (; rs && !rs->Eof(); rs->MoveNext()) out << rs->value(0).toString();
        return out;
    }
};

const QString kLog = QStringLiteral(" ; ");

}  // namespace

TEST(OptionLists, BuiltInListsNeedNoDataFile) {
    QTemporaryDir empty;
    setGlobalConnectionString(buildConnectionString(empty.path()));
    const std::optional<QStringList> times =
        optionComboItems(QString(), QStringLiteral("time_format"));
    ASSERT_TRUE(times);
    ASSERT_EQ(times->size(), 48);
    EXPECT_EQ(times->mid(0, 3), QStringList({"00:00", "00:30", "01:00"}));
    EXPECT_EQ(times->at(19), QStringLiteral("09:30"));
    EXPECT_EQ(times->last(), QStringLiteral("23:30"));
    EXPECT_EQ(optionComboItems(QStringLiteral("sch"), QStringLiteral(" cycle_type ")),
              QStringList({"每天", "每周", "每月", "每年", "不重复"}));

    // A stored list that cannot be read is no list at all, not an empty one.
    EXPECT_FALSE(optionComboItems(QStringLiteral("con"), QStringLiteral("title")));
    EXPECT_FALSE(optionListItems(QStringLiteral("con"), QStringLiteral("tag")));
    // The list routine has no built-in lists.
    EXPECT_FALSE(optionListItems(QString(), QStringLiteral("time_format")));
    setGlobalConnectionString(QString());
}

TEST_F(Options, StoredListsAreTrimmedAndSortedExceptProbability) {
    run(
        QStringLiteral("INSERT INTO options (opt_object, opt_name, opt_description) VALUES "
                       "('con', 'nick', 'b  '), ('con', 'nick', NULL), ('con', 'nick', ' c'), "
                       "('con', 'nick', 'a'), ('acc', 'nick', 'other kind')"));
    trace::clear();
    EXPECT_EQ(optionComboItems(QStringLiteral(" con "), QStringLiteral("nick ")),
              QStringList({"", "c", "a", "b"}));  // sorted as stored, shown trimmed
    EXPECT_EQ(optionListItems(QStringLiteral("con"), QStringLiteral("nick")),
              QStringList({"", "c", "a", "b"}));
    EXPECT_EQ(trace::statements().first(),
              QStringLiteral("SELECT  opt_description FROM options WHERE opt_object = 'con'  AND "
                             "opt_name = 'nick' ORDER BY opt_description"));

    // Probabilities come in the order they were entered, a null as "0".
    run(QStringLiteral("DELETE * FROM options WHERE opt_name='Probability'"));
    run(
        QStringLiteral("INSERT INTO options (opt_object, opt_name, opt_description) VALUES "
                       "('opp', 'Probability', ' 70 '), ('opp', 'Probability', NULL), "
                       "('opp', 'Probability', '5'), ('opp', 'Probability', '100')"));
    trace::clear();
    EXPECT_EQ(optionComboItems(QStringLiteral("opp"), QStringLiteral("Probability")),
              QStringList({"70%", "0%", "5%", "100%"}));
    EXPECT_EQ(trace::statements(),
              QStringList{QStringLiteral("SELECT  opt_description FROM options WHERE opt_object = "
                                         "'opp'  AND opt_name = 'Probability'")});
    // In a list box the same entries are just a sorted list.
    EXPECT_EQ(optionListItems(QStringLiteral("opp"), QStringLiteral("Probability")),
              QStringList({"", "70", "100", "5"}));

    // No entries: an empty list. A quote cannot break the statement.
    EXPECT_EQ(optionComboItems(QStringLiteral("doc"), QStringLiteral("it's")), QStringList());
    EXPECT_TRUE(trace::statements().last().contains(QStringLiteral("opt_name = 'it''s'")));
}

TEST_F(Options, DormantOperationsTouchNothing) {
    SelectOption o;
    o.setKind(1);
    o.setDescription(QStringLiteral("1-初步接洽"));
    EXPECT_FALSE(o.Add());
    EXPECT_EQ(o.GetMyTickCount(), -1);
    EXPECT_FALSE(o.AddTickCount());

    // Outside 1 to 9 a kind has no table: nothing is issued.
    for (qint16 kind : {0, 10, -1}) {
        o.setKind(kind);
        EXPECT_FALSE(o.Update(QStringLiteral("x")));
        EXPECT_FALSE(o.Delete());
        SelectOptions all;
        all.setKind(kind);
        EXPECT_FALSE(all.GetAllOptions());
        EXPECT_EQ(all.Count(), 0);
    }
    EXPECT_EQ(o.Description(), QStringLiteral("1-初步接洽"));
    EXPECT_TRUE(o.ErrMsg().isEmpty());
    EXPECT_TRUE(trace::statements().isEmpty());
    EXPECT_EQ(optionKindTable(11).table, QString());
}

TEST_F(Options, UpdateAndDeleteLogTheirStatements) {
    SelectOption o;
    o.setKind(9);
    o.setDescription(QStringLiteral("先生"));
    ASSERT_TRUE(o.Update(QStringLiteral("O'Brien先生")));
    EXPECT_EQ(o.Description(), QStringLiteral("O'Brien先生"));
    ASSERT_TRUE(o.Delete());
    EXPECT_EQ(o.Description(), QString());
    const QStringList sql = {
        QStringLiteral("UPDATE title SET tit_description='O''Brien先生' WHERE "
                       "tit_description='先生'"),
        QStringLiteral("DELETE * FROM title WHERE tit_description='O''Brien先生'")};
    EXPECT_EQ(trace::statements(), sql);
    EXPECT_EQ(o.ErrMsg(), sql.join(kLog));
    EXPECT_EQ(column(QStringLiteral("SELECT COUNT(*) FROM title WHERE tit_description LIKE "
                                    "'%先生%'")),
              QStringList{"0"});

    // A failure follows its statement in the log.
    run(QStringLiteral("DROP TABLE province"));
    SelectOption gone;
    gone.setKind(5);
    gone.setDescription(QStringLiteral("北京"));
    EXPECT_FALSE(gone.Delete());
    EXPECT_EQ(gone.Description(), QStringLiteral("北京"));
    EXPECT_TRUE(gone.ErrMsg().startsWith(
        QStringLiteral("DELETE * FROM province WHERE pro_description='北京' ; ")));
}

TEST_F(Options, GetAllArraysCarryOneEmptySlot) {
    run(QStringLiteral("UPDATE important SET imp_count=7 WHERE imp_description='重要'"));
    SelectOptions all;
    all.setKind(2);
    ASSERT_TRUE(all.GetAllOptions());
    const QStringList stored = column(QStringLiteral("SELECT imp_description FROM important"));
    ASSERT_EQ(all.Count(), stored.size());
    QStringList read;
    for (const SelectOption& o : all) {
        read << o.Description();
        EXPECT_EQ(o.Kind(), 2);
        EXPECT_EQ(o.Count(), o.Description() == QStringLiteral("重要") ? 7 : 0);
    }
    EXPECT_EQ(read, stored);
    EXPECT_EQ(all.ErrMsg(), QStringLiteral("SELECT * FROM important"));

    using Getter = bool (SelectOptions::*)();
    const struct {
        Getter get;
        const char* table;
        const char* column;
    } kinds[] = {
        {&SelectOptions::GetAllPhase, "phase", "pha_description"},
        {&SelectOptions::GetAllImportant, "important", "imp_description"},
        {&SelectOptions::GetAllOppType, "opp_type", "opp_type_description"},
        {&SelectOptions::GetAllRelation, "relation", "rel_description"},
        {&SelectOptions::GetAllProvince, "province", "pro_description"},
        {&SelectOptions::GetAllIndustry, "industry", "ind_description"},
        {&SelectOptions::GetAllAccType, "type", "typ_description"},
        {&SelectOptions::GetAllTaskType, "task_type", "tas_typ_description"},
        {&SelectOptions::GetAllTitle, "title", "tit_description"},
    };
    for (const auto& k : kinds) {
        SelectOptions s;
        ASSERT_TRUE((s.*k.get)()) << k.table;
        const QStringList expected =
            column(QStringLiteral("SELECT %1 FROM %2")
                       .arg(QLatin1String(k.column), QLatin1String(k.table)));
        ASSERT_FALSE(expected.isEmpty());
        ASSERT_EQ(s.arrDesc().size(), expected.size() + 1) << k.table;
        for (int i = 0; i < expected.size(); ++i) EXPECT_EQ(s.arrDesc()[i].toString(), expected[i]);
        EXPECT_TRUE(s.arrDesc().last().isNull());
        EXPECT_EQ(s.Count(), 0);  // the entries went to a fresh collection
        EXPECT_EQ(s.ErrMsg(), QStringLiteral("SELECT * FROM ") + QLatin1String(k.table));
    }

    SelectOptions fixed;
    ASSERT_TRUE(fixed.GetAllProbability());
    ASSERT_EQ(fixed.arrDesc().size(), 12);
    EXPECT_EQ(fixed.arrDesc()[0].toInt(), 0);
    EXPECT_EQ(fixed.arrDesc()[3].toInt(), 30);
    EXPECT_EQ(fixed.arrDesc()[10].toInt(), 100);
    EXPECT_TRUE(fixed.arrDesc()[11].isNull());
    ASSERT_TRUE(fixed.GetAllTaskCycle());
    ASSERT_EQ(fixed.arrDesc().size(), 6);
    EXPECT_EQ(fixed.arrDesc()[4].toString(), QStringLiteral("不重复"));
    EXPECT_TRUE(fixed.arrDesc()[5].isNull());
    ASSERT_TRUE(fixed.GetAllTaskHour());
    ASSERT_EQ(fixed.arrDesc().size(), 49);
    EXPECT_EQ(fixed.arrDesc()[47].toString(), QStringLiteral("23:30"));
    EXPECT_TRUE(fixed.arrDesc()[48].isNull());
    EXPECT_TRUE(fixed.ErrMsg().isEmpty());

    // An unreadable table still yields the array: just the empty slot.
    run(QStringLiteral("DROP TABLE phase"));
    SelectOptions none;
    EXPECT_TRUE(none.GetAllPhase());
    EXPECT_EQ(none.arrDesc().size(), 1);
    EXPECT_TRUE(none.ErrMsg().startsWith(QStringLiteral("SELECT * FROM phase ; ")));
}

TEST(OptionCollection, KeysAreOptionalAndUnique) {
    SelectOptions all;
    SelectOption a, b, c;
    a.setDescription(QStringLiteral("a"));
    b.setDescription(QStringLiteral("b"));
    c.setDescription(QStringLiteral("c"));
    EXPECT_TRUE(all.Add(a, QStringLiteral("k")));
    EXPECT_TRUE(all.Add(b));
    EXPECT_FALSE(all.Add(c, QStringLiteral("k")));
    EXPECT_TRUE(all.Add(c, QString()));
    ASSERT_EQ(all.Count(), 3);
    EXPECT_EQ(all.Item(QStringLiteral("k"))->Description(), QStringLiteral("a"));
    EXPECT_EQ(all.Item(QString()), nullptr);
    all.Remove(1);
    EXPECT_EQ(all.Item(1).Description(), QStringLiteral("b"));
    EXPECT_EQ(all.Item(QStringLiteral("k")), nullptr);
}
