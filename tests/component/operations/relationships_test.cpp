// The parameters that are related to other averaging levels.
#include "operations/on_strict_engine.h"

namespace vtdn::test {
namespace {

constexpr LONG pid = 530001;

constexpr auto minute = ParamRelationship_Minute;
constexpr auto hourly = ParamRelationship_Hourly;
constexpr auto daily = ParamRelationship_Daily;

class Relationships : public OnStrictEngine {
  protected:
    static constexpr auto ofLevel = &_DIWrapper::GetListOfRelationshipPIDs;
    static constexpr auto all = &_DIWrapper::GetListOfAllRelationshipPIDs;

    static std::string listed(int index, const std::string& member) {
        return "Listed(" + std::to_string(index) + ")." + member;
    }
    void expectList(int count) {
        engine.expect({{"Engine.RelationshipParams(0, -1)"}, {"List.Count", count}});
    }
    void expectItem(int index) { engine.expect({{"List.Item(" + std::to_string(index) + ")"}}); }
    void expectPid(int index, int found) { engine.expect({{listed(index, "PID"), found}}); }
    /// The relationship is fetched for each of its two questions.
    void expectInterval(int index, const Answer& unit, int count) {
        engine.expect({{listed(index, "Relationship")},
                       {"Relationship.IntervalUnit", unit},
                       {listed(index, "Relationship")},
                       {"Relationship.IntervalCount", count}});
    }
};

TEST_F(Relationships, BeforeSetUpTheListsAreEmptyAndNoProblemIsAdded) {
    EXPECT_EQ(client.text(ofLevel, hourly, 1), L"");
    EXPECT_EQ(client.text(all), L"");
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(Relationships, ALevelThatDoesNotExistGivesAnEmptyListWithoutAskingTheEngine) {
    setUpClient();
    for (const LONG level : {0L, 4L, -1L, 256L + 2, 0x7FFFFFFFL, -0x7FFFFFFFL - 1})
        EXPECT_EQ(client.text(ofLevel, static_cast<ParamRelationshipEnum>(level), 1), L"") << level;
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(Relationships, EachLevelHasItsLetter) {
    setUpClient();
    for (const auto& [level, own] : {std::pair{minute, L'n'}, {hourly, L'h'}, {daily, L'd'}}) {
        const wchar_t letters[] = {L'n', L'h', L'd'};
        expectList(3);
        const wchar_t* expected = L"";
        for (int i = 1; i <= 3; ++i) {
            const std::wstring letter(1, letters[i - 1]);
            expectItem(i);
            expectInterval(i, letter.c_str(), 1);
            if (letters[i - 1] == own) {
                expectPid(i, 530000 + i);
                expected = i == 1 ? L"000530001" : i == 2 ? L"000530002" : L"000530003";
            }
        }
        EXPECT_EQ(client.text(ofLevel, level, 1), expected);
    }
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(Relationships, UnitAndCountMustBeEqualToTheLetter) {
    setUpClient();
    const struct {
        const wchar_t* unit;
        int count;
        bool isListed;
    } rows[] = {{L"h", 1, true},   {L"H", 1, false},  {L"h", 2, false},  {L"h", 0, false},
                {L"h", -1, false}, {L"hh", 1, false}, {L" h", 1, false}, {L"h ", 1, false},
                {L"", 1, false},   {L"n", 1, false},  {L"d", 1, false},  {L"h", 1, true}};
    constexpr int count = std::size(rows);
    expectList(count);
    for (int i = 1; i <= count; ++i) {
        const auto& row = rows[i - 1];
        expectItem(i);
        expectInterval(i, row.unit, row.count);
        if (row.isListed) expectPid(i, 530001);
    }
    EXPECT_EQ(client.text(ofLevel, hourly, 1), L"000530001;000530001");
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(Relationships, AUnitThatTheEngineLeavesNullIsNoLetter) {
    setUpClient();
    expectList(1);
    expectItem(1);
    expectInterval(1, Answer(), 1);
    EXPECT_EQ(client.text(ofLevel, hourly, 1), L"");
}

TEST_F(Relationships, AnyCountIsComparedAsItIs) {
    setUpClient();
    for (const int count : {0, -5, 15, 0x7FFFFFFF}) {
        expectList(2);
        for (int i = 1; i <= 2; ++i) {
            expectItem(i);
            expectInterval(i, L"n", i == 1 ? count : 1);
            if (i == 1) expectPid(i, 100230405);
        }
        EXPECT_EQ(client.text(ofLevel, minute, count), L"100230405") << count;
    }
}

TEST_F(Relationships, TheFullListIsInTheEnginesOrderWithRepeatsAndAsksForPidsOnly) {
    setUpClient();
    expectList(4);
    const int pids[] = {100230406, 1999989999, 530001, 100230406};
    for (int i = 1; i <= 4; ++i) {
        expectItem(i);
        expectPid(i, pids[i - 1]);
    }
    EXPECT_EQ(client.text(all), L"100230406;1999989999;000530001;100230406");
    expectList(0);
    EXPECT_EQ(client.text(all), L"");
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(Relationships, EveryRelationshipIsReleasedBeforeTheNextIsFetched) {
    setUpClient();
    engine.expectReleases({"Relationship", "List"});
    expectList(1);
    expectItem(1);
    engine.expect({{"Listed(1).Relationship"},
                   {"Relationship.IntervalUnit", L"d"},
                   {"release Relationship"},
                   {"Listed(1).Relationship"},
                   {"Relationship.IntervalCount", 7},
                   {"release Relationship"},
                   {"Listed(1).PID", 530001},
                   {"release Listed(1)"},
                   {"release List"}});
    EXPECT_EQ(client.text(ofLevel, daily, 7), L"000530001");
    engine.verify();
}

TEST_F(Relationships, AFailureOfAnyCallReachesTheClientWithoutAProblem) {
    setUpClient();
    const std::vector<Call> calls = {{"Engine.RelationshipParams(0, -1)"},
                                     {"List.Count", 1},
                                     {"List.Item(1)"},
                                     {"Listed(1).Relationship"},
                                     {"Relationship.IntervalUnit", L"h"},
                                     {"Listed(1).Relationship"},
                                     {"Relationship.IntervalCount", 1},
                                     {"Listed(1).PID"}};
    for (std::size_t failing = 0; failing < calls.size(); ++failing) {
        for (const bool explained : {true, false}) {
            for (std::size_t i = 0; i < failing; ++i) engine.expect({calls[i]});
            engine.expect({{calls[failing].text, explained ? engineFails() : Answer::failure(engineResult)}});
            const Failure failure = client.failure(ofLevel, hourly, 1);
            EXPECT_EQ(failure.result, engineResult) << calls[failing].text;
            if (explained) {
                EXPECT_EQ(failure, engineFailure()) << calls[failing].text;
            }
        }
    }
    for (const char* failing :
         {"Engine.RelationshipParams(0, -1)", "List.Count", "List.Item(1)", "Listed(1).PID"}) {
        for (const Call& call : {calls[0], calls[1], calls[2], calls[7]}) {
            if (call.text == failing) {
                engine.expect({{call.text, engineFails()}});
                break;
            }
            engine.expect({call});
        }
        EXPECT_EQ(client.failure(all), engineFailure()) << failing;
    }
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(Relationships, AnObjectThatTheEngineDoesNotHandOutIsError91) {
    setUpClient();
    engine.expect({{"Engine.RelationshipParams(0, -1)", Answer::noObject()}});
    EXPECT_EQ(client.failure(ofLevel, hourly, 1).result, unsetObject);
    engine.expect({{"Engine.RelationshipParams(0, -1)", Answer::noObject()}});
    EXPECT_EQ(client.failure(all).result, unsetObject);
    expectList(1);
    engine.expect({{"List.Item(1)", Answer::noObject()}});
    EXPECT_EQ(client.failure(all).result, unsetObject);
    // A parameter of this list without a relationship after all.
    expectList(1);
    expectItem(1);
    engine.expect({{"Listed(1).Relationship", Answer::noObject()}});
    EXPECT_EQ(client.failure(ofLevel, hourly, 1).result, unsetObject);
    EXPECT_EQ(client.problems(), L"");
}

class RelationshipDetail : public OnStrictEngine {
  protected:
    ~RelationshipDetail() override { SysFreeString(xml_); }

    [[nodiscard]] bool detail(LONG of) {
        return client.yes(&_DIWrapper::GetRelationshipDetailData, of, &xml_);
    }
    [[nodiscard]] Failure failDetail(LONG of) {
        return client.failure(&_DIWrapper::GetRelationshipDetailData, of, &xml_);
    }
    [[nodiscard]] std::wstring xml() const { return std::wstring(com::view(xml_)); }
    [[nodiscard]] const void* place() const { return xml_; }

  private:
    BSTR xml_ = SysAllocString(L"old");
};

TEST_F(RelationshipDetail, BeforeSetUpItIsFalseAndTheTextIsNotTouched) {
    const void* before = place();
    EXPECT_FALSE(detail(pid));
    EXPECT_EQ(xml(), L"old");
    EXPECT_EQ(place(), before);
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(RelationshipDetail, AnUnknownPidIsProblem044AndTheTextIsNotTouched) {
    setUpClient();
    const void* before = place();
    for (const auto& [unknown, problem] :
         {std::pair{LONG{530001}, L"PID 0-005-3-00-01 does not exist (WDN-044)"},
          {LONG{1999989999}, L"PID 19-999-8-99-99 does not exist (WDN-044)"},
          {LONG{7}, L"PID  does not exist (WDN-044)"}}) {
        expectExists(unknown, false);
        EXPECT_FALSE(detail(unknown));
        EXPECT_EQ(client.problemTexts(), std::vector<std::wstring>{problem});
    }
    EXPECT_EQ(xml(), L"old");
    EXPECT_EQ(place(), before);
}

TEST_F(RelationshipDetail, AParameterWithoutARelationshipIsTrueAndTheTextBecomesEmpty) {
    setUpClient();
    expectParam(pid);
    engine.expect({{param(pid, "Relationship"), Answer::noObject()}});
    EXPECT_TRUE(detail(pid));
    EXPECT_EQ(xml(), L"");
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(RelationshipDetail, TheEnginesElementsStandUnchangedBehindTheDeclaration) {
    using namespace std::string_literals;
    setUpClient();
    const std::wstring declaration = L"<?xml version=\"1.0\"?>\r\n";
    for (const std::wstring& elements : {L"<a b=\"&amp;\">\r\n</a>"s, L""s, L"no <markup> & at all"s,
                                         L"x\0y"s, L"<a>\xD83D\xDE00</a>\n"s, std::wstring(100'000, L'z')}) {
        expectParam(pid);
        engine.expect({{param(pid, "Relationship")},
                       {"Relationship.DetailXML", com::Variant::of(std::wstring_view(elements))}});
        EXPECT_TRUE(detail(pid));
        EXPECT_EQ(xml(), declaration + elements);
    }
    // A null string of the engine is an empty one.
    expectParam(pid);
    engine.expect({{param(pid, "Relationship")}, {"Relationship.DetailXML"}});
    EXPECT_TRUE(detail(pid));
    EXPECT_EQ(xml(), declaration);
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(RelationshipDetail, AFailureBeforeThePidIsKnownLeavesTheTextAsItWas) {
    setUpClient();
    engine.expect({{"Engine.Params", engineFails()}});
    EXPECT_EQ(failDetail(pid), engineFailure());
    engine.expect({{"Engine.Params", Answer::noObject()}});
    EXPECT_EQ(failDetail(pid).result, unsetObject);
    engine.expect({{"Engine.Params"}, {"Params.Exists(530001)", engineFails()}});
    EXPECT_EQ(failDetail(pid), engineFailure());
    EXPECT_EQ(xml(), L"old");
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(RelationshipDetail, ALaterFailureReachesTheClientAndTheTextIsEmpty) {
    setUpClient();
    const auto expectEmptied = [this](const Failure& expected) {
        EXPECT_EQ(failDetail(pid), expected);
        EXPECT_EQ(xml(), L"");
        // Old content again for the next one.
        expectParam(pid);
        engine.expect({{param(pid, "Relationship")}, {"Relationship.DetailXML", L"x"}});
        EXPECT_TRUE(detail(pid));
        EXPECT_NE(xml(), L"");
    };
    expectExists(pid, true);
    engine.expect({{"Params.Item(530001, -1)", engineFails()}});
    expectEmptied(engineFailure());
    expectParam(pid);
    engine.expect({{param(pid, "Relationship"), engineFails()}});
    expectEmptied(engineFailure());
    expectParam(pid);
    engine.expect({{param(pid, "Relationship")}, {"Relationship.DetailXML", engineFails()}});
    expectEmptied(engineFailure());
    expectExists(pid, true);
    engine.expect({{"Params.Item(530001, -1)", Answer::noObject()}});
    expectEmptied({unsetObject, L"VTWrapDN.DIWrapper", L"Object variable or With block variable not set"});
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(RelationshipDetail, AClientsNullStringIsReplacedLikeAnyOther) {
    setUpClient();
    BSTR mine = nullptr;
    expectParam(pid);
    engine.expect({{param(pid, "Relationship")}, {"Relationship.DetailXML", L"<r/>"}});
    EXPECT_TRUE(client.yes(&_DIWrapper::GetRelationshipDetailData, pid, &mine));
    EXPECT_EQ(Bstr::adopt(mine).view(), L"<?xml version=\"1.0\"?>\r\n<r/>");
}

}  // namespace
}  // namespace vtdn::test
