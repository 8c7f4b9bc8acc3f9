#!/usr/bin/env bash
# The component from the common language runtime: compiles the samples and the tests against the C# declarations
# of the repository and runs them.
. "$(dirname "${BASH_SOURCE[0]}")/../lib.sh"

sdk=$(windows_path "$VTDN_DOTNET")
export DOTNET_ROOT=$sdk DOTNET_MULTILEVEL_LOOKUP=0 DOTNET_CLI_TELEMETRY_OPTOUT=1 DOTNET_SKIP_FIRST_TIME_EXPERIENCE=1
compiler=$(echo "$VTDN_DOTNET"/sdk/*/Roslyn/bincore/csc.dll)
references=$(echo "$VTDN_DOTNET"/packs/Microsoft.NETCore.App.Ref/*/ref/netcoreapp3.1)
out=$VTDN_BUILD/system/csharp
mkdir -p "$out"

# compile NAME FILE...: a program for the runtime of the SDK.
compile() {
    local name=$1 file
    shift
    {
        echo "-nologo -langversion:8 -warnaserror+ -nostdlib+ -out:\"$(windows_path "$out/$name.dll")\""
        for file in "$references"/*.dll; do echo "-r:\"$(windows_path "$file")\""; done
        for file in "$@"; do echo "\"$(windows_path "$file")\""; done
    } >"$out/$name.rsp"
    "$VTDN_RUN" "$VTDN_DOTNET/dotnet.exe" exec "$(windows_path "$compiler")" -noconfig "@$(windows_path "$out/$name.rsp")"
    echo '{ "runtimeOptions": { "framework": { "name": "Microsoft.NETCore.App", "version": "3.1.0" } } }' \
        >"$out/$name.runtimeconfig.json"
}

# execute NAME ARGS...
execute() {
    local name=$1
    shift
    "$VTDN_RUN" "$VTDN_DOTNET/dotnet.exe" exec "$(windows_path "$out/$name.dll")" "$@"
}

declarations=$VTDN_SOURCE/samples/csharp/VTWrapperDN.cs
compile ReadAMonth "$VTDN_SOURCE/samples/csharp/ReadAMonth.cs" "$declarations"
compile WriteADay "$VTDN_SOURCE/samples/csharp/WriteADay.cs" "$declarations"
compile DowntimeReport "$VTDN_SOURCE/samples/csharp/DowntimeReport.cs" "$declarations"
compile SystemTests "$VTDN_SOURCE"/tests/system/csharp/*.cs "$declarations"
prepare_demo
expect '^SO2 mass of Barry (ORIS 3).*: 736 of 744 hours have a value, 5254710.5 lb in all' execute ReadAMonth
expect '^1440 minutes written to 511010001' execute WriteADay
expect '^NOx rate: 47 intervals of 1h down, 0 of them excludable, 86 over a limit' execute DowntimeReport
log=$out/tests.log
echo "3 passed, 0 failed" >"$log"
execute SystemTests "$(windows_path "$VTDN_BUILD/bin/VTWrapDN.dll")" "$(windows_path "$VTDN_SOURCE/data/demo")" | tee -a "$log"
execute SystemTests | tee -a "$log"
expect_alarms "2008-08-01 00:00,1,Test,Group,C#,late
2008-02-29 13:00,0,,,,
$(for severity in 4 3 2 1 0; do echo "2008-02-29 12:0$severity,$severity,Test,Group,C#,Opacity € $severity"; done)"
echo "1 passed, 0 failed" >>"$log"
add_up "$log"
