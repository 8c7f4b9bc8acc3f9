// Where the ticks of a chart's axes stand and what is written at them.
#pragma once

#include <string>
#include <vector>

#include "store/time.h"

namespace vtdn::client {

struct ValueAxis {
    double low;
    double high;
    double step;
    int decimals;  ///< of the labels
};

/// An axis with round ticks (1, 2 or 5 times a power of ten, at most `mostTicks` of them) that holds both
/// values.
ValueAxis valueAxis(double low, double high, int mostTicks);

struct TimeTick {
    store::Time time;
    std::string label;
    std::string
        second;  ///< a second line: the date where a day begins, the year where a year begins; mostly empty
};

/// Ticks at round times of the calendar between two times, at most `mostTicks` of them. The first tick always
/// says its date or year.
std::vector<TimeTick> timeTicks(store::Time from, store::Time to, int mostTicks);

}  // namespace vtdn::client
