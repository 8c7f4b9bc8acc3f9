// Numbers as text, always with a decimal point: what people type, what programs read, what tables show.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vtdn::client {

/// The whole text as a number: sign, digits with a point, exponent. No blanks, no separators of thousands,
/// neither infinity nor NaN. Nothing when it is none or lies outside the range of a double.
std::optional<double> parseNumber(std::string_view text);

/// The whole text as a whole number of 32 bits, digits with an optional sign.
std::optional<std::int32_t> parseInteger(std::string_view text);

/// The shortest text that reads back as the same number: "5680.7", "1e+30".
std::string shortestText(double value);

/// A value in a display format: '0' a digit, '#' a digit if there is one, '.', ',' between digits for
/// thousands, '%' for hundredths; what stands before and behind the digits is copied ("\" and quotation marks
/// as usual), and sections for negative numbers and zero come after ';'. An empty format, or one without a
/// digit, gives the shortest text.
std::string formatNumber(double value, std::string_view format);

/// "1 row", "7 rows".
std::string counted(std::size_t number, std::string_view thing);

}  // namespace vtdn::client
