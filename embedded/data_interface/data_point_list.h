// The short-term data points of a site.
#pragma once

#include <VTDI.h>

#include <memory>

#include "com/object.h"
#include "data_interface/session.h"

namespace vtdn::embedded {

/// Data points of less than an hour. It serves the site that is open when it is called, and outlives
/// the engine. What it refuses: data_points.h.
class DataPointList final : public com::Object<DataPointList, DIDataPointList> {
  public:
    explicit DataPointList(std::shared_ptr<Session> session) noexcept : session_(std::move(session)) {}

    /// Those whose intervals begin from the first to the last time, both included, in the order of time. No
    /// object when there are none.
    HRESULT STDMETHODCALLTYPE GetShortTermDataPoints(BSTR siteId, LONG tagId, BSTR interval, DATE first,
                                                     DATE last, DICollection** result) noexcept override;
    /// True when it returns: the text is on the disk, and nothing else has changed. "" removes it.
    HRESULT STDMETHODCALLTYPE UpdateXValue(BSTR siteId, LONG tagId, BSTR interval, DATE timeStamp,
                                           BSTR xValueXml, VARIANT_BOOL* result) noexcept override;

  private:
    std::shared_ptr<Session> session_;
};

}  // namespace vtdn::embedded
