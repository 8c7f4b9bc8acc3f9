#include "client/component/component.h"

#include <algorithm>

#include "client/cli/failure.h"
#include "com/error.h"
#include "com/strings.h"
#include "com/variant.h"
#include "common/dates.h"

namespace vtdn::client {

namespace {

/// The number that a text of the component stands for, by the rules that automation clients know.
std::optional<double> numberOf(std::wstring_view text) {
    if (text.empty() || !com::isNumeric(com::Variant::of(text).get())) return std::nullopt;
    double number = 0;
    if (FAILED(VarR8FromStr(com::Bstr(text).get(), LOCALE_USER_DEFAULT, 0, &number))) return std::nullopt;
    return number;
}

Reading reading(std::wstring_view text, LONG code) {
    return {com::toUtf8(text), numberOf(text), code};
}

DATE dateOf(store::Time time) {
    return common::dateOfSeconds(time);
}

}  // namespace

Component::Component() {
    const HRESULT result = CoCreateInstance(CLSID_DIWrapper, nullptr, CLSCTX_INPROC_SERVER, IID__DIWrapper,
                                            wrapper_.receiveVoid());
    if (FAILED(result))
        throw Failure(ExitCode::environment,
                      "The component VTWrapDN.DIWrapper cannot be created (" +
                          com::toUtf8(com::lastError(result).description()) + ").",
                      "`vtdn doctor` says what is missing and how to mend it.");
}

Component::~Component() {
    // The last call of this binding: whatever it fails with, there is nothing left to do about it.
    if (wrapper_) wrapper_->Teardown();
}

bool Component::setUp(std::int32_t dahsId) {
    VARIANT_BOOL done = VARIANT_FALSE;
    com::check(wrapper_->Setup3(dahsId, com::Bstr(L"vtdn").get(), &done));
    return done != VARIANT_FALSE;
}

std::vector<std::string> Component::takeProblems() {
    com::Bstr list;
    com::check(wrapper_->GetAndClearProblemsList(list.receive()));
    const std::string text = com::toUtf8(list.view());
    std::vector<std::string> entries;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find('\t', start), text.size());
        entries.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return entries;
}

std::string Component::text(TextGetter getter, std::int32_t pid) {
    com::Bstr text;
    com::check((wrapper_.get()->*getter)(pid, text.receive()));
    return com::toUtf8(text.view());
}

bool Component::exists(std::int32_t pid) {
    VARIANT_BOOL result = VARIANT_FALSE;
    com::check(wrapper_->Param_DoesExist(pid, &result));
    return result != VARIANT_FALSE;
}

bool Component::isStored(std::int32_t pid) {
    VARIANT_BOOL result = VARIANT_FALSE;
    com::check(wrapper_->Param_IsDBDataIO(pid, &result));
    return result != VARIANT_FALSE;
}

std::string Component::configConnection() {
    com::Bstr text;
    com::check(wrapper_->SelectedDahs_ConfigConnection(text.receive()));
    return com::toUtf8(text.view());
}

std::optional<Component::UsedPids> Component::uses(std::int32_t pid) {
    com::Bstr stored;
    com::Bstr constant;
    VARIANT_BOOL done = VARIANT_FALSE;
    com::check(wrapper_->Param_FindPIDsUsedByPID(pid, stored.receive(), constant.receive(), &done));
    if (done == VARIANT_FALSE) return std::nullopt;
    return UsedPids{com::toUtf8(stored.view()), com::toUtf8(constant.view())};
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

}  // namespace vtdn::client
