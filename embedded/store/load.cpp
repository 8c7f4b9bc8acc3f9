#include <map>

#include "store/site.h"
#include "store/writable.h"

namespace vtdn::store {

struct Load::State {
    Site& site;
    // Ended in the opposite order.
    Transaction config;
    Transaction data;
    Transaction short_term;
    std::map<Pid, SeriesStore::Appender> appenders;

    explicit State(Site& s)
        : site(s),
          config(s.database(DatabaseKind::config)),
          data(s.database(DatabaseKind::data)),
          short_term(s.database(DatabaseKind::dataShortTerm)) {}
    // What the site keeps in memory may be of this load.
    ~State() { site.flushCache(); }
};

Load::Load(Site& site) : state_(std::make_unique<State>(site)) {}
Load::~Load() = default;

void Load::replaceMonitorCodes(std::span<const MonitorCodeName> codes) {
    store::replaceMonitorCodes(state_->site.database(DatabaseKind::config), codes);
    state_->site.flushCache();
}

void Load::replaceParameters(std::span<const Parameter> parameters) {
    store::replaceParameters(state_->site.database(DatabaseKind::config), parameters);
    state_->site.flushCache();
}

void Load::replaceSpecialValues(std::span<const SpecialValueEntry> entries) {
    store::replaceSpecialValues(state_->site.database(DatabaseKind::config), entries);
    state_->site.flushCache();
}

void Load::replaceRelationships(std::span<const Relationship> relationships) {
    store::replaceRelationships(state_->site.database(DatabaseKind::config), relationships);
    state_->site.flushCache();
}

void Load::replaceParameterCodes(std::span<const ParameterCodeName> codes) {
    store::replaceParameterCodes(state_->site.database(DatabaseKind::config), codes);
    state_->site.flushCache();
}

void Load::replaceUnits(std::span<const UnitName> units) {
    store::replaceUnits(state_->site.database(DatabaseKind::config), units);
    state_->site.flushCache();
}

void Load::append(Pid pid, Time time, const Item& item) {
    requireStorable(pid, item.value);
    auto at = state_->appenders.find(pid);
    if (at == state_->appenders.end()) {
        const SeriesKey key = writableSeries(state_->site.parameters(), pid, nullptr);
        SeriesStore& store = state_->site.storeOf(key.interval);
        at = state_->appenders.emplace(pid, SeriesStore::Appender(store, key)).first;
    }
    at->second.append(time, item);
}

void Load::writeOccurrence(Pid tag, Time time, const Occurrence& occurrence, const EditOrigin& origin) {
    const ParameterSet& parameters = state_->site.parameters();
    const SeriesKey key = dataPointSeries(parameters, tag, parameters.entry(tag).interval);
    const PointChange change{.occurrence = occurrenceText(occurrence)};
    (void)state_->site.pointsOf(key.interval).write(key, time, change, origin);
}

void Load::commit() {
    for (auto& [pid, appender] : state_->appenders) appender.finish();
    state_->short_term.commit();
    state_->data.commit();
    state_->config.commit();
}

}  // namespace vtdn::store
