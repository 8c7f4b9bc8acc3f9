#include "store/site.h"

#include <algorithm>
#include <array>
#include <map>

#include "store/connection.h"
#include "store/error.h"
#include "store/occurrence_list.h"
#include "store/reader.h"
#include "store/run_stock.h"
#include "store/writable.h"

namespace vtdn::store {
namespace {

struct Part {
    DatabaseKind kind;
    std::string SiteConnections::*connection;
    const char* file;
};

constexpr std::array<Part, 5> parts{{
    {DatabaseKind::alarm, &SiteConnections::alarm, "alarm.db"},
    {DatabaseKind::config, &SiteConnections::config, "config.db"},
    {DatabaseKind::data, &SiteConnections::data, "data.db"},
    {DatabaseKind::dataShortTerm, &SiteConnections::data_short_term, "data_short_term.db"},
    {DatabaseKind::realtime, &SiteConnections::realtime, "realtime.db"},
}};

using Databases = std::map<DatabaseKind, std::unique_ptr<Database>>;

std::string siteIdIn(Database& db) {
    Statement row(db, "SELECT site_id FROM site");
    if (!row.step())
        throw Error(ErrorKind::databaseDamaged,
                    "The database " + quote(db.file()) + " names no site. Restore it from a backup.");
    return row.text(0);
}

// SQLite's own check of a file's structure.
void checkPages(Database& db, std::vector<std::string>& sentences) {
    Statement findings(db, "PRAGMA integrity_check(10)");
    while (findings.step())
        if (const std::string finding = findings.text(0); finding != "ok")
            sentences.push_back("The database " + quote(db.file()) + " is damaged (" + finding +
                                "). Restore it from a backup.");
}

void requireCount(const Span& span, std::size_t count) {
    if (count != static_cast<std::size_t>(span.count))
        throw Error(ErrorKind::outOfRange, "A run of " + std::to_string(span.count) +
                                               " intervals was given " + std::to_string(count) + " values.");
}

}  // namespace

SiteConnections SiteConnections::inFolder(std::string_view folder) {
    SiteConnections connections;
    for (const Part& part : parts)
        connections.*part.connection = Connection::format(utf8Of(pathOf(folder) / part.file));
    return connections;
}

struct Site::State {
    std::string site_id;
    Databases databases;
    std::unique_ptr<SeriesStore> long_term;
    std::unique_ptr<SeriesStore> short_term;
    std::unique_ptr<DataPointStore> long_term_points;
    std::unique_ptr<DataPointStore> short_term_points;
    std::optional<Configuration> configuration;
    std::shared_ptr<RunStock> runs = std::make_shared<RunStock>();

    explicit State(Databases opened) : databases(std::move(opened)) {
        long_term = std::make_unique<SeriesStore>(*databases.at(DatabaseKind::data));
        short_term = std::make_unique<SeriesStore>(*databases.at(DatabaseKind::dataShortTerm));
        long_term_points = std::make_unique<DataPointStore>(*databases.at(DatabaseKind::data), *long_term);
        short_term_points =
            std::make_unique<DataPointStore>(*databases.at(DatabaseKind::dataShortTerm), *short_term);
    }
};

Site::Site(std::unique_ptr<State> state) : state_(std::move(state)) {}
Site::~Site() = default;
Site::Site(Site&&) noexcept = default;
Site& Site::operator=(Site&&) noexcept = default;

Site Site::create(const SiteConnections& connections, std::string_view site_id) {
    Databases databases;
    try {
        for (const Part& part : parts) {
            const std::string file = Connection::parse(connections.*part.connection).database;
            databases[part.kind] = std::make_unique<Database>(createDatabase(part.kind, file, site_id));
        }
        replaceMonitorCodes(*databases.at(DatabaseKind::config), {});
        auto state = std::make_unique<State>(std::move(databases));
        state->site_id = site_id;
        return Site(std::move(state));
    } catch (...) {
        for (auto& [kind, db] : databases) {
            if (!db) continue;
            const std::string file = db->file();
            db.reset();
            removeDatabase(file);
        }
        throw;
    }
}

Site::Site(const SiteConnections& connections, std::string_view site_id, const OpenOptions& options) {
    std::map<DatabaseKind, Connection> parsed;
    for (const Part& part : parts) parsed[part.kind] = Connection::parse(connections.*part.connection);
    Databases databases;
    for (const auto& [kind, connection] : parsed)
        databases[kind] = std::make_unique<Database>(openDatabase(kind, connection.database, options));
    const std::string found = siteIdIn(*databases.at(DatabaseKind::config));
    for (const auto& [kind, db] : databases) {
        const std::string expected = site_id.empty() ? found : std::string(site_id);
        if (const std::string id = siteIdIn(*db); id != expected)
            throw Error(ErrorKind::notASiteDatabase, "The database " + quote(db->file()) +
                                                         " belongs to the site " + quote(id) +
                                                         " and not to " + quote(expected) +
                                                         ". Check the connection strings and the site id.");
    }
    state_ = std::make_unique<State>(std::move(databases));
    state_->site_id = found;
}

const std::string& Site::siteId() const {
    return state_->site_id;
}

Database& Site::database(DatabaseKind kind) {
    return *state_->databases.at(kind);
}

SeriesStore& Site::storeOf(const Interval& interval) {
    return isShortTerm(interval) ? *state_->short_term : *state_->long_term;
}

DataPointStore& Site::pointsOf(const Interval& interval) {
    return isShortTerm(interval) ? *state_->short_term_points : *state_->long_term_points;
}

const Configuration& Site::configuration() {
    if (!state_->configuration) state_->configuration = Configuration::load(database(DatabaseKind::config));
    return *state_->configuration;
}

std::vector<Pid> Site::paramsOfType(std::int32_t type) {
    std::vector<Pid> pids;
    for (const auto& [pid, entry] : parameters().entries())
        if (entry.parameter.parameter_type == type) pids.push_back(pid);
    return pids;
}

const SpecialValue& Site::specialValue(Pid pid, std::int32_t id) {
    (void)parameters().entry(pid);
    return configuration().special_values.find(pid, id);
}

const ParameterRelationship* Site::relationship(Pid pid) {
    (void)parameters().entry(pid);
    return relationships().find(pid);
}

void Site::flushCache() {
    state_->configuration.reset();
}

std::int64_t Site::writeAlarm(const Alarm& alarm) {
    return store::writeAlarm(database(DatabaseKind::alarm), alarm);
}

std::vector<Alarm> Site::alarms(const AlarmFilter& filter) {
    return readAlarms(database(DatabaseKind::alarm), filter);
}

std::shared_ptr<Run> Site::borrowRun() {
    return state_->runs->lend();
}

Item Site::read(Pid pid, Time time) {
    const ParameterEntry& entry = parameters().entry(pid);
    // What has no interval of its own has the same value in every one.
    const Interval interval = entry.interval.value_or(Interval::of("s", 1));
    Run run;
    read(pid, Span{time, 1, interval}, run);
    return run.item(0);
}

void Site::read(Pid pid, const Span& span, Run& run) {
    ValueReader reader(parameters(), monitorCodes(),
                       [this](const Interval& interval) -> SeriesStore& { return storeOf(interval); });
    reader.read(pid, span, run);
}

void Site::write(Pid pid, Time time, const WriteItem& item) {
    if (item.value) requireStorable(pid, item.item.value);
    const SeriesKey key = writableSeries(parameters(), pid, nullptr);
    storeOf(key.interval).write(key, time, item);
}

void Site::write(Pid pid, const Span& span, const Run& run, std::span<const WriteParts> mask) {
    requireCount(span, static_cast<std::size_t>(run.count()));
    if (!mask.empty()) requireCount(span, mask.size());
    requireStorable(pid, run, mask);
    const SeriesKey key = writableSeries(parameters(), pid, &span.interval);
    storeOf(key.interval).write(key, span.start, run, mask);
}

std::vector<DataPoint> Site::dataPoints(Pid pid, const Interval& interval, Time first, Time last) {
    const SeriesKey key = dataPointSeries(parameters(), pid, interval);
    return pointsOf(key.interval).list(key, first, last);
}

bool Site::setExtra(Pid pid, const Interval& interval, Time time, std::string_view text,
                    const EditOrigin& origin) {
    const SeriesKey key = dataPointSeries(parameters(), pid, interval);
    pointsOf(key.interval).write(key, time, {.extra = std::string(text)}, origin);
    return true;
}

std::optional<DataPoint> Site::findDataPoint(Pid pid, const Interval& interval, Time from, Time to) {
    const SeriesKey key = dataPointSeries(parameters(), pid, interval);
    return pointsOf(key.interval).first(key, from, to);
}

void Site::saveDataPoint(const DataPointSave& save) {
    const SeriesKey key = dataPointSeries(parameters(), save.pid, save.interval);
    const PointChange change{
        .value = save.value, .code = save.code, .occurrence = save.occurrence, .may_create = save.may_create};
    (void)pointsOf(key.interval).write(key, save.time, change, save.origin);
}

OccurrenceList Site::occurrences(const OccurrenceFilter& filter) {
    const std::array<OccurrenceSource, 2> sources{
        {{database(DatabaseKind::data), *state_->long_term},
         {database(DatabaseKind::dataShortTerm), *state_->short_term}}};
    return listOccurrences(sources, parameters(), filter);
}

std::vector<Edit> Site::edits(const EditFilter& filter) {
    std::vector<Edit> all = state_->long_term_points->edits().list(filter);
    const std::vector<Edit> shorter = state_->short_term_points->edits().list(filter);
    all.insert(all.end(), shorter.begin(), shorter.end());
    std::stable_sort(all.begin(), all.end(),
                     [](const Edit& a, const Edit& b) { return a.origin.when > b.origin.when; });
    if (filter.limit && all.size() > static_cast<std::size_t>(*filter.limit))
        all.erase(all.begin() + *filter.limit, all.end());
    return all;
}

std::vector<std::string> Site::check() {
    std::vector<std::string> sentences;
    for (auto& [kind, db] : state_->databases) {
        try {
            const auto before = sentences.size();
            checkPages(*db, sentences);
            const bool values = kind == DatabaseKind::data || kind == DatabaseKind::dataShortTerm;
            if (!values || sentences.size() != before) continue;
            SeriesStore series(*db);
            for (const auto& found : {series.check(), DataPointStore(*db, series).check()})
                sentences.insert(sentences.end(), found.begin(), found.end());
        } catch (const Error& e) {
            // So damaged that it cannot even be looked at.
            sentences.emplace_back(e.what());
        }
    }
    return sentences;
}

}  // namespace vtdn::store
