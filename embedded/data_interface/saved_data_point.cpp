#include "data_interface/saved_data_point.h"

#include <optional>
#include <string>

#include "data_interface/date.h"
#include "data_interface/occurrence_limit.h"
#include "data_interface/value.h"

namespace vtdn::embedded {
namespace {

std::optional<store::Value> valueIn(const VARIANT& given) {
    store::Value value = fromVariant(given);
    if (store::kindOf(value) == store::ValueKind::null) return std::nullopt;
    return value;
}

}  // namespace

void saveDataPoint(const std::shared_ptr<Session>& session, const DataPointKey& key,
                   const SavedDataPoint& saved) {
    const std::optional<std::string> note = session->onSite([&](store::Site& site) {
        // In this order, which is that of the checks.
        store::DataPointSave save{.pid = key.tagId,
                                  .interval = intervalOf(site, key),
                                  .time = timeOfDate(saved.timeStamp),
                                  .value = valueIn(saved.value),
                                  .code = codeFromVariant(saved.code),
                                  .may_create = saved.mayCreate,
                                  .occurrence = keptWhole(com::view(saved.occurrenceXml)),
                                  .origin = session->editNow()};
        save.origin.source = keptWhole(com::view(saved.editSource));
        if (SysStringLen(saved.editUser) != 0) save.origin.user = keptWhole(com::view(saved.editUser));
        store::Occurrence occurrence = store::parseOccurrence(save.occurrence);
        std::optional<std::string> withoutLimit;
        if (occurrence.excursion) {
            withoutLimit = fillLimit(site, *occurrence.excursion);
            save.occurrence = store::occurrenceText(occurrence);
        }
        site.saveDataPoint(save);
        return withoutLimit;
    });
    if (note) session->say(MessageType::note, com::fromUtf8(*note));
}

}  // namespace vtdn::embedded
