// The component's occurrences.
#include <algorithm>

#include "client/component/component.h"
#include "client/component/records.h"
#include "common/dates.h"

namespace vtdn::client {

namespace {

using Wrapper = _OccurrenceDataWrapper;
template <class T>
using Getter = HRESULT (STDMETHODCALLTYPE Wrapper::*)(T*);
template <class T>
using Putter = HRESULT (STDMETHODCALLTYPE Wrapper::*)(T);

std::string textOf(Wrapper& occurrence, Getter<BSTR> getter) {
    com::Bstr text;
    com::check((occurrence.*getter)(text.receive()));
    return com::toUtf8(text.view());
}

std::int32_t pidOf(Wrapper& occurrence, Getter<LONG> getter) {
    LONG pid = 0;
    com::check((occurrence.*getter)(&pid));
    return pid;
}

bool flagOf(Wrapper& occurrence, Getter<VARIANT_BOOL> getter) {
    VARIANT_BOOL flag = VARIANT_FALSE;
    com::check((occurrence.*getter)(&flag));
    return flag != VARIANT_FALSE;
}

PointValue numberOf(Wrapper& occurrence, Getter<VARIANT> getter) {
    com::Variant value;
    com::check((occurrence.*getter)(value.receive()));
    return pointValue(value);
}

/// The members of one kind of part.
struct Members {
    Getter<VARIANT_BOOL> has;
    Getter<LONG> pid;
    Getter<VARIANT_BOOL> excludable;
    Putter<VARIANT_BOOL> putExcludable;
    Getter<BSTR> category;
    Putter<BSTR> putCategory;
    Getter<BSTR> reason;
    Putter<BSTR> putReason;
    Getter<BSTR> action;
    Putter<BSTR> putAction;
};

const Members excursion{&Wrapper::get_HasExcursion,         &Wrapper::get_Excursion_PID,
                        &Wrapper::get_Excursion_Excludable, &Wrapper::put_Excursion_Excludable,
                        &Wrapper::get_Excursion_Category,   &Wrapper::put_Excursion_Category,
                        &Wrapper::get_Excursion_Reason,     &Wrapper::put_Excursion_Reason,
                        &Wrapper::get_Excursion_Action,     &Wrapper::put_Excursion_Action};
const Members downtime{&Wrapper::get_HasDowntime,         &Wrapper::get_Downtime_PID,
                       &Wrapper::get_Downtime_Excludable, &Wrapper::put_Downtime_Excludable,
                       &Wrapper::get_Downtime_Category,   &Wrapper::put_Downtime_Category,
                       &Wrapper::get_Downtime_Reason,     &Wrapper::put_Downtime_Reason,
                       &Wrapper::get_Downtime_Action,     &Wrapper::put_Downtime_Action};

store::OccurrencePart partOf(Wrapper& occurrence, const Members& members) {
    store::OccurrencePart part;
    part.pid = pidOf(occurrence, members.pid);
    part.excludable = flagOf(occurrence, members.excludable);
    part.category = textOf(occurrence, members.category);
    part.reason = textOf(occurrence, members.reason);
    part.action = textOf(occurrence, members.action);
    return part;
}

void put(Wrapper& occurrence, Putter<BSTR> putter, const std::optional<std::string>& text) {
    if (text) com::check((occurrence.*putter)(com::Bstr(com::fromUtf8(*text)).get()));
}

/// The units and PIDs of a query; none for all, which is no array.
com::SafeArray listOf(const std::vector<std::int32_t>& unitsOrTags) {
    if (unitsOrTags.empty()) return {};
    auto array = com::SafeArray::of<LONG>(static_cast<LONG>(unitsOrTags.size()));
    std::copy(unitsOrTags.begin(), unitsOrTags.end(), com::ArrayView<LONG>(array.get()).begin());
    return array;
}

}  // namespace

OccurrenceReading readingOf(_OccurrenceDataWrapper& occurrence) {
    OccurrenceReading reading;
    DATE time = 0;
    com::check(occurrence.get_StartDate(&time));
    reading.tag = pidOf(occurrence, &Wrapper::get_AffectedPID);
    reading.time = common::secondsOfDate(time);
    reading.text = textOf(occurrence, &Wrapper::get_TextValue);
    reading.value = numberOf(occurrence, &Wrapper::get_NValue);
    reading.code = numberOf(occurrence, &Wrapper::get_MC);
    if (flagOf(occurrence, excursion.has))
        reading.parts.excursion = {partOf(occurrence, excursion),
                                   pidOf(occurrence, &Wrapper::get_Excursion_LimitPID),
                                   textOf(occurrence, &Wrapper::get_Excursion_Limit)};
    if (flagOf(occurrence, downtime.has)) reading.parts.downtime = partOf(occurrence, downtime);
    return reading;
}

void change(_OccurrenceDataWrapper& occurrence, OccurrenceKind kind, const PartChanges& changes) {
    const Members& members = kind == OccurrenceKind::excursion ? excursion : downtime;
    put(occurrence, members.putCategory, changes.category);
    put(occurrence, members.putReason, changes.reason);
    put(occurrence, members.putAction, changes.action);
    if (changes.excludable)
        com::check((occurrence.*members.putExcludable)(com::variantBool(*changes.excludable)));
}

std::vector<OccurrenceObject> Component::occurrences(const OccurrenceQuery& query) {
    com::SafeArray list = listOf(query.unitsOrTags);
    com::SafeArray found;
    com::check(wrapper_->GetOccurrences(
        common::dateOfSeconds(query.first), common::dateOfSeconds(query.last),
        com::variantBool(query.parts.downtimes), com::Variant::ofBool(query.parts.excursions).get(),
        excludeFilter(query.parts), com::variantBool(query.byTag), list.inOut(), found.inOut()));
    return objectsIn<_OccurrenceDataWrapper>(found);
}

OccurrenceObject Component::createOccurrence(std::int32_t pid, store::Time time) {
    OccurrenceObject occurrence;
    com::check(wrapper_->CreateOrRetrieveOccurrence(pid, common::dateOfSeconds(time), occurrence.receive()));
    return occurrence;
}

bool Component::saveOccurrence(const OccurrenceObject& occurrence) {
    VARIANT_BOOL done = VARIANT_FALSE;
    com::check(wrapper_->SaveOccurrence(occurrence.get(), &done));
    return done != VARIANT_FALSE;
}

}  // namespace vtdn::client
