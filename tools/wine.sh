# Wine, for 32-bit and 64-bit programs. Sourced by tools/win32, tools/win64 and the set-up.
# shellcheck shell=bash disable=SC2034,SC2154
# shellcheck source=tools/pins.sh
. "$(dirname "${BASH_SOURCE[0]}")/pins.sh"

# One prefix per bitness and clone, since what is registered there are this clone's libraries.
wine_prefix() { printf '%s\n' "${VTDN_WINEPREFIX:-$ROOT/build/wine/win$1}"; }

# The cache entry says what runs 32-bit programs: a folder is a Debian root with Wine in it, a file names the
# machine's own Wine.
wine32_entry=$CACHE/$wine32_key

# wine_run 32|64 PROGRAM ARGS...: replaces this process by PROGRAM in Wine. Its exit code, its streams and the
# environment pass through.
wine_run() {
    local bits=$1 overrides
    shift
    # No debugger and no dialog when a program crashes, no offer to download Mono or Gecko, no menu entries.
    overrides='winedbg.exe,winemenubuilder.exe,mscoree,mshtml='
    export WINEPREFIX WINEARCH=win$bits WINEDEBUG=${WINEDEBUG:--all} WINEDLLOVERRIDES=${WINEDLLOVERRIDES:-$overrides}
    WINEPREFIX=$(wine_prefix "$bits")
    unset DISPLAY WAYLAND_DISPLAY
    # Without this the server ends with its last client. One that stays for a while lets the next program start
    # in 50 ms in place of 400 ms; one that runs already makes this a no-op.
    wine_server "$bits" -p20 2>/dev/null || true
    if [ "$bits" = 64 ]; then
        exec "$(wine64_loader)" "$@"
    elif [ -f "$wine32_entry" ]; then
        exec "$(<"$wine32_entry")" "$@"
    else
        in_wine32_root /usr/lib/wine/wine "$@"
    fi
}

wine64_loader() {
    local loader
    for loader in /usr/lib/wine/wine64 wine64 wine; do
        command -v "$loader" && return
    done
}

# wine_server 32|64 ARGS...: that prefix's server.
wine_server() {
    local bits=$1 program
    shift
    WINEPREFIX=$(wine_prefix "$bits")
    export WINEPREFIX
    if [ "$bits" = 32 ] && [ -d "$wine32_entry" ]; then
        (in_wine32_root /usr/lib/wine/wineserver32 "$@")
    else
        program=$(command -v /usr/lib/wine/wineserver64 || command -v /usr/lib/wine/wineserver32 || command -v wineserver)
        "$program" "$@"
    fi
}

# Replaces this process by a command inside the 32-bit root. The root is read-only; the machine's own folders
# are visible under their own paths.
in_wine32_root() {
    local binds=() dir
    for dir in /*/; do
        case ${dir%/} in
        /bin | /sbin | /lib* | /usr | /etc | /var | /proc | /dev | /sys | /run | /boot | /lost+found) ;;
        *) binds+=(--bind-try "${dir%/}" "${dir%/}") ;;
        esac
    done
    for dir in "$ROOT" "$CACHE" "$PWD" "${VANTOR_HOME:-$ROOT}"; do
        binds+=(--bind-try "$dir" "$dir")
    done
    exec bwrap --ro-bind "$wine32_entry/usr" /usr --ro-bind "$wine32_entry/etc" /etc --ro-bind /etc/passwd /etc/passwd \
        --symlink usr/bin /bin --symlink usr/sbin /sbin --symlink usr/lib /lib \
        --bind /proc /proc --dev-bind /dev /dev "${binds[@]}" --chdir "$PWD" "$@"
}

# Makes the prefix once. Made beside its place and moved, so that an interrupted start leaves nothing half made.
make_prefix() {
    local bits=$1 final
    final=$(wine_prefix "$bits")
    [ -d "$final" ] && return
    step "Starting Wine for ${bits}-bit programs for the first time (about 6 s)"
    rm -rf "$final.new"
    mkdir -p "$final.new"
    (
        export VTDN_WINEPREFIX=$final.new
        (wine_run "$bits" wineboot -i)
        (wine_run "$bits" reg add 'HKCU\Software\Wine' /v Version /d win10 /f)
        wine_server "$bits" -k
        wine_server "$bits" -w
    ) >"$ROOT/build/wine/win$bits.log" 2>&1 || die "Wine did not start; see build/wine/win$bits.log"
    mv -T "$final.new" "$final"
}
