// Data points of the engine, their occurrences, and who keeps them.
#pragma once

#include "engine/object.h"

namespace vtdn::engine {

using OccurrenceEvent = Record<DIOccurrenceEvent>;

class Occurrence : public Record<DIOccurrence> {
  public:
    using Record::Record;

    /// None when there is none.
    [[nodiscard]] OccurrenceEvent event() const {
        com::Ptr<DIOccurrenceEvent> result;
        com::check(get()->get_Event(result.receive()));
        return result ? OccurrenceEvent(std::move(result)) : OccurrenceEvent();
    }
    [[nodiscard]] com::Bstr textValue() const {
        com::Bstr result;
        com::check(get()->TextValue(nullptr, result.receive()));
        return result;
    }
};

class DataPoint : public Record<DIDataPoint> {
  public:
    using Record::Record;
    static DataPoint create() { return engine::create<DataPoint>(CLSID_DIDataPointClass); }

    void initialise(DATE timeStamp) const { com::check(get()->Initialise(timeStamp)); }
    [[nodiscard]] OccurrenceEvent event() const {
        com::Ptr<DIOccurrenceEvent> result;
        com::check(get()->get_Event(result.receive()));
        return OccurrenceEvent(std::move(result));
    }
};

/// Which data points: those of a tag of a site at an interval. Borrowed.
struct DataPointKey {
    const com::Bstr& siteId;
    LONG tagId;
    BSTR interval;
};

/// A manager of data points, by its two operations.
template <class I>
class DataPoints : public Object<I> {
  public:
    using Object<I>::Object;
    using Collected = Collection<DataPoint>;
    using List = HRESULT (STDMETHODCALLTYPE I::*)(BSTR, LONG, BSTR, DATE, DATE, DICollection**);

    /// None when there are none.
    [[nodiscard]] Collected list(List which, const DataPointKey& key, DATE first, DATE last) const {
        com::Ptr<DICollection> result;
        com::check(
            (this->get()->*which)(key.siteId.get(), key.tagId, key.interval, first, last, result.receive()));
        return result ? Collected(std::move(result)) : Collected();
    }
    [[nodiscard]] bool updateXValue(const DataPointKey& key, DATE timeStamp, const com::Bstr& xValue) const {
        VARIANT_BOOL result = VARIANT_FALSE;
        com::check(this->get()->UpdateXValue(key.siteId.get(), key.tagId, key.interval, timeStamp,
                                             xValue.get(), &result));
        return result != VARIANT_FALSE;
    }
};

using ShortTermData = DataPoints<DIDataPointList>;

/// Which occurrences. Borrowed.
struct OccurrenceQuery {
    DATE first;
    DATE last;
    bool showDowntimes;
    bool showExceedences;
    LONG filter;
    bool orderByTag;
    const VARIANT& pidList;
};

/// What is saved of a data point. Borrowed.
struct DataPointContent {
    DATE timeStamp;
    const com::Variant& value;
    const com::Variant& mc;
    bool flag;
    const com::Bstr& occDataXml;
    const com::Bstr& editSource;
    const com::Bstr& editUser;
};

class LongTermData : public DataPoints<DIQAManager> {
  public:
    using DataPoints::DataPoints;

    /// None when there are none.
    [[nodiscard]] Collection<Occurrence> occurrences(const com::Bstr& siteId,
                                                     const OccurrenceQuery& query) const {
        com::Ptr<DICollection> result;
        com::check(get()->GetOccurrences(
            siteId.get(), query.first, query.last, com::variantBool(query.showDowntimes),
            com::variantBool(query.showExceedences), query.filter, com::variantBool(query.orderByTag),
            query.pidList, result.receive()));
        return result ? Collection<Occurrence>(std::move(result)) : Collection<Occurrence>();
    }
    /// None when there is none.
    [[nodiscard]] DataPoint find(const DataPointKey& key, DATE from, DATE to) const {
        com::Ptr<DIDataPoint> result;
        com::check(
            get()->FindDataPoint(key.siteId.get(), key.tagId, key.interval, from, to, result.receive()));
        return result ? DataPoint(std::move(result)) : DataPoint();
    }
    [[nodiscard]] bool save(const DataPointKey& key, const DataPointContent& content) const {
        VARIANT_BOOL result = VARIANT_FALSE;
        com::check(get()->SaveDataPoint(key.siteId.get(), key.tagId, key.interval, content.timeStamp,
                                        content.value.get(), content.mc.get(), com::variantBool(content.flag),
                                        content.occDataXml.get(), content.editSource.get(),
                                        content.editUser.get(), &result));
        return result != VARIANT_FALSE;
    }
};

}  // namespace vtdn::engine
