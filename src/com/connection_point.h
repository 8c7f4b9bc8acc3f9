// The server side of events: an object that raises the events of one dispinterface.
//
//     class Engine final : public com::Object<Engine, DIEngine, com::EventSource<DIID_DIEngineEvents>> {
//         ... raise(1, {com::Variant::of(type), com::Variant::of(text)});
#pragma once

#include <initializer_list>

#include "com/platform.h"
#include "com/ptr.h"
#include "com/variant.h"

namespace vtdn::com {

class ConnectionPoint;

/// IConnectionPointContainer with one connection point. Clients that hold on to the point do not keep the
/// object alive; they find nobody behind it afterwards.
class EventSourceBase : public IConnectionPointContainer {
  public:
    static constexpr const IID& interfaceId = IID_IConnectionPointContainer;

    EventSourceBase(const EventSourceBase&) = delete;
    EventSourceBase& operator=(const EventSourceBase&) = delete;

    HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints** points) noexcept override;
    HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID iid, IConnectionPoint** point) noexcept override;

    /// Calls every sink that is connected, in the order of their connecting, with the arguments in their
    /// declared order. A sink that fails or that disconnects itself or others is harmless; one that was
    /// disconnected meanwhile is not called any more. The caller keeps this object alive for the call.
    void raise(DISPID id, std::initializer_list<Variant> arguments);

  protected:
    explicit EventSourceBase(REFIID events);
    ~EventSourceBase();

  private:
    Ptr<ConnectionPoint> point_;
};

/// Listed among the interfaces of an Object.
template <const IID& Events>
class EventSource : public EventSourceBase {
  protected:
    EventSource() : EventSourceBase(Events) {}
    ~EventSource() = default;
};

}  // namespace vtdn::com
