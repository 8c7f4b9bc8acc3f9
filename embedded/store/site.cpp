#include "store/site.h"

#include <array>
#include <cmath>
#include <map>
#include <mutex>

#include "store/connection.h"
#include "store/error.h"
#include "store/pid_text.h"
#include "store/reader.h"

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

void requireFinite(Pid pid, double number) {
    if (!std::isfinite(number))
        throw Error(ErrorKind::badValue, "A number that is infinite or undefined cannot be stored for " +
                                             pidText(pid) + ". Write no value instead.");
}

void requireStorable(Pid pid, const Value& value) {
    if (const auto number = numberOf(value)) requireFinite(pid, *number);
}

// The series of a database parameter, with the interval that a writer names checked against its own.
SeriesKey writableSeries(const ParameterSet& parameters, Pid pid, const Interval* asked) {
    const ParameterEntry& entry = parameters.entry(pid);
    if (entry.parameter.kind() != ParameterKind::database)
        throw Error(ErrorKind::notWritable,
                    pidText(pid) +
                        " is a constant or computed; only values of database parameters (I/O "
                        "type 38) are stored.");
    if (asked != nullptr && *asked != *entry.interval)
        throw Error(ErrorKind::badInterval, "Values of " + pidText(pid) + " are stored for intervals of " +
                                                entry.interval->text() + " and not of " + asked->text() +
                                                ".");
    return {pid, *entry.interval};
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

// Used runs. What is lent holds on to the stock only weakly, so that it can be released after the site.
class RunStock : public std::enable_shared_from_this<RunStock> {
  public:
    std::shared_ptr<Run> lend() {
        std::unique_ptr<Run> run = take();
        if (!run) run = std::make_unique<Run>();
        return {run.release(),
                [stock = weak_from_this()](Run* used) { giveBack(stock, std::unique_ptr<Run>(used)); }};
    }

  private:
    static constexpr std::size_t most = 2;
    static constexpr std::size_t largest = 16 << 20;  // bytes of a run that is worth keeping

    std::unique_ptr<Run> take() {
        const std::lock_guard lock(mutex_);
        if (runs_.empty()) return nullptr;
        auto run = std::move(runs_.back());
        runs_.pop_back();
        return run;
    }
    static void giveBack(const std::weak_ptr<RunStock>& stock, std::unique_ptr<Run> run) {
        const auto self = stock.lock();
        if (!self || run->memory() > largest) return;
        run->clear();
        const std::lock_guard lock(self->mutex_);
        if (self->runs_.size() < self->runs_.capacity()) self->runs_.push_back(std::move(run));
    }

    std::mutex mutex_;  // a run may be released on another thread than the site's
    std::vector<std::unique_ptr<Run>> runs_ = makeRoom();

    // Giving back must not fail: the room is there from the beginning.
    static std::vector<std::unique_ptr<Run>> makeRoom() {
        std::vector<std::unique_ptr<Run>> room;
        room.reserve(most);
        return room;
    }
};

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
    std::optional<ParameterSet> parameters;
    std::optional<MonitorCodeTable> codes;
    std::shared_ptr<RunStock> runs = std::make_shared<RunStock>();

    explicit State(Databases opened) : databases(std::move(opened)) {
        long_term = std::make_unique<SeriesStore>(*databases.at(DatabaseKind::data));
        short_term = std::make_unique<SeriesStore>(*databases.at(DatabaseKind::dataShortTerm));
    }
    SeriesStore& storeOf(const Interval& interval) {
        return isShortTerm(interval) ? *short_term : *long_term;
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

const ParameterSet& Site::parameters() {
    if (!state_->parameters) state_->parameters = ParameterSet::load(database(DatabaseKind::config));
    return *state_->parameters;
}

const MonitorCodeTable& Site::monitorCodes() {
    if (!state_->codes) state_->codes = MonitorCodeTable::load(database(DatabaseKind::config));
    return *state_->codes;
}

void Site::flushCache() {
    state_->parameters.reset();
    state_->codes.reset();
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
    ValueReader reader(parameters(), monitorCodes(), [this](const Interval& interval) -> SeriesStore& {
        return state_->storeOf(interval);
    });
    reader.read(pid, span, run);
}

void Site::write(Pid pid, Time time, const WriteItem& item) {
    if (item.value) requireStorable(pid, item.item.value);
    const SeriesKey key = writableSeries(parameters(), pid, nullptr);
    state_->storeOf(key.interval).write(key, time, item);
}

void Site::write(Pid pid, const Span& span, std::span<const WriteItem> items) {
    requireCount(span, items.size());
    for (const WriteItem& item : items)
        if (item.value) requireStorable(pid, item.item.value);
    const SeriesKey key = writableSeries(parameters(), pid, &span.interval);
    state_->storeOf(key.interval).write(key, span.start, items);
}

void Site::write(Pid pid, const Span& span, std::span<const float> values,
                 std::span<const MonitorCode> codes) {
    requireCount(span, values.size());
    requireCount(span, codes.size());
    for (const float value : values) requireFinite(pid, static_cast<double>(value));
    const SeriesKey key = writableSeries(parameters(), pid, &span.interval);
    state_->storeOf(key.interval).write(key, span.start, values, codes);
}

std::vector<std::string> Site::check() {
    std::vector<std::string> sentences;
    for (auto& [kind, db] : state_->databases) {
        try {
            const auto before = sentences.size();
            checkPages(*db, sentences);
            const bool values = kind == DatabaseKind::data || kind == DatabaseKind::dataShortTerm;
            if (values && sentences.size() == before)
                for (std::string& sentence : SeriesStore(*db).check())
                    sentences.push_back(std::move(sentence));
        } catch (const Error& e) {
            // So damaged that it cannot even be looked at.
            sentences.emplace_back(e.what());
        }
    }
    return sentences;
}

struct Load::State {
    Site& site;
    // Ended in the opposite order.
    Transaction config;
    Transaction data;
    Transaction short_term;
    std::map<Pid, SeriesStore::Appender> appenders;

    explicit State(Site& s)
        : site(s),
          config(s.database(DatabaseKind::config)),
          data(s.database(DatabaseKind::data)),
          short_term(s.database(DatabaseKind::dataShortTerm)) {}
    // What the site keeps in memory may be of this load.
    ~State() { site.flushCache(); }
};

Load::Load(Site& site) : state_(std::make_unique<State>(site)) {}
Load::~Load() = default;

void Load::replaceMonitorCodes(std::span<const MonitorCodeName> codes) {
    store::replaceMonitorCodes(state_->site.database(DatabaseKind::config), codes);
    state_->site.flushCache();
}

void Load::replaceParameters(std::span<const Parameter> parameters) {
    store::replaceParameters(state_->site.database(DatabaseKind::config), parameters);
    state_->site.flushCache();
}

void Load::append(Pid pid, Time time, Item item) {
    requireStorable(pid, item.value);
    auto at = state_->appenders.find(pid);
    if (at == state_->appenders.end()) {
        const SeriesKey key = writableSeries(state_->site.parameters(), pid, nullptr);
        SeriesStore& store = state_->site.state_->storeOf(key.interval);
        at = state_->appenders.emplace(pid, SeriesStore::Appender(store, key)).first;
    }
    at->second.append(time, std::move(item));
}

void Load::commit() {
    for (auto& [pid, appender] : state_->appenders) appender.finish();
    state_->short_term.commit();
    state_->data.commit();
    state_->config.commit();
}

}  // namespace vtdn::store
