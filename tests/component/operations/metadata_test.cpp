// What a parameter is: existence, I/O type, format, interval type, unit, name, and the parameters it uses.
#include "operations/on_strict_engine.h"

namespace vtdn::test {
namespace {

constexpr LONG pid = 530001;

class Metadata : public OnStrictEngine {};

struct TextMember {
    HRESULT (STDMETHODCALLTYPE _DIWrapper::*member)(LONG, BSTR*);
    const char* property;
    const wchar_t* code;
};
const TextMember textMembers[] = {
    {&_DIWrapper::Param_Fmt, "Fmt", L"(WDN-022)"},
    {&_DIWrapper::Param_IntervalType, "IntervalType", L"(WDN-046)"},
    {&_DIWrapper::Param_MeasUnits, "MeasUnits", L"(WDN-023)"},
    {&_DIWrapper::Param_Name, "Name", L"(WDN-024)"},
};

TEST_F(Metadata, NothingIsKnownBeforeSetUpAndNoProblemIsAdded) {
    EXPECT_FALSE(client.yes(&_DIWrapper::Param_DoesExist, 100100100));
    EXPECT_FALSE(client.yes(&_DIWrapper::Param_IsDBDataIO, 100100100));
    for (const TextMember& row : textMembers) EXPECT_EQ(client.text(row.member, 100100100), L"");
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(Metadata, DoesExistAsksTheEngineAndAddsNoProblem) {
    setUpClient();
    expectExists(pid, true);
    EXPECT_TRUE(client.yes(&_DIWrapper::Param_DoesExist, pid));
    expectExists(pid, false);
    EXPECT_FALSE(client.yes(&_DIWrapper::Param_DoesExist, pid));
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(Metadata, DoesExistTakesAnyNonzeroAnswerForTrue) {
    setUpClient();
    engine.expect({{"Engine.Params"}, {"Params.Exists(530001)", 1}});
    EXPECT_TRUE(client.yes(&_DIWrapper::Param_DoesExist, pid));
}

TEST_F(Metadata, EvenAnIllFormedPidIsTheEnginesToKnow) {
    setUpClient();
    for (const LONG any : {0L, -1L, 6L, 0x7FFFFFFFL, -0x7FFFFFFFL - 1}) {
        expectExists(any, true);
        EXPECT_TRUE(client.yes(&_DIWrapper::Param_DoesExist, any));
    }
}

TEST_F(Metadata, OnlyIoType38IsDbDataIo) {
    setUpClient();
    for (const auto& [ioType, expected] :
         {std::pair{38, true}, {37, false}, {0, false}, {4, false}, {-38, false}}) {
        expectParam(pid);
        engine.expect({{param(pid, "IOType"), ioType}});
        EXPECT_EQ(client.yes(&_DIWrapper::Param_IsDBDataIO, pid), expected) << ioType;
    }
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(Metadata, IsDbDataIoOfAnUnknownPidIsFalseWithProblem030) {
    setUpClient();
    expectExists(pid, false);
    EXPECT_FALSE(client.yes(&_DIWrapper::Param_IsDBDataIO, pid));
    EXPECT_EQ(client.problemTexts(),
              std::vector<std::wstring>{L"PID 0-005-3-00-01 does not exist (WDN-030)"});
}

TEST_F(Metadata, TextsAreTheEnginesUnchangedAndAskedAfresh) {
    using namespace std::string_literals;
    setUpClient();
    for (const TextMember& row : textMembers) {
        for (const std::wstring& text : {L"#,##0.0"s, L""s, L" a\0b "s, L"\xD83D\xDE00"s}) {
            expectParam(pid);
            engine.expect({{param(pid, row.property), com::Variant::of(std::wstring_view(text))}});
            EXPECT_EQ(client.text(row.member, pid), text) << row.property;
        }
    }
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(Metadata, TextsOfAnUnknownPidAreEmptyWithTheProblemOfTheMember) {
    setUpClient();
    const struct {
        LONG pid;
        const wchar_t* shown;
    } pids[] = {{530001, L"0-005-3-00-01"},
                {123456789, L"1-234-5-67-89"},
                {1999989999, L"19-999-8-99-99"},
                {100230405, L"1-002-3-04-05"},
                {99999, L""},
                {100060000, L""},
                {0, L""},
                {-530001, L""},
                {2000000000, L""}};
    for (const TextMember& row : textMembers) {
        for (const auto& [unknown, shown] : pids) {
            expectExists(unknown, false);
            EXPECT_EQ(client.text(row.member, unknown), L"");
            EXPECT_EQ(client.problemTexts(), std::vector<std::wstring>{std::wstring(L"PID ") + shown +
                                                                       L" does not exist " + row.code});
        }
    }
}

TEST_F(Metadata, AFailureAtAnyStepReachesTheClientWithoutAProblem) {
    setUpClient();
    for (const TextMember& row : textMembers) {
        engine.expect({{"Engine.Params", engineFails()}});
        EXPECT_EQ(client.failure(row.member, pid), engineFailure());
        engine.expect({{"Engine.Params"}, {"Params.Exists(530001)", engineFails()}});
        EXPECT_EQ(client.failure(row.member, pid), engineFailure());
        expectExists(pid, true);
        engine.expect({{"Params.Item(530001, -1)", engineFails()}});
        EXPECT_EQ(client.failure(row.member, pid), engineFailure());
        expectParam(pid);
        engine.expect({{param(pid, row.property), engineFails()}});
        EXPECT_EQ(client.failure(row.member, pid), engineFailure());
    }
    engine.expect({{"Engine.Params", engineFails()}});
    EXPECT_EQ(client.failure(&_DIWrapper::Param_DoesExist, pid), engineFailure());
    engine.expect({{"Engine.Params"}, {"Params.Exists(530001)", engineFails()}});
    EXPECT_EQ(client.failure(&_DIWrapper::Param_DoesExist, pid), engineFailure());
    expectParam(pid);
    engine.expect({{param(pid, "IOType"), engineFails()}});
    EXPECT_EQ(client.failure(&_DIWrapper::Param_IsDBDataIO, pid), engineFailure());
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(Metadata, AnObjectThatTheEngineDoesNotHandOutIsError91) {
    setUpClient();
    engine.expect({{"Engine.Params", Answer::noObject()}});
    EXPECT_EQ(
        client.failure(&_DIWrapper::Param_Name, pid),
        (Failure{unsetObject, L"VTWrapDN.DIWrapper", L"Object variable or With block variable not set"}));
    expectExists(pid, true);
    engine.expect({{"Params.Item(530001, -1)", Answer::noObject()}});
    EXPECT_EQ(client.failure(&_DIWrapper::Param_Name, pid).result, unsetObject);
}

TEST_F(Metadata, AMessageDuringAFailingCallIsKept) {
    setUpClient();
    engine.expect({{"Engine.Params", engineFails().message(1, L"trouble")}});
    EXPECT_EQ(client.failure(&_DIWrapper::Param_Name, pid), engineFailure());
    EXPECT_EQ(client.problemTexts(), std::vector<std::wstring>{L"trouble"});
}

/// The two out strings of Param_FindPIDsUsedByPID, filled with old content.
struct Lists {
    Bstr editable{L"old editable"};
    Bstr constant{L"old constant"};
    BSTR* editableInOut() { return &editablePointer; }
    BSTR* constantInOut() { return &constantPointer; }
    BSTR editablePointer = editable.detach();
    BSTR constantPointer = constant.detach();
    Lists() = default;
    Lists(const Lists&) = delete;
    Lists& operator=(const Lists&) = delete;
    ~Lists() {
        SysFreeString(editablePointer);
        SysFreeString(constantPointer);
    }
    [[nodiscard]] std::pair<std::wstring, std::wstring> texts() const {
        return {std::wstring(com::view(editablePointer)), std::wstring(com::view(constantPointer))};
    }
};
using Texts = std::pair<std::wstring, std::wstring>;

class UsedPids : public OnStrictEngine {
  protected:
    [[nodiscard]] bool find(LONG of) {
        return client.yes(&_DIWrapper::Param_FindPIDsUsedByPID, of, lists.editableInOut(),
                          lists.constantInOut());
    }
    [[nodiscard]] Failure failToFind(LONG of) {
        return client.failure(&_DIWrapper::Param_FindPIDsUsedByPID, of, lists.editableInOut(),
                              lists.constantInOut());
    }
    /// The walk reads what a parameter uses.
    void expectUses(LONG of, const wchar_t* used) { expectFetched(of, "UsedPIDs", used); }
    /// The walk reads the I/O type of an input.
    void expectIoType(LONG of, int ioType) { expectFetched(of, "IOType", ioType); }
    void expectFetched(LONG of, const char* property, Answer answer) {
        engine.expect(
            {{"Params.Item(" + std::to_string(of) + ", -1)"}, {param(of, property), std::move(answer)}});
    }

    Lists lists;
};

TEST_F(UsedPids, BeforeSetUpTheListsBecomeEmptyAndNoProblemIsAdded) {
    EXPECT_FALSE(find(pid));
    EXPECT_EQ(lists.texts(), Texts(L"", L""));
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(UsedPids, AWrongTimeTypeIsFoundBeforeTheEngineIsAsked) {
    setUpClient();
    const struct {
        LONG pid;
        const wchar_t* shown;
    } rows[] = {
        {520001, L"0-005-2-00-01"}, {560001, L""}, {100270405, L"1-002-7-04-05"}, {0, L""}, {-530001, L""}};
    for (const auto& [wrong, shown] : rows) {
        EXPECT_FALSE(find(wrong));
        EXPECT_EQ(lists.texts(), Texts(L"", L""));
        EXPECT_EQ(client.problemTexts(), std::vector<std::wstring>{std::wstring(L"PID ") + shown +
                                                                   L" time-type is wrong (WDN-033)"});
    }
}

TEST_F(UsedPids, AnUnknownPidOfTheRightTimeTypeIsProblem034) {
    setUpClient();
    expectExists(pid, false);
    EXPECT_FALSE(find(pid));
    EXPECT_EQ(lists.texts(), Texts(L"", L""));
    EXPECT_EQ(client.problemTexts(),
              std::vector<std::wstring>{L"PID 0-005-3-00-01 does not exist (WDN-034)"});
    // Ill formed, but its time-type digit is 3.
    expectExists(30001, false);
    EXPECT_FALSE(find(30001));
    EXPECT_EQ(client.problemTexts(), std::vector<std::wstring>{L"PID  does not exist (WDN-034)"});
}

TEST_F(UsedPids, InputsAreSortedIntoEditableAndConstantEachOnce) {
    setUpClient();
    expectExists(pid, true);
    expectUses(pid, L"100230405,530002,100230405,530003,530004");
    expectIoType(100230405, 38);
    expectIoType(530002, 38);
    expectIoType(100230405, 38);
    expectIoType(530003, 4);
    expectIoType(530004, 34);
    EXPECT_TRUE(find(pid));
    EXPECT_EQ(lists.texts(), Texts(L"000530002;100230405", L"000530003;000530004"));
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(UsedPids, TheListsAreInTheOrderOfTheirNineDigitTexts) {
    setUpClient();
    expectExists(pid, true);
    expectUses(pid, L"200030001,1999930000,99930000,530001,130000");
    for (const LONG input : {200030001L, 1999930000L, 99930000L, 530001L, 130000L}) expectIoType(input, 38);
    EXPECT_TRUE(find(pid));
    EXPECT_EQ(lists.texts(), Texts(L"000130000;000530001;099930000;1999930000;200030001", L""));
}

TEST_F(UsedPids, ADbDataIoInputOfAnotherTimeTypeIsLeftOut) {
    setUpClient();
    expectExists(pid, true);
    expectUses(pid, L"520001,540002,530003");
    expectIoType(520001, 38);
    expectIoType(540002, 38);
    expectIoType(530003, 38);
    EXPECT_TRUE(find(pid));
    EXPECT_EQ(lists.texts(), Texts(L"000530003", L""));
}

TEST_F(UsedPids, AConstantIsListedWhateverItsTimeType) {
    setUpClient();
    expectExists(pid, true);
    expectUses(pid, L"520001,110000");
    expectIoType(520001, 4);
    expectIoType(110000, 34);
    EXPECT_TRUE(find(pid));
    EXPECT_EQ(lists.texts(), Texts(L"", L"000110000;000520001"));
}

TEST_F(UsedPids, TheInputsOfACalculatedInputAreExaminedInItsPlaceDepthFirst) {
    setUpClient();
    expectExists(pid, true);
    expectUses(pid, L"530010,530020,530030");
    expectIoType(530010, 1);
    expectUses(530010, L"530011,530012");
    expectIoType(530011, 0);
    expectUses(530011, L"530040");
    expectIoType(530040, 38);
    expectIoType(530012, 4);
    expectIoType(530020, 38);
    // Reached along a second path: walked a second time.
    expectIoType(530030, -1);
    expectUses(530030, L"530011");
    expectIoType(530011, 0);
    expectUses(530011, L"530040");
    expectIoType(530040, 38);
    EXPECT_TRUE(find(pid));
    EXPECT_EQ(lists.texts(), Texts(L"000530020;000530040", L"000530012"));
}

TEST_F(UsedPids, ThePidItselfMayBeOfAnyIoType) {
    setUpClient();
    expectExists(pid, true);
    expectUses(pid, L"");
    EXPECT_TRUE(find(pid));
    EXPECT_EQ(lists.texts(), Texts(L"", L""));
}

TEST_F(UsedPids, AnInputThatIsNoNumberCountsAsPid0) {
    setUpClient();
    expectExists(pid, true);
    expectUses(pid, L" 530002 ,x,530003");
    expectIoType(530002, 38);
    expectIoType(0, 4);
    expectIoType(530003, 38);
    EXPECT_TRUE(find(pid));
    EXPECT_EQ(lists.texts().first, L"000530002;000530003");
}

TEST_F(UsedPids, AFailureInTheMiddleLeavesWhatWasCollectedSoFar) {
    setUpClient();
    expectExists(pid, true);
    expectUses(pid, L"530009,530004,530009,530005");
    expectIoType(530009, 38);
    expectIoType(530004, 34);
    expectIoType(530009, 38);
    engine.expect({{"Params.Item(530005, -1)", engineFails()}});
    EXPECT_EQ(failToFind(pid), engineFailure());
    EXPECT_EQ(lists.texts(), Texts(L"000530009;000530009", L"000530004")) << "as collected, not merged";
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(UsedPids, AFailureAtAnyOtherStepReachesTheClient) {
    setUpClient();
    engine.expect({{"Engine.Params", engineFails()}});
    EXPECT_EQ(failToFind(pid), engineFailure());
    EXPECT_EQ(lists.texts(), Texts(L"", L""));
    engine.expect({{"Engine.Params"}, {"Params.Exists(530001)", engineFails()}});
    EXPECT_EQ(failToFind(pid), engineFailure());
    expectExists(pid, true);
    engine.expect({{"Params.Item(530001, -1)", engineFails()}});
    EXPECT_EQ(failToFind(pid), engineFailure());
    expectExists(pid, true);
    expectFetched(pid, "UsedPIDs", engineFails());
    EXPECT_EQ(failToFind(pid), engineFailure());
    expectExists(pid, true);
    expectUses(pid, L"530002");
    expectFetched(530002, "IOType", engineFails());
    EXPECT_EQ(failToFind(pid), engineFailure());
    EXPECT_EQ(lists.texts(), Texts(L"", L""));
    expectExists(pid, true);
    expectUses(pid, L"530002");
    engine.expect({{"Params.Item(530002, -1)", Answer::noObject()}});
    EXPECT_EQ(failToFind(pid).result, unsetObject);
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(UsedPids, ObjectsOfTheWalkDoNotPileUp) {
    setUpClient();
    expectExists(pid, true);
    std::wstring used;
    for (int i = 0; i < 50; ++i) used += L"530002,";
    used += L"530002";
    expectUses(pid, used.c_str());
    for (int i = 0; i < 51; ++i) expectIoType(530002, 38);
    EXPECT_TRUE(find(pid));
    EXPECT_LE(engine.mostAlive(), 6U);
}

}  // namespace
}  // namespace vtdn::test
