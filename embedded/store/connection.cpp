#include "store/connection.h"

#include <algorithm>
#include <optional>

#include "store/error.h"
#include "store/text.h"

namespace vtdn::store {
namespace {

constexpr std::string_view driverName = "SQLite";

[[noreturn]] void refuse(std::string_view text, const std::string& why) {
    throw Error(ErrorKind::malformedConnection, "The connection string " + quote(text) + " " + why +
                                                    " It has the form Driver=SQLite;Database=<file>.");
}

// Takes "key = value" parts off the front of the text, one call each.
class Parts {
  public:
    explicit Parts(std::string_view text) : text_(text) {}

    struct Part {
        std::string_view key;
        std::string value;
    };

    std::optional<Part> next() {
        while (true) {
            const auto start = text_.find_first_not_of(" \t;", at_);
            if (start == std::string_view::npos) return std::nullopt;
            at_ = start;
            const auto stop = text_.find_first_of("=;", at_);
            if (stop == std::string_view::npos || text_[stop] == ';')
                refuse(text_, "has a part without an equals sign.");
            const auto key = trimBlanks(text_.substr(at_, stop - at_));
            if (key.empty()) refuse(text_, "has a part without a key.");
            at_ = stop + 1;
            return Part{key, value()};
        }
    }

  private:
    std::string value() {
        const auto start = std::min(text_.find_first_not_of(" \t", at_), text_.size());
        if (start < text_.size() && (text_[start] == '"' || text_[start] == '\'')) return quotedValue(start);
        const auto end = std::min(text_.find(';', start), text_.size());
        at_ = end;
        const auto value = trimBlanks(text_.substr(start, end - start));
        if (value.find('"') != std::string_view::npos)
            refuse(text_, "has a quotation mark inside a value that does not begin with one.");
        return std::string(value);
    }

    std::string quotedValue(std::size_t start) {
        const char mark = text_[start];
        std::string value;
        for (std::size_t i = start + 1; i < text_.size(); ++i) {
            if (text_[i] != mark) {
                value += text_[i];
            } else if (i + 1 < text_.size() && text_[i + 1] == mark) {
                value += mark;
                ++i;
            } else {
                at_ = std::min(text_.find_first_not_of(" \t", i + 1), text_.size());
                if (at_ < text_.size() && text_[at_] != ';')
                    refuse(text_, "has characters behind a closing quotation mark.");
                return value;
            }
        }
        refuse(text_, "has a quotation mark that is not closed.");
    }

    std::string_view text_;
    std::size_t at_ = 0;
};

}  // namespace

Connection Connection::parse(std::string_view text) {
    if (trimBlanks(text).empty())
        throw Error(ErrorKind::malformedConnection,
                    "The connection string is empty. It has the form Driver=SQLite;Database=<file>.");
    if (text.find('\0') != std::string_view::npos) refuse(text, "holds a NUL character.");
    std::optional<std::string> driver;
    std::optional<std::string> database;
    Parts parts(text);
    while (auto part = parts.next()) {
        std::optional<std::string>* slot = nullptr;
        if (equalsIgnoringCase(part->key, "Driver"))
            slot = &driver;
        else if (equalsIgnoringCase(part->key, "Database"))
            slot = &database;
        else
            refuse(text, "has the unknown key " + quote(part->key) + ".");
        if (*slot) refuse(text, "gives the key " + quote(part->key) + " more than once.");
        *slot = std::move(part->value);
    }
    if (!driver) refuse(text, "names no Driver.");
    if (!equalsIgnoringCase(*driver, driverName))
        refuse(text, "names the driver " + quote(*driver) + ", which this program does not have.");
    if (!database || database->empty()) refuse(text, "names no Database.");
    return {std::string(driverName), std::move(*database)};
}

std::string Connection::format(std::string_view database) {
    std::string text = "Driver=SQLite;Database=";
    const bool plain = !database.empty() && database.find_first_of(";\"'") == std::string_view::npos &&
                       trimBlanks(database) == database;
    if (plain) return text.append(database);
    text += '"';
    for (const char c : database) {
        if (c == '"') text += '"';
        text += c;
    }
    return text + '"';
}

}  // namespace vtdn::store
