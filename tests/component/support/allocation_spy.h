// Watches what the platform allocates for a program: task memory, strings, arrays, variants.
#pragma once

#include <objidl.h>

#include <cstddef>

#include "com/error.h"

namespace vtdn::test {

/// While it lives, every block is counted, and one or all from one on can be refused. The platform must not
/// cache freed strings (OANOCACHE), or it would count their blocks as live.
class AllocationSpy final : public IMallocSpy {
  public:
    enum class Refuse { one, allFrom };
    static constexpr std::size_t never = static_cast<std::size_t>(-1);

    AllocationSpy() { com::check(CoRegisterMallocSpy(this)); }
    AllocationSpy(const AllocationSpy&) = delete;
    AllocationSpy& operator=(const AllocationSpy&) = delete;
    ~AllocationSpy() { CoRevokeMallocSpy(); }

    /// Blocks that were allocated and not freed since the spy came.
    [[nodiscard]] long live() const noexcept { return live_; }
    /// Refuses the allocation that is `index` allocations ahead.
    void refuse(std::size_t index, Refuse how) noexcept {
        refused_ = false;
        ahead_ = index;
        how_ = how;
    }
    /// Ends refusing; tells whether any was refused.
    bool stop() noexcept {
        ahead_ = never;
        return refused_;
    }
    /// For allocations that do not go through the platform's allocator.
    [[nodiscard]] bool refusesNext() noexcept {
        if (ahead_ == never) return false;
        if (ahead_ > 0) {
            --ahead_;
            return false;
        }
        refused_ = true;
        if (how_ == Refuse::one) ahead_ = never;
        return true;
    }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) noexcept override {
        *out = iid == IID_IUnknown || iid == IID_IMallocSpy ? this : nullptr;
        return *out ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() noexcept override { return 2; }
    ULONG STDMETHODCALLTYPE Release() noexcept override { return 1; }
    SIZE_T STDMETHODCALLTYPE PreAlloc(SIZE_T size) noexcept override {
        // A size of 0 is the sign for "no memory"; the platform asks for empty blocks as well.
        return refusesNext() ? 0 : size;
    }
    void* STDMETHODCALLTYPE PostAlloc(void* block) noexcept override {
        if (block) ++live_;
        return block;
    }
    void* STDMETHODCALLTYPE PreFree(void* block, BOOL spied) noexcept override {
        if (block && spied) --live_;
        return block;
    }
    void STDMETHODCALLTYPE PostFree(BOOL) noexcept override {}
    SIZE_T STDMETHODCALLTYPE PreRealloc(void* block, SIZE_T size, void** out, BOOL) noexcept override {
        *out = block;
        return refusesNext() ? 0 : size;
    }
    void* STDMETHODCALLTYPE PostRealloc(void* block, BOOL) noexcept override { return block; }
    void* STDMETHODCALLTYPE PreGetSize(void* block, BOOL) noexcept override { return block; }
    SIZE_T STDMETHODCALLTYPE PostGetSize(SIZE_T size, BOOL) noexcept override { return size; }
    void* STDMETHODCALLTYPE PreDidAlloc(void* block, BOOL) noexcept override { return block; }
    int STDMETHODCALLTYPE PostDidAlloc(void*, BOOL, int actual) noexcept override { return actual; }
    void STDMETHODCALLTYPE PreHeapMinimize() noexcept override {}
    void STDMETHODCALLTYPE PostHeapMinimize() noexcept override {}

  private:
    long live_ = 0;
    bool refused_ = false;
    std::size_t ahead_ = never;
    Refuse how_ = Refuse::one;
};

}  // namespace vtdn::test
