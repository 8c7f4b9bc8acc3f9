#include "common/interval.h"

#include <limits>

namespace vtdn::common {
namespace {

constexpr std::wstring_view units = L"smhdMv";

/// The three units that are carried upward, each with how many of it make one of the next.
struct Carry {
    wchar_t unit;
    std::int32_t most;
    wchar_t next;
};
constexpr Carry carries[] = {{L's', 60, L'm'}, {L'm', 60, L'h'}, {L'h', 24, L'd'}};

bool isUnit(std::wstring_view text) {
    return text.size() == 1 && units.find(text.front()) != units.npos;
}

}  // namespace

bool parseIntervalText(std::wstring_view text, bool normalise, Interval& interval) {
    interval = {};
    while (!text.empty() && text.front() == L' ') text.remove_prefix(1);
    while (!text.empty() && text.back() == L' ') text.remove_suffix(1);
    if (text.empty()) return false;

    std::int64_t count = 0;
    while (!text.empty() && text.front() >= L'0' && text.front() <= L'9') {
        count = count * 10 + (text.front() - L'0');
        if (count > std::numeric_limits<std::int32_t>::max()) return false;
        text.remove_prefix(1);
    }
    if (text.empty()) {
        interval.count = static_cast<std::int32_t>(count);
        return false;
    }
    if (!isUnit(text)) return false;
    interval.count = static_cast<std::int32_t>(count);
    interval.unit = text;
    if (normalise) normaliseInterval(interval);
    return true;
}

void normaliseInterval(Interval& interval) {
    for (const Carry& carry : carries) {
        if (interval.unit.size() != 1 || interval.unit.front() != carry.unit) continue;
        if (interval.count < carry.most || interval.count % carry.most != 0) return;
        interval.count /= carry.most;
        interval.unit = carry.next;
    }
    if (interval.unit == L"v") interval.count = 1;
}

std::wstring intervalTextForEngine(std::wstring_view text) {
    Interval interval;
    if (!parseIntervalText(text, true, interval)) return std::wstring(text);
    return std::to_wstring(interval.count) + interval.unit;
}

}  // namespace vtdn::common
