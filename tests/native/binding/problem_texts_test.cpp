#include "binding/problem_texts.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace vtdn::binding {
namespace {

TEST(ProblemTexts, CodesHaveThreeDigitsBelow49AndFourFromThereOn) {
    EXPECT_EQ(doesNotExist(0, code(1)), L"PID  does not exist (WDN-001)");
    EXPECT_EQ(doesNotExist(0, code(30)), L"PID  does not exist (WDN-030)");
    EXPECT_EQ(doesNotExist(0, code(48)), L"PID  does not exist (WDN-048)");
    EXPECT_EQ(doesNotExist(0, code(49)), L"PID  does not exist (WDN-0049)");
    EXPECT_EQ(doesNotExist(0, code(65)), L"PID  does not exist (WDN-0065)");
}

TEST(ProblemTexts, AnUnknownPidIsNamedInItsDisplayForm) {
    EXPECT_EQ(doesNotExist(123456789, code(24)), L"PID 1-234-5-67-89 does not exist (WDN-024)");
    EXPECT_EQ(doesNotExist(530001, code(1)), L"PID 0-005-3-00-01 does not exist (WDN-001)");
}

TEST(ProblemTexts, AnIllFormedPidLeavesTwoBlanks) {
    EXPECT_EQ(doesNotExist(123, code(24)), L"PID  does not exist (WDN-024)");
    EXPECT_EQ(doesNotExist(-1, code(24)), L"PID  does not exist (WDN-024)");
    EXPECT_EQ(wrongTimeType(160000, code(33)), L"PID  time-type is wrong (WDN-033)");
    EXPECT_EQ(notDatabaseIo(0, code(5)), L" is not a DBDataIO parameter (WDN-005)");
}

TEST(ProblemTexts, AWrongIoTypeIsReportedWithoutTheWordPid) {
    EXPECT_EQ(notDatabaseIo(100500100, code(5)), L"1-005-0-01-00 is not a DBDataIO parameter (WDN-005)");
}

TEST(ProblemTexts, AMonitorCodeIsQuotedInPlainDecimal) {
    EXPECT_EQ(unknownMonitorCode(99, code(13)), L"'99' is not a known monitor code (WDN-013)");
    EXPECT_EQ(unknownMonitorCode(-1, code(10)), L"'-1' is not a known monitor code (WDN-010)");
    EXPECT_EQ(unknownMonitorCode(std::numeric_limits<std::int32_t>::min(), code(27)),
              L"'-2147483648' is not a known monitor code (WDN-027)");
}

TEST(ProblemTexts, ARunOfWrongSizesNamesItsPid) {
    EXPECT_EQ(differentSizes(100501000, code(40)),
              L"Array sizes are different. Can't write values/MCs to 1-005-0-10-00 (WDN-040)");
    EXPECT_EQ(differentSizes(7, code(40)),
              L"Array sizes are different. Can't write values/MCs to  (WDN-040)");
    EXPECT_EQ(countMismatch(100501000, code(41)),
              L"Count does not match array size. Can't write values/MCs to 1-005-0-10-00 (WDN-041)");
    EXPECT_EQ(countMismatch(-1, code(41)),
              L"Count does not match array size. Can't write values/MCs to  (WDN-041)");
}

TEST(ProblemTexts, ATrappedErrorIsItsNumberAndItsDescription) {
    EXPECT_EQ(trappedError(13, L"Type mismatch", code(36)), L"13, Type mismatch (WDN-036)");
    EXPECT_EQ(trappedError(94, L"Invalid use of Null", code(54)), L"94, Invalid use of Null (WDN-0054)");
    EXPECT_EQ(trappedError(-2147467259, L"Automation error", code(59)),
              L"-2147467259, Automation error (WDN-0059)");
    EXPECT_EQ(trappedError(5, L"", code(32)), L"5,  (WDN-032)");
    EXPECT_EQ(trappedError(0, std::wstring_view(L"a\0\tb", 4), code(48)),
              std::wstring(L"0, a\0\tb (WDN-048)", 17));
}

}  // namespace
}  // namespace vtdn::binding
