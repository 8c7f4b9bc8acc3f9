// Block access to a filled run of intervals: an addition that an engine may offer on its DIDataArray objects.
// The component asks for it by QueryInterface; what it reads this way equals, bit by bit, what
// DIDataArray::Item gives.
#pragma once

#include <oaidl.h>

/// Consecutive items of a data array whose values have one type and lie side by side in memory.
struct DIDataRun {
    LONG count;    ///< items, at least 1
    VARTYPE type;  ///< VT_NULL, VT_I4, VT_R4 or VT_R8; VT_EMPTY for items that are to be asked one by one
    const void* values;  ///< `count` values of that type; null for VT_NULL and VT_EMPTY
    const LONG* mcs;     ///< `count` monitor codes, or null when all of them are `mc`
    LONG mc;             ///< the monitor code of every item when `mcs` is null
};

/// In-process only: it hands out pointers into the engine's memory, valid until the array is defined, filled
/// or changed anew or released.
MIDL_INTERFACE("975680CB-9C99-4484-A00F-8F218278BD0D")
DIDataArrayRuns : public IUnknown {
  public:
    /// The longest run that starts at the item with the given index, from 1. E_INVALIDARG beyond the last
    /// item.
    virtual HRESULT STDMETHODCALLTYPE GetRun(LONG index, DIDataRun * run) = 0;
};
#ifdef __CRT_UUID_DECL
__CRT_UUID_DECL(DIDataArrayRuns, 0x975680CB, 0x9C99, 0x4484, 0xA0, 0x0F, 0x8F, 0x21, 0x82, 0x78, 0xBD, 0x0D)
#endif
