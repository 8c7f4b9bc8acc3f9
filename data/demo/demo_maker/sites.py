"""The two demo sites: their parameters, constants and calculations, as tables."""

from collections import namedtuple
from fractions import Fraction

from . import codes, occurrences, sources
from .pids import (CALCULATED, DAY, DERIVED, FOUND, HOUR, INTERVALS, MINUTE, MONTH, NO_TIME, QUARTER_HOUR, display, number_form)

# I/O types of docs/site-files.md. Constants that stand in a monitoring plan have 34, others 4; calculated ones have 10.
DATABASE, CONSTANT, PLAN_CONSTANT, CALCULATION, OCCURRENCE = 38, 4, 34, 10, 31

# Parameter types, and the numbers of special values that the embedded engine and its clients know.
CALIBRATED, LINEARITY = 3, 45
REPORTS, PROGRAM, LEFT_OUT, IS_LINEARITY, ORIS_CODE, UNIT_ID = -17, -22, -25, -32, -95, -97
KEPT_OUT_114, INTERFERENCE, KEPT_OUT_118 = -114, -117, -118
OPERATING_TIME_PID, AVAILABLE_CODES, LIMIT_PID = 1001, 1002, 1003
OCCURRENCE_TYPE, OCCURRENCE_SECONDS, OCCURRENCE_TAG = -3, -13, -21
EXCURSION_TYPE, DOWNTIME_TYPE = 3, 4

# Field B of the PIDs: the quantity.
UNIT = 1
OPERATING_TIME, STATUS, LOAD, LOAD_PERCENT, HEAT, HEAT_PERCENT = 10, 15, 20, 21, 30, 31
SO2_MASS, SO2_RATE, NOX_RATE, NOX_MASS, NOX_DIFFERENCE = 40, 41, 50, 51, 52
NOX_RATE_EXCURSIONS, NOX_RATE_DOWNTIMES = 53, 54
CAPACITY, MAX_LOAD, UPPER_LOAD, LOWER_LOAD, NAMEPLATE = 901, 902, 903, 904, 905
SPANS, NOX_DEFAULT, DILUENT_CAP, SO2_DEFAULT, NOX_PPM_DEFAULT = 910, 920, 921, 922, 923
NOX_LIMIT, POUNDS_PER_TON = 930, 990
ANALYZERS = {"SO2": 110, "NOX": 111, "CO2": 112, "O2": 113, "FLOW": 114, "OP": 115}
INTERFERENCE_CHECK = 116
LINEARITY_CHECKS = {"SO2": 120, "NOX": 121, "CO2": 122, "O2": 123}

Site = namedtuple("Site", "folder plant facts hourly_file plan parameters columns minutes status_pid special_values relationships "
                          "occurrences")
Minutes = namedtuple("Minutes", "pid column decimals per_hour_total")

COLUMNS = ("pid", "name", "description", "units", "format", "interval", "io_type", "value", "aggregation", "formula", "uses",
           "roll_up", "type")
Parameter = namedtuple("Parameter", (*COLUMNS, "source"))  # source: for PROVENANCE.md

# What the hourly files hold: column, quantity, name, unit, format, the parameter of the monitoring plan that its
# flag is about, how longer intervals are read, description.
HOURLY = (
    ("OPTIME", OPERATING_TIME, "Operating time", "hr", "0.00", None, "sum", "Part of the hour that the unit operated"),
    ("GLOAD", LOAD, "Gross load", "MW", "0", None, "average", "Gross electrical load"),
    ("HTINPUT", HEAT, "Heat input", "mmBtu", "0.0", "HI", "sum", "Heat input of the hour"),
    ("SO2MASS", SO2_MASS, "SO2 mass", sources.unit_in_text("monitoring_parameter", "SO2"), "0.0", "SO2", "sum",
     "SO2 mass emissions of the hour"),
    ("NOXRATE", NOX_RATE, "NOx rate", sources.unit_in_text("monitoring_parameter", "NOXR"), "0.000", "NOXR",
     "average", "NOx emission rate"),
    ("NOXMASS", NOX_MASS, "NOx mass", sources.unit_in_text("monitoring_parameter", "NOX"), "0.0", "NOX", "sum",
     "NOx mass emissions of the hour"),
)


# What an analyzer or monitor measures, and in which unit.
ANALYZER_NAMES = {"SO2": ("SO2", "ppm"), "NOX": ("NOx", "ppm"), "CO2": ("CO2", "%"), "O2": ("O2", "%"),
                  "FLOW": ("Stack flow", "kscfm"), "OP": ("Opacity", "%")}


class Builder:
    """Collects the parameters of one unit."""

    def __init__(self, unit, hourly_file):
        self.unit, self.hourly_file, self.parameters = unit, hourly_file, []
        self.special_values, self.relationships = [], []

    def pid(self, quantity, time_type, origin, number=0):
        return display(self.unit, quantity, time_type, origin, number)

    def _add(self, pid, name, text, units, form, io_type, source, value="", aggregation="", formula="", uses=(), roll_up="",
             parameter_type=""):
        interval = INTERVALS[int(pid.split("-")[2])]
        self.parameters.append(Parameter(pid, name, text, units, form, interval, io_type, value, aggregation, formula,
                                         ";".join(uses), roll_up, parameter_type, source))
        return pid

    def hourly(self):
        for column, quantity, name, units, form, _, roll_up, text in HOURLY:
            self._add(self.pid(quantity, HOUR, FOUND), name, text, units, form, DATABASE,
                      f"column {column} of {self.hourly_file}, as found", roll_up=roll_up)

    def derived(self, quantity, time_type, name, units, form, text, how, roll_up=""):
        return self._add(self.pid(quantity, time_type, DERIVED), name, f"Derived: {text}", units, form, DATABASE,
                         f"derived: {how}", roll_up=roll_up)

    def constant(self, quantity, name, units, value, source, text="", number=0, io_type=PLAN_CONSTANT):
        return self._add(self.pid(quantity, NO_TIME, FOUND, number), name, text, units, "", io_type, source,
                         sources.plain_number(value))

    def aggregate(self, quantity, time_type, name, units, form, how, used, number=0):
        return self._add(self.pid(quantity, time_type, CALCULATED, number), name, f"Calculated: {how} of {used}", units, form,
                         CALCULATION, "calculated by the engine", aggregation=how, uses=(used,))

    def formula(self, quantity, time_type, name, units, form, text, formula, uses, number=0):
        return self._add(self.pid(quantity, time_type, CALCULATED, number), name, f"Calculated: {text}", units, form, CALCULATION,
                         "calculated by the engine", formula=formula.format(*(f"[{u}]" for u in uses)), uses=uses)

    def special(self, pid, number, value):
        kind = {bool: "boolean", int: "integer", str: "text"}[type(value)]
        self.special_values.append((pid, number, kind, str(value).lower() if kind == "boolean" else value))

    def identity(self, plant, unit):
        """The parameter that stands for the unit itself."""
        pid = self.constant(UNIT, "Unit", "", sources.unit_name(plant, unit), "list of facilities and units",
                            "The unit itself: its special values name it in electronic reports", io_type=CONSTANT)
        for number, value in ((REPORTS, True), (ORIS_CODE, int(plant)), (UNIT_ID, unit)):
            self.special(pid, number, value)

    def analyzers(self, found, remark):
        """Parameters of analyzers and monitors: what calibrations, interference checks and linearity checks are made on."""
        for analyzer in found:
            number = 1 + sum(a.type == analyzer.type for a in found[:found.index(analyzer)])
            self._analyzer(analyzer, number, remark if analyzer.in_service else "replaced during 2007")

    def _analyzer(self, analyzer, number, remark):
        name, units = ANALYZER_NAMES[analyzer.type]
        where = f"{analyzer.component}, {analyzer.place}"

        def add(quantity, what, text, parameter_type):
            return self._add(self.pid(quantity, MINUTE, FOUND, number), f"{name} {what} {where}", f"{text}; {remark}", units, "0.0",
                             DATABASE, f"monitoring plan, component {where}; no values", parameter_type=parameter_type)

        word = "analyzer" if analyzer.type in LINEARITY_CHECKS else "monitor"
        calibrated = [add(ANALYZERS[analyzer.type], word, sources.code_text("component_type", analyzer.type), CALIBRATED)]
        if analyzer.type == "FLOW":
            calibrated.append(add(INTERFERENCE_CHECK, "interference check", sources.code_text("test_type", "INTCHK"), CALIBRATED))
        for pid in calibrated:
            self.special(pid, PROGRAM, "40CFR60" if analyzer.type == "OP" else "40CFR75")
            for special in (LEFT_OUT, KEPT_OUT_114, INTERFERENCE, KEPT_OUT_118):
                self.special(pid, special, special == INTERFERENCE and pid != calibrated[0]
                             or special == LEFT_OUT and not analyzer.in_service)
        if analyzer.type in LINEARITY_CHECKS:
            linearity = add(LINEARITY_CHECKS[analyzer.type], "linearity check", sources.code_text("test_type", "LINE"), LINEARITY)
            self.special(linearity, IS_LINEARITY, int(analyzer.in_service))

    def operation(self):
        """Which parameter has the operating time, and which codes count as available where codes come from flags."""
        operating_time = self.pid(OPERATING_TIME, HOUR, FOUND)
        coded = {self.pid(quantity, HOUR, FOUND) for _, quantity, _, _, _, planned, *_ in HOURLY if planned}
        for p in self.parameters:
            if p.io_type in (CONSTANT, PLAN_CONSTANT, OCCURRENCE) or p.pid == operating_time:
                continue
            self.special(p.pid, OPERATING_TIME_PID, number_form(operating_time))
            if p.pid in coded:
                self.special(p.pid, AVAILABLE_CODES, ",".join(map(str, codes.available())))

    def occurrences(self, column, quantity, name, limit, excursions, downtimes, lower_load):
        """A limit of an hourly quantity, and the two parameters that its excursions and the downtimes of its monitors are recorded
        for."""
        constant = self.constant(NOX_LIMIT, f"{name} limit", limit["units"], limit["value"], limit["rule"],
                                 f"{limit['rule']}: limit for the {limit['average']} average, of {limit['for']}; what this unit's "
                                 "permit says is not in the sources", io_type=CONSTANT)
        tag = self.pid(quantity, HOUR, FOUND)
        made = []
        for field, what, how, kind in (
                (excursions, "excursions", f"hours with measured data above {constant}", EXCURSION_TYPE),
                (downtimes, "monitor downtimes", "hours with substitute data, in whole or in part", DOWNTIME_TYPE)):
            pid = self._add(self.pid(field, NO_TIME, DERIVED), f"{name}, {what}", f"Derived: {how}", "", "", OCCURRENCE,
                            f"derived: {how}")
            for number, value in ((OCCURRENCE_TAG, number_form(tag)), (OCCURRENCE_TYPE, kind), (OCCURRENCE_SECONDS, 3600)):
                self.special(pid, number, value)
            made.append(pid)
        self.special(made[0], LIMIT_PID, number_form(constant))
        return occurrences.Derivation(column, *made, limit, Fraction(lower_load))

    def nameplate(self, plant, unit):
        self.constant(NAMEPLATE, "Nameplate capacity", "MW", sources.nameplate(plant, unit), "list of facilities and units",
                      io_type=CONSTANT)

    def limits(self, plan):
        """What the monitoring plan of every unit says about heat input and load."""
        self.constant(CAPACITY, "Rated heat input", "mmBtu/hr", plan.capacity(), "monitoring plan, unit capacity")
        names = ((MAX_LOAD, "Maximum load"), (UPPER_LOAD, "Upper boundary of operation"),
                 (LOWER_LOAD, "Lower boundary of operation"))
        for (quantity, name), value in zip(names, plan.load_limits()):
            self.constant(quantity, name, "MW", value, "monitoring plan, load record")

    def minutes(self, column, quantity, name, units, decimals, per_hour_total, how):
        """Derived minutes of one column, with averages of quarter hours and hours over them."""
        derived = self.derived(quantity, MINUTE, f"{name}, minute", units, "0." + "0" * decimals,
                               f"made from column {column} of the hourly file", how, "average")
        quarter, hour = (self.aggregate(quantity, time_type, f"{name}, {suffix}", units, "0.000", "average", derived, number)
                         for time_type, suffix, number in ((QUARTER_HOUR, "quarter hour", 0), (HOUR, "hour from minutes", 1)))
        day = self.aggregate(quantity, DAY, f"{name}, day from minutes", units, "0.000", "average", hour, 3)
        self.relationships += [(derived, quarter), (derived, hour), (hour, day)]
        return Minutes(derived, column, decimals, per_hour_total)

    def common_calculations(self):
        """What is calculated for every unit: days, months, percentages."""
        hour = {quantity: self.pid(quantity, HOUR, FOUND) for _, quantity, *_ in HOURLY}
        pounds = self.constant(POUNDS_PER_TON, "Pounds per ton", "lb/ton", "2000", "definition of the short ton", io_type=CONSTANT)
        self.formula(LOAD_PERCENT, HOUR, "Load, percent", "%", "0.0", "gross load as percent of the maximum load",
                     "{0} / {1} * 100", (hour[LOAD], self.pid(MAX_LOAD, NO_TIME, FOUND)))
        self.formula(HEAT_PERCENT, HOUR, "Heat input, percent", "%", "0.0", "heat input as percent of the rated heat input",
                     "{0} / {1} * 100", (hour[HEAT], self.pid(CAPACITY, NO_TIME, FOUND)))
        self.formula(SO2_RATE, HOUR, "SO2 rate", "lb/mmBtu", "0.000", "SO2 mass divided by heat input", "{0} / {1}",
                     (hour[SO2_MASS], hour[HEAT]))
        calculated = self.formula(NOX_MASS, HOUR, "NOx mass, calculated", "lb/hr", "0.0", "NOx rate times heat input",
                                  "{0} * {1}", (hour[NOX_RATE], hour[HEAT]))
        self.formula(NOX_DIFFERENCE, HOUR, "NOx mass, difference", "%", "0.00", "calculated NOx mass against the reported one",
                     "({0} - {1}) / {1} * 100", (calculated, hour[NOX_MASS]))
        for time_type, of in ((DAY, "of the day"), (MONTH, "of the month")):
            self.aggregate(OPERATING_TIME, time_type, f"Operating time {of}", "hr", "0.00", "sum", hour[OPERATING_TIME])
            self.aggregate(LOAD, time_type, f"Gross load {of}, average", "MW", "0.0", "average", hour[LOAD])
            self.aggregate(LOAD, time_type, f"Gross load {of}, highest", "MW", "0", "maximum", hour[LOAD], 1)
            self.aggregate(LOAD, time_type, f"Gross load {of}, lowest", "MW", "0", "minimum", hour[LOAD], 2)
            self.aggregate(HEAT, time_type, f"Heat input {of}", "mmBtu", "0", "sum", hour[HEAT])
            self.aggregate(SO2_MASS, time_type, f"SO2 mass {of}", "lb", "0", "sum", hour[SO2_MASS])
            self.aggregate(NOX_RATE, time_type, f"NOx rate {of}", "lb/mmBtu", "0.000", "average", hour[NOX_RATE])
            self.aggregate(NOX_MASS, time_type, f"NOx mass {of}", "lb", "0", "sum", hour[NOX_MASS])
        self.relationships += [(pid, self.pid(quantity, DAY, CALCULATED)) for quantity, pid in hour.items()]
        for quantity, name in ((SO2_MASS, "SO2"), (NOX_MASS, "NOx")):
            self.formula(quantity, MONTH, f"{name} mass of the month, tons", "ton", "0.0",
                         f"{name} mass of the month in short tons", "{0} / {1}", (self.pid(quantity, MONTH, CALCULATED), pounds), 1)


def columns_of(builder):
    """What the wide hourly file holds: PID, column, and the parameter of the monitoring plan that its flag is about."""
    return tuple((builder.pid(quantity, HOUR, FOUND), column, planned) for column, quantity, _, _, _, planned, *_ in HOURLY)


def barry5():
    plan, b = sources.BarryPlan(), Builder(5, "barry5_hourly_2007.csv")
    b.hourly()
    status = b.derived(STATUS, HOUR, "Unit status", "", "", "a text where the unit's status changes",
                       "operating, part hour or off, from OPTIME; written for the hours where it changes and after a gap")

    minutes = (b.minutes("GLOAD", LOAD, "Gross load", "MW", 1, False, "mean of an hour's operating minutes = GLOAD"),
               b.minutes("HTINPUT", HEAT, "Heat input rate", "mmBtu/hr", 2, True,
                         "sum of an hour's operating minutes / 60 = HTINPUT"),
               b.minutes("NOXRATE", NOX_RATE, "NOx rate", "lb/mmBtu", 4, False, "mean of an hour's operating minutes = NOXRATE"))

    b.limits(plan)
    for number, stack in enumerate(plan.STACKS, 1):
        for step, (component, name, units) in enumerate((("SO2", "SO2", "ppm"), ("NOX", "NOx", "ppm"), ("CO2", "CO2", "%"),
                                                         ("FLOW", "Stack flow", "kscfm"))):
            b.constant(SPANS + step, f"{name} span {stack}", units, plan.span(stack, component),
                       f"monitoring plan, span of stack {stack}", number=number)
        b.constant(NOX_DEFAULT, f"Maximum NOx rate {stack}", "lb/mmBtu", plan.default(stack, "NORX"),
                   f"monitoring plan, default NORX of stack {stack}", number=number)
        b.constant(DILUENT_CAP, f"CO2 diluent cap {stack}", "%", plan.default(stack, "CO2N"),
                   f"monitoring plan, default CO2N of stack {stack}", number=number)
    b.nameplate("3", "5")
    b.common_calculations()
    b.identity("3", "5")
    b.analyzers(plan.analyzers(), "no values of it were found in public")
    derivation = b.occurrences("NOXRATE", NOX_RATE, "NOx rate", sources.emission_limit("NOXR"), NOX_RATE_EXCURSIONS,
                               NOX_RATE_DOWNTIMES, plan.load_limits()[2])
    b.operation()
    facts = (("dahs_id", "1"), ("site_id", "BARRY5"), ("description", "Barry unit 5"),
             ("complete_name", "Barry (ORIS 3), Alabama, unit 5: hourly emissions of 2007, July and August absent"))
    return Site("barry5", "3", facts, b.hourly_file, plan, tuple(b.parameters), columns_of(b), minutes, status,
                tuple(b.special_values), tuple(b.relationships), derivation)


def smith_sct1():
    plan, b = sources.SmithPlan(), Builder(1, "smith_sct1_hourly_2007.csv")
    b.hourly()
    b.limits(plan)
    for number, (fuel, name) in enumerate((("PNG", "gas"), ("OIL", "oil")), 1):
        b.constant(NOX_DEFAULT, f"Maximum NOx rate, {name}", "lb/mmBtu", plan.default("NORX", fuel),
                   f"monitoring plan, default NORX for {name}", number=number)
        b.constant(NOX_PPM_DEFAULT, f"Maximum NOx concentration, {name}", "ppm", plan.default("NOCX", fuel),
                   f"monitoring plan, default NOCX for {name}", number=number)
    so2 = b.constant(SO2_DEFAULT, "SO2 rate of pipeline gas", "lb/mmBtu", plan.default("SO2R", "PNG"),
                     "monitoring plan, default SO2R for gas")
    b.nameplate("54", "SCT1")
    b.formula(SO2_MASS, HOUR, "SO2 mass on gas, calculated", "lb/hr", "0.000",
              "SO2 rate of pipeline gas times heat input (equation D-5)", "{0} * {1}", (so2, b.pid(HEAT, HOUR, FOUND)))
    b.common_calculations()
    b.identity("54", "SCT1")
    b.analyzers(plan.analyzers(), "there since 2014-10-01, after the hours of this site")
    b.operation()
    facts = (("dahs_id", "2"), ("site_id", "SMITHCT1"), ("description", "Smith combustion turbine SCT1"),
             ("complete_name", "Smith Generating Facility (ORIS 54), Kentucky, combustion turbine SCT1: hourly emissions of 2007, "
                               "January to April and October to December"))
    return Site("smith-sct1", "54", facts, b.hourly_file, plan, tuple(b.parameters), columns_of(b), (), None,
                tuple(b.special_values), tuple(b.relationships), None)


def all_sites():
    return barry5(), smith_sct1()
