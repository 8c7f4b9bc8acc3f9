#!/usr/bin/env bash
# own_prefix.sh PROGRAM.exe: runs a GoogleTest program in a Wine prefix of its own, where it may write to the
# registry. The last line is "N passed, N failed".
set -u
export VTDN_WINEPREFIX=$VTDN_BUILD/own-prefix
mkdir -p "$VTDN_WINEPREFIX"
# Made before the program starts: a program that has to wait for its prefix can lose its server.
[ -f "$VTDN_WINEPREFIX/system.reg" ] || "$VTDN_RUN" wineboot -i
out=$("$VTDN_RUN" "$1" 2>&1)
code=$?
printf '%s\n' "$out"
count() { sed -n "s/^\[  $1  \] \([0-9]*\) test.*/\1/p" <<<"$out" | tail -1; }
passed=$(count PASSED)
failed=$(count FAILED)
# A program that ended without a summary has crashed.
if [ "$code" -ne 0 ] && [ -z "$failed" ]; then failed=1; fi
echo "${passed:-0} passed, ${failed:-0} failed"
exit "$code"
