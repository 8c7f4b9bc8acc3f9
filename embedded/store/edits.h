// The edit log: who changed a data point when, and what of it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "store/database.h"
#include "store/interval.h"
#include "store/time.h"
#include "store/value.h"

namespace vtdn::store {

/// Where an edit comes from. Texts are UTF-8, counted, and kept as given.
struct EditOrigin {
    Time when = 0;       ///< local standard time
    std::string source;  ///< the program or the action
    std::string user;

    friend bool operator==(const EditOrigin&, const EditOrigin&) = default;
};

/// What of a data point an edit changed: flags.
enum class EditedParts : std::uint8_t { none = 0, value = 1, code = 2, occurrence = 4, extra = 8 };

[[nodiscard]] constexpr EditedParts operator|(EditedParts a, EditedParts b) {
    return static_cast<EditedParts>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}
constexpr EditedParts& operator|=(EditedParts& a, EditedParts b) {
    return a = a | b;
}
/// Whether all of the parts are among them.
[[nodiscard]] constexpr bool includes(EditedParts all, EditedParts parts) {
    return (static_cast<unsigned>(all) & static_cast<unsigned>(parts)) == static_cast<unsigned>(parts);
}

struct Edit {
    std::int64_t id;  ///< ascending in the order of writing, in each data database from 1
    EditOrigin origin;
    Pid pid;
    Interval interval;
    Time time;  ///< beginning of the interval that was edited
    EditedParts parts;

    friend bool operator==(const Edit&, const Edit&) = default;
};

/// Which edits are wanted.
struct EditFilter {
    std::optional<Pid> pid = std::nullopt;             ///< of this tag
    std::optional<Time> from = std::nullopt;           ///< of intervals that do not begin before this time
    std::optional<Time> to = std::nullopt;             ///< of intervals that begin before this time
    std::optional<std::int32_t> limit = std::nullopt;  ///< so many of the newest, from 0 on
};

/// Throws outOfRange for a time outside the years 100 to 9999 and badValue for a text over longestText.
void requireStorable(const EditOrigin& origin);

/// The edit log of one data database.
class EditLog {
  public:
    explicit EditLog(Database& db);

    /// Inside a transaction. `series` is the number of the tag and its interval in this database.
    void add(std::int64_t series, Time time, EditedParts parts, const EditOrigin& origin);
    /// Newest first; of one moment the one that was written last first. Throws outOfRange for a limit below 0
    /// or a span that ends before it starts, and databaseDamaged.
    [[nodiscard]] std::vector<Edit> list(const EditFilter& filter);
    /// Reads all edits and returns a sentence for each one that is damaged.
    [[nodiscard]] std::vector<std::string> check();

  private:
    [[nodiscard]] Edit read(const Statement& row) const;

    Database& db_;
    Statement add_;
};

}  // namespace vtdn::store
