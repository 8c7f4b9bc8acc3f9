// IDispatch of a dual interface over its description in the module's own type library.
#pragma once

#include "com/dispatch_table.h"
#include "com/guard.h"
#include "com/module.h"
#include "com/own_object.h"
#include "com/platform.h"

namespace vtdn::com {

/// The table of interface I: made once per process, at the first late-bound call.
template <class I>
const DispatchTable& dispatchTable() {
    static const DispatchTable table(module::typeInfo(__uuidof(I)).get());
    return table;
}

/// Implements the methods of IDispatch for the dual interface I. Base of Object, which implements IUnknown.
template <class I>
class Dual : public I {
  public:
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override {
        if (!count) return E_POINTER;
        *count = 1;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID, ITypeInfo** info) noexcept override {
        if (!info) return E_POINTER;
        *info = nullptr;
        if (index != 0) return DISP_E_BADINDEX;
        return guard(L"", IID_IDispatch, [&] { module::typeInfo(__uuidof(I)).detachTo(info); });
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID,
                                            DISPID* ids) noexcept override {
        const DispatchTable* table = nullptr;
        const HRESULT result = find(table);
        return FAILED(result) ? result : table->idsOfNames(iid, names, count, ids);
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID, WORD flags, DISPPARAMS* arguments,
                                     VARIANT* result, EXCEPINFO* exception,
                                     UINT* badArgument) noexcept override {
        if (id == ownObjectDispatchId) return invokeOwnObject(this, arguments, result);
        const DispatchTable* table = nullptr;
        const HRESULT found = find(table);
        if (FAILED(found)) return found;
        return table->invoke(static_cast<I*>(this), id, iid, flags, arguments, result, exception,
                             badArgument);
    }

  protected:
    Dual() noexcept = default;
    ~Dual() = default;

  private:
    /// Making the table can fail (no memory, no type library in the module); the next call tries again.
    static HRESULT find(const DispatchTable*& table) noexcept {
        try {
            table = &dispatchTable<I>();
            return S_OK;
        } catch (...) {
            return currentExceptionToResult(L"", IID_IDispatch);
        }
    }
};

}  // namespace vtdn::com
