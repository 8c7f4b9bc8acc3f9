// The excursion and the downtime that the occurrence text of a record says.
#pragma once

#include <VTDI.h>

#include "com/object.h"
#include "data_interface/occurrence_text.h"

namespace vtdn::embedded {

/// Looks into the occurrence text of a data point or an occurrence, and changes it: both show the same at any
/// time, and nothing that is stored changes. It keeps its record. The text is read when the first member but
/// OccDataXML is called; one that cannot be read fails all of them (E_FAIL) and stays as it is.
///
/// The members of a part that is not there give 0, False or "", and refuse what is put (91).
class OccurrenceEvent final : public com::Object<OccurrenceEvent, DIOccurrenceEvent> {
  public:
    /// The text belongs to the owner.
    OccurrenceEvent(com::Ptr<IUnknown> owner, OccurrenceText& text) noexcept
        : owner_(std::move(owner)), text_(text) {}

    HRESULT STDMETHODCALLTYPE get_OccDataXML(BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE get_HasExcursion(VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE get_HasDowntime(VARIANT_BOOL* result) noexcept override;

    /// One that is there already stays as it is.
    HRESULT STDMETHODCALLTYPE AddExcursion() noexcept override;
    HRESULT STDMETHODCALLTYPE get_Excursion_PID(LONG* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Excursion_PID(LONG value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Excursion_Excludable(VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Excursion_Excludable(VARIANT_BOOL value) noexcept override;
    // Texts: error 5 for one that cannot be kept, or that makes the occurrence too long.
    HRESULT STDMETHODCALLTYPE get_Excursion_Category(BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Excursion_Category(BSTR value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Excursion_Reason(BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Excursion_Reason(BSTR value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Excursion_Action(BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Excursion_Action(BSTR value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Excursion_LimitPID(LONG* result) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Excursion_Limit(BSTR* result) noexcept override;

    // The same for the downtime.
    HRESULT STDMETHODCALLTYPE AddDowntime() noexcept override;
    HRESULT STDMETHODCALLTYPE get_Downtime_PID(LONG* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Downtime_PID(LONG value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Downtime_Excludable(VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Downtime_Excludable(VARIANT_BOOL value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Downtime_Category(BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Downtime_Category(BSTR value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Downtime_Reason(BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Downtime_Reason(BSTR value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Downtime_Action(BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Downtime_Action(BSTR value) noexcept override;

  private:
    template <class Part>
    using PartOf = std::optional<Part> store::Occurrence::*;

    template <class Part>
    HRESULT has(PartOf<Part> part, VARIANT_BOOL* result) const noexcept;
    template <class Part>
    HRESULT add(PartOf<Part> part) noexcept;
    template <class Part, class Member, class Result>
    HRESULT get(PartOf<Part> part, Member member, Result* result) const noexcept;
    template <class Part, class Member, class Given>
    HRESULT put(PartOf<Part> part, Member member, Given value) noexcept;

    com::Ptr<IUnknown> owner_;
    OccurrenceText& text_;
};

}  // namespace vtdn::embedded
