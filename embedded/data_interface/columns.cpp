#include "data_interface/columns.h"

#include <algorithm>
#include <cstring>

namespace vtdn::embedded {
namespace {

using store::ValueKind;

constexpr std::uint32_t sharedText = 0;

// The source may be a part of the target.
template <class To, class From>
void copyOver(std::vector<To>& to, std::int32_t first, std::span<const From> from) {
    static_assert(sizeof(To) == sizeof(From));
    if (!from.empty()) std::memmove(&to[static_cast<std::size_t>(first)], from.data(), from.size_bytes());
}

}  // namespace

Columns::Columns(const store::Run& run) : Columns(run.count()) {
    for (const store::Run::Values& s : run.values()) {
        switch (s.kind) {
            case ValueKind::null:
                setNulls(s.first, s.count);
                break;
            case ValueKind::integer:
                setNumbers(s.first, run.integers(s));
                break;
            case ValueKind::single:
                setNumbers(s.first, run.singles(s));
                break;
            case ValueKind::real:
                setNumbers(s.first, run.reals(s));
                break;
            case ValueKind::text:
                for (std::int32_t i = 0; i < s.count; ++i) set(s.first + i, {std::string(run.text(s, i)), 0});
                break;
        }
    }
    for (const store::Run::Codes& s : run.codes()) {
        if (s.same)
            setCode(s.first, s.count, s.code);
        else
            setCodes(s.first, run.codesOf(s));
    }
}

void Columns::fill(store::Item item) {
    every_value_ = std::move(item.value);
    every_code_ = item.code;
    kinds_ = {};
    cells_ = {};
    reals_ = {};
    codes_ = {};
    texts_ = {};
    free_texts_ = {};
}

void Columns::spread() {
    if (!kinds_.empty()) return;
    std::vector<Cell> cells(count_);
    std::vector<double> reals;
    std::vector<std::string> texts(1);
    const ValueKind kind = store::kindOf(every_value_);
    switch (kind) {
        case ValueKind::integer:
            std::ranges::fill(cells, Cell{.integer = std::get<std::int32_t>(every_value_)});
            break;
        case ValueKind::single:
            std::ranges::fill(cells, Cell{.single = std::get<float>(every_value_)});
            break;
        case ValueKind::real:
            reals.assign(count_, std::get<double>(every_value_));
            break;
        case ValueKind::text:
            std::ranges::fill(cells, Cell{.text = sharedText});
            texts[sharedText] = std::get<std::string>(every_value_);
            break;
        case ValueKind::null:
            break;
    }
    kinds_.assign(count_, kind);
    cells_.swap(cells);
    reals_.swap(reals);
    texts_.swap(texts);
}

void Columns::spreadCodes() {
    if (codes_.empty()) codes_.assign(count_, every_code_);
}

void Columns::needReals() {
    if (reals_.empty()) reals_.resize(count_);
}

std::uint32_t Columns::keep(std::string text) {
    if (!free_texts_.empty()) {
        const std::uint32_t place = free_texts_.back();
        free_texts_.pop_back();
        texts_[place] = std::move(text);
        return place;
    }
    texts_.push_back(std::move(text));
    try {
        free_texts_.reserve(texts_.capacity());
    } catch (...) {
        texts_.pop_back();
        throw;
    }
    return static_cast<std::uint32_t>(texts_.size() - 1);
}

void Columns::dropTexts(std::size_t first, std::size_t count) noexcept {
    for (std::size_t i = first; i < first + count; ++i) {
        if (kinds_[i] != ValueKind::text || cells_[i].text == sharedText) continue;
        texts_[cells_[i].text] = {};
        free_texts_.push_back(cells_[i].text);  // never more than there is room for, see keep()
    }
}

void Columns::set(std::int32_t at, store::Item item) {
    const auto i = static_cast<std::size_t>(at);
    const ValueKind kind = store::kindOf(item.value);
    // All that can throw comes before the item changes.
    spread();
    if (item.code != every_code_) spreadCodes();
    Cell cell{};
    double real = 0;
    switch (kind) {
        case ValueKind::integer:
            cell.integer = std::get<std::int32_t>(item.value);
            break;
        case ValueKind::single:
            cell.single = std::get<float>(item.value);
            break;
        case ValueKind::real:
            needReals();
            real = std::get<double>(item.value);
            break;
        case ValueKind::text:
            cell.text = keep(std::move(std::get<std::string>(item.value)));
            break;
        case ValueKind::null:
            break;
    }
    dropTexts(i, 1);
    kinds_[i] = kind;
    cells_[i] = cell;
    if (kind == ValueKind::real) reals_[i] = real;
    if (!codes_.empty()) codes_[i] = item.code;
}

void Columns::setNulls(std::int32_t first, std::int32_t count) {
    if (kinds_.empty() && store::kindOf(every_value_) == ValueKind::null) return;
    spread();
    const auto from = static_cast<std::size_t>(first);
    const auto n = static_cast<std::size_t>(count);
    dropTexts(from, n);
    std::fill_n(kinds_.begin() + first, n, ValueKind::null);
}

void Columns::setNumbers(std::int32_t first, std::span<const std::int32_t> numbers) {
    spread();
    dropTexts(static_cast<std::size_t>(first), numbers.size());
    std::fill_n(kinds_.begin() + first, numbers.size(), ValueKind::integer);
    copyOver(cells_, first, numbers);
}

void Columns::setNumbers(std::int32_t first, std::span<const float> numbers) {
    spread();
    dropTexts(static_cast<std::size_t>(first), numbers.size());
    std::fill_n(kinds_.begin() + first, numbers.size(), ValueKind::single);
    copyOver(cells_, first, numbers);
}

void Columns::setNumbers(std::int32_t first, std::span<const double> numbers) {
    spread();
    needReals();
    dropTexts(static_cast<std::size_t>(first), numbers.size());
    std::fill_n(kinds_.begin() + first, numbers.size(), ValueKind::real);
    copyOver(reals_, first, numbers);
}

void Columns::setCodes(std::int32_t first, std::span<const store::MonitorCode> codes) {
    spreadCodes();
    copyOver(codes_, first, codes);
}

void Columns::setCode(std::int32_t first, std::int32_t count, store::MonitorCode code) {
    if (codes_.empty() && code == every_code_) return;
    spreadCodes();
    std::fill_n(codes_.begin() + first, count, code);
}

store::Value Columns::value(std::int32_t at) const {
    if (kinds_.empty()) return every_value_;
    const auto i = static_cast<std::size_t>(at);
    switch (kinds_[i]) {
        case ValueKind::integer:
            return cells_[i].integer;
        case ValueKind::single:
            return cells_[i].single;
        case ValueKind::real:
            return reals_[i];
        case ValueKind::text:
            return texts_[cells_[i].text];
        case ValueKind::null:
            break;
    }
    return {};
}

store::MonitorCode Columns::codeAt(std::int32_t at) const {
    return codes_.empty() ? every_code_ : codes_[static_cast<std::size_t>(at)];
}

DIDataRun Columns::stretchAt(std::int32_t first) const {
    static_assert(sizeof(LONG) == sizeof(store::MonitorCode));
    const auto from = static_cast<std::size_t>(first);
    DIDataRun stretch{static_cast<LONG>(count_ - from), VT_EMPTY, nullptr, nullptr, every_code_};
    if (!codes_.empty()) stretch.mcs = reinterpret_cast<const LONG*>(&codes_[from]);
    if (kinds_.empty()) {
        // One value for all is nowhere side by side; only nulls need not be.
        if (store::kindOf(every_value_) == ValueKind::null) stretch.type = VT_NULL;
        return stretch;
    }
    const ValueKind kind = kinds_[from];
    const auto begin = kinds_.begin() + first;
    const auto end = std::find_if(begin, kinds_.end(), [kind](ValueKind k) { return k != kind; });
    stretch.count = static_cast<LONG>(end - begin);
    switch (kind) {
        case ValueKind::null:
            stretch.type = VT_NULL;
            break;
        case ValueKind::integer:
            stretch.type = VT_I4;
            stretch.values = &cells_[from];
            break;
        case ValueKind::single:
            stretch.type = VT_R4;
            stretch.values = &cells_[from];
            break;
        case ValueKind::real:
            stretch.type = VT_R8;
            stretch.values = &reals_[from];
            break;
        case ValueKind::text:
            break;
    }
    return stretch;
}

void Columns::appendTo(store::Run& run) const {
    const auto count = static_cast<std::int32_t>(count_);
    if (codes_.empty())
        run.appendCode(every_code_, count);
    else
        std::memcpy(run.appendCodes(count), codes_.data(), codes_.size() * sizeof codes_[0]);
    if (kinds_.empty()) return run.appendValues(every_value_, count);
    for (std::int32_t at = 0; at < count;) {
        const DIDataRun stretch = stretchAt(at);
        const ValueKind kind = kinds_[static_cast<std::size_t>(at)];
        if (kind == ValueKind::null)
            run.appendNulls(stretch.count);
        else if (kind == ValueKind::text)
            for (LONG i = 0; i < stretch.count; ++i)
                run.appendText(texts_[cells_[static_cast<std::size_t>(at + i)].text]);
        else
            std::memcpy(run.appendNumbers(kind, stretch.count), stretch.values,
                        static_cast<std::size_t>(stretch.count) * store::sizeOf(kind));
        at += stretch.count;
    }
}

}  // namespace vtdn::embedded
