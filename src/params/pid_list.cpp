#include "params/pid_list.h"

#include "common/pid.h"

namespace vtdn::params {

void addPid(std::wstring& list, std::int32_t pid) {
    if (!list.empty()) list += L';';
    list += common::formatPid9(pid);
}

}  // namespace vtdn::params
