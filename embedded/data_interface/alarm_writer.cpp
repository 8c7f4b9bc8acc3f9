#include "data_interface/alarm_writer.h"

#include "com/strings.h"
#include "data_interface/date.h"
#include "data_interface/site_id.h"
#include "data_interface/value.h"
#include "store/alarms.h"

namespace vtdn::embedded {

HRESULT AlarmWriter::WriteAlarm(BSTR siteId, DATE timeStamp, BSTR message, BSTR category, LONG severity,
                                BSTR group, BSTR source) noexcept {
    return com::guard(errorSource, __uuidof(DIAlarmWriter), [&] {
        session_->onSite([&](store::Site& site) {
            store::Alarm alarm;
            needThisSite(site, siteId, L"The alarm is", L"Write it with that site's engine.");
            alarm.site_id = site.siteId();
            alarm.time = timeOfDate(timeStamp);
            alarm.message = keptText(com::view(message));
            alarm.category = keptText(com::view(category));
            alarm.severity = severity;
            alarm.group = keptText(com::view(group));
            alarm.source = keptText(com::view(source));
            site.writeAlarm(alarm);
        });
    });
}

}  // namespace vtdn::embedded
