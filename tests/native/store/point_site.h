// A small site with parameters that have data points of every kind.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "demo_site.h"
#include "store/data_points.h"
#include "store/reader.h"
#include "store/time.h"

namespace vtdn::store::test {

inline constexpr Pid occurrencePid = 504030500;      // occurrence, 1h
inline constexpr Pid bareOccurrencePid = 504030600;  // occurrence without an interval
inline const Interval minute = Interval::parse("1m");
inline const Interval hour = Interval::parse("1h");
inline const Interval month = Interval::parse("1M");
inline const std::string strange("<x>\0\xF0\x9F\x8F\xAD\r\n", 10);

inline Time at(int hours, int minutes = 0) {
    return timeOf({2007, 3, 25, hours, minutes, 0});
}

using Points = std::vector<DataPoint>;

struct PointSite : DemoSite {
    PointSite() {
        std::vector<Parameter> all = demoParameters();
        all.push_back(stored(occurrencePid, "1h"));
        all.back().io_type = io_type::occurrence;
        all.push_back(stored(bareOccurrencePid, ""));
        all.back().io_type = io_type::occurrence;
        replaceParameters(site.database(DatabaseKind::config), all);
        site.flushCache();
    }
    void writeOccurrence(Pid pid, const Interval& interval, Time time, const std::string& text) {
        site.saveDataPoint({pid, interval, time, {}, {}, true, text, editor});
    }
};

/// An excursion and a downtime that are told apart by a text.
inline Occurrence excursionOf(std::string reason, Pid pid = occurrencePid, bool excludable = false) {
    Occurrence occurrence;
    occurrence.excursion.emplace();
    occurrence.excursion->pid = pid;
    occurrence.excursion->excludable = excludable;
    occurrence.excursion->reason = std::move(reason);
    return occurrence;
}
inline Occurrence downtimeOf(std::string reason, Pid pid = bareOccurrencePid, bool excludable = false) {
    Occurrence occurrence;
    occurrence.downtime = OccurrencePart{pid, excludable, {}, std::move(reason), {}};
    return occurrence;
}
/// The parts of two.
inline Occurrence both(Occurrence one, const Occurrence& other) {
    if (other.excursion) one.excursion = other.excursion;
    if (other.downtime) one.downtime = other.downtime;
    return one;
}
inline std::string excursionText(std::string reason) {
    return occurrenceText(excursionOf(std::move(reason)));
}

}  // namespace vtdn::store::test
