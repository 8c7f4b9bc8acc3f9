"""The command line as a person uses it: every verb, right and wrong, against the registered component and the demo plants."""

import csv
import json
import os
import shutil
import sys
import xml.dom.minidom

import access_tests
import alarm_tests
import occurrence_tests
import point_tests
import run_file_tests
from harness import DONE, ENVIRONMENT, HOME, NOX, REFUSED, SO2, SOURCE, USAGE, WORK, check, expect, finish, register, windows


def write_site(folder, rows, parameters="1-030-3-00-00,Heat,1h,38\n"):
    shutil.rmtree(folder, ignore_errors=True)
    (folder / "values").mkdir(parents=True)
    (folder / "parameters.csv").write_text("pid,name,interval,io_type\n" + parameters, encoding="utf-8")
    (folder / "values" / "rows.csv").write_text(rows, encoding="utf-8", newline="")


def test_help():
    check("the overview lists the verbs", ["--help"], DONE, out=["site import", "params list", "problems", "Exit codes"])
    check("a verb explains its options", ["read", "--help"], DONE, out=["--interval", "Example: --interval 1d"])
    check("a group lists its verbs", ["site", "--help"], DONE, out=["site create", "site remove"])
    check("the version says the bitness", ["--version"], DONE, out=["vtdn 1.0.0", "-bit"])
    check("nothing typed is answered with the overview", [], USAGE, err=["Usage"])
    check("an unknown verb gets the nearest one", ["raed"], USAGE, err=['Did you mean "read"?'])
    check("an unknown option gets the nearest one", ["read", SO2, "--form", "x"], USAGE, err=['"--from"'])
    for group in ("params", "names", "alarm"):
        check(f"the verbs about {group} are listed", [group, "--help"], DONE, out=[f"vtdn {group} VERB"])
    check("a time without quotation marks is explained", ["write", SO2, "2007-01-08", "13:00"], USAGE, err=["quotation marks"])


def test_without_registration():
    register("/u")
    check("the doctor says what is not registered and how to mend it", ["doctor"], ENVIRONMENT,
          out=["WRONG", "not registered", "regsvr32", "VTWrapDN.dll", "VTEngine.dll"])
    check("without the component a verb sends to the doctor", ["read", SO2, "--day", "2007-01-08", "--dahs", "1"], ENVIRONMENT,
          err=["vtdn doctor"])
    register()


def test_sites():
    check("without sites the list says how to load one", ["site", "list"], DONE, err=["vtdn site import"])
    check("without sites a read says how to load one", ["read", SO2, "--day", "2007-01-08"], ENVIRONMENT, err=["vtdn site import"])
    check("a plant is loaded", ["site", "import", windows(SOURCE / "data/demo/barry5"), "--progress"], DONE,
          out=["Loaded DAHS 1 (BARRY5)", "88 parameters", "133 occurrences"], err=["Loading: 100 %"])
    check("a plant is not loaded twice unasked", ["site", "import", windows(SOURCE / "data/demo/barry5")], REFUSED, err=["--update"])
    check("one site needs no --dahs", ["params", "list", "so2"], DONE, out=[SO2])
    check("a second plant is loaded", ["site", "import", windows(SOURCE / "data/demo/smith-sct1")], DONE, out=["Loaded DAHS 2"])
    check("with two sites the choice is shown", ["params", "list"], USAGE, err=["--dahs 1", "--dahs 2", "BARRY5"])
    listed = json.loads(check("sites are listed for programs", ["site", "list", "--json"], DONE))
    expect("the list has the connection strings", [s["dahs_id"] for s in listed] == [1, 2] and "Driver=" in listed[0]["config_connection"], listed)
    check("the doctor finds all well", ["doctor"], DONE, out=["All is well", "the component binds to it", "BARRY5"])
    findings = json.loads(check("the doctor speaks JSON", ["doctor", "--json"], DONE))
    expect("nothing is wrong in the doctor's JSON", all(f["verdict"] == "ok" for f in findings), findings)


def test_bad_import():
    folder = WORK / "bad"
    write_site(folder, "time,1-030-3-00-00\n2024-01-01 00:00,1\n2024-01-01 00:30,2\n2024-01-01 02:00,12 ppm\n")
    words = ["site", "import", windows(folder), "--dahs", "9"]
    check("bad rows are refused with file, line, column and reason", words, REFUSED,
          err=['values/rows.csv:3: column "time": 2024-01-01 00:30 is not on the 1h interval of 1-030-3-00-00',
               'values/rows.csv:4: column "1-030-3-00-00"', "Nothing was loaded"])
    check("a refused import leaves no site", ["site", "list", "--csv"], DONE)
    expect("a refused import leaves no files", sorted(p.name for p in (HOME / "sites").iterdir()) == ["1", "2"], list((HOME / "sites").iterdir()))
    check("a check says the same", [*words, "--check"], REFUSED, err=["values/rows.csv:3"])
    check("a folder that is not there is named", ["site", "import", "nowhere"], ENVIRONMENT, err=["nowhere"])


def test_params():
    rows = list(csv.DictReader(check("parameters are listed as CSV", ["params", "list", "--csv"], DONE).splitlines()))
    so2 = next(r for r in rows if r["pid"] == SO2)
    expect("metadata come from the component", (so2["name"], so2["units"], so2["interval"], so2["stored"]) == ("SO2 mass", "lb/hr", "1h", "true"), so2)
    check("one parameter is shown", ["params", "show", SO2, "5-041-3-02-00"], DONE, out=["SO2 rate", "can be written", "cannot be written"])
    check("inputs of a calculation are listed", ["params", "uses", "5-041-3-02-00"], DONE, out=["5-030-3-00-00", SO2])
    check("an unknown PID is refused in the component's words", ["params", "show", "9-999-3-00-00"], REFUSED,
          err=["PID 9-999-3-00-00 does not exist (WDN-024)"])
    check("another time type is refused in the component's words", ["params", "uses", "5-010-4-02-00"], REFUSED, err=["(WDN-033)"])
    check("an ill-formed PID is a matter of usage", ["params", "show", "5-040-6-00-00"], USAGE, err=["is no PID"])


def test_read():
    check("one interval is read", ["read", SO2, "--at", "2007-01-01 00:00"], DONE, out=["SO2 mass, lb/hr", "5680.7", "102"])
    month = check("a month is read as CSV", ["read", SO2, NOX, "--month", "2007-01", "--csv"], DONE)
    rows = list(csv.DictReader(month.splitlines()))
    source = {r["time"]: r for r in csv.DictReader((SOURCE / "data/demo/barry5/values/hourly-2007.csv").open(encoding="utf-8"))}
    expect("every hour of the month has the value and the code of the source", len(rows) == 744 and all(
        (float(r[p] or "nan"), int(r[p + " mc"])) == (float(source[r["time"]][p] or "nan"), int(source[r["time"]][p + " mc"] or 0))
        or (r[p] == source[r["time"]][p] == "" and int(r[p + " mc"]) == int(source[r["time"]][p + " mc"] or 0))
        for r in rows for p in (SO2, NOX)), rows[:3])
    days = json.loads(check("days are read as JSON", ["read", SO2, "--from", "2007-01-01", "--count", "2", "--interval", "1d", "--json"], DONE))
    total = sum(float(source[f"2007-01-01 {h:02}:00"][SO2]) for h in range(24))
    expect("a day is the sum of its hours", abs(days[0][SO2] - total) < 1e-6 * total, (days, total))
    picture = WORK / "month.svg"
    check("a picture is drawn", ["read", SO2, "--month", "2007-01", "--plot", windows(picture)], DONE, out=["744 intervals"])
    svg = xml.dom.minidom.parse(str(picture))
    texts = [t.firstChild.data for t in svg.getElementsByTagName("text")]
    expect("the picture names the parameter and its unit", "SO2 mass, lb/hr" in texts, texts)
    check("a time beside the interval is refused", ["read", SO2, "--at", "2007-01-01 00:30"], REFUSED, err=["is not on the 1h interval"])
    check("an automation error has number, description and source", ["read", SO2, "--from", "2007-01-01 00:30", "--count", "2"], REFUSED,
          err=["Error 5, ", "VTEngine"])
    check("a run without an end is a matter of usage", ["read", SO2, "--from", "2007-01-01"], USAGE, err=["--to TIME or --count N"])
    check("an unknown DAHS is an environment failure", ["read", SO2, "--day", "2007-01-08", "--dahs", "99"], ENVIRONMENT, err=["DAHS 99"])


def test_written_csv_can_be_imported():
    text = check("a run of two parameters is read", ["read", SO2, NOX, "--from", "2007-01-08", "--count", "48", "--csv"], DONE)
    folder = WORK / "again"
    write_site(folder, text, f"{SO2},SO2,1h,38\n{NOX},NOx,1h,38\n")
    shutil.copy(SOURCE / "data/demo/barry5/monitor_codes.csv", folder)
    check("what was read can be imported", ["site", "import", windows(folder), "--dahs", "30"], DONE, out=["DAHS 30"])
    again = check("and read again", ["read", SO2, NOX, "--from", "2007-01-08", "--count", "48", "--csv", "--dahs", "30"], DONE)
    expect("with the same result", again == text and text.count("\n") == 49, again)


def test_write():
    hour = "2007-01-08 13:00"
    check("value and code are written", ["write", SO2, hour, "--value", "12.5", "--mc", "1"], DONE, out=["-> 12.5 (mc 1)"])
    check("a value alone keeps the code", ["write", SO2, hour, "--value", "-7"], DONE, out=["12.5 (mc 1) -> -7 (mc 1)"])
    check("a code alone keeps the value", ["write", SO2, hour, "--mc", "2"], DONE, out=["-7 (mc 1) -> -7 (mc 2)"])
    check("no value is written", ["write", SO2, hour, "--null"], DONE, out=["-> no value (mc 2)"])
    check("a text with a code is written", ["write", SO2, hour, "--text", "geprüft ✓", "--mc", "1"], DONE, out=["-> geprüft ✓ (mc 1)"])
    said = json.loads(check("a write speaks JSON", ["write", SO2, hour, "--null", "--mc", "9", "--json"], DONE))
    expect("with what was and what is", (said["before"], said["after"]) == ({"value": "geprüft ✓", "mc": 1}, {"value": None, "mc": 9}), said)
    check("an unknown code is refused", ["write", SO2, hour, "--value", "1", "--mc", "999"], REFUSED,
          err=["'999' is not a known monitor code (WDN-013)"])
    check("a computed parameter is refused", ["write", "5-041-3-02-00", hour, "--value", "1"], REFUSED,
          err=["5-041-3-02-00 is not a DBDataIO parameter (WDN-005)"])
    check("an unknown parameter is refused", ["write", "9-999-3-00-00", hour, "--value", "1.5"], REFUSED, err=["(WDN-006)"])
    check("a refused write changed nothing", ["read", SO2, "--at", hour, "--csv"], DONE, out=[f"{hour},,9"])
    check("a write needs a time", ["write", SO2, "--value", "1"], USAGE, err=["needs TIME"])
    check("nothing to write is a matter of usage", ["write", SO2, hour], USAGE, err=["What is to be written?"])
    check("two values are a matter of usage", ["write", SO2, hour, "--value", "1", "--null"], USAGE, err=["do not go together"])
    check("a number is a number", ["write", SO2, hour, "--value", "12,5"], USAGE, err=["decimal point"])


def test_problems():
    check("a good site reports no problems", ["problems"], DONE, out=["No problems in DAHS 1"])
    check("an unknown PID is reported", ["problems", "9-999-3-00-00"], REFUSED, out=["does not exist (WDN-024)"])
    check("--problems says so when there are none", ["params", "show", SO2, "--problems"], DONE, err=["No problems."])
    check("a time beside the interval is reported", ["problems", SO2, "--at", "2007-01-01 00:30"], REFUSED, out=["Error 5, "])


def test_removal():
    check("without the right id nothing is removed", ["site", "remove", "30"], REFUSED, stdin="31\n", err=["Nothing was removed"])
    check("the id typed once more removes", ["site", "remove", "30"], DONE, stdin="30\n", out=["Removed DAHS 30"])
    expect("its files stay", (HOME / "sites" / "30" / "data.db").exists(), "")
    check("files are deleted when asked for", ["site", "remove", "2", "--files", "--yes"], DONE)
    expect("its files are gone", not (HOME / "sites" / "2").exists(), "")
    check("an unknown id is an environment failure", ["site", "remove", "2", "--yes"], ENVIRONMENT, err=["DAHS 2"])


def test_doctor_on_damage():
    config = next((HOME / "sites" / "1").glob("config*"))
    kept = config.read_bytes()
    config.unlink()
    check("a missing database is found", ["doctor"], ENVIRONMENT, out=["WRONG  DAHS 1", "->"])
    config.write_bytes(b"this is no database, " * 1000)
    check("a damaged database is found", ["doctor"], ENVIRONMENT, out=["WRONG  DAHS 1"])
    check("and stops a read", ["read", SO2, "--day", "2007-01-08"], ENVIRONMENT, err=["did not bind"])
    config.write_bytes(kept)
    check("put back, all is well", ["doctor"], DONE, out=["All is well"])


def main():
    shutil.rmtree(WORK, ignore_errors=True)
    WORK.mkdir(parents=True)
    test_help()
    test_without_registration()
    test_sites()
    test_bad_import()
    os.environ["VANTOR_DAHS"] = "1"
    for test in (test_params, test_read, test_written_csv_can_be_imported, *access_tests.TESTS, *alarm_tests.TESTS, *point_tests.TESTS, *occurrence_tests.TESTS,
                 test_write, *run_file_tests.TESTS, test_problems, test_removal, test_doctor_on_damage):
        test()
    return finish()


sys.exit(main())
