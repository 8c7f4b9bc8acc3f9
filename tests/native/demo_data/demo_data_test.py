#!/usr/bin/env python3
"""Tests of the demo sites and of docs/site-files.md. The last line is "N passed, N failed"."""

import csv
import datetime
import json
import shutil
import subprocess
import sys
import tempfile
import unittest
from collections import Counter
from fractions import Fraction
from pathlib import Path

sys.dont_write_bytecode = True
HERE = Path(__file__).resolve().parent
ROOT = HERE.parents[2]
DEMO = ROOT / "data" / "demo"
sys.path.insert(0, str(HERE))

from site_files import DATABASE, OCCURRENCE, Refused, Site, pid_number, time_of  # noqa: E402

OFF, DERIVED = 100, 110
DERIVED_FIELD, CALCULATED_FIELD = 1, 2
SIZE_LIMIT = 6_000_000


def source(name):
    with open(DEMO / "source" / name, newline="", encoding="utf-8") as file:
        return list(csv.DictReader(file))


def field_d(pid):
    return pid // 100 % 100


def write_site(folder, files):
    for name, content in files.items():
        path = folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content if isinstance(content, bytes) else content.encode("utf-8"))
    return folder


class TheFormat(unittest.TestCase):
    """The reader of this test, held against its own cases, so that a demo site it accepts is one."""

    @classmethod
    def setUpClass(cls):
        cls.cases = json.loads((HERE / "refused.json").read_text(encoding="utf-8"))

    def read(self, files):
        with tempfile.TemporaryDirectory() as folder:
            return Site(write_site(Path(folder), files))

    def test_a_good_site_is_read(self):
        site = self.read(self.cases["good"])
        heat = site.values[pid_number("1-030-3-00-00")]
        self.assertEqual([(v.value, v.mc) for v in heat], [(212.4, 1), (None, 9), (48.2, 0)])
        self.assertEqual([v.value for v in site.values[pid_number("1-050-3-00-00")]], [0.174, "N/A"])
        self.assertEqual(site.units[19]["name"], "Boiler, old")
        pid = pid_number("1-030-3-00-00")
        values = {number: value for (of, number), value in site.special_values.items() if of == pid}
        self.assertEqual(values, {-22: "40CFR75", -25: False, 1001: -5, 0: -0.0025, 7: None})
        self.assertEqual(site.related[pid], {pid, pid_number("1-030-4-02-00")})

    def test_an_excursion_and_a_downtime_of_one_interval_are_one_occurrence(self):
        site = self.read(self.cases["good"])
        self.assertEqual(set(site.occurrences), {pid_number("1-050-3-00-00")})
        excursion, downtime, limit = (pid_number(f"1-{b}-0-{d}-00") for b, d in (("053", "01"), ("054", "01"), ("905", "00")))
        start, down = (excursion, "Startup/shutdown", "Start, cold", "", True, "0.2", limit), (downtime, "Unknown causes", "", "Called", False)
        other, plain = (excursion, "", "", "", False, "0.3 lb/mmBtu", 0), (excursion, "", "", "", False, "0.2", limit)
        expected = {"2023-12-31 22:00": (plain, None), "2023-12-31 23:00": (plain, None), "2024-01-01 00:00": (start, None),
                    "2024-01-01 01:00": (start, None), "2024-01-01 02:00": (start, down), "2024-01-01 03:00": (None, down),
                    "2024-01-01 04:00": (other, None)}
        found = site.occurrences[pid_number("1-050-3-00-00")]
        self.assertEqual({time: tuple(parts) for time, parts in found.items()}, {time_of(t): parts for t, parts in expected.items()})

    def test_a_byte_order_mark_and_line_ends_of_either_kind_are_read(self):
        files = {name: b"\xef\xbb\xbf" + text.replace("\n", "\r\n").encode() for name, text in self.cases["good"].items()}
        self.assertEqual(self.read(files).values, self.read(self.cases["good"]).values)

    def test_each_kind_of_mistake_is_refused_in_its_file_and_line(self):
        for case in self.cases["refused"]:
            with self.subTest(case["name"]):
                with self.assertRaises(Refused) as refused:
                    self.read({**self.cases["good"], case["file"]: case["content"]})
                self.assertEqual((refused.exception.file, refused.exception.line), (case["file"], case["line"]))

    def test_bytes_that_are_not_utf8_are_refused(self):
        with self.assertRaises(Refused) as refused:
            self.read({**self.cases["good"], "site.csv": b"key,value\ndescription,Stra\xdfe\n"})
        self.assertEqual((refused.exception.file, refused.exception.line), ("site.csv", 2))

    def test_a_site_without_parameters_is_refused(self):
        with self.assertRaises(Refused):
            self.read({"site.csv": "key,value\n"})

    def test_the_example_in_the_document_is_a_site(self):
        text = (ROOT / "docs" / "site-files.md").read_text(encoding="utf-8").split("## A plant of your own")[1]
        blocks = text.split("```csv\n")
        names = [before.rsplit("`", 2)[1] for before in blocks[:-1]]
        files = dict(zip(names, (block.split("```")[0] for block in blocks[1:])))
        self.assertEqual(set(files), {"site.csv", "monitor_codes.csv", "parameters.csv", "values/2024-01.csv", "units.csv",
                                      "special_values.csv", "relationships.csv", "occurrences.csv"})
        site = self.read(files)
        self.assertEqual(sum(map(len, site.values.values())), 12)
        self.assertEqual((len(site.units), len(site.special_values), len(site.related)), (1, 9, 4))
        self.assertEqual([len(at) for at in site.occurrences.values()], [1])


class TheDemoSites(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.barry, cls.smith = Site(DEMO / "barry5"), Site(DEMO / "smith-sct1")
        cls.hourly = {cls.barry: source("barry5_hourly_2007.csv"), cls.smith: source("smith_sct1_hourly_2007.csv")}

    def series(self, site, pid):
        return site.values[pid_number(pid)]

    def hour_series(self, site, quantity):
        unit = {self.barry: 5, self.smith: 1}[site]
        return self.series(site, f"{unit}-{quantity}-3-00-00")

    def test_they_are_made_byte_for_byte_from_their_sources(self):
        check = subprocess.run([sys.executable, DEMO / "make_demo.py", "--check"], capture_output=True, text=True)
        self.assertEqual(check.returncode, 0, check.stdout + check.stderr)

    def test_the_check_notices_a_changed_byte(self):
        with tempfile.TemporaryDirectory() as folder:
            copy = Path(shutil.copytree(DEMO, Path(folder) / "demo"))
            changed = copy / "barry5" / "values" / "hourly-2007.csv"
            changed.write_bytes(changed.read_bytes().replace(b",1904.278,", b",1904.279,", 1))
            check = subprocess.run([sys.executable, copy / "make_demo.py", "--check"], capture_output=True, text=True)
            self.assertEqual((check.returncode, check.stdout.strip()), (1, "barry5/values/hourly-2007.csv differs"))

    def test_their_size_is_modest(self):
        self.assertLess(sum(p.stat().st_size for p in DEMO.rglob("*") if p.is_file()), SIZE_LIMIT)

    def test_every_hour_and_value_of_the_sources_is_there(self):
        columns = {"010": "OPTIME", "020": "GLOAD", "030": "HTINPUT", "040": "SO2MASS", "050": "NOXRATE", "051": "NOXMASS"}
        for site, rows in self.hourly.items():
            for quantity, column in columns.items():
                with self.subTest(column=column, rows=len(rows)):
                    expected = []
                    for row in rows:
                        day = row["YYMMDD"]
                        value = None if row[column] == "-9" else float(row[column])
                        expected.append((time_of(f"20{day[:2]}-{day[2:4]}-{day[4:]} {int(row['HOUR']):02d}:00"), value))
                    self.assertEqual([(v.time, v.value) for v in self.hour_series(site, quantity)], expected)

    def test_the_totals_are_those_of_the_plants(self):
        # (operating hours, operating time, SO2 mass in lb, NOx mass in lb, heat input in mmBtu, rows)
        known = {self.barry: (5217, "5206.75", "33627068.35", "11213587.663", "36233911.4", 7272),
                 self.smith: (778, "707.25", "481.949", "46773.2", "634171.7", 5088)}
        for site, (hours, time, so2, nox, heat, rows) in known.items():
            got = {q: [Fraction(repr(v.value)) for v in self.hour_series(site, q) if v.value is not None]
                   for q in ("010", "040", "051", "030")}
            self.assertEqual(sum(v > 0 for v in got["010"]), hours)
            self.assertEqual([sum(got[q]) for q in ("010", "040", "051", "030")], [Fraction(t) for t in (time, so2, nox, heat)])
            self.assertEqual(len(got["010"]), rows)

    def test_codes_are_the_ones_that_the_flags_stand_for(self):
        flags = {"020": None, "030": "HTINPUTMEASURE", "040": "SO2MEASURE", "050": "NOXRMEASURE", "051": "NOXMMEASURE"}
        measured = {self.barry: 1, self.smith: 101}
        for site, rows in self.hourly.items():
            code = {"1": measured[site], "2": 102, "3": 103, "4": 104, "98": 198}
            for quantity, flag in flags.items():
                expected = [OFF if float(r["OPTIME"]) == 0 else code[r[flag]] if flag else 0 for r in rows]
                self.assertEqual([v.mc for v in self.hour_series(site, quantity)], expected)
        self.assertEqual(Counter(v.mc for v in self.hour_series(self.barry, "050")), {1: 5170, OFF: 2055, 104: 41, 103: 6})

    def test_minutes_have_the_mean_of_their_hour(self):
        hours = {v.time: v.value for v in self.hour_series(self.barry, "010")}
        for quantity, amount in (("020", False), ("030", True), ("050", False)):
            by_hour = {}
            for v in self.series(self.barry, f"5-{quantity}-1-01-00"):
                by_hour.setdefault(v.time.replace(minute=0), []).append(v)
            hourly = {v.time: v.value for v in self.hour_series(self.barry, quantity)}
            self.assertEqual(len(by_hour), 7 * 24)
            for hour, minutes in by_hour.items():
                values = [Fraction(repr(v.value)) for v in minutes if v.value is not None]
                self.assertEqual(len(minutes), 60)
                self.assertEqual(len(values), 60 * Fraction(repr(hours[hour])))
                self.assertTrue(all(v.mc == (OFF if v.value is None else DERIVED) for v in minutes))
                if values:
                    self.assertEqual(sum(values) / (60 if amount else len(values)), Fraction(repr(hourly[hour])))
                    self.assertGreaterEqual(min(values), 0)

    def test_minutes_are_no_flat_line(self):
        values = [v.value for v in self.series(self.barry, "5-020-1-01-00") if v.value]
        self.assertGreater(len(set(values)), 1000)

    def test_constants_are_those_of_the_monitoring_plans(self):
        known = {self.barry: {"5-901-0-00-00": 11057, "5-902-0-00-00": 800, "5-910-0-00-01": 1500, "5-911-0-00-02": 500,
                              "5-920-0-00-01": 1.58, "5-920-0-00-02": 1.52, "5-905-0-00-00": 788.8},
                 self.smith: {"1-901-0-00-00": 1800, "1-902-0-00-00": 150, "1-922-0-00-00": 0.0006, "1-920-0-00-01": 2.288}}
        for site, constants in known.items():
            self.assertEqual({pid: site.parameters[pid_number(pid)].value for pid in constants}, constants)

    def pids_of(self, site, parameter_type, **wanted):
        """PIDs of a type whose special values are those wanted (by id without its minus); one that is absent counts as false."""
        def fits(pid):
            return all(site.special_values.get((pid, -int(number[1:])), False) == value for number, value in wanted.items())
        return {pid for pid, p in site.parameters.items() if p.type == parameter_type and fits(pid)}

    def test_the_lists_that_clients_ask_for_are_those_of_the_monitoring_plans(self):
        def pids(*texts):
            return {pid_number(text) for text in texts}
        stacks = ("01", "02")
        gases, flow, opacity = (110, 111, 112), 114, 115
        current = pids(*(f"5-{b}-1-00-{e}" for b in (*gases, flow) for e in stacks))
        opacities = pids(*(f"5-{opacity}-1-00-{e}" for e in stacks))
        interference = pids(*(f"5-116-1-00-{e}" for e in stacks))
        replaced = pids(*(f"5-{b}-1-00-03" for b in gases))
        of_2014 = pids("1-111-1-00-01", "1-111-1-00-02", "1-113-1-00-01")
        program = {"_22": "40CFR75", "_25": False}
        for site, plan_75, checks, others, gone in ((self.barry, current, interference, opacities, replaced),
                                                    (self.smith, of_2014, set(), set(), set())):
            self.assertEqual(self.pids_of(site, 3), plan_75 | checks | others | gone)
            self.assertEqual(self.pids_of(site, 3, _25=False), plan_75 | checks | others)
            self.assertEqual(self.pids_of(site, 3, **program, _114=False, _117=False, _118=False), plan_75)
            self.assertEqual(self.pids_of(site, 3, **program, _117=True), checks)
        self.assertEqual(self.pids_of(self.barry, 45, _32=1), pids(*(f"5-{b + 10}-1-00-{e}" for b in gases for e in stacks)))
        self.assertEqual(self.pids_of(self.barry, 45, _32=0), pids(*(f"5-{b + 10}-1-00-03" for b in gases)))
        self.assertEqual(self.pids_of(self.smith, 45, _32=1), {pid + 10 * 10**5 for pid in of_2014})

    def test_analyzers_are_those_of_the_monitoring_plan_and_have_no_values(self):
        stacks = {"9": "MS5A", "10": "MS5B"}
        planned = {(r["component_identifier"], stacks[r["mon_loc_id"]], r["end_date"] < "2007-12-31")
                   for r in source("barry_plan_component.csv")}
        listed = set()
        for pid in self.pids_of(self.barry, 3):
            component, stack = self.barry.parameters[pid].name.rsplit(" ", 2)[1:]
            listed.add((component.rstrip(","), stack, self.barry.special_values[pid, -25]))
        self.assertEqual(listed, planned)
        for site in self.hourly:
            for parameter_type in (3, 45):
                self.assertEqual({pid for pid in self.pids_of(site, parameter_type) if site.values[pid]}, set())

    def test_units_report_under_the_numbers_of_their_plants(self):
        listed = {(r["CAMD_PLANT_ID"], r["CAMD_UNIT_ID"]): r["CAMD_FACILITY_NAME"] for r in source("facilities_units.csv")}
        for site, number, plant, unit in ((self.barry, 5, "3", "5"), (self.smith, 1, "54", "SCT1")):
            pid = pid_number(f"{number}-001-0-00-00")
            name = f"{listed[plant, unit]} {unit}"
            self.assertEqual([site.special_values[pid, i] for i in (-17, -95, -97)], [True, int(plant), unit])
            self.assertEqual((site.parameters[pid].value, site.units[number]["name"]), (name, name))
            for other in site.units.values():
                facility, other_unit = other["name"].rsplit(" ", 1)
                self.assertEqual(listed[plant, other_unit], facility)
        self.assertEqual((sorted(self.barry.units), sorted(self.smith.units)), ([1, 2, 3, 4, 5], [1, 2, 3, 4, 5, 6, 7]))

    def test_every_parameter_with_values_has_the_operating_time_of_its_unit(self):
        for site, unit in ((self.barry, 5), (self.smith, 1)):
            time = pid_number(f"{unit}-010-3-00-00")
            expected = {pid: time for pid, p in site.parameters.items() if p.io_type not in (4, 34, OCCURRENCE) and pid != time}
            self.assertEqual({pid: v for (pid, i), v in site.special_values.items() if i == 1001}, expected)
            self.assertEqual((site.parameters[time].units, site.parameters[time].interval.seconds), ("hr", 3600))

    def test_codes_that_count_as_available_are_measured_by_the_code_table(self):
        measured = {int(r["modc"]) for r in source("modc_codes.csv") if r["class"] == "measured"}
        substitutes = {int(r["modc"]) for r in source("modc_codes.csv") if r["class"] == "substitute"}
        for site in self.hourly:
            lists = {pid: {int(code) for code in v.split(",")} for (pid, i), v in site.special_values.items() if i == 1002}
            self.assertEqual({pid // 10**5 % 1000 for pid in lists}, {30, 40, 50, 51})
            for available in lists.values():
                self.assertLessEqual({1, 2, 3, 4}, available)
                self.assertLessEqual(available, (measured | {101, 102}) & set(site.codes))
                self.assertEqual(available & (substitutes | {OFF, DERIVED, 103, 104, 198}), set())
        # Barry's NOx rate: 5170 hours measured, 47 not, of 5217 operating ones.
        available = {int(code) for code in self.barry.special_values[pid_number("5-050-3-00-00"), 1002].split(",")}
        self.assertEqual(sum(v.mc in available for v in self.hour_series(self.barry, "050")), 5170)

    def test_relationships_join_minutes_hours_and_days_of_one_quantity(self):
        for site, unit in ((self.barry, 5), (self.smith, 1)):
            groups = {frozenset(group) for group in site.related.values()}
            seconds = {tuple(sorted(site.parameters[pid].interval.seconds for pid in group)) for group in groups}
            self.assertEqual(seconds, {(3600, 86400), (60, 900, 3600, 86400)} if unit == 5 else {(3600, 86400)})
            self.assertEqual(len(groups), 9 if unit == 5 else 6)
            for group in groups:
                self.assertEqual(len({pid // 10**5 for pid in group}), 1)
                # One level is stored: the shortest, which the others follow.
                stored = [site.parameters[pid] for pid in group if site.parameters[pid].io_type == DATABASE]
                self.assertEqual([p.interval.seconds for p in stored],
                                 [min(site.parameters[pid].interval.seconds for pid in group)])
                self.assertTrue(site.values[stored[0].pid])

    def test_parameter_codes_are_those_of_the_code_tables(self):
        rows = [(r["code"], r["description"]) for r in source("code_tables.csv")
                if r["table"] in ("monitoring_parameter", "formula_parameter")]
        for site in self.hourly:
            self.assertEqual([(r["short_name"], r["long_name"]) for r in site.parameter_codes.values()], rows)
            self.assertEqual(list(site.parameter_codes), list(range(1, 29)))

    def test_nox_mass_agrees_with_rate_times_heat_input(self):
        for site in self.hourly:
            rate, heat, mass = ([v.value for v in self.hour_series(site, q)] for q in ("050", "030", "051"))
            off = sorted(abs(r * h - m) / m for r, h, m in zip(rate, heat, mass) if m is not None)
            self.assertLess(off[len(off) // 2], 0.001)
            self.assertLess(off[-1], 0.03)

    def test_expected_months_follow_from_the_hours(self):
        take = {"sum": sum, "average": lambda v: sum(v) / len(v), "maximum": max, "minimum": min}
        # Barry 5 was off all February and March: of those months there is the operating time only.
        for site, name, rows in ((self.barry, "barry5", 10 * 8 - 2 * 7), (self.smith, "smith-sct1", 7 * 8)):
            with open(DEMO / "expected" / f"{name}-monthly.csv", newline="", encoding="utf-8") as file:
                expected = list(csv.DictReader(file))
            self.assertEqual(len(expected), rows)
            for row in expected:
                parameter, month = site.parameters[pid_number(row["pid"])], time_of(row["time"])
                hours = [Fraction(repr(v.value)) for v in site.values[parameter.uses[0]]
                         if v.value is not None and (v.time.year, v.time.month) == (month.year, month.month)]
                self.assertEqual(float(row["value"]), float(take[parameter.aggregation](hours)), row)

    def parts(self, site, kind):
        """(time, part) of the excursions (0) or downtimes (1) of a site, in order of time."""
        return sorted((time, parts[kind]) for at in site.occurrences.values() for time, parts in at.items() if parts[kind])

    def barry_hours(self):
        """(time, row) of every hour of the source."""
        for row in self.hourly[self.barry]:
            day = row["YYMMDD"]
            yield time_of(f"20{day[:2]}-{day[2:4]}-{day[4:]} {int(row['HOUR']):02d}:00"), row

    def test_downtimes_are_exactly_the_hours_with_substitute_data(self):
        hours = {time: row["NOXRMEASURE"] for time, row in self.barry_hours() if row["NOXRMEASURE"] in ("3", "4")}
        found = self.parts(self.barry, 1)
        self.assertEqual([(time, part.pid, part.category, part.action, part.excludable) for time, part in found],
                         [(time, pid_number("5-054-0-01-00"), "Unknown causes", "", False) for time in sorted(hours)])
        self.assertTrue(all(f"flag {hours[time]}: " in part.reason for time, part in found))
        codes = {v.time: v.mc for v in self.hour_series(self.barry, "050")}
        self.assertEqual({time for time, code in codes.items() if code in (103, 104)}, {time for time, _ in found})
        # Nothing else that is stored has substitute data.
        for site in self.hourly:
            coded = {pid for pid, values in site.values.items() if any(v.mc in (103, 104) for v in values)}
            self.assertEqual(coded, {pid_number("5-050-3-00-00")} if site is self.barry else set())
        self.assertEqual(self.smith.occurrences, {})

    def test_excursions_are_exactly_the_measured_hours_over_the_limit(self):
        limit = pid_number("5-930-0-00-00")
        self.assertEqual((self.barry.parameters[limit].value, self.barry.parameters[limit].units), (0.4, "lb/mmBtu"))
        self.assertEqual([r["value"] for r in source("emission_limits.csv")], ["0.40"])
        over = [time for time, row in self.barry_hours() if row["NOXRMEASURE"] == "1" and Fraction(row["NOXRATE"]) > Fraction("0.4")]
        found = self.parts(self.barry, 0)
        self.assertEqual([time for time, _ in found], over)
        self.assertEqual({(p.pid, p.limit, p.limit_pid, p.action) for _, p in found},
                         {(pid_number("5-053-0-01-00"), "0.4 lb/mmBtu", limit, "")})
        substituted = [row["NOXRATE"] for _, row in self.barry_hours() if row["NOXRMEASURE"] in ("3", "4")]
        self.assertLessEqual(max(map(Fraction, substituted)), Fraction("0.4"))

    def test_excursions_of_a_start_are_told_from_operating_time_and_load(self):
        load, operated = {}, {}
        for time, row in self.barry_hours():
            load[time], operated[time] = float(row["GLOAD"]), float(row["OPTIME"]) > 0
        hour = datetime.timedelta(hours=1)
        lower = self.barry.parameters[pid_number("5-904-0-00-00")].value

        def is_start(time):
            while operated.get(time) and load[time] < lower:
                time -= hour
            return operated.get(time) is False

        found = self.parts(self.barry, 0)
        startups = [time for time, part in found if is_start(time) or operated.get(time + hour) is False]
        self.assertEqual([time for time, part in found if part.category == "Startup/shutdown"], startups)
        self.assertEqual([time for time, part in found if part.excludable], startups)
        self.assertEqual({part.category for _, part in found} - {"Startup/shutdown"}, {"Unknown causes"})
        self.assertEqual((len(startups), len(found)), (7, 86))

    def test_causes_are_those_of_the_summary_form(self):
        causes = {section: {r["cause"] for r in source("summary_form_causes.csv") if r["section"] == section}
                  for section in ("emission data summary", "CMS performance summary")}
        self.assertEqual([len(c) for c in causes.values()], [5, 5])
        for kind, known in enumerate(causes.values()):
            self.assertLessEqual({part.category for _, part in self.parts(self.barry, kind)}, known)

    def test_expected_occurrences_follow_from_the_hours(self):
        expected = []
        for kind in (0, 1):
            found = self.parts(self.barry, kind)
            hours, runs = Counter(), Counter()
            for at, (time, part) in enumerate(found):
                key = (part.pid, f"{time:%Y-%m}-01 00:00", part.category, str(int(part.excludable)))
                hours[key] += 1
                runs[key] += at == 0 or found[at - 1] != (time - datetime.timedelta(hours=1), part)
            expected += [(*key, str(runs[key]), str(hours[key])) for key in sorted(hours)]
        with open(DEMO / "expected" / "barry5-occurrences.csv", newline="", encoding="utf-8") as file:
            rows = [(pid_number(row["pid"]), *list(row.values())[1:]) for row in csv.DictReader(file)]
        self.assertEqual(rows, expected)
        # One row for each run, so that the file stays small.
        lines = (DEMO / "barry5" / "occurrences.csv").read_text(encoding="utf-8").splitlines()
        self.assertEqual(len(lines) - 1, sum(int(row[-2]) for row in rows))

    def test_everything_derived_says_so(self):
        provenance = (DEMO / "PROVENANCE.md").read_text(encoding="utf-8")
        for site in self.hourly:
            for pid, p in site.parameters.items():
                self.assertEqual(field_d(pid) == DERIVED_FIELD, p.description.startswith("Derived:"), p.name)
                self.assertEqual(field_d(pid) == CALCULATED_FIELD, p.description.startswith("Calculated:"), p.name)
                self.assertEqual(field_d(pid) == CALCULATED_FIELD, bool(p.uses), p.name)
                if field_d(pid) == DERIVED_FIELD:
                    self.assertTrue(all(v.mc == DERIVED for v in site.values.get(pid, ()) if v.value is not None), p.name)
                    self.assertIn(f"| {p.name} | derived: ", provenance)
            for path in (site.folder / "values").iterdir():
                first_cells = path.read_text(encoding="utf-8").replace("\n", ",").split(",")[:20]
                derived = {field_d(pid_number(cell)) == DERIVED_FIELD for cell in first_cells if pid_number(cell)}
                self.assertEqual(derived, {"derived" in path.name}, path.name)
            for part in (part for at in site.occurrences.values() for pair in at.values() for part in pair if part):
                self.assertEqual(field_d(part.pid), DERIVED_FIELD)
                self.assertTrue(part.reason.startswith("Derived"), part)
            for code, row in site.codes.items():
                self.assertEqual(code >= OFF, row["long_name"].startswith("Derived"), row)

    def test_wordings_that_were_not_checked_say_so(self):
        rows = source("modc_codes.csv")
        self.assertEqual(len(rows), 35)
        for site in self.hourly:
            for row in rows:
                name = site.codes[int(row["modc"])]["long_name"]
                self.assertEqual(name, row["description"] + ("" if row["status"] == "verbatim" else f" [wording: {row['status']}]"))

    def test_every_parameter_and_file_is_in_the_provenance(self):
        provenance = (DEMO / "PROVENANCE.md").read_text(encoding="utf-8")
        for site in self.hourly:
            lines = (site.folder / "parameters.csv").read_text(encoding="utf-8").splitlines()[1:]
            self.assertEqual([line for line in lines if f"| {line.split(',')[0]} |" not in provenance], [])
            for path in (site.folder / "values").iterdir():
                self.assertRegex(provenance, rf"`[*a-z0-9-]+/values/{path.name}`")
            for path in site.folder.glob("*.csv"):
                self.assertIn(f"| `*/{path.name}` |", provenance)
            for _, number in site.special_values:
                self.assertRegex(provenance, rf"\n\| (-?\d+, )*{number}(, -?\d+)* \|")

    def test_the_texts_name_the_status(self):
        status = self.series(self.barry, "5-015-3-01-00")
        self.assertEqual({v.value for v in status}, {"operating", "part hour", "off"})
        self.assertEqual(sum(len(v) for pid, v in self.barry.values.items() if self.barry.parameters[pid].io_type == DATABASE),
                         6 * 7272 + 3 * 10080 + len(status))


class Result(unittest.TextTestResult):
    """Counts subtests that fail as one failure each, and the tests that pass."""

    passed = 0

    def addSuccess(self, test):
        super().addSuccess(test)
        self.passed += 1


if __name__ == "__main__":
    suite = unittest.defaultTestLoader.loadTestsFromModule(sys.modules[__name__])
    result = unittest.TextTestRunner(stream=sys.stdout, resultclass=Result).run(suite)
    failed = len(result.failures) + len(result.errors)
    print(f"{result.passed} passed, {failed} failed")
    sys.exit(1 if failed else 0)
