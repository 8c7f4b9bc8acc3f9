// Data points as a client has them.
#pragma once

#include <VTWrapperDN.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "com/error.h"
#include "com/safe_array.h"
#include "com/variant.h"
#include "support/failure.h"

namespace vtdn::test {

using DataPoint = com::Ptr<_DataPointBasicWrapper>;

/// A property that must be readable.
template <class I, class T>
T read(const com::Ptr<I>& object, HRESULT (STDMETHODCALLTYPE I::*property)(T*)) {
    T result{};
    const HRESULT got = (object.get()->*property)(&result);
    EXPECT_EQ(got, S_OK) << takeFailure(got);
    return result;
}
inline com::Variant readValue(const DataPoint& point,
                              HRESULT (STDMETHODCALLTYPE _DataPointBasicWrapper::*property)(VARIANT*)) {
    com::Variant result;
    const HRESULT got = (point.get()->*property)(result.receive());
    EXPECT_EQ(got, S_OK) << takeFailure(got);
    return result;
}
inline std::wstring readText(const DataPoint& point,
                             HRESULT (STDMETHODCALLTYPE _DataPointBasicWrapper::*property)(BSTR*)) {
    const auto text = com::Bstr::adopt(read(point, property));
    EXPECT_TRUE(text.get()) << "A null string, which managed clients tell from an empty one";
    return std::wstring(text.view());
}

/// The elements of an array of data points, which must begin at 0; each with a reference of its own.
inline std::vector<DataPoint> elementsOf(SAFEARRAY* array) {
    std::vector<DataPoint> all;
    EXPECT_EQ(com::bounds(array).lower, 0);
    for (IDispatch* element : com::ArrayView<IDispatch*>(array)) {
        EXPECT_TRUE(element);
        DataPoint point;
        com::check(element->QueryInterface(__uuidof(_DataPointBasicWrapper), point.receiveVoid()));
        all.push_back(std::move(point));
    }
    return all;
}

}  // namespace vtdn::test
