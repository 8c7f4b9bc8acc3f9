// An occurrence created or retrieved: its steps in their order, and the problems of each.
#include <utility>

#include "operations/create_occurrence.h"
#include "support/late.h"

namespace vtdn::test {
namespace {

class CreatedOccurrences : public OnCreatedOccurrences {
  protected:
    CreatedOccurrences() { setUpClient(); }
};

TEST_F(CreatedOccurrences, WithoutSetUpThereIsNothingAndNoProblem) {
    engine.expect({{"Engine.Close"}});
    client.teardown();
    EXPECT_FALSE(create());
    EXPECT_EQ(client.problems(), L"");
    const Client fresh;
    Occurrence none;
    EXPECT_EQ(fresh->CreateOrRetrieveOccurrence(occPid, when, none.receive()), S_OK);
    EXPECT_FALSE(none);
    EXPECT_EQ(fresh->CreateOrRetrieveOccurrence(occPid, when, nullptr), E_POINTER);
    EXPECT_EQ(fresh.problems(), L"");
}

// ---- The data point

TEST_F(CreatedOccurrences, AFoundDataPointGetsThePartThatItLacks) {
    for (const LONG type : {excursion, downtime}) {
        // The other part does not matter.
        for (const bool other : {false, true}) {
            Engine has;
            has.type = Variant::of(type);
            has.hasExcursion = type == downtime && other;
            has.hasDowntime = type == excursion && other;
            engine.expect(allCalls(has));
            expectCreated();
        }
    }
}

TEST_F(CreatedOccurrences, AFoundDataPointKeepsThePartThatItHasAndIsSavedAllTheSame) {
    for (const LONG type : {excursion, downtime}) {
        Engine has;
        has.type = Variant::of(type);
        has.hasExcursion = true;
        has.hasDowntime = true;
        engine.expect(allCalls(has));
        expectCreated();
    }
}

TEST_F(CreatedOccurrences, AFoundDataPointIsSavedAsItIsForAnyOtherType) {
    for (const LONG type : {0, 2, 5, -3, 31}) {
        Engine has;
        has.type = Variant::of(type);
        engine.expect(allCalls(has));
        expectCreated();
    }
}

TEST_F(CreatedOccurrences, ANewDataPointGetsItsPartWithoutAQuestion) {
    for (const LONG type : {excursion, downtime}) {
        Engine has;
        has.type = Variant::of(type);
        has.found = false;
        engine.expect(allCalls(has));
        expectCreated();
    }
}

TEST_F(CreatedOccurrences, AnUnknownTypeOfANewDataPointIsAProblemThatStopsNothing) {
    for (const LONG type : {0, 2, 5, -3}) {
        Engine has;
        has.type = Variant::of(type);
        has.found = false;
        engine.expect(allCalls(has));
        EXPECT_TRUE(create());
        EXPECT_EQ(client.problemTexts(),
                  std::vector<std::wstring>{std::wstring(L"Unknown occurrence type specified for PID ") +
                                            tagPidText + L" (WDN-0061)"});
        EXPECT_EQ(engine.alive(), std::vector<std::string>{"Engine"});
    }
}

TEST_F(CreatedOccurrences, WhatTheDataPointHoldsIsSavedAsItIs) {
    const struct {
        Variant value;
        Variant mc;
        std::wstring text;
        DATE stamp;
        std::string handed;
    } rows[] = {{Variant::null(), Variant::null(), L"", 39448.25, "39448.25, Null, Null, True, ''"},
                {Variant(), Variant(), L" ", 39448, "39448, Empty, Empty, True, ' '"},
                {Variant::of(L"12.5"), Variant::of(L"no code"), L"<o a=\"\xD83D\xDE00\">\r\n</o>", -1.25,
                 "-1.25, BSTR '12.5', BSTR 'no code', True, '<o a=\"\xF0\x9F\x98\x80\">\r\n</o>'"}};
    for (const auto& row : rows) {
        Engine has;
        engine.expect(asked(has));
        engine.expect(lookedFor(has));
        engine.expect(added(has));
        engine.expect(
            {{"Engine.SiteID", L"another"},
             {"Found.TStamp", row.stamp},
             {"Found.NValue", row.value},
             {"Found.MC", row.mc},
             {"Found.OccDataXML", Variant::of(std::wstring_view(row.text))},
             {"Engine.SelectedDahs"},
             {"Dahs.EditUserName", L""},
             {"Engine.LongTermData"},
             {"LongTerm.SaveDataPoint('another', 123456789, '1h', " + row.handed + ", 'OccEdit', '')",
              1}});  // an unusual True
        engine.expect(readBack(1));
        engine.expect({{"Occurrences.Item(1)"}});
        expectCreated();
    }
}

// ---- Intervals and spans

TEST_F(CreatedOccurrences, TheIntervalTextIsMadeOfItsSeconds) {
    const std::pair<Variant, const char*> rows[] = {{Variant::of(LONG{60}), "1m"},
                                                    {Variant::of(LONG{3600}), "1h"},
                                                    {Variant::of(LONG{900}), "15m"},
                                                    {Variant::of(LONG{90}), "90s"},
                                                    {Variant::of(LONG{86400}), "1d"},
                                                    {Variant::of(LONG{172800}), "2d"},
                                                    {Variant::of(LONG{7200}), "2h"},
                                                    {Variant::of(LONG{5400}), "90m"},
                                                    {Variant::of(LONG{90000}), "25h"},
                                                    {Variant::of(LONG{2678400}), "31d"},
                                                    {Variant::of(LONG{59}), "59s"},
                                                    {Variant::of(LONG{1}), "1s"},
                                                    {Variant::of(LONG{0}), "0s"},
                                                    {Variant::of(LONG{2147483647}), "2147483647s"},
                                                    {Variant::of(900.0), "15m"},
                                                    {Variant::of(60.0F), "1m"},
                                                    {Variant::of(L"3600"), "1h"},
                                                    {Variant::of(L" 900 "), " 900 s"},
                                                    // No count and no unit: as it is.
                                                    {Variant::of(LONG{-60}), "-60s"},
                                                    {Variant::of(0.5), "0.5s"},
                                                    {Variant::of(L"1h"), "1hs"},
                                                    {Variant::of(L"abc"), "abcs"},
                                                    {Variant::of(L"2147483648"), "2147483648s"}};
    for (const auto& [seconds, interval] : rows) {
        SCOPED_TRACE(interval);
        Engine has;
        has.seconds = seconds;
        has.interval = interval;
        engine.expect(allCalls(has));
        expectCreated();
    }
}

TEST_F(CreatedOccurrences, TheSpanIsOneSecondAroundTheTime) {
    const auto at = [](double day, int seconds) { return fake::number(day + seconds / 86400.0); };
    const struct {
        DATE time;
        std::string span;
    } rows[] = {{39448, at(39447, 86399) + ", " + at(39448, 1)},
                {39448.5, at(39448, 43199) + ", " + at(39448, 43201)},
                {39448 + 86399 / 86400.0, at(39448, 86398) + ", " + at(39449, 0)},
                // Less than a second is rounded to the nearest.
                {39448.5 + 0.4 / 86400, at(39448, 43199) + ", " + at(39448, 43201)},
                {39448.5 - 0.4 / 86400, at(39448, 43199) + ", " + at(39448, 43201)},
                // Before 30 December 1899 the fraction still counts forward from midnight.
                {-1.25, fake::number(-1 - 21599 / 86400.0) + ", " + fake::number(-1 - 21601 / 86400.0)},
                {0, fake::number(-1 - 86399 / 86400.0) + ", " + at(0, 1)}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.span);
        const Engine has;
        engine.expect(asked(has));
        engine.expect({{"Engine.SiteID", L"S1"},
                       {"Engine.LongTermData"},
                       {"LongTerm.FindDataPoint('S1', 123456789, '1h', " + row.span + ")"}});
        engine.expect(added(has));
        engine.expect(saved(has, true));
        engine.expect({{"Engine.SiteID", L"S1"},
                       {"Engine.LongTermData"},
                       {"LongTerm.GetOccurrences('S1', " + row.span + ", True, True, 0, True, I4 101000501)"},
                       {"Occurrences.Count", 1},
                       {"Occurrences.Item(1)"}});
        EXPECT_TRUE(create(row.time));
        engine.verify();
        EXPECT_EQ(client.problems(), L"");
    }
}

TEST_F(CreatedOccurrences, ANewDataPointBeginsAtTheTimeItself) {
    Engine has;
    has.found = false;
    has.type = Variant::of(LONG{0});
    const DATE time = 39448.5 + 0.4 / 86400;
    engine.expect(asked(has));
    engine.expect({{"Engine.SiteID", L"S1"},
                   {"Engine.LongTermData"},
                   {"LongTerm.FindDataPoint('S1', 123456789, '1h', " + fake::number(39448 + 43199 / 86400.0) +
                        ", " + fake::number(39448 + 43201 / 86400.0) + ")",
                    Answer::noObject()},
                   {"new DIDataPoint"},
                   {"Blank.Initialise(" + fake::number(time) + ")", engineFails()}});
    EXPECT_FALSE(create(time));
    EXPECT_EQ(client.problemTexts(),
              std::vector<std::wstring>{trapped(L"-2147216844 The database is away.")});
}

// ---- Problems

TEST_F(CreatedOccurrences, AnUnknownPidIsAProblem) {
    engine.expect({{"Engine.Params"}, {"Params.Exists(101000501)", false}});
    expectNothing({std::wstring(L"PID ") + occPidText + L" does not exist (WDN-0065)"});
    // An ill-formed PID has no display form.
    engine.expect({{"Engine.Params"}, {"Params.Exists(7)", false}});
    Occurrence none;
    EXPECT_EQ(client->CreateOrRetrieveOccurrence(7, when, none.receive()), S_OK);
    EXPECT_EQ(client.problemTexts(), std::vector<std::wstring>{L"PID  does not exist (WDN-0065)"});
}

TEST_F(CreatedOccurrences, AParameterOfAnotherIoTypeIsAProblem) {
    for (const int type : {0, 4, 30, 32, 38, -31}) {
        engine.expect({{"Engine.Params"},
                       {"Params.Exists(101000501)", 1},
                       {"Params.Item(101000501, -1)"},
                       {"Param(101000501).IOType", type}});
        expectNothing({std::wstring(L"PID ") + occPidText + L" is not an occurrence parameter (WDN-0060)"});
    }
}

TEST_F(CreatedOccurrences, ASaveThatTheEngineRefusesIsAProblem) {
    for (const bool found : {true, false}) {
        Engine has;
        has.found = found;
        engine.expect(asked(has));
        engine.expect(lookedFor(has));
        engine.expect(added(has));
        engine.expect(saved(has, false));
        expectNothing(
            {std::wstring(L"Unable to update occurrence data for PID ") + tagPidText + L" (WDN-0064)"});
    }
}

TEST_F(CreatedOccurrences, ReadingBackNothingOrNotExactlyOneIsAProblem) {
    const std::wstring text = std::wstring(L"Error in retrieving occurrence data for PID ") + tagPidText;
    const Engine has;
    const auto expectSaved = [&] {
        engine.expect(asked(has));
        engine.expect(lookedFor(has));
        engine.expect(added(has));
        engine.expect(saved(has, true));
    };
    auto none = readBack(0);
    none[2].answer = Answer::noObject();
    none.pop_back();
    expectSaved();
    engine.expect(none);
    expectNothing({text + L" (WDN-0062)"});
    for (const int count : {0, 2, 100, -1}) {
        expectSaved();
        engine.expect(readBack(count));
        expectNothing({text + L" (WDN-0063)"});
    }
}

TEST_F(CreatedOccurrences, AnUnknownTypeCanBeFollowedByAnotherProblem) {
    Engine has;
    has.type = Variant::of(LONG{5});
    has.found = false;
    engine.expect(asked(has));
    engine.expect(lookedFor(has));
    engine.expect(added(has));
    engine.expect(saved(has, Answer(false).message(1, L"The data database is full.")));
    expectNothing({std::wstring(L"Unknown occurrence type specified for PID ") + tagPidText + L" (WDN-0061)",
                   L"The data database is full.",
                   std::wstring(L"Unable to update occurrence data for PID ") + tagPidText + L" (WDN-0064)"});
}

TEST_F(CreatedOccurrences, AnIllFormedTagShowsAsNothing) {
    Engine has;
    has.tag = Variant::of(LONG{7});
    engine.expect(asked(has));
    engine.expect({{"Engine.SiteID", L"S1"},
                   {"Engine.LongTermData"},
                   {std::string("LongTerm.FindDataPoint('S1', 7, '1h', ") + span + ")"}});
    engine.expect(added(has));
    auto save = saved(has, false);
    save.back() = {
        "LongTerm.SaveDataPoint('S1', 7, '1h', 39448.25, R8 12.5, I4 1, True, '<o/>', 'OccEdit', "
        "'operator')",
        false};
    engine.expect(save);
    expectNothing({L"Unable to update occurrence data for PID  (WDN-0064)"});
}

// ---- Clients

TEST_F(CreatedOccurrences, TheObjectIsTheOccurrenceThatWasReadBack) {
    engine.expect(allCalls({}));
    const Occurrence occurrence = create();
    ASSERT_TRUE(occurrence);
    engine.expect({{"Occurrence(1).AffectedPID", 123456789},
                   {"Engine.SiteID", L"S1"},
                   {"Occurrence(1).AffectedPID", 123456789},
                   {"Occurrence(1).Interval", L"1h"},
                   {"Occurrence(1).StartDate", when},
                   {"Occurrence(1).Event"},
                   {"Event.OccDataXML", L"<o/>"},
                   {"Engine.LongTermData"},
                   {"LongTerm.SaveDataPoint('S1', 123456789, '1h', 39448.25, Null, Null, False, '<o/>', "
                    "'OccEdit', '')",
                    true}});
    EXPECT_EQ(read(occurrence, &_OccurrenceDataWrapper::get_AffectedPID), tagPid);
    EXPECT_TRUE(client.yes(&_DIWrapper::SaveOccurrence, occurrence.get()));
}

TEST_F(CreatedOccurrences, AClientMayTearDownInTheMiddle) {
    const Engine has;
    auto calls = allCalls(has);
    calls[9].answer = Answer().during([this] { client.teardown(); });
    calls.insert(calls.begin() + 10, Call("Engine.Close"));
    engine.expect(calls);
    EXPECT_TRUE(create());
    engine.verify();
    EXPECT_TRUE(engine.alive().empty());
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(CreatedOccurrences, ALateBoundClientGetsAnObjectOrNothing) {
    Late late(client.get());
    const std::vector<VARIANT> arguments = {Variant::of(occPid).get(), Variant::ofDate(when).get()};
    engine.expect(allCalls({}));
    ASSERT_EQ(late.call(L"CreateOrRetrieveOccurrence", arguments), S_OK);
    ASSERT_EQ(late.result.type(), VT_DISPATCH);
    ASSERT_TRUE(late.result.get().pdispVal);
    engine.expect({{"Engine.Params"}, {"Params.Exists(101000501)", false}});
    ASSERT_EQ(late.call(L"createorretrieveoccurrence", arguments), S_OK);
    ASSERT_EQ(late.result.type(), VT_DISPATCH);
    EXPECT_FALSE(late.result.get().pdispVal);
    EXPECT_EQ(client.problemTexts().size(), 1U);
}

}  // namespace
}  // namespace vtdn::test
