// Verbs about data points.
#include "client/verbs/tables/tables.h"

namespace vtdn::client {

namespace {

VerbSpec pointsList() {
    return {
        "points list",
        "Lists the data points of a parameter: value, monitor code, occurrence text and extra-value text of "
        "every interval that has any of them.",
        {{"PID", "A parameter whose values are stored, as 5-040-3-00-00 or 504030000."}},
        withCommon({{"--from", "TIME", "Not before this time.", "--from 2007-01-08"},
                    {"--to", "TIME", "Before this time.", "--to 2007-01-09"},
                    {"--day", "DATE", "A day.", "--day 2007-01-08"},
                    {"--month", "MONTH", "A month.", "--month 2007-01"},
                    {"--interval", "LENGTH",
                     "The interval of the data points, a count and s, m, h, d or M (month). That of the "
                     "parameter when it is not given; the embedded engine has no other.",
                     "--interval 1h"},
                    csv,
                    json}),
        {"A span is needed: --from with --to, --day or --month. A value that is a text is not shown: the "
         "component's data points have "
         "numbers only, and `vtdn read` shows it. Both texts are as the engine keeps them."},
        {{"vtdn points list 5-040-3-00-00 --from 2007-01-08 --to 2007-01-09", "A day."},
         {"vtdn points list 5-040-3-00-00 --month 2007-01 --json", "A month for a program."}}};
}

VerbSpec pointsSetExtra() {
    return {
        "points set-extra",
        "Writes the extra-value text of one interval and nothing else of it.",
        {{"PID", "A parameter whose values are stored, as 5-040-3-00-00 or 504030000."},
         {"TIME", "Beginning of the interval, as \"2007-01-08 13:00\" or 2007-01-08T13:00."},
         {"TEXT", "The text; between quotation marks when it has blanks. An empty one, \"\", removes it."}},
        withCommon({json}),
        {"The text is kept as it is typed; the engine does not look into it."},
        {{"vtdn points set-extra 5-040-3-00-00 \"2007-01-08 13:00\" \"<x>checked</x>\"", "Writes a text."},
         {"vtdn points set-extra 5-040-3-00-00 2007-01-08T13:00 \"\"", "Removes it."}}};
}

VerbSpec pointsHistory() {
    return {"points history",
            "Lists what was edited on data points: when, by whom, with what, and what of the interval.",
            {{"PID", "Only edits of this parameter.", false}},
            withCommon({{"--from", "TIME", "Only of intervals not before this time.", "--from 2007-01-08"},
                        {"--to", "TIME", "Only of intervals before this time.", "--to 2007-01-09"},
                        {"--limit", "COUNT", "So many of the newest (100).", "--limit 10"},
                        csv,
                        json}),
            {"Newest first. Texts, occurrences and imports leave their trace here; values that `vtdn write` "
             "writes do not. "
             "The list is read from the site's data databases, since the component has no operation for it."},
            {{"vtdn points history", "The newest edits."},
             {"vtdn points history 5-040-3-00-00 --from 2007-01-08 --to 2007-01-09",
              "What was edited on a day of one parameter."}}};
}

}  // namespace

std::vector<VerbSpec> pointsTable() {
    return {pointsList(), pointsSetExtra(), pointsHistory()};
}

}  // namespace vtdn::client
