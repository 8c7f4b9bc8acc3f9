// What every bench program does around its measurements.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "bench/report.h"

namespace vtdn::bench {

using Measure = std::function<std::vector<Figure>(const std::wstring& component, const std::wstring& engine)>;

/// Measures with the libraries beside the program and prints the figures. The program's exit code.
int runBench(const Measure& measure);

}  // namespace vtdn::bench
