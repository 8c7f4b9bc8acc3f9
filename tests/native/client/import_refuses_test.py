"""Gives the importer every file of the list of refused ones, and the demo plants, which are in order."""

import json
import os
import pathlib
import subprocess
import sys
import tempfile

SOURCE = pathlib.Path(os.environ["VTDN_SOURCE"])
CHECK = sys.argv[1]


def check(folder):
    run = subprocess.run([CHECK, folder], capture_output=True, text=True, encoding="utf-8")
    return run.returncode, run.stdout.splitlines()


def write_folder(folder, files):
    for name, content in files.items():
        path = folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content.encode("utf-8"))


def folder_verdict(files):
    with tempfile.TemporaryDirectory() as name:
        write_folder(pathlib.Path(name), files)
        return check(name)


def main():
    cases = json.loads((SOURCE / "tests/native/demo_data/refused.json").read_text(encoding="utf-8"))
    passed, failures = 0, []

    def expect(name, good, said):
        nonlocal passed
        if good:
            passed += 1
        else:
            failures.append(f"{name}: {said}")

    code, said = folder_verdict(cases["good"])
    expect("the good folder is accepted", code == 0, said)
    for case in cases["refused"]:
        code, said = folder_verdict({**cases["good"], case["file"]: case["content"]})
        # A file as a whole, which has no line, is line 1 in the list.
        places = [f"{case['file']}:{case['line']}:"] + ([f"{case['file']}:"] if case["line"] == 1 else [])
        expect(case["name"], code == 1 and any(line.startswith(tuple(places)) for line in said), said)
    for plant in ("barry5", "smith-sct1"):
        code, said = check(SOURCE / "data/demo" / plant)
        expect(f"the plant {plant} is in order", code == 0, said)
    for failure in failures:
        print("FAILED", failure)
    print(f"{passed} passed, {len(failures)} failed")
    return 1 if failures else 0


sys.exit(main())
