// Occurrences used from another apartment, through the marshaller of the engine's type library.
#include <oaidl.h>

#include "occurrence_call.h"
#include "support/other_apartment.h"

namespace vtdn::embedded::test {
namespace {

using vtdn::test::Handed;
using vtdn::test::inAnotherApartment;

/// The engine is registered as long as a test runs.
class EngineOtherApartment : public OnOccurrences {
  protected:
    EngineOtherApartment() { EXPECT_EQ(library.call("DllRegisterServer"), S_OK); }
    ~EngineOtherApartment() override { EXPECT_EQ(library.call("DllUnregisterServer"), S_OK); }
};

}  // namespace

TEST_F(EngineOtherApartment, AClientElsewhereListsUsesAndSavesOccurrences) {
    write(hourPid, hour(1), com::Variant::of(2.5F), 7);
    save(hour(1), excursionOf(exceededPid, true));
    save(hour(2), downtimeOf(downPid));
    for (const COINIT kind : {COINIT_MULTITHREADED, COINIT_APARTMENTTHREADED}) {
        const std::wstring reason = L"reason " + std::to_wstring(kind);
        Handed<DIQAManager> handed(com::Ptr<DIQAManager>(data.get()));
        inAnotherApartment(
            [&] {
                const engine::LongTermData there(handed.take());
                EXPECT_NE(there.get(), data.get());
                const auto pids = com::Variant::of(variantsOf({com::Variant::of(LONG{exceededPid})}).get());
                const auto found = listed(there, {.pids = pids});
                ASSERT_TRUE(found);
                ASSERT_EQ(found.count(), 1);
                const auto one = found.item(1);
                EXPECT_EQ(one.number(&DIOccurrence::get_AffectedPID), hourPid);
                EXPECT_EQ(one.text(&DIOccurrence::get_Interval).view(), L"1h");
                EXPECT_EQ(one.date(&DIOccurrence::get_StartDate), hour(1));
                EXPECT_EQ(one.value(&DIOccurrence::get_NValue).get().fltVal, 2.5F);
                EXPECT_EQ(one.value(&DIOccurrence::get_MC).get().lVal, 7);
                EXPECT_EQ(one.textValue().view(), L"2.5");
                const auto event = one.event();
                EXPECT_TRUE(event.flag(&DIOccurrenceEvent::get_HasExcursion));
                EXPECT_TRUE(event.flag(&DIOccurrenceEvent::get_Excursion_Excludable));
                EXPECT_EQ(event.number(&DIOccurrenceEvent::get_Excursion_LimitPID), limitPid);
                const com::Bstr text(reason);
                event.put(&DIOccurrenceEvent::put_Excursion_Reason, text.get());
                EXPECT_TRUE(saved(there, {.mayCreate = false, .occurrence = textIn(one)}));
                const auto point = foundPoint(there, {}, hour(1), hour(1));
                ASSERT_TRUE(point);
                EXPECT_EQ(point.event().text(&DIOccurrenceEvent::get_Excursion_Reason).view(), reason);
                EXPECT_FALSE(listed(there, {.first = hour(5)}));
            },
            kind);
        EXPECT_EQ(heard.take(), std::vector<std::wstring>{});
        EXPECT_EQ(list().item(1).event().text(&DIOccurrenceEvent::get_Excursion_Reason).view(), reason);
    }
}

TEST_F(EngineOtherApartment, RefusalsReachAClientElsewhereAndAreMessagesAtHome) {
    Handed<DIQAManager> handed(com::Ptr<DIQAManager>(data.get()));
    LONG filtered = 0;
    LONG damaged = 0;
    inAnotherApartment([&] {
        const engine::LongTermData there(handed.take());
        filtered = failureOf([&] { static_cast<void>(listed(there, {.filter = 3})); }).number;
        damaged = failureOf([&] { static_cast<void>(saved(there, {.occurrence = L"text"})); }).number;
    });
    EXPECT_EQ(filtered, 6);
    EXPECT_EQ(damaged, 5);
    // Not every marshaller carries the sentence.
    const auto messages = heard.take();
    ASSERT_EQ(messages.size(), 2U);
    EXPECT_NE(messages[0].find(L"filter 3"), std::wstring::npos) << messages[0];
    EXPECT_NE(messages[1].find(L"\"text\""), std::wstring::npos) << messages[1];
}

TEST_F(EngineOtherApartment, AnEventElsewhereOutlivesItsDataPointAtHome) {
    auto point = engine::DataPoint::create();
    Handed<DIOccurrenceEvent> handed(com::Ptr<DIOccurrenceEvent>(point.event().get()));
    point = engine::DataPoint();
    inAnotherApartment([&] {
        const engine::OccurrenceEvent event(handed.take());
        event.call(&DIOccurrenceEvent::AddDowntime);
        EXPECT_EQ(failureOf([&] { event.put(&DIOccurrenceEvent::put_Excursion_PID, LONG{1}); }).number, 91);
        event.put(&DIOccurrenceEvent::put_Downtime_PID, downPid);
        EXPECT_EQ(event.number(&DIOccurrenceEvent::get_Downtime_PID), downPid);
    });
}

}  // namespace vtdn::embedded::test
