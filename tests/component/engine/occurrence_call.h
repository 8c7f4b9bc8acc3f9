// Calls for occurrences, and a site that has what they need.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "common/dates.h"
#include "data_point_call.h"
#include "store/occurrence.h"

namespace vtdn::embedded::test {

inline constexpr LONG exceededPid =
    510103001;  // occurrence parameter of excursions of the hour, limit 0.2 lb/mmBtu
inline constexpr LONG downPid = 510103002;        // occurrence parameter of downtimes of the hour
inline constexpr LONG otherHourPid = 604030000;   // stored, 1h, of another unit
inline constexpr LONG fewMinutesPid = 504110000;  // stored, 6m
inline constexpr LONG secondsPid = 504110100;     // stored, 90s

inline std::wstring xmlOf(const store::Occurrence& occurrence) {
    return com::fromUtf8(store::occurrenceText(occurrence));
}
inline store::Occurrence excursionOf(LONG pid, bool excludable = false) {
    store::Occurrence occurrence;
    occurrence.excursion.emplace();
    occurrence.excursion->pid = pid;
    occurrence.excursion->excludable = excludable;
    return occurrence;
}
inline store::Occurrence downtimeOf(LONG pid, bool excludable = false) {
    store::Occurrence occurrence;
    occurrence.downtime.emplace();
    occurrence.downtime->pid = pid;
    occurrence.downtime->excludable = excludable;
    return occurrence;
}
inline store::Occurrence bothOf(bool excursionExcludable, bool downtimeExcludable) {
    store::Occurrence occurrence = excursionOf(exceededPid, excursionExcludable);
    occurrence.downtime = downtimeOf(downPid, downtimeExcludable).downtime;
    return occurrence;
}

/// What a client asks for; everything of the day when nothing is said.
struct Query {
    DATE first = hour(0);
    DATE last = hour(23);
    bool downtimes = true;
    bool excursions = true;
    LONG filter = 0;
    bool byTag = false;
    com::Variant pids = com::Variant::of(static_cast<IDispatch*>(nullptr));
    std::wstring siteId = L"DEMO";
};

using Occurrences = engine::Collection<engine::Occurrence>;

inline Occurrences listed(const engine::LongTermData& data, const Query& query) {
    return data.occurrences(com::Bstr(query.siteId),
                            {query.first, query.last, query.downtimes, query.excursions, query.filter,
                             query.byTag, query.pids.get()});
}

/// What a client saves.
struct Save {
    Tag tag{};
    DATE at = hour(1);
    com::Variant value = com::Variant::null();
    com::Variant code = com::Variant::null();
    bool mayCreate = true;
    std::wstring occurrence{};
    std::wstring source = L"OccEdit";
    std::wstring user{};
};

inline bool saved(const engine::LongTermData& data, const Save& save) {
    const com::Bstr siteId(save.tag.siteId);
    const com::Bstr interval(save.tag.interval);
    const com::Bstr occurrence(save.occurrence);
    const com::Bstr source(save.source);
    const com::Bstr user(save.user);
    return data.save({siteId, save.tag.id, interval.get()},
                     {save.at, save.value, save.code, save.mayCreate, occurrence, source, user});
}

inline engine::DataPoint foundPoint(const engine::LongTermData& data, const Tag& tag, DATE from, DATE to) {
    const com::Bstr siteId(tag.siteId);
    const com::Bstr interval(tag.interval);
    return data.find({siteId, tag.id, interval.get()}, from, to);
}

inline std::wstring textIn(const engine::Occurrence& occurrence) {
    return std::wstring(occurrence.event().text(&DIOccurrenceEvent::get_OccDataXML).view());
}

/// The site DEMO with occurrence parameters, and an engine that is set up on it.
class OnOccurrences : public OnSpecialFunctions {
  protected:
    OnOccurrences() {
        configure([](store::Load& load) {
            auto all = store::test::demoParameters();
            for (auto& parameter : all)
                if (parameter.pid == limitPid) parameter.units = "lb/mmBtu";
            for (const LONG pid : {exceededPid, downPid}) {
                store::Parameter occurrence;
                occurrence.pid = pid;
                occurrence.name = "Occurrence";
                occurrence.io_type = store::io_type::occurrence;
                all.push_back(occurrence);
            }
            all.push_back(store::test::stored(otherHourPid, "1h"));
            all.push_back(store::test::stored(fewMinutesPid, "6m"));
            all.push_back(store::test::stored(secondsPid, "90s"));
            load.replaceParameters(all);
            const std::vector<store::SpecialValueEntry> facts{{exceededPid, 1003, std::int32_t{limitPid}}};
            load.replaceSpecialValues(facts);
        });
    }

    void save(const Save& what) {
        EXPECT_TRUE(saved(data, what));
        EXPECT_EQ(heard.take(), std::vector<std::wstring>{});
    }
    void save(DATE at, const store::Occurrence& occurrence, const Tag& tag = {}) {
        save({.tag = tag, .at = at, .occurrence = xmlOf(occurrence)});
    }
    /// Quietly, as clients like it.
    [[nodiscard]] Occurrences list(const Query& query = {}) {
        auto found = listed(data, query);
        EXPECT_EQ(heard.take(), std::vector<std::wstring>{});
        return found;
    }
    /// The hours of the day of the occurrences found, in their order.
    [[nodiscard]] std::vector<double> hours(const Query& query = {}) {
        std::vector<double> all;
        const auto found = list(query);
        for (LONG i = 1; found && i <= found.count(); ++i)
            all.push_back(
                static_cast<double>(common::secondsOfDate(found.item(i).date(&DIOccurrence::get_StartDate)) -
                                    common::secondsOfDate(hour(0))) /
                3600);
        return all;
    }
    /// What another connection has of a tag's data points of the day.
    [[nodiscard]] std::vector<store::DataPoint> stored(LONG pid = hourPid,
                                                       const char* interval = "1h") const {
        store::Site site(connections(), "DEMO");
        return site.dataPoints(pid, store::Interval::parse(interval), store::timeOf({2007, 3, 25, 0, 0, 0}),
                               store::timeOf({2007, 3, 25, 23, 59, 59}));
    }
    [[nodiscard]] std::vector<store::Edit> edits() const {
        store::Site site(connections(), "DEMO");
        return site.edits();
    }

    engine::LongTermData data = engine.longTermData();
};

}  // namespace vtdn::embedded::test
