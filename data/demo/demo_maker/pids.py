"""Parameter ids: A-BBB-C-DD-EE and what the demo sites mean by each field."""

# Time-type digit C of the demo sites. 6 and 9 are no time types; 7 and 8 are not used here.
NO_TIME, MINUTE, QUARTER_HOUR, HOUR, DAY, MONTH = 0, 1, 2, 3, 4, 5

INTERVALS = {NO_TIME: "", MINUTE: "1m", QUARTER_HOUR: "15m", HOUR: "1h", DAY: "1d", MONTH: "1M"}

# Field D of the demo sites: where the values come from.
FOUND, DERIVED, CALCULATED = 0, 1, 2


def display(unit, quantity, time_type, origin, number=0):
    """Display form of the PID with these five fields."""
    return f"{unit}-{quantity:03d}-{time_type}-{origin:02d}-{number:02d}"


def number_form(pid):
    """The PID as the integer that programs use."""
    return int(pid.replace("-", ""))


def origin_of(pid):
    """Field D of a PID in display form."""
    return int(pid.split("-")[3])
