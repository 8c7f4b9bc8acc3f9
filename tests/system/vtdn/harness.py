"""Runs vtdn and keeps count of what it does right."""

import os
import pathlib
import subprocess

BUILD = pathlib.Path(os.environ["VTDN_BUILD"])
SOURCE = pathlib.Path(os.environ["VTDN_SOURCE"])
RUN = os.environ["VTDN_RUN"]
WORK = BUILD / "system" / "vtdn"
HOME = WORK / "home"
SO2 = "5-040-3-00-00"
NOX = "5-050-3-00-00"

DONE, REFUSED, USAGE, ENVIRONMENT = 0, 1, 2, 3

passed, failures = 0, []


def windows(path):
    return "Z:" + str(path).replace("/", "\\")


def run(*words, stdin="", **environment):
    env = {**os.environ, "VANTOR_HOME": windows(HOME), **environment}
    command = [RUN, str(BUILD / "bin" / "vtdn.exe"), *words]
    done = subprocess.run(command, capture_output=True, input=stdin.encode("utf-8"), env=env, cwd=WORK, timeout=300)
    return done.returncode, done.stdout.decode("utf-8"), done.stderr.decode("utf-8")


def expect(name, condition, seen):
    global passed
    if condition:
        passed += 1
    else:
        failures.append(name)
        print(f"FAILED {name}\n{seen}")


def check(name, words, code, *, out=(), err=(), **more):
    """Runs a command and looks for texts in what it printed; returns its standard output."""
    seen = run(*words, **more)
    good = seen[0] == code and all(text in seen[1] for text in out) and all(text in seen[2] for text in err)
    expect(name, good, f"  vtdn {words}\n  exit code {seen[0]}\n  out: {seen[1]}\n  err: {seen[2]}")
    return seen[1]


def register(*options):
    for library in ("VTWrapDN.dll", "VTEngine.dll"):
        subprocess.run([RUN, "regsvr32", *options, "/s", windows(BUILD / "bin" / library)], check=True, timeout=120)


def finish():
    print(f"{passed} passed, {len(failures)} failed")
    return 1 if failures else 0
