// Main of the toolkit's tests: one single-threaded apartment, and no cache of freed strings.
#include <gtest/gtest.h>

#include "com/platform.h"
#include "support/string_cache.h"

int main(int argc, char** argv) {
    if (const auto code = vtdn::test::runWithoutStringCache()) return *code;
    testing::InitGoogleTest(&argc, argv);
    if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 2;
    const int result = RUN_ALL_TESTS();
    CoUninitialize();
    return result;
}
