// Reads the hourly SO2 mass emissions of October 2007 from the demo site and sums them up.
// VTWrapperDN.h is what the interface compiler makes of typelib/VTWrapperDN.idl.

#include <windows.h>

#include <initguid.h>
#include <oleauto.h>

#include <cstdio>

#include "VTWrapperDN.h"

namespace {

constexpr LONG dahs = 1;
constexpr LONG so2Mass = 504030000;  // 5-040-3-00-00, lb/hr
constexpr LONG hours = 31 * 24;
constexpr DATE october2007 = 39356.0;

int failed(const char* what, HRESULT result) {
    IErrorInfo* info = nullptr;
    BSTR description = nullptr;
    if (GetErrorInfo(0, &info) == S_OK) {
        info->GetDescription(&description);
        info->Release();
    }
    std::fprintf(stderr, "%s: 0x%08lX %ls\n", what, static_cast<unsigned long>(result),
                 description ? description : L"");
    SysFreeString(description);
    return 1;
}

int sumUp(_DIWrapper* wrapper) {
    BSTR name = SysAllocString(L"Read a month");
    VARIANT_BOOL done = VARIANT_FALSE;
    HRESULT result = wrapper->Setup3(dahs, name, &done);
    SysFreeString(name);
    if (FAILED(result)) return failed("Setup3", result);
    if (!done) {
        BSTR problems = nullptr;
        wrapper->GetAndClearProblemsList(&problems);
        std::fprintf(stderr, "Not bound: %ls\n", problems ? problems : L"");
        SysFreeString(problems);
        return 1;
    }

    SAFEARRAY* values = SafeArrayCreateVector(VT_R4, 0, hours);
    SAFEARRAY* codes = SafeArrayCreateVector(VT_I4, 0, hours);
    SAFEARRAY* missing = SafeArrayCreateVector(VT_BOOL, 0, hours);
    BSTR hour = SysAllocString(L"h");
    result = wrapper->Param_GetDataArray_Single(so2Mass, october2007, hours, hour, 1, &values, &codes,
                                                &missing, &done);
    SysFreeString(hour);

    int status = 1;
    if (FAILED(result)) {
        failed("Param_GetDataArray_Single", result);
    } else if (done) {
        const auto* value = static_cast<const float*>(values->pvData);
        const auto* isMissing = static_cast<const VARIANT_BOOL*>(missing->pvData);
        double pounds = 0;
        int measured = 0;
        for (LONG i = 0; i < hours; ++i) {
            if (isMissing[i]) continue;
            pounds += value[i];
            ++measured;
        }
        std::printf("%d of %ld hours have a value, %.1f lb in all\n", measured, hours, pounds);
        status = 0;
    }
    SafeArrayDestroy(values);
    SafeArrayDestroy(codes);
    SafeArrayDestroy(missing);
    wrapper->Teardown();
    return status;
}

}  // namespace

int main() {
    CoInitialize(nullptr);
    int status = 1;
    _DIWrapper* wrapper = nullptr;
    const HRESULT result = CoCreateInstance(CLSID_DIWrapper, nullptr, CLSCTX_INPROC_SERVER, IID__DIWrapper,
                                            reinterpret_cast<void**>(&wrapper));
    if (FAILED(result)) {
        failed("The component is not registered", result);
    } else {
        status = sumUp(wrapper);
        wrapper->Release();
    }
    CoUninitialize();
    return status;
}
