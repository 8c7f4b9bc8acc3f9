// The names of units, monitor codes and parameter codes.
#include <algorithm>

#include "client/verbs/context.h"

namespace vtdn::client {

namespace {

struct NameColumn {
    Column column;
    NameList list;
};

/// One row per number that has a name of any sort, or per number when --all asks for them.
ExitCode listNames(Context& context, Column number, const std::vector<NameColumn>& wanted,
                   const std::string& whenNone) {
    Binding binding(context);
    std::vector<Column> columns{std::move(number)};
    std::vector<std::vector<std::string>> lists;
    std::size_t count = 0;
    for (const NameColumn& column : wanted) {
        columns.push_back(column.column);
        lists.push_back(binding->names(column.list));
        count = std::max(count, lists.back().size());
    }
    const auto rows = context.rows(std::move(columns));
    const bool all = context.arguments.has("--all");
    std::size_t shown = 0;
    for (std::size_t i = 0; i < count; ++i) {
        std::vector<Cell> cells{static_cast<std::int32_t>(i)};
        bool named = false;
        for (const auto& list : lists) {
            cells.emplace_back(i < list.size() ? list[i] : std::string());
            named = named || !cells.back().raw().empty();
        }
        if (!named && !all) continue;
        rows->row(cells);
        ++shown;
    }
    rows->finish();
    if (shown == 0) context.console.error(whenNone);
    binding.report(false);
    return ExitCode::done;
}

}  // namespace

ExitCode runNamesUnits(Context& context) {
    return listNames(context, {"unit", "Unit", Column::Align::right},
                     {{{"name", "Name"}, NameList::units},
                      {{"oris_code", "ORIS code"}, NameList::unitOrisCodes},
                      {{"unit_id", "Unit ID"}, NameList::unitIds}},
                     "No unit of the site has a name.");
}

namespace {

/// Codes have long names that are sentences: they are shown when asked for.
ExitCode listCodes(Context& context, NameList shortNames, NameList longNames, const std::string& whenNone) {
    std::vector<NameColumn> columns{{{"short_name", "Short name"}, shortNames}};
    if (context.arguments.has("--long")) columns.push_back({{"long_name", "Long name"}, longNames});
    return listNames(context, {"code", "Code", Column::Align::right}, columns, whenNone);
}

}  // namespace

ExitCode runNamesMc(Context& context) {
    return listCodes(context, NameList::shortMonitorCodes, NameList::longMonitorCodes,
                     "The site has no monitor codes.");
}

ExitCode runNamesPc(Context& context) {
    return listCodes(context, NameList::shortParameterCodes, NameList::longParameterCodes,
                     "The site has no parameter codes.");
}

}  // namespace vtdn::client
