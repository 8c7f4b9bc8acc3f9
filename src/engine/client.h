// The data-interface engine in C++ types: one inline function for each engine call, which throws the engine's
// failure as it came. Nothing is asked twice and nothing is remembered.
#pragma once

#include "com/safe_array.h"
#include "engine/data_points.h"
#include "engine/object.h"
#include "engine/params.h"

namespace vtdn::engine {

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
