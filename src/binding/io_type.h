// The I/O types of parameters that mean something to the component.
#pragma once

#include <cstdint>

namespace vtdn::binding {

/// A parameter of any type that is not named here is calculated.
inline constexpr std::int32_t constantIo = 4;
inline constexpr std::int32_t otherConstantIo = 34;
/// The values are stored in the database: the only parameters that can be written.
inline constexpr std::int32_t databaseIo = 38;

}  // namespace vtdn::binding
