// Elements of the arrays that a client gets.
#pragma once

#include <gtest/gtest.h>

#include "com/ptr.h"
#include "com/safe_array.h"

namespace vtdn::test {

/// The element at an index, by its interface.
template <class I>
com::Ptr<I> at(const com::SafeArray& array, LONG index) {
    com::Ptr<IDispatch> element;
    EXPECT_EQ(SafeArrayGetElement(array.get(), &index, element.receiveVoid()), S_OK);
    return element.as<I>();
}

}  // namespace vtdn::test
