#include "occurrences/occurrence.h"

namespace vtdn {
namespace {

using engine::Occurrence;
using engine::OccurrenceEvent;

constexpr auto excursion = &DIOccurrenceEvent::get_HasExcursion;
constexpr auto downtime = &DIOccurrenceEvent::get_HasDowntime;

bool has(const Occurrence& occurrence, engine::Getter<DIOccurrenceEvent, VARIANT_BOOL> part) {
    const auto event = occurrence.event();
    return event && event.flag(part);
}

/// Fetched anew for the question itself. Error 91 when the engine has taken it away meanwhile.
OccurrenceEvent eventOf(const Occurrence& occurrence) {
    auto event = occurrence.event();
    if (!event) com::throwError(com::unsetObject);
    return event;
}

}  // namespace

template <class Result, class Default, class Read>
HRESULT OccurrenceDataWrapper::getOf(Has part, Result* result, const Default& none,
                                     Read read) const noexcept {
    return get(result, none, [&](const Occurrence& occurrence) {
        using Value = decltype(read(eventOf(occurrence)));
        return has(occurrence, part) ? read(eventOf(occurrence)) : Value(none);
    });
}

template <class Write>
HRESULT OccurrenceDataWrapper::putOf(Has part, Write write) const noexcept {
    return change([&](const Occurrence& occurrence) {
        if (has(occurrence, part)) write(eventOf(occurrence));
    });
}

HRESULT OccurrenceDataWrapper::getText(Has part, engine::TextProperty<Event> property,
                                       BSTR* result) const noexcept {
    return getOf(part, result, L"", [&](const OccurrenceEvent& event) { return event.text(property); });
}

HRESULT OccurrenceDataWrapper::putText(Has part, engine::Putter<Event, BSTR> property,
                                       BSTR value) const noexcept {
    return putOf(part, [&](const OccurrenceEvent& event) { event.put(property, value); });
}

HRESULT OccurrenceDataWrapper::getPid(Has part, engine::Getter<Event, LONG> property,
                                      LONG* result) const noexcept {
    return getOf(part, result, 0, [&](const OccurrenceEvent& event) { return event.number(property); });
}

HRESULT OccurrenceDataWrapper::getFlag(Has part, engine::Getter<Event, VARIANT_BOOL> property,
                                       VARIANT_BOOL* result) const noexcept {
    return getOf(part, result, false, [&](const OccurrenceEvent& event) { return event.flag(property); });
}

/// Any number but 0 is True.
HRESULT OccurrenceDataWrapper::putFlag(Has part, engine::Putter<Event, VARIANT_BOOL> property,
                                       VARIANT_BOOL value) const noexcept {
    return putOf(part, [&](const OccurrenceEvent& event) {
        event.put(property, com::variantBool(value != VARIANT_FALSE));
    });
}

STDMETHODIMP OccurrenceDataWrapper::get_AffectedPID(LONG* result) noexcept {
    return get(result, 0, [](const Occurrence& o) { return o.number(&DIOccurrence::get_AffectedPID); });
}

STDMETHODIMP OccurrenceDataWrapper::get_NValue(VARIANT* result) noexcept {
    return get(result, com::Variant::null(),
               [](const Occurrence& o) { return o.value(&DIOccurrence::get_NValue); });
}

STDMETHODIMP OccurrenceDataWrapper::get_TextValue(BSTR* result) noexcept {
    return get(result, L"", [](const Occurrence& o) { return o.textValue(); });
}

STDMETHODIMP OccurrenceDataWrapper::get_MC(VARIANT* result) noexcept {
    return get(result, com::Variant::null(),
               [](const Occurrence& o) { return o.value(&DIOccurrence::get_MC); });
}

STDMETHODIMP OccurrenceDataWrapper::get_StartDate(DATE* result) noexcept {
    return get(result, 0, [](const Occurrence& o) { return o.date(&DIOccurrence::get_StartDate); });
}

STDMETHODIMP OccurrenceDataWrapper::get_HasExcursion(VARIANT_BOOL* result) noexcept {
    return get(result, false, [](const Occurrence& o) { return has(o, excursion); });
}

STDMETHODIMP OccurrenceDataWrapper::get_HasDowntime(VARIANT_BOOL* result) noexcept {
    return get(result, false, [](const Occurrence& o) { return has(o, downtime); });
}

STDMETHODIMP OccurrenceDataWrapper::get_Excursion_PID(LONG* result) noexcept {
    return getPid(excursion, &Event::get_Excursion_PID, result);
}

STDMETHODIMP OccurrenceDataWrapper::get_Downtime_PID(LONG* result) noexcept {
    return getPid(downtime, &Event::get_Downtime_PID, result);
}

STDMETHODIMP OccurrenceDataWrapper::get_Excursion_Action(BSTR* result) noexcept {
    return getText(excursion, &Event::get_Excursion_Action, result);
}

STDMETHODIMP OccurrenceDataWrapper::put_Excursion_Action(BSTR value) noexcept {
    return putText(excursion, &Event::put_Excursion_Action, value);
}

STDMETHODIMP OccurrenceDataWrapper::get_Downtime_Action(BSTR* result) noexcept {
    return getText(downtime, &Event::get_Downtime_Action, result);
}

STDMETHODIMP OccurrenceDataWrapper::put_Downtime_Action(BSTR value) noexcept {
    return putText(downtime, &Event::put_Downtime_Action, value);
}

STDMETHODIMP OccurrenceDataWrapper::get_Excursion_Reason(BSTR* result) noexcept {
    return getText(excursion, &Event::get_Excursion_Reason, result);
}

STDMETHODIMP OccurrenceDataWrapper::put_Excursion_Reason(BSTR value) noexcept {
    return putText(excursion, &Event::put_Excursion_Reason, value);
}

STDMETHODIMP OccurrenceDataWrapper::get_Downtime_Reason(BSTR* result) noexcept {
    return getText(downtime, &Event::get_Downtime_Reason, result);
}

STDMETHODIMP OccurrenceDataWrapper::put_Downtime_Reason(BSTR value) noexcept {
    return putText(downtime, &Event::put_Downtime_Reason, value);
}

STDMETHODIMP OccurrenceDataWrapper::get_Excursion_Excludable(VARIANT_BOOL* result) noexcept {
    return getFlag(excursion, &Event::get_Excursion_Excludable, result);
}

STDMETHODIMP OccurrenceDataWrapper::put_Excursion_Excludable(VARIANT_BOOL value) noexcept {
    return putFlag(excursion, &Event::put_Excursion_Excludable, value);
}

STDMETHODIMP OccurrenceDataWrapper::get_Downtime_Excludable(VARIANT_BOOL* result) noexcept {
    return getFlag(downtime, &Event::get_Downtime_Excludable, result);
}

STDMETHODIMP OccurrenceDataWrapper::put_Downtime_Excludable(VARIANT_BOOL value) noexcept {
    return putFlag(downtime, &Event::put_Downtime_Excludable, value);
}

STDMETHODIMP OccurrenceDataWrapper::get_Excursion_Category(BSTR* result) noexcept {
    return getText(excursion, &Event::get_Excursion_Category, result);
}

STDMETHODIMP OccurrenceDataWrapper::put_Excursion_Category(BSTR value) noexcept {
    return putText(excursion, &Event::put_Excursion_Category, value);
}

STDMETHODIMP OccurrenceDataWrapper::get_Downtime_Category(BSTR* result) noexcept {
    return getText(downtime, &Event::get_Downtime_Category, result);
}

STDMETHODIMP OccurrenceDataWrapper::put_Downtime_Category(BSTR value) noexcept {
    return putText(downtime, &Event::put_Downtime_Category, value);
}

STDMETHODIMP OccurrenceDataWrapper::get_Excursion_Limit(BSTR* result) noexcept {
    return getText(excursion, &Event::get_Excursion_Limit, result);
}

STDMETHODIMP OccurrenceDataWrapper::get_Excursion_LimitPID(LONG* result) noexcept {
    return getPid(excursion, &Event::get_Excursion_LimitPID, result);
}

}  // namespace vtdn
