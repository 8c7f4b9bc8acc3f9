// Base of the fake engine objects: reference counting, QueryInterface, and as little of IDispatch as there
// can be, since the component calls an engine through its vtables only.
#pragma once

#include "com/platform.h"

namespace vtdn::fake {

/// A counted object with the interfaces I. It starts with no reference; whoever makes it takes the first.
template <class... I>
class Counted : public I... {
  public:
    Counted() = default;
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;
    virtual ~Counted() = default;

    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0) dispose();
        return left;
    }
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        if (!out) return E_POINTER;
        *out = find(iid);
        if (!*out) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }

  protected:
    /// The pointer for an interface, without a reference; null when the object does not have it.
    virtual void* find(REFIID iid) = 0;
    /// What happens to an object that nobody holds.
    virtual void dispose() { delete this; }

  private:
    ULONG references_ = 0;
};

/// VariantCopy, which reads its source only but is not declared so everywhere.
inline HRESULT copyVariant(VARIANT* out, const VARIANT& value) {
    return VariantCopy(out, const_cast<VARIANT*>(&value));
}

/// One of the engine's dual interfaces.
template <class I, class... More>
class EngineObject : public Counted<I, More...> {
  public:
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** info) override {
        *info = nullptr;
        return DISP_E_BADINDEX;
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
        return DISP_E_UNKNOWNNAME;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                     UINT*) override {
        return DISP_E_MEMBERNOTFOUND;
    }

  protected:
    void* find(REFIID iid) override {
        if (IsEqualIID(iid, __uuidof(IUnknown)) || IsEqualIID(iid, __uuidof(IDispatch)) ||
            IsEqualIID(iid, __uuidof(I))) {
            return static_cast<I*>(this);
        }
        return nullptr;
    }
};

}  // namespace vtdn::fake
