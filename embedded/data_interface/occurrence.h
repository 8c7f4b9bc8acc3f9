// One occurrence of a list: a data point with an excursion, a downtime, or both.
#pragma once

#include <VTDI.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "com/object.h"
#include "data_interface/occurrence_text.h"
#include "store/occurrences.h"

namespace vtdn::embedded {

/// What a listing found, shared by the occurrences that are made of it.
struct OccurrenceRows {
    store::OccurrenceList found;
    std::unordered_map<store::Pid, std::string> formats;  ///< display formats of the tags
};

/// A record of its own, like a data point out of a list: changing its event changes nothing else. It shows
/// what there was when the list was made, and outlives everything.
class Occurrence final : public com::Object<Occurrence, DIOccurrence> {
  public:
    /// Row i of the listing.
    Occurrence(std::shared_ptr<const OccurrenceRows> list, std::size_t i) noexcept
        : list_(std::move(list)), row_(list_->found.rows[i]) {}

    HRESULT STDMETHODCALLTYPE get_AffectedPID(LONG* result) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Interval(BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE get_StartDate(DATE* result) noexcept override;
    HRESULT STDMETHODCALLTYPE get_NValue(VARIANT* result) noexcept override;
    /// Always a 32-bit integer, 0 at least.
    HRESULT STDMETHODCALLTYPE get_MC(VARIANT* result) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Event(DIOccurrenceEvent** result) noexcept override;
    /// A number in the display format of the tag, with a decimal point and with all its digits where the tag
    /// has no format; a text itself; "" without a value. The argument is not looked at.
    HRESULT STDMETHODCALLTYPE TextValue(IDispatch* stringServer, BSTR* result) noexcept override;

  private:
    std::shared_ptr<const OccurrenceRows> list_;
    const store::OccurrenceRow& row_;
    std::optional<OccurrenceText> text_;  // once an event was asked for
};

}  // namespace vtdn::embedded
