#include "common/lists.h"

#include <gtest/gtest.h>

namespace vtdn::common {
namespace {

// Stands in for the platform's reader: digits, and "big" for a number that is out of range.
Reading readDigits(std::wstring_view piece, std::int32_t& number) {
    if (piece == L"big") return Reading::outOfRange;
    if (piece.empty() || piece.find_first_not_of(L"0123456789") != piece.npos) return Reading::notNumeric;
    number = std::stoi(std::wstring(piece));
    return Reading::number;
}

TEST(Split, KeepsEmptyPieces) {
    EXPECT_EQ(split(L"a,,b,", L","), (std::vector<std::wstring_view>{L"a", L"", L"b", L""}));
    EXPECT_EQ(split(L",", L","), (std::vector<std::wstring_view>{L"", L""}));
    EXPECT_EQ(split(L"a", L","), (std::vector<std::wstring_view>{L"a"}));
    EXPECT_EQ(split(L"a::b:c", L"::"), (std::vector<std::wstring_view>{L"a", L"b:c"}));
    EXPECT_EQ(split(L"abc", L""), (std::vector<std::wstring_view>{L"abc"}));
    EXPECT_TRUE(split(L"", L",").empty());
}

TEST(SplitToLongs, LeavesPiecesThatAreNoNumbersZero) {
    EXPECT_EQ(splitToLongs(L"100230405,,x,530001", L",", readDigits),
              (std::vector<std::int32_t>{100230405, 0, 0, 530001}));
}

TEST(SplitToLongs, IsNothingForAnEmptyTextOrANumberOutOfRange) {
    EXPECT_FALSE(splitToLongs(L"", L",", readDigits));
    EXPECT_FALSE(splitToLongs(L"1,big,2", L",", readDigits));
}

TEST(SortStrings, OrdersByCharacterCode) {
    std::vector<std::wstring> texts{L"b", L"a", L"", L"B", L"\u00e4", L"10", L"9", L"a"};
    sortStrings(texts);
    EXPECT_EQ(texts, (std::vector<std::wstring>{L"", L"10", L"9", L"B", L"a", L"a", L"b", L"\u00e4"}));
}

TEST(RemoveDuplicateStrings, CountsOnlyDuplicatesThatAreNotEmpty) {
    std::vector<std::wstring> texts{L"b", L"", L"a", L"b", L"", L"b"};
    EXPECT_EQ(removeDuplicateStrings(texts), 2);
    EXPECT_EQ(texts, (std::vector<std::wstring>{L"", L"a", L"b"}));
}

TEST(RemoveDuplicateStrings, KeepsTheFirstOfThoseThatTheGivenComparisonCallsTheSame) {
    std::vector<std::wstring> texts{L"b", L"B", L"a"};
    const SameText always = [](std::wstring_view, std::wstring_view) { return true; };
    EXPECT_EQ(removeDuplicateStrings(texts, always), 2);
    EXPECT_EQ(texts, (std::vector<std::wstring>{L"B"}));
}

TEST(RemoveDuplicateStrings, LeavesAnEmptyListEmpty) {
    std::vector<std::wstring> none;
    EXPECT_EQ(removeDuplicateStrings(none), 0);
    EXPECT_TRUE(none.empty());
}

TEST(SortUniqueDelimited, SortsAndKeepsEachPieceOnce) {
    EXPECT_EQ(sortUniqueDelimited(L"b;a;b", L";"), L"a;b");
    EXPECT_EQ(sortUniqueDelimited(L"", L";"), L"");
    EXPECT_EQ(sortUniqueDelimited(L"b;;a;", L";"), L";a;b");
    EXPECT_EQ(sortUniqueDelimited(L"100230405;000530001;100230405", L";"), L"000530001;100230405");
}

}  // namespace
}  // namespace vtdn::common
