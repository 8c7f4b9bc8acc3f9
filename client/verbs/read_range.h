// Which intervals `vtdn read` is asked for.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "client/cli/command.h"
#include "store/interval.h"

namespace vtdn::client {

/// Most intervals of one run; what is longer is better read in pieces.
inline constexpr std::int32_t mostIntervals = 2'000'000;

struct ReadRange {
    bool one = false;  ///< asked for by --at
    store::Time start = 0;
    std::int32_t count = 1;
    store::Interval interval = store::Interval::of("h", 1);
};

/// The interval of --interval, if it was given. Throws Failure (usage).
std::optional<store::Interval> askedInterval(const Arguments& arguments);

/// Reads --at, --day, --month, --from with --to or --count. Throws Failure (usage) for anything but exactly
/// one way to say it, for texts that are no times, and for a run that is empty or too long.
ReadRange readRange(const Arguments& arguments, const store::Interval& interval);

/// From a time to before another.
struct AskedSpan {
    store::Time from = 0;
    store::Time to = 0;
};

/// Reads --day, --month, or --from with --to. Throws Failure (usage) for anything but exactly one way to say
/// it, and for a span that ends before it begins.
AskedSpan askedSpan(const Arguments& arguments);

/// From a time to before another, each of them only if it was given.
struct OpenSpan {
    std::optional<store::Time> from;
    std::optional<store::Time> to;
};

/// Reads --from and --to, which may be missing. Throws Failure (usage).
OpenSpan openSpan(const Arguments& arguments);

/// The interval type and length as the component takes them: a unit letter and a count.
struct EngineInterval {
    std::string type;
    std::int32_t length;
};
EngineInterval engineInterval(const store::Interval& interval);

/// The time of an option or operand. Throws Failure (usage) that names it.
store::Time timeArgument(std::string_view what, const std::string& text);

}  // namespace vtdn::client
