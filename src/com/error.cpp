#include "com/error.h"

#include <algorithm>
#include <iterator>
#include <new>

#include "com/strings.h"

namespace vtdn::com {
namespace {

/// HRESULTs that automation clients know under a number of their own.
struct Mapping {
    HRESULT result;
    LONG number;
};
constexpr Mapping mappings[] = {
    {E_INVALIDARG, 5},
    {DISP_E_OVERFLOW, 6},
    {E_OUTOFMEMORY, 7},
    {DISP_E_BADINDEX, 9},
    {TYPE_E_OUTOFBOUNDS, 9},
    {DISP_E_ARRAYISLOCKED, 10},
    {DISP_E_DIVBYZERO, 11},
    {DISP_E_TYPEMISMATCH, 13},
    {TYPE_E_TYPEMISMATCH, 13},
    {E_ACCESSDENIED, 70},
    {REGDB_E_CLASSNOTREG, 429},
    {CO_E_CLASSSTRING, 429},
    {E_NOINTERFACE, 430},
    {DISP_E_MEMBERNOTFOUND, 438},
    {DISP_E_UNKNOWNNAME, 438},
    {DISP_E_UNKNOWNINTERFACE, 438},
    {E_NOTIMPL, 445},
    {DISP_E_PARAMNOTFOUND, 448},
    {DISP_E_PARAMNOTOPTIONAL, 449},
    {DISP_E_BADPARAMCOUNT, 450},
};

/// The texts of the numbers, in the order of the numbers.
struct Text {
    LONG number;
    std::wstring_view text;
};
constexpr Text texts[] = {
    {5, L"Invalid procedure call or argument"},
    {6, L"Overflow"},
    {7, L"Out of memory"},
    {9, L"Subscript out of range"},
    {10, L"This array is fixed or temporarily locked"},
    {11, L"Division by zero"},
    {13, L"Type mismatch"},
    {14, L"Out of string space"},
    {28, L"Out of stack space"},
    {35, L"Sub or Function not defined"},
    {48, L"Error in loading DLL"},
    {51, L"Internal error"},
    {52, L"Bad file name or number"},
    {53, L"File not found"},
    {54, L"Bad file mode"},
    {55, L"File already open"},
    {57, L"Device I/O error"},
    {58, L"File already exists"},
    {61, L"Disk full"},
    {62, L"Input past end of file"},
    {67, L"Too many files"},
    {68, L"Device unavailable"},
    {70, L"Permission denied"},
    {71, L"Disk not ready"},
    {74, L"Can't rename with different drive"},
    {75, L"Path/File access error"},
    {76, L"Path not found"},
    {91, L"Object variable or With block variable not set"},
    {92, L"For loop not initialized"},
    {94, L"Invalid use of Null"},
    {322, L"Can't create necessary temporary file"},
    {380, L"Invalid property value"},
    {424, L"Object required"},
    {429, L"ActiveX component can't create object"},
    {430, L"Class does not support Automation or does not support expected interface"},
    {432, L"File name or class name not found during Automation operation"},
    {438, L"Object doesn't support this property or method"},
    {440, L"Automation error"},
    {445, L"Object doesn't support this action"},
    {446, L"Object doesn't support named arguments"},
    {447, L"Object doesn't support current locale setting"},
    {448, L"Named argument not found"},
    {449, L"Argument not optional"},
    {450, L"Wrong number of arguments or invalid property assignment"},
    {451, L"Object not a collection"},
    {453, L"Specified DLL function not found"},
    {457, L"This key is already associated with an element of this collection"},
    {462, L"The remote server machine does not exist or is unavailable"},
};

}  // namespace

Error::Error(HRESULT result, Ptr<IErrorInfo> info) noexcept : result_(result), info_(std::move(info)) {}

LONG Error::number() const noexcept {
    return errorNumber(result_);
}

std::wstring Error::description() const {
    if (info_) {
        Bstr text;
        if (SUCCEEDED(info_->GetDescription(text.receive())) && !text.view().empty())
            return std::wstring(text.view());
    }
    return std::wstring(errorText(number()));
}

LONG errorNumber(HRESULT result) noexcept {
    if (HRESULT_FACILITY(result) == FACILITY_CONTROL && FAILED(result)) return HRESULT_CODE(result);
    const auto* found = std::find_if(std::begin(mappings), std::end(mappings),
                                     [=](const Mapping& m) { return m.result == result; });
    return found == std::end(mappings) ? static_cast<LONG>(result) : found->number;
}

std::wstring_view errorText(LONG number) noexcept {
    // Negative numbers are HRESULTs without a number of their own.
    if (number < 0) return L"Automation error";
    const auto* found = std::lower_bound(std::begin(texts), std::end(texts), number,
                                         [](const Text& t, LONG n) { return t.number < n; });
    if (found == std::end(texts) || found->number != number)
        return L"Application-defined or object-defined error";
    return found->text;
}

Error lastError(HRESULT result) noexcept {
    Ptr<IErrorInfo> info;
    if (GetErrorInfo(0, info.receive()) != S_OK) info.reset();
    return Error(result, std::move(info));
}

void throwLast(HRESULT result) {
    throw lastError(result);
}

void throwError(HRESULT result, std::wstring_view description) {
    if (result == E_OUTOFMEMORY && description.empty()) throw std::bad_alloc();
    if (description.empty()) description = errorText(errorNumber(result));
    throw OwnError(result, makeErrorInfo({}, description, IID_NULL));
}

Ptr<IErrorInfo> makeErrorInfo(std::wstring_view source, std::wstring_view description, REFIID iid) noexcept {
    try {
        const Bstr sourceText(source);
        const Bstr descriptionText(description);
        Ptr<ICreateErrorInfo> maker;
        if (FAILED(CreateErrorInfo(maker.receive())) || FAILED(maker->SetGUID(iid)) ||
            FAILED(maker->SetSource(sourceText.get())) ||
            FAILED(maker->SetDescription(descriptionText.get())))
            return nullptr;
        return maker.as<IErrorInfo>();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

}  // namespace vtdn::com
