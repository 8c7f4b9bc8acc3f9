// The clock and the user of this computer.
#include "com/computer.h"

#include <gtest/gtest.h>

#include "com/platform.h"

namespace vtdn::test {
namespace {

/// The system's own universal time, in seconds since 30 December 1899.
double universalSeconds() {
    SYSTEMTIME now{};
    GetSystemTime(&now);
    DATE date = 0;
    SystemTimeToVariantTime(&now, &date);
    return date * 86'400;
}

TEST(Computer, TheClockIsThatOfTheZoneWithoutDaylightSavingTime) {
    TIME_ZONE_INFORMATION zone{};
    GetTimeZoneInformation(&zone);
    const double before = universalSeconds() - 60.0 * (zone.Bias + zone.StandardBias);
    EXPECT_NEAR(static_cast<double>(com::standardTimeNow()), before, 5);
}

TEST(Computer, TheUserIsTheOneOfTheOperatingSystem) {
    wchar_t name[300];
    DWORD length = 300;
    ASSERT_TRUE(GetUserNameW(name, &length));
    EXPECT_EQ(com::userName(), std::wstring(name, length - 1));
    EXPECT_FALSE(com::userName().empty());
}

}  // namespace
}  // namespace vtdn::test
