// Lists of the parameters of one kind.
#pragma once

#include "binding/session.h"
#include "params/list_kinds.h"

namespace vtdn::params {

/// The PIDs of the parameters of a kind, in the engine's order; "" before set-up. A special value that does
/// not convert is an error; Null counts as False.
com::Bstr listParams(const binding::Session& session, const ListKind& kind);

}  // namespace vtdn::params
