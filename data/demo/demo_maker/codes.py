"""Monitor codes of the demo sites: the method-of-determination codes, and codes of the sites' own from 100 on."""

from . import sources

NONE = 0
CERTIFIED_PRIMARY = 1  # method-of-determination code 01
NOT_OPERATING = 100
FLAG_BASE = 100  # flag n of the hourly files becomes code 100 + n, unless a method-of-determination code says the same
FLAG_MEASURED = "1"
DERIVED = 110

# Flags of the hourly files that occur, in the words of the file format, as far as they have any.
FLAG_NAMES = {
    "1": ("Measured", "Measured, by a method that has no method-of-determination code", 10),
    "2": ("Calculated", "Calculated from other values", 10),
    "3": ("Substitute", "Substitute data; the file does not say by which procedure", 30),
    "4": ("Meas.+Subst.", "Measured and substitute data in the same hour", 25),
    "98": ("Flag 98", "Flag 98 of the hourly file; no explanation of it was found", 15),
}

AVAILABLE_FLAGS = ("1", "2")  # flags of hours without substitute data

# Which code a computed value gets when its inputs carry several: substitute data shows through, and what is derived above all.
CLASS_RANKS = {"measured": 10, "": 15, "default": 20, "substitute": 30}
OFF_RANK, DERIVED_RANK = 1, 40

TRUSTED = ("verbatim",)  # status of a wording that can be given without a remark


def flag_code(flag, certified_primary):
    """Monitor code of a how-determined flag of the hourly files."""
    if flag == FLAG_MEASURED and certified_primary:
        return CERTIFIED_PRIMARY
    if flag not in FLAG_NAMES:
        raise ValueError(f"flag {flag} is not known")
    return FLAG_BASE + int(flag)


def available():
    """Codes that count as available data: measured ones whose wording is not unverified, and of the demo's own codes those
    for measured and calculated."""
    measured = [int(row["modc"]) for row in sources.read_csv("modc_codes.csv")
                if row["class"] == "measured" and row["status"] != "unverified"]
    return sorted(measured + [FLAG_BASE + int(flag) for flag in AVAILABLE_FLAGS])


def rows():
    """Rows of monitor_codes.csv: code, short name, long name, rank."""
    yield NONE, "None", "No monitor code", 0
    for row in sorted(sources.read_csv("modc_codes.csv"), key=lambda r: int(r["modc"])):
        long_name, status = row["description"], row["status"]
        if status not in TRUSTED:
            long_name += f" [wording: {status}]"
        yield int(row["modc"]), f"MODC {row['modc']}", long_name, CLASS_RANKS[row['class']]
    yield NOT_OPERATING, "Off", "Derived: the unit did not operate in this hour, there is no value", OFF_RANK
    for flag, (short, long_name, rank) in FLAG_NAMES.items():
        if flag == "98":
            yield DERIVED, "Derived", "Derived: made for this demo from hourly values, not recorded by a monitor", DERIVED_RANK
        yield FLAG_BASE + int(flag), short, f"Derived from flag {flag}: {long_name}", rank
