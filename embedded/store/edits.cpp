#include "store/edits.h"

#include <array>
#include <limits>

#include "store/chunk.h"
#include "store/error.h"
#include "store/strict_row.h"

namespace vtdn::store {
namespace {

constexpr auto anyPart =
    EditedParts::value | EditedParts::code | EditedParts::occurrence | EditedParts::extra;

// What Edit is read from, of an edit without a tag too.
constexpr const char* select =
    "SELECT edit.id, series, time, parts, edited, source, user, checksum, pid, interval "
    "FROM edit LEFT JOIN series ON series.id = edit.series WHERE TRUE";

std::int64_t checksumOf(std::int64_t series, Time time, std::int64_t parts, const EditOrigin& origin) {
    const std::array<std::int64_t, 4> numbers{series, time, parts, origin.when};
    std::uint32_t sum = checksum(std::as_bytes(std::span(numbers)), 0);
    for (const std::string* text : {&origin.source, &origin.user})
        sum = checksum(std::as_bytes(std::span(*text)), sum);
    return sum;
}

}  // namespace

void requireStorable(const EditOrigin& origin) {
    if (origin.when < earliestTime || origin.when > latestTime)
        throw Error(ErrorKind::outOfRange, "The time of an edit is outside the years 100 to 9999.");
    for (const std::string* text : {&origin.source, &origin.user})
        if (text->size() > longestText)
            throw Error(ErrorKind::badValue,
                        "The source or the user of an edit has " + std::to_string(text->size()) +
                            " bytes. The longest that is stored has " + std::to_string(longestText) + ".");
}

EditLog::EditLog(Database& db)
    : db_(db),
      add_(db,
           "INSERT INTO edit (series, time, parts, edited, source, user, checksum) "
           "VALUES (?, ?, ?, ?, ?, ?, ?)") {}

void EditLog::add(std::int64_t series, Time time, EditedParts parts, const EditOrigin& origin) {
    const auto number = static_cast<std::int64_t>(parts);
    add_.bindAll(series, time, number, origin.when, origin.source, origin.user,
                 checksumOf(series, time, number, origin))
        .run();
}

Edit EditLog::read(const Statement& row) const {
    const StrictRow columns(db_, row, "an edit");
    const auto series = columns.number(1, 1, std::numeric_limits<std::int64_t>::max());
    const auto parts = columns.number(3, 1, static_cast<std::int64_t>(anyPart));
    Edit edit{columns.number(0, 1, std::numeric_limits<std::int64_t>::max()),
              {columns.number(4, earliestTime, latestTime), columns.text(5), columns.text(6)},
              columns.integer(8),
              Interval::parse(columns.text(9)),
              columns.number(2, earliestTime, latestTime),
              static_cast<EditedParts>(parts)};
    // Read as a number of the range that a good checksum has; another one is never equal.
    const auto found = columns.number(7, 0, std::numeric_limits<std::uint32_t>::max());
    if (found != checksumOf(series, edit.time, parts, edit.origin))
        throw Error(ErrorKind::databaseDamaged, "The database " + quote(db_.file()) + " holds an edit of " +
                                                    timeText(edit.origin.when) +
                                                    " that is damaged. Restore it from a backup.");
    return edit;
}

std::vector<Edit> EditLog::list(const EditFilter& filter) {
    if (filter.limit && *filter.limit < 0)
        throw Error(ErrorKind::outOfRange, "A limit of " + std::to_string(*filter.limit) +
                                               " edits is not accepted. Give 0 or more.");
    if (filter.from && filter.to && *filter.to < *filter.from)
        throw Error(ErrorKind::outOfRange, "The span that edits are wanted for ends before it starts.");
    std::string sql = select;
    // A bound that was not asked for is left out, so that a row whose column is damaged is met.
    if (filter.pid) sql += " AND pid = ?1";
    if (filter.from) sql += " AND time >= ?2";
    if (filter.to) sql += " AND time < ?3";
    sql += " ORDER BY edited DESC, edit.id DESC";
    if (filter.limit) sql += " LIMIT ?4";
    Statement rows(db_, sql);
    if (filter.pid) rows.bind(1, *filter.pid);
    if (filter.from) rows.bind(2, *filter.from);
    if (filter.to) rows.bind(3, *filter.to);
    if (filter.limit) rows.bind(4, *filter.limit);
    std::vector<Edit> found;
    while (rows.step()) found.push_back(read(rows));
    return found;
}

std::vector<std::string> EditLog::check() {
    std::vector<std::string> sentences;
    Statement rows(db_, select);
    while (rows.step()) {
        try {
            (void)read(rows);
        } catch (const Error& damage) {
            sentences.emplace_back(damage.what());
        }
    }
    return sentences;
}

}  // namespace vtdn::store
