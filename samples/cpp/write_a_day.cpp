// Lists the calibrated parameters of the demo site, and writes a day of minutes to the first of them in one
// request. VTWrapperDN.h is what the interface compiler makes of typelib/VTWrapperDN.idl.

#include <windows.h>

#include <initguid.h>
#include <oleauto.h>

#include <cstdio>
#include <cwchar>
#include <string>

#include "VTWrapperDN.h"

namespace {

constexpr LONG dahs = 1;
constexpr LONG minutes = 24 * 60;
constexpr DATE may2008 = 39569.0;  // the first, behind the demo's data
constexpr LONG valueAndCode = 3;   // the flag of an interval of which both are written
constexpr LONG measured = 1;
constexpr LONG missing = 9;

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

int refused(_DIWrapper* wrapper, const char* what) {
    BSTR problems = nullptr;
    wrapper->GetAndClearProblemsList(&problems);
    std::fprintf(stderr, "%s: %ls\n", what, problems ? problems : L"");
    SysFreeString(problems);
    return 1;
}

// One text for the whole run, its values separated by tabs; an empty one is a minute without a value.
BSTR dayOfValues(LONG* codes) {
    std::wstring values;
    for (LONG i = 0; i < minutes; ++i) {
        if (i > 0) values += L'\t';
        const bool isMissing = i % 60 == 59;
        if (!isMissing) values += std::to_wstring(400 + i % 60);
        codes[i] = isMissing ? missing : measured;
    }
    return SysAllocString(values.c_str());
}

int writeDay(_DIWrapper* wrapper, LONG pid) {
    SAFEARRAY* codes = SafeArrayCreateVector(VT_I4, 0, minutes);
    SAFEARRAY* flags = SafeArrayCreateVector(VT_I4, 0, minutes);
    for (LONG i = 0; i < minutes; ++i) static_cast<LONG*>(flags->pvData)[i] = valueAndCode;
    BSTR values = dayOfValues(static_cast<LONG*>(codes->pvData));
    BSTR minute = SysAllocString(L"m");
    VARIANT_BOOL done = VARIANT_FALSE;
    const HRESULT result =
        wrapper->Param_WriteValues(pid, may2008, minutes, minute, 1, values, &codes, &flags, &done);
    SysFreeString(minute);
    SysFreeString(values);
    SafeArrayDestroy(codes);
    SafeArrayDestroy(flags);
    if (FAILED(result)) return failed("Param_WriteValues", result);
    if (!done) return refused(wrapper, "Not written");
    std::printf("%ld minutes written to %ld\n", minutes, pid);
    return 0;
}

int listAndWrite(_DIWrapper* wrapper) {
    BSTR name = SysAllocString(L"Write a day");
    VARIANT_BOOL done = VARIANT_FALSE;
    HRESULT result = wrapper->Setup3(dahs, name, &done);
    SysFreeString(name);
    if (FAILED(result)) return failed("Setup3", result);
    if (!done) return refused(wrapper, "Not bound");

    BSTR list = nullptr;  // nine-digit PIDs, separated by ";"
    result = wrapper->GetListOfCalPIDs(&list);
    int status = 1;
    if (FAILED(result)) {
        failed("GetListOfCalPIDs", result);
    } else if (SysStringLen(list) > 0) {
        std::printf("Calibrated: %ls\n", list);
        status = writeDay(wrapper, std::wcstol(list, nullptr, 10));
    }
    SysFreeString(list);
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
        status = listAndWrite(wrapper);
        wrapper->Release();
    }
    CoUninitialize();
    return status;
}
