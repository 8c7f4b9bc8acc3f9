// Safe arrays of a declared element type to and from arrays of VARIANT, which is what script engines have.
#pragma once

#include "com/platform.h"

namespace vtdn::com {

/// A new array of the same dimensions whose elements are those of `variants` converted in the user's locale.
/// Elements of object type are asked for `iid`; Empty gives a zero element or a null object.
/// DISP_E_TYPEMISMATCH or DISP_E_OVERFLOW when an element cannot be converted.
HRESULT fromVariants(SAFEARRAY* variants, VARTYPE type, REFIID iid, SAFEARRAY** out) noexcept;

/// A new array of VARIANT of the same dimensions with copies of the elements of `array`, whose element type
/// is `type`.
HRESULT toVariants(SAFEARRAY* array, VARTYPE type, SAFEARRAY** out) noexcept;

/// Makes `*target`, an array of VARIANT of the caller, equal to `*fresh`: an array of the same dimensions
/// gets the elements, any other is replaced. `*fresh` is the caller's to destroy afterwards.
/// DISP_E_ARRAYISLOCKED when a fixed or locked array would have to be replaced.
HRESULT replaceVariants(SAFEARRAY** target, SAFEARRAY** fresh) noexcept;

/// Converts in the user's locale as an argument: DISP_E_OVERFLOW, E_OUTOFMEMORY or DISP_E_TYPEMISMATCH. `out`
/// is overwritten.
HRESULT convertArgument(const VARIANT& value, VARTYPE type, VARIANT& out) noexcept;

/// The object's interface `iid` (null for null, also when the value is Empty), as an owned reference.
HRESULT objectArgument(const VARIANT& value, REFIID iid, IUnknown** out) noexcept;

}  // namespace vtdn::com
