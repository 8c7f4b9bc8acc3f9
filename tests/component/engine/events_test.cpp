// The Message event: who hears it, and what a listener may do meanwhile.
#include <ocidl.h>
#include <olectl.h>

#include <functional>

#include "on_engine.h"

namespace vtdn::embedded::test {
namespace {

/// A sink that shows the raw call.
class Sink final : public IDispatch {
  public:
    explicit Sink(std::function<void(LONG, BSTR)> heard) : heard_(std::move(heard)) {}

    STDMETHODIMP QueryInterface(REFIID iid, void** out) noexcept override {
        *out = iid == IID_IUnknown || iid == IID_IDispatch || iid == DIID_DIEngineEvents ? this : nullptr;
        if (*out) AddRef();
        return *out ? S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() noexcept override { return ++references; }
    STDMETHODIMP_(ULONG) Release() noexcept override { return --references; }
    STDMETHODIMP GetTypeInfoCount(UINT*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* arguments, VARIANT*, EXCEPINFO*,
                        UINT*) noexcept override {
        EXPECT_EQ(id, 1);
        EXPECT_TRUE(flags & DISPATCH_METHOD);
        EXPECT_EQ(arguments->cArgs, 2U);
        EXPECT_EQ(arguments->cNamedArgs, 0U);
        EXPECT_EQ(arguments->rgvarg[0].vt, VT_BSTR);
        EXPECT_EQ(arguments->rgvarg[1].vt, VT_I4);
        heard_(arguments->rgvarg[1].lVal, arguments->rgvarg[0].bstrVal);
        return answer;
    }

    ULONG references = 1;
    HRESULT answer = S_OK;

  private:
    std::function<void(LONG, BSTR)> heard_;
};

class EngineEvents : public OnSite {
  protected:
    [[nodiscard]] com::Ptr<IConnectionPoint> point() const {
        com::Ptr<IConnectionPointContainer> container;
        com::check(engine.get()->QueryInterface(IID_IConnectionPointContainer, container.receiveVoid()));
        com::Ptr<IConnectionPoint> found;
        com::check(container->FindConnectionPoint(DIID_DIEngineEvents, found.receive()));
        return found;
    }
    /// Makes the engine say one message.
    void provoke() const { EXPECT_FALSE(engine.setupByDahsId(6)); }

    engine::Engine engine = engine::Engine::create();
};

}  // namespace

TEST_F(EngineEvents, ARefusalIsAMessageOfTypeOne) {
    std::vector<LONG> types;
    Sink sink([&](LONG type, BSTR) { types.push_back(type); });
    DWORD cookie = 0;
    ASSERT_EQ(point()->Advise(&sink, &cookie), S_OK);
    provoke();
    EXPECT_EQ(types, std::vector<LONG>{1});
    EXPECT_EQ(point()->Unadvise(cookie), S_OK);
    EXPECT_EQ(sink.references, 1U);
}

TEST_F(EngineEvents, EverySinkHearsUntilItIsUnadvised) {
    int first = 0;
    int second = 0;
    Sink one([&](LONG, BSTR) { ++first; });
    Sink two([&](LONG, BSTR) { ++second; });
    DWORD cookieOne = 0;
    DWORD cookieTwo = 0;
    ASSERT_EQ(point()->Advise(&one, &cookieOne), S_OK);
    ASSERT_EQ(point()->Advise(&two, &cookieTwo), S_OK);
    provoke();
    ASSERT_EQ(point()->Unadvise(cookieOne), S_OK);
    provoke();
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 2);
    EXPECT_EQ(point()->Unadvise(cookieOne), CONNECT_E_NOCONNECTION);
    EXPECT_EQ(point()->Unadvise(cookieTwo), S_OK);
}

TEST_F(EngineEvents, ASinkThatFailsDoesNotFailTheCall) {
    Sink sink([](LONG, BSTR) {});
    sink.answer = E_FAIL;
    DWORD cookie = 0;
    ASSERT_EQ(point()->Advise(&sink, &cookie), S_OK);
    provoke();
    EXPECT_TRUE(engine.setupByDahsId(dahsId));
    EXPECT_EQ(point()->Unadvise(cookie), S_OK);
}

TEST_F(EngineEvents, ASinkMayUnadviseItselfWhileItHears) {
    DWORD cookie = 0;
    int heard = 0;
    Sink sink([&](LONG, BSTR) {
        ++heard;
        EXPECT_EQ(point()->Unadvise(cookie), S_OK);
    });
    ASSERT_EQ(point()->Advise(&sink, &cookie), S_OK);
    provoke();
    provoke();
    EXPECT_EQ(heard, 1);
    EXPECT_EQ(sink.references, 1U);
}

TEST_F(EngineEvents, ASinkMayCloseTheEngineWhileItHears) {
    ASSERT_TRUE(engine.setupByDahsId(dahsId));
    DWORD cookie = 0;
    Sink sink([&](LONG, BSTR) { engine.close(); });
    ASSERT_EQ(point()->Advise(&sink, &cookie), S_OK);
    const engine::Param hours = engine.params().item(hourPid);
    const Failure failure = failureOf([&] { static_cast<void>(hours.dataItem(hour(0.5))); });
    EXPECT_EQ(failure.number, 5);
    EXPECT_FALSE(engine.params().exists(hourPid));
    EXPECT_EQ(point()->Unadvise(cookie), S_OK);
}

TEST_F(EngineEvents, ASinkMayReleaseTheEngineWhileItHears) {
    DIEngine* raw = nullptr;
    com::check(CoCreateInstance(CLSID_DIEngineClass, nullptr, CLSCTX_INPROC_SERVER, __uuidof(DIEngine),
                                reinterpret_cast<void**>(&raw)));
    com::Ptr<IConnectionPointContainer> container;
    com::check(raw->QueryInterface(IID_IConnectionPointContainer, container.receiveVoid()));
    com::Ptr<IConnectionPoint> itsPoint;
    com::check(container->FindConnectionPoint(DIID_DIEngineEvents, itsPoint.receive()));
    container.reset();
    DWORD cookie = 0;
    int heard = 0;
    Sink sink([&](LONG, BSTR) {
        ++heard;
        itsPoint.reset();
        raw->Release();
    });
    ASSERT_EQ(itsPoint->Advise(&sink, &cookie), S_OK);
    VARIANT_BOOL done = VARIANT_TRUE;
    EXPECT_EQ(raw->SetupByDahsID(6, &done), S_OK);
    EXPECT_EQ(done, VARIANT_FALSE);
    EXPECT_EQ(heard, 1);
    EXPECT_EQ(sink.references, 1U) << "The engine went and let its sink go";
}

TEST_F(EngineEvents, OtherSinksAndOtherEventsAreRefused) {
    com::Ptr<IConnectionPointContainer> container;
    com::check(engine.get()->QueryInterface(IID_IConnectionPointContainer, container.receiveVoid()));
    com::Ptr<IConnectionPoint> none;
    EXPECT_EQ(container->FindConnectionPoint(IID_IDispatch, none.receive()), CONNECT_E_NOCONNECTION);
    EXPECT_FALSE(none);
    DWORD cookie = 0;
    EXPECT_TRUE(FAILED(point()->Advise(nullptr, &cookie)));
    com::Ptr<IClassFactory> factory;
    com::check(library.getClassObject(CLSID_DIEngineClass, IID_IClassFactory, factory.receiveVoid()));
    EXPECT_TRUE(FAILED(point()->Advise(factory.get(), &cookie))) << "A sink answers dispatch calls";
}

TEST_F(EngineEvents, ItsEventsAreDescribed) {
    com::Ptr<IProvideClassInfo2> info;
    com::check(engine.get()->QueryInterface(IID_IProvideClassInfo2, info.receiveVoid()));
    GUID events{};
    EXPECT_EQ(info->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &events), S_OK);
    EXPECT_EQ(events, DIID_DIEngineEvents);
}

}  // namespace vtdn::embedded::test
