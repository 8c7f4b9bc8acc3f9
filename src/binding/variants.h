// What clients hand over as variants, read by the rules of this system.
#pragma once

#include "com/variant.h"

namespace vtdn::binding {

/// Whether a value is a well-formed PID: a 16- or 32-bit integer; a single, double or decimal, converted to
/// 32 bits first; or a text that parses as one. Anything else is none, and so is a number beyond 32 bits.
bool isValidPid(const VARIANT& value) noexcept;

/// Null becomes Empty; any other value is copied as it is.
com::Variant nullToEmpty(const VARIANT& value);

/// A boolean by the platform's conversion; Null counts as False. Throws what does not convert.
bool isTrue(const com::Variant& value);

}  // namespace vtdn::binding
