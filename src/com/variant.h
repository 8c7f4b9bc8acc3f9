// Variants: an owner, the numeric test, and conversions in the user's locale by the platform's own rules.
#pragma once

#include <cstdint>
#include <string_view>

#include "com/platform.h"
#include "com/ptr.h"
#include "com/strings.h"

namespace vtdn::com {

inline constexpr VARIANT_BOOL variantBool(bool value) noexcept {
    return value ? VARIANT_TRUE : VARIANT_FALSE;
}

/// Owns a variant. Empty at first.
class Variant {
  public:
    Variant() noexcept { value_.vt = VT_EMPTY; }
    Variant(const Variant& other);
    Variant(Variant&& other) noexcept : value_(other.value_) { other.value_.vt = VT_EMPTY; }
    ~Variant() { clear(); }
    Variant& operator=(Variant other) noexcept;

    /// A copy of a client's variant; by-reference variants are followed.
    static Variant copyOf(const VARIANT& value);
    static Variant null() noexcept;
    static Variant missing() noexcept;  ///< an argument that was left out: DISP_E_PARAMNOTFOUND
    static Variant of(LONG value) noexcept;
    static Variant of(float value) noexcept;
    static Variant of(double value) noexcept;
    static Variant of(std::wstring_view text);
    static Variant ofBool(bool value) noexcept;
    static Variant ofDate(DATE value) noexcept;
    static Variant of(IDispatch* object) noexcept;  ///< null gives an empty object reference
    /// A copy of an array of variants; none gives an array without any. Throws error 13 for other elements.
    static Variant of(SAFEARRAY* array);

    [[nodiscard]] const VARIANT& get() const noexcept { return value_; }
    [[nodiscard]] VARIANT* operator&() = delete;
    [[nodiscard]] VARIANT* receive() noexcept {
        clear();
        return &value_;
    }
    [[nodiscard]] VARIANT* inOut() noexcept { return &value_; }
    [[nodiscard]] VARTYPE type() const noexcept { return value_.vt; }
    [[nodiscard]] bool isNull() const noexcept { return value_.vt == VT_NULL; }
    /// Hands the value to an [out] argument, whose old content is not looked at. Empty afterwards.
    void detachTo(VARIANT* out) noexcept;

  private:
    /// Most variants of a long run are numbers, which own nothing: no call for those.
    void clear() noexcept {
        if (value_.vt > VT_DATE && value_.vt != VT_BOOL) VariantClear(&value_);
        value_.vt = VT_EMPTY;
    }

    VARIANT value_;
};

/// A number, a boolean, or a text that reads as a number in the user's locale. By-reference variants are
/// followed. Null, Empty, dates, errors, objects and arrays are not numeric.
bool isNumeric(const VARIANT& value) noexcept;

/// Conversions that report instead of throwing, for loops over values. By-reference variants are followed.
/// Null gives 94, an argument that was left out 13, a null object 91, out of range 6 (DISP_E_OVERFLOW; a NaN
/// to an integer too). `out` changes on success only.
HRESULT toInt16(const VARIANT& value, std::int16_t& out) noexcept;
HRESULT toInt32(const VARIANT& value, LONG& out) noexcept;
HRESULT toSingle(const VARIANT& value, float& out) noexcept;
HRESULT toBool(const VARIANT& value, bool& out) noexcept;
HRESULT toText(const VARIANT& value, Bstr& out) noexcept;

}  // namespace vtdn::com
