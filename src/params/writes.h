// Writes of one interval.
#pragma once

#include <optional>

#include "binding/session.h"
#include "params/write_kinds.h"

namespace vtdn::params {

/// What goes into the interval; the value before the monitor code.
struct Content {
    std::optional<com::Variant> value = std::nullopt;
    std::optional<LONG> mc = std::nullopt;
};

/// Stores the content in the interval at a time. True once the engine has taken it; false, and one problem,
/// when the monitor code (which is given where the kind checks it), the PID or the I/O type fails its check,
/// in this order.
bool write(binding::Session& session, const WriteKind& kind, std::int32_t pid, DATE time,
           const Content& content);

}  // namespace vtdn::params
