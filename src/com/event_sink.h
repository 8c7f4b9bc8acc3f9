// The client side of a connection point: hears the events of one dispinterface of a source object.
#pragma once

#include <cstddef>

#include "com/platform.h"
#include "com/ptr.h"

namespace vtdn::com {

/// The arguments of an event in their declared order, as the source sent them: by value or by reference.
class EventArguments {
  public:
    explicit EventArguments(const DISPPARAMS& arguments) noexcept : arguments_(&arguments) {}
    [[nodiscard]] std::size_t size() const noexcept { return arguments_->cArgs; }
    [[nodiscard]] const VARIANT& operator[](std::size_t i) const noexcept {
        return arguments_->rgvarg[arguments_->cArgs - 1 - i];  // the wire has them last first
    }

  private:
    const DISPPARAMS* arguments_;
};

class EventListener {
  public:
    EventListener(const EventListener&) = delete;
    EventListener& operator=(const EventListener&) = delete;
    /// Called during a call into the source. What it throws does not reach the source.
    virtual void event(DISPID id, const EventArguments& arguments) = 0;

  protected:
    EventListener() = default;
    ~EventListener() = default;
};

/// The connection of a listener to a source, or none. Neither keeps the other alive beyond it: a source that
/// goes on raising events, or that holds on to the sink, reaches nobody after disconnect().
class EventSink {
  public:
    EventSink() noexcept;
    EventSink(const EventSink&) = delete;
    EventSink& operator=(const EventSink&) = delete;
    ~EventSink();

    /// Ends an earlier connection. Throws the failure of a source that has no such events.
    void connect(IUnknown* source, REFIID events, EventListener& listener);
    /// Also during an event, and when the source is gone.
    void disconnect() noexcept;
    [[nodiscard]] bool isConnected() const noexcept { return static_cast<bool>(point_); }

  private:
    class Object;

    Ptr<IConnectionPoint> point_;
    Ptr<Object> object_;
    DWORD cookie_ = 0;
};

}  // namespace vtdn::com
