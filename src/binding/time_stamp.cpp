#include "binding/time_stamp.h"

#include <iterator>

#include "com/platform.h"
#include "common/digits.h"

namespace vtdn::binding {
namespace {

constexpr std::int64_t fileTimeUnitsPerSecond = 10'000'000;

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
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    const ULARGE_INTEGER units{{now.dwLowDateTime, now.dwHighDateTime}};
    const auto second = static_cast<std::int64_t>(units.QuadPart) / fileTimeUnitsPerSecond;
    if (second != second_) {
        // The same moment in local time: asking for it again could answer with the next second.
        SYSTEMTIME utc;
        SYSTEMTIME local;
        if (!FileTimeToSystemTime(&now, &utc) || !SystemTimeToTzSpecificLocalTime(nullptr, &utc, &local))
            GetLocalTime(&local);
        text_ = formatted(local);
        second_ = second;
    }
    return text_;
}

}  // namespace vtdn::binding
