// PID lists as clients get them: nine-digit forms joined by ";".
#pragma once

#include <cstdint>
#include <string>

namespace vtdn::params {

/// Puts one PID more at the end of a list. An ill-formed PID has an empty form.
void addPid(std::wstring& list, std::int32_t pid);

}  // namespace vtdn::params
