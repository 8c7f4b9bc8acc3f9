// One CSV file of a site's folder, its columns found by their names.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "client/import/csv_reader.h"
#include "client/import/problems.h"

namespace vtdn::client {

struct SiteFile {
    std::filesystem::path path;
    std::string name;  ///< as problems show it: "values/2007-03.csv"
};

/// Told how many bytes of the file at hand have been read; called every now and then.
using BytesRead = std::function<void(std::size_t)>;

/// The bytes of a file, from its beginning. Throws Failure (environment) when it cannot be opened, and later
/// when it cannot be read.
ByteSource fileBytes(const SiteFile& file, BytesRead progress = {});

/// Reads rows and reports the ones that are no rows. After construction the header has been read.
class Sheet {
  public:
    /// Throws Failure (environment) when the file cannot be opened or read.
    Sheet(const SiteFile& file, ImportProblems& problems, BytesRead progress = {});
    /// A sheet that comes from elsewhere, under the name that problems show.
    Sheet(std::string name, ByteSource bytes, ImportProblems& problems);

    /// The header's names; empty when there is none, which has been reported then.
    [[nodiscard]] const std::vector<std::string>& header() const { return header_; }

    /// Goes to the next row that is one; false at the end.
    bool next();
    [[nodiscard]] const std::vector<std::string_view>& fields() const { return reader_.fields(); }
    [[nodiscard]] std::size_t line() const { return reader_.line(); }

    /// Reports a problem of the row at hand, in a column by its place in the header, or in no column.
    void problem(std::optional<std::size_t> column, std::string reason);

  private:
    std::string name_;
    ImportProblems& problems_;
    CsvReader reader_;
    std::vector<std::string> header_;
};

struct ColumnSpec {
    std::string_view name;
    bool required;
};

/// A sheet with a fixed set of columns. Cells are asked for by the column's place in that set.
class Table {
  public:
    Table(const SiteFile& file, std::span<const ColumnSpec> columns, ImportProblems& problems);

    /// False at the end, and at once when the header does not fit.
    bool next() { return fits_ && sheet_.next(); }
    /// Empty for an optional column that the file does not have.
    [[nodiscard]] std::string_view cell(std::size_t column) const;
    /// The cell's text; a longer one than `most` characters is reported.
    std::string text(std::size_t column, std::size_t most);
    [[nodiscard]] std::size_t line() const { return sheet_.line(); }
    /// The cell as a whole number from 0 to `most`; anything else is reported as no `what`.
    std::optional<std::int32_t> wholeNumber(std::size_t column, std::string_view what, std::int32_t most);
    void problem(std::size_t column, std::string reason);

  private:
    Sheet sheet_;
    std::vector<std::optional<std::size_t>> places_;
    bool fits_ = true;
};

}  // namespace vtdn::client
