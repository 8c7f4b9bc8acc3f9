#include "data_interface/date.h"

#include <cmath>
#include <string>

#include "common/dates.h"
#include "store/error.h"

namespace vtdn::embedded {

store::Time timeOfDate(DATE date) {
    // Far enough outside that whole seconds still fit.
    constexpr double farAway = 1e7;
    if (std::isfinite(date) && std::fabs(date) < farAway) {
        const store::Time time = common::secondsOfDate(date);
        if (time >= store::earliestTime && time <= store::latestTime) return time;
    }
    throw store::Error(
        store::ErrorKind::outOfRange,
        "The date with the serial number " + std::to_string(date) + " is outside the years 100 to 9999.");
}

}  // namespace vtdn::embedded
