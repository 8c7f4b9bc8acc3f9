// The monitor codes that a site knows.
#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>

#include "store/database.h"
#include "store/value.h"

namespace vtdn::store {

/// Codes are 0 to highestMonitorCode in the table of known ones (stored values may carry any 32-bit code).
inline constexpr MonitorCode highestMonitorCode = 32'767;

struct MonitorCodeName {
    MonitorCode code = 0;
    std::string short_name;
    std::string long_name;
    /// Which code a computed value gets when its inputs have several: that of the highest rank. Usually the
    /// code itself.
    std::int32_t rank = 0;

    friend bool operator==(const MonitorCodeName&, const MonitorCodeName&) = default;
};

/// The known codes as they were read at one moment.
class MonitorCodeTable {
  public:
    MonitorCodeTable() = default;
    static MonitorCodeTable load(Database& config);

    [[nodiscard]] bool contains(MonitorCode code) const { return codes_.contains(code); }
    [[nodiscard]] const std::map<MonitorCode, MonitorCodeName>& codes() const { return codes_; }
    /// Of an unknown code the code itself.
    [[nodiscard]] std::int32_t rankOf(MonitorCode code) const;

  private:
    std::map<MonitorCode, MonitorCodeName> codes_;
};

/// Puts these codes in the place of all that a config database has. Code 0 is always known: it is added when
/// it is not among them. Throws outOfRange for a code outside 0 to highestMonitorCode or given twice.
void replaceMonitorCodes(Database& config, std::span<const MonitorCodeName> codes);

}  // namespace vtdn::store
