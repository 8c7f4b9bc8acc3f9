# ./run shell: a shell in which vtdn works, on a copy of the demo site that is yours to change.
# shellcheck shell=bash disable=SC2034,SC2154
# shellcheck source=site.sh
. tools/site.sh

prepare_shell() {
    build win32 || exit 1
    register VTWrapDN.dll VTEngine.dll
    [ -e build/shell-site/whole ] || make_demo_site "$ROOT/build/shell-site"
}
with_lock build/lock "Another ./run works in this clone; waiting for it." prepare_shell

VANTOR_HOME=$(windows_path "$ROOT/build/shell-site")
export VANTOR_HOME
export PATH="$ROOT/tools/shell-path:$PATH"
say "vtdn works here, on a site of your own in build/shell-site. Try: vtdn doctor, vtdn --help. Leave with: exit"
exec "${SHELL:-bash}"
