// What the engine knows about a parameter besides its data.
#pragma once

#include "binding/session.h"

namespace vtdn::params {

/// A text property of a parameter, and the code of its unknown PID.
struct TextProperty {
    engine::TextProperty<DIParam> property;
    binding::Code unknownPid;
};
inline constexpr TextProperty format{&DIParam::get_Fmt, binding::code(22)};
inline constexpr TextProperty intervalType{&DIParam::get_IntervalType, binding::code(46)};
inline constexpr TextProperty measUnits{&DIParam::get_MeasUnits, binding::code(23)};
inline constexpr TextProperty name{&DIParam::get_Name, binding::code(24)};

/// The property as the engine gives it; "" before set-up and for an unknown PID.
com::Bstr text(binding::Session& session, const TextProperty& which, std::int32_t pid);

/// Whether the engine knows the PID. An unknown one is an answer here, not a problem.
bool doesExist(const binding::Session& session, std::int32_t pid);

/// Whether the values of the parameter are stored in the database.
bool isDatabaseIo(binding::Session& session, std::int32_t pid);

/// Lists the editable and the constant inputs of a parameter of time type 3, each PID once, in the order of
/// the PIDs. Both lists come in empty. When the engine fails on the way they hold what was found so far,
/// unsorted.
bool findPidsUsedBy(binding::Session& session, std::int32_t pid, com::Bstr& editable, com::Bstr& constant);

}  // namespace vtdn::params
