// The long-term data of a site.
#pragma once

#include <VTDI.h>

#include <memory>

#include "com/object.h"
#include "data_interface/session.h"

namespace vtdn::embedded {

/// Data points of an hour and longer, and occurrences of all intervals. It serves the site that is open when
/// it is called, and outlives the engine. What it refuses: data_points.h.
class QAManager final : public com::Object<QAManager, DIQAManager> {
  public:
    explicit QAManager(std::shared_ptr<Session> session) noexcept : session_(std::move(session)) {}

    /// Those whose intervals begin from the first to the last time, both included, in the order of time. No
    /// object when there are none.
    HRESULT STDMETHODCALLTYPE GetLongTermDataPoints(BSTR siteId, LONG tagId, BSTR interval, DATE first,
                                                    DATE last, DICollection** result) noexcept override;
    /// Occurrences of all intervals that begin from the first to the last time, both included. No object when
    /// there are none. See occurrences.h.
    HRESULT STDMETHODCALLTYPE GetOccurrences(BSTR siteId, DATE first, DATE last, VARIANT_BOOL showDowntimes,
                                             VARIANT_BOOL showExceedences, LONG filter,
                                             VARIANT_BOOL orderByTag, VARIANT pidList,
                                             DICollection** result) noexcept override;
    /// Of intervals of any length. No object when there is none.
    HRESULT STDMETHODCALLTYPE FindDataPoint(BSTR siteId, LONG tagId, BSTR interval, DATE from, DATE to,
                                            DIDataPoint** result) noexcept override;
    /// True when it returns: value, code and occurrence are on the disk. Of intervals of any length. See
    /// saved_data_point.h.
    HRESULT STDMETHODCALLTYPE SaveDataPoint(BSTR siteId, LONG tagId, BSTR interval, DATE timeStamp,
                                            VARIANT nValue, VARIANT mc, VARIANT_BOOL flag, BSTR occDataXml,
                                            BSTR editSource, BSTR editUser,
                                            VARIANT_BOOL* result) noexcept override;
    /// True when it returns: the text is on the disk, and nothing else has changed. "" removes it.
    HRESULT STDMETHODCALLTYPE UpdateXValue(BSTR siteId, LONG tagId, BSTR interval, DATE timeStamp,
                                           BSTR xValueXml, VARIANT_BOOL* result) noexcept override;

  private:
    std::shared_ptr<Session> session_;
};

}  // namespace vtdn::embedded
