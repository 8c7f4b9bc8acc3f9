#include "client/import/csv_reader.h"

#include <algorithm>
#include <cstring>

#include "client/text/utf8.h"

namespace vtdn::client {

namespace {

constexpr std::size_t readSize = 64 * 1024;
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

bool isControl(char c) {
    return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}

/// Without an early end, so that the compiler takes many characters at a time.
bool holdsControl(std::string_view text) {
    bool found = false;
    for (const char c : text) found |= isControl(c);
    return found;
}

std::string count(std::size_t number, std::string_view thing) {
    return std::to_string(number) + " " + std::string(thing) + (number == 1 ? "" : "s");
}

}  // namespace

CsvReader::CsvReader(ByteSource source) : source_(std::move(source)), buffer_(readSize) {}

bool CsvReader::fill() {
    if (sourceEnded_) return false;
    if (begin_ > 0) {
        std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
        end_ -= begin_;
        begin_ = 0;
    }
    if (buffer_.size() - end_ < readSize) buffer_.resize(end_ + readSize);
    const std::size_t got = source_(buffer_.data() + end_, buffer_.size() - end_);
    end_ += got;
    bytesRead_ += got;
    if (got == 0) sourceEnded_ = true;
    return got > 0;
}

bool CsvReader::takeLine(std::string_view& line) {
    std::size_t searched = 0;
    lineTooLong_ = false;
    for (;;) {
        const char* start = buffer_.data() + begin_;
        const auto* found =
            static_cast<const char*>(std::memchr(start + searched, '\n', end_ - begin_ - searched));
        if (found) {
            const auto length = static_cast<std::size_t>(found - start);
            line = {start, length};
            begin_ += length + 1;
            lineTooLong_ = lineTooLong_ || length > longestLine;
            if (line.ends_with('\r')) line.remove_suffix(1);
            return true;
        }
        searched = end_ - begin_;
        if (searched > longestLine) {
            // Dropped, so that a file without line ends is not read into memory as a whole.
            lineTooLong_ = true;
            begin_ = end_;
            searched = 0;
        }
        if (!fill()) break;
    }
    if (begin_ == end_ && !lineTooLong_) return false;
    line = {buffer_.data() + begin_, end_ - begin_};
    begin_ = end_;
    if (line.ends_with('\r')) line.remove_suffix(1);
    return true;
}

CsvReader::Result CsvReader::bad(std::size_t field, std::string problem) {
    problem_ = std::move(problem);
    problemField_ = field;
    return Result::badLine;
}

CsvReader::Result CsvReader::next() {
    std::string_view line;
    if (!takeLine(line)) return Result::end;
    ++line_;
    if (lineTooLong_) return bad(0, "the line is longer than " + std::to_string(longestLine) + " bytes");
    if (line_ == 1 && line.starts_with(byteOrderMark)) line.remove_prefix(byteOrderMark.size());
    if (const std::size_t invalid = invalidUtf8(line); invalid != std::string_view::npos)
        return bad(0, "byte " + std::to_string(invalid + 1) +
                          " of the line is not UTF-8; save the file as \"CSV UTF-8\"");
    if (line.empty()) return bad(0, "the line is empty");
    return split(line);
}

bool CsvReader::takeQuoted(std::string_view line, std::size_t& position) {
    // The text between the quotation marks is used in place unless it holds doubled ones.
    const std::size_t start = position + 1;
    std::size_t quote = line.find('"', start);
    if (quote == std::string_view::npos) return false;
    if (quote + 1 >= line.size() || line[quote + 1] != '"') {
        fields_.push_back(line.substr(start, quote - start));
        position = quote + 1;
        return true;
    }
    if (unquotedCount_ == unquoted_.size()) unquoted_.emplace_back();
    std::string& text = unquoted_[unquotedCount_++];
    text.clear();
    std::size_t from = start;
    for (;;) {
        text.append(line.substr(from, quote - from));
        if (quote + 1 >= line.size() || line[quote + 1] != '"') break;
        text += '"';
        from = quote + 2;
        quote = line.find('"', from);
        if (quote == std::string_view::npos) return false;
    }
    fields_.push_back(text);
    position = quote + 1;
    return true;
}

CsvReader::Result CsvReader::split(std::string_view line) {
    fields_.clear();
    unquotedCount_ = 0;
    // Views into these texts are handed out: they must not move while the line is split.
    const std::size_t mostQuoted = static_cast<std::size_t>(std::count(line.begin(), line.end(), '"')) / 2;
    if (unquoted_.size() < mostQuoted) unquoted_.resize(mostQuoted);
    const bool control = holdsControl(line);
    std::size_t position = 0;
    for (;;) {
        const std::size_t number = fields_.size() + 1;
        if (position < line.size() && line[position] == '"') {
            if (!takeQuoted(line, position))
                return bad(number, "the quotation mark is not closed on this line");
            if (position < line.size() && line[position] != ',')
                return bad(number, "there are characters behind the closing quotation mark");
        } else {
            const std::size_t end = std::min(line.find(',', position), line.size());
            const std::string_view field = line.substr(position, end - position);
            if (field.find('"') != std::string_view::npos)
                return bad(number, "a quotation mark stands inside a field that does not begin with one");
            fields_.push_back(field);
            position = end;
        }
        if (control && holdsControl(fields_.back()))
            return bad(number, "the field holds a control character");
        if (position >= line.size()) break;
        ++position;  // the comma; a field follows in any case, be it empty
    }
    if (columnCount_ == 0) columnCount_ = fields_.size();
    if (fields_.size() != columnCount_)
        return bad(0, "the line has " + count(fields_.size(), "field") + " and the header " +
                          std::to_string(columnCount_));
    return Result::row;
}

}  // namespace vtdn::client
