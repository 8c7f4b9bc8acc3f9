// Relationships: which parameters are averaging levels of one quantity.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "store/database.h"
#include "store/parameters.h"
#include "store/value.h"

namespace vtdn::store {

/// These two parameters are averaging levels of one quantity, in either order: a minute parameter and its
/// hourly average. Parameters that are connected by such rows, however many lie between them, are one group.
struct Relationship {
    Pid pid = 0;
    Pid related = 0;

    friend bool operator==(const Relationship&, const Relationship&) = default;
};

/// What a parameter of a group says about itself.
struct ParameterRelationship {
    /// Its own interval: a count of "n" (minutes), "h" or "d", in the largest of them that divides it. 60m is
    /// 1 "h".
    std::int32_t interval_count = 0;
    std::string interval_unit;
    /// One element Relationship with one element Parameter for each parameter of the group, the one of the
    /// shortest interval first, then by PID. Its attributes: PID (nine digits), Name, IntervalCount,
    /// IntervalUnit, Units, Computation ("stored", or the aggregation: "average", "sum", "minimum",
    /// "maximum") and, for an aggregation, SourcePID. UTF-8; what XML 1.0 cannot hold is replaced by U+FFFD.
    /// The
    /// parameters of a group share it.
    std::shared_ptr<const std::string> detail_xml;
};

/// Checks relationships against each other and against the parameters that they are between. Throws
/// badParameter for a parameter that does not exist, for one related to itself, for two that are related
/// twice (in either order) or have the same interval, for a constant, for an interval that is not of whole
/// minutes, hours or days, and for a calculated parameter that is not an aggregation of another one of its
/// group.
void checkRelationships(std::span<const Relationship> relationships, const ParameterSet& parameters);

/// The groups of a site as they were read at one moment.
class RelationshipSet {
  public:
    RelationshipSet() = default;
    /// The parameters are those of the same moment. Throws databaseDamaged for relationships that
    /// checkRelationships refuses.
    static RelationshipSet load(Database& config, const ParameterSet& parameters);

    /// Null when the parameter is in no group.
    [[nodiscard]] const ParameterRelationship* find(Pid pid) const;
    /// Those of all parameters that are in a group, ascending by PID.
    [[nodiscard]] const std::map<Pid, ParameterRelationship>& relationships() const { return relationships_; }

  private:
    std::map<Pid, ParameterRelationship> relationships_;
};

/// Puts these relationships in the place of all that a config database has, after checkRelationships with
/// the parameters that it has.
void replaceRelationships(Database& config, std::span<const Relationship> relationships);

}  // namespace vtdn::store
