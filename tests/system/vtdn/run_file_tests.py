"""Runs from files: what `vtdn read --csv` printed is written back, and whatever is wrong with a file is said before anything is written."""

import csv
import json
import subprocess

from harness import DONE, ENVIRONMENT, NOX, REFUSED, RUN, SO2, USAGE, WORK, check, expect, windows

# Nothing else looks at the load of these days.
LOAD = "5-020-3-00-00"
MINUTES = "5-020-1-01-00"
FILE = WORK / "run.csv"


def write(name, text, code=DONE, *, pid=LOAD, options=(), **more):
    FILE.write_text(text, encoding="utf-8", newline="")
    return check(name, ["write", pid, "--file", windows(FILE), *options], code, **more)


def day(pid, first="2007-03-05", count=24):
    return check(f"{pid} is read", ["read", pid, "--from", first, "--count", str(count), "--csv"], DONE)


def rows(text):
    """Times, values and codes, whatever the columns are called."""
    return [tuple(row) for row in list(csv.reader(text.splitlines()))[1:]]


def test_round_trip():
    month = check("a month is read", ["read", SO2, "--month", "2007-05", "--csv"], DONE)
    body = month[month.index("\n"):]
    write("it is written to another parameter", "time,value,mc" + body, pid=NOX, out=[
        f"{NOX}: wrote ", "744 monitor codes from 2007-05-01 00:00 to 2007-05-31 23:00."])
    again = check("and read again", ["read", NOX, "--month", "2007-05", "--csv"], DONE)
    expect("with the same values and codes", rows(again) == rows(month) and len(rows(month)) == 744, again[:500])
    said = json.loads(write("what was read is written as it is", again, pid=NOX, options=["--json", "--progress"],
                            err=["Checking: 100 %", "Writing: 100 %"]))
    empty = sum(1 for row in rows(month) if not row[1])
    expect("JSON says what was written", said == {"pid": NOX, "from": "2007-05-01 00:00", "to": "2007-05-31 23:00",
                                                  "values": 744 - empty, "no_values": empty, "codes": 744, "runs": 1}, said)
    expect("which changes nothing", check("the third reading", ["read", NOX, "--month", "2007-05", "--csv"], DONE) == again, "")


def test_standard_input():
    text = day(LOAD)
    check("a run comes from standard input", ["write", LOAD, "--file", "-"], DONE, stdin=text, out=["24 monitor codes"])
    expect("as it was", day(LOAD) == text, text)
    check("standard input is named in problems", ["write", LOAD, "--file", "-"], REFUSED, stdin="time,value\nsoon,1\n",
          err=['standard input:2: column "time"'])
    check("nothing on standard input is refused", ["write", LOAD, "--file", "-"], REFUSED, stdin="", err=["the file is empty"])


def test_values_and_codes():
    before = rows(day(LOAD, "2007-03-06", 6))
    write("values without codes", "time,value\n2007-03-06 00:00,-12.5\n2007-03-06 01:00,\n2007-03-06 02:00,6.5e3\n2007-03-06 03:00,geprüft ✓\n",
          out=["wrote 3 values, 1 times no value and 0 monitor codes from 2007-03-06 00:00 to 2007-03-06 03:00."])
    after = rows(day(LOAD, "2007-03-06", 6))
    expect("values are written", [r[1] for r in after] == ["-12.5", "", "6500", "geprüft ✓", before[4][1], before[5][1]], after)
    expect("codes are kept", [r[2] for r in after] == [r[2] for r in before], after)
    write("codes without values", "time,mc\n2007-03-06 00:00,7\n2007-03-06 01:00,\n2007-03-06 03:00,0\n", out=["0 values", "2 monitor codes"])
    coded = rows(day(LOAD, "2007-03-06", 6))
    expect("codes are written", [r[2] for r in coded] == ["7", before[1][2], before[2][2], "0", before[4][2], before[5][2]], coded)
    expect("values are kept", [r[1] for r in coded] == [r[1] for r in after], coded)
    write("a code here and there", f"time,{LOAD},{LOAD} mc,{SO2}\n2007-03-06 00:00,1,,x\n2007-03-06 05:00,2,8,x\n", out=["2 values", "1 monitor code "])
    mixed = rows(day(LOAD, "2007-03-06", 6))
    expect("is written, and the gap between is left alone", mixed == [("2007-03-06 00:00", "1", "7"), *coded[1:5], ("2007-03-06 05:00", "2", "8")], mixed)


def test_wide_gaps():
    text = "time,value,mc\n2007-03-05 00:00,1,1\n2007-03-05 00:01,2,1\n2007-03-09 00:00,3,1\n"
    said = json.loads(write("rows that are far apart are two runs", text, pid=MINUTES, options=["--json"]))
    expect("both are written", said["runs"] == 2 and rows(day(MINUTES, "2007-03-05", 2)) + rows(day(MINUTES, "2007-03-09", 1)) ==
           rows(text), said)


def test_broken_files():
    before = day(LOAD)
    broken = ("time,value,mc\n2007-03-05 00:00,1,1\n2007-03-05 00:30,1,1\n2007-03-05 01:00,12 ppm,1\n2007-03-05 02:00,\"12,5\",1\n"
              "2007-03-05 03:00,1e39,1\n2007-03-05 04:00,($5),1\n2007-03-05 05:00,1,999\n2007-03-05 05:00,1,1\n2007-03-05 06:00,1\n")
    write("every broken row is listed", broken, REFUSED, err=[
        'run.csv:3: column "time": 2007-03-05 00:30 is not on the 1h interval', 'run.csv:4: column "value": "12 ppm" begins like a number',
        'run.csv:5: column "value": "12,5" begins like a number', 'run.csv:6: column "value": "1e39" is out of the range',
        'run.csv:7: column "value": "($5)" is a number by this computer\'s settings', 'run.csv:8: column "mc": the site has no monitor code 999',
        'run.csv:9: column "time": 2007-03-05 05:00 is not later', "run.csv:10: the line has 2 fields", "8 problems. Nothing was written."])
    write("so many as are asked for", broken, REFUSED, options=["--limit", "2"], err=["2 problems, and reading ended there. Nothing was written."])
    write("a header that does not fit is refused", "time,vlaue\n2007-03-05 00:00,1\n", REFUSED, err=['no use for the column "vlaue"'])
    write("a file of another parameter is refused", f"time,{SO2}\n2007-03-05 00:00,1\n", REFUSED, err=["name its columns value and mc"])
    write("a header alone is refused", "time,value\n", REFUSED, err=["no row below the header"])
    write("what is no UTF-8 CSV is refused", 'time,value\n2007-03-05 00:00,"1\n', REFUSED, err=["not closed on this line"])
    expect("nothing of all that was written", day(LOAD) == before, before)


def test_bad_requests():
    good = "time,value\n2007-03-05 00:00,1\n"
    write("a computed parameter is refused", good, REFUSED, pid="5-041-3-02-00", err=["5-041-3-02-00 is not a DBDataIO parameter (WDN-039)"])
    write("an unknown parameter is refused", good, REFUSED, pid="9-999-3-00-00", err=["(WDN-038)"])
    write("an unknown DAHS is an environment failure", good, ENVIRONMENT, options=["--dahs", "99"], err=["DAHS 99"])
    check("a file that is not there is an environment failure", ["write", LOAD, "--file", "nowhere.csv"], ENVIRONMENT, err=["nowhere.csv"])
    for option in (["--value", "1"], ["--null"], ["--text", "x"], ["--mc", "1"]):
        check(f"--file and {option[0]} are a matter of usage", ["write", LOAD, "--file", "x.csv", *option], USAGE,
              err=[f"--file and {option[0]} do not go together"])
    check("--file and a time are a matter of usage", ["write", LOAD, "2007-03-05", "--file", "x.csv"], USAGE, err=["--file and TIME"])
    check("a limit is about a file", ["write", LOAD, "2007-03-05", "--value", "1", "--limit", "2"], USAGE, err=["--limit is about a file"])
    write("a limit is at least 1", good, USAGE, options=["--limit", "0"], err=["from 1 to"])


def separators(decimal, thousands):
    """Sets how this user's programs write numbers and amounts of money, which both count when a text is read."""
    for name, sign in (("sDecimal", decimal), ("sMonDecimalSep", decimal), ("sThousand", thousands), ("sMonThousandSep", thousands)):
        subprocess.run([RUN, "reg", "add", "HKCU\\Control Panel\\International", "/v", name, "/d", sign, "/f"],
                       check=True, capture_output=True, timeout=60)


def test_decimal_comma():
    separators(",", ".")
    try:
        text = "time,value,mc\n2007-03-07 00:00,12.25,1\n2007-03-07 01:00,-0.5,1\n2007-03-07 02:00,1250000,1\n2007-03-07 03:00,6.02e23,1\n"
        check("the settings have a decimal comma", ["params", "call", LOAD, "102", "2007-01-01", "2007-01-02"], DONE, out=[","])
        write("a file has a decimal point whatever the settings are", text)
        expect("and so has what is read", rows(day(LOAD, "2007-03-07", 3)) == rows(text)[:3], day(LOAD, "2007-03-07", 4))
        write("a decimal comma is refused", 'time,value\n2007-03-07 00:00,"12,25"\n', REFUSED, err=["begins like a number"])
    finally:
        separators(".", ",")
    expect("large numbers, too", rows(day(LOAD, "2007-03-07 03:00", 1))[0][1] == "6.02e+23", "")


TESTS = (test_round_trip, test_standard_input, test_values_and_codes, test_wide_gaps, test_broken_files, test_bad_requests, test_decimal_comma)
