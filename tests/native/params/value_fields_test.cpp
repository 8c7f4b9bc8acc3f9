#include "params/value_fields.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace vtdn::params {
namespace {

std::vector<std::wstring> fieldsOf(std::wstring_view text) {
    std::vector<std::wstring> fields;
    FieldReader reader(text);
    const std::size_t count = countFields(text);
    for (std::size_t i = 0; i < count; ++i) fields.emplace_back(reader.next());
    return fields;
}
using Fields = std::vector<std::wstring>;

TEST(ValueFields, OfAnEmptyTextAreNone) {
    EXPECT_EQ(countFields(L""), 0U);
    EXPECT_EQ(fieldsOf(L""), Fields{});
}

TEST(ValueFields, AreSeparatedByEveryTabEmptyOnesIncluded) {
    EXPECT_EQ(fieldsOf(L"5"), Fields{L"5"});
    EXPECT_EQ(fieldsOf(L"5\t"), (Fields{L"5", L""}));
    EXPECT_EQ(fieldsOf(L"\t5"), (Fields{L"", L"5"}));
    EXPECT_EQ(fieldsOf(L"\t"), (Fields{L"", L""}));
    EXPECT_EQ(fieldsOf(L"\t\t\t"), (Fields{L"", L"", L"", L""}));
    EXPECT_EQ(fieldsOf(L"1.5\t\tABC"), (Fields{L"1.5", L"", L"ABC"}));
}

TEST(ValueFields, KeepEveryOtherCharacter) {
    using namespace std::string_literals;
    EXPECT_EQ(fieldsOf(L" a \t,;\r\n\t\0x"s), (Fields{L" a ", L",;\r\n", L"\0x"s}));
}

TEST(ValueFields, JoinedAgainAreTheText) {
    std::mt19937 random(5);
    for (int round = 0; round < 20000; ++round) {
        std::wstring text(random() % 20, L' ');
        for (wchar_t& c : text) c = L"\t\t ab1.\0"[random() % 8];
        std::wstring joined;
        const Fields fields = fieldsOf(text);
        for (std::size_t i = 0; i < fields.size(); ++i) {
            if (i > 0) joined += L'\t';
            joined += fields[i];
            ASSERT_EQ(fields[i].find(L'\t'), std::wstring::npos);
        }
        ASSERT_EQ(joined, text);
    }
}

TEST(Flags, AskForTheValueTheMonitorCodeOrBoth) {
    EXPECT_TRUE(askedBy(1).value);
    EXPECT_FALSE(askedBy(1).mc);
    EXPECT_FALSE(askedBy(2).value);
    EXPECT_TRUE(askedBy(2).mc);
    EXPECT_TRUE(askedBy(3).value);
    EXPECT_TRUE(askedBy(3).mc);
}

TEST(Flags, OfAnyOtherNumberAskForNothing) {
    for (const long flag : {0L, -1L, -2L, -3L, 4L, 5L, 6L, 7L, 257L, 65539L, 0x7FFFFFFFL, -0x7FFFFFFFL - 1}) {
        EXPECT_FALSE(askedBy(flag).value) << flag;
        EXPECT_FALSE(askedBy(flag).mc) << flag;
    }
}

}  // namespace
}  // namespace vtdn::params
