// The tables behind the lists, the averaging levels, and the special values and functions.
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <set>
#include <vector>

#include "params/averaging_levels.h"
#include "params/list_kinds.h"
#include "params/pid_list.h"
#include "params/special_kinds.h"

namespace vtdn::params {
namespace {

using Flags = std::vector<std::pair<std::int32_t, bool>>;

Flags flagsOf(const ListKind& kind) {
    Flags flags;
    for (const Flag& flag : kind.flags) flags.emplace_back(flag.id, flag.wanted);
    return flags;
}

TEST(ListKinds, OfATypeTakeEveryParameter) {
    for (const std::int32_t type : {0, -1, 3, 45, 1000}) {
        const ListKind kind = ofType(type);
        EXPECT_EQ(kind.parameterType, type);
        EXPECT_FALSE(kind.part75);
        EXPECT_TRUE(kind.flags.empty());
        EXPECT_FALSE(kind.marker.has_value());
    }
}

TEST(ListKinds, OfCalibrationReadTheirFlagsInOrder) {
    EXPECT_EQ(part75Calibration.parameterType, 3);
    EXPECT_TRUE(part75Calibration.part75);
    EXPECT_EQ(flagsOf(part75Calibration), (Flags{{-117, false}, {-114, false}, {-118, false}, {-25, false}}));
    EXPECT_EQ(calibration.parameterType, 3);
    EXPECT_FALSE(calibration.part75);
    EXPECT_EQ(flagsOf(calibration), (Flags{{-25, false}}));
    EXPECT_EQ(part75InterferenceCheck.parameterType, 3);
    EXPECT_TRUE(part75InterferenceCheck.part75);
    EXPECT_EQ(flagsOf(part75InterferenceCheck), (Flags{{-117, true}, {-25, false}}));
    for (const ListKind& kind : {part75Calibration, calibration, part75InterferenceCheck})
        EXPECT_FALSE(kind.marker.has_value());
}

TEST(ListKinds, OfLinearityHaveAMarkerOnly) {
    EXPECT_EQ(part75Linearity.parameterType, 45);
    EXPECT_FALSE(part75Linearity.part75);
    EXPECT_TRUE(part75Linearity.flags.empty());
    EXPECT_EQ(part75Linearity.marker, -32);
}

TEST(AveragingLevels, HaveTheEnginesLetters) {
    EXPECT_EQ(intervalUnitOf(1), L'n');
    EXPECT_EQ(intervalUnitOf(2), L'h');
    EXPECT_EQ(intervalUnitOf(3), L'd');
}

TEST(AveragingLevels, OfAnyOtherNumberAreNone) {
    for (const std::int32_t level : {0, 4, -1, -2, 258, 65537, std::numeric_limits<std::int32_t>::max(),
                                     std::numeric_limits<std::int32_t>::min()})
        EXPECT_EQ(intervalUnitOf(level), L'\0') << level;
}

TEST(PidLists, HaveNineDigitsAndASeparatorBetweenOnly) {
    std::wstring list;
    addPid(list, 530001);
    EXPECT_EQ(list, L"000530001");
    addPid(list, 1999989999);
    addPid(list, 530001);
    EXPECT_EQ(list, L"000530001;1999989999;000530001");
    addPid(list, 7);
    EXPECT_EQ(list, L"000530001;1999989999;000530001;");
    addPid(list, 100230405);
    EXPECT_EQ(list, L"000530001;1999989999;000530001;;100230405");
}

TEST(SpecialKinds, HaveTheirCodesEachOnce) {
    const struct {
        SpecialKind kind;
        int unknownPid;
        int callFailed;
        int conversionFailed;  ///< 0 for none
    } rows[] = {{operatingTime, 42, 43, 0},           {specialValueInt32, 31, 32, 0},
                {specialValueBoolean, 35, 36, 37},    {specialValueString, 47, 48, 0},
                {specialFunctionBoolean, 49, 50, 51}, {specialFunctionInt32, 52, 53, 54},
                {specialFunctionReal32, 55, 56, 57},  {specialFunctionString, 58, 59, 0}};
    std::set<int> codes;
    for (const auto& row : rows) {
        EXPECT_EQ(static_cast<int>(row.kind.unknownPid), row.unknownPid);
        EXPECT_EQ(static_cast<int>(row.kind.callFailed), row.callFailed);
        EXPECT_EQ(row.kind.conversionFailed ? static_cast<int>(*row.kind.conversionFailed) : 0,
                  row.conversionFailed);
        codes.insert(row.unknownPid);
        codes.insert(row.callFailed);
        if (row.conversionFailed != 0) codes.insert(row.conversionFailed);
    }
    EXPECT_EQ(codes.size(), 20U);
}

}  // namespace
}  // namespace vtdn::params
