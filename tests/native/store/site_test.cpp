// A whole site: values of every kind come back, from this connection and from another one.

#include "store/site.h"

#include <gtest/gtest.h>

#include "demo_site.h"
#include "store/error.h"
#include "store/time.h"

namespace vtdn::store::test {
namespace {

Time at(int hour, int minute = 0) {
    return timeOf({2007, 3, 25, hour, minute, 0});
}

TEST(Site, KeepsTheKindOfEveryValue) {
    DemoSite demo;
    const std::vector<Value> values{std::monostate(),
                                    std::int32_t{40000},
                                    0.1F,
                                    0.1,
                                    std::string("N/A"),
                                    std::string("a\0b", 3),
                                    std::string("\xF0\x9F\x8F\xAD")};
    int hour = 0;
    for (const Value& value : values) demo.site.write(hourPid, at(hour++), {{value, 7}});
    Site other = demo.reopen();
    hour = 0;
    for (const Value& value : values) EXPECT_EQ(other.read(hourPid, at(hour++)), (Item{value, 7}));
}

TEST(Site, AWriteByOneConnectionIsSeenByTheNextReadOfAnother) {
    DemoSite demo;
    Site other = demo.reopen();
    EXPECT_EQ(other.read(minutePid, at(1)), Item{});
    demo.site.write(minutePid, at(1), {{1.5F, 3}});
    EXPECT_EQ(other.read(minutePid, at(1)), (Item{1.5F, 3}));
}

}  // namespace
}  // namespace vtdn::store::test
