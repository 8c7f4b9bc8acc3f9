#include "fake_engine/lenient_occurrences.h"

#include <algorithm>
#include <cwchar>
#include <string_view>
#include <utility>
#include <vector>

#include "com/safe_array.h"
#include "com/strings.h"
#include "fake_engine/lenient_object.h"

namespace vtdn::fake {

namespace {

// A part is its kind and its fields, each ended by a character that no test puts into a field.
constexpr wchar_t fieldEnd = L'\x1F';
constexpr wchar_t excursionKind = L'E';
constexpr wchar_t downtimeKind = L'D';

void append(std::wstring& text, wchar_t kind, const OccurrencePart& part) {
    text += kind;
    for (const std::wstring& field :
         {std::to_wstring(part.pid), std::to_wstring(part.excludable ? 1 : 0), part.category, part.reason,
          part.action, std::to_wstring(part.limitPid), part.limit}) {
        text += field;
        text += fieldEnd;
    }
}

std::wstring takeField(std::wstring_view& text) {
    const std::size_t end = std::min(text.find(fieldEnd), text.size());
    std::wstring field(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    return field;
}
LONG takeNumber(std::wstring_view& text) {
    return std::wcstol(takeField(text).c_str(), nullptr, 10);
}
OccurrencePart takePart(std::wstring_view& text) {
    OccurrencePart part;
    part.pid = takeNumber(text);
    part.excludable = takeNumber(text) != 0;
    part.category = takeField(text);
    part.reason = takeField(text);
    part.action = takeField(text);
    part.limitPid = takeNumber(text);
    part.limit = takeField(text);
    return part;
}

using Which = std::optional<OccurrencePart> Occurrence::*;
constexpr Which excursion = &Occurrence::excursion;
constexpr Which downtime = &Occurrence::downtime;

HRESULT out(LONG value, LONG* result) {
    *result = value;
    return S_OK;
}
HRESULT out(bool value, VARIANT_BOOL* result) {
    *result = com::variantBool(value);
    return S_OK;
}
HRESULT out(const std::wstring& value, BSTR* result) {
    return textOut(value, result);
}
void take(LONG& field, LONG value) {
    field = value;
}
void take(bool& field, VARIANT_BOOL value) {
    field = value != VARIANT_FALSE;
}
void take(std::wstring& field, BSTR value) {
    field = com::view(value);
}

class Event final : public Member<EngineObject<DIOccurrenceEvent>> {
  public:
    Event(Site& site, SharedText text) : Member(site), text_(std::move(text)) {}

    HRESULT STDMETHODCALLTYPE get_OccDataXML(BSTR* result) override {
        *result = nullptr;
        const HRESULT failed = tapped("DIOccurrenceEvent.OccDataXML");
        return FAILED(failed) ? failed : textOut(*text_, result);
    }
    HRESULT STDMETHODCALLTYPE get_HasExcursion(VARIANT_BOOL* result) override {
        return has("DIOccurrenceEvent.HasExcursion", excursion, result);
    }
    HRESULT STDMETHODCALLTYPE get_HasDowntime(VARIANT_BOOL* result) override {
        return has("DIOccurrenceEvent.HasDowntime", downtime, result);
    }
    HRESULT STDMETHODCALLTYPE AddExcursion() override {
        return add("DIOccurrenceEvent.AddExcursion", excursion);
    }
    HRESULT STDMETHODCALLTYPE get_Excursion_PID(LONG* result) override {
        return get("DIOccurrenceEvent.Excursion_PID", excursion, &OccurrencePart::pid, result);
    }
    HRESULT STDMETHODCALLTYPE put_Excursion_PID(LONG value) override {
        return put("DIOccurrenceEvent.Excursion_PID=", excursion, &OccurrencePart::pid, value);
    }
    HRESULT STDMETHODCALLTYPE get_Excursion_Excludable(VARIANT_BOOL* result) override {
        return get("DIOccurrenceEvent.Excursion_Excludable", excursion, &OccurrencePart::excludable, result);
    }
    HRESULT STDMETHODCALLTYPE put_Excursion_Excludable(VARIANT_BOOL value) override {
        return put("DIOccurrenceEvent.Excursion_Excludable=", excursion, &OccurrencePart::excludable, value);
    }
    HRESULT STDMETHODCALLTYPE get_Excursion_Category(BSTR* result) override {
        return get("DIOccurrenceEvent.Excursion_Category", excursion, &OccurrencePart::category, result);
    }
    HRESULT STDMETHODCALLTYPE put_Excursion_Category(BSTR value) override {
        return put("DIOccurrenceEvent.Excursion_Category=", excursion, &OccurrencePart::category, value);
    }
    HRESULT STDMETHODCALLTYPE get_Excursion_Reason(BSTR* result) override {
        return get("DIOccurrenceEvent.Excursion_Reason", excursion, &OccurrencePart::reason, result);
    }
    HRESULT STDMETHODCALLTYPE put_Excursion_Reason(BSTR value) override {
        return put("DIOccurrenceEvent.Excursion_Reason=", excursion, &OccurrencePart::reason, value);
    }
    HRESULT STDMETHODCALLTYPE get_Excursion_Action(BSTR* result) override {
        return get("DIOccurrenceEvent.Excursion_Action", excursion, &OccurrencePart::action, result);
    }
    HRESULT STDMETHODCALLTYPE put_Excursion_Action(BSTR value) override {
        return put("DIOccurrenceEvent.Excursion_Action=", excursion, &OccurrencePart::action, value);
    }
    HRESULT STDMETHODCALLTYPE get_Excursion_LimitPID(LONG* result) override {
        return get("DIOccurrenceEvent.Excursion_LimitPID", excursion, &OccurrencePart::limitPid, result);
    }
    HRESULT STDMETHODCALLTYPE get_Excursion_Limit(BSTR* result) override {
        return get("DIOccurrenceEvent.Excursion_Limit", excursion, &OccurrencePart::limit, result);
    }
    HRESULT STDMETHODCALLTYPE AddDowntime() override {
        return add("DIOccurrenceEvent.AddDowntime", downtime);
    }
    HRESULT STDMETHODCALLTYPE get_Downtime_PID(LONG* result) override {
        return get("DIOccurrenceEvent.Downtime_PID", downtime, &OccurrencePart::pid, result);
    }
    HRESULT STDMETHODCALLTYPE put_Downtime_PID(LONG value) override {
        return put("DIOccurrenceEvent.Downtime_PID=", downtime, &OccurrencePart::pid, value);
    }
    HRESULT STDMETHODCALLTYPE get_Downtime_Excludable(VARIANT_BOOL* result) override {
        return get("DIOccurrenceEvent.Downtime_Excludable", downtime, &OccurrencePart::excludable, result);
    }
    HRESULT STDMETHODCALLTYPE put_Downtime_Excludable(VARIANT_BOOL value) override {
        return put("DIOccurrenceEvent.Downtime_Excludable=", downtime, &OccurrencePart::excludable, value);
    }
    HRESULT STDMETHODCALLTYPE get_Downtime_Category(BSTR* result) override {
        return get("DIOccurrenceEvent.Downtime_Category", downtime, &OccurrencePart::category, result);
    }
    HRESULT STDMETHODCALLTYPE put_Downtime_Category(BSTR value) override {
        return put("DIOccurrenceEvent.Downtime_Category=", downtime, &OccurrencePart::category, value);
    }
    HRESULT STDMETHODCALLTYPE get_Downtime_Reason(BSTR* result) override {
        return get("DIOccurrenceEvent.Downtime_Reason", downtime, &OccurrencePart::reason, result);
    }
    HRESULT STDMETHODCALLTYPE put_Downtime_Reason(BSTR value) override {
        return put("DIOccurrenceEvent.Downtime_Reason=", downtime, &OccurrencePart::reason, value);
    }
    HRESULT STDMETHODCALLTYPE get_Downtime_Action(BSTR* result) override {
        return get("DIOccurrenceEvent.Downtime_Action", downtime, &OccurrencePart::action, result);
    }
    HRESULT STDMETHODCALLTYPE put_Downtime_Action(BSTR value) override {
        return put("DIOccurrenceEvent.Downtime_Action=", downtime, &OccurrencePart::action, value);
    }

  private:
    HRESULT has(const char* call, Which which, VARIANT_BOOL* result) const {
        const HRESULT failed = tapped(call);
        return FAILED(failed) ? failed : out((occurrenceOf(*text_).*which).has_value(), result);
    }
    HRESULT add(const char* call, Which which) const {
        if (const HRESULT failed = tapped(call); FAILED(failed)) return failed;
        Occurrence occurrence = occurrenceOf(*text_);
        if (!(occurrence.*which)) (occurrence.*which).emplace();
        *text_ = occurrenceText(occurrence);
        return S_OK;
    }
    template <class Field, class Result>
    HRESULT get(const char* call, Which which, Field OccurrencePart::*field, Result* result) const {
        *result = {};
        if (const HRESULT failed = tapped(call); FAILED(failed)) return failed;
        return out((occurrenceOf(*text_).*which).value_or(OccurrencePart()).*field, result);
    }
    template <class Field, class Value>
    HRESULT put(const char* call, Which which, Field OccurrencePart::*field, Value value) const {
        if (const HRESULT failed = tapped(call); FAILED(failed)) return failed;
        Occurrence occurrence = occurrenceOf(*text_);
        if (!(occurrence.*which)) return com::unsetObject;
        take(*(occurrence.*which).*field, value);
        *text_ = occurrenceText(occurrence);
        return S_OK;
    }

    SharedText text_;
};

/// A data point with a part, as it was when it was listed.
class OccurrenceObject final : public Member<EngineObject<DIOccurrence>> {
  public:
    OccurrenceObject(Site& site, LONG tag, const DataPoint& point)
        : Member(site),
          tag_(tag),
          start_(point.timeStamp),
          value_(com::Variant::copyOf(point.value.get())),
          mc_(com::Variant::copyOf(point.mc.get())),
          text_(std::make_shared<std::wstring>(point.occurrence)) {}

    HRESULT STDMETHODCALLTYPE get_AffectedPID(LONG* result) override {
        const HRESULT failed = tapped("DIOccurrence.AffectedPID");
        return FAILED(failed) ? failed : out(tag_, result);
    }
    HRESULT STDMETHODCALLTYPE get_Interval(BSTR* result) override {
        *result = nullptr;
        const HRESULT failed = tapped("DIOccurrence.Interval");
        return FAILED(failed) ? failed : textOut(L"1h", result);
    }
    HRESULT STDMETHODCALLTYPE get_StartDate(DATE* result) override {
        if (const HRESULT failed = tapped("DIOccurrence.StartDate"); FAILED(failed)) return failed;
        *result = start_;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_NValue(VARIANT* result) override {
        return variant("DIOccurrence.NValue", value_, result);
    }
    HRESULT STDMETHODCALLTYPE get_MC(VARIANT* result) override {
        return variant("DIOccurrence.MC", mc_, result);
    }
    HRESULT STDMETHODCALLTYPE get_Event(DIOccurrenceEvent** result) override {
        *result = nullptr;
        if (const HRESULT failed = tapped("DIOccurrence.Event"); FAILED(failed)) return failed;
        makeEvent(site(), text_).detachTo(result);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE TextValue(IDispatch*, BSTR* result) override {
        *result = nullptr;
        if (const HRESULT failed = tapped("DIOccurrence.TextValue"); FAILED(failed)) return failed;
        com::Bstr text;
        if (!value_.isNull()) {
            if (const HRESULT failed = com::toText(value_.get(), text); FAILED(failed)) return failed;
        }
        return textOut(text.view(), result);
    }

  private:
    HRESULT variant(const char* call, const com::Variant& stored, VARIANT* result) const {
        VariantInit(result);
        const HRESULT failed = tapped(call);
        return FAILED(failed) ? failed : copyVariant(result, stored.get());
    }

    LONG tag_;
    DATE start_;
    com::Variant value_;
    com::Variant mc_;
    SharedText text_;
};

/// Whether one of the numbers is the tag's PID or that of a part.
bool isWanted(const VARIANT& pids, LONG tag, const Occurrence& occurrence) {
    const auto names = [&](LONG pid) {
        return pid == tag || (occurrence.excursion && occurrence.excursion->pid == pid) ||
               (occurrence.downtime && occurrence.downtime->pid == pid);
    };
    if (pids.vt == VT_I4) return names(pids.lVal);
    if (pids.vt != (VT_ARRAY | VT_I4)) return true;
    const com::ArrayView<LONG> all(pids.parray);
    return std::any_of(all.begin(), all.end(), names);
}

}  // namespace

std::wstring occurrenceText(const Occurrence& occurrence) {
    std::wstring text;
    if (occurrence.excursion) append(text, excursionKind, *occurrence.excursion);
    if (occurrence.downtime) append(text, downtimeKind, *occurrence.downtime);
    return text;
}

Occurrence occurrenceOf(std::wstring_view text) {
    Occurrence occurrence;
    while (!text.empty() && text.back() == fieldEnd) {
        const wchar_t kind = text.front();
        if (kind != excursionKind && kind != downtimeKind) break;
        text.remove_prefix(1);
        (kind == excursionKind ? occurrence.excursion : occurrence.downtime) = takePart(text);
    }
    return occurrence;
}

com::Ptr<DIOccurrenceEvent> makeEvent(Site& site, const SharedText& text) {
    return com::Ptr<DIOccurrenceEvent>(new Event(site, text));
}

com::Ptr<DICollection> listOccurrences(Site& site, const OccurrenceQuery& query) {
    struct Found {
        LONG tag;
        const DataPoint* point;
    };
    std::vector<Found> found;
    for (const auto& [tag, points] : site.longTerm) {
        for (const DataPoint& point : points) {
            if (point.timeStamp < query.first || point.timeStamp > query.last) continue;
            const Occurrence occurrence = occurrenceOf(point.occurrence);
            if (((query.excursions && occurrence.excursion) || (query.downtimes && occurrence.downtime)) &&
                isWanted(query.pids, tag, occurrence))
                found.push_back({tag, &point});
        }
    }
    if (!query.byTag) {
        std::ranges::stable_sort(found, {}, [](const Found& one) { return one.point->timeStamp; });
    }
    const std::size_t count = found.size();
    return com::Ptr<DICollection>(new List(site, count, [&site, found = std::move(found)](std::size_t i) {
        return com::Ptr<IDispatch>(new OccurrenceObject(site, found[i].tag, *found[i].point));
    }));
}

}  // namespace vtdn::fake
