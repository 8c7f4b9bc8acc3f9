#include "store/xml.h"

namespace vtdn::store {
namespace {

// U+FFFE and U+FFFF.
bool isNoCharacter(std::string_view text) {
    return text.starts_with("\xEF\xBF\xBE") || text.starts_with("\xEF\xBF\xBF");
}

}  // namespace

void appendAttribute(std::string& xml, std::string_view name, std::string_view value) {
    constexpr std::string_view replacement = "\xEF\xBF\xBD";
    xml += ' ';
    xml += name;
    xml += "=\"";
    for (std::size_t i = 0; i < value.size(); ++i) {
        const char c = value[i];
        if (isNoCharacter(value.substr(i))) {
            xml += replacement;
            i += 2;
        } else if (c == '&') {
            xml += "&amp;";
        } else if (c == '<') {
            xml += "&lt;";
        } else if (c == '>') {
            xml += "&gt;";
        } else if (c == '"') {
            xml += "&quot;";
        } else if (c == '\t' || c == '\n' || c == '\r') {
            xml += "&#" + std::to_string(static_cast<int>(c)) + ";";
        } else if (static_cast<unsigned char>(c) < 0x20) {
            xml += replacement;
        } else {
            xml += c;
        }
    }
    xml += '"';
}

}  // namespace vtdn::store
