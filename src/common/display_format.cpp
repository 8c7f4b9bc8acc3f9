#include "common/display_format.h"

#include <array>
#include <charconv>
#include <cmath>
#include <vector>

namespace vtdn::common {
namespace {

std::string printed(double value, std::chars_format format) {
    std::array<char, 400> buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, format);
    return {buffer.data(), result.ptr};
}

std::string printedWithDecimals(double value, int decimals) {
    // 309 digits before the point and as many decimals as a format can ask for.
    std::array<char, 400> buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                      std::chars_format::fixed, decimals);
    return {buffer.data(), result.ptr};
}

/// One section of a display format, taken apart.
struct Pattern {
    std::string before;
    std::string after;
    int leastWhole = 0;     ///< zeros before the point
    int leastDecimals = 0;  ///< zeros behind the point
    int mostDecimals = 0;   ///< zeros and #s behind the point
    bool thousands = false;
    bool percent = false;
    bool hasDigits = false;
};

constexpr int mostDecimalsShown = 60;

Pattern readPattern(std::string_view format) {
    Pattern p;
    bool behindPoint = false;
    for (std::size_t i = 0; i < format.size(); ++i) {
        const char c = format[i];
        std::string& literal = p.hasDigits ? p.after : p.before;
        if (c == '0' || c == '#') {
            p.hasDigits = true;
            if (!behindPoint) {
                // A # behind a 0 stands for a digit that is there in any case.
                if (c == '0' || p.leastWhole > 0) ++p.leastWhole;
            } else if (p.mostDecimals < mostDecimalsShown) {
                ++p.mostDecimals;
                if (c == '0') p.leastDecimals = p.mostDecimals;
            }
        } else if (c == '.' && !behindPoint) {
            behindPoint = true;
        } else if (c == ',' && p.hasDigits && !behindPoint) {
            p.thousands = true;
        } else if (c == '%') {
            p.percent = true;
            literal += c;
        } else if (c == '\\' && i + 1 < format.size()) {
            literal += format[++i];
        } else if (c == '"') {
            for (++i; i < format.size() && format[i] != '"'; ++i) literal += format[i];
        } else {
            literal += c;
        }
    }
    return p;
}

std::vector<std::string_view> sectionsOf(std::string_view format) {
    std::vector<std::string_view> sections;
    std::size_t start = 0;
    bool quoted = false;
    for (std::size_t i = 0; i < format.size(); ++i) {
        if (format[i] == '"') quoted = !quoted;
        if (format[i] == '\\')
            ++i;
        else if (format[i] == ';' && !quoted) {
            sections.push_back(format.substr(start, i - start));
            start = i + 1;
        }
    }
    sections.push_back(format.substr(start));
    return sections;
}

void groupThousands(std::string& whole) {
    for (std::size_t i = whole.size(); i > 3;) {
        i -= 3;
        whole.insert(i, 1, ',');
    }
}

/// The digits of a number that is not negative.
std::string digits(double value, const Pattern& p) {
    std::string text = printedWithDecimals(value, p.mostDecimals);
    const auto point = text.find('.');
    std::string whole = text.substr(0, point);
    std::string decimals = point == std::string::npos ? std::string() : text.substr(point + 1);
    while (static_cast<int>(decimals.size()) > p.leastDecimals && decimals.back() == '0') decimals.pop_back();
    if (whole == "0" && p.leastWhole == 0 && !decimals.empty()) whole.clear();
    if (static_cast<int>(whole.size()) < p.leastWhole)
        whole.insert(0, static_cast<std::size_t>(p.leastWhole) - whole.size(), '0');
    if (p.thousands) groupThousands(whole);
    return decimals.empty() ? whole : whole + "." + decimals;
}

bool allZeros(std::string_view text) {
    return text.find_first_of("123456789") == std::string_view::npos;
}

}  // namespace

std::string shortestText(double value) {
    const double size = std::fabs(value);
    const bool plain = size == 0 || (size >= 1e-5 && size < 1e15);
    return printed(value, plain ? std::chars_format::fixed : std::chars_format::scientific);
}

double decimalOf(float single) {
    std::array<char, 64> buffer{};
    const auto printed = std::to_chars(buffer.data(), buffer.data() + buffer.size(), single);
    double value = single;
    std::from_chars(buffer.data(), printed.ptr, value);
    return value;
}

std::string formatNumber(double value, std::string_view format) {
    if (!std::isfinite(value)) return shortestText(value);
    const std::vector<std::string_view> sections = sectionsOf(format);
    const bool negative = value < 0;
    std::string_view section = sections[0];
    bool ownSign = true;
    if (negative && sections.size() > 1 && !sections[1].empty()) {
        section = sections[1];
        ownSign = false;
    } else if (value == 0 && sections.size() > 2 && !sections[2].empty()) {
        section = sections[2];
    }
    const Pattern p = readPattern(section);
    if (!p.hasDigits) return sections.size() > 1 && !section.empty() ? p.before : shortestText(value);
    const double shown = std::fabs(value) * (p.percent ? 100 : 1);
    if (!std::isfinite(shown)) return shortestText(value);
    const std::string text = digits(shown, p);
    // What rounds to zero has no sign.
    const bool sign = negative && ownSign && !allZeros(text);
    return (sign ? "-" : "") + p.before + text + p.after;
}

}  // namespace vtdn::common
