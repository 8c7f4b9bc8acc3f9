// The managers of data points, strict.
#pragma once

#include "strict_engine/occurrences.h"
#include "strict_engine/scripted.h"

namespace vtdn::fake {

class StrictDataPoint final : public Scripted<EngineObject<DIDataPoint>> {
  public:
    using Scripted::Scripted;
    HRESULT STDMETHODCALLTYPE get_TStamp(DATE* result) override { return date(".TStamp", result); }
    HRESULT STDMETHODCALLTYPE Initialise(DATE timeStamp) override {
        return done(joined({".Initialise(", number(timeStamp), ")"}));
    }
    HRESULT STDMETHODCALLTYPE get_NValue(VARIANT* result) override { return variant(".NValue", result); }
    HRESULT STDMETHODCALLTYPE put_NValue(VARIANT value) override {
        return done(joined({".NValue = ", describe(value, *script())}));
    }
    HRESULT STDMETHODCALLTYPE get_MC(VARIANT* result) override { return variant(".MC", result); }
    HRESULT STDMETHODCALLTYPE put_MC(VARIANT value) override {
        return done(joined({".MC = ", describe(value, *script())}));
    }
    HRESULT STDMETHODCALLTYPE get_XValueXML(BSTR* out) override { return text(".XValueXML", out); }
    HRESULT STDMETHODCALLTYPE put_XValueXML(BSTR value) override {
        return done(joined({".XValueXML = ", quoted(value)}));
    }
    HRESULT STDMETHODCALLTYPE get_OccDataXML(BSTR* out) override { return text(".OccDataXML", out); }
    HRESULT STDMETHODCALLTYPE put_OccDataXML(BSTR value) override {
        return done(joined({".OccDataXML = ", quoted(value)}));
    }
    HRESULT STDMETHODCALLTYPE get_Event(DIOccurrenceEvent** result) override {
        return object<StrictEvent>(".Event", result, "Event");
    }
};

/// What the two managers have in common; the n-th data point of a list is called Point(n).
template <class I>
class StrictDataPoints : public Scripted<EngineObject<I>> {
    using Base = Scripted<EngineObject<I>>;

  public:
    using Base::Base;
    HRESULT STDMETHODCALLTYPE UpdateXValue(BSTR siteId, LONG tagId, BSTR interval, DATE timeStamp,
                                           BSTR xValue, VARIANT_BOOL* result) override {
        return this->yesOrNo(joined({".UpdateXValue(", quoted(siteId), ", ", number(tagId), ", ",
                                     quoted(interval), ", ", number(timeStamp), ", ", quoted(xValue), ")"}),
                             result);
    }

  protected:
    HRESULT list(const char* member, BSTR siteId, LONG tagId, BSTR interval, DATE first, DATE last,
                 DICollection** result) const {
        return this->template object<StrictList<StrictDataPoint>>(
            joined({".", member, "(", quoted(siteId), ", ", number(tagId), ", ", quoted(interval), ", ",
                    number(first), ", ", number(last), ")"}),
            result, "Points", "Point");
    }
};

class StrictLongTerm final : public StrictDataPoints<DIQAManager> {
  public:
    using StrictDataPoints::StrictDataPoints;
    HRESULT STDMETHODCALLTYPE GetLongTermDataPoints(BSTR siteId, LONG tagId, BSTR interval, DATE first,
                                                    DATE last, DICollection** result) override {
        return list("GetLongTermDataPoints", siteId, tagId, interval, first, last, result);
    }
    HRESULT STDMETHODCALLTYPE GetOccurrences(BSTR siteId, DATE first, DATE last, VARIANT_BOOL showDowntimes,
                                             VARIANT_BOOL showExceedences, LONG filter,
                                             VARIANT_BOOL orderByTag, VARIANT pidList,
                                             DICollection** result) override {
        return object<StrictList<StrictOccurrence>>(
            joined({".GetOccurrences(", quoted(siteId), ", ", number(first), ", ", number(last), ", ",
                    boolean(showDowntimes), ", ", boolean(showExceedences), ", ", number(filter), ", ",
                    boolean(orderByTag), ", ", describe(pidList, *script()), ")"}),
            result, "Occurrences", "Occurrence");
    }
    HRESULT STDMETHODCALLTYPE FindDataPoint(BSTR siteId, LONG tagId, BSTR interval, DATE from, DATE to,
                                            DIDataPoint** result) override {
        return object<StrictDataPoint>(joined({".FindDataPoint(", quoted(siteId), ", ", number(tagId), ", ",
                                               quoted(interval), ", ", number(from), ", ", number(to), ")"}),
                                       result, "Found");
    }
    HRESULT STDMETHODCALLTYPE SaveDataPoint(BSTR siteId, LONG tagId, BSTR interval, DATE timeStamp,
                                            VARIANT nValue, VARIANT mc, VARIANT_BOOL flag, BSTR occDataXml,
                                            BSTR editSource, BSTR editUser, VARIANT_BOOL* result) override {
        return yesOrNo(joined({".SaveDataPoint(",
                               quoted(siteId),
                               ", ",
                               number(tagId),
                               ", ",
                               quoted(interval),
                               ", ",
                               number(timeStamp),
                               ", ",
                               describe(nValue, *script()),
                               ", ",
                               describe(mc, *script()),
                               ", ",
                               boolean(flag),
                               ", ",
                               quoted(occDataXml),
                               ", ",
                               quoted(editSource),
                               ", ",
                               quoted(editUser),
                               ")"}),
                       result);
    }
};

class StrictShortTerm final : public StrictDataPoints<DIDataPointList> {
  public:
    using StrictDataPoints::StrictDataPoints;
    HRESULT STDMETHODCALLTYPE GetShortTermDataPoints(BSTR siteId, LONG tagId, BSTR interval, DATE first,
                                                     DATE last, DICollection** result) override {
        return list("GetShortTermDataPoints", siteId, tagId, interval, first, last, result);
    }
};

}  // namespace vtdn::fake
