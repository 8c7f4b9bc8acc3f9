// Data points found and saved, and the edits that tell who saved them.
#include <climits>
#include <cmath>

#include "com/computer.h"
#include "data_interface/value.h"
#include "occurrence_call.h"

namespace vtdn::embedded::test {
namespace {

using namespace std::string_literals;

class EngineSavedPoints : public OnOccurrences {
  protected:
    [[nodiscard]] engine::DataPoint find(DATE from, DATE to, const Tag& tag = {}) {
        auto found = foundPoint(data, tag, from, to);
        EXPECT_EQ(heard.take(), std::vector<std::wstring>{});
        return found;
    }
    /// A save that must be refused and change nothing; the sentence must hold all of the words.
    LONG refusedSave(const Save& what, const std::vector<std::wstring>& words = {}) {
        const auto before = stored();
        const auto editsBefore = edits();
        const Failure failure = refusedCall([&] { static_cast<void>(saved(data, what)); });
        for (const std::wstring& word : words)
            EXPECT_NE(failure.description.find(word), std::wstring::npos) << failure.description;
        EXPECT_EQ(stored(), before);
        EXPECT_EQ(edits(), editsBefore);
        return failure.number;
    }
    /// A search and a save that must be refused alike.
    LONG refusedBoth(const Tag& tag, const std::vector<std::wstring>& words = {}) {
        const Failure found =
            refusedCall([&] { static_cast<void>(foundPoint(data, tag, hour(0), hour(1))); });
        const LONG number = refusedSave({.tag = tag}, words);
        EXPECT_EQ(found.number, number);
        for (const std::wstring& word : words)
            EXPECT_NE(found.description.find(word), std::wstring::npos) << found.description;
        return number;
    }
    [[nodiscard]] static std::string user() { return com::toUtf8(com::userName()); }
};

}  // namespace

TEST_F(EngineSavedPoints, ValueCodeAndOccurrenceAreSavedTogether) {
    const std::wstring xml = xmlOf(downtimeOf(downPid));
    save({.value = com::Variant::of(2.5F), .code = com::Variant::of(LONG{7}), .occurrence = xml});
    EXPECT_EQ(stored(), (std::vector<store::DataPoint>{
                            {store::timeOf({2007, 3, 25, 1, 0, 0}), {2.5F, 7}, com::toUtf8(xml), ""}}));
}

TEST_F(EngineSavedPoints, NullAndEmptyLeaveValueAndCodeAsTheyAre) {
    write(hourPid, hour(1), com::Variant::of(2.5F), 7);
    EXPECT_TRUE(DataPointManagers(engine).update(Manager::longTerm, {}, hour(1), L"extra"));
    for (const com::Variant& nothing : {com::Variant::null(), com::Variant()}) {
        save({.value = nothing,
              .code = nothing,
              .mayCreate = false,
              .occurrence = xmlOf(downtimeOf(downPid))});
        const auto all = stored();
        ASSERT_EQ(all.size(), 1U);
        EXPECT_EQ(all[0].item, (store::Item{2.5F, 7}));
        EXPECT_EQ(all[0].extra, "extra");
    }
    save({.value = com::Variant::of(9.0)});
    EXPECT_EQ(stored().at(0).item, (store::Item{9.0, 7}));
    save({.code = com::Variant::of(LONG{0})});
    EXPECT_EQ(stored().at(0).item, (store::Item{9.0, 0}));
    EXPECT_EQ(stored().at(0).occurrence, "") << "An empty text removes the occurrence";
}

TEST_F(EngineSavedPoints, ValuesKeepTheirKind) {
    const std::vector<com::Variant> values{com::Variant::of(LONG{2}), com::Variant::of(0.1),
                                           com::Variant::of(std::wstring_view(anyText)),
                                           com::Variant::of(1.5F), com::Variant::ofBool(true)};
    for (std::size_t i = 0; i < values.size(); ++i) {
        save({.at = hour(static_cast<double>(i)), .value = values[i]});
        EXPECT_EQ(stored().at(i).item.value, fromVariant(values[i].get()));
    }
}

TEST_F(EngineSavedPoints, IntervalsOfEveryLengthAreFoundAndSaved) {
    const struct {
        Tag tag;
        double h;
    } rows[] = {{{monthPid, L"1M"}, -24 * 24},
                {{hourPid, L"60m"}, 1},
                {{minutePid, L"1m"}, 0.25},
                {{fewMinutesPid, L"6m"}, 0.3},
                {{secondsPid, L"90s"}, 0.525}};
    for (const auto& row : rows) {
        save({.tag = row.tag, .at = hour(row.h), .value = com::Variant::of(row.h)});
        const auto point = find(hour(row.h), hour(row.h), row.tag);
        ASSERT_TRUE(point);
        EXPECT_EQ(common::secondsOfDate(timeOf(point)), common::secondsOfDate(hour(row.h)));
        EXPECT_EQ(valueOf(point).get().dblVal, row.h);
    }
}

TEST_F(EngineSavedPoints, TheFirstPointOfASpanIsFoundWithAllThatIsStoredOfIt) {
    for (const double h : {1, 2})
        save({.at = hour(h),
              .value = com::Variant::of(h),
              .code = com::Variant::of(LONG{3}),
              .occurrence = xmlOf(downtimeOf(downPid))});
    EXPECT_TRUE(DataPointManagers(engine).update(Manager::longTerm, {}, hour(2), anyText));
    constexpr double second = 1.0 / 3600;
    const auto point = find(hour(2 - second), hour(2 + second));
    ASSERT_TRUE(point);
    EXPECT_EQ(timeOf(point), hour(2));
    EXPECT_EQ(valueOf(point).get().dblVal, 2);
    EXPECT_EQ(codeOf(point).get().lVal, 3);
    EXPECT_EQ(extraOf(point), anyText);
    EXPECT_TRUE(point.event().flag(&DIOccurrenceEvent::get_HasDowntime));
    EXPECT_EQ(timeOf(find(hour(0), hour(23))), hour(1));
    EXPECT_EQ(timeOf(find(hour(1), hour(1))), hour(1)) << "Both ends included";
}

TEST_F(EngineSavedPoints, WhereNothingIsStoredNothingIsFound) {
    EXPECT_FALSE(find(hour(0), hour(23)));
    save({.at = hour(1), .value = com::Variant::of(1.0)});
    EXPECT_FALSE(find(hour(1.001), hour(1.999)));
}

TEST_F(EngineSavedPoints, APointThatIsNotThereIsMadeOnlyWhenTheFlagSaysSo) {
    EXPECT_EQ(
        refusedSave({.mayCreate = false, .occurrence = xmlOf(downtimeOf(downPid))}, {L"2007-03-25 01:00"}),
        9);
    EXPECT_EQ(refusedSave({.value = com::Variant::of(1.0), .mayCreate = false}), 9);
    write(hourPid, hour(1), com::Variant::null(), 5);
    save({.mayCreate = false, .occurrence = xmlOf(downtimeOf(downPid))});
    EXPECT_EQ(list().count(), 1) << "A code alone is a data point";
}

TEST_F(EngineSavedPoints, WhatIsNoOccurrenceIsRefused) {
    for (const std::wstring& text :
         {L"text"s, L"<Occurrence/>"s, L"<Occurrence><Other/></Occurrence>"s, L"\0"s, anyText,
          xmlOf(downtimeOf(downPid)) + L" ", L"<Occurrence><Downtime PID=\"1\"/></Occurrence>"s})
        EXPECT_EQ(refusedSave({.value = com::Variant::of(1.0), .occurrence = text}), 5) << text;
}

TEST_F(EngineSavedPoints, TextsThatCannotBeKeptAreRefused) {
    for (const std::wstring& text : {std::wstring(L"\xD83C!"), std::wstring(65'536, L'x')}) {
        EXPECT_EQ(refusedSave({.occurrence = text}), 5);
        EXPECT_EQ(refusedSave({.source = text}), 5);
        EXPECT_EQ(refusedSave({.user = text}), 5);
        EXPECT_EQ(refusedSave({.value = com::Variant::of(std::wstring_view(text))}), 5);
    }
}

TEST_F(EngineSavedPoints, ValuesAndCodesOfOtherKindsAreRefused) {
    const auto object = com::Variant::of(static_cast<IDispatch*>(engine.get()));
    for (const com::Variant& wrong : {com::Variant::missing(), object}) {
        EXPECT_EQ(refusedSave({.value = wrong}), 13);
        EXPECT_EQ(refusedSave({.code = wrong}), 13);
    }
    EXPECT_EQ(refusedSave({.code = com::Variant::of(std::wstring_view(L"x"))}), 13);
    EXPECT_EQ(refusedSave({.value = com::Variant::of(std::nan(""))}), 6);
    EXPECT_EQ(refusedSave({.code = com::Variant::of(1e10)}), 6);
}

TEST_F(EngineSavedPoints, IntervalTextsThatAreNoneAreRefused) {
    for (const auto& text : {L"", L"h", L"1", L"0h", L"7h", L"1 h", L"1x", L"9999999999h"})
        EXPECT_EQ(refusedBoth({hourPid, text}), 5) << text;
}

TEST_F(EngineSavedPoints, AnotherIntervalThanTheParametersOwnIsRefused) {
    EXPECT_EQ(refusedBoth({hourPid, L"1d"}, {L"1h", L"1d"}), 5);
    EXPECT_EQ(refusedBoth({minutePid, L"15m"}, {L"1m", L"15m"}), 5);
    EXPECT_EQ(refusedBoth({exceededPid, L"1h"}), 5) << "It has no interval";
}

TEST_F(EngineSavedPoints, UnknownTagsAreRefused) {
    for (const LONG nobodys : {599'930'000L, 0L, -1L, LONG_MAX, LONG_MIN})
        EXPECT_EQ(refusedBoth({nobodys}), 9) << nobodys;
}

TEST_F(EngineSavedPoints, WhatIsNotStoredHasNoDataPoints) {
    for (const LONG pid : {limitPid, averagePid, formulaPid}) EXPECT_EQ(refusedBoth({pid}, {L"stored"}), 70);
}

TEST_F(EngineSavedPoints, TheSiteIdIsTheOpenSitesOrEmpty) {
    save({.tag = {hourPid, L"1h", L""}, .value = com::Variant::of(1.0)});
    EXPECT_TRUE(find(hour(1), hour(1), {hourPid, L"1h", L""}));
    EXPECT_EQ(refusedBoth({hourPid, L"1h", L"OTHER"}, {L"OTHER", L"DEMO"}), 5);
    EXPECT_EQ(refusedBoth({hourPid, L"1h", L"demo"}), 5) << "To the letter";
}

TEST_F(EngineSavedPoints, TimesThatAreNoneAreRefused) {
    EXPECT_EQ(refusedSave({.at = hour(1.5)}, {L"2007-03-25 01:30"}), 5);
    for (const double none : {1e300, -657435.0, 2958466.0, std::nan(""), HUGE_VAL}) {
        EXPECT_EQ(refusedSave({.at = none}), 6);
        EXPECT_EQ(refusedCall([&] { static_cast<void>(foundPoint(data, {}, none, hour(1))); }).number, 6);
        EXPECT_EQ(refusedCall([&] { static_cast<void>(foundPoint(data, {}, hour(1), none)); }).number, 6);
    }
    EXPECT_EQ(refusedCall([&] { static_cast<void>(foundPoint(data, {}, hour(2), hour(1))); }).number, 6);
}

TEST_F(EngineSavedPoints, ChecksComeInTheirOrder) {
    Save what{.tag = {599'930'000, L"x", L"OTHER"},
              .at = 1e300,
              .value = com::Variant::missing(),
              .occurrence = L"text"};
    EXPECT_EQ(refusedSave(what, {L"OTHER"}), 5);
    what.tag.siteId.clear();
    EXPECT_EQ(refusedSave(what, {L"interval"}), 5);
    what.tag.interval = L"1h";
    EXPECT_EQ(refusedSave(what, {L"date"}), 6);
    what.at = hour(1.5);
    EXPECT_EQ(refusedSave(what, {L"left out"}), 13);
    what.value = com::Variant::of(1.0);
    EXPECT_EQ(refusedSave(what, {L"\"text\""}), 5);
    what.occurrence.clear();
    EXPECT_EQ(refusedSave(what, {L"5-999-3-00-00"}), 9);
    what.tag.id = hourPid;
    EXPECT_EQ(refusedSave(what, {L"01:30"}), 5);
    what.at = hour(1);
    save(what);
}

TEST_F(EngineSavedPoints, AnEngineThatIsNotSetUpFindsAndSavesNothing) {
    engine.close();
    EXPECT_EQ(refusedBoth({}, {L"SetupByDahsID"}), 91);
    const auto fresh = engine::Engine::create();
    EXPECT_EQ(failureOf([&] { static_cast<void>(saved(fresh.longTermData(), {})); }).number, 91);
    EXPECT_EQ(failureOf([&] { static_cast<void>(listed(fresh.longTermData(), {})); }).number, 91);
    ASSERT_TRUE(engine.setupByDahsId(dahsId));
    save({.value = com::Variant::of(1.0)});
    EXPECT_EQ(stored().size(), 1U);
}

TEST_F(EngineSavedPoints, AnExcursionWithoutALimitGetsThatOfItsParameter) {
    save(hour(1), excursionOf(exceededPid));
    const auto event = list().item(1).event();
    EXPECT_EQ(event.number(&DIOccurrenceEvent::get_Excursion_LimitPID), limitPid);
    EXPECT_EQ(event.text(&DIOccurrenceEvent::get_Excursion_Limit).view(), L"0.2 lb/mmBtu");
}

TEST_F(EngineSavedPoints, ALimitThatIsThereStays) {
    store::Occurrence occurrence = excursionOf(exceededPid);
    occurrence.excursion->limit = "0.5 lb/mmBtu";
    save(hour(1), occurrence);
    occurrence.excursion->limit.clear();
    occurrence.excursion->limit_pid = hourPid;
    save(hour(2), occurrence);
    const auto found = list();
    EXPECT_EQ(found.item(1).event().text(&DIOccurrenceEvent::get_Excursion_Limit).view(), L"0.5 lb/mmBtu");
    EXPECT_EQ(found.item(1).event().number(&DIOccurrenceEvent::get_Excursion_LimitPID), 0);
    EXPECT_EQ(found.item(2).event().text(&DIOccurrenceEvent::get_Excursion_Limit).view(), L"");
    EXPECT_EQ(found.item(2).event().number(&DIOccurrenceEvent::get_Excursion_LimitPID), hourPid);
}

TEST_F(EngineSavedPoints, WithoutALimitOfItsParameterAnExcursionHasNone) {
    save(hour(1), excursionOf(downPid));
    save(hour(2), excursionOf(hourPid));
    save(hour(3), excursionOf(599'930'000));
    save(hour(4), downtimeOf(exceededPid));
    const auto found = list();
    for (LONG i = 1; i <= 4; ++i) {
        EXPECT_EQ(found.item(i).event().text(&DIOccurrenceEvent::get_Excursion_Limit).view(), L"") << i;
        EXPECT_EQ(found.item(i).event().number(&DIOccurrenceEvent::get_Excursion_LimitPID), 0) << i;
    }
}

TEST_F(EngineSavedPoints, ALimitThatIsNoConstantIsSaidAndLeftOut) {
    const std::vector<store::SpecialValue> wrongs{std::int32_t{hourPid}, std::int32_t{599'930'000}, 5.0, "x"s,
                                                  true};
    for (const store::SpecialValue& wrong : wrongs) {
        const std::vector<store::SpecialValueEntry> facts{{exceededPid, 1003, wrong}};
        giveSpecialValues(facts);
        EXPECT_TRUE(saved(data, {.occurrence = xmlOf(excursionOf(exceededPid))}));
        const auto notes = heard.take();
        ASSERT_EQ(notes.size(), 1U);
        EXPECT_NE(notes[0].find(L"1003"), std::wstring::npos) << notes[0];
        EXPECT_EQ(list().item(1).event().number(&DIOccurrenceEvent::get_Excursion_LimitPID), 0);
    }
}

TEST_F(EngineSavedPoints, AnEditSaysWhoSavedWhatAndWhen) {
    const store::Time before = com::standardTimeNow();
    save({.value = com::Variant::of(1.0),
          .code = com::Variant::of(LONG{3}),
          .occurrence = xmlOf(downtimeOf(downPid)),
          .source = anyText,
          .user = L"Someone \u20AC"});
    const auto all = edits();
    ASSERT_EQ(all.size(), 1U);
    EXPECT_EQ(all[0].origin.source, com::toUtf8(anyText));
    EXPECT_EQ(all[0].origin.user, com::toUtf8(L"Someone \u20AC"));
    EXPECT_GE(all[0].origin.when, before);
    EXPECT_LE(all[0].origin.when, com::standardTimeNow());
    EXPECT_EQ(all[0].pid, hourPid);
    EXPECT_EQ(all[0].interval, store::Interval::of("h", 1));
    EXPECT_EQ(all[0].time, store::timeOf({2007, 3, 25, 1, 0, 0}));
    using enum store::EditedParts;
    EXPECT_EQ(all[0].parts, value | code | occurrence);
}

TEST_F(EngineSavedPoints, AnEditWithoutAUserIsOneOfTheUserOfThisComputer) {
    save({.value = com::Variant::of(1.0)});
    ASSERT_EQ(edits().size(), 1U);
    EXPECT_EQ(edits().at(0).origin.user, user());
    EXPECT_EQ(edits().at(0).origin.source, "OccEdit");
}

TEST_F(EngineSavedPoints, AnExtraValueIsAnEditOfTheClientApplication) {
    engine.setClientAppName(com::Bstr(L"Editor \u20AC").get());
    const DataPointManagers managers(engine);
    EXPECT_TRUE(managers.update(Manager::longTerm, {}, hour(1), L"x"));
    EXPECT_TRUE(managers.update(Manager::shortTerm, minutes, hour(1), L"x"));
    const auto all = edits();
    ASSERT_EQ(all.size(), 2U);
    for (const store::Edit& edit : all) {
        EXPECT_EQ(edit.origin.source, com::toUtf8(L"Editor \u20AC"));
        EXPECT_EQ(edit.origin.user, user());
        EXPECT_EQ(edit.parts, store::EditedParts::extra);
    }
}

TEST_F(EngineSavedPoints, OfANameThatCannotBeKeptAsMuchIsKeptAsCanBe) {
    const DataPointManagers managers(engine);
    const struct {
        std::wstring name, kept;
    } rows[] = {{L"\xD83C!", L"\xFFFD!"},
                {std::wstring(100'000, L'\u20AC'), std::wstring(21'845, L'\u20AC')},
                {L"", L""}};
    for (const auto& row : rows) {
        engine.setClientAppName(com::Bstr(row.name).get());
        EXPECT_TRUE(managers.update(Manager::longTerm, {}, hour(1), std::to_wstring(row.name.size())));
        EXPECT_EQ(edits().at(0).origin.source, com::toUtf8(row.kept));
    }
}

TEST_F(EngineSavedPoints, TheUserWhoEditsIsTheOneOfThisComputerAtAnyTime) {
    const auto name = [](const engine::Engine& of) {
        return std::wstring(of.selectedDahs().text(&DISelectedDahs::get_EditUserName).view());
    };
    EXPECT_EQ(name(engine), com::userName());
    engine.close();
    EXPECT_EQ(name(engine), com::userName());
    EXPECT_EQ(name(engine::Engine::create()), com::userName());
    EXPECT_EQ(engine.selectedDahs().get()->get_EditUserName(nullptr), E_POINTER);
}

TEST_F(EngineSavedPoints, AFileThatCannotBeWrittenRefusesTheSave) {
    save({.value = com::Variant::of(1.0), .occurrence = xmlOf(downtimeOf(downPid))});
    engine.close();
    // Shared for reading only, so that SQLite opens it for that.
    const HANDLE held = CreateFileW(com::fromUtf8(home.file("data.db")).c_str(), GENERIC_READ,
                                    FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(held, INVALID_HANDLE_VALUE);
    EXPECT_TRUE(engine.setupByDahsId(dahsId));
    const auto notes = heard.take();
    ASSERT_EQ(notes.size(), 1U);
    EXPECT_NE(notes[0].find(L"data.db"), std::wstring::npos) << notes[0];
    EXPECT_EQ(refusedCall([&] { static_cast<void>(saved(data, {.value = com::Variant::of(2.0)})); }).number,
              70);
    EXPECT_EQ(list().count(), 1) << "It can be read";
    EXPECT_TRUE(find(hour(1), hour(1)));
    engine.close();
    CloseHandle(held);
}

TEST_F(EngineSavedPoints, ASiteThatAnotherProgramKeepsLockedRefusesTheSave) {
    save({.value = com::Variant::of(1.0), .occurrence = xmlOf(downtimeOf(downPid))});
    store::Database holder(home.file("data.db"), {});
    holder.execute("BEGIN IMMEDIATE");
    EXPECT_EQ(refusedCall([&] { static_cast<void>(saved(data, {.value = com::Variant::of(2.0)})); }).number,
              70);
    EXPECT_EQ(list().count(), 1) << "Readers do not wait";
    holder.execute("ROLLBACK");
    save({.value = com::Variant::of(2.0)});
}

TEST_F(EngineSavedPoints, ADamagedTextIsNotWrittenOver) {
    save({.value = com::Variant::of(1.0), .occurrence = xmlOf(downtimeOf(downPid))});
    {
        store::Site site(connections(), "DEMO");
        site.database(store::DatabaseKind::data)
            .execute("UPDATE data_point_text SET checksum = checksum + 1");
    }
    EXPECT_EQ(refusedCall([&] { static_cast<void>(saved(data, {})); }).number, E_FAIL);
    EXPECT_EQ(refusedCall([&] { static_cast<void>(foundPoint(data, {}, hour(1), hour(1))); }).number, E_FAIL);
}

TEST_F(EngineSavedPoints, NullPointersAndFailedCallsLeaveNothing) {
    const com::Bstr interval(L"1h");
    const com::Variant null = com::Variant::null();
    DIQAManager* const manager = data.get();
    EXPECT_EQ(manager->FindDataPoint(nullptr, hourPid, interval.get(), hour(0), hour(1), nullptr), E_POINTER);
    EXPECT_EQ(manager->SaveDataPoint(nullptr, hourPid, interval.get(), hour(1), com::Variant::of(1.0).get(),
                                     null.get(), VARIANT_TRUE, nullptr, nullptr, nullptr, nullptr),
              E_POINTER);
    EXPECT_EQ(stored().size(), 0U);
    auto* none = reinterpret_cast<DIDataPoint*>(1);
    VARIANT_BOOL done = VARIANT_TRUE;
    EXPECT_TRUE(FAILED(manager->FindDataPoint(nullptr, hourPid, nullptr, hour(0), hour(1), &none)));
    EXPECT_EQ(none, nullptr);
    EXPECT_TRUE(FAILED(manager->SaveDataPoint(nullptr, hourPid, nullptr, hour(1), null.get(), null.get(),
                                              VARIANT_TRUE, nullptr, nullptr, nullptr, &done)));
    EXPECT_EQ(done, VARIANT_FALSE);
    EXPECT_EQ(manager->SaveDataPoint(nullptr, hourPid, interval.get(), hour(1), com::Variant::of(1.0).get(),
                                     null.get(), VARIANT_TRUE, nullptr, nullptr, nullptr, &done),
              S_OK);
    EXPECT_EQ(done, VARIANT_TRUE);
    EXPECT_EQ(edits().at(0).origin.source, "");
}

}  // namespace vtdn::embedded::test
