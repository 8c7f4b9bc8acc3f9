// The component's special values and special functions.
#include "client/component/component.h"
#include "com/error.h"
#include "com/strings.h"
#include "com/variant.h"
#include "common/dates.h"

namespace vtdn::client {

namespace {

com::Variant variantOf(const FunctionArgument& argument) {
    struct Convert {
        com::Variant operator()(bool value) const { return com::Variant::ofBool(value); }
        com::Variant operator()(std::int32_t value) const { return com::Variant::of(LONG{value}); }
        com::Variant operator()(double value) const { return com::Variant::of(value); }
        com::Variant operator()(const TimeValue& value) const {
            return com::Variant::ofDate(common::dateOfSeconds(value.time));
        }
        com::Variant operator()(const std::string& value) const {
            return com::Variant::of(com::fromUtf8(value));
        }
    };
    return std::visit(Convert(), argument);
}

com::SafeArray arrayOf(std::span<const FunctionArgument> arguments) {
    auto array = com::SafeArray::of<VARIANT>(static_cast<LONG>(arguments.size()));
    const com::ArrayView<VARIANT> elements(array.get());
    for (std::size_t i = 0; i < arguments.size(); ++i) variantOf(arguments[i]).detachTo(&elements[i]);
    return array;
}

/// Hands the results of the operations on as what they are.
template <class AskText, class AskNumber, class AskBoolean>
Answer answer(AnswerKind kind, AskText askText, AskNumber askNumber, AskBoolean askBoolean) {
    if (kind == AnswerKind::text) {
        com::Bstr text;
        com::check(askText(text.receive()));
        return com::toUtf8(text.view());
    }
    if (kind == AnswerKind::boolean) {
        VARIANT_BOOL result = VARIANT_FALSE;
        com::check(askBoolean(&result));
        return result != VARIANT_FALSE;
    }
    LONG number = 0;
    com::check(askNumber(&number));
    return std::int32_t{number};
}

}  // namespace

Answer Component::specialValue(std::int32_t pid, std::int32_t id, AnswerKind kind) {
    return answer(
        kind, [&](BSTR* text) { return wrapper_->Param_GetSpecialValue_String(pid, id, text); },
        [&](LONG* number) { return wrapper_->Param_GetSpecialValue_Int32(pid, id, number); },
        [&](VARIANT_BOOL* truth) { return wrapper_->Param_GetSpecialValue_Boolean(pid, id, truth); });
}

Answer Component::callFunction(std::int32_t pid, std::int32_t id, std::span<const FunctionArgument> arguments,
                               AnswerKind kind) {
    auto array = arrayOf(arguments);
    return answer(
        kind,
        [&](BSTR* text) { return wrapper_->Param_GetSpecialFunction_String(pid, id, array.inOut(), text); },
        [&](LONG* number) {
            return kind == AnswerKind::rounded
                       ? wrapper_->Param_GetSpecialFunction_Real32(pid, id, array.inOut(), number)
                       : wrapper_->Param_GetSpecialFunction_Int32(pid, id, array.inOut(), number);
        },
        [&](VARIANT_BOOL* truth) {
            return wrapper_->Param_GetSpecialFunction_Boolean(pid, id, array.inOut(), truth);
        });
}

std::int32_t Component::operatingTime(std::int32_t pid, store::Time from, store::Time to) {
    LONG result = 0;
    com::check(wrapper_->Param_CallSF_CalcOpTime(pid, common::dateOfSeconds(from), common::dateOfSeconds(to),
                                                 &result));
    return result;
}

}  // namespace vtdn::client
