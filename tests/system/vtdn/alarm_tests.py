"""The alarm log: written through the component, listed from the site's database."""

import csv
import datetime
import json

from harness import DONE, ENVIRONMENT, USAGE, check, expect


def alarms(name, *options):
    return json.loads(check(name, ["alarm", "list", *options, "--json"], DONE))


def test_alarms():
    check("an empty log says so", ["alarm", "list"], DONE, err=["no such alarms"])
    expect("an empty log is an empty array", alarms("an empty log for programs") == [], "")
    check("an alarm is written", ["alarm", "write", "NOx driftet über 5 % ✓", "--severity", "4", "--category", "calibration",
                                  "--group", "analyzers", "--source", "shift", "--time", "2007-01-08 13:00"], DONE,
          out=["severity 4 at 2007-01-08 13:00"])
    said = json.loads(check("a write speaks JSON", ["alarm", "write", "Probe cleaned", "--time", "2007-01-08T12:00:30", "--json"], DONE))
    wanted = {"time": "2007-01-08 12:00:30", "severity": 0, "category": "", "group": "", "source": "vtdn", "message": "Probe cleaned"}
    expect("with what was written", said == wanted, said)
    check("an alarm of another day", ["alarm", "write", "Later", "--severity", "2", "--time", "2007-01-09"], DONE)

    log = alarms("the log is listed")
    expect("newest first, with all that was said", [a["message"] for a in log] == ["Later", "NOx driftet über 5 % ✓", "Probe cleaned"] and
           log[1] == {"time": "2007-01-08 13:00", "severity": 4, "category": "calibration", "group": "analyzers", "source": "shift",
                      "message": "NOx driftet über 5 % ✓"} and log[2] == wanted, log)
    rows = list(csv.DictReader(check("the log is listed as CSV", ["alarm", "list", "--csv"], DONE).splitlines()))
    expect("CSV says the same", [{**r, "severity": int(r["severity"])} for r in rows] == log, rows)
    check("a table is for people", ["alarm", "list"], DONE, out=["Severity", "2007-01-08 13:00            4  calibration"])
    expect("one severity", [a["severity"] for a in alarms("alarms of a severity", "--severity", "4")] == [4], "")
    expect("a span", [a["message"] for a in alarms("alarms of a day", "--from", "2007-01-08 12:30", "--to", "2007-01-09")] ==
           ["NOx driftet über 5 % ✓"], "")
    expect("the newest", [a["message"] for a in alarms("the newest alarm", "--limit", "1")] == ["Later"], "")
    check("what was left out is said", ["alarm", "list", "--limit", "2"], DONE, err=["the newest 2", "older ones"])
    expect("a limit is about what was asked for", [a["message"] for a in alarms(
        "the newest of a severity", "--limit", "1", "--severity", "0")] == ["Probe cleaned"], "")

    check("an alarm is of now when nothing else is said", ["alarm", "write", "Now"], DONE)
    written = datetime.datetime.fromisoformat(alarms("the alarm of now", "--limit", "1")[0]["time"])
    off = abs((written - datetime.datetime.now()).total_seconds())
    expect("now is now, or an hour before it where summer time is", off < 7200, written)


def test_bad_alarms():
    count = len(alarms("the log before"))
    for severity in ("5", "-1", "high"):
        check(f"the severity {severity} is a matter of usage", ["alarm", "write", "x", "--severity", severity], USAGE, err=["from 0 to 4"])
    check("an alarm needs a text", ["alarm", "write"], USAGE, err=["needs MESSAGE"])
    check("a text is one word", ["alarm", "write", "two", "words"], USAGE, err=["quotation marks"])
    check("an alarm's time is a time", ["alarm", "write", "x", "--time", "13:00"], USAGE, err=["is no time (--time)"])
    check("an alarm of an unknown DAHS is an environment failure", ["alarm", "write", "x", "--dahs", "99"], ENVIRONMENT, err=["DAHS 99"])
    expect("none of these was written", len(alarms("the log after")) == count, "")
    check("a span has to last", ["alarm", "list", "--from", "2007-01-09", "--to", "2007-01-08"], USAGE, err=["ends before it begins"])
    check("a limit is at least 1", ["alarm", "list", "--limit", "0"], USAGE, err=["from 1 to"])
    check("a listed severity is one of five", ["alarm", "list", "--severity", "5"], USAGE, err=["from 0 to 4"])
    check("the log of an unknown DAHS is an environment failure", ["alarm", "list", "--dahs", "99"], ENVIRONMENT, err=["DAHS 99"])


TESTS = (test_alarms, test_bad_alarms)
