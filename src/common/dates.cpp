#include "common/dates.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <string>

namespace vtdn::common {
namespace {

constexpr std::int64_t secondsPerDay = 86400;
constexpr double firstDate = -657434.0;   // 1 January 100
constexpr double endOfDates = 2958466.0;  // 1 January 10000
constexpr std::chrono::sys_days epoch = std::chrono::year{1899} / 12 / 30;

constexpr bool inRange(double date) noexcept {
    return date > firstDate - 1.0 && date < endOfDates;
}

/// The day of a date and its time of day as a fraction.
struct DayAndTime {
    double day;
    double time;
};

DayAndTime apart(double date) noexcept {
    const double day = std::trunc(date);
    return {day, std::fabs(date - day)};
}

double together(double day, double time) noexcept {
    return day < 0 ? day - time : day + time;
}

double addMonths(double date, std::int64_t months) {
    using namespace std::chrono;
    const auto [day, time] = apart(date);
    const year_month_day from{epoch + days{static_cast<int>(day)}};
    const std::int64_t count =
        static_cast<int>(from.year()) * std::int64_t{12} + static_cast<unsigned>(from.month()) - 1 + months;
    if (count < 1200 || count >= 120000) return endOfDates;
    const year_month month = year{static_cast<int>(count / 12)} / static_cast<int>(count % 12 + 1);
    const year_month_day_last last{month.year(), month_day_last{month.month()}};
    const year_month_day to = month / std::min(from.day(), last.day());
    return together(static_cast<double>((sys_days{to} - epoch).count()), time);
}

struct Unit {
    std::wstring_view letters;
    std::int64_t seconds;  // 0 for units of whole days or months
    std::int64_t days;
    std::int64_t months;
};
constexpr Unit unitTable[] = {
    {L"s", 1, 0, 0}, {L"n", 60, 0, 0}, {L"h", 3600, 0, 0}, {L"d", 0, 1, 0}, {L"y", 0, 1, 0},
    {L"w", 0, 1, 0}, {L"ww", 0, 7, 0}, {L"m", 0, 0, 1},    {L"q", 0, 0, 3}, {L"yyyy", 0, 0, 12},
};

const Unit* findUnit(std::wstring_view letters) {
    std::wstring lower(letters);
    for (wchar_t& c : lower)
        if (c >= L'A' && c <= L'Z') c = static_cast<wchar_t>(c - L'A' + L'a');
    for (const Unit& unit : unitTable)
        if (unit.letters == lower) return &unit;
    return nullptr;
}

}  // namespace

std::int64_t secondsOfDate(double date) noexcept {
    const auto [day, time] = apart(date);
    return static_cast<std::int64_t>(day) * secondsPerDay + std::llround(time * secondsPerDay);
}

double dateOfSeconds(std::int64_t seconds) noexcept {
    std::int64_t day = seconds / secondsPerDay;
    std::int64_t rest = seconds % secondsPerDay;
    if (rest < 0) {
        rest += secondsPerDay;
        --day;
    }
    return together(static_cast<double>(day), static_cast<double>(rest) / secondsPerDay);
}

std::optional<double> addIntervals(std::wstring_view unit, double date, std::int32_t count) {
    const Unit* step = findUnit(unit);
    if (!step || !inRange(date)) return std::nullopt;
    double result;
    if (step->seconds != 0) {
        result = dateOfSeconds(secondsOfDate(date) + step->seconds * count);
    } else if (step->days != 0) {
        const auto [day, time] = apart(date);
        result = together(day + static_cast<double>(step->days * count), time);
    } else {
        result = addMonths(date, step->months * count);
    }
    if (!inRange(result)) return std::nullopt;
    return result;
}

}  // namespace vtdn::common
