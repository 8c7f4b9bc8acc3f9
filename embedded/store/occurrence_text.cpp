#include <algorithm>
#include <charconv>
#include <new>
#include <pugixml.hpp>

#include "store/error.h"
#include "store/occurrence.h"

namespace vtdn::store {
namespace {

constexpr std::size_t escapeLength = 5;  // a backslash and four hexadecimal digits

bool isBetween(std::string_view text, std::size_t at, unsigned char low, unsigned char high) {
    if (at >= text.size()) return false;
    const auto byte = static_cast<unsigned char>(text[at]);
    return byte >= low && byte <= high;
}

// Bytes of the character of UTF-8 at the beginning of a text that is not empty; 0 when there is none.
std::size_t characterLength(std::string_view text) {
    const auto lead = static_cast<unsigned char>(text[0]);
    if (lead < 0x80) return 1;
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4) return 0;
    // No forms longer than needed, no halves of surrogate pairs, nothing behind U+10FFFF.
    const unsigned char low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    const unsigned char high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    if (!isBetween(text, 1, low, high)) return 0;
    for (std::size_t i = 2; i < length; ++i)
        if (!isBetween(text, i, 0x80, 0xBF)) return 0;
    return length;
}

void appendEscape(std::string& text, unsigned code) {
    constexpr std::string_view digits = "0123456789abcdef";
    text += '\\';
    for (const unsigned shift : {12U, 8U, 4U, 0U}) text += digits[code >> shift & 15U];
}

// What XML 1.0 cannot hold as \xxxx: control characters and U+FFFE and U+FFFF by their numbers, bytes that
// are no UTF-8 as DC00 and the byte. The backslash is doubled.
std::string escaped(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const char c = text[0];
        const auto byte = static_cast<unsigned char>(c);
        const std::size_t length = characterLength(text);
        if (length == 0)
            appendEscape(result, 0xDC00U | byte);
        else if (c == '\\')
            result += R"(\\)";
        else if (byte < 0x20 && c != '\t' && c != '\n' && c != '\r')
            appendEscape(result, byte);
        else if (text.starts_with("\xEF\xBF\xBE"))
            appendEscape(result, 0xFFFE);
        else if (text.starts_with("\xEF\xBF\xBF"))
            appendEscape(result, 0xFFFF);
        else
            result += text.substr(0, length);
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return result;
}

// The other way. What escaped() does not write comes out as something that it writes otherwise.
std::string unescaped(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        unsigned code = 0;
        const char* end = text.data() + std::min(text.size(), escapeLength);
        if (text[0] != '\\') {
            result += text[0];
            text.remove_prefix(1);
        } else if (text.starts_with(R"(\\)")) {
            result += '\\';
            text.remove_prefix(2);
        } else if (const auto read = std::from_chars(text.data() + 1, end, code, 16);
                   read.ec == std::errc() && read.ptr == text.data() + escapeLength) {
            if (code == 0xFFFE || code == 0xFFFF)
                result += code == 0xFFFE ? "\xEF\xBF\xBE" : "\xEF\xBF\xBF";
            else
                result += static_cast<char>(code & 0xFF);
            text.remove_prefix(escapeLength);
        } else {
            text.remove_prefix(1);
        }
    }
    return result;
}

void put(pugi::xml_node element, const char* name, const char* value) {
    // Both fail only for want of memory.
    if (!element.append_attribute(name).set_value(value)) throw std::bad_alloc();
}

void putText(pugi::xml_node element, const char* name, const std::string& text) {
    if (!text.empty()) put(element, name, escaped(text).c_str());
}

pugi::xml_node addPart(pugi::xml_node root, const char* name, const OccurrencePart& part) {
    pugi::xml_node element = root.append_child(name);
    put(element, "PID", std::to_string(part.pid).c_str());
    putText(element, "Category", part.category);
    putText(element, "Reason", part.reason);
    putText(element, "Action", part.action);
    put(element, "Excludable", part.excludable ? "1" : "0");
    return element;
}

std::string textOf(pugi::xml_node element, const char* name) {
    return unescaped(element.attribute(name).value());
}

void readPart(pugi::xml_node element, OccurrencePart& part) {
    part.pid = element.attribute("PID").as_int();
    part.category = textOf(element, "Category");
    part.reason = textOf(element, "Reason");
    part.action = textOf(element, "Action");
    part.excludable = element.attribute("Excludable").as_int() != 0;
}

class Appender : public pugi::xml_writer {
  public:
    explicit Appender(std::string& text) : text_(text) {}
    void write(const void* data, std::size_t size) override {
        text_.append(static_cast<const char*>(data), size);
    }

  private:
    std::string& text_;
};

[[noreturn]] void refuse(std::string_view xml, const std::string& why) {
    throw Error(ErrorKind::badValue, "The text " + quote(xml) + " is no occurrence text: " + why + ".");
}

}  // namespace

std::string occurrenceText(const Occurrence& occurrence) {
    if (occurrence.empty()) return {};
    pugi::xml_document document;
    pugi::xml_node root = document.append_child("Occurrence");
    if (const auto& excursion = occurrence.excursion) {
        pugi::xml_node element = addPart(root, "Excursion", *excursion);
        putText(element, "Limit", excursion->limit);
        if (excursion->limit_pid != 0) put(element, "LimitPID", std::to_string(excursion->limit_pid).c_str());
    }
    if (occurrence.downtime) addPart(root, "Downtime", *occurrence.downtime);
    std::string text;
    Appender appender(text);
    document.save(appender, "", pugi::format_raw | pugi::format_no_declaration, pugi::encoding_utf8);
    return text;
}

Occurrence parseOccurrence(std::string_view xml) {
    if (xml.empty()) return {};
    pugi::xml_document document;
    const pugi::xml_parse_result result =
        document.load_buffer(xml.data(), xml.size(), pugi::parse_escapes, pugi::encoding_utf8);
    if (result.status == pugi::status_out_of_memory) throw std::bad_alloc();
    if (!result) refuse(xml, "it is no XML document");
    const pugi::xml_node root = document.child("Occurrence");
    Occurrence occurrence;
    if (const pugi::xml_node element = root.child("Excursion")) {
        Excursion& excursion = occurrence.excursion.emplace();
        readPart(element, excursion);
        excursion.limit = textOf(element, "Limit");
        excursion.limit_pid = element.attribute("LimitPID").as_int();
    }
    if (const pugi::xml_node element = root.child("Downtime"))
        readPart(element, occurrence.downtime.emplace());
    // Whatever was not looked at, and whatever can be written in more than one way, shows here.
    if (occurrenceText(occurrence) != xml)
        refuse(xml, "it holds something else than an excursion and a downtime as this program writes them");
    return occurrence;
}

}  // namespace vtdn::store
