#include "fake_engine/lenient_points.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "com/strings.h"
#include "fake_engine/lenient_object.h"
#include "fake_engine/lenient_occurrences.h"

namespace vtdn::fake {

namespace {

/// A copy of a stored data point, or a new one.
class Point final : public Member<EngineObject<DIDataPoint>> {
  public:
    Point(Site& site, const DataPoint& stored)
        : Member(site),
          point_{stored.timeStamp, com::Variant::copyOf(stored.value.get()),
                 com::Variant::copyOf(stored.mc.get()), L"", stored.extra},
          occurrence_(std::make_shared<std::wstring>(stored.occurrence)) {}

    HRESULT STDMETHODCALLTYPE get_TStamp(DATE* result) override {
        if (const HRESULT failed = tapped("DIDataPoint.TStamp"); FAILED(failed)) return failed;
        *result = point_.timeStamp;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Initialise(DATE timeStamp) override {
        if (const HRESULT failed = tapped("DIDataPoint.Initialise"); FAILED(failed)) return failed;
        point_ = {};
        point_.timeStamp = timeStamp;
        occurrence_->clear();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_NValue(VARIANT* result) override {
        return value("DIDataPoint.NValue", point_.value, result);
    }
    HRESULT STDMETHODCALLTYPE put_NValue(VARIANT value) override {
        return put("DIDataPoint.NValue=", point_.value, value);
    }
    HRESULT STDMETHODCALLTYPE get_MC(VARIANT* result) override {
        return value("DIDataPoint.MC", point_.mc, result);
    }
    HRESULT STDMETHODCALLTYPE put_MC(VARIANT value) override {
        return put("DIDataPoint.MC=", point_.mc, value);
    }
    HRESULT STDMETHODCALLTYPE get_XValueXML(BSTR* out) override {
        return text("DIDataPoint.XValueXML", point_.extra, out);
    }
    HRESULT STDMETHODCALLTYPE put_XValueXML(BSTR value) override {
        return put("DIDataPoint.XValueXML=", point_.extra, value);
    }
    HRESULT STDMETHODCALLTYPE get_OccDataXML(BSTR* out) override {
        return text("DIDataPoint.OccDataXML", *occurrence_, out);
    }
    HRESULT STDMETHODCALLTYPE put_OccDataXML(BSTR value) override {
        return put("DIDataPoint.OccDataXML=", *occurrence_, value);
    }
    HRESULT STDMETHODCALLTYPE get_Event(DIOccurrenceEvent** result) override {
        *result = nullptr;
        if (const HRESULT failed = tapped("DIDataPoint.Event"); FAILED(failed)) return failed;
        makeEvent(site(), occurrence_).detachTo(result);
        return S_OK;
    }

  private:
    HRESULT value(const char* call, const com::Variant& stored, VARIANT* result) const {
        VariantInit(result);
        const HRESULT failed = tapped(call);
        return FAILED(failed) ? failed : copyVariant(result, stored.get());
    }
    HRESULT put(const char* call, com::Variant& stored, VARIANT& value) const {
        const HRESULT failed = tapped(call);
        return FAILED(failed) ? failed : VariantCopyInd(stored.receive(), &value);
    }
    HRESULT text(const char* call, const std::wstring& stored, BSTR* out) const {
        *out = nullptr;
        const HRESULT failed = tapped(call);
        return FAILED(failed) ? failed : textOut(stored, out);
    }
    HRESULT put(const char* call, std::wstring& stored, BSTR value) const {
        if (const HRESULT failed = tapped(call); FAILED(failed)) return failed;
        stored = com::view(value);
        return S_OK;
    }

    DataPoint point_;        // all but its occurrence text,
    SharedText occurrence_;  // which its events share
};

/// What the two managers have in common: a site's data points by tag.
template <class I>
class Points : public Member<EngineObject<I>> {
    using Base = Member<EngineObject<I>>;

  public:
    Points(Site& site, std::map<LONG, std::vector<DataPoint>>& stored) : Base(site), stored_(stored) {}

  protected:
    HRESULT list(const char* call, LONG tagId, DATE first, DATE last, DICollection** result) const {
        *result = nullptr;
        if (const HRESULT failed = this->tapped(call); FAILED(failed)) return failed;
        const auto tag = stored_.find(tagId);
        if (tag == stored_.end()) return S_OK;
        std::vector<const DataPoint*> some;
        for (const DataPoint& point : tag->second) {
            if (point.timeStamp >= first && point.timeStamp <= last) some.push_back(&point);
        }
        Site& site = this->site();
        const std::size_t count = some.size();
        com::Ptr<DICollection>(new List(site, count, [&site, some = std::move(some)](std::size_t i) {
            return com::Ptr<IDispatch>(new Point(site, *some[i]));
        })).detachTo(result);
        return S_OK;
    }
    HRESULT update(const char* call, LONG tagId, DATE timeStamp, BSTR xValue, VARIANT_BOOL* result) const {
        if (const HRESULT failed = this->tapped(call); FAILED(failed)) return failed;
        *result = VARIANT_FALSE;
        const auto tag = stored_.find(tagId);
        if (tag == stored_.end()) return S_OK;
        for (DataPoint& point : tag->second) {
            if (point.timeStamp != timeStamp) continue;
            point.extra = com::view(xValue);
            *result = VARIANT_TRUE;
        }
        return S_OK;
    }

  private:
    std::map<LONG, std::vector<DataPoint>>& stored_;
};

class LongTerm final : public Points<DIQAManager> {
  public:
    explicit LongTerm(Site& site) : Points(site, site.longTerm) {}
    HRESULT STDMETHODCALLTYPE GetLongTermDataPoints(BSTR, LONG tagId, BSTR, DATE first, DATE last,
                                                    DICollection** result) override {
        return list("DIQAManager.GetLongTermDataPoints", tagId, first, last, result);
    }
    HRESULT STDMETHODCALLTYPE UpdateXValue(BSTR, LONG tagId, BSTR, DATE timeStamp, BSTR xValue,
                                           VARIANT_BOOL* result) override {
        return update("DIQAManager.UpdateXValue", tagId, timeStamp, xValue, result);
    }
    HRESULT STDMETHODCALLTYPE GetOccurrences(BSTR, DATE first, DATE last, VARIANT_BOOL showDowntimes,
                                             VARIANT_BOOL showExceedences, LONG, VARIANT_BOOL orderByTag,
                                             VARIANT pidList, DICollection** result) override {
        *result = nullptr;
        if (const HRESULT failed = tapped("DIQAManager.GetOccurrences"); FAILED(failed)) return failed;
        listOccurrences(site(), {first, last, showDowntimes != VARIANT_FALSE,
                                 showExceedences != VARIANT_FALSE, orderByTag != VARIANT_FALSE, pidList})
            .detachTo(result);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE FindDataPoint(BSTR, LONG tagId, BSTR, DATE from, DATE to,
                                            DIDataPoint** result) override {
        *result = nullptr;
        if (const HRESULT failed = tapped("DIQAManager.FindDataPoint"); FAILED(failed)) return failed;
        const auto tag = site().longTerm.find(tagId);
        if (tag == site().longTerm.end()) return S_OK;
        for (const DataPoint& point : tag->second) {
            if (point.timeStamp < from || point.timeStamp > to) continue;
            try {
                com::Ptr<DIDataPoint>(new Point(site(), point)).detachTo(result);
                return S_OK;
            } catch (const com::Error& error) {
                return error.result();  // no memory for a copy
            }
        }
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE SaveDataPoint(BSTR, LONG tagId, BSTR, DATE timeStamp, VARIANT nValue,
                                            VARIANT mc, VARIANT_BOOL flag, BSTR occDataXml, BSTR editSource,
                                            BSTR editUser, VARIANT_BOOL* result) override {
        if (const HRESULT failed = tapped("DIQAManager.SaveDataPoint"); FAILED(failed)) return failed;
        *result = VARIANT_FALSE;
        com::Variant value;
        com::Variant code;
        if (const HRESULT failed = VariantCopyInd(value.receive(), &nValue); FAILED(failed)) return failed;
        if (const HRESULT failed = VariantCopyInd(code.receive(), &mc); FAILED(failed)) return failed;
        DataPoint* const point = stored(tagId, timeStamp, flag != VARIANT_FALSE);
        if (!point) return S_OK;
        if (!value.isNull()) point->value = std::move(value);
        if (!code.isNull()) point->mc = std::move(code);
        point->occurrence = com::view(occDataXml);
        site().edits.push_back(
            {tagId, timeStamp, std::wstring(com::view(editSource)), std::wstring(com::view(editUser))});
        *result = VARIANT_TRUE;
        return S_OK;
    }

  private:
    /// The data point of a time, which may be a new one behind the others; null when there is none.
    DataPoint* stored(LONG tagId, DATE timeStamp, bool create) {
        auto& points = site().longTerm[tagId];
        for (DataPoint& point : points) {
            if (point.timeStamp == timeStamp) return &point;
        }
        if (!create) return nullptr;
        points.emplace_back().timeStamp = timeStamp;
        return &points.back();
    }
};

class ShortTerm final : public Points<DIDataPointList> {
  public:
    explicit ShortTerm(Site& site) : Points(site, site.shortTerm) {}
    HRESULT STDMETHODCALLTYPE GetShortTermDataPoints(BSTR, LONG tagId, BSTR, DATE first, DATE last,
                                                     DICollection** result) override {
        return list("DIDataPointList.GetShortTermDataPoints", tagId, first, last, result);
    }
    HRESULT STDMETHODCALLTYPE UpdateXValue(BSTR, LONG tagId, BSTR, DATE timeStamp, BSTR xValue,
                                           VARIANT_BOOL* result) override {
        return update("DIDataPointList.UpdateXValue", tagId, timeStamp, xValue, result);
    }
};

}  // namespace

com::Ptr<DIQAManager> makeLongTermData(Site& site) {
    return com::Ptr<DIQAManager>(new LongTerm(site));
}
com::Ptr<DIDataPointList> makeShortTermData(Site& site) {
    return com::Ptr<DIDataPointList>(new ShortTerm(site));
}
com::Ptr<DIDataPoint> makeDataPoint(Site& site) {
    return com::Ptr<DIDataPoint>(new Point(site, {}));
}

}  // namespace vtdn::fake
