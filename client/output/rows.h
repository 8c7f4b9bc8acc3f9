// Results as rows of cells, written as a table for people, or as CSV or JSON for programs.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace vtdn::client {

/// Where text goes: standard output, or a string in tests.
using Sink = std::function<void(std::string_view)>;

enum class Format { table, csv, json };

struct Column {
    std::string key;    ///< in CSV and JSON
    std::string title;  ///< in tables
    enum class Align { left, right } align = Align::left;
};

/// A value, and how a table shows it when that differs.
class Cell {
  public:
    using Content = std::variant<std::monostate, std::string, double, std::int64_t, bool>;

    Cell() = default;
    Cell(std::string text)
        : content_(std::move(text)) {}  // NOLINT(google-explicit-constructor): reads as a list
    Cell(std::string_view text) : content_(std::string(text)) {}   // NOLINT(google-explicit-constructor)
    Cell(const char* text) : content_(std::string(text)) {}        // NOLINT(google-explicit-constructor)
    Cell(std::int32_t number) : content_(std::int64_t{number}) {}  // NOLINT(google-explicit-constructor)
    static Cell number(double value, std::string shown = {}) { return {Content(value), std::move(shown)}; }
    static Cell flag(bool value, std::string shown) { return {Content(value), std::move(shown)}; }

    [[nodiscard]] const Content& content() const { return content_; }
    /// As a table shows it.
    [[nodiscard]] std::string shown() const;
    /// As CSV shows it: numbers in full, true and false, nothing for no value.
    [[nodiscard]] std::string raw() const;

  private:
    Cell(Content content, std::string shown) : content_(std::move(content)), shown_(std::move(shown)) {}

    Content content_;
    std::string shown_;
};

/// Takes rows and writes them, at once or at the end. Every row has as many cells as there are columns.
class RowWriter {
  public:
    virtual ~RowWriter() = default;
    virtual void row(const std::vector<Cell>& cells) = 0;
    /// Called once, after the last row.
    virtual void finish() = 0;
};

/// Tables are aligned and therefore written at the end; CSV and JSON (an array of objects) are written as
/// they come.
std::unique_ptr<RowWriter> makeRowWriter(Format format, std::vector<Column> columns, Sink sink);

/// A field as RFC 4180 wants it: between quotation marks where it has to be.
std::string csvField(std::string_view text);

}  // namespace vtdn::client
