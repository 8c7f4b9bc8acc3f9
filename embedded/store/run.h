// A run of consecutive intervals as it was read or is to be written: few long segments instead of one object
// per interval.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "store/interval.h"
#include "store/value.h"

namespace vtdn::store {

/// Bytes that grow and are not cleared first.
class Buffer {
  public:
    /// Room for n bytes at the end, which begins at a multiple of align. The result is valid until the next
    /// call.
    std::byte* append(std::size_t n, std::size_t align);
    void clear() { size_ = 0; }
    [[nodiscard]] std::size_t capacity() const { return capacity_; }
    [[nodiscard]] const std::byte* data() const { return data_.get(); }

  private:
    std::unique_ptr<std::byte[]> data_;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
};

/// Bytes of a number of a kind.
[[nodiscard]] constexpr std::size_t sizeOf(ValueKind kind) {
    return kind == ValueKind::real ? sizeof(double) : sizeof(float);
}

/// The intervals of a Span with their values and monitor codes. Values come in segments of one kind and codes
/// in segments of one code or of an array of codes, each list covering the whole span in order and without
/// gaps, so that a caller copies a year of singles with a few block copies. Element 0 is the first interval.
class Run {
  public:
    /// Intervals first to first + count - 1, all of one kind.
    struct Values {
        std::int32_t first;
        std::int32_t count;
        ValueKind kind;
        std::size_t offset;  // of the first value in its buffer
    };
    /// Intervals first to first + count - 1: the codes in an array (see codesOf), or all the same.
    struct Codes {
        std::int32_t first;
        std::int32_t count;
        bool same;
        MonitorCode code;    ///< of every interval, when they are the same
        std::size_t offset;  // of the first code in its buffer otherwise
    };

    [[nodiscard]] std::int32_t count() const { return count_; }
    [[nodiscard]] const std::vector<Values>& values() const { return values_; }
    [[nodiscard]] const std::vector<Codes>& codes() const { return codes_; }

    // The contents of a segment; the kind must be the one that the name says.
    [[nodiscard]] std::span<const std::int32_t> integers(const Values& s) const {
        return at<std::int32_t>(s);
    }
    [[nodiscard]] std::span<const float> singles(const Values& s) const { return at<float>(s); }
    [[nodiscard]] std::span<const double> reals(const Values& s) const { return at<double>(s); }
    /// Text i of a segment of texts, i from 0.
    [[nodiscard]] std::string_view text(const Values& s, std::int32_t i) const;
    /// The numbers of a segment of any kind of them, as they lie in memory.
    [[nodiscard]] std::span<const std::byte> numbers(const Values& s) const {
        return {buffer_.data() + s.offset, static_cast<std::size_t>(s.count) * sizeOf(s.kind)};
    }
    /// The codes of a segment whose codes are not the same.
    [[nodiscard]] std::span<const MonitorCode> codesOf(const Codes& s) const {
        return {reinterpret_cast<const MonitorCode*>(code_buffer_.data() + s.offset),
                static_cast<std::size_t>(s.count)};
    }

    // One interval, i from 0 to count() - 1. Fast when called in ascending order.
    [[nodiscard]] Value value(std::int32_t i) const;
    [[nodiscard]] MonitorCode code(std::int32_t i) const;
    [[nodiscard]] Item item(std::int32_t i) const { return {value(i), code(i)}; }

    /// Calls each(segment, skip, take) for every segment that some of the intervals first to first + count -
    /// 1 lie in: take of its intervals do, behind skip of them that do not.
    template <typename Each>
    void forEachValues(std::int32_t first, std::int32_t count, Each each) const {
        forEachPart(values_, first, count, each);
    }
    template <typename Each>
    void forEachCodes(std::int32_t first, std::int32_t count, Each each) const {
        forEachPart(codes_, first, count, each);
    }

    // Building. Segments are joined where the kind goes on.

    /// Empties the run and keeps its memory: reading into a run again allocates nothing.
    void clear();
    /// Bytes that clear() keeps.
    [[nodiscard]] std::size_t memory() const { return buffer_.capacity() + code_buffer_.capacity(); }
    void appendNulls(std::int32_t n);
    /// Room for n numbers of a kind, sizeOf(kind) bytes each, to be filled before the next call.
    std::byte* appendNumbers(ValueKind kind, std::int32_t n);
    void appendText(std::string_view text);
    void appendValue(const Value& value);
    /// The same value n times.
    void appendValues(const Value& value, std::int32_t n);
    void appendCode(MonitorCode code, std::int32_t n);
    /// Room for n codes, to be filled before the next call.
    std::byte* appendCodes(std::int32_t n);
    /// What intervals first to first + count - 1 of another run have.
    void appendValuesOf(const Run& other, std::int32_t first, std::int32_t count);
    void appendCodesOf(const Run& other, std::int32_t first, std::int32_t count);
    /// Called once after the last append: both lists then cover count() intervals (null and 0 fill them up).
    void finish(std::int32_t count);

  private:
    struct TextPlace {
        std::size_t offset;
        std::size_t length;
    };
    template <typename T>
    std::span<const T> at(const Values& s) const {
        return {reinterpret_cast<const T*>(buffer_.data() + s.offset), static_cast<std::size_t>(s.count)};
    }
    template <typename Segment, typename Each>
    static void forEachPart(const std::vector<Segment>& segments, std::int32_t first, std::int32_t count,
                            Each each) {
        auto segment = std::partition_point(segments.begin(), segments.end(),
                                            [first](const Segment& s) { return s.first + s.count <= first; });
        for (std::int32_t left = count; left > 0 && segment != segments.end(); ++segment) {
            const std::int32_t skip = first - segment->first;
            const std::int32_t take = std::min(segment->count - skip, left);
            each(*segment, skip, take);
            first += take;
            left -= take;
        }
    }

    Buffer buffer_;
    Buffer code_buffer_;
    std::vector<TextPlace> texts_;  // offset of a text segment counts in these
    std::vector<Values> values_;
    std::vector<Codes> codes_;
    std::int32_t count_ = 0;
    std::int32_t value_count_ = 0;
    std::int32_t code_count_ = 0;
    // Where the last single look-up was found.
    mutable std::size_t value_hint_ = 0;
    mutable std::size_t code_hint_ = 0;
};

}  // namespace vtdn::store
