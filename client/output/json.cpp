#include "client/output/json.h"

#include <array>
#include <cmath>

#include "client/text/numbers.h"
#include "client/text/utf8.h"

namespace vtdn::client {

namespace {

void appendEscaped(std::string& out, char c) {
    constexpr std::string_view hex = "0123456789abcdef";
    switch (c) {
        case '"':
            out += "\\\"";
            return;
        case '\\':
            out += "\\\\";
            return;
        case '\n':
            out += "\\n";
            return;
        case '\r':
            out += "\\r";
            return;
        case '\t':
            out += "\\t";
            return;
        default:
            break;
    }
    const auto code = static_cast<unsigned char>(c);
    if (code < 0x20 || code == 0x7F) {
        out += "\\u00";
        out += hex[code >> 4];
        out += hex[code & 15];
    } else {
        out += c;
    }
}

std::string quoted(std::string_view text) {
    std::string out = "\"";
    while (!text.empty()) {
        const std::size_t valid = std::min(invalidUtf8(text), text.size());
        for (const char c : text.substr(0, valid)) appendEscaped(out, c);
        text.remove_prefix(valid);
        if (text.empty()) break;
        out += "\xEF\xBF\xBD";
        text.remove_prefix(1);
    }
    return out + "\"";
}

}  // namespace

void Json::separate() {
    if (needsComma_) text_ += ", ";
    needsComma_ = true;
}

void Json::raw(std::string_view text) {
    separate();
    text_ += text;
}

void Json::open(char bracket) {
    separate();
    text_ += bracket;
    needsComma_ = false;
}

void Json::close(char bracket) {
    text_ += bracket;
    needsComma_ = true;
}

void Json::key(std::string_view name) {
    separate();
    text_ += quoted(name) + ": ";
    needsComma_ = false;
}

void Json::value(std::string_view text) {
    raw(quoted(text));
}

void Json::value(double number) {
    raw(std::isfinite(number) ? shortestText(number) : "null");
}

}  // namespace vtdn::client
