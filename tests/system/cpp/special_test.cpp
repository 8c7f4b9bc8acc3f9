// Special values and functions; what a function gives is computed here once more from what is read.
#include <algorithm>
#include <cmath>
#include <numeric>

#include "bound.h"

namespace vtdn::test {
namespace {

using Special = OnDemoSite;

constexpr DATE april2007 = 39177;  // the 5th
constexpr LONG week = 7 * 24;

/// The arguments of a function over a span, as an array of variants.
class Span {
  public:
    Span(DATE start, DATE end) : array_(0, 2) {
        const com::ArrayView<VARIANT> elements(array_.get());
        com::Variant::ofDate(start).detachTo(&elements[0]);
        com::Variant::ofDate(end).detachTo(&elements[1]);
    }
    SAFEARRAY** inOut() { return array_.inOut(); }

  private:
    Array<VARIANT> array_;
};

class OverAWeek : public OnDemoSite {
  protected:
    double asText(LONG pid, LONG function) {
        Span span(april2007, april2007 + 7);
        const std::wstring text =
            client_.text(&_DIWrapper::Param_GetSpecialFunction_String, pid, function, span.inOut());
        double number = std::nan("");
        const com::Bstr automation(text);
        EXPECT_EQ(VarR8FromStr(automation.get(), LOCALE_USER_DEFAULT, 0, &number), S_OK) << com::toUtf8(text);
        return number;
    }
};

TEST_F(OverAWeek, FunctionsAreThoseOfTheValuesInIt) {
    const auto values = numbers(so2Mass, april2007, week);
    ASSERT_GT(values.size(), 100U);
    ASSERT_LT(values.size(), static_cast<std::size_t>(week));
    const double total = std::accumulate(values.begin(), values.end(), 0.0);
    const double average = total / static_cast<double>(values.size());
    EXPECT_NEAR(asText(so2Mass, 102), average, 1e-6 * average);
    EXPECT_NEAR(asText(so2Mass, 103), total, 1e-6 * total);
    EXPECT_NEAR(asText(so2Mass, 104), *std::ranges::min_element(values), 1e-3);
    EXPECT_NEAR(asText(so2Mass, 105), *std::ranges::max_element(values), 1e-3);
    EXPECT_EQ(asText(so2Mass, 106), static_cast<double>(values.size()));
    Span span(april2007, april2007 + 7);
    EXPECT_EQ(client_.number(&_DIWrapper::Param_GetSpecialFunction_Int32, so2Mass, LONG{106}, span.inOut()),
              static_cast<LONG>(values.size()));
    EXPECT_EQ(client_.number(&_DIWrapper::Param_GetSpecialFunction_Real32, so2Mass, LONG{102}, span.inOut()),
              std::lround(average));
    EXPECT_TRUE(client_.yes(&_DIWrapper::Param_GetSpecialFunction_Boolean, so2Mass, LONG{106}, span.inOut()));
}

TEST_F(OverAWeek, OperatingTimeIsTheSumOfItsHours) {
    const auto hours = numbers(operatingTime, april2007, week);
    const double total = std::accumulate(hours.begin(), hours.end(), 0.0);
    ASSERT_GT(total, 100.0);
    EXPECT_NEAR(asText(so2Mass, 32), total, 1e-5);
    EXPECT_EQ(client_.number(&_DIWrapper::Param_CallSF_CalcOpTime, so2Mass, april2007, april2007 + 7),
              static_cast<LONG>(std::nearbyint(total)));
}

TEST_F(Special, ValuesAreNumbersBooleansAndTexts) {
    EXPECT_EQ(client_.number(&_DIWrapper::Param_GetSpecialValue_Int32, unitItself, LONG{-95}), 3);
    EXPECT_TRUE(client_.yes(&_DIWrapper::Param_GetSpecialValue_Boolean, unitItself, LONG{-17}));
    EXPECT_EQ(client_.text(&_DIWrapper::Param_GetSpecialValue_String, unitItself, LONG{-17}), L"True");
    EXPECT_EQ(client_.text(&_DIWrapper::Param_GetSpecialValue_String, so2Analyzer, LONG{-22}), L"40CFR75");
    EXPECT_EQ(client_.number(&_DIWrapper::Param_GetSpecialValue_Int32, so2Analyzer, LONG{-22}), 0);
    EXPECT_EQ(client_.problems(), L"");
    EXPECT_FALSE(client_.yes(&_DIWrapper::Param_GetSpecialValue_Boolean, so2Analyzer, LONG{-22}));
    EXPECT_EQ(client_.problemTexts(), (std::vector<std::wstring>{L"13, Type mismatch (WDN-037)"}));
}

TEST_F(Special, UnknownParametersAreProblemsOfEachMembersOwn) {
    Span span(april2007, april2007 + 7);
    const LONG id = 106;
    client_.number(&_DIWrapper::Param_GetSpecialValue_Int32, nobodysPid, id);
    client_.yes(&_DIWrapper::Param_GetSpecialValue_Boolean, nobodysPid, id);
    client_.number(&_DIWrapper::Param_CallSF_CalcOpTime, nobodysPid, april2007, april2007);
    client_.text(&_DIWrapper::Param_GetSpecialValue_String, nobodysPid, id);
    client_.yes(&_DIWrapper::Param_GetSpecialFunction_Boolean, nobodysPid, id, span.inOut());
    client_.number(&_DIWrapper::Param_GetSpecialFunction_Int32, nobodysPid, id, span.inOut());
    client_.number(&_DIWrapper::Param_GetSpecialFunction_Real32, nobodysPid, id, span.inOut());
    client_.text(&_DIWrapper::Param_GetSpecialFunction_String, nobodysPid, id, span.inOut());
    std::vector<std::wstring> expected;
    for (const auto* code : {L"031", L"035", L"042", L"047", L"0049", L"0052", L"0055", L"0058"})
        expected.push_back(std::wstring(L"PID 5-999-3-00-00 does not exist (WDN-") + code + L")");
    EXPECT_EQ(client_.problemTexts(), expected);
}

TEST_F(Special, AverageOfNothingIsNull) {
    constexpr DATE july2007 = 39264;  // absent from the demo's data
    Span span(july2007, july2007 + 7);
    EXPECT_EQ(client_.text(&_DIWrapper::Param_GetSpecialFunction_String, so2Mass, LONG{102}, span.inOut()),
              L"");
    EXPECT_EQ(client_.problems(), L"");
    EXPECT_EQ(client_.number(&_DIWrapper::Param_GetSpecialFunction_Int32, so2Mass, LONG{102}, span.inOut()),
              0);
    EXPECT_EQ(client_.problemTexts(), (std::vector<std::wstring>{L"94, Invalid use of Null (WDN-0054)"}));
}

}  // namespace
}  // namespace vtdn::test
