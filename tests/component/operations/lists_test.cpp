// The lists of parameters by kind.
#include <optional>

#include "operations/on_strict_engine.h"

namespace vtdn::test {
namespace {

using com::Variant;

/// One of the four lists of a fixed kind: how it is called, and what the engine must see.
struct ListKind {
    const char* name;
    HRESULT (STDMETHODCALLTYPE _DIWrapper::*member)(BSTR*);
    int type;
    bool part75;                              ///< the program decides first
    std::vector<std::pair<int, bool>> flags;  ///< special value, and what it must be
    bool linearity = false;                   ///< special value -32 must be 1
};

void PrintTo(const ListKind& kind, std::ostream* out) {
    *out << kind.name;
}

const std::vector<ListKind> kinds = {
    {"GetListOf75CalPIDs",
     &_DIWrapper::GetListOf75CalPIDs,
     3,
     true,
     {{-117, false}, {-114, false}, {-118, false}, {-25, false}}},
    {"GetListOfCalPIDs", &_DIWrapper::GetListOfCalPIDs, 3, false, {{-25, false}}},
    {"GetListOf75LinearityPIDs", &_DIWrapper::GetListOf75LinearityPIDs, 45, false, {}, true},
    {"GetListOf75IntfCheckPIDs",
     &_DIWrapper::GetListOf75IntfCheckPIDs,
     3,
     true,
     {{-117, true}, {-25, false}}},
};

std::string listed(int index, const std::string& member) {
    return "Listed(" + std::to_string(index) + ")." + member;
}
std::string special(int index, int id) {
    return listed(index, "SpecialValue(" + std::to_string(id) + ")");
}

class ListsOnStrictEngine : public OnStrictEngine {
  protected:
    void expectList(LONG type, int count) {
        engine.expect(
            {{"Engine.ParamsOfTypes([0..0: I4 " + std::to_string(type) + "])"}, {"List.Count", count}});
    }
    void expectItem(int index) { engine.expect({{"List.Item(" + std::to_string(index) + ")"}}); }
    void expectPid(int index, int pid) { engine.expect({{listed(index, "PID"), pid}}); }
};

class TypeLists : public ListsOnStrictEngine {
  protected:
    [[nodiscard]] std::wstring list(LONG type) const {
        return client.text(&_DIWrapper::GetListOfTypeXPIDs, type);
    }
};

TEST_F(TypeLists, AreEmptyBeforeSetUpAndAddNoProblem) {
    EXPECT_EQ(list(3), L"");
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(TypeLists, HoldEveryParameterOfTheTypeInTheEnginesOrderWithRepeats) {
    setUpClient();
    expectList(17, 5);
    const int pids[] = {100230406, 530001, 100230405, 1999989999, 530001};
    for (int i = 1; i <= 5; ++i) {
        expectItem(i);
        expectPid(i, pids[i - 1]);
    }
    EXPECT_EQ(list(17), L"100230406;000530001;100230405;1999989999;000530001");
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(TypeLists, AreEmptyWhenTheEngineHasNoSuchParameter) {
    setUpClient();
    expectList(17, 0);
    EXPECT_EQ(list(17), L"");
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(TypeLists, AskForAnyTypeUnchecked) {
    setUpClient();
    for (const LONG type : {0L, -1L, 3L, 45L, 0x7FFFFFFFL, -0x7FFFFFFFL - 1}) {
        expectList(type, 1);
        expectItem(1);
        expectPid(1, 530001);
        EXPECT_EQ(list(type), L"000530001") << type;
    }
}

TEST_F(TypeLists, AnIllFormedPidHasAnEmptyPlace) {
    setUpClient();
    expectList(3, 3);
    const int pids[] = {530001, 7, 530002};
    for (int i = 1; i <= 3; ++i) {
        expectItem(i);
        expectPid(i, pids[i - 1]);
    }
    EXPECT_EQ(list(3), L"000530001;;000530002");
}

TEST_F(TypeLists, ParametersAreReleasedOneByOneAndTheListLast) {
    setUpClient();
    engine.expectReleases({"List"});
    expectList(3, 2);
    expectItem(1);
    expectPid(1, 530001);
    engine.expect({{"release Listed(1)"}});
    expectItem(2);
    expectPid(2, 530002);
    engine.expect({{"release Listed(2)"}, {"release List"}});
    EXPECT_EQ(list(3), L"000530001;000530002");
    engine.verify();
}

/// The four lists of a fixed kind.
class Lists : public ListsOnStrictEngine, public testing::WithParamInterface<ListKind> {
  protected:
    [[nodiscard]] std::wstring list() const { return client.text(GetParam().member); }
    [[nodiscard]] Failure fail() const { return client.failure(GetParam().member); }
    /// The calls by which a parameter is found to belong to the list, its PID not included.
    [[nodiscard]] static std::vector<Call> belongs(int index) {
        std::vector<Call> calls;
        if (GetParam().part75) calls.emplace_back(special(index, -22), L"40CFR75");
        for (const auto& [id, wanted] : GetParam().flags) calls.emplace_back(special(index, id), wanted);
        if (GetParam().linearity) calls.emplace_back(special(index, -32), 1);
        return calls;
    }
    /// A list of one parameter with one of its special values changed.
    std::wstring listWith(int id, const Variant& value, bool isListed) {
        expectList(GetParam().type, 1);
        expectItem(1);
        for (Call& call : changed(id, value)) engine.expect({call});
        if (isListed) expectPid(1, 530001);
        return list();
    }
    Failure failWith(int id, const Answer& answer) {
        expectList(GetParam().type, 1);
        expectItem(1);
        for (const Call& call : belongs(1)) {
            if (call.text == special(1, id)) {
                engine.expect({{call.text, answer}});
                break;
            }
            engine.expect({call});
        }
        return fail();
    }
    /// What the list asks for as a boolean.
    static std::vector<std::pair<int, bool>> flags() { return GetParam().flags; }

  private:
    static std::vector<Call> changed(int id, const Variant& value) {
        auto calls = belongs(1);
        for (Call& call : calls) {
            if (call.text == special(1, id)) call.answer = Answer(value);
        }
        return calls;
    }
};

INSTANTIATE_TEST_SUITE_P(AllFour, Lists, testing::ValuesIn(kinds),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST_P(Lists, AreEmptyBeforeSetUpAndAddNoProblem) {
    EXPECT_EQ(list(), L"");
    EXPECT_EQ(client.problems(), L"");
}

TEST_P(Lists, AreEmptyWhenTheEngineHasNoParameterOfTheType) {
    setUpClient();
    expectList(GetParam().type, 0);
    EXPECT_EQ(list(), L"");
    EXPECT_EQ(client.problems(), L"");
}

TEST_P(Lists, HoldTheParametersThatPassInTheEnginesOrderWithRepeats) {
    setUpClient();
    expectList(GetParam().type, 3);
    const int pids[] = {100230406, 100230405, 100230406};
    for (int i = 1; i <= 3; ++i) {
        expectItem(i);
        engine.expect(belongs(i));
        expectPid(i, pids[i - 1]);
    }
    EXPECT_EQ(list(), L"100230406;100230405;100230406");
    EXPECT_EQ(client.problems(), L"");
}

TEST_P(Lists, AFlagOfTheWrongValueLeavesTheParameterOutAfterAllFlagsAreRead) {
    setUpClient();
    for (const auto& [id, wanted] : flags()) {
        EXPECT_EQ(listWith(id, Variant::ofBool(!wanted), false), L"") << id;
        EXPECT_EQ(listWith(id, Variant::ofBool(wanted), true), L"000530001") << id;
    }
}

TEST_P(Lists, FlagsConvertAsBooleansDoAndNullCountsAsFalse) {
    setUpClient();
    for (const auto& [id, wanted] : flags()) {
        for (const Variant& yes : {Variant::of(L"True"), Variant::of(L"true"), Variant::of(LONG{2}),
                                   Variant::of(0.25), Variant::of(L"-1"), Variant::of(L"0.5")})
            EXPECT_EQ(listWith(id, yes, wanted), wanted ? L"000530001" : L"") << id;
        for (const Variant& no : {Variant::null(), Variant(), Variant::of(L"False"), Variant::of(L"FALSE"),
                                  Variant::of(LONG{0}), Variant::of(0.0), Variant::of(L"0")})
            EXPECT_EQ(listWith(id, no, !wanted), wanted ? L"" : L"000530001") << id;
    }
}

TEST_P(Lists, AFlagThatIsNoBooleanIsAnErrorOfTheClient) {
    setUpClient();
    for (const auto& [id, wanted] : flags()) {
        for (const Variant& wrong : {Variant::of(L"yes"), Variant::of(L""), Variant::missing()}) {
            const Failure failure = failWith(id, wrong);
            EXPECT_EQ(failure.result, DISP_E_TYPEMISMATCH) << id;
            EXPECT_TRUE(failure.description.empty() || failure.description == L"Type mismatch") << failure;
        }
        EXPECT_EQ(failWith(id, Variant::of(static_cast<IDispatch*>(nullptr))).result, unsetObject) << id;
    }
    EXPECT_EQ(client.problems(), L"");
}

TEST_P(Lists, AFailureOfAnyCallReachesTheClientWithoutAProblem) {
    setUpClient();
    std::vector<Call> calls = {{"Engine.ParamsOfTypes([0..0: I4 " + std::to_string(GetParam().type) + "])"},
                               {"List.Count", Answer(1)},
                               {"List.Item(1)"}};
    for (const Call& call : belongs(1)) calls.push_back(call);
    calls.emplace_back("Listed(1).PID");
    for (std::size_t failing = 0; failing < calls.size(); ++failing) {
        for (const bool explained : {true, false}) {
            for (std::size_t i = 0; i < failing; ++i) engine.expect({calls[i]});
            engine.expect({{calls[failing].text, explained ? engineFails() : Answer::failure(engineResult)}});
            const Failure failure = fail();
            EXPECT_EQ(failure.result, engineResult) << calls[failing].text;
            if (explained) {
                EXPECT_EQ(failure, engineFailure()) << calls[failing].text;
            }
        }
    }
    EXPECT_EQ(client.problems(), L"");
}

TEST_P(Lists, AnObjectThatTheEngineDoesNotHandOutIsError91) {
    setUpClient();
    engine.expect(
        {{"Engine.ParamsOfTypes([0..0: I4 " + std::to_string(GetParam().type) + "])", Answer::noObject()}});
    EXPECT_EQ(fail().result, unsetObject);
    expectList(GetParam().type, 1);
    engine.expect({{"List.Item(1)", Answer::noObject()}});
    EXPECT_EQ(fail().result, unsetObject);
    EXPECT_EQ(client.problems(), L"");
}

TEST_P(Lists, AMessageOnTheWayIsAProblemAndTheListIsWhole) {
    setUpClient();
    expectList(GetParam().type, 1);
    expectItem(1);
    engine.expect(belongs(1));
    engine.expect({{"Listed(1).PID", Answer(530001).message(1, L"slow")}});
    EXPECT_EQ(list(), L"000530001");
    EXPECT_EQ(client.problemTexts(), std::vector<std::wstring>{L"slow"});
}

/// The two lists of a program.
class Part75Lists : public Lists {};

INSTANTIATE_TEST_SUITE_P(Both, Part75Lists, testing::Values(kinds[0], kinds[3]),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST_P(Part75Lists, NothingElseIsReadOfAParameterUnderAnotherProgram) {
    setUpClient();
    for (const Variant& program :
         {Variant::of(L"40CFR75 "), Variant::of(L" 40CFR75"), Variant::of(L"40cfr75"),
          Variant::of(L"40CFR60"), Variant::of(L"40CFR7"), Variant::of(L""),
          Variant::of(std::wstring_view(L"40CFR75\0", 8)), Variant::null(), Variant(), Variant::of(LONG{75}),
          Variant::ofBool(true)}) {
        expectList(3, 1);
        expectItem(1);
        engine.expect({{special(1, -22), program}});
        EXPECT_EQ(list(), L"") << program.type();
    }
    EXPECT_EQ(client.problems(), L"");
}

TEST_P(Part75Lists, AProgramThatIsNoTextIsAnErrorOfTheClient) {
    setUpClient();
    EXPECT_EQ(failWith(-22, Variant::missing()).result, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(client.problems(), L"");
}

class ListsByHand : public ListsOnStrictEngine {};

TEST_F(ListsByHand, OneOfThreeCalibrationParametersIsLeftOut) {
    setUpClient();
    expectList(3, 3);
    const int pids[] = {100230405, 100230407, 100230406};
    for (int i = 1; i <= 3; ++i) {
        expectItem(i);
        engine.expect({{special(i, -25), i == 2}});
        if (i != 2) expectPid(i, pids[i - 1]);
    }
    EXPECT_EQ(client.text(&_DIWrapper::GetListOfCalPIDs), L"100230405;100230406");
}

TEST_F(ListsByHand, AFlagThatFailsDoesNotEndTheReadingOfTheOthers) {
    setUpClient();
    // The first flag decides already, and still all four are read.
    expectList(3, 1);
    expectItem(1);
    engine.expect({{special(1, -22), L"40CFR75"},
                   {special(1, -117), true},
                   {special(1, -114), true},
                   {special(1, -118), true},
                   {special(1, -25), true}});
    EXPECT_EQ(client.text(&_DIWrapper::GetListOf75CalPIDs), L"");
    expectList(3, 1);
    expectItem(1);
    engine.expect({{special(1, -22), L"40CFR75"}, {special(1, -117), false}, {special(1, -25), true}});
    EXPECT_EQ(client.text(&_DIWrapper::GetListOf75IntfCheckPIDs), L"");
}

TEST_F(ListsByHand, ALinearityParameterIsOneWhoseMarkerIsTheNumber1) {
    setUpClient();
    const auto listWith = [this](const Variant& marker, bool isListed) {
        expectList(45, 1);
        expectItem(1);
        engine.expect({{special(1, -32), marker}});
        if (isListed) expectPid(1, 530001);
        return client.text(&_DIWrapper::GetListOf75LinearityPIDs);
    };
    for (const Variant& one : {Variant::of(LONG{1}), Variant::of(1.0), Variant::of(L"1"),
                               Variant::of(L" 1.0 "), Variant::of(0.75), Variant::of(1.4F)})
        EXPECT_EQ(listWith(one, true), L"000530001") << one.type();
    for (const Variant& other :
         {Variant::of(LONG{0}), Variant::of(LONG{2}), Variant::of(LONG{-1}), Variant::of(0.5),
          Variant::of(1.5), Variant::of(L"0"), Variant::ofBool(true), Variant::null(), Variant()})
        EXPECT_EQ(listWith(other, false), L"") << other.type();
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(ListsByHand, AMarkerThatIsNoWholeNumberIsAnErrorOfTheClient) {
    setUpClient();
    const auto failWith = [this](const Variant& marker) {
        expectList(45, 1);
        expectItem(1);
        engine.expect({{special(1, -32), marker}});
        return client.failure(&_DIWrapper::GetListOf75LinearityPIDs).result;
    };
    EXPECT_EQ(failWith(Variant::of(L"abc")), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(failWith(Variant::of(L"")), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(failWith(Variant::missing()), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(failWith(Variant::of(1e10)), DISP_E_OVERFLOW);
    EXPECT_EQ(client.problems(), L"");
}

}  // namespace
}  // namespace vtdn::test
