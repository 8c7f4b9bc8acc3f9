// A data point of the engine as clients see it.
#pragma once

#include <VTWrapperDN.h>

#include "engine/data_points.h"
#include "records/record.h"

namespace vtdn {

class DataPointBasicWrapper final
    : public records::Record<DataPointBasicWrapper, _DataPointBasicWrapper, engine::DataPoint> {
  public:
    static constexpr const CLSID& classId = CLSID_DataPointBasicWrapper;
    static constexpr wchar_t source[] = L"VTWrapDN.DataPointBasicWrapper";
    using Record::Record;

    STDMETHODIMP get_TStamp(DATE* result) noexcept override;
    STDMETHODIMP get_NValue(VARIANT* result) noexcept override;
    STDMETHODIMP put_NValue(VARIANT value) noexcept override;
    STDMETHODIMP get_IsNValueNull(VARIANT_BOOL* result) noexcept override;
    STDMETHODIMP SetNValueToNull() noexcept override;
    STDMETHODIMP get_MC(VARIANT* result) noexcept override;
    STDMETHODIMP put_MC(VARIANT value) noexcept override;
    STDMETHODIMP get_IsMCNull(VARIANT_BOOL* result) noexcept override;
    STDMETHODIMP SetMCToNull() noexcept override;
    STDMETHODIMP get_OccDataXML(BSTR* result) noexcept override;
    STDMETHODIMP put_OccDataXML(BSTR value) noexcept override;
    STDMETHODIMP get_XValueXML(BSTR* result) noexcept override;
    STDMETHODIMP put_XValueXML(BSTR value) noexcept override;

  private:
    using Get = engine::Getter<DIDataPoint, VARIANT>;
    using Put = engine::Putter<DIDataPoint, VARIANT>;
    HRESULT getNumeric(Get property, VARIANT* result) const noexcept;
    HRESULT putNumeric(Put property, const VARIANT& value) const noexcept;
    HRESULT isNull(Get property, VARIANT_BOOL* result) const noexcept;
    HRESULT setNull(Put property) const noexcept;
    HRESULT getText(engine::TextProperty<DIDataPoint> property, BSTR* result) const noexcept;
};

}  // namespace vtdn
