// Arguments of calls as scripts write them.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "com/platform.h"

namespace vtdn::fake {

class Script;

std::string joined(std::initializer_list<std::string_view> parts);
std::string number(double value);
std::string number(float value);
std::string number(LONG value);
std::string quoted(BSTR text);
const char* boolean(VARIANT_BOOL value);

/// A variant, with its objects named by the script.
std::string describe(const VARIANT& value, const Script& script);
/// An array of variants with its bounds: "[0..1: Date 39508.5, Dispatch New]".
std::string describe(SAFEARRAY* array, const Script& script);

}  // namespace vtdn::fake
