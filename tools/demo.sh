# ./run demo: the component as a registered 32-bit COM server, working on a year of a real plant.
# shellcheck shell=bash disable=SC2034,SC2154
# shellcheck source=site.sh
. tools/site.sh

# show EXPECTED-EXIT-CODE ARGS...: types a command as a person would, and ends the demo if it does otherwise.
show() {
    local expected=$1 status=0
    shift
    printf '\n%s$ vtdn %s%s\n' "$bold" "${*@Q}" "$plain" | sed "s/'\([A-Za-z0-9./=:-]*\)'/\1/g"
    vtdn "$@" 2>&1 || status=$?
    [ $status = "$expected" ] || die "vtdn ended with exit code $status where $expected was expected."
}

first_lines() {
    awk -v count="$1" 'NR <= count; END { if (NR > count) print "  ... and " NR - count " more lines" }'
}

scene() {
    say
    step "$@"
}

play() {
    local home=$ROOT/build/demo month=build/demo/january.csv sulfur=5-040-3-00-00
    build win32 || exit 1

    step "Registering the component VTWrapDN.dll and the embedded engine VTEngine.dll in Wine"
    register VTWrapDN.dll VTEngine.dll
    step "Making a site from the public data of two power plants (data/demo)"
    make_demo_site "$home"
    VANTOR_HOME=$(windows_path "$home")
    export VANTOR_HOME VANTOR_DAHS=1

    scene "What is installed, and which sites there are"
    show 0 doctor
    show 0 site list

    scene "The parameters of Barry unit 5"
    show 0 params list | first_lines 24
    show 0 params show $sulfur

    scene "What is calibrated under part 75, how a quantity's averages hang together, what the codes mean"
    show 0 params list --calibration --part75
    show 0 params related 5-020-3-02-01 | first_lines 12
    show 0 names mc --long | first_lines 8

    scene "January 2007, hour by hour, with the monitor codes that say where each value comes from"
    show 0 read $sulfur 5-050-3-00-00 --month 2007-01 | first_lines 14
    vtdn read $sulfur --month 2007-01 --csv >$month
    show 0 read $sulfur --month 2007-01 --plot "${month%.csv}.svg"
    say "The same month as a file and as a picture: $month, ${month%.csv}.svg"

    scene "Writing: a value with its code, then no value with a code that says why"
    show 0 write $sulfur '2007-01-10 13:00' --value 5600.5 --mc 1
    show 0 write $sulfur '2007-01-10 14:00' --null --mc 9
    show 0 read $sulfur --from '2007-01-10 12:00' --count 4

    scene "Writing a run: the month as it was read, stored at once or not at all"
    show 0 write $sulfur --file $month
    show 0 read $sulfur --from '2007-01-10 12:00' --count 4

    scene "Numbered facts and functions: the unit's ORIS code, the month's average and the hours that the unit operated"
    show 0 params special 5-001-0-00-00 -95
    show 0 params call $sulfur 102 2007-01-01 2007-02-01
    show 0 params optime $sulfur 2007-01-01 2007-02-01
    show 0 alarm write "SO2 analyzer drifts" --severity 3 --category Maintenance
    show 0 alarm list

    scene "Downtimes of a monitor and excursions over a limit: a month, one of them explained, and a picture of the year"
    show 0 occurrences list --month 2007-04 --runs | first_lines 16
    show 0 occurrences edit 5-054-0-01-00 '2007-04-10 09:00' --reason "Probe plugged" --action "Probe cleaned" --excludable yes
    show 0 points history 5-050-3-00-00 --limit 1
    show 0 occurrences list --from 2007-01-01 --to 2008-01-01 --plot build/demo/occurrences.svg

    scene "What the component refuses goes to its problems list"
    show 1 write 9-999-3-00-00 '2007-01-10 13:00' --value 1
    show 1 write $sulfur '2007-01-10 13:00' --value 1 --mc 999
    show 1 write 5-041-3-02-00 '2007-01-10 13:00' --value 1
    show 1 problems 9-999-3-00-00

    scene "Taking it down: the sites removed, the libraries unregistered"
    show 0 site remove 2 --files --yes
    show 0 site remove 1 --files --yes
    register /u VTWrapDN.dll VTEngine.dll
    say "Done. ./run shell gives you a site of your own to try it on."
}

with_lock build/lock "Another ./run works in this clone; waiting for it." play
