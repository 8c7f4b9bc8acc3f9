// An automation error in words.
#pragma once

#include <string>

#include "com/error.h"

namespace vtdn::client {

/// "Error 13, Type mismatch (from VTEngine)".
std::string describe(const com::Error& error);

/// What a person can do about it.
std::string adviceFor(const com::Error& error);

}  // namespace vtdn::client
