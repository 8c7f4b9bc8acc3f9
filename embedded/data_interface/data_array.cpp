#include "data_interface/data_array.h"

#include <cmath>
#include <span>
#include <string>

#include "com/strings.h"
#include "data_interface/data_array_item.h"
#include "data_interface/data_run.h"
#include "data_interface/date.h"
#include "data_interface/failure.h"
#include "data_interface/value.h"
#include "store/error.h"

namespace vtdn::embedded {
namespace {

// The store knows runs of at least one interval: an empty one is placed as one of them would be.
store::Span placed(store::Time start, LONG count, const store::Interval& interval) {
    store::Span span = store::Span::define(start, count == 0 ? 1 : count, interval);
    span.count = count;
    return span;
}

template <class T>
std::span<const T> valuesOf(const DIDataRun& run) {
    return {static_cast<const T*>(run.values), static_cast<std::size_t>(run.count)};
}

// As when the values are put one by one.
template <class Real>
void needFinite(std::span<const Real> values) {
    for (const Real value : values)
        if (!std::isfinite(value)) [[unlikely]]
            static_cast<void>(fromVariant(com::Variant::of(value).get()));
}

}  // namespace

HRESULT DataArray::Define(DATE periodStart, LONG count, BSTR intervalType, LONG intervalLength,
                          LONG) noexcept {
    return com::guard(errorSource, __uuidof(DIDataArray), [&] {
        try {
            const auto interval = store::Interval::of(com::toUtf8(com::view(intervalType)), intervalLength);
            span_ = placed(timeOfDate(periodStart), count, interval);
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
        *result = com::make<DataArrayItem>(item(position(index))).detach();
    });
}

HRESULT DataArray::Fill(VARIANT value, LONG mc) noexcept {
    return com::guard(errorSource, __uuidof(DIDataArray), [&] {
        // First: a value by reference is copied, which can call its owner.
        store::Item item{fromVariant(value), mc};
        auto filled = std::make_unique<Columns>(span().count);
        filled->fill(std::move(item));
        clear();
        columns_ = std::move(filled);
    });
}

HRESULT DataArray::SetItem(LONG index, VARIANT value, LONG mc) noexcept {
    return com::guard(errorSource, __uuidof(DIDataArray), [&] {
        store::Item item{fromVariant(value), mc};
        const std::int32_t at = position(index);
        columns().set(at, std::move(item));
    });
}

HRESULT DataArray::SetRun(LONG index, const DIDataRun* run) noexcept {
    return com::guard(errorSource, __uuidof(DIDataArrayBlocks), [&]() -> HRESULT {
        com::needPointers(run);
        if (index < 1 || !span_ || index > span_->count) return E_INVALIDARG;
        if (run->count < 1 || run->count > span_->count - (index - 1)) return E_INVALIDARG;
        const bool isNumbers = run->type == VT_I4 || run->type == VT_R4 || run->type == VT_R8;
        if (!isNumbers && run->type != VT_EMPTY && run->type != VT_NULL) return E_INVALIDARG;
        if (isNumbers && run->values == nullptr) return E_POINTER;
        if (run->type == VT_R4) needFinite(valuesOf<float>(*run));
        if (run->type == VT_R8) needFinite(valuesOf<double>(*run));

        // What GetRun of this very array gave can be set again.
        const auto shown = run_;
        Columns& to = columns();
        const LONG first = index - 1;
        if (run->mcs)
            to.setCodes(first, {reinterpret_cast<const store::MonitorCode*>(run->mcs),
                                static_cast<std::size_t>(run->count)});
        else
            to.setCode(first, run->count, run->mc);
        switch (run->type) {
            case VT_I4:
                to.setNumbers(first, valuesOf<std::int32_t>(*run));
                break;
            case VT_R4:
                to.setNumbers(first, valuesOf<float>(*run));
                break;
            case VT_R8:
                to.setNumbers(first, valuesOf<double>(*run));
                break;
            default:
                to.setNulls(first, run->count);
        }
        return S_OK;
    });
}

HRESULT DataArray::GetRun(LONG index, DIDataRun* run) noexcept {
    // Not guarded: nothing in here can throw, and whoever asks is in a loop.
    if (run == nullptr) return E_POINTER;
    *run = {};
    if (index < 1 || !span_ || index > span_->count) return E_INVALIDARG;
    if (columns_)
        *run = columns_->stretchAt(index - 1);
    else if (run_)
        *run = stretchAt(*run_, index - 1);
    else
        *run = {span_->count - (index - 1), VT_NULL, nullptr, nullptr, 0};
    return S_OK;
}

const store::Span& DataArray::span() const {
    if (!span_)
        com::throwError(com::unsetObject, L"The data array has no place in time yet. Call its Define first.");
    return *span_;
}

store::Item DataArray::item(std::int32_t at) const {
    if (columns_) return columns_->item(at);
    return run_ ? run_->item(at) : store::Item{};
}

store::Value DataArray::value(std::int32_t at) const {
    if (columns_) return columns_->value(at);
    return run_ ? run_->value(at) : store::Value{};
}

std::shared_ptr<const store::Run> DataArray::run() const {
    if (run_) return run_;
    auto run = std::make_shared<store::Run>();
    if (columns_) columns_->appendTo(*run);
    run->finish(span().count);
    return run;
}

void DataArray::clear() noexcept {
    run_.reset();
    columns_.reset();
}

void DataArray::hold(std::shared_ptr<const store::Run> run) noexcept {
    clear();
    run_ = std::move(run);
}

std::int32_t DataArray::position(LONG index) const {
    const LONG count = span().count;
    if (index < 1 || index > count)
        com::throwError(DISP_E_BADINDEX, L"The data array has no item " + std::to_wstring(index) +
                                             (count == 0 ? L". Its run is empty."
                                                         : L". Its items are numbered from 1 to " +
                                                               std::to_wstring(count) + L"."));
    return index - 1;
}

Columns& DataArray::columns() {
    if (!columns_) {
        columns_ = run_ ? std::make_unique<Columns>(*run_) : std::make_unique<Columns>(span().count);
        run_.reset();
    }
    return *columns_;
}

}  // namespace vtdn::embedded
