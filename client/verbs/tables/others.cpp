// Verbs about names, alarms and problems.
#include "client/verbs/tables/tables.h"

namespace vtdn::client {

namespace {

constexpr OptionSpec longNames{"--long", "", "Also the long names, which can be long indeed.", "--long"};
constexpr OptionSpec all{"--all", "", "Also numbers that have no name.", "--all"};

VerbSpec namesUnits() {
    return {"names units",
            "Lists the units of the plant: their numbers, names, ORIS codes and unit ids.",
            {},
            withCommon({all, csv, json}),
            {"ORIS code and unit id are those for electronic data reports; they are empty for a unit that "
             "reports none."},
            {{"vtdn names units", "Those that have a name, an ORIS code or a unit id."},
             {"vtdn names units --all --json", "All twenty, for a program."}}};
}

VerbSpec namesMc() {
    return {"names mc",
            "Lists the monitor codes with their names.",
            {},
            withCommon({longNames, all, csv, json}),
            {},
            {{"vtdn names mc", "Those that have a name."},
             {"vtdn names mc --long", "What the codes beside the values mean."}}};
}

VerbSpec namesPc() {
    return {"names pc",
            "Lists the parameter codes with their names.",
            {},
            withCommon({longNames, all, csv, json}),
            {},
            {{"vtdn names pc", "All codes that have a name."},
             {"vtdn names pc --long --csv > codes.csv", "For a spreadsheet."}}};
}

VerbSpec alarmWrite() {
    return {"alarm write",
            "Writes a text into the alarm log of the DAHS.",
            {{"MESSAGE", "The text; between quotation marks when it has blanks."}},
            withCommon(
                {{"--severity", "NUMBER", "0 to 4; 0 when it is not given.", "--severity 3"},
                 {"--category", "TEXT", "Category of the alarm.", "--category calibration"},
                 {"--group", "TEXT", "Group of the alarm.", "--group analyzers"},
                 {"--source", "TEXT", "Who or what raised it; vtdn when it is not given.", "--source shift"},
                 {"--time", "TIME", "Its time; now, in local standard time, when it is not given.",
                  "--time \"2007-01-08 13:00\""},
                 json}),
            {},
            {{"vtdn alarm write \"NOx analyzer drifts\" --severity 3", "Now."},
             {"vtdn alarm write \"Probe cleaned\" --category maintenance --time \"2007-01-08 13:00\"",
              "For an earlier time."}}};
}

VerbSpec alarmList() {
    return {"alarm list",
            "Lists the alarm log of the DAHS, newest first.",
            {},
            withCommon({{"--from", "TIME", "Not before this time.", "--from 2007-01-08"},
                        {"--to", "TIME", "Before this time.", "--to 2007-01-09"},
                        {"--limit", "COUNT", "So many of the newest (100).", "--limit 10"},
                        {"--severity", "NUMBER", "Only alarms of this severity, 0 to 4.", "--severity 3"},
                        csv,
                        json}),
            {"The log is read from the site's alarm database, since the component has no operation for it."},
            {{"vtdn alarm list", "The newest alarms."},
             {"vtdn alarm list --from 2007-01-01 --to 2007-02-01 --severity 3", "Those of a month."}}};
}

VerbSpec problemsVerb() {
    return {
        "problems",
        "Binds to a DAHS, asks about every parameter, and prints what the component and its engine report "
        "meanwhile.",
        {{"PID", "Only these parameters.", false, true}},
        {{"--at", "TIME", "Also reads the interval of each parameter that begins then.", "--at 2007-01-08"},
         csv,
         json,
         dahs},
        {"Every process has a problems list of its own, so this is not about what another program did. Any "
         "other verb "
         "prints its problems by itself when something is refused, and always with --problems. The exit code "
         "is 0 when "
         "nothing was reported and 1 otherwise."},
        {{"vtdn problems", "Checks the whole site."},
         {"vtdn problems 9-999-3-00-00", "What the component says about a PID that does not exist."}}};
}

}  // namespace

std::vector<VerbSpec> othersTable() {
    return {namesUnits(), namesMc(), namesPc(), alarmWrite(), alarmList(), problemsVerb()};
}

}  // namespace vtdn::client
