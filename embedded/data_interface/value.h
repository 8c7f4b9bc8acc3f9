// Values between automation and the store.
#pragma once

#include "com/platform.h"

#include "com/variant.h"
#include "store/value.h"

namespace vtdn::embedded {

/// What the store keeps of an automation value; by-reference variants are followed.
///
/// | given                                   | kept |
/// |-----------------------------------------|-------------------------------------------------------------------|
/// | Null, Empty                             | no value | | whole number                            | 32-bit
/// integer; a double when it is larger and a double holds it  | | single, double                          |
/// the same; infinities and what is no number are refused            | | boolean | the integers -1 and 0, as
/// automation converts                     | | date                                    | its serial number, a
/// double                                       | | currency, decimal                       | a double;
/// refused when the double would not give it back          | | text                                    | the
/// same text; refused when it is too long or no proper UTF-16    | | error, left out, object, array, record
/// | refused: error 13                                                 |
///
/// Throws com::Error: 6 for a number that is out of range, 5 for a text that cannot be kept, 13 for another
/// kind.
store::Value fromVariant(const VARIANT& value);

/// The automation value of a stored one: Null, a 32-bit integer, a single, a double or a text.
com::Variant toVariant(const store::Value& value);

}  // namespace vtdn::embedded
