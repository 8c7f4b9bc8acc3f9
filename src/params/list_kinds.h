// The lists of parameters by kind: one procedure and a row for each.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

namespace vtdn::params {

/// The numbers of the special values that choose among the parameters of a type.
namespace special_value {
inline constexpr std::int32_t program = -22;
inline constexpr std::int32_t leftOutOfCalibration = -25;
inline constexpr std::int32_t linearity = -32;
inline constexpr std::int32_t notForPart75First = -114;
inline constexpr std::int32_t interferenceCheck = -117;
inline constexpr std::int32_t notForPart75Second = -118;
}  // namespace special_value

/// What a special value must be, as a boolean.
struct Flag {
    std::int32_t id;
    bool wanted;
};

struct ListKind {
    std::int32_t parameterType;
    /// The program must be "40CFR75", to the letter. Nothing else is read of a parameter under another one.
    bool part75;
    /// All of these are read, in this order.
    std::span<const Flag> flags;
    /// A special value that must be the number 1.
    std::optional<std::int32_t> marker;
};

inline constexpr std::int32_t calibrationType = 3;
inline constexpr std::int32_t linearityType = 45;

inline constexpr Flag part75CalibrationFlags[] = {{special_value::interferenceCheck, false},
                                                  {special_value::notForPart75First, false},
                                                  {special_value::notForPart75Second, false},
                                                  {special_value::leftOutOfCalibration, false}};
inline constexpr Flag calibrationFlags[] = {{special_value::leftOutOfCalibration, false}};
inline constexpr Flag interferenceCheckFlags[] = {{special_value::interferenceCheck, true},
                                                  {special_value::leftOutOfCalibration, false}};

/// Every parameter of a type.
constexpr ListKind ofType(std::int32_t parameterType) noexcept {
    return {parameterType, false, {}, std::nullopt};
}
inline constexpr ListKind part75Calibration{calibrationType, true, part75CalibrationFlags, std::nullopt};
inline constexpr ListKind calibration{calibrationType, false, calibrationFlags, std::nullopt};
inline constexpr ListKind part75Linearity{linearityType, false, {}, special_value::linearity};
inline constexpr ListKind part75InterferenceCheck{calibrationType, true, interferenceCheckFlags,
                                                  std::nullopt};

}  // namespace vtdn::params
