// Main of the early-bound clients: one single-threaded apartment.
#include <gtest/gtest.h>

#include "com/platform.h"

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 2;
    const int result = RUN_ALL_TESTS();
    CoUninitialize();
    return result;
}
