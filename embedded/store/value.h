// One stored value and its monitor code.
#pragma once

#include <bit>
#include <cstdint>
#include <optional>
#include <string>
#include <variant>

namespace vtdn::store {

using Pid = std::int32_t;
using MonitorCode = std::int32_t;

/// No value, a whole number, a single, a double, or a text (UTF-8, counted, may hold NUL). The kind is part
/// of the value: a single comes back as the same single.
using Value = std::variant<std::monostate, std::int32_t, float, double, std::string>;

/// The kinds in the order of the alternatives of Value; the numbers are also those of the file format.
enum class ValueKind : std::uint8_t { null = 0, integer = 1, single = 2, real = 3, text = 4 };

[[nodiscard]] inline ValueKind kindOf(const Value& value) {
    return static_cast<ValueKind>(value.index());
}

/// Longest text that is stored, in bytes of UTF-8.
inline constexpr std::size_t longestText = 65'535;

/// An interval that was never written reads as no value with monitor code 0.
struct Item {
    Value value;
    MonitorCode code = 0;

    friend bool operator==(const Item&, const Item&) = default;
};

/// The value as a double when it is a number (a text never is one).
[[nodiscard]] inline std::optional<double> numberOf(const Value& value) {
    switch (kindOf(value)) {
        case ValueKind::integer:
            return std::get<std::int32_t>(value);
        case ValueKind::single:
            return std::get<float>(value);
        case ValueKind::real:
            return std::get<double>(value);
        case ValueKind::null:
        case ValueKind::text:
            break;
    }
    return std::nullopt;
}

/// Whether two values are the same bit by bit (0.0 and -0.0 are equal and not the same).
[[nodiscard]] inline bool isSame(const Value& a, const Value& b) {
    if (kindOf(a) != kindOf(b)) return false;
    if (kindOf(a) == ValueKind::single)
        return std::bit_cast<std::uint32_t>(std::get<float>(a)) ==
               std::bit_cast<std::uint32_t>(std::get<float>(b));
    if (kindOf(a) == ValueKind::real)
        return std::bit_cast<std::uint64_t>(std::get<double>(a)) ==
               std::bit_cast<std::uint64_t>(std::get<double>(b));
    return a == b;
}

}  // namespace vtdn::store
