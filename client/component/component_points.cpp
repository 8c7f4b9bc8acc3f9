// The component's data points.
#include "client/component/component.h"
#include "client/component/records.h"
#include "common/dates.h"
#include "store/reader.h"

namespace vtdn::client {

namespace {

std::string textOf(_DataPointBasicWrapper& point,
                   HRESULT (STDMETHODCALLTYPE _DataPointBasicWrapper::*getter)(BSTR*)) {
    com::Bstr text;
    com::check((point.*getter)(text.receive()));
    return com::toUtf8(text.view());
}

PointValue numberOf(_DataPointBasicWrapper& point,
                    HRESULT (STDMETHODCALLTYPE _DataPointBasicWrapper::*getter)(VARIANT*)) {
    com::Variant value;
    com::check((point.*getter)(value.receive()));
    return pointValue(value);
}

PointReading readingOf(_DataPointBasicWrapper& point) {
    DATE time = 0;
    com::check(point.get_TStamp(&time));
    return {common::secondsOfDate(time), numberOf(point, &_DataPointBasicWrapper::get_NValue),
            numberOf(point, &_DataPointBasicWrapper::get_MC),
            textOf(point, &_DataPointBasicWrapper::get_OccDataXML),
            textOf(point, &_DataPointBasicWrapper::get_XValueXML)};
}

}  // namespace

std::vector<PointReading> Component::dataPoints(std::int32_t pid, const store::Interval& interval,
                                                store::Time first, store::Time last) {
    const auto list = store::isShortTerm(interval) ? &_DIWrapper::GetShortTermDataPoints
                                                   : &_DIWrapper::GetLongTermDataPoints;
    com::SafeArray array;
    com::check((wrapper_.get()->*list)(pid, com::Bstr(com::fromUtf8(interval.text())).get(),
                                       common::dateOfSeconds(first), common::dateOfSeconds(last),
                                       array.inOut()));
    std::vector<PointReading> points;
    for (const auto& point : objectsIn<_DataPointBasicWrapper>(array))
        points.push_back(readingOf(*point.get()));
    return points;
}

bool Component::setExtra(std::int32_t pid, const store::Interval& interval, store::Time time,
                         const std::string& text) {
    const auto update = store::isShortTerm(interval) ? &_DIWrapper::UpdateShortTermDataPointXValue
                                                     : &_DIWrapper::UpdateLongTermDataPointXValue;
    com::Ptr<_DataPointBasicWrapper> point;
    com::check(wrapper_->MakeBlankDataPointWrapper(common::dateOfSeconds(time), point.receive()));
    com::check(point->put_XValueXML(com::Bstr(com::fromUtf8(text)).get()));
    VARIANT_BOOL done = VARIANT_FALSE;
    com::check(
        (wrapper_.get()->*update)(point.get(), pid, com::Bstr(com::fromUtf8(interval.text())).get(), &done));
    return done != VARIANT_FALSE;
}

}  // namespace vtdn::client
