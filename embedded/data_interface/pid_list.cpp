#include "data_interface/pid_list.h"

#include "com/error.h"
#include "com/safe_array.h"
#include "data_interface/value.h"

namespace vtdn::embedded {
namespace {

[[noreturn]] void refuseList() {
    com::throwError(
        DISP_E_TYPEMISMATCH,
        L"A list of units and PIDs is a whole number of 32 bits, an array of such numbers or of "
        L"variants that hold them, with one dimension, or no object for all there are. It was given "
        L"something else.");
}

std::int32_t numberIn(const VARIANT& value) {
    if (const auto number = wholeNumberIn(value)) return *number;
    refuseList();
}

std::vector<std::int32_t> elementsOf(SAFEARRAY* array) {
    VARTYPE type = VT_EMPTY;
    if (SafeArrayGetDim(array) != 1 || FAILED(SafeArrayGetVartype(array, &type))) refuseList();
    if (type == VT_I4) {
        const com::ArrayView<LONG> numbers(array);
        return {numbers.begin(), numbers.end()};
    }
    if (type != VT_VARIANT) refuseList();
    std::vector<std::int32_t> numbers;
    const com::ArrayView<VARIANT> elements(array);
    numbers.reserve(elements.size());
    for (const VARIANT& element : elements) numbers.push_back(numberIn(element));
    return numbers;
}

}  // namespace

std::optional<std::vector<std::int32_t>> numbersIn(const VARIANT& list) {
    const bool byReference = (list.vt & VT_BYREF) != 0;
    if (byReference && list.byref == nullptr) refuseList();
    if (list.vt == (VT_BYREF | VT_VARIANT)) return numbersIn(*list.pvarVal);
    if (list.vt & VT_ARRAY) {
        SAFEARRAY* const array = byReference ? *list.pparray : list.parray;
        if (array == nullptr) return std::nullopt;
        return elementsOf(array);
    }
    switch (list.vt & ~VT_BYREF) {
        case VT_EMPTY:
        case VT_NULL:
            return std::nullopt;
        case VT_ERROR:
            if ((byReference ? *list.pscode : list.scode) == DISP_E_PARAMNOTFOUND) return std::nullopt;
            refuseList();
        case VT_DISPATCH:
        case VT_UNKNOWN:
            if ((byReference ? *list.ppunkVal : list.punkVal) == nullptr) return std::nullopt;
            refuseList();
        default:
            return std::vector{numberIn(list)};
    }
}

}  // namespace vtdn::embedded
