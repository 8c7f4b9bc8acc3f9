// The alarm log of a site, for writing.
#pragma once

#include <VTDI.h>

#include <memory>

#include "com/object.h"
#include "data_interface/session.h"

namespace vtdn::embedded {

class AlarmWriter final : public com::Object<AlarmWriter, DIAlarmWriter> {
  public:
    explicit AlarmWriter(std::shared_ptr<Session> session) noexcept : session_(std::move(session)) {}

    /// On the disk when it returns. The site id must be that of the open site; an empty one takes it. Error 5
    /// for another site or a text that cannot be kept, 6 for a date outside the years 100 to 9999 or a
    /// severity outside 0 to 4, 91 while the engine is not set up. Texts may be empty.
    HRESULT STDMETHODCALLTYPE WriteAlarm(BSTR siteId, DATE timeStamp, BSTR message, BSTR category,
                                         LONG severity, BSTR group, BSTR source) noexcept override;

  private:
    std::shared_ptr<Session> session_;
};

}  // namespace vtdn::embedded
