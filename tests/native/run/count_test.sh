#!/usr/bin/env bash
# What ./run test makes of a suite's output: whatever did not certainly pass has failed.
. "$(dirname "${BASH_SOURCE[0]}")/../../../tools/lib.sh"
. "$ROOT/tools/count.sh"

log=$(mktemp)
trap 'rm -f "$log"' EXIT
passed=0 failed=0

# expect WHAT KIND EXIT-CODE OK BAD: counts the log on standard input.
expect() {
    local what=$1 kind=$2 status=$3 expected="$4 passed, $5 failed" ok='' bad=''
    cat >"$log"
    "count_$kind" "$log" "$status"
    if [ "$ok passed, $bad failed" = "$expected" ]; then
        passed=$((passed + 1))
    else
        failed=$((failed + 1))
        say "$what: expected $expected, counted $ok passed, $bad failed"
    fi
}

all_pass='[==========] Running 2 tests from 1 test suite.
[ RUN      ] Lists.Sort
[       OK ] Lists.Sort (0 ms)
[ RUN      ] Lists.Join
[       OK ] Lists.Join (0 ms)
[==========] 2 tests from 1 test suite ran. (0 ms total)
[  PASSED  ] 2 tests.'
one_fails=${all_pass/OK ] Lists.Join/FAILED ] Lists.Join}
one_fails="${one_fails/PASSED  ] 2 tests/PASSED  ] 1 test}
[  FAILED  ] 1 test, listed below:"

expect "all pass" gtest 0 2 0 <<<"$all_pass"
expect "all pass, but the program ends badly" gtest 1 2 1 <<<"$all_pass"
expect "one fails" gtest 1 1 1 <<<"$one_fails"
expect "one fails and the exit code hides it" gtest 0 1 1 <<<"$one_fails"
expect "one is skipped" gtest 0 1 1 <<<"${all_pass/PASSED  ] 2 tests/PASSED  ] 1 test}"
expect "a crash in the second test" gtest 139 1 1 < <(head -n 4 <<<"$all_pass")
expect "a quiet exit in the second test" gtest 0 1 1 < <(head -n 4 <<<"$all_pass")
expect "a crash after a program with tests of its own" gtest 139 3 2 < <(
    printf '[==========] Running 5 tests from 1 test suite.\n[       OK ] A.A (0 ms)\n%s\n' "${all_pass/Lists.Sort (0/A.B (0}"
)
expect "no test at all" gtest 0 0 1 <<<"${all_pass//2 tests/0 tests}"
expect "nothing printed" gtest 0 0 1 </dev/null
expect "the program is not there" gtest 0 0 1 <<<"x.exe was not built"

expect "a script whose tests pass" script 0 3 0 <<<"3 passed, 0 failed"
expect "a script with a failure" script 1 3 2 <<<"3 passed, 2 failed"
expect "a script that ends badly" script 1 3 1 <<<"3 passed, 0 failed"
expect "a script without tests" script 0 0 1 <<<"0 passed, 0 failed"
expect "a script that stops before its count" script 0 0 1 <<<"connecting"
expect "a script that goes on after its count" script 0 0 1 <<<$'3 passed, 0 failed\ngoodbye'
expect "a script that prints nothing" script 0 0 1 </dev/null

say "$passed passed, $failed failed"
[ $failed = 0 ]
