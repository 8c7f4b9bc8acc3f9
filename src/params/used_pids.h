// The inputs of a calculated parameter, sorted into those that a person can edit and those that are constant.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "binding/problem_texts.h"

namespace vtdn::params {

inline constexpr binding::Code usedPidsWrongTimeType = binding::code(33);
inline constexpr binding::Code usedPidsUnknownPid = binding::code(34);

/// Whether the time-type digit is 3: the parameters that have such lists, and whose values can be edited.
bool isEditableTimeType(std::int32_t pid) noexcept;

/// What becomes of an input in the lists.
enum class Input { constant, editable, leftOut, calculated };
Input inputKind(std::int32_t pid, std::int32_t ioType) noexcept;

/// The list with one PID more, in the nine-digit form, behind a ";" when the list is not empty.
std::wstring withPid(std::wstring_view list, std::int32_t pid);

/// As deep as calculations may be built on each other. A cycle among them, which nothing else ends, comes
/// here.
inline constexpr int deepestWalk = 1000;

/// Visits the inputs of a parameter in the engine's order, and in place of a calculated input its own inputs.
/// A parameter that is reached twice is visited twice.
///
/// `Engine` answers usedPids(pid) and ioType(pid); `Found` takes constant(pid), editable(pid) and tooDeep(),
/// which does not return.
template <class Engine, class Found>
void walkInputs(Engine& engine, Found& found, std::int32_t pid, int depth = 1) {
    if (depth > deepestWalk) found.tooDeep();
    const std::vector<std::int32_t> inputs = engine.usedPids(pid);
    for (const std::int32_t input : inputs) {
        switch (inputKind(input, engine.ioType(input))) {
            case Input::constant:
                found.constant(input);
                break;
            case Input::editable:
                found.editable(input);
                break;
            case Input::leftOut:
                break;
            case Input::calculated:
                walkInputs(engine, found, input, depth + 1);
                break;
        }
    }
}

}  // namespace vtdn::params
