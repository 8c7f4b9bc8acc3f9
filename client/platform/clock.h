// The time of this computer, as sites have it.
#pragma once

#include "store/time.h"

namespace vtdn::client {

/// Now in local standard time, whole seconds: daylight saving time is not added.
store::Time standardTimeNow();

}  // namespace vtdn::client
