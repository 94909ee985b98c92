// iCalendar: the exported file read back by python3-icalendar and expanded by
// python3-dateutil gives, over three years, the very days the task-date
// condition selects, for every cycle and the edge starts; text, folding,
// reminders and ticked export; and import with what it keeps, what it
// simplifies, and nothing left behind when it fails.
#include "schedule/icalendar.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <map>
#include <set>

#include "schedule/icaltext.h"
#include "schedule/recurrence.h"
#include "tests/records/recordfixture.h"

using namespace tarvel;

namespace {

// Reads a calendar with the Debian parser and prints, per event, its UID and
// every day its rule yields between two dates, then its summary, description,
// whether it has an alarm, and its start.
const char* const kExpand = R"PY(
import sys, datetime
from icalendar import Calendar
from dateutil.rrule import rrulestr
cal = Calendar.from_ical(open(sys.argv[1], 'rb').read())
lo = datetime.datetime.strptime(sys.argv[2], '%Y-%m-%d')
hi = datetime.datetime.strptime(sys.argv[3], '%Y-%m-%d') + datetime.timedelta(days=1)
for ev in cal.walk('VEVENT'):
    start = ev.decoded('DTSTART')
    if not isinstance(start, datetime.datetime):
        start = datetime.datetime.combine(start, datetime.time())
    if 'RRULE' in ev:
        rule = rrulestr(ev['RRULE'].to_ical().decode(), dtstart=start)
        days = [d.date() for d in rule.between(lo, hi, inc=True)]
    else:
        days = [start.date()] if lo <= start < hi else []
    print('DAYS', ev['UID'], ' '.join(d.isoformat() for d in days))
    print('TEXT', ev['UID'], repr(str(ev.get('SUMMARY'))), repr(str(ev.get('DESCRIPTION', ''))),
          bool(ev.walk('VALARM')), ev['DTSTART'].to_ical().decode())
)PY";

QString systemPython() {
    // Debian's interpreter holds Debian's modules, whatever else is on PATH.
    return QFile::exists("/usr/bin/python3") ? "/usr/bin/python3" : "python3";
}

struct Parsed {
    std::map<int, std::set<QDate>> days;  // by task id
    std::map<int, QString> text;
};

Parsed parseWithPython(const QString& path, const QDate& from, const QDate& to) {
    QProcess p;
    p.start(systemPython(),
            {"-c", kExpand, path, from.toString(Qt::ISODate), to.toString(Qt::ISODate)});
    EXPECT_TRUE(p.waitForFinished(60000));
    EXPECT_EQ(p.exitCode(), 0) << p.readAllStandardError().toStdString();
    Parsed parsed;
    for (const QString& line :
         QString::fromUtf8(p.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts)) {
        const QStringList words = line.split(' ');
        const int id = words[1].section('-', 2, 2).section('@', 0, 0).toInt();
        if (words[0] == "DAYS")
            for (int i = 2; i < words.size(); ++i)
                parsed.days[id].insert(QDate::fromString(words[i], Qt::ISODate));
        else
            parsed.text[id] = line.section(' ', 2);
    }
    return parsed;
}

class ICalendar : public records_test::RecordFixture {
protected:
    QString path(const QString& name) { return QDir(file.folder()).filePath(name); }
    std::set<QDate> byCondition(int id, const QDate& from, const QDate& to) {
        std::set<QDate> days;
        for (QDate d = from; d <= to; d = d.addDays(1))
            if (count(QStringLiteral("SELECT COUNT(*) FROM tasks") + taskDateCondition(d) +
                      QStringLiteral(" AND tas_id=%1").arg(id)) == 1)
                days.insert(d);
        return days;
    }
    void addEdgeTasks() {
        run("INSERT INTO tasks (tas_id, tas_subject, tas_date, tas_time, tas_cycle, tas_closedate, "
            "tas_remind, tas_description, tas_check) VALUES "
            "(1, 'once', #2024-3-15#, #9:00#, 0, #2020-1-1#, 1, '', 0), "
            "(2, 'daily', #2024-2-27#, #8:00#, 1, #2024-3-3#, 0, '', 0), "
            "(3, 'weekly', #2024-5-1#, null, 7, #2025-12-31#, 0, '', -1), "
            "(4, 'monthly 31', #2024-1-31#, #10:00#, 30, #2026-3-31#, 0, '', 0), "
            "(5, 'yearly 29 feb', #2024-2-29#, #7:30#, 365, #2030-12-31#, 0, '', -1), "
            "(6, 'monthly 30', #2024-1-30#, #23:30#, 30, #2024-12-30#, 0, '', 0), "
            "(7, 'yearly 31 dec', #2023-12-31#, null, 365, #2025-12-31#, 0, '', 0), "
            "(8, 'closed early', #2024-6-1#, null, 1, #2024-5-1#, 0, '', 0), "
            "(9, 'bad cycle', #2024-3-15#, null, 14, #2024-12-31#, 0, '', 0)");
    }
};

TEST_F(ICalendar, ExpandedRulesGiveTheDaysTheConditionSelects) {
    addEdgeTasks();
    const ICalendarExport exported = exportTasksToICalendar(path("all.ics"), false);
    ASSERT_TRUE(exported.ok) << exported.ErrMsg.toStdString();
    EXPECT_EQ(exported.exported, 7);
    EXPECT_EQ(exported.skipped, QStringList({"bad cycle", "closed early"}));

    const QDate from(2023, 12, 1), to(2026, 11, 30);
    const Parsed parsed = parseWithPython(path("all.ics"), from, to);
    ASSERT_EQ(parsed.days.size(), 7u);
    for (int id = 1; id <= 7; ++id)
        EXPECT_EQ(parsed.days.at(id), byCondition(id, from, to)) << "task " << id;
    EXPECT_EQ(parsed.days.at(5), std::set<QDate>({QDate(2024, 2, 29)}));  // 2028 is past the window
    EXPECT_EQ(parsed.text.at(3).section(' ', -1), "20240501");            // a day, no time
    EXPECT_EQ(parsed.text.at(4).section(' ', -1), "20240131T100000");
}

TEST_F(ICalendar, TextFoldingAlarmsAndTickedTasks) {
    addEdgeTasks();
    const QString subject = QString("周会;议程,第一项\\") + QString(40, QChar(0x4E2D));
    run("UPDATE tasks SET tas_subject='" + subject +
        "', tas_description='第一行\n第二行' "
        "WHERE tas_id=3");
    ASSERT_TRUE(exportTasksToICalendar(path("ticked.ics"), true).ok);
    QFile f(path("ticked.ics"));
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    const QByteArray bytes = f.readAll();
    for (const QByteArray& line : bytes.split('\n')) EXPECT_LE(line.size(), 76);  // 75 + CR
    EXPECT_TRUE(bytes.contains("UID:tarvel-task-3@tarvel\r\n"));
    const Parsed parsed =
        parseWithPython(path("ticked.ics"), QDate(2024, 1, 1), QDate(2024, 12, 31));
    ASSERT_EQ(parsed.text.size(), 2u);  // the ticked tasks 3 and 5
    EXPECT_TRUE(parsed.text.at(3).startsWith("'" + QString(subject).replace("\\", "\\\\") +
                                             "' '第一行\\n第二行' False"))
        << parsed.text.at(3).toStdString();
    run("UPDATE tasks SET tas_remind=1 WHERE tas_id=5");
    ASSERT_TRUE(exportTasksToICalendar(path("ticked.ics"), true).ok);
    EXPECT_TRUE(parseWithPython(path("ticked.ics"), QDate(2024, 1, 1), QDate(2024, 12, 31))
                    .text.at(5)
                    .contains(" True "));
}

TEST_F(ICalendar, ExportedTasksComeBackAsTheyWere) {
    addEdgeTasks();
    ASSERT_TRUE(exportTasksToICalendar(path("all.ics"), false).ok);
    const QString columns =
        "SELECT tas_subject || '|' || tas_date || '|' || IFNULL(tas_time, '-') || '|' || tas_cycle "
        "|| '|' || tas_closedate || '|' || tas_remind FROM tasks WHERE tas_cycle IN (0,1,7,30,365) "
        "AND tas_closedate >= tas_date OR tas_cycle = 0 ORDER BY tas_subject";
    const auto read = [&columns] {
        QStringList rows;
        tarveldatabase db;
        for (RecordsetPtr rs = db.GetReadRs(columns); !rs->Eof(); rs->MoveNext())
            rows << rs->value(0).toString();
        return rows;
    };
    QStringList before = read();
    run("DELETE * FROM tasks");
    const ICalendarImport imported = importTasksFromICalendar(path("all.ics"));
    ASSERT_TRUE(imported.ok) << imported.ErrMsg.toStdString();
    EXPECT_EQ(imported.imported, 7);
    EXPECT_TRUE(imported.simplified.isEmpty());
    // A one-off task's close date is its own date after the trip.
    before.replaceInStrings("|2020-01-01 00:00:00|", "|2024-03-15 00:00:00|");
    EXPECT_EQ(read(), before);
}

TEST_F(ICalendar, RulesTheScheduleCannotHoldBecomeTheFirstOccurrence) {
    const QByteArray ics =
        "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//x//y//EN\r\n"
        "BEGIN:VEVENT\r\nUID:a\r\nDTSTART:20240102T090000\r\nRRULE:FREQ=WEEKLY;COUNT=3\r\n"
        "SUMMARY:三次周会\r\nEND:VEVENT\r\n"
        "BEGIN:VEVENT\r\nUID:b\r\nDTSTART:20240102T090000\r\nRRULE:FREQ=DAILY;INTERVAL=2;UNTIL="
        "20240110T000000\r\n"
        "SUMMARY:隔天\r\nEND:VEVENT\r\n"
        "BEGIN:VEVENT\r\nUID:c\r\nDTSTART;VALUE=DATE:20240105\r\nRRULE:FREQ=MONTHLY\r\n"
        "SUMMARY:每月无结束\r\nEND:VEVENT\r\n"
        "BEGIN:VEVENT\r\nUID:d\r\nDTSTART:20240108T100000\r\nRRULE:FREQ=WEEKLY;BYDAY=MO,WE;UNTIL="
        "20240301\r\n"
        "SUMMARY:两天\r\nEND:VEVENT\r\n"
        "BEGIN:VEVENT\r\nUID:e\r\nDTSTART:20240110T150000\r\n"
        "RRULE:FREQ=DAILY;UNTIL=20240112T140000\r\nSUMMARY:到十一日\r\n"
        "DESCRIPTION:带上\\,合同\\n两份\r\nBEGIN:VALARM\r\nTRIGGER:-PT15M\r\nACTION:DISPLAY\r\n"
        "END:VALARM\r\nEND:VEVENT\r\n"
        "BEGIN:VEVENT\r\nUID:f\r\nSUMMARY:没有日期\r\nEND:VEVENT\r\n"
        "END:VCALENDAR\r\n";
    const ICalendarImport r = importTasksFromICalendarText(ics);
    ASSERT_TRUE(r.ok) << r.ErrMsg.toStdString();
    EXPECT_EQ(r.imported, 5);
    EXPECT_EQ(r.simplified, QStringList({"隔天：间隔重复不支持", "每月无结束：没有结束日期",
                                         "两天：重复规则过于复杂"}));
    EXPECT_EQ(r.skipped, QStringList({"没有日期"}));
    EXPECT_TRUE(r.summary().startsWith("导入了5项日程。"));
    auto row = [this](const char* subject) {
        return scalar(
                   QString("SELECT tas_cycle || '|' || tas_date || '|' || tas_closedate || '|' || "
                           "IFNULL(tas_time, '-') || '|' || tas_remind FROM tasks WHERE "
                           "tas_subject='%1'")
                       .arg(subject))
            .toString();
    };
    EXPECT_EQ(row("三次周会"), "7|2024-01-02 00:00:00|2024-01-16 00:00:00|1899-12-30 09:00:00|0");
    EXPECT_EQ(row("隔天"), "0|2024-01-02 00:00:00|2024-01-02 00:00:00|1899-12-30 09:00:00|0");
    EXPECT_EQ(row("每月无结束"), "0|2024-01-05 00:00:00|2024-01-05 00:00:00|-|0");
    EXPECT_EQ(row("到十一日"), "1|2024-01-10 00:00:00|2024-01-11 00:00:00|1899-12-30 15:00:00|1");
    EXPECT_EQ(scalar("SELECT tas_description FROM tasks WHERE tas_subject='到十一日'").toString(),
              "带上,合同\n两份");
}

TEST_F(ICalendar, AFailedImportLeavesNothingBehind) {
    run("INSERT INTO tasks (tas_id, tas_subject, tas_date) VALUES (1, 'kept', #2024-1-1#)");
    // The second event cannot be stored: the first must not stay either.
    run("CREATE TRIGGER refuse BEFORE INSERT ON tasks WHEN NEW.tas_subject = 'boom' "
        "BEGIN SELECT RAISE(ABORT, 'refused'); END");
    const QByteArray ics =
        "BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nDTSTART:20240102T090000\r\nSUMMARY:first\r\n"
        "END:VEVENT\r\nBEGIN:VEVENT\r\nDTSTART:20240103T090000\r\nSUMMARY:boom\r\nEND:VEVENT\r\n"
        "END:VCALENDAR\r\n";
    const ICalendarImport r = importTasksFromICalendarText(ics);
    EXPECT_FALSE(r.ok);
    EXPECT_FALSE(r.ErrMsg.isEmpty());
    EXPECT_EQ(count("SELECT COUNT(*) FROM tasks"), 1);
    EXPECT_FALSE(importTasksFromICalendarText("not a calendar").ok);
}

TEST(ICalendarText, FoldsWithoutSplittingCharactersAndUnfoldsBack) {
    const QString line = "SUMMARY:" + QString(60, QChar(0x65E5));  // 8 + 180 octets
    const QByteArray folded = ical::foldedLine(line);
    for (const QByteArray& part : folded.split('\n'))
        if (!part.isEmpty()) {
            EXPECT_LE(part.size(), 76);
        }
    const QList<ical::ContentLine> back = ical::contentLines(folded);
    ASSERT_EQ(back.size(), 1);
    EXPECT_EQ(back[0].value, QString(60, QChar(0x65E5)));
    EXPECT_EQ(ical::unescapeText(ical::escapeText("a;b,c\\d\r\ne")), "a;b,c\\d\ne");
}

}  // namespace
