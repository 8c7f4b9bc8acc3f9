// The data-interface engine in C++ types: one inline function for each engine call, which throws the engine's
// failure as it came. Nothing is asked twice and nothing is remembered.
#pragma once

#include <VTDI.h>

#include <utility>

#include "com/error.h"
#include "com/ptr.h"
#include "com/safe_array.h"
#include "com/strings.h"
#include "com/variant.h"
#include "engine/data_array_blocks.h"
#include "engine/data_array_runs.h"

namespace vtdn::engine {

/// A reference to an engine object, or to none where nothing was asked for yet.
template <class I>
class Object {
  public:
    using Interface = I;

    Object() noexcept = default;
    /// Takes what a call handed out. No object, although the call succeeded, is an unset reference: error 91.
    explicit Object(com::Ptr<I> object) : object_(std::move(object)) {
        if (!object_) [[unlikely]]
            com::throwError(com::unsetObject);
    }
    explicit operator bool() const noexcept { return static_cast<bool>(object_); }
    [[nodiscard]] I* get() const noexcept { return object_.get(); }

  private:
    com::Ptr<I> object_;
};

/// A property of type text, as &DIParam::get_Name.
template <class I>
using TextProperty = HRESULT (STDMETHODCALLTYPE I::*)(BSTR*);

template <class I>
class ObjectWithTexts : public Object<I> {
  public:
    using Object<I>::Object;

    [[nodiscard]] com::Bstr text(TextProperty<I> property) const {
        com::Bstr result;
        com::check((this->get()->*property)(result.receive()));
        return result;
    }
};

/// The same for properties of other types, as &DIDataPoint::get_TStamp.
template <class I, class T>
using Getter = HRESULT (STDMETHODCALLTYPE I::*)(T*);
template <class I, class T>
using Putter = HRESULT (STDMETHODCALLTYPE I::*)(T);

/// A record of the engine: nothing but properties.
template <class I>
class Record : public ObjectWithTexts<I> {
  public:
    using ObjectWithTexts<I>::ObjectWithTexts;

    [[nodiscard]] LONG number(Getter<I, LONG> property) const { return plain(property); }
    [[nodiscard]] DATE date(Getter<I, DATE> property) const { return plain(property); }
    [[nodiscard]] bool flag(Getter<I, VARIANT_BOOL> property) const {
        return plain(property) != VARIANT_FALSE;
    }
    [[nodiscard]] com::Variant value(Getter<I, VARIANT> property) const {
        com::Variant result;
        com::check((this->get()->*property)(result.receive()));
        return result;
    }
    template <class T>
    void put(Putter<I, T> property, T value) const {
        com::check((this->get()->*property)(value));
    }
    void put(Putter<I, VARIANT> property, const com::Variant& value) const {
        com::check((this->get()->*property)(value.get()));
    }
    void call(HRESULT (STDMETHODCALLTYPE I::*method)()) const { com::check((this->get()->*method)()); }

  private:
    template <class T>
    [[nodiscard]] T plain(Getter<I, T> property) const {
        T result{};
        com::check((this->get()->*property)(&result));
        return result;
    }
};

/// Objects of class T, in the engine's order.
template <class T>
class Collection : public Object<DICollection> {
  public:
    using Object::Object;

    [[nodiscard]] LONG count() const {
        LONG result = 0;
        com::check(get()->get_Count(&result));
        return result;
    }
    /// The object with the given index, from 1.
    [[nodiscard]] T item(LONG index) const {
        com::Ptr<IDispatch> object;
        com::check(get()->Item(index, object.receive()));
        com::Ptr<typename T::Interface> typed;
        if (object) com::check(object->QueryInterface(__uuidof(typename T::Interface), typed.receiveVoid()));
        return T(std::move(typed));
    }
};

/// A new engine object, from whichever library is registered for the class.
template <class T>
T create(REFCLSID clsid) {
    com::Ptr<typename T::Interface> object;
    com::check(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, __uuidof(typename T::Interface),
                                object.receiveVoid()));
    return T(std::move(object));
}

/// One interval of a parameter.
class DataItem : public Object<DIDataArrayItem> {
  public:
    using Object::Object;
    static DataItem create() { return engine::create<DataItem>(CLSID_DIDataArrayItemClass); }

    /// Reads the value over the old content of `out`.
    void value(com::Variant& out) const { com::check(get()->get_Value(out.receive())); }
    /// The same for callers that go on after a failure: reported, its error info taken off the thread.
    [[nodiscard]] bool tryValue(com::Variant& out) const {
        if (SUCCEEDED(get()->get_Value(out.receive()))) [[likely]]
            return true;
        SetErrorInfo(0, nullptr);
        return false;
    }
    void putValue(const com::Variant& value) const { com::check(get()->put_Value(value.get())); }
    [[nodiscard]] LONG mc() const {
        LONG result = 0;
        com::check(get()->get_MC(&result));
        return result;
    }
    void putMc(LONG mc) const { com::check(get()->put_MC(mc)); }
};

/// Block access to a filled data array, where the engine offers it.
class DataRuns {
  public:
    explicit DataRuns(com::Ptr<DIDataArrayRuns> runs) noexcept : runs_(std::move(runs)) {}

    /// The longest run from the item with the given index, from 1. False when there is none: the items tell.
    [[nodiscard]] bool next(LONG index, DIDataRun& out) const {
        if (!runs_) return false;
        if (SUCCEEDED(runs_->GetRun(index, &out))) return out.count > 0;
        SetErrorInfo(0, nullptr);
        return false;
    }

  private:
    com::Ptr<DIDataArrayRuns> runs_;
};

/// Block writes into a data array, where the engine offers them.
class DataBlocks {
  public:
    explicit DataBlocks(com::Ptr<DIDataArrayBlocks> blocks) noexcept : blocks_(std::move(blocks)) {}
    explicit operator bool() const noexcept { return static_cast<bool>(blocks_); }
    void set(LONG index, const DIDataRun& run) const { com::check(blocks_->SetRun(index, &run)); }

  private:
    com::Ptr<DIDataArrayBlocks> blocks_;
};

/// A run of consecutive intervals.
class DataArray : public Object<DIDataArray> {
  public:
    using Object::Object;
    static DataArray create() { return engine::create<DataArray>(CLSID_DIDataArrayClass); }

    void define(DATE periodStart, LONG count, const com::Bstr& intervalType, LONG intervalLength) const {
        com::check(get()->Define(periodStart, count, intervalType.get(), intervalLength, 0));
    }
    /// The interval with the given index, from 1.
    [[nodiscard]] DataItem item(LONG index) const {
        com::Ptr<DIDataArrayItem> result;
        com::check(get()->Item(index, result.receive()));
        return DataItem(std::move(result));
    }
    void fill(const com::Variant& value, LONG mc) const { com::check(get()->Fill(value.get(), mc)); }
    /// Sets the interval with the given index, from 1.
    void setItem(LONG index, const com::Variant& value, LONG mc) const {
        com::check(get()->SetItem(index, value.get(), mc));
    }
    /// Block writes, or none when the engine does not offer them.
    [[nodiscard]] DataBlocks blocks() const {
        com::Ptr<DIDataArrayBlocks> result;
        if (FAILED(get()->QueryInterface(__uuidof(DIDataArrayBlocks), result.receiveVoid()))) result.reset();
        return DataBlocks(std::move(result));
    }
    /// Block access; gives no run when the engine does not offer it.
    [[nodiscard]] DataRuns runs() const {
        com::Ptr<DIDataArrayRuns> result;
        if (FAILED(get()->QueryInterface(__uuidof(DIDataArrayRuns), result.receiveVoid()))) result.reset();
        return DataRuns(std::move(result));
    }
};

class Relationship : public ObjectWithTexts<DIRelationship> {
  public:
    using ObjectWithTexts::ObjectWithTexts;

    [[nodiscard]] LONG intervalCount() const {
        LONG result = 0;
        com::check(get()->get_IntervalCount(&result));
        return result;
    }
};

class Param : public ObjectWithTexts<DIParam> {
  public:
    using ObjectWithTexts::ObjectWithTexts;

    [[nodiscard]] LONG pid() const {
        LONG result = 0;
        com::check(get()->get_PID(&result));
        return result;
    }
    [[nodiscard]] LONG ioType() const {
        LONG result = 0;
        com::check(get()->get_IOType(&result));
        return result;
    }
    [[nodiscard]] DataItem dataItem(DATE timeStamp) const {
        com::Ptr<DIDataArrayItem> result;
        com::check(get()->GetDataItem(timeStamp, 0, result.receive()));
        return DataItem(std::move(result));
    }
    void readDataArray(const DataArray& data) const { com::check(get()->ReadDataArray(data.get())); }
    com::Variant specialFunction(LONG id, com::SafeArray& moreArgs) const {
        com::Variant result;
        com::check(get()->SpecialFunction(id, moreArgs.inOut(), result.receive()));
        return result;
    }
    [[nodiscard]] com::Variant specialValue(LONG id) const {
        com::Variant result;
        com::check(get()->SpecialValue(id, result.receive()));
        return result;
    }
    /// None when the parameter has none.
    [[nodiscard]] Relationship relationship() const {
        com::Ptr<DIRelationship> result;
        com::check(get()->get_Relationship(result.receive()));
        return result ? Relationship(std::move(result)) : Relationship();
    }
};

class Params : public Object<DIParams> {
  public:
    using Object::Object;

    [[nodiscard]] bool exists(LONG pid) const {
        VARIANT_BOOL result = VARIANT_FALSE;
        com::check(get()->Exists(pid, &result));
        return result != VARIANT_FALSE;
    }
    [[nodiscard]] Param item(LONG pid) const {
        com::Ptr<DIParam> result;
        com::check(get()->Item(pid, -1, result.receive()));
        return Param(std::move(result));
    }
    void flushCache() const { com::check(get()->FlushCache()); }
};

/// A numbered list of names: &DIUtils::get_MaxMC with &DIUtils::MCName, and the like.
using HighestCode = HRESULT (STDMETHODCALLTYPE DIUtils::*)(LONG*);
using CodeName = HRESULT (STDMETHODCALLTYPE DIUtils::*)(LONG, VARIANT_BOOL, BSTR*);

class Utils : public Object<DIUtils> {
  public:
    using Object::Object;

    [[nodiscard]] LONG highest(HighestCode which) const {
        LONG result = 0;
        com::check((get()->*which)(&result));
        return result;
    }
    [[nodiscard]] com::Bstr name(CodeName which, LONG code, bool longName) const {
        com::Bstr result;
        com::check((get()->*which)(code, com::variantBool(longName), result.receive()));
        return result;
    }
    [[nodiscard]] com::Bstr unitName(LONG unit) const {
        com::Bstr result;
        com::check(get()->UnitName(unit, result.receive()));
        return result;
    }

    [[nodiscard]] bool isKnownMc(LONG mc) const {
        VARIANT_BOOL result = VARIANT_FALSE;
        com::check(get()->IsKnownMC(mc, &result));
        return result != VARIANT_FALSE;
    }
};

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

class SelectedDahs : public ObjectWithTexts<DISelectedDahs> {
  public:
    using ObjectWithTexts::ObjectWithTexts;

    [[nodiscard]] LONG dahsId() const {
        LONG result = 0;
        com::check(get()->get_DahsID(&result));
        return result;
    }
};

/// What an alarm says; the texts as the client gave them, borrowed.
struct Alarm {
    DATE timeStamp;
    BSTR message;
    BSTR category;
    LONG severity;
    BSTR group;
    BSTR source;
};

class AlarmWriter : public Object<DIAlarmWriter> {
  public:
    using Object::Object;

    void writeAlarm(const com::Bstr& siteId, const Alarm& alarm) const {
        com::check(get()->WriteAlarm(siteId.get(), alarm.timeStamp, alarm.message, alarm.category,
                                     alarm.severity, alarm.group, alarm.source));
    }
};

/// A site id and five connection strings, each as the client gave it; borrowed.
struct ForcedSite {
    BSTR siteId;
    BSTR alarmConnection;
    BSTR configConnection;
    BSTR dataConnection;
    BSTR dataShortTermConnection;
    BSTR realtimeConnection;
};

class Engine : public ObjectWithTexts<DIEngine> {
  public:
    using ObjectWithTexts::ObjectWithTexts;
    static Engine create() { return engine::create<Engine>(CLSID_DIEngineClass); }

    void setClientAppName(BSTR name) const { com::check(get()->SetClientAppName(name)); }
    [[nodiscard]] bool setupByDahsId(LONG dahsId) const {
        VARIANT_BOOL result = VARIANT_FALSE;
        com::check(get()->SetupByDahsID(dahsId, &result));
        return result != VARIANT_FALSE;
    }
    [[nodiscard]] bool setupForced(const ForcedSite& site) const {
        VARIANT_BOOL result = VARIANT_FALSE;
        com::check(get()->SetupForced(site.siteId, site.alarmConnection, site.configConnection,
                                      site.dataConnection, site.dataShortTermConnection,
                                      site.realtimeConnection, VARIANT_FALSE, &result));
        return result != VARIANT_FALSE;
    }
    void close() const { com::check(get()->Close()); }
    [[nodiscard]] AlarmWriter alarmWriter() const {
        com::Ptr<DIAlarmWriter> result;
        com::check(get()->get_AlarmWriter(result.receive()));
        return AlarmWriter(std::move(result));
    }
    [[nodiscard]] LongTermData longTermData() const {
        com::Ptr<DIQAManager> result;
        com::check(get()->get_LongTermData(result.receive()));
        return LongTermData(std::move(result));
    }
    [[nodiscard]] ShortTermData shortTermData() const {
        com::Ptr<DIDataPointList> result;
        com::check(get()->get_ShortTermData(result.receive()));
        return ShortTermData(std::move(result));
    }
    /// The parameters that carry a relationship.
    [[nodiscard]] Collection<Param> relationshipParams() const {
        com::Ptr<DICollection> result;
        com::check(get()->RelationshipParams(0, -1, result.receive()));
        return Collection<Param>(std::move(result));
    }
    [[nodiscard]] Collection<Param> paramsOfTypes(const com::SafeArray& types) const {
        com::Ptr<DICollection> result;
        com::check(get()->ParamsOfTypes(types.get(), result.receive()));
        return Collection<Param>(std::move(result));
    }
    [[nodiscard]] Params params() const {
        com::Ptr<DIParams> result;
        com::check(get()->get_Params(result.receive()));
        return Params(std::move(result));
    }
    [[nodiscard]] Utils utils() const {
        com::Ptr<DIUtils> result;
        com::check(get()->get_Utils(result.receive()));
        return Utils(std::move(result));
    }
    [[nodiscard]] SelectedDahs selectedDahs() const {
        com::Ptr<DISelectedDahs> result;
        com::check(get()->get_SelectedDahs(result.receive()));
        return SelectedDahs(std::move(result));
    }
};

}  // namespace vtdn::engine
