// Safe arrays as a client makes them: any bounds, and the kinds that clients get wrong.
#pragma once

#include <cstddef>
#include <string>
#include <type_traits>
#include <vector>

#include "com/platform.h"
#include "com/safe_array.h"
#include "com/strings.h"

namespace vtdn::test {

/// An element of an array of T as tests write it.
template <class T>
struct Plain {
    using Type = T;
};
template <>
struct Plain<BSTR> {
    using Type = std::wstring;
};
template <>
struct Plain<VARIANT_BOOL> {
    using Type = bool;
};

/// A by-reference array argument of a client.
template <class T>
class Array {
  public:
    using Value = typename Plain<T>::Type;

    /// Not allocated.
    Array() = default;
    /// `count` elements from index `lower`, all zero.
    Array(LONG lower, ULONG count) : Array(com::ElementType<T>::value, {{count, lower}}) {}
    /// An array of any type and shape, for calls that must refuse it.
    Array(VARTYPE type, std::vector<SAFEARRAYBOUND> bounds)
        : array_(SafeArrayCreate(type, static_cast<UINT>(bounds.size()), bounds.data())) {}
    Array(const Array&) = delete;
    Array& operator=(const Array&) = delete;
    ~Array() {
        if (array_) {
            array_->fFeatures &= static_cast<USHORT>(~FADF_FIXEDSIZE);
            SafeArrayDestroy(array_);
        }
    }

    [[nodiscard]] SAFEARRAY** inOut() { return &array_; }
    [[nodiscard]] SAFEARRAY* get() const { return array_; }
    /// Fixed arrays cannot be dimensioned anew.
    void fix() { array_->fFeatures |= FADF_FIXEDSIZE; }

    [[nodiscard]] LONG lower() const { return com::bounds(array_).lower; }
    [[nodiscard]] LONG upper() const { return com::bounds(array_).upper; }
    /// Where the elements are, to tell a kept array from a new one.
    [[nodiscard]] const void* data() const { return array_->pvData; }

    void fill(const Value& value) {
        const com::ArrayView<T> elements(array_);
        for (T& element : elements) set(element, value);
    }
    [[nodiscard]] std::vector<Value> values() const {
        std::vector<Value> all;
        const com::ArrayView<T> elements(array_);
        for (const T& element : elements) all.push_back(plain(element));
        return all;
    }

  private:
    static void set(T& element, const Value& value) {
        if constexpr (std::is_same_v<T, BSTR>) {
            com::replace(&element, com::Bstr(value));
        } else if constexpr (std::is_same_v<Value, bool>) {
            element = value ? VARIANT_TRUE : VARIANT_FALSE;
        } else {
            element = value;
        }
    }
    static Value plain(const T& element) {
        if constexpr (std::is_same_v<T, BSTR>) {
            return std::wstring(com::view(element));
        } else if constexpr (std::is_same_v<Value, bool>) {
            return element != VARIANT_FALSE;
        } else {
            return element;
        }
    }

    SAFEARRAY* array_ = nullptr;
};

}  // namespace vtdn::test
