"""Writes the files of docs/site-files.md."""

import csv
import io

from . import codes, minutes, occurrences, sites, sources

MINUTE_DAYS = ("2007-04-05", "2007-04-11")  # a week with a shut-down, part hours and substitute data
SEED = 20070405


def csv_text(header, rows):
    text = io.StringIO()
    writer = csv.writer(text, lineterminator="\n")
    writer.writerow(header)
    writer.writerows(rows)
    return text.getvalue()


def code_cell(code):
    return "" if code == codes.NONE else code


def hourly_text(site, hours):
    """Wide form: each value, and the code of those columns that have a flag or, like the load, none when the unit is off."""
    certified = {planned: site.plan.measured_by_certified_primary(planned) for _, _, planned in site.columns if planned}
    header = ["time"]
    for pid, column, _ in site.columns:
        header += [pid] if column == "OPTIME" else [pid, f"{pid} mc"]
    rows = []
    for hour in hours:
        row = [hour.time]
        for _, column, planned in site.columns:
            row.append(hour.values[column])
            if column == "OPTIME":
                continue
            if not hour.operating:
                row.append(codes.NOT_OPERATING)
            else:
                row.append(code_cell(codes.flag_code(hour.flags[column], certified[planned]) if planned else codes.NONE))
        rows.append(row)
    return csv_text(header, rows)


def minute_text(site, hours):
    """Wide form, one week."""
    week = [h for h in hours if MINUTE_DAYS[0] <= h.time[:10] <= MINUTE_DAYS[1]]
    made = [list(minutes.series(week, m.column, m.decimals, m.per_hour_total, SEED)) for m in site.minutes]
    header = ["time"] + [name for m in site.minutes for name in (m.pid, f"{m.pid} mc")]
    rows = [[cells[0][0]] + [x for _, value in cells for x in (value, codes.DERIVED if value else codes.NOT_OPERATING)]
            for cells in zip(*made)]
    return csv_text(header, rows)


def status_of(hour):
    fraction = float(hour.values["OPTIME"])
    return "off" if fraction == 0 else "operating" if fraction == 1 else "part hour"


def status_text(site, hours):
    """Long form: texts, for the hours where the status changes and the first hour after a gap between months."""
    rows, before = [], None
    for hour in hours:
        gap = before is not None and hour.time[:7] != before.time[:7] and int(hour.time[5:7]) - int(before.time[5:7]) > 1
        if before is None or gap or status_of(hour) != status_of(before):
            rows.append([hour.time, site.status_pid, status_of(hour), codes.DERIVED])
        before = hour
    return csv_text(["time", "pid", "value", "mc"], rows)


def site_files(site):
    """Path inside the site's folder -> text."""
    hours = sources.hours(site.hourly_file)
    files = {
        "site.csv": csv_text(("key", "value"), site.facts),
        "monitor_codes.csv": csv_text(("code", "short_name", "long_name", "rank"), codes.rows()),
        "units.csv": csv_text(("unit", "name"), sources.units_of_2007(site.plant)),
        "parameter_codes.csv": csv_text(("code", "short_name", "long_name"),
                                        ((number, *names) for number, names in enumerate(sources.parameter_codes(), 1))),
        "special_values.csv": csv_text(("pid", "id", "type", "value"), site.special_values),
        "relationships.csv": csv_text(("pid", "related_pid"), site.relationships),
        "parameters.csv": csv_text(sites.COLUMNS, ([getattr(p, c) for c in sites.COLUMNS] for p in site.parameters)),
        "values/hourly-2007.csv": hourly_text(site, hours),
    }
    if site.minutes:
        files["values/minute-2007-04-derived.csv"] = minute_text(site, hours)
    if site.status_pid:
        files["values/status-2007-derived.csv"] = status_text(site, hours)
    if site.occurrences:
        files["occurrences.csv"] = csv_text(occurrences.COLUMNS, occurrences.runs(site.occurrences, hours))
    return files
