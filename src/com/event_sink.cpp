#include "com/event_sink.h"

#include "com/object.h"

namespace vtdn::com {

/// What the source holds: the listener's stand-in, which outlives it when the source wants.
class EventSink::Object final : public com::Object<EventSink::Object, IDispatch> {
  public:
    Object(REFIID events, EventListener& listener) noexcept : events_(events), listener_(&listener) {}

    void forget() noexcept { listener_ = nullptr; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) noexcept override {
        return com::Object<Object, IDispatch>::QueryInterface(iid == events_ ? IID_IDispatch : iid, object);
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override {
        if (!count) return E_POINTER;
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** info) noexcept override {
        if (!info) return E_POINTER;
        *info = nullptr;
        return DISP_E_BADINDEX;
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) noexcept override {
        return DISP_E_UNKNOWNNAME;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT*,
                                     EXCEPINFO*, UINT*) noexcept override {
        if (!arguments) return E_INVALIDARG;
        if (!listener_) return S_OK;
        try {
            listener_->event(id, EventArguments(*arguments));
        } catch (...) {
            // The source has nothing to do with it, and its own call goes on.
        }
        return S_OK;
    }

  private:
    IID events_;
    EventListener* listener_;
};

EventSink::EventSink() noexcept = default;

EventSink::~EventSink() {
    disconnect();
}

void EventSink::connect(IUnknown* source, REFIID events, EventListener& listener) {
    disconnect();
    if (!source) throwError(unsetObject);
    Ptr<IConnectionPointContainer> container;
    check(source->QueryInterface(IID_IConnectionPointContainer, container.receiveVoid()));
    Ptr<IConnectionPoint> point;
    check(container->FindConnectionPoint(events, point.receive()));
    Ptr<Object> object = make<Object>(events, listener);
    check(point->Advise(object->unknown(), &cookie_));
    point_ = std::move(point);
    object_ = std::move(object);
}

void EventSink::disconnect() noexcept {
    // Taken out first: what the source does meanwhile may come back here.
    const Ptr<IConnectionPoint> point = std::move(point_);
    const Ptr<Object> object = std::move(object_);
    if (object) object->forget();
    if (point) point->Unadvise(cookie_);
}

}  // namespace vtdn::com
