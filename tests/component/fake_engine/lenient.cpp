#include "fake_engine/lenient.h"

#include <ocidl.h>

#include <algorithm>
#include <new>
#include <utility>

#include "com/strings.h"
#include "engine/data_array_blocks.h"
#include "engine/data_array_runs.h"
#include "fake_engine/event_container.h"
#include "fake_engine/lenient_object.h"
#include "fake_engine/lenient_points.h"

namespace vtdn::fake {

namespace {

/// Finds the C++ object behind a DIDataArray pointer; no one else knows it.
constexpr GUID lenientArrayId = {
    0x6f6d2a51, 0x3d0e, 0x4c0b, {0x9e, 0x0d, 0x55, 0x7a, 0x41, 0x2c, 0x90, 0x13}};

/// An interval of its own: a stored one that was fetched, or a new one.
class DataItem final : public Member<EngineObject<DIDataArrayItem>> {
  public:
    explicit DataItem(Site& site) : Member(site) {}
    /// Begins with a copy of a stored interval; fails when memory is short.
    HRESULT copy(const Interval& interval) {
        interval_.mc = interval.mc;
        return copyVariant(interval_.value.receive(), interval.value.get());
    }

    HRESULT STDMETHODCALLTYPE get_Value(VARIANT* result) override {
        VariantInit(result);
        if (const HRESULT failed = tapped("DIDataArrayItem.Value"); FAILED(failed)) return failed;
        return copyVariant(result, interval_.value.get());
    }
    HRESULT STDMETHODCALLTYPE put_Value(VARIANT value) override {
        if (const HRESULT failed = tapped("DIDataArrayItem.Value="); FAILED(failed)) return failed;
        return VariantCopyInd(interval_.value.receive(), &value);
    }
    HRESULT STDMETHODCALLTYPE get_MC(LONG* result) override {
        if (const HRESULT failed = tapped("DIDataArrayItem.MC"); FAILED(failed)) return failed;
        *result = interval_.mc;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE put_MC(LONG value) override {
        if (const HRESULT failed = tapped("DIDataArrayItem.MC="); FAILED(failed)) return failed;
        interval_.mc = value;
        return S_OK;
    }

  private:
    Interval interval_;
};

class DataArray;

/// An interval of an array. The array keeps it for the next call of Item, so that a walk over a year makes
/// one.
class ArrayItem final : public Member<EngineObject<DIDataArrayItem>> {
  public:
    ArrayItem(Site& site, DataArray& owner) : Member(site), owner_(owner) {}
    void show(const Interval& interval) { interval_ = &interval; }

    HRESULT STDMETHODCALLTYPE get_Value(VARIANT* result) override {
        if (const HRESULT failed = tapped("DIDataArrayItem.Value"); FAILED(failed)) [[unlikely]] {
            VariantInit(result);
            return failed;
        }
        const VARIANT& value = interval_->value.get();
        if (value.vt == VT_BSTR) {
            VariantInit(result);
            return copyVariant(result, value);
        }
        *result = value;  // numbers and Null: nothing to duplicate
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE put_Value(VARIANT) override { return E_ACCESSDENIED; }
    HRESULT STDMETHODCALLTYPE get_MC(LONG* result) override {
        if (const HRESULT failed = tapped("DIDataArrayItem.MC"); FAILED(failed)) [[unlikely]]
            return failed;
        *result = interval_->mc;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE put_MC(LONG) override { return E_ACCESSDENIED; }

  protected:
    void dispose() override;

  private:
    DataArray& owner_;
    const Interval* interval_ = nullptr;
};

class DataArray final : public Member<EngineObject<DIDataArray, DIDataArrayRuns, DIDataArrayBlocks>> {
  public:
    explicit DataArray(Site& site) : Member(site) {}
    ~DataArray() override { delete idle_; }

    void fill(const std::vector<Interval>& run) { run_ = &run; }
    /// What a client put into the array, one for each interval; it is gone from there.
    [[nodiscard]] std::vector<Interval> takeContents() {
        std::vector<Interval> all = std::exchange(own_, {});
        all.resize(static_cast<std::size_t>(std::max(count_, LONG{0})));
        return all;
    }
    void takeBack(ArrayItem* item) { delete std::exchange(idle_, item); }

    HRESULT STDMETHODCALLTYPE Define(DATE, LONG count, BSTR, LONG, LONG) override {
        if (const HRESULT failed = tapped("DIDataArray.Define"); FAILED(failed)) return failed;
        count_ = count;
        own_.clear();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Fill(VARIANT value, LONG mc) override {
        if (const HRESULT failed = tapped("DIDataArray.Fill"); FAILED(failed)) return failed;
        std::vector<Interval> all(static_cast<std::size_t>(std::max(count_, LONG{0})));
        for (Interval& interval : all) {
            interval.mc = mc;
            const HRESULT copied = VariantCopyInd(interval.value.receive(), &value);
            if (FAILED(copied)) return copied;
        }
        own_ = std::move(all);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE SetItem(LONG index, VARIANT value, LONG mc) override {
        if (const HRESULT failed = tapped("DIDataArray.SetItem"); FAILED(failed)) [[unlikely]]
            return failed;
        ++site().setItemCalls;
        if (index < 1 || index > count_) return DISP_E_BADINDEX;
        com::Variant copy;
        if (const HRESULT failed = VariantCopyInd(copy.receive(), &value); FAILED(failed)) return failed;
        set(index, std::move(copy), mc);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE SetRun(LONG index, const DIDataRun* run) override {
        if (const HRESULT failed = tapped("DIDataArrayBlocks.SetRun"); FAILED(failed)) return failed;
        ++site().setRunCalls;
        if (index < 1 || run->count < 1 || run->count > count_ - index + 1) return E_INVALIDARG;
        for (LONG i = 0; i < run->count; ++i) {
            set(index + i, valueOf(*run, i), run->mcs ? run->mcs[i] : run->mc);
        }
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Item(LONG index, DIDataArrayItem** result) override {
        *result = nullptr;
        if (const HRESULT failed = tapped("DIDataArray.Item"); FAILED(failed)) [[unlikely]]
            return failed;
        ++site().itemCalls;
        if (!run_ || index < 1 || index > count_) return DISP_E_BADINDEX;
        ArrayItem* item = std::exchange(idle_, nullptr);
        if (!item) item = new ArrayItem(site(), *this);
        item->show(at(index));
        AddRef();  // the item holds its array
        item->AddRef();
        *result = item;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetRun(LONG index, DIDataRun* run) override {
        if (const HRESULT failed = tapped("DIDataArrayRuns.GetRun"); FAILED(failed)) return failed;
        ++site().runCalls;
        if (!run_ || index < 1 || index > count_) return E_INVALIDARG;
        buildColumns();
        const VARTYPE type = blockType(at(index));
        LONG end = index + 1;
        bool oneMc = true;
        while (end <= count_ && end - index < site().longestRun && blockType(at(end)) == type) {
            oneMc = oneMc && at(end).mc == at(index).mc;
            ++end;
        }
        const std::size_t first = static_cast<std::size_t>(index) - 1;
        run->count = end - index;
        run->type = type;
        run->values = type == VT_I4   ? static_cast<const void*>(longs_.data() + first)
                      : type == VT_R4 ? static_cast<const void*>(singles_.data() + first)
                      : type == VT_R8 ? static_cast<const void*>(doubles_.data() + first)
                                      : nullptr;
        run->mcs = oneMc ? nullptr : mcs_.data() + first;
        run->mc = at(index).mc;
        return S_OK;
    }

  protected:
    void* find(REFIID iid) override {
        if (IsEqualIID(iid, lenientArrayId)) return this;
        if (IsEqualIID(iid, __uuidof(DIDataArrayRuns)) && site().offerRuns) {
            return static_cast<DIDataArrayRuns*>(this);
        }
        if (IsEqualIID(iid, __uuidof(DIDataArrayBlocks)) && site().offerBlocks) {
            return static_cast<DIDataArrayBlocks*>(this);
        }
        return Member::find(iid);
    }

  private:
    static com::Variant valueOf(const DIDataRun& run, LONG i) {
        switch (run.type) {
            case VT_NULL:
                return com::Variant::null();
            case VT_I4:
                return com::Variant::of(static_cast<const LONG*>(run.values)[i]);
            case VT_R4:
                return com::Variant::of(static_cast<const float*>(run.values)[i]);
            case VT_R8:
                return com::Variant::of(static_cast<const double*>(run.values)[i]);
            default:
                return {};
        }
    }
    void set(LONG index, com::Variant value, LONG mc) {
        if (own_.empty()) own_.resize(static_cast<std::size_t>(count_));
        own_[static_cast<std::size_t>(index) - 1] = {std::move(value), mc};
    }
    [[nodiscard]] const Interval& at(LONG index) const {
        static const Interval none;
        const auto i = static_cast<std::size_t>(index) - 1;
        return i < run_->size() ? (*run_)[i] : none;
    }
    static VARTYPE blockType(const Interval& interval) {
        const VARTYPE type = interval.value.type();
        return type == VT_NULL || type == VT_I4 || type == VT_R4 || type == VT_R8 ? type : VARTYPE{VT_EMPTY};
    }
    void buildColumns() {
        if (!mcs_.empty()) return;
        const auto count = static_cast<std::size_t>(count_);
        longs_.resize(count);
        singles_.resize(count);
        doubles_.resize(count);
        mcs_.resize(count);
        for (std::size_t i = 0; i < count; ++i) {
            const Interval& interval = at(static_cast<LONG>(i) + 1);
            const VARIANT& value = interval.value.get();
            if (value.vt == VT_I4) longs_[i] = value.lVal;
            if (value.vt == VT_R4) singles_[i] = value.fltVal;
            if (value.vt == VT_R8) doubles_[i] = value.dblVal;
            mcs_[i] = interval.mc;
        }
    }

    const std::vector<Interval>* run_ = nullptr;
    std::vector<Interval> own_;
    LONG count_ = 0;
    ArrayItem* idle_ = nullptr;
    std::vector<LONG> longs_;
    std::vector<float> singles_;
    std::vector<double> doubles_;
    std::vector<LONG> mcs_;
};

void ArrayItem::dispose() {
    DataArray& owner = owner_;
    owner.takeBack(this);
    owner.Release();  // last: it may delete this item
}

class RelationshipOf final : public Member<EngineObject<DIRelationship>> {
  public:
    RelationshipOf(Site& site, const Relationship& relationship)
        : Member(site), relationship_(relationship) {}

    HRESULT STDMETHODCALLTYPE get_IntervalCount(LONG* result) override {
        if (const HRESULT failed = tapped("DIRelationship.IntervalCount"); FAILED(failed)) return failed;
        *result = relationship_.intervalCount;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_IntervalUnit(BSTR* out) override {
        *out = nullptr;
        const HRESULT failed = tapped("DIRelationship.IntervalUnit");
        return FAILED(failed) ? failed : textOut(relationship_.intervalUnit, out);
    }
    HRESULT STDMETHODCALLTYPE get_DetailXML(BSTR* out) override {
        *out = nullptr;
        const HRESULT failed = tapped("DIRelationship.DetailXML");
        return FAILED(failed) ? failed : textOut(relationship_.detailXml, out);
    }

  private:
    const Relationship& relationship_;
};

class Param final : public Member<EngineObject<DIParam>> {
  public:
    Param(Site& site, LONG pid, Parameter& parameter) : Member(site), pid_(pid), parameter_(parameter) {}

    HRESULT STDMETHODCALLTYPE get_PID(LONG* result) override {
        if (const HRESULT failed = tapped("DIParam.PID"); FAILED(failed)) return failed;
        *result = pid_;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE SpecialValue(LONG id, VARIANT* result) override {
        VariantInit(result);
        if (const HRESULT failed = tapped("DIParam.SpecialValue"); FAILED(failed)) return failed;
        const auto found = parameter_.specialValues.find(id);
        if (found != parameter_.specialValues.end()) return copyVariant(result, found->second.get());
        result->vt = VT_NULL;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_Relationship(DIRelationship** result) override {
        *result = nullptr;
        if (const HRESULT failed = tapped("DIParam.Relationship"); FAILED(failed)) return failed;
        if (parameter_.relationship)
            com::Ptr<DIRelationship>(new RelationshipOf(site(), *parameter_.relationship)).detachTo(result);
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE get_Fmt(BSTR* out) override {
        return text("DIParam.Fmt", parameter_.format, out);
    }
    HRESULT STDMETHODCALLTYPE get_IntervalType(BSTR* out) override {
        return text("DIParam.IntervalType", parameter_.intervalType, out);
    }
    HRESULT STDMETHODCALLTYPE get_MeasUnits(BSTR* out) override {
        return text("DIParam.MeasUnits", parameter_.units, out);
    }
    HRESULT STDMETHODCALLTYPE get_Name(BSTR* out) override {
        return text("DIParam.Name", parameter_.name, out);
    }
    HRESULT STDMETHODCALLTYPE get_UsedPIDs(BSTR* out) override {
        return text("DIParam.UsedPIDs", parameter_.usedPids, out);
    }
    HRESULT STDMETHODCALLTYPE get_IOType(LONG* result) override {
        if (const HRESULT failed = tapped("DIParam.IOType"); FAILED(failed)) return failed;
        *result = parameter_.ioType;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetDataItem(DATE time, LONG, DIDataArrayItem** result) override {
        *result = nullptr;
        if (const HRESULT failed = tapped("DIParam.GetDataItem"); FAILED(failed)) return failed;
        com::Ptr<DataItem> item(new DataItem(site()));
        const auto found = parameter_.stored.find(time);
        if (found != parameter_.stored.end()) {
            if (const HRESULT failed = item->copy(found->second); FAILED(failed)) return failed;
        }
        *result = item.detach();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE ReadDataArray(DIDataArray* data) override {
        if (const HRESULT failed = tapped("DIParam.ReadDataArray"); FAILED(failed)) return failed;
        DataArray* array = nullptr;
        if (!data || FAILED(data->QueryInterface(lenientArrayId, reinterpret_cast<void**>(&array)))) {
            return E_INVALIDARG;
        }
        array->fill(parameter_.run);
        array->Release();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE SpecialFunction(LONG id, SAFEARRAY** moreArgs, VARIANT* result) override {
        VariantInit(result);
        if (const HRESULT failed = tapped("DIParam.SpecialFunction"); FAILED(failed)) return failed;
        constexpr LONG writeDataItem = 6;
        constexpr LONG writeDataArray = 33;
        if (id == writeDataItem) return store(*moreArgs);
        if (id == writeDataArray) return storeRun(*moreArgs, result);
        return parameter_.functionAnswer ? copyVariant(result, parameter_.functionAnswer->get())
                                         : E_INVALIDARG;
    }

  private:
    HRESULT text(const char* call, const std::wstring& value, BSTR* out) {
        *out = nullptr;
        const HRESULT failed = tapped(call);
        return FAILED(failed) ? failed : textOut(value, out);
    }
    /// Takes over what the item holds: [0] is the time, [1] the item.
    HRESULT store(SAFEARRAY* arguments) {
        com::Variant time;
        com::Variant object;
        LONG index = 0;
        HRESULT result = SafeArrayGetElement(arguments, &index, time.receive());
        index = 1;
        if (SUCCEEDED(result)) result = SafeArrayGetElement(arguments, &index, object.receive());
        if (FAILED(result)) return result;
        if (time.type() != VT_DATE || object.type() != VT_DISPATCH) return DISP_E_TYPEMISMATCH;
        com::Ptr<DIDataArrayItem> item;
        result = object.get().pdispVal->QueryInterface(__uuidof(DIDataArrayItem), item.receiveVoid());
        Interval interval;
        if (SUCCEEDED(result)) result = item->get_Value(interval.value.receive());
        if (SUCCEEDED(result)) result = item->get_MC(&interval.mc);
        if (SUCCEEDED(result)) parameter_.stored.insert_or_assign(time.get().date, std::move(interval));
        return result;
    }

    /// Takes over what the arrays hold: [0] is the data, [1] the mask.
    HRESULT storeRun(SAFEARRAY* arguments, VARIANT* result) {
        std::vector<Interval>* const targets[] = {&parameter_.written, &parameter_.mask};
        for (LONG i = 0; i < 2; ++i) {
            com::Variant object;
            if (const HRESULT failed = SafeArrayGetElement(arguments, &i, object.receive()); FAILED(failed))
                return failed;
            if (object.type() != VT_DISPATCH) return DISP_E_TYPEMISMATCH;
            DataArray* array = nullptr;
            if (FAILED(
                    object.get().pdispVal->QueryInterface(lenientArrayId, reinterpret_cast<void**>(&array))))
                return DISP_E_TYPEMISMATCH;
            *targets[i] = array->takeContents();
            array->Release();
        }
        com::Variant::ofBool(true).detachTo(result);
        return S_OK;
    }

    LONG pid_;
    Parameter& parameter_;
};

/// The parameters of a site that a test picks, ascending by PID.
template <class Pick>
com::Ptr<DICollection> listOf(Site& site, Pick pick) {
    std::vector<LONG> pids;
    for (auto& [pid, parameter] : site.parameters) {
        if (pick(parameter)) pids.push_back(pid);
    }
    const std::size_t count = pids.size();
    return com::Ptr<DICollection>(new List(site, count, [&site, pids = std::move(pids)](std::size_t i) {
        return com::Ptr<IDispatch>(new Param(site, pids[i], site.parameters.at(pids[i])));
    }));
}

class Params final : public Member<EngineObject<DIParams>> {
  public:
    explicit Params(Site& site) : Member(site) {}

    HRESULT STDMETHODCALLTYPE Exists(LONG pid, VARIANT_BOOL* result) override {
        if (const HRESULT failed = tapped("DIParams.Exists"); FAILED(failed)) return failed;
        *result = com::variantBool(site().parameters.contains(pid));
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Item(LONG pid, LONG, DIParam** result) override {
        *result = nullptr;
        if (const HRESULT failed = tapped("DIParams.Item"); FAILED(failed)) return failed;
        const auto found = site().parameters.find(pid);
        if (found == site().parameters.end()) return DISP_E_BADINDEX;
        com::Ptr<DIParam>(new Param(site(), pid, found->second)).detachTo(result);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE FlushCache() override {
        if (const HRESULT failed = tapped("DIParams.FlushCache"); FAILED(failed)) return failed;
        ++site().cacheFlushes;
        return S_OK;
    }
};

class Utils final : public Member<EngineObject<DIUtils>> {
  public:
    explicit Utils(Site& site) : Member(site) {}

    HRESULT STDMETHODCALLTYPE IsKnownMC(LONG mc, VARIANT_BOOL* result) override {
        if (const HRESULT failed = tapped("DIUtils.IsKnownMC"); FAILED(failed)) return failed;
        *result = com::variantBool(site().knownMcs.contains(mc));
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_MaxMC(LONG* result) override {
        return highest("DIUtils.MaxMC", site().monitorCodes, result);
    }
    HRESULT STDMETHODCALLTYPE get_MaxPC(LONG* result) override {
        return highest("DIUtils.MaxPC", site().parameterCodes, result);
    }
    HRESULT STDMETHODCALLTYPE MCName(LONG code, VARIANT_BOOL longName, BSTR* out) override {
        return name("DIUtils.MCName", site().monitorCodes, code, longName, out);
    }
    HRESULT STDMETHODCALLTYPE PCName(LONG code, VARIANT_BOOL longName, BSTR* out) override {
        return name("DIUtils.PCName", site().parameterCodes, code, longName, out);
    }
    HRESULT STDMETHODCALLTYPE UnitName(LONG unit, BSTR* out) override {
        *out = nullptr;
        const HRESULT failed = tapped("DIUtils.UnitName");
        return FAILED(failed) ? failed : textOut(at(site().units, unit), out);
    }

  private:
    static std::wstring_view at(const std::vector<std::wstring>& names, LONG i) {
        return i >= 0 && static_cast<std::size_t>(i) < names.size() ? names[static_cast<std::size_t>(i)]
                                                                    : std::wstring_view();
    }
    HRESULT highest(const char* call, const Names& names, LONG* result) {
        if (const HRESULT failed = tapped(call); FAILED(failed)) return failed;
        *result = static_cast<LONG>(names.shortNames.size()) - 1;
        return S_OK;
    }
    HRESULT name(const char* call, const Names& names, LONG code, VARIANT_BOOL longName, BSTR* out) {
        *out = nullptr;
        const HRESULT failed = tapped(call);
        return FAILED(failed) ? failed
                              : textOut(at(longName ? names.longNames : names.shortNames, code), out);
    }
};

class AlarmWriter final : public Member<EngineObject<DIAlarmWriter>> {
  public:
    explicit AlarmWriter(Site& site) : Member(site) {}

    HRESULT STDMETHODCALLTYPE WriteAlarm(BSTR siteId, DATE time, BSTR message, BSTR category, LONG severity,
                                         BSTR group, BSTR source) override {
        if (const HRESULT failed = tapped("DIAlarmWriter.WriteAlarm"); FAILED(failed)) return failed;
        const auto text = [](BSTR given) { return std::wstring(com::view(given)); };
        site().alarms.push_back(
            {text(siteId), time, text(message), text(category), severity, text(group), text(source)});
        return S_OK;
    }
};

class SelectedDahs final : public Member<EngineObject<DISelectedDahs>> {
  public:
    explicit SelectedDahs(Site& site) : Member(site) {}

    HRESULT STDMETHODCALLTYPE get_VantorDir(BSTR* out) override {
        return text("DISelectedDahs.VantorDir", out);
    }
    HRESULT STDMETHODCALLTYPE get_SystemDir(BSTR* out) override {
        return text("DISelectedDahs.SystemDir", out);
    }
    HRESULT STDMETHODCALLTYPE get_AlarmConnection(BSTR* out) override {
        return text("DISelectedDahs.AlarmConnection", out);
    }
    HRESULT STDMETHODCALLTYPE get_ConfigConnection(BSTR* out) override {
        return text("DISelectedDahs.ConfigConnection", out);
    }
    HRESULT STDMETHODCALLTYPE get_DataConnection(BSTR* out) override {
        return text("DISelectedDahs.DataConnection", out);
    }
    HRESULT STDMETHODCALLTYPE get_DataShortTermConnection(BSTR* out) override {
        return text("DISelectedDahs.DataShortTermConnection", out);
    }
    HRESULT STDMETHODCALLTYPE get_RealtimeConnection(BSTR* out) override {
        return text("DISelectedDahs.RealtimeConnection", out);
    }
    HRESULT STDMETHODCALLTYPE get_DahsID(LONG* result) override {
        if (const HRESULT failed = tapped("DISelectedDahs.DahsID"); FAILED(failed)) return failed;
        *result = site().dahsId;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_DahsCompleteName(BSTR* out) override {
        return text("DISelectedDahs.DahsCompleteName", out);
    }
    HRESULT STDMETHODCALLTYPE get_SiteID(BSTR* out) override {
        *out = nullptr;
        const HRESULT failed = tapped("DISelectedDahs.SiteID");
        return FAILED(failed) ? failed : textOut(site().siteId, out);
    }
    HRESULT STDMETHODCALLTYPE get_EditUserName(BSTR* out) override {
        return text("DISelectedDahs.EditUserName", out);
    }

  private:
    HRESULT text(const char* call, BSTR* out) {
        *out = nullptr;
        const HRESULT failed = tapped(call);
        return FAILED(failed) ? failed : textOut(site().text, out);
    }
};

class Engine final : public Member<WithEvents<EngineObject<DIEngine, IConnectionPointContainer>>> {
  public:
    explicit Engine(Site& site) : Member(site, site.sinks) {}

    HRESULT STDMETHODCALLTYPE SetClientAppName(BSTR) override { return tapped("DIEngine.SetClientAppName"); }
    HRESULT STDMETHODCALLTYPE get_SiteID(BSTR* out) override {
        *out = nullptr;
        const HRESULT failed = tapped("DIEngine.SiteID");
        return FAILED(failed) ? failed : textOut(site().siteId, out);
    }
    HRESULT STDMETHODCALLTYPE get_AlarmWriter(DIAlarmWriter** result) override {
        return object<fake::AlarmWriter>("DIEngine.AlarmWriter", result);
    }
    HRESULT STDMETHODCALLTYPE get_LongTermData(DIQAManager** result) override {
        return handOut("DIEngine.LongTermData", result, [this] { return makeLongTermData(site()); });
    }
    HRESULT STDMETHODCALLTYPE get_ShortTermData(DIDataPointList** result) override {
        return handOut("DIEngine.ShortTermData", result, [this] { return makeShortTermData(site()); });
    }
    HRESULT STDMETHODCALLTYPE RelationshipParams(LONG, LONG, DICollection** result) override {
        return handOut("DIEngine.RelationshipParams", result, [this] {
            return listOf(site(),
                          [](const Parameter& parameter) { return parameter.relationship.has_value(); });
        });
    }
    HRESULT STDMETHODCALLTYPE ParamsOfTypes(SAFEARRAY* types, DICollection** result) override {
        LONG first = 0;
        com::Variant type;
        if (const HRESULT failed = SafeArrayGetElement(types, &first, type.receive()); FAILED(failed))
            return failed;
        return handOut("DIEngine.ParamsOfTypes", result, [this, &type] {
            return listOf(site(),
                          [&type](const Parameter& parameter) { return parameter.type == type.get().lVal; });
        });
    }
    HRESULT STDMETHODCALLTYPE get_Params(DIParams** result) override {
        return object<Params>("DIEngine.Params", result);
    }
    HRESULT STDMETHODCALLTYPE get_Utils(DIUtils** result) override {
        return object<Utils>("DIEngine.Utils", result);
    }
    HRESULT STDMETHODCALLTYPE SetupByDahsID(LONG dahsId, VARIANT_BOOL* result) override {
        if (const HRESULT failed = tapped("DIEngine.SetupByDahsID"); FAILED(failed)) return failed;
        site().dahsId = dahsId;
        *result = com::variantBool(site().setupAnswer);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE SetupForced(BSTR siteId, BSTR, BSTR, BSTR, BSTR, BSTR, VARIANT_BOOL,
                                          VARIANT_BOOL* result) override {
        if (const HRESULT failed = tapped("DIEngine.SetupForced"); FAILED(failed)) return failed;
        site().siteId = com::view(siteId);
        *result = com::variantBool(site().setupAnswer);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Close() override {
        if (const HRESULT failed = tapped("DIEngine.Close"); FAILED(failed)) return failed;
        ++site().closes;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_SelectedDahs(DISelectedDahs** result) override {
        return object<fake::SelectedDahs>("DIEngine.SelectedDahs", result);
    }

  private:
    template <class I, class Make>
    HRESULT handOut(const char* call, I** result, Make make) {
        *result = nullptr;
        if (const HRESULT failed = tapped(call); FAILED(failed)) return failed;
        make().detachTo(result);
        return S_OK;
    }
    template <class Class, class I>
    HRESULT object(const char* call, I** result) {
        return handOut(call, result, [this] { return com::Ptr<I>(new Class(site())); });
    }
};

/// A class object's way to make an object: shown to the tap as `call`.
template <class I>
Create creator(Site& site, const char* call, com::Ptr<I> (*make)(Site&)) {
    return [&site, call, make](REFIID iid, void** out) {
        if (site.tap) {
            if (const HRESULT failed = site.tap->onCall(call); FAILED(failed)) return failed;
        }
        return make(site)->QueryInterface(iid, out);
    };
}

}  // namespace

com::Ptr<DIEngine> makeEngine(Site& site) {
    return com::Ptr<DIEngine>(new Engine(site));
}
com::Ptr<DIDataArray> makeDataArray(Site& site) {
    return com::Ptr<DIDataArray>(new DataArray(site));
}
com::Ptr<DIDataArrayItem> makeDataItem(Site& site) {
    return com::Ptr<DIDataArrayItem>(new DataItem(site));
}

LenientServer::LenientServer(Site& site) {
    classes_.serve(__uuidof(DIEngineClass), creator(site, "new DIEngine", makeEngine));
    classes_.serve(__uuidof(DIDataArrayClass), creator(site, "new DIDataArray", makeDataArray));
    classes_.serve(__uuidof(DIDataArrayItemClass), creator(site, "new DIDataArrayItem", makeDataItem));
    classes_.serve(__uuidof(DIDataPointClass), creator(site, "new DIDataPoint", makeDataPoint));
}

}  // namespace vtdn::fake
