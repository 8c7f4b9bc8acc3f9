#include "data_interface/occurrence_event.h"

#include <optional>
#include <string>
#include <type_traits>

#include "com/strings.h"
#include "com/variant.h"
#include "data_interface/value.h"

namespace vtdn::embedded {
namespace {

using store::Excursion;
using store::Occurrence;
using store::OccurrencePart;

// What a client is given of a member, and what is kept of what it gives.

LONG given(store::Pid pid) {
    return pid;
}
VARIANT_BOOL given(bool flag) {
    return com::variantBool(flag);
}
BSTR given(const std::string& text) {
    return com::Bstr(com::fromUtf8(text)).detach();
}

void keep(LONG value, store::Pid& pid) {
    pid = value;
}
void keep(VARIANT_BOOL value, bool& flag) {
    flag = value != VARIANT_FALSE;
}
void keep(BSTR value, std::string& text) {
    text = keptText(com::view(value));
}

[[noreturn]] void refuseMissing(bool excursion) {
    com::throwError(com::unsetObject, excursion ? L"There is no excursion. Call AddExcursion first."
                                                : L"There is no downtime. Call AddDowntime first.");
}

}  // namespace

template <class Part>
HRESULT OccurrenceEvent::has(PartOf<Part> part, VARIANT_BOOL* result) const noexcept {
    return com::guard(errorSource, __uuidof(DIOccurrenceEvent), [&] {
        com::needPointers(result);
        *result = VARIANT_FALSE;
        *result = com::variantBool((text_.parsed().*part).has_value());
    });
}

template <class Part>
HRESULT OccurrenceEvent::add(PartOf<Part> part) noexcept {
    return com::guard(errorSource, __uuidof(DIOccurrenceEvent), [&] {
        if (text_.parsed().*part) return;
        text_.change([&](Occurrence& occurrence) { (occurrence.*part).emplace(); });
    });
}

template <class Part, class Member, class Result>
HRESULT OccurrenceEvent::get(PartOf<Part> part, Member member, Result* result) const noexcept {
    return com::guard(errorSource, __uuidof(DIOccurrenceEvent), [&] {
        com::needPointers(result);
        *result = {};
        const std::optional<Part>& found = text_.parsed().*part;
        if (found) *result = given((*found).*member);
    });
}

template <class Part, class Member, class Given>
HRESULT OccurrenceEvent::put(PartOf<Part> part, Member member, Given value) noexcept {
    return com::guard(errorSource, __uuidof(DIOccurrenceEvent), [&] {
        text_.change([&](Occurrence& occurrence) {
            std::optional<Part>& found = occurrence.*part;
            if (!found) refuseMissing(std::is_same_v<Part, Excursion>);
            keep(value, (*found).*member);
        });
    });
}

HRESULT OccurrenceEvent::get_OccDataXML(BSTR* result) noexcept {
    return com::guard(errorSource, __uuidof(DIOccurrenceEvent), [&] {
        com::needPointers(result);
        *result = nullptr;
        *result = given(text_.text());
    });
}

HRESULT OccurrenceEvent::get_HasExcursion(VARIANT_BOOL* result) noexcept {
    return has(&Occurrence::excursion, result);
}

HRESULT OccurrenceEvent::get_HasDowntime(VARIANT_BOOL* result) noexcept {
    return has(&Occurrence::downtime, result);
}

HRESULT OccurrenceEvent::AddExcursion() noexcept {
    return add(&Occurrence::excursion);
}

HRESULT OccurrenceEvent::AddDowntime() noexcept {
    return add(&Occurrence::downtime);
}

HRESULT OccurrenceEvent::get_Excursion_PID(LONG* result) noexcept {
    return get(&Occurrence::excursion, &OccurrencePart::pid, result);
}

HRESULT OccurrenceEvent::put_Excursion_PID(LONG value) noexcept {
    return put(&Occurrence::excursion, &OccurrencePart::pid, value);
}

HRESULT OccurrenceEvent::get_Excursion_Excludable(VARIANT_BOOL* result) noexcept {
    return get(&Occurrence::excursion, &OccurrencePart::excludable, result);
}

HRESULT OccurrenceEvent::put_Excursion_Excludable(VARIANT_BOOL value) noexcept {
    return put(&Occurrence::excursion, &OccurrencePart::excludable, value);
}

HRESULT OccurrenceEvent::get_Excursion_Category(BSTR* result) noexcept {
    return get(&Occurrence::excursion, &OccurrencePart::category, result);
}

HRESULT OccurrenceEvent::put_Excursion_Category(BSTR value) noexcept {
    return put(&Occurrence::excursion, &OccurrencePart::category, value);
}

HRESULT OccurrenceEvent::get_Excursion_Reason(BSTR* result) noexcept {
    return get(&Occurrence::excursion, &OccurrencePart::reason, result);
}

HRESULT OccurrenceEvent::put_Excursion_Reason(BSTR value) noexcept {
    return put(&Occurrence::excursion, &OccurrencePart::reason, value);
}

HRESULT OccurrenceEvent::get_Excursion_Action(BSTR* result) noexcept {
    return get(&Occurrence::excursion, &OccurrencePart::action, result);
}

HRESULT OccurrenceEvent::put_Excursion_Action(BSTR value) noexcept {
    return put(&Occurrence::excursion, &OccurrencePart::action, value);
}

HRESULT OccurrenceEvent::get_Excursion_LimitPID(LONG* result) noexcept {
    return get(&Occurrence::excursion, &Excursion::limit_pid, result);
}

HRESULT OccurrenceEvent::get_Excursion_Limit(BSTR* result) noexcept {
    return get(&Occurrence::excursion, &Excursion::limit, result);
}

HRESULT OccurrenceEvent::get_Downtime_PID(LONG* result) noexcept {
    return get(&Occurrence::downtime, &OccurrencePart::pid, result);
}

HRESULT OccurrenceEvent::put_Downtime_PID(LONG value) noexcept {
    return put(&Occurrence::downtime, &OccurrencePart::pid, value);
}

HRESULT OccurrenceEvent::get_Downtime_Excludable(VARIANT_BOOL* result) noexcept {
    return get(&Occurrence::downtime, &OccurrencePart::excludable, result);
}

HRESULT OccurrenceEvent::put_Downtime_Excludable(VARIANT_BOOL value) noexcept {
    return put(&Occurrence::downtime, &OccurrencePart::excludable, value);
}

HRESULT OccurrenceEvent::get_Downtime_Category(BSTR* result) noexcept {
    return get(&Occurrence::downtime, &OccurrencePart::category, result);
}

HRESULT OccurrenceEvent::put_Downtime_Category(BSTR value) noexcept {
    return put(&Occurrence::downtime, &OccurrencePart::category, value);
}

HRESULT OccurrenceEvent::get_Downtime_Reason(BSTR* result) noexcept {
    return get(&Occurrence::downtime, &OccurrencePart::reason, result);
}

HRESULT OccurrenceEvent::put_Downtime_Reason(BSTR value) noexcept {
    return put(&Occurrence::downtime, &OccurrencePart::reason, value);
}

HRESULT OccurrenceEvent::get_Downtime_Action(BSTR* result) noexcept {
    return get(&Occurrence::downtime, &OccurrencePart::action, result);
}

HRESULT OccurrenceEvent::put_Downtime_Action(BSTR value) noexcept {
    return put(&Occurrence::downtime, &OccurrencePart::action, value);
}

}  // namespace vtdn::embedded
