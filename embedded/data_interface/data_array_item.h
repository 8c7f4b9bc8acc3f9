// One interval: a value and a monitor code.
#pragma once

#include <VTDI.h>

#include "com/object.h"
#include "store/value.h"

namespace vtdn::embedded {

/// Holds a value and a code of its own: an item that came out of a data array or a parameter is a copy, and
/// putting its properties changes nothing but the item. New: Null with code 0. A value is converted when it
/// is put (see value.h), so that what is read back is what would be stored.
class DataArrayItem final : public com::Object<DataArrayItem, DIDataArrayItem> {
  public:
    static constexpr const CLSID& classId = CLSID_DIDataArrayItemClass;

    DataArrayItem() = default;
    explicit DataArrayItem(store::Item item) : item_(std::move(item)) {}

    HRESULT STDMETHODCALLTYPE get_Value(VARIANT* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Value(VARIANT value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_MC(LONG* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_MC(LONG value) noexcept override;

  private:
    store::Item item_;
};

}  // namespace vtdn::embedded
