// Averaging levels of a quantity, as clients and engines name them.
#pragma once

#include <cstdint>

namespace vtdn::params {

/// The engine's letter for an averaging level: 1 minute "n", 2 hourly "h", 3 daily "d"; 0 for any other
/// number.
wchar_t intervalUnitOf(std::int32_t level) noexcept;

}  // namespace vtdn::params
