#include "occurrences/data_point.h"

namespace vtdn {

using engine::DataPoint;

/// Anything but a number, or a text that reads as one, counts as no value.
HRESULT DataPointBasicWrapper::getNumeric(Get property, VARIANT* result) const noexcept {
    return get(result, com::Variant::null(), [&](const DataPoint& point) {
        auto value = point.value(property);
        return com::isNumeric(value.get()) ? value : com::Variant::null();
    });
}

HRESULT DataPointBasicWrapper::putNumeric(Put property, const VARIANT& value) const noexcept {
    return change([&](const DataPoint& point) {
        if (com::isNumeric(value)) point.put(property, com::Variant::copyOf(value));
    });
}

/// No value equals Null, not even Null itself: clients know this answer and test what they read instead.
HRESULT DataPointBasicWrapper::isNull(Get property, VARIANT_BOOL* result) const noexcept {
    return get(result, true, [&](const DataPoint& point) {
        static_cast<void>(point.value(property));
        return false;
    });
}

HRESULT DataPointBasicWrapper::setNull(Put property) const noexcept {
    return change([&](const DataPoint& point) { point.put(property, com::Variant::null()); });
}

HRESULT DataPointBasicWrapper::getText(engine::TextProperty<DIDataPoint> property,
                                       BSTR* result) const noexcept {
    return get(result, L"", [&](const DataPoint& point) { return point.text(property); });
}

STDMETHODIMP DataPointBasicWrapper::get_TStamp(DATE* result) noexcept {
    return get(result, 0, [](const DataPoint& point) { return point.date(&DIDataPoint::get_TStamp); });
}

STDMETHODIMP DataPointBasicWrapper::get_NValue(VARIANT* result) noexcept {
    return getNumeric(&DIDataPoint::get_NValue, result);
}

STDMETHODIMP DataPointBasicWrapper::put_NValue(VARIANT value) noexcept {
    return putNumeric(&DIDataPoint::put_NValue, value);
}

STDMETHODIMP DataPointBasicWrapper::get_IsNValueNull(VARIANT_BOOL* result) noexcept {
    return isNull(&DIDataPoint::get_NValue, result);
}

STDMETHODIMP DataPointBasicWrapper::SetNValueToNull() noexcept {
    return setNull(&DIDataPoint::put_NValue);
}

STDMETHODIMP DataPointBasicWrapper::get_MC(VARIANT* result) noexcept {
    return getNumeric(&DIDataPoint::get_MC, result);
}

STDMETHODIMP DataPointBasicWrapper::put_MC(VARIANT value) noexcept {
    return putNumeric(&DIDataPoint::put_MC, value);
}

STDMETHODIMP DataPointBasicWrapper::get_IsMCNull(VARIANT_BOOL* result) noexcept {
    return isNull(&DIDataPoint::get_MC, result);
}

STDMETHODIMP DataPointBasicWrapper::SetMCToNull() noexcept {
    return setNull(&DIDataPoint::put_MC);
}

STDMETHODIMP DataPointBasicWrapper::get_OccDataXML(BSTR* result) noexcept {
    return getText(&DIDataPoint::get_OccDataXML, result);
}

STDMETHODIMP DataPointBasicWrapper::put_OccDataXML(BSTR value) noexcept {
    return change([&](const DataPoint& point) { point.put(&DIDataPoint::put_OccDataXML, value); });
}

STDMETHODIMP DataPointBasicWrapper::get_XValueXML(BSTR* result) noexcept {
    return getText(&DIDataPoint::get_XValueXML, result);
}

STDMETHODIMP DataPointBasicWrapper::put_XValueXML(BSTR value) noexcept {
    return change([&](const DataPoint& point) { point.put(&DIDataPoint::put_XValueXML, value); });
}

}  // namespace vtdn
