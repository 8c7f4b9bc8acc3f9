// What the event of a data point says, and what is changed through it. It needs no engine.
#include <climits>

#include "occurrence_call.h"

namespace vtdn::embedded::test {
namespace {

using namespace std::string_literals;

using TextGetter = HRESULT (STDMETHODCALLTYPE DIOccurrenceEvent::*)(BSTR*);
using TextPutter = HRESULT (STDMETHODCALLTYPE DIOccurrenceEvent::*)(BSTR);

struct TextMember {
    TextGetter get;
    TextPutter put;
    bool ofExcursion;
};

constexpr TextMember texts[] = {
    {&DIOccurrenceEvent::get_Excursion_Category, &DIOccurrenceEvent::put_Excursion_Category, true},
    {&DIOccurrenceEvent::get_Excursion_Reason, &DIOccurrenceEvent::put_Excursion_Reason, true},
    {&DIOccurrenceEvent::get_Excursion_Action, &DIOccurrenceEvent::put_Excursion_Action, true},
    {&DIOccurrenceEvent::get_Downtime_Category, &DIOccurrenceEvent::put_Downtime_Category, false},
    {&DIOccurrenceEvent::get_Downtime_Reason, &DIOccurrenceEvent::put_Downtime_Reason, false},
    {&DIOccurrenceEvent::get_Downtime_Action, &DIOccurrenceEvent::put_Downtime_Action, false},
};

const std::wstring damagedTexts[] = {
    L"text",
    L"<Occurrence>",
    L"<Occurrence/>",
    L"<Other/>",
    L"<Occurrence><Excursion/></Occurrence>",
    L"<Occurrence><Excursion PID=\"1\" Excludable=\"0\" New=\"\"/></Occurrence>",
    L"<Occurrence><Downtime PID=\"1\" Excludable=\"0\"/><Downtime PID=\"2\" Excludable=\"0\"/></Occurrence>",
    std::wstring(L"\0", 1),
    anyText,
};

class EngineOccurrenceEvent : public testing::Test {
  protected:
    void put(std::wstring_view text) const {
        const com::Bstr given(text);
        point.put(&DIDataPoint::put_OccDataXML, given.get());
    }
    void putText(TextPutter member, std::wstring_view text) const {
        const com::Bstr given(text);
        event.put(member, given.get());
    }
    [[nodiscard]] std::wstring text(TextGetter member) const {
        return std::wstring(event.text(member).view());
    }
    [[nodiscard]] bool flag(engine::Getter<DIOccurrenceEvent, VARIANT_BOOL> member) const {
        return event.flag(member);
    }
    void addBoth() const {
        event.call(&DIOccurrenceEvent::AddExcursion);
        event.call(&DIOccurrenceEvent::AddDowntime);
    }
    void expectDefaults() const {
        for (const TextMember& member : texts) EXPECT_EQ(text(member.get), L"");
        EXPECT_EQ(text(&DIOccurrenceEvent::get_Excursion_Limit), L"");
        for (const auto number :
             {&DIOccurrenceEvent::get_Excursion_PID, &DIOccurrenceEvent::get_Excursion_LimitPID,
              &DIOccurrenceEvent::get_Downtime_PID})
            EXPECT_EQ(event.number(number), 0);
        EXPECT_FALSE(flag(&DIOccurrenceEvent::get_Excursion_Excludable));
        EXPECT_FALSE(flag(&DIOccurrenceEvent::get_Downtime_Excludable));
    }
    /// Every put of a part, which must all fail with this number.
    void expectPutsFail(LONG number, std::wstring_view wordOfExcursion,
                        std::wstring_view wordOfDowntime) const {
        const auto expectFailure = [&](bool ofExcursion, auto call) {
            const Failure failure = failureOf(call);
            EXPECT_EQ(failure.number, number);
            EXPECT_NE(failure.description.find(ofExcursion ? wordOfExcursion : wordOfDowntime),
                      std::wstring::npos)
                << failure.description;
        };
        for (const TextMember& member : texts)
            expectFailure(member.ofExcursion, [&] { putText(member.put, L"x"); });
        expectFailure(true, [&] { event.put(&DIOccurrenceEvent::put_Excursion_PID, LONG{1}); });
        expectFailure(false, [&] { event.put(&DIOccurrenceEvent::put_Downtime_PID, LONG{1}); });
        expectFailure(true, [&] { event.put(&DIOccurrenceEvent::put_Excursion_Excludable, VARIANT_TRUE); });
        expectFailure(false, [&] { event.put(&DIOccurrenceEvent::put_Downtime_Excludable, VARIANT_TRUE); });
    }

    EngineLibrary library;
    engine::DataPoint point = engine::DataPoint::create();
    engine::OccurrenceEvent event = point.event();
};

}  // namespace

TEST_F(EngineOccurrenceEvent, ABlankDataPointHasNoParts) {
    EXPECT_EQ(text(&DIOccurrenceEvent::get_OccDataXML), L"");
    EXPECT_FALSE(flag(&DIOccurrenceEvent::get_HasExcursion));
    EXPECT_FALSE(flag(&DIOccurrenceEvent::get_HasDowntime));
    expectDefaults();
    EXPECT_EQ(occurrenceOf(point), L"") << "Looking changes nothing";
}

TEST_F(EngineOccurrenceEvent, APartThatIsAddedIsBlank) {
    event.call(&DIOccurrenceEvent::AddExcursion);
    EXPECT_TRUE(flag(&DIOccurrenceEvent::get_HasExcursion));
    EXPECT_FALSE(flag(&DIOccurrenceEvent::get_HasDowntime));
    event.call(&DIOccurrenceEvent::AddDowntime);
    EXPECT_TRUE(flag(&DIOccurrenceEvent::get_HasExcursion));
    EXPECT_TRUE(flag(&DIOccurrenceEvent::get_HasDowntime));
    expectDefaults();
}

TEST_F(EngineOccurrenceEvent, WhatIsPutIntoAPartIsReadBackAndStandsInTheText) {
    addBoth();
    event.put(&DIOccurrenceEvent::put_Excursion_PID, exceededPid);
    event.put(&DIOccurrenceEvent::put_Excursion_Excludable, VARIANT_TRUE);
    event.put(&DIOccurrenceEvent::put_Downtime_PID, downPid);
    for (std::size_t i = 0; i < std::size(texts); ++i) putText(texts[i].put, L"text " + std::to_wstring(i));
    for (std::size_t i = 0; i < std::size(texts); ++i)
        EXPECT_EQ(text(texts[i].get), L"text " + std::to_wstring(i));
    EXPECT_EQ(event.number(&DIOccurrenceEvent::get_Excursion_PID), exceededPid);
    EXPECT_EQ(event.number(&DIOccurrenceEvent::get_Downtime_PID), downPid);
    EXPECT_TRUE(flag(&DIOccurrenceEvent::get_Excursion_Excludable));
    EXPECT_FALSE(flag(&DIOccurrenceEvent::get_Downtime_Excludable));

    store::Occurrence expected = bothOf(true, false);
    for (auto [part, first] : {std::pair<store::OccurrencePart*, int>{&*expected.excursion, 0},
                               std::pair<store::OccurrencePart*, int>{&*expected.downtime, 3}}) {
        part->category = "text " + std::to_string(first);
        part->reason = "text " + std::to_string(first + 1);
        part->action = "text " + std::to_string(first + 2);
    }
    EXPECT_EQ(text(&DIOccurrenceEvent::get_OccDataXML), xmlOf(expected));
    EXPECT_EQ(occurrenceOf(point), xmlOf(expected));
}

TEST_F(EngineOccurrenceEvent, FlagsAreZeroOrMinusOneAndAnyOtherNumberIsTrue) {
    addBoth();
    event.put(&DIOccurrenceEvent::put_Downtime_Excludable, VARIANT_BOOL{1});
    VARIANT_BOOL read = 0;
    com::check(event.get()->get_Downtime_Excludable(&read));
    EXPECT_EQ(read, VARIANT_TRUE);
    com::check(event.get()->get_HasDowntime(&read));
    EXPECT_EQ(read, VARIANT_TRUE);
    event.put(&DIOccurrenceEvent::put_Downtime_Excludable, VARIANT_FALSE);
    EXPECT_FALSE(flag(&DIOccurrenceEvent::get_Downtime_Excludable));
}

TEST_F(EngineOccurrenceEvent, APartThatIsThereAlreadyStaysAsItIs) {
    addBoth();
    event.put(&DIOccurrenceEvent::put_Excursion_PID, exceededPid);
    putText(&DIOccurrenceEvent::put_Downtime_Reason, L"reason");
    const std::wstring before = occurrenceOf(point);
    addBoth();
    EXPECT_EQ(occurrenceOf(point), before);
}

TEST_F(EngineOccurrenceEvent, PartsThatAreNotThereRefuseWhatIsPut) {
    expectPutsFail(91, L"AddExcursion", L"AddDowntime");
    EXPECT_EQ(occurrenceOf(point), L"");
    event.call(&DIOccurrenceEvent::AddExcursion);
    const std::wstring before = occurrenceOf(point);
    EXPECT_EQ(failureOf([&] { event.put(&DIOccurrenceEvent::put_Downtime_PID, LONG{1}); }).number, 91);
    EXPECT_EQ(occurrenceOf(point), before);
}

TEST_F(EngineOccurrenceEvent, AnyTextSurvives) {
    addBoth();
    const std::vector<std::wstring> any{anyText,
                                        L"<&>\"'",
                                        L" leading, trailing and  double blanks ",
                                        L"\r\n\t\n\r",
                                        L"\\ \\\\ \\0041 \\n",
                                        L"\x01\x1F\x7F\xFFFE\xFFFF"s,
                                        L"\0\0"s,
                                        L"\U0001F3ED \u20AC \u00E9",
                                        L"]]><!-- -->",
                                        std::wstring(5'000, L'x')};
    for (const std::wstring& one : any)
        for (const TextMember& member : texts) {
            putText(member.put, one);
            EXPECT_EQ(text(member.get), one);
            // The way through the store's text, too.
            const auto other = engine::DataPoint::create();
            const com::Bstr xml(occurrenceOf(point));
            other.put(&DIDataPoint::put_OccDataXML, xml.get());
            EXPECT_EQ(other.event().text(member.get).view(), one);
        }
    putText(texts[0].put, L"");
    EXPECT_EQ(text(texts[0].get), L"");
}

TEST_F(EngineOccurrenceEvent, TextsThatCannotBeKeptAreRefusedAndLeaveTheOldOnes) {
    addBoth();
    for (const TextMember& member : texts) putText(member.put, L"old");
    const std::wstring before = occurrenceOf(point);
    // The third is short enough by itself and not as it has to be written.
    for (const std::wstring& bad :
         {std::wstring(L"\xD83C!"), std::wstring(65'536, L'x'), std::wstring(20'000, L'\x01')})
        for (const TextMember& member : texts)
            EXPECT_EQ(failureOf([&] { putText(member.put, bad); }).number, 5);
    EXPECT_EQ(occurrenceOf(point), before);
    for (const TextMember& member : texts) EXPECT_EQ(text(member.get), L"old");
}

TEST_F(EngineOccurrenceEvent, AnOccurrenceAsLongAsATextMayBeIsTaken) {
    addBoth();
    const std::size_t rest = store::longestText - occurrenceOf(point).size() - std::size(L" Reason=\"\"") + 1;
    putText(&DIOccurrenceEvent::put_Downtime_Reason, std::wstring(rest, L'x'));
    EXPECT_EQ(occurrenceOf(point).size(), store::longestText);
    EXPECT_EQ(failureOf([&] {
                  putText(&DIOccurrenceEvent::put_Downtime_Reason, std::wstring(rest + 1, L'x'));
              }).number,
              5);
}

TEST_F(EngineOccurrenceEvent, ATextThatIsPutIntoTheDataPointShowsInItsEvent) {
    store::Occurrence occurrence = excursionOf(exceededPid, true);
    occurrence.excursion->limit_pid = limitPid;
    occurrence.excursion->limit = "0.5 lb/mmBtu";
    put(xmlOf(occurrence));
    EXPECT_TRUE(flag(&DIOccurrenceEvent::get_HasExcursion));
    EXPECT_EQ(event.number(&DIOccurrenceEvent::get_Excursion_PID), exceededPid);
    EXPECT_EQ(event.number(&DIOccurrenceEvent::get_Excursion_LimitPID), limitPid);
    EXPECT_EQ(text(&DIOccurrenceEvent::get_Excursion_Limit), L"0.5 lb/mmBtu");
    put(xmlOf(downtimeOf(downPid)));
    EXPECT_FALSE(flag(&DIOccurrenceEvent::get_HasExcursion));
    EXPECT_TRUE(flag(&DIOccurrenceEvent::get_HasDowntime));
    put(L"");
    EXPECT_FALSE(flag(&DIOccurrenceEvent::get_HasDowntime));
}

TEST_F(EngineOccurrenceEvent, TheLimitStaysWhenAnotherMemberChanges) {
    store::Occurrence occurrence = excursionOf(exceededPid);
    occurrence.excursion->limit_pid = limitPid;
    occurrence.excursion->limit = "0.5 lb/mmBtu";
    put(xmlOf(occurrence));
    putText(&DIOccurrenceEvent::put_Excursion_Reason, L"startup");
    occurrence.excursion->reason = "startup";
    EXPECT_EQ(occurrenceOf(point), xmlOf(occurrence));
}

TEST_F(EngineOccurrenceEvent, AllEventsOfADataPointShowTheSame) {
    const auto another = point.event();
    another.call(&DIOccurrenceEvent::AddDowntime);
    EXPECT_TRUE(flag(&DIOccurrenceEvent::get_HasDowntime));
    point.initialise(hour(1));
    EXPECT_FALSE(flag(&DIOccurrenceEvent::get_HasDowntime));
    EXPECT_FALSE(another.flag(&DIOccurrenceEvent::get_HasDowntime));
}

TEST_F(EngineOccurrenceEvent, ADamagedTextIsGivenBackAndNotLookedInto) {
    for (const std::wstring& damaged : damagedTexts) {
        put(damaged);
        EXPECT_EQ(text(&DIOccurrenceEvent::get_OccDataXML), damaged);
        for (const auto& member : {&DIOccurrenceEvent::get_HasExcursion, &DIOccurrenceEvent::get_HasDowntime,
                                   &DIOccurrenceEvent::get_Downtime_Excludable}) {
            const Failure failure = failureOf([&] { static_cast<void>(flag(member)); });
            EXPECT_EQ(failure.number, E_FAIL) << damaged;
            EXPECT_GT(failure.description.size(), 20U);
        }
        for (const TextMember& member : texts)
            EXPECT_EQ(failureOf([&] { static_cast<void>(text(member.get)); }).number, E_FAIL);
        EXPECT_EQ(failureOf([&] { event.call(&DIOccurrenceEvent::AddExcursion); }).number, E_FAIL);
        EXPECT_EQ(failureOf([&] { event.call(&DIOccurrenceEvent::AddDowntime); }).number, E_FAIL);
        expectPutsFail(E_FAIL, L"", L"");
        EXPECT_EQ(occurrenceOf(point), damaged) << "Nothing of it is lost";
    }
    put(xmlOf(downtimeOf(downPid)));
    EXPECT_TRUE(flag(&DIOccurrenceEvent::get_HasDowntime));
}

TEST_F(EngineOccurrenceEvent, AnEventOutlivesItsDataPoint) {
    event.call(&DIOccurrenceEvent::AddDowntime);
    point = engine::DataPoint();
    putText(&DIOccurrenceEvent::put_Downtime_Reason, L"calibration");
    EXPECT_EQ(text(&DIOccurrenceEvent::get_Downtime_Reason), L"calibration");
    EXPECT_NE(text(&DIOccurrenceEvent::get_OccDataXML).find(L"calibration"), std::wstring::npos);
}

TEST_F(EngineOccurrenceEvent, AnyNumberIsAPid) {
    addBoth();
    for (const LONG pid : {0L, -1L, 7L, LONG_MAX, LONG_MIN}) {
        event.put(&DIOccurrenceEvent::put_Excursion_PID, pid);
        const auto other = engine::DataPoint::create();
        const com::Bstr xml(occurrenceOf(point));
        other.put(&DIDataPoint::put_OccDataXML, xml.get());
        EXPECT_EQ(other.event().number(&DIOccurrenceEvent::get_Excursion_PID), pid);
    }
}

TEST_F(EngineOccurrenceEvent, NullPointersAreRefused) {
    EXPECT_EQ(point.get()->get_Event(nullptr), E_POINTER);
    DIOccurrenceEvent* const raw = event.get();
    EXPECT_EQ(raw->get_OccDataXML(nullptr), E_POINTER);
    for (const TextMember& member : texts) EXPECT_EQ((raw->*member.get)(nullptr), E_POINTER);
    for (const auto member :
         {&DIOccurrenceEvent::get_HasExcursion, &DIOccurrenceEvent::get_HasDowntime,
          &DIOccurrenceEvent::get_Excursion_Excludable, &DIOccurrenceEvent::get_Downtime_Excludable})
        EXPECT_EQ((raw->*member)(nullptr), E_POINTER);
    for (const auto member :
         {&DIOccurrenceEvent::get_Excursion_PID, &DIOccurrenceEvent::get_Excursion_LimitPID,
          &DIOccurrenceEvent::get_Downtime_PID})
        EXPECT_EQ((raw->*member)(nullptr), E_POINTER);
    EXPECT_EQ(raw->get_Excursion_Limit(nullptr), E_POINTER);
    event.call(&DIOccurrenceEvent::AddExcursion);
    EXPECT_EQ(raw->put_Excursion_Reason(nullptr), S_OK) << "A null text is an empty one";
}

}  // namespace vtdn::embedded::test
