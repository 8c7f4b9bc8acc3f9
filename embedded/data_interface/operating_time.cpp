#include "data_interface/operating_time.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "store/error.h"
#include "store/pid_text.h"
#include "store/text.h"

namespace vtdn::embedded {
namespace {

bool isHours(std::string_view units) {
    constexpr std::array<std::string_view, 5> names{"h", "hr", "hrs", "hour", "hours"};
    return std::ranges::any_of(names,
                               [&](std::string_view name) { return store::equalsIgnoringCase(units, name); });
}

// Calls use(interval, number) for each interval that is in the period, be it in part, and holds a number.
template <class Use>
void forEachHours(store::Site& site, store::Pid operatingTime, const Period& period, Use use) {
    const store::Interval interval = intervalOf(site, operatingTime);
    forEachRun(site, operatingTime, period, Touching::overlapping,
               [&](const store::Run& run, std::int64_t first) {
                   store::Time begin = interval.begin(first);
                   for (std::int32_t i = 0; i < run.count(); ++i) {
                       const store::Time end = interval.step(begin, 1);
                       if (const auto number = store::numberOf(run.value(i)))
                           use(Period{begin, end}, *number);
                       begin = end;
                   }
               });
}

[[noreturn]] void refuse(const std::string& sentence) {
    throw store::Error(store::ErrorKind::badParameter, sentence);
}

}  // namespace

std::optional<store::Pid> namedOperatingTime(store::Site& site, store::Pid pid) {
    const store::SpecialValue& named = site.specialValue(pid, operatingTimeParameter);
    switch (store::kindOf(named)) {
        case store::SpecialValueKind::null:
            return std::nullopt;
        case store::SpecialValueKind::integer:
            return std::get<std::int32_t>(named);
        default:
            refuse("The special value 1001 of " + store::pidText(pid) +
                   " is not a whole number. It is the PID of the unit's operating-time parameter.");
    }
}

store::Pid operatingTimeOf(store::Site& site, store::Pid pid) {
    const auto named = namedOperatingTime(site, pid);
    const store::Pid asked = named.value_or(pid);
    const store::Parameter& parameter = site.parameters().get(asked);
    if (isHours(parameter.units)) return asked;
    const std::string is = " is given in " + store::quote(parameter.units) + " and not in hours";
    if (named)
        refuse("The operating-time parameter of " + store::pidText(pid) + ", " + store::pidText(asked) + "," +
               is + ". Correct its units or special value 1001.");
    refuse(store::pidText(pid) + is +
           ", and no special value 1001 names the operating-time parameter of its unit.");
}

double hoursOperated(store::Site& site, store::Pid operatingTime, const Period& period) {
    double hours = 0;
    forEachHours(site, operatingTime, period, [&](const Period& interval, double number) {
        const store::Time inside =
            std::min(interval.end, period.end) - std::max(interval.start, period.start);
        const store::Time whole = interval.end - interval.start;
        hours += inside == whole ? number : number * static_cast<double>(inside) / static_cast<double>(whole);
    });
    return hours;
}

std::vector<Period> timesOperated(store::Site& site, store::Pid operatingTime, const Period& period) {
    std::vector<Period> times;
    forEachHours(site, operatingTime, period, [&](const Period& interval, double number) {
        if (!(number > 0)) return;
        if (!times.empty() && times.back().end == interval.start)
            times.back().end = interval.end;
        else
            times.push_back(interval);
    });
    return times;
}

}  // namespace vtdn::embedded
