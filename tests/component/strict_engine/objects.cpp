// The engine's classes with every call handed to the script.
#include <ocidl.h>

#include <algorithm>
#include <string>
#include <utility>

#include "com/ptr.h"
#include "com/strings.h"
#include "fake_engine/event_container.h"
#include "fake_engine/object.h"
#include "strict_engine/data_points.h"
#include "strict_engine/scripted.h"

namespace vtdn::fake {

namespace {

class StrictItem final : public Scripted<EngineObject<DIDataArrayItem>> {
  public:
    using Scripted::Scripted;
    HRESULT STDMETHODCALLTYPE get_Value(VARIANT* result) override { return variant(".Value", result); }
    HRESULT STDMETHODCALLTYPE put_Value(VARIANT value) override {
        return done(joined({".Value = ", describe(value, *script())}));
    }
    HRESULT STDMETHODCALLTYPE get_MC(LONG* result) override { return integer(".MC", result); }
    HRESULT STDMETHODCALLTYPE put_MC(LONG value) override { return done(joined({".MC = ", number(value)})); }
};

class StrictArray final : public Scripted<EngineObject<DIDataArray>> {
  public:
    using Scripted::Scripted;
    HRESULT STDMETHODCALLTYPE Define(DATE start, LONG count, BSTR type, LONG length, LONG flags) override {
        return done(joined({".Define(", number(start), ", ", number(count), ", ", quoted(type), ", ",
                            number(length), ", ", number(flags), ")"}));
    }
    HRESULT STDMETHODCALLTYPE Item(LONG index, DIDataArrayItem** result) override {
        const std::string item = joined({"Item(", number(index), ")"});
        return object<StrictItem>(joined({".", item}), result, item);
    }
    HRESULT STDMETHODCALLTYPE Fill(VARIANT value, LONG mc) override {
        return done(joined({".Fill(", describe(value, *script()), ", ", number(mc), ")"}));
    }
    HRESULT STDMETHODCALLTYPE SetItem(LONG index, VARIANT value, LONG mc) override {
        return done(
            joined({".SetItem(", number(index), ", ", describe(value, *script()), ", ", number(mc), ")"}));
    }
};

class StrictRelationship final : public Scripted<EngineObject<DIRelationship>> {
  public:
    using Scripted::Scripted;
    HRESULT STDMETHODCALLTYPE get_IntervalCount(LONG* result) override {
        return integer(".IntervalCount", result);
    }
    HRESULT STDMETHODCALLTYPE get_IntervalUnit(BSTR* out) override { return text(".IntervalUnit", out); }
    HRESULT STDMETHODCALLTYPE get_DetailXML(BSTR* out) override { return text(".DetailXML", out); }
};

class StrictParam final : public Scripted<EngineObject<DIParam>> {
  public:
    using Scripted::Scripted;
    HRESULT STDMETHODCALLTYPE get_PID(LONG* result) override { return integer(".PID", result); }
    HRESULT STDMETHODCALLTYPE get_Fmt(BSTR* out) override { return text(".Fmt", out); }
    HRESULT STDMETHODCALLTYPE get_IntervalType(BSTR* out) override { return text(".IntervalType", out); }
    HRESULT STDMETHODCALLTYPE get_MeasUnits(BSTR* out) override { return text(".MeasUnits", out); }
    HRESULT STDMETHODCALLTYPE get_Name(BSTR* out) override { return text(".Name", out); }
    HRESULT STDMETHODCALLTYPE get_IOType(LONG* result) override { return integer(".IOType", result); }
    HRESULT STDMETHODCALLTYPE get_UsedPIDs(BSTR* out) override { return text(".UsedPIDs", out); }
    HRESULT STDMETHODCALLTYPE GetDataItem(DATE time, LONG flags, DIDataArrayItem** result) override {
        return object<StrictItem>(joined({".GetDataItem(", number(time), ", ", number(flags), ")"}), result,
                                  "Stored");
    }
    HRESULT STDMETHODCALLTYPE ReadDataArray(DIDataArray* data) override {
        return done(joined({".ReadDataArray(", script()->nameOf(data), ")"}));
    }
    HRESULT STDMETHODCALLTYPE SpecialFunction(LONG id, SAFEARRAY** moreArgs, VARIANT* result) override {
        const std::string arguments = moreArgs ? describe(*moreArgs, *script()) : "a null pointer";
        const HRESULT answer =
            variant(joined({".SpecialFunction(", number(id), ", ", arguments, ")"}), result);
        if (script()->moreArguments != MoreArguments::keep) {
            SafeArrayDestroy(std::exchange(*moreArgs, nullptr));
            if (script()->moreArguments == MoreArguments::replace) {
                *moreArgs = SafeArrayCreateVector(VT_VARIANT, 1, 5);
            }
        }
        return answer;
    }
    HRESULT STDMETHODCALLTYPE SpecialValue(LONG id, VARIANT* result) override {
        return variant(joined({".SpecialValue(", number(id), ")"}), result);
    }
    HRESULT STDMETHODCALLTYPE get_Relationship(DIRelationship** result) override {
        return object<StrictRelationship>(".Relationship", result, "Relationship");
    }
};
/// A collection of parameters; the n-th is called Listed(n).
class StrictParamList final : public StrictList<StrictParam> {
  public:
    StrictParamList(std::shared_ptr<Script> script, std::string name)
        : StrictList(std::move(script), std::move(name), "Listed") {}
};

class StrictParams final : public Scripted<EngineObject<DIParams>> {
  public:
    using Scripted::Scripted;
    HRESULT STDMETHODCALLTYPE Exists(LONG pid, VARIANT_BOOL* result) override {
        return yesOrNo(joined({".Exists(", number(pid), ")"}), result);
    }
    HRESULT STDMETHODCALLTYPE Item(LONG pid, LONG flag, DIParam** result) override {
        return object<StrictParam>(joined({".Item(", number(pid), ", ", number(flag), ")"}), result,
                                   joined({"Param(", number(pid), ")"}));
    }
    HRESULT STDMETHODCALLTYPE FlushCache() override { return done(".FlushCache"); }
};

class StrictUtils final : public Scripted<EngineObject<DIUtils>> {
  public:
    using Scripted::Scripted;
    HRESULT STDMETHODCALLTYPE IsKnownMC(LONG mc, VARIANT_BOOL* result) override {
        return yesOrNo(joined({".IsKnownMC(", number(mc), ")"}), result);
    }
    HRESULT STDMETHODCALLTYPE get_MaxMC(LONG* result) override { return integer(".MaxMC", result); }
    HRESULT STDMETHODCALLTYPE get_MaxPC(LONG* result) override { return integer(".MaxPC", result); }
    HRESULT STDMETHODCALLTYPE MCName(LONG code, VARIANT_BOOL longName, BSTR* out) override {
        return text(joined({".MCName(", number(code), ", ", boolean(longName), ")"}), out);
    }
    HRESULT STDMETHODCALLTYPE PCName(LONG code, VARIANT_BOOL longName, BSTR* out) override {
        return text(joined({".PCName(", number(code), ", ", boolean(longName), ")"}), out);
    }
    HRESULT STDMETHODCALLTYPE UnitName(LONG unit, BSTR* out) override {
        return text(joined({".UnitName(", number(unit), ")"}), out);
    }
};

class StrictAlarms final : public Scripted<EngineObject<DIAlarmWriter>> {
  public:
    using Scripted::Scripted;
    HRESULT STDMETHODCALLTYPE WriteAlarm(BSTR siteId, DATE time, BSTR message, BSTR category, LONG severity,
                                         BSTR group, BSTR source) override {
        return done(joined({".WriteAlarm(", quoted(siteId), ", ", number(time), ", ", quoted(message), ", ",
                            quoted(category), ", ", number(severity), ", ", quoted(group), ", ",
                            quoted(source), ")"}));
    }
};

class StrictDahs final : public Scripted<EngineObject<DISelectedDahs>> {
  public:
    using Scripted::Scripted;
    HRESULT STDMETHODCALLTYPE get_VantorDir(BSTR* out) override { return text(".VantorDir", out); }
    HRESULT STDMETHODCALLTYPE get_SystemDir(BSTR* out) override { return text(".SystemDir", out); }
    HRESULT STDMETHODCALLTYPE get_AlarmConnection(BSTR* out) override {
        return text(".AlarmConnection", out);
    }
    HRESULT STDMETHODCALLTYPE get_ConfigConnection(BSTR* out) override {
        return text(".ConfigConnection", out);
    }
    HRESULT STDMETHODCALLTYPE get_DataConnection(BSTR* out) override { return text(".DataConnection", out); }
    HRESULT STDMETHODCALLTYPE get_DataShortTermConnection(BSTR* out) override {
        return text(".DataShortTermConnection", out);
    }
    HRESULT STDMETHODCALLTYPE get_RealtimeConnection(BSTR* out) override {
        return text(".RealtimeConnection", out);
    }
    HRESULT STDMETHODCALLTYPE get_DahsID(LONG* result) override { return integer(".DahsID", result); }
    HRESULT STDMETHODCALLTYPE get_DahsCompleteName(BSTR* out) override {
        return text(".DahsCompleteName", out);
    }
    HRESULT STDMETHODCALLTYPE get_SiteID(BSTR* out) override { return text(".SiteID", out); }
    HRESULT STDMETHODCALLTYPE get_EditUserName(BSTR* out) override { return text(".EditUserName", out); }
};

class StrictEngineObject final
    : public Scripted<WithEvents<EngineObject<DIEngine, IConnectionPointContainer>>> {
  public:
    explicit StrictEngineObject(const std::shared_ptr<Script>& script)
        : Scripted(script, "Engine", script->sinks) {}

    HRESULT STDMETHODCALLTYPE SetClientAppName(BSTR name) override {
        return done(joined({".SetClientAppName(", quoted(name), ")"}));
    }
    HRESULT STDMETHODCALLTYPE get_SiteID(BSTR* out) override { return text(".SiteID", out); }
    HRESULT STDMETHODCALLTYPE get_AlarmWriter(DIAlarmWriter** result) override {
        return object<StrictAlarms>(".AlarmWriter", result, "Alarms");
    }
    HRESULT STDMETHODCALLTYPE get_LongTermData(DIQAManager** result) override {
        return object<StrictLongTerm>(".LongTermData", result, "LongTerm");
    }
    HRESULT STDMETHODCALLTYPE get_ShortTermData(DIDataPointList** result) override {
        return object<StrictShortTerm>(".ShortTermData", result, "ShortTerm");
    }
    HRESULT STDMETHODCALLTYPE RelationshipParams(LONG first, LONG second, DICollection** result) override {
        return object<StrictParamList>(
            joined({".RelationshipParams(", number(first), ", ", number(second), ")"}), result, "List");
    }
    HRESULT STDMETHODCALLTYPE ParamsOfTypes(SAFEARRAY* types, DICollection** result) override {
        return object<StrictParamList>(joined({".ParamsOfTypes(", describe(types, *script()), ")"}), result,
                                       "List");
    }
    HRESULT STDMETHODCALLTYPE get_Params(DIParams** result) override {
        return object<StrictParams>(".Params", result, "Params");
    }
    HRESULT STDMETHODCALLTYPE get_Utils(DIUtils** result) override {
        return object<StrictUtils>(".Utils", result, "Utils");
    }
    HRESULT STDMETHODCALLTYPE SetupByDahsID(LONG dahsId, VARIANT_BOOL* result) override {
        return yesOrNo(joined({".SetupByDahsID(", number(dahsId), ")"}), result);
    }
    HRESULT STDMETHODCALLTYPE SetupForced(BSTR siteId, BSTR alarm, BSTR config, BSTR data, BSTR shortTerm,
                                          BSTR realtime, VARIANT_BOOL flag, VARIANT_BOOL* result) override {
        return yesOrNo(
            joined({".SetupForced(", quoted(siteId), ", ", quoted(alarm), ", ", quoted(config), ", ",
                    quoted(data), ", ", quoted(shortTerm), ", ", quoted(realtime), ", ", boolean(flag), ")"}),
            result);
    }
    HRESULT STDMETHODCALLTYPE Close() override { return done(".Close"); }
    HRESULT STDMETHODCALLTYPE get_SelectedDahs(DISelectedDahs** result) override {
        return object<StrictDahs>(".SelectedDahs", result, "Dahs");
    }
};

}  // namespace

com::Ptr<IUnknown> makeStrictEngine(const std::shared_ptr<Script>& script) {
    return com::Ptr<IUnknown>(static_cast<DIEngine*>(new StrictEngineObject(script)));
}
com::Ptr<IUnknown> makeStrictArray(const std::shared_ptr<Script>& script) {
    const auto names = script->alive();
    const bool second = std::ranges::find(names, "Array") != names.end();
    return com::Ptr<IUnknown>(new StrictArray(script, second ? "Array2" : "Array"));
}
com::Ptr<IUnknown> makeStrictItem(const std::shared_ptr<Script>& script) {
    return com::Ptr<IUnknown>(new StrictItem(script, "New"));
}
com::Ptr<IUnknown> makeStrictDataPoint(const std::shared_ptr<Script>& script) {
    return com::Ptr<IUnknown>(new StrictDataPoint(script, "Blank"));
}

}  // namespace vtdn::fake
