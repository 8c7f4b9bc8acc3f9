#include "data_interface/special_arguments.h"

#include <array>
#include <string>

#include "data_interface/date.h"

namespace vtdn::embedded {
namespace {

constexpr std::array ordinals{L"first", L"second"};

bool isListOfVariants(SAFEARRAY* array) {
    VARTYPE type = VT_EMPTY;
    return array != nullptr && SafeArrayGetDim(array) == 1 && SUCCEEDED(SafeArrayGetVartype(array, &type)) &&
           type == VT_VARIANT;
}

// The array that a variant holds or refers to; null for anything else.
SAFEARRAY* const* arrayIn(const VARIANT& value) {
    switch (value.vt) {
        case VT_ARRAY | VT_VARIANT:
            return &value.parray;
        case VT_BYREF | VT_ARRAY | VT_VARIANT:
            return value.pparray;
        case VT_BYREF | VT_VARIANT:
            return value.pvarVal && !(value.pvarVal->vt & VT_BYREF) ? arrayIn(*value.pvarVal) : nullptr;
        default:
            return nullptr;
    }
}

}  // namespace

SpecialArguments::SpecialArguments(LONG function, std::size_t count, const wchar_t* what, SAFEARRAY* array)
    : function_(function), what_(what) {
    take(array, false);
    if (arguments_.size() != count)
        com::throwError(DISP_E_BADPARAMCOUNT, L"Special function " + std::to_wstring(function_) + L" takes " +
                                                  std::to_wstring(count) + L" arguments, " + what_ +
                                                  L". It was given " + std::to_wstring(arguments_.size()) +
                                                  L".");
}

void SpecialArguments::take(SAFEARRAY* array, bool nested) {
    if (!isListOfVariants(array))
        com::throwError(DISP_E_TYPEMISMATCH,
                        L"Special function " + std::to_wstring(function_) +
                            L" takes its arguments in an array of variants with one dimension: " + what_ +
                            L".");
    const com::ArrayView<VARIANT> given(array);
    if (!nested && given.size() == 1)
        if (SAFEARRAY* const* inner = arrayIn(given[0])) return take(*inner, true);
    for (const VARIANT& argument : given) arguments_.push_back(com::Variant::copyOf(argument));
}

void SpecialArguments::refuse(HRESULT result, std::size_t i, const wchar_t* why) const {
    com::throwError(result, L"Special function " + std::to_wstring(function_) + L" takes " + what_ +
                                L". Its " + ordinals[i] + L" argument " + why + L".");
}

store::Time SpecialArguments::time(std::size_t i) const {
    switch (arguments_[i].type()) {
        case VT_DATE:
            return timeOfDate(arguments_[i].get().date);
        case VT_R8:
            return timeOfDate(arguments_[i].get().dblVal);
        default:
            refuse(DISP_E_TYPEMISMATCH, i, L"is no date");
    }
}

com::Ptr<IUnknown> SpecialArguments::object(std::size_t i, const wchar_t* kind) const {
    const com::Variant& argument = arguments_[i];
    if (argument.type() != VT_DISPATCH && argument.type() != VT_UNKNOWN) refuse(DISP_E_TYPEMISMATCH, i, kind);
    if (argument.get().punkVal == nullptr) refuse(com::unsetObject, i, L"is an empty reference");
    return com::Ptr<IUnknown>(argument.get().punkVal);
}

com::Ptr<DIDataArrayItem> SpecialArguments::dataItem(std::size_t i) const {
    constexpr auto kind = L"is no data item";
    auto item = object(i, kind).as<DIDataArrayItem>();
    if (!item) refuse(DISP_E_TYPEMISMATCH, i, kind);
    return item;
}

com::Ptr<OwnDataArray> SpecialArguments::dataArray(std::size_t i) const {
    constexpr auto kind = L"is no data array of this engine";
    auto array = object(i, kind).as<OwnDataArray>();
    if (!array) refuse(DISP_E_TYPEMISMATCH, i, kind);
    return array;
}

}  // namespace vtdn::embedded
