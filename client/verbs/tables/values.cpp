// Verbs that read and write values.
#include "client/verbs/tables/tables.h"

namespace vtdn::client {

namespace {

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
        "Writes the value, the monitor code, or both, of one interval; or whole runs from a file.",
        {{"PID", "The parameter, as 5-040-3-00-00 or 504030000. Only stored ones can be written."},
         {"TIME", "Beginning of the interval, as \"2007-01-08 13:00\" or 2007-01-08T13:00. Not with --file.",
          false}},
        withCommon(
            {{"--value", "NUMBER",
              "The value. Without --mc the stored monitor code is kept. A number with a point is stored in "
              "single precision (7 digits).",
              "--value 12.5"},
             {"--text", "TEXT", "A text as the value. With --mc these are two writes, the code first.",
              "--text calibrating"},
             {"--null", "", "No value.", "--null"},
             {"--mc", "CODE", "The monitor code. Alone it keeps the stored value.", "--mc 1"},
             {"--file", "FILE",
              "A CSV file of intervals, as `vtdn read --csv` prints them; - is standard input.",
              "--file run.csv"},
             {"--limit", "COUNT", "With --file: how many broken rows are listed before reading ends (20).",
              "--limit 100"},
             {"--progress", "",
              "With --file: says how far it is in plain lines on standard error. In a terminal there is a "
              "progress bar anyway.",
              "--progress"},
             json}),
        {"Prints what stood there before and what stands there now. When the component refuses, its problems "
         "go to standard error and the exit code is 1.",
         "The columns of a file are time, value and mc; instead of value and mc the header may have the PID "
         "and the PID with \" mc\" behind it. An empty value is no value, an empty mc keeps the stored code. "
         "Without the column mc all codes are kept, without the column value all values. Columns of other "
         "PIDs are passed over. Numbers have a decimal point and are stored in single precision.",
         "Rows ascend in time and stand on the parameter's interval; intervals without a row stay as they "
         "are. All rows are checked first, and when one breaks a rule, all of them are listed with file, "
         "line "
         "and reason, and nothing is written. Rows up to 1440 intervals apart, and up to 2000000 intervals "
         "in "
         "all, are one run, which is stored at once or not at all; beyond that the next run begins."},
        {{"vtdn write 5-040-3-00-00 \"2007-01-08 13:00\" --value 5680.7 --mc 1", "Value and monitor code."},
         {"vtdn write 5-040-3-00-00 2007-01-08T13:00 --mc 1", "The monitor code alone."},
         {"vtdn write 5-040-3-00-00 2007-01-08T13:00 --null --mc 9", "No value, with a code that says why."},
         {"vtdn write 5-040-3-00-00 --file january.csv", "A month that `vtdn read --csv` printed, edited."}}};
}

}  // namespace

std::vector<VerbSpec> valuesTable() {
    return {read(), write()};
}

}  // namespace vtdn::client
