#include "store/value_text.h"

#include <gtest/gtest.h>

#include "demo_site.h"

namespace vtdn::store::test {
namespace {

using namespace std::string_literals;

TEST(ValueText, ANumberIsShownInADisplayFormatOrWithItsOwnDigits) {
    EXPECT_EQ(valueText(0.1F), "0.1");
    EXPECT_EQ(valueText(0.1F, "0.000"), "0.100");
    EXPECT_EQ(valueText(2.0 / 3, "0.00"), "0.67");
    EXPECT_EQ(valueText(2.5), "2.5");
    EXPECT_EQ(valueText(std::int32_t{-40000}), "-40000");
    EXPECT_EQ(valueText(std::int32_t{7}, "0.0"), "7.0");
}

TEST(ValueText, ATextIsItselfAndNoValueIsNoText) {
    EXPECT_EQ(valueText("N/A"s, "0.00"), "N/A");
    EXPECT_EQ(valueText("a\0b"s), "a\0b"s);
    EXPECT_EQ(valueText({}, "0.00"), "");
}

TEST(ValueText, ALimitIsItsValueAndItsUnits) {
    Parameter limit = constant(limitPid, 0.2F);
    EXPECT_EQ(limitText(limit), "0.2");
    limit.units = "lb/mmBtu";
    EXPECT_EQ(limitText(limit), "0.2 lb/mmBtu");
    limit.constant = "none"s;
    EXPECT_EQ(limitText(limit), "none lb/mmBtu");
    EXPECT_EQ(limitText(stored(hourPid, "1h")), "") << "No constant, and so no limit";
}

}  // namespace
}  // namespace vtdn::store::test
