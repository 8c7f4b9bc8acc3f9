// The nine writes of one interval: one procedure and a row for each.
#pragma once

#include <optional>

#include "binding/problem_texts.h"

namespace vtdn::params {

struct WriteKind {
    /// Whether a new interval is written; otherwise the stored one, of which only what is given changes.
    bool newItem;
    /// Set when the monitor code must be known.
    std::optional<binding::Code> unknownMc;
    binding::Code unknownPid;
    binding::Code notDatabase;
};

inline constexpr WriteKind writeMc{false, binding::code(10), binding::code(11), binding::code(12)};
inline constexpr WriteKind writeValueNull{false, std::nullopt, binding::code(25), binding::code(26)};
inline constexpr WriteKind writeValueInteger{false, std::nullopt, binding::code(4), binding::code(5)};
inline constexpr WriteKind writeValueSingle{false, std::nullopt, binding::code(6), binding::code(7)};
inline constexpr WriteKind writeValueString{false, std::nullopt, binding::code(8), binding::code(9)};
inline constexpr WriteKind writeVmcNull{true, binding::code(27), binding::code(28), binding::code(29)};
inline constexpr WriteKind writeVmcInteger{true, binding::code(13), binding::code(14), binding::code(15)};
inline constexpr WriteKind writeVmcSingle{true, binding::code(16), binding::code(17), binding::code(18)};
inline constexpr WriteKind writeVmcString{true, binding::code(19), binding::code(20), binding::code(21)};

}  // namespace vtdn::params
