#include "client/output/axis.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace vtdn::client {

ValueAxis valueAxis(double low, double high, int mostTicks) {
    if (!(low < high)) {
        // One value only: room above and below it.
        const double room = low == 0 ? 1 : std::fabs(low) * 0.1;
        high = low + room;
        low -= room;
    }
    const double raw = (high - low) / std::max(mostTicks - 1, 1);
    const double power = std::pow(10.0, std::floor(std::log10(raw)));
    double step = power * 10;
    for (const double factor : {1.0, 2.0, 5.0}) {
        // A hair's breadth, so that rounding does not push 0.2 over to 0.5.
        if (power * factor >= raw * (1 - 1e-9)) {
            step = power * factor;
            break;
        }
    }
    const double exponent = std::floor(std::log10(step) + 1e-9);
    return {std::floor(low / step + 1e-9) * step, std::ceil(high / step - 1e-9) * step, step,
            std::clamp(static_cast<int>(-exponent), 0, 12)};
}

namespace {

struct Step {
    store::Time seconds;  // 0 when in months
    int months;
};

constexpr store::Time minute = 60;
constexpr store::Time hour = 3600;
constexpr store::Time day = store::secondsPerDay;
constexpr std::array<Step, 25> steps{
    {{1, 0},          {5, 0},           {15, 0},          {30, 0},   {minute, 0},
     {5 * minute, 0}, {15 * minute, 0}, {30 * minute, 0}, {hour, 0}, {2 * hour, 0},
     {3 * hour, 0},   {6 * hour, 0},    {12 * hour, 0},   {day, 0},  {2 * day, 0},
     {7 * day, 0},    {0, 1},           {0, 2},           {0, 3},    {0, 6},
     {0, 12},         {0, 24},          {0, 60},          {0, 120},  {0, 1200}}};

store::Time roughSeconds(const Step& step) {
    return step.months > 0 ? step.months * 30 * day : step.seconds;
}

std::string twoDigits(int number) {
    return (number < 10 ? "0" : "") + std::to_string(number);
}

std::string monthName(int month) {
    constexpr std::array<const char*, 12> names{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    return names[static_cast<std::size_t>(month - 1)];
}

TimeTick labelled(store::Time time, const Step& step, bool first) {
    const store::Civil c = store::civilOf(time);
    TimeTick tick{time, {}, {}};
    const std::string year = std::to_string(c.year);
    if (step.months >= 12) {
        tick.label = year;
    } else if (step.months > 0) {
        tick.label = monthName(c.month);
        if (first || c.month == 1) tick.second = year;
    } else if (step.seconds >= day) {
        tick.label = std::to_string(c.day) + " " + monthName(c.month);
        if (first || (c.month == 1 && c.day * day <= step.seconds)) tick.second = year;
    } else {
        tick.label = twoDigits(c.hour) + ":" + twoDigits(c.minute);
        if (step.seconds < minute) tick.label += ":" + twoDigits(c.second);
        if (first || time % day == 0)
            tick.second = std::to_string(c.day) + " " + monthName(c.month) + " " + year;
    }
    return tick;
}

}  // namespace

std::vector<TimeTick> timeTicks(store::Time from, store::Time to, int mostTicks) {
    const store::Time span = std::max<store::Time>(to - from, 1);
    const auto fits = [&](const Step& step) { return span / roughSeconds(step) + 1 <= mostTicks; };
    const auto found = std::find_if(steps.begin(), steps.end(), fits);
    const Step step = found == steps.end() ? steps.back() : *found;

    std::vector<TimeTick> ticks;
    if (step.months > 0) {
        std::int64_t index = -store::floorDivide(-store::monthIndex(from), step.months) * step.months;
        if (store::monthStart(index) < from) index += step.months;
        for (; store::monthStart(index) <= to; index += step.months)
            ticks.push_back(labelled(store::monthStart(index), step, ticks.empty()));
    } else {
        const store::Time first = -store::floorDivide(-from, step.seconds) * step.seconds;
        for (store::Time time = first; time <= to; time += step.seconds)
            ticks.push_back(labelled(time, step, ticks.empty()));
    }
    return ticks;
}

}  // namespace vtdn::client
