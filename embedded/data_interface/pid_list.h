// Lists of units and PIDs as clients give them.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "com/platform.h"

namespace vtdn::embedded {

/// The numbers in a variant: one whole number, or an array of 32-bit integers or of variants that hold whole
/// numbers, with one dimension and any lower bound. Nothing, which means all there are, for Null, Empty, an
/// argument that was left out, an empty object reference and an array without memory; an array with memory
/// and without elements is a list of none. Throws error 13 for anything else. By-reference variants are
/// followed.
std::optional<std::vector<std::int32_t>> numbersIn(const VARIANT& list);

}  // namespace vtdn::embedded
