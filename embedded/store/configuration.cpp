#include "store/configuration.h"

namespace vtdn::store {

Configuration Configuration::load(Database& config) {
    const Snapshot snapshot(config);
    Configuration c;
    c.parameters = ParameterSet::load(config);
    c.special_values = SpecialValueTable::load(config);
    c.relationships = RelationshipSet::load(config, c.parameters);
    c.monitor_codes = MonitorCodeTable::load(config);
    c.parameter_codes = ParameterCodeTable::load(config);
    c.units = UnitTable::load(config);
    return c;
}

}  // namespace vtdn::store
