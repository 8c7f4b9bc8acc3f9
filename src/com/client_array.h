// An array that a client passes by reference.
#pragma once

#include "com/safe_array.h"

namespace vtdn::com {

/// Knows the element type that the argument is declared with. The array stays the client's.
template <class T>
class ClientArray {
  public:
    explicit ClientArray(SAFEARRAY** array) noexcept : array_(array) {}

    /// Gives the array the bounds 0 to count - 1, see com::redimension().
    void redimension(LONG count) const { com::redimension(array_, ElementType<T>::value, count); }
    [[nodiscard]] ArrayView<T> elements() const { return ArrayView<T>(*array_); }

  private:
    SAFEARRAY** array_;
};

}  // namespace vtdn::com
