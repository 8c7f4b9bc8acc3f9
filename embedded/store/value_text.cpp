#include "store/value_text.h"

#include "common/display_format.h"

namespace vtdn::store {

std::string valueText(const Value& value, std::string_view format) {
    if (const auto* text = std::get_if<std::string>(&value)) return *text;
    if (const auto* single = std::get_if<float>(&value))
        return common::formatNumber(common::decimalOf(*single), format);
    const std::optional<double> number = numberOf(value);
    return number ? common::formatNumber(*number, format) : std::string();
}

std::string limitText(const Parameter& constant) {
    if (constant.kind() != ParameterKind::constant) return {};
    std::string text = valueText(constant.constant);
    if (!constant.units.empty()) text += " " + constant.units;
    return text;
}

}  // namespace vtdn::store
