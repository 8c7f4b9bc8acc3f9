#include "occurrences/occurrence_texts.h"

namespace vtdn::occurrences {
namespace {

constexpr std::wstring_view retrieving = L"Error in retrieving occurrence data for PID ";

}  // namespace

std::wstring notAnOccurrenceParameter(std::int32_t pid) {
    return binding::aboutPid(L"PID ", pid, L" is not an occurrence parameter", binding::code(60));
}

std::wstring unknownType(std::int32_t tagPid) {
    return binding::aboutPid(L"Unknown occurrence type specified for PID ", tagPid, {}, binding::code(61));
}

std::wstring notReadBack(std::int32_t tagPid) {
    return binding::aboutPid(retrieving, tagPid, {}, binding::code(62));
}

std::wstring notOneReadBack(std::int32_t tagPid) {
    return binding::aboutPid(retrieving, tagPid, {}, binding::code(63));
}

std::wstring notSaved(std::int32_t tagPid) {
    return binding::aboutPid(L"Unable to update occurrence data for PID ", tagPid, {}, binding::code(64));
}

std::wstring trapped(std::int32_t number, std::wstring_view description) {
    std::wstring text = L"Error in creating/retrieving occurrence data points.  ";
    text += std::to_wstring(number);
    text += L' ';
    text += description;
    return text;
}

}  // namespace vtdn::occurrences
