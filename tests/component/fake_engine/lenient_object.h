// Base of the lenient engine's objects, and its one collection.
#pragma once

#include <cstddef>
#include <functional>
#include <string_view>
#include <utility>

#include "com/error.h"
#include "com/ptr.h"
#include "fake_engine/lenient.h"
#include "fake_engine/object.h"

namespace vtdn::fake {

/// What every lenient object does: it counts itself and shows its calls to the tap.
template <class Base>
class Member : public Base {
  public:
    template <class... Arguments>
    explicit Member(Site& site, Arguments&&... arguments)
        : Base(std::forward<Arguments>(arguments)...), site_(site) {
        ++site_.objects;
    }
    ~Member() override { --site_.objects; }

  protected:
    [[nodiscard]] HRESULT tapped(const char* call) const {
        return site_.tap ? site_.tap->onCall(call) : S_OK;
    }
    [[nodiscard]] Site& site() const { return site_; }

  private:
    Site& site_;
};

inline HRESULT textOut(std::wstring_view text, BSTR* out) {
    *out = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    return *out ? S_OK : E_OUTOFMEMORY;
}

/// Objects that are made when a client asks for them.
class List final : public Member<EngineObject<DICollection>> {
  public:
    /// Makes the object with an index from 0.
    using Make = std::function<com::Ptr<IDispatch>(std::size_t)>;
    List(Site& site, std::size_t count, Make make) : Member(site), count_(count), make_(std::move(make)) {}

    HRESULT STDMETHODCALLTYPE get_Count(LONG* result) override {
        if (const HRESULT failed = tapped("DICollection.Count"); FAILED(failed)) return failed;
        *result = static_cast<LONG>(count_);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Item(LONG index, IDispatch** result) override {
        *result = nullptr;
        if (const HRESULT failed = tapped("DICollection.Item"); FAILED(failed)) return failed;
        if (index < 1 || static_cast<std::size_t>(index) > count_) return DISP_E_BADINDEX;
        try {
            make_(static_cast<std::size_t>(index) - 1).detachTo(result);
            return S_OK;
        } catch (const com::Error& error) {
            return error.result();  // no memory for a copy
        }
    }
    HRESULT STDMETHODCALLTYPE get__NewEnum(IUnknown** result) override {
        *result = nullptr;
        return E_NOTIMPL;
    }

  private:
    std::size_t count_;
    Make make_;
};

}  // namespace vtdn::fake
