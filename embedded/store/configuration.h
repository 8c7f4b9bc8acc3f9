// What a config database says about a site, as of one moment.
#pragma once

#include "store/monitor_codes.h"
#include "store/parameter_codes.h"
#include "store/parameters.h"
#include "store/relationships.h"
#include "store/special_values.h"
#include "store/units.h"

namespace vtdn::store {

struct Configuration {
    ParameterSet parameters;
    SpecialValueTable special_values;
    RelationshipSet relationships;
    MonitorCodeTable monitor_codes;
    ParameterCodeTable parameter_codes;
    UnitTable units;

    static Configuration load(Database& config);
};

}  // namespace vtdn::store
