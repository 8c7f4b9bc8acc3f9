"""Data points: listed with their values, codes and texts, and the extra-value text written alone."""

import csv
import json

from harness import DONE, ENVIRONMENT, NOX, REFUSED, SO2, USAGE, check, expect

CALCULATED = "5-041-3-02-00"
DAY = ("--from", "2007-01-08", "--to", "2007-01-09")
HOUR = "2007-01-08 13:00"
TEXT = "<x v=\"1\">geprüft, ✓ 🏭</x>"


def points(name, *options, pid=SO2):
    return json.loads(check(name, ["points", "list", pid, *options, "--json"], DONE))


def read(name, pid=SO2):
    text = check(name, ["read", pid, "--day", "2007-01-08", "--values-only", "--csv"], DONE)
    return list(csv.reader(text.splitlines()))[1:]


def test_points():
    before = points("the data points of a day", *DAY)
    values = read("the values of the day")
    expect("are its values and codes", [[p["time"], p["value"], p["mc"]] for p in before] ==
           [[time, float(value) if value else None, int(code)] for time, value, code in values] and len(before) == 24, (before, values))
    expect("without texts", all(p["occurrence"] == p["extra"] == "" for p in before), before)

    check("an extra value is written", ["points", "set-extra", SO2, HOUR, TEXT], DONE, out=[f"Wrote the extra value of {SO2} at {HOUR}"])
    after = points("the data points afterwards", *DAY)
    expect("have it, and nothing else changed", after == [{**p, "extra": TEXT if p["time"] == HOUR else ""} for p in before], after)
    expect("the values stay", read("the values afterwards") == values, "")
    rows = list(csv.DictReader(check("data points as CSV", ["points", "list", SO2, *DAY, "--csv"], DONE).splitlines()))
    expect("say the same", [r["extra"] for r in rows] == [p["extra"] for p in after] and [float(r["value"]) for r in rows if r["value"]] ==
           [p["value"] for p in after if p["value"] is not None], rows)
    check("a table is for people", ["points", "list", SO2, *DAY], DONE, out=["Extra value", HOUR, "geprüft"])
    expect("the end is not part of the span", [p["time"] for p in points(
        "an hour", "--from", HOUR, "--to", "2007-01-08 14:00")] == [HOUR], "")
    expect("an interval can be said", points("data points of an interval", *DAY, "--interval", "60m") == after, "")

    said = json.loads(check("a write speaks JSON", ["points", "set-extra", SO2, HOUR, "other", "--json"], DONE))
    expect("with what was written", said == {"pid": SO2, "time": HOUR, "extra": "other"}, said)
    check("a value is written over it", ["write", SO2, HOUR, "--value", "1.5", "--mc", "9"], DONE)
    point = points("the point with another value", "--from", HOUR, "--to", "2007-01-08 14:00")
    expect("keeps its extra value", point == [{"time": HOUR, "value": 1.5, "mc": 9, "occurrence": "", "extra": "other"}], point)
    old = next(v for v in values if v[0] == HOUR)
    check("the value is put back", ["write", SO2, HOUR, "--value", old[1], "--mc", old[2]], DONE)
    check("an empty text removes it", ["points", "set-extra", SO2, HOUR, ""], DONE, out=["Removed"])
    expect("and all is as before", points("the data points at the end", *DAY) == before, "")

    check("a span with nothing in it says so", ["points", "list", SO2, "--from", "1999-01-01", "--to", "1999-02-01"], DONE,
          err=["no data points in this span"])
    expect("and is an empty array", points("nothing for programs", "--from", "1999-01-01", "--to", "1999-02-01") == [], "")
    check("an interval without a value can have an extra value", ["points", "set-extra", NOX, "1999-01-01 05:00", "alone"], DONE)
    expect("and is listed", points("a point of its own", "--from", "1999-01-01", "--to", "1999-02-01", pid=NOX) ==
           [{"time": "1999-01-01 05:00", "value": None, "mc": 0, "occurrence": "", "extra": "alone"}], "")
    check("and is removed", ["points", "set-extra", NOX, "1999-01-01 05:00", ""], DONE)


def test_bad_points():
    before = points("the data points before", *DAY)
    check("a calculated parameter has no data points", ["points", "list", CALCULATED, *DAY], REFUSED, err=[CALCULATED, "stored"])
    check("nor an extra value", ["points", "set-extra", CALCULATED, HOUR, "x"], REFUSED, err=[CALCULATED, "stored"])
    check("an unknown parameter has none", ["points", "list", "9-999-3-00-00", *DAY], REFUSED, err=["9-999-3-00-00"])
    check("another interval has none", ["points", "list", SO2, *DAY, "--interval", "1m"], REFUSED, err=["1h", "1m"])
    check("a time off the boundary is refused", ["points", "set-extra", SO2, "2007-01-08 13:30", "x"], REFUSED, err=["2007-01-08 13:30"])
    check("a text that is too long is refused", ["points", "set-extra", SO2, HOUR, "漢" * 21846], REFUSED, err=["21846 characters", "65535 bytes"])
    check("a span has to last", ["points", "list", SO2, "--from", "2007-01-09", "--to", "2007-01-08"], USAGE, err=["ends before it begins"])
    check("a span has a beginning", ["points", "list", SO2, "--to", "2007-01-09"], USAGE, err=["--from is missing"])
    check("a span has an end", ["points", "list", SO2, "--from", "2007-01-09"], USAGE, err=["--to is missing"])
    check("an interval is an interval", ["points", "list", SO2, *DAY, "--interval", "soon"], USAGE, err=["is no interval"])
    check("a time is a time", ["points", "set-extra", SO2, "13:00", "x"], USAGE, err=["is no time (TIME)"])
    check("a text is needed", ["points", "set-extra", SO2, HOUR], USAGE, err=["needs TEXT"])
    check("data points of an unknown DAHS are an environment failure", ["points", "list", SO2, *DAY, "--dahs", "99"], ENVIRONMENT, err=["DAHS 99"])
    expect("nothing of this changed anything", points("the data points after", *DAY) == before, "")


TESTS = (test_points, test_bad_points)
