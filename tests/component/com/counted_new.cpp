#include "counted_new.h"

#include <cstdlib>
#include <new>

namespace {

vtdn::test::AllocationSpy* asked = nullptr;

}  // namespace

namespace vtdn::test {

void askBeforeNew(AllocationSpy* spy) noexcept {
    asked = spy;
}

}  // namespace vtdn::test

void* operator new(std::size_t size) {
    if (asked && asked->refusesNext()) throw std::bad_alloc();
    if (void* block = std::malloc(size != 0 ? size : 1)) return block;
    throw std::bad_alloc();
}
void operator delete(void* block) noexcept {
    std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}
