#include "client/import/sheet.h"

#include <algorithm>
#include <fstream>
#include <memory>

#include "client/cli/failure.h"
#include "client/cli/spelling.h"
#include "client/import/cells.h"
#include "client/text/utf8.h"
#include "store/error.h"

namespace vtdn::client {

ByteSource fileBytes(const SiteFile& file, BytesRead progress) {
    // Sources are copied, streams are not.
    const auto stream = std::make_shared<std::ifstream>(file.path, std::ios::binary);
    if (!*stream)
        throw Failure(ExitCode::environment, "The file " + file.name + " cannot be opened.",
                      "Check that you may read it and that no other program holds it.");
    return [stream, name = file.name, progress = std::move(progress)](char* buffer, std::size_t size) {
        stream->read(buffer, static_cast<std::streamsize>(size));
        if (stream->bad())
            throw Failure(ExitCode::environment, "The file " + name + " could not be read to its end.",
                          "Check the disk or the network drive that it is on.");
        const auto got = static_cast<std::size_t>(stream->gcount());
        if (progress) progress(got);
        return got;
    };
}

Sheet::Sheet(const SiteFile& file, ImportProblems& problems, BytesRead progress)
    : Sheet(file.name, fileBytes(file, std::move(progress)), problems) {}

Sheet::Sheet(std::string name, ByteSource bytes, ImportProblems& problems)
    : name_(std::move(name)), problems_(problems), reader_(std::move(bytes)) {
    switch (reader_.next()) {
        case CsvReader::Result::row:
            header_.assign(reader_.fields().begin(), reader_.fields().end());
            break;
        case CsvReader::Result::badLine:
            problems_.add({name_, reader_.line(), {}, reader_.problem()});
            break;
        case CsvReader::Result::end:
            problems_.add({name_, 0, {}, "the file is empty; its first line has to be the header"});
            break;
    }
}

bool Sheet::next() {
    for (;;) {
        switch (reader_.next()) {
            case CsvReader::Result::row:
                return true;
            case CsvReader::Result::end:
                return false;
            case CsvReader::Result::badLine:
                problem(reader_.problemField() > 0 ? std::optional(reader_.problemField() - 1) : std::nullopt,
                        reader_.problem());
                break;
        }
    }
}

void Sheet::problem(std::optional<std::size_t> column, std::string reason) {
    const bool known = column && *column < header_.size();
    problems_.add({name_, reader_.line(), known ? header_[*column] : std::string(), std::move(reason)});
}

Table::Table(const SiteFile& file, std::span<const ColumnSpec> columns, ImportProblems& problems)
    : sheet_(file, problems), places_(columns.size()), fits_(!sheet_.header().empty()) {
    if (!fits_) return;
    std::vector<std::string_view> names;
    for (const ColumnSpec& column : columns) names.push_back(column.name);
    const auto& header = sheet_.header();
    const auto refuse = [&](std::string reason) {
        fits_ = false;
        sheet_.problem(std::nullopt, std::move(reason));
    };
    for (std::size_t i = 0; i < header.size(); ++i) {
        const auto found = std::find(names.begin(), names.end(), header[i]);
        if (found == names.end()) {
            const std::string_view near = nearestSpelling(header[i], names);
            refuse("there is no column \"" + header[i] + "\" in this file" +
                   (near.empty() ? "" : "; \"" + std::string(near) + "\" is one"));
            continue;
        }
        auto& place = places_[static_cast<std::size_t>(found - names.begin())];
        if (place) refuse("the column \"" + header[i] + "\" occurs twice");
        place = i;
    }
    for (std::size_t i = 0; i < columns.size(); ++i)
        if (columns[i].required && !places_[i])
            refuse("the column \"" + std::string(names[i]) + "\" is missing");
}

std::string_view Table::cell(std::size_t column) const {
    return places_[column] ? sheet_.fields()[*places_[column]] : std::string_view();
}

std::string Table::text(std::size_t column, std::size_t most) {
    std::string text(cell(column));
    // A character has at least one byte.
    if (text.size() > most && characterCount(text) > most)
        problem(column, "the text has " + std::to_string(characterCount(text)) + " characters; " +
                            std::to_string(most) + " are the most");
    return text;
}

std::optional<std::int32_t> Table::wholeNumber(std::size_t column, std::string_view what, std::int32_t most) {
    const auto number = wholeNumberOfCell(cell(column));
    if (number && *number <= most) return number;
    problem(column, store::quote(cell(column)) + " is no " + std::string(what) +
                        "; it has to be a whole number from 0 to " + std::to_string(most));
    return std::nullopt;
}

void Table::problem(std::size_t column, std::string reason) {
    sheet_.problem(places_[column], std::move(reason));
}

}  // namespace vtdn::client
