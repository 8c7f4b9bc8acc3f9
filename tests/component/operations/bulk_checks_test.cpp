// The checks of bulk writes, and the arrays that clients pass.
#include "operations/bulk_write.h"

namespace vtdn::test {
namespace {

constexpr LONG pid = bulkPid;
constexpr DATE start = bulkStart;

class BulkWriteChecks : public BulkWrite {};

TEST_F(BulkWriteChecks, AnUnknownPidIsReportedBeforeAnythingElse) {
    setUpClient();
    expectExists(pid, false);
    Longs none;
    Longs flags{1};
    EXPECT_FALSE(write(L"1\t2", none, flags, 9));
    expectProblem(L"PID 1-005-0-10-00 does not exist (WDN-038)");
}

TEST_F(BulkWriteChecks, AParameterThatIsNotStoredInTheDatabaseIsReportedBeforeTheSizes) {
    setUpClient();
    for (const int ioType : {0, 4, 34, 37, 39, -38}) {
        expectParam(pid);
        engine.expect({{param(pid, "IOType"), ioType}});
        Longs none;
        Longs flags{1};
        EXPECT_FALSE(write(L"1\t2", none, flags, 9));
        expectProblem(L"1-005-0-10-00 is not a DBDataIO parameter (WDN-039)");
    }
}

TEST_F(BulkWriteChecks, ArraysOfOtherBoundsAreReportedBeforeTheCount) {
    setUpClient();
    const struct {
        LONG mcsLower;
        ULONG mcsCount;
        LONG flagsLower;
        ULONG flagsCount;
    } rows[] = {{1, 3, 0, 3}, {0, 3, 1, 3}, {1, 3, 1, 3}, {0, 2, 0, 3},  {0, 3, 0, 2},
                {0, 4, 0, 3}, {0, 3, 0, 4}, {0, 0, 0, 3}, {0, 3, 0, 0},  {-1, 3, 0, 3},
                {1, 2, 0, 3}, {0, 2, 0, 2}, {0, 4, 0, 4}, {-1, 4, 0, 3}, {0, 0, 0, 0}};
    for (const auto& row : rows) {
        for (const LONG count : {3L, 9L, 0L, -1L}) {
            Array<LONG> mcs(row.mcsLower, row.mcsCount);
            Array<LONG> flags(row.flagsLower, row.flagsCount);
            engine.expect(checks());
            EXPECT_FALSE(write(L"1\t2\t3", mcs, flags, count));
            expectProblem(L"Array sizes are different. Can't write values/MCs to 1-005-0-10-00 (WDN-040)");
        }
    }
}

TEST_F(BulkWriteChecks, AnEmptyTextHasNoFieldsAtAll) {
    setUpClient();
    Longs mcs{1};
    Longs flags{1};
    engine.expect(checks());
    EXPECT_FALSE(write(L"", mcs, flags, 1));
    expectProblem(L"Array sizes are different. Can't write values/MCs to 1-005-0-10-00 (WDN-040)");
}

TEST_F(BulkWriteChecks, AnotherCountThanThatOfTheFieldsIsReported) {
    setUpClient();
    for (const LONG count : {4L, 2L, 0L, -3L, 0x7FFFFFFFL}) {
        Longs mcs{1, 2, 3};
        Longs flags{3, 3, 3};
        engine.expect(checks());
        EXPECT_FALSE(write(L"1\t2\t3", mcs, flags, count));
        expectProblem(L"Count does not match array size. Can't write values/MCs to 1-005-0-10-00 (WDN-041)");
    }
}

TEST_F(BulkWriteChecks, AnIllFormedPidLeavesTheDisplayEmpty) {
    setUpClient();
    const auto writeTo7 = [this](std::wstring_view values, LONG count) {
        const Bstr text(values);
        Longs mcs{1};
        Longs flags{1};
        return client.yes(&_DIWrapper::Param_WriteValues, 7, start, count, type.get(), LONG{2}, text.get(),
                          mcs.inOut(), flags.inOut());
    };
    expectExists(7, false);
    EXPECT_FALSE(writeTo7(L"1", 1));
    expectParam(7);
    engine.expect({{"Param(7).IOType", 1}});
    EXPECT_FALSE(writeTo7(L"1", 1));
    for (const auto& [values, count] : {std::pair{L"1\t2", 1L}, {L"1", 2L}}) {
        expectParam(7);
        engine.expect({{"Param(7).IOType", 38}});
        EXPECT_FALSE(writeTo7(values, count));
    }
    EXPECT_EQ(client.problemTexts(),
              (std::vector<std::wstring>{
                  L"PID  does not exist (WDN-038)", L" is not a DBDataIO parameter (WDN-039)",
                  L"Array sizes are different. Can't write values/MCs to  (WDN-040)",
                  L"Count does not match array size. Can't write values/MCs to  (WDN-041)"}));
}

TEST_F(BulkWriteChecks, ArraysWithoutDimensionsAreError9AfterTheChecksOfTheParameter) {
    setUpClient();
    const auto expectError9 = [this](Array<LONG>& mcs, Array<LONG>& flags) {
        engine.expect(checks());
        const Failure failure = fail(L"1\t2", mcs, flags, 2);
        EXPECT_EQ(clientNumber(failure.result), 9);
        EXPECT_TRUE(failure.description.empty() || failure.description == L"Subscript out of range")
            << failure;
    };
    Longs none;
    Longs alsoNone;
    Longs two{1, 2};
    expectError9(none, two);
    expectError9(two, none);
    expectError9(none, alsoNone);
    Longs one{1};
    expectError9(one, none);  // the other bounds differ already
    Array<LONG> plane(VT_I4, {{2, 0}, {1, 0}});
    expectError9(plane, two);
    expectError9(two, plane);
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(BulkWriteChecks, ArraysOfAnotherElementTypeAreError13) {
    setUpClient();
    for (const VARTYPE wrong : {VT_I2, VT_R4, VT_R8, VT_VARIANT, VT_UI1, VT_BSTR}) {
        Array<LONG> other(wrong, {{2, 0}});
        Longs right{1, 2};
        engine.expect(checks());
        EXPECT_EQ(clientNumber(fail(L"1\t2", other, right, 2).result), 13) << wrong;
        engine.expect(checks());
        EXPECT_EQ(clientNumber(fail(L"1\t2", right, other, 2).result), 13) << wrong;
        EXPECT_EQ(other.get()->cLocks, 0U);
        right.expectUnchanged();
    }
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(BulkWriteChecks, LockedAndFixedArraysAreReadLikeAnyOther) {
    setUpClient();
    Longs mcs{5, 6};
    Longs flags{3, 2};
    mcs.fix();
    ASSERT_EQ(SafeArrayLock(flags.get()), S_OK);
    expectWrite(2, {item(1, 3, "R4 1", 5), item(2, 2, "Empty", 6)});
    EXPECT_TRUE(write(L"1\t2", mcs, flags, 2));
    EXPECT_EQ(flags.get()->cLocks, 1U);
    SafeArrayUnlock(flags.get());
    mcs.expectUnchanged();
    flags.expectUnchanged();
}

TEST_F(BulkWriteChecks, OneArrayMayServeAsBoth) {
    setUpClient();
    Longs both{3, 2};
    expectWrite(2, {item(1, 3, "R4 1", 3), item(2, 2, "Empty", 2)});
    EXPECT_TRUE(write(L"1\t2", both, both, 2));
    both.expectUnchanged();
}

}  // namespace
}  // namespace vtdn::test
