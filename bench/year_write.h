// A year of minutes written through the component and the embedded engine, against an insert for each row.
#pragma once

#include <vector>

#include "bench/report.h"
#include "bench/row_table.h"
#include "bench/year_site.h"

namespace vtdn::bench {

/// Writes to the parameters that have no values yet.
std::vector<Figure> measureYearOfWrites(const OnSite& site, RowTable& table);

}  // namespace vtdn::bench
