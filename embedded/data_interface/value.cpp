#include "data_interface/value.h"

#include <cmath>
#include <cstdint>
#include <string>

#include "com/error.h"
#include "com/strings.h"
#include "data_interface/failure.h"

namespace vtdn::embedded {
namespace {

// Whole numbers up to this size, and no further, are all doubles.
constexpr std::int64_t largestWholeDouble = std::int64_t{1} << 53;

[[noreturn]] void refuseNumber(std::wstring_view number, const wchar_t* why) {
    com::throwError(DISP_E_OVERFLOW, L"The number " + std::wstring(number) + L" " + why);
}

store::Value wholeNumber(std::int64_t number) {
    if (number >= INT32_MIN && number <= INT32_MAX) return static_cast<std::int32_t>(number);
    if (number > largestWholeDouble || number < -largestWholeDouble)
        refuseNumber(std::to_wstring(number),
                     L"has more digits than can be kept (whole numbers go to 2^53).");
    return static_cast<double>(number);
}

store::Value wholeNumber(std::uint64_t number) {
    if (number > static_cast<std::uint64_t>(largestWholeDouble))
        refuseNumber(std::to_wstring(number),
                     L"has more digits than can be kept (whole numbers go to 2^53).");
    return wholeNumber(static_cast<std::int64_t>(number));
}

template <class Real>
store::Value finite(Real number) {
    if (!std::isfinite(number))
        refuseNumber(std::isnan(number) ? L"NaN"
                     : number > 0       ? L"+infinity"
                                        : L"-infinity",
                     L"cannot be kept. Write Null for no value.");
    return number;
}

[[noreturn]] void refuseExact(const VARIANT& value) {
    com::Bstr text;
    com::check(com::toText(value, text));
    refuseNumber(text.view(), L"has more digits than a double keeps. Round it first, or write it as a text.");
}

store::Value currency(const VARIANT& value) {
    double number = 0;
    CY back{};
    com::check(VarR8FromCy(value.cyVal, &number));
    if (FAILED(VarCyFromR8(number, &back)) || back.int64 != value.cyVal.int64) refuseExact(value);
    return number;
}

store::Value decimal(const VARIANT& value) {
    double number = 0;
    DECIMAL given = value.decVal;
    DECIMAL back{};
    com::check(VarR8FromDec(&given, &number));
    if (FAILED(VarDecFromR8(number, &back)) || VarDecCmp(&given, &back) != static_cast<HRESULT>(VARCMP_EQ))
        refuseExact(value);
    return number;
}

bool isHigh(wchar_t unit) {
    return (unit & 0xFC00) == 0xD800;
}
bool isLow(wchar_t unit) {
    return (unit & 0xFC00) == 0xDC00;
}

// UTF-8 has no form for half of a surrogate pair, so that such a text would come back changed.
bool isProper(std::wstring_view text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (isLow(text[i])) return false;
        if (isHigh(text[i]) && (++i == text.size() || !isLow(text[i]))) return false;
    }
    return true;
}

[[noreturn]] void refuseKind(const VARIANT& value) {
    if (value.vt == VT_ERROR)
        com::throwError(
            DISP_E_TYPEMISMATCH,
            value.scode == DISP_E_PARAMNOTFOUND
                ? L"The value was left out. It is a number, a text, or Null for no value."
                : L"An error code is not a value. A value is a number, a text, or Null for no value.");
    com::throwError(DISP_E_TYPEMISMATCH,
                    L"An object, an array or a record is not a value. A value is a number, a "
                    L"text, or Null for no value.");
}

[[noreturn]] void refuseCode() {
    com::throwError(DISP_E_TYPEMISMATCH,
                    L"A monitor code is a whole number, or Null for none. It was given something else.");
}

}  // namespace

store::Value fromVariant(const VARIANT& value) {
    if (value.vt & VT_BYREF) {
        if (value.byref == nullptr) refuseKind(value);
        return fromVariant(com::Variant::copyOf(value).get());
    }
    switch (value.vt) {
        case VT_EMPTY:
        case VT_NULL:
            return {};
        case VT_I1:
            // The header declares it as plain char, whose sign is the compiler's choice.
            return std::int32_t{static_cast<std::int8_t>(value.cVal)};
        case VT_I2:
            return std::int32_t{value.iVal};
        case VT_I4:
            return std::int32_t{value.lVal};
        case VT_INT:
            return std::int32_t{value.intVal};
        case VT_UI1:
            return std::int32_t{value.bVal};
        case VT_UI2:
            return std::int32_t{value.uiVal};
        case VT_UI4:
            return wholeNumber(std::int64_t{value.ulVal});
        case VT_UINT:
            return wholeNumber(std::int64_t{value.uintVal});
        case VT_I8:
            return wholeNumber(std::int64_t{value.llVal});
        case VT_UI8:
            return wholeNumber(std::uint64_t{value.ullVal});
        case VT_BOOL:
            return std::int32_t{value.boolVal ? VARIANT_TRUE : VARIANT_FALSE};
        case VT_R4:
            return finite(value.fltVal);
        case VT_R8:
            return finite(value.dblVal);
        case VT_DATE:
            return finite(value.date);
        case VT_CY:
            return currency(value);
        case VT_DECIMAL:
            return decimal(value);
        case VT_BSTR:
            return keptWhole(com::view(value.bstrVal));
        default:
            refuseKind(value);
    }
}

std::string keptText(std::wstring_view text) {
    if (!isProper(text))
        com::throwError(invalidCall,
                        L"The text holds half of a surrogate pair, so that it could not be kept as it is.");
    return com::toUtf8(text);
}

std::string keptWhole(std::wstring_view text) {
    std::string kept = keptText(text);
    if (kept.size() > store::longestText)
        com::throwError(invalidCall, L"The text of " + std::to_wstring(text.size()) +
                                         L" characters is too long. A value holds up to " +
                                         std::to_wstring(store::longestText) + L" bytes of UTF-8.");
    return kept;
}

std::optional<std::int32_t> wholeNumberIn(const VARIANT& value) {
    switch (value.vt & ~VT_BYREF) {
        case VT_I1:
        case VT_I2:
        case VT_I4:
        case VT_I8:
        case VT_INT:
        case VT_UI1:
        case VT_UI2:
        case VT_UI4:
        case VT_UI8:
        case VT_UINT:
            break;
        default:
            return std::nullopt;
    }
    if ((value.vt & VT_BYREF) != 0 && value.byref == nullptr) return std::nullopt;
    // By way of 64 bits: the platform's conversion to 32 takes the bits of an unsigned number as they are.
    com::Variant wide;
    if (FAILED(VariantChangeType(wide.inOut(), const_cast<VARIANT*>(&value), 0, VT_I8))) return std::nullopt;
    const LONGLONG number = wide.get().llVal;
    if (number < INT32_MIN || number > INT32_MAX) return std::nullopt;
    return static_cast<std::int32_t>(number);
}

std::optional<store::MonitorCode> codeFromVariant(const VARIANT& value) {
    if (value.vt & VT_BYREF) {
        if (value.byref == nullptr) refuseCode();
        return codeFromVariant(com::Variant::copyOf(value).get());
    }
    if (value.vt == VT_EMPTY || value.vt == VT_NULL) return std::nullopt;
    if (!com::isNumeric(value)) refuseCode();
    // The platform's conversion takes the bits of an unsigned number as they are.
    const bool wraps = (value.vt == VT_UI4 || value.vt == VT_UINT) && value.ulVal > INT32_MAX;
    LONG code = 0;
    if (wraps || FAILED(com::toInt32(value, code)))
        com::throwError(DISP_E_OVERFLOW,
                        L"A monitor code is a whole number of 32 bits. Give one from "
                        L"-2147483648 to 2147483647, or Null for none.");
    return code;
}

com::Variant toVariant(const store::SpecialValue& value) {
    switch (store::kindOf(value)) {
        case store::SpecialValueKind::boolean:
            return com::Variant::ofBool(std::get<bool>(value));
        case store::SpecialValueKind::integer:
            return com::Variant::of(LONG{std::get<std::int32_t>(value)});
        case store::SpecialValueKind::real:
            return com::Variant::of(std::get<double>(value));
        case store::SpecialValueKind::text:
            return com::Variant::of(com::fromUtf8(std::get<std::string>(value)));
        case store::SpecialValueKind::null:
            break;
    }
    return com::Variant::null();
}

com::Variant toVariant(const store::Value& value) {
    switch (store::kindOf(value)) {
        case store::ValueKind::integer:
            return com::Variant::of(LONG{std::get<std::int32_t>(value)});
        case store::ValueKind::single:
            return com::Variant::of(std::get<float>(value));
        case store::ValueKind::real:
            return com::Variant::of(std::get<double>(value));
        case store::ValueKind::text:
            return com::Variant::of(com::fromUtf8(std::get<std::string>(value)));
        case store::ValueKind::null:
            break;
    }
    return com::Variant::null();
}

}  // namespace vtdn::embedded
