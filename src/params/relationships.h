// The parameters that are related to another averaging level of the same quantity.
#pragma once

#include "binding/session.h"

namespace vtdn::params {

inline constexpr binding::Code relationshipUnknownPid = binding::code(44);

/// The PIDs of the parameters whose relationship has this interval (the level is a ParamRelationshipEnum), in
/// the engine's order; "" before set-up and for a level that does not exist.
com::Bstr listRelated(const binding::Session& session, std::int32_t level, std::int32_t intervalCount);
/// The same for every relationship.
com::Bstr listAllRelated(const binding::Session& session);

/// Gives out the relationship of a parameter as an XML document, "" when it has none. Before set-up and for
/// an unknown PID (a problem) the result is false and the text is not touched.
bool relationshipDetail(binding::Session& session, std::int32_t pid, const com::ClientBstr& xml);

}  // namespace vtdn::params
