"""Figures computed from the sources: monthly values to compare an engine with, and how well calculations agree."""

from fractions import Fraction

from . import sites, sources
from .pids import CALCULATED, MONTH

# Monthly parameters: quantity, number (field E), column, what is taken of the month's hours.
MONTHLY = (
    (sites.OPERATING_TIME, 0, "OPTIME", "sum"),
    (sites.LOAD, 0, "GLOAD", "average"),
    (sites.LOAD, 1, "GLOAD", "maximum"),
    (sites.LOAD, 2, "GLOAD", "minimum"),
    (sites.HEAT, 0, "HTINPUT", "sum"),
    (sites.SO2_MASS, 0, "SO2MASS", "sum"),
    (sites.NOX_RATE, 0, "NOXRATE", "average"),
    (sites.NOX_MASS, 0, "NOXMASS", "sum"),
)

TAKE = {"sum": sum, "average": lambda v: sum(v) / len(v), "maximum": max, "minimum": min}


def monthly_rows(site):
    """pid, time, value of every month with data; exact arithmetic, then the nearest double in its shortest form."""
    unit = int(site.parameters[0].pid.split("-")[0])
    months = {}
    for hour in sources.hours(site.hourly_file):
        months.setdefault(hour.time[:7], []).append(hour)
    for quantity, number, column, how in MONTHLY:
        for month, hours in months.items():
            values = [Fraction(h.values[column]) for h in hours if h.values[column]]
            if values:
                yield sites.display(unit, quantity, MONTH, CALCULATED, number), f"{month}-01 00:00", repr(float(TAKE[how](values)))


class Agreement:
    """How a calculated value agrees with a reported one over the operating hours."""

    def __init__(self, hours, reported, calculate):
        pairs = [(calculate(h.values), float(h.values[reported])) for h in hours if h.operating]
        off = sorted(abs(c - r) / r for c, r in pairs if r)
        self.far_off = sum(d > 0.1 for d in off)
        self.hours = len(off)
        self.median, self.p95, self.largest = off[len(off) // 2], off[int(len(off) * 0.95)], off[-1]
        self.total = sum(c for c, _ in pairs) / sum(r for _, r in pairs) - 1


def nox_mass(values):
    return float(values["NOXRATE"]) * float(values["HTINPUT"])


def so2_mass_on_gas(values):
    return 0.0006 * float(values["HTINPUT"])


def agreements():
    """What is compared -> Agreement."""
    barry, smith = sites.all_sites()
    hours = {site.folder: sources.hours(site.hourly_file) for site in (barry, smith)}
    part = [h for h in hours["barry5"] if 0 < float(h.values["OPTIME"]) < 1]
    return {
        "Barry 5: NOx mass = NOx rate * heat input": Agreement(hours["barry5"], "NOXMASS", nox_mass),
        "the same, part hours only": Agreement(part, "NOXMASS", nox_mass),
        "Smith SCT1: NOx mass = NOx rate * heat input": Agreement(hours["smith-sct1"], "NOXMASS", nox_mass),
        "Smith SCT1: SO2 mass = 0.0006 * heat input": Agreement(hours["smith-sct1"], "SO2MASS", so2_mass_on_gas),
    }
