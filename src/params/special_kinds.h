// The eight special-value and special-function operations: one procedure and a row for each.
#pragma once

#include <optional>

#include "binding/problem_texts.h"

namespace vtdn::params {

struct SpecialKind {
    binding::Code unknownPid;
    binding::Code callFailed;
    /// Not set when a result that does not convert is silently the default one.
    std::optional<binding::Code> conversionFailed;
};

inline constexpr SpecialKind operatingTime{binding::code(42), binding::code(43), std::nullopt};
inline constexpr SpecialKind specialValueInt32{binding::code(31), binding::code(32), std::nullopt};
inline constexpr SpecialKind specialValueBoolean{binding::code(35), binding::code(36), binding::code(37)};
inline constexpr SpecialKind specialValueString{binding::code(47), binding::code(48), std::nullopt};
inline constexpr SpecialKind specialFunctionBoolean{binding::code(49), binding::code(50), binding::code(51)};
inline constexpr SpecialKind specialFunctionInt32{binding::code(52), binding::code(53), binding::code(54)};
inline constexpr SpecialKind specialFunctionReal32{binding::code(55), binding::code(56), binding::code(57)};
inline constexpr SpecialKind specialFunctionString{binding::code(58), binding::code(59), std::nullopt};

}  // namespace vtdn::params
