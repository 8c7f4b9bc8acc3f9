#include "common/interval.h"

#include <gtest/gtest.h>

#include <string>

namespace vtdn::common {
namespace {

struct Parsed {
    bool ok;
    std::int32_t count;
    std::wstring unit;
    bool operator==(const Parsed&) const = default;
};

void PrintTo(const Parsed& p, std::ostream* out) {
    *out << p.ok << ' ' << p.count << ' ' << std::string(p.unit.begin(), p.unit.end());
}

Parsed parse(std::wstring_view text, bool normalise) {
    Interval interval{77, L"left over"};
    const bool ok = parseIntervalText(text, normalise, interval);
    return {ok, interval.count, interval.unit};
}

TEST(ParseIntervalText, ReadsEveryUnitAsItStands) {
    for (const wchar_t* unit : {L"s", L"m", L"h", L"d", L"M", L"v"})
        EXPECT_EQ(parse(L"15" + std::wstring(unit), false), (Parsed{true, 15, unit}));
}

TEST(ParseIntervalText, TrimsBlanksAround) {
    EXPECT_EQ(parse(L"  3M ", true), (Parsed{true, 3, L"M"}));
}

TEST(ParseIntervalText, RefusesEmptyText) {
    EXPECT_EQ(parse(L"", true), (Parsed{false, 0, L""}));
    EXPECT_EQ(parse(L"   ", true), (Parsed{false, 0, L""}));
}

TEST(ParseIntervalText, KeepsTheCountOfDigitsAlone) {
    EXPECT_EQ(parse(L"15", true), (Parsed{false, 15, L""}));
}

TEST(ParseIntervalText, RefusesUnknownUnits) {
    for (const wchar_t* text :
         {L"15x", L"15S", L"15H", L"15D", L"15mm", L"15 m", L"15m s", L"-1m", L"1.5h", L"m15"})
        EXPECT_EQ(parse(text, true), (Parsed{false, 0, L""}));
}

TEST(ParseIntervalText, TakesAUnitWithoutACountAsZero) {
    EXPECT_EQ(parse(L"m", true), (Parsed{true, 0, L"m"}));
}

TEST(ParseIntervalText, RefusesCountsBeyondThirtyTwoBits) {
    EXPECT_EQ(parse(L"2147483647s", false), (Parsed{true, 2147483647, L"s"}));
    EXPECT_EQ(parse(L"2147483648s", false), (Parsed{false, 0, L""}));
    EXPECT_EQ(parse(L"99999999999999999999s", false), (Parsed{false, 0, L""}));
}

TEST(NormaliseInterval, CarriesWholeUnitsUpward) {
    EXPECT_EQ(parse(L"7200s", true), (Parsed{true, 2, L"h"}));
    EXPECT_EQ(parse(L"90s", true), (Parsed{true, 90, L"s"}));
    EXPECT_EQ(parse(L"60s", true), (Parsed{true, 1, L"m"}));
    EXPECT_EQ(parse(L"59s", true), (Parsed{true, 59, L"s"}));
    EXPECT_EQ(parse(L"48h", true), (Parsed{true, 2, L"d"}));
    EXPECT_EQ(parse(L"36h", true), (Parsed{true, 36, L"h"}));
    EXPECT_EQ(parse(L"86400s", true), (Parsed{true, 1, L"d"}));
    EXPECT_EQ(parse(L"1440m", true), (Parsed{true, 1, L"d"}));
    EXPECT_EQ(parse(L"61m", true), (Parsed{true, 61, L"m"}));
}

TEST(NormaliseInterval, NeverCarriesDaysIntoMonths) {
    EXPECT_EQ(parse(L"30d", true), (Parsed{true, 30, L"d"}));
    EXPECT_EQ(parse(L"12M", true), (Parsed{true, 12, L"M"}));
}

TEST(NormaliseInterval, MakesTheCountOfVOne) {
    EXPECT_EQ(parse(L"7v", true), (Parsed{true, 1, L"v"}));
    EXPECT_EQ(parse(L"7v", false), (Parsed{true, 7, L"v"}));
}

TEST(IntervalTextForEngine, WritesTheNormalisedIntervalOrLeavesTheTextAlone) {
    EXPECT_EQ(intervalTextForEngine(L"60s"), L"1m");
    EXPECT_EQ(intervalTextForEngine(L"3600s"), L"1h");
    EXPECT_EQ(intervalTextForEngine(L"300s"), L"5m");
    EXPECT_EQ(intervalTextForEngine(L"900s"), L"15m");
    EXPECT_EQ(intervalTextForEngine(L"90s"), L"90s");
    EXPECT_EQ(intervalTextForEngine(L"1440m"), L"1d");
    EXPECT_EQ(intervalTextForEngine(L"abc"), L"abc");
    EXPECT_EQ(intervalTextForEngine(L""), L"");
    EXPECT_EQ(intervalTextForEngine(L" 15 "), L" 15 ");
}

}  // namespace
}  // namespace vtdn::common
