#include "diwrapper/DIWrapper.h"
#include "diwrapper/answer.h"
#include "params/lists.h"

namespace vtdn {

STDMETHODIMP DIWrapper::GetListOfTypeXPIDs(LONG lngParamType, BSTR* result) noexcept {
    return answer<_DIWrapper>(result,
                              [&] { return params::listParams(session_, params::ofType(lngParamType)); });
}

STDMETHODIMP DIWrapper::GetListOf75CalPIDs(BSTR* result) noexcept {
    return answer<_DIWrapper>(result,
                              [&] { return params::listParams(session_, params::part75Calibration); });
}

STDMETHODIMP DIWrapper::GetListOfCalPIDs(BSTR* result) noexcept {
    return answer<_DIWrapper>(result, [&] { return params::listParams(session_, params::calibration); });
}

STDMETHODIMP DIWrapper::GetListOf75LinearityPIDs(BSTR* result) noexcept {
    return answer<_DIWrapper>(result, [&] { return params::listParams(session_, params::part75Linearity); });
}

STDMETHODIMP DIWrapper::GetListOf75IntfCheckPIDs(BSTR* result) noexcept {
    return answer<_DIWrapper>(result,
                              [&] { return params::listParams(session_, params::part75InterferenceCheck); });
}

}  // namespace vtdn
