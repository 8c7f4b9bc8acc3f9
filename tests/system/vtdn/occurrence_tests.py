"""Occurrences: listed, as runs and as a picture, shown, made, edited, and the history of edits; on a small site of their own."""

import csv
import datetime
import json
import sqlite3
import xml.dom.minidom

from harness import DONE, ENVIRONMENT, HOME, REFUSED, SO2, SOURCE, USAGE, WORK, check, expect, windows

SITE = SOURCE / "tests/system/occurrence_site"
RATE, MINUTES, OTHER = "7-040-3-00-00", "7-050-1-00-01", "8-040-3-00-00"
LIMIT, EXCESS, DOWN = "7-901-0-00-00", "7-980-3-00-01", "7-980-3-00-02"
OF = {EXCESS: RATE, DOWN: RATE, "7-981-1-00-02": MINUTES, "8-980-3-00-02": OTHER}
HERE = ("--dahs", "3")
DAYS = ("--from", "2024-01-01", "--to", "2024-01-03", *HERE)
FREE = "2024-03-01 05:00"
TEXT = "<r a=\"1\">geprüft & ✓ 🏭 \\ </r>"


def length(tag):
    return datetime.timedelta(minutes=1 if tag == MINUTES else 60)


def imported_runs():
    """What the files of the site say, as `occurrences list --runs` prints it."""
    runs = []
    with (SITE / "occurrences.csv").open(encoding="utf-8") as file:
        for row in csv.DictReader(file):
            begin, tag = datetime.datetime.fromisoformat(row["start"]), OF[row["pid"]]
            end = begin + int(row["count"]) * length(tag)
            excess = row["pid"] == EXCESS
            runs.append({"begin": f"{begin:%Y-%m-%d %H:%M}", "end": f"{end:%Y-%m-%d %H:%M}", "intervals": int(row["count"]),
                         "hours": (end - begin).total_seconds() / 3600, "tag": tag, "kind": "excursion" if excess else "downtime",
                         "pid": row["pid"], "excludable": row["excludable"] == "1", "category": row["category"],
                         "reason": row["reason"], "action": row["action"], "limit": "0.5 lb/mmBtu" if excess else "",
                         "limit_pid": LIMIT if excess else None})
    return sorted(runs, key=lambda run: (run["begin"], run["tag"]))


def intervals(runs):
    """The runs, one for each interval: (time, tag, kind)."""
    found = []
    for run in runs:
        begin = datetime.datetime.fromisoformat(run["begin"])
        found += [(f"{begin + i * length(run['tag']):%Y-%m-%d %H:%M}", run["tag"], run["kind"]) for i in range(run["intervals"])]
    return found


def listed(name, *words, span=DAYS):
    return json.loads(check(name, ["occurrences", "list", *words, *span, "--json"], DONE))


def keys(rows):
    return [(row["time"], row["tag"], row["kind"]) for row in rows]


def shown(name, pid, time):
    return json.loads(check(name, ["occurrences", "show", pid, time, *HERE, "--json"], DONE))


def history(name, *words):
    return json.loads(check(name, ["points", "history", *words, *HERE, "--json"], DONE))


def test_lists():
    check("a site with occurrences is loaded", ["site", "import", windows(SITE)], DONE, out=["Loaded DAHS 3"])
    runs = imported_runs()
    rows = listed("occurrences are listed")
    expect("one line for each interval and kind", sorted(keys(rows)) == sorted(intervals(runs)) and len(rows) == 44, rows)
    expect("in order of time", [row["time"] for row in rows] == sorted(row["time"] for row in rows), rows)
    both = [row for row in rows if (row["time"], row["tag"]) == ("2024-01-01 08:00", RATE)]
    expect("with all that is known", both == [
        {"time": "2024-01-01 08:00", "tag": RATE, "kind": "excursion", "pid": EXCESS, "excludable": False, "category": "",
         "reason": "Startup", "action": "", "limit": "0.5 lb/mmBtu", "limit_pid": LIMIT, "value": 0.68, "mc": 1},
        {"time": "2024-01-01 08:00", "tag": RATE, "kind": "downtime", "pid": DOWN, "excludable": True, "category": "maintenance",
         "reason": "Filter changed", "action": "New filter", "limit": "", "limit_pid": None, "value": 0.68, "mc": 1}], both)
    text = list(csv.DictReader(check("occurrences as CSV", ["occurrences", "list", *DAYS, "--csv"], DONE).splitlines()))
    expect("say the same", keys(text) == keys(rows) and [r["reason"] for r in text] == [r["reason"] for r in rows] and
           [float(r["value"] or "nan") for r in text if r["value"]] == [r["value"] for r in rows if r["value"] is not None], text[:3])
    check("a table is for people", ["occurrences", "list", "--day", "2024-01-01", *HERE], DONE,
          out=[f"{RATE}  SO2 rate", f"{DOWN}  SO2 monitor downtime", "Excludable", "0.680", "Probe plugged, and cold"])

    found = listed("runs are listed", "--runs")
    expect("as the files have them", sorted(found, key=lambda run: (run["begin"], run["tag"], run["pid"])) ==
           sorted(runs, key=lambda run: (run["begin"], run["tag"], run["pid"])), found)
    check("a table of runs", ["occurrences", "list", "--runs", *DAYS], DONE, out=["Intervals", "2024-01-01 05:00  2024-01-01 09:00"])
    by_tag = listed("occurrences by tag", "--by-tag")
    expect("are in order of tags, and of time within each", [(r["tag"], r["time"]) for r in by_tag] ==
           sorted((r["tag"], r["time"]) for r in rows), by_tag)

    def where(**members):
        return [run for run in runs if all(run[key] == value for key, value in members.items())]

    for words, wanted in ((["--downtimes"], where(kind="downtime")), (["--excursions"], where(kind="excursion")),
                          (["--excludable"], where(excludable=True)), (["--counted"], where(excludable=False)),
                          (["--downtimes", "--counted"], where(kind="downtime", excludable=False)),
                          (["8"], where(tag=OTHER)), (["7"], where(tag=RATE) + where(tag=MINUTES)),
                          ([RATE], where(tag=RATE)), (["8", MINUTES], where(tag=OTHER) + where(tag=MINUTES))):
        found = listed(f"{' '.join(words)} is listed", *words)
        expect(f"{' '.join(words)} lists what it should", sorted(keys(found)) == sorted(intervals(wanted)), found)
    found = listed("an occurrence parameter is listed", EXCESS)
    expect("with all intervals that have it", {r["time"] for r in found} == {f"2024-01-01 {h:02}:00" for h in (8, 9, 10)}, found)
    check("a span without occurrences says so", ["occurrences", "list", "--month", "2023-01", *HERE], DONE, err=["no such occurrences"])
    expect("and is an empty array", listed("nothing for programs", span=("--month", "2023-01", *HERE)) == [], "")


def test_timeline():
    picture = WORK / "occurrences.svg"
    check("a timeline is drawn", ["occurrences", "list", *DAYS, "--plot", windows(picture)], DONE, out=["5 occurrences of 3 tags"])
    svg = xml.dom.minidom.parse(str(picture))
    texts = [t.firstChild.data for t in svg.getElementsByTagName("text")]
    expect("it has the site and the span, a row per tag, and its hours", texts[0].endswith(
        "A small site with occurrences, 2024-01-01 00:00 to 2024-01-03 00:00") and f"SO2 rate  {RATE}" in texts and
        "excursions 3 h; downtime 6 h, 4 h of it excludable" in texts and "downtime 0.5 h, 0.5 h of it excludable" in texts, texts)
    tooltips = [t.firstChild.data for t in svg.getElementsByTagName("title")]
    expect("each run has a tooltip", len(tooltips) == 6 and "downtime, excludable\n2024-01-01 05:00 to 2024-01-01 09:00, 4 intervals of 1h\n"
           "Category: maintenance\nReason: Filter changed\nAction: New filter" in tooltips, tooltips)
    check("an empty timeline is one, too", ["occurrences", "list", "--month", "2023-01", *HERE, "--plot", windows(picture)], DONE)
    expect("and says so", "no downtimes and no excursions" in picture.read_text(encoding="utf-8"), "")
    check("a picture and a list do not go together", ["occurrences", "list", *DAYS, "--plot", "x.svg", "--json"], USAGE, err=["do not go together"])
    check("a picture needs a place", ["occurrences", "list", *DAYS, "--plot", "nowhere\\x.svg"], ENVIRONMENT, err=["cannot be written"])


def test_made_and_edited():
    before = history("the edits of the import")
    expect("are in the history", all(edit["source"] == "import" and edit["parts"] == "occurrence" for edit in before) and len(before) == 43, before[:3])
    said = json.loads(check("an occurrence is made", ["occurrences", "create", DOWN, FREE, "--category", "maintenance", "--reason", TEXT,
                                                      "--excludable", "yes", *HERE, "--json"], DONE))
    downtime = {"pid": DOWN, "excludable": True, "category": "maintenance", "reason": TEXT, "action": ""}
    wanted = {"tag": RATE, "time": FREE, "value": None, "mc": said.get("mc"), "excursion": None, "downtime": downtime}
    expect("with what was said", said == {"created": True, **wanted}, said)
    expect("and shown again", shown("it is shown", DOWN, FREE) == wanted, "")
    said = json.loads(check("it is not made twice", ["occurrences", "create", DOWN, FREE, *HERE, "--json"], DONE))
    expect("and stays", said == {"created": False, **wanted}, said)
    check("people are told so", ["occurrences", "create", DOWN, FREE, *HERE], DONE, out=["already", "SO2 monitor downtime"])
    check("an excursion beside it", ["occurrences", "create", EXCESS, FREE, *HERE], DONE,
          out=["Recorded the excursion", "0.5 lb/mmBtu", f"{LIMIT}  SO2 limit"])
    excursion = {"pid": EXCESS, "excludable": False, "category": "", "reason": "", "action": "", "limit": "0.5 lb/mmBtu", "limit_pid": LIMIT}
    expect("leaves the downtime", shown("both are shown", RATE, FREE) == {**wanted, "excursion": excursion}, "")
    check("which of both has to be said", ["occurrences", "edit", RATE, FREE, "--action", "x", *HERE], USAGE, err=["--excursion or --downtime"])
    check("the excursion is edited", ["occurrences", "edit", RATE, FREE, "--excursion", "--action", "Fuel changed", *HERE], DONE,
          out=["Changed the excursion", "Fuel changed"])
    said = json.loads(check("the downtime is edited", ["occurrences", "edit", DOWN, FREE, "--reason", "", "--excludable", "no", *HERE, "--json"], DONE))
    wanted = {**wanted, "excursion": {**excursion, "action": "Fuel changed"}, "downtime": {**downtime, "reason": "", "excludable": False}}
    expect("and nothing else", said == wanted and shown("afterwards", RATE, FREE) == wanted, said)

    after = history("the edits", "--limit", "4")
    expect("are in the history, newest first", all((e["pid"], e["time"], e["interval"], e["source"]) == (RATE, FREE, "1h", "OccEdit") and
                                                   "occurrence" in e["parts"] and e["user"] for e in after) and
           [e["when"] for e in after] == sorted((e["when"] for e in after), reverse=True), after)
    now = abs((datetime.datetime.fromisoformat(after[0]["when"]) - datetime.datetime.now()).total_seconds())
    expect("now is now, or an hour before it where summer time is", now < 7200, after[0])
    check("what was left out is said", ["points", "history", "--limit", "2", *HERE], DONE, out=["OccEdit"], err=["the newest 2"])
    found = history("the edits of a day", RATE, "--from", "2024-01-01", "--to", "2024-01-02")
    expect("are those of its intervals", len(found) == 8 and all(e["time"].startswith("2024-01-01") for e in found), found)

    hour = "2024-01-02 13:00"
    check("a value has an occurrence", ["occurrences", "create", EXCESS, hour, "--reason", "Load change", *HERE], DONE, out=["0.430 lb/mmBtu (mc 1)"])
    check("and stays", ["read", RATE, "--at", hour, "--csv", *HERE], DONE, out=[f"{hour},0.43,1"])
    check("a new value leaves the occurrence", ["write", RATE, hour, "--value", "0.75", "--mc", "9", *HERE], DONE)
    expect("as it is", shown("with the new value", EXCESS, hour)["excursion"]["reason"] == "Load change", "")
    check("an extra value is in the history, too", ["points", "set-extra", RATE, hour, "<x/>", *HERE], DONE)
    edit = history("the newest edit", RATE, "--limit", "1")[0]
    expect("with its program", (edit["source"], edit["parts"], edit["time"]) == ("vtdn", "extra value", hour), edit)


def test_several_at_once():
    begin = "2024-03-02 05:00"
    day = ("--day", "2024-03-02", *HERE)
    said = json.loads(check("a downtime of hours is made at once", ["occurrences", "create", DOWN, begin, "--count", "3", "--reason", "Power",
                                                                    *HERE, "--json"], DONE))
    expect("hour by hour", [(s["created"], s["time"], s["downtime"]["reason"]) for s in said] ==
           [(True, f"2024-03-02 0{hour}:00", "Power") for hour in (5, 6, 7)], said)
    check("some of it was there", ["occurrences", "create", DOWN, "2024-03-02 07:00", "--count", "2", *HERE], DONE,
          out=["and 1 interval behind it", "1 of these intervals had it already"])
    check("it is edited at once", ["occurrences", "edit", RATE, begin, "--count", "4", "--reason", "No power", "--excludable", "yes", *HERE], DONE,
          out=[f"Changed the downtime of {RATE} at {begin} and 3 intervals behind it", "No power"])
    runs = listed("and is one run", "--runs", span=day)
    expect("of four hours", [(r["begin"], r["intervals"], r["reason"], r["excludable"]) for r in runs] == [(begin, 4, "No power", True)], runs)
    check("more than there is is refused", ["occurrences", "edit", RATE, begin, "--count", "5", "--reason", "x", *HERE], REFUSED,
          err=[f"{RATE} at 2024-03-02 09:00"])
    expect("and changes nothing", listed("afterwards", "--runs", span=day) == runs, "")
    check("so is a row of hours one of which has another part only", ["occurrences", "edit", RATE, "2024-01-01 08:00", "--downtime", "--count", "2",
                                                                      "--reason", "x", *HERE], REFUSED, err=["no downtime", "Nothing was changed"])
    for count in ("0", "-1", "many", "100001"):
        check(f"{count} intervals are a matter of usage", ["occurrences", "edit", RATE, begin, "--count", count, "--reason", "x", *HERE], USAGE,
              err=["--count"])


def test_a_damaged_text():
    listing = ["occurrences", "list", "--day", "2024-03-02", *HERE, "--json"]
    before = json.loads(check("before the damage", listing, DONE))
    paths = [path for path in HOME.rglob("data.db") if sqlite3.connect(path).execute("SELECT site_id FROM site").fetchone()[0] == "OCCTEST"]
    with sqlite3.connect(paths[0]) as database:
        changed = database.execute("UPDATE data_point_text SET occurrence = replace(occurrence, 'No power', 'Np power') "
                                   "WHERE time = (SELECT min(time) FROM data_point_text WHERE occurrence LIKE '%No power%')").rowcount
    expect("one text is damaged", changed == 1, changed)
    after = json.loads(check("a damaged occurrence is reported", listing, DONE, err=["damaged", "2024-03-02 05:00", RATE]))
    expect("and the others are listed", after == before[1:], after)
    check("nothing is written over it", ["occurrences", "create", DOWN, "2024-03-02 05:00", "--reason", "x", *HERE], REFUSED, err=["damaged"])


def test_refusals():
    check("an unknown parameter is refused in the component's words", ["occurrences", "create", "9-999-3-00-00", FREE, *HERE], REFUSED,
          err=["PID 9-999-3-00-00 does not exist (WDN-0065)"])
    check("a tag is no occurrence parameter", ["occurrences", "create", RATE, FREE, *HERE], REFUSED,
          err=["PID 7-040-3-00-00 is not an occurrence parameter (WDN-0060)", "31"])
    check("a time off the boundary is refused", ["occurrences", "create", DOWN, "2024-03-01 05:30", *HERE], REFUSED, err=["2024-03-01 05:30"])
    check("what is not there is not shown", ["occurrences", "show", RATE, "2024-05-01", *HERE], REFUSED,
          err=["no occurrence of 7-040-3-00-00 at 2024-05-01 00:00", "occurrences list"])
    check("nor edited", ["occurrences", "edit", RATE, "2024-05-01", "--reason", "x", *HERE], REFUSED, err=["There is no occurrence"])
    check("nor the part that is not there", ["occurrences", "edit", RATE, "2024-01-01 12:00", "--excursion", "--reason", "x", *HERE], REFUSED,
          err=["has no excursion"])
    check("an unknown parameter has no occurrences", ["occurrences", "list", "9-999-3-00-00", *DAYS], REFUSED, err=["9-999-3-00-00", "(WDN-024)"])
    check("nor edits", ["points", "history", "9-999-3-00-00", *HERE], REFUSED, err=["9-999-3-00-00"])
    for words, said in ((["list", "--day", "2024-01-01", "--downtimes", "--excursions"], "do not go together"),
                        (["list", "--excludable", "--counted", "--day", "2024-01-01"], "do not go together"),
                        (["list"], "--from is missing"),
                        (["list", "20", "--day", "2024-01-01"], "neither a unit nor a PID"),
                        (["edit", RATE, FREE], "What is to be changed?"),
                        (["edit", RATE, FREE, "--excludable", "perhaps"], "yes"),
                        (["create", DOWN], "needs TIME"),
                        (["lst"], 'Did you mean "list"?'),
                        (["list", "--run"], '"--runs"')):
        check(f"occurrences {' '.join(words)} is a matter of usage", ["occurrences", *words, *(HERE if len(words) > 1 else ())], USAGE, err=[said])
    check("the verbs about occurrences are listed", ["occurrences", "--help"], DONE, out=["occurrences create", "occurrences edit"])
    check("occurrences of an unknown DAHS are an environment failure", ["occurrences", "list", "--day", "2024-01-01", "--dahs", "99"], ENVIRONMENT, err=["DAHS 99"])
    check("a site without edits says so", ["points", "history", SO2, "--from", "1999-01-01", "--to", "1999-01-02"], DONE, err=["No such edits"])
    check("the site is taken out", ["site", "remove", "3", "--files", "--yes"], DONE)


TESTS = (test_lists, test_timeline, test_made_and_edited, test_several_at_once, test_a_damaged_text, test_refusals)
