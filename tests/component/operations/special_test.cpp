// The procedure of the eight special-value and special-function operations: checks, calls, trapped errors.
#include "operations/special_operations.h"

namespace vtdn::test {
namespace {

constexpr LONG pid = specialPid;

class Specials : public SpecialsOnStrictEngine, public testing::WithParamInterface<Special> {
  protected:
    [[nodiscard]] std::wstring call() const { return GetParam().call(client); }
    [[nodiscard]] Failure fail() const { return GetParam().fail(client); }
    void expectDefault(const std::wstring& result) {
        EXPECT_EQ(result, GetParam().nothing);
        // No failure is left behind for whoever asks next.
        com::Ptr<IErrorInfo> info;
        EXPECT_EQ(GetErrorInfo(0, info.receive()), S_FALSE);
    }
};

INSTANTIATE_TEST_SUITE_P(AllEight, Specials,
                         testing::Values(operatingTime, valueInt32, valueBoolean, valueString,
                                         functionBoolean, functionInt32, functionReal32, functionString),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST_P(Specials, BeforeSetUpTheResultIsTheDefaultAndNoProblemIsAdded) {
    expectDefault(call());
    EXPECT_EQ(client.problems(), L"");
}

TEST_P(Specials, AnUnknownPidIsAProblemWithTheCodeOfTheOperation) {
    setUpClient();
    expectExists(pid, false);
    expectDefault(call());
    expectProblem(std::wstring(L"PID 1-005-0-10-00 does not exist ") + GetParam().unknownPid);
}

TEST_P(Specials, AGoodCallMakesExactlyItsCallsAndReleasesTheParameter) {
    setUpClient();
    engine.expectReleases({"Param("});
    expectParam(pid);
    engine.expect({{param(pid, GetParam().engineCall), 1}, {"release Param(100501000)"}});
    const std::wstring result = call();
    EXPECT_EQ(result, GetParam().nothing[0] == L'F'    ? L"True"
                      : GetParam().nothing[0] == L'\'' ? L"'1'"
                                                       : L"1");
    EXPECT_EQ(client.problems(), L"");
    engine.verify();
    EXPECT_EQ(engine.alive(), std::vector<std::string>{"Engine"});
}

TEST_P(Specials, AFailureOfTheTwoChecksReachesTheClientWithoutAProblem) {
    setUpClient();
    engine.expect({{"Engine.Params", engineFails()}});
    EXPECT_EQ(fail(), engineFailure());
    engine.expect({{"Engine.Params", Answer::noObject()}});
    EXPECT_EQ(fail(), (Failure{unsetObject, L"VTWrapDN.DIWrapper",
                               L"Object variable or With block variable not set"}));
    engine.expect({{"Engine.Params"}, {"Params.Exists(100501000)", engineFails()}});
    EXPECT_EQ(fail(), engineFailure());
    engine.expect({{"Engine.Params"}, {"Params.Exists(100501000)", Answer::failure(E_FAIL)}});
    EXPECT_EQ(fail().result, E_FAIL);
    EXPECT_EQ(client.problems(), L"");
}

TEST_P(Specials, AFailureFromFetchingTheParameterOnIsAProblemWithNumberAndDescription) {
    setUpClient();
    const struct {
        Answer answer;
        const wchar_t* line;
    } rows[] = {
        {engineFails(), L"-2147216844, The database is away."},
        {Answer::failure(numbered(13), L"Engine", L"Type mismatch"), L"13, Type mismatch"},
        {Answer::failure(numbered(13), L"Engine", L"Own words"), L"13, Own words"},
        {Answer::failure(numbered(13)), L"13, Type mismatch"},
        {Answer::failure(numbered(91)), L"91, Object variable or With block variable not set"},
        {Answer::failure(numbered(94)), L"94, Invalid use of Null"},
        {Answer::failure(DISP_E_TYPEMISMATCH), L"13, Type mismatch"},
        {Answer::failure(DISP_E_OVERFLOW), L"6, Overflow"},
        {Answer::failure(DISP_E_DIVBYZERO), L"11, Division by zero"},
        {Answer::failure(DISP_E_BADINDEX), L"9, Subscript out of range"},
        {Answer::failure(DISP_E_ARRAYISLOCKED), L"10, This array is fixed or temporarily locked"},
        {Answer::failure(DISP_E_MEMBERNOTFOUND), L"438, Object doesn't support this property or method"},
        {Answer::failure(DISP_E_PARAMNOTFOUND), L"448, Named argument not found"},
        {Answer::failure(DISP_E_PARAMNOTOPTIONAL), L"449, Argument not optional"},
        {Answer::failure(DISP_E_BADPARAMCOUNT),
         L"450, Wrong number of arguments or invalid property assignment"},
        {Answer::failure(E_INVALIDARG), L"5, Invalid procedure call or argument"},
        {Answer::failure(E_OUTOFMEMORY), L"7, Out of memory"},
        {Answer::failure(E_NOTIMPL), L"445, Object doesn't support this action"},
        {Answer::failure(E_NOINTERFACE),
         L"430, Class does not support Automation or does not support expected interface"},
        {Answer::failure(REGDB_E_CLASSNOTREG), L"429, ActiveX component can't create object"},
        {Answer::failure(E_ACCESSDENIED), L"70, Permission denied"},
        {Answer::failure(E_FAIL), L"-2147467259, Automation error"},
        {Answer::failure(E_FAIL, L"Engine", L"two\r\nlines; and a ;"), L"-2147467259, two\r\nlines; and a ;"},
    };
    for (const auto& [answer, line] : rows) {
        const std::wstring problem = std::wstring(line) + L" " + GetParam().callFailed;
        expectExists(pid, true);
        engine.expect({{"Params.Item(100501000, -1)", answer}});
        expectDefault(call());
        expectProblem(problem);
        expectDefault(callWith(GetParam(), answer));
        expectProblem(problem);
    }
    EXPECT_EQ(engine.alive(), std::vector<std::string>{"Engine"});
}

TEST_P(Specials, AParameterThatTheEngineDoesNotHandOutIsATrappedError91) {
    setUpClient();
    expectExists(pid, true);
    engine.expect({{"Params.Item(100501000, -1)", Answer::noObject()}});
    expectDefault(call());
    expectProblem(std::wstring(L"91, Object variable or With block variable not set ") +
                  GetParam().callFailed);
}

TEST_P(Specials, AMessageDuringAFailingCallStandsBeforeItsLine) {
    setUpClient();
    expectDefault(callWith(GetParam(), engineFails().message(1, L"trouble")));
    EXPECT_EQ(client.problemTexts(),
              (std::vector<std::wstring>{
                  L"trouble", std::wstring(L"-2147216844, The database is away. ") + GetParam().callFailed}));
}

TEST_P(Specials, AnErrorInfoOfACallThatSucceededIsNobodysFailure) {
    setUpClient();
    // An engine that leaves an error info behind and succeeds with what does not convert.
    const Answer answer = Answer::failure(S_OK, L"Engine", L"Old story.");
    expectParam(pid);
    engine.expect({{param(pid, GetParam().engineCall), answer}});
    EXPECT_EQ(call(), GetParam().nothing);  // Empty is 0, False and ""
    EXPECT_EQ(client.problems(), L"");
    SetErrorInfo(0, nullptr);
}

TEST_P(Specials, ATeardownInTheMiddleOfACallIsSafe) {
    setUpClient();
    expectParam(pid);
    engine.expect({{param(pid, GetParam().engineCall), Answer(1).during([this] {
                        engine.expect({{"Engine.Close"}});
                        client.teardown();
                    })}});
    EXPECT_NE(call(), GetParam().nothing);
    EXPECT_TRUE(engine.alive().empty());
    EXPECT_EQ(client.problems(), L"");
}

}  // namespace
}  // namespace vtdn::test
