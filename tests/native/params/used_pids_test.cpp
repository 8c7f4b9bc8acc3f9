#include "params/used_pids.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace vtdn::params {
namespace {

/// Parameters with their inputs and I/O types; writes down what it is asked.
struct FakeEngine {
    std::map<std::int32_t, std::vector<std::int32_t>> inputs;
    std::map<std::int32_t, std::int32_t> ioTypes;
    std::string asked;

    std::vector<std::int32_t> usedPids(std::int32_t pid) {
        asked += "used " + std::to_string(pid) + ";";
        return inputs[pid];
    }
    std::int32_t ioType(std::int32_t pid) {
        asked += "type " + std::to_string(pid) + ";";
        const auto found = ioTypes.find(pid);
        if (found == ioTypes.end()) throw std::out_of_range("unknown PID");
        return found->second;
    }
};

struct TooDeep : std::runtime_error {
    TooDeep() : std::runtime_error("too deep") {}
};

struct FoundLists {
    std::wstring editables;
    std::wstring constants;

    void editable(std::int32_t pid) { editables = withPid(editables, pid); }
    void constant(std::int32_t pid) { constants = withPid(constants, pid); }
    [[noreturn]] static void tooDeep() { throw TooDeep(); }
};

TEST(UsedPids, OnlyTimeType3IsEditable) {
    EXPECT_TRUE(isEditableTimeType(530001));
    EXPECT_TRUE(isEditableTimeType(100230405));
    EXPECT_FALSE(isEditableTimeType(100160405));
    EXPECT_FALSE(isEditableTimeType(0));
    EXPECT_FALSE(isEditableTimeType(-530001));
}

TEST(UsedPids, AnInputIsSortedByItsIoTypeAndThenByItsTimeType) {
    EXPECT_EQ(inputKind(540001, 4), Input::constant);
    EXPECT_EQ(inputKind(530001, 4), Input::constant);
    EXPECT_EQ(inputKind(530001, 34), Input::constant);
    EXPECT_EQ(inputKind(530001, 38), Input::editable);
    EXPECT_EQ(inputKind(540001, 38), Input::leftOut);
    EXPECT_EQ(inputKind(530001, 31), Input::calculated);
    EXPECT_EQ(inputKind(530001, 0), Input::calculated);
}

TEST(UsedPids, AListedPidHasNineDigits) {
    EXPECT_EQ(withPid(L"", 530001), L"000530001");
    EXPECT_EQ(withPid(L"000530001", 1999930405), L"000530001;1999930405");
}

TEST(UsedPids, AnIllFormedPidIsListedAsNothing) {
    EXPECT_EQ(withPid(L"000530001", 7), L"000530001;");
    EXPECT_EQ(withPid(L"", 7), L"");
}

TEST(UsedPids, InputsAreListedInTheOrderOfTheCalculationEachTimeTheyOccur) {
    FakeEngine engine;
    engine.inputs[930001] = {100230405, 530001, 540001, 100230405, 630001};
    engine.ioTypes = {{100230405, 38}, {530001, 38}, {540001, 38}, {630001, 34}};
    FoundLists found;
    walkInputs(engine, found, 930001);
    EXPECT_EQ(found.editables, L"100230405;000530001;100230405");
    EXPECT_EQ(found.constants, L"000630001");
    EXPECT_EQ(engine.asked, "used 930001;type 100230405;type 530001;type 540001;type 100230405;type 630001;");
}

TEST(UsedPids, ACalculatedInputIsReplacedByItsOwnInputsWheneverItIsReached) {
    FakeEngine engine;
    engine.inputs[930001] = {830001, 630001, 830001};
    engine.inputs[830001] = {530001};
    engine.ioTypes = {{830001, 7}, {630001, 4}, {530001, 38}};
    FoundLists found;
    walkInputs(engine, found, 930001);
    EXPECT_EQ(found.editables, L"000530001;000530001");
    EXPECT_EQ(found.constants, L"000630001");
    EXPECT_EQ(
        engine.asked,
        "used 930001;type 830001;used 830001;type 530001;type 630001;type 830001;used 830001;type 530001;");
}

TEST(UsedPids, AFailureOfTheEngineLeavesWhatWasFoundSoFar) {
    FakeEngine engine;
    engine.inputs[930001] = {530001, 630001, 730001, 830001};
    engine.ioTypes = {{530001, 38}, {630001, 4}, {830001, 38}};
    FoundLists found;
    EXPECT_THROW(walkInputs(engine, found, 930001), std::out_of_range);
    EXPECT_EQ(found.editables, L"000530001");
    EXPECT_EQ(found.constants, L"000630001");
}

TEST(UsedPids, ACycleEndsAtTheDeepestLevel) {
    FakeEngine engine;
    engine.inputs[930001] = {830001};
    engine.inputs[830001] = {930001};
    engine.ioTypes = {{830001, 7}, {930001, 7}};
    FoundLists found;
    EXPECT_THROW(walkInputs(engine, found, 930001), TooDeep);
}

TEST(UsedPids, ALongChainIsWalkedToItsEnd) {
    FakeEngine engine;
    for (std::int32_t level = 1; level < deepestWalk; ++level) {
        engine.inputs[level] = {level + 1};
        engine.ioTypes[level] = 7;
    }
    engine.inputs[deepestWalk] = {530001};
    engine.ioTypes[deepestWalk] = 7;
    engine.ioTypes[530001] = 38;
    FoundLists found;
    walkInputs(engine, found, 1);
    EXPECT_EQ(found.editables, L"000530001");
}

}  // namespace
}  // namespace vtdn::params
