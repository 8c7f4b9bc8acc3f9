#include "common/pid.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace vtdn::common {
namespace {

TEST(PidField, GivesTheFiveFieldsByPartNumber) {
    const std::int32_t pid = 1923456789;  // A 19, B 234, C 5, D 67, E 89
    EXPECT_EQ(pidField(pid, 1), 19);
    EXPECT_EQ(pidField(pid, 2), 234);
    EXPECT_EQ(pidField(pid, 3), 89);
    EXPECT_EQ(pidField(pid, 4), 67);
    EXPECT_EQ(pidField(pid, 5), 5);
}

TEST(PidField, ShowsTimeTypeSevenAsEightInPartMinusFive) {
    EXPECT_EQ(pidField(170000, -5), 8);
    EXPECT_EQ(pidField(170000, 5), 7);
    for (std::int32_t c : {0, 1, 2, 3, 4, 5, 6, 8, 9}) EXPECT_EQ(pidField(100000 + c * 10000, -5), c) << c;
}

TEST(PidField, IsZeroForAnyOtherPart) {
    for (std::int32_t part : {-4, -3, -2, -1, 0, -6, 6, 100, -100})
        EXPECT_EQ(pidField(1923456789, part), 0) << part;
}

TEST(MakePid, ComposesFieldsInTheirRanges) {
    EXPECT_EQ(makePid(1, 234, 5, 67, 89), 123456789);
    EXPECT_EQ(makePid(19, 999, 8, 99, 99), 1999989999);
    EXPECT_EQ(makePid(0, 1, 0, 0, 0), 100000);
}

TEST(MakePid, IsZeroOutsideAnyRange) {
    EXPECT_EQ(makePid(20, 0, 0, 0, 0), 0);
    EXPECT_EQ(makePid(-1, 1, 0, 0, 0), 0);
    EXPECT_EQ(makePid(1, 1000, 0, 0, 0), 0);
    EXPECT_EQ(makePid(1, -1, 0, 0, 0), 0);
    EXPECT_EQ(makePid(1, 1, 10, 0, 0), 0);
    EXPECT_EQ(makePid(1, 1, -1, 0, 0), 0);
    EXPECT_EQ(makePid(1, 1, 0, 100, 0), 0);
    EXPECT_EQ(makePid(1, 1, 0, -1, 0), 0);
    EXPECT_EQ(makePid(1, 1, 0, 0, 100), 0);
    EXPECT_EQ(makePid(1, 1, 0, 0, -1), 0);
}

TEST(MakePid, IsZeroForFieldsInRangeThatMakeNoWellFormedPid) {
    EXPECT_EQ(makePid(0, 0, 3, 0, 1), 0);  // below 100000
    EXPECT_EQ(makePid(1, 1, 6, 0, 0), 0);
    EXPECT_EQ(makePid(1, 1, 9, 0, 0), 0);
}

TEST(UnitPid, TakesAUnitNumberOrAnyPidOfTheUnit) {
    EXPECT_EQ(unitPid(0), 100000);
    EXPECT_EQ(unitPid(7), 700100000);
    EXPECT_EQ(unitPid(19), 1900100000);
    EXPECT_EQ(unitPid(20), 100000);  // as a PID, 20 belongs to unit 0
    EXPECT_EQ(unitPid(1900530001), 1900100000);
    EXPECT_EQ(unitPid(-1), 0);
}

TEST(IsValidPid, HoldsFromOneHundredThousandWithATimeType) {
    EXPECT_FALSE(isValidPid(99999));
    EXPECT_TRUE(isValidPid(100000));
    EXPECT_TRUE(isValidPid(1999989999));
    EXPECT_FALSE(isValidPid(2000000000));
    EXPECT_FALSE(isValidPid(0));
    EXPECT_FALSE(isValidPid(-100530001));
    for (std::int32_t c = 0; c <= 9; ++c) EXPECT_EQ(isValidPid(100100000 + c * 10000), c != 6 && c != 9) << c;
}

TEST(IsValidPid, RoundsRealNumbersHalfToEven) {
    EXPECT_TRUE(isValidPid(530001.0));
    EXPECT_TRUE(isValidPid(99999.5));  // 100000
    EXPECT_FALSE(isValidPid(99999.49));
    EXPECT_FALSE(isValidPid(1e10));
    EXPECT_FALSE(isValidPid(-1e300));
    EXPECT_FALSE(isValidPid(std::numeric_limits<double>::quiet_NaN()));
    EXPECT_FALSE(isValidPid(std::numeric_limits<double>::infinity()));
}

TEST(IsValidPid, ReadsTexts) {
    EXPECT_TRUE(isValidPid(std::wstring_view(L"1-234-5-67-89")));
    EXPECT_FALSE(isValidPid(std::wstring_view(L"1-234-6-67-89")));
    EXPECT_FALSE(isValidPid(std::wstring_view(L"")));
}

TEST(FormatPid, ShowsTheDisplayForm) {
    EXPECT_EQ(formatPid(123456789), L"1-234-5-67-89");
    EXPECT_EQ(formatPid(100230405), L"1-002-3-04-05");
    EXPECT_EQ(formatPid(530001), L"0-005-3-00-01");
    EXPECT_EQ(formatPid(1999989999), L"19-999-8-99-99");
    EXPECT_EQ(formatPid(100510100), L"1-005-1-01-00");
}

TEST(FormatPid, IsEmptyForAnIllFormedPid) {
    EXPECT_EQ(formatPid(99999), L"");
    EXPECT_EQ(formatPid(100060000), L"");
    EXPECT_EQ(formatPid(-1), L"");
}

TEST(FormatPid9, PadsToNineDigits) {
    EXPECT_EQ(formatPid9(530001), L"000530001");
    EXPECT_EQ(formatPid9(1999979999), L"1999979999");
    EXPECT_EQ(formatPid9(1999999999), L"1999999999");
    EXPECT_EQ(formatPid9(100230405), L"100230405");
    EXPECT_EQ(formatPid9(99999), L"");
    EXPECT_EQ(formatPid9(100060000), L"");
    EXPECT_EQ(formatPid9(1999999998), L"");
}

TEST(ParsePidText, ReadsDisplayAndPlainForms) {
    EXPECT_EQ(parsePidText(L"1-234-5-67-89", false), 123456789);
    EXPECT_EQ(parsePidText(L"123456789", false), 123456789);
    EXPECT_EQ(parsePidText(L"0-005-3-00-01", false), 530001);
    EXPECT_EQ(parsePidText(L"530001", false), 530001);  // zeros before B may be left out
}

TEST(ParsePidText, ReadsBracketsOnlyWhenTheyAreMeant) {
    EXPECT_EQ(parsePidText(L"[1-234-5-67-89]", true), 123456789);
    EXPECT_EQ(parsePidText(L"  [  1-234-5-67-89] and more", true), 123456789);
    EXPECT_EQ(parsePidText(L"[@1-234-5-67-89]", true), 0);
    EXPECT_EQ(parsePidText(L"[ @1-234-5-67-89]", true), 0);
    EXPECT_EQ(parsePidText(L"[1-234-5-67-89", true), 0);
    EXPECT_EQ(parsePidText(L"1-234-5-67-89", true), 0);
    EXPECT_EQ(parsePidText(L"[]", true), 0);
    EXPECT_EQ(parsePidText(L"[", true), 0);
    EXPECT_EQ(parsePidText(L"", true), 0);
}

TEST(ParsePidText, IsZeroWhereAGroupIsMissingOrTheFieldsMakeNoPid) {
    for (const wchar_t* text :
         {L"", L"-", L"abc", L"89", L"67-89", L"5-67-89", L"20-234-5-67-89", L"1-234-6-67-89"})
        EXPECT_EQ(parsePidText(text, false), 0) << std::string(text, text + std::wstring_view(text).size());
}

TEST(TakeTrailingDigits, StopsAfterTheLastDigitAskedForAndKeepsWhatStandsBefore) {
    std::wstring_view text = L"12345";
    EXPECT_EQ(takeTrailingDigits(text, 2), 45);
    EXPECT_EQ(text, L"123");
}

TEST(TakeTrailingDigits, ConsumesTheSeparatorThatEndsAGroupEarly) {
    std::wstring_view text = L"12-7";
    EXPECT_EQ(takeTrailingDigits(text, 2), 7);
    EXPECT_EQ(text, L"12");
}

TEST(TakeTrailingDigits, DoesNotConsumeTheCharacterAfterAFullGroup) {
    std::wstring_view text = L"1-67";
    EXPECT_EQ(takeTrailingDigits(text, 2), 67);
    EXPECT_EQ(text, L"1-");
    EXPECT_EQ(takeTrailingDigits(text, 1), 1);
    EXPECT_EQ(text, L"");
}

TEST(TakeTrailingDigits, SkipsWhatIsNoDigitBeforeTheFirst) {
    std::wstring_view text = L"42 x)";
    EXPECT_EQ(takeTrailingDigits(text, 2), 42);
    EXPECT_EQ(text, L"");
}

TEST(TakeTrailingDigits, IsMinusOneWithoutADigitAndEatsTheText) {
    std::wstring_view text = L"abc";
    EXPECT_EQ(takeTrailingDigits(text, 2), -1);
    EXPECT_TRUE(text.empty());
    EXPECT_EQ(takeTrailingDigits(text, 2), -1);
}

TEST(TakeTrailingDigits, IsMinusOneBeyondThirtyTwoBits) {
    std::wstring_view most = L"2147483647";
    EXPECT_EQ(takeTrailingDigits(most, 10), 2147483647);
    std::wstring_view beyond = L"2147483648";
    EXPECT_EQ(takeTrailingDigits(beyond, 10), -1);
    std::wstring_view far = L"99999999999999999999999999";
    EXPECT_EQ(takeTrailingDigits(far, 30), -1);
}

}  // namespace
}  // namespace vtdn::common
