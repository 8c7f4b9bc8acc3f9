// The managers of data points, strict.
#pragma once

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
