"""Derives occurrences from hourly data: monitor downtimes from substitute data, excursions from values over a limit."""

from collections import namedtuple
from datetime import datetime, timedelta
from fractions import Fraction

from . import sources

# Sections of the summary form of 40 CFR 60.7(d), and the letters of their causes of which the data tells anything.
EXCURSIONS, DOWNTIMES = "emission data summary", "CMS performance summary"
STARTUP_SHUTDOWN, UNKNOWN = "1a", "1e"

# Flags of hours that a monitor was missing in.
DOWNTIME_REASONS = {
    "3": "Derived from flag 3: substitute data",
    "4": "Derived from flag 4: measured and substitute data in the same hour",
}
MEASURED = "1"
EXCURSION_REASON = "Derived: hour above a limit that holds for the {average} average, for demonstration only"

COLUMNS = ("pid", "start", "count", "category", "reason", "excludable")

# What a site derives from one hourly column: the PIDs of its two occurrence parameters, the limit's record in the list of
# limits, and the load that a unit has to reach until its start-up is over.
Derivation = namedtuple("Derivation", "column excursion downtime limit lower_load")
Hourly = namedtuple("Hourly", "time pid category reason excludable")
Run = namedtuple("Run", "pid start count category reason excludable")


def after(time, hours=1):
    return (datetime.fromisoformat(time) + timedelta(hours=hours)).strftime("%Y-%m-%d %H:%M")


def starts_and_stops(hours, lower_load):
    """Times of the hours that belong to a start-up or in which the unit stops.

    A start-up begins with the first operating hour after one without operation and ends with the last one before the gross load
    reaches the lower boundary of operation. What an hour that is not in the data may have been is not guessed.
    """
    found, starting, before = set(), False, None
    for hour in hours:
        follows = before is not None and after(before.time) == hour.time
        if follows and not hour.operating and before.operating:
            found.add(before.time)
        begins = follows and not before.operating
        starting = (hour.operating and (begins or starting and follows) and Fraction(hour.values["GLOAD"]) < lower_load)
        if starting:
            found.add(hour.time)
        before = hour
    return found


def hourly(derivation, hours):
    """The occurrences hour by hour: those of excursions first, then those of downtimes."""
    limit, startup = Fraction(derivation.limit["value"]), starts_and_stops(hours, derivation.lower_load)
    reason = EXCURSION_REASON.format(average=derivation.limit["average"])
    for hour in hours:
        if hour.flags[derivation.column] == MEASURED and Fraction(hour.values[derivation.column]) > limit:
            known = hour.time in startup
            cause = sources.cause(EXCURSIONS, STARTUP_SHUTDOWN if known else UNKNOWN)
            yield Hourly(hour.time, derivation.excursion, cause, reason, int(known))
    for hour in hours:
        if hour.flags[derivation.column] in DOWNTIME_REASONS:
            yield Hourly(hour.time, derivation.downtime, sources.cause(DOWNTIMES, UNKNOWN),
                         DOWNTIME_REASONS[hour.flags[derivation.column]], 0)


def runs(derivation, hours):
    """Rows of occurrences.csv: neighbouring hours that have the same to say in one row."""
    made = []
    for hour in hourly(derivation, hours):
        last = made[-1] if made else None
        if last and (last.pid, *last[3:]) == hour[1:] and after(last.start, last.count) == hour.time:
            made[-1] = last._replace(count=last.count + 1)
        else:
            made.append(Run(hour.pid, hour.time, 1, *hour[2:]))
    return made


def monthly(derivation, hours):
    """pid, month, category, excludable, rows that begin in the month, hours: what an engine has to list."""
    rows, counted = {}, {}
    for run in runs(derivation, hours):
        key = (run.pid, f"{run.start[:7]}-01 00:00", run.category, run.excludable)
        rows[key] = rows.get(key, 0) + 1
    for hour in hourly(derivation, hours):
        key = (hour.pid, f"{hour.time[:7]}-01 00:00", hour.category, hour.excludable)
        counted[key] = counted.get(key, 0) + 1
    return [(*key, rows.get(key, 0), counted[key]) for key in sorted(counted)]
