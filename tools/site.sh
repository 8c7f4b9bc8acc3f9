# The component registered in Wine, and the demo site to try it on. Sourced by ./run demo and ./run shell.
# shellcheck shell=bash disable=SC2034,SC2154

# A path as Windows programs know it.
windows_path() { printf 'Z:%s\n' "${1//\//\\}"; }

vtdn() { tools/win32 build/win32/bin/vtdn.exe "$@"; }

# register LIBRARY.dll...: as an installer would; `/u` before the names takes them out again.
register() {
    local undo=()
    if [ "$1" = /u ]; then
        undo=(/u)
        shift
    fi
    local library
    for library in "$@"; do
        tools/win32 regsvr32 /s "${undo[@]}" "$(windows_path "$ROOT/build/win32/bin/$library")" ||
            die "regsvr32 refused $library (exit code $?). Is it built? Try: rm -rf build/wine, then again."
    done
}

# make_demo_site FOLDER: fills FOLDER, which becomes VANTOR_HOME, with the two plants of data/demo. The directory
# of sites names its files in full, so the folder is filled in its place; the file `whole` says that it is.
make_demo_site() {
    local home=$1 plant
    rm -rf "$home"
    mkdir -p "$home"
    for plant in barry5 smith-sct1; do
        VANTOR_HOME=$(windows_path "$home") vtdn site import "data/demo/$plant" || die "the import above failed."
    done
    touch "$home/whole"
}
