#include "store/run.h"

#include <algorithm>
#include <cstring>

namespace vtdn::store {
namespace {

// The segment that holds interval i, looked for at the hint and behind it first.
template <typename Segment>
const Segment& find(const std::vector<Segment>& segments, std::int32_t i, std::size_t& hint) {
    const auto holds = [i](const Segment& s) { return i >= s.first && i - s.first < s.count; };
    if (hint < segments.size() && holds(segments[hint])) return segments[hint];
    if (hint + 1 < segments.size() && holds(segments[hint + 1])) return segments[++hint];
    const auto behind = std::upper_bound(segments.begin(), segments.end(), i,
                                         [](std::int32_t at, const Segment& s) { return at < s.first; });
    hint = static_cast<std::size_t>(behind - segments.begin()) - 1;
    return segments[hint];
}

}  // namespace

std::byte* Buffer::append(std::size_t n, std::size_t align) {
    const std::size_t start = (size_ + align - 1) / align * align;
    if (start + n > capacity_) {
        const std::size_t capacity = std::max(start + n, capacity_ * 2);
        auto larger = std::make_unique_for_overwrite<std::byte[]>(capacity);
        if (size_ != 0) std::memcpy(larger.get(), data_.get(), size_);
        data_ = std::move(larger);
        capacity_ = capacity;
    }
    size_ = start + n;
    return data_.get() + start;
}

std::string_view Run::text(const Values& s, std::int32_t i) const {
    const TextPlace& place = texts_[s.offset + static_cast<std::size_t>(i)];
    return {reinterpret_cast<const char*>(buffer_.data() + place.offset), place.length};
}

Value Run::value(std::int32_t i) const {
    const Values& s = find(values_, i, value_hint_);
    const auto at = static_cast<std::size_t>(i - s.first);
    switch (s.kind) {
        case ValueKind::integer:
            return integers(s)[at];
        case ValueKind::single:
            return singles(s)[at];
        case ValueKind::real:
            return reals(s)[at];
        case ValueKind::text:
            return std::string(text(s, i - s.first));
        case ValueKind::null:
            break;
    }
    return {};
}

MonitorCode Run::code(std::int32_t i) const {
    const Codes& s = find(codes_, i, code_hint_);
    return s.same ? s.code : codesOf(s)[static_cast<std::size_t>(i - s.first)];
}

void Run::clear() {
    buffer_.clear();
    code_buffer_.clear();
    texts_.clear();
    values_.clear();
    codes_.clear();
    count_ = value_count_ = code_count_ = 0;
    value_hint_ = code_hint_ = 0;
}

void Run::appendNulls(std::int32_t n) {
    if (n <= 0) return;
    if (!values_.empty() && values_.back().kind == ValueKind::null)
        values_.back().count += n;
    else
        values_.push_back({value_count_, n, ValueKind::null, 0});
    value_count_ += n;
}

std::byte* Run::appendNumbers(ValueKind kind, std::int32_t n) {
    const std::size_t size = sizeOf(kind);
    std::byte* room = buffer_.append(static_cast<std::size_t>(n) * size, size);
    const auto offset = static_cast<std::size_t>(room - buffer_.data());
    if (n > 0) {
        Values* last = values_.empty() ? nullptr : &values_.back();
        if (last != nullptr && last->kind == kind &&
            last->offset + static_cast<std::size_t>(last->count) * size == offset)
            last->count += n;
        else
            values_.push_back({value_count_, n, kind, offset});
        value_count_ += n;
    }
    return room;
}

void Run::appendText(std::string_view text) {
    std::byte* room = buffer_.append(text.size(), 1);
    if (!text.empty()) std::memcpy(room, text.data(), text.size());
    if (!values_.empty() && values_.back().kind == ValueKind::text)
        ++values_.back().count;
    else
        values_.push_back({value_count_, 1, ValueKind::text, texts_.size()});
    texts_.push_back({static_cast<std::size_t>(room - buffer_.data()), text.size()});
    ++value_count_;
}

void Run::appendValue(const Value& value) {
    const auto number = [this](ValueKind kind, const auto& n) {
        std::memcpy(appendNumbers(kind, 1), &n, sizeof n);
    };
    switch (kindOf(value)) {
        case ValueKind::null:
            return appendNulls(1);
        case ValueKind::integer:
            return number(ValueKind::integer, std::get<std::int32_t>(value));
        case ValueKind::single:
            return number(ValueKind::single, std::get<float>(value));
        case ValueKind::real:
            return number(ValueKind::real, std::get<double>(value));
        case ValueKind::text:
            return appendText(std::get<std::string>(value));
    }
}

void Run::appendValues(const Value& value, std::int32_t n) {
    if (kindOf(value) == ValueKind::null) return appendNulls(n);
    for (std::int32_t i = 0; i < n; ++i) appendValue(value);
}

void Run::appendCode(MonitorCode code, std::int32_t n) {
    if (n <= 0) return;
    if (!codes_.empty() && codes_.back().same && codes_.back().code == code)
        codes_.back().count += n;
    else
        codes_.push_back({code_count_, n, true, code, 0});
    code_count_ += n;
}

std::byte* Run::appendCodes(std::int32_t n) {
    std::byte* room =
        code_buffer_.append(static_cast<std::size_t>(n) * sizeof(MonitorCode), sizeof(MonitorCode));
    if (n > 0) {
        // Arrays of codes lie one behind the other, so that one goes on where another ends.
        if (!codes_.empty() && !codes_.back().same)
            codes_.back().count += n;
        else
            codes_.push_back(
                {code_count_, n, false, 0, static_cast<std::size_t>(room - code_buffer_.data())});
        code_count_ += n;
    }
    return room;
}

void Run::appendValuesOf(const Run& other, std::int32_t first, std::int32_t count) {
    other.forEachValues(first, count, [&](const Values& s, std::int32_t skip, std::int32_t take) {
        if (s.kind == ValueKind::null) return appendNulls(take);
        if (s.kind == ValueKind::text) {
            for (std::int32_t i = 0; i < take; ++i) appendText(other.text(s, skip + i));
            return;
        }
        const std::size_t size = sizeOf(s.kind);
        const auto bytes = other.numbers(s).subspan(static_cast<std::size_t>(skip) * size,
                                                    static_cast<std::size_t>(take) * size);
        std::memcpy(appendNumbers(s.kind, take), bytes.data(), bytes.size());
    });
}

void Run::appendCodesOf(const Run& other, std::int32_t first, std::int32_t count) {
    other.forEachCodes(first, count, [&](const Codes& s, std::int32_t skip, std::int32_t take) {
        if (s.same) return appendCode(s.code, take);
        const auto codes =
            other.codesOf(s).subspan(static_cast<std::size_t>(skip), static_cast<std::size_t>(take));
        std::memcpy(appendCodes(take), codes.data(), codes.size_bytes());
    });
}

void Run::finish(std::int32_t count) {
    count_ = count;
    appendNulls(count - value_count_);
    appendCode(0, count - code_count_);
}

}  // namespace vtdn::store
