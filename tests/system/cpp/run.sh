#!/usr/bin/env bash
# The C++ sample, early bound, through the registered component.
. "$(dirname "${BASH_SOURCE[0]}")/../lib.sh"
prepare_demo
expect '^736 of 744 hours have a value, 5254710.5 lb in all' "$VTDN_RUN" "$VTDN_BUILD/bin/read_a_month.exe"
echo "1 passed, 0 failed"
