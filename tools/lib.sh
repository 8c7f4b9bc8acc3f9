# Where things are and how to speak. Sourced by ./run and by everything in tools/.
# shellcheck shell=bash disable=SC2034,SC2154
set -euo pipefail

ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)
CACHE=${XDG_CACHE_HOME:-$HOME/.cache}/vtwrapdn

bold='' red='' plain=''
if [ -t 1 ]; then
    bold=$'\e[1m' red=$'\e[31m' plain=$'\e[0m'
fi

say() { printf '%s\n' "$*"; }
step() { printf '%s==> %s%s\n' "$bold" "$*" "$plain"; }
complain() { printf '%s%s%s\n' "$red" "$*" "$plain" >&2; }
die() {
    complain "run: $*"
    exit 1
}

# with_lock FILE MESSAGE COMMAND...: runs COMMAND while nobody else holds FILE; says MESSAGE if it has to wait.
with_lock() {
    local file=$1 message=$2 status=0
    shift 2
    mkdir -p "$(dirname "$file")"
    exec 9>"$file"
    flock -n 9 || {
        say "$message"
        flock 9
    }
    "$@" 9>&- || status=$? # closed for the command, or a Wine server that it starts would keep the lock
    exec 9>&-
    return $status
}
