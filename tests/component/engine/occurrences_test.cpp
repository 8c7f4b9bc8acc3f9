// Lists of occurrences: which ones, in which order, and what each one says.
#include <climits>
#include <cmath>
#include <optional>

#include "occurrence_call.h"

namespace vtdn::embedded::test {
namespace {

class EngineOccurrences : public OnOccurrences {
  protected:
    /// A query that must be refused; the sentence must hold all of the words.
    LONG refusedQuery(const Query& query, const std::vector<std::wstring>& words = {}) {
        const Failure failure = refusedCall([&] { static_cast<void>(listed(data, query)); });
        for (const std::wstring& word : words)
            EXPECT_NE(failure.description.find(word), std::wstring::npos) << failure.description;
        return failure.number;
    }
    /// Four hours: an excursion and a downtime that count, and one of each that may be excluded.
    void fourKinds() {
        save(hour(1), excursionOf(exceededPid));
        save(hour(2), downtimeOf(downPid));
        save(hour(3), excursionOf(exceededPid, true));
        save(hour(4), downtimeOf(downPid, true));
    }
    /// Changes the stored texts of the downtimes and excursions that the condition chooses.
    void damage(const std::string& condition) const {
        store::Site site(connections(), "DEMO");
        const std::string change =
            "UPDATE data_point_text SET occurrence = replace(occurrence, '51010300', '51010309') WHERE " +
            condition;
        site.database(store::DatabaseKind::data).execute(change.c_str());
    }
    [[nodiscard]] static com::Variant arrayIn(SAFEARRAY* array, VARTYPE type = VT_I4) {
        com::Variant list;
        list.inOut()->vt = static_cast<VARTYPE>(VT_ARRAY | type);
        list.inOut()->parray = array;
        return list;
    }
    [[nodiscard]] static com::Variant numbers(const std::vector<LONG>& all, LONG lower = 0) {
        SAFEARRAYBOUND bound{static_cast<ULONG>(all.size()), lower};
        SAFEARRAY* const array = SafeArrayCreate(VT_I4, 1, &bound);
        const com::ArrayView<LONG> view(array);
        std::copy(all.begin(), all.end(), view.begin());
        return arrayIn(array);
    }
};

com::Variant wholeOf(VARTYPE type, LONG number) {
    com::Variant value;
    com::Variant plain = com::Variant::of(number);
    com::check(VariantChangeType(value.inOut(), plain.inOut(), 0, type));
    return value;
}

}  // namespace

TEST_F(EngineOccurrences, AnOccurrenceIsADataPointWithAPart) {
    write(hourPid, hour(1), com::Variant::of(2.5F), 7);
    store::Occurrence occurrence = bothOf(true, false);
    occurrence.excursion->reason = "startup";
    save(hour(1), occurrence);
    const auto found = list();
    ASSERT_EQ(found.count(), 1);
    const auto one = found.item(1);
    EXPECT_EQ(one.number(&DIOccurrence::get_AffectedPID), hourPid);
    EXPECT_EQ(one.text(&DIOccurrence::get_Interval).view(), L"1h");
    EXPECT_EQ(one.date(&DIOccurrence::get_StartDate), hour(1));
    EXPECT_EQ(one.value(&DIOccurrence::get_NValue).type(), VT_R4);
    EXPECT_EQ(one.value(&DIOccurrence::get_NValue).get().fltVal, 2.5F);
    EXPECT_EQ(one.value(&DIOccurrence::get_MC).type(), VT_I4);
    EXPECT_EQ(one.value(&DIOccurrence::get_MC).get().lVal, 7);
    const auto event = one.event();
    EXPECT_TRUE(event.flag(&DIOccurrenceEvent::get_HasExcursion));
    EXPECT_TRUE(event.flag(&DIOccurrenceEvent::get_HasDowntime));
    EXPECT_EQ(event.text(&DIOccurrenceEvent::get_Excursion_Reason).view(), L"startup");
    EXPECT_EQ(event.number(&DIOccurrenceEvent::get_Downtime_PID), downPid);
    EXPECT_TRUE(event.flag(&DIOccurrenceEvent::get_Excursion_Excludable));
}

TEST_F(EngineOccurrences, WithoutAPartItIsNone) {
    EXPECT_FALSE(list());
    write(hourPid, hour(1), com::Variant::of(2.5F), 7);
    save({.at = hour(2), .value = com::Variant::of(1.0)});
    EXPECT_FALSE(list());
    save(hour(3), downtimeOf(downPid));
    save(hour(3), {});
    EXPECT_FALSE(list()) << "Removed by an empty text";
}

TEST_F(EngineOccurrences, AnIntervalWithoutAValueHasNullAndCodeZero) {
    save(hour(1), downtimeOf(downPid));
    const auto one = list().item(1);
    EXPECT_TRUE(one.value(&DIOccurrence::get_NValue).isNull());
    EXPECT_EQ(one.value(&DIOccurrence::get_MC).get().lVal, 0);
    EXPECT_EQ(one.textValue().view(), L"");
}

TEST_F(EngineOccurrences, BothEndsOfTheSpanAreIncluded) {
    for (const double h : {1, 2, 3, 4}) save(hour(h), downtimeOf(downPid));
    EXPECT_EQ(hours({.first = hour(2), .last = hour(3)}), (std::vector<double>{2, 3}));
    EXPECT_EQ(hours({.first = hour(1.5), .last = hour(3.99)}), (std::vector<double>{2, 3}));
    EXPECT_EQ(hours({.first = hour(2), .last = hour(2)}), (std::vector<double>{2}));
    EXPECT_EQ(hours({.first = hour(2.25), .last = hour(2.75)}), std::vector<double>{});
}

TEST_F(EngineOccurrences, KindsAndFilterSayWhichPartsAreWanted) {
    fourKinds();
    const struct {
        bool downtimes, excursions;
        LONG filter;
        std::vector<double> found;
    } rows[] = {
        {true, true, 0, {1, 2, 3, 4}}, {true, true, 1, {1, 2}}, {true, true, 2, {3, 4}},
        {true, false, 0, {2, 4}},      {true, false, 1, {2}},   {true, false, 2, {4}},
        {false, true, 0, {1, 3}},      {false, true, 1, {1}},   {false, true, 2, {3}},
        {false, false, 0, {}},         {false, false, 1, {}},   {false, false, 2, {}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(hours({.downtimes = row.downtimes, .excursions = row.excursions, .filter = row.filter}),
                  row.found)
            << row.downtimes << row.excursions << row.filter;
}

TEST_F(EngineOccurrences, OneFittingPartIsEnough) {
    save(hour(1), bothOf(true, false));
    save(hour(2), bothOf(false, true));
    EXPECT_EQ(hours({.filter = 1}), (std::vector<double>{1, 2}));
    EXPECT_EQ(hours({.downtimes = false, .filter = 1}), std::vector<double>{2});
    EXPECT_EQ(hours({.excursions = false, .filter = 2}), std::vector<double>{2});
    const auto found = list({.downtimes = false, .filter = 2});
    ASSERT_EQ(found.count(), 1);
    EXPECT_TRUE(found.item(1).event().flag(&DIOccurrenceEvent::get_HasDowntime))
        << "It is shown whole, with the part that was not wanted";
}

TEST_F(EngineOccurrences, AnotherFilterIsRefused) {
    for (const LONG filter : {-1L, 3L, LONG_MAX, LONG_MIN})
        EXPECT_EQ(refusedQuery({.filter = filter}, {std::to_wstring(filter)}), 6);
}

TEST_F(EngineOccurrences, TheyComeByTimeOrByTag) {
    save(hour(2), downtimeOf(downPid));
    save(hour(2), downtimeOf(downPid), {otherHourPid});
    save(hour(1), downtimeOf(downPid), {otherHourPid});
    save(hour(2), downtimeOf(downPid), {fewMinutesPid, L"6m"});
    const auto tags = [&](bool byTag) {
        std::vector<LONG> all;
        const auto found = list({.byTag = byTag});
        for (LONG i = 1; i <= found.count(); ++i)
            all.push_back(found.item(i).number(&DIOccurrence::get_AffectedPID));
        return all;
    };
    EXPECT_EQ(tags(false), (std::vector<LONG>{otherHourPid, hourPid, fewMinutesPid, otherHourPid}));
    EXPECT_EQ(hours(), (std::vector<double>{1, 2, 2, 2}));
    EXPECT_EQ(tags(true), (std::vector<LONG>{hourPid, fewMinutesPid, otherHourPid, otherHourPid}));
    EXPECT_EQ(hours({.byTag = true}), (std::vector<double>{2, 2, 1, 2}));
}

TEST_F(EngineOccurrences, IntervalsOfEveryLengthHaveThem) {
    const struct {
        Tag tag;
        double h;
    } rows[] = {{{monthPid, L"1M"}, -24 * 24},
                {{hourPid, L"60m"}, 0},
                {{minutePid, L"1m"}, 0.25},
                {{fewMinutesPid, L"6m"}, 0.3},
                {{secondsPid, L"90s"}, 0.525}};
    for (const auto& row : rows) save(hour(row.h), downtimeOf(downPid), row.tag);
    const auto found = list({.first = hour(-24 * 24)});
    std::vector<std::wstring> intervals;
    for (LONG i = 1; i <= found.count(); ++i)
        intervals.emplace_back(found.item(i).text(&DIOccurrence::get_Interval).view());
    EXPECT_EQ(intervals, (std::vector<std::wstring>{L"1M", L"1h", L"1m", L"6m", L"90s"}));
}

TEST_F(EngineOccurrences, AListNamesUnitsTagsAndOccurrenceParameters) {
    save(hour(1), excursionOf(exceededPid));
    save(hour(2), downtimeOf(downPid));
    save(hour(3), downtimeOf(downPid), {otherHourPid});
    const struct {
        std::vector<LONG> list;
        std::vector<double> found;
    } rows[] = {
        {{hourPid}, {1, 2}},
        {{otherHourPid}, {3}},
        {{exceededPid}, {1}},
        {{downPid}, {2, 3}},
        {{5}, {1, 2}},
        {{6}, {3}},
        {{5, 6}, {1, 2, 3}},
        {{7}, {}},
        {{6, exceededPid}, {1, 3}},
        {{hourPid, hourPid, 5}, {1, 2}},
        {{}, {}},
        {{0, 19}, {}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(hours({.pids = numbers(row.list)}), row.found) << ::testing::PrintToString(row.list);
        EXPECT_EQ(hours({.pids = numbers(row.list, -7)}), row.found) << "From any lower bound on";
        EXPECT_EQ(hours({.pids = numbers(row.list, 1)}), row.found);
        if (row.list.size() == 1) {
            EXPECT_EQ(hours({.pids = com::Variant::of(row.list[0])}), row.found);
        }
    }
}

TEST_F(EngineOccurrences, AListIsAnArrayOfVariantsToo) {
    fourKinds();
    Arguments elements;
    for (const VARTYPE type : {VT_I4, VT_UI4, VT_I8, VT_UI8, VT_INT, VT_UINT})
        elements.push_back(wholeOf(type, exceededPid));
    for (const LONG lower : {0L, 1L, -3L})
        EXPECT_EQ(hours({.pids = com::Variant::of(variantsOf(elements, lower).get())}),
                  (std::vector<double>{1, 3}));
    EXPECT_EQ(hours({.pids = com::Variant::of(variantsOf({}).get())}), std::vector<double>{});
    for (const VARTYPE type : {VT_I1, VT_UI1, VT_I2, VT_UI2, VT_I4, VT_UI4, VT_I8, VT_UI8})
        EXPECT_EQ(hours({.pids = wholeOf(type, 5)}).size(), 4U) << type;
}

TEST_F(EngineOccurrences, NoListMeansEverything) {
    fourKinds();
    com::Variant noArray = arrayIn(nullptr);
    com::Variant noUnknown;
    noUnknown.inOut()->vt = VT_UNKNOWN;
    noUnknown.inOut()->punkVal = nullptr;
    for (const com::Variant& everything :
         {com::Variant(), com::Variant::null(), com::Variant::missing(),
          com::Variant::of(static_cast<IDispatch*>(nullptr)), noUnknown, arrayIn(nullptr, VT_VARIANT)})
        EXPECT_EQ(hours({.pids = everything}), (std::vector<double>{1, 2, 3, 4})) << everything.type();
    const auto found = engine.longTermData().occurrences(
        com::Bstr(L""), {hour(0), hour(23), true, true, 0, false, noArray.get()});
    EXPECT_EQ(found.count(), 4);
}

TEST_F(EngineOccurrences, ListsByReferenceAreFollowed) {
    fourKinds();
    const auto hoursFor = [&](VARTYPE type, void* reference) {
        VARIANT list;
        list.vt = static_cast<VARTYPE>(VT_BYREF | type);
        list.byref = reference;
        const auto found =
            data.occurrences(com::Bstr(L"DEMO"), {hour(0), hour(23), true, true, 0, false, list});
        return found ? found.count() : 0;
    };
    LONG pid = exceededPid;
    com::Variant inner = numbers({downPid});
    SAFEARRAY* none = nullptr;
    IDispatch* nothing = nullptr;
    SCODE leftOut = DISP_E_PARAMNOTFOUND;
    EXPECT_EQ(hoursFor(VT_I4, &pid), 2);
    EXPECT_EQ(hoursFor(VT_VARIANT, inner.inOut()), 2);
    EXPECT_EQ(hoursFor(VT_ARRAY | VT_I4, &inner.inOut()->parray), 2);
    EXPECT_EQ(hoursFor(VT_ARRAY | VT_I4, &none), 4);
    EXPECT_EQ(hoursFor(VT_DISPATCH, &nothing), 4);
    EXPECT_EQ(hoursFor(VT_ERROR, &leftOut), 4);
    EXPECT_EQ(refusedCall([&] { static_cast<void>(hoursFor(VT_I4, nullptr)); }).number, 13);
    EXPECT_EQ(refusedCall([&] { static_cast<void>(hoursFor(VT_ARRAY | VT_I4, nullptr)); }).number, 13);
}

TEST_F(EngineOccurrences, WhatIsNoListIsRefused) {
    com::Variant error;
    error.inOut()->vt = VT_ERROR;
    error.inOut()->scode = E_FAIL;
    com::Variant tooLarge;
    tooLarge.inOut()->vt = VT_UI4;
    tooLarge.inOut()->ulVal = 0xFFFFFFFF;
    for (const com::Variant& wrong :
         {com::Variant::of(std::wstring_view(L"504030000")), com::Variant::of(5.0), com::Variant::of(5.0F),
          com::Variant::ofBool(true), com::Variant::ofDate(5), error, tooLarge,
          com::Variant::of(static_cast<IDispatch*>(engine.get())),
          com::Variant::of(variantsOf({com::Variant::of(LONG{hourPid}), com::Variant::of(5.0)}).get()),
          com::Variant::of(variantsOf({com::Variant::null()}).get()),
          com::Variant::of(variantsOf(nested({com::Variant::of(LONG{hourPid})})).get())})
        EXPECT_EQ(refusedQuery({.pids = wrong}), 13) << wrong.type();
    for (const VARTYPE type : {VT_I2, VT_R8, VT_BSTR, VT_BOOL, VT_DISPATCH}) {
        SAFEARRAYBOUND bound{1, 0};
        EXPECT_EQ(refusedQuery({.pids = arrayIn(SafeArrayCreate(type, 1, &bound), type)}), 13) << type;
    }
    for (const VARTYPE type : {VT_I4, VT_VARIANT}) {
        SAFEARRAYBOUND bounds[] = {{1, 0}, {1, 0}};
        EXPECT_EQ(refusedQuery({.pids = arrayIn(SafeArrayCreate(type, 2, bounds), type)}), 13);
    }
}

TEST_F(EngineOccurrences, AnUnknownPidOfAListIsRefused) {
    fourKinds();
    for (const LONG nobodys : {599'930'000L, 20L, -1L, LONG_MAX, LONG_MIN}) {
        EXPECT_EQ(refusedQuery({.pids = com::Variant::of(nobodys)}), 9) << nobodys;
        EXPECT_EQ(refusedQuery({.pids = numbers({hourPid, nobodys})}), 9) << nobodys;
    }
}

TEST_F(EngineOccurrences, SpansThatAreNoneAreRefused) {
    EXPECT_EQ(refusedQuery({.first = hour(2), .last = hour(1)}, {L"2007-03-25 02:00", L"2007-03-25 01:00"}),
              6);
    for (const double none : {1e300, -657435.0, 2958466.0, std::nan(""), HUGE_VAL}) {
        EXPECT_EQ(refusedQuery({.first = none}), 6);
        EXPECT_EQ(refusedQuery({.last = none}), 6);
    }
}

TEST_F(EngineOccurrences, TheSiteIdIsTheOpenSitesOrEmpty) {
    fourKinds();
    EXPECT_EQ(hours({.siteId = L""}).size(), 4U);
    EXPECT_EQ(refusedQuery({.siteId = L"OTHER"}, {L"OTHER", L"DEMO"}), 5);
    EXPECT_EQ(refusedQuery({.siteId = L"demo"}, {L"demo", L"DEMO"}), 5) << "To the letter";
}

TEST_F(EngineOccurrences, ChecksComeInTheirOrder) {
    const Query wrong{
        .first = hour(2), .last = 1e300, .filter = 9, .pids = com::Variant::of(5.0), .siteId = L"OTHER"};
    Query query = wrong;
    EXPECT_EQ(refusedQuery(query, {L"OTHER"}), 5);
    query.siteId.clear();
    EXPECT_EQ(refusedQuery(query, {L"filter 9"}), 6);
    query.filter = 2;
    EXPECT_EQ(refusedQuery(query, {L"list"}), 13);
    query.pids = com::Variant::of(LONG{599'930'000});
    EXPECT_EQ(refusedQuery(query, {L"date"}), 6);
    query.last = hour(3);
    EXPECT_EQ(refusedQuery(query, {L"5-999-3-00-00"}), 9);
    engine.close();
    EXPECT_EQ(refusedQuery(wrong, {L"SetupByDahsID"}), 91);
}

TEST_F(EngineOccurrences, TheTextOfAValueIsInTheFormatOfItsTag) {
    configure([](store::Load& load) {
        auto all = store::test::demoParameters();
        all[0].format = "0.000";
        load.replaceParameters(all);
    });
    const struct {
        com::Variant value;
        std::wstring formatted, plain;
    } rows[] = {
        {com::Variant::of(0.1F), L"0.100", L"0.1"},
        {com::Variant::of(2.0 / 3), L"0.667", L"0.6666666666666666"},
        {com::Variant::of(LONG{-7}), L"-7.000", L"-7"},
        {com::Variant::of(std::wstring_view(anyText)), anyText, anyText},
        {com::Variant::of(1e300), L"1", L"1e+300"},
    };
    double h = 0;
    for (const auto& row : rows) {
        save({.tag = minutes, .at = hour(h), .value = row.value, .occurrence = xmlOf(downtimeOf(downPid))});
        save({.at = hour(h), .value = row.value, .occurrence = xmlOf(downtimeOf(downPid))});
        const auto formatted =
            list({.first = hour(h), .last = hour(h), .pids = com::Variant::of(LONG{minutePid})});
        const auto plain = list({.first = hour(h), .last = hour(h), .pids = com::Variant::of(LONG{hourPid})});
        EXPECT_EQ(formatted.item(1).textValue().view().substr(0, row.formatted.size()), row.formatted);
        EXPECT_EQ(plain.item(1).textValue().view(), row.plain);
        ++h;
    }
}

TEST_F(EngineOccurrences, AListShowsWhatThereWasWhenItWasMade) {
    write(hourPid, hour(1), com::Variant::of(2.5F), 7);
    save(hour(1), excursionOf(exceededPid));
    const auto before = list();
    save({.at = hour(1), .value = com::Variant::of(9.0), .occurrence = xmlOf(downtimeOf(downPid))});
    save(hour(2), downtimeOf(downPid));
    ASSERT_EQ(before.count(), 1);
    EXPECT_EQ(before.item(1).value(&DIOccurrence::get_NValue).get().fltVal, 2.5F);
    EXPECT_TRUE(before.item(1).event().flag(&DIOccurrenceEvent::get_HasExcursion));
    EXPECT_EQ(hours(), (std::vector<double>{1, 2}));
}

TEST_F(EngineOccurrences, AnOccurrenceIsARecordOfItsOwn) {
    save(hour(1), excursionOf(exceededPid));
    const auto found = list();
    const auto one = found.item(1);
    const com::Bstr reason(L"changed");
    one.event().put(&DIOccurrenceEvent::put_Excursion_Reason, reason.get());
    EXPECT_EQ(one.event().text(&DIOccurrenceEvent::get_Excursion_Reason).view(), L"changed");
    const std::vector untouched{found.item(1), list().item(1)};
    for (const auto& other : untouched)
        EXPECT_EQ(other.event().text(&DIOccurrenceEvent::get_Excursion_Reason).view(), L"");
}

TEST_F(EngineOccurrences, AChangedOccurrenceIsSavedByItsText) {
    write(hourPid, hour(1), com::Variant::of(2.5F), 7);
    save(hour(1), bothOf(false, false));
    const auto one = list().item(1);
    const com::Bstr reason(anyText);
    one.event().put(&DIOccurrenceEvent::put_Downtime_Reason, reason.get());
    one.event().put(&DIOccurrenceEvent::put_Downtime_Excludable, VARIANT_TRUE);
    save({.at = hour(1), .mayCreate = false, .occurrence = textIn(one)});
    const auto again = list({.filter = 2}).item(1);
    EXPECT_EQ(again.event().text(&DIOccurrenceEvent::get_Downtime_Reason).view(), anyText);
    EXPECT_EQ(again.value(&DIOccurrence::get_NValue).get().fltVal, 2.5F);
    EXPECT_EQ(again.value(&DIOccurrence::get_MC).get().lVal, 7);
}

TEST_F(EngineOccurrences, TheCollectionIsNumberedFromOneAndEnumerated) {
    fourKinds();
    const auto found = list();
    for (const LONG outside : {0L, -1L, 5L})
        EXPECT_EQ(refusedCall([&] { static_cast<void>(found.item(outside)); }).number, 9) << outside;
    com::Ptr<IUnknown> made;
    com::check(found.get()->get__NewEnum(made.receive()));
    const auto all = made.as<IEnumVARIANT>();
    for (const double h : {1, 2, 3, 4}) {
        com::Variant element;
        ASSERT_EQ(all->Next(1, element.receive(), nullptr), S_OK);
        const auto one = com::Ptr<IDispatch>(element.get().pdispVal).as<DIOccurrence>();
        ASSERT_TRUE(one);
        EXPECT_EQ(engine::Occurrence(one).date(&DIOccurrence::get_StartDate), hour(h));
    }
}

TEST_F(EngineOccurrences, TheyOutliveTheirListTheirEngineAndTheirSite) {
    fourKinds();
    std::optional<engine::Occurrence> one;
    engine::OccurrenceEvent event;
    {
        const auto other = engine::Engine::create();
        ASSERT_TRUE(other.setupByDahsId(dahsId));
        const auto found = listed(other.longTermData(), {});
        event = found.item(2).event();
        one = found.item(1);
        other.close();
    }
    engine.close();
    EXPECT_EQ(one->number(&DIOccurrence::get_AffectedPID), hourPid);
    EXPECT_EQ(one->textValue().view(), L"");
    EXPECT_TRUE(one->event().flag(&DIOccurrenceEvent::get_HasExcursion));
    one.reset();
    EXPECT_EQ(event.number(&DIOccurrenceEvent::get_Downtime_PID), downPid);
    event.put(&DIOccurrenceEvent::put_Downtime_PID, LONG{5});
    EXPECT_EQ(event.number(&DIOccurrenceEvent::get_Downtime_PID), 5);
}

TEST_F(EngineOccurrences, AManagerServesTheSiteThatIsOpen) {
    save(hour(1), downtimeOf(downPid));
    engine.close();
    EXPECT_EQ(refusedQuery({}, {L"SetupByDahsID"}), 91);
    ASSERT_TRUE(engine.setupByDahsId(dahsId));
    EXPECT_EQ(hours(), std::vector<double>{1});
}

TEST_F(EngineOccurrences, ATextThatIsDamagedIsANoteAndTheRestIsListed) {
    fourKinds();
    damage("time = (SELECT min(time) + 3600 FROM data_point_text)");
    const auto found = listed(data, {});
    const auto notes = heard.take();
    ASSERT_EQ(notes.size(), 1U);
    EXPECT_NE(notes[0].find(L"damaged"), std::wstring::npos) << notes[0];
    EXPECT_EQ(found.count(), 3);
    EXPECT_EQ(listed(data, {.first = hour(3)}).count(), 2);
    EXPECT_EQ(heard.take(), std::vector<std::wstring>{}) << "Nothing damaged in that span";
    EXPECT_FALSE(listed(data, {.first = hour(2), .last = hour(2)}));
    EXPECT_EQ(heard.take().size(), 1U);
}

TEST_F(EngineOccurrences, WhoHearsANoteMayLetGoOfEverything) {
    fourKinds();
    damage("time < (SELECT min(time) + 7200 FROM data_point_text)");
    class LettingGo final : public com::EventListener {
      public:
        LettingGo() {
            EXPECT_TRUE(engine->setupByDahsId(dahsId));
            engine::listen(sink_, *engine, *this);
            engine->get()->get_LongTermData(&manager);
        }
        void event(DISPID, const com::EventArguments&) override {
            if (++heard > 1) return;
            manager->Release();
            engine->close();
            engine.reset();
        }
        std::optional<engine::Engine> engine = engine::Engine::create();
        DIQAManager* manager = nullptr;
        int heard = 0;

      private:
        com::EventSink sink_;
    } client;
    com::Ptr<DICollection> found;
    const Query all;
    EXPECT_EQ(client.manager->GetOccurrences(nullptr, hour(0), hour(23), VARIANT_TRUE, VARIANT_TRUE, 0,
                                             VARIANT_FALSE, all.pids.get(), found.receive()),
              S_OK);
    EXPECT_GE(client.heard, 1);
    ASSERT_TRUE(found);
    const Occurrences left(found);
    ASSERT_EQ(left.count(), 2);
    EXPECT_EQ(left.item(1).date(&DIOccurrence::get_StartDate), hour(3));
}

TEST_F(EngineOccurrences, NullPointersAreRefused) {
    const Query all;
    EXPECT_EQ(data.get()->GetOccurrences(nullptr, hour(0), hour(1), VARIANT_TRUE, VARIANT_TRUE, 0,
                                         VARIANT_FALSE, all.pids.get(), nullptr),
              E_POINTER);
    save(hour(1), downtimeOf(downPid));
    const com::Ptr<DIOccurrence> kept(list().item(1).get());
    EXPECT_EQ(kept->get_AffectedPID(nullptr), E_POINTER);
    EXPECT_EQ(kept->get_Interval(nullptr), E_POINTER);
    EXPECT_EQ(kept->get_StartDate(nullptr), E_POINTER);
    EXPECT_EQ(kept->get_NValue(nullptr), E_POINTER);
    EXPECT_EQ(kept->get_MC(nullptr), E_POINTER);
    EXPECT_EQ(kept->get_Event(nullptr), E_POINTER);
    EXPECT_EQ(kept->TextValue(nullptr, nullptr), E_POINTER);
}

TEST_F(EngineOccurrences, AFailedCallLeavesNoObject) {
    auto* none = reinterpret_cast<DICollection*>(1);
    const Query all;
    EXPECT_TRUE(FAILED(data.get()->GetOccurrences(nullptr, hour(0), hour(1), VARIANT_TRUE, VARIANT_TRUE, 9,
                                                  VARIANT_FALSE, all.pids.get(), &none)));
    EXPECT_EQ(none, nullptr);
}

}  // namespace vtdn::embedded::test
