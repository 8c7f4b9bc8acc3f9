// The array of arguments that an engine's functions take.
#pragma once

#include <cstddef>

#include "com/safe_array.h"
#include "com/variant.h"

namespace vtdn::params {

/// An array from 0 with these elements.
template <class... Arguments>
com::SafeArray argumentArray(Arguments... arguments) {
    auto array = com::SafeArray::of<VARIANT>(static_cast<LONG>(sizeof...(arguments)));
    const com::ArrayView<VARIANT> elements(array.get());
    std::size_t i = 0;
    (arguments.detachTo(&elements[i++]), ...);
    return array;
}

}  // namespace vtdn::params
