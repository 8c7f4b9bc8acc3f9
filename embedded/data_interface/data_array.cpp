#include "data_interface/data_array.h"

#include <string>
#include <utility>

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
        empty();
    });
}

HRESULT DataArray::Item(LONG index, DIDataArrayItem** result) noexcept {
    return com::guard(errorSource, __uuidof(DIDataArray), [&] {
        com::needPointers(result);
        *result = nullptr;
        *result = com::make<DataArrayItem>(run_->item(position(index))).detach();
    });
}

HRESULT DataArray::GetRun(LONG index, DIDataRun* run) noexcept {
    // Not guarded: nothing in here can throw, and whoever asks is in a loop.
    if (run == nullptr) return E_POINTER;
    *run = {};
    if (index < 1 || index > run_->count()) return E_INVALIDARG;
    *run = stretchAt(*run_, index - 1);
    return S_OK;
}

const store::Span& DataArray::span() const {
    if (!span_)
        com::throwError(com::unsetObject, L"The data array has no place in time yet. Call its Define first.");
    return *span_;
}

void DataArray::empty() {
    auto nulls = std::make_shared<store::Run>();
    nulls->finish(span_->count);
    run_ = std::move(nulls);
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
