#include "binding/time_stamp.h"

#include <iterator>

#include "com/platform.h"
#include "common/digits.h"

namespace vtdn::binding {
namespace {

/// File times count tenths of a microsecond.
constexpr std::uint64_t unitsPerSecond = 10'000'000;

std::wstring separator(LCTYPE which) {
    wchar_t text[16];
    const int length = GetLocaleInfoW(LOCALE_USER_DEFAULT, which, text, static_cast<int>(std::size(text)));
    return length > 0 ? std::wstring(text, static_cast<std::size_t>(length) - 1) : std::wstring();
}

std::wstring formatted(const SYSTEMTIME& time) {
    const std::wstring dateSeparator = separator(LOCALE_SDATE);
    const std::wstring timeSeparator = separator(LOCALE_STIME);
    std::wstring text;
    common::appendNumber(text, time.wYear, 4);
    text += dateSeparator;
    common::appendNumber(text, time.wMonth, 2);
    text += dateSeparator;
    common::appendNumber(text, time.wDay, 2);
    text += L' ';
    common::appendNumber(text, time.wHour, 2);
    text += timeSeparator;
    common::appendNumber(text, time.wMinute, 2);
    text += timeSeparator;
    common::appendNumber(text, time.wSecond, 2);
    return text;
}

}  // namespace

std::wstring_view TimeStamp::now() {
    // Asked first because it is no more than a look into memory.
    const ULONGLONG tick = GetTickCount64();
    if (tick == tick_ && !text_.empty()) return text_;
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    const std::uint64_t time = std::uint64_t{now.dwHighDateTime} << 32 | now.dwLowDateTime;
    // Unsigned: a clock that was set back is far beyond the second, too.
    if (time - second_ >= unitsPerSecond) {
        // The same moment in local time: asking for it again could answer with the next second.
        SYSTEMTIME utc;
        SYSTEMTIME local;
        if (!FileTimeToSystemTime(&now, &utc) || !SystemTimeToTzSpecificLocalTime(nullptr, &utc, &local))
            GetLocalTime(&local);
        text_ = formatted(local);
        second_ = time - time % unitsPerSecond;
    }
    tick_ = tick;
    return text_;
}

}  // namespace vtdn::binding
