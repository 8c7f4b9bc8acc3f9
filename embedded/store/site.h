// A site: its five databases, its parameters and monitor codes, and its values by PID.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "store/alarms.h"
#include "store/configuration.h"
#include "store/data_points.h"
#include "store/database.h"
#include "store/edits.h"
#include "store/interval.h"
#include "store/occurrence.h"
#include "store/occurrences.h"
#include "store/run.h"
#include "store/schema.h"
#include "store/series.h"
#include "store/value.h"

namespace vtdn::store {

/// Connection strings of the five databases of a site.
struct SiteConnections {
    std::string alarm;
    std::string config;
    std::string data;  ///< values of an hour and longer
    std::string data_short_term;
    std::string realtime;

    /// Databases with the usual names in one folder.
    static SiteConnections inFolder(std::string_view folder);

    friend bool operator==(const SiteConnections&, const SiteConnections&) = default;
};

/// An open site, for use by one thread at a time. Any number of programs can have the same site open; each
/// sees what another has written with its next read (metadata: after flushCache).
class Site {
  public:
    /// Makes the five databases of a new site and opens it. When anything fails, none of them is left behind.
    static Site create(const SiteConnections& connections, std::string_view site_id);

    /// Opens a site. An empty site id takes whichever site the databases belong to; otherwise they must
    /// belong to that one. Throws malformedConnection, or what openDatabase throws.
    Site(const SiteConnections& connections, std::string_view site_id, const OpenOptions& options = {});
    ~Site();
    Site(Site&&) noexcept;
    Site& operator=(Site&&) noexcept;

    [[nodiscard]] const std::string& siteId() const;
    /// For what has no member here.
    [[nodiscard]] Database& database(DatabaseKind kind);

    // Metadata. All of it is read on first use, as of one moment, and kept until flushCache(), which ends the
    // life of everything that these members refer to.

    [[nodiscard]] const Configuration& configuration();
    [[nodiscard]] const ParameterSet& parameters() { return configuration().parameters; }
    /// PIDs of the parameters of a type, ascending.
    [[nodiscard]] std::vector<Pid> paramsOfType(std::int32_t type);
    /// Null when the parameter has none of that id. Throws unknownParameter.
    [[nodiscard]] const SpecialValue& specialValue(Pid pid, std::int32_t id);
    [[nodiscard]] const RelationshipSet& relationships() { return configuration().relationships; }
    /// Null when the parameter is in no group. Throws unknownParameter.
    [[nodiscard]] const ParameterRelationship* relationship(Pid pid);
    [[nodiscard]] const MonitorCodeTable& monitorCodes() { return configuration().monitor_codes; }
    [[nodiscard]] const ParameterCodeTable& parameterCodes() { return configuration().parameter_codes; }
    /// "" for a number that no unit has.
    [[nodiscard]] const std::string& unitName(std::int32_t unit) { return configuration().units.name(unit); }
    void flushCache();

    // The alarm log (see alarms.h).

    /// Adds an entry and returns its id. On the disk when it returns.
    std::int64_t writeAlarm(const Alarm& alarm);
    /// The entries, newest first.
    [[nodiscard]] std::vector<Alarm> alarms(const AlarmFilter& filter = {});

    // Reading, for parameters of every kind. A constant has its value at every time, with code 0. Throws
    // unknownParameter, offBoundary, badInterval (an interval that the parameter has no values for),
    // outOfRange and databaseDamaged.

    /// The interval of the parameter's own length that begins at the time.
    [[nodiscard]] Item read(Pid pid, Time time);
    /// Consecutive intervals, of the parameter's own length or of a longer one that it rolls up to. The run
    /// keeps its memory: reading into the same one again allocates nothing.
    void read(Pid pid, const Span& span, Run& run);

    /// A run for read(), one that was used before when there is one: its memory is warm, which makes reading
    /// a year of minutes about a third faster. It goes back when released, and may outlive the site.
    [[nodiscard]] std::shared_ptr<Run> borrowRun();

    // Writing, for database parameters. On the disk when it returns; a run is written whole or not at all.
    // Throws unknownParameter, notWritable, offBoundary, badInterval (any but the parameter's own), badValue
    // (a number that is infinite or NaN, a text that is too long), and databaseReadOnly, databaseLocked,
    // diskFull.

    void write(Pid pid, Time time, const WriteItem& item);
    /// A run of as many intervals as the span counts, in one transaction. The mask says what is written of
    /// each interval, as many as the span counts; an empty one writes everything. What it leaves out is not
    /// looked at. Needs memory for one chunk beyond what is given. Throws outOfRange for a run or a mask of
    /// another length.
    void write(Pid pid, const Span& span, const Run& run, std::span<const WriteParts> mask = {});

    // Data points (see data_points.h), for parameters whose values are stored, at their own interval. Throws
    // what dataPointSeries throws.

    /// Every interval that begins from first to last, both included, and holds a value, a code or a text, in
    /// order of time. Any times will do. Throws what DataPointStore::list throws.
    [[nodiscard]] std::vector<DataPoint> dataPoints(Pid pid, const Interval& interval, Time first, Time last);
    /// Writes the extra-value text of the interval that begins at the time and nothing else of it; "" removes
    /// it. On the disk with its edit when it returns, and true then. Throws what DataPointStore::write
    /// throws, and databaseReadOnly, databaseLocked, diskFull.
    bool setExtra(Pid pid, const Interval& interval, Time time, std::string_view text,
                  const EditOrigin& origin);
    /// The first interval that begins from one time to the other, both included, and has anything stored.
    /// Throws what dataPoints throws.
    [[nodiscard]] std::optional<DataPoint> findDataPoint(Pid pid, const Interval& interval, Time from,
                                                         Time to);
    /// Writes value, code and occurrence of an interval in one transaction, with its edit when anything
    /// changes; the extra value stays. On the disk when it returns. Throws what dataPointSeries throws,
    /// offBoundary, outOfRange, badValue (also for an occurrence text that is none), unknownDataPoint when
    /// nothing is stored of the interval and none may be made, databaseDamaged when what is stored already
    /// cannot be read (it is then left as it is), databaseReadOnly, databaseLocked, diskFull.
    void saveDataPoint(const DataPointSave& save);
    /// The occurrences of all tags that the site knows, of all intervals. Throws outOfRange for a span that
    /// ends before it starts, leaves the years 100 to 9999 or has more than mostDataPoints occurrences, and
    /// unknownParameter.
    [[nodiscard]] OccurrenceList occurrences(const OccurrenceFilter& filter);
    /// The edits, newest first; of one moment the one that was written last first. Throws outOfRange for a
    /// limit below 0 or a span that ends before it starts, and databaseDamaged.
    [[nodiscard]] std::vector<Edit> edits(const EditFilter& filter = {});

    /// Reads everything and returns a sentence for each damage that was found.
    [[nodiscard]] std::vector<std::string> check();

  private:
    friend class Load;
    struct State;
    explicit Site(std::unique_ptr<State> state);
    [[nodiscard]] SeriesStore& storeOf(const Interval& interval);
    [[nodiscard]] DataPointStore& pointsOf(const Interval& interval);

    std::unique_ptr<State> state_;
};

/// A load of parameters, codes and values into a site, all or nothing: whatever was given is undone unless
/// commit() was called. Readers see the site as it was until then. One transaction per database, committed
/// values first and metadata last, so that a power cut between them leaves values that nobody refers to yet.
class Load {
  public:
    explicit Load(Site& site);
    ~Load();
    Load(const Load&) = delete;
    Load& operator=(const Load&) = delete;

    // These in the place of all that the site has. Parameters before their special values and relationships:
    // replaceParameters removes those of the old parameters.

    void replaceUnits(std::span<const UnitName> units);
    void replaceMonitorCodes(std::span<const MonitorCodeName> codes);
    void replaceParameterCodes(std::span<const ParameterCodeName> codes);
    void replaceParameters(std::span<const Parameter> parameters);
    void replaceSpecialValues(std::span<const SpecialValueEntry> entries);
    void replaceRelationships(std::span<const Relationship> relationships);

    /// One interval of a database parameter. Times of one parameter must ascend; parameters may be mixed.
    /// Throws what Site::write throws, and outOfRange for a time that is not behind the one before.
    void append(Pid pid, Time time, const Item& item);
    /// The occurrence of one interval of a tag, with its edit when it is not there already; value, code and
    /// extra value stay. Throws what Site::saveDataPoint throws.
    void writeOccurrence(Pid tag, Time time, const Occurrence& occurrence, const EditOrigin& origin);
    void commit();

  private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace vtdn::store
