// The intervals of a parameter over a span of time.
#pragma once

#include <cstdint>
#include <functional>

#include "store/interval.h"
#include "store/run.h"
#include "store/site.h"
#include "store/time.h"
#include "store/value.h"

namespace vtdn::embedded {

/// From a time up to another one, which is not part of it.
struct Period {
    store::Time start;
    store::Time end;
};

/// The parameter's own interval. Throws store::Error: unknownParameter, or badInterval for one without.
[[nodiscard]] store::Interval intervalOf(store::Site& site, store::Pid pid);

/// Which intervals of a period.
enum class Touching {
    beginning,   ///< those that begin in it
    overlapping  ///< those of which any part is in it
};

/// Reads the intervals of a parameter in order, a million at a time, so that memory does not grow with the
/// period; `use` is called with each part and the number of its first interval (see Interval::index). Throws
/// store::Error: what intervalOf and Site::read throw, and outOfRange for more than longestRun intervals.
void forEachRun(store::Site& site, store::Pid pid, const Period& period, Touching which,
                const std::function<void(const store::Run& run, std::int64_t first)>& use);

}  // namespace vtdn::embedded
