// The time of this computer, as sites have it.
#pragma once

#include "com/computer.h"

namespace vtdn::client {

using com::standardTimeNow;

}  // namespace vtdn::client
