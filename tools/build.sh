# Configures and builds presets. Sourced by ./run after the set-up.
# shellcheck shell=bash disable=SC2034,SC2154

# build PRESET [TARGET...]: brings build/PRESET up to date; on failure says where and returns non-zero.
build() {
    local preset=$1 log=$ROOT/build/$1.log quiet=--quiet
    shift
    [ -t 1 ] && quiet=
    mkdir -p "$ROOT/build"
    step "Building $preset"
    if ! cmake --preset "$preset" -DVTDN_SQLITE_DIR="$SQLITE_DIR" -DVTDN_PUGIXML_DIR="$PUGIXML_DIR" \
        -DVTDN_GTEST_DIR="$GTEST_DIR" >"$log" 2>&1; then
        cat "$log" >&2
        complain "CMake could not configure $preset; its output is above."
        return 1
    fi
    # shellcheck disable=SC2086
    ninja -C "build/$preset" -k 0 $quiet "$@" || {
        complain "$preset does not build; the compiler's messages are above."
        return 1
    }
}
