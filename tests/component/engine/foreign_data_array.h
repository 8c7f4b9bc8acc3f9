// A data array of another library.
#pragma once

#include <VTDI.h>

namespace vtdn::embedded::test {

/// Offers the public interface of a data array and no place of its own. Lives on the stack: nobody's
/// reference keeps it.
class ForeignDataArray final : public DIDataArray {
  public:
    STDMETHODIMP QueryInterface(REFIID iid, void** out) noexcept override {
        *out = iid == __uuidof(DIDataArray) || iid == IID_IUnknown || iid == IID_IDispatch ? this : nullptr;
        return *out ? S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() noexcept override { return 2; }
    STDMETHODIMP_(ULONG) Release() noexcept override { return 1; }
    STDMETHODIMP GetTypeInfoCount(UINT*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                        UINT*) noexcept override {
        return E_NOTIMPL;
    }
    STDMETHODIMP Define(DATE, LONG, BSTR, LONG, LONG) noexcept override { return S_OK; }
    STDMETHODIMP Item(LONG, DIDataArrayItem**) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP Fill(VARIANT, LONG) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP SetItem(LONG, VARIANT, LONG) noexcept override { return E_NOTIMPL; }
};

}  // namespace vtdn::embedded::test
