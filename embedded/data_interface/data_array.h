// A run of consecutive intervals.
#pragma once

#include <VTDI.h>

#include <memory>
#include <optional>
#include <utility>

#include "com/object.h"
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

/// Placed by Define, filled by DIParam::ReadDataArray. Until then its items are Null with code 0. Item hands
/// out copies (see DataArrayItem).
class DataArray final : public com::Object<DataArray, DIDataArray, DIDataArrayRuns, OwnDataArray> {
  public:
    static constexpr const CLSID& classId = CLSID_DIDataArrayClass;

    HRESULT STDMETHODCALLTYPE Define(DATE periodStart, LONG count, BSTR intervalType, LONG intervalLength,
                                     LONG flags) noexcept override;
    HRESULT STDMETHODCALLTYPE Item(LONG index, DIDataArrayItem** result) noexcept override;
    HRESULT STDMETHODCALLTYPE GetRun(LONG index, DIDataRun* run) noexcept override;
    DataArray& dataArray() noexcept override { return *this; }

    /// Where the run is placed. Throws error 91 before Define.
    [[nodiscard]] const store::Span& span() const;
    /// The items are Null with code 0 again.
    void clear() noexcept { run_.reset(); }
    /// Takes over what was read for span().
    void hold(std::shared_ptr<const store::Run> run) noexcept { run_ = std::move(run); }

  private:
    /// Counted from 0. Throws error 9 for an index that is not from 1 to the count.
    [[nodiscard]] std::int32_t position(LONG index) const;

    std::optional<store::Span> span_;
    std::shared_ptr<const store::Run> run_;  // null until the array is filled
};

}  // namespace vtdn::embedded

#ifdef __CRT_UUID_DECL
__CRT_UUID_DECL(vtdn::embedded::OwnDataArray, 0xB7A1D0C6, 0x3F0B, 0x4C0C, 0x9B, 0x0E, 0x6E, 0x7C, 0x5B, 0x1F,
                0x4A, 0x52)
#endif
