// The runs of a filled data array, for block access without a copy.
#pragma once

#include <cstdint>

#include "engine/data_array_runs.h"
#include "store/run.h"

namespace vtdn::embedded {

/// The longest stretch of intervals from `first` (counted from 0, in the run) on whose values are of one kind
/// and whose codes are all one or lie side by side. It points into the run. A stretch of texts has the type
/// VT_EMPTY.
DIDataRun stretchAt(const store::Run& run, std::int32_t first);

}  // namespace vtdn::embedded
