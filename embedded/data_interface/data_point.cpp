#include "data_interface/data_point.h"

#include <utility>

#include "com/strings.h"
#include "common/dates.h"
#include "data_interface/date.h"
#include "data_interface/failure.h"
#include "data_interface/occurrence_event.h"
#include "data_interface/value.h"

namespace vtdn::embedded {

DataPoint::DataPoint(const store::DataPoint& point)
    : time_(point.time),
      value_(point.item.value),
      code_(point.item.code),
      extra_(point.extra),
      occurrence_(point.occurrence) {}

HRESULT DataPoint::get_TStamp(DATE* result) noexcept {
    return com::guard(errorSource, __uuidof(DIDataPoint), [&] {
        com::needPointers(result);
        *result = common::dateOfSeconds(time_);
    });
}

HRESULT DataPoint::Initialise(DATE timeStamp) noexcept {
    return com::guard(errorSource, __uuidof(DIDataPoint), [&] {
        try {
            time_ = timeOfDate(timeStamp);
        } catch (const store::Error& error) {
            throwRefusal(error);
        }
        value_ = {};
        code_.reset();
        extra_.clear();
        occurrence_.setText({});
    });
}

HRESULT DataPoint::get_NValue(VARIANT* result) noexcept {
    return com::guard(errorSource, __uuidof(DIDataPoint), [&] {
        com::needPointers(result);
        VariantInit(result);
        toVariant(value_).detachTo(result);
    });
}

HRESULT DataPoint::put_NValue(VARIANT value) noexcept {
    return com::guard(errorSource, __uuidof(DIDataPoint), [&] { value_ = fromVariant(value); });
}

HRESULT DataPoint::get_MC(VARIANT* result) noexcept {
    return com::guard(errorSource, __uuidof(DIDataPoint), [&] {
        com::needPointers(result);
        VariantInit(result);
        (code_ ? com::Variant::of(LONG{*code_}) : com::Variant::null()).detachTo(result);
    });
}

HRESULT DataPoint::put_MC(VARIANT value) noexcept {
    return com::guard(errorSource, __uuidof(DIDataPoint), [&] { code_ = codeFromVariant(value); });
}

HRESULT DataPoint::get(const std::string& text, BSTR* result) noexcept {
    return com::guard(errorSource, __uuidof(DIDataPoint), [&] {
        com::needPointers(result);
        *result = nullptr;
        *result = com::Bstr(com::fromUtf8(text)).detach();
    });
}

HRESULT DataPoint::get_XValueXML(BSTR* result) noexcept {
    return get(extra_, result);
}

HRESULT DataPoint::put_XValueXML(BSTR value) noexcept {
    return com::guard(errorSource, __uuidof(DIDataPoint), [&] { extra_ = keptWhole(com::view(value)); });
}

HRESULT DataPoint::get_OccDataXML(BSTR* result) noexcept {
    return get(occurrence_.text(), result);
}

HRESULT DataPoint::put_OccDataXML(BSTR value) noexcept {
    return com::guard(errorSource, __uuidof(DIDataPoint),
                      [&] { occurrence_.setText(keptWhole(com::view(value))); });
}

HRESULT DataPoint::get_Event(DIOccurrenceEvent** result) noexcept {
    return com::guard(errorSource, __uuidof(DIDataPoint), [&] {
        com::needPointers(result);
        *result = nullptr;
        *result = com::make<OccurrenceEvent>(com::Ptr<IUnknown>(unknown()), occurrence_).detach();
    });
}

}  // namespace vtdn::embedded
