// The parameters of parameters.csv, as other files refer to them.
#pragma once

#include <cstddef>
#include <map>
#include <span>

#include "client/import/sheet.h"
#include "store/parameters.h"

namespace vtdn::client {

class KnownParameters {
  public:
    /// The parameters have to outlive this.
    explicit KnownParameters(std::span<const store::Parameter> parameters);

    /// The parameter that a cell names; null when there is none, which is reported then.
    const store::Parameter* named(Table& table, std::size_t column) const;
    [[nodiscard]] const store::Parameter& at(store::Pid pid) const { return *byPid_.at(pid); }
    /// Null when there is none.
    [[nodiscard]] const store::Parameter* find(store::Pid pid) const {
        const auto found = byPid_.find(pid);
        return found == byPid_.end() ? nullptr : found->second;
    }

  private:
    std::map<store::Pid, const store::Parameter*> byPid_;
};

}  // namespace vtdn::client
