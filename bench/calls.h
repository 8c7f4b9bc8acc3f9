// What the component itself costs, on an engine in memory.
#pragma once

#include <string>
#include <vector>

#include "bench/report.h"

namespace vtdn::bench {

std::vector<Figure> measureCalls(const std::wstring& componentFile);

}  // namespace vtdn::bench
