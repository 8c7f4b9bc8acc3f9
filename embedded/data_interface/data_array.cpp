#include "data_interface/data_array.h"

#include <string>

#include "com/strings.h"
#include "data_interface/data_array_item.h"
#include "data_interface/data_run.h"
#include "data_interface/date.h"
#include "data_interface/failure.h"
#include "store/error.h"

namespace vtdn::embedded {

HRESULT DataArray::Define(DATE periodStart, LONG count, BSTR intervalType, LONG intervalLength,
                          LONG) noexcept {
    return com::guard(errorSource, __uuidof(DIDataArray), [&] {
        try {
            const auto interval = store::Interval::of(com::toUtf8(com::view(intervalType)), intervalLength);
            span_ = store::Span::define(timeOfDate(periodStart), count, interval);
        } catch (const store::Error& error) {
            throwRefusal(error);
        }
        clear();
    });
}

HRESULT DataArray::Item(LONG index, DIDataArrayItem** result) noexcept {
    return com::guard(errorSource, __uuidof(DIDataArray), [&] {
        com::needPointers(result);
        *result = nullptr;
        const std::int32_t at = position(index);
        *result = com::make<DataArrayItem>(run_ ? run_->item(at) : store::Item{}).detach();
    });
}

HRESULT DataArray::GetRun(LONG index, DIDataRun* run) noexcept {
    // Not guarded: nothing in here can throw, and whoever asks is in a loop.
    if (run == nullptr) return E_POINTER;
    *run = {};
    if (index < 1 || !span_ || index > span_->count) return E_INVALIDARG;
    *run = run_ ? stretchAt(*run_, index - 1)
                : DIDataRun{span_->count - (index - 1), VT_NULL, nullptr, nullptr, 0};
    return S_OK;
}

const store::Span& DataArray::span() const {
    if (!span_)
        com::throwError(com::unsetObject, L"The data array has no place in time yet. Call its Define first.");
    return *span_;
}

std::int32_t DataArray::position(LONG index) const {
    const LONG count = span().count;
    if (index < 1 || index > count)
        com::throwError(DISP_E_BADINDEX, L"The data array has no item " + std::to_wstring(index) +
                                             L". Its items are numbered from 1 to " + std::to_wstring(count) +
                                             L".");
    return index - 1;
}

}  // namespace vtdn::embedded
