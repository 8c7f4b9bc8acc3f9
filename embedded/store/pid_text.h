// PIDs as texts in the store's UTF-8.
#pragma once

#include <string>
#include <string_view>

#include "store/value.h"

namespace vtdn::store {

/// Display form, "5-040-3-00-00"; the plain number when it is no well-formed PID.
[[nodiscard]] std::string pidText(Pid pid);

/// The form of lists, nine digits or more; the plain number when it is no well-formed PID.
[[nodiscard]] std::string pidListText(Pid pid);

/// The PID of a text in display form or of a number; 0 for anything else.
[[nodiscard]] Pid parsePid(std::string_view text);

}  // namespace vtdn::store
