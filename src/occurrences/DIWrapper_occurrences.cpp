#include "diwrapper/DIWrapper.h"
#include "diwrapper/answer.h"
#include "occurrences/occurrences.h"

namespace vtdn {

STDMETHODIMP DIWrapper::SaveOccurrence(_OccurrenceDataWrapper* objOccurrence, VARIANT_BOOL* result) noexcept {
    return answer<_DIWrapper>(result, [&] { return occurrences::save(session_, objOccurrence); });
}

STDMETHODIMP DIWrapper::GetOccurrences(DATE dtmFirstTStamp, DATE dtmLastTStamp, VARIANT_BOOL blnShowDowntimes,
                                       VARIANT blnShowExceedences, LONG lngExcludeFilter,
                                       VARIANT_BOOL blnOrderByTag, SAFEARRAY** lngUnitOrTagList,
                                       SAFEARRAY** result) noexcept {
    return answer<_DIWrapper>(result, [&] {
        com::needPointers(lngUnitOrTagList);
        return occurrences::list(
            session_, {dtmFirstTStamp, dtmLastTStamp, blnShowDowntimes != VARIANT_FALSE, blnShowExceedences,
                       lngExcludeFilter, blnOrderByTag != VARIANT_FALSE, *lngUnitOrTagList});
    });
}

STDMETHODIMP DIWrapper::CreateOrRetrieveOccurrence(LONG lngOccPID, DATE dtmTStamp,
                                                   _OccurrenceDataWrapper** result) noexcept {
    return answer<_DIWrapper>(result,
                              [&] { return occurrences::createOrRetrieve(session_, lngOccPID, dtmTStamp); });
}

}  // namespace vtdn
