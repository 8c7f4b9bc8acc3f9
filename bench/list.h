// Listing 100,000 records through component and engine.
#pragma once

#include <string>
#include <vector>

#include "bench/report.h"

namespace vtdn::bench {

/// Works in the current folder.
std::vector<Figure> measureList(const std::wstring& componentFile);

}  // namespace vtdn::bench
