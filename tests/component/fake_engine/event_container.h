// The IConnectionPointContainer half of a fake engine.
#pragma once

#include <ocidl.h>
#include <olectl.h>

#include <memory>
#include <utility>

#include "fake_engine/event_source.h"

namespace vtdn::fake {

/// Finds the one connection point of an engine. Mixed into the engine object, which supplies IUnknown.
template <class Base>
class WithEvents : public Base {
  public:
    template <class... Arguments>
    explicit WithEvents(std::shared_ptr<Sinks> sinks, Arguments&&... arguments)
        : Base(std::forward<Arguments>(arguments)...), point_(makeConnectionPoint(std::move(sinks))) {}

    HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints** points) override {
        *points = nullptr;
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID iid, IConnectionPoint** point) override {
        IID offered;
        if (FAILED(point_->GetConnectionInterface(&offered)) || !IsEqualIID(iid, offered)) {
            *point = nullptr;
            return CONNECT_E_NOCONNECTION;
        }
        *point = com::Ptr(point_).detach();
        return S_OK;
    }

  protected:
    void* find(REFIID iid) override {
        if (IsEqualIID(iid, __uuidof(IConnectionPointContainer))) {
            return static_cast<IConnectionPointContainer*>(this);
        }
        return Base::find(iid);
    }

  private:
    com::Ptr<IConnectionPoint> point_;
};

}  // namespace vtdn::fake
