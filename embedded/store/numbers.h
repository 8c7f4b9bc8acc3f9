// The values of a run as doubles.
#pragma once

#include <vector>

#include "store/run.h"

namespace vtdn::store {

/// One double for each interval: its number, or missingNumber() where there is none.
void numbersOf(const Run& run, std::vector<double>& numbers);

}  // namespace vtdn::store
