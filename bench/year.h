// A year of minutes through the component and the embedded engine, against rows in a plain table and against
// the bare arrays.
#pragma once

#include <string>
#include <vector>

#include "bench/report.h"

namespace vtdn::bench {

/// Makes a site and a table of ten parameters with a year of minutes each in `folder`, which must be empty.
std::vector<Figure> measureYear(const std::wstring& componentFile, const std::wstring& engineFile,
                                const std::string& folder);

}  // namespace vtdn::bench
