#include "client/import/known_parameters.h"

#include "client/import/cells.h"
#include "store/error.h"
#include "store/pid_text.h"

namespace vtdn::client {

KnownParameters::KnownParameters(std::span<const store::Parameter> parameters) {
    for (const store::Parameter& p : parameters) byPid_.emplace(p.pid, &p);
}

const store::Parameter* KnownParameters::named(Table& table, std::size_t column) const {
    const std::string_view cell = table.cell(column);
    const store::Pid pid = pidOfCell(cell);
    const auto found = byPid_.find(pid);
    if (found != byPid_.end()) return found->second;
    table.problem(column, pid == 0
                              ? store::quote(cell) + " is no PID; PIDs look like 5-040-3-00-00 or 504030000"
                              : "parameters.csv has no parameter " + store::pidText(pid));
    return nullptr;
}

}  // namespace vtdn::client
