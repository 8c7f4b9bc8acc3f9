#include "diwrapper/DIWrapper.h"
#include "diwrapper/answer.h"
#include "params/relationships.h"

namespace vtdn {

STDMETHODIMP DIWrapper::GetListOfRelationshipPIDs(ParamRelationshipEnum lngParamRelationship,
                                                  LONG lngIntervalCount, BSTR* result) noexcept {
    return answer<_DIWrapper>(
        result, [&] { return params::listRelated(session_, lngParamRelationship, lngIntervalCount); });
}

STDMETHODIMP DIWrapper::GetRelationshipDetailData(LONG lngPID, BSTR* strRelationshipInfoXML,
                                                  VARIANT_BOOL* result) noexcept {
    return answer<_DIWrapper>(result, [&] {
        com::needPointers(strRelationshipInfoXML);
        return params::relationshipDetail(session_, lngPID, com::ClientBstr(strRelationshipInfoXML));
    });
}

STDMETHODIMP DIWrapper::GetListOfAllRelationshipPIDs(BSTR* result) noexcept {
    return answer<_DIWrapper>(result, [&] { return params::listAllRelated(session_); });
}

}  // namespace vtdn
