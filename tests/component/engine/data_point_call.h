// Calls of the managers of data points.
#pragma once

#include <string>

#include "special_call.h"

namespace vtdn::embedded::test {

enum class Manager { longTerm, shortTerm };

/// What a client gives beside the manager.
struct Tag {
    LONG id = hourPid;
    std::wstring interval = L"1h";
    std::wstring siteId = L"DEMO";
};

inline const Tag minutes{minutePid, L"1m"};

/// The managers of an engine, by which of them is meant.
class DataPointManagers {
  public:
    explicit DataPointManagers(const engine::Engine& engine)
        : long_(engine.longTermData()), short_(engine.shortTermData()) {}

    [[nodiscard]] engine::Collection<engine::DataPoint> list(Manager manager, const Tag& tag, DATE first,
                                                             DATE last) const {
        const com::Bstr siteId(tag.siteId);
        const com::Bstr interval(tag.interval);
        const engine::DataPointKey key{siteId, tag.id, interval.get()};
        return manager == Manager::longTerm
                   ? long_.list(&DIQAManager::GetLongTermDataPoints, key, first, last)
                   : short_.list(&DIDataPointList::GetShortTermDataPoints, key, first, last);
    }
    [[nodiscard]] bool update(Manager manager, const Tag& tag, DATE at, std::wstring_view text) const {
        const com::Bstr siteId(tag.siteId);
        const com::Bstr interval(tag.interval);
        const com::Bstr xValue(text);
        const engine::DataPointKey key{siteId, tag.id, interval.get()};
        return manager == Manager::longTerm ? long_.updateXValue(key, at, xValue)
                                            : short_.updateXValue(key, at, xValue);
    }

  private:
    engine::LongTermData long_;
    engine::ShortTermData short_;
};

/// A day of minutes, or of as many as are asked for, with one value and code, stored at once.
inline void storeMinutes(const engine::Param& param, float value, LONG mc, LONG count = 1440) {
    const auto data = engine::DataArray::create();
    const auto mask = engine::DataArray::create();
    for (const auto& array : {data, mask}) array.define(hour(0), count, com::Bstr(L"m"), 1);
    data.fill(com::Variant::of(value), mc);
    mask.fill(com::Variant::of(LONG{3}), 0);
    com::SafeArray arguments = variantsOf({com::Variant::of(data.get()), com::Variant::of(mask.get())});
    static_cast<void>(param.specialFunction(33, arguments));
}

inline com::Variant valueOf(const engine::DataPoint& point) {
    return point.value(&DIDataPoint::get_NValue);
}
inline com::Variant codeOf(const engine::DataPoint& point) {
    return point.value(&DIDataPoint::get_MC);
}
inline std::wstring extraOf(const engine::DataPoint& point) {
    return std::wstring(point.text(&DIDataPoint::get_XValueXML).view());
}
inline std::wstring occurrenceOf(const engine::DataPoint& point) {
    return std::wstring(point.text(&DIDataPoint::get_OccDataXML).view());
}
inline DATE timeOf(const engine::DataPoint& point) {
    return point.date(&DIDataPoint::get_TStamp);
}

/// Every character that could get lost on the way.
inline const std::wstring anyText = [] {
    using namespace std::string_literals;
    return L"<x a=\"1\">\r\n\t&amp; \0 \u20AC \U0001F3ED</x>"s;
}();

}  // namespace vtdn::embedded::test
