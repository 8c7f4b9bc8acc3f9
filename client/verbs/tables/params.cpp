// Verbs about parameters.
#include "client/verbs/tables/tables.h"

namespace vtdn::client {

namespace {

VerbSpec paramsList() {
    return {
        "params list",
        "Lists the parameters of a DAHS, or those of one of the component's lists.",
        {{"TEXT", "Only those whose PID, name or unit holds this text, in any case.", false}},
        withCommon(
            {{"--type", "NUMBER", "Only those of a parameter type, a number of the engine's.", "--type 3"},
             {"--calibration", "", "Only calibration parameters.", "--calibration"},
             {"--part75", "", "With --calibration: only those under 40 CFR part 75.",
              "--calibration --part75"},
             {"--linearity", "", "Only linearity parameters under 40 CFR part 75.", "--linearity"},
             {"--interference", "", "Only interference-check parameters under 40 CFR part 75.",
              "--interference"},
             {"--related", "",
              "Only parameters that are related to others: averaging levels of one quantity.", "--related"},
             {"--interval", "LENGTH",
              "With --related: only the level of so many minutes, hours or days (m, h, d).",
              "--related --interval 1h"},
             csv,
             json}),
        {"Without one of the lists, all parameters are shown in ascending order. A list is in the order of "
         "the engine. Only one of the lists can be asked for at a time."},
        {{"vtdn params list", "All of them."},
         {"vtdn params list nox", "Those that have to do with NOx."},
         {"vtdn params list --calibration --part75", "What is calibrated under part 75."},
         {"vtdn params list --related --interval 1h",
          "Hourly parameters with a minute or daily counterpart."},
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

VerbSpec paramsRelated() {
    return {"params related",
            "Prints the relationship of a parameter: the averaging levels of its quantity, as XML.",
            {{"PID", "The parameter, as 5-040-3-00-00 or 504030000."}},
            withCommon({}),
            {"The document goes to standard output as the engine words it. A parameter that is related to no "
             "other has none; then a line on standard error says so, and the exit code is 0 all the same."},
            {{"vtdn params related 5-020-1-01-00", "Which parameters are averages of the gross load."},
             {"vtdn params related 5-020-1-01-00 > load.xml", "The document as a file."}}};
}

VerbSpec paramsSpecial() {
    return {
        "params special",
        "Prints a special value of a parameter: a numbered fact that the engine knows about it.",
        {{"PID", "The parameter, as 5-040-3-00-00 or 504030000."},
         {"ID", "Number of the special value, as -22."}},
        withCommon({{"--as", "KIND",
                     "text, number (rounded to a whole one, halves to even) or boolean. As text when it "
                     "is not given.",
                     "--as number"},
                    json}),
        {"docs/engine.md lists the numbers that mean something to the embedded engine. Text is as the "
         "component gives it: a number in it is written by the settings of this computer. When the "
         "component reports a failure, nothing is printed on standard output and the exit code is 1."},
        {{"vtdn params special 5-110-1-00-01 -22", "The program that the parameter is measured for."},
         {"vtdn params special 5-110-1-00-01 -25 --as boolean", "Whether calibration lists leave it out."}}};
}

VerbSpec paramsCall() {
    return {
        "params call",
        "Prints the result of a special function of a parameter: a numbered computation of the engine.",
        {{"PID", "The parameter, as 5-040-3-00-00 or 504030000."},
         {"ID", "Number of the special function, as 102."},
         {"ARG",
          "What the function takes: times (2007-01-08, \"2007-01-08 13:00\"), numbers (7, 12.5), true, "
          "false, and texts.",
          false, true}},
        withCommon({{"--as", "KIND",
                     "text, number (rounded to a whole one, halves to even), rounded (the same by way of "
                     "single precision) or boolean. As text when it is not given.",
                     "--as number"},
                    json}),
        {"What looks like a time, a number, true or false is one; text: in front makes a text of it, as "
         "text:2007. Text is printed as the component gives it: a number in it is written by the settings "
         "of this computer. When the component reports a failure, nothing is printed on standard output "
         "and the exit code is 1. docs/engine.md lists the functions of the embedded engine."},
        {{"vtdn params call 5-040-3-00-00 102 2007-01-08 2007-01-09", "The average of a day."},
         {"vtdn params call 5-040-3-00-00 106 2007-01-08 \"2007-01-08 13:00\" --as number",
          "How many values there are."}}};
}

VerbSpec paramsOptime() {
    return {"params optime",
            "Prints the operating time between two times in hours, rounded to a whole number.",
            {{"PID", "The parameter whose unit is meant, as 5-040-3-00-00 or 504030000."},
             {"FROM", "Beginning of the span, as 2007-01-08 or \"2007-01-08 13:00\"."},
             {"TO", "End of the span."}},
            withCommon({json}),
            {"The number is the component's: 0 also when the engine has an answer that is no number. `vtdn "
             "params call PID 32 FROM TO` has the fractions."},
            {{"vtdn params optime 5-040-3-00-00 2007-01-01 2007-02-01", "The hours of a month."}}};
}

}  // namespace

std::vector<VerbSpec> paramsTable() {
    return {paramsList(),    paramsShow(), paramsUses(),  paramsRelated(),
            paramsSpecial(), paramsCall(), paramsOptime()};
}

}  // namespace vtdn::client
