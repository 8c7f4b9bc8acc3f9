// Texts as numbers: the short way must read what the platform reads, bit by bit, and nothing else.
#include "com/number_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <optional>
#include <random>
#include <string>

#include "com/error.h"
#include "com/variant.h"

namespace vtdn::test {
namespace {

/// How a text reads: not at all, as the bits of a single, or as an overflow.
struct Reading {
    bool numeric = false;
    HRESULT result = S_OK;
    std::uint32_t bits = 0;
    bool operator==(const Reading&) const = default;
};
void PrintTo(const Reading& reading, std::ostream* out) {
    *out << (reading.numeric ? "number" : "text") << ", result " << std::hex << reading.result << ", bits "
         << reading.bits;
}

std::uint32_t bitsOf(float value) {
    std::uint32_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

Reading ours(const com::SingleReader& reader, std::wstring_view text) {
    float value = 0;
    try {
        if (!reader.read(text, value)) return {};
        return {true, S_OK, bitsOf(value)};
    } catch (const com::Error& error) {
        return {true, error.result(), 0};
    }
}

/// By the platform's own functions alone.
Reading platforms(std::wstring_view text) {
    const com::Bstr owned(text);
    double number = 0;
    if (!owned.get() || FAILED(VarR8FromStr(owned.get(), GetUserDefaultLCID(), 0, &number))) return {};
    float single = 0;
    const HRESULT result = VarR4FromStr(owned.get(), GetUserDefaultLCID(), 0, &single);
    return {true, result, FAILED(result) ? 0 : bitsOf(single)};
}

class NumberTexts : public testing::Test {
  protected:
    /// True when the two agree.
    bool agree(const std::wstring& text) {
        ++looked;
        const Reading reading = ours(reader, text);
        if (reading.numeric) ++numbers;
        EXPECT_EQ(reading.numeric, com::isNumeric(com::Variant::of(text).get()))
            << "text '" << com::toUtf8(text) << "'";
        EXPECT_EQ(reading, platforms(text)) << "text '" << com::toUtf8(text) << "'";
        return !HasFailure();
    }

    const com::SingleReader reader;
    std::mt19937 random{7};
    int looked = 0;
    int numbers = 0;

    int below(int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); }
    std::wstring digits(int count) {
        std::wstring text;
        for (int i = 0; i < count; ++i) text += static_cast<wchar_t>(L'0' + below(10));
        return text;
    }
};

TEST_F(NumberTexts, OfEveryKindReadAsThePlatformReadsThem) {
    for (const wchar_t* text : {L"",
                                L" ",
                                L"0",
                                L"-0",
                                L"00",
                                L"0.0",
                                L"-0.0",
                                L"1",
                                L"-1",
                                L"+1",
                                L"1.",
                                L".1",
                                L"-.1",
                                L".",
                                L"-",
                                L"1.5",
                                L"1,5",
                                L"1,234.5",
                                L"1,234,567",
                                L",1",
                                L"12,34",
                                L" 12 ",
                                L"\t12",
                                L"1 2",
                                L"1e3",
                                L"1E+3",
                                L"1e-3",
                                L"1e",
                                L"e3",
                                L"1e39",
                                L"-1e39",
                                L"1e400",
                                L"1e-400",
                                L"1e-45",
                                L"1e-46",
                                L"3.4028235e38",
                                L"3.4028236e38",
                                L"340282346638528859811704183484516925440",
                                L"340282356779733661637539395458142568448",
                                L"&H10",
                                L"&HFFFFFFFF",
                                L"&O17",
                                L"&H",
                                L"$5",
                                L"5$",
                                L"-$5",
                                L"(5)",
                                L"(-5)",
                                L"5-",
                                L"5+",
                                L"--5",
                                L"1-2",
                                L"1.2.3",
                                L"1..2",
                                L"0x10",
                                L"12a",
                                L"a12",
                                L"True",
                                L"False",
                                L"N/A",
                                L"INF",
                                L"NaN",
                                L"1_000",
                                L"\x0661",
                                L"\xFF11",
                                L"16777217",
                                L"16777216",
                                L"16777218.9999",
                                L"123456789012345",
                                L"1234567890123456",
                                L"12345678901234567890",
                                L"0.000000000000001",
                                L"0.0000000000000001",
                                L"0.00000000000000000000000000000000000000000000001",
                                L"000000000000000000000000000001",
                                L"8388609.5",
                                L"8388608.5",
                                L"0.1",
                                L"0.3",
                                L"1.1754944e-38"})
        agree(text);
    agree(std::wstring(L"5\0x", 3));
    agree(std::wstring(L"\0", 1));
    agree(std::wstring(1000, L'9'));
    agree(std::wstring(100'000, L'0') + L"1");
}

TEST_F(NumberTexts, ThatArePlainReadBitByBit) {
    while (looked < 200'000) {
        std::wstring text = below(3) == 0 ? L"-" : L"";
        text += digits(1 + below(9));
        if (below(3) != 0) text += L"." + digits(1 + below(9));
        if (!agree(text)) return;
    }
    EXPECT_EQ(numbers, looked);
}

TEST_F(NumberTexts, ThatAreOddReadTheSame) {
    static constexpr wchar_t alphabet[] = L"00112233445566778899....,,--++  eE$()&HhxO%\t\0";
    while (looked < 100'000) {
        std::wstring text(static_cast<std::size_t>(below(14)), L' ');
        for (wchar_t& c : text) c = alphabet[below(std::size(alphabet))];
        if (!agree(text)) return;
    }
    EXPECT_GT(numbers, looked / 50);
    EXPECT_LT(numbers, looked);
}

TEST_F(NumberTexts, ThatAreNumbersWithSomethingAroundThemReadTheSame) {
    const wchar_t* around[] = {L"",  L" ",  L"  ",  L"-",   L"+", L"$", L"(",
                               L")", L"e3", L"E-7", L"e38", L",", L"x"};
    const auto some = [&] { return around[static_cast<std::size_t>(below(std::size(around)))]; };
    while (looked < 100'000) {
        std::wstring text = some();
        text += digits(1 + below(20));
        if (below(2) == 0) text += L"." + digits(below(20));
        text += some();
        if (!agree(text)) return;
    }
    EXPECT_GT(numbers, looked / 10);
}

TEST_F(NumberTexts, NearTheMiddleOfTwoSinglesReadTheSame) {
    // The middle of two neighbours, exactly and with a last digit more or less: where a way of rounding
    // shows.
    while (looked < 60'000) {
        const float low = static_cast<float>(1 + below(1 << 24)) / static_cast<float>(1 << below(24));
        const double middle = (static_cast<double>(low) + std::nextafterf(low, INFINITY)) / 2;
        wchar_t text[64];
        for (const int decimals : {3, 6, 8, 10}) {
            std::swprintf(text, std::size(text), L"%.*f", decimals, middle);
            if (!agree(text)) return;
            std::swprintf(text, std::size(text), L"-%.*f", decimals,
                          middle + (below(3) - 1) * std::pow(10, -decimals));
            if (!agree(text)) return;
        }
    }
    EXPECT_GT(numbers, looked / 2);
}

TEST_F(NumberTexts, BeyondASingleAreError6AndLeaveTheOutputAlone) {
    float value = 77;
    for (const wchar_t* text : {L"1e39", L"-1e39", L"3.5e38", L"1000000000000000000000000000000000000000"}) {
        try {
            static_cast<void>(reader.read(text, value));
            ADD_FAILURE() << com::toUtf8(text);
        } catch (const com::Error& error) {
            EXPECT_EQ(error.number(), 6);
            EXPECT_EQ(error.description(), L"Overflow");
        }
    }
    EXPECT_FALSE(reader.read(L"abc", value));
    EXPECT_FALSE(reader.read(L"", value));
    EXPECT_EQ(value, 77);
}

}  // namespace
}  // namespace vtdn::test
