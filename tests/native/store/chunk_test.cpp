// The packed form: what goes in comes out, in little space, and what was changed is noticed.

#include "store/chunk.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "expect_error.h"
#include "items.h"

namespace vtdn::store::test {
namespace {

constexpr std::uint64_t key = 0x0000'0005'8000'0123;

std::vector<Item> slots(std::size_t n = static_cast<std::size_t>(slotsPerChunk)) {
    return std::vector<Item>(n);
}

// Random items in stretches: kinds and codes change now and then, as they do in the field, or with every
// slot.
std::vector<Item> randomItems(std::mt19937& random, int stretch) {
    std::vector<Item> items = slots(1 + random() % static_cast<unsigned>(slotsPerChunk));
    std::uint32_t kind = 0;
    MonitorCode code = 0;
    for (Item& item : items) {
        if (random() % static_cast<unsigned>(stretch) == 0) kind = static_cast<std::uint32_t>(random() % 5);
        if (random() % static_cast<unsigned>(stretch) == 0) {
            const MonitorCode codes[] = {
                0, 1, 12, -1, 127, 128, -129, 40'000, 2'147'483'647, -2'147'483'647 - 1};
            code = codes[random() % 10];
        }
        item.code = code;
        switch (kind) {
            case 1:
                item.value = static_cast<std::int32_t>(random());
                break;
            case 2:
                item.value = static_cast<float>(random()) / 7;
                break;
            case 3:
                item.value = static_cast<double>(random()) / 7;
                break;
            case 4:
                item.value = std::string(random() % 20, static_cast<char>(random()));
                break;
            default:
                break;
        }
    }
    return items;
}

TEST(Chunk, GivesBackWhatWasPutIn) {
    std::mt19937 random(20070325);
    for (int trial = 0; trial < 300; ++trial) {
        std::vector<Item> items = randomItems(random, 1 << (trial % 10));
        const Blob blob = packed(items, key);
        items.resize(static_cast<std::size_t>(slotsPerChunk));
        if (blob.empty())
            EXPECT_EQ(items, slots());
        else
            EXPECT_EQ(unpacked(blob, key), items);
    }
}

TEST(Chunk, AnyPartCanBeTakenOut) {
    std::mt19937 random(1);
    for (int trial = 0; trial < 200; ++trial) {
        std::vector<Item> items = randomItems(random, 1 << (trial % 9));
        items.back().code = 5;
        const Blob blob = packed(items, key);
        items.resize(static_cast<std::size_t>(slotsPerChunk));
        const auto first = static_cast<std::int32_t>(random() % static_cast<unsigned>(slotsPerChunk));
        const auto count =
            1 + static_cast<std::int32_t>(random() % static_cast<unsigned>(slotsPerChunk - first));
        store::Run run;
        decodeChunk(blob, key, first, count, run);
        run.finish(count);
        for (std::int32_t i = 0; i < count; ++i)
            ASSERT_EQ(run.item(i), items[static_cast<std::size_t>(first + i)]) << first << " + " << i;
    }
}

TEST(Chunk, AnyPartOfARunIsPackedAsIfItWereAll) {
    std::mt19937 random(3);
    for (int trial = 0; trial < 200; ++trial) {
        const std::vector<Item> items = randomItems(random, 1 << (trial % 9));
        const std::size_t first = random() % items.size();
        const std::size_t count = random() % (items.size() - first + 1);
        Blob blob;
        encodeChunk(runOf(items), static_cast<std::int32_t>(first), static_cast<std::int32_t>(count), key,
                    blob);
        ASSERT_EQ(blob, packed(std::span(items).subspan(first, count), key)) << first << " + " << count;
    }
}

TEST(Chunk, HoldsNothingWhenNothingIsThere) {
    Blob blob{std::byte{1}};
    encodeChunk(runOf(slots()), 0, slotsPerChunk, key, blob);
    EXPECT_TRUE(blob.empty());
    EXPECT_TRUE(packed({}, key).empty());
}

TEST(Chunk, ADayOfSinglesWithOneCodeTakesFourBytesEach) {
    std::vector<Item> items = slots();
    for (Item& item : items) item = {1.5F, 1};
    const Blob blob = packed(items, key);
    EXPECT_EQ(blob.size(), 8 + 3 + 1440 * 4 + 7U);
}

TEST(Chunk, CodesThatAlwaysChangeTakeOneByteEach) {
    std::vector<Item> items = slots();
    for (std::size_t i = 0; i < items.size(); ++i) items[i] = {1.5F, static_cast<MonitorCode>(1 + i % 30)};
    const Blob blob = packed(items, key);
    EXPECT_EQ(blob.size(), 8 + 3 + 1440 * 4 + 3 + 1440U);
    EXPECT_EQ(unpacked(blob, key), items);
}

TEST(Chunk, TextsAreCountedAndMayHoldAnything) {
    std::vector<Item> items = slots(3);
    items[0].value = std::string("\0\0", 2);
    items[1].value = std::string();
    items[2].value = std::string(longestText, '\xF0');
    const Blob blob = packed(items, key);
    items.resize(static_cast<std::size_t>(slotsPerChunk));
    EXPECT_EQ(unpacked(blob, key), items);
    items[0].value = std::string(longestText + 1, 'x');
    expectError(ErrorKind::badValue, [&] { (void)packed(items, key); });
}

TEST(Chunk, EveryFlippedBitIsNoticed) {
    std::mt19937 random(2);
    std::vector<Item> items = randomItems(random, 8);
    items.resize(60);
    items.back().code = 5;
    const Blob blob = packed(items, key);
    for (std::size_t bit = 0; bit < blob.size() * 8; ++bit) {
        Blob changed = blob;
        changed[bit / 8] ^= static_cast<std::byte>(1 << bit % 8);
        EXPECT_THROW((void)unpacked(changed, key), DamagedChunk) << "bit " << bit;
    }
}

TEST(Chunk, AChunkInThePlaceOfAnotherOrCutShortIsNoticed) {
    std::vector<Item> items = slots(5);
    items[4] = {std::string("text"), 5};
    Blob blob = packed(items, key);
    EXPECT_THROW((void)unpacked(blob, key + 1), DamagedChunk);
    EXPECT_THROW((void)unpacked(blob, key ^ (std::uint64_t{1} << 40)), DamagedChunk);
    for (std::size_t length = 0; length < blob.size(); ++length)
        EXPECT_THROW((void)unpacked(std::span(blob).first(length), key), DamagedChunk) << length;
    blob.push_back(std::byte{0});
    EXPECT_THROW((void)unpacked(blob, key), DamagedChunk);
}

TEST(Chunk, ContradictionsBehindARightChecksumAreNoticed) {
    // Lengths and kinds that no encoder writes, sealed as if one had: only the decoder's own checks are left.
    const auto sealed = [](std::initializer_list<int> bytes) {
        Blob blob;
        for (const int byte : bytes) blob.push_back(static_cast<std::byte>(byte));
        const std::uint32_t sum = checksum(std::span<const std::byte>(blob).subspan(8), key);
        std::memcpy(blob.data() + 4, &sum, sizeof sum);
        return blob;
    };
    const Blob good =
        sealed({1, 0, 1, 0, 0, 0, 0, 0, /* value */ 1, 1, 0, 7, 0, 0, 0, /* code */ 1, 1, 0, 3});
    EXPECT_EQ(unpacked(good, key)[0], (Item{7, 3}));
    const Blob bad[] = {
        sealed({2, 0, 1, 0, 0, 0, 0, 0, 0, 1, 0, 1, 1, 0, 3}),                    // version
        sealed({1, 1, 1, 0, 0, 0, 0, 0, 0, 1, 0, 1, 1, 0, 3}),                    // reserved byte
        sealed({1, 0, 0, 0, 0, 0, 0, 0}),                                         // no slots
        sealed({1, 0, 0xA1, 5, 0, 0, 0, 0, 0, 0xA1, 5, 0, 0xA1, 5, 1, 0, 0, 0}),  // 1441 slots
        sealed({1, 0, 1, 0, 0, 0, 0, 0, 5, 1, 0, 1, 1, 0, 3}),                    // kind
        sealed({1, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 0, 3}),                    // segment of no slots
        sealed({1, 0, 1, 0, 0, 0, 0, 0, 0, 2, 0, 1, 1, 0, 3}),                    // segment of too many
        sealed({1, 0, 1, 0, 0, 0, 0, 0, 0, 1, 0, 3, 1, 0, 3, 3, 3}),              // width of codes
        sealed({1, 0, 1, 0, 0, 0, 0, 0, 4, 1, 0, 9, 0, 65, 1, 1, 0, 3}),          // text longer than the rest
        sealed({1, 0, 1, 0, 0, 0, 0, 0, 3, 1, 0, 1, 1, 0, 3}),     // numbers longer than the rest
        sealed({1, 0, 1, 0, 0, 0, 0, 0, 0, 1, 0}),                 // no codes
        sealed({1, 0, 1, 0, 0, 0, 0, 0, 0, 1, 0, 1, 1, 0, 3, 0}),  // something behind the end
    };
    for (const Blob& blob : bad) EXPECT_THROW((void)unpacked(blob, key), DamagedChunk) << &blob - bad;
}

}  // namespace
}  // namespace vtdn::store::test
