// Loading, class objects, reference counts, unloading. The library is loaded and freed by each test itself.
#include <VTDI.h>
#include <VTWrapperDN.h>
#include <gtest/gtest.h>
#include <ocidl.h>

#include <algorithm>
#include <numeric>
#include <thread>
#include <vector>

#include "com/error.h"
#include "com/strings.h"
#include "fake_engine/lenient.h"
#include "support/array.h"
#include "support/client.h"

namespace vtdn::test {
namespace {

using com::Bstr;
using com::Ptr;

constexpr LONG pid = 530001;

bool isLoaded() {
    return GetModuleHandleW(L"VTWrapDN.dll") != nullptr;
}

void furnish(fake::Site& site) {
    site.parameters[pid].name = L"Flow";
    site.parameters[pid].run = {{com::Variant::of(LONG{1}), 1}, {com::Variant::of(2.5), 2}};
    site.knownMcs = {5};
    site.siteId = L"S1";
    site.parameters[pid].type = 3;
    site.parameters[pid].relationship = fake::Relationship{1, L"h", L"<r/>"};
    site.parameters[pid].specialValues.insert_or_assign(-95, com::Variant::of(L"3456"));
    site.parameters[pid].functionAnswer = com::Variant::of(2.5);
    site.units = {L"Common"};
    site.monitorCodes = {{L"OK"}, {L"Valid"}};
    site.longTerm[pid] = {{39448.0, com::Variant::of(1.5), com::Variant::of(LONG{5}), L"", L"<x/>"}};
    site.parameters[pid + 2].ioType = 31;
    site.parameters[pid + 2].specialValues = {
        {-21, com::Variant::of(pid + 3)}, {-3, com::Variant::of(LONG{4})}, {-13, com::Variant::of(L"3600")}};
}

void useDataPoints(const Client& client) {
    const Bstr type(L"1h");
    Ptr<_DataPointBasicWrapper> point;
    {
        SAFEARRAY* listed = nullptr;
        EXPECT_EQ(client->GetLongTermDataPoints(pid, type.get(), 39448.0, 39449.0, &listed), S_OK);
        const com::SafeArray array(listed);
        const com::ArrayView<IDispatch*> elements(array.get());
        ASSERT_EQ(elements.size(), 1U);
        ASSERT_EQ(elements[0]->QueryInterface(__uuidof(_DataPointBasicWrapper), point.receiveVoid()), S_OK);
    }
    SAFEARRAY* none = nullptr;
    EXPECT_EQ(client->GetShortTermDataPoints(pid, type.get(), 39448.0, 39449.0, &none), S_OK);
    EXPECT_EQ(none, nullptr);
    EXPECT_EQ(point->put_XValueXML(type.get()), S_OK);
    EXPECT_TRUE(client.yes(&_DIWrapper::UpdateLongTermDataPointXValue, point.get(), pid, type.get()));
    Ptr<_DataPointBasicWrapper> blank;
    EXPECT_EQ(client->MakeBlankDataPointWrapper(39448.0, blank.receive()), S_OK);
    EXPECT_EQ(blank->SetNValueToNull(), S_OK);
}

void useOccurrences(const Client& client) {
    Ptr<_OccurrenceDataWrapper> created;
    EXPECT_EQ(client->CreateOrRetrieveOccurrence(pid + 2, 39449.0, created.receive()), S_OK);
    ASSERT_TRUE(created);
    EXPECT_EQ(created->put_Downtime_Reason(Bstr(L"Calibration").get()), S_OK);
    EXPECT_TRUE(client.yes(&_DIWrapper::SaveOccurrence, created.get()));
    Array<LONG> tags(1, 1);
    tags.fill(pid + 3);
    SAFEARRAY* listed = nullptr;
    EXPECT_EQ(client->GetOccurrences(39448.0, 39449.0, VARIANT_TRUE, com::Variant::of(L"True").get(), 0,
                                     VARIANT_TRUE, tags.inOut(), &listed),
              S_OK);
    const com::SafeArray array(listed);
    EXPECT_EQ(com::bounds(array.get()), (com::Bounds{0, 0}));
}

/// The operations that list, ask for special values, write runs and alarms.
void useMore(const Client& client) {
    EXPECT_EQ(client.text(&_DIWrapper::GetListOfCalPIDs), L"000530001");
    EXPECT_EQ(client.text(&_DIWrapper::GetListOfRelationshipPIDs, ParamRelationship_Hourly, LONG{1}),
              L"000530001");
    BSTR xml = nullptr;
    EXPECT_TRUE(client.yes(&_DIWrapper::GetRelationshipDetailData, pid, &xml));
    EXPECT_EQ(Bstr::adopt(xml).view(), L"<?xml version=\"1.0\"?>\r\n<r/>");
    EXPECT_EQ(client.text(&_DIWrapper::Param_GetSpecialValue_String, pid, LONG{-95}), L"3456");
    EXPECT_EQ(client.number(&_DIWrapper::Param_GetSpecialValue_Int32, pid + 1, LONG{-95}), 0);
    Array<VARIANT> arguments(0, 2);
    EXPECT_EQ(client.number(&_DIWrapper::Param_GetSpecialFunction_Real32, pid, LONG{101}, arguments.inOut()),
              2);
    EXPECT_EQ(client.number(&_DIWrapper::Param_CallSF_CalcOpTime, pid, 39448.0, 39449.0), 2);
    const Bstr type(L"1h");
    const Bstr values(L"1.5\ttext");
    Array<LONG> mcs(0, 2);
    Array<LONG> flags(0, 2);
    flags.fill(3);
    EXPECT_TRUE(client.yes(&_DIWrapper::Param_WriteValues, pid, 39448.0, LONG{2}, type.get(), LONG{1},
                           values.get(), mcs.inOut(), flags.inOut()));
    EXPECT_EQ(client->Params_FlushCache(), S_OK);
    EXPECT_EQ(client.texts(&_DIWrapper::Utils_GetUnitNames).front(), L"Common");
    EXPECT_EQ(client.texts(&_DIWrapper::Utils_GetEDRUnitIDs).size(), 20U);
    EXPECT_EQ(client.texts(&_DIWrapper::Utils_GetLongMCNames), std::vector<std::wstring>{L"Valid"});
    EXPECT_TRUE(client.yes(&_DIWrapper::WriteStrToAlarm, 39448.0, type.get(), type.get(), LONG{4}, type.get(),
                           type.get()));
}

/// A short life of a client.
void use(const Client& client) {
    EXPECT_TRUE(client.setup());
    EXPECT_EQ(client.text(&_DIWrapper::Param_Name, pid), L"Flow");
    EXPECT_EQ(client.text(&_DIWrapper::Param_Name, pid + 1), L"");
    const Bstr type(L"1h");
    Array<float> values(1, 1);
    Array<LONG> mcs(1, 1);
    Array<VARIANT_BOOL> flags(1, 1);
    EXPECT_TRUE(client.yes(&_DIWrapper::Param_GetDataArray_Single, pid, 39448.0, LONG{2}, type.get(), LONG{1},
                           values.inOut(), mcs.inOut(), flags.inOut()));
    EXPECT_EQ(values.values(), (std::vector<float>{1, 2.5f}));
    EXPECT_TRUE(client.yes(&_DIWrapper::Param_WriteVMC_Single, pid, 39448.0, 1.5f, LONG{5}));
    useMore(client);
    useDataPoints(client);
    useOccurrences(client);
    EXPECT_FALSE(client.problems().empty());
}

// ---- Class objects

TEST(ClassObjects, AnUnknownClassIsRefused) {
    const Component library(componentPath());
    const GUID unknown = {0x12345678, 0x1234, 0x1234, {1, 2, 3, 4, 5, 6, 7, 8}};
    for (const CLSID& id : {unknown, GUID{}, __uuidof(DIEngineClass), __uuidof(_DIWrapper)}) {
        void* out = &out;
        EXPECT_EQ(library.getClassObject(id, IID_IClassFactory, &out), CLASS_E_CLASSNOTAVAILABLE);
        EXPECT_EQ(out, nullptr);
    }
}

TEST(ClassObjects, AnswerTheirTwoInterfacesOnly) {
    const Component library(componentPath());
    for (const IID& iid : {IID_IUnknown, IID_IClassFactory}) {
        Ptr<IUnknown> factory;
        EXPECT_EQ(library.getClassObject(CLSID_DIWrapper, iid, factory.receiveVoid()), S_OK);
        EXPECT_TRUE(factory);
    }
    void* out = &out;
    EXPECT_EQ(library.getClassObject(CLSID_DIWrapper, IID_IDispatch, &out), E_NOINTERFACE);
    EXPECT_EQ(out, nullptr);
    EXPECT_TRUE(FAILED(library.getClassObject(CLSID_DIWrapper, IID_IClassFactory, nullptr)));
}

TEST(ClassObjects, MakeObjectsThatAreNotAggregated) {
    const Component library(componentPath());
    Ptr<IClassFactory> factory;
    ASSERT_EQ(library.getClassObject(CLSID_DIWrapper, IID_IClassFactory, factory.receiveVoid()), S_OK);
    void* out = &out;
    EXPECT_EQ(factory->CreateInstance(factory.get(), IID_IUnknown, &out), CLASS_E_NOAGGREGATION);
    EXPECT_EQ(out, nullptr);
    out = &out;
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IStream, &out), E_NOINTERFACE);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IUnknown, nullptr), E_POINTER);
    for (const IID& iid : {IID_IUnknown, IID_IDispatch, __uuidof(_DIWrapper), IID_ISupportErrorInfo}) {
        Ptr<IUnknown> object;
        EXPECT_EQ(factory->CreateInstance(nullptr, iid, object.receiveVoid()), S_OK);
    }
    Ptr<IUnknown> one;
    Ptr<IUnknown> two;
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IUnknown, one.receiveVoid()), S_OK);
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IUnknown, two.receiveVoid()), S_OK);
    EXPECT_NE(one.get(), two.get());
}

// ---- Unloading

TEST(Unloading, IsAllowedExactlyWhenNothingIsHeld) {
    const Component library(componentPath());
    EXPECT_EQ(library.canUnloadNow(), S_OK);
    {
        const Client client(library.create<_DIWrapper>(CLSID_DIWrapper));
        EXPECT_EQ(library.canUnloadNow(), S_FALSE);
    }
    EXPECT_EQ(library.canUnloadNow(), S_OK);
    Ptr<IClassFactory> factory;
    ASSERT_EQ(library.getClassObject(CLSID_DIWrapper, IID_IClassFactory, factory.receiveVoid()), S_OK);
    EXPECT_EQ(factory->LockServer(TRUE), S_OK);
    EXPECT_EQ(factory->LockServer(TRUE), S_OK);
    EXPECT_EQ(library.canUnloadNow(), S_FALSE);
    EXPECT_EQ(factory->LockServer(FALSE), S_OK);
    factory.reset();
    EXPECT_EQ(library.canUnloadNow(), S_FALSE);
    ASSERT_EQ(library.getClassObject(CLSID_DIWrapper, IID_IClassFactory, factory.receiveVoid()), S_OK);
    EXPECT_EQ(factory->LockServer(FALSE), S_OK);
    factory.reset();
    EXPECT_EQ(library.canUnloadNow(), S_OK);
}

TEST(Unloading, IsRefusedWhileASetUpWrapperListensToItsEngine) {
    fake::Site site;
    const fake::LenientServer server(site);
    const Component library(componentPath());
    Client client(library.create<_DIWrapper>(CLSID_DIWrapper));
    EXPECT_TRUE(client.setup());
    client.release();
    EXPECT_EQ(site.objects, 0);
    EXPECT_EQ(library.canUnloadNow(), S_OK);
}

TEST(Unloading, IsAllowedAfterFailedCreationsAndFailedCalls) {
    const Component library(componentPath());
    void* out = nullptr;
    Ptr<IClassFactory> factory;
    ASSERT_EQ(library.getClassObject(CLSID_DIWrapper, IID_IClassFactory, factory.receiveVoid()), S_OK);
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IStream, &out), E_NOINTERFACE);
    EXPECT_EQ(factory->CreateInstance(factory.get(), IID_IUnknown, &out), CLASS_E_NOAGGREGATION);
    factory.reset();
    EXPECT_EQ(library.canUnloadNow(), S_OK);
}

TEST(Unloading, FreesTheLibraryAndLoadsItAgainAndAgain) {
    fake::Site site;
    furnish(site);
    const fake::LenientServer server(site);
    for (int round = 0; round < 25; ++round) {
        {
            const Component library(componentPath());
            Client client(library.create<_DIWrapper>(CLSID_DIWrapper));
            use(client);
            if (round % 2 == 0) client.teardown();
            client.release();
            EXPECT_EQ(library.canUnloadNow(), S_OK);
            EXPECT_TRUE(isLoaded());
        }
        EXPECT_FALSE(isLoaded());
        EXPECT_EQ(site.objects, 0);
        EXPECT_EQ(site.sinks->count(), 0U);
    }
}

TEST(Unloading, WorksAfterTheApartmentHasEnded) {
    std::thread([] {
        ASSERT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
        const Component library(componentPath());
        {
            fake::Site site;
            furnish(site);
            const fake::LenientServer server(site);
            use(Client(library.create<_DIWrapper>(CLSID_DIWrapper)));
        }
        CoUninitialize();
        EXPECT_EQ(library.canUnloadNow(), S_OK);
    }).join();
    EXPECT_FALSE(isLoaded());
}

TEST(Unloading, WorksAfterLateBoundCallsAndTypeInformation) {
    for (int round = 0; round < 5; ++round) {
        {
            const Component library(componentPath());
            const auto object = library.create<IDispatch>(CLSID_DIWrapper);
            std::wstring name = L"GetAndClearProblemsList";
            LPOLESTR names[] = {name.data()};
            DISPID id = 0;
            EXPECT_EQ(object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id), S_OK);
            DISPPARAMS none{};
            com::Variant result;
            EXPECT_EQ(object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &none,
                                     result.receive(), nullptr, nullptr),
                      S_OK);
            Ptr<ITypeInfo> type;
            EXPECT_EQ(object->GetTypeInfo(0, LOCALE_USER_DEFAULT, type.receive()), S_OK);
            Ptr<ITypeInfo> ofClass;
            const auto provider = object.as<IProvideClassInfo>();
            ASSERT_TRUE(provider);
            EXPECT_EQ(provider->GetClassInfo(ofClass.receive()), S_OK);
        }
        EXPECT_FALSE(isLoaded());
    }
}

// ---- References

TEST(References, InterfacesOfAWrapperCanBeReleasedInAnyOrder) {
    fake::Site site;
    furnish(site);
    const fake::LenientServer server(site);
    const Component library(componentPath());
    std::vector<int> order = {0, 1, 2, 3, 4};
    do {
        Ptr<IClassFactory> factory;
        ASSERT_EQ(library.getClassObject(CLSID_DIWrapper, IID_IClassFactory, factory.receiveVoid()), S_OK);
        Ptr<_DIWrapper> wrapper;
        ASSERT_EQ(factory->CreateInstance(nullptr, __uuidof(_DIWrapper), wrapper.receiveVoid()), S_OK);
        EXPECT_TRUE(Client(wrapper).setup());
        Ptr<ITypeInfo> type;
        ASSERT_EQ(wrapper->GetTypeInfo(0, LOCALE_USER_DEFAULT, type.receive()), S_OK);
        std::vector<Ptr<IUnknown>> held = {
            factory.as<IUnknown>(), wrapper.as<IUnknown>(), wrapper.as<ISupportErrorInfo>().as<IUnknown>(),
            wrapper.as<IProvideClassInfo>().as<IUnknown>(), type.as<IUnknown>()};
        factory.reset();
        wrapper.reset();
        type.reset();
        for (const int one : order) held[static_cast<std::size_t>(one)].reset();
        EXPECT_EQ(site.objects, 0);
        EXPECT_EQ(library.canUnloadNow(), S_OK);
    } while (std::next_permutation(order.begin(), order.end()));
    EXPECT_EQ(site.closes, 0);
}

/// A library of its own with one wrapper that is set up.
class SetUpWrapper : public testing::Test {
  protected:
    SetUpWrapper() { EXPECT_TRUE(client.setup()); }

    fake::Site site;
    const fake::LenientServer server{site};
    const Component library{componentPath()};
    Client client{library.create<_DIWrapper>(CLSID_DIWrapper)};
};

TEST_F(SetUpWrapper, TheEngineDoesNotKeepTheWrapperAlive) {
    EXPECT_EQ(site.sinks->count(), 1U);
    client.release();  // expects the count to reach zero
    EXPECT_EQ(site.sinks->count(), 0U);
}

TEST_F(SetUpWrapper, ReleasingASetUpWrapperDoesNotCloseItsEngine) {
    client.release();
    EXPECT_EQ(site.closes, 0);
    EXPECT_EQ(site.objects, 0);
}

/// An engine that keeps a reference to its sink beyond the disconnection, as an engine in the middle of
/// raising an event does.
TEST_F(SetUpWrapper, EventsAfterTheWrappersEndDoNothing) {
    const fake::Sinks kept = *site.sinks;
    ASSERT_EQ(kept.count(), 1U);
    client.release();
    static_cast<void>(kept.raise(1, L"too late"));
    static_cast<void>(site.sinks->raise(1, L"nobody listens"));
    EXPECT_EQ(site.objects, 0);
    EXPECT_EQ(library.canUnloadNow(), S_FALSE) << "the engine still holds the sink";
}

TEST_F(SetUpWrapper, EventsAfterTeardownDoNothing) {
    const fake::Sinks kept = *site.sinks;
    client.teardown();
    static_cast<void>(kept.raise(1, L"too late"));
    EXPECT_EQ(client.problems(), L"");
}

/// Releases the client's wrapper in the middle of an engine call.
class ReleaseInCall : public fake::Tap {
  public:
    HRESULT onCall(const char* call) override {
        if (std::string_view(call) == "DIEngine.Close" && release) std::exchange(release, nullptr)->Release();
        return S_OK;
    }
    _DIWrapper* release = nullptr;
};

TEST_F(SetUpWrapper, AClientMayReleaseTheWrapperInTheMiddleOfItsTeardown) {
    ReleaseInCall tap;
    site.tap = &tap;
    client->AddRef();
    tap.release = client.get();
    client.teardown();
    EXPECT_EQ(tap.release, nullptr);
    client.release();
    EXPECT_EQ(site.objects, 0);
}

// ---- Threads

TEST(Threads, WrappersOfDifferentApartmentsDoNotMeet) {
    const Component library(componentPath());
    const auto live = [&library] {
        ASSERT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
        {
            fake::Site site;
            furnish(site);
            const fake::LenientServer server(site);
            for (int round = 0; round < 200; ++round) {
                const Client client(library.create<_DIWrapper>(CLSID_DIWrapper));
                use(client);
                client.teardown();
            }
            EXPECT_EQ(site.objects, 0);
        }
        CoUninitialize();
    };
    std::vector<std::thread> threads(4);
    for (std::thread& thread : threads) thread = std::thread(live);
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(library.canUnloadNow(), S_OK);
}

TEST(Threads, TheFirstLateBoundCallsMayComeFromSeveralThreadsAtOnce) {
    for (int round = 0; round < 5; ++round) {
        const Component library(componentPath());
        const auto look = [&library] {
            ASSERT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
            {
                const auto object = library.create<IDispatch>(CLSID_DIWrapper);
                std::wstring name = L"Param_Name";
                LPOLESTR names[] = {name.data()};
                DISPID id = 0;
                EXPECT_EQ(object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id), S_OK);
                EXPECT_EQ(id, 56);
            }
            CoUninitialize();
        };
        std::vector<std::thread> threads(8);
        for (std::thread& thread : threads) thread = std::thread(look);
        for (std::thread& thread : threads) thread.join();
    }
}

}  // namespace
}  // namespace vtdn::test
