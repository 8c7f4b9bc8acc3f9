# Reads off a suite's output how many of its tests passed and failed: sets ok and bad. Sourced by tools/test.sh.
# shellcheck shell=bash disable=SC2034

# GoogleTest says how many tests it runs and, if it lives to the end, how many passed. What it announced and did
# not pass has failed; so has a program that announces nothing. A test may run programs with tests of their own,
# so the result is believed only behind the line that says that all those announced were run.
count_gtest() {
    local log=$1 status=$2 announced
    announced=$(sed -n 's/^\[==========\] Running \([0-9]*\) tests\{0,1\} from.*/\1/p' "$log" | head -n 1)
    ok=$(sed -n "/^\[==========\] $announced tests\{0,1\} from .* ran\./,\$ s/^\[  PASSED  \] \([0-9]*\) test.*/\1/p" "$log" |
        tail -n 1)
    [ -n "$ok" ] || ok=$(grep -c '^\[       OK \]' "$log" || true)
    bad=$((${announced:-0} - ok))
    if [ $bad -le 0 ] && { [ "$status" != 0 ] || [ "$ok" = 0 ]; }; then
        bad=1
    fi
}

# Any other suite ends with its own count.
count_script() {
    local log=$1 status=$2
    read -r ok bad < <(tail -n 1 "$log" | sed -n 's/^\([0-9]*\) passed, \([0-9]*\) failed$/\1 \2/p') || ok=0 bad=1
    if [ "$bad" = 0 ] && { [ "$status" != 0 ] || [ "$ok" = 0 ]; }; then
        bad=1
    fi
}
