#include <array>
#include <cmath>
#include <limits>

#include "client/output/json.h"
#include "client/text/numbers.h"
#include "client/text/times.h"
#include "client/verbs/context.h"
#include "store/pid_text.h"

namespace vtdn::client {

namespace {

Failure usage(const std::string& sentence, std::string next) {
    return {ExitCode::usage, sentence, std::move(next)};
}

/// A whole number without a point goes as one, any other as a single, which is what the component takes.
WrittenValue numberArgument(const std::string& text) {
    if (const auto integer = parseInteger(text)) return *integer;
    const auto number = parseNumber(text);
    if (!number)
        throw usage("\"" + text + "\" is no number.",
                    "Numbers have a decimal point, as 12.5. A text goes with --text.");
    if (std::fabs(*number) > static_cast<double>(std::numeric_limits<float>::max()))
        throw usage(text + " is out of the range of single precision.",
                    "The largest number is about 3.4e38.");
    return static_cast<float>(*number);
}

struct Request {
    std::int32_t pid = 0;
    store::Time time = 0;
    std::optional<WrittenValue> value;
    std::optional<std::int32_t> code;
};

Request requestOf(const Arguments& arguments) {
    constexpr std::array<std::string_view, 3> values{"--value", "--text", "--null"};
    refuseTogether(arguments, values);
    Request request;
    request.pid = pidArgument(arguments.operands()[0]);
    if (arguments.operands().size() < 2)
        throw usage(
            "`vtdn write` needs TIME: the beginning of the interval.",
            "It is typed as \"2007-01-08 13:00\". A run of intervals comes from a file: --file FILE.");
    request.time = timeArgument("TIME", arguments.operands()[1]);
    if (const auto text = arguments.value("--value")) request.value = numberArgument(*text);
    if (const auto text = arguments.value("--text")) request.value = *text;
    if (arguments.has("--null")) request.value = WrittenValue();
    if (const auto text = arguments.value("--mc"))
        request.code = integerArgument("--mc", *text, std::numeric_limits<std::int32_t>::min());
    if (!request.value && !request.code)
        throw usage("What is to be written?",
                    "Say --value NUMBER, --text TEXT or --null, --mc CODE, or a value and a code.");
    return request;
}

bool write(Binding& binding, const Request& r) {
    if (!r.value) return binding->writeCode(r.pid, r.time, *r.code);
    if (!r.code) return binding->writeValue(r.pid, r.time, *r.value);
    if (!std::holds_alternative<std::string>(*r.value))
        return binding->writeBoth(r.pid, r.time, *r.value, *r.code);
    // The component writes no text together with a code. The code first: it can be refused.
    return binding->writeCode(r.pid, r.time, *r.code) && binding->writeValue(r.pid, r.time, *r.value);
}

std::string shown(const std::optional<Reading>& reading) {
    if (!reading) return "unknown";
    const std::string value = reading->text.empty() ? "no value"
                              : reading->number     ? shortestText(*reading->number)
                                                    : reading->text;
    return value + " (mc " + std::to_string(reading->code) + ")";
}

void addReading(Json& json, std::string_view name, const std::optional<Reading>& reading) {
    json.key(name);
    if (!reading) {
        json.value(std::monostate());
        return;
    }
    json.beginObject();
    if (reading->number)
        json.member("value", *reading->number);
    else if (reading->text.empty())
        json.member("value", std::monostate());
    else
        json.member("value", reading->text);
    json.member("mc", reading->code);
    json.endObject();
}

}  // namespace

ExitCode runWrite(Context& context) {
    if (context.arguments.has("--file")) return runWriteFile(context);
    for (const std::string_view option : {"--limit", "--progress"})
        if (context.arguments.has(option))
            throw usage(std::string(option) + " is about a file.", "Give it with --file FILE.");
    const Request request = requestOf(context.arguments);
    Binding binding(context);
    const std::string pid = store::pidText(request.pid);
    const std::string time = timestampText(request.time, request.time % 60 != 0);
    const auto before = binding->readOne(request.pid, request.time);
    if (!write(binding, request))
        binding.refuse(
            "The component refused to write " + pid + " at " + time + ".",
            "The problem above says why. `vtdn params show " + pid + "` says whether it can be written.");
    const auto after = binding->readOne(request.pid, request.time);
    if (context.arguments.has("--json")) {
        Json json;
        json.beginObject();
        json.member("pid", pid);
        json.member("time", time);
        addReading(json, "before", before);
        addReading(json, "after", after);
        json.endObject();
        context.console.out(json.text() + "\n");
    } else {
        context.console.out(pid + " at " + time + ": " + shown(before) + " -> " + shown(after) + "\n");
    }
    binding.report(false);
    return ExitCode::done;
}

}  // namespace vtdn::client
