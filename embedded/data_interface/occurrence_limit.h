// The limit that an excursion exceeded, taken from the parameters of the site.
#pragma once

#include <optional>
#include <string>

#include "store/occurrence.h"
#include "store/site.h"

namespace vtdn::embedded {

/// Gives an excursion that says no limit the one that its occurrence parameter names in special value 1003:
/// the PID of a constant, and its value with its units as they are now. Without that special value, and for a
/// PID that is no occurrence parameter, nothing changes. Returns a sentence when the special value names no
/// constant, and leaves the excursion without a limit then.
[[nodiscard]] std::optional<std::string> fillLimit(store::Site& site, store::Excursion& excursion);

}  // namespace vtdn::embedded
