#include "binding/problem_texts.h"

#include <string_view>
#include <utility>

#include "common/digits.h"
#include "common/pid.h"

namespace vtdn::binding {
namespace {

/// Codes below this one have three digits, the others four.
constexpr int firstWideCode = 49;

/// Longer than most of the texts.
constexpr std::size_t room = 64;

std::wstring startedWith(std::wstring_view text) {
    std::wstring started;
    started.reserve(room);
    started += text;
    return started;
}

std::wstring endedWith(std::wstring text, std::wstring_view end, Code code) {
    const int number = static_cast<int>(code);
    text.append(end).append(L" (WDN-");
    common::appendNumber(text, number, number < firstWideCode ? 3 : 4);
    text += L')';
    return text;
}

}  // namespace

std::wstring aboutPid(std::wstring_view before, std::int32_t pid, std::wstring_view after, Code code) {
    auto text = startedWith(before);
    common::appendPid(text, pid);
    return endedWith(std::move(text), after, code);
}

std::wstring doesNotExist(std::int32_t pid, Code code) {
    return aboutPid(L"PID ", pid, L" does not exist", code);
}

std::wstring wrongTimeType(std::int32_t pid, Code code) {
    return aboutPid(L"PID ", pid, L" time-type is wrong", code);
}

std::wstring notDatabaseIo(std::int32_t pid, Code code) {
    return aboutPid({}, pid, L" is not a DBDataIO parameter", code);
}

std::wstring unknownMonitorCode(std::int32_t mc, Code code) {
    auto text = startedWith(L"'");
    common::appendNumber(text, mc);
    return endedWith(std::move(text), L"' is not a known monitor code", code);
}

std::wstring differentSizes(std::int32_t pid, Code code) {
    return aboutPid(L"Array sizes are different. Can't write values/MCs to ", pid, {}, code);
}

std::wstring countMismatch(std::int32_t pid, Code code) {
    return aboutPid(L"Count does not match array size. Can't write values/MCs to ", pid, {}, code);
}

std::wstring trappedError(std::int32_t number, std::wstring_view description, Code code) {
    auto text = startedWith({});
    common::appendNumber(text, number);
    text += L", ";
    return endedWith(std::move(text), description, code);
}

}  // namespace vtdn::binding
