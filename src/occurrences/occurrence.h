// An occurrence of the engine as clients see it: a data point with its excursion, its downtime or both.
#pragma once

#include <VTWrapperDN.h>

#include "engine/data_points.h"
#include "records/record.h"

namespace vtdn {

class OccurrenceDataWrapper final
    : public records::Record<OccurrenceDataWrapper, _OccurrenceDataWrapper, engine::Occurrence> {
  public:
    static constexpr const CLSID& classId = CLSID_OccurrenceDataWrapper;
    static constexpr wchar_t source[] = L"VTWrapDN.OccurrenceDataWrapper";
    using Record::Record;

    STDMETHODIMP get_AffectedPID(LONG* result) noexcept override;
    STDMETHODIMP get_NValue(VARIANT* result) noexcept override;
    STDMETHODIMP get_TextValue(BSTR* result) noexcept override;
    STDMETHODIMP get_MC(VARIANT* result) noexcept override;
    STDMETHODIMP get_StartDate(DATE* result) noexcept override;
    STDMETHODIMP get_HasExcursion(VARIANT_BOOL* result) noexcept override;
    STDMETHODIMP get_HasDowntime(VARIANT_BOOL* result) noexcept override;
    STDMETHODIMP get_Excursion_PID(LONG* result) noexcept override;
    STDMETHODIMP get_Downtime_PID(LONG* result) noexcept override;
    STDMETHODIMP get_Excursion_Action(BSTR* result) noexcept override;
    STDMETHODIMP put_Excursion_Action(BSTR value) noexcept override;
    STDMETHODIMP get_Downtime_Action(BSTR* result) noexcept override;
    STDMETHODIMP put_Downtime_Action(BSTR value) noexcept override;
    STDMETHODIMP get_Excursion_Reason(BSTR* result) noexcept override;
    STDMETHODIMP put_Excursion_Reason(BSTR value) noexcept override;
    STDMETHODIMP get_Downtime_Reason(BSTR* result) noexcept override;
    STDMETHODIMP put_Downtime_Reason(BSTR value) noexcept override;
    STDMETHODIMP get_Excursion_Excludable(VARIANT_BOOL* result) noexcept override;
    STDMETHODIMP put_Excursion_Excludable(VARIANT_BOOL value) noexcept override;
    STDMETHODIMP get_Downtime_Excludable(VARIANT_BOOL* result) noexcept override;
    STDMETHODIMP put_Downtime_Excludable(VARIANT_BOOL value) noexcept override;
    STDMETHODIMP get_Excursion_Category(BSTR* result) noexcept override;
    STDMETHODIMP put_Excursion_Category(BSTR value) noexcept override;
    STDMETHODIMP get_Downtime_Category(BSTR* result) noexcept override;
    STDMETHODIMP put_Downtime_Category(BSTR value) noexcept override;
    STDMETHODIMP get_Excursion_Limit(BSTR* result) noexcept override;
    STDMETHODIMP get_Excursion_LimitPID(LONG* result) noexcept override;

  private:
    using Event = DIOccurrenceEvent;
    /// Whether the event has a part, by its own property.
    using Has = engine::Getter<Event, VARIANT_BOOL>;

    // The rule of every member of a part: without the part the default, or nothing.
    template <class Result, class Default, class Read>
    HRESULT getOf(Has part, Result* result, const Default& none, Read read) const noexcept;
    template <class Write>
    HRESULT putOf(Has part, Write write) const noexcept;
    HRESULT getText(Has part, engine::TextProperty<Event> property, BSTR* result) const noexcept;
    HRESULT putText(Has part, engine::Putter<Event, BSTR> property, BSTR value) const noexcept;
    HRESULT getPid(Has part, engine::Getter<Event, LONG> property, LONG* result) const noexcept;
    HRESULT getFlag(Has part, engine::Getter<Event, VARIANT_BOOL> property,
                    VARIANT_BOOL* result) const noexcept;
    HRESULT putFlag(Has part, engine::Putter<Event, VARIANT_BOOL> property,
                    VARIANT_BOOL value) const noexcept;
};

}  // namespace vtdn
