#include "store/time.h"

#include <chrono>
#include <cstdio>

#include "store/error.h"

namespace vtdn::store {
namespace {

constexpr std::chrono::sys_days dayZero{std::chrono::year{1899} / std::chrono::December / 30};

constexpr Time startOf(std::chrono::year_month_day date) {
    return (std::chrono::sys_days{date} - dayZero).count() * secondsPerDay;
}
static_assert(startOf(std::chrono::year{100} / 1 / 1) == earliestTime);
static_assert(startOf(std::chrono::year{9999} / 12 / 31) + secondsPerDay - 1 == latestTime);

}  // namespace

Time timeOf(const Civil& civil) {
    const std::chrono::year_month_day date{std::chrono::year{civil.year},
                                           std::chrono::month{static_cast<unsigned>(civil.month)},
                                           std::chrono::day{static_cast<unsigned>(civil.day)}};
    const bool inRange = civil.year >= 100 && civil.year <= 9999 && date.ok() && civil.hour >= 0 &&
                         civil.hour < 24 && civil.minute >= 0 && civil.minute < 60 && civil.second >= 0 &&
                         civil.second < 60;
    if (!inRange)
        throw Error(ErrorKind::outOfRange, "There is no such date or time of day in the years 100 to 9999.");
    return startOf(date) + civil.hour * 3600 + civil.minute * 60 + civil.second;
}

Civil civilOf(Time time) {
    const auto day = floorDivide(time, secondsPerDay);
    const auto second = static_cast<int>(time - day * secondsPerDay);
    const std::chrono::year_month_day date{dayZero + std::chrono::days{static_cast<int>(day)}};
    return {static_cast<int>(date.year()),
            static_cast<int>(static_cast<unsigned>(date.month())),
            static_cast<int>(static_cast<unsigned>(date.day())),
            second / 3600,
            second / 60 % 60,
            second % 60};
}

std::string timeText(Time time) {
    const Civil c = civilOf(time);
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d", c.year, c.month, c.day, c.hour, c.minute);
    std::string result = text;
    if (c.second != 0) {
        std::snprintf(text, sizeof text, ":%02d", c.second);
        result += text;
    }
    return result;
}

std::int64_t monthIndex(Time time) {
    const Civil c = civilOf(time);
    return (c.year - 1900) * std::int64_t{12} + c.month - 1;
}

Time monthStart(std::int64_t index) {
    const auto year = 1900 + floorDivide(index, 12);
    const auto month = index - floorDivide(index, 12) * 12 + 1;
    return startOf(std::chrono::year{static_cast<int>(year)} /
                   std::chrono::month{static_cast<unsigned>(month)} / 1);
}

}  // namespace vtdn::store
