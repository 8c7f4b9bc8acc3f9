"""Lists of parameters, relationships, special values, special functions and names, against the files that the demo plant came from."""

import csv
import json
import xml.dom.minidom

from harness import DONE, ENVIRONMENT, REFUSED, SO2, SOURCE, USAGE, check, expect

PLANT = SOURCE / "data/demo/barry5"
ANALYZER = "5-110-1-00-01"
UNIT = "5-001-0-00-00"
UNKNOWN = "9-999-3-00-00"


def table(name):
    with (PLANT / name).open(encoding="utf-8") as file:
        return list(csv.DictReader(file))


def special_values():
    return {(row["pid"], int(row["id"])): row["value"] for row in table("special_values.csv")}


def listed(name, *options):
    rows = csv.DictReader(check(name, ["params", "list", *options, "--csv"], DONE).splitlines())
    return [row["pid"] for row in rows]


def test_lists():
    specials = special_values()
    types = {p["pid"]: p["type"] for p in table("parameters.csv") if p["type"]}
    analyzers = sorted(pid for pid, kind in types.items() if kind == "3")

    def says(pid, number):
        return specials.get((pid, number)) == "true"

    def part75(pid):
        return specials.get((pid, -22)) == "40CFR75" and not says(pid, -25)

    lists = {
        ("--type", "3"): analyzers,
        ("--type", "45"): sorted(pid for pid, kind in types.items() if kind == "45"),
        ("--calibration",): [pid for pid in analyzers if not says(pid, -25)],
        ("--calibration", "--part75"): [p for p in analyzers if part75(p) and not any(says(p, n) for n in (-114, -117, -118))],
        ("--linearity",): sorted(p for p, kind in types.items() if kind == "45" and specials.get((p, -32)) == "1"),
        ("--interference",): [pid for pid in analyzers if part75(pid) and says(pid, -117)],
    }
    for options, wanted in lists.items():
        found = listed(f"parameters are listed by {' '.join(options)}", *options)
        expect(f"{' '.join(options)} lists what the files say", found == wanted and wanted, (found, wanted))
    shown = json.loads(check("a list speaks JSON", ["params", "list", "nox", "--calibration", "--json"], DONE))
    expect("a text narrows a list", shown and all("NOx" in row["name"] and row["stored"] is True for row in shown), shown)
    check("a list of no parameters says so", ["params", "list", "--type", "99"], DONE, err=["No parameter of the site has the type 99."])
    check("a text that is in none says so", ["params", "list", "no such text", "--linearity"], DONE, err=["None of these parameters"])
    for words, said in ((["--type", "3", "--calibration"], "--type and --calibration do not go together"),
                        (["--linearity", "--related"], "do not go together"),
                        (["--part75"], "--part75 needs --calibration"),
                        (["--interval", "1h"], "--interval needs --related"),
                        (["--related", "--interval", "1M"], "minutes, hours and days"),
                        (["--related", "--interval", "soon"], "is no interval"),
                        (["--type", "three"], "is not what --type takes"),
                        (["--type"], "--type needs a value")):
        check(f"{' '.join(words)} is a matter of usage", ["params", "list", *words], USAGE, err=[said])
    check("a list of an unknown DAHS is an environment failure", ["params", "list", "--calibration", "--dahs", "99"], ENVIRONMENT, err=["DAHS 99"])


def test_relationships():
    rows = table("relationships.csv")
    related = {pid for row in rows for pid in row.values()}
    intervals = {p["pid"]: p["interval"] for p in table("parameters.csv")}
    expect("all related parameters are listed", set(listed("related parameters are listed", "--related")) == related, related)
    for interval in ("1m", "15m", "1h", "1d"):
        found = set(listed(f"related parameters of {interval} are listed", "--related", "--interval", interval))
        expect(f"those of {interval} have that interval", found == {p for p in related if intervals[p] == interval} != set(), found)
    expect("24h is a day", set(listed("an interval can be said otherwise", "--related", "--interval", "24h")) ==
           {p for p in related if intervals[p] == "1d"}, "")
    check("a level that nothing has is no failure", ["params", "list", "--related", "--interval", "5m"], DONE, err=["at that interval"])

    text = check("a relationship is printed", ["params", "related", "5-020-1-01-00"], DONE)
    levels = [e.getAttribute("PID") for e in xml.dom.minidom.parseString(text.encode()).getElementsByTagName("Parameter")]
    expect("it is XML with the levels of the quantity, in LF lines",
           len(levels) == 4 and "\r" not in text and text.startswith('<?xml version="1.0"?>\n'), text)
    check("a parameter without one has none", ["params", "related", UNIT], DONE, err=[f"{UNIT} has none"])
    expect("then nothing is printed", check("a parameter without one", ["params", "related", UNIT], DONE) == "", "")
    out = check("a relationship of an unknown PID is refused", ["params", "related", UNKNOWN], REFUSED, err=["(WDN-044)"])
    expect("a refused relationship prints nothing", out == "", out)
    check("a relationship needs a PID", ["params", "related", "gross load"], USAGE, err=["is no PID"])


def answers(name, words, wanted, **more):
    out = check(name, words, DONE, **more)
    expect(f"{name}: the answer alone", out == wanted + "\n", out)


def refused(name, words, code):
    out = check(name, words, REFUSED, err=["Problem: ", f"({code})"])
    expect(f"{name}: nothing is printed", out == "", out)


def test_special_values():
    special = ["params", "special"]
    answers("a special value is a text", [*special, ANALYZER, "-22"], "40CFR75")
    answers("a special value is a boolean", [*special, ANALYZER, "-25", "--as", "boolean"], "false")
    answers("a special value that is true", [*special, UNIT, "-17", "--as", "boolean"], "true")
    answers("a special value is a number", [*special, UNIT, "-95", "--as", "number"], special_values()[(UNIT, -95)])
    answers("a text is 0 as a number", [*special, ANALYZER, "-22", "--as", "number"], "0", err=['"40CFR75"', "no number"])
    answers("none is 0 as a number", [*special, SO2, "-22", "--as", "number"], "0", err=["no such special value"])
    answers("none is empty as a text", [*special, SO2, "-22"], "", err=["no special value -22 of 5-040-3-00-00"])
    said = json.loads(check("a special value speaks JSON", [*special, UNIT, "-17", "--as=boolean", "--json"], DONE))
    expect("with what was asked", said == {"pid": UNIT, "id": -17, "value": True}, said)
    refused("a text is no boolean", [*special, ANALYZER, "-22", "--as", "boolean"], "WDN-037")
    for kind, code in (("text", "WDN-047"), ("number", "WDN-031"), ("boolean", "WDN-035")):
        refused(f"a special value of an unknown PID as {kind}", [*special, UNKNOWN, "-22", "--as", kind], code)
    check("--problems says so when there are none", [*special, ANALYZER, "-22", "--problems"], DONE, err=["No problems."])
    check("a kind is one of three", [*special, ANALYZER, "-22", "--as", "numbr"], USAGE, err=['Did you mean "number"?'])
    check("an id is a number", [*special, ANALYZER, "program"], USAGE, err=["is not what ID takes"])
    check("an id is needed", [*special, ANALYZER], USAGE, err=["needs ID"])


def hours(first, last, pid):
    with (PLANT / "values/hourly-2007.csv").open(encoding="utf-8") as file:
        return [float(row[pid]) for row in csv.DictReader(file) if first <= row["time"] < last and row[pid]]


def test_special_functions():
    day = ["2007-01-08", "2007-01-09"]
    values = hours("2007-01-08", "2007-01-09", SO2)
    call = ["params", "call", SO2]
    average = float(check("a function is called", [*call, "102", *day], DONE))
    expect("with the dates that were typed", abs(average - sum(values) / len(values)) < 1e-6 * average, (average, values))
    half = hours("2007-01-08", "2007-01-08 12:30", SO2)
    answers("a time of day goes along", [*call, "106", "2007-01-08", "2007-01-08 12:30", "--as", "number"], str(len(half)))
    answers("a number can be rounded by way of a single", [*call, "104", *day, "--as", "rounded"], str(round(min(values))))
    answers("a number other than 0 is true", [*call, "106", *day, "--as", "boolean"], "true")
    said = json.loads(check("a function speaks JSON", [*call, "106", *day, "--as", "number", "--json"], DONE))
    expect("with what was called", said == {"pid": SO2, "id": 106, "value": len(values)}, said)
    answers("nothing is averaged to no value", [*call, "102", "1990-01-01", "1990-01-02"], "", err=["gives no value"])
    refused("no value is no number", [*call, "102", "1990-01-01", "1990-01-02", "--as", "number"], "WDN-0054")
    refused("an unknown function", [*call, "999"], "WDN-0059")
    for kind, code in (("text", "WDN-0059"), ("number", "WDN-0053"), ("rounded", "WDN-0056"), ("boolean", "WDN-0050")):
        refused(f"a function without its arguments as {kind}", [*call, "102", "--as", kind], code)
    refused("texts are no dates", [*call, "102", "text:a", "text:b"], "WDN-0059")
    refused("a function of an unknown PID", ["params", "call", UNKNOWN, "102", *day], "WDN-0058")
    check("a kind is one of four", [*call, "102", *day, "--as", "float"], USAGE, err=["text, number, rounded, boolean"])
    check("a function has a number", [*call, "average"], USAGE, err=["is not what ID takes"])


def test_operating_time():
    operated = round(sum(hours("2007-01-01", "2007-02-01", "5-010-3-00-00")))
    optime = ["params", "optime", SO2]
    answers("operating time is told", [*optime, "2007-01-01", "2007-02-01"], str(operated))
    said = json.loads(check("operating time speaks JSON", [*optime, "2007-01-01", "2007-02-01 00:00", "--json"], DONE))
    expect("with the span", said == {"pid": SO2, "from": "2007-01-01 00:00", "to": "2007-02-01 00:00", "value": operated}, said)
    refused("operating time of an unknown PID", ["params", "optime", UNKNOWN, "2007-01-01", "2007-02-01"], "WDN-042")
    refused("a span that ends before it begins", [*optime, "2007-02-01", "2007-01-01"], "WDN-043")
    check("a span has two ends", [*optime, "2007-01-01"], USAGE, err=["needs TO"])
    check("a time is a time", [*optime, "2007-01-01", "tomorrow"], USAGE, err=['"tomorrow" is no time (TO)'])


def test_names():
    units = {row["unit"]: row["name"] for row in table("units.csv")}
    rows = list(csv.DictReader(check("units are listed", ["names", "units", "--csv"], DONE).splitlines()))
    expect("units have their names", {r["unit"]: r["name"] for r in rows} == units, rows)
    specials = special_values()
    own = next(r for r in rows if r["unit"] == "5")
    expect("a unit has its codes for reports", (own["oris_code"], own["unit_id"]) == (specials[(UNIT, -95)], specials[(UNIT, -97)]), own)
    expect("others have none", all(r["oris_code"] == r["unit_id"] == "" for r in rows if r["unit"] != "5"), rows)
    everything = json.loads(check("all units are listed", ["names", "units", "--all", "--json"], DONE))
    expect("there are twenty", [u["unit"] for u in everything] == list(range(20)), everything)
    for verb, file in (("mc", "monitor_codes.csv"), ("pc", "parameter_codes.csv")):
        known = table(file)
        rows = list(csv.DictReader(check(f"codes are listed ({verb})", ["names", verb, "--csv"], DONE).splitlines()))
        expect(f"with their short names ({verb})", rows == [{k: r[k] for k in ("code", "short_name")} for r in known], rows)
        rows = json.loads(check(f"codes are listed with long names ({verb})", ["names", verb, "--long", "--json"], DONE))
        expect(f"which are those of the files ({verb})", [(str(r["code"]), r["long_name"]) for r in rows] ==
               [(r["code"], r["long_name"]) for r in known], rows)
        most = max(int(r["code"]) for r in known)
        rows = check(f"numbers without a name are listed, too ({verb})", ["names", verb, "--all", "--csv"], DONE).splitlines()
        expect(f"up to the highest ({verb})", len(rows) == most + 2, len(rows))
    check("a table of codes is for people", ["names", "mc"], DONE, out=["Code  Short name", " 101  Measured"])
    check("names are of three sorts", ["names", "codes"], USAGE, err=["`vtdn names --help`"])
    check("names take no operand", ["names", "mc", "7"], USAGE, err=['"7"'])
    check("names of an unknown DAHS are an environment failure", ["names", "mc", "--dahs", "99"], ENVIRONMENT, err=["DAHS 99"])


TESTS = (test_lists, test_relationships, test_special_values, test_special_functions, test_operating_time, test_names)
