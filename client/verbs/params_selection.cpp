#include "client/verbs/params_selection.h"

#include <array>
#include <limits>

#include "client/text/numbers.h"
#include "client/verbs/read_range.h"
#include "client/verbs/typed_arguments.h"

namespace vtdn::client {

namespace {

using Kind = ParamsSelection::Kind;

void needBeside(const Arguments& arguments, std::string_view option, std::string_view list,
                const std::string& next) {
    if (arguments.has(option) && !arguments.has(list))
        throw Failure(ExitCode::usage, std::string(option) + " needs " + std::string(list) + ".", next);
}

AveragingLevel levelOf(const store::Interval& interval) {
    const EngineInterval engine = engineInterval(interval);
    if (engine.type == "m") return {AveragingLevel::Unit::minute, engine.length};
    if (engine.type == "h") return {AveragingLevel::Unit::hour, engine.length};
    if (engine.type == "d") return {AveragingLevel::Unit::day, engine.length};
    throw Failure(
        ExitCode::usage, "Nothing is related at " + interval.text() + ".",
        "The averaging levels of related parameters are minutes, hours and days, as 15m, 1h or 1d.");
}

}  // namespace

ParamsSelection paramsSelection(const Arguments& arguments) {
    constexpr std::array<std::string_view, 5> lists{"--type", "--calibration", "--linearity",
                                                    "--interference", "--related"};
    refuseTogether(arguments, lists);
    needBeside(arguments, "--part75", "--calibration",
               "--linearity and --interference are about part 75 in any case.");
    needBeside(arguments, "--interval", "--related", "For example: --related --interval 1h");
    ParamsSelection selection;
    if (const auto type = arguments.value("--type")) {
        selection.kind = Kind::type;
        selection.type = integerArgument("--type", *type, std::numeric_limits<std::int32_t>::min());
    } else if (arguments.has("--calibration")) {
        selection.kind = arguments.has("--part75") ? Kind::part75Calibration : Kind::calibration;
    } else if (arguments.has("--linearity")) {
        selection.kind = Kind::part75Linearity;
    } else if (arguments.has("--interference")) {
        selection.kind = Kind::part75Interference;
    } else if (arguments.has("--related")) {
        selection.kind = Kind::related;
        if (const auto interval = askedInterval(arguments)) selection.level = levelOf(*interval);
    }
    return selection;
}

std::string inWords(const ParamsSelection& selection) {
    switch (selection.kind) {
        case Kind::all:
            break;
        case Kind::type:
            return "has the type " + std::to_string(selection.type);
        case Kind::calibration:
            return "is a calibration parameter";
        case Kind::part75Calibration:
            return "is a calibration parameter under part 75";
        case Kind::part75Linearity:
            return "is a linearity parameter under part 75";
        case Kind::part75Interference:
            return "is an interference-check parameter under part 75";
        case Kind::related:
            return selection.level ? "is related to others at that interval" : "is related to others";
    }
    return "is there";
}

}  // namespace vtdn::client
