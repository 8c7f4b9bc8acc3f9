// An occurrence's object: what it has itself, its failures and its end, with an occurrence of the engine
// behind it and without.
#include "occurrences/occurrence.h"

#include <functional>
#include <string>
#include <vector>

#include "operations/occurrence_members.h"

namespace vtdn::test {
namespace {

TEST_F(OccurrenceMembers, TheAffectedPidAndTheStartAreTheEngines) {
    for (const LONG number : {530001L, 0L, -7L}) {
        engine.expect({{"Occurrence(1).AffectedPID", static_cast<int>(number)}});
        EXPECT_EQ(read(occurrence, &I::get_AffectedPID), number);
    }
    for (const double start : {0.0, first, -1.5, 401768.99999}) {
        engine.expect({{"Occurrence(1).StartDate", start}});
        EXPECT_EQ(read(occurrence, &I::get_StartDate), start);
    }
}

TEST_F(OccurrenceMembers, ValueAndMonitorCodeAreWhateverTheEngineHas) {
    for (const auto& [call, property] :
         {std::pair{"Occurrence(1).NValue", &I::get_NValue}, {"Occurrence(1).MC", &I::get_MC}}) {
        for (const Variant& value : {Variant::null(), Variant(), Variant::of(LONG{12}), Variant::of(-12.5),
                                     Variant::of(12.5F), Variant::ofBool(true), Variant::of(L"12.5"),
                                     Variant::of(L"no number"), Variant::ofDate(first), Variant::missing()}) {
            engine.expect({{call, value}});
            const Variant got = readValue(occurrence, property);
            ASSERT_EQ(got.type(), value.type()) << call;
            if (value.type() == VT_BSTR) {
                EXPECT_EQ(com::view(got.get().bstrVal), com::view(value.get().bstrVal));
            } else if (value.type() == VT_I4) {
                EXPECT_EQ(got.get().lVal, value.get().lVal);
            } else if (value.type() == VT_R8) {
                EXPECT_EQ(got.get().dblVal, value.get().dblVal);
            }
        }
    }
}

TEST_F(OccurrenceMembers, TheTextValueIsAskedForWithoutAStringServer) {
    for (const wchar_t* text : {L"5680.5", L"", L"<&> \xD83D\xDE00"}) {
        engine.expect({{"Occurrence(1).TextValue(Nothing)", text}});
        EXPECT_EQ(readText(occurrence, &I::get_TextValue), text);
    }
    engine.expect({{"Occurrence(1).TextValue(Nothing)"}});  // a null string
    EXPECT_EQ(readText(occurrence, &I::get_TextValue), L"");
}

TEST_F(OccurrenceMembers, WhetherThereIsAPartIsAskedOfTheEvent) {
    for (const auto& [has, property] : {std::pair{"Event.HasExcursion", &I::get_HasExcursion},
                                        {"Event.HasDowntime", &I::get_HasDowntime}}) {
        for (const auto& [answer, seen] : {std::pair{Answer(true), VARIANT_TRUE},
                                           {Answer(false), VARIANT_FALSE},
                                           {Answer(1), VARIANT_TRUE},
                                           {Answer(256), VARIANT_TRUE}}) {
            engine.expect({{"Occurrence(1).Event"}, {has, answer}});
            EXPECT_EQ(read(occurrence, property), seen) << has;
            EXPECT_EQ(engine.alive(), untouched());
        }
        engine.expect({{"Occurrence(1).Event", Answer::noObject()}});
        EXPECT_EQ(read(occurrence, property), VARIANT_FALSE) << "without an event";
    }
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(OccurrenceMembers, EveryFailureOfTheEngineReachesTheClientWithoutAProblem) {
    for (const PartMember& member : members()) {
        std::wstring ignored;
        failEach(reading(member), [&](I& object) { return member.get(object, ignored); });
        if (member.put) failEach(writing(member), member.put);
    }
    for (const auto property : {&I::get_HasExcursion, &I::get_HasDowntime}) {
        const bool excursion = property == &I::get_HasExcursion;
        failEach({{"Occurrence(1).Event"}, {excursion ? "Event.HasExcursion" : "Event.HasDowntime"}},
                 [property](I& object) {
                     VARIANT_BOOL result = VARIANT_TRUE;
                     const HRESULT got = (object.*property)(&result);
                     EXPECT_EQ(result, VARIANT_FALSE);
                     return got;
                 });
    }
    for (const auto& [call, property] :
         {std::pair{"Occurrence(1).NValue", &I::get_NValue}, {"Occurrence(1).MC", &I::get_MC}}) {
        failEach({{call}}, [property = property](I& object) {
            VARIANT result{};
            const HRESULT got = (object.*property)(&result);
            EXPECT_EQ(result.vt, VT_EMPTY);
            return got;
        });
    }
    failEach({{"Occurrence(1).AffectedPID"}}, [](I& object) {
        LONG result = 7;
        const HRESULT got = object.get_AffectedPID(&result);
        EXPECT_EQ(result, 0);
        return got;
    });
    failEach({{"Occurrence(1).StartDate"}}, [](I& object) {
        DATE result = 7;
        const HRESULT got = object.get_StartDate(&result);
        EXPECT_EQ(result, 0);
        return got;
    });
    failEach({{"Occurrence(1).TextValue(Nothing)"}}, [](I& object) {
        BSTR result = nullptr;
        const HRESULT got = object.get_TextValue(&result);
        EXPECT_EQ(result, nullptr);
        return got;
    });
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(OccurrenceMembers, ANullPointerForAResultIsRefusedWithoutAskingTheEngine) {
    for (const auto property :
         {&I::get_AffectedPID, &I::get_Excursion_PID, &I::get_Downtime_PID, &I::get_Excursion_LimitPID})
        EXPECT_EQ(failure<LONG>(property, nullptr).result, E_POINTER);
    for (const auto property : {&I::get_NValue, &I::get_MC})
        EXPECT_EQ(failure<VARIANT>(property, nullptr).result, E_POINTER);
    for (const auto property : {&I::get_HasExcursion, &I::get_HasDowntime, &I::get_Excursion_Excludable,
                                &I::get_Downtime_Excludable})
        EXPECT_EQ(failure<VARIANT_BOOL>(property, nullptr).result, E_POINTER);
    for (const auto property : {&I::get_TextValue, &I::get_Excursion_Action, &I::get_Downtime_Action,
                                &I::get_Excursion_Reason, &I::get_Downtime_Reason, &I::get_Excursion_Category,
                                &I::get_Downtime_Category, &I::get_Excursion_Limit})
        EXPECT_EQ(failure<BSTR>(property, nullptr).result, E_POINTER);
    EXPECT_EQ(failure<DATE>(&I::get_StartDate, nullptr).result, E_POINTER);
}

TEST_F(OccurrenceMembers, TheEnginesOccurrenceEndsWithTheObject) {
    client.release();
    EXPECT_EQ(engine.alive(), std::vector<std::string>{"Occurrence(1)"});
    engine.expect({{"Occurrence(1).StartDate", first}});
    EXPECT_EQ(read(occurrence, &I::get_StartDate), first);
    occurrence.reset();
    EXPECT_TRUE(engine.alive().empty());
    client = Client();
}

/// An object without an occurrence, which no operation hands out.
TEST(DetachedOccurrence, ReadsAsNothingAndIgnoresWhatIsWritten) {
    const auto object = com::make<OccurrenceDataWrapper>();
    const Occurrence occurrence(object.get());
    EXPECT_EQ(read(occurrence, &I::get_AffectedPID), 0);
    EXPECT_TRUE(readValue(occurrence, &I::get_NValue).isNull());
    EXPECT_EQ(readText(occurrence, &I::get_TextValue), L"");
    EXPECT_TRUE(readValue(occurrence, &I::get_MC).isNull());
    EXPECT_EQ(read(occurrence, &I::get_StartDate), 0);
    EXPECT_EQ(read(occurrence, &I::get_HasExcursion), VARIANT_FALSE);
    EXPECT_EQ(read(occurrence, &I::get_HasDowntime), VARIANT_FALSE);
    for (const PartMember& member : members()) {
        std::wstring text;
        if (member.put) {
            EXPECT_EQ(member.put(*occurrence.get()), S_OK) << member.name;
        }
        EXPECT_EQ(member.get(*occurrence.get(), text), S_OK) << member.name;
        EXPECT_EQ(text, member.none) << member.name;
    }
}

}  // namespace
}  // namespace vtdn::test
