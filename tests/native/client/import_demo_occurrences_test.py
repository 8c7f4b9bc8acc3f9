"""Imports the demo plants and compares the occurrences of the store with those that another reader finds in the files, and their
number in each month with the expected one."""

import csv
import os
import pathlib
import subprocess
import sys
from collections import Counter

SOURCE = pathlib.Path(os.environ["VTDN_SOURCE"])
LIST = sys.argv[1]
sys.dont_write_bytecode = True
sys.path.insert(0, str(SOURCE / "tests/native/demo_data"))

from site_files import Site, pid_number  # noqa: E402


def stored(plant):
    """The parts of the occurrences of a plant after its import."""
    run = subprocess.run([LIST, SOURCE / "data/demo" / plant], capture_output=True, text=True, encoding="utf-8")
    if run.returncode:
        raise RuntimeError(run.stdout)
    return [tuple(line.split("\t")) for line in run.stdout.splitlines()]


def written(plant):
    """The same from the files."""
    parts = []
    for tag, at in sorted(Site(SOURCE / "data/demo" / plant).occurrences.items()):
        for time, (excursion, downtime) in sorted(at.items()):
            for kind, part in (("excursion", excursion), ("downtime", downtime)):
                if part:
                    pid, category, reason, action, excludable, *limit = part
                    parts.append(tuple(map(str, (tag, f"{time:%Y-%m-%d %H:%M}", kind, pid, category, reason, action,
                                                 int(excludable), *(limit or ("", ""))))))
    return parts


def months(parts):
    """Number of hours by PID, month, category and excludable flag."""
    return Counter((pid, time[:7], category, excludable) for _, time, _, pid, category, _, _, excludable, *_ in parts)


def expected_months(plant):
    with open(SOURCE / "data/demo/expected" / f"{plant}-occurrences.csv", newline="", encoding="utf-8") as file:
        return {(str(pid_number(row["pid"])), row["month"][:7], row["category"], row["excludable"]): int(row["hours"])
                for row in csv.DictReader(file)}


def main():
    barry, smith = stored("barry5"), stored("smith-sct1")
    checks = (
        ("every occurrence of barry5 is stored as the files have it", barry == written("barry5"), barry[:3]),
        ("the months of barry5 have as many hours as expected", months(barry) == expected_months("barry5"), months(barry)),
        ("barry5 has excursions and downtimes", {part[2] for part in barry} == {"excursion", "downtime"}, len(barry)),
        ("smith-sct1 has no occurrences", smith == [], smith[:3]),
    )
    for name, good, said in checks:
        if not good:
            print("FAILED", f"{name}: {said}")
    passed = sum(good for _, good, _ in checks)
    print(f"{passed} passed, {len(checks) - passed} failed")
    return 0 if passed == len(checks) else 1


sys.exit(main())
