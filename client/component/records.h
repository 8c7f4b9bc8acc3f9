// What the component's records have in common: arrays of objects, and values that may be missing.
#pragma once

#include <optional>
#include <vector>

#include "client/component/component.h"
#include "com/error.h"
#include "com/ptr.h"
#include "com/safe_array.h"
#include "com/strings.h"
#include "com/variant.h"

namespace vtdn::client {

/// A value of a record: nothing for Null and for a text that is no number.
inline PointValue pointValue(const com::Variant& value) {
    if (value.isNull()) return std::nullopt;
    // By way of its text: a single then has its own digits, and not those of the double next to it.
    com::Bstr text;
    com::check(com::toText(value.get(), text));
    return numberIn(text.view());
}

/// The objects of an array. There is no array where there are none.
template <class I>
std::vector<com::Ptr<I>> objectsIn(const com::SafeArray& array) {
    std::vector<com::Ptr<I>> objects;
    if (!array.get()) return objects;
    const com::ArrayView<IDispatch*> elements(array.get());
    objects.reserve(elements.size());
    for (IDispatch* element : elements) {
        objects.emplace_back();
        com::check(element->QueryInterface(__uuidof(I), objects.back().receiveVoid()));
    }
    return objects;
}

}  // namespace vtdn::client
