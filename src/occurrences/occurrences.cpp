#include "occurrences/occurrences.h"

#include <new>
#include <string>
#include <utility>

#include "common/dates.h"
#include "common/interval.h"
#include "occurrences/occurrence_texts.h"

namespace vtdn::occurrences {
namespace {

constexpr wchar_t editSource[] = L"OccEdit";

/// Special values of an occurrence parameter.
constexpr LONG tagValue = -21;              ///< PID whose data points carry the occurrence
constexpr LONG typeValue = -3;              ///< OccurrenceType
constexpr LONG intervalSecondsValue = -13;  ///< length of the data interval

enum class OccurrenceType : LONG { excursion = 3, downtime = 4 };

/// What the special values of an occurrence parameter say.
struct OccurrenceParameter {
    LONG pid;
    LONG tagPid;
    OccurrenceType type;
    com::Bstr interval;
};

LONG toLong(const com::Variant& value) {
    LONG number = 0;
    com::check(com::toInt32(value.get(), number));
    return number;
}

OccurrenceParameter readParameter(const engine::Param& param, LONG pid) {
    OccurrenceParameter read{};
    read.pid = pid;
    read.tagPid = toLong(param.specialValue(tagValue));
    read.type = static_cast<OccurrenceType>(toLong(param.specialValue(typeValue)));
    com::Bstr seconds;
    com::check(com::toText(param.specialValue(intervalSecondsValue).get(), seconds));
    std::wstring text(seconds.view());
    text += L's';
    read.interval = com::Bstr(common::intervalTextForEngine(text));
    return read;
}

/// The span around a time within which its data point lies.
struct Around {
    DATE from;
    DATE to;
    explicit Around(DATE time) : from(secondsFrom(time, -1)), to(secondsFrom(time, 1)) {}

  private:
    static DATE secondsFrom(DATE time, int seconds) {
        const auto moved = common::addIntervals(L"s", time, seconds);
        if (!moved) com::throwError(E_INVALIDARG);
        return *moved;
    }
};

void addDowntime(const engine::OccurrenceEvent& event, LONG pid) {
    event.call(&DIOccurrenceEvent::AddDowntime);
    event.put(&DIOccurrenceEvent::put_Downtime_PID, pid);
}

void addExcursion(const engine::OccurrenceEvent& event, LONG pid) {
    event.call(&DIOccurrenceEvent::AddExcursion);
    event.put(&DIOccurrenceEvent::put_Excursion_PID, pid);
}

/// An existing part of the kind stays as it is.
void addTo(const engine::DataPoint& found, const OccurrenceParameter& parameter) {
    if (parameter.type == OccurrenceType::downtime) {
        const auto event = found.event();
        if (!event.flag(&DIOccurrenceEvent::get_HasDowntime)) addDowntime(event, parameter.pid);
    } else if (parameter.type == OccurrenceType::excursion) {
        const auto event = found.event();
        if (!event.flag(&DIOccurrenceEvent::get_HasExcursion)) addExcursion(event, parameter.pid);
    }
}

/// An unknown type is a problem that stops nothing: the data point then has no part.
engine::DataPoint newDataPoint(binding::Session& session, const OccurrenceParameter& parameter, DATE time) {
    auto point = engine::DataPoint::create();
    point.initialise(time);
    if (parameter.type == OccurrenceType::downtime)
        addDowntime(point.event(), parameter.pid);
    else if (parameter.type == OccurrenceType::excursion)
        addExcursion(point.event(), parameter.pid);
    else
        session.addProblem(unknownType(parameter.tagPid));
    return point;
}

bool saveDataPoint(const engine::Engine& engine, const engine::DataPoint& point,
                   const OccurrenceParameter& parameter) {
    const auto siteId = engine.text(&DIEngine::get_SiteID);
    const DATE timeStamp = point.date(&DIDataPoint::get_TStamp);
    const auto value = point.value(&DIDataPoint::get_NValue);
    const auto mc = point.value(&DIDataPoint::get_MC);
    const auto text = point.text(&DIDataPoint::get_OccDataXML);
    const auto user = engine.selectedDahs().text(&DISelectedDahs::get_EditUserName);
    return engine.longTermData().save({siteId, parameter.tagPid, parameter.interval.get()},
                                      {timeStamp, value, mc, true, text, com::Bstr(editSource), user});
}

com::Ptr<_OccurrenceDataWrapper> readBack(binding::Session& session, const engine::Engine& engine,
                                          const OccurrenceParameter& parameter, DATE time) {
    const Around span(time);
    const auto siteId = engine.text(&DIEngine::get_SiteID);
    const auto pid = com::Variant::of(parameter.pid);
    const auto found =
        engine.longTermData().occurrences(siteId, {span.from, span.to, true, true, 0, true, pid.get()});
    if (!found) {
        session.addProblem(notReadBack(parameter.tagPid));
        return {};
    }
    if (found.count() != 1) {
        session.addProblem(notOneReadBack(parameter.tagPid));
        return {};
    }
    return com::Ptr<_OccurrenceDataWrapper>(com::make<OccurrenceDataWrapper>(found.item(1)).get());
}

com::Ptr<_OccurrenceDataWrapper> tryCreateOrRetrieve(binding::Session& session, LONG pid, DATE time) {
    const auto engine = session.engine();
    const auto param = session.param(pid, unknownPid);
    if (!param) return {};
    if (param.ioType() != occurrenceIo) {
        session.addProblem(notAnOccurrenceParameter(pid));
        return {};
    }
    const auto parameter = readParameter(param, pid);
    const Around span(time);
    const auto siteId = engine.text(&DIEngine::get_SiteID);
    auto point =
        engine.longTermData().find({siteId, parameter.tagPid, parameter.interval.get()}, span.from, span.to);
    if (point)
        addTo(point, parameter);
    else
        point = newDataPoint(session, parameter, time);
    if (!saveDataPoint(engine, point, parameter)) {
        session.addProblem(notSaved(parameter.tagPid));
        return {};
    }
    return readBack(session, engine, parameter, time);
}

}  // namespace

bool save(const binding::Session& session, IUnknown* object) {
    const auto engine = session.engine();
    if (!engine || !object) return false;
    const auto occurrence = records::attachedTo<OccurrenceDataWrapper>(object);
    const auto siteId = engine.text(&DIEngine::get_SiteID);
    if (!occurrence) com::throwError(com::unsetObject);
    const LONG tag = occurrence.number(&DIOccurrence::get_AffectedPID);
    const auto interval = occurrence.text(&DIOccurrence::get_Interval);
    const DATE start = occurrence.date(&DIOccurrence::get_StartDate);
    const auto event = occurrence.event();
    if (!event) com::throwError(com::unsetObject);
    const auto text = event.text(&DIOccurrenceEvent::get_OccDataXML);
    const auto unchanged = com::Variant::null();
    return engine.longTermData().save(
        {siteId, tag, interval.get()},
        {start, unchanged, unchanged, false, text, com::Bstr(editSource), com::Bstr(L"")});
}

com::SafeArray list(const binding::Session& session, const Wanted& wanted) {
    const auto engine = session.engine();
    if (!engine) return {};
    bool exceedences = false;
    // A failure of our own, and so in our name.
    const HRESULT converted = com::toBool(wanted.exceedences, exceedences);
    if (FAILED(converted)) com::throwError(converted);
    const bool knownFilter = wanted.excludeFilter >= 0 && wanted.excludeFilter <= 2;
    // Lent to the engine for the call.
    VARIANT unitsOrTags{};
    if (wanted.unitsOrTags) {
        static_cast<void>(com::bounds(wanted.unitsOrTags));  // one dimension
        com::needElementType(wanted.unitsOrTags, VT_I4);
        unitsOrTags.vt = VT_ARRAY | VT_I4;
        unitsOrTags.parray = wanted.unitsOrTags;
    } else {
        unitsOrTags.vt = VT_DISPATCH;
    }
    const auto siteId = engine.text(&DIEngine::get_SiteID);
    return records::wrapAll<OccurrenceDataWrapper>(engine.longTermData().occurrences(
        siteId, {wanted.first, wanted.last, wanted.downtimes, exceedences,
                 knownFilter ? wanted.excludeFilter : 0, wanted.orderByTag, unitsOrTags}));
}

com::Ptr<_OccurrenceDataWrapper> createOrRetrieve(binding::Session& session, LONG pid, DATE time) noexcept {
    // Whatever fails in here is a problem, and the result is nothing.
    try {
        try {
            return tryCreateOrRetrieve(session, pid, time);
        } catch (const com::Error& error) {
            session.addProblem(trapped(error.number(), error.description()));
        } catch (const std::bad_alloc&) {
            const com::Error error(E_OUTOFMEMORY);
            session.addProblem(trapped(error.number(), error.description()));
        }
    } catch (...) {
        // Not even the memory for the problem.
    }
    return {};
}

}  // namespace vtdn::occurrences
