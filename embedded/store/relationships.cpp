#include "store/relationships.h"

#include <algorithm>
#include <optional>
#include <set>

#include "store/error.h"
#include "store/pid_text.h"
#include "store/strict_row.h"
#include "store/xml.h"

namespace vtdn::store {
namespace {

[[noreturn]] void refuse(Pid pid, const std::string& why) {
    throw Error(ErrorKind::badParameter, "The parameter " + pidText(pid) + " " + why);
}

struct Level {
    std::int32_t count;
    const char* unit;
};

// The interval as relationships say it; nothing when they cannot.
std::optional<Level> levelOf(const ParameterEntry& entry) {
    if (!entry.interval || entry.interval->seconds() == 0) return std::nullopt;
    const Time seconds = entry.interval->seconds();
    constexpr std::pair<Time, const char*> units[] = {{secondsPerDay, "d"}, {3600, "h"}, {60, "n"}};
    for (const auto& [length, unit] : units)
        if (seconds % length == 0) return Level{static_cast<std::int32_t>(seconds / length), unit};
    return std::nullopt;
}

// Which parameters belong together, as a forest whose roots stand for the groups.
class Groups {
  public:
    explicit Groups(std::span<const Relationship> relationships) {
        for (const Relationship& r : relationships) {
            add(r.pid);
            add(r.related);
            above_[rootOf(r.pid)] = rootOf(r.related);
        }
    }

    [[nodiscard]] bool areTogether(Pid a, Pid b) {
        return above_.contains(a) && above_.contains(b) && rootOf(a) == rootOf(b);
    }
    /// The members of each group, ascending by PID.
    [[nodiscard]] std::map<Pid, std::vector<Pid>> members() {
        std::map<Pid, std::vector<Pid>> groups;
        for (auto& [pid, above] : above_) groups[rootOf(pid)].push_back(pid);
        return groups;
    }

  private:
    void add(Pid pid) { above_.emplace(pid, pid); }
    Pid rootOf(Pid pid) {
        Pid root = pid;
        while (above_.at(root) != root) root = above_.at(root);
        // The next look-up goes straight to the root, so that long chains do not cost their square.
        while (pid != root) pid = std::exchange(above_.at(pid), root);
        return root;
    }

    std::map<Pid, Pid> above_;
};

void checkPair(const Relationship& r, const ParameterSet& parameters) {
    for (const Pid pid : {r.pid, r.related})
        if (!parameters.contains(pid)) refuse(pid, "has a relationship and does not exist.");
    if (r.pid == r.related) refuse(r.pid, "is related to itself.");
    if (parameters.entry(r.pid).interval == parameters.entry(r.related).interval)
        refuse(r.pid,
               "has the same interval as " + pidText(r.related) +
                   ", to which it is related. Related parameters are averaging levels of one quantity.");
}

void checkMember(const ParameterEntry& entry, Groups& groups) {
    const Parameter& p = entry.parameter;
    if (p.kind() == ParameterKind::constant)
        refuse(p.pid, "is a constant and has a relationship. Constants have no averaging level.");
    if (!levelOf(entry))
        refuse(p.pid, (p.interval.empty() ? "has no interval" : "has the interval " + p.interval) +
                          " and a relationship. Related parameters have intervals of whole minutes, hours or "
                          "days.");
    if (p.kind() != ParameterKind::calculated) return;
    if (p.calculation == Aggregation::none || !groups.areTogether(p.pid, p.uses.at(0)))
        refuse(p.pid,
               "has a relationship and is computed from something else than a parameter that it is related "
               "to. Make it an aggregation of one of them, or leave the relationship out.");
}

void appendLevel(std::string& xml, const ParameterEntry& entry) {
    const Parameter& p = entry.parameter;
    const Level level = levelOf(entry).value();
    xml += "<Parameter";
    appendAttribute(xml, "PID", pidListText(p.pid));
    appendAttribute(xml, "Name", p.name);
    appendAttribute(xml, "IntervalCount", std::to_string(level.count));
    appendAttribute(xml, "IntervalUnit", level.unit);
    appendAttribute(xml, "Units", p.units);
    const bool computed = p.kind() == ParameterKind::calculated;
    appendAttribute(xml, "Computation", computed ? nameOf(p.calculation) : "stored");
    if (computed) appendAttribute(xml, "SourcePID", pidListText(p.uses.at(0)));
    xml += "/>";
}

std::string detailOf(std::vector<Pid> group, const ParameterSet& parameters) {
    std::stable_sort(group.begin(), group.end(), [&](Pid a, Pid b) {
        return parameters.entry(a).interval->seconds() < parameters.entry(b).interval->seconds();
    });
    std::string xml = "<Relationship>";
    for (const Pid pid : group) appendLevel(xml, parameters.entry(pid));
    return xml + "</Relationship>";
}

}  // namespace

void checkRelationships(std::span<const Relationship> relationships, const ParameterSet& parameters) {
    std::set<std::pair<Pid, Pid>> seen;
    for (const Relationship& r : relationships) {
        checkPair(r, parameters);
        if (!seen.insert(std::minmax(r.pid, r.related)).second)
            refuse(r.pid, "is related to " + pidText(r.related) + " twice.");
    }
    Groups groups(relationships);
    for (const auto& [root, members] : groups.members())
        for (const Pid pid : members) checkMember(parameters.entry(pid), groups);
}

RelationshipSet RelationshipSet::load(Database& config, const ParameterSet& parameters) {
    std::vector<Relationship> relationships;
    Statement rows(config, "SELECT pid, related_pid FROM relationship ORDER BY pid, related_pid");
    const StrictRow row(config, rows, "a relationship");
    while (rows.step()) relationships.push_back({row.integer(0), row.integer(1)});
    try {
        checkRelationships(relationships, parameters);
    } catch (const Error& e) {
        throw Error(ErrorKind::databaseDamaged,
                    "The database " + quote(config.file()) +
                        " holds a relationship that is not accepted. Restore it from a backup, or import the "
                        "relationships again. " +
                        e.what());
    }
    RelationshipSet set;
    for (const auto& [root, members] : Groups(relationships).members()) {
        const auto detail = std::make_shared<const std::string>(detailOf(members, parameters));
        for (const Pid pid : members) {
            const Level level = levelOf(parameters.entry(pid)).value();
            set.relationships_[pid] = {level.count, level.unit, detail};
        }
    }
    return set;
}

const ParameterRelationship* RelationshipSet::find(Pid pid) const {
    const auto found = relationships_.find(pid);
    return found == relationships_.end() ? nullptr : &found->second;
}

void replaceRelationships(Database& config, std::span<const Relationship> relationships) {
    Transaction transaction(config);
    checkRelationships(relationships, ParameterSet::load(config));
    config.execute("DELETE FROM relationship");
    Statement insert(config, "INSERT INTO relationship (pid, related_pid) VALUES (?, ?)");
    for (const Relationship& r : relationships) insert.bindAll(r.pid, r.related).run();
    transaction.commit();
}

}  // namespace vtdn::store
