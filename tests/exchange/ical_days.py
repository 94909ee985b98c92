# Prints every day each VEVENT/VTODO of an iCalendar file occurs on between
# two dates, one line per occurrence and day, as `tarvel-io agenda` writes
# them: "YYYY-MM-DD HH:MM subject" ("YYYY-MM-DD subject" all day), in the
# local time zone. Read by python3-icalendar, expanded by dateutil.
import datetime
import sys

from dateutil import tz
from dateutil.rrule import rrulestr, rruleset
from icalendar import Calendar

LOCAL = tz.tzlocal()


def as_dateutil(value):
    # pytz zones (what icalendar gives for a TZID) do not move with DST when
    # dateutil steps a rule; the same zone from dateutil does.
    if isinstance(value, datetime.datetime) and value.tzinfo is not None:
        name = getattr(value.tzinfo, 'zone', None)
        if name:
            return value.replace(tzinfo=tz.gettz(name))
    return value


def local(value):
    """(naive local datetime, all-day)"""
    if isinstance(value, datetime.datetime):
        if value.tzinfo is not None:
            value = value.astimezone(LOCAL).replace(tzinfo=None)
        return value, False
    return datetime.datetime.combine(value, datetime.time()), True


def values(component, name):
    prop = component.get(name)
    if prop is None:
        return []
    props = prop if isinstance(prop, list) else [prop]
    out = []
    for p in props:
        for d in p.dts:
            out.append(as_dateutil(d.dt))
    return out


def as_start(value):
    if isinstance(value, datetime.datetime):
        return value
    return datetime.datetime.combine(value, datetime.time())


def main():
    data = open(sys.argv[1], 'rb').read()
    lo = datetime.datetime.strptime(sys.argv[2], '%Y-%m-%d').date()
    hi = datetime.datetime.strptime(sys.argv[3], '%Y-%m-%d').date()
    components = []
    for cal in Calendar.from_ical(data, multiple=True):
        components += [c for c in cal.walk() if c.name in ('VEVENT', 'VTODO')]
    moved = {}
    for c in components:
        if 'RECURRENCE-ID' in c:
            rid = local(as_dateutil(c.decoded('RECURRENCE-ID')))[0]
            moved.setdefault(str(c.get('UID')), []).append(rid)
    lines = []
    for c in components:
        key = 'DUE' if c.name == 'VTODO' and 'DUE' in c else 'DTSTART'
        raw = as_dateutil(c.decoded(key))
        start = as_start(raw)
        all_day = not isinstance(raw, datetime.datetime)
        duration = datetime.timedelta(0)
        if c.name == 'VEVENT' and 'DTEND' in c:
            duration = as_start(as_dateutil(c.decoded('DTEND'))) - start
        elif c.name == 'VEVENT' and 'DURATION' in c:
            duration = c.decoded('DURATION')
        occurrences = rruleset()
        occurrences.rdate(start)
        rules = c.get('RRULE')
        for rule in (rules if isinstance(rules, list) else [rules] if rules else []):
            text = rule.to_ical().decode()
            occurrences.rrule(rrulestr(text, dtstart=start))
        for d in values(c, 'RDATE'):
            occurrences.rdate(as_start(d))
        for d in values(c, 'EXDATE'):
            occurrences.exdate(as_start(d))
        gone = [] if 'RECURRENCE-ID' in c else moved.get(str(c.get('UID')), [])
        window_lo = datetime.datetime.combine(lo, datetime.time()) - datetime.timedelta(days=60)
        window_hi = datetime.datetime.combine(hi, datetime.time()) + datetime.timedelta(days=2)
        if start.tzinfo is not None:
            window_lo = window_lo.replace(tzinfo=LOCAL)
            window_hi = window_hi.replace(tzinfo=LOCAL)
        subject = ' '.join(str(c.get('SUMMARY', '')).split('\n'))[:255]
        for o in occurrences.between(window_lo, window_hi, inc=True):
            begin, _ = local(o)
            if begin in gone:
                continue
            if all_day:
                extra = max(0, duration.days - 1)
            elif duration > datetime.timedelta(0):
                end, _ = local(o + duration)
                extra = ((end - datetime.timedelta(seconds=1)).date() - begin.date()).days
            else:
                extra = 0
            for k in range(extra + 1):
                day = begin.date() + datetime.timedelta(days=k)
                if lo <= day <= hi:
                    when = day.isoformat() if all_day else day.isoformat() + begin.strftime(' %H:%M')
                    lines.append(when + ' ' + subject)
    print('\n'.join(sorted(lines)))


main()
