#include "client/platform/clock.h"

#include <windows.h>

#include <cstdint>

namespace vtdn::client {

store::Time standardTimeNow() {
    constexpr std::int64_t unitsPerSecond = 10'000'000;
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    const auto since1601 =
        static_cast<std::int64_t>(std::uint64_t{now.dwHighDateTime} << 32 | now.dwLowDateTime);
    TIME_ZONE_INFORMATION zone{};
    GetTimeZoneInformation(&zone);
    return store::timeOf({1601, 1, 1, 0, 0, 0}) + since1601 / unitsPerSecond -
           60 * std::int64_t{zone.Bias + zone.StandardBias};
}

}  // namespace vtdn::client
