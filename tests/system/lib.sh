# What the system suites share: the demo sites and a small one with occurrences in a home of their own, and the
# component registered.
# shellcheck shell=bash
set -euo pipefail

windows_path() { printf 'Z:%s\n' "${1//\//\\}"; }

HOME_DIR=$VTDN_BUILD/system/home
VANTOR_HOME=$(windows_path "$HOME_DIR")
export VANTOR_HOME

# Every suite starts from freshly imported sites.
prepare_demo() {
    "$VTDN_RUN" regsvr32 /s "$(windows_path "$VTDN_BUILD/bin/VTWrapDN.dll")"
    "$VTDN_RUN" regsvr32 /s "$(windows_path "$VTDN_BUILD/bin/VTEngine.dll")"
    rm -rf "$HOME_DIR"
    mkdir -p "$HOME_DIR"
    local site
    for site in data/demo/barry5 data/demo/smith-sct1 tests/system/occurrence_site; do
        "$VTDN_RUN" "$VTDN_BUILD/bin/vtdn.exe" site import "$(windows_path "$VTDN_SOURCE/$site")"
    done
}

# expect PATTERN COMMAND...: prints what the command prints, and fails unless a line of it matches.
expect() {
    local pattern=$1 answer
    shift
    answer=$("$@")
    printf '%s\n' "$answer"
    grep -q "$pattern" <<<"$answer"
}

# add_up LOG: one count of all the counts in it, for suites that are more than one program.
add_up() {
    tr -d '\r' <"$1" | awk '/^[0-9]+ passed, [0-9]+ failed$/ { p += $1; f += $3 }
                            END { printf "%d passed, %d failed\n", p, f; exit f > 0 }'
}

# expect_alarms LINES: the alarm log of the first demo site, newest first, is this.
expect_alarms() {
    diff - <("$VTDN_RUN" "$VTDN_BUILD/bin/vtdn.exe" alarm list --dahs 1 --csv | tr -d '\r') <<EOF
time,severity,category,group,source,message
$1
EOF
}
