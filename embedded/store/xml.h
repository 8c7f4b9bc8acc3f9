// Writing XML.
#pragma once

#include <string>
#include <string_view>

namespace vtdn::store {

/// Appends ` name="value"` with the value (UTF-8) as XML 1.0 needs it: marks and white space as references,
/// so that a reader gets the same text back, and characters that no document may hold as U+FFFD.
void appendAttribute(std::string& xml, std::string_view name, std::string_view value);

}  // namespace vtdn::store
