// Which parameters `vtdn params list` is asked for.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "client/cli/command.h"

namespace vtdn::client {

/// An averaging level, as the component's lists of related parameters take it.
struct AveragingLevel {
    enum class Unit { minute = 1, hour = 2, day = 3 } unit;
    std::int32_t count;
    friend bool operator==(const AveragingLevel&, const AveragingLevel&) = default;
};

struct ParamsSelection {
    enum class Kind {
        all,
        type,
        calibration,
        part75Calibration,
        part75Linearity,
        part75Interference,
        related
    };
    Kind kind = Kind::all;
    std::int32_t type = 0;                ///< for Kind::type
    std::optional<AveragingLevel> level;  ///< for Kind::related; nothing is every level
};

/// Reads --type, --calibration with --part75, --linearity, --interference, --related with --interval. Throws
/// Failure (usage) when two lists are asked for, and for an option that belongs to a list that is not.
ParamsSelection paramsSelection(const Arguments& arguments);

/// The list in words, behind "no parameter of the site ": "has the type 3".
std::string inWords(const ParamsSelection& selection);

}  // namespace vtdn::client
