// Values of parameters of every kind: stored, constant, rolled up and computed.
#pragma once

#include <cstdint>
#include <functional>

#include "store/monitor_codes.h"
#include "store/parameters.h"
#include "store/run.h"
#include "store/series.h"

namespace vtdn::store {

/// The database that values of an interval are kept in: short-term below an hour.
[[nodiscard]] bool isShortTerm(const Interval& interval);

/// Reads runs of one site. Holds no values of its own.
class ValueReader {
  public:
    /// Where the series of an interval are.
    using StoreOf = std::function<SeriesStore&(const Interval&)>;

    ValueReader(const ParameterSet& parameters, const MonitorCodeTable& codes, StoreOf store)
        : parameters_(parameters), codes_(codes), store_(std::move(store)) {}

    void read(Pid pid, const Span& span, Run& run);

  private:
    void readOwn(const ParameterEntry& entry, Time start, std::int32_t count, Run& run);
    void readAggregate(const ParameterEntry& input, Aggregation aggregation, const Span& span, Run& run);
    void readFormula(const ParameterEntry& entry, const Span& span, Run& run);
    [[nodiscard]] MonitorCode higher(MonitorCode a, MonitorCode b) const;

    const ParameterSet& parameters_;
    const MonitorCodeTable& codes_;
    StoreOf store_;
};

}  // namespace vtdn::store
