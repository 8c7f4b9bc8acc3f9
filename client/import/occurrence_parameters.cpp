#include "client/import/occurrence_parameters.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <variant>

#include "store/error.h"
#include "store/pid_text.h"

namespace vtdn::client {

namespace {

// Special values, and the types that -3 knows.
constexpr std::int32_t tagId = -21;
constexpr std::int32_t intervalId = -13;
constexpr std::int32_t typeId = -3;
constexpr std::int32_t limitId = 1003;
constexpr std::int32_t excursionType = 3;
constexpr std::int32_t downtimeType = 4;

constexpr const char* fileName = "special_values.csv";

/// The special values of one occurrence parameter, one after the other. A wrong one is reported and gives
/// nothing.
class OccurrenceParameterReader {
  public:
    using Rows = std::map<std::pair<store::Pid, std::int32_t>, const SpecialValueRow*>;

    OccurrenceParameterReader(const KnownParameters& parameters, const Rows& rows, ImportProblems& problems)
        : parameters_(parameters), rows_(rows), problems_(problems) {}

    std::optional<OccurrenceParameter> read(store::Pid pid) {
        pid_ = pid;
        const store::Parameter* const tag =
            parameterIn(tagId, store::ParameterKind::database, "a parameter with stored values (I/O type 38)",
                        "the PID of the tag whose data points carry its occurrences");
        const auto type = typeIn();
        const auto seconds = integerIn(intervalId, "the interval of the tag in seconds");
        const store::Parameter* limit = nullptr;
        bool limitIsGood = true;
        if (const SpecialValueRow* const row = find(limitId)) {
            limit = type == OccurrenceType::downtime
                        ? refuse(*row, "is for excursions; a downtime has no limit")
                        : parameterIn(limitId, store::ParameterKind::constant,
                                      "a constant (I/O type 4 or 34)", "");
            limitIsGood = limit != nullptr;
        }
        if (!tag || !type || !seconds) return std::nullopt;
        const auto interval = intervalOf(*tag, *seconds);
        if (!interval || !limitIsGood) return std::nullopt;
        return OccurrenceParameter{pid, tag->pid, *interval, *type, limit ? limit->pid : 0};
    }

  private:
    /// The row of a special value; null where there is none, and for one that says so.
    [[nodiscard]] const SpecialValueRow* find(std::int32_t id) const {
        const auto found = rows_.find({pid_, id});
        if (found == rows_.end()) return nullptr;
        const SpecialValueRow& row = *found->second;
        const bool isNull = store::kindOf(row.entry.value) == store::SpecialValueKind::null;
        return isNull && row.good ? nullptr : &row;
    }

    /// Null, so that a value can be taken from it.
    std::nullptr_t refuse(const SpecialValueRow& row, const std::string& what) {
        problems_.add({fileName, row.line, "value",
                       "the special value " + std::to_string(row.entry.id) + " of the occurrence parameter " +
                           store::pidText(pid_) + " " + what});
        return nullptr;
    }

    std::optional<std::int32_t> integerIn(std::int32_t id, const char* meaning) {
        const SpecialValueRow* const row = find(id);
        if (!row) {
            problems_.add({fileName,
                           0,
                           {},
                           "the occurrence parameter " + store::pidText(pid_) + " needs the special value " +
                               std::to_string(id) + ", " + meaning});
            return std::nullopt;
        }
        if (!row->good) return std::nullopt;
        if (const auto* number = std::get_if<std::int32_t>(&row->entry.value)) return *number;
        refuse(*row, "has to be of the type integer");
        return std::nullopt;
    }

    const store::Parameter* parameterIn(std::int32_t id, store::ParameterKind kind, const char* kindName,
                                        const char* meaning) {
        const auto pid = integerIn(id, meaning);
        if (!pid) return nullptr;
        const store::Parameter* const found = parameters_.find(*pid);
        if (found && found->kind() == kind) return found;
        return refuse(*find(id), found
                                     ? "has to be the PID of " + std::string(kindName) + "; " +
                                           store::pidText(*pid) + " is none"
                                     : "is " + std::to_string(*pid) + ", which is no PID of parameters.csv");
    }

    std::optional<OccurrenceType> typeIn() {
        const auto type = integerIn(typeId, "its type, 3 for excursions and 4 for downtimes");
        if (!type) return std::nullopt;
        if (*type == excursionType) return OccurrenceType::excursion;
        if (*type == downtimeType) return OccurrenceType::downtime;
        refuse(*find(typeId),
               "is " + std::to_string(*type) + "; it has to be 3 for excursions or 4 for downtimes");
        return std::nullopt;
    }

    /// The interval of the tag, if that is as long as it is said to be.
    std::optional<store::Interval> intervalOf(const store::Parameter& tag, std::int32_t seconds) {
        try {
            const store::Interval interval = store::Interval::parse(tag.interval);
            if (interval.months() == 0 && interval.seconds() == seconds) return interval;
            refuse(*find(intervalId),
                   "is " + std::to_string(seconds) + "; " +
                       (interval.months() != 0
                            ? "the tag " + store::pidText(tag.pid) +
                                  " has an interval of months, which has no "
                                  "length in seconds"
                            : "it has to be " + std::to_string(interval.seconds()) +
                                  ", the interval of the tag " + store::pidText(tag.pid) + " in seconds"));
        } catch (const store::Error&) {
            // Reported with the tag.
        }
        return std::nullopt;
    }

    const KnownParameters& parameters_;
    const Rows& rows_;
    ImportProblems& problems_;
    store::Pid pid_ = 0;
};

}  // namespace

std::vector<OccurrenceParameter> readOccurrenceParameters(std::span<const store::Parameter> parameters,
                                                          std::span<const SpecialValueRow> specialValues,
                                                          ImportProblems& problems) {
    const KnownParameters known(parameters);
    OccurrenceParameterReader::Rows rows;
    for (const SpecialValueRow& row : specialValues)
        rows.emplace(std::pair(row.entry.pid, row.entry.id), &row);
    OccurrenceParameterReader reader(known, rows, problems);
    std::vector<OccurrenceParameter> found;
    for (const store::Parameter& p : parameters) {
        if (p.kind() != store::ParameterKind::occurrence) continue;
        if (const auto parameter = reader.read(p.pid)) found.push_back(*parameter);
    }
    return found;
}

}  // namespace vtdn::client
