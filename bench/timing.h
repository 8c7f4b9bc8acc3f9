// Timing side by side: absolute times depend on the machine and its mood, so both halves of a ratio are
// measured in turns in one run, and the fastest round of each counts.
#pragma once

#include <algorithm>
#include <chrono>
#include <limits>
#include <utility>

namespace vtdn::bench {

template <class Body>
double secondsOf(Body&& body) {
    const auto begin = std::chrono::steady_clock::now();
    body();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

/// The fastest round of each of two bodies, run in turns.
template <class A, class B>
std::pair<double, double> fastest(int rounds, A&& a, B&& b) {
    std::pair<double, double> best{std::numeric_limits<double>::max(), std::numeric_limits<double>::max()};
    for (int i = 0; i < rounds; ++i) {
        best.first = std::min(best.first, secondsOf(a));
        best.second = std::min(best.second, secondsOf(b));
    }
    return best;
}

/// Repeats a short call, so that the clock's own cost does not count.
template <class Call>
auto repeat(int times, Call call) {
    return [times, call]() mutable {
        for (int i = 0; i < times; ++i) call();
    };
}

}  // namespace vtdn::bench
