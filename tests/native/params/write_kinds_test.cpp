#include "params/write_kinds.h"

#include <gtest/gtest.h>

#include <set>
#include <vector>

namespace vtdn::params {
namespace {

const std::vector<WriteKind> kinds{writeMc,          writeValueNull,   writeValueInteger,
                                   writeValueSingle, writeValueString, writeVmcNull,
                                   writeVmcInteger,  writeVmcSingle,   writeVmcString};

TEST(WriteKinds, EveryCodeBelongsToOnePlaceOfOneKind) {
    std::set<int> codes;
    std::size_t places = 0;
    const auto take = [&](binding::Code code) {
        codes.insert(static_cast<int>(code));
        ++places;
    };
    for (const auto& kind : kinds) {
        if (kind.unknownMc) take(*kind.unknownMc);
        take(kind.unknownPid);
        take(kind.notDatabase);
    }
    EXPECT_EQ(places, 23U);
    EXPECT_EQ(codes.size(), places);
}

TEST(WriteKinds, TheChecksOfAKindHaveConsecutiveCodesInTheirOrder) {
    for (const auto& kind : kinds) {
        const int unknownPid = static_cast<int>(kind.unknownPid);
        if (kind.unknownMc) {
            EXPECT_EQ(static_cast<int>(*kind.unknownMc), unknownPid - 1);
        }
        EXPECT_EQ(static_cast<int>(kind.notDatabase), unknownPid + 1);
    }
}

TEST(WriteKinds, OnlyWritesOfAWholeIntervalStartFromANewItem) {
    for (const auto& kind : {writeMc, writeValueNull, writeValueInteger, writeValueSingle, writeValueString})
        EXPECT_FALSE(kind.newItem);
    for (const auto& kind : {writeVmcNull, writeVmcInteger, writeVmcSingle, writeVmcString})
        EXPECT_TRUE(kind.newItem);
}

TEST(WriteKinds, AMonitorCodeIsCheckedWheneverOneIsWritten) {
    for (const auto& kind : {writeValueNull, writeValueInteger, writeValueSingle, writeValueString})
        EXPECT_FALSE(kind.unknownMc.has_value());
    for (const auto& kind : {writeMc, writeVmcNull, writeVmcInteger, writeVmcSingle, writeVmcString})
        EXPECT_TRUE(kind.unknownMc.has_value());
}

}  // namespace
}  // namespace vtdn::params
