#include "binding/problem_texts.h"

#include <initializer_list>
#include <string_view>

#include "common/pid.h"

namespace vtdn::binding {
namespace {

/// Codes below this one have three digits, the others four.
constexpr int firstWideCode = 49;

std::wstring joined(std::initializer_list<std::wstring_view> pieces) {
    std::size_t length = 0;
    for (const auto piece : pieces) length += piece.size();
    std::wstring text;
    text.reserve(length);
    for (const auto piece : pieces) text.append(piece);
    return text;
}

}  // namespace

std::wstring codeText(Code code) {
    const int number = static_cast<int>(code);
    std::wstring digits = std::to_wstring(number);
    digits.insert(0, (number < firstWideCode ? 3 : 4) - digits.size(), L'0');
    return joined({L"(WDN-", digits, L")"});
}

std::wstring doesNotExist(std::int32_t pid, Code code) {
    return joined({L"PID ", common::formatPid(pid), L" does not exist ", codeText(code)});
}

std::wstring wrongTimeType(std::int32_t pid, Code code) {
    return joined({L"PID ", common::formatPid(pid), L" time-type is wrong ", codeText(code)});
}

std::wstring notDatabaseIo(std::int32_t pid, Code code) {
    return joined({common::formatPid(pid), L" is not a DBDataIO parameter ", codeText(code)});
}

std::wstring unknownMonitorCode(std::int32_t mc, Code code) {
    return joined({L"'", std::to_wstring(mc), L"' is not a known monitor code ", codeText(code)});
}

}  // namespace vtdn::binding
