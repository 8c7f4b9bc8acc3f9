#include "data_interface/qa_manager.h"

#include "com/variant.h"
#include "data_interface/data_points.h"

namespace vtdn::embedded {

HRESULT QAManager::GetLongTermDataPoints(BSTR siteId, LONG tagId, BSTR interval, DATE first, DATE last,
                                         DICollection** result) noexcept {
    return com::guard(errorSource, __uuidof(DIQAManager), [&] {
        com::needPointers(result);
        *result = nullptr;
        *result = dataPoints(session_, Term::longer, {siteId, tagId, interval}, first, last).detach();
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
