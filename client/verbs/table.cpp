#include "client/verbs/table.h"

#include <initializer_list>

namespace vtdn::client {

namespace {

constexpr OptionSpec csv{"--csv", "", "CSV for programs: one header line, numbers in full.",
                         "--csv > out.csv"};
constexpr OptionSpec json{"--json", "", "JSON for programs.", "--json > out.json"};
constexpr OptionSpec dahs{
    "--dahs", "ID",
    "Which DAHS. Not needed when there is only one, or when the environment variable VANTOR_DAHS "
    "holds the id.",
    "--dahs 2"};
constexpr OptionSpec problems{
    "--problems", "", "Also prints the problems list when nothing was refused; it goes to standard error.",
    "--problems"};

using Options = std::vector<OptionSpec>;

/// The options of a verb that goes through the component, with those that all of them have.
Options withCommon(std::initializer_list<OptionSpec> own) {
    Options options(own);
    options.push_back(dahs);
    options.push_back(problems);
    return options;
}

VerbSpec doctor() {
    return {
        "doctor",
        "Says what is installed, in which bitness, where the sites are, what is wrong and how to mend it.",
        {},
        {json},
        {"The exit code is 0 when nothing is wrong and 3 otherwise. A 32-bit vtdn.exe looks at what 32-bit "
         "programs "
         "see, a 64-bit one at what 64-bit programs see."},
        {{"vtdn doctor", "Looks at everything."},
         {"vtdn doctor --json", "The same for a program: an array of findings."}}};
}

VerbSpec siteCreate() {
    return {"site create",
            "Makes an empty site and lists it in the DAHS directory.",
            {},
            {{"--id", "ID", "Number of the DAHS, 1 to 2147483647. The next free one when it is not given.",
              "--id 7"},
             {"--site-id", "TEXT", "Short identifier of the site. Required.", "--site-id MILL"},
             {"--name", "TEXT", "Complete name.", "--name \"Riverside Paper, power boiler 1\""},
             {"--description", "TEXT", "One line for lists.", "--description \"Paper mill boiler 1\""}},
            {"The five databases are made in the folder sites under VANTOR_HOME (%ProgramData%\\Vantor when "
             "that is not "
             "set). Fill the site with `vtdn site import --dahs ID FOLDER`."},
            {{"vtdn site create --id 7 --site-id MILL", "Makes DAHS 7."}}};
}

VerbSpec siteImport() {
    return {
        "site import",
        "Loads a plant from a folder of CSV files, all of it or nothing.",
        {{"FOLDER", "The folder with parameters.csv, monitor_codes.csv, site.csv and values\\*.csv."}},
        {{"--dahs", "ID",
          "Number of the DAHS, before the one in site.csv. Without either, the next free one.", "--dahs 7"},
         {"--update", "",
          "Loads into a site that has been loaded before: its parameters and monitor codes are replaced by "
          "those of the "
          "files, the values of the files are written, and other values stay.",
          "--update"},
         {"--check", "", "Reads and checks everything, and changes nothing.", "--check"},
         {"--limit", "COUNT", "How many broken rows are listed before reading ends (20).", "--limit 100"},
         {"--progress", "",
          "Says how far it is in plain lines on standard error. In a terminal there is a progress bar "
          "anyway.",
          "--progress"}},
        {"docs/site-files.md describes the files. Every broken row is listed with file, line, column and "
         "reason; when "
         "there is one, nothing is loaded and the exit code is 1."},
        {{"vtdn site import data/demo/barry5", "Loads the demo plant."},
         {"vtdn site import C:\\plants\\mill --check", "Says what is wrong with the files."},
         {"vtdn site import C:\\plants\\mill --update", "Adds next month's files."}}};
}

VerbSpec siteList() {
    return {"site list",
            "Lists the sites of this computer.",
            {},
            {csv, json},
            {},
            {{"vtdn site list", "A table."}, {"vtdn site list --json", "With the connection strings."}}};
}

VerbSpec siteRemove() {
    return {"site remove",
            "Takes a site out of the DAHS directory.",
            {{"ID", "Number of the DAHS, as `vtdn site list` shows it."}},
            {{"--yes", "", "Does not ask. Without it the id has to be typed once more.", "--yes"},
             {"--files", "", "Also deletes the database files. They are kept otherwise.", "--files"}},
            {},
            {{"vtdn site remove 7", "Asks first, and keeps the files."},
             {"vtdn site remove 7 --files --yes", "Deletes everything at once."}}};
}

VerbSpec paramsList() {
    return {"params list",
            "Lists the parameters of a DAHS.",
            {{"TEXT", "Only those whose PID, name or unit holds this text, in any case.", false}},
            withCommon({csv, json}),
            {},
            {{"vtdn params list", "All of them."},
             {"vtdn params list nox", "Those that have to do with NOx."},
             {"vtdn params list --csv > params.csv", "For a spreadsheet."}}};
}

VerbSpec paramsShow() {
    return {"params show",
            "Shows everything about some parameters.",
            {{"PID", "A parameter, as 5-040-3-00-00 or 504030000.", true, true}},
            withCommon({json}),
            {},
            {{"vtdn params show 5-040-3-00-00", "One parameter."}}};
}

VerbSpec paramsUses() {
    return {"params uses",
            "Lists the stored and the constant parameters that a calculated parameter of time type 3 is "
            "computed from.",
            {{"PID", "The parameter, as 5-041-3-02-00 or 504130200."}},
            withCommon({csv, json}),
            {"Stored inputs are listed when their time type, the digit in the middle of the PID, is 3."},
            {{"vtdn params uses 5-041-3-02-00", "What goes into the SO2 rate."}}};
}

VerbSpec read() {
    return {
        "read",
        "Reads values and monitor codes: one interval, or a run of them.",
        {{"PID", "One or more parameters, as 5-040-3-00-00 or 504030000.", true, true}},
        withCommon(
            {{"--at", "TIME", "One interval, the one that begins at this time.", "--at \"2007-01-08 13:00\""},
             {"--day", "DATE", "All intervals of a day.", "--day 2007-01-08"},
             {"--month", "MONTH", "All intervals of a month.", "--month 2007-01"},
             {"--from", "TIME", "The first interval of a run.", "--from \"2007-01-08 13:00\""},
             {"--to", "TIME", "Where the run ends; an interval that begins then is not part of it.",
              "--from 2007-01-08 --to 2007-01-10"},
             {"--count", "N", "How many intervals the run has.", "--from 2007-01-08 --count 24"},
             {"--interval", "LENGTH",
              "Length of the intervals: a count and s, m, h, d or M (month). That of the parameter when it "
              "is not "
              "given.",
              "--interval 1d"},
             {"--values-only", "", "Leaves intervals without a value and a monitor code out.",
              "--values-only"},
             csv,
             json,
             {"--plot", "FILE", "Draws a chart as SVG, instead of the table.", "--plot january.svg"},
             {"--normal", "CODES",
              "Monitor codes that the chart does not mark, separated by commas. The most frequent one when "
              "it is not "
              "given.",
              "--normal 1,2"}}),
        {"Times are the beginnings of intervals in local standard time. Tables show values in the "
         "parameter's display "
         "format; CSV and JSON have them in full. The CSV of whole runs is a file of values as `vtdn site "
         "import` "
         "reads it."},
        {{"vtdn read 5-040-3-00-00 --at \"2007-01-08 13:00\"", "One hour."},
         {"vtdn read 5-040-3-00-00 5-050-3-00-00 --day 2007-01-08", "A day of two parameters, side by side."},
         {"vtdn read 5-040-3-00-00 --month 2007-01 --csv > january.csv", "A month for a spreadsheet."},
         {"vtdn read 5-040-3-00-00 --month 2007-01 --plot january.svg", "A picture of it."},
         {"vtdn read 5-040-3-00-00 --from 2007-01-01 --count 31 --interval 1d", "Days instead of hours."}}};
}

VerbSpec write() {
    return {
        "write",
        "Writes the value, the monitor code, or both, of one interval.",
        {{"PID", "The parameter, as 5-040-3-00-00 or 504030000. Only stored ones can be written."},
         {"TIME", "Beginning of the interval, as \"2007-01-08 13:00\" or 2007-01-08T13:00."}},
        withCommon(
            {{"--value", "NUMBER",
              "The value. Without --mc the stored monitor code is kept. A number with a point is stored in "
              "single precision (7 digits).",
              "--value 12.5"},
             {"--text", "TEXT", "A text as the value. With --mc these are two writes, the code first.",
              "--text calibrating"},
             {"--null", "", "No value.", "--null"},
             {"--mc", "CODE", "The monitor code. Alone it keeps the stored value.", "--mc 1"},
             json}),
        {"Prints what stood there before and what stands there now. When the component refuses, its problems "
         "go to "
         "standard error and the exit code is 1."},
        {{"vtdn write 5-040-3-00-00 \"2007-01-08 13:00\" --value 5680.7 --mc 1", "Value and monitor code."},
         {"vtdn write 5-040-3-00-00 2007-01-08T13:00 --mc 1", "The monitor code alone."},
         {"vtdn write 5-040-3-00-00 2007-01-08T13:00 --null --mc 9",
          "No value, with a code that says why."}}};
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

std::span<const VerbSpec> verbTable() {
    static const std::vector<VerbSpec> table{doctor(),     siteCreate(), siteImport(),  siteList(),
                                             siteRemove(), paramsList(), paramsShow(),  paramsUses(),
                                             read(),       write(),      problemsVerb()};
    return table;
}

}  // namespace vtdn::client
