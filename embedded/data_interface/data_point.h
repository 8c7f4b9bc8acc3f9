// One interval of a tag with all that is kept of it: value, monitor code, occurrence and extra value.
#pragma once

#include <VTDI.h>

#include <optional>
#include <string>

#include "com/object.h"
#include "data_interface/occurrence_text.h"
#include "store/data_points.h"

namespace vtdn::embedded {

/// A record of its own: one that came out of a list is a copy, and putting its properties changes nothing but
/// the record. New: blank, at 30 December 1899 00:00. What is put is converted at once, so that what is read
/// back is what would be stored.
class DataPoint final : public com::Object<DataPoint, DIDataPoint> {
  public:
    static constexpr const CLSID& classId = CLSID_DIDataPointClass;

    DataPoint() = default;
    explicit DataPoint(const store::DataPoint& point);

    HRESULT STDMETHODCALLTYPE get_TStamp(DATE* result) noexcept override;
    /// Blank from then on: no value, no code, no texts. The time is rounded to the nearest second; error 6
    /// for one outside the years 100 to 9999, which changes nothing.
    HRESULT STDMETHODCALLTYPE Initialise(DATE timeStamp) noexcept override;
    HRESULT STDMETHODCALLTYPE get_NValue(VARIANT* result) noexcept override;
    /// As the value of a data item (see fromVariant in value.h).
    HRESULT STDMETHODCALLTYPE put_NValue(VARIANT value) noexcept override;
    /// A 32-bit integer, or Null for no code. What is stored always has one, 0 at least.
    HRESULT STDMETHODCALLTYPE get_MC(VARIANT* result) noexcept override;
    /// See codeFromVariant in value.h.
    HRESULT STDMETHODCALLTYPE put_MC(VARIANT value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_XValueXML(BSTR* result) noexcept override;
    /// Any text; error 5 for one that cannot be kept.
    HRESULT STDMETHODCALLTYPE put_XValueXML(BSTR value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_OccDataXML(BSTR* result) noexcept override;
    /// Any text; error 5 for one that cannot be kept.
    HRESULT STDMETHODCALLTYPE put_OccDataXML(BSTR value) noexcept override;
    /// What the occurrence text says, and a way to change it (see OccurrenceEvent).
    HRESULT STDMETHODCALLTYPE get_Event(DIOccurrenceEvent** result) noexcept override;

  private:
    static HRESULT get(const std::string& text, BSTR* result) noexcept;

    store::Time time_ = 0;
    store::Value value_;
    std::optional<store::MonitorCode> code_;
    std::string extra_;
    OccurrenceText occurrence_;
};

}  // namespace vtdn::embedded
