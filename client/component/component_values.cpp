// The component's reads and writes.
#include <array>
#include <charconv>

#include "client/component/component.h"
#include "com/error.h"
#include "com/strings.h"
#include "com/variant.h"
#include "common/dates.h"

namespace vtdn::client {

std::optional<double> numberIn(std::wstring_view text) {
    if (text.empty() || !com::isNumeric(com::Variant::of(text).get())) return std::nullopt;
    double number = 0;
    if (FAILED(VarR8FromStr(com::Bstr(text).get(), LOCALE_USER_DEFAULT, 0, &number))) return std::nullopt;
    return number;
}

namespace {

Reading reading(std::wstring_view text, LONG code) {
    return {com::toUtf8(text), numberIn(text), code};
}

DATE dateOf(store::Time time) {
    return common::dateOfSeconds(time);
}

std::wstring localeText(LCTYPE what, const wchar_t* otherwise) {
    std::array<wchar_t, 8> text{};
    const int length = GetLocaleInfoW(LOCALE_USER_DEFAULT, what, text.data(), static_cast<int>(text.size()));
    return length > 1 ? text.data() : otherwise;
}

/// Writes values as the component reads them in the user's locale.
class FieldWriter {
  public:
    void append(std::wstring& fields, const store::Value& value) const {
        if (const auto* words = std::get_if<std::string>(&value)) fields += com::fromUtf8(*words);
        if (const auto number = store::numberOf(value)) appendNumber(fields, *number);
    }

  private:
    /// In digits, without an exponent: not every version of the platform reads one behind a decimal comma.
    void appendNumber(std::wstring& fields, double number) const {
        std::array<char, 400> digits{};
        const auto end =
            std::to_chars(digits.data(), digits.data() + digits.size(), number, std::chars_format::fixed);
        for (const char* c = digits.data(); c != end.ptr; ++c) {
            if (*c == '.')
                fields += decimal_;
            else if (*c == '-')
                fields += minus_;
            else
                fields += static_cast<wchar_t>(*c);
        }
    }

    std::wstring decimal_ = localeText(LOCALE_SDECIMAL, L".");
    std::wstring minus_ = localeText(LOCALE_SNEGATIVESIGN, L"-");
};

}  // namespace

bool readsAsNumber(const std::string& text) {
    return numberIn(com::fromUtf8(text)).has_value();
}

std::optional<Reading> Component::readOne(std::int32_t pid, store::Time time) {
    com::Bstr value;
    LONG code = 0;
    VARIANT_BOOL done = VARIANT_FALSE;
    com::check(wrapper_->Param_GetData_String(pid, dateOf(time), value.receive(), &code, &done));
    if (done == VARIANT_FALSE) return std::nullopt;
    return reading(value.view(), code);
}

std::optional<std::vector<Reading>> Component::read(std::int32_t pid, store::Time start, std::int32_t count,
                                                    const store::Interval& interval) {
    // As texts rather than as singles: doubles come with all of their 15 digits, and texts that are no
    // numbers too.
    const EngineInterval engine = engineInterval(interval);
    auto values = com::SafeArray::of<BSTR>(count);
    auto codes = com::SafeArray::of<LONG>(count);
    VARIANT_BOOL done = VARIANT_FALSE;
    com::check(wrapper_->Param_GetDataArray_String(pid, dateOf(start), count,
                                                   com::Bstr(com::fromUtf8(engine.type)).get(), engine.length,
                                                   values.inOut(), codes.inOut(), &done));
    if (done == VARIANT_FALSE) return std::nullopt;
    const com::ArrayView<BSTR> texts(values.get());
    const com::ArrayView<LONG> numbers(codes.get());
    std::vector<Reading> readings;
    readings.reserve(texts.size());
    for (std::size_t i = 0; i < texts.size(); ++i)
        readings.push_back(reading(com::view(texts[i]), numbers[i]));
    return readings;
}

bool Component::writeCode(std::int32_t pid, store::Time time, std::int32_t code) {
    VARIANT_BOOL done = VARIANT_FALSE;
    com::check(wrapper_->Param_WriteMC(pid, dateOf(time), code, &done));
    return done != VARIANT_FALSE;
}

bool Component::writeValue(std::int32_t pid, store::Time time, const WrittenValue& value) {
    const DATE date = dateOf(time);
    VARIANT_BOOL done = VARIANT_FALSE;
    if (const auto* integer = std::get_if<std::int32_t>(&value))
        com::check(wrapper_->Param_WriteValue_Integer(pid, date, *integer, &done));
    else if (const auto* single = std::get_if<float>(&value))
        com::check(wrapper_->Param_WriteValue_Single(pid, date, *single, &done));
    else if (const auto* words = std::get_if<std::string>(&value))
        com::check(
            wrapper_->Param_WriteValue_String(pid, date, com::Bstr(com::fromUtf8(*words)).get(), &done));
    else
        com::check(wrapper_->Param_WriteValue_Null(pid, date, &done));
    return done != VARIANT_FALSE;
}

bool Component::writeBoth(std::int32_t pid, store::Time time, const WrittenValue& value, std::int32_t code) {
    const DATE date = dateOf(time);
    VARIANT_BOOL done = VARIANT_FALSE;
    if (const auto* integer = std::get_if<std::int32_t>(&value))
        com::check(wrapper_->Param_WriteVMC_Integer(pid, date, *integer, code, &done));
    else if (const auto* single = std::get_if<float>(&value))
        com::check(wrapper_->Param_WriteVMC_Single(pid, date, *single, code, &done));
    else
        com::check(wrapper_->Param_WriteVMC_Null(pid, date, code, &done));
    return done != VARIANT_FALSE;
}

bool Component::writeRun(std::int32_t pid, const store::Interval& interval, const WrittenRun& run) {
    const auto count = static_cast<LONG>(run.items.size());
    const FieldWriter fields;
    std::wstring values;
    auto codes = com::SafeArray::of<LONG>(count);
    auto flags = com::SafeArray::of<LONG>(count);
    {
        const com::ArrayView<LONG> code(codes.get());
        const com::ArrayView<LONG> flag(flags.get());
        for (std::size_t i = 0; i < run.items.size(); ++i) {
            const store::WriteItem& item = run.items[i];
            if (i > 0) values += L'\t';
            if (item.value) fields.append(values, item.item.value);
            code[i] = item.item.code;
            flag[i] = (item.value ? 1 : 0) + (item.code ? 2 : 0);
        }
    }
    const EngineInterval engine = engineInterval(interval);
    VARIANT_BOOL done = VARIANT_FALSE;
    com::check(wrapper_->Param_WriteValues(pid, dateOf(run.start), count,
                                           com::Bstr(com::fromUtf8(engine.type)).get(), engine.length,
                                           com::Bstr(values).get(), codes.inOut(), flags.inOut(), &done));
    return done != VARIANT_FALSE;
}

}  // namespace vtdn::client
