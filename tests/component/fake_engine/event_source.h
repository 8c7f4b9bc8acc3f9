// The event side of a fake engine: a connection point for its Message event.
#pragma once

#include <ocidl.h>

#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "com/ptr.h"

namespace vtdn::fake {

/// How the two arguments of an event travel: engines written in some languages hand them out by reference.
enum class EventArguments { byValue, byReference };

/// The sinks that are connected to one engine object.
class Sinks {
  public:
    /// Raises Message on every sink. The result is the last sink's, S_OK without one.
    HRESULT raise(LONG type, std::wstring_view description,
                  EventArguments how = EventArguments::byValue) const;
    [[nodiscard]] std::size_t count() const noexcept { return sinks_.size(); }

    DWORD add(com::Ptr<IDispatch> sink);
    bool remove(DWORD cookie) { return sinks_.erase(cookie) == 1; }

  private:
    std::map<DWORD, com::Ptr<IDispatch>> sinks_;
    DWORD next_ = 1;
};

/// A connection point for VTDI's engine events that belongs to `container`; it lives on its own.
com::Ptr<IConnectionPoint> makeConnectionPoint(std::shared_ptr<Sinks> sinks);

}  // namespace vtdn::fake
