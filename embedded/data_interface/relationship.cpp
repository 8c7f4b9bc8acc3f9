#include "data_interface/relationship.h"

#include "com/strings.h"
#include "data_interface/failure.h"

namespace vtdn::embedded {
namespace {

HRESULT handOut(const std::wstring& text, BSTR* result) noexcept {
    return com::guard(errorSource, __uuidof(DIRelationship), [&] {
        com::needPointers(result);
        *result = nullptr;
        *result = com::Bstr(text).detach();
    });
}

}  // namespace

HRESULT Relationship::get_IntervalCount(LONG* result) noexcept {
    return com::guard(errorSource, __uuidof(DIRelationship), [&] {
        com::needPointers(result);
        *result = interval_count_;
    });
}

HRESULT Relationship::get_IntervalUnit(BSTR* result) noexcept {
    return handOut(interval_unit_, result);
}

HRESULT Relationship::get_DetailXML(BSTR* result) noexcept {
    return handOut(detail_xml_, result);
}

}  // namespace vtdn::embedded
