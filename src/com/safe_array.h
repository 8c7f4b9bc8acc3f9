// Typed safe arrays: one dimension, exact element types.
#pragma once

#include <cstddef>
#include <cstring>
#include <span>
#include <utility>

#include "com/error.h"
#include "com/platform.h"

namespace vtdn::com {

template <class T>
struct ElementType;
template <>
struct ElementType<LONG> {
    static constexpr VARTYPE value = VT_I4;
};
template <>
struct ElementType<float> {
    static constexpr VARTYPE value = VT_R4;
};
template <>
struct ElementType<VARIANT_BOOL> {
    static constexpr VARTYPE value = VT_BOOL;
};
template <>
struct ElementType<BSTR> {
    static constexpr VARTYPE value = VT_BSTR;
};
template <>
struct ElementType<VARIANT> {
    static constexpr VARTYPE value = VT_VARIANT;
};
template <>
struct ElementType<IDispatch*> {
    static constexpr VARTYPE value = VT_DISPATCH;
};

/// Lower and upper bound of a one-dimensional array. No array at all is error 9 (subscript out of range), and
/// so are two dimensions where one is meant.
struct Bounds {
    LONG lower;
    LONG upper;
    bool operator==(const Bounds&) const = default;
};
Bounds bounds(SAFEARRAY* array);

/// Bytes of an element, or of a value in the union of a variant. The size of a pointer for everything that is
/// one.
std::size_t elementSize(VARTYPE type) noexcept;

/// Whether so many elements are an array at all: the platform counts bytes in 32 bits, and not every version
/// of it notices when they wrap around.
bool canHold(VARTYPE type, std::size_t count) noexcept;

/// Whether the array's memory belongs to somebody who placed it: it cannot be freed, so it cannot be
/// replaced.
bool isFixed(const SAFEARRAY& array) noexcept;

/// Throws error 13 unless the array holds elements of this type.
void needElementType(SAFEARRAY* array, VARTYPE type);

/// Locks the elements of an array for as long as it lives. Does not own the array.
template <class T>
class ArrayView {
  public:
    explicit ArrayView(SAFEARRAY* array) : array_(array), bounds_(com::bounds(array)) {
        needElementType(array, ElementType<T>::value);
        void* data = nullptr;
        check(SafeArrayAccessData(array, &data));
        data_ = static_cast<T*>(data);
    }
    ~ArrayView() { SafeArrayUnaccessData(array_); }
    ArrayView(const ArrayView&) = delete;
    ArrayView& operator=(const ArrayView&) = delete;

    [[nodiscard]] std::size_t size() const noexcept {
        return static_cast<std::size_t>(static_cast<long long>(bounds_.upper) - bounds_.lower + 1);
    }
    [[nodiscard]] T* data() const noexcept { return data_; }
    [[nodiscard]] T& operator[](std::size_t i) const noexcept { return data_[i]; }
    [[nodiscard]] T* begin() const noexcept { return data_; }
    [[nodiscard]] T* end() const noexcept { return data_ + size(); }

  private:
    SAFEARRAY* array_;
    Bounds bounds_;
    T* data_ = nullptr;
};

/// Owns an array, or none.
class SafeArray {
  public:
    SafeArray() noexcept = default;
    explicit SafeArray(SAFEARRAY* array) noexcept : array_(array) {}
    SafeArray(SafeArray&& other) noexcept : array_(std::exchange(other.array_, nullptr)) {}
    SafeArray& operator=(SafeArray&& other) noexcept {
        std::swap(array_, other.array_);
        return *this;
    }
    ~SafeArray() {
        if (array_) SafeArrayDestroy(array_);
    }

    /// `count` zeroed elements from index 0; 0 gives an array with the bounds 0 to -1.
    template <class T>
    static SafeArray of(LONG count) {
        return create(ElementType<T>::value, count);
    }
    static SafeArray create(VARTYPE type, LONG count);

    [[nodiscard]] SAFEARRAY* get() const noexcept { return array_; }
    [[nodiscard]] SAFEARRAY** inOut() noexcept { return &array_; }
    [[nodiscard]] SAFEARRAY* detach() noexcept { return std::exchange(array_, nullptr); }
    void detachTo(SAFEARRAY** out) noexcept { *out = detach(); }

  private:
    SAFEARRAY* array_ = nullptr;
};

/// Gives a by-reference array of the client the bounds 0 to count - 1. An array that has them is kept with
/// its elements, 0 To -1 for a count of 0 included; any other is replaced by a fresh one. The client's array
/// stays whole when this throws: 9 for no array, more than one dimension, or a count of 0 or less that would
/// need a new array; 13 for another element type; 10 for a fixed or locked array that would have to be
/// replaced.
void redimension(SAFEARRAY** array, VARTYPE type, LONG count);

}  // namespace vtdn::com
