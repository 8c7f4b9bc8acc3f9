// How long a unit operated.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "data_interface/period.h"

namespace vtdn::embedded {

/// Special value of a parameter: the PID of its unit's operating-time parameter, a whole number.
inline constexpr std::int32_t operatingTimeParameter = 1001;

/// The parameter that special value 1001 names; none when there is no such value. Throws store::Error
/// (badParameter) for a special value of another kind.
[[nodiscard]] std::optional<store::Pid> namedOperatingTime(store::Site& site, store::Pid pid);

/// The named one, or the parameter itself when none is named and it is given in hours. Throws store::Error
/// (badParameter) for one that is not given in hours ("h", "hr", "hrs", "hour" or "hours" in any case).
[[nodiscard]] store::Pid operatingTimeOf(store::Site& site, store::Pid pid);

/// Sums the values of an operating-time parameter, hours of operation in each interval. An interval that is
/// in the period in part counts in that proportion; what is no number counts as no operation.
[[nodiscard]] double hoursOperated(store::Site& site, store::Pid operatingTime, const Period& period);

/// When there was operation: the intervals with more than 0 hours of it, those side by side as one, in order.
[[nodiscard]] std::vector<Period> timesOperated(store::Site& site, store::Pid operatingTime,
                                                const Period& period);

}  // namespace vtdn::embedded
