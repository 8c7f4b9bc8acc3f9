#include "store/occurrence_list.h"

#include <algorithm>
#include <list>
#include <map>
#include <tuple>

#include "common/pid.h"
#include "store/data_points.h"
#include "store/error.h"
#include "store/pid_text.h"
#include "store/point_texts.h"

namespace vtdn::store {
namespace {

constexpr std::int32_t highestUnit = 19;

// What OccurrenceFilter::units_or_tags asks for.
class Wanted {
  public:
    Wanted(const std::optional<std::vector<std::int32_t>>& numbers, const ParameterSet& parameters)
        : everything_(!numbers) {
        if (everything_) return;
        for (const std::int32_t number : *numbers) {
            const bool unit = number >= 0 && number <= highestUnit;
            if (!unit) (void)parameters.entry(number);
            (unit ? units_ : pids_).push_back(number);
        }
        std::sort(units_.begin(), units_.end());
        std::sort(pids_.begin(), pids_.end());
    }

    /// Whether everything of a tag is wanted.
    [[nodiscard]] bool tag(Pid pid) const {
        return everything_ || part(pid) ||
               std::binary_search(units_.begin(), units_.end(), common::pidField(pid, 1));
    }
    /// Whether parts of a PID are wanted, whatever their tag.
    [[nodiscard]] bool part(Pid pid) const { return std::binary_search(pids_.begin(), pids_.end(), pid); }
    /// Whether parts of any PID are.
    [[nodiscard]] bool parts() const { return !pids_.empty(); }

  private:
    bool everything_;
    std::vector<std::int32_t> units_;
    std::vector<Pid> pids_;
};

// A series of one of the databases.
struct Place {
    const OccurrenceSource* source;
    std::int64_t series;
    SeriesKey key;
};

std::vector<Place> placesOf(std::span<const OccurrenceSource> sources, const ParameterSet& parameters,
                            const Wanted& wanted) {
    std::vector<Place> places;
    for (const OccurrenceSource& source : sources)
        for (const auto& [series, key] : source.series.keys())
            if (parameters.contains(key.pid) && (wanted.tag(key.pid) || wanted.parts()))
                places.push_back({&source, series, key});
    // A month is longer than any interval of seconds that is stored.
    const auto rank = [](const Place& place) {
        return std::tuple(place.key.pid, place.key.interval.months(), place.key.interval.seconds());
    };
    std::sort(places.begin(), places.end(),
              [&](const Place& a, const Place& b) { return rank(a) < rank(b); });
    return places;
}

// One listing: takes the places one by one, in order.
class Listing {
  public:
    Listing(const OccurrenceFilter& filter, const Wanted& wanted) : filter_(filter), wanted_(wanted) {}

    void take(const Place& place, Statement& rows) {
        times_.clear();
        texts_.clear();
        const ResetAtEnd reset(rows);
        rows.bindAll(place.series, filter_.first, filter_.last);
        while (rows.step()) takeRow(place, rows);
        if (times_.empty()) return;
        auto& rows_found = list_.rows;
        if (rows_found.capacity() - rows_found.size() < times_.size())
            rows_found.reserve(std::max(rows_found.size() + times_.size(), 2 * rows_found.capacity()));
        starts_.push_back(rows_found.size());
        place.source->series.forEachAt(place.key, times_, list_.damages, [&](std::size_t i, Item item) {
            rows_found.push_back({place.key.pid, place.key.interval, times_[i], std::move(item), texts_[i]});
        });
    }

    /// Rows were taken in order of tag, interval and time.
    OccurrenceList finish() {
        if (!filter_.by_tag) orderByTime();
        return std::move(list_);
    }

  private:
    void takeRow(const Place& place, const Statement& rows) {
        try {
            const Database& db = place.source->db;
            const PointTextsView row = readPointTexts(db, rows, place.key, place.series);
            const bool old = row.summary.parts == 0;  // a text from before there were summaries
            if (!passes(place.key.pid, old ? checkedSummary(db, place.key, row) : row.summary)) return;
            if (list_.rows.size() + times_.size() == mostDataPoints)
                throw Error(ErrorKind::outOfRange, "The span has more than " +
                                                       std::to_string(mostDataPoints) +
                                                       " occurrences. Ask for a shorter one.");
            times_.push_back(row.time);
            texts_.push_back(list_.texts.add(row.occurrence));
        } catch (const Error& damage) {
            if (damage.kind() != ErrorKind::databaseDamaged) throw;
            list_.damages.emplace_back(damage.what());
        }
    }

    [[nodiscard]] bool passes(Pid tag, const OccurrenceSummary& summary) const {
        using S = OccurrenceSummary;
        const bool excursion = filter_.excursions && passes(summary, S::excursion, S::excursion_excludable);
        const bool downtime = filter_.downtimes && passes(summary, S::downtime, S::downtime_excludable);
        if (!excursion && !downtime) return false;
        return wanted_.tag(tag) || (excursion && wanted_.part(summary.excursion_pid)) ||
               (downtime && wanted_.part(summary.downtime_pid));
    }

    [[nodiscard]] bool passes(const OccurrenceSummary& summary, std::int64_t part,
                              std::int64_t excludable) const {
        if (!summary.has(part)) return false;
        return filter_.exclude == ExcludeFilter::none ||
               summary.has(excludable) == (filter_.exclude == ExcludeFilter::counted);
    }

    // What was taken of each place is in order already. Rows are heavy: the order is found on their times and
    // places alone.
    void orderByTime() {
        if (starts_.size() < 2) return;
        auto& rows = list_.rows;
        std::vector<std::pair<Time, std::size_t>> order;
        order.reserve(rows.size());
        for (std::size_t i = 0; i < rows.size(); ++i) order.emplace_back(rows[i].time, i);
        starts_.push_back(rows.size());
        const auto at = [&](std::size_t start) {
            return order.begin() + static_cast<std::ptrdiff_t>(starts_[std::min(start, starts_.size() - 1)]);
        };
        for (std::size_t width = 1; width < starts_.size() - 1; width *= 2)
            for (std::size_t i = 0; i + width < starts_.size(); i += 2 * width)
                std::inplace_merge(at(i), at(i + width), at(i + 2 * width));
        // Each row that is not in its place starts a ring of rows of which each goes to the place of the one
        // before.
        for (std::size_t i = 0; i < rows.size(); ++i) {
            if (order[i].second == i) continue;
            OccurrenceRow first = std::move(rows[i]);
            std::size_t free = i;
            for (std::size_t from = order[i].second; from != i; from = order[free].second) {
                rows[free] = std::move(rows[from]);
                order[free].second = free;
                free = from;
            }
            rows[free] = std::move(first);
            order[free].second = free;
        }
    }

    const OccurrenceFilter& filter_;
    const Wanted& wanted_;
    OccurrenceList list_;
    std::vector<std::size_t> starts_;  // where in it the rows of each place begin
    // Of the place that is being taken.
    std::vector<Time> times_;
    std::vector<std::string_view> texts_;
};

}  // namespace

OccurrenceList listOccurrences(std::span<const OccurrenceSource> sources, const ParameterSet& parameters,
                               const OccurrenceFilter& filter) {
    requireTimes(filter.first, filter.last);
    const Wanted wanted(filter.units_or_tags, parameters);
    std::list<Snapshot> snapshots;
    std::map<const OccurrenceSource*, Statement> rows;
    for (const OccurrenceSource& source : sources) {
        snapshots.emplace_back(source.db);
        // Either column alone would hide a row of which it is damaged.
        rows.emplace(&source, Statement(source.db,
                                        "SELECT " + std::string(pointTextColumns) +
                                            " FROM data_point_text WHERE series = ? AND time BETWEEN ? AND ? "
                                            "AND (parts IS NOT 0 OR occurrence IS NOT '') ORDER BY time"));
    }
    Listing listing(filter, wanted);
    for (const Place& place : placesOf(sources, parameters, wanted))
        listing.take(place, rows.at(place.source));
    return listing.finish();
}

}  // namespace vtdn::store
