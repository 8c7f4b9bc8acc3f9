#include "store/chunk.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <limits>

#include "store/error.h"

namespace vtdn::store {
namespace {

static_assert(std::endian::native == std::endian::little, "the packed form is copied as it stands");

constexpr std::byte formatVersion{1};
constexpr std::size_t headerSize = 8;

[[noreturn]] void damaged() {
    throw DamagedChunk();
}

template <typename T>
void put(Blob& blob, T value) {
    const std::size_t at = blob.size();
    blob.resize(at + sizeof value);
    std::memcpy(blob.data() + at, &value, sizeof value);
}

void putSegment(Blob& blob, std::uint8_t kind, std::int32_t count) {
    put(blob, kind);
    put(blob, static_cast<std::uint16_t>(count));
}

void putBytes(Blob& blob, std::span<const std::byte> bytes) {
    blob.insert(blob.end(), bytes.begin(), bytes.end());
}

void putText(Blob& blob, std::string_view text) {
    if (text.size() > longestText)
        throw Error(ErrorKind::badValue, "A text of " + std::to_string(text.size()) +
                                             " bytes is too long to be stored. The longest has " +
                                             std::to_string(longestText) + ".");
    put(blob, static_cast<std::uint16_t>(text.size()));
    putBytes(blob, std::as_bytes(std::span(text)));
}

void putValues(Blob& blob, const Run& run, std::int32_t first, std::int32_t count) {
    run.forEachValues(first, count, [&](const Run::Values& s, std::int32_t skip, std::int32_t take) {
        putSegment(blob, static_cast<std::uint8_t>(s.kind), take);
        if (s.kind == ValueKind::null) return;
        if (s.kind == ValueKind::text) {
            for (std::int32_t i = 0; i < take; ++i) putText(blob, run.text(s, skip + i));
            return;
        }
        const std::size_t size = sizeOf(s.kind);
        putBytes(blob, run.numbers(s).subspan(static_cast<std::size_t>(skip) * size,
                                              static_cast<std::size_t>(take) * size));
    });
}

using CodeArray = std::array<MonitorCode, slotsPerChunk>;

// The codes of a part of a run, one for each interval.
std::span<const MonitorCode> spreadCodes(const Run& run, std::int32_t first, std::int32_t count,
                                         CodeArray& array) {
    auto to = array.begin();
    run.forEachCodes(first, count, [&](const Run::Codes& s, std::int32_t skip, std::int32_t take) {
        to = s.same ? std::fill_n(to, take, s.code) : std::copy_n(run.codesOf(s).begin() + skip, take, to);
    });
    return {array.begin(), to};
}

// Number of intervals up to the last one that holds a value or a code.
std::int32_t countUsed(const Run& run, std::int32_t first, std::span<const MonitorCode> codes) {
    const auto last = std::find_if(codes.rbegin(), codes.rend(), [](MonitorCode code) { return code != 0; });
    auto used = static_cast<std::int32_t>(codes.rend() - last);
    std::int32_t at = 0;
    run.forEachValues(first, static_cast<std::int32_t>(codes.size()),
                      [&](const Run::Values& s, std::int32_t, std::int32_t take) {
                          at += take;
                          if (s.kind != ValueKind::null) used = std::max(used, at);
                      });
    return used;
}

// Number of codes from the first on that are the same.
std::size_t stretchLength(std::span<const MonitorCode> codes) {
    const auto other =
        std::find_if(codes.begin(), codes.end(), [&](MonitorCode code) { return code != codes[0]; });
    return static_cast<std::size_t>(other - codes.begin());
}

template <typename T>
bool fits(MonitorCode low, MonitorCode high) {
    return low >= std::numeric_limits<T>::min() && high <= std::numeric_limits<T>::max();
}

template <typename T>
void putCodeArray(Blob& blob, std::span<const MonitorCode> codes) {
    putSegment(blob, sizeof(T), static_cast<std::int32_t>(codes.size()));
    for (const MonitorCode code : codes) put(blob, static_cast<T>(code));
}

// Stretches of one code each, or an array of the narrowest width that fits: whichever is smaller.
void putCodes(Blob& blob, std::span<const MonitorCode> codes) {
    std::size_t stretches = 0;
    for (auto rest = codes; !rest.empty(); rest = rest.subspan(stretchLength(rest))) ++stretches;
    const auto [low, high] = std::minmax_element(codes.begin(), codes.end());
    const std::size_t width = fits<std::int8_t>(*low, *high) ? 1 : fits<std::int16_t>(*low, *high) ? 2 : 4;
    if (stretches * (3 + sizeof(MonitorCode)) <= 3 + codes.size() * width) {
        for (auto rest = codes; !rest.empty();) {
            const std::size_t n = stretchLength(rest);
            putSegment(blob, 0, static_cast<std::int32_t>(n));
            put(blob, rest[0]);
            rest = rest.subspan(n);
        }
    } else if (width == 1) {
        putCodeArray<std::int8_t>(blob, codes);
    } else if (width == 2) {
        putCodeArray<std::int16_t>(blob, codes);
    } else {
        putCodeArray<std::int32_t>(blob, codes);
    }
}

// Reads a blob from front to back and never past its end.
class Reader {
  public:
    explicit Reader(std::span<const std::byte> bytes) : rest_(bytes) {}

    std::span<const std::byte> take(std::size_t n) {
        if (n > rest_.size()) damaged();
        const auto taken = rest_.first(n);
        rest_ = rest_.subspan(n);
        return taken;
    }
    template <typename T>
    T get() {
        T value;
        std::memcpy(&value, take(sizeof value).data(), sizeof value);
        return value;
    }
    [[nodiscard]] bool atEnd() const { return rest_.empty(); }

  private:
    std::span<const std::byte> rest_;
};

// The part of a segment that was asked for: skip so many of its slots, then take so many.
struct Part {
    std::int32_t skip;
    std::int32_t take;
};

Part overlap(std::int32_t at, std::int32_t n, std::int32_t first, std::int32_t count) {
    const std::int32_t from = std::clamp(first - at, 0, n);
    const std::int32_t to = std::clamp(first + count - at, 0, n);
    return {from, std::max(to - from, 0)};
}

void copyPart(std::byte* to, std::span<const std::byte> from, Part part, std::size_t width) {
    std::memcpy(to, from.data() + static_cast<std::size_t>(part.skip) * width,
                static_cast<std::size_t>(part.take) * width);
}

void readTexts(Reader& reader, std::int32_t n, Part part, Run& run) {
    for (std::int32_t i = 0; i < n; ++i) {
        const auto bytes = reader.take(reader.get<std::uint16_t>());
        if (i >= part.skip && i < part.skip + part.take)
            run.appendText({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    }
}

void readValues(Reader& reader, ValueKind kind, std::int32_t n, Part part, Run& run) {
    switch (kind) {
        case ValueKind::null:
            return run.appendNulls(part.take);
        case ValueKind::integer:
        case ValueKind::single:
        case ValueKind::real: {
            const std::size_t width = kind == ValueKind::real ? 8 : 4;
            const auto bytes = reader.take(static_cast<std::size_t>(n) * width);
            if (part.take > 0) copyPart(run.appendNumbers(kind, part.take), bytes, part, width);
            return;
        }
        case ValueKind::text:
            return readTexts(reader, n, part, run);
    }
    damaged();
}

template <typename T>
void widen(std::byte* to, std::span<const std::byte> from, Part part) {
    for (std::int32_t i = 0; i < part.take; ++i) {
        T narrow;
        std::memcpy(&narrow, from.data() + static_cast<std::size_t>(part.skip + i) * sizeof narrow,
                    sizeof narrow);
        const MonitorCode code = narrow;
        std::memcpy(to + static_cast<std::size_t>(i) * sizeof code, &code, sizeof code);
    }
}

void readCodes(Reader& reader, std::uint8_t width, std::int32_t n, Part part, Run& run) {
    if (width == 0) return run.appendCode(reader.get<MonitorCode>(), part.take);
    if (width != 1 && width != 2 && width != 4) damaged();
    const auto bytes = reader.take(static_cast<std::size_t>(n) * width);
    if (part.take == 0) return;
    std::byte* room = run.appendCodes(part.take);
    if (width == 1)
        widen<std::int8_t>(room, bytes, part);
    else if (width == 2)
        widen<std::int16_t>(room, bytes, part);
    else
        copyPart(room, bytes, part, width);
}

// Calls back for each segment of one of the two lists until n slots are covered.
template <typename Each>
void forEachSegment(Reader& reader, std::int32_t n, Each each) {
    for (std::int32_t at = 0; at < n;) {
        const auto kind = reader.get<std::uint8_t>();
        const std::int32_t count = reader.get<std::uint16_t>();
        if (count == 0 || count > n - at) damaged();
        each(kind, at, count);
        at += count;
    }
}

}  // namespace

std::uint32_t checksum(std::span<const std::byte> bytes, std::uint64_t seed) {
    // Four independent lanes of 32-bit words. Each step is a bijection of the lane for a given word and of
    // the word for a given lane, so that one changed word always changes the result of its lane.
    constexpr std::uint32_t k1 = 0x9E3779B1;
    constexpr std::uint32_t k2 = 0x85EBCA77;
    const auto low = static_cast<std::uint32_t>(seed);
    const auto high = static_cast<std::uint32_t>(seed >> 32);
    std::uint32_t a = low;
    std::uint32_t b = high + k1;
    std::uint32_t c = low ^ k2;
    std::uint32_t d = high ^ (k1 + k2);
    const auto mix = [](std::uint32_t lane, std::uint32_t word) { return std::rotl((lane ^ word) * k1, 15); };
    const std::byte* at = bytes.data();
    std::size_t left = bytes.size();
    for (; left >= 16; left -= 16, at += 16) {
        std::array<std::uint32_t, 4> w;
        std::memcpy(w.data(), at, sizeof w);
        a = mix(a, w[0]);
        b = mix(b, w[1]);
        c = mix(c, w[2]);
        d = mix(d, w[3]);
    }
    for (; left > 0; --left, ++at) a = mix(a, std::to_integer<std::uint32_t>(*at));
    std::uint32_t sum = static_cast<std::uint32_t>(bytes.size());
    for (const std::uint32_t lane : {a, b, c, d}) sum = std::rotl((sum ^ lane) * k2, 13) + k1;
    sum ^= sum >> 15;
    sum *= k2;
    return sum ^ (sum >> 13);
}

void encodeChunk(const Run& run, std::int32_t first, std::int32_t count, std::uint64_t key, Blob& result) {
    result.clear();
    if (count > slotsPerChunk)
        throw Error(ErrorKind::internal, "A chunk was given more intervals than it can hold.");
    CodeArray array;
    auto codes = spreadCodes(run, first, count, array);
    const std::int32_t used = countUsed(run, first, codes);
    if (used == 0) return;
    codes = codes.first(static_cast<std::size_t>(used));
    put(result, formatVersion);
    put(result, std::byte{0});
    put(result, static_cast<std::uint16_t>(used));
    put(result, std::uint32_t{0});
    putValues(result, run, first, used);
    putCodes(result, codes);
    const std::uint32_t sum = checksum(std::span<const std::byte>(result).subspan(headerSize), key);
    std::memcpy(result.data() + 4, &sum, sizeof sum);
}

void decodeChunk(std::span<const std::byte> blob, std::uint64_t key, std::int32_t first, std::int32_t count,
                 Run& run) {
    Reader reader(blob);
    if (reader.get<std::byte>() != formatVersion || reader.get<std::byte>() != std::byte{0}) damaged();
    const std::int32_t n = reader.get<std::uint16_t>();
    if (n < 1 || n > slotsPerChunk) damaged();
    const auto sum = reader.get<std::uint32_t>();
    if (sum != checksum(blob.subspan(headerSize), key)) damaged();
    forEachSegment(reader, n, [&](std::uint8_t kind, std::int32_t at, std::int32_t slots) {
        readValues(reader, static_cast<ValueKind>(kind), slots, overlap(at, slots, first, count), run);
    });
    run.appendNulls(overlap(n, slotsPerChunk - n, first, count).take);
    forEachSegment(reader, n, [&](std::uint8_t width, std::int32_t at, std::int32_t slots) {
        readCodes(reader, width, slots, overlap(at, slots, first, count), run);
    });
    run.appendCode(0, overlap(n, slotsPerChunk - n, first, count).take);
    if (!reader.atEnd()) damaged();
}

}  // namespace vtdn::store
