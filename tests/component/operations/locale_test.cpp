// Numbers as a user with a decimal comma writes them.
#include <bit>
#include <cstdint>
#include <iterator>
#include <random>

#include "com/number_text.h"
#include "operations/on_strict_engine.h"
#include "support/array.h"
#include "support/locale_setting.h"

namespace vtdn::test {
namespace {

constexpr LONG pid = 100501000;

class DecimalComma : public OnStrictEngine {
  private:
    const LocaleSetting decimal_{LOCALE_SDECIMAL, L","};
    const LocaleSetting thousand_{LOCALE_STHOUSAND, L"."};
    const LocaleSetting moneyDecimal_{LOCALE_SMONDECIMALSEP, L","};
    const LocaleSetting moneyThousand_{LOCALE_SMONTHOUSANDSEP, L"."};
};

TEST_F(DecimalComma, IsReadInBulkWrites) {
    setUpClient();
    const Bstr type(L"1h");
    const Bstr values(L"1,5\t-1.234,5\t0,25\t1,2,3");
    Array<LONG> mcs(0, 4);
    Array<LONG> flags(0, 4);
    flags.fill(1);
    expectParam(pid);
    engine.expect({{param(pid, "IOType"), 38},
                   {"new DIDataArray"},
                   {"Array.Define(39448, 4, '1h', 1, 0)"},
                   {"new DIDataArray"},
                   {"Array2.Define(39448, 4, '1h', 1, 0)"},
                   {"Array2.Fill(I4 0, 0)"},
                   {"Array2.SetItem(1, I4 1, 0)"},
                   {"Array.SetItem(1, R4 1.5, 0)"},
                   {"Array2.SetItem(2, I4 1, 0)"},
                   {"Array.SetItem(2, R4 -1234.5, 0)"},
                   {"Array2.SetItem(3, I4 1, 0)"},
                   {"Array.SetItem(3, R4 0.25, 0)"},
                   {"Array2.SetItem(4, I4 1, 0)"},
                   {"Array.SetItem(4, BSTR '1,2,3', 0)"},
                   {param(pid, "SpecialFunction(33, [0..1: Dispatch Array, Dispatch Array2])"), true}});
    EXPECT_TRUE(client.yes(&_DIWrapper::Param_WriteValues, pid, 39448.0, LONG{4}, type.get(), LONG{1},
                           values.get(), mcs.inOut(), flags.inOut()));
}

TEST_F(DecimalComma, IsReadAndWrittenInSpecialValues) {
    setUpClient();
    expectParam(pid);
    engine.expect({{param(pid, "SpecialValue(7)"), L"3,5"}});
    EXPECT_EQ(client.number(&_DIWrapper::Param_GetSpecialValue_Int32, pid, LONG{7}), 4);
    expectParam(pid);
    engine.expect({{param(pid, "SpecialValue(7)"), 2.5}});
    EXPECT_EQ(client.text(&_DIWrapper::Param_GetSpecialValue_String, pid, LONG{7}), L"2,5");
}

TEST_F(DecimalComma, ReadsInTheShortWayWhatThePlatformReads) {
    const com::SingleReader reader;
    std::mt19937 random(11);
    static constexpr wchar_t alphabet[] = L"0123456789012345678901234567890123456789,,,.-";
    int numbers = 0;
    for (int i = 0; i < 50'000; ++i) {
        std::wstring text(1 + random() % 10, L' ');
        for (wchar_t& c : text) c = alphabet[random() % (std::size(alphabet) - 1)];
        const auto variant = com::Variant::of(text);
        float ours = 0;
        const bool numeric = reader.read(text, ours);
        ASSERT_EQ(numeric, com::isNumeric(variant.get())) << com::toUtf8(text);
        if (!numeric) continue;
        ++numbers;
        float platforms = 0;
        ASSERT_EQ(VarR4FromStr(variant.get().bstrVal, GetUserDefaultLCID(), 0, &platforms), S_OK);
        ASSERT_EQ(std::bit_cast<std::uint32_t>(ours), std::bit_cast<std::uint32_t>(platforms))
            << com::toUtf8(text);
    }
    EXPECT_GT(numbers, 5'000);
}

}  // namespace
}  // namespace vtdn::test
