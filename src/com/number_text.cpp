#include "com/number_text.h"

#include <bit>
#include <cstdint>

#include "com/error.h"
#include "com/variant.h"

namespace vtdn::com {
namespace {

/// Powers of ten that a double holds exactly.
constexpr double powersOfTen[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                  1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
/// So many digits are a whole number that a double holds exactly.
constexpr int mostDigits = 15;

wchar_t oneCharacter(LCTYPE what) noexcept {
    wchar_t text[8] = {};
    return GetLocaleInfoW(GetUserDefaultLCID(), what, text, 8) == 2 ? text[0] : L'\0';
}

/// Whether the single nearest to a number could depend on the last bits of the number: the platform's reading
/// of a text need not agree with ours in those.
bool isNearMiddle(double number) noexcept {
    constexpr std::uint64_t droppedBits = (std::uint64_t{1} << 29) - 1;
    constexpr std::uint64_t middle = std::uint64_t{1} << 28;
    constexpr std::uint64_t margin = 256;
    const std::uint64_t dropped = std::bit_cast<std::uint64_t>(number) & droppedBits;
    return dropped >= middle - margin && dropped <= middle + margin;
}

}  // namespace

SingleReader::SingleReader() noexcept
    : decimalSeparator_(oneCharacter(LOCALE_SDECIMAL)),
      plainMinus_(oneCharacter(LOCALE_SNEGATIVESIGN) == L'-') {}

bool SingleReader::readPlain(std::wstring_view text, float& out) const noexcept {
    const bool negative = !text.empty() && text.front() == L'-';
    if (negative && !plainMinus_) return false;
    std::uint64_t digits = 0;
    int count = 0;
    int decimals = -1;  // digits behind the separator, -1 in front of it
    for (const wchar_t c : text.substr(negative ? 1 : 0)) {
        if (c >= L'0' && c <= L'9') {
            if (++count > mostDigits) return false;
            digits = digits * 10 + static_cast<std::uint64_t>(c - L'0');
            if (decimals >= 0) ++decimals;
        } else if (c == decimalSeparator_ && c != 0 && decimals < 0 && count > 0) {
            decimals = 0;
        } else {
            return false;
        }
    }
    if (count == 0 || decimals == 0 || (negative && digits == 0)) return false;
    // Both are exact, so that this is the double nearest to the text.
    const double number = static_cast<double>(digits) / powersOfTen[decimals < 0 ? 0 : decimals];
    if (isNearMiddle(number)) return false;
    out = static_cast<float>(negative ? -number : number);
    return true;
}

bool SingleReader::read(std::wstring_view text, float& out) const {
    if (text.empty()) return false;
    if (readPlain(text, out)) return true;
    const auto value = Variant::of(text);
    if (!isNumeric(value.get())) return false;
    check(toSingle(value.get(), out));
    return true;
}

}  // namespace vtdn::com
