#!/usr/bin/env bash
# The component from the script host.
. "$(dirname "${BASH_SOURCE[0]}")/../lib.sh"

here=$VTDN_SOURCE/tests/system/vbscript
out=$VTDN_BUILD/system/vbscript
log=$out/tests.log
mkdir -p "$out"

host() { "$VTDN_RUN" cscript //nologo "$(windows_path "$1")"; }

# with_checks NAME: the script behind what all of them share, since scripts cannot include one another.
with_checks() {
    cat "$here/checks.vbs" "$here/$1" >"$out/$1"
    host "$out/$1" | tee -a "$log"
}

prepare_demo
expect '^SO2 mass of Barry (ORIS 3).*: 736 of 744 hours have a value, 5254710.5 lb in all' \
    host "$VTDN_SOURCE/samples/vbscript/read_a_month.vbs"
expect '^1440 minutes written to 511010001' host "$VTDN_SOURCE/samples/vbscript/write_a_day.vbs"
expect '^NOx rate: 47 intervals of 1h down, 0 of them excludable, 86 over a limit' host "$VTDN_SOURCE/samples/vbscript/downtime_report.vbs"
echo "3 passed, 0 failed" >"$log"
with_checks clients.vbs
with_checks members.vbs
with_checks data_points.vbs
with_checks occurrences.vbs
with_checks again.vbs
host "$here/names.js" | tee -a "$log"
expect_alarms "2008-05-01 00:00,2,Test,Group,VBScript,Written by a script"
echo "1 passed, 0 failed" >>"$log"
add_up "$log"
