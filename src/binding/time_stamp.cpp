#include "binding/time_stamp.h"

#include <iterator>

#include "com/platform.h"

namespace vtdn::binding {
namespace {

constexpr std::int64_t fileTimeUnitsPerSecond = 10'000'000;

std::wstring separator(LCTYPE which) {
    wchar_t text[16];
    const int length = GetLocaleInfoW(LOCALE_USER_DEFAULT, which, text, static_cast<int>(std::size(text)));
    return length > 0 ? std::wstring(text, static_cast<std::size_t>(length) - 1) : std::wstring();
}

void appendDigits(std::wstring& text, int value, int digits) {
    const std::size_t end = text.size() + static_cast<std::size_t>(digits);
    text.resize(end);
    for (int i = 1; i <= digits; ++i, value /= 10) text[end - i] = static_cast<wchar_t>(L'0' + value % 10);
}

std::wstring formatted(const SYSTEMTIME& time) {
    const std::wstring dateSeparator = separator(LOCALE_SDATE);
    const std::wstring timeSeparator = separator(LOCALE_STIME);
    std::wstring text;
    appendDigits(text, time.wYear, 4);
    text += dateSeparator;
    appendDigits(text, time.wMonth, 2);
    text += dateSeparator;
    appendDigits(text, time.wDay, 2);
    text += L' ';
    appendDigits(text, time.wHour, 2);
    text += timeSeparator;
    appendDigits(text, time.wMinute, 2);
    text += timeSeparator;
    appendDigits(text, time.wSecond, 2);
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
