#include "common/digits.h"

#include <gtest/gtest.h>

#include <limits>

namespace vtdn::common {
namespace {

std::wstring number(std::int32_t value, std::size_t width = 1) {
    std::wstring text = L"x";
    appendNumber(text, value, width);
    return text;
}

TEST(AppendNumber, WritesPlainDecimalBehindTheText) {
    EXPECT_EQ(number(0), L"x0");
    EXPECT_EQ(number(-7), L"x-7");
    EXPECT_EQ(number(std::numeric_limits<std::int32_t>::max()), L"x2147483647");
    EXPECT_EQ(number(std::numeric_limits<std::int32_t>::min()), L"x-2147483648");
}

TEST(AppendNumber, FillsTheWidthWithZeros) {
    EXPECT_EQ(number(5, 3), L"x005");
    EXPECT_EQ(number(0, 2), L"x00");
    EXPECT_EQ(number(1234, 3), L"x1234");
    EXPECT_EQ(number(-5, 3), L"x-005");
}

}  // namespace
}  // namespace vtdn::common
