// Memory of this process.
#pragma once

#include <windows.h>

#include <psapi.h>

#include <vector>

#include "com/error.h"

namespace vtdn::bench {

/// Bytes in memory: now, and the most there ever were.
struct Memory {
    SIZE_T now;
    SIZE_T most;
};

inline Memory memory() {
    PROCESS_MEMORY_COUNTERS counters{};
    if (!GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters))
        com::throwError(HRESULT_FROM_WIN32(GetLastError()));
    return {counters.WorkingSetSize, counters.PeakWorkingSetSize};
}

/// Bytes that are allocated from the heaps of this process.
inline double allocated() {
    std::vector<HANDLE> heaps(GetProcessHeaps(0, nullptr));
    heaps.resize(GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data()));
    double bytes = 0;
    for (const HANDLE heap : heaps) {
        PROCESS_HEAP_ENTRY entry{};
        while (HeapWalk(heap, &entry))
            if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY)
                bytes += static_cast<double>(entry.cbData) + entry.cbOverhead;
    }
    return bytes;
}

}  // namespace vtdn::bench
