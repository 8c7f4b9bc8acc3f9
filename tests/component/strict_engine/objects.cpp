// The engine's classes with every call handed to the script.
#include <ocidl.h>

#include <algorithm>
#include <charconv>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

#include "com/ptr.h"
#include "com/strings.h"
#include "fake_engine/event_container.h"
#include "fake_engine/object.h"
#include "strict_engine/script.h"

namespace vtdn::fake {

namespace {

std::string joined(std::initializer_list<std::string_view> parts) {
    std::string text;
    for (const std::string_view part : parts) text += part;
    return text;
}

std::string number(double value) {
    char text[64];
    return {text, std::to_chars(text, text + sizeof text, value).ptr};
}
std::string number(float value) {
    char text[64];
    return {text, std::to_chars(text, text + sizeof text, value).ptr};
}
std::string number(LONG value) {
    return std::to_string(value);
}
std::string quoted(BSTR text) {
    return joined({"'", com::toUtf8(com::view(text)), "'"});
}
const char* boolean(VARIANT_BOOL value) {
    return value == VARIANT_TRUE    ? "True"
           : value == VARIANT_FALSE ? "False"
                                    : "a boolean other than 0 and -1";
}

std::string describe(SAFEARRAY* array, const Script& script);

/// A variant, with its objects named by the script.
std::string describe(const VARIANT& value, const Script& script) {
    switch (value.vt) {
        case VT_EMPTY:
            return "Empty";
        case VT_NULL:
            return "Null";
        case VT_I2:
            return joined({"I2 ", std::to_string(value.iVal)});
        case VT_I4:
            return joined({"I4 ", number(value.lVal)});
        case VT_R4:
            return joined({"R4 ", number(value.fltVal)});
        case VT_R8:
            return joined({"R8 ", number(value.dblVal)});
        case VT_DATE:
            return joined({"Date ", number(value.date)});
        case VT_BOOL:
            return joined({"Bool ", boolean(value.boolVal)});
        case VT_BSTR:
            return joined({"BSTR ", quoted(value.bstrVal)});
        case VT_DISPATCH:
            return joined({"Dispatch ", script.nameOf(value.pdispVal)});
        case VT_ARRAY | VT_VARIANT:
            return describe(value.parray, script);
        default:
            return joined({"type ", std::to_string(value.vt)});
    }
}

/// An array of variants with its bounds: "[0..1: Date 39508.5, Dispatch New]".
std::string describe(SAFEARRAY* array, const Script& script) {
    if (!array) return "no array";
    VARTYPE type = VT_EMPTY;
    LONG lower = 0;
    LONG upper = -1;
    if (FAILED(SafeArrayGetVartype(array, &type)) || type != VT_VARIANT || SafeArrayGetDim(array) != 1 ||
        FAILED(SafeArrayGetLBound(array, 1, &lower)) || FAILED(SafeArrayGetUBound(array, 1, &upper))) {
        return "an array of another kind";
    }
    std::string text = joined({"[", number(lower), "..", number(upper), ":"});
    for (LONG i = lower; i <= upper; ++i) {
        com::Variant element;
        if (FAILED(SafeArrayGetElement(array, &i, element.receive()))) return "an array that cannot be read";
        text += i == lower ? " " : ", ";
        text += describe(element.get(), script);
    }
    return text + "]";
}

/// What every strict object does: it has a name, and its calls go to the script.
template <class Base>
class Scripted : public Base {
  public:
    template <class... Arguments>
    explicit Scripted(std::shared_ptr<Script> script, std::string name, Arguments&&... arguments)
        : Base(std::forward<Arguments>(arguments)...), script_(std::move(script)), name_(std::move(name)) {
        script_->born(this, name_);
    }
    ~Scripted() override { script_->died(this); }

  protected:
    [[nodiscard]] const std::shared_ptr<Script>& script() const { return script_; }
    [[nodiscard]] Answer play(const std::string& member) const {
        return script_->play(joined({name_, member}));
    }
    [[nodiscard]] HRESULT done(const std::string& member) const { return play(member).result(); }

    HRESULT text(const std::string& member, BSTR* out) const {
        *out = nullptr;
        const Answer answer = play(member);
        if (FAILED(answer.result()) || answer.value().type() != VT_BSTR) return answer.result();
        *out = com::Bstr(com::view(answer.value().get().bstrVal)).detach();
        return S_OK;
    }
    HRESULT integer(const std::string& member, LONG* out) const {
        const Answer answer = play(member);
        if (FAILED(answer.result())) return answer.result();
        *out = answer.value().type() == VT_I4 ? answer.value().get().lVal : 0;
        return S_OK;
    }
    HRESULT yesOrNo(const std::string& member, VARIANT_BOOL* out) const {
        const Answer answer = play(member);
        if (FAILED(answer.result())) return answer.result();
        // A number is an engine's unusual True: any value but 0.
        *out = answer.value().type() == VT_I4
                   ? static_cast<VARIANT_BOOL>(answer.value().get().lVal)
                   : com::variantBool(answer.value().type() == VT_BOOL && answer.value().get().boolVal != 0);
        return S_OK;
    }
    HRESULT variant(const std::string& member, VARIANT* out) const {
        VariantInit(out);
        const Answer answer = play(member);
        return FAILED(answer.result()) ? answer.result() : copyVariant(out, answer.value().get());
    }
    template <class Class, class I, class... Arguments>
    HRESULT object(const std::string& member, I** out, std::string name) const {
        *out = nullptr;
        const Answer answer = play(member);
        if (FAILED(answer.result()) || !answer.hasObject()) return answer.result();
        com::Ptr<I>(new Class(script_, std::move(name))).detachTo(out);
        return S_OK;
    }

  private:
    std::shared_ptr<Script> script_;
    std::string name_;
};

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
class StrictList final : public Scripted<EngineObject<DICollection>> {
  public:
    using Scripted::Scripted;
    HRESULT STDMETHODCALLTYPE get_Count(LONG* result) override { return integer(".Count", result); }
    HRESULT STDMETHODCALLTYPE Item(LONG index, IDispatch** result) override {
        return object<StrictParam>(joined({".Item(", number(index), ")"}), result,
                                   joined({"Listed(", number(index), ")"}));
    }
    HRESULT STDMETHODCALLTYPE get__NewEnum(IUnknown** result) override {
        *result = nullptr;
        return done("._NewEnum");
    }
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
    HRESULT STDMETHODCALLTYPE RelationshipParams(LONG first, LONG second, DICollection** result) override {
        return object<StrictList>(joined({".RelationshipParams(", number(first), ", ", number(second), ")"}),
                                  result, "List");
    }
    HRESULT STDMETHODCALLTYPE ParamsOfTypes(SAFEARRAY* types, DICollection** result) override {
        return object<StrictList>(joined({".ParamsOfTypes(", describe(types, *script()), ")"}), result,
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

}  // namespace vtdn::fake
