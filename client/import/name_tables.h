// Names by number: units.csv, monitor_codes.csv and parameter_codes.csv of a site's folder. Rows with a
// problem are reported.
#pragma once

#include <vector>

#include "client/import/problems.h"
#include "client/import/sheet.h"
#include "store/monitor_codes.h"
#include "store/parameter_codes.h"
#include "store/units.h"

namespace vtdn::client {

std::vector<store::UnitName> readUnits(const SiteFile& file, ImportProblems& problems);
std::vector<store::MonitorCodeName> readMonitorCodes(const SiteFile& file, ImportProblems& problems);
std::vector<store::ParameterCodeName> readParameterCodes(const SiteFile& file, ImportProblems& problems);

}  // namespace vtdn::client
