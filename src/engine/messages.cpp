#include "engine/messages.h"

#include <atomic>

namespace vtdn::engine {
namespace {

constexpr DISPID messageId = 1;

}  // namespace

/// What the engine holds: the listener's stand-in, which outlives it when the engine wants.
class Messages::Sink final : public IDispatch {
  public:
    explicit Sink(MessageListener& listener) noexcept : listener_(&listener) {}
    Sink(const Sink&) = delete;
    Sink& operator=(const Sink&) = delete;

    void forget() noexcept { listener_ = nullptr; }

    STDMETHODIMP QueryInterface(REFIID iid, void** object) noexcept override {
        if (!object) return E_POINTER;
        *object = nullptr;
        if (iid != IID_IUnknown && iid != IID_IDispatch && iid != DIID_DIEngineEvents) return E_NOINTERFACE;
        *object = static_cast<IDispatch*>(this);
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() noexcept override { return ++references_; }
    STDMETHODIMP_(ULONG) Release() noexcept override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }
    STDMETHODIMP GetTypeInfoCount(UINT* count) noexcept override {
        if (!count) return E_POINTER;
        *count = 0;
        return S_OK;
    }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo** info) noexcept override {
        if (!info) return E_POINTER;
        *info = nullptr;
        return DISP_E_BADINDEX;
    }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) noexcept override {
        return DISP_E_UNKNOWNNAME;
    }
    /// Nothing that happens here is the engine's failure.
    STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT*, EXCEPINFO*,
                        UINT*) noexcept override {
        // Arguments come last first: the description, the message type.
        if (id != messageId || !listener_ || !arguments || arguments->cArgs != 2) return S_OK;
        try {
            com::Bstr description;
            if (SUCCEEDED(com::toText(arguments->rgvarg[0], description)))
                listener_->message(description.view());
        } catch (...) {
            // Memory is short: the message is lost, the engine's call goes on.
        }
        return S_OK;
    }

  private:
    ~Sink() = default;

    std::atomic<ULONG> references_{1};
    MessageListener* listener_;
};

Messages::Messages() noexcept = default;

Messages::~Messages() {
    disconnect();
}

void Messages::connect(const Engine& engine, MessageListener& listener) {
    disconnect();
    com::Ptr<IConnectionPointContainer> container;
    com::check(engine.get()->QueryInterface(IID_IConnectionPointContainer, container.receiveVoid()));
    com::Ptr<IConnectionPoint> point;
    com::check(container->FindConnectionPoint(DIID_DIEngineEvents, point.receive()));
    auto sink = com::Ptr<Sink>::adopt(new Sink(listener));
    com::check(point->Advise(sink.get(), &cookie_));
    point_ = std::move(point);
    sink_ = std::move(sink);
}

void Messages::disconnect() noexcept {
    if (!point_) return;
    sink_->forget();
    point_->Unadvise(cookie_);
    point_.reset();
    sink_.reset();
}

}  // namespace vtdn::engine
