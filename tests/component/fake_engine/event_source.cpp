#include "fake_engine/event_source.h"

#include <VTDI.h>
#include <oleauto.h>
#include <olectl.h>

#include <utility>

#include "com/strings.h"
#include "fake_engine/object.h"

namespace vtdn::fake {

HRESULT Sinks::raise(LONG type, std::wstring_view description, EventArguments how) const {
    com::Bstr text(description);
    BSTR textPointer = text.get();
    // The arguments of an event stand in reverse order.
    VARIANT arguments[2];
    if (how == EventArguments::byValue) {
        arguments[0].vt = VT_BSTR;
        arguments[0].bstrVal = textPointer;
        arguments[1].vt = VT_I4;
        arguments[1].lVal = type;
    } else {
        arguments[0].vt = VT_BSTR | VT_BYREF;
        arguments[0].pbstrVal = &textPointer;
        arguments[1].vt = VT_I4 | VT_BYREF;
        arguments[1].plVal = &type;
    }
    DISPPARAMS params{arguments, nullptr, 2, 0};
    HRESULT result = S_OK;
    const auto sinks = sinks_;  // a sink may disconnect while it is called
    for (const auto& [cookie, sink] : sinks) {
        result =
            sink->Invoke(1, GUID{}, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &params, nullptr, nullptr, nullptr);
    }
    return result;
}

DWORD Sinks::add(com::Ptr<IDispatch> sink) {
    sinks_.emplace(next_, std::move(sink));
    return next_++;
}

namespace {

class ConnectionPoint final : public Counted<IConnectionPoint> {
  public:
    explicit ConnectionPoint(std::shared_ptr<Sinks> sinks) : sinks_(std::move(sinks)) {}

    HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID* iid) override {
        *iid = __uuidof(DIEngineEvents);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetConnectionPointContainer(IConnectionPointContainer** container) override {
        *container = nullptr;
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Advise(IUnknown* unknown, DWORD* cookie) override {
        if (!unknown || !cookie) return E_POINTER;
        com::Ptr<IDispatch> sink;
        // A sink of another event interface is refused, as engines do.
        if (FAILED(unknown->QueryInterface(__uuidof(DIEngineEvents), sink.receiveVoid()))) {
            return CONNECT_E_CANNOTCONNECT;
        }
        *cookie = sinks_->add(std::move(sink));
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override {
        return sinks_->remove(cookie) ? S_OK : CONNECT_E_NOCONNECTION;
    }
    HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections** connections) override {
        *connections = nullptr;
        return E_NOTIMPL;
    }

  protected:
    void* find(REFIID iid) override {
        if (IsEqualIID(iid, __uuidof(IUnknown)) || IsEqualIID(iid, __uuidof(IConnectionPoint))) return this;
        return nullptr;
    }

  private:
    std::shared_ptr<Sinks> sinks_;
};

}  // namespace

com::Ptr<IConnectionPoint> makeConnectionPoint(std::shared_ptr<Sinks> sinks) {
    return com::Ptr<IConnectionPoint>(new ConnectionPoint(std::move(sinks)));
}

}  // namespace vtdn::fake
