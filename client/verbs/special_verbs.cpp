// The numbered special values and special functions of parameters.
#include <array>
#include <limits>

#include "client/output/json.h"
#include "client/text/times.h"
#include "client/verbs/context.h"
#include "store/pid_text.h"

namespace vtdn::client {

namespace {

constexpr std::int32_t leastId = std::numeric_limits<std::int32_t>::min();

std::string textOf(const Answer& answer) {
    if (const auto* number = std::get_if<std::int32_t>(&answer)) return std::to_string(*number);
    if (const auto* truth = std::get_if<bool>(&answer)) return *truth ? "true" : "false";
    return std::get<std::string>(answer);
}

/// The answer alone, for people and scripts, or what was asked with it as JSON.
void print(Context& context, Json& question, const Answer& answer) {
    if (!context.arguments.has("--json")) {
        context.console.out(textOf(answer) + "\n");
        return;
    }
    std::visit([&](const auto& content) { question.member("value", content); }, answer);
    question.endObject();
    context.console.out(question.text() + "\n");
}

Json questionAbout(std::int32_t pid) {
    Json json;
    json.beginObject();
    json.member("pid", store::pidText(pid));
    return json;
}

bool isNothing(const Answer& answer) {
    const auto* text = std::get_if<std::string>(&answer);
    return text && text->empty();
}

/// The component's 0 is also its answer for what is no number: the value as text tells which it is.
void noteIfNoNumber(Context& context, Component& component, std::int32_t pid, std::int32_t id) {
    const auto text = std::get<std::string>(component.specialValue(pid, id, AnswerKind::text));
    if (!readsAsNumber(text) && text != "True" && text != "False")
        context.console.error(text.empty() ? "There is no such special value; the component gives 0 for none."
                                           : "The special value is \"" + text +
                                                 "\"; the component gives 0 for what is no number.");
}

}  // namespace

ExitCode runParamsSpecial(Context& context) {
    constexpr std::array<std::string_view, 3> words{"text", "number", "boolean"};
    constexpr std::array<AnswerKind, 3> kinds{AnswerKind::text, AnswerKind::number, AnswerKind::boolean};
    const std::int32_t pid = pidArgument(context.arguments.operands()[0]);
    const std::int32_t id = integerArgument("ID", context.arguments.operands()[1], leastId);
    const AnswerKind kind = kinds[choiceArgument(context.arguments, "--as", words, 0)];
    Binding binding(context);
    const std::string what = "special value " + std::to_string(id) + " of " + store::pidText(pid);
    const Answer answer = binding->specialValue(pid, id, kind);
    binding.needNoRefusal("The component does not give the " + what + ".",
                          "The problem above says why. --as text takes a value of any kind.");
    if (isNothing(answer))
        context.console.error("There is no " + what + ", or it is an empty text.");
    else if (const auto* number = std::get_if<std::int32_t>(&answer); number && *number == 0)
        noteIfNoNumber(context, binding.component(), pid, id);
    Json question = questionAbout(pid);
    question.member("id", id);
    print(context, question, answer);
    return ExitCode::done;
}

ExitCode runParamsCall(Context& context) {
    constexpr std::array<std::string_view, 4> words{"text", "number", "rounded", "boolean"};
    constexpr std::array<AnswerKind, 4> kinds{AnswerKind::text, AnswerKind::number, AnswerKind::rounded,
                                              AnswerKind::boolean};
    const auto& operands = context.arguments.operands();
    const std::int32_t pid = pidArgument(operands[0]);
    const std::int32_t id = integerArgument("ID", operands[1], leastId);
    const AnswerKind kind = kinds[choiceArgument(context.arguments, "--as", words, 0)];
    std::vector<FunctionArgument> arguments;
    for (std::size_t i = 2; i < operands.size(); ++i) arguments.push_back(functionArgument(operands[i]));
    Binding binding(context);
    const std::string what = "special function " + std::to_string(id) + " of " + store::pidText(pid);
    const Answer answer = binding->callFunction(pid, id, arguments, kind);
    binding.needNoRefusal("The " + what + " has no result.",
                          "The problem above says why. Check the number of the function and what it takes: "
                          "docs/engine.md lists those of the embedded engine.");
    if (isNothing(answer)) context.console.error("The " + what + " gives no value, or an empty text.");
    Json question = questionAbout(pid);
    question.member("id", id);
    print(context, question, answer);
    return ExitCode::done;
}

ExitCode runParamsOptime(Context& context) {
    const auto& operands = context.arguments.operands();
    const std::int32_t pid = pidArgument(operands[0]);
    const store::Time from = timeArgument("FROM", operands[1]);
    const store::Time to = timeArgument("TO", operands[2]);
    Binding binding(context);
    const std::int32_t hours = binding->operatingTime(pid, from, to);
    binding.needNoRefusal("The operating time of " + store::pidText(pid) + " cannot be told.",
                          "The problem above says why. docs/engine.md says what the embedded engine takes "
                          "the operating time from.");
    Json question = questionAbout(pid);
    question.member("from", timestampText(from, from % 60 != 0));
    question.member("to", timestampText(to, to % 60 != 0));
    print(context, question, hours);
    return ExitCode::done;
}

}  // namespace vtdn::client
