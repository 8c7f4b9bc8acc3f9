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
    // As the owner of occurrence texts writes them.
    void writeOccurrence(Pid pid, const Interval& interval, Time time, std::string_view text) {
        Database& db =
            site.database(isShortTerm(interval) ? DatabaseKind::dataShortTerm : DatabaseKind::data);
        SeriesStore series(db);
        DataPointStore(db, series).write({pid, interval}, time, PointText::occurrence, text);
    }
};

}  // namespace vtdn::store::test
