// One target for libFuzzer: the one whose name VTDN_FUZZ_TARGET is.

#include <cstdint>
#include <string_view>

#include "targets.h"

// NOLINTNEXTLINE: libFuzzer's own name
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    for (const auto& target : vtdn::store::fuzz::targets())
        if (target.name == std::string_view(VTDN_FUZZ_TARGET))
            target.run({reinterpret_cast<const char*>(data), size});
    return 0;
}
