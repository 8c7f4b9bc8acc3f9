// The parts of the table of verbs, and the options that many verbs have.
#pragma once

#include <initializer_list>
#include <vector>

#include "client/cli/command.h"

namespace vtdn::client {

inline constexpr OptionSpec csv{"--csv", "", "CSV for programs: one header line, numbers in full.",
                                "--csv > out.csv"};
inline constexpr OptionSpec json{"--json", "", "JSON for programs.", "--json > out.json"};
inline constexpr OptionSpec dahs{
    "--dahs", "ID",
    "Which DAHS. Not needed when there is only one, or when the environment variable VANTOR_DAHS "
    "holds the id.",
    "--dahs 2"};
inline constexpr OptionSpec problems{
    "--problems", "", "Also prints the problems list when nothing was refused; it goes to standard error.",
    "--problems"};

/// The options of a verb that goes through the component, with those that all of them have.
inline std::vector<OptionSpec> withCommon(std::initializer_list<OptionSpec> own) {
    std::vector<OptionSpec> options(own);
    options.push_back(dahs);
    options.push_back(problems);
    return options;
}

std::vector<VerbSpec> siteTable();
std::vector<VerbSpec> paramsTable();
std::vector<VerbSpec> valuesTable();
std::vector<VerbSpec> pointsTable();
std::vector<VerbSpec> occurrencesTable();
std::vector<VerbSpec> othersTable();

}  // namespace vtdn::client
