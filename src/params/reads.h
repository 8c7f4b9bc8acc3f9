// Reads of stored data: one interval as text, or a run of intervals into arrays of the client.
#pragma once

#include "binding/session.h"
#include "com/client_array.h"
#include "params/run.h"

namespace vtdn::params {

/// Reads one interval. `value` comes in as "" and `mc` as 0, and both stay so unless the result is true. Any
/// failure ends here: it gives false and no problem.
bool readText(binding::Session& session, std::int32_t pid, DATE start, com::Bstr& value, LONG& mc) noexcept;

// Reads of a run. The arrays become 0 to count - 1, one element for each interval, in the order of the
// arguments; they are not touched before set-up and for an unknown PID. A value that cannot be converted is 0
// and flagged, or
// "". Monitor codes are always real.

/// Whole numbers are from -32768 to 32767; values beyond do not convert.
bool readIntegers(binding::Session& session, const Run& run, com::ClientArray<LONG> values,
                  com::ClientArray<LONG> mcs, com::ClientArray<VARIANT_BOOL> nonNumeric);
bool readSingles(binding::Session& session, const Run& run, com::ClientArray<float> values,
                 com::ClientArray<LONG> mcs, com::ClientArray<VARIANT_BOOL> nonNumeric);
bool readTexts(binding::Session& session, const Run& run, com::ClientArray<BSTR> values,
               com::ClientArray<LONG> mcs);

}  // namespace vtdn::params
