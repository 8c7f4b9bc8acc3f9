#!/usr/bin/env bash
# The component from the script host.
. "$(dirname "${BASH_SOURCE[0]}")/../lib.sh"
prepare_demo
expect '^SO2 mass of Barry (ORIS 3).*: 736 of 744 hours have a value, 5254710.5 lb in all' \
    "$VTDN_RUN" cscript //nologo "$(windows_path "$VTDN_SOURCE/samples/vbscript/read_a_month.vbs")"
"$VTDN_RUN" cscript //nologo "$(windows_path "$VTDN_SOURCE/tests/system/vbscript/clients.vbs")"
