#include "params/used_pids.h"

#include "binding/io_type.h"
#include "common/pid.h"
#include "params/pid_list.h"

namespace vtdn::params {
namespace {

/// Part number of the time-type digit among the fields of a PID.
constexpr std::int32_t timeTypePart = 5;
constexpr std::int32_t editableTimeType = 3;

}  // namespace

bool isEditableTimeType(std::int32_t pid) noexcept {
    return common::pidField(pid, timeTypePart) == editableTimeType;
}

Input inputKind(std::int32_t pid, std::int32_t ioType) noexcept {
    switch (ioType) {
        case binding::constantIo:
        case binding::otherConstantIo:
            return Input::constant;
        case binding::databaseIo:
            return isEditableTimeType(pid) ? Input::editable : Input::leftOut;
        default:
            return Input::calculated;
    }
}

std::wstring withPid(std::wstring_view list, std::int32_t pid) {
    std::wstring longer(list);
    addPid(longer, pid);
    return longer;
}

}  // namespace vtdn::params
