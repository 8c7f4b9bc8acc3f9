// Where the DAHS directory of this computer is.
#pragma once

#include <string>

namespace vtdn::store {

/// The folder that the environment variable VANTOR_HOME names; the folder Vantor under %ProgramData% when
/// that is not set or empty. As the environment is at the time of the call. The folder need not exist. Throws
/// databaseMissing when neither variable is set.
[[nodiscard]] std::string homeFolder();

}  // namespace vtdn::store
