// The values of a site over time, from the files in its folder values.
#pragma once

#include <cstddef>
#include <functional>
#include <vector>

#include "client/import/definition.h"
#include "client/import/problems.h"
#include "store/time.h"
#include "store/value.h"

namespace vtdn::client {

/// Takes what was read. Times ascend for each parameter.
class ValueSink {
  public:
    virtual ~ValueSink() = default;
    /// `parameter` counts the parameters of the definition from 0.
    virtual void append(std::size_t parameter, store::Time time, store::Item item) = 0;
};

/// Reads every value file and hands on the rows that keep all rules; the others are reported. Returns how
/// many intervals were handed on. `progress` is told bytes as they are read.
std::size_t readValues(const SiteFolder& folder, const SiteDefinition& definition, ValueSink& sink,
                       ImportProblems& problems, const BytesRead& progress);

}  // namespace vtdn::client
