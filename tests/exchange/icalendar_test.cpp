// iCalendar import: a table of rules, each imported and then compared day by
// day over two years with what python3-icalendar and dateutil expand from
// the same file (through the agenda, which reads what the month view reads);
// the fewest tasks and open ends; a second import, changed events and undo;
// what is kept whole; broken and damaged files; every sample file of other
// programs.
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QProcess>

#include "exchange/icalimport.h"
#include "exchange/importsession.h"
#include "schedule/agenda.h"
#include "schedule/recurrence.h"
#include "tests/exchange/exchangefixture.h"
#include "tests/exchange/icalcheck.h"

using namespace tarvel;
using namespace tarvel::exchange;
using namespace exchange_test;

namespace {

struct RuleCase {
    const char* subject;
    const char* body;  // the component's lines after SUMMARY, without BEGIN/END
    int tasks;         // how many tasks it should become; -1 when many
    bool openEnded;    // whether some task goes on without end
};

// Dates around the fixture's today (2026-8-5); the process runs in New York
// time, the events in other zones, so conversions and DST are exercised.
const RuleCase kRules[] = {
    {"hourly", "DTSTART:20260303T000000\nRRULE:FREQ=HOURLY;INTERVAL=6;COUNT=40", 4, false},
    {"daily every third", "DTSTART:20260105T090000\nRRULE:FREQ=DAILY;INTERVAL=3;COUNT=30", 30,
     false},
    {"daily open", "DTSTART;TZID=America/New_York:20260110T073000\nRRULE:FREQ=DAILY", 1, true},
    // Runs up to the last day read, yet stops each year: no open end.
    {"every day in august", "DTSTART:20260801T080000\nRRULE:FREQ=DAILY;BYMONTH=8", -1, false},
    {"weekly every second", "DTSTART:20260106T140000\nRRULE:FREQ=WEEKLY;INTERVAL=2", -1, false},
    {"monday to friday",
     "DTSTART;TZID=America/New_York:20260105T091500\nRRULE:FREQ=WEEKLY;BYDAY=MO,TU,WE,TH,FR", 5,
     true},
    {"monthly 31st", "DTSTART;VALUE=DATE:20260131\nRRULE:FREQ=MONTHLY;BYMONTHDAY=31;COUNT=14", 1,
     false},
    {"yearly every year", "DTSTART;VALUE=DATE:20260312\nRRULE:FREQ=YEARLY;INTERVAL=1", 1, true},
    // February and March 2026 share their first Friday's date: one monthly task.
    {"first friday", "DTSTART:20260102T120000\nRRULE:FREQ=MONTHLY;BYDAY=1FR;COUNT=20", 18, false},
    {"tuesdays and thursdays", "DTSTART:20260106T180000\nRRULE:FREQ=WEEKLY;BYDAY=TU,TH;COUNT=30", 2,
     false},
    {"last day of month", "DTSTART;VALUE=DATE:20260131\nRRULE:FREQ=MONTHLY;BYMONTHDAY=-1;COUNT=24",
     -1, false},
    {"weekly count", "DTSTART;TZID=Europe/Berlin:20260107T100000\nRRULE:FREQ=WEEKLY;COUNT=10", -1,
     false},
    {"until utc against tokyo",
     "DTSTART;TZID=Asia/Tokyo:20260105T080000\nRRULE:FREQ=DAILY;UNTIL=20260119T230000Z", 1, false},
    {"exdates on two lines",
     "DTSTART;TZID=America/New_York:20260203T100000\nRRULE:FREQ=WEEKLY;COUNT=12\n"
     "EXDATE;TZID=America/New_York:20260217T100000\nEXDATE;TZID=America/New_York:20260310T100000",
     3, false},
    {"rdates",
     "DTSTART:20260401T090000\nRRULE:FREQ=DAILY;COUNT=5\nRDATE:20260420T090000,20260501T090000", 3,
     false},
    {"all-day weekly", "DTSTART;VALUE=DATE:20260302\nRRULE:FREQ=WEEKLY;UNTIL=20261228", 1, false},
    {"three days", "DTSTART;VALUE=DATE:20260310\nDTEND;VALUE=DATE:20260313", 1, false},
    {"overnight monthly",
     "DTSTART:20260410T220000\nDTEND:20260411T020000\nRRULE:FREQ=MONTHLY;COUNT=4", -1, false},
    {"utc once", "DTSTART:20260801T020000Z\nDTEND:20260801T030000Z", 1, false},
};

const char* const kMovedOccurrence =
    "BEGIN:VEVENT\nUID:moved@test\nSUMMARY:moved\nDTSTART;TZID=Europe/Berlin:20260601T100000\n"
    "RRULE:FREQ=WEEKLY;COUNT=8\nEND:VEVENT\n"
    "BEGIN:VEVENT\nUID:moved@test\nSUMMARY:moved\n"
    "RECURRENCE-ID;TZID=Europe/Berlin:20260615T100000\n"
    "DTSTART;TZID=Europe/Berlin:20260617T150000\nEND:VEVENT\n";

const char* const kTodos =
    "BEGIN:VTODO\nUID:todo-1@test\nSUMMARY:file the report\nDUE;VALUE=DATE:20260910\n"
    "DTSTART;VALUE=DATE:20260901\nSTATUS:COMPLETED\nCATEGORIES:工作,季度\n"
    "DESCRIPTION:第三季度\nLOCATION:三楼会议室\n"
    "BEGIN:VALARM\nACTION:DISPLAY\nTRIGGER:-PT15M\nDESCRIPTION:x\nEND:VALARM\nEND:VTODO\n"
    "BEGIN:VTODO\nUID:todo-2@test\nSUMMARY:call back\nDTSTART:20260820T150000\n"
    "PERCENT-COMPLETE:40\nEND:VTODO\n";

QByteArray calendarOf(const QByteArray& components) {
    return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//test//test//EN\r\n" + components +
           "END:VCALENDAR\r\n";
}

QByteArray eventOf(const RuleCase& c) {
    return QByteArray("BEGIN:VEVENT\nUID:") + c.subject + "@test\nSUMMARY:" + c.subject + "\n" +
           c.body + "\nEND:VEVENT\n";
}

class ICalendarImportTest : public ExchangeFixture {
protected:
    QString write(const QString& name, const QByteArray& bytes) {
        writeBytes(inFolder(name), bytes);
        return inFolder(name);
    }
    ICalendarImport import(const QString& path) {
        const ICalendarImport r = importICalendarFile(path);
        EXPECT_TRUE(r.ok) << r.ErrMsg.toStdString();
        return r;
    }
    QStringList agendaOf(const QString& subject, const QDate& from, const QDate& to) {
        QStringList lines;
        for (const QString& l : ical_test::agenda(from, to))
            if (l.endsWith(QLatin1Char(' ') + subject)) lines << l;
        return lines;
    }
};

TEST_F(ICalendarImportTest, EveryRuleOccursOnTheDaysDateutilExpands) {
    if (!ical_test::pythonReady()) GTEST_SKIP() << "python3-icalendar is not installed";
    const QDate from(2026, 1, 1), to(2027, 12, 31);
    for (const RuleCase& c : kRules) {
        SCOPED_TRACE(c.subject);
        const QString path = write(QStringLiteral("rule.ics"), calendarOf(eventOf(c)));
        const ICalendarImport r = import(path);
        const QStringList expected = ical_test::pythonDays(path, from, to);
        ASSERT_FALSE(expected.isEmpty());
        EXPECT_EQ(agendaOf(QLatin1String(c.subject), from, to), expected);
        const int tasks = count(QStringLiteral("SELECT COUNT(*) FROM tasks WHERE tas_subject='%1'")
                                    .arg(QLatin1String(c.subject)));
        EXPECT_EQ(r.tally.added, tasks);
        if (c.tasks >= 0) EXPECT_EQ(tasks, c.tasks);
        const int open =
            count(QStringLiteral("SELECT COUNT(*) FROM tasks WHERE tas_subject='%1' AND "
                                 "tas_closedate=#9999-12-31#")
                      .arg(QLatin1String(c.subject)));
        EXPECT_EQ(open > 0, c.openEnded) << open;
        // More than one task, or a rule cut at two years: the summary names it.
        if (tasks > 1 ||
            (!c.openEnded && QByteArray(c.body).contains("RRULE") &&
             !QByteArray(c.body).contains("COUNT") && !QByteArray(c.body).contains("UNTIL")))
            EXPECT_TRUE(r.summary().contains(QLatin1String(c.subject)))
                << r.summary().toStdString();
    }
}

TEST_F(ICalendarImportTest, MovedOccurrencesAndToDos) {
    if (!ical_test::pythonReady()) GTEST_SKIP() << "python3-icalendar is not installed";
    const QString path =
        write(QStringLiteral("moved.ics"), calendarOf(QByteArray(kMovedOccurrence) + kTodos));
    import(path);
    const QDate from(2026, 1, 1), to(2027, 12, 31);
    EXPECT_EQ(ical_test::agenda(from, to), ical_test::pythonDays(path, from, to));
    EXPECT_EQ(column("SELECT tas_closed || '|' || tas_remind || '|' || tas_tag || '|' || "
                     "tas_description FROM tasks WHERE tas_subject='file the report'"),
              QStringList({"1|1|工作,季度|第三季度\n地点：三楼会议室"}));
    EXPECT_EQ(
        column("SELECT tas_date || '|' || tas_closed FROM tasks WHERE tas_subject='call back'"),
        QStringList({"2026-08-20 00:00:00|0"}));
}

// Whether an undo puts an overwritten record back is the import session's own test.
TEST_F(ICalendarImportTest, ASecondImportAddsNothingAndAChangedEventIsUpdated) {
    const QByteArray first = calendarOf(eventOf(kRules[4]) + kMovedOccurrence);
    const QString path = write(QStringLiteral("again.ics"), first);
    import(path);
    const int tasks = rows(QStringLiteral("tasks"));
    import(path);
    EXPECT_EQ(rows(QStringLiteral("tasks")), tasks);

    QByteArray changed = first;
    changed.replace("SUMMARY:moved\nRECURRENCE-ID", "SUMMARY:moved later\nRECURRENCE-ID");
    const ICalendarImport third = import(write(QStringLiteral("again.ics"), changed));
    EXPECT_EQ(std::pair(third.tally.added, third.tally.updated), std::pair(0, 1));
    EXPECT_EQ(count("SELECT COUNT(*) FROM tasks WHERE tas_subject='moved later'"), 1);
}

TEST_F(ICalendarImportTest, NothingIsCutInSilence) {
    const QString longSubject = QString(300, QChar(0x4F1A));  // 会 × 300
    const QByteArray ics =
        calendarOf("BEGIN:VEVENT\nUID:long@test\nSUMMARY:" + longSubject.toUtf8() +
                   "\nDTSTART:20260901T090000\nEND:VEVENT\n");
    const ICalendarImport r = import(write(QStringLiteral("long.ics"), ics));
    EXPECT_EQ(column("SELECT tas_subject FROM tasks"), QStringList({longSubject.left(255)}));
    EXPECT_TRUE(column("SELECT tas_description FROM tasks").value(0).contains(longSubject));
    EXPECT_TRUE(r.summary().contains(QStringLiteral("全文保留在备注中")))
        << r.summary().toStdString();
}

TEST_F(ICalendarImportTest, BrokenFilesAreRefusedOrPartlyImportedWithWhereAndWhy) {
    struct Broken {
        const char* name;
        QByteArray bytes;
        bool ok;
        const char* said;  // a piece of the message or summary
    };
    const QByteArray good =
        "BEGIN:VEVENT\nUID:ok@test\nSUMMARY:fine\nDTSTART:20260901T090000\nEND:VEVENT\n";
    const Broken cases[] = {
        {"not a calendar", "name,phone\n张三,123\n", false, "不是iCalendar"},
        {"only broken events", calendarOf("BEGIN:VEVENT\nUID:x\nSUMMARY:no start\nEND:VEVENT\n"),
         false, "第4行「no start」：没有开始日期"},
        {"one bad rule",
         calendarOf(good + "BEGIN:VEVENT\nUID:y\nSUMMARY:bad rule\nDTSTART:20260901T090000\n"
                           "RRULE:FREQ=SOMETIMES\nEND:VEVENT\n"),
         true, "第9行「bad rule」"},
        {"unfinished", "BEGIN:VCALENDAR\nVERSION:2.0\n" + good, true, "缺少END"},
        {"latin-1",
         calendarOf("BEGIN:VEVENT\nUID:z\nSUMMARY:Caf\xe9\nDTSTART:20260901T090000\nEND:VEVENT\n"),
         true, ""},
    };
    for (const Broken& c : cases) {
        SCOPED_TRACE(c.name);
        const int before = rows(QStringLiteral("tasks"));
        const ICalendarImport r = importICalendarFile(write(QStringLiteral("broken.ics"), c.bytes));
        EXPECT_EQ(r.ok, c.ok) << r.ErrMsg.toStdString();
        const QString said = r.ok ? r.summary() : r.ErrMsg;
        EXPECT_TRUE(said.contains(QString::fromUtf8(c.said))) << said.toStdString();
        if (!r.ok) EXPECT_EQ(rows(QStringLiteral("tasks")), before);
    }
    EXPECT_EQ(column("SELECT tas_subject FROM tasks ORDER BY tas_id"),
              QStringList({"fine", "Café"}));
}

// Every calendar other programs wrote: no crash, a failure says why, the data
// file stays sound, and what was imported occurs on the days dateutil gives.
TEST_F(ICalendarImportTest, SampleFilesOfOtherPrograms) {
    const QString folder = QStringLiteral(TARVEL_SAMPLES "/ics");
    if (!QDir(folder).exists()) GTEST_SKIP() << "no sample folder";
    const bool python = ical_test::pythonReady();
    QDirIterator it(folder, {QStringLiteral("*.ics")}, QDir::Files);
    int files = 0, compared = 0;
    while (it.hasNext()) {
        const QString path = it.next();
        SCOPED_TRACE(path.toStdString());
        ++files;
        const ICalendarImport r = importICalendarFile(path);
        if (!r.ok) {
            EXPECT_FALSE(r.ErrMsg.isEmpty());
            continue;
        }
        EXPECT_EQ(sqlcipherRows(file.path(), QStringLiteral("PRAGMA integrity_check")),
                  QStringList({"ok"}));
        const QDate first = QDate::fromString(
            column("SELECT MIN(tas_date) FROM tasks").value(0).left(10), Qt::ISODate);
        if (first.isValid() && python && r.leftOut.isEmpty() && r.textProblem.isEmpty() &&
            ical_test::comparable(path)) {
            const QDate last = first.addYears(2);
            const QStringList theirs = ical_test::pythonDays(path, first, last);
            if (!theirs.isEmpty()) {
                EXPECT_EQ(ical_test::agenda(first, last), theirs);
                ++compared;
            }
        }
        if (r.tally.added > 0) ASSERT_TRUE(undoLastImport().ok);
        EXPECT_EQ(rows(QStringLiteral("tasks")), 0);
    }
    EXPECT_GT(files, 0);
    if (python) EXPECT_GT(compared, 10);
}

}  // namespace
