#include "data_interface/data_point_list.h"

#include "com/variant.h"
#include "data_interface/data_points.h"

namespace vtdn::embedded {

HRESULT DataPointList::GetShortTermDataPoints(BSTR siteId, LONG tagId, BSTR interval, DATE first, DATE last,
                                              DICollection** result) noexcept {
    return com::guard(errorSource, __uuidof(DIDataPointList), [&] {
        com::needPointers(result);
        *result = nullptr;
        *result = dataPoints(session_, Term::shorter, {siteId, tagId, interval}, first, last).detach();
    });
}

HRESULT DataPointList::UpdateXValue(BSTR siteId, LONG tagId, BSTR interval, DATE timeStamp, BSTR xValueXml,
                                    VARIANT_BOOL* result) noexcept {
    return com::guard(errorSource, __uuidof(DIDataPointList), [&] {
        com::needPointers(result);
        *result = VARIANT_FALSE;
        *result = com::variantBool(
            updateExtraValue(*session_, Term::shorter, {siteId, tagId, interval}, timeStamp, xValueXml));
    });
}

}  // namespace vtdn::embedded
