# Sets up what is missing on this machine: packages, 32-bit Wine, pinned sources. Sourced by ./run. When
# nothing is missing it asks no network and takes well under a second.
# shellcheck shell=bash disable=SC2034,SC2154
# shellcheck source=tools/wine.sh
. "$ROOT/tools/wine.sh"

SQLITE_DIR=$CACHE/${sqlite_package/@/-}/deps/sqlite3
PUGIXML_DIR=$CACHE/pugixml-$pugixml_version/src
DOTNET_DIR=$CACHE/${dotnet_package/@/-}
GTEST_DIR=/usr/src/googletest

# need COMMAND-OR-PATH PACKAGE WHY: notes a package to install unless the command or path is there already.
packages=()
need() {
    if [ "${1#/}" = "$1" ]; then
        command -v "$1" >/dev/null && return
    elif [ -e "$1" ]; then
        return
    fi
    packages+=("$2")
    say "    $2: $3"
}

as_root() {
    if [ "$(id -u)" = 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        die "this needs root, and sudo is not installed. As root, type: $*"
    fi
}

install_packages() {
    [ ${#packages[@]} -gt 0 ] || return 0
    command -v apt-get >/dev/null ||
        die "the packages above are missing and this machine has no apt-get. Install them, then run this again."
    step "Installing the ${#packages[@]} Debian packages above (apt-get's output: $CACHE/apt.log)"
    local install=(env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends "${packages[@]}")
    # The package lists are refreshed only when they do not serve.
    if ! { apt-get install --dry-run "${packages[@]}" && as_root "${install[@]}"; } >"$CACHE/apt.log" 2>&1; then
        if ! { as_root apt-get update -q && as_root "${install[@]}"; } >"$CACHE/apt.log" 2>&1; then
            tail -n 20 "$CACHE/apt.log" >&2
            die "apt-get could not install: ${packages[*]}"
        fi
    fi
    packages=()
}

# A folder to make something in, on the same file system as its final place.
new_in_cache() {
    mkdir -p "$CACHE"
    mktemp -d "$CACHE/.new.XXXXXX"
}

# fetch_npm NAME@VERSION SHA512 FOLDER WHAT [PATH...]: unpacks (those paths of) the package into FOLDER.
fetch_npm() {
    local package=$1 sha512=$2 final=$3 what=$4 new
    shift 4
    [ -d "$final" ] && return
    need npm npm "fetches $what"
    install_packages
    step "Fetching $what ($package)"
    new=$(new_in_cache)
    (cd "$new" && npm pack --silent "$package" >/dev/null) ||
        die "npm could not fetch $package. Check the network (npm ping), then run this again."
    sha512sum --check --status <<<"$sha512  $(echo "$new"/*.tgz)" ||
        die "$package is not the file that was pinned (sha512 in tools/pins.sh). Nothing was installed."
    mkdir "$new/out"
    tar -xzf "$new"/*.tgz -C "$new/out" --strip-components=1 "${@/#/package/}"
    mv -T "$new/out" "$final"
    rm -rf "$new"
}

check_googletest() {
    local hash
    hash=$(cd "$GTEST_DIR" && find . -type f -print0 | LC_ALL=C sort -z | xargs -0 sha256sum | sha256sum)
    [ "${hash%% *}" = "$googletest_sha256" ] ||
        die "the GoogleTest sources in $GTEST_DIR are not those of googletest $googletest_version, which the tests
are written for. If Debian has a newer revision, look at what changed and pin it in tools/pins.sh:
googletest_sha256=${hash%% *}"
}

# Does the machine's own Wine run a 32-bit program? A program that exits with 7 tells.
own_wine32() {
    local loader new status=0
    loader=$(command -v /usr/lib/wine/wine || command -v wine) || return 1
    new=$(new_in_cache)
    echo 'int main(void) { return 7; }' >"$new/probe.c"
    i686-w64-mingw32-gcc-posix -o "$new/probe.exe" "$new/probe.c"
    WINEPREFIX=$new/prefix WINEARCH=win32 DISPLAY='' WINEDLLOVERRIDES='mscoree,mshtml=' \
        "$loader" "$new/probe.exe" >/dev/null 2>&1 || status=$?
    if [ $status = 7 ]; then
        echo "$loader" >"$new/loader"
        mv "$new/loader" "$wine32_entry"
    fi
    rm -rf "$new"
    [ $status = 7 ]
}

# The mirror that apt uses here; nothing when apt names none. Who publishes a mirror apt knows only once it has fetched
# the package lists; until then the first main one is taken.
debian_mirror() {
    local mirror
    # shellcheck disable=SC2016
    mirror=$(apt-get indextargets --format '$(ORIGIN) $(COMPONENT) $(SITE)' 'Created-By: Packages' 2>/dev/null |
        sed -n 's/^Debian main \(http[^ ]*\)$/\1/p' | grep -v security | head -n 1)
    # shellcheck disable=SC2016
    [ -n "$mirror" ] || mirror=$(apt-get indextargets --no-release-info --format '$(COMPONENT) $(SITE)' \
        'Created-By: Packages' 2>/dev/null | sed -n 's/^main \(http[^ ]*\)$/\1/p' | grep -v security | head -n 1)
    echo "$mirror"
}

# Through apt's own downloader, which knows the proxy and needs no root.
fetch_pugixml() {
    local final=${PUGIXML_DIR%/src} mirror new
    [ -d "$final" ] && return
    mirror=$(debian_mirror || true)
    [ -n "$mirror" ] ||
        die "apt names no Debian mirror to fetch pugixml from (apt-get indextargets). Add one to apt's sources and run
apt-get update, or unpack the sources of pugixml $pugixml_version as $final yourself."
    step "Fetching pugixml $pugixml_version ($mirror/$pugixml_path)"
    new=$(new_in_cache)
    if ! /usr/lib/apt/apt-helper download-file "$mirror/$pugixml_path" "$new/pugixml.tar.gz" >"$new/log" 2>&1; then
        tail -n 20 "$new/log" >&2
        die "apt could not fetch pugixml; its message is above. Check the network and apt's proxy, then run this again."
    fi
    sha256sum --check --status <<<"$pugixml_sha256  $new/pugixml.tar.gz" ||
        die "${pugixml_path##*/} is not the file that was pinned (sha256 in tools/pins.sh). Nothing was installed."
    mkdir "$new/out"
    tar -xzf "$new/pugixml.tar.gz" -C "$new/out" --strip-components=1
    mv -T "$new/out" "$final"
    rm -rf "$new"
}

make_wine32_root() {
    local new proxy mirror
    need debootstrap debootstrap "makes a small 32-bit Debian, in which 32-bit Wine runs"
    install_packages
    mirror=$(debian_mirror || true)
    proxy=$(apt-config shell proxy Acquire::http::Proxy | sed "s/^proxy='\(.*\)'$/\1/")
    step "Making a small 32-bit Debian with Wine in $wine32_entry (1 GB, about a minute, once per machine)"
    new=$(new_in_cache)
    mkdir "$new/root"
    if ! as_root env ${proxy:+http_proxy="$proxy"} debootstrap --arch=i386 --variant=minbase --include=wine32 \
        "$wine32_suite" "$new/root" ${mirror:+"$mirror"} >"$CACHE/debootstrap.log" 2>&1; then
        tail -n 20 "$CACHE/debootstrap.log" >&2
        die "debootstrap failed; all of its output is in $CACHE/debootstrap.log"
    fi
    as_root chown -R "$(id -u):$(id -g)" "$new/root"
    (cd "$new/root" && rm -rf var/cache/apt/* var/lib/apt/lists/* usr/share/doc usr/share/man)
    mv -T "$new/root" "$wine32_entry"
    rm -rf "$new"
}

set_up_wine32() {
    [ -e "$wine32_entry" ] || own_wine32 || make_wine32_root
    [ -f "$wine32_entry" ] && return
    (in_wine32_root /bin/true) ||
        die "bwrap cannot enter the 32-bit root: this kernel or container forbids it user namespaces. Allow them
(sysctl kernel.unprivileged_userns_clone=1), or install a 32-bit Wine that runs here and remove $wine32_entry."
}

# set_up_for VERB, with the cache locked. Leftovers of an interrupted set-up go first; some may be root's.
set_up_cache() {
    rm -rf --one-file-system "$CACHE"/.new.* 2>/dev/null || as_root rm -rf --one-file-system "$CACHE"/.new.*
    need cmake cmake "configures the build"
    need ninja ninja-build "builds"
    need i686-w64-mingw32-g++-posix g++-mingw-w64-i686-posix "compiles for 32-bit Windows"
    need i686-w64-mingw32-widl mingw-w64-tools "compiles the type libraries"
    need "$GTEST_DIR" googletest "the test framework"
    need bwrap bubblewrap "enters the 32-bit Wine"
    need python3 python3 "drives the checks and tabulates figures"
    if [ "$1" = test ]; then
        need g++ g++ "compiles the tests that run natively"
        need x86_64-w64-mingw32-g++-posix g++-mingw-w64-x86-64-posix "compiles for 64-bit Windows"
        need /usr/lib/wine/wine64 wine64 "runs 64-bit Windows programs"
        need "clang-format-$llvm" "clang-format-$llvm" "checks the layout of the sources"
        need "clang-tidy-$llvm" "clang-tidy-$llvm" "looks for mistakes in the sources"
    fi
    install_packages
    check_googletest
    fetch_npm "$sqlite_package" "$sqlite_sha512" "${SQLITE_DIR%/deps/sqlite3}" "SQLite $sqlite_version" deps/sqlite3
    fetch_pugixml
    if [ "$1" = test ]; then
        fetch_npm "$dotnet_package" "$dotnet_sha512" "$DOTNET_DIR" "the C# compiler and runtime for the tests"
    fi
    set_up_wine32
}

set_up_for() {
    local bits=(32)
    with_lock "$CACHE/lock" "Another ./run is setting this machine up; waiting for it." set_up_cache "$1"
    [ "$1" = test ] && bits+=(64)
    local b
    for b in "${bits[@]}"; do
        make_prefix "$b"
    done
}
