// Numbers as text, always with a decimal point: what people type, what programs read, what tables show.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "common/display_format.h"

namespace vtdn::client {

/// The whole text as a number: sign, digits with a point, exponent. No blanks, no separators of thousands,
/// neither infinity nor NaN. Nothing when it is none or lies outside the range of a double.
std::optional<double> parseNumber(std::string_view text);

/// The whole text as a whole number of 32 bits, digits with an optional sign.
std::optional<std::int32_t> parseInteger(std::string_view text);

using common::formatNumber;
using common::shortestText;

/// "1 row", "7 rows".
std::string counted(std::size_t number, std::string_view thing);

}  // namespace vtdn::client
