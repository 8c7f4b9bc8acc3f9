// The items of a data array that a client fills: values and monitor codes in columns.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "engine/data_array_runs.h"
#include "store/run.h"
#include "store/value.h"

namespace vtdn::embedded {

/// A fixed number of items, numbered from 0, of which any can be set at any time. As long as all values are
/// equal one of them is kept, and as long as all codes are; then 5 bytes for each value, 8 more from the
/// first double on, and 4 for each code. What throws (std::bad_alloc) leaves the items as they were.
class Columns {
  public:
    /// All of them Null with code 0.
    explicit Columns(std::int32_t count) : count_(static_cast<std::size_t>(count)) {}
    /// Those of a run.
    explicit Columns(const store::Run& run);

    /// Every item is this one.
    void fill(store::Item item);
    void set(std::int32_t at, store::Item item);
    // Several items side by side, their values and their codes apart.
    void setNulls(std::int32_t first, std::int32_t count);
    void setNumbers(std::int32_t first, std::span<const std::int32_t> numbers);
    void setNumbers(std::int32_t first, std::span<const float> numbers);
    void setNumbers(std::int32_t first, std::span<const double> numbers);
    void setCodes(std::int32_t first, std::span<const store::MonitorCode> codes);
    void setCode(std::int32_t first, std::int32_t count, store::MonitorCode code);

    [[nodiscard]] store::Value value(std::int32_t at) const;
    [[nodiscard]] store::Item item(std::int32_t at) const { return {value(at), codeAt(at)}; }
    /// The longest stretch from `first` on whose values are of one kind. It points into the columns. A
    /// stretch of texts has the type VT_EMPTY, and so has one of the equal values that only one is kept of.
    [[nodiscard]] DIDataRun stretchAt(std::int32_t first) const;
    /// Appends all items to a run.
    void appendTo(store::Run& run) const;

  private:
    /// A whole number, a single, or the place of a text. Doubles have a column of their own.
    union Cell {
        std::int32_t integer;
        float single;
        std::uint32_t text;
    };

    [[nodiscard]] store::MonitorCode codeAt(std::int32_t at) const;
    /// Makes room for values that differ.
    void spread();
    void spreadCodes();
    void needReals();
    /// The place of a new text.
    std::uint32_t keep(std::string text);
    /// Lets go of the texts among these items, which are about to be something else.
    void dropTexts(std::size_t first, std::size_t count) noexcept;

    std::size_t count_;
    store::Value every_value_;               // while kinds_ is empty
    store::MonitorCode every_code_ = 0;      // while codes_ is empty
    std::vector<store::ValueKind> kinds_;    // empty while all values are equal
    std::vector<Cell> cells_;                // as many as kinds_
    std::vector<double> reals_;              // as many, or none as long as there was no double
    std::vector<store::MonitorCode> codes_;  // empty while all codes are equal
    std::vector<std::string> texts_;         // the first is that of fill(), which many items can share
    std::vector<std::uint32_t> free_texts_;  // places in texts_, with room for all of them
};

}  // namespace vtdn::embedded
