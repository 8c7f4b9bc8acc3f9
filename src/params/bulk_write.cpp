#include "params/bulk_write.h"

#include <cstddef>
#include <vector>

#include "com/number_text.h"
#include "params/arguments.h"
#include "params/value_fields.h"

namespace vtdn::params {
namespace {

/// The function of a parameter that stores a run: its arguments are the data and the mask.
constexpr LONG storeDataArray = 33;

/// What goes into one interval.
struct Element {
    LONG flag = 0;
    VARTYPE type = VT_EMPTY;  ///< VT_R4, VT_BSTR, VT_NULL; VT_EMPTY when no value is given
    float number = 0;
    std::wstring_view text = {};
    LONG mc = 0;

    [[nodiscard]] com::Variant value() const {
        switch (type) {
            case VT_R4:
                return com::Variant::of(number);
            case VT_BSTR:
                return com::Variant::of(text);
            case VT_NULL:
                return com::Variant::null();
            default:
                return {};
        }
    }
};

/// The two arrays of a request, filled in ascending order: one by one, or in blocks where the engine takes
/// them in both.
class MaskedRun {
  public:
    MaskedRun(const Run& run, LONG count) {
        const com::Bstr intervalType(run.intervalType);
        data_ = engine::DataArray::create();
        data_.define(run.start, count, intervalType, run.intervalLength);
        mask_ = engine::DataArray::create();
        mask_.define(run.start, count, intervalType, run.intervalLength);
        mask_.fill(com::Variant::of(LONG{0}), 0);
        dataBlocks_ = data_.blocks();
        maskBlocks_ = mask_.blocks();
    }

    /// Sets the interval with the given index, from 0.
    void set(LONG index, const Element& element) {
        const bool inBlock = dataBlocks_ && maskBlocks_ && element.type != VT_BSTR;
        if (!goesOn(index, element)) flush();
        if (!inBlock) {
            mask_.setItem(index + 1, com::Variant::of(element.flag), 0);
            data_.setItem(index + 1, element.value(), element.mc);
            return;
        }
        if (flags_.empty()) {
            first_ = index;
            type_ = element.type;
        }
        flags_.push_back(element.flag);
        mcs_.push_back(element.mc);
        if (type_ == VT_R4) numbers_.push_back(element.number);
    }

    /// Hands the arrays to the parameter, whose answer is the result.
    bool store(const engine::Param& param) {
        flush();
        auto arguments = argumentArray(com::Variant::of(data_.get()), com::Variant::of(mask_.get()));
        const auto answer = param.specialFunction(storeDataArray, arguments);
        bool stored = false;
        com::check(com::toBool(answer.get(), stored));
        return stored;
    }

  private:
    static constexpr std::size_t longestBlock = 4096;

    [[nodiscard]] bool goesOn(LONG index, const Element& element) const {
        return flags_.size() < longestBlock && element.type == type_ &&
               index == first_ + static_cast<LONG>(flags_.size());
    }
    void flush() {
        if (flags_.empty()) return;
        const auto count = static_cast<LONG>(flags_.size());
        maskBlocks_.set(first_ + 1, {count, VT_I4, flags_.data(), nullptr, 0});
        dataBlocks_.set(first_ + 1,
                        {count, type_, type_ == VT_R4 ? numbers_.data() : nullptr, mcs_.data(), 0});
        flags_.clear();
        mcs_.clear();
        numbers_.clear();
    }

    engine::DataArray data_;
    engine::DataArray mask_;
    engine::DataBlocks dataBlocks_{nullptr};
    engine::DataBlocks maskBlocks_{nullptr};
    // The block that is being gathered.
    LONG first_ = 0;
    VARTYPE type_ = VT_EMPTY;
    std::vector<LONG> flags_;
    std::vector<LONG> mcs_;
    std::vector<float> numbers_;
};

void readValue(const com::SingleReader& reader, std::wstring_view field, Element& element) {
    if (field.empty()) {
        element.type = VT_NULL;
    } else if (reader.read(field, element.number)) {
        element.type = VT_R4;
    } else {
        element.type = VT_BSTR;
        element.text = field;
    }
}

/// The numbers of the request: one value, one monitor code and one flag for each interval.
bool passesSizeChecks(binding::Session& session, const Run& run, LONG count, SAFEARRAY* mcs,
                      SAFEARRAY* flags) {
    const com::Bounds wanted{0, count - 1};
    const com::Bounds ofMcs = com::bounds(mcs);
    const com::Bounds ofFlags = com::bounds(flags);
    if (ofMcs != wanted || ofFlags != wanted) {
        session.addProblem(binding::differentSizes(run.pid, valuesSizes));
        return false;
    }
    if (run.count == count) return true;
    session.addProblem(binding::countMismatch(run.pid, valuesCount));
    return false;
}

}  // namespace

bool writeValues(binding::Session& session, const Run& run, std::wstring values, SAFEARRAY* mcs,
                 SAFEARRAY* flags) {
    const auto param = session.writableParam(run.pid, valuesUnknownPid, valuesNotDatabase);
    if (!param) return false;
    const auto count = static_cast<LONG>(countFields(values));
    if (!passesSizeChecks(session, run, count, mcs, flags)) return false;

    // Locked while the engine is called: what it raises may reach code that has the arrays.
    const com::ArrayView<LONG> givenMcs(mcs);
    const com::ArrayView<LONG> givenFlags(flags);
    MaskedRun request(run, count);
    const com::SingleReader reader;
    FieldReader fields(values);
    for (std::size_t i = 0; i < givenFlags.size(); ++i) {
        const std::wstring_view field = fields.next();
        Element element;
        element.flag = givenFlags[i];
        const Asked asked = askedBy(element.flag);
        if (asked.value) readValue(reader, field, element);
        if (asked.mc) element.mc = givenMcs[i];
        if (asked.value || asked.mc) request.set(static_cast<LONG>(i), element);
    }
    // The engine needs memory of its own to store the run.
    std::wstring().swap(values);
    return request.store(param);
}

}  // namespace vtdn::params
