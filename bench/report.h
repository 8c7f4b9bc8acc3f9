// The figures: numbers for programs, what is behind them for people.
#pragma once

#include <string>
#include <vector>

namespace vtdn::bench {

/// One figure: its key in targets.json, the number, and the measurements behind it.
struct Figure {
    std::string key;
    double value;
    std::string basis;
};

/// "12.34 ms over 11.22 ms": the two measurements of a ratio.
std::string over(double a, double b, const char* unit);

/// Prints the numbers as one JSON object, and the basis of each to the standard error.
void print(const std::vector<Figure>& figures);

}  // namespace vtdn::bench
