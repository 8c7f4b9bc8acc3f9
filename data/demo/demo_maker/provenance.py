"""Writes PROVENANCE.md: where every file, column and parameter of the demo sites comes from."""

from . import codes, figures, occurrences, sites, sources, writer
from .pids import CALCULATED, DERIVED, origin_of

HEAD = """# Where the demo data comes from

Written by `make_demo.py`. *As found* means copied from a public file in [source](source/README.md); *derived* means made here, by the
rule that stands beside it; *calculated* means not stored at all but computed by the engine when it is read.
Dates and times are those of the source: 2007, local standard time. Nothing was shifted.

In the data itself, too, what is derived says so: parameters made here have 1 in field D of their PID and a description that begins
with "Derived:", their files of values have `derived` in the name, and their values carry monitor code 110 "Derived". The reason of every
occurrence begins with "Derived", too.
Field D is 2 for calculated parameters ("Calculated:"), 0 for what was found.

## Files

| file | column | where from |
|---|---|---|
| `*/site.csv` | all | written for the demo; plant, number and unit as found |
| `*/monitor_codes.csv` | rows 1 to 55 | method-of-determination codes, wording as found. Where the collected wording was not checked against the regulation, `[wording: ...]` behind it says how far it is supported; do not rely on it |
| | rows 0 and 100 and above | derived: codes of the demo's own, see below |
| | rank | written for the demo: off 1, measured and calculated 10, unknown 15, default 20, substitute 25 and 30, derived 40 |
| `*/units.csv` | all | unit numbers as found; name is that of the facility with the unit's behind it. Units without a plain number, and those that were not there in 2007, are left out |
| `*/parameter_codes.csv` | short_name, long_name | as found: the code tables of monitoring-plan parameters and of formula parameters |
| | code | written for the demo: the place in those tables |
| `*/special_values.csv` | value | of ids -95 and -97 as found, of others derived, see below |
| | pid, id, type | written for the demo |
| `*/relationships.csv` | all | written for the demo: which parameters of this list are minutes, hours and days of one quantity |
| `*/parameters.csv` | pid, interval, io_type, format, uses, formula, aggregation, roll_up, type | written for the demo |
| | name, units | written for the demo after the code tables: units of SO2 mass, NOx rate and NOx mass as the tables have them |
| | value | constants, as found in the monitoring plan in effect throughout 2007, the NOx rate limit in the rule that it names; see the list below |
| `*/occurrences.csv` | category | wording as found, which one derived, see below |
| | all others | derived, see below |
| `*/values/hourly-2007.csv` | time | as found, written as date and time |
| | a PID | as found. `-9` (no value) became an empty field; `.263` became `0.263`; idle zeros behind the last digit went |
| | a PID with ` mc` | derived from the how-determined flags, see below |
| `barry5/values/minute-2007-04-derived.csv` | all | derived, see below |
| `barry5/values/status-2007-derived.csv` | all | derived: "operating" (OPTIME 1), "part hour" (between 0 and 1), "off" (0), at each change and after the gap |
| `expected/*-monthly.csv` | all | calculated here, in exact arithmetic: what an engine has to give for the monthly parameters |
| `expected/*-occurrences.csv` | all | calculated here: rows of `occurrences.csv` that begin in a month, and hours with an occurrence in it |

## Monitor codes from flags

The hourly files have no method-of-determination codes. They have flags: 1 measured, 2 calculated, 3 substitute, 4 measured and
substitute, blank when the unit did not operate. Three of these say less than a method-of-determination code, so they became codes of
the demo's own, 100 + flag, instead of a guess:

| flag | code | why |
|---|---|---|
| 1, Barry 5 | 1 | the monitoring plan has continuous monitors (method CEM) for this parameter on both stacks, and only primary systems in 2007: measured there means code 01 |
| 1, Smith SCT1 | 101 | heat input is metered fuel (method AD), which code 01 does not describe |
| 2 | 102 | mass emissions are calculated from other values; no code says so |
| 3 | 103 | substitute: codes 06 to 13 and others are possible, the file does not say which |
| 4 | 104 | both in one hour |
| 98 | 198 | both NOx flags of Smith SCT1 in every operating hour; no explanation was found |
| blank | 100 | operating time 0, no value |

Operating time and gross load have no flag: no code, except 100 for the load of hours without operation.

"""

SPECIAL_VALUES = """## Analyzers and special values

The analyzers and monitors are those of the monitoring plans. Barry 5: what belonged to a system of its two stacks on any day of 2007;
on stack MS5B three of them were replaced on 2007-03-31. Smith SCT1 had none in 2007 (its NOx rate came from fuel flow, appendix E of
40 CFR 75); its parameters are for those of 2014, one for each range that has a span. None of them has values: no public
record of what they measured was found. Type 3 is for calibrations, which 40 CFR 75 appendix B 2.1 asks for each day, and the daily interference check of
flow monitors, 2.1.2 there; type 45 for the quarterly linearity check of gas analyzers, 2.2.1.

| id | on | value | why |
|---|---|---|---|
| -17, -95, -97 | the unit's own parameter | true; plant number; unit | plant and unit as found in the list of facilities and units; that it reports is derived from the hourly data that it reported |
| -22 | parameters of type 3 | 40CFR75; 40CFR60 for opacity | the plans are those of 40 CFR 75; its 75.14 leaves opacity monitors to 40 CFR 60 |
| -25 | parameters of type 3 | true for analyzers that were replaced in 2007 | end of their time in the monitoring plan |
| -117 | parameters of type 3 | true for interference checks | |
| -114, -118 | parameters of type 3 | false | nothing in the plans that they could stand for |
| -32 | parameters of type 45 | 1; 0 for analyzers that were replaced in 2007 | as -25 |
| -3, -13, -21 | occurrence parameters | 3 for excursions, 4 for downtimes; 3600; the NOx rate | written for the demo: type, interval in seconds and tag of the occurrences |
| 1001 | all but constants and occurrence parameters | the unit's operating time | the operating time itself has none |
| 1002 | hourly values whose codes come from flags | {0} | codes of the class measured in the code table, those left out whose wording there is unverified; with the demo's own 101 measured and 102 calculated |
| 1003 | the occurrence parameter of excursions | the NOx rate limit | written for the demo |

"""
OCCURRENCES = """## Occurrences

Real records of excess emissions and monitor downtimes of these plants were not found in public. What `occurrences.csv` of Barry 5 holds
is derived from the hourly data; it says what such records could look like and nothing else about the plant. Causes are those of the
summary form of 40 CFR 60.7(d), in its words. Which action was taken is not known and stays empty.

**Downtimes of the NOx rate monitors**: the {downtimes} hours with flag 3 or 4, in {downtime_rows} rows. Hours that were substituted in part only (flag 4) are
included: the unit has two stacks with a monitoring system each, and an hour of measured and substitute data is one that the monitors
did not cover in full. Other parameters have none: heat input of both units is flagged as measured in every hour; SO2 and NOx mass are flagged
as calculated, whatever went into them; gross load and operating time have no flag; and flag 98 of Smith SCT1 says nothing about
monitors, of which that unit had none in 2007. The cause is always "{unknown}", since substitute data does not tell why it was
needed, and none is excludable.

**Excursions of the NOx rate**: the {excursions} hours of measured data above {value} {units}, in {excursion_rows} rows. The limit is that of {rule}, for
{of}. It holds for the {average} average, over which a single hour decides nothing, and the files
here do not say how this unit is fired or what its permit says: **comparing hours with it is for demonstration only and
says nothing about compliance.** Substitute data is no measurement and is left out; none of it is above the limit. SO2 has no
excursions because what is stored is its mass, which the rules known here do not limit by the hour; Smith SCT1 has none because the
limits known here for its kind are concentrations, which are not in the data.

- Cause "{startup}", {startups} hours: those from the first operating hour after one without operation until the gross load reaches
  the lower boundary of operation (5-904-0-00-00), and hours after which the unit does not operate. All others have "{unknown}".
- Excludable are those with the cause "{startup}", after 40 CFR 60.8(c) as of 2007: emissions above a limit during start-up
  and shutdown are no violation unless a standard says otherwise. That rule belongs to another part than the limit; it is borrowed
  for the demo. All others are counted.

"""


def occurrence_text(site):
    hours = sources.hours(site.hourly_file)
    hourly, rows = list(occurrences.hourly(site.occurrences, hours)), occurrences.runs(site.occurrences, hours)
    excursion, downtime, limit = site.occurrences.excursion, site.occurrences.downtime, site.occurrences.limit

    def count(of, pid):
        return sum(o.pid == pid for o in of)
    startup = sources.cause(occurrences.EXCURSIONS, occurrences.STARTUP_SHUTDOWN)
    return OCCURRENCES.format(
        downtimes=count(hourly, downtime), downtime_rows=count(rows, downtime), excursions=count(hourly, excursion),
        excursion_rows=count(rows, excursion), startups=sum(o.category == startup for o in hourly), startup=startup,
        unknown=sources.cause(occurrences.EXCURSIONS, occurrences.UNKNOWN), value=limit["value"], units=limit["units"],
        rule=limit["rule"], average=limit["average"], of=limit["for"])


MINUTES = """## Minute values

Barry 5, {0} to {1}, three parameters, {2} minutes each. Recorded minutes were not found in public; these are made from the hourly
values by a generator with a fixed seed ({3}), to have something of the size and look of minutes. They say nothing about the plant
that the hourly values do not say.

- The mean of an hour's operating minutes equals the hourly value, exactly (gross load, NOx rate). Heat input is an amount per hour and
  its minutes are a rate, so there the sum of the minutes divided by 60 equals the hourly value.
- An hour with OPTIME 0.25 has 15 operating minutes without a break: the last ones of the hour if the unit starts up in it, otherwise the
  first ones. Other minutes have no value and code 100.
- Within an hour: a drift towards the neighbouring hours, and noise that each minute keeps three quarters of.

"""


AGREEMENT_REMARKS = """
The rates have three decimals, which explains the ordinary difference. The agreement in part hours shows that mass and heat input are
amounts of the hour as operated, not rates over a whole hour: they can be summed as they are. The few SO2 hours of Smith SCT1 that
differ widely, and the sum with them, reach more than eighty times the SO2 of pipeline gas; the unit's second fuel is oil, so these are
probably hours on oil.

"""


def _per_cent(fraction):
    return f"{fraction * 100:.3f} %"


def agreement_table():
    lines = ["## How calculations agree with what was reported", "",
             "Difference from the reported value, operating hours with a reported value above 0:", "",
             "| calculation | hours | median | 95 of 100 within | largest | by more than 10 % | sum over all hours |",
             "|---|---|---|---|---|---|---|"]
    for what, a in figures.agreements().items():
        cells = (what, a.hours, _per_cent(a.median), _per_cent(a.p95), _per_cent(a.largest), f"{a.far_off} hours",
                 f"{a.total * 100:+.3f} %")
        lines.append(f"| {' | '.join(map(str, cells))} |")
    return "\n".join(lines) + "\n" + AGREEMENT_REMARKS


def parameter_table(site):
    lines = [f"## Parameters of {site.folder}", "", "| PID | name | where from |", "|---|---|---|"]
    for p in site.parameters:
        how = p.formula.replace("*", "\\*") if p.formula else f"{p.aggregation} of {p.uses}"
        lines.append(f"| {p.pid} | {p.name} | {how if origin_of(p.pid) == CALCULATED else p.source} |")
    return "\n".join(lines) + "\n\n"


def text():
    barry, smith = sites.all_sites()
    first, last = writer.MINUTE_DAYS
    minutes = writer.minute_text(barry, sources.hours(barry.hourly_file)).count("\n") - 1
    body = (HEAD + SPECIAL_VALUES.format(", ".join(map(str, codes.available()))) + occurrence_text(barry)
            + MINUTES.format(first, last, f"{minutes:,}", writer.SEED) + agreement_table()
            + parameter_table(barry) + parameter_table(smith))
    return body.rstrip("\n") + "\n"
