// Reports the monitor downtimes and the excursions of 2007 from the demo site, one line for each parameter
// that had any. VTWrapperDN.h is what the interface compiler makes of typelib/VTWrapperDN.idl.

#include <windows.h>

#include <initguid.h>
#include <oleauto.h>

#include <cstdio>
#include <map>

#include "VTWrapperDN.h"

namespace {

constexpr LONG dahs = 1;
constexpr DATE year2007 = 39083.0;
constexpr DATE lastSecond = 39448.0 - 1.0 / 86400;

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

bool setUp(_DIWrapper* wrapper) {
    BSTR name = SysAllocString(L"Downtime report");
    VARIANT_BOOL done = VARIANT_FALSE;
    const HRESULT result = wrapper->Setup3(dahs, name, &done);
    SysFreeString(name);
    if (FAILED(result)) failed("Setup3", result);
    if (SUCCEEDED(result) && done == VARIANT_FALSE) {
        BSTR problems = nullptr;
        wrapper->GetAndClearProblemsList(&problems);
        std::fprintf(stderr, "Not bound: %ls\n", problems ? problems : L"");
        SysFreeString(problems);
    }
    return SUCCEEDED(result) && done != VARIANT_FALSE;
}

struct Intervals {
    int down = 0;
    int excludable = 0;
    int over = 0;
};

/// Adds one occurrence to those of its parameter.
HRESULT add(IUnknown* object, std::map<LONG, Intervals>& sums) {
    _OccurrenceDataWrapper* occurrence = nullptr;
    HRESULT result =
        object->QueryInterface(IID__OccurrenceDataWrapper, reinterpret_cast<void**>(&occurrence));
    if (FAILED(result)) return result;
    LONG tag = 0;
    VARIANT_BOOL down = VARIANT_FALSE;
    VARIANT_BOOL excludable = VARIANT_FALSE;
    VARIANT_BOOL over = VARIANT_FALSE;
    result = occurrence->get_AffectedPID(&tag);
    if (SUCCEEDED(result)) result = occurrence->get_HasDowntime(&down);
    if (SUCCEEDED(result)) result = occurrence->get_Downtime_Excludable(&excludable);
    if (SUCCEEDED(result)) result = occurrence->get_HasExcursion(&over);
    occurrence->Release();
    Intervals& sum = sums[tag];
    sum.down += down ? 1 : 0;
    sum.excludable += excludable ? 1 : 0;
    sum.over += over ? 1 : 0;
    return result;
}

HRESULT addAll(SAFEARRAY* occurrences, std::map<LONG, Intervals>& sums) {
    if (!occurrences) return S_OK;  // there is no array where there are none
    auto* const objects = static_cast<IUnknown**>(occurrences->pvData);
    HRESULT result = S_OK;
    for (ULONG i = 0; i < occurrences->rgsabound[0].cElements && SUCCEEDED(result); ++i)
        result = add(objects[i], sums);
    return result;
}

int report(_DIWrapper* wrapper) {
    VARIANT excursions{};
    excursions.vt = VT_BOOL;
    excursions.boolVal = VARIANT_TRUE;
    SAFEARRAY* everything = nullptr;  // or an array of VT_I4: numbers of units and PIDs
    SAFEARRAY* occurrences = nullptr;
    HRESULT result = wrapper->GetOccurrences(year2007, lastSecond, VARIANT_TRUE, excursions, 0, VARIANT_TRUE,
                                             &everything, &occurrences);
    if (FAILED(result)) return failed("GetOccurrences", result);
    std::map<LONG, Intervals> sums;
    result = addAll(occurrences, sums);
    SafeArrayDestroy(occurrences);
    if (FAILED(result)) return failed("An occurrence", result);
    for (const auto& [tag, sum] : sums) {
        BSTR name = nullptr;
        BSTR interval = nullptr;
        wrapper->Param_Name(tag, &name);
        wrapper->Param_IntervalType(tag, &interval);
        std::printf("%ls: %d intervals of %ls down, %d of them excludable, %d over a limit\n",
                    name ? name : L"", sum.down, interval ? interval : L"", sum.excludable, sum.over);
        SysFreeString(name);
        SysFreeString(interval);
    }
    return 0;
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
        if (setUp(wrapper)) status = report(wrapper);
        wrapper->Teardown();
        wrapper->Release();
    }
    CoUninitialize();
    return status;
}
