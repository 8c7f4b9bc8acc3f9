#include "common/pid.h"

#include <cmath>
#include <limits>

#include "common/digits.h"

namespace vtdn::common {
namespace {

constexpr std::int32_t lowest = 100000;
constexpr std::int32_t highest = 1999999999;

constexpr bool isTimeType(std::int32_t c) noexcept {
    return c != 6 && c != 9;
}

constexpr bool isDigit(wchar_t c) noexcept {
    return c >= L'0' && c <= L'9';
}

std::wstring_view trimmed(std::wstring_view text) noexcept {
    while (!text.empty() && text.front() == L' ') text.remove_prefix(1);
    while (!text.empty() && text.back() == L' ') text.remove_suffix(1);
    return text;
}

/// What stands between the brackets at the start of the text.
std::wstring_view insideBrackets(std::wstring_view text) noexcept {
    text = trimmed(text);
    if (text.empty() || text.front() != L'[') return {};
    text.remove_prefix(1);
    while (!text.empty() && text.front() == L' ') text.remove_prefix(1);
    const auto close = text.find(L']');
    if (close == std::wstring_view::npos || text.front() == L'@') return {};
    return text.substr(0, close);
}

}  // namespace

std::int32_t pidField(std::int32_t pid, std::int32_t part) noexcept {
    switch (part) {
        case 1:
            return pid / 100000000;
        case 2:
            return pid % 100000000 / 100000;
        case 3:
            return pid % 100;
        case 4:
            return pid % 10000 / 100;
        case 5:
            return pid % 100000 / 10000;
        case -5: {
            const std::int32_t c = pidField(pid, 5);
            return c == 7 ? 8 : c;
        }
        default:
            return 0;
    }
}

std::int32_t makePid(std::int32_t a, std::int32_t b, std::int32_t c, std::int32_t d,
                     std::int32_t e) noexcept {
    const auto within = [](std::int32_t value, std::int32_t most) { return value >= 0 && value <= most; };
    if (!within(a, 19) || !within(b, 999) || !within(c, 9) || !within(d, 99) || !within(e, 99)) return 0;
    const std::int32_t pid = a * 100000000 + b * 100000 + c * 10000 + d * 100 + e;
    return isValidPid(pid) ? pid : 0;
}

std::int32_t unitPid(std::int32_t unitOrPid) noexcept {
    return makePid(unitOrPid > 19 ? pidField(unitOrPid, 1) : unitOrPid, 1, 0, 0, 0);
}

bool isValidPid(std::int32_t pid) noexcept {
    return pid >= lowest && pid <= highest && isTimeType(pidField(pid, 5));
}

bool isValidPid(double pid) noexcept {
    const double whole = std::nearbyint(pid);
    if (!(whole >= std::numeric_limits<std::int32_t>::min() &&
          whole <= std::numeric_limits<std::int32_t>::max()))
        return false;
    return isValidPid(static_cast<std::int32_t>(whole));
}

bool isValidPid(std::wstring_view text) noexcept {
    return parsePidText(text, false) != 0;
}

void appendPid(std::wstring& text, std::int32_t pid) {
    if (!isValidPid(pid)) return;
    appendNumber(text, pidField(pid, 1));
    text += L'-';
    appendNumber(text, pidField(pid, 2), 3);
    text += L'-';
    appendNumber(text, pidField(pid, 5));
    text += L'-';
    appendNumber(text, pidField(pid, 4), 2);
    text += L'-';
    appendNumber(text, pidField(pid, 3), 2);
}

std::wstring formatPid(std::int32_t pid) {
    std::wstring text;
    appendPid(text, pid);
    return text;
}

std::wstring formatPid9(std::int32_t pid) {
    std::wstring text;
    // The end of the range is listed although its digit 9 is no time type.
    if (isValidPid(pid) || pid == highest) appendNumber(text, pid, 9);
    return text;
}

std::int32_t takeTrailingDigits(std::wstring_view& text, std::int32_t maximum) noexcept {
    std::int64_t value = 0;
    std::int64_t weight = 1;
    std::int32_t taken = 0;
    bool overflow = false;
    while (!text.empty() && taken < maximum) {
        const wchar_t last = text.back();
        text.remove_suffix(1);
        if (isDigit(last)) {
            value += (last - L'0') * weight;
            weight = weight < 10000000000 ? weight * 10 : weight;  // further digits overflow in any case
            overflow = overflow || value > std::numeric_limits<std::int32_t>::max();
            ++taken;
        } else if (taken > 0) {
            break;
        }
    }
    return taken > 0 && !overflow ? static_cast<std::int32_t>(value) : -1;
}

std::int32_t parsePidText(std::wstring_view text, bool bracketed) noexcept {
    if (bracketed) text = insideBrackets(text);
    const std::int32_t e = takeTrailingDigits(text, 2);
    const std::int32_t d = takeTrailingDigits(text, 2);
    const std::int32_t c = takeTrailingDigits(text, 1);
    const std::int32_t b = takeTrailingDigits(text, 3);
    const std::int32_t a = text.empty() ? 0 : takeTrailingDigits(text, 2);
    if (e < 0 || d < 0 || c < 0 || b < 0 || a < 0) return 0;
    return makePid(a, b, c, d, e);
}

}  // namespace vtdn::common
