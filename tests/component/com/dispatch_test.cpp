// Late-bound calls: names, arguments, results, failures.
#include "probe.h"

#include <gtest/gtest.h>

namespace vtdn::test {
namespace {

TEST(DispatchTable, GivesEveryMemberItsSlotBehindIDispatch) {
    const com::DispatchTable& table = com::dispatchTable<IProbe>();
    unsigned slot = 7;
    for (const com::Member& member : table.members()) EXPECT_EQ(member.slot, slot++) << member.id;
}

}  // namespace
}  // namespace vtdn::test
