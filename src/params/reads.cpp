#include "params/reads.h"

#include <algorithm>
#include <cstddef>
#include <type_traits>
#include <utility>

#include "params/elements.h"

namespace vtdn::params {
namespace {

constexpr binding::Code textUnknownPid = binding::code(45);
constexpr binding::Code integersUnknownPid = binding::code(1);
constexpr binding::Code singlesUnknownPid = binding::code(2);
constexpr binding::Code textsUnknownPid = binding::code(3);

/// The value as text; "" when it cannot be one.
com::Bstr textOf(const com::Variant& value) {
    com::Bstr text;
    return converted(com::toText(value.get(), text)) ? std::move(text) : com::Bstr(L"");
}

/// Values as numbers, with a flag for each that says whether there is none.
template <class T>
class Numbers {
  public:
    Numbers(com::ClientArray<T> values, com::ClientArray<VARIANT_BOOL> nonNumeric)
        : values_(values.elements()), nonNumeric_(nonNumeric.elements()) {}

    /// The value is read once to see whether it is a number and once to convert it. Only the first reading
    /// can fail the operation.
    void read(std::size_t i, const engine::DataItem& item) {
        item.value(value_);
        set(i, com::isNumeric(value_.get()) && item.tryValue(value_) && toElement(value_, values_[i]));
    }
    template <class Number>
    void copy(std::size_t i, const Number* numbers, std::size_t count) {
        if constexpr (std::is_same_v<Number, T> && std::is_floating_point_v<T>) {
            // Every single is one as it stands: the bulk of what is read.
            std::copy_n(numbers, count, values_.begin() + i);
            std::fill_n(nonNumeric_.begin() + i, count, VARIANT_FALSE);
        } else {
            for (std::size_t k = 0; k < count; ++k) set(i + k, toElement(numbers[k], values_[i + k]));
        }
    }
    void copy(std::size_t i, std::nullptr_t, std::size_t count) {
        for (std::size_t k = 0; k < count; ++k) set(i + k, false);
    }

  private:
    void set(std::size_t i, bool isNumber) {
        if (!isNumber) values_[i] = 0;
        nonNumeric_[i] = com::variantBool(!isNumber);
    }

    com::ArrayView<T> values_;
    com::ArrayView<VARIANT_BOOL> nonNumeric_;
    com::Variant value_;
};

/// Values as texts.
class Texts {
  public:
    explicit Texts(com::ClientArray<BSTR> values) : values_(values.elements()) {}

    /// The value is read once to see whether it is Null and once to convert it. No reading can fail the
    /// operation.
    void read(std::size_t i, const engine::DataItem& item) {
        const bool hasText = item.tryValue(value_) && !value_.isNull() && item.tryValue(value_);
        set(i, hasText ? textOf(value_) : com::Bstr(L""));
    }
    template <class Number>
    void copy(std::size_t i, const Number* numbers, std::size_t count) {
        for (std::size_t k = 0; k < count; ++k) set(i + k, textOf(com::Variant::of(numbers[k])));
    }
    void copy(std::size_t i, std::nullptr_t, std::size_t count) {
        for (std::size_t k = 0; k < count; ++k) set(i + k, com::Bstr(L""));
    }

  private:
    void set(std::size_t i, com::Bstr text) { com::replace(&values_[i], std::move(text)); }

    com::ArrayView<BSTR> values_;
    com::Variant value_;
};

template <class Values>
void readItems(const engine::DataArray& data, LONG first, LONG end, Values& values, LONG* mcs) {
    for (LONG i = first; i < end; ++i) {
        const auto item = data.item(i + 1);
        values.read(static_cast<std::size_t>(i), item);
        mcs[i] = item.mc();
    }
}

/// Copies a run out of the engine's memory. False for values that are to be asked one by one.
template <class Values>
bool copyRun(const DIDataRun& run, std::size_t first, std::size_t count, Values& values, LONG* mcs) {
    switch (run.type) {
        case VT_NULL:
            values.copy(first, nullptr, count);
            break;
        case VT_I4:
            values.copy(first, static_cast<const LONG*>(run.values), count);
            break;
        case VT_R4:
            values.copy(first, static_cast<const float*>(run.values), count);
            break;
        case VT_R8:
            values.copy(first, static_cast<const double*>(run.values), count);
            break;
        default:
            return false;
    }
    if (run.mcs)
        std::copy_n(run.mcs, count, mcs + first);
    else
        std::fill_n(mcs + first, count, run.mc);
    return true;
}

/// In blocks as far as the engine offers them, otherwise item by item.
template <class Values>
void readIntervals(const engine::DataArray& data, LONG count, Values& values, LONG* mcs) {
    const auto runs = data.runs();
    LONG done = 0;
    DIDataRun run{};
    while (done < count && runs.next(done + 1, run)) {
        const LONG length = std::min(run.count, count - done);
        if (!copyRun(run, static_cast<std::size_t>(done), static_cast<std::size_t>(length), values, mcs))
            readItems(data, done, done + length, values, mcs);
        done += length;
    }
    readItems(data, done, count, values, mcs);
}

/// The one procedure of the three reads.
template <class Values, class T, class... Flags>
bool read(binding::Session& session, const Run& run, binding::Code unknownPid, com::ClientArray<T> values,
          com::ClientArray<LONG> mcs, com::ClientArray<Flags>... flags) {
    const com::Bstr intervalType(run.intervalType);
    const auto params = session.paramsWith(run.pid, unknownPid);
    if (!params) return false;

    const auto data = engine::DataArray::create();
    data.define(run.start, run.count, intervalType, run.intervalLength);
    params.item(run.pid).readDataArray(data);

    values.redimension(run.count);
    mcs.redimension(run.count);
    (flags.redimension(run.count), ...);
    Values elements(values, flags...);
    const auto mcElements = mcs.elements();
    readIntervals(data, run.count, elements, mcElements.data());
    return true;
}

}  // namespace

bool readText(binding::Session& session, std::int32_t pid, DATE start, com::Bstr& value, LONG& mc) noexcept {
    try {
        const auto param = session.param(pid, textUnknownPid);
        if (!param) return false;
        const auto item = param.dataItem(start);
        com::Variant stored;
        com::Bstr text(L"");
        item.value(stored);
        if (!stored.isNull()) {
            item.value(stored);
            text = textOf(stored);
        }
        mc = item.mc();
        value = std::move(text);
        return true;
    } catch (...) {
        // This operation promises its client no error whatever happens.
        return false;
    }
}

bool readIntegers(binding::Session& session, const Run& run, com::ClientArray<LONG> values,
                  com::ClientArray<LONG> mcs, com::ClientArray<VARIANT_BOOL> nonNumeric) {
    return read<Numbers<LONG>>(session, run, integersUnknownPid, values, mcs, nonNumeric);
}

bool readSingles(binding::Session& session, const Run& run, com::ClientArray<float> values,
                 com::ClientArray<LONG> mcs, com::ClientArray<VARIANT_BOOL> nonNumeric) {
    return read<Numbers<float>>(session, run, singlesUnknownPid, values, mcs, nonNumeric);
}

bool readTexts(binding::Session& session, const Run& run, com::ClientArray<BSTR> values,
               com::ClientArray<LONG> mcs) {
    return read<Texts>(session, run, textsUnknownPid, values, mcs);
}

}  // namespace vtdn::params
