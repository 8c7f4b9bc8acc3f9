// The nine single-value writes: one procedure, told by a table.
#include <functional>
#include <optional>

#include "fake_engine/lenient.h"
#include "operations/on_strict_engine.h"

namespace vtdn::test {
namespace {

constexpr LONG pid = 100501000;  // 1-005-0-10-00
constexpr DATE when = 39448.25;
constexpr LONG mc = 99;

/// One of the nine operations: how it is called, and what the engine must see.
struct Write {
    const char* name;
    /// The call, which must succeed; its result.
    std::function<bool(const Client&)> write;
    /// The call, which must fail.
    std::function<Failure(const Client&)> fail;
    bool storedItem;                ///< starts from the stored item, otherwise from a new one
    std::vector<std::string> puts;  ///< into the item, in order
    const wchar_t* unknownMc;       ///< null: the monitor code is not checked
    const wchar_t* unknownPid;
    const wchar_t* notDatabase;
};

void PrintTo(const Write& write, std::ostream* out) {
    *out << write.name;
}

template <class M, class... A>
Write row(const char* name, M member, bool storedItem, std::vector<std::string> puts,
          const wchar_t* unknownMc, const wchar_t* unknownPid, const wchar_t* notDatabase, A... arguments) {
    return {name,
            [=](const Client& client) { return client.yes(member, pid, when, arguments...); },
            [=](const Client& client) { return client.failure(member, pid, when, arguments...); },
            storedItem,
            std::move(puts),
            unknownMc,
            unknownPid,
            notDatabase};
}

const Bstr textValue(std::wstring_view(L"a\0b", 3));

const std::vector<Write> writes = {
    row("WriteMC", &_DIWrapper::Param_WriteMC, true, {"MC = 99"},
        L"'99' is not a known monitor code (WDN-010)", L"PID 1-005-0-10-00 does not exist (WDN-011)",
        L"1-005-0-10-00 is not a DBDataIO parameter (WDN-012)", mc),
    row("WriteValue_Null", &_DIWrapper::Param_WriteValue_Null, true, {"Value = Null"}, nullptr,
        L"PID 1-005-0-10-00 does not exist (WDN-025)",
        L"1-005-0-10-00 is not a DBDataIO parameter (WDN-026)"),
    row("WriteValue_Integer", &_DIWrapper::Param_WriteValue_Integer, true, {"Value = I4 -40000"}, nullptr,
        L"PID 1-005-0-10-00 does not exist (WDN-004)", L"1-005-0-10-00 is not a DBDataIO parameter (WDN-005)",
        LONG{-40000}),
    row("WriteValue_Single", &_DIWrapper::Param_WriteValue_Single, true, {"Value = R4 12.3"}, nullptr,
        L"PID 1-005-0-10-00 does not exist (WDN-006)", L"1-005-0-10-00 is not a DBDataIO parameter (WDN-007)",
        12.3f),
    row("WriteValue_String", &_DIWrapper::Param_WriteValue_String, true,
        {std::string("Value = BSTR 'a\0b'", 18)}, nullptr, L"PID 1-005-0-10-00 does not exist (WDN-008)",
        L"1-005-0-10-00 is not a DBDataIO parameter (WDN-009)", textValue.get()),
    row("WriteVMC_Null", &_DIWrapper::Param_WriteVMC_Null, false, {"Value = Null", "MC = 99"},
        L"'99' is not a known monitor code (WDN-027)", L"PID 1-005-0-10-00 does not exist (WDN-028)",
        L"1-005-0-10-00 is not a DBDataIO parameter (WDN-029)", mc),
    row("WriteVMC_Integer", &_DIWrapper::Param_WriteVMC_Integer, false, {"Value = I4 2147483647", "MC = 99"},
        L"'99' is not a known monitor code (WDN-013)", L"PID 1-005-0-10-00 does not exist (WDN-014)",
        L"1-005-0-10-00 is not a DBDataIO parameter (WDN-015)", LONG{0x7FFFFFFF}, mc),
    row("WriteVMC_Single", &_DIWrapper::Param_WriteVMC_Single, false, {"Value = R4 -0.1", "MC = 99"},
        L"'99' is not a known monitor code (WDN-016)", L"PID 1-005-0-10-00 does not exist (WDN-017)",
        L"1-005-0-10-00 is not a DBDataIO parameter (WDN-018)", -0.1f, mc),
    row("WriteVMC_String", &_DIWrapper::Param_WriteVMC_String, false, {"Value = R4 12.5", "MC = 99"},
        L"'99' is not a known monitor code (WDN-019)", L"PID 1-005-0-10-00 does not exist (WDN-020)",
        L"1-005-0-10-00 is not a DBDataIO parameter (WDN-021)", 12.5f, mc),
};

class Writes : public OnStrictEngine, public testing::WithParamInterface<Write> {
  protected:
    [[nodiscard]] bool write() const { return GetParam().write(client); }
    [[nodiscard]] Failure fail() const { return GetParam().fail(client); }
    [[nodiscard]] static std::string itemName() { return GetParam().storedItem ? "Stored" : "New"; }
    [[nodiscard]] static std::string storeCall() {
        return param(pid, "SpecialFunction(6, [0..1: Date 39448.25, Dispatch " + itemName() + "])");
    }
    /// Every call of a write that goes through.
    [[nodiscard]] static std::vector<Call> calls() {
        std::vector<Call> all;
        if (GetParam().unknownMc) {
            all.emplace_back("Engine.Utils");
            all.emplace_back("Utils.IsKnownMC(99)", true);
        }
        all.emplace_back("Engine.Params");
        all.emplace_back("Params.Exists(100501000)", true);
        all.emplace_back("Params.Item(100501000, -1)");
        all.emplace_back(param(pid, "IOType"), 38);
        all.emplace_back(GetParam().storedItem ? param(pid, "GetDataItem(39448.25, 0)")
                                               : "new DIDataArrayItem");
        for (const std::string& put : GetParam().puts) all.emplace_back(itemName() + "." + put);
        all.emplace_back(storeCall());
        return all;
    }
    /// A write that stops early: the calls up to one, which gets another answer.
    void expectUpTo(const std::string& last, const Answer& answer) {
        for (const Call& call : calls()) {
            if (call.text == last) {
                engine.expect({{last, answer}});
                return;
            }
            engine.expect({call});
        }
        ADD_FAILURE() << "no such call: " << last;
    }
    void expectProblem(const wchar_t* text) {
        EXPECT_EQ(client.problemTexts(), std::vector<std::wstring>{text});
    }
};

INSTANTIATE_TEST_SUITE_P(AllNine, Writes, testing::ValuesIn(writes),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST_P(Writes, BeforeSetUpTheResultIsFalseAndNoProblemIsAdded) {
    EXPECT_FALSE(write());
    EXPECT_EQ(client.problems(), L"");
}

TEST_P(Writes, AGoodWriteMakesExactlyItsCalls) {
    setUpClient();
    engine.expect(calls());
    EXPECT_TRUE(write());
    EXPECT_EQ(client.problems(), L"");
}

/// The operations that check a monitor code; the others keep the stored one.
class WritesOfCodes : public Writes {};

std::vector<Write> writesOfCodes() {
    std::vector<Write> some;
    for (const Write& write : writes) {
        if (write.unknownMc) some.push_back(write);
    }
    return some;
}

INSTANTIATE_TEST_SUITE_P(AllFive, WritesOfCodes, testing::ValuesIn(writesOfCodes()),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST_P(WritesOfCodes, AnUnknownMonitorCodeIsReportedBeforeAnythingElseIsAsked) {
    setUpClient();
    engine.expect({{"Engine.Utils"}, {"Utils.IsKnownMC(99)", false}});
    EXPECT_FALSE(write());
    expectProblem(GetParam().unknownMc);
}

TEST_P(Writes, AnUnknownPidIsReportedBeforeTheIoType) {
    setUpClient();
    expectUpTo("Params.Exists(100501000)", false);
    EXPECT_FALSE(write());
    expectProblem(GetParam().unknownPid);
}

TEST_P(Writes, AParameterThatIsNotStoredInTheDatabaseIsReportedWithoutTheWordPid) {
    setUpClient();
    for (const int ioType : {0, 4, 34, 37, 39, -38}) {
        expectUpTo(param(pid, "IOType"), ioType);
        EXPECT_FALSE(write());
        expectProblem(GetParam().notDatabase);
    }
}

TEST_P(Writes, AFailureOfAnyCallReachesTheClientWithoutAProblem) {
    setUpClient();
    for (const Call& failing : calls()) {
        expectUpTo(failing.text, engineFails());
        EXPECT_EQ(fail(), engineFailure()) << failing.text;
        EXPECT_EQ(client.problems(), L"") << failing.text;
    }
}

TEST_P(Writes, AnObjectThatTheEngineDoesNotHandOutIsError91) {
    setUpClient();
    std::vector<std::string> handingOut = {"Engine.Params", "Params.Item(100501000, -1)"};
    if (GetParam().unknownMc) handingOut.emplace_back("Engine.Utils");
    if (GetParam().storedItem) handingOut.push_back(param(pid, "GetDataItem(39448.25, 0)"));
    for (const std::string& call : handingOut) {
        expectUpTo(call, Answer::noObject());
        const Failure failure = fail();
        EXPECT_EQ(failure.result, unsetObject) << call;
        EXPECT_EQ(failure.description, L"Object variable or With block variable not set");
    }
}

TEST_P(Writes, TheResultOfTheStoreRequestIsIgnoredWhateverItIs) {
    setUpClient();
    fake::Site site;
    const com::Ptr<IDispatch> object = fake::makeDataItem(site).as<IDispatch>();
    for (const com::Variant& result :
         {com::Variant::ofBool(false), com::Variant::null(), com::Variant::missing(), com::Variant::of(L"no"),
          com::Variant::of(LONG{-1}), com::Variant::of(object.get())}) {
        expectUpTo(storeCall(), result);
        EXPECT_TRUE(write());
    }
    EXPECT_EQ(client.problems(), L"");
    object->AddRef();
    EXPECT_EQ(object->Release(), 1U) << "a result that is an object is released";
}

TEST_P(Writes, TheItemAndTheParameterAreReleasedInThatOrder) {
    setUpClient();
    engine.expectReleases({itemName(), "Param("});
    engine.expect(calls());
    engine.expect({{"release " + itemName()}, {"release Param(100501000)"}});
    EXPECT_TRUE(write());
    engine.verify();
}

TEST_P(Writes, AnEngineMayLeaveAnythingInTheArrayOfMoreArguments) {
    setUpClient();
    for (const auto left : {fake::MoreArguments::replace, fake::MoreArguments::clear}) {
        engine.leaveMoreArguments(left);
        engine.expect(calls());
        EXPECT_TRUE(write());
        EXPECT_EQ(engine.alive(), std::vector<std::string>{"Engine"});
    }
}

TEST_P(Writes, MessagesDuringAWriteAreProblemsAndTheResultIsTrue) {
    setUpClient();
    expectUpTo(storeCall(), Answer().message(1, L"value not accepted"));
    EXPECT_TRUE(write());
    expectProblem(L"value not accepted");
}

TEST_P(Writes, ATeardownInTheMiddleOfAWriteIsSafe) {
    setUpClient();
    std::vector<Call> all = calls();
    all.back().answer = Answer().during([this] {
        engine.expect({{"Engine.Close"}});
        client.teardown();
    });
    engine.expect(all);
    EXPECT_TRUE(write());
    EXPECT_TRUE(engine.alive().empty());
}

class WriteValues : public OnStrictEngine {
  protected:
    /// A write of one value by Param_WriteValue_*, of which only the put matters.
    template <class M, class V>
    void expectPut(M member, V value, const std::string& put) {
        expectParam(pid);
        engine.expect({{param(pid, "IOType"), 38},
                       {param(pid, "GetDataItem(39448.25, 0)")},
                       {"Stored.Value = " + put},
                       {param(pid, "SpecialFunction(6, [0..1: Date 39448.25, Dispatch Stored])")}});
        EXPECT_TRUE(client.yes(member, pid, when, value));
    }
};

TEST_F(WriteValues, AnyValueReachesTheEngineUnchecked) {
    setUpClient();
    for (const LONG value : {0L, 1L, -1L, 40000L, 0x7FFFFFFFL, -0x7FFFFFFFL - 1}) {
        expectPut(&_DIWrapper::Param_WriteValue_Integer, value, "I4 " + std::to_string(value));
    }
    expectPut(&_DIWrapper::Param_WriteValue_Single, 3.4028235e38f, "R4 3.4028235e+38");
    expectPut(&_DIWrapper::Param_WriteValue_Single, 1e-45f, "R4 1e-45");
    expectPut(&_DIWrapper::Param_WriteValue_Single, -0.0f, "R4 -0");
    for (const wchar_t* text : {L"", L" ", L"12.5", L"N/A"}) {
        const Bstr value(text);
        expectPut(&_DIWrapper::Param_WriteValue_String, value.get(), "BSTR '" + com::toUtf8(text) + "'");
    }
    expectPut(&_DIWrapper::Param_WriteValue_String, static_cast<BSTR>(nullptr), "BSTR ''");
}

TEST_F(WriteValues, TimesReachTheEngineUnchanged) {
    setUpClient();
    for (const auto& [at, shown] :
         {std::pair{0.0, "0"}, {-1.25, "-1.25"}, {39448.123456789, "39448.123456789"}}) {
        expectParam(pid);
        engine.expect(
            {{param(pid, "IOType"), 38},
             {param(pid, std::string("GetDataItem(") + shown + ", 0)")},
             {"Stored.Value = Null"},
             {param(pid, std::string("SpecialFunction(6, [0..1: Date ") + shown + ", Dispatch Stored])")}});
        EXPECT_TRUE(client.yes(&_DIWrapper::Param_WriteValue_Null, pid, at));
    }
}

TEST_F(WriteValues, MonitorCodesAreWrittenInPlainDecimal) {
    setUpClient();
    const struct {
        LONG code;
        const wchar_t* problem;
    } rows[] = {{0, L"'0' is not a known monitor code (WDN-010)"},
                {-5, L"'-5' is not a known monitor code (WDN-010)"},
                {1234567, L"'1234567' is not a known monitor code (WDN-010)"},
                {-2147483647L - 1, L"'-2147483648' is not a known monitor code (WDN-010)"}};
    for (const auto& [code, problem] : rows) {
        engine.expect({{"Engine.Utils"}, {"Utils.IsKnownMC(" + std::to_string(code) + ")", false}});
        EXPECT_FALSE(client.yes(&_DIWrapper::Param_WriteMC, pid, when, code));
        EXPECT_EQ(client.problemTexts(), std::vector<std::wstring>{problem});
    }
}

TEST_F(WriteValues, AnIllFormedPidLeavesTheDisplayEmpty) {
    setUpClient();
    expectExists(7, false);
    EXPECT_FALSE(client.yes(&_DIWrapper::Param_WriteValue_Null, 7, when));
    expectExists(7, true);
    engine.expect({{"Params.Item(7, -1)"}, {"Param(7).IOType", 1}});
    EXPECT_FALSE(client.yes(&_DIWrapper::Param_WriteValue_Null, 7, when));
    EXPECT_EQ(client.problemTexts(), (std::vector<std::wstring>{L"PID  does not exist (WDN-025)",
                                                                L" is not a DBDataIO parameter (WDN-026)"}));
}

}  // namespace
}  // namespace vtdn::test
