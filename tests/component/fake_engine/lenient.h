// A small engine in memory that answers every call: for tests of logic, walks, lifetime, and benchmarks. It
// is the engine without block access unless a site is told to offer it.
#pragma once

#include <VTDI.h>
#include <oleauto.h>

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "com/ptr.h"
#include "com/variant.h"
#include "fake_engine/class_objects.h"
#include "fake_engine/event_source.h"

namespace vtdn::fake {

/// One interval: a value (Null for none) and its monitor code.
struct Interval {
    com::Variant value = com::Variant::null();
    LONG mc = 0;
};

struct Relationship {
    LONG intervalCount = 1;
    std::wstring intervalUnit;
    std::wstring detailXml;
};

struct Alarm {
    std::wstring siteId;
    DATE timeStamp = 0;
    std::wstring message;
    std::wstring category;
    LONG severity = 0;
    std::wstring group;
    std::wstring source;
    friend bool operator==(const Alarm&, const Alarm&) = default;
};

/// A numbered list of names, from code 0 on; a code beyond it has no name.
struct Names {
    std::vector<std::wstring> shortNames;
    std::vector<std::wstring> longNames;
};

struct Parameter {
    std::wstring name;
    std::wstring format;
    std::wstring intervalType;
    std::wstring units;
    LONG ioType = 38;
    std::wstring usedPids;      ///< decimal, separated by ","
    std::vector<Interval> run;  ///< what a data array is filled with, whatever its start; Null beyond the end
    std::map<DATE, Interval> stored;  ///< single intervals by their time; Null and code 0 at any other time
    LONG type = 0;                    ///< parameter type
    std::map<LONG, com::Variant> specialValues;  ///< Null for any other id
    std::optional<Relationship> relationship;
    /// What special function 33 was given last: the data and the mask of each interval.
    std::vector<Interval> written;
    std::vector<Interval> mask;
    /// What any special function but 6 and 33 answers; E_INVALIDARG without it.
    std::optional<com::Variant> functionAnswer;
};

struct DataPoint {
    DATE timeStamp = 0;
    com::Variant value = com::Variant::null();
    com::Variant mc = com::Variant::null();
    std::wstring occurrence;
    std::wstring extra;
};

struct OccurrencePart {
    LONG pid = 0;
    bool excludable = false;
    std::wstring category;
    std::wstring reason;
    std::wstring action;
    LONG limitPid = 0;   ///< of an excursion
    std::wstring limit;  ///< of an excursion
    friend bool operator==(const OccurrencePart&, const OccurrencePart&) = default;
};
/// A save of a data point.
struct Edit {
    LONG tag = 0;
    DATE timeStamp = 0;
    std::wstring source;
    std::wstring user;
    friend bool operator==(const Edit&, const Edit&) = default;
};
struct Occurrence {
    std::optional<OccurrencePart> excursion;
    std::optional<OccurrencePart> downtime;
    friend bool operator==(const Occurrence&, const Occurrence&) = default;
};
/// A data point's occurrence text, in this engine's own way of writing.
std::wstring occurrenceText(const Occurrence& occurrence);
/// A text that is written in another way has no part.
Occurrence occurrenceOf(std::wstring_view text);

/// Sees every call that reaches the engine, before it is answered.
class Tap {
  public:
    Tap() = default;
    Tap(const Tap&) = delete;
    Tap& operator=(const Tap&) = delete;
    virtual ~Tap() = default;
    /// `call` is "Interface.Member", or "new Class". A failure is the answer of the call; the error info, if
    /// any, is the tap's to set.
    virtual HRESULT onCall(const char* call) = 0;
};

/// What a lenient engine serves. It must outlive every object of the engine.
struct Site {
    std::map<LONG, Parameter> parameters;
    std::set<LONG> knownMcs;
    LONG dahsId = 0;                 ///< of the last SetupByDahsID
    std::wstring siteId;             ///< of the last SetupForced
    std::wstring text = L"lenient";  ///< every other text of SelectedDahs
    bool setupAnswer = true;
    Names monitorCodes;
    Names parameterCodes;
    std::vector<std::wstring> units;                   ///< names by number; "" beyond the end
    std::vector<Alarm> alarms;                         ///< written so far
    std::map<LONG, std::vector<DataPoint>> longTerm;   ///< by tag, in order of time, at whatever interval
    std::map<LONG, std::vector<DataPoint>> shortTerm;  ///< the same; a tag that is not here has no list
    std::vector<Edit> edits;                           ///< data points saved so far
    bool offerRuns = false;                            ///< whether data arrays have DIDataArrayRuns
    bool offerBlocks = false;                          ///< whether data arrays have DIDataArrayBlocks
    LONG longestRun = 0x7FFFFFFF;                      ///< a run ends after so many items
    Tap* tap = nullptr;
    long objects = 0;                                          ///< objects of the engine that are alive
    long itemCalls = 0;                                        ///< DIDataArray.Item calls so far
    long runCalls = 0;                                         ///< DIDataArrayRuns.GetRun calls so far
    long setItemCalls = 0;                                     ///< DIDataArray.SetItem calls so far
    long setRunCalls = 0;                                      ///< DIDataArrayBlocks.SetRun calls so far
    long cacheFlushes = 0;                                     ///< DIParams.FlushCache calls so far
    long closes = 0;                                           ///< DIEngine.Close calls so far
    std::shared_ptr<Sinks> sinks = std::make_shared<Sinks>();  ///< connected to any engine of the site
};

com::Ptr<DIEngine> makeEngine(Site& site);
com::Ptr<DIDataArray> makeDataArray(Site& site);
com::Ptr<DIDataArrayItem> makeDataItem(Site& site);
com::Ptr<DIDataPoint> makeDataPoint(Site& site);

/// Serves the engine classes over a site, on the calling thread, for as long as it lives.
class LenientServer {
  public:
    explicit LenientServer(Site& site);

  private:
    ClassObjects classes_;
};

}  // namespace vtdn::fake
