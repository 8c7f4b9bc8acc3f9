// Lists of names, the parameter cache, and the alarm log.
#include <functional>

#include "operations/on_strict_engine.h"

namespace vtdn::test {
namespace {

using com::Variant;
using Texts = std::vector<std::wstring>;

const Failure unset{unsetObject, L"VTWrapDN.DIWrapper", L"Object variable or With block variable not set"};

class Names : public OnStrictEngine {};

/// A member that returns an array of texts.
using ListMember = HRESULT (STDMETHODCALLTYPE _DIWrapper::*)(SAFEARRAY**);

const ListMember listMembers[] = {&_DIWrapper::Utils_GetUnitNames,    &_DIWrapper::Utils_GetEDRUnitORISCodes,
                                  &_DIWrapper::Utils_GetEDRUnitIDs,   &_DIWrapper::Utils_GetLongMCNames,
                                  &_DIWrapper::Utils_GetShortMCNames, &_DIWrapper::Utils_GetLongPCNames,
                                  &_DIWrapper::Utils_GetShortPCNames};

TEST_F(Names, AndTheCacheAreError91BeforeSetUp) {
    for (const ListMember member : listMembers) EXPECT_EQ(client.failure(member), unset);
    EXPECT_EQ(client.failure(&_DIWrapper::Params_FlushCache), unset);
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(Names, AndTheCacheAreError91AfterTeardown) {
    setUpClient();
    engine.expect({{"Engine.Close"}});
    client.teardown();
    for (const ListMember member : listMembers) EXPECT_EQ(client.failure(member), unset);
    EXPECT_EQ(client.failure(&_DIWrapper::Params_FlushCache), unset);
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(Names, FlushingTheCacheAsksForTheParametersFirst) {
    setUpClient();
    engine.expectReleases({"Params"});
    engine.expect({{"Engine.Params"}, {"Params.FlushCache"}, {"release Params"}});
    EXPECT_EQ(client->Params_FlushCache(), S_OK);
    engine.verify();
    engine.expectReleases({});
    engine.expect({{"Engine.Params", engineFails()}});
    EXPECT_EQ(client.failure(&_DIWrapper::Params_FlushCache), engineFailure());
    engine.expect({{"Engine.Params", Answer::noObject()}});
    EXPECT_EQ(client.failure(&_DIWrapper::Params_FlushCache), unset);
    engine.expect({{"Engine.Params"}, {"Params.FlushCache", engineFails()}});
    EXPECT_EQ(client.failure(&_DIWrapper::Params_FlushCache), engineFailure());
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(Names, OfUnitsAreTwentyAsTheEngineGivesThemWithTheUtilitiesFetchedAfresh) {
    using namespace std::string_literals;
    setUpClient();
    engine.expectReleases({"Utils"});
    Texts expected;
    for (int unit = 0; unit < 20; ++unit) {
        const std::wstring name = unit == 3   ? L""s
                                  : unit == 4 ? L" a\0b "s
                                  : unit == 5 ? L"(unused)"s
                                              : L"Unit "s + std::to_wstring(unit);
        engine.expect({{"Engine.Utils"},
                       {"Utils.UnitName(" + std::to_string(unit) + ")",
                        unit == 3 ? Answer() : Answer(Variant::of(std::wstring_view(name)))},
                       {"release Utils"}});
        expected.push_back(name);
    }
    EXPECT_EQ(client.texts(&_DIWrapper::Utils_GetUnitNames), expected);
    EXPECT_EQ(client.problems(), L"");
    engine.verify();
}

TEST_F(Names, OfUnitsFailWithTheEngine) {
    setUpClient();
    for (const int failing : {0, 7, 19}) {
        for (const bool atUtils : {true, false}) {
            for (int unit = 0; unit < failing; ++unit)
                engine.expect({{"Engine.Utils"}, {"Utils.UnitName(" + std::to_string(unit) + ")", L"x"}});
            if (atUtils) {
                engine.expect({{"Engine.Utils", engineFails()}});
            } else {
                engine.expect(
                    {{"Engine.Utils"}, {"Utils.UnitName(" + std::to_string(failing) + ")", engineFails()}});
            }
            EXPECT_EQ(client.failure(&_DIWrapper::Utils_GetUnitNames), engineFailure());
        }
    }
    engine.expect({{"Engine.Utils", Answer::noObject()}});
    EXPECT_EQ(client.failure(&_DIWrapper::Utils_GetUnitNames), unset);
    EXPECT_EQ(client.problems(), L"");
}

/// One of the four lists of names by code.
struct CodeNames {
    const char* name;
    ListMember member;
    const char* highest;
    const char* function;
    const char* longName;
};

void PrintTo(const CodeNames& names, std::ostream* out) {
    *out << names.name;
}

class NamesByCode : public OnStrictEngine, public testing::WithParamInterface<CodeNames> {
  protected:
    [[nodiscard]] static std::string highestCall() { return std::string("Utils.") + GetParam().highest; }
    [[nodiscard]] static std::string nameCall(int code) {
        return std::string("Utils.") + GetParam().function + "(" + std::to_string(code) + ", " +
               GetParam().longName + ")";
    }
    [[nodiscard]] Texts texts() const { return client.texts(GetParam().member); }
    [[nodiscard]] Failure fail() const { return client.failure(GetParam().member); }
};

INSTANTIATE_TEST_SUITE_P(
    AllFour, NamesByCode,
    testing::Values(CodeNames{"LongMC", &_DIWrapper::Utils_GetLongMCNames, "MaxMC", "MCName", "True"},
                    CodeNames{"ShortMC", &_DIWrapper::Utils_GetShortMCNames, "MaxMC", "MCName", "False"},
                    CodeNames{"LongPC", &_DIWrapper::Utils_GetLongPCNames, "MaxPC", "PCName", "True"},
                    CodeNames{"ShortPC", &_DIWrapper::Utils_GetShortPCNames, "MaxPC", "PCName", "False"}),
    [](const auto& tested) { return std::string(tested.param.name); });

TEST_P(NamesByCode, GoFrom0ToTheHighestCodeWithTheUtilitiesFetchedAfresh) {
    using namespace std::string_literals;
    setUpClient();
    engine.expectReleases({"Utils"});
    engine.expect({{"Engine.Utils"}, {highestCall(), 3}, {"release Utils"}});
    const Texts names = {L"Valid"s, L""s, L" a\0b "s, L"\xD83D\xDE00"s};
    for (int code = 0; code <= 3; ++code) {
        const auto& name = names[static_cast<std::size_t>(code)];
        engine.expect(
            {{"Engine.Utils"}, {nameCall(code), Variant::of(std::wstring_view(name))}, {"release Utils"}});
    }
    EXPECT_EQ(texts(), names);
    EXPECT_EQ(client.problems(), L"");
    engine.verify();
}

TEST_P(NamesByCode, AreOneWhenTheHighestCodeIs0) {
    setUpClient();
    engine.expect({{"Engine.Utils"}, {highestCall(), 0}, {"Engine.Utils"}, {nameCall(0), L"only"}});
    EXPECT_EQ(texts(), Texts{L"only"});
}

TEST_P(NamesByCode, ThatTheEngineLeavesNullAreEmpty) {
    setUpClient();
    engine.expect({{"Engine.Utils"},
                   {highestCall(), 1},
                   {"Engine.Utils"},
                   {nameCall(0)},
                   {"Engine.Utils"},
                   {nameCall(1), L"x"}});
    EXPECT_EQ(texts(), (Texts{L"", L"x"}));
}

TEST_P(NamesByCode, AreError9WhenTheHighestCodeIsNegative) {
    setUpClient();
    for (const int highest : {-1, -2, -0x7FFFFFFF - 1}) {
        engine.expect({{"Engine.Utils"}, {highestCall(), highest}});
        EXPECT_EQ(clientNumber(fail().result), 9) << highest;
    }
    EXPECT_EQ(client.problems(), L"");
}

TEST_P(NamesByCode, AreError7WhenTheHighestCodeIsMoreThanMemoryHolds) {
    setUpClient();
    for (const int highest : {0x7FFFFFFF, 0x7FFFFFFE}) {
        engine.expect({{"Engine.Utils"}, {highestCall(), highest}});
        EXPECT_EQ(clientNumber(fail().result), 7) << highest;
    }
    EXPECT_EQ(client.problems(), L"");
}

TEST_P(NamesByCode, FailWithTheEngine) {
    setUpClient();
    const std::vector<Call> calls = {{"Engine.Utils"},    {highestCall(), 1}, {"Engine.Utils"},
                                     {nameCall(0), L"x"}, {"Engine.Utils"},   {nameCall(1), L"y"}};
    for (std::size_t failing = 0; failing < calls.size(); ++failing) {
        for (const bool explained : {true, false}) {
            for (std::size_t i = 0; i < failing; ++i) engine.expect({calls[i]});
            engine.expect({{calls[failing].text, explained ? engineFails() : Answer::failure(engineResult)}});
            const Failure failure = fail();
            EXPECT_EQ(failure.result, engineResult) << failing;
            if (explained) {
                EXPECT_EQ(failure, engineFailure()) << failing;
            }
        }
    }
    engine.expect({{"Engine.Utils", Answer::noObject()}});
    EXPECT_EQ(fail(), unset);
    engine.expect({{"Engine.Utils"}, {highestCall(), 1}, {"Engine.Utils", Answer::noObject()}});
    EXPECT_EQ(fail(), unset);
    EXPECT_EQ(client.problems(), L"");
}

/// One of the two lists for electronic data reports.
struct ReportedUnits {
    const char* name;
    ListMember member;
    int special;
};

void PrintTo(const ReportedUnits& units, std::ostream* out) {
    *out << units.name;
}

class Reported : public OnStrictEngine, public testing::WithParamInterface<ReportedUnits> {
  protected:
    [[nodiscard]] Texts texts() const { return client.texts(GetParam().member); }
    [[nodiscard]] Failure fail() const { return client.failure(GetParam().member); }
    static LONG unitPid(int unit) { return unit * 100000000 + 100000; }
    static std::string exists(int unit) { return "Params.Exists(" + std::to_string(unitPid(unit)) + ")"; }
    static std::string item(int unit) { return "Params.Item(" + std::to_string(unitPid(unit)) + ", -1)"; }
    static std::string special(int unit, int id) {
        return param(unitPid(unit), "SpecialValue(" + std::to_string(id) + ")");
    }
    static std::string reports(int unit) { return special(unit, -17); }
    static std::string value(int unit) { return special(unit, GetParam().special); }
    /// The units from one to another, the last not included, have no parameter of their own.
    void expectNone(int from, int to) {
        for (int unit = from; unit < to; ++unit) engine.expect({{exists(unit), false}});
    }
    /// Unit 0 with these answers; no other unit exists.
    Texts with(const Variant& reportsAnswer, const std::vector<Variant>& valueAnswers) {
        engine.expect({{"Engine.Params"}, {exists(0), true}, {item(0)}, {reports(0), reportsAnswer}});
        for (const Variant& answer : valueAnswers) engine.expect({{value(0), answer}});
        expectNone(1, 20);
        return texts();
    }
    static Texts first(const std::wstring& text) {
        Texts all(20);
        all[0] = text;
        return all;
    }
};

INSTANTIATE_TEST_SUITE_P(Both, Reported,
                         testing::Values(ReportedUnits{"ORISCodes", &_DIWrapper::Utils_GetEDRUnitORISCodes,
                                                       -95},
                                         ReportedUnits{"UnitIDs", &_DIWrapper::Utils_GetEDRUnitIDs, -97}),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST_P(Reported, AreTwentyTextsEmptyForUnitsWithoutAParameterAndUnitsThatDoNotReport) {
    setUpClient();
    Texts expected(20);
    engine.expect({{"Engine.Params"}});
    for (int unit = 0; unit < 20; ++unit) {
        if (unit == 7) {
            engine.expect({{exists(unit), false}});
            continue;
        }
        engine.expect({{exists(unit), true}, {item(unit)}, {reports(unit), unit % 2 == 1}});
        if (unit % 2 == 1) {
            const std::wstring text = L"U" + std::to_wstring(unit);
            engine.expect({{value(unit), text.c_str()}});
            expected[static_cast<std::size_t>(unit)] = text;
        }
    }
    EXPECT_EQ(texts(), expected);
    EXPECT_EQ(client.problems(), L"");
    EXPECT_EQ(engine.alive(), std::vector<std::string>{"Engine"});
    EXPECT_LE(engine.mostAlive(), 4U);
}

TEST_P(Reported, AreAllEmptyWhenNoUnitHasAParameter) {
    setUpClient();
    engine.expect({{"Engine.Params"}});
    expectNone(0, 20);
    EXPECT_EQ(texts(), Texts(20));
}

TEST_P(Reported, WhetherAUnitReportsIsABooleanAndNullCountsAsFalse) {
    setUpClient();
    for (const Variant& yes :
         {Variant::ofBool(true), Variant::of(LONG{2}), Variant::of(L"True"), Variant::of(0.5)})
        EXPECT_EQ(with(yes, {Variant::of(L"x")}), first(L"x")) << yes.type();
    for (const Variant& no :
         {Variant::ofBool(false), Variant::null(), Variant(), Variant::of(LONG{0}), Variant::of(L"false")})
        EXPECT_EQ(with(no, {}), Texts(20)) << no.type();
    const auto failWith = [this](const Variant& answer) {
        engine.expect({{"Engine.Params"}, {exists(0), true}, {item(0)}, {reports(0), answer}});
        return clientNumber(fail().result);
    };
    EXPECT_EQ(failWith(Variant::of(L"yes")), 13);
    EXPECT_EQ(failWith(Variant::missing()), 13);
    EXPECT_EQ(client.problems(), L"");
}

TEST_P(Reported, TheValueIsConvertedToText) {
    using namespace std::string_literals;
    setUpClient();
    const Variant yes = Variant::ofBool(true);
    EXPECT_EQ(with(yes, {Variant::of(LONG{3456})}), first(L"3456"));
    EXPECT_EQ(with(yes, {Variant::of(2.5)}), first(L"2.5"));
    EXPECT_EQ(with(yes, {Variant::ofBool(true)}), first(L"True"));
    EXPECT_EQ(with(yes, {Variant()}), first(L""));
    EXPECT_EQ(with(yes, {Variant::of(L"")}), first(L""));
    EXPECT_EQ(with(yes, {Variant::of(std::wstring_view(L"a\0b"s))}), first(L"a\0b"s));
    const auto failWith = [this](const Variant& answer) {
        engine.expect(
            {{"Engine.Params"}, {exists(0), true}, {item(0)}, {reports(0), true}, {value(0), answer}});
        return clientNumber(fail().result);
    };
    EXPECT_EQ(failWith(Variant::null()), 94);
    EXPECT_EQ(failWith(Variant::missing()), 13);
    EXPECT_EQ(client.problems(), L"");
}

TEST_P(Reported, FailWithTheEngine) {
    setUpClient();
    const std::vector<Call> calls = {{"Engine.Params"},  {exists(0), true}, {item(0)},
                                     {reports(0), true}, {value(0), L"x"},  {exists(1), true}};
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
    engine.expect({{"Engine.Params", Answer::noObject()}});
    EXPECT_EQ(fail(), unset);
    engine.expect({{"Engine.Params"}, {exists(0), true}, {item(0), Answer::noObject()}});
    EXPECT_EQ(fail(), unset);
    EXPECT_EQ(client.problems(), L"");
}

class Alarms : public OnStrictEngine {
  protected:
    [[nodiscard]] bool writeAlarm(LONG severity) const {
        return client.yes(&_DIWrapper::WriteStrToAlarm, 39448.25, message.get(), category.get(), severity,
                          group.get(), source.get());
    }
    [[nodiscard]] Failure fail() const {
        return client.failure(&_DIWrapper::WriteStrToAlarm, 39448.25, message.get(), category.get(), LONG{2},
                              group.get(), source.get());
    }
    static std::string call(LONG severity) {
        return "Alarms.WriteAlarm('S1', 39448.25, 'msg', 'cat', " + std::to_string(severity) +
               ", 'grp', 'src')";
    }

    const Bstr message{L"msg"};
    const Bstr category{L"cat"};
    const Bstr group{L"grp"};
    const Bstr source{L"src"};
};

TEST_F(Alarms, AreNotWrittenBeforeSetUp) {
    for (const LONG severity : {-1L, 0L, 4L, 5L}) EXPECT_FALSE(writeAlarm(severity));
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(Alarms, OfASeverityFrom0To4AreWritten) {
    setUpClient();
    engine.expectReleases({"Alarms"});
    for (LONG severity = 0; severity <= 4; ++severity) {
        engine.expect(
            {{"Engine.SiteID", L"S1"}, {"Engine.AlarmWriter"}, {call(severity)}, {"release Alarms"}});
        EXPECT_TRUE(writeAlarm(severity));
    }
    EXPECT_EQ(client.problems(), L"");
    engine.verify();
}

TEST_F(Alarms, OfAnyOtherSeverityAreNotEvenShownToTheEngine) {
    setUpClient();
    for (const LONG severity : {-1L, 5L, 256L, 0x7FFFFFFFL, -0x7FFFFFFFL - 1})
        EXPECT_FALSE(writeAlarm(severity)) << severity;
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(Alarms, CarryEveryTextAndTimeUnchanged) {
    using namespace std::string_literals;
    setUpClient();
    const struct {
        std::wstring text;
        std::string call;
    } rows[] = {
        {L""s, "Alarms.WriteAlarm('', -1.25, '', '', 3, '', '')"s},
        {L" a\0b "s, "Alarms.WriteAlarm(' a\0b ', -1.25, ' a\0b ', ' a\0b ', 3, ' a\0b ', ' a\0b ')"s},
        {L"'\t\xD83D\xDE00"s,
         "Alarms.WriteAlarm(''\t\xF0\x9F\x98\x80', -1.25, ''\t\xF0\x9F\x98\x80', "
         "''\t\xF0\x9F\x98\x80', 3, ''\t\xF0\x9F\x98\x80', ''\t\xF0\x9F\x98\x80')"s}};
    for (const auto& [text, call] : rows) {
        const Bstr one(text);
        engine.expect(
            {{"Engine.SiteID", Variant::of(std::wstring_view(text))}, {"Engine.AlarmWriter"}, {call}});
        EXPECT_TRUE(client.yes(&_DIWrapper::WriteStrToAlarm, -1.25, one.get(), one.get(), LONG{3}, one.get(),
                               one.get()));
    }
    const BSTR none = nullptr;
    engine.expect(
        {{"Engine.SiteID"}, {"Engine.AlarmWriter"}, {"Alarms.WriteAlarm('', 0, '', '', 0, '', '')"}});
    EXPECT_TRUE(client.yes(&_DIWrapper::WriteStrToAlarm, 0.0, none, none, LONG{0}, none, none));
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(Alarms, ThatTheEngineRefusesAreAFailureAndNotFalse) {
    setUpClient();
    const std::vector<Call> calls = {{"Engine.SiteID", L"S1"}, {"Engine.AlarmWriter"}, {call(2)}};
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
    engine.expect({{"Engine.SiteID", L"S1"}, {"Engine.AlarmWriter", Answer::noObject()}});
    EXPECT_EQ(fail(), unset);
    EXPECT_EQ(client.problems(), L"");
}

}  // namespace
}  // namespace vtdn::test
