// An occurrence saved: what the engine is asked and handed.
#include "fake_engine/object.h"
#include "occurrences/occurrence.h"
#include "operations/occurrences.h"
#include "support/late.h"

namespace vtdn::test {
namespace {

class SavedOccurrences : public OnOccurrences {
  protected:
    static std::vector<Call> calls(const Answer& answer) {
        return {{"Engine.SiteID", L"S1"},
                {"Occurrence(1).AffectedPID", 530001},
                {"Occurrence(1).Interval", L"1h"},
                {"Occurrence(1).StartDate", first},
                {"Occurrence(1).Event"},
                {"Event.OccDataXML", L"<o/>"},
                {"Engine.LongTermData"},
                {"LongTerm.SaveDataPoint('S1', 530001, '1h', 39448.25, Null, Null, False, '<o/>', "
                 "'OccEdit', '')",
                 answer}};
    }
    [[nodiscard]] bool save(_OccurrenceDataWrapper* object) const {
        return client.yes(&_DIWrapper::SaveOccurrence, object);
    }
    [[nodiscard]] Failure failSave(_OccurrenceDataWrapper* object) const {
        return client.failure(&_DIWrapper::SaveOccurrence, object);
    }
    /// A pointer that a careless client takes for an occurrence.
    template <class Other>
    static _OccurrenceDataWrapper* mistaken(Other* object) {
        return reinterpret_cast<_OccurrenceDataWrapper*>(object);
    }
    static const std::vector<std::string>& untouched() {
        static const std::vector<std::string> names = {"Engine", "Occurrence(1)"};
        return names;
    }

    Occurrence occurrence = listedOne();
};

TEST_F(SavedOccurrences, HandTheTextToTheEngineAndNeitherValueNorCode) {
    for (const auto& [answer, saved] :
         {std::pair{Answer(true), true}, {Answer(false), false}, {Answer(1), true}, {Answer(256), true}}) {
        engine.expect(calls(answer));
        EXPECT_EQ(save(occurrence.get()), saved);
        engine.verify();
        EXPECT_EQ(engine.alive(), untouched());
    }
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(SavedOccurrences, TravelUnchangedWhateverTheEngineSaysOfThem) {
    using namespace std::string_literals;
    const struct {
        std::wstring siteId;
        LONG tag;
        std::wstring interval;
        DATE start;
        std::wstring text;
        std::string handed;
    } rows[] = {
        {L"", 0, L"", 0, L"", "'', 0, '', 0, Null, Null, False, ''"},
        {L"Site <2>", -7, L" no interval ", -1.25, L"<o a=\"\xD83D\xDE00\">\r\n</o>",
         "'Site <2>', -7, ' no interval ', -1.25, Null, Null, False, '<o a=\"\xF0\x9F\x98\x80\">\r\n</o>'"},
        {L"S1", 2147483647, L"15m", 401768.5, L"x\0y"s,
         "'S1', 2147483647, '15m', 401768.5, Null, Null, False, 'x\0y'"s}};
    for (const auto& row : rows) {
        const auto text = [](const std::wstring& content) {
            return Answer(Variant::of(std::wstring_view(content)));
        };
        engine.expect({{"Engine.SiteID", text(row.siteId)},
                       {"Occurrence(1).AffectedPID", static_cast<int>(row.tag)},
                       {"Occurrence(1).Interval", text(row.interval)},
                       {"Occurrence(1).StartDate", row.start},
                       {"Occurrence(1).Event"},
                       {"Event.OccDataXML", text(row.text)},
                       {"Engine.LongTermData"},
                       {"LongTerm.SaveDataPoint(" + row.handed + ", 'OccEdit', '')", true}});
        EXPECT_TRUE(save(occurrence.get()));
        engine.verify();
    }
}

TEST_F(SavedOccurrences, NothingIsSavedAndNothingAskedWithoutAnObjectOrWithoutSetUp) {
    EXPECT_FALSE(save(nullptr));
    EXPECT_FALSE(Client().yes(&_DIWrapper::SaveOccurrence, occurrence.get())) << "a wrapper before set-up";
    EXPECT_FALSE(Client().yes(&_DIWrapper::SaveOccurrence, static_cast<_OccurrenceDataWrapper*>(nullptr)));
    engine.expect({{"Engine.Close"}});
    client.teardown();
    EXPECT_FALSE(save(occurrence.get()));
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(SavedOccurrences, AnObjectWithoutAnOccurrenceIsError91) {
    const auto detached = com::make<OccurrenceDataWrapper>();
    engine.expect({{"Engine.SiteID", L"S1"}});
    EXPECT_EQ(failSave(detached.get()).result, unsetObject);
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(SavedOccurrences, AnObjectOfAnotherClassIsError13AndNothingIsAsked) {
    const com::Ptr<IDispatch> stranger(new fake::EngineObject<IDispatch>);
    engine.expect({{"new DIDataPoint"}, {"Blank.Initialise(39448.25)"}});
    DataPoint point;
    EXPECT_EQ(client->MakeBlankDataPointWrapper(first, point.receive()), S_OK);
    for (_OccurrenceDataWrapper* const other :
         {mistaken(stranger.get()), mistaken(point.get()), mistaken(client.get())})
        EXPECT_EQ(clientNumber(failSave(other).result), 13);
    // An occurrence is no data point either.
    const Bstr hourly(L"1h");
    EXPECT_EQ(clientNumber(client
                               .failure(&_DIWrapper::UpdateLongTermDataPointXValue,
                                        reinterpret_cast<_DataPointBasicWrapper*>(occurrence.get()),
                                        LONG{530001}, hourly.get())
                               .result),
              13);
    Late late(client.get());
    for (IDispatch* const other :
         {stranger.get(), static_cast<IDispatch*>(point.get()), static_cast<IDispatch*>(client.get())}) {
        const Variant argument = Variant::of(other);
        EXPECT_EQ(late.call(L"SaveOccurrence", {argument.get()}), DISP_E_TYPEMISMATCH);
        EXPECT_EQ(late.bad, 0U);
    }
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(SavedOccurrences, AFailureOfAnyCallReachesTheClientAndNothingIsLeft) {
    const auto all = calls(true);
    for (std::size_t failing = 0; failing < all.size(); ++failing) {
        for (const bool explained : {true, false}) {
            for (std::size_t i = 0; i < failing; ++i) engine.expect({all[i]});
            engine.expect({{all[failing].text, explained ? engineFails() : Answer::failure(engineResult)}});
            const Failure failure = failSave(occurrence.get());
            EXPECT_EQ(failure.result, engineResult) << all[failing].text;
            if (explained) {
                EXPECT_EQ(failure, engineFailure()) << all[failing].text;
            }
            EXPECT_EQ(engine.alive(), untouched()) << all[failing].text;
        }
    }
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(SavedOccurrences, AnEventOrAManagerThatTheEngineDoesNotHandOutIsError91) {
    const auto all = calls(true);
    for (const std::size_t missing : {std::size_t{4}, std::size_t{6}}) {
        for (std::size_t i = 0; i < missing; ++i) engine.expect({all[i]});
        engine.expect({{all[missing].text, Answer::noObject()}});
        EXPECT_EQ(failSave(occurrence.get()).result, unsetObject) << all[missing].text;
        EXPECT_EQ(engine.alive(), untouched()) << all[missing].text;
    }
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(SavedOccurrences, ComeBackFromALateBoundClient) {
    Late late(client.get());
    Variant variable = Variant::of(static_cast<IDispatch*>(occurrence.get()));
    for (const VARIANT& argument : {variable.get(), ref(variable)}) {
        engine.expect(calls(true));
        ASSERT_EQ(late.call(L"SaveOccurrence", {argument}), S_OK);
        ASSERT_EQ(late.result.type(), VT_BOOL);
        EXPECT_EQ(late.result.get().boolVal, VARIANT_TRUE);
        engine.verify();
    }
    Variant none;
    for (const VARIANT& argument : {Variant::of(static_cast<IDispatch*>(nullptr)).get(), ref(none)}) {
        ASSERT_EQ(late.call(L"SaveOccurrence", {argument}), S_OK);
        EXPECT_EQ(late.result.get().boolVal, VARIANT_FALSE);
    }
}

}  // namespace
}  // namespace vtdn::test
