// Numbers as people see them, always with a decimal point: in a display format, or with the digits that they
// need.
#pragma once

#include <string>
#include <string_view>

namespace vtdn::common {

/// The shortest text that reads back as the same number: "5680.7", "1e+30".
std::string shortestText(double value);

/// The double that the shortest text of a single reads as: 0.1 for the single next to it. Shown with this
/// one, a single has the digits that it was given with.
double decimalOf(float single);

/// A value in a display format: '0' a digit, '#' a digit if there is one, '.', ',' between digits for
/// thousands, '%' for hundredths; what stands before and behind the digits is copied ("\" and quotation marks
/// as usual), and sections for negative numbers and zero come after ';'. An empty format, or one without a
/// digit, gives the shortest text.
std::string formatNumber(double value, std::string_view format);

}  // namespace vtdn::common
