// The arguments of a special function.
#pragma once

#include <VTDI.h>

#include <cstddef>
#include <vector>

#include "com/ptr.h"
#include "com/safe_array.h"
#include "com/variant.h"
#include "data_interface/data_array.h"
#include "store/time.h"

namespace vtdn::embedded {

/// Copies of what a client gave, so that nothing that happens during a call can change or free what the call
/// works on. Everything here throws com::Error: 13 for an argument of another kind, 91 for an empty
/// reference.
class SpecialArguments {
  public:
    /// Takes them out of an array of VARIANT, or out of another such array that is its only element. Throws
    /// 450 for another number of them than `count`. The text says what they are.
    SpecialArguments(LONG function, std::size_t count, const wchar_t* what, SAFEARRAY* array);

    // Argument i, from 0.

    /// A date or its serial number. Throws store::Error (outOfRange) for one outside the years 100 to 9999.
    [[nodiscard]] store::Time time(std::size_t i) const;
    /// A data item of any library.
    [[nodiscard]] com::Ptr<DIDataArrayItem> dataItem(std::size_t i) const;
    /// A data array of this library.
    [[nodiscard]] com::Ptr<OwnDataArray> dataArray(std::size_t i) const;

  private:
    void take(SAFEARRAY* array, bool nested);
    [[noreturn]] void refuse(HRESULT result, std::size_t i, const wchar_t* why) const;
    [[nodiscard]] com::Ptr<IUnknown> object(std::size_t i, const wchar_t* kind) const;

    LONG function_;
    const wchar_t* what_;
    std::vector<com::Variant> arguments_;
};

}  // namespace vtdn::embedded
