// Objects: identity, counts, class information, the class factory, and taking out held objects.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "com/class_factory.h"
#include "com/own_object.h"
#include "probe.h"
#include "support/late.h"

namespace vtdn::test {
namespace {

using com::Ptr;

template <class I>
Ptr<I> query(IUnknown* object, REFIID iid, HRESULT expected = S_OK) {
    Ptr<I> found;
    EXPECT_EQ(object->QueryInterface(iid, found.receiveVoid()), expected);
    return found;
}

/// References to an object.
ULONG references(IUnknown* object) {
    object->AddRef();
    return object->Release();
}

IUnknown* identityOf(IUnknown* object) {
    return query<IUnknown>(object, IID_IUnknown).get();
}

TEST(Object, HasOneIdentityWhicheverInterfaceIsAsked) {
    const Ptr<Probe> probe = com::make<Probe>();
    IUnknown* const identity = probe->unknown();
    for (const IID& iid :
         {IID_IUnknown, __uuidof(IProbe), IID_IDispatch, IID_ISupportErrorInfo, IID_IProvideClassInfo,
          IID_IProvideClassInfo2, IID_IConnectionPointContainer, __uuidof(com::IOwnObject)}) {
        const Ptr<IUnknown> found = query<IUnknown>(identity, iid);
        ASSERT_TRUE(found);
        EXPECT_EQ(identityOf(found.get()), identity);
    }
}

TEST(Object, DoesNotAnswerForeignInterfaces) {
    const Ptr<Probe> probe = com::make<Probe>();
    void* out = probe.get();
    EXPECT_EQ(probe->unknown()->QueryInterface(IID_IClassFactory, &out), E_NOINTERFACE);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(probe->unknown()->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

TEST(Object, CountsReferencesAndEndsWithTheLast) {
    const LONG before = Probe::count();
    Ptr<Probe> probe = com::make<Probe>();
    EXPECT_EQ(references(probe->unknown()), 1U);
    {
        const Ptr<IProbe> second = query<IProbe>(probe->unknown(), __uuidof(IProbe));
        EXPECT_EQ(references(second.get()), 2U);
    }
    EXPECT_EQ(references(probe->unknown()), 1U);
    EXPECT_EQ(Probe::count(), before + 1);
    probe.reset();
    EXPECT_EQ(Probe::count(), before);
}

TEST(Object, KeepsTheModuleLoaded) {
    EXPECT_EQ(com::canUnloadNow(), S_OK);
    Ptr<Probe> probe = com::make<Probe>();
    EXPECT_EQ(com::canUnloadNow(), S_FALSE);
    probe.reset();
    EXPECT_EQ(com::canUnloadNow(), S_OK);
}

/// Takes and gives back references while it is made and while it ends.
class Restless final : public com::Object<Restless, ISequentialStream> {
  public:
    explicit Restless(bool refuse) : refuse_(refuse) {}
    ~Restless() override {
        const Ptr<IUnknown> self(unknown());
        ++ended;
    }
    void created() {
        const Ptr<IUnknown> self(unknown());
        if (refuse_) com::throwError(E_ABORT);
    }
    HRESULT STDMETHODCALLTYPE Read(void*, ULONG, ULONG*) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE Write(const void*, ULONG, ULONG*) noexcept override { return S_OK; }
    static inline int ended = 0;

  private:
    bool refuse_;
};

TEST(Object, SurvivesReferencesWhileItIsMadeAndWhileItEnds) {
    Restless::ended = 0;
    { const Ptr<Restless> object = com::make<Restless>(false); }
    EXPECT_EQ(Restless::ended, 1);
    EXPECT_THROW(static_cast<void>(com::make<Restless>(true)), com::Error);
    EXPECT_EQ(Restless::ended, 2);
    EXPECT_EQ(com::canUnloadNow(), S_OK);
}

TEST(Object, WithoutAClassHasNoClassInformation) {
    const Ptr<Restless> object = com::make<Restless>(false);
    query<IProvideClassInfo>(object->unknown(), IID_IProvideClassInfo, E_NOINTERFACE);
    query<IDispatch>(object->unknown(), IID_IDispatch, E_NOINTERFACE);
}

TEST(Object, SupportsErrorInfoOnItsInterfaces) {
    const Ptr<Probe> probe = com::make<Probe>();
    EXPECT_EQ(probe->InterfaceSupportsErrorInfo(__uuidof(IProbe)), S_OK);
    EXPECT_EQ(probe->InterfaceSupportsErrorInfo(IID_IClassFactory), S_FALSE);
}

TEST(Object, TellsItsClassAndItsEvents) {
    const Ptr<Probe> probe = com::make<Probe>();
    const Ptr<IProvideClassInfo2> provider =
        query<IProvideClassInfo2>(probe->unknown(), IID_IProvideClassInfo2);
    Ptr<ITypeInfo> info;
    ASSERT_EQ(provider->GetClassInfo(info.receive()), S_OK);
    TYPEATTR* attributes = nullptr;
    ASSERT_EQ(info->GetTypeAttr(&attributes), S_OK);
    EXPECT_TRUE(attributes->guid == CLSID_Probe);
    EXPECT_EQ(attributes->typekind, TKIND_COCLASS);
    info->ReleaseTypeAttr(attributes);
    GUID events;
    EXPECT_EQ(provider->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &events), S_OK);
    EXPECT_TRUE(events == DIID_IProbeEvents);
    EXPECT_EQ(provider->GetGUID(77, &events), E_INVALIDARG);
    EXPECT_EQ(provider->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, nullptr), E_POINTER);
    EXPECT_EQ(provider->GetClassInfo(nullptr), E_POINTER);
}

const com::ClassEntry classes[] = {
    {CLSID_Probe, L"ToolkitTest.Probe.1", L"ToolkitTest.Probe", L"A probe", &com::createObject<Probe>},
};

class Factory : public testing::Test {
  protected:
    Ptr<IClassFactory> factory() {
        Ptr<IClassFactory> made;
        EXPECT_EQ(com::classObject(classes, CLSID_Probe, IID_IClassFactory, made.receiveVoid()), S_OK);
        return made;
    }
};

TEST_F(Factory, IsThereForTheClassesOfTheTable) {
    void* out = this;
    EXPECT_EQ(com::classObject(classes, IID_IDispatch, IID_IClassFactory, &out), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(com::classObject(classes, CLSID_Probe, IID_IDispatch, &out), E_NOINTERFACE);
    EXPECT_EQ(com::classObject(classes, CLSID_Probe, IID_IClassFactory, nullptr), E_POINTER);
    EXPECT_TRUE(factory());
    EXPECT_EQ(com::canUnloadNow(), S_OK);
}

TEST_F(Factory, MakesObjectsAndRefusesAggregation) {
    const Ptr<IClassFactory> made = factory();
    Ptr<IProbe> probe;
    EXPECT_EQ(made->CreateInstance(nullptr, __uuidof(IProbe), probe.receiveVoid()), S_OK);
    EXPECT_TRUE(probe);
    const LONG before = Probe::count();
    void* out = this;
    EXPECT_EQ(made->CreateInstance(nullptr, IID_IClassFactory, &out), E_NOINTERFACE);
    EXPECT_EQ(out, nullptr);
    out = this;
    EXPECT_EQ(made->CreateInstance(made.get(), IID_IUnknown, &out), CLASS_E_NOAGGREGATION);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(made->CreateInstance(nullptr, IID_IUnknown, nullptr), E_POINTER);
    EXPECT_EQ(Probe::count(), before);
}

TEST_F(Factory, LocksTheModule) {
    Ptr<IClassFactory> made = factory();
    EXPECT_EQ(made->LockServer(TRUE), S_OK);
    EXPECT_EQ(made->LockServer(TRUE), S_OK);
    EXPECT_EQ(made->LockServer(FALSE), S_OK);
    made.reset();
    EXPECT_EQ(com::canUnloadNow(), S_FALSE);
    com::module::unlock();
    EXPECT_EQ(com::canUnloadNow(), S_OK);
}

class HeldObject : public testing::Test {
  protected:
    Ptr<Probe> engine = com::make<Probe>(11);
    Ptr<Probe> wrapper = com::make<Probe>(12);

    void SetUp() override { wrapper->held = Ptr<IDispatch>(static_cast<IProbe*>(engine.get())); }
    static LONG errorOf(IUnknown* object, REFCLSID wanted) {
        try {
            static_cast<void>(com::heldObject(object, wanted));
            return 0;
        } catch (const com::Error& error) {
            return error.number();
        }
    }
    static LONG numberOf(IDispatch* object) {
        Late late(object);
        EXPECT_EQ(late.get(L"Number"), S_OK);
        return late.result.get().lVal;
    }
};

TEST_F(HeldObject, IsTakenOutOfAnObjectOfTheClass) {
    EXPECT_EQ(com::heldObject(wrapper->unknown(), CLSID_Probe).get(), static_cast<IProbe*>(engine.get()));
    wrapper->held.reset();
    EXPECT_FALSE(com::heldObject(wrapper->unknown(), CLSID_Probe));
    EXPECT_FALSE(com::heldObject(nullptr, CLSID_Probe));
}

TEST_F(HeldObject, OfAnotherClassIsError13) {
    EXPECT_EQ(errorOf(wrapper->unknown(), IID_IDispatch), 13);
    EXPECT_EQ(errorOf(com::make<Restless>(false)->unknown(), CLSID_Probe), 13);
    Ptr<ITypeInfo> foreign;
    ASSERT_EQ(wrapper->GetTypeInfo(0, 0, foreign.receive()), S_OK);
    EXPECT_EQ(errorOf(foreign.get(), CLSID_Probe), 13);
}

TEST_F(HeldObject, IsTakenOutThroughAnApartmentsProxyToo) {
    IStream* stream = nullptr;
    IStream* back = nullptr;
    ASSERT_EQ(
        CoMarshalInterThreadInterfaceInStream(IID_IDispatch, static_cast<IProbe*>(wrapper.get()), &stream),
        S_OK);
    bool isProxy = false;
    std::atomic<bool> done{false};
    LONG viaProxy = 0, foreign = 0;
    std::thread other([&] {
        ASSERT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
        {
            Ptr<IDispatch> proxy;
            ASSERT_EQ(CoGetInterfaceAndReleaseStream(stream, IID_IDispatch, proxy.receiveVoid()), S_OK);
            isProxy = proxy.get() != static_cast<IProbe*>(wrapper.get());
            viaProxy = numberOf(com::heldObject(proxy.get(), CLSID_Probe).get());
            foreign = errorOf(proxy.get(), IID_IDispatch);
            ASSERT_EQ(CoMarshalInterThreadInterfaceInStream(IID_IDispatch, proxy.get(), &back), S_OK);
        }
        CoUninitialize();
        done = true;
    });
    // The calls of the other apartment arrive as messages.
    while (!done) {
        MSG message;
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
    }
    other.join();
    EXPECT_TRUE(isProxy);
    EXPECT_EQ(viaProxy, 11);
    EXPECT_EQ(foreign, 13);
    // Handed back, it is the object itself again.
    Ptr<IDispatch> home;
    ASSERT_EQ(CoGetInterfaceAndReleaseStream(back, IID_IDispatch, home.receiveVoid()), S_OK);
    EXPECT_EQ(home.get(), static_cast<IProbe*>(wrapper.get()));
    EXPECT_EQ(numberOf(com::heldObject(home.get(), CLSID_Probe).get()), 11);
}

TEST_F(HeldObject, IsNothingThatAScriptCanAskFor) {
    Late late(static_cast<IProbe*>(wrapper.get()));
    const com::Variant other = com::Variant::of(L"{00000000-0000-0000-0000-000000000000}");
    EXPECT_EQ(late.callId(com::ownObjectDispatchId, {}, {}, DISPATCH_PROPERTYGET), DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(late.callId(com::ownObjectDispatchId, {}, {other.get()}, DISPATCH_PROPERTYGET),
              DISP_E_TYPEMISMATCH);
    EXPECT_EQ(
        late.callId(com::ownObjectDispatchId, {}, {com::Variant::of(LONG{1}).get()}, DISPATCH_PROPERTYGET),
        DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(late.result.type(), VT_EMPTY);
}

}  // namespace
}  // namespace vtdn::test
