// The engine's records as a client has them: data points and occurrences.
#pragma once

#include <VTWrapperDN.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "com/error.h"
#include "com/safe_array.h"
#include "com/strings.h"
#include "com/variant.h"
#include "support/failure.h"

namespace vtdn::test {

using DataPoint = com::Ptr<_DataPointBasicWrapper>;
using Occurrence = com::Ptr<_OccurrenceDataWrapper>;

/// A property that must be readable.
template <class I, class T>
T read(const com::Ptr<I>& object, HRESULT (STDMETHODCALLTYPE I::*property)(T*)) {
    T result{};
    const HRESULT got = (object.get()->*property)(&result);
    EXPECT_EQ(got, S_OK) << takeFailure(got);
    return result;
}
template <class I>
com::Variant readValue(const com::Ptr<I>& object, HRESULT (STDMETHODCALLTYPE I::*property)(VARIANT*)) {
    com::Variant result;
    const HRESULT got = (object.get()->*property)(result.receive());
    EXPECT_EQ(got, S_OK) << takeFailure(got);
    return result;
}
template <class I>
std::wstring readText(const com::Ptr<I>& object, HRESULT (STDMETHODCALLTYPE I::*property)(BSTR*)) {
    const auto text = com::Bstr::adopt(read(object, property));
    EXPECT_TRUE(text.get()) << "A null string, which managed clients tell from an empty one";
    return std::wstring(text.view());
}

/// The elements of an array of records, which must begin at 0; each with a reference of its own.
template <class I>
std::vector<com::Ptr<I>> elementsOf(SAFEARRAY* array) {
    std::vector<com::Ptr<I>> all;
    EXPECT_EQ(com::bounds(array).lower, 0);
    for (IDispatch* element : com::ArrayView<IDispatch*>(array)) {
        EXPECT_TRUE(element);
        com::Ptr<I> record;
        com::check(element->QueryInterface(__uuidof(I), record.receiveVoid()));
        all.push_back(std::move(record));
    }
    return all;
}

}  // namespace vtdn::test
