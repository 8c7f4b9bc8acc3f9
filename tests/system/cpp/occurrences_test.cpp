// Occurrences: listed with every filter, edited to the character, made, and found again by a second process.
#include <cmath>
#include <set>

#include "bound.h"
#include "com/variant.h"

namespace vtdn::test {
namespace {

using namespace std::string_literals;

constexpr LONG occurrenceSite = 3;       // tests/system/occurrence_site
constexpr LONG so2Rate = 704030000;      // hourly
constexpr LONG noxAnalyzer = 705010001;  // by the minute
constexpr LONG otherRate = 804030000;    // hourly, of unit 8
constexpr LONG so2Limit = 790100000;     // a constant, 0.5
constexpr LONG so2Excess = 798030001;
constexpr LONG so2Downtime = 798030002;
constexpr LONG noxDowntime = 798110002;
constexpr LONG otherDowntime = 898030002;

constexpr DATE january = 45292;     // 2024-01-01
constexpr DATE free2024 = 45383;    // 2024-04-01, behind the site's data
constexpr DATE edited2024 = 45413;  // 2024-05-01, for the second process
constexpr double hours = 24;

// Markup, line breaks, a tab, NUL, a backslash, what is beyond 16 bits.
const std::wstring anyText = L" <r a=\"1\">\r\n\t&amp;\0\\ \u20AC \U0001F3ED</r> "s;

using Occurrence = com::Ptr<_OccurrenceDataWrapper>;

struct Wanted {
    DATE first = january;
    DATE last = january + 2;
    bool downtimes = true;
    com::Variant excursions = com::Variant::ofBool(true);
    LONG filter = 0;
    bool byTag = false;
};

std::vector<Occurrence> listed(const Client& client, const Wanted& wanted = {}, SAFEARRAY* list = nullptr) {
    com::SafeArray found;
    EXPECT_EQ(client->GetOccurrences(wanted.first, wanted.last, com::variantBool(wanted.downtimes),
                                     wanted.excursions.get(), wanted.filter, com::variantBool(wanted.byTag),
                                     &list, found.inOut()),
              S_OK)
        << takeFailure(E_FAIL);
    std::vector<Occurrence> all;
    if (!found.get()) return all;
    EXPECT_EQ(com::bounds(found.get()).lower, 0);
    const com::ArrayView<IDispatch*> elements(found.get());
    EXPECT_GT(elements.size(), 0U) << "Where nothing is there is no array";
    for (IDispatch* element : elements)
        all.push_back(com::Ptr<IDispatch>(element).as<_OccurrenceDataWrapper>());
    return all;
}

std::vector<Occurrence> listed(const Client& client, const Wanted& wanted, std::vector<LONG> list,
                               LONG lower = 0) {
    Array<LONG> array(lower, static_cast<ULONG>(list.size()));
    std::copy(list.begin(), list.end(), com::ArrayView<LONG>(array.get()).begin());
    return listed(client, wanted, array.get());
}

template <class T>
T get(const Occurrence& occurrence, HRESULT (STDMETHODCALLTYPE _OccurrenceDataWrapper::*getter)(T*)) {
    T result{};
    EXPECT_EQ((occurrence.get()->*getter)(&result), S_OK);
    return result;
}
std::wstring text(const Occurrence& occurrence,
                  HRESULT (STDMETHODCALLTYPE _OccurrenceDataWrapper::*getter)(BSTR*)) {
    return std::wstring(com::Bstr::adopt(get(occurrence, getter)).view());
}
com::Variant variant(const Occurrence& occurrence,
                     HRESULT (STDMETHODCALLTYPE _OccurrenceDataWrapper::*getter)(VARIANT*)) {
    com::Variant result;
    EXPECT_EQ((occurrence.get()->*getter)(result.receive()), S_OK);
    return result;
}
void put(const Occurrence& occurrence, HRESULT (STDMETHODCALLTYPE _OccurrenceDataWrapper::*putter)(BSTR),
         const std::wstring& value) {
    EXPECT_EQ((occurrence.get()->*putter)(com::Bstr(value).get()), S_OK);
}
bool flag(const Occurrence& occurrence,
          HRESULT (STDMETHODCALLTYPE _OccurrenceDataWrapper::*getter)(VARIANT_BOOL*)) {
    return get(occurrence, getter) != VARIANT_FALSE;
}
bool hasDowntime(const Occurrence& o) {
    return flag(o, &_OccurrenceDataWrapper::get_HasDowntime);
}
bool hasExcursion(const Occurrence& o) {
    return flag(o, &_OccurrenceDataWrapper::get_HasExcursion);
}
LONG tagOf(const Occurrence& o) {
    return get(o, &_OccurrenceDataWrapper::get_AffectedPID);
}
DATE timeOf(const Occurrence& o) {
    return get(o, &_OccurrenceDataWrapper::get_StartDate);
}

std::set<LONG> tags(const std::vector<Occurrence>& all) {
    std::set<LONG> found;
    for (const Occurrence& one : all) found.insert(tagOf(one));
    return found;
}

class Occurrences : public testing::Test {
  protected:
    Occurrences() : client_(registered()) { EXPECT_TRUE(client_.setup(occurrenceSite)); }
    ~Occurrences() override {
        client_.teardown();
        client_.release();
    }

    [[nodiscard]] Occurrence create(LONG pid, DATE time) const {
        Occurrence occurrence;
        EXPECT_EQ(client_->CreateOrRetrieveOccurrence(pid, time, occurrence.receive()), S_OK);
        return occurrence;
    }
    [[nodiscard]] bool save(const Occurrence& occurrence) const {
        return client_.yes(&_DIWrapper::SaveOccurrence, occurrence.get());
    }

    Client client_;
};
using OccurrencesSecondProcess = Occurrences;

TEST_F(Occurrences, OfASpanAreThoseThatWereImported) {
    // 4 + 2 hours of downtime, 3 of excess one of which is down too, 30 minutes, 5 hours of the other unit.
    const auto all = listed(client_);
    EXPECT_EQ(all.size(), 4U + 2 + 3 - 1 + 30 + 5);
    DATE before = 0;
    std::size_t both = 0;
    for (const Occurrence& one : all) {
        EXPECT_GE(timeOf(one), before);
        before = timeOf(one);
        EXPECT_TRUE(hasDowntime(one) || hasExcursion(one));
        both += hasDowntime(one) && hasExcursion(one) ? 1 : 0;
    }
    EXPECT_EQ(both, 1U);
    EXPECT_EQ(tags(all), (std::set<LONG>{so2Rate, noxAnalyzer, otherRate}));
    EXPECT_EQ(client_.problems(), L"");
}

TEST_F(Occurrences, HaveWhatIsKnownOfThem) {
    const auto found = listed(client_, {january + 8 / hours, january + 8 / hours}, {so2Rate});
    ASSERT_EQ(found.size(), 1U);
    const Occurrence& one = found[0];
    EXPECT_EQ(tagOf(one), so2Rate);
    EXPECT_NEAR(timeOf(one), january + 8 / hours, 1e-9);
    EXPECT_EQ(variant(one, &_OccurrenceDataWrapper::get_NValue).get().dblVal, 0.68);
    EXPECT_EQ(variant(one, &_OccurrenceDataWrapper::get_MC).get().lVal, 1);
    EXPECT_NE(text(one, &_OccurrenceDataWrapper::get_TextValue).find(L"680"), std::wstring::npos);
    EXPECT_EQ(get(one, &_OccurrenceDataWrapper::get_Excursion_PID), so2Excess);
    EXPECT_EQ(text(one, &_OccurrenceDataWrapper::get_Excursion_Reason), L"Startup");
    EXPECT_EQ(text(one, &_OccurrenceDataWrapper::get_Excursion_Limit), L"0.5 lb/mmBtu");
    EXPECT_EQ(get(one, &_OccurrenceDataWrapper::get_Excursion_LimitPID), so2Limit);
    EXPECT_FALSE(flag(one, &_OccurrenceDataWrapper::get_Excursion_Excludable));
    EXPECT_EQ(get(one, &_OccurrenceDataWrapper::get_Downtime_PID), so2Downtime);
    EXPECT_EQ(text(one, &_OccurrenceDataWrapper::get_Downtime_Category), L"maintenance");
    EXPECT_EQ(text(one, &_OccurrenceDataWrapper::get_Downtime_Action), L"New filter");
    EXPECT_TRUE(flag(one, &_OccurrenceDataWrapper::get_Downtime_Excludable));
}

TEST_F(Occurrences, InOrderOfTagsAreInOrderOfTimeWithinEach) {
    Wanted byTag;
    byTag.byTag = true;
    const auto all = listed(client_, byTag);
    ASSERT_EQ(all.size(), listed(client_).size());
    for (std::size_t i = 1; i < all.size(); ++i) {
        const auto before = std::pair(tagOf(all[i - 1]), timeOf(all[i - 1]));
        EXPECT_LT(before, std::pair(tagOf(all[i]), timeOf(all[i])));
    }
}

TEST_F(Occurrences, AreFilteredByKindAndByWhatIsExcludable) {
    const auto count = [&](bool downtimes, const com::Variant& excursions, LONG filter) {
        Wanted wanted;
        wanted.downtimes = downtimes;
        wanted.excursions = excursions;
        wanted.filter = filter;
        return listed(client_, wanted, {so2Rate}).size();
    };
    const auto yes = com::Variant::ofBool(true);
    const auto no = com::Variant::ofBool(false);
    EXPECT_EQ(count(true, yes, 0), 8U);
    EXPECT_EQ(count(true, no, 0), 6U);
    EXPECT_EQ(count(false, yes, 0), 3U);
    EXPECT_EQ(count(false, no, 0), 0U);
    EXPECT_EQ(count(true, yes, 1), 5U);
    EXPECT_EQ(count(true, yes, 2), 4U);
    EXPECT_EQ(count(false, yes, 2), 0U);
    for (const LONG other : {-1L, 3L, 4711L}) EXPECT_EQ(count(true, yes, other), 8U) << other;
    EXPECT_EQ(count(false, com::Variant::of(L"True"), 0), 3U);
    EXPECT_EQ(count(false, com::Variant::of(LONG{0}), 0), 0U);
}

TEST_F(Occurrences, AreThoseOfTheUnitsAndTagsInTheList) {
    const auto of = [&](std::vector<LONG> list, LONG lower = 0) {
        return tags(listed(client_, {}, std::move(list), lower));
    };
    EXPECT_EQ(of({7}), (std::set<LONG>{so2Rate, noxAnalyzer}));
    EXPECT_EQ(of({8}), std::set<LONG>{otherRate});
    EXPECT_EQ(of({9}), std::set<LONG>{});
    EXPECT_EQ(of({noxAnalyzer}), std::set<LONG>{noxAnalyzer});
    EXPECT_EQ(of({noxDowntime, 8}, -3), (std::set<LONG>{noxAnalyzer, otherRate}));
    EXPECT_EQ(listed(client_, {}, {so2Excess}).size(), 3U);
    EXPECT_EQ(listed(client_, {}, {so2Downtime}).size(), 6U);
    EXPECT_TRUE(listed(client_, {}, std::vector<LONG>{}).empty()) << "An empty list is not no list";
}

TEST_F(Occurrences, EditsComeBackToTheCharacterAndNothingElseChanges) {
    const Wanted hour{january + 8 / hours, january + 8 / hours};
    const auto before = listed(client_, hour, {so2Rate});
    ASSERT_EQ(before.size(), 1U);
    put(before[0], &_OccurrenceDataWrapper::put_Downtime_Reason, anyText);
    put(before[0], &_OccurrenceDataWrapper::put_Excursion_Action, L"");
    put(before[0], &_OccurrenceDataWrapper::put_Excursion_Category, anyText + anyText);
    EXPECT_EQ(before[0]->put_Downtime_Excludable(VARIANT_FALSE), S_OK);
    EXPECT_TRUE(save(before[0]));
    Client another(registered());
    ASSERT_TRUE(another.setup(occurrenceSite));
    const auto after = listed(another, hour, {so2Rate});
    ASSERT_EQ(after.size(), 1U);
    EXPECT_EQ(text(after[0], &_OccurrenceDataWrapper::get_Downtime_Reason), anyText);
    EXPECT_EQ(text(after[0], &_OccurrenceDataWrapper::get_Excursion_Category), anyText + anyText);
    EXPECT_EQ(text(after[0], &_OccurrenceDataWrapper::get_Excursion_Reason), L"Startup");
    EXPECT_EQ(text(after[0], &_OccurrenceDataWrapper::get_Downtime_Category), L"maintenance");
    EXPECT_FALSE(flag(after[0], &_OccurrenceDataWrapper::get_Downtime_Excludable));
    EXPECT_EQ(variant(after[0], &_OccurrenceDataWrapper::get_NValue).get().dblVal, 0.68);
    EXPECT_EQ(variant(after[0], &_OccurrenceDataWrapper::get_MC).get().lVal, 1);
    another.teardown();
    another.release();
    put(before[0], &_OccurrenceDataWrapper::put_Downtime_Reason, L"Filter changed");
    put(before[0], &_OccurrenceDataWrapper::put_Excursion_Category, L"");
    EXPECT_EQ(before[0]->put_Downtime_Excludable(VARIANT_TRUE), S_OK);
    EXPECT_TRUE(save(before[0]));
}

TEST_F(Occurrences, AMissingPartHasDefaultsAndCannotBeSet) {
    const auto found = listed(client_, {january + 5 / hours, january + 5 / hours}, {so2Rate});
    ASSERT_EQ(found.size(), 1U);
    const Occurrence& one = found[0];
    ASSERT_FALSE(hasExcursion(one));
    put(one, &_OccurrenceDataWrapper::put_Excursion_Reason, L"ignored");
    EXPECT_EQ(one->put_Excursion_Excludable(VARIANT_TRUE), S_OK);
    EXPECT_EQ(text(one, &_OccurrenceDataWrapper::get_Excursion_Reason), L"");
    EXPECT_EQ(text(one, &_OccurrenceDataWrapper::get_Excursion_Limit), L"");
    EXPECT_EQ(get(one, &_OccurrenceDataWrapper::get_Excursion_PID), 0);
    EXPECT_EQ(get(one, &_OccurrenceDataWrapper::get_Excursion_LimitPID), 0);
    EXPECT_FALSE(flag(one, &_OccurrenceDataWrapper::get_Excursion_Excludable));
    EXPECT_TRUE(variant(one, &_OccurrenceDataWrapper::get_NValue).isNull());
    EXPECT_EQ(text(one, &_OccurrenceDataWrapper::get_TextValue), L"");
}

TEST_F(Occurrences, AreMadeOnceAndRetrievedAfterwards) {
    EXPECT_TRUE(listed(client_, {free2024, free2024 + 1}).empty());
    const Occurrence made = create(so2Downtime, free2024);
    ASSERT_TRUE(made);
    EXPECT_TRUE(hasDowntime(made));
    EXPECT_FALSE(hasExcursion(made));
    EXPECT_EQ(get(made, &_OccurrenceDataWrapper::get_Downtime_PID), so2Downtime);
    EXPECT_EQ(tagOf(made), so2Rate);
    EXPECT_EQ(timeOf(made), free2024);
    EXPECT_TRUE(variant(made, &_OccurrenceDataWrapper::get_NValue).isNull());
    put(made, &_OccurrenceDataWrapper::put_Downtime_Reason, L"kept");
    EXPECT_TRUE(save(made));
    const Occurrence again = create(so2Downtime, free2024);
    ASSERT_TRUE(again);
    EXPECT_EQ(text(again, &_OccurrenceDataWrapper::get_Downtime_Reason), L"kept");
    const Occurrence both = create(so2Excess, free2024);
    ASSERT_TRUE(both);
    EXPECT_TRUE(hasDowntime(both));
    EXPECT_EQ(text(both, &_OccurrenceDataWrapper::get_Downtime_Reason), L"kept");
    EXPECT_EQ(text(both, &_OccurrenceDataWrapper::get_Excursion_Limit), L"0.5 lb/mmBtu");
    EXPECT_EQ(get(both, &_OccurrenceDataWrapper::get_Excursion_LimitPID), so2Limit);
    EXPECT_EQ(listed(client_, {free2024, free2024 + 1}).size(), 1U);
    const Occurrence minute = create(noxDowntime, free2024);
    ASSERT_TRUE(minute);
    EXPECT_EQ(tagOf(minute), noxAnalyzer);
    EXPECT_EQ(client_.problems(), L"");
}

TEST_F(Occurrences, OnAValueLeaveItAsItIs) {
    const DATE hour = january + 21 / hours;
    const Occurrence made = create(so2Excess, hour);
    ASSERT_TRUE(made);
    EXPECT_EQ(variant(made, &_OccurrenceDataWrapper::get_NValue).get().dblVal, 0.51);
    EXPECT_EQ(variant(made, &_OccurrenceDataWrapper::get_MC).get().lVal, 1);
}

TEST_F(Occurrences, ThatCannotBeMadeAreProblems) {
    EXPECT_FALSE(create(nobodysPid, free2024));
    EXPECT_EQ(client_.problemTexts(), std::vector{L"PID 5-999-3-00-00 does not exist (WDN-0065)"s});
    EXPECT_FALSE(create(so2Rate, free2024));
    EXPECT_EQ(client_.problemTexts(),
              std::vector{L"PID 7-040-3-00-00 is not an occurrence parameter (WDN-0060)"s});
    EXPECT_FALSE(create(so2Downtime, free2024 + 0.5 / hours));
    const auto problems = client_.problemTexts();
    ASSERT_FALSE(problems.empty());
    const std::wstring trapped = L"Error in creating/retrieving occurrence data points.  5 ";
    EXPECT_EQ(problems.back().substr(0, trapped.size()), trapped);
    EXPECT_NE(problems.back().find(L"2024-04-01 00:30"), std::wstring::npos) << problems.back();
}

TEST_F(Occurrences, OutliveTheWrapperThatHandedThemOut) {
    Occurrence one;
    {
        Client first(registered());
        ASSERT_TRUE(first.setup(occurrenceSite));
        one = listed(first, {january + 12 / hours, january + 12 / hours})[0];
        first.teardown();
        first.release();
    }
    EXPECT_EQ(text(one, &_OccurrenceDataWrapper::get_Downtime_Reason), L"Probe plugged, and cold");
    put(one, &_OccurrenceDataWrapper::put_Downtime_Action, L"Probe heated");
    EXPECT_TRUE(save(one));
    const auto after = listed(client_, {january + 12 / hours, january + 12 / hours});
    EXPECT_EQ(text(after[0], &_OccurrenceDataWrapper::get_Downtime_Action), L"Probe heated");
    put(one, &_OccurrenceDataWrapper::put_Downtime_Action, L"");
    EXPECT_TRUE(save(one));
}

TEST_F(Occurrences, OtherObjectsArgumentsAndSpansAreErrors) {
    const auto foreign = [&](IUnknown* object) {
        return client_.failure(&_DIWrapper::SaveOccurrence, static_cast<_OccurrenceDataWrapper*>(object));
    };
    com::Ptr<_DataPointBasicWrapper> point;
    ASSERT_EQ(client_->MakeBlankDataPointWrapper(free2024, point.receive()), S_OK);
    EXPECT_EQ(clientNumber(foreign(point.get()).result), 13);
    EXPECT_EQ(clientNumber(foreign(client_.get()).result), 13);
    EXPECT_FALSE(client_.yes(&_DIWrapper::SaveOccurrence, static_cast<_OccurrenceDataWrapper*>(nullptr)));

    const auto listFailure = [&](DATE first, DATE last, const com::Variant& excursions, SAFEARRAY* list) {
        return client_.failure(&_DIWrapper::GetOccurrences, first, last, VARIANT_TRUE, excursions.get(),
                               LONG{0}, VARIANT_FALSE, &list);
    };
    const auto yes = com::Variant::ofBool(true);
    const Failure backwards = listFailure(january + 1, january, yes, nullptr);
    EXPECT_EQ(clientNumber(backwards.result), 6) << backwards.description;
    EXPECT_EQ(backwards.source, L"VTEngine");
    EXPECT_EQ(clientNumber(listFailure(january, january, com::Variant::of(L"abc"), nullptr).result), 13);
    Array<LONG> unknown(0, 1);
    unknown.fill(nobodysPid);
    const Failure nobody = listFailure(january, january, yes, unknown.get());
    EXPECT_EQ(clientNumber(nobody.result), 9) << nobody.description;
    EXPECT_NE(nobody.description.find(L"5-999-3-00-00"), std::wstring::npos) << nobody.description;
    EXPECT_NE(client_.problems(), L"") << "The engine says what it refuses";
}

TEST(OccurrencesBeforeSetUp, AreNone) {
    const Client client(registered());
    EXPECT_TRUE(listed(client).empty());
    Occurrence none;
    EXPECT_EQ(client->CreateOrRetrieveOccurrence(so2Downtime, free2024, none.receive()), S_OK);
    EXPECT_FALSE(none);
    EXPECT_FALSE(client.yes(&_DIWrapper::SaveOccurrence, static_cast<_OccurrenceDataWrapper*>(nullptr)));
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(Occurrences, AreMadeForTheSecondProcess) {
    const Occurrence made = create(otherDowntime, edited2024);
    ASSERT_TRUE(made);
    put(made, &_OccurrenceDataWrapper::put_Downtime_Reason, anyText);
    EXPECT_EQ(made->put_Downtime_Excludable(VARIANT_TRUE), S_OK);
    EXPECT_TRUE(save(made));
}

TEST_F(OccurrencesSecondProcess, FindsWhatTheFirstOneMade) {
    const auto found = listed(client_, {edited2024, edited2024 + 1}, {8});
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(timeOf(found[0]), edited2024);
    EXPECT_EQ(tagOf(found[0]), otherRate);
    EXPECT_EQ(text(found[0], &_OccurrenceDataWrapper::get_Downtime_Reason), anyText);
    EXPECT_TRUE(flag(found[0], &_OccurrenceDataWrapper::get_Downtime_Excludable));
    EXPECT_TRUE(variant(found[0], &_OccurrenceDataWrapper::get_NValue).isNull());
}

}  // namespace
}  // namespace vtdn::test
