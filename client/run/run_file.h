// A run of one parameter from a CSV file, in the form that `vtdn read --csv` prints.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "client/import/csv_reader.h"
#include "client/import/problems.h"
#include "store/interval.h"
#include "store/series.h"

namespace vtdn::client {

/// Consecutive intervals that are written at once. Some may be there only because their neighbours are:
/// neither their value nor their code is written.
struct WrittenRun {
    store::Time start = 0;
    std::vector<store::WriteItem> items;
};

/// Rows that are further apart than this are written as two runs: the intervals between would cost more than
/// a second request.
inline constexpr std::int64_t widestGap = 1440;

struct RunFileRequest {
    std::string name;  ///< as problems show it
    ByteSource bytes;
    store::Pid pid;
    store::Interval interval;
    std::function<bool(store::MonitorCode)> knowsCode;
    /// Whether a text that is no number in a file is one to whoever writes it.
    std::function<bool(const std::string&)> readsAsNumber;
    std::size_t problemLimit = 20;  ///< reading ends after this many
};

struct RunFile {
    std::vector<WrittenRun> runs;  ///< ascending; nothing when there are problems
    std::vector<ImportProblem> problems;
    bool moreProblems = false;  ///< reading ended at the limit
    // What the rows ask for.
    std::size_t values = 0;  ///< numbers and texts
    std::size_t noValues = 0;
    std::size_t codes = 0;
};

/// Reads and checks all rows. The columns are "time", the values under the PID or "value", and the monitor
/// codes under the PID with " mc" behind it or "mc"; either of these two may be missing, and columns of other
/// PIDs are passed over. An empty value is no value, an empty code leaves the stored one. Throws what the
/// source of the bytes throws.
RunFile readRunFile(const RunFileRequest& request);

}  // namespace vtdn::client
