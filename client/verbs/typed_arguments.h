// What people type behind verbs and options, as values.
#pragma once

#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "client/cli/command.h"
#include "store/time.h"

namespace vtdn::client {

/// The PID that was typed. Throws Failure (usage).
std::int32_t pidArgument(const std::string& text);

/// The whole number of an option or operand. Throws Failure (usage) that names it and says what it takes.
std::int32_t integerArgument(std::string_view option, const std::string& text, std::int32_t least,
                             std::int32_t most = std::numeric_limits<std::int32_t>::max());

/// One of the words that an option takes, as its place among them; `otherwise` when the option was not given.
/// Throws Failure (usage) with the nearest word.
std::size_t choiceArgument(const Arguments& arguments, std::string_view option,
                           std::span<const std::string_view> words, std::size_t otherwise);

/// A time, as an argument of a function.
struct TimeValue {
    store::Time time;
    friend bool operator==(const TimeValue&, const TimeValue&) = default;
};

/// An argument of a special function.
using FunctionArgument = std::variant<bool, std::int32_t, double, TimeValue, std::string>;

/// What was typed: a time, a whole number, a number, true or false, or else a text. "text:" in front makes a
/// text of anything, and is left away.
FunctionArgument functionArgument(std::string_view text);

}  // namespace vtdn::client
