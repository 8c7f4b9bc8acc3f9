// Main of the component's test programs: one single-threaded apartment, and no cache of freed strings, so
// that the allocation spy sees each string end.
#include <gtest/gtest.h>

#include <memory>

#include "support/component.h"
#include "support/string_cache.h"

namespace {

std::unique_ptr<vtdn::test::Component> loaded;

}  // namespace

namespace vtdn::test {

std::wstring componentPath() {
    return besideProgram(VTDN_COMPONENT);
}

Component& component() {
    if (!loaded) loaded = std::make_unique<Component>(componentPath());
    return *loaded;
}

}  // namespace vtdn::test

int main(int argc, char** argv) {
    if (const auto code = vtdn::test::runWithoutStringCache()) return *code;
    testing::InitGoogleTest(&argc, argv);
    if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 2;
    const int result = RUN_ALL_TESTS();
    loaded.reset();
    CoUninitialize();
    return result;
}
