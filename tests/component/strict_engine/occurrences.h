// Occurrences and their events, strict.
#pragma once

#include "strict_engine/scripted.h"

namespace vtdn::fake {

class StrictEvent final : public Scripted<EngineObject<DIOccurrenceEvent>> {
  public:
    using Scripted::Scripted;
    HRESULT STDMETHODCALLTYPE get_OccDataXML(BSTR* out) override { return text(".OccDataXML", out); }
    HRESULT STDMETHODCALLTYPE get_HasExcursion(VARIANT_BOOL* result) override {
        return yesOrNo(".HasExcursion", result);
    }
    HRESULT STDMETHODCALLTYPE get_HasDowntime(VARIANT_BOOL* result) override {
        return yesOrNo(".HasDowntime", result);
    }
    HRESULT STDMETHODCALLTYPE AddExcursion() override { return done(".AddExcursion"); }
    HRESULT STDMETHODCALLTYPE get_Excursion_PID(LONG* result) override {
        return integer(".Excursion_PID", result);
    }
    HRESULT STDMETHODCALLTYPE put_Excursion_PID(LONG value) override { return put(".Excursion_PID", value); }
    HRESULT STDMETHODCALLTYPE get_Excursion_Excludable(VARIANT_BOOL* result) override {
        return yesOrNo(".Excursion_Excludable", result);
    }
    HRESULT STDMETHODCALLTYPE put_Excursion_Excludable(VARIANT_BOOL value) override {
        return put(".Excursion_Excludable", value);
    }
    HRESULT STDMETHODCALLTYPE get_Excursion_Category(BSTR* out) override {
        return text(".Excursion_Category", out);
    }
    HRESULT STDMETHODCALLTYPE put_Excursion_Category(BSTR value) override {
        return put(".Excursion_Category", value);
    }
    HRESULT STDMETHODCALLTYPE get_Excursion_Reason(BSTR* out) override {
        return text(".Excursion_Reason", out);
    }
    HRESULT STDMETHODCALLTYPE put_Excursion_Reason(BSTR value) override {
        return put(".Excursion_Reason", value);
    }
    HRESULT STDMETHODCALLTYPE get_Excursion_Action(BSTR* out) override {
        return text(".Excursion_Action", out);
    }
    HRESULT STDMETHODCALLTYPE put_Excursion_Action(BSTR value) override {
        return put(".Excursion_Action", value);
    }
    HRESULT STDMETHODCALLTYPE get_Excursion_LimitPID(LONG* result) override {
        return integer(".Excursion_LimitPID", result);
    }
    HRESULT STDMETHODCALLTYPE get_Excursion_Limit(BSTR* out) override {
        return text(".Excursion_Limit", out);
    }
    HRESULT STDMETHODCALLTYPE AddDowntime() override { return done(".AddDowntime"); }
    HRESULT STDMETHODCALLTYPE get_Downtime_PID(LONG* result) override {
        return integer(".Downtime_PID", result);
    }
    HRESULT STDMETHODCALLTYPE put_Downtime_PID(LONG value) override { return put(".Downtime_PID", value); }
    HRESULT STDMETHODCALLTYPE get_Downtime_Excludable(VARIANT_BOOL* result) override {
        return yesOrNo(".Downtime_Excludable", result);
    }
    HRESULT STDMETHODCALLTYPE put_Downtime_Excludable(VARIANT_BOOL value) override {
        return put(".Downtime_Excludable", value);
    }
    HRESULT STDMETHODCALLTYPE get_Downtime_Category(BSTR* out) override {
        return text(".Downtime_Category", out);
    }
    HRESULT STDMETHODCALLTYPE put_Downtime_Category(BSTR value) override {
        return put(".Downtime_Category", value);
    }
    HRESULT STDMETHODCALLTYPE get_Downtime_Reason(BSTR* out) override {
        return text(".Downtime_Reason", out);
    }
    HRESULT STDMETHODCALLTYPE put_Downtime_Reason(BSTR value) override {
        return put(".Downtime_Reason", value);
    }
    HRESULT STDMETHODCALLTYPE get_Downtime_Action(BSTR* out) override {
        return text(".Downtime_Action", out);
    }
    HRESULT STDMETHODCALLTYPE put_Downtime_Action(BSTR value) override {
        return put(".Downtime_Action", value);
    }

  private:
    [[nodiscard]] HRESULT put(const char* member, LONG value) const {
        return done(joined({member, " = ", number(value)}));
    }
    [[nodiscard]] HRESULT put(const char* member, VARIANT_BOOL value) const {
        return done(joined({member, " = ", boolean(value)}));
    }
    [[nodiscard]] HRESULT put(const char* member, BSTR value) const {
        return done(joined({member, " = ", quoted(value)}));
    }
};

class StrictOccurrence final : public Scripted<EngineObject<DIOccurrence>> {
  public:
    using Scripted::Scripted;
    HRESULT STDMETHODCALLTYPE get_AffectedPID(LONG* result) override {
        return integer(".AffectedPID", result);
    }
    HRESULT STDMETHODCALLTYPE get_Interval(BSTR* out) override { return text(".Interval", out); }
    HRESULT STDMETHODCALLTYPE get_StartDate(DATE* result) override { return date(".StartDate", result); }
    HRESULT STDMETHODCALLTYPE get_NValue(VARIANT* result) override { return variant(".NValue", result); }
    HRESULT STDMETHODCALLTYPE get_MC(VARIANT* result) override { return variant(".MC", result); }
    HRESULT STDMETHODCALLTYPE get_Event(DIOccurrenceEvent** result) override {
        return object<StrictEvent>(".Event", result, "Event");
    }
    HRESULT STDMETHODCALLTYPE TextValue(IDispatch* stringServer, BSTR* out) override {
        return text(joined({".TextValue(", script()->nameOf(stringServer), ")"}), out);
    }
};

}  // namespace vtdn::fake
