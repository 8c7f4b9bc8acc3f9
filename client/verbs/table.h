// Everything that vtdn does, as a table: the parser and the help are made from it.
#pragma once

#include <span>

#include "client/cli/command.h"

namespace vtdn::client {

std::span<const VerbSpec> verbTable();

}  // namespace vtdn::client
