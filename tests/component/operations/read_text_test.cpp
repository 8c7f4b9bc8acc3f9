// Param_GetData_String: one interval as text.
#include <cmath>

#include "operations/on_strict_engine.h"

namespace vtdn::test {
namespace {

constexpr LONG pid = 530001;
constexpr DATE when = 39448.25;

class ReadText : public OnStrictEngine {
  protected:
    ~ReadText() override { SysFreeString(value_); }

    [[nodiscard]] bool read(DATE at = when) {
        return client.yes(&_DIWrapper::Param_GetData_String, pid, at, &value_, &mc_);
    }
    [[nodiscard]] std::wstring value() const { return std::wstring(com::view(value_)); }
    [[nodiscard]] LONG mc() const { return mc_; }
    /// Everything up to the item, which is named Stored.
    void expectItem() {
        expectParam(pid);
        engine.expect({{param(pid, "GetDataItem(39448.25, 0)")}});
    }
    /// The calls of an interval that holds a value.
    void expectValue(const com::Variant& stored, int code = 5) {
        expectItem();
        engine.expect({{"Stored.Value", stored}, {"Stored.Value", stored}, {"Stored.MC", code}});
    }
    /// Neither a result nor an error nor a problem.
    void expectTrapped() {
        EXPECT_FALSE(read());
        EXPECT_EQ(value(), L"");
        EXPECT_EQ(mc(), 0);
        EXPECT_EQ(client.problems(), L"");
        value_ = SysAllocString(L"old");
        mc_ = 99;
    }

  private:
    BSTR value_ = SysAllocString(L"old");
    LONG mc_ = 99;
};

com::Variant of(VARTYPE type, LONGLONG bits) {
    com::Variant variant;
    variant.inOut()->llVal = bits;
    variant.inOut()->vt = type;
    return variant;
}

com::Variant decimal(ULONG mantissa, BYTE scale) {
    com::Variant variant;
    VARIANT* raw = variant.inOut();
    raw->decVal = DECIMAL{};
    raw->decVal.Lo64 = mantissa;
    raw->decVal.scale = scale;
    raw->vt = VT_DECIMAL;
    return variant;
}

TEST_F(ReadText, BeforeSetUpTheArgumentsBecomeEmptyAndNoProblemIsAdded) {
    expectTrapped();
}

TEST_F(ReadText, AnUnknownPidIsProblem045AndTheArgumentsBecomeEmpty) {
    setUpClient();
    expectExists(pid, false);
    EXPECT_FALSE(read());
    EXPECT_EQ(value(), L"");
    EXPECT_EQ(mc(), 0);
    EXPECT_EQ(client.problemTexts(),
              std::vector<std::wstring>{L"PID 0-005-3-00-01 does not exist (WDN-045)"});
}

TEST_F(ReadText, TheValueIsReadTwiceAndTheMonitorCodeAfterIt) {
    setUpClient();
    expectValue(com::Variant::of(12.5));
    EXPECT_TRUE(read());
    EXPECT_EQ(value(), L"12.5");
    EXPECT_EQ(mc(), 5);
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(ReadText, ANullIsEmptyTextWithItsMonitorCode) {
    setUpClient();
    expectItem();
    engine.expect({{"Stored.Value", com::Variant::null()}, {"Stored.MC", 17}});
    EXPECT_TRUE(read());
    EXPECT_EQ(value(), L"");
    EXPECT_EQ(mc(), 17);
}

TEST_F(ReadText, EveryTypeOfValueIsConvertedToText) {
    using namespace std::string_literals;
    setUpClient();
    const struct {
        com::Variant value;
        std::wstring text;
    } rows[] = {
        {com::Variant::of(std::wstring_view(L"N/A")), L"N/A"},
        {com::Variant::of(std::wstring_view(L"")), L""},
        {com::Variant::of(std::wstring_view(L" a\0b ", 5)), L" a\0b "s},
        {com::Variant::of(static_cast<LONG>(-40000)), L"-40000"},
        {com::Variant::of(0.1f), L"0.1"},
        {com::Variant::of(16777216.0f), L"1.677722E+07"},
        {com::Variant::of(0.1), L"0.1"},
        {com::Variant::ofBool(true), L"True"},
        {com::Variant::ofBool(false), L"False"},
        {of(VT_I2, static_cast<SHORT>(-7)), L"-7"},
        {of(VT_UI1, 255), L"255"},
        {of(VT_CY, 125000), L"12.5"},
        {decimal(12345, 2), L"123.45"},
        {com::Variant(), L""},
    };
    for (const auto& [stored, text] : rows) {
        expectValue(stored);
        EXPECT_TRUE(read());
        EXPECT_EQ(value(), text) << "type " << stored.type();
        EXPECT_EQ(mc(), 5);
    }
}

TEST_F(ReadText, ADateIsWrittenInTheUsersShortForm) {
    setUpClient();
    const com::Variant date = com::Variant::ofDate(39448.5);
    BSTR text = nullptr;
    ASSERT_EQ(VarBstrFromDate(39448.5, LOCALE_USER_DEFAULT, 0, &text), S_OK);
    const Bstr expected = Bstr::adopt(text);
    expectValue(date);
    EXPECT_TRUE(read());
    EXPECT_EQ(value(), expected.view());
    EXPECT_NE(value().find(L"2008"), std::wstring::npos);
}

TEST_F(ReadText, AValueThatHasNoTextIsEmptyTextWithItsMonitorCode) {
    setUpClient();
    for (const com::Variant& stored :
         {com::Variant::missing(), com::Variant::of(static_cast<IDispatch*>(nullptr))}) {
        expectValue(stored);
        EXPECT_TRUE(read());
        EXPECT_EQ(value(), L"") << "type " << stored.type();
        EXPECT_EQ(mc(), 5);
        EXPECT_EQ(client.problems(), L"");
    }
}

TEST_F(ReadText, TheTextIsOfTheSecondReading) {
    setUpClient();
    expectItem();
    engine.expect({{"Stored.Value", 1}, {"Stored.Value", L"two"}, {"Stored.MC", 5}});
    EXPECT_TRUE(read());
    EXPECT_EQ(value(), L"two");
}

TEST_F(ReadText, TimesReachTheEngineUnchanged) {
    setUpClient();
    for (const auto& [at, shown] :
         {std::pair{0.0, "0"}, {-1.25, "-1.25"}, {39448.123456789, "39448.123456789"}}) {
        expectParam(pid);
        engine.expect({{param(pid, std::string("GetDataItem(") + shown + ", 0)")},
                       {"Stored.Value", com::Variant::null()},
                       {"Stored.MC"}});
        EXPECT_TRUE(read(at));
    }
}

TEST_F(ReadText, AFailureAtAnyStepIsTrapped) {
    setUpClient();
    for (const Answer& failure : {engineFails(), Answer::failure(E_FAIL)}) {
        engine.expect({{"Engine.Params", failure}});
        expectTrapped();
        engine.expect({{"Engine.Params"}, {"Params.Exists(530001)", failure}});
        expectTrapped();
        expectExists(pid, true);
        engine.expect({{"Params.Item(530001, -1)", failure}});
        expectTrapped();
        expectParam(pid);
        engine.expect({{param(pid, "GetDataItem(39448.25, 0)"), failure}});
        expectTrapped();
        expectItem();
        engine.expect({{"Stored.Value", failure}});
        expectTrapped();
        expectItem();
        engine.expect({{"Stored.Value", 3}, {"Stored.Value", 3}, {"Stored.MC", failure}});
        expectTrapped();
    }
    for (const auto& calls :
         std::vector<std::vector<Call>>{{{"Engine.Params", Answer::noObject()}},
                                        {{"Engine.Params"},
                                         {"Params.Exists(530001)", true},
                                         {"Params.Item(530001, -1)", Answer::noObject()}},
                                        {{"Engine.Params"},
                                         {"Params.Exists(530001)", true},
                                         {"Params.Item(530001, -1)"},
                                         {param(pid, "GetDataItem(39448.25, 0)"), Answer::noObject()}}}) {
        engine.expect(calls);
        expectTrapped();
    }
}

TEST_F(ReadText, AFailingSecondReadingAddsNeitherErrorNorProblemNorText) {
    setUpClient();
    expectItem();
    engine.expect({{"Stored.Value", 3}, {"Stored.Value", engineFails()}, Call{"Stored.MC", 5}.orNot()});
    static_cast<void>(read());
    EXPECT_EQ(value(), L"");
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(ReadText, MessagesDuringATrappedFailureAreProblems) {
    setUpClient();
    engine.expect({{"Engine.Params", engineFails().message(1, L"trouble")}});
    EXPECT_FALSE(read());
    EXPECT_EQ(client.problemTexts(), std::vector<std::wstring>{L"trouble"});
}

TEST_F(ReadText, NullStringArgumentsOfTheClientAreEmptyStrings) {
    setUpClient();
    expectValue(com::Variant::of(static_cast<LONG>(12)));
    BSTR text = nullptr;
    LONG code = 0;
    EXPECT_TRUE(client.yes(&_DIWrapper::Param_GetData_String, pid, when, &text, &code));
    EXPECT_EQ(com::view(text), L"12");
    SysFreeString(text);
}

}  // namespace
}  // namespace vtdn::test
