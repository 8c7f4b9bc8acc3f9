#include "data_interface/period.h"

#include <algorithm>
#include <string>

#include "store/error.h"
#include "store/pid_text.h"

namespace vtdn::embedded {
namespace {

// Nearly three years of minutes: what people ask for is read as of one moment.
constexpr std::int64_t intervalsAtOnce = 1'440'000;

}  // namespace

store::Interval intervalOf(store::Site& site, store::Pid pid) {
    const auto& interval = site.parameters().entry(pid).interval;
    if (!interval)
        throw store::Error(store::ErrorKind::badInterval,
                           store::pidText(pid) +
                               " has no interval, so that nothing can be counted over a "
                               "span of time. Ask a parameter that has one.");
    return *interval;
}

void forEachRun(store::Site& site, store::Pid pid, const Period& period, Touching which,
                const std::function<void(const store::Run& run, std::int64_t first)>& use) {
    const store::Interval interval = intervalOf(site, pid);
    if (period.start >= period.end) return;
    std::int64_t first = interval.index(period.start);
    if (which == Touching::beginning && interval.begin(first) < period.start) ++first;
    const std::int64_t end = interval.index(period.end - 1) + 1;
    if (end - first > store::longestRun)
        throw store::Error(store::ErrorKind::outOfRange,
                           "From " + store::timeText(period.start) + " to " + store::timeText(period.end) +
                               " " + store::pidText(pid) + " has " + std::to_string(end - first) +
                               " intervals of " + interval.text() + ". A span may have up to " +
                               std::to_string(store::longestRun) + ".");
    const auto run = site.borrowRun();
    while (first < end) {
        const auto some = static_cast<std::int32_t>(std::min(end - first, intervalsAtOnce));
        site.read(pid, {interval.begin(first), some, interval}, *run);
        use(*run, first);
        first += some;
    }
}

}  // namespace vtdn::embedded
