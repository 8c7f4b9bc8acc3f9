// How stored values become elements of a client's array. Each conversion reports whether it could be made;
// only lack of memory, which is no property of the value, is thrown.
#pragma once

#include <cfloat>
#include <cmath>
#include <cstdint>
#include <limits>

#include "com/error.h"
#include "com/variant.h"

namespace vtdn::params {

/// Whether a conversion was made, from its result.
inline bool converted(HRESULT result) {
    if (result == E_OUTOFMEMORY) com::throwError(result);
    return SUCCEEDED(result);
}

/// Elements of the whole-number arrays keep to 16 bits, although they are 32 bits wide.
inline bool toElement(const com::Variant& value, LONG& element) {
    std::int16_t narrow = 0;
    if (!converted(com::toInt16(value.get(), narrow))) return false;
    element = narrow;
    return true;
}

inline bool toElement(const com::Variant& value, float& element) {
    return converted(com::toSingle(value.get(), element));
}

// The same from numbers that lie in memory.

inline bool toElement(LONG value, LONG& element) noexcept {
    using Narrow = std::numeric_limits<std::int16_t>;
    element = value;
    return value >= Narrow::min() && value <= Narrow::max();
}

template <class Number>
bool toElement(Number value, LONG& element) {
    return toElement(com::Variant::of(value), element);
}

inline bool toElement(float value, float& element) noexcept {
    element = value;
    return true;
}

inline bool toElement(LONG value, float& element) noexcept {
    element = static_cast<float>(value);
    return true;
}

inline bool toElement(double value, float& element) noexcept {
    if (std::fabs(value) > FLT_MAX) return false;
    element = static_cast<float>(value);
    return true;
}

}  // namespace vtdn::params
