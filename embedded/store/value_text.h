// Values as people read them.
#pragma once

#include <string>
#include <string_view>

#include "store/parameters.h"
#include "store/value.h"

namespace vtdn::store {

/// A text as it is, "" for no value, and a number in a display format (see common/display_format.h): with a
/// decimal point, and with the digits that it needs when the format is empty. A single has its own digits,
/// and not those of the double next to it.
[[nodiscard]] std::string valueText(const Value& value, std::string_view format = {});

/// A limit as an occurrence names it: the value of the constant with all its digits, and its units behind it
/// when it has any ("0.5 lb/mmBtu"). "" for a parameter of another kind.
[[nodiscard]] std::string limitText(const Parameter& constant);

}  // namespace vtdn::store
