// The operations on data points and occurrences.
#include <atomic>
#include <initializer_list>
#include <string>

#include "failures/rows.h"

namespace vtdn::test {

namespace {

using com::Bstr;

/// Occurrence parameters of `tag`: one whose occurrence is there at `when`, and one that has none yet.
constexpr LONG tag = 530008;
constexpr LONG existing = 101000501;
constexpr LONG missing = 101000502;

const Bstr text(L"text");
const Bstr hourly(L"1h");
const com::Variant numericText = com::Variant::of(L"12.5");
const com::Variant yes = com::Variant::of(L"True");

/// A row for an update of an extra value, which begins with a data point to update.
template <class M>
Operation update(const char* name, M member) {
    return {name, [member](_DIWrapper& wrapper, const Around& around) {
                com::Ptr<_DataPointBasicWrapper> point;
                VARIANT_BOOL done = VARIANT_FALSE;
                Outcome all;
                around.before();
                all.result =
                    inTurn({[&] { return wrapper.MakeBlankDataPointWrapper(when, point.receive()); },
                            [&] { return point->put_XValueXML(text.get()); },
                            [&] { return (wrapper.*member)(point.get(), pid, hourly.get(), &done); }});
                around.after();
                all.text = shown(done);
                return all;
            }};
}

/// Every member of a data point.
Outcome useDataPoint(_DIWrapper& wrapper, const Around& around) {
    com::Ptr<_DataPointBasicWrapper> point;
    DATE stamp = 0;
    VARIANT value{};
    VARIANT mc{};
    VARIANT_BOOL isNullValue = VARIANT_TRUE;
    VARIANT_BOOL isNullMc = VARIANT_TRUE;
    BSTR occurrence = nullptr;
    BSTR extra = nullptr;
    Outcome all;
    around.before();
    all.result = inTurn(
        {[&] { return wrapper.MakeBlankDataPointWrapper(when, point.receive()); },
         [&] { return point->get_TStamp(&stamp); }, [&] { return point->put_NValue(numericText.get()); },
         [&] { return point->get_NValue(&value); }, [&] { return point->get_IsNValueNull(&isNullValue); },
         [&] { return point->SetNValueToNull(); }, [&] { return point->put_MC(numericText.get()); },
         [&] { return point->get_MC(&mc); }, [&] { return point->get_IsMCNull(&isNullMc); },
         [&] { return point->SetMCToNull(); }, [&] { return point->put_OccDataXML(text.get()); },
         [&] { return point->get_OccDataXML(&occurrence); }, [&] { return point->put_XValueXML(text.get()); },
         [&] { return point->get_XValueXML(&extra); }});
    around.after();
    all.text = std::to_wstring(stamp) + shown(value.vt == VT_BSTR ? value.bstrVal : nullptr) +
               shown(mc.vt == VT_BSTR ? mc.bstrVal : nullptr) + shown(isNullValue) + shown(isNullMc) +
               shown(occurrence) + shown(extra);
    VariantClear(&value);
    VariantClear(&mc);
    SysFreeString(occurrence);
    SysFreeString(extra);
    return all;
}

/// The first of all occurrences.
HRESULT firstOccurrence(_DIWrapper& wrapper, com::Ptr<_OccurrenceDataWrapper>& occurrence) {
    SAFEARRAY* none = nullptr;
    SAFEARRAY* listed = nullptr;
    const HRESULT result =
        wrapper.GetOccurrences(when, when, VARIANT_TRUE, yes.get(), 0, VARIANT_FALSE, &none, &listed);
    const com::SafeArray array(listed);
    if (FAILED(result)) return result;
    const com::ArrayView<IDispatch*> elements(listed);
    return elements[0]->QueryInterface(__uuidof(_OccurrenceDataWrapper), occurrence.receiveVoid());
}

/// A row for a call on an occurrence, whose arguments are given; `use` shows what it gave.
using Use = std::function<HRESULT(_DIWrapper&, _OccurrenceDataWrapper&, std::wstring&)>;
Operation onOccurrence(const char* name, Use use) {
    return {name, [use = std::move(use)](_DIWrapper& wrapper, const Around& around) {
                com::Ptr<_OccurrenceDataWrapper> occurrence;
                Outcome all;
                around.before();
                all.result = inTurn({[&] { return firstOccurrence(wrapper, occurrence); },
                                     [&] { return use(wrapper, *occurrence.get(), all.text); }});
                around.after();
                return all;
            }};
}

/// A property of an occurrence that is read, or a new value read back.
template <class T>
using Get = HRESULT (STDMETHODCALLTYPE _OccurrenceDataWrapper::*)(T*);
template <class T>
using Put = HRESULT (STDMETHODCALLTYPE _OccurrenceDataWrapper::*)(T);
template <class T>
HRESULT show(_OccurrenceDataWrapper& occurrence, Get<T> property, std::wstring& all) {
    T result{};
    const HRESULT got = (occurrence.*property)(&result);
    all += shown(result);
    if constexpr (std::is_same_v<T, BSTR>) SysFreeString(result);
    return got;
}
template <class T>
HRESULT change(_OccurrenceDataWrapper& occurrence, Get<T> get, Put<T> put, T value, std::wstring& all) {
    return inTurn({[&] { return (occurrence.*put)(value); }, [&] { return show(occurrence, get, all); }});
}

/// What the occurrence itself has.
HRESULT useOccurrence(_DIWrapper&, _OccurrenceDataWrapper& occurrence, std::wstring& all) {
    using I = _OccurrenceDataWrapper;
    const auto variant = [&](Get<VARIANT> property) {
        com::Variant value;
        const HRESULT got = (occurrence.*property)(value.receive());
        all += shown(value.type() == VT_BSTR ? value.get().bstrVal : nullptr);
        return got;
    };
    return inTurn(
        {[&] { return show(occurrence, &I::get_AffectedPID, all); }, [&] { return variant(&I::get_NValue); },
         [&] { return show(occurrence, &I::get_TextValue, all); }, [&] { return variant(&I::get_MC); },
         [&] {
             DATE start = 0;
             const HRESULT got = occurrence.get_StartDate(&start);
             all += std::to_wstring(start);
             return got;
         },
         [&] { return show(occurrence, &I::get_HasExcursion, all); },
         [&] { return show(occurrence, &I::get_HasDowntime, all); }});
}

HRESULT useExcursion(_DIWrapper&, _OccurrenceDataWrapper& occurrence, std::wstring& all) {
    using I = _OccurrenceDataWrapper;
    const auto set = [&](Get<BSTR> get, Put<BSTR> put) {
        return change(occurrence, get, put, text.get(), all);
    };
    return inTurn({[&] { return show(occurrence, &I::get_Excursion_PID, all); },
                   [&] { return set(&I::get_Excursion_Action, &I::put_Excursion_Action); },
                   [&] { return set(&I::get_Excursion_Reason, &I::put_Excursion_Reason); },
                   [&] { return set(&I::get_Excursion_Category, &I::put_Excursion_Category); },
                   [&] {
                       return change(occurrence, &I::get_Excursion_Excludable, &I::put_Excursion_Excludable,
                                     VARIANT_TRUE, all);
                   },
                   [&] { return show(occurrence, &I::get_Excursion_Limit, all); },
                   [&] { return show(occurrence, &I::get_Excursion_LimitPID, all); }});
}

HRESULT useDowntime(_DIWrapper&, _OccurrenceDataWrapper& occurrence, std::wstring& all) {
    using I = _OccurrenceDataWrapper;
    const auto set = [&](Get<BSTR> get, Put<BSTR> put) {
        return change(occurrence, get, put, text.get(), all);
    };
    return inTurn({[&] { return show(occurrence, &I::get_Downtime_PID, all); },
                   [&] { return set(&I::get_Downtime_Action, &I::put_Downtime_Action); },
                   [&] { return set(&I::get_Downtime_Reason, &I::put_Downtime_Reason); },
                   [&] { return set(&I::get_Downtime_Category, &I::put_Downtime_Category); },
                   [&] {
                       return change(occurrence, &I::get_Downtime_Excludable, &I::put_Downtime_Excludable,
                                     VARIANT_TRUE, all);
                   }});
}

HRESULT saveOccurrence(_DIWrapper& wrapper, _OccurrenceDataWrapper& occurrence, std::wstring& all) {
    VARIANT_BOOL saved = VARIANT_FALSE;
    const HRESULT result = inTurn({[&] { return occurrence.put_Downtime_Reason(text.get()); },
                                   [&] { return wrapper.SaveOccurrence(&occurrence, &saved); }});
    all = shown(saved);
    return result;
}

Operation listing() {
    return {"GetOccurrences", [](_DIWrapper& wrapper, const Around& around) {
                Array<LONG> tags(1, 2);
                tags.fill(tag);
                Outcome all = outcome(wrapper, around, &_DIWrapper::GetOccurrences, when, when, VARIANT_TRUE,
                                      yes.get(), LONG{1}, VARIANT_TRUE, tags.inOut());
                if (tags.get()->cLocks != 0) all.text += L" locked";
                return all;
            }};
}

/// Every failure of these is a problem, and the result is no object.
Operation creation(const char* name, std::function<DATE()> time, LONG occPid) {
    return {name,
            [time = std::move(time), occPid](_DIWrapper& wrapper, const Around& around) {
                return outcome(wrapper, around, &_DIWrapper::CreateOrRetrieveOccurrence, occPid, time());
            },
            Failing::allToProblem};
}

/// Never the same twice, so that there is no data point yet.
DATE freshTime() {
    static std::atomic<int> days = 0;
    return when + 1000 + ++days;
}

}  // namespace

std::vector<Operation> recordOperations() {
    return {
        plain("GetLongTermDataPoints", &_DIWrapper::GetLongTermDataPoints, pid, hourly.get(), when, when + 1),
        plain("GetShortTermDataPoints", &_DIWrapper::GetShortTermDataPoints, pid, hourly.get(), when,
              when + 1),
        update("UpdateLongTermDataPointXValue", &_DIWrapper::UpdateLongTermDataPointXValue),
        update("UpdateShortTermDataPointXValue", &_DIWrapper::UpdateShortTermDataPointXValue),
        {"DataPointBasicWrapper", useDataPoint},
        listing(),
        onOccurrence("SaveOccurrence", saveOccurrence),
        onOccurrence("OccurrenceDataWrapper", useOccurrence),
        onOccurrence("OccurrenceDataWrapper_Excursion", useExcursion),
        onOccurrence("OccurrenceDataWrapper_Downtime", useDowntime),
        creation(
            "CreateOrRetrieveOccurrence_Existing", [] { return when; }, existing),
        creation("CreateOrRetrieveOccurrence_New", freshTime, missing),
    };
}

void furnishRecords(fake::Site& site) {
    for (auto* const points : {&site.longTerm, &site.shortTerm}) {
        (*points)[pid] = {{when, com::Variant::of(12.5), com::Variant::of(LONG{5}), L"", L""},
                          {when + 1, com::Variant::null(), com::Variant::null(), L"<o/>", L"<x/>"},
                          {when + 2, com::Variant::of(1.0), com::Variant::of(LONG{1}), L"", L""}};
    }
    const fake::OccurrencePart part = {existing, false, L"category", L"reason", L"action", 101000900, L"0.5"};
    site.longTerm[tag] = {
        {when, com::Variant::of(L"12.5"), com::Variant::of(L"5"), fake::occurrenceText({part, part}), L""}};
    site.edits.clear();
    // As texts, so that strings travel.
    for (const auto& [occPid, type] : {std::pair{existing, L"4"}, {missing, L"3"}}) {
        fake::Parameter& parameter = site.parameters[occPid];
        parameter.ioType = 31;
        parameter.specialValues.insert_or_assign(-21, com::Variant::of(std::to_wstring(tag)));
        parameter.specialValues.insert_or_assign(-3, com::Variant::of(type));
        parameter.specialValues.insert_or_assign(-13, com::Variant::of(L"3600"));
    }
}

}  // namespace vtdn::test
