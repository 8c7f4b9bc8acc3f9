// Runs of values in one request, read back by this process and by the next.
#include <cmath>
#include <optional>

#include "bound.h"

namespace vtdn::test {
namespace {

using Runs = OnDemoSite;
using SecondProcess = OnDemoSite;

constexpr DATE year2009 = 39814;
constexpr DATE free2008 = 39630;  // 1 July 2008, behind the demo's data
constexpr LONG minutes = 365 * 24 * 60;
constexpr LONG both = 3;

std::wstring decimalSeparator() {
    wchar_t separator[8] = L"";
    GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, separator, std::size(separator));
    return separator;
}

// A minute of the year: quarters from 0 to 49999.75, gaps, texts, days of one kind.
std::optional<float> numberOf(LONG minute) {
    const bool wholeDay = minute / 1440 % 30 == 11;
    if (wholeDay || minute % 11 == 5 || minute % 13 == 7) return std::nullopt;
    return static_cast<float>(minute % 200'000) / 4;
}
std::wstring textOf(LONG minute) {
    static const std::wstring point = decimalSeparator();
    static const std::wstring quarters[] = {L"", point + L"25", point + L"5", point + L"75"};
    if (!numberOf(minute)) return minute % 13 == 7 ? L"n/a \u20ac" : L"";
    return std::to_wstring(minute % 200'000 / 4) + quarters[minute % 4];
}
LONG codeOf(LONG minute) {
    return minute / 45 % 199;
}

class Request {
  public:
    explicit Request(LONG count) : mcs(0, static_cast<ULONG>(count)), flags(0, static_cast<ULONG>(count)) {}
    bool write(const Client& client, LONG pid, DATE start, LONG count, std::wstring_view values) {
        const com::Bstr minute(L"m");
        const com::Bstr text(values);
        return client.yes(&_DIWrapper::Param_WriteValues, pid, start, count, minute.get(), LONG{1},
                          text.get(), mcs.inOut(), flags.inOut());
    }

    Array<LONG> mcs;
    Array<LONG> flags;
};

template <class T, class Member>
void readRun(const Client& client, Member member, Array<T>& values, Array<LONG>& mcs,
             Array<VARIANT_BOOL>& flags) {
    const com::Bstr minute(L"m");
    EXPECT_TRUE(client.yes(member, so2Analyzer, year2009, minutes, minute.get(), LONG{1}, values.inOut(),
                           mcs.inOut(), flags.inOut()));
}

// In which minute of the year what was read first differs from what was written; -1 when it nowhere does.
LONG firstDifferentSingle(const Client& client) {
    Array<float> values(0, 0);
    Array<LONG> mcs(0, 0);
    Array<VARIANT_BOOL> flags(0, 0);
    readRun(client, &_DIWrapper::Param_GetDataArray_Single, values, mcs, flags);
    const com::ArrayView<float> singles(values.get());
    const com::ArrayView<LONG> codes(mcs.get());
    const com::ArrayView<VARIANT_BOOL> missing(flags.get());
    if (singles.size() != minutes || codes.size() != minutes || missing.size() != minutes) return minutes;
    for (LONG i = 0; i < minutes; ++i) {
        const auto number = numberOf(i);
        if (singles.data()[i] != number.value_or(0) ||
            (missing.data()[i] == VARIANT_FALSE) != number.has_value() || codes.data()[i] != codeOf(i))
            return i;
    }
    return -1;
}

LONG firstDifferentInteger(const Client& client) {
    Array<LONG> values(0, 0);
    Array<LONG> mcs(0, 0);
    Array<VARIANT_BOOL> flags(0, 0);
    readRun(client, &_DIWrapper::Param_GetDataArray_Integer, values, mcs, flags);
    const com::ArrayView<LONG> integers(values.get());
    const com::ArrayView<LONG> codes(mcs.get());
    const com::ArrayView<VARIANT_BOOL> missing(flags.get());
    if (integers.size() != minutes || codes.size() != minutes || missing.size() != minutes) return minutes;
    for (LONG i = 0; i < minutes; ++i) {
        const auto number = numberOf(i);
        const auto rounded = static_cast<LONG>(std::nearbyint(number.value_or(0)));  // halves to even
        const bool fits = number && rounded <= 32767;
        if (integers.data()[i] != (fits ? rounded : 0) || (missing.data()[i] == VARIANT_FALSE) != fits ||
            codes.data()[i] != codeOf(i))
            return i;
    }
    return -1;
}

LONG firstDifferentText(const Client& client) {
    Array<BSTR> values(0, 0);
    Array<LONG> mcs(0, 0);
    const com::Bstr minute(L"m");
    EXPECT_TRUE(client.yes(&_DIWrapper::Param_GetDataArray_String, so2Analyzer, year2009, minutes,
                           minute.get(), LONG{1}, values.inOut(), mcs.inOut()));
    const com::ArrayView<BSTR> texts(values.get());
    const com::ArrayView<LONG> codes(mcs.get());
    if (texts.size() != minutes || codes.size() != minutes) return minutes;
    for (LONG i = 0; i < minutes; ++i)
        if (com::view(texts.data()[i]) != textOf(i) || codes.data()[i] != codeOf(i)) return i;
    return -1;
}

void expectTheYear(const Client& client) {
    EXPECT_EQ(firstDifferentSingle(client), -1);
    EXPECT_EQ(firstDifferentInteger(client), -1);
    EXPECT_EQ(firstDifferentText(client), -1);
}

TEST_F(Runs, YearOfMinutesComesBackValueByValueAndCodeByCode) {
    Request year(minutes);
    year.flags.fill(both);
    std::wstring values;
    {
        const com::ArrayView<LONG> codes(year.mcs.get());
        for (LONG i = 0; i < minutes; ++i) {
            codes.data()[i] = codeOf(i);
            if (i != 0) values += L'\t';
            values += textOf(i);
        }
    }
    ASSERT_TRUE(year.write(client_, so2Analyzer, year2009, minutes, values));
    expectTheYear(client_);
}

TEST_F(SecondProcess, ReadsTheYearThatTheFirstOneWrote) {
    expectTheYear(client_);
}

TEST_F(Runs, WhatDoesNotFitIsRefusedWithItsOwnProblem) {
    Request two(2);
    EXPECT_FALSE(two.write(client_, nobodysPid, free2008, 2, L"1\t2"));
    EXPECT_FALSE(two.write(client_, ratedHeatInput, free2008, 2, L"1\t2"));
    EXPECT_FALSE(two.write(client_, so2Analyzer, free2008, 2, L"1\t2\t3"));
    EXPECT_FALSE(two.write(client_, so2Analyzer, free2008, 3, L"1\t2"));
    const com::Bstr minute(L"m");
    const com::Bstr text(L"1\t2");
    Array<LONG> fromOne(1, 2);
    EXPECT_FALSE(client_.yes(&_DIWrapper::Param_WriteValues, so2Analyzer, free2008, LONG{2}, minute.get(),
                             LONG{1}, text.get(), fromOne.inOut(), two.flags.inOut()));
    const std::wstring sizes =
        L"Array sizes are different. Can't write values/MCs to 5-110-1-00-01 (WDN-040)";
    EXPECT_EQ(
        client_.problemTexts(),
        (std::vector<std::wstring>{
            L"PID 5-999-3-00-00 does not exist (WDN-038)",
            L"5-901-0-00-00 is not a DBDataIO parameter (WDN-039)", sizes,
            L"Count does not match array size. Can't write values/MCs to 5-110-1-00-01 (WDN-041)", sizes}));
}

TEST_F(Runs, ArraysOfOtherShapesAndTypesAreErrors) {
    const com::Bstr minute(L"m");
    const com::Bstr text(L"1\t2");
    Array<LONG> good(0, 2);
    Array<LONG> none;
    Array<LONG> square(VT_I4, {{2, 0}, {2, 0}});
    Array<float> singles(0, 2);
    const auto refused = [&](SAFEARRAY** mcs) {
        return client_
            .failure(&_DIWrapper::Param_WriteValues, so2Analyzer, free2008, LONG{2}, minute.get(), LONG{1},
                     text.get(), mcs, good.inOut())
            .result;
    };
    EXPECT_EQ(clientNumber(refused(none.inOut())), 9);
    EXPECT_EQ(clientNumber(refused(square.inOut())), 9);
    EXPECT_EQ(clientNumber(refused(singles.inOut())), 13);
    EXPECT_EQ(client_.problems(), L"");
}

TEST_F(Runs, EmptyRunPassesEveryCheck) {
    Request none(0);
    EXPECT_TRUE(none.write(client_, so2Analyzer, free2008, 0, L""));
    EXPECT_EQ(client_.problems(), L"");
}

}  // namespace
}  // namespace vtdn::test
