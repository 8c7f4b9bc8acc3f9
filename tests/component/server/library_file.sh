#!/usr/bin/env bash
# library_file.sh OBJDUMP VTWrapDN.dll: what the file itself promises, whatever machine it is copied to.
set -euo pipefail
objdump=$1
library=$2
headers=$("$objdump" -p "$library")

passed=0
failed=0
same() { # same WHAT EXPECTED FOUND
    if [ "$2" == "$3" ]; then
        passed=$((passed + 1))
    else
        failed=$((failed + 1))
        printf 'FAILED: %s\n  expected: %s\n  found:    %s\n' "$1" "$2" "$3"
    fi
}

# Part of Windows since long; anything else would have to travel with the library.
system=" advapi32.dll kernel32.dll msvcrt.dll ole32.dll oleaut32.dll ucrtbase.dll user32.dll "
imports=$(sed -n 's/^[[:space:]]*DLL Name: //p' <<<"$headers" | tr '[:upper:]' '[:lower:]' | sort -u)
foreign=""
for import in $imports; do
    case "$import" in
        api-ms-win-*) ;;
        *) [[ $system == *" $import "* ]] || foreign+="$import " ;;
    esac
done
same "imports are system libraries only" "" "$foreign"
same "automation comes from the platform" "oleaut32.dll" "$(grep -x oleaut32.dll <<<"$imports" || true)"

exports=$(sed -n '/\[Ordinal\/Name Pointer\]/,/^$/p' <<<"$headers" | awk '/^[[:space:]]*\[ *[0-9]/ { print $NF }' | sort |
    tr '\n' ' ')
same "exports are undecorated" \
    "DllCanUnloadNow DllGetClassObject DllInstall DllRegisterServer DllUnregisterServer " "$exports"

# Addresses and pages as today's Windows wants them.
flags=$(sed -n 's/^DllCharacteristics[[:space:]]*//p' <<<"$headers")
same "can be loaded anywhere" "$((0x40))" "$((0x$flags & 0x40))"
same "has no executable data" "$((0x100))" "$((0x$flags & 0x100))"

echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
