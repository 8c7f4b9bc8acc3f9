#!/usr/bin/env python3
"""Makes the demo sites from the public files in source/.

    make_demo.py           writes barry5/, smith-sct1/, expected/ and PROVENANCE.md beside this script
    make_demo.py --check   makes them in a temporary folder and compares byte for byte; exit code 1 when anything differs
"""

import argparse
import sys
import tempfile
from pathlib import Path

HERE = Path(__file__).resolve().parent
sys.path.insert(0, str(HERE))
sys.dont_write_bytecode = True

from demo_maker import figures, occurrences, provenance, sites, sources, writer  # noqa: E402


def make(folder):
    """Writes everything below the folder and returns the relative paths written."""
    files = {"PROVENANCE.md": provenance.text()}
    for site in sites.all_sites():
        files.update({f"{site.folder}/{name}": text for name, text in writer.site_files(site).items()})
        files[f"expected/{site.folder}-monthly.csv"] = writer.csv_text(("pid", "time", "value"), figures.monthly_rows(site))
        if site.occurrences:
            months = occurrences.monthly(site.occurrences, sources.hours(site.hourly_file))
            files[f"expected/{site.folder}-occurrences.csv"] = writer.csv_text(
                ("pid", "month", "category", "excludable", "runs", "hours"), months)
    for name, text in files.items():
        path = folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(text.encode("utf-8"))
    return sorted(files)


def made_files_here():
    """What lies where this script writes."""
    folders = [site.folder for site in sites.all_sites()] + ["expected"]
    found = [path for folder in folders for path in (HERE / folder).rglob("*") if path.is_file()]
    return sorted(["PROVENANCE.md"] + [path.relative_to(HERE).as_posix() for path in found])


def differences():
    """Sentences about every file that is missing, stray or different."""
    with tempfile.TemporaryDirectory() as folder:
        names = make(Path(folder))
        found = made_files_here()
        yield from (f"{name} is not made by this script" for name in found if name not in names)
        for name in names:
            if not (HERE / name).is_file():
                yield f"{name} is missing"
            elif (HERE / name).read_bytes() != (Path(folder) / name).read_bytes():
                yield f"{name} differs"


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--check", action="store_true", help="compare with what is there instead of writing")
    if not parser.parse_args().check:
        print(f"{len(make(HERE))} files written")
        return 0
    found = list(differences())
    print("\n".join(found) if found else "every file is as made")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
