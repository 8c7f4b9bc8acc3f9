// COM on the thread of the tests.
#include <gtest/gtest.h>

#include "com/platform.h"

namespace vtdn::test {
namespace {

class Apartment : public testing::Environment {
  public:
    void SetUp() override { ASSERT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK); }
    void TearDown() override { CoUninitialize(); }
};

const testing::Environment* const apartment = testing::AddGlobalTestEnvironment(new Apartment);

}  // namespace
}  // namespace vtdn::test
