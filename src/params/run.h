// Consecutive intervals of a parameter.
#pragma once

#include <string_view>

#include "com/platform.h"

namespace vtdn::params {

/// The engine places the intervals; nothing is checked here.
struct Run {
    LONG pid;
    DATE start;
    LONG count;
    std::wstring_view intervalType;
    LONG intervalLength;
};

}  // namespace vtdn::params
