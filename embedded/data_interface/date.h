// Automation dates as the store's times.
#pragma once

#include "com/platform.h"
#include "store/time.h"

namespace vtdn::embedded {

/// Rounds to the nearest second. Throws store::Error (outOfRange) for what is no date in the years 100 to
/// 9999.
store::Time timeOfDate(DATE date);

}  // namespace vtdn::embedded
