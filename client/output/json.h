// JSON (RFC 8259) as text, written in order.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace vtdn::client {

/// Builds one value. Commas come by themselves; keys and values are to be given in the order in which they
/// stand.
class Json {
  public:
    void beginObject() { open('{'); }
    void endObject() { close('}'); }
    void beginArray() { open('['); }
    void endArray() { close(']'); }
    void key(std::string_view name);

    void value(std::monostate) { raw("null"); }
    /// Bytes that are no UTF-8 become U+FFFD, so that the result always parses.
    void value(std::string_view text);
    void value(const std::string& text) { value(std::string_view(text)); }
    void value(const char* text) { value(std::string_view(text)); }
    /// null for infinities and NaN, which JSON does not have.
    void value(double number);
    void value(std::int64_t number) { raw(std::to_string(number)); }
    void value(std::int32_t number) { raw(std::to_string(number)); }
    void value(bool flag) { raw(flag ? "true" : "false"); }

    template <class T>
    void member(std::string_view name, const T& content) {
        key(name);
        value(content);
    }

    [[nodiscard]] const std::string& text() const { return text_; }

  private:
    void separate();
    void open(char bracket);
    void close(char bracket);
    void raw(std::string_view text);

    std::string text_;
    bool needsComma_ = false;
};

}  // namespace vtdn::client
