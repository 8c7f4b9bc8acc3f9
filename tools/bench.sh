# ./run bench: runs the bench programs one after the other on one core and tabulates what they print.
# shellcheck shell=bash disable=SC2034,SC2154

bench_everything() {
    local program name core data=build/bench outputs=()
    build win32 || exit 1
    # A round trip to Wine's server takes 7 us when program and server share a core and up to 50 us when not: a
    # new server inherits the core from here.
    wine_server 32 -k || true
    wine_server 32 -w
    core=$(taskset -pc $$ | sed 's/.*[^0-9]//') # the last that this process may use
    taskset -pc "$core" $$ >/dev/null
    while IFS= read -r program; do
        [ -n "$program" ] || continue
        name=$(basename "$program" .exe)
        step "Measuring: $name"
        rm -rf "${data:?}/$name"
        mkdir -p "$data/$name"
        (cd "$data/$name" && "$ROOT/tools/win32" "$program") >"$data/$name.json" ||
            die "$name ended with exit code $?. To see why: cd build/bench/$name && ../../../tools/win32 $program"
        outputs+=("$data/$name.json")
    done <build/win32/bench.txt
    [ ${#outputs[@]} -gt 0 ] || die "no bench is registered (vtdn_bench in bench/)."
    tools/bench_table bench/targets.json build/bench.json "${outputs[@]}"
}

with_lock build/lock "Another ./run works in this clone; waiting for it." bench_everything
