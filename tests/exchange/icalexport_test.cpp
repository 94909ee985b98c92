// iCalendar export through libical: the file, read by python3-icalendar and
// expanded by dateutil, gives the very days the calendar shows, for every
// cycle, edge starts and an open end; done tasks, reminders, tags and UIDs
// as other programs read them; the file imported back gives the same days.
#include "exchange/icalexport.h"

#include "exchange/icalimport.h"
#include "tests/exchange/exchangefixture.h"
#include "tests/exchange/icalcheck.h"

using namespace tarvel;
using namespace tarvel::exchange;
using namespace exchange_test;

namespace {

// Per component: UID, kind, status, categories, alarm, whether the rule has an end.
const char* const kFacts = R"PY(
import sys, json
from icalendar import Calendar
cal = Calendar.from_ical(open(sys.argv[1], 'rb').read())
out = []
for c in cal.walk():
    if c.name not in ('VEVENT', 'VTODO'):
        continue
    rule = c.get('RRULE')
    cats = c.get('CATEGORIES')
    cats = ','.join(str(x) for x in cats.cats) if cats is not None and hasattr(cats, 'cats') else str(cats or '')
    out.append('|'.join([str(c['SUMMARY']), c.name, str(c.get('STATUS', '')), cats,
                         'alarm' if c.walk('VALARM') else '',
                         '' if rule is None else ('until' if 'UNTIL' in rule else 'open'),
                         str(c['UID'])]))
print(json.dumps(out))
)PY";

class ICalendarExportTest : public ExchangeFixture {};

TEST_F(ICalendarExportTest, TheFileGivesTheDaysTheCalendarShowsAndWhatEachTaskIs) {
    if (!ical_test::pythonReady()) GTEST_SKIP() << "python3-icalendar is not installed";
    run("INSERT INTO tasks (tas_id, tas_subject, tas_date, tas_time, tas_cycle, tas_closedate, "
        "tas_remind, tas_closed, tas_tag, tas_description, tas_check) VALUES "
        "(1, 'once', #2026-3-15#, #9:00#, 0, #2026-3-15#, 1, 0, '', '', 0), "
        "(2, 'daily', #2026-2-27#, #8:00#, 1, #2026-3-3#, 0, 0, '', '', 0), "
        "(3, 'weekly', #2026-5-1#, null, 7, #2027-12-31#, 0, 0, '客户', '', -1), "
        "(4, 'monthly 31', #2026-1-31#, #10:00#, 30, #2027-3-31#, 0, 0, '', '', 0), "
        "(5, 'yearly 29 feb', #2024-2-29#, #7:30#, 365, #2030-12-31#, 0, 0, '', '', 0), "
        "(6, 'weekly open', #2026-1-6#, #18:30#, 7, #9999-12-31#, 0, 0, '', '', 0), "
        "(7, 'done', #2026-4-2#, #11:00#, 0, #2026-4-2#, 0, 1, '', '备注', 0), "
        "(8, 'closed early', #2026-6-1#, null, 1, #2026-5-1#, 0, 0, '', '', 0)");
    const QString path = inFolder(QStringLiteral("all.ics"));
    const ICalendarExport e = exportTasksToICalendar(path, false);
    ASSERT_TRUE(e.ok) << e.ErrMsg.toStdString();
    EXPECT_EQ(e.exported, 7);
    EXPECT_EQ(e.skipped, QStringList({"closed early"}));
    const QDate from(2026, 1, 1), to(2028, 12, 31);
    const QStringList ours = ical_test::agenda(from, to);
    EXPECT_EQ(ical_test::pythonDays(path, from, to), ours);
    EXPECT_TRUE(ours.contains(QStringLiteral("2028-12-26 18:30 weekly open")));

    // Ticked only: the one ticked task.
    const QString ticked = inFolder(QStringLiteral("ticked.ics"));
    ASSERT_TRUE(exportTasksToICalendar(ticked, true).ok);
    QFile f(ticked);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    const QByteArray text = f.readAll();
    EXPECT_EQ(text.count("BEGIN:VEVENT"), 1);
    EXPECT_TRUE(text.contains("SUMMARY:weekly"));

    // Imported back (as new tasks), the same days.
    run("DELETE * FROM tasks");
    const ICalendarImport back = importICalendarFile(path);
    ASSERT_TRUE(back.ok) << back.ErrMsg.toStdString();
    EXPECT_EQ(back.tally.added, 7);
    EXPECT_EQ(ical_test::agenda(from, to), ours);
    EXPECT_EQ(count("SELECT COUNT(*) FROM tasks WHERE tas_subject='weekly open' AND "
                    "tas_closedate=#9999-12-31#"),
              1);

    // Done tasks, reminders, tags and stable UIDs, as other programs read them.
    QStringList facts = python(QLatin1String(kFacts), path).toVariant().toStringList();
    facts.sort();
    EXPECT_EQ(facts, QStringList({
                         "daily|VEVENT||||until|tarvel-task-2@tarvel",
                         "done|VTODO|COMPLETED||||tarvel-task-7@tarvel",
                         "monthly 31|VEVENT||||until|tarvel-task-4@tarvel",
                         "once|VEVENT|||alarm||tarvel-task-1@tarvel",
                         "weekly open|VEVENT||||open|tarvel-task-6@tarvel",
                         "weekly|VEVENT||客户||until|tarvel-task-3@tarvel",
                         "yearly 29 feb|VEVENT||||until|tarvel-task-5@tarvel",
                     }));
}

}  // namespace
