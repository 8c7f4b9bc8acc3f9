"""Reads the copies of public files in ../source."""

import csv
import json
import re
from collections import namedtuple
from pathlib import Path

SOURCE = Path(__file__).resolve().parent.parent / "source"

NO_VALUE = "-9"
YEAR_BEGIN, YEAR_END = "2007-01-01", "2007-12-31"


def read_csv(name):
    with open(SOURCE / name, newline="", encoding="utf-8") as file:
        return list(csv.DictReader(file))


def in_effect(begin, end):
    """Whether a dated record holds through the whole of 2007."""
    return begin <= YEAR_BEGIN and (not end or end >= YEAR_END)


def the_only(rows, what):
    """The single element of rows; anything else is an error in the source or in the question."""
    rows = list(rows)
    if len(rows) != 1:
        raise ValueError(f"{what}: expected one record, found {len(rows)}")
    return rows[0]


def plain_number(text):
    """A number as found, with a digit before the point and without idle zeros behind it: .2630 -> 0.263."""
    if text.startswith("."):
        text = "0" + text
    if "." in text:
        text = text.rstrip("0").rstrip(".")
    return text


class Hour:
    """One row of an hourly file."""

    VALUES = ("OPTIME", "GLOAD", "HTINPUT", "SO2MASS", "NOXRATE", "NOXMASS")
    FLAGS = {"HTINPUT": "HTINPUTMEASURE", "SO2MASS": "SO2MEASURE", "NOXRATE": "NOXRMEASURE", "NOXMASS": "NOXMMEASURE"}

    def __init__(self, row):
        day = row["YYMMDD"]
        self.time = f"20{day[:2]}-{day[2:4]}-{day[4:]} {int(row['HOUR']):02d}:00"
        self.values = {name: "" if row[name] == NO_VALUE else plain_number(row[name]) for name in self.VALUES}
        self.flags = {name: row[flag] for name, flag in self.FLAGS.items()}
        self.operating = float(self.values["OPTIME"]) > 0
        if self.operating != all(self.values.values()) or self.operating != all(self.flags.values()):
            raise ValueError(f"{self.time}: values and flags are expected in operating hours, and only there")


def hours(name):
    return [Hour(row) for row in read_csv(name)]


def code_text(table, code):
    """Description of a code in the code tables."""
    row = the_only((r for r in read_csv("code_tables.csv") if (r["table"], r["code"]) == (table, code)), f"{table} {code}")
    return row["description"]


def unit_in_text(table, code):
    """Unit of measure that a code's description names in parentheses: 'NOx Emissions Rate (lb/mmBtu)'."""
    return code_text(table, code).split("(")[1].split(")")[0]


def cause(section, item):
    """Cause of the summary form of 40 CFR 60.7(d), in its words."""
    row = the_only((r for r in read_csv("summary_form_causes.csv") if (r["section"], r["item"]) == (section, item)),
                   f"cause {section} {item}")
    return row["cause"]


def emission_limit(parameter):
    """The limit of a quantity, with the rule that it stands in and the average that it holds for."""
    return the_only((r for r in read_csv("emission_limits.csv") if r["parameter"] == parameter), f"limit {parameter}")


def parameter_codes():
    """Code and description of the tables of monitoring-plan and formula parameters, in their order."""
    return [(row["code"], row["description"]) for row in read_csv("code_tables.csv")
            if row["table"] in ("monitoring_parameter", "formula_parameter")]


# What an analyzer or monitor of a monitoring plan is: its type and number, the stack or unit that it stands at, and
# whether it is in service at the end of the data (or has come later), not replaced before it.
Analyzer = namedtuple("Analyzer", "type component place in_service")

RANGE_NAMES = {"H": "high range", "L": "low range"}
ANALYZER_TYPES = ("SO2", "NOX", "CO2", "O2", "FLOW", "OP")


class BarryPlan:
    """Monitoring plan of Barry unit 5 in 2007: the unit (11) and its two stacks MS5A (9) and MS5B (10)."""

    UNIT, STACKS = "11", {"MS5A": "9", "MS5B": "10"}
    LOAD_LIMITS = ("max_load_value", "up_op_boundary", "low_op_boundary")

    def _row(self, name, **keys):
        return the_only(
            (r for r in read_csv(f"barry_plan_{name}.csv")
             if all(r[k] == v for k, v in keys.items()) and in_effect(r["begin_date"], r["end_date"])),
            f"barry_plan_{name} {keys}")

    def capacity(self):
        return self._row("capacity", unit_id="5")["max_hi_capacity"]

    def load_limits(self):
        """Maximum load, upper and lower boundary of operation."""
        row = self._row("load", mon_loc_id=self.UNIT)
        return [row[column] for column in self.LOAD_LIMITS]

    def span(self, stack, component):
        return self._row("span", mon_loc_id=self.STACKS[stack], component_type_cd=component)["span_value"]

    def default(self, stack, parameter):
        return self._row("default", mon_loc_id=self.STACKS[stack], parameter_cd=parameter)["default_value"]

    def analyzers(self):
        """Those of both stacks, in the order of stacks, the ones in service first."""
        found = {}
        for row in read_csv("barry_plan_component.csv"):
            for stack, location in self.STACKS.items():
                if row["mon_loc_id"] == location:
                    key = (stack, row["component_type_cd"], row["component_identifier"])
                    found[key] = max(found.get(key, ""), row["end_date"] or YEAR_END)
        analyzers = [Analyzer(kind, component, stack, end >= YEAR_END) for (stack, kind, component), end in found.items()]
        return sorted(analyzers, key=lambda a: (not a.in_service, a.place, ANALYZER_TYPES.index(a.type)))

    def measured_by_certified_primary(self, parameter):
        """Both stacks monitor the parameter continuously, and all their systems are primary ones."""
        stacks = set(self.STACKS.values())
        methods = {(r["mon_loc_id"], r["method_cd"]) for r in read_csv("barry_plan_method.csv")
                   if r["mon_loc_id"] in stacks and r["parameter_cd"] == parameter and in_effect(r["begin_date"], r["end_date"])}
        systems = {r["sys_designation_cd"] for r in read_csv("barry_plan_system.csv") if r["mon_loc_id"] in stacks}
        return methods == {(stack, "CEM") for stack in stacks} and systems == {"P"}


class SmithPlan:
    """Monitoring plan of Smith SCT1 in 2007."""

    LOAD_LIMITS = ("maximumLoadValue", "upperOperationBoundary", "lowerOperationBoundary")

    def __init__(self):
        self._plan = json.loads((SOURCE / "smith_sct1_plan.json").read_text(encoding="utf-8"))

    def _record(self, group, **keys):
        return the_only(
            (r for r in self._plan[group]
             if all(r[k] == v for k, v in keys.items()) and in_effect(r["beginDate"], r["endDate"])),
            f"{group} {keys}")

    def capacity(self):
        return str(self._record("unitCapacityData")["maximumHourlyHeatInputCapacity"])

    def load_limits(self):
        """Maximum load, upper and lower boundary of operation."""
        record = self._record("monitoringLoadData")
        return [str(record[key]) for key in self.LOAD_LIMITS]

    def default(self, parameter, fuel):
        return str(self._record("monitoringDefaultData", parameterCode=parameter, fuelCode=fuel)["defaultValue"])

    def analyzers(self):
        """The ones that came in 2014; in 2007 there were none. One for each range of theirs that has a span."""
        ranges = {}
        for record in self._plan["monitoringSpanData"]:
            ranges.setdefault(record["componentTypeCode"], []).append(record["spanScaleCode"])
        return [Analyzer(c["componentTypeCode"], c["componentId"], RANGE_NAMES[scale], True)
                for c in sorted(self._plan["componentData"], key=lambda c: c["componentId"]) if c["analyzerRangeData"]
                for scale in ranges[c["componentTypeCode"]]]

    def measured_by_certified_primary(self, parameter):
        methods = {r["monitoringMethodCode"] for r in self._plan["monitoringMethodData"]
                   if r["parameterCode"] == parameter and in_effect(r["beginDate"], r["endDate"])}
        return methods == {"CEM"}


def _facility_unit(plant, unit):
    return the_only((r for r in read_csv("facilities_units.csv")
                     if (r["CAMD_PLANT_ID"], r["CAMD_UNIT_ID"]) == (plant, unit)), f"unit {plant} {unit}")


def nameplate(plant, unit):
    return _facility_unit(plant, unit)["CAMD_NAMEPLATE_CAPACITY"]


def unit_name(plant, unit):
    """Name of the facility and number of the unit."""
    row = _facility_unit(plant, unit)
    return f"{row['CAMD_FACILITY_NAME']} {row['CAMD_UNIT_ID']}"


def units_of_2007(plant):
    """Number and name of the units of a plant that have a plain number and stood there in 2007."""
    for row in read_csv("facilities_units.csv"):
        number = re.fullmatch(r"(?:SCT)?(\d+)", row["CAMD_UNIT_ID"])
        since, retired = row["CAMD_STATUS_DATE"][:10], row["CAMD_STATUS"] == "RET"
        if row["CAMD_PLANT_ID"] == plant and number and (since > YEAR_END) == retired:
            yield int(number[1]), unit_name(plant, row["CAMD_UNIT_ID"])
