// Values between automation and the store.
#pragma once

#include "com/platform.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "com/variant.h"
#include "store/special_values.h"
#include "store/value.h"

namespace vtdn::embedded {

/// What the store keeps of an automation value; by-reference variants are followed.
///
/// | given                                   | kept                                                      |
/// |-----------------------------------------|-----------------------------------------------------------|
/// | Null, Empty                             | no value                                                  |
/// | whole number                            | 32-bit integer; a larger one as a double that holds it    |
/// | single, double                          | the same; infinities and what is no number are refused    |
/// | boolean                                 | the integers -1 and 0, as automation converts             |
/// | date                                    | its serial number, a double                               |
/// | currency, decimal                       | a double; refused when it would not give the value back   |
/// | text                                    | the same text; refused when it is too long or no UTF-16   |
/// | error, left out, object, array, record  | refused: error 13                                         |
///
/// Throws com::Error: 6 for a number that is out of range, 5 for a text that cannot be kept, 13 for another
/// kind.
store::Value fromVariant(const VARIANT& value);

/// The automation value of a stored one: Null, a 32-bit integer, a single, a double or a text.
com::Variant toVariant(const store::Value& value);
/// That of a special value: Null, a boolean, a 32-bit integer, a double or a text.
com::Variant toVariant(const store::SpecialValue& value);

/// The UTF-8 of a text that is to be kept. Throws error 5 for half a surrogate pair.
std::string keptText(std::wstring_view text);
/// The same of a text that stands on its own, as a value does. Throws error 5 above store::longestText too.
std::string keptWhole(std::wstring_view text);

/// The whole number of 32 bits in a variant that holds a whole number of any size; none for anything else,
/// truths and texts included. By-reference variants are followed, unless they refer to variants.
std::optional<std::int32_t> wholeNumberIn(const VARIANT& value);

/// The monitor code in a value that may have none: none for Null and Empty. What is numeric (a text that
/// reads as a number included) is converted as automation does, halves to the even neighbour. Throws
/// com::Error: 6 beyond 32 bits, 13 for another kind.
std::optional<store::MonitorCode> codeFromVariant(const VARIANT& value);

}  // namespace vtdn::embedded
