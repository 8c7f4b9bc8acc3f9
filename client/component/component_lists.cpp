// What the component lists: parameters, relationships, names; and the alarm log.
#include <array>

#include "client/component/component.h"
#include "com/error.h"
#include "com/strings.h"
#include "common/dates.h"
#include "store/pid_text.h"

namespace vtdn::client {

namespace {

/// The PIDs of a list of the component, which joins them by ";".
std::vector<std::int32_t> pidsOf(const com::Bstr& list) {
    const std::string text = com::toUtf8(list.view());
    std::vector<std::int32_t> pids;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find(';', start), text.size());
        pids.push_back(store::parsePid(std::string_view(text).substr(start, end - start)));
        start = end + 1;
    }
    return pids;
}

HRESULT relatedPids(_DIWrapper& wrapper, const std::optional<AveragingLevel>& level, BSTR* list) {
    if (!level) return wrapper.GetListOfAllRelationshipPIDs(list);
    static_assert(static_cast<int>(AveragingLevel::Unit::minute) == ParamRelationship_Minute &&
                  static_cast<int>(AveragingLevel::Unit::hour) == ParamRelationship_Hourly &&
                  static_cast<int>(AveragingLevel::Unit::day) == ParamRelationship_Daily);
    return wrapper.GetListOfRelationshipPIDs(static_cast<ParamRelationshipEnum>(level->unit), level->count,
                                             list);
}

HRESULT pidList(_DIWrapper& wrapper, const ParamsSelection& selection, BSTR* list) {
    using Kind = ParamsSelection::Kind;
    switch (selection.kind) {
        case Kind::type:
            return wrapper.GetListOfTypeXPIDs(selection.type, list);
        case Kind::calibration:
            return wrapper.GetListOfCalPIDs(list);
        case Kind::part75Calibration:
            return wrapper.GetListOf75CalPIDs(list);
        case Kind::part75Linearity:
            return wrapper.GetListOf75LinearityPIDs(list);
        case Kind::part75Interference:
            return wrapper.GetListOf75IntfCheckPIDs(list);
        case Kind::related:
            return relatedPids(wrapper, selection.level, list);
        case Kind::all:
            break;
    }
    return E_INVALIDARG;
}

}  // namespace

std::vector<std::int32_t> Component::list(const ParamsSelection& selection) {
    com::Bstr pids;
    com::check(pidList(*wrapper_.get(), selection, pids.receive()));
    return pidsOf(pids);
}

std::optional<Component::UsedPids> Component::uses(std::int32_t pid) {
    com::Bstr stored;
    com::Bstr constant;
    VARIANT_BOOL done = VARIANT_FALSE;
    com::check(wrapper_->Param_FindPIDsUsedByPID(pid, stored.receive(), constant.receive(), &done));
    if (done == VARIANT_FALSE) return std::nullopt;
    return UsedPids{pidsOf(stored), pidsOf(constant)};
}

std::optional<std::string> Component::relationship(std::int32_t pid) {
    com::Bstr document;
    VARIANT_BOOL done = VARIANT_FALSE;
    com::check(wrapper_->GetRelationshipDetailData(pid, document.receive(), &done));
    if (done == VARIANT_FALSE) return std::nullopt;
    return com::toUtf8(document.view());
}

std::vector<std::string> Component::names(NameList list) {
    using Getter = HRESULT (STDMETHODCALLTYPE _DIWrapper::*)(SAFEARRAY**);
    // In the order of NameList.
    constexpr std::array<Getter, 7> getters{
        &_DIWrapper::Utils_GetUnitNames,   &_DIWrapper::Utils_GetEDRUnitORISCodes,
        &_DIWrapper::Utils_GetEDRUnitIDs,  &_DIWrapper::Utils_GetShortMCNames,
        &_DIWrapper::Utils_GetLongMCNames, &_DIWrapper::Utils_GetShortPCNames,
        &_DIWrapper::Utils_GetLongPCNames,
    };
    com::SafeArray array;
    com::check((wrapper_.get()->*getters[static_cast<std::size_t>(list)])(array.inOut()));
    std::vector<std::string> names;
    for (BSTR name : com::ArrayView<BSTR>(array.get())) names.push_back(com::toUtf8(com::view(name)));
    return names;
}

bool Component::writeAlarm(const store::Alarm& alarm) {
    const auto text = [](const std::string& utf8) { return com::Bstr(com::fromUtf8(utf8)); };
    VARIANT_BOOL done = VARIANT_FALSE;
    com::check(wrapper_->WriteStrToAlarm(common::dateOfSeconds(alarm.time), text(alarm.message).get(),
                                         text(alarm.category).get(), alarm.severity, text(alarm.group).get(),
                                         text(alarm.source).get(), &done));
    return done != VARIANT_FALSE;
}

}  // namespace vtdn::client
