# ./run test: builds the three presets, runs all suites and checks, and prints the count as its last line.
# shellcheck shell=bash disable=SC2034,SC2154
# shellcheck source=count.sh
. tools/count.sh

passed=0 failed=0 troubles=()

# count NAME PASSED FAILED SECONDS [LOG]: one suite's result, one line.
count() {
    local mark="ok    "
    passed=$((passed + $2)) failed=$((failed + $3))
    if [ "$3" -gt 0 ]; then
        mark="${red}FAILED${plain}"
        troubles+=("$1${5:+ (all of its output: $5)}")
    fi
    printf '  %s %-44s %5d passed %4d failed %5d s\n' "$mark" "$1" "$2" "$3" "$4"
}

# run_suite PRESET KIND NAME COMMAND...
run_suite() {
    local preset=$1 kind=$2 name=$3 runner='' start=$SECONDS status=0 ok bad
    local log=build/$preset/test-logs/$name.log
    shift 3
    [ "$preset" = native ] || runner=$ROOT/tools/$preset
    mkdir -p "build/$preset/test-logs"
    : >"$log" # and then appended to: a Windows program has a file position of its own
    if [ "$kind" = gtest ] && [ ! -e "$1" ]; then
        echo "$1 was not built" >>"$log"
    elif [ "$kind" = gtest ]; then
        (cd "build/$preset" && timeout 900 ${runner:+"$runner"} "$@") >>"$log" 2>&1 </dev/null || status=$?
    else
        (
            export VTDN_SOURCE=$ROOT VTDN_BUILD=$ROOT/build/$preset VTDN_RUN=$runner VTDN_DOTNET=$DOTNET_DIR
            cd "build/$preset" && timeout 900 "$@"
        ) >>"$log" 2>&1 </dev/null || status=$?
    fi
    sed -i 's/\r$//' "$log"
    "count_$kind" "$log" "$status"
    count "$preset/$name" "$ok" "$bad" $((SECONDS - start)) "$log"
    if [ "$bad" -gt 0 ]; then
        [ "$status" = 124 ] && say "      stopped after 900 seconds"
        [ "$status" != 0 ] && say "      exit code $status"
        grep -E -A 8 ': Failure$|ERROR: |runtime error|^FAILED' "$log" | head -n 40 | sed 's/^/      /' || true
        tail -n 5 "$log" | sed 's/^/      | /'
    fi
}

run_suites() {
    local preset=$1 line
    step "Testing $preset"
    while IFS=$'\t' read -r -a line; do
        [ ${#line[@]} -eq 0 ] || run_suite "$preset" "${line[@]}"
    done <"build/$preset/tests.txt"
}

# run_check NAME COMMAND...: a check that passes or fails as a whole.
run_check() {
    local name=$1 start=$SECONDS log=build/checks/$1.log
    shift
    mkdir -p build/checks
    if "$@" >"$log" 2>&1; then
        count "checks/$name" 1 0 $((SECONDS - start))
    else
        count "checks/$name" 0 1 $((SECONDS - start)) "$log"
        head -n 40 "$log" | sed 's/^/      /'
    fi
}

test_everything() {
    local preset check
    for preset in native win32 win64; do
        if ! build "$preset"; then
            count "$preset/build" 0 1 0
        fi
    done
    for preset in native win32 win64; do
        [ ! -f "build/$preset/tests.txt" ] || run_suites "$preset"
    done
    step "Checking the sources"
    export VTDN_CACHE=$CACHE
    for check in tools/checks/*; do
        run_check "$(basename "$check")" "$check"
    done
    if [ ${#troubles[@]} -gt 0 ]; then
        say "${red}Failed:${plain}"
        printf '  %s\n' "${troubles[@]}"
    fi
    [ "$passed" -gt 0 ] || failed=$((failed + 1))
    say "$passed passed, $failed failed"
    [ "$failed" = 0 ]
}

with_lock build/lock "Another ./run works in this clone; waiting for it." test_everything
