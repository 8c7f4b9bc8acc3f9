// How long occurrences live: the objects, the engine's occurrences behind them, the library. And that what is
// saved arrives.
#include <VTWrapperDN.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "com/error.h"
#include "com/strings.h"
#include "fake_engine/lenient.h"
#include "lifetime/elements.h"
#include "support/client.h"

namespace vtdn::test {
namespace {

using com::Bstr;
using com::Ptr;
using Object = _OccurrenceDataWrapper;
using Occurrence = Ptr<Object>;

constexpr LONG tag = 530001;
constexpr LONG downtimePid = 101000501;
constexpr LONG excursionPid = 101000502;
constexpr DATE start = 39448;
constexpr double hour = 1.0 / 24;

fake::OccurrencePart part(LONG pid) {
    fake::OccurrencePart one;
    one.pid = pid;
    return one;
}

class OccurrenceLifetime : public testing::Test {
  protected:
    OccurrenceLifetime() {
        site.siteId = L"S1";
        for (const auto& [pid, type] : {std::pair{downtimePid, LONG{4}}, {excursionPid, LONG{3}}}) {
            fake::Parameter& parameter = site.parameters[pid];
            parameter.ioType = 31;
            parameter.specialValues = {{-21, com::Variant::of(tag)},
                                       {-3, com::Variant::of(type)},
                                       {-13, com::Variant::of(LONG{3600})}};
        }
    }
    /// A site with a downtime in each of `count` hours, and an excursion in every third.
    void furnish(int count) {
        auto& points = site.longTerm[tag];
        points.clear();
        for (int i = 0; i < count; ++i) {
            fake::Occurrence occurrence;
            occurrence.downtime = part(downtimePid);
            occurrence.downtime->reason = L"Calibration";
            if (i % 3 == 0) occurrence.excursion = part(excursionPid);
            points.push_back({start + i * hour, com::Variant::of(static_cast<LONG>(i)),
                              com::Variant::of(LONG{1}), fake::occurrenceText(occurrence), L""});
        }
    }
    [[nodiscard]] static com::SafeArray list(_DIWrapper& wrapper) {
        SAFEARRAY* none = nullptr;
        SAFEARRAY* array = nullptr;
        EXPECT_EQ(wrapper.GetOccurrences(start, start + 10'000, VARIANT_TRUE,
                                         com::Variant::ofBool(true).get(), 0, VARIANT_FALSE, &none, &array),
                  S_OK);
        return com::SafeArray(array);
    }
    [[nodiscard]] static Occurrence create(_DIWrapper& wrapper, LONG pid, DATE time) {
        Occurrence occurrence;
        EXPECT_EQ(wrapper.CreateOrRetrieveOccurrence(pid, time, occurrence.receive()), S_OK);
        EXPECT_TRUE(occurrence);
        return occurrence;
    }
    static LONG valueOf(const Occurrence& occurrence) {
        com::Variant value;
        EXPECT_EQ(occurrence->get_NValue(value.receive()), S_OK);
        EXPECT_EQ(value.type(), VT_I4);
        return value.get().lVal;
    }
    static bool has(const Occurrence& occurrence, HRESULT (STDMETHODCALLTYPE Object::*part)(VARIANT_BOOL*)) {
        VARIANT_BOOL result = VARIANT_FALSE;
        EXPECT_EQ((occurrence.get()->*part)(&result), S_OK);
        return result != VARIANT_FALSE;
    }
    static std::wstring text(const Occurrence& occurrence,
                             HRESULT (STDMETHODCALLTYPE Object::*property)(BSTR*)) {
        Bstr result;
        EXPECT_EQ((occurrence.get()->*property)(result.receive()), S_OK);
        return std::wstring(result.view());
    }

    fake::Site site;
    const fake::LenientServer server{site};
    const Component library{componentPath()};
};

TEST_F(OccurrenceLifetime, WrapperArrayAndObjectsCanBeReleasedInAnyOrder) {
    furnish(2);
    std::vector<int> order = {0, 1, 2, 3, 4};
    do {
        Ptr<_DIWrapper> wrapper = library.create<_DIWrapper>(CLSID_DIWrapper);
        EXPECT_TRUE(Client(wrapper).setup());
        com::SafeArray array = list(*wrapper.get());
        Occurrence first = at<Object>(array, 0);
        Occurrence second = at<Object>(array, 1);
        Occurrence created = create(*wrapper.get(), downtimePid, start);
        EXPECT_EQ(site.objects, 4);
        const std::function<void()> releases[] = {[&] { wrapper.reset(); }, [&] { array = {}; },
                                                  [&] { first.reset(); }, [&] { second.reset(); },
                                                  [&] { created.reset(); }};
        for (const int one : order) {
            EXPECT_EQ(library.canUnloadNow(), S_FALSE);
            releases[one]();
            // What is left still answers, and takes what is written.
            for (const Occurrence& left : {first, second, created}) {
                if (!left) continue;
                EXPECT_EQ(valueOf(left), left.get() == second.get() ? 1 : 0);
                EXPECT_EQ(left->put_Downtime_Action(Bstr(L"Replaced").get()), S_OK);
                EXPECT_EQ(text(left, &Object::get_Downtime_Action), L"Replaced");
            }
        }
        EXPECT_EQ(site.objects, 0);
        EXPECT_EQ(library.canUnloadNow(), S_OK);
    } while (std::next_permutation(order.begin(), order.end()));
}

TEST_F(OccurrenceLifetime, AnObjectKeepsTheLibraryLoadedByItself) {
    Occurrence occurrence;
    {
        Client client(library.create<_DIWrapper>(CLSID_DIWrapper));
        EXPECT_TRUE(client.setup());
        occurrence = create(*client.get(), excursionPid, start);
        client.teardown();
        client.release();
    }
    EXPECT_EQ(library.canUnloadNow(), S_FALSE);
    EXPECT_EQ(site.objects, 1);
    EXPECT_TRUE(has(occurrence, &Object::get_HasExcursion));
    occurrence.reset();
    EXPECT_EQ(site.objects, 0);
    EXPECT_EQ(library.canUnloadNow(), S_OK);
}

TEST_F(OccurrenceLifetime, ItsInterfacesAreOneObjectAndItCannotBeCreated) {
    const Client client(library.create<_DIWrapper>(CLSID_DIWrapper));
    EXPECT_TRUE(client.setup());
    const Occurrence occurrence = create(*client.get(), downtimePid, start);
    const auto identity = occurrence.as<IUnknown>();
    for (const IID& iid : {__uuidof(Object), IID_IDispatch, IID_ISupportErrorInfo, IID_IProvideClassInfo}) {
        Ptr<IUnknown> found;
        ASSERT_EQ(occurrence->QueryInterface(iid, found.receiveVoid()), S_OK);
        EXPECT_EQ(found.as<IUnknown>().get(), identity.get());
    }
    for (const IID& iid : {__uuidof(_DIWrapper), __uuidof(_DataPointBasicWrapper), __uuidof(DIOccurrence),
                           IID_IClassFactory}) {
        void* out = &out;
        EXPECT_EQ(occurrence->QueryInterface(iid, &out), E_NOINTERFACE);
        EXPECT_EQ(out, nullptr);
    }
    const auto errors = occurrence.as<ISupportErrorInfo>();
    const auto provider = occurrence.as<IProvideClassInfo>();
    ASSERT_TRUE(errors && provider);
    EXPECT_EQ(errors->InterfaceSupportsErrorInfo(__uuidof(Object)), S_OK);
    Ptr<ITypeInfo> type;
    ASSERT_EQ(provider->GetClassInfo(type.receive()), S_OK);
    TYPEATTR* attributes = nullptr;
    ASSERT_EQ(type->GetTypeAttr(&attributes), S_OK);
    EXPECT_TRUE(IsEqualGUID(attributes->guid, CLSID_OccurrenceDataWrapper));
    EXPECT_EQ(attributes->wTypeFlags & TYPEFLAG_FCANCREATE, 0);
    type->ReleaseTypeAttr(attributes);
    void* factory = &factory;
    EXPECT_EQ(library.getClassObject(CLSID_OccurrenceDataWrapper, IID_IClassFactory, &factory),
              CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(factory, nullptr);
}

TEST_F(OccurrenceLifetime, AHundredThousandAreListedWalkedAndReleased) {
    constexpr int count = 100'000;
    furnish(count);
    Client client(library.create<_DIWrapper>(CLSID_DIWrapper));
    EXPECT_TRUE(client.setup());
    com::SafeArray array = list(*client.get());
    EXPECT_EQ(com::bounds(array.get()), (com::Bounds{0, count - 1}));
    EXPECT_EQ(site.objects, count + 1);
    LONG expected = 0;
    LONG wrong = 0;
    for (IDispatch* const element : com::ArrayView<IDispatch*>(array.get())) {
        Occurrence occurrence;
        com::check(element->QueryInterface(__uuidof(Object), occurrence.receiveVoid()));
        DATE time = 0;
        LONG pid = 0;
        EXPECT_EQ(occurrence->get_StartDate(&time), S_OK);
        EXPECT_EQ(occurrence->get_Downtime_PID(&pid), S_OK);
        if (valueOf(occurrence) != expected || time != start + expected * hour || pid != downtimePid ||
            has(occurrence, &Object::get_HasExcursion) != (expected % 3 == 0))
            ++wrong;
        ++expected;
    }
    EXPECT_EQ(expected, count);
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(text(at<Object>(array, count - 1), &Object::get_Downtime_Reason), L"Calibration");
    EXPECT_EQ(site.objects, count + 1) << "an event was kept";
    array = {};
    EXPECT_EQ(site.objects, 1);
    client.release();
    EXPECT_EQ(site.objects, 0);
    EXPECT_EQ(library.canUnloadNow(), S_OK);
}

TEST_F(OccurrenceLifetime, AFailureInTheMiddleOfALongListLeavesNothingBehind) {
    class Failing : public fake::Tap {
      public:
        HRESULT onCall(const char* call) override {
            return std::string_view(call) == "DICollection.Item" && ++items == 5'000 ? E_FAIL : S_OK;
        }
        int items = 0;
    } failing;
    furnish(10'000);
    const Client client(library.create<_DIWrapper>(CLSID_DIWrapper));
    EXPECT_TRUE(client.setup());
    site.tap = &failing;
    SAFEARRAY* none = nullptr;
    EXPECT_EQ(client
                  .failure(&_DIWrapper::GetOccurrences, start, start + 10'000, VARIANT_TRUE,
                           com::Variant::ofBool(true).get(), LONG{0}, VARIANT_FALSE, &none)
                  .result,
              E_FAIL);
    EXPECT_EQ(failing.items, 5'000);
    EXPECT_EQ(site.objects, 1);
    EXPECT_EQ(client.problems(), L"");
}

// ---- What is saved

TEST_F(OccurrenceLifetime, WhatIsSavedReachesItsDataPointAndNothingElse) {
    furnish(3);
    const Client client(library.create<_DIWrapper>(CLSID_DIWrapper));
    EXPECT_TRUE(client.setup());
    const std::wstring untouched = site.longTerm[tag][0].occurrence;
    const Bstr reason(std::wstring_view(L"<a>\0&\xD83D\xDE00\r\n", 9));
    {
        const com::SafeArray array = list(*client.get());
        const Occurrence second = at<Object>(array, 1);
        EXPECT_EQ(second->put_Downtime_Reason(reason.get()), S_OK);
        EXPECT_EQ(second->put_Downtime_Excludable(VARIANT_TRUE), S_OK);
        EXPECT_EQ(second->put_Excursion_Reason(reason.get()), S_OK) << "ignored: there is none";
        // Not yet.
        EXPECT_EQ(fake::occurrenceOf(site.longTerm[tag][1].occurrence).downtime->reason, L"Calibration");
        EXPECT_TRUE(client.yes(&_DIWrapper::SaveOccurrence, second.get()));
    }
    fake::Occurrence saved;
    saved.downtime = part(downtimePid);
    saved.downtime->excludable = true;
    saved.downtime->reason = reason.view();
    EXPECT_EQ(fake::occurrenceOf(site.longTerm[tag][1].occurrence), saved);
    EXPECT_EQ(site.longTerm[tag][1].value.get().lVal, 1);
    EXPECT_EQ(site.longTerm[tag][1].mc.get().lVal, 1);
    EXPECT_EQ(site.longTerm[tag][0].occurrence, untouched);
    EXPECT_EQ(site.edits, (std::vector<fake::Edit>{{tag, start + hour, L"OccEdit", L""}}));
    EXPECT_EQ(text(at<Object>(list(*client.get()), 1), &Object::get_Downtime_Reason), reason.view());
    // A data point that is gone meanwhile is not made anew.
    const Occurrence first = at<Object>(list(*client.get()), 0);
    site.longTerm[tag].clear();
    EXPECT_FALSE(client.yes(&_DIWrapper::SaveOccurrence, first.get()));
    EXPECT_TRUE(site.longTerm[tag].empty());
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(OccurrenceLifetime, AnOccurrenceIsCreatedOnceAndRetrievedFromThenOn) {
    const Client client(library.create<_DIWrapper>(CLSID_DIWrapper));
    EXPECT_TRUE(client.setup());
    const auto& points = site.longTerm[tag];
    {
        const Occurrence created = create(*client.get(), downtimePid, start);
        EXPECT_TRUE(has(created, &Object::get_HasDowntime));
        EXPECT_FALSE(has(created, &Object::get_HasExcursion));
        EXPECT_EQ(created->put_Downtime_Category(Bstr(L"Maintenance").get()), S_OK);
        EXPECT_TRUE(client.yes(&_DIWrapper::SaveOccurrence, created.get()));
    }
    const Occurrence again = create(*client.get(), downtimePid, start);
    EXPECT_EQ(text(again, &Object::get_Downtime_Category), L"Maintenance");
    const Occurrence both = create(*client.get(), excursionPid, start);
    EXPECT_TRUE(has(both, &Object::get_HasExcursion));
    EXPECT_EQ(text(both, &Object::get_Downtime_Category), L"Maintenance");
    ASSERT_EQ(points.size(), 1U);
    EXPECT_EQ(points[0].timeStamp, start);
    EXPECT_TRUE(points[0].value.isNull());
    fake::Occurrence stored;
    stored.downtime = part(downtimePid);
    stored.downtime->category = L"Maintenance";
    stored.excursion = part(excursionPid);
    EXPECT_EQ(fake::occurrenceOf(points[0].occurrence), stored);
    const fake::Edit byUser{tag, start, L"OccEdit", L"lenient"};
    EXPECT_EQ(site.edits, (std::vector<fake::Edit>{byUser, {tag, start, L"OccEdit", L""}, byUser, byUser}));
    EXPECT_EQ(client.problems(), L"");
}

}  // namespace
}  // namespace vtdn::test
