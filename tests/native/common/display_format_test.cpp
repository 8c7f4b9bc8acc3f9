#include "common/display_format.h"

#include <gtest/gtest.h>

#include <limits>

namespace vtdn::common {
namespace {

// Formats as such: tests/native/client/text_test.cpp.
TEST(DisplayFormat, ASingleIsShownWithItsOwnDigits) {
    EXPECT_EQ(decimalOf(0.1F), 0.1);
    EXPECT_EQ(decimalOf(5680.7F), 5680.7);
    EXPECT_EQ(decimalOf(-16777216.0F), -16777216.0);
    EXPECT_EQ(shortestText(decimalOf(0.1F)), "0.1");
    EXPECT_EQ(formatNumber(decimalOf(0.15F), "0.0000"), "0.1500");
    for (const float single : {std::numeric_limits<float>::max(), std::numeric_limits<float>::min(),
                               std::numeric_limits<float>::denorm_min(), 1.0F / 3, 0.0F})
        EXPECT_EQ(static_cast<float>(decimalOf(single)), single);
}

}  // namespace
}  // namespace vtdn::common
