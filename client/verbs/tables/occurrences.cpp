// Verbs about occurrences.
#include "client/verbs/tables/tables.h"

namespace vtdn::client {

namespace {

constexpr OptionSpec category{"--category", "TEXT", "Category. An empty text, \"\", removes it.",
                              "--category calibration"};
constexpr OptionSpec reason{"--reason", "TEXT", "What was the matter.", "--reason \"Analyzer drifted\""};
constexpr OptionSpec action{"--action", "TEXT", "What was done about it.", "--action \"Analyzer replaced\""};
constexpr OptionSpec excludable{"--excludable", "ANSWER",
                                "yes: it can be left out of reports; no: it counts.", "--excludable yes"};
constexpr OptionSpec count{"--count", "NUMBER", "So many intervals in a row, the first at TIME.",
                           "--count 5"};
constexpr OperandSpec occurrenceOrTag{
    "PID", "An occurrence parameter (I/O type 31), or the tag whose intervals carry occurrences."};
constexpr OperandSpec intervalOfTag{
    "TIME", "Beginning of the interval, as \"2007-01-08 13:00\" or 2007-01-08T13:00."};

VerbSpec occurrencesList() {
    return {
        "occurrences list",
        "Lists downtimes of monitors and excursions over limits, one line for each interval that has one.",
        {{"PID", "Only of these tags or occurrence parameters, or of these units, numbers from 0 to 19.",
          false, true}},
        withCommon(
            {{"--from", "TIME", "Not before this time.", "--from 2007-01-08"},
             {"--to", "TIME", "Before this time.", "--to 2007-01-09"},
             {"--day", "DATE", "A day.", "--day 2007-01-08"},
             {"--month", "MONTH", "A month.", "--month 2007-01"},
             {"--downtimes", "", "Only downtimes.", "--downtimes"},
             {"--excursions", "", "Only excursions.", "--excursions"},
             {"--excludable", "", "Only what can be left out of reports.", "--excludable"},
             {"--counted", "", "Only what cannot.", "--counted"},
             {"--by-tag", "", "In order of tags, and of time within each; by time otherwise.", "--by-tag"},
             {"--runs", "",
              "Neighbouring intervals of a tag about which the same is said are one line, with begin, end "
              "and "
              "count.",
              "--runs"},
             csv,
             json,
             {"--plot", "FILE", "Draws a timeline as SVG, instead of the table.", "--plot january.svg"}}),
        {"A span is needed: --from with --to, --day or --month. One interval can have a downtime and an "
         "excursion: "
         "two lines. The timeline has a row for each tag; what is excludable is hatched there, and a tooltip "
         "says what is known about each bar."},
        {{"vtdn occurrences list --month 2007-04 --runs", "What was wrong in a month, and for how long."},
         {"vtdn occurrences list 5 --month 2007-04 --downtimes --counted", "Downtimes of unit 5 that count."},
         {"vtdn occurrences list --from 2007-01-01 --to 2008-01-01 --plot year.svg", "A picture of a year."},
         {"vtdn occurrences list 5-050-3-00-00 --day 2007-04-10 --json", "Of one tag, for a program."}}};
}

VerbSpec occurrencesShow() {
    return {"occurrences show",
            "Shows everything about the occurrence of one interval.",
            {occurrenceOrTag, intervalOfTag},
            withCommon({json}),
            {},
            {{"vtdn occurrences show 5-050-3-00-00 \"2007-04-10 09:00\"", "By the tag."}}};
}

VerbSpec occurrencesCreate() {
    return {"occurrences create",
            "Records a downtime or an excursion for one interval or more; one that is there already stays.",
            {{"PID",
              "The occurrence parameter (I/O type 31); it says which tag, and whether a downtime or an "
              "excursion."},
             intervalOfTag},
            withCommon({count, category, reason, action, excludable, json}),
            {"Value and monitor code of the interval stay as they are. An excursion gets the limit that its "
             "parameter "
             "is about."},
            {{"vtdn occurrences create 5-054-0-01-00 \"2007-01-08 13:00\" --category maintenance --reason "
              "\"Filter changed\" --excludable yes",
              "A new one, with what is known about it."},
             {"vtdn occurrences create 5-054-0-01-00 2007-01-09 --count 24 --json", "A day of them."}}};
}

VerbSpec occurrencesEdit() {
    return {
        "occurrences edit",
        "Changes what is said about the downtime or the excursion of one interval or more.",
        {occurrenceOrTag, intervalOfTag},
        withCommon({{"--downtime", "", "The downtime, where there is an excursion as well.", "--downtime"},
                    {"--excursion", "", "The excursion, where there is a downtime as well.", "--excursion"},
                    count,
                    category,
                    reason,
                    action,
                    excludable,
                    json}),
        {"What is not given stays. Value and monitor code of the interval stay in any case. `vtdn points "
         "history` shows the edit."},
        {{"vtdn occurrences edit 5-050-3-00-00 \"2007-04-10 09:00\" --reason \"Probe plugged\" --action "
          "\"Probe cleaned\"",
          "Says why, and what was done."},
         {"vtdn occurrences edit 5-054-0-01-00 \"2007-04-10 09:00\" --count 3 --excludable yes",
          "Three hours in a row: all of them, or none when one has no downtime."}}};
}

}  // namespace

std::vector<VerbSpec> occurrencesTable() {
    return {occurrencesList(), occurrencesShow(), occurrencesCreate(), occurrencesEdit()};
}

}  // namespace vtdn::client
