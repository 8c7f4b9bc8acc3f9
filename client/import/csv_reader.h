// CSV as site files have it (docs/site-files.md): RFC 4180, one row per line, UTF-8, a header line.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace vtdn::client {

/// Hands out the next bytes of a file: fills the buffer and returns how many bytes it put there, 0 at the
/// end.
using ByteSource = std::function<std::size_t(char* buffer, std::size_t size)>;

/// Reads a file row by row without holding more than a line of it. A line that breaks a rule is reported and
/// passed over, so that a caller can say everything that is wrong with a file.
class CsvReader {
  public:
    enum class Result { row, badLine, end };

    /// Longest line that is read, in bytes.
    static constexpr std::size_t longestLine = 1 << 20;

    explicit CsvReader(ByteSource source);

    /// Reads the next line. After `row`, fields() holds its fields; after `badLine`, problem() says what is
    /// wrong with it. The first line is a row like any other, and sets how many fields each row has.
    Result next();

    /// Fields of the row, without their quotation marks; valid until next().
    [[nodiscard]] const std::vector<std::string_view>& fields() const { return fields_; }
    /// Number of the line that was read last, from 1.
    [[nodiscard]] std::size_t line() const { return line_; }
    /// A sentence without the full stop.
    [[nodiscard]] const std::string& problem() const { return problem_; }
    /// Field that the problem is in, from 1; 0 when it is not in a field.
    [[nodiscard]] std::size_t problemField() const { return problemField_; }
    /// Bytes read so far, for a progress bar.
    [[nodiscard]] std::size_t bytesRead() const { return bytesRead_; }

  private:
    bool takeLine(std::string_view& line);
    bool fill();
    Result bad(std::size_t field, std::string problem);
    Result split(std::string_view line);
    bool takeQuoted(std::string_view line, std::size_t& position);

    ByteSource source_;
    std::vector<char> buffer_;
    std::size_t begin_ = 0;  // of what was not handed out yet
    std::size_t end_ = 0;
    bool sourceEnded_ = false;
    bool lineTooLong_ = false;
    std::vector<std::string_view> fields_;
    std::vector<std::string> unquoted_;  // fields whose doubled quotation marks were undone
    std::size_t unquotedCount_ = 0;
    std::size_t columnCount_ = 0;
    std::size_t line_ = 0;
    std::size_t bytesRead_ = 0;
    std::string problem_;
    std::size_t problemField_ = 0;
};

}  // namespace vtdn::client
