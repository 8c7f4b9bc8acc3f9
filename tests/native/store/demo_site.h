// A small site with parameters of every kind.
#pragma once

#include "store/site.h"
#include "temp_folder.h"

namespace vtdn::store::test {

inline constexpr Pid minutePid = 504010000;      // stored, 1m
inline constexpr Pid hourPid = 504030000;        // stored, 1h, rolled up by sums
inline constexpr Pid limitPid = 590500000;       // constant 0.2 (a single)
inline constexpr Pid averagePid = 504030200;     // average of the minutes, 1h
inline constexpr Pid formulaPid = 504130200;     // hour * limit + average
inline constexpr Pid dayMaximumPid = 504040200;  // maximum of the hours, 1d
inline constexpr Pid monthPid = 504050000;       // stored, 1M

inline const EditOrigin editor{timeOf({2007, 3, 26, 8, 15, 30}), "test", "someone"};

inline Parameter stored(Pid pid, const char* interval) {
    Parameter p;
    p.pid = pid;
    p.name = "Stored";
    p.interval = interval;
    return p;
}

inline Parameter constant(Pid pid, Value value) {
    Parameter p;
    p.pid = pid;
    p.name = "Constant";
    p.io_type = io_type::constant;
    p.constant = std::move(value);
    return p;
}

inline Parameter aggregate(Pid pid, const char* interval, Aggregation rule, Pid used) {
    Parameter p = stored(pid, interval);
    p.name = "Aggregate";
    p.io_type = 10;
    p.calculation = rule;
    p.uses = {used};
    return p;
}

inline Parameter computed(Pid pid, const char* interval, const char* formula, std::vector<Pid> uses) {
    Parameter p = stored(pid, interval);
    p.name = "Computed";
    p.io_type = 10;
    p.formula = formula;
    p.uses = std::move(uses);
    return p;
}

inline std::vector<Parameter> demoParameters() {
    std::vector<Parameter> all{
        stored(minutePid, "1m"),
        stored(hourPid, "1h"),
        constant(limitPid, 0.2F),
        aggregate(averagePid, "1h", Aggregation::average, minutePid),
        computed(formulaPid, "1h", "[5-040-3-00-00] * P(590500000) + [5-040-3-02-00]",
                 {hourPid, limitPid, averagePid}),
        aggregate(dayMaximumPid, "1d", Aggregation::maximum, hourPid),
        stored(monthPid, "1M"),
    };
    all[1].roll_up = Aggregation::sum;
    return all;
}

struct DemoSite {
    TempFolder folder;
    Site site = Site::create(SiteConnections::inFolder(folder.path()), "DEMO");

    DemoSite() {
        replaceParameters(site.database(DatabaseKind::config), demoParameters());
        site.flushCache();
    }
    [[nodiscard]] Site reopen() const { return Site(SiteConnections::inFolder(folder.path()), "DEMO"); }
};

}  // namespace vtdn::store::test
