#include "data_interface/qa_manager.h"

#include "com/variant.h"
#include "data_interface/data_points.h"
#include "data_interface/occurrences.h"
#include "data_interface/saved_data_point.h"

namespace vtdn::embedded {

HRESULT QAManager::GetLongTermDataPoints(BSTR siteId, LONG tagId, BSTR interval, DATE first, DATE last,
                                         DICollection** result) noexcept {
    return com::guard(errorSource, __uuidof(DIQAManager), [&] {
        com::needPointers(result);
        *result = nullptr;
        *result = dataPoints(session_, Term::longer, {siteId, tagId, interval}, first, last).detach();
    });
}

HRESULT QAManager::GetOccurrences(BSTR siteId, DATE first, DATE last, VARIANT_BOOL showDowntimes,
                                  VARIANT_BOOL showExceedences, LONG filter, VARIANT_BOOL orderByTag,
                                  VARIANT pidList, DICollection** result) noexcept {
    return com::guard(errorSource, __uuidof(DIQAManager), [&] {
        com::needPointers(result);
        *result = nullptr;
        *result = occurrences(session_, {siteId, first, last, showDowntimes != VARIANT_FALSE,
                                         showExceedences != VARIANT_FALSE, filter,
                                         orderByTag != VARIANT_FALSE, pidList})
                      .detach();
    });
}

HRESULT QAManager::FindDataPoint(BSTR siteId, LONG tagId, BSTR interval, DATE from, DATE to,
                                 DIDataPoint** result) noexcept {
    return com::guard(errorSource, __uuidof(DIQAManager), [&] {
        com::needPointers(result);
        *result = nullptr;
        *result = findDataPoint(*session_, {siteId, tagId, interval}, from, to).detach();
    });
}

HRESULT QAManager::SaveDataPoint(BSTR siteId, LONG tagId, BSTR interval, DATE timeStamp, VARIANT nValue,
                                 VARIANT mc, VARIANT_BOOL flag, BSTR occDataXml, BSTR editSource,
                                 BSTR editUser, VARIANT_BOOL* result) noexcept {
    return com::guard(errorSource, __uuidof(DIQAManager), [&] {
        com::needPointers(result);
        *result = VARIANT_FALSE;
        saveDataPoint(session_, {siteId, tagId, interval},
                      {timeStamp, nValue, mc, flag != VARIANT_FALSE, occDataXml, editSource, editUser});
        *result = VARIANT_TRUE;
    });
}

HRESULT QAManager::UpdateXValue(BSTR siteId, LONG tagId, BSTR interval, DATE timeStamp, BSTR xValueXml,
                                VARIANT_BOOL* result) noexcept {
    return com::guard(errorSource, __uuidof(DIQAManager), [&] {
        com::needPointers(result);
        *result = VARIANT_FALSE;
        *result = com::variantBool(
            updateExtraValue(*session_, Term::longer, {siteId, tagId, interval}, timeStamp, xValueXml));
    });
}

}  // namespace vtdn::embedded
