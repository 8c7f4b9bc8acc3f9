// Occurrences: listed, saved, created or retrieved.
#pragma once

#include "binding/session.h"
#include "com/safe_array.h"
#include "occurrences/occurrence.h"

namespace vtdn::occurrences {

/// Saves what was changed of an occurrence; value and monitor code of its data point stay. False, with
/// nothing asked, before set-up and for no object; error 13 for an object of another class.
bool save(const binding::Session& session, IUnknown* occurrence);

/// Which occurrences a client wants.
struct Wanted {
    DATE first;
    DATE last;
    bool downtimes;
    const VARIANT& exceedences;  ///< anything that converts to a boolean
    LONG excludeFilter;          ///< 0, 1 or 2; anything else is 0
    bool orderByTag;
    SAFEARRAY* unitsOrTags;  ///< 32-bit numbers; null for all
};
/// The occurrences as objects, in the engine's order; no array before set-up and where there are none.
com::SafeArray list(const binding::Session& session, const Wanted& wanted);

/// The occurrence of an occurrence parameter at a time. What is not there yet is created: the data point, and
/// the excursion or the downtime that the parameter's type says. Nothing before set-up and, with a problem,
/// on every failure.
com::Ptr<_OccurrenceDataWrapper> createOrRetrieve(binding::Session& session, LONG pid, DATE time) noexcept;

}  // namespace vtdn::occurrences
