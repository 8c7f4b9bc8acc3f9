#!/usr/bin/env bash
# The C++ samples and the early-bound clients, through the registered component.
. "$(dirname "${BASH_SOURCE[0]}")/../lib.sh"

log=$VTDN_BUILD/system/cpp.log

# clients ARGS...: the test program; its own count becomes one of this suite.
clients() {
    "$VTDN_RUN" "$VTDN_BUILD/bin/system_cpp_clients.exe" "$@" | tee "$log.gtest"
    tr -d '\r' <"$log.gtest" | sed -n 's/^\[  PASSED  \] \([0-9]*\) tests\{0,1\}\..*/\1 passed, 0 failed/p' >>"$log"
}

prepare_demo
expect '^736 of 744 hours have a value, 5254710.5 lb in all' "$VTDN_RUN" "$VTDN_BUILD/bin/read_a_month.exe"
expect '^1440 minutes written to 511010001' "$VTDN_RUN" "$VTDN_BUILD/bin/write_a_day.exe"
expect '^NOx rate: 47 intervals of 1h down, 0 of them excludable, 86 over a limit' "$VTDN_RUN" "$VTDN_BUILD/bin/downtime_report.exe"
echo "3 passed, 0 failed" >"$log"
clients "--gtest_filter=-*SecondProcess.*"
clients "--gtest_filter=*SecondProcess.*"
expect_alarms "$(for severity in 4 3 2 1 0; do echo "2008-02-29 12:00,$severity,,,,Opacity"; done)"
echo "1 passed, 0 failed" >>"$log"
add_up "$log"
