#include "store/pid_text.h"

#include "common/pid.h"

namespace vtdn::store {
namespace {

// PIDs are digits and hyphens; anything else becomes a character that no PID has.
std::wstring widen(std::string_view text) {
    std::wstring wide;
    for (const char c : text) wide += static_cast<unsigned char>(c) < 0x80 ? static_cast<wchar_t>(c) : L'?';
    return wide;
}

std::string narrow(std::wstring_view text) {
    std::string result;
    for (const wchar_t c : text) result += static_cast<char>(c);
    return result;
}

}  // namespace

std::string pidText(Pid pid) {
    return common::isValidPid(pid) ? narrow(common::formatPid(pid)) : std::to_string(pid);
}

std::string pidListText(Pid pid) {
    return common::isValidPid(pid) ? narrow(common::formatPid9(pid)) : std::to_string(pid);
}

Pid parsePid(std::string_view text) {
    const std::wstring wide = widen(text);
    const Pid pid = common::parsePidText(wide, false);
    // The parser skips what is between the fields; here a text is a PID or it is not.
    const bool exact = pid != 0 && (wide == common::formatPid(pid) || wide == common::formatPid9(pid) ||
                                    wide == std::to_wstring(pid));
    return exact ? pid : 0;
}

}  // namespace vtdn::store
