#include "data_interface/occurrence.h"

#include "com/strings.h"
#include "com/variant.h"
#include "common/dates.h"
#include "data_interface/occurrence_event.h"
#include "data_interface/value.h"
#include "store/value_text.h"

namespace vtdn::embedded {

HRESULT Occurrence::get_AffectedPID(LONG* result) noexcept {
    return com::guard(errorSource, __uuidof(DIOccurrence), [&] {
        com::needPointers(result);
        *result = row_.pid;
    });
}

HRESULT Occurrence::get_Interval(BSTR* result) noexcept {
    return com::guard(errorSource, __uuidof(DIOccurrence), [&] {
        com::needPointers(result);
        *result = nullptr;
        *result = com::Bstr(com::fromUtf8(row_.interval.text())).detach();
    });
}

HRESULT Occurrence::get_StartDate(DATE* result) noexcept {
    return com::guard(errorSource, __uuidof(DIOccurrence), [&] {
        com::needPointers(result);
        *result = common::dateOfSeconds(row_.time);
    });
}

HRESULT Occurrence::get_NValue(VARIANT* result) noexcept {
    return com::guard(errorSource, __uuidof(DIOccurrence), [&] {
        com::needPointers(result);
        VariantInit(result);
        toVariant(row_.item.value).detachTo(result);
    });
}

HRESULT Occurrence::get_MC(VARIANT* result) noexcept {
    return com::guard(errorSource, __uuidof(DIOccurrence), [&] {
        com::needPointers(result);
        VariantInit(result);
        com::Variant::of(LONG{row_.item.code}).detachTo(result);
    });
}

HRESULT Occurrence::get_Event(DIOccurrenceEvent** result) noexcept {
    return com::guard(errorSource, __uuidof(DIOccurrence), [&] {
        com::needPointers(result);
        *result = nullptr;
        if (!text_) text_.emplace(std::string(row_.text));
        *result = com::make<OccurrenceEvent>(com::Ptr<IUnknown>(unknown()), *text_).detach();
    });
}

HRESULT Occurrence::TextValue(IDispatch*, BSTR* result) noexcept {
    return com::guard(errorSource, __uuidof(DIOccurrence), [&] {
        com::needPointers(result);
        *result = nullptr;
        const auto format = list_->formats.find(row_.pid);
        const std::string text = store::valueText(
            row_.item.value, format == list_->formats.end() ? std::string() : format->second);
        *result = com::Bstr(com::fromUtf8(text)).detach();
    });
}

}  // namespace vtdn::embedded
