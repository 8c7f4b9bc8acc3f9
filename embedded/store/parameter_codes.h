// The names of the parameter codes: what is measured, as a number.
#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>

#include "store/database.h"

namespace vtdn::store {

/// Codes are 0 to this. Nothing in the store depends on the code of a parameter.
inline constexpr std::int32_t highestParameterCode = 32'767;

struct ParameterCodeName {
    std::int32_t code = 0;
    std::string short_name;
    std::string long_name;

    friend bool operator==(const ParameterCodeName&, const ParameterCodeName&) = default;
};

/// The known codes as they were read at one moment.
class ParameterCodeTable {
  public:
    ParameterCodeTable() = default;
    static ParameterCodeTable load(Database& config);

    /// Ascending by code; unlike monitor codes there may be none.
    [[nodiscard]] const std::map<std::int32_t, ParameterCodeName>& codes() const { return codes_; }

  private:
    std::map<std::int32_t, ParameterCodeName> codes_;
};

/// Puts these codes in the place of all that a config database has. Throws outOfRange for a code outside 0 to
/// highestParameterCode or given twice.
void replaceParameterCodes(Database& config, std::span<const ParameterCodeName> codes);

}  // namespace vtdn::store
