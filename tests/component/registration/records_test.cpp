// Data points and occurrences of clients in other apartments. Writes to the registry: runs in a Wine prefix
// of its own.
#include <functional>
#include <string>

#include "com/error.h"
#include "com/strings.h"
#include "registration/registered.h"
#include "support/array.h"

namespace vtdn::test {
namespace {

using com::Bstr;
using com::Ptr;

constexpr LONG pid = 530001;
constexpr DATE stamp = 39448.25;
/// Reads and writes every member of a data point that holds 2.5 with code 1.
void use(_DataPointBasicWrapper& point) {
    DATE time = 0;
    EXPECT_EQ(point.get_TStamp(&time), S_OK);
    EXPECT_EQ(time, stamp);
    com::Variant value;
    EXPECT_EQ(point.get_NValue(value.receive()), S_OK);
    ASSERT_EQ(value.type(), VT_R8);
    EXPECT_EQ(value.get().dblVal, 2.5);
    EXPECT_EQ(point.put_NValue(com::Variant::of(L"12.5").get()), S_OK);
    EXPECT_EQ(point.put_NValue(com::Variant::of(L"abc").get()), S_OK);
    EXPECT_EQ(point.get_NValue(value.receive()), S_OK);
    ASSERT_EQ(value.type(), VT_BSTR);
    EXPECT_EQ(com::view(value.get().bstrVal), L"12.5");
    EXPECT_EQ(point.SetNValueToNull(), S_OK);
    EXPECT_EQ(point.get_NValue(value.receive()), S_OK);
    EXPECT_TRUE(value.isNull());
    VARIANT_BOOL isNull = VARIANT_TRUE;
    EXPECT_EQ(point.get_IsNValueNull(&isNull), S_OK);
    EXPECT_EQ(isNull, VARIANT_FALSE);
    EXPECT_EQ(point.put_MC(com::Variant::of(LONG{7}).get()), S_OK);
    EXPECT_EQ(point.get_MC(value.receive()), S_OK);
    ASSERT_EQ(value.type(), VT_I4);
    EXPECT_EQ(value.get().lVal, 7);
    EXPECT_EQ(point.SetMCToNull(), S_OK);
    EXPECT_EQ(point.get_IsMCNull(&isNull), S_OK);
    EXPECT_EQ(isNull, VARIANT_FALSE);
    const Bstr text(std::wstring_view(L"<x>\0\xD83D\xDE00</x>", 10));
    EXPECT_EQ(point.put_OccDataXML(text.get()), S_OK);
    EXPECT_EQ(point.put_XValueXML(text.get()), S_OK);
    for (const auto property :
         {&_DataPointBasicWrapper::get_OccDataXML, &_DataPointBasicWrapper::get_XValueXML}) {
        Bstr got;
        EXPECT_EQ((point.*property)(got.receive()), S_OK);
        EXPECT_EQ(got.view(), text.view());
    }
}

/// A registered component over a site with two data points.
class DataPointsAcrossApartments : public Registration {
  protected:
    void SetUp() override {
        Registration::SetUp();
        ASSERT_EQ(component().call("DllRegisterServer"), S_OK);
        site.longTerm[pid] = {{stamp, com::Variant::of(2.5), com::Variant::of(LONG{1}), L"", L""},
                              {stamp + 1, com::Variant::null(), com::Variant::null(), L"", L""}};
    }
    fake::Site site;
    const fake::LenientServer server{site};
};

TEST_F(DataPointsAcrossApartments, AClientElsewhereListsUsesAndHandsBackDataPoints) {
    {
        const Client home;
        EXPECT_TRUE(home.setup());
        Handed<_DIWrapper> handed(Ptr<_DIWrapper>(home.get()));
        inAnotherApartment([&handed] {
            const Client client(handed.take());
            const Bstr hourly(L"1h");
            SAFEARRAY* listed = nullptr;
            ASSERT_EQ(client->GetLongTermDataPoints(pid, hourly.get(), stamp, stamp + 1, &listed), S_OK);
            com::SafeArray array(listed);
            ASSERT_TRUE(listed);
            ASSERT_EQ(com::bounds(array.get()), (com::Bounds{0, 1}));
            Ptr<_DataPointBasicWrapper> point;
            {
                // By its place: Wine does not say the element type of an array that came from elsewhere.
                void* elements = nullptr;
                ASSERT_EQ(SafeArrayAccessData(listed, &elements), S_OK);
                IDispatch* const first = *static_cast<IDispatch**>(elements);
                ASSERT_EQ(first->QueryInterface(__uuidof(_DataPointBasicWrapper), point.receiveVoid()), S_OK);
                ASSERT_EQ(SafeArrayUnaccessData(listed), S_OK);
            }
            array = {};
            use(*point.get());
            EXPECT_TRUE(
                client.yes(&_DIWrapper::UpdateLongTermDataPointXValue, point.get(), pid, hourly.get()));
            EXPECT_FALSE(
                client.yes(&_DIWrapper::UpdateShortTermDataPointXValue, point.get(), pid, hourly.get()));
            _DataPointBasicWrapper* const nothing = nullptr;
            EXPECT_FALSE(client.yes(&_DIWrapper::UpdateLongTermDataPointXValue, nothing, pid, hourly.get()));
            SAFEARRAY* none = nullptr;
            EXPECT_EQ(client->GetShortTermDataPoints(pid, hourly.get(), stamp, stamp + 1, &none), S_OK);
            EXPECT_EQ(none, nullptr);
            Ptr<_DataPointBasicWrapper> blank;
            EXPECT_EQ(client->MakeBlankDataPointWrapper(stamp + 1, blank.receive()), S_OK);
            EXPECT_EQ(blank->put_XValueXML(hourly.get()), S_OK);
            EXPECT_TRUE(
                client.yes(&_DIWrapper::UpdateLongTermDataPointXValue, blank.get(), pid, hourly.get()));
        });
        EXPECT_EQ(site.objects, 1) << "what the client held has ended";
        EXPECT_EQ(site.longTerm[pid][0].extra, std::wstring_view(L"<x>\0\xD83D\xDE00</x>", 10));
        EXPECT_EQ(site.longTerm[pid][1].extra, L"1h");
        EXPECT_EQ(home.problems(), L"");
    }
    EXPECT_EQ(site.objects, 0);
}

TEST_F(DataPointsAcrossApartments, AWrapperTakesADataPointOfAnotherApartment) {
    const EngineTypeLibrary registered;
    {
        const Client home;
        Ptr<_DataPointBasicWrapper> point;
        ASSERT_EQ(home->MakeBlankDataPointWrapper(stamp, point.receive()), S_OK);
        EXPECT_EQ(point->put_XValueXML(Bstr(L"<far/>").get()), S_OK);
        Handed<_DataPointBasicWrapper> handed(point);
        fake::Site elsewhere;
        elsewhere.longTerm[pid] = {{stamp, com::Variant::of(1.0), com::Variant::of(LONG{1}), L"", L""}};
        inAnotherApartment(
            [&] {
                const fake::LenientServer there(elsewhere);
                const Client client;
                EXPECT_TRUE(client.setup());
                const auto proxy = handed.take();
                const Bstr hourly(L"1h");
                EXPECT_TRUE(
                    client.yes(&_DIWrapper::UpdateLongTermDataPointXValue, proxy.get(), pid, hourly.get()));
            },
            COINIT_APARTMENTTHREADED);
        EXPECT_EQ(elsewhere.longTerm[pid][0].extra, L"<far/>");
        EXPECT_EQ(elsewhere.objects, 0);
    }
    EXPECT_EQ(site.objects, 0);
}

// ---- Occurrences

constexpr LONG downtimePid = 101000501;
constexpr LONG excursionPid = 101000502;

/// Texts that a marshaller must not cut or change.
const Bstr anyText(std::wstring_view(L"<x>\0\xD83D\xDE00\r\n</x>", 12));

/// Reads and writes every member of an occurrence that holds 2.5 with code 1, a downtime and an excursion.
void use(_OccurrenceDataWrapper& occurrence) {
    using I = _OccurrenceDataWrapper;
    LONG number = 0;
    EXPECT_EQ(occurrence.get_AffectedPID(&number), S_OK);
    EXPECT_EQ(number, pid);
    com::Variant value;
    EXPECT_EQ(occurrence.get_NValue(value.receive()), S_OK);
    ASSERT_EQ(value.type(), VT_R8);
    EXPECT_EQ(value.get().dblVal, 2.5);
    EXPECT_EQ(occurrence.get_MC(value.receive()), S_OK);
    ASSERT_EQ(value.type(), VT_I4);
    EXPECT_EQ(value.get().lVal, 1);
    Bstr text;
    EXPECT_EQ(occurrence.get_TextValue(text.receive()), S_OK);
    EXPECT_EQ(text.view(), L"2.5");
    DATE start = 0;
    EXPECT_EQ(occurrence.get_StartDate(&start), S_OK);
    EXPECT_EQ(start, stamp);
    VARIANT_BOOL flag = VARIANT_FALSE;
    for (const auto property : {&I::get_HasExcursion, &I::get_HasDowntime}) {
        EXPECT_EQ((occurrence.*property)(&flag), S_OK);
        EXPECT_EQ(flag, VARIANT_TRUE);
    }
    for (const auto& [property, seen] : {std::pair{&I::get_Excursion_PID, excursionPid},
                                         {&I::get_Downtime_PID, downtimePid},
                                         {&I::get_Excursion_LimitPID, LONG{101000900}}}) {
        EXPECT_EQ((occurrence.*property)(&number), S_OK);
        EXPECT_EQ(number, seen);
    }
    EXPECT_EQ(occurrence.get_Excursion_Limit(text.receive()), S_OK);
    EXPECT_EQ(text.view(), L"0.5 lb/mmBtu");
    for (const auto& [get, put] : {std::pair{&I::get_Excursion_Action, &I::put_Excursion_Action},
                                   {&I::get_Downtime_Action, &I::put_Downtime_Action},
                                   {&I::get_Excursion_Reason, &I::put_Excursion_Reason},
                                   {&I::get_Downtime_Reason, &I::put_Downtime_Reason},
                                   {&I::get_Excursion_Category, &I::put_Excursion_Category},
                                   {&I::get_Downtime_Category, &I::put_Downtime_Category}}) {
        EXPECT_EQ((occurrence.*put)(anyText.get()), S_OK);
        EXPECT_EQ((occurrence.*get)(text.receive()), S_OK);
        EXPECT_EQ(text.view(), anyText.view());
    }
    for (const auto& [get, put] : {std::pair{&I::get_Excursion_Excludable, &I::put_Excursion_Excludable},
                                   {&I::get_Downtime_Excludable, &I::put_Downtime_Excludable}}) {
        EXPECT_EQ((occurrence.*put)(VARIANT_TRUE), S_OK);
        EXPECT_EQ((occurrence.*get)(&flag), S_OK);
        EXPECT_EQ(flag, VARIANT_TRUE);
    }
}

/// What the occurrence of use() has afterwards.
fake::Occurrence afterUse() {
    fake::OccurrencePart part;
    part.excludable = true;
    for (std::wstring* text : {&part.category, &part.reason, &part.action}) *text = anyText.view();
    fake::Occurrence occurrence = {part, part};
    occurrence.excursion->pid = excursionPid;
    occurrence.excursion->limitPid = 101000900;
    occurrence.excursion->limit = L"0.5 lb/mmBtu";
    occurrence.downtime->pid = downtimePid;
    return occurrence;
}

/// A registered component over a site with one occurrence.
class OccurrencesAcrossApartments : public Registration {
  protected:
    void SetUp() override {
        Registration::SetUp();
        ASSERT_EQ(component().call("DllRegisterServer"), S_OK);
        fake::Occurrence occurrence;
        occurrence.excursion.emplace();
        occurrence.excursion->pid = excursionPid;
        occurrence.excursion->limitPid = 101000900;
        occurrence.excursion->limit = L"0.5 lb/mmBtu";
        occurrence.downtime.emplace();
        occurrence.downtime->pid = downtimePid;
        site.longTerm[pid] = {
            {stamp, com::Variant::of(2.5), com::Variant::of(LONG{1}), fake::occurrenceText(occurrence), L""}};
        fake::Parameter& parameter = site.parameters[downtimePid];
        parameter.ioType = 31;
        parameter.specialValues = {{-21, com::Variant::of(pid)},
                                   {-3, com::Variant::of(LONG{4})},
                                   {-13, com::Variant::of(LONG{3600})}};
    }
    /// The first of all occurrences; `tags` is asked for.
    static Ptr<_OccurrenceDataWrapper> firstOf(const Client& client, SAFEARRAY** tags) {
        Ptr<_OccurrenceDataWrapper> occurrence;
        SAFEARRAY* listed = nullptr;
        EXPECT_EQ(client->GetOccurrences(stamp, stamp, VARIANT_TRUE, com::Variant::of(L"True").get(), 0,
                                         VARIANT_TRUE, tags, &listed),
                  S_OK);
        const com::SafeArray array(listed);
        // By its place: Wine does not say the element type of an array that came from elsewhere.
        void* elements = nullptr;
        if (!listed || FAILED(SafeArrayAccessData(listed, &elements))) return nullptr;
        IDispatch* const first = *static_cast<IDispatch**>(elements);
        EXPECT_EQ(first->QueryInterface(__uuidof(_OccurrenceDataWrapper), occurrence.receiveVoid()), S_OK);
        EXPECT_EQ(SafeArrayUnaccessData(listed), S_OK);
        return occurrence;
    }

    fake::Site site;
    const fake::LenientServer server{site};
};

TEST_F(OccurrencesAcrossApartments, AClientElsewhereListsUsesSavesAndCreatesOccurrences) {
    {
        const Client home;
        EXPECT_TRUE(home.setup());
        Handed<_DIWrapper> handed(Ptr<_DIWrapper>(home.get()));
        inAnotherApartment([&handed] {
            const Client client(handed.take());
            Array<LONG> tags(1, 2);
            tags.fill(pid);
            const auto occurrence = firstOf(client, tags.inOut());
            ASSERT_TRUE(occurrence);
            EXPECT_EQ(tags.values(), (std::vector<LONG>{pid, pid}));
            use(*occurrence.get());
            EXPECT_TRUE(client.yes(&_DIWrapper::SaveOccurrence, occurrence.get()));
            EXPECT_FALSE(
                client.yes(&_DIWrapper::SaveOccurrence, static_cast<_OccurrenceDataWrapper*>(nullptr)));
            SAFEARRAY* none = nullptr;
            EXPECT_TRUE(firstOf(client, &none));
            EXPECT_EQ(none, nullptr);
            tags.fill(pid + 1);
            EXPECT_FALSE(firstOf(client, tags.inOut()));

            Ptr<_OccurrenceDataWrapper> created;
            EXPECT_EQ(client->CreateOrRetrieveOccurrence(downtimePid, stamp + 1, created.receive()), S_OK);
            ASSERT_TRUE(created);
            EXPECT_EQ(created->put_Downtime_Reason(anyText.get()), S_OK);
            EXPECT_TRUE(client.yes(&_DIWrapper::SaveOccurrence, created.get()));
            EXPECT_EQ(client->CreateOrRetrieveOccurrence(excursionPid, stamp, created.receive()), S_OK);
            EXPECT_FALSE(created);
            EXPECT_EQ(client.problemTexts(),
                      std::vector<std::wstring>{L"PID 1-010-0-05-02 does not exist (WDN-0065)"});
        });
        EXPECT_EQ(site.objects, 1) << "what the client held has ended";
        ASSERT_EQ(site.longTerm[pid].size(), 2U);
        EXPECT_EQ(fake::occurrenceOf(site.longTerm[pid][0].occurrence), afterUse());
        const auto made = fake::occurrenceOf(site.longTerm[pid][1].occurrence);
        ASSERT_TRUE(made.downtime);
        EXPECT_EQ(made.downtime->reason, anyText.view());
    }
    EXPECT_EQ(site.objects, 0);
}

TEST_F(OccurrencesAcrossApartments, AWrapperTakesAnOccurrenceOfAnotherApartment) {
    const EngineTypeLibrary registered;
    {
        const Client home;
        EXPECT_TRUE(home.setup());
        SAFEARRAY* none = nullptr;
        const auto occurrence = firstOf(home, &none);
        ASSERT_TRUE(occurrence);
        use(*occurrence.get());
        Handed<_OccurrenceDataWrapper> handed(occurrence);
        fake::Site elsewhere;
        elsewhere.longTerm[pid] = {{stamp, com::Variant::of(1.0), com::Variant::of(LONG{1}), L"", L""}};
        inAnotherApartment(
            [&] {
                const fake::LenientServer there(elsewhere);
                const Client client;
                EXPECT_TRUE(client.setup());
                const auto proxy = handed.take();
                EXPECT_TRUE(client.yes(&_DIWrapper::SaveOccurrence, proxy.get()));
                // A data point is asked for, and an occurrence is none.
                const Bstr hourly(L"1h");
                EXPECT_EQ(clientNumber(client
                                           .failure(&_DIWrapper::UpdateLongTermDataPointXValue,
                                                    reinterpret_cast<_DataPointBasicWrapper*>(proxy.get()),
                                                    pid, hourly.get())
                                           .result),
                          13);
            },
            COINIT_APARTMENTTHREADED);
        EXPECT_EQ(fake::occurrenceOf(elsewhere.longTerm[pid][0].occurrence), afterUse());
        EXPECT_EQ(elsewhere.longTerm[pid][0].value.get().dblVal, 1.0);
        EXPECT_EQ(elsewhere.edits, (std::vector<fake::Edit>{{pid, stamp, L"OccEdit", L""}}));
        EXPECT_EQ(elsewhere.objects, 0);
        // The home site keeps what it had.
        EXPECT_TRUE(site.edits.empty());
    }
    EXPECT_EQ(site.objects, 0);
}

}  // namespace
}  // namespace vtdn::test
