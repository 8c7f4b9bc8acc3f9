#include "com/computer.h"

#include <array>

#include "com/error.h"
#include "com/platform.h"

// Behind the header that it needs.
#include <lmcons.h>

namespace vtdn::com {

std::int64_t standardTimeNow() noexcept {
    constexpr std::int64_t unitsPerSecond = 10'000'000;
    constexpr std::int64_t secondsPerMinute = 60;
    // From 30 December 1899 back to 1 January 1601, where the system's time begins.
    constexpr std::int64_t beginning = std::int64_t{-109'205} * 86'400;
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    const auto since1601 =
        static_cast<std::int64_t>(std::uint64_t{now.dwHighDateTime} << 32 | now.dwLowDateTime);
    TIME_ZONE_INFORMATION zone{};
    GetTimeZoneInformation(&zone);
    return beginning + since1601 / unitsPerSecond -
           secondsPerMinute * std::int64_t{zone.Bias + zone.StandardBias};
}

std::wstring userName() {
    std::array<wchar_t, UNLEN + 1> name{};
    DWORD length = static_cast<DWORD>(name.size());
    if (!GetUserNameW(name.data(), &length)) check(HRESULT_FROM_WIN32(GetLastError()));
    return {name.data()};
}

}  // namespace vtdn::com
