// A run of consecutive intervals.
#pragma once

#include <VTDI.h>

#include <memory>
#include <optional>
#include <utility>

#include "com/object.h"
#include "data_interface/columns.h"
#include "engine/data_array_blocks.h"
#include "engine/data_array_runs.h"
#include "store/interval.h"
#include "store/run.h"

namespace vtdn::embedded {

class DataArray;

/// How the engine recognises its own data arrays. Private: no type library lists it.
MIDL_INTERFACE("B7A1D0C6-3F0B-4C0C-9B0E-6E7C5B1F4A52")
OwnDataArray : public IUnknown {
  public:
    /// The object itself, without a reference.
    virtual DataArray& dataArray() noexcept = 0;
};

/// Placed by Define, then filled by DIParam::ReadDataArray or by its client. Until then its items are Null
/// with code 0. Item hands out copies (see DataArrayItem). A value is converted when it is put (see value.h),
/// so that what is read back is what would be stored: Empty reads as Null. What is refused changes nothing.
class DataArray final
    : public com::Object<DataArray, DIDataArray, DIDataArrayRuns, DIDataArrayBlocks, OwnDataArray> {
  public:
    static constexpr const CLSID& classId = CLSID_DIDataArrayClass;

    /// A count of 0 places a run without items. The flags are not looked at.
    HRESULT STDMETHODCALLTYPE Define(DATE periodStart, LONG count, BSTR intervalType, LONG intervalLength,
                                     LONG flags) noexcept override;
    HRESULT STDMETHODCALLTYPE Item(LONG index, DIDataArrayItem** result) noexcept override;
    HRESULT STDMETHODCALLTYPE Fill(VARIANT value, LONG mc) noexcept override;
    HRESULT STDMETHODCALLTYPE SetItem(LONG index, VARIANT value, LONG mc) noexcept override;
    HRESULT STDMETHODCALLTYPE GetRun(LONG index, DIDataRun* run) noexcept override;
    HRESULT STDMETHODCALLTYPE SetRun(LONG index, const DIDataRun* run) noexcept override;
    DataArray& dataArray() noexcept override { return *this; }

    /// Where the run is placed. Throws error 91 before Define.
    [[nodiscard]] const store::Span& span() const;
    /// The value of one item, from 0 to the count of span() - 1.
    [[nodiscard]] store::Value value(std::int32_t at) const;
    /// All items, as they are now: what was read, or a copy of what a client set.
    [[nodiscard]] std::shared_ptr<const store::Run> run() const;

    /// The items are Null with code 0 again.
    void clear() noexcept;
    /// Takes over what was read for span().
    void hold(std::shared_ptr<const store::Run> run) noexcept;

  private:
    /// Counted from 0. Throws error 9 for an index that is not from 1 to the count.
    [[nodiscard]] std::int32_t position(LONG index) const;
    [[nodiscard]] store::Item item(std::int32_t at) const;
    /// The items as a client can set them.
    Columns& columns();

    std::optional<store::Span> span_;
    // Both null until the array is filled, never both set.
    std::shared_ptr<const store::Run> run_;
    std::unique_ptr<Columns> columns_;
};

}  // namespace vtdn::embedded

#ifdef __CRT_UUID_DECL
__CRT_UUID_DECL(vtdn::embedded::OwnDataArray, 0xB7A1D0C6, 0x3F0B, 0x4C0C, 0x9B, 0x0E, 0x6E, 0x7C, 0x5B, 0x1F,
                0x4A, 0x52)
#endif
