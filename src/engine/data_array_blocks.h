// Block writes into a run of intervals: an addition that an engine may offer on its DIDataArray objects. The
// component asks for it by QueryInterface; what it writes this way equals what DIDataArray::SetItem leaves.
#pragma once

#include "engine/data_array_runs.h"

/// In-process only: the engine copies what it is shown before it returns.
MIDL_INTERFACE("57AD377A-1924-489D-8783-859A105B45B4")
DIDataArrayBlocks : public IUnknown {
  public:
    /// Sets `run.count` items, from the one with the given index on, to values of one type: VT_EMPTY or
    /// VT_NULL for all of them, VT_I4, VT_R4 or VT_R8 from memory. Texts are set one by one. E_INVALIDARG
    /// beyond the last item.
    virtual HRESULT STDMETHODCALLTYPE SetRun(LONG index, const DIDataRun* run) = 0;
};
#ifdef __CRT_UUID_DECL
__CRT_UUID_DECL(DIDataArrayBlocks, 0x57AD377A, 0x1924, 0x489D, 0x87, 0x83, 0x85, 0x9A, 0x10, 0x5B, 0x45, 0xB4)
#endif
