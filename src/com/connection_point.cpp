#include "com/connection_point.h"

#include <olectl.h>

#include <algorithm>
#include <cstddef>
#include <vector>

#include "com/object.h"

namespace vtdn::com {
namespace {

CONNECTDATA copyOf(const CONNECTDATA& data) noexcept {
    data.pUnk->AddRef();
    return data;
}

IConnectionPoint* copyOf(const Ptr<IConnectionPoint>& point) noexcept {
    return Ptr<IConnectionPoint>(point).detach();
}

/// IEnumConnections and IEnumConnectionPoints over a list of their own.
template <class Interface, class Held, class Handed>
class Enumerator final : public Object<Enumerator<Interface, Held, Handed>, Interface> {
  public:
    Enumerator(std::vector<Held> items, std::size_t next) : items_(std::move(items)), next_(next) {}

    HRESULT STDMETHODCALLTYPE Next(ULONG count, Handed* out, ULONG* fetched) noexcept override {
        if (!out || (!fetched && count != 1)) return E_POINTER;
        ULONG given = 0;
        while (given < count && next_ < items_.size()) out[given++] = copyOf(items_[next_++]);
        if (fetched) *fetched = given;
        return given == count ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) noexcept override {
        const std::size_t left = items_.size() - next_;
        next_ += std::min<std::size_t>(count, left);
        return count <= left ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Reset() noexcept override {
        next_ = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Clone(Interface** out) noexcept override {
        if (!out) return E_POINTER;
        *out = nullptr;
        return guard(L"", __uuidof(Interface), [&] { *out = make<Enumerator>(items_, next_).detach(); });
    }

  private:
    std::vector<Held> items_;
    std::size_t next_;
};

/// A sink and its cookie.
struct Connection {
    DWORD cookie;
    Ptr<IDispatch> sink;
};

/// A copy of a connection as the enumerator keeps it.
class HeldConnection {
  public:
    explicit HeldConnection(const Connection& connection) noexcept
        : sink_(connection.sink.get()), cookie_(connection.cookie) {}
    friend CONNECTDATA copyOf(const HeldConnection& held) noexcept {
        return copyOf(CONNECTDATA{held.sink_.get(), held.cookie_});
    }

  private:
    Ptr<IUnknown> sink_;
    DWORD cookie_;
};

}  // namespace

class ConnectionPoint final : public Object<ConnectionPoint, IConnectionPoint> {
  public:
    ConnectionPoint(IConnectionPointContainer* container, REFIID events)
        : container_(container), events_(events) {}

    /// The container is going: there is nobody left to be connected to.
    void forget() noexcept {
        container_ = nullptr;
        // Taken out first: a sink's last release may come back here.
        const std::vector<Connection> gone = std::move(connections_);
        connections_.clear();
    }

    void raise(DISPID id, DISPPARAMS& arguments) {
        const std::vector<Connection> now = connections_;
        for (const Connection& connection : now) {
            if (find(connection.cookie) == connections_.end()) continue;
            // An event has no result and nobody to tell of a failure.
            Variant result;
            static_cast<void>(connection.sink->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                                                      &arguments, result.receive(), nullptr, nullptr));
        }
    }

    HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID* iid) noexcept override {
        if (!iid) return E_POINTER;
        *iid = events_;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE
    GetConnectionPointContainer(IConnectionPointContainer** container) noexcept override {
        if (!container) return E_POINTER;
        *container = nullptr;
        if (!container_) return E_UNEXPECTED;
        Ptr<IConnectionPointContainer>(container_).detachTo(container);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Advise(IUnknown* sink, DWORD* cookie) noexcept override {
        if (!sink || !cookie) return E_POINTER;
        *cookie = 0;
        if (!container_) return CONNECT_E_CANNOTCONNECT;
        return guard(L"", IID_IConnectionPoint, [&]() -> HRESULT {
            // A sink for the events themselves, or one that has IDispatch only, as those of scripts.
            Ptr<IDispatch> called;
            if (FAILED(sink->QueryInterface(events_, called.receiveVoid())) &&
                FAILED(sink->QueryInterface(IID_IDispatch, called.receiveVoid())))
                return CONNECT_E_CANNOTCONNECT;
            connections_.push_back({++lastCookie_, std::move(called)});
            *cookie = lastCookie_;
            return S_OK;
        });
    }
    HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) noexcept override {
        const auto found = find(cookie);
        if (found == connections_.end()) return CONNECT_E_NOCONNECTION;
        const Ptr<IDispatch> gone = std::move(found->sink);
        connections_.erase(found);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections** out) noexcept override {
        if (!out) return E_POINTER;
        *out = nullptr;
        return guard(L"", IID_IConnectionPoint, [&] {
            std::vector<HeldConnection> items(connections_.begin(), connections_.end());
            *out = make<Enumerator<IEnumConnections, HeldConnection, CONNECTDATA>>(std::move(items),
                                                                                   std::size_t{0})
                       .detach();
        });
    }

  private:
    std::vector<Connection>::iterator find(DWORD cookie) noexcept {
        return std::find_if(connections_.begin(), connections_.end(),
                            [=](const Connection& c) { return c.cookie == cookie; });
    }

    IConnectionPointContainer* container_;
    IID events_;
    std::vector<Connection> connections_;
    DWORD lastCookie_ = 0;
};

EventSourceBase::EventSourceBase(REFIID events) : point_(make<ConnectionPoint>(this, events)) {}

EventSourceBase::~EventSourceBase() {
    point_->forget();
}

HRESULT EventSourceBase::EnumConnectionPoints(IEnumConnectionPoints** points) noexcept {
    if (!points) return E_POINTER;
    *points = nullptr;
    return guard(L"", IID_IConnectionPointContainer, [&] {
        std::vector<Ptr<IConnectionPoint>> items{Ptr<IConnectionPoint>(point_.get())};
        *points = make<Enumerator<IEnumConnectionPoints, Ptr<IConnectionPoint>, IConnectionPoint*>>(
                      std::move(items), std::size_t{0})
                      .detach();
    });
}

HRESULT EventSourceBase::FindConnectionPoint(REFIID iid, IConnectionPoint** point) noexcept {
    if (!point) return E_POINTER;
    *point = nullptr;
    IID events;
    point_->GetConnectionInterface(&events);
    if (iid != events) return CONNECT_E_NOCONNECTION;
    Ptr<IConnectionPoint>(point_.get()).detachTo(point);
    return S_OK;
}

void EventSourceBase::raise(DISPID id, std::initializer_list<Variant> arguments) {
    // Last first on the wire; the sinks see the values, which stay ours.
    std::vector<VARIANT> wire(arguments.size());
    std::transform(arguments.begin(), arguments.end(), wire.rbegin(),
                   [](const Variant& v) { return v.get(); });
    DISPPARAMS list{wire.data(), nullptr, static_cast<UINT>(wire.size()), 0};
    const Ptr<ConnectionPoint> kept = point_;
    kept->raise(id, list);
}

}  // namespace vtdn::com
