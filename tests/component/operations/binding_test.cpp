// Set-up, teardown and the SelectedDahs getters.
#include "operations/on_strict_engine.h"

namespace vtdn::test {
namespace {

class Binding : public OnStrictEngine {
  protected:
    static inline const Bstr six[] = {Bstr(L"S1"),   Bstr(L"al;arm"), Bstr(L" config "),
                                      Bstr(L"data"), Bstr(L"short"),  Bstr(L"real")};
    [[nodiscard]] bool setup2() const {
        return client.yes(&_DIWrapper::Setup2, six[0].get(), six[1].get(), six[2].get(), six[3].get(),
                          six[4].get(), six[5].get());
    }
    [[nodiscard]] bool setup4(const Bstr& name) const {
        return client.yes(&_DIWrapper::Setup4, six[0].get(), six[1].get(), six[2].get(), six[3].get(),
                          six[4].get(), six[5].get(), name.get());
    }
    [[nodiscard]] bool setup3(LONG id, std::wstring_view name) const {
        return client.yes(&_DIWrapper::Setup3, id, Bstr(name).get());
    }
    static constexpr const char* forced =
        "Engine.SetupForced('S1', 'al;arm', ' config ', 'data', 'short', 'real', False)";
};

TEST_F(Binding, SetupNamesTheClientAndBindsByDahsId) {
    engine.expect({{"new DIEngine"},
                   {"Engine.SetClientAppName('VantorDNWrapper')"},
                   {"Engine.SetupByDahsID(5)", true}});
    EXPECT_TRUE(client.yes(&_DIWrapper::Setup, 5));
}

TEST_F(Binding, Setup3PassesIdAndName) {
    engine.expect({{"new DIEngine"}, {"Engine.SetClientAppName('App')"}, {"Engine.SetupByDahsID(-7)", true}});
    EXPECT_TRUE(setup3(-7, L"App"));
}

TEST_F(Binding, Setup2PassesSixTextsInOrderAndAFalse) {
    engine.expect({{"new DIEngine"}, {"Engine.SetClientAppName('VantorDNWrapper')"}, {forced, true}});
    EXPECT_TRUE(setup2());
}

TEST_F(Binding, Setup4PassesSixTextsInOrderAndTheName) {
    engine.expect({{"new DIEngine"}, {"Engine.SetClientAppName('App')"}, {forced, true}});
    EXPECT_TRUE(setup4(Bstr(L"App")));
}

TEST_F(Binding, Setup2PassesEmptyTextsAsEmptyTexts) {
    engine.expect({{"new DIEngine"},
                   {"Engine.SetClientAppName('VantorDNWrapper')"},
                   {"Engine.SetupForced('', '', '', '', '', '', False)", true}});
    const Bstr empty(L"");
    BSTR none = nullptr;
    EXPECT_TRUE(client.yes(&_DIWrapper::Setup2, empty.get(), none, empty.get(), none, empty.get(), none));
}

TEST_F(Binding, AClientNameOfBlanksOnlyBecomesTheDefaultName) {
    for (const wchar_t* name : {L"", L" ", L"   "}) {
        engine.expect({{"new DIEngine"},
                       {"Engine.SetClientAppName('VantorDNWrapper')"},
                       {"Engine.SetupByDahsID(5)", true},
                       {"Engine.Close"}});
        EXPECT_TRUE(setup3(5, name));
        client.teardown();
        engine.expect({{"new DIEngine"},
                       {"Engine.SetClientAppName('VantorDNWrapper')"},
                       {forced, true},
                       {"Engine.Close"}});
        EXPECT_TRUE(setup4(Bstr(name)));
        client.teardown();
    }
    engine.expect({{"new DIEngine"},
                   {"Engine.SetClientAppName('VantorDNWrapper')"},
                   {"Engine.SetupByDahsID(5)", true}});
    EXPECT_TRUE(client.yes(&_DIWrapper::Setup3, 5, static_cast<BSTR>(nullptr)));
}

TEST_F(Binding, AnyOtherClientNameIsPassedAsItIs) {
    using namespace std::string_literals;
    const struct {
        std::wstring name;
        std::string shown;
    } rows[] = {
        {L" My App ", " My App "},
        {L"\t", "\t"},
        {L"a\0b"s, "a\0b"s},
        {L"\xD83D\xDE00", "\xF0\x9F\x98\x80"},
    };
    for (const auto& [name, shown] : rows) {
        engine.expect({{"new DIEngine"},
                       {"Engine.SetClientAppName('" + shown + "')"},
                       {"Engine.SetupByDahsID(5)", true},
                       {"Engine.Close"}});
        EXPECT_TRUE(setup3(5, name));
        client.teardown();
    }
}

TEST_F(Binding, AnyNonzeroAnswerOfTheEngineIsTrue) {
    engine.expect(
        {{"new DIEngine"}, {"Engine.SetClientAppName('VantorDNWrapper')"}, {"Engine.SetupByDahsID(5)", 1}});
    EXPECT_TRUE(client.yes(&_DIWrapper::Setup, 5));
}

TEST_F(Binding, AnySecondSetUpReturnsFalseAndKeepsTheBinding) {
    setUpClient();
    EXPECT_FALSE(client.yes(&_DIWrapper::Setup, 9));
    EXPECT_FALSE(setup3(9, L"Other"));
    EXPECT_FALSE(setup2());
    EXPECT_FALSE(setup4(Bstr(L"Other")));
    EXPECT_EQ(client.problems(), L"");
    engine.expect({{"Engine.SelectedDahs"}, {"Dahs.DahsID", 1}});
    EXPECT_EQ(client.number(&_DIWrapper::SelectedDahs_DahsID), 1);
}

TEST_F(Binding, ARefusedSetUpLeavesTheWrapperSetUpUntilTeardown) {
    engine.expect({{"new DIEngine"},
                   {"Engine.SetClientAppName('VantorDNWrapper')"},
                   {"Engine.SetupByDahsID(5)", false}});
    EXPECT_FALSE(client.yes(&_DIWrapper::Setup, 5));
    EXPECT_EQ(client.problems(), L"");
    engine.expect({{"Engine.SelectedDahs"}, {"Dahs.DahsID", 77}});
    EXPECT_EQ(client.number(&_DIWrapper::SelectedDahs_DahsID), 77);
    EXPECT_FALSE(client.yes(&_DIWrapper::Setup, 5));
    engine.expect({{"Engine.Close"}});
    client.teardown();
    setUpClient();
}

TEST_F(Binding, ARefusedForcedSetUpLeavesTheWrapperSetUpToo) {
    engine.expect({{"new DIEngine"}, {"Engine.SetClientAppName('VantorDNWrapper')"}, {forced, false}});
    EXPECT_FALSE(setup2());
    EXPECT_FALSE(setup4(Bstr(L"App")));
    engine.expect({{"Engine.Close"}});
    client.teardown();
}

TEST_F(Binding, AnEngineThatCannotBeMadeLeavesTheWrapperNotSetUp) {
    const HRESULT results[] = {REGDB_E_CLASSNOTREG, E_OUTOFMEMORY, engineResult};
    for (const HRESULT result : results) {
        engine.expect({{"new DIEngine", Answer::failure(result)}});
        const Failure failure = client.failure(&_DIWrapper::Setup, 5);
        EXPECT_EQ(failure.result, result);
        EXPECT_EQ(client.number(&_DIWrapper::SelectedDahs_DahsID), 0);
    }
    EXPECT_EQ(client.problems(), L"");
    client.teardown();
    setUpClient();
}

TEST_F(Binding, AFailingEngineCallOfASetUpReachesTheClientAndLeavesTheWrapperSetUp) {
    const auto isSetUp = [this] {
        engine.expect({{"Engine.SelectedDahs"}, {"Dahs.DahsID", 3}, {"Engine.Close"}});
        EXPECT_EQ(client.number(&_DIWrapper::SelectedDahs_DahsID), 3);
        EXPECT_FALSE(client.setup());
        client.teardown();
    };
    engine.expect({{"new DIEngine"}, {"Engine.SetClientAppName('VantorDNWrapper')", engineFails()}});
    EXPECT_EQ(client.failure(&_DIWrapper::Setup, 5), engineFailure());
    isSetUp();
    engine.expect({{"new DIEngine"},
                   {"Engine.SetClientAppName('VantorDNWrapper')"},
                   {"Engine.SetupByDahsID(5)", engineFails()}});
    EXPECT_EQ(client.failure(&_DIWrapper::Setup, 5), engineFailure());
    isSetUp();
    engine.expect(
        {{"new DIEngine"}, {"Engine.SetClientAppName('VantorDNWrapper')"}, {forced, engineFails()}});
    EXPECT_EQ(client.failure(&_DIWrapper::Setup2, six[0].get(), six[1].get(), six[2].get(), six[3].get(),
                             six[4].get(), six[5].get()),
              engineFailure());
    isSetUp();
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(Binding, MessagesDuringASetUpReachTheProblemsListWhateverItsEnd) {
    engine.expect(
        {{"new DIEngine"},
         {"Engine.SetClientAppName('VantorDNWrapper')", Answer().message(1, L"hello")},
         {"Engine.SetupByDahsID(5)", Answer(false).message(2, L"unknown").message(3, L"so there")}});
    EXPECT_FALSE(client.yes(&_DIWrapper::Setup, 5));
    EXPECT_EQ(client.problemTexts(), (std::vector<std::wstring>{L"hello", L"unknown", L"so there"}));
    engine.expect({{"Engine.Close", Answer().message(4, L"closing")}});
    client.teardown();
    engine.expect({{"new DIEngine"},
                   {"Engine.SetClientAppName('VantorDNWrapper')", engineFails().message(1, L"named")}});
    EXPECT_EQ(client.failure(&_DIWrapper::Setup, 5), engineFailure());
    EXPECT_EQ(client.problemTexts(), (std::vector<std::wstring>{L"closing", L"named"}));
}

TEST_F(Binding, SetUpAndTeardownKeepTheProblemsList) {
    setUpClient();
    engine.raise(1, L"first");
    engine.expect({{"Engine.Close"}});
    client.teardown();
    setUpClient();
    engine.raise(1, L"second");
    EXPECT_EQ(client.problemTexts(), (std::vector<std::wstring>{L"first", L"second"}));
}

TEST_F(Binding, TheWrapperListensToTheEngineExactlyAsLongAsItHoldsIt) {
    EXPECT_EQ(engine.sinks(), 0U);
    setUpClient();
    EXPECT_EQ(engine.sinks(), 1U);
    EXPECT_FALSE(client.setup());
    EXPECT_EQ(engine.sinks(), 1U);
    engine.expect({{"Engine.Close"}});
    client.teardown();
    EXPECT_EQ(engine.sinks(), 0U);
}

TEST_F(Binding, TeardownClosesTheEngineThenReleasesIt) {
    setUpClient();
    engine.expectReleases({"Engine"});
    engine.expect({{"Engine.Close"}, {"release Engine"}});
    client.teardown();
    engine.verify();
    client.teardown();
}

TEST_F(Binding, TeardownBeforeSetUpDoesNothing) {
    client.teardown();
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(Binding, AFailingCloseReachesTheClientAndLeavesTheWrapperSetUp) {
    setUpClient();
    engine.expect({{"Engine.Close", engineFails()}});
    EXPECT_EQ(client.failure(&_DIWrapper::Teardown), engineFailure());
    EXPECT_FALSE(client.setup());
    engine.expect({{"Engine.Close"}});
    client.teardown();
    setUpClient();
}

TEST_F(Binding, AfterTeardownEveryOperationIsAsBeforeSetUp) {
    setUpClient();
    engine.expect({{"Engine.Close"}});
    client.teardown();
    EXPECT_EQ(client.text(&_DIWrapper::SelectedDahs_SiteID), L"");
    EXPECT_FALSE(client.yes(&_DIWrapper::Param_DoesExist, 530001));
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(Binding, AWrapperThatIsReleasedWhileSetUpReleasesTheEngineWithoutClosingIt) {
    setUpClient();
    engine.expectReleases({"Engine"});
    engine.expect({{"release Engine"}});
    client.release();
    engine.verify();
    EXPECT_EQ(engine.sinks(), 0U);
}

struct Getter {
    HRESULT (STDMETHODCALLTYPE _DIWrapper::*member)(BSTR*);
    const char* property;
};
const Getter getters[] = {
    {&_DIWrapper::SelectedDahs_VantorDir, "VantorDir"},
    {&_DIWrapper::SelectedDahs_VantorSystemDir, "SystemDir"},
    {&_DIWrapper::SelectedDahs_AlarmConnection, "AlarmConnection"},
    {&_DIWrapper::SelectedDahs_ConfigConnection, "ConfigConnection"},
    {&_DIWrapper::SelectedDahs_DahsCompleteName, "DahsCompleteName"},
    {&_DIWrapper::SelectedDahs_DataConnection, "DataConnection"},
    {&_DIWrapper::SelectedDahs_RealtimeConnection, "RealtimeConnection"},
    {&_DIWrapper::SelectedDahs_DataShortTermConnection, "DataShortTermConnection"},
    {&_DIWrapper::SelectedDahs_SiteID, "SiteID"},
};

TEST_F(Binding, GettersAreEmptyBeforeSetUp) {
    for (const Getter& getter : getters) EXPECT_EQ(client.text(getter.member), L"") << getter.property;
    EXPECT_EQ(client.number(&_DIWrapper::SelectedDahs_DahsID), 0);
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(Binding, GettersReadTheirPropertyUnchangedAndReleaseTheObject) {
    using namespace std::string_literals;
    setUpClient();
    engine.expectReleases({"Dahs"});
    const std::wstring value = L" x;y\0z \xD83D\xDE00"s;
    for (const Getter& getter : getters) {
        for (const std::wstring& text : {value, L""s}) {
            engine.expect(
                {{"Engine.SelectedDahs"},
                 {std::string("Dahs.") + getter.property, com::Variant::of(std::wstring_view(text))},
                 {"release Dahs"}});
            EXPECT_EQ(client.text(getter.member), text) << getter.property;
        }
    }
    engine.expect({{"Engine.SelectedDahs"}, {"Dahs.DahsID", -5}, {"release Dahs"}});
    EXPECT_EQ(client.number(&_DIWrapper::SelectedDahs_DahsID), -5);
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(Binding, AFailureBehindAGetterReachesTheClient) {
    setUpClient();
    for (const Getter& getter : getters) {
        engine.expect({{"Engine.SelectedDahs", engineFails()}});
        EXPECT_EQ(client.failure(getter.member), engineFailure());
        engine.expect({{"Engine.SelectedDahs"}, {std::string("Dahs.") + getter.property, engineFails()}});
        EXPECT_EQ(client.failure(getter.member), engineFailure());
        engine.expect({{"Engine.SelectedDahs", Answer::noObject()}});
        EXPECT_EQ(client.failure(getter.member).result, unsetObject);
    }
    engine.expect({{"Engine.SelectedDahs"}, {"Dahs.DahsID", engineFails()}});
    EXPECT_EQ(client.failure(&_DIWrapper::SelectedDahs_DahsID), engineFailure());
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(Binding, TwoWrappersHoldEnginesOfTheirOwn) {
    setUpClient();
    Client other;
    EXPECT_EQ(other.number(&_DIWrapper::SelectedDahs_DahsID), 0);
    engine.expect({{"new DIEngine"},
                   {"Engine.SetClientAppName('VantorDNWrapper')"},
                   {"Engine.SetupByDahsID(2)", true}});
    EXPECT_TRUE(other.setup(2));
    EXPECT_EQ(engine.alive(), (std::vector<std::string>{"Engine", "Engine"}));
    engine.expect({{"Engine.Close"}});
    client.teardown();
    EXPECT_EQ(engine.alive(), (std::vector<std::string>{"Engine"}));
}

}  // namespace
}  // namespace vtdn::test
