// The component as this program uses it: created, bound to a DAHS, asked, and torn down at the end.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "VTWrapperDN.h"
#include "client/run/run_file.h"
#include "client/verbs/occurrence_arguments.h"
#include "client/verbs/params_selection.h"
#include "client/verbs/read_range.h"
#include "client/verbs/typed_arguments.h"
#include "com/ptr.h"
#include "com/safe_array.h"
#include "store/alarms.h"
#include "store/site.h"

namespace vtdn::client {

/// One interval as the component hands it out: the value as text in the user's locale, and its number if it
/// is one.
struct Reading {
    std::string text;  ///< empty for no value
    std::optional<double> number;
    std::int32_t code = 0;
};

/// A number of a data point; nothing for none, and for a text.
using PointValue = std::optional<double>;

/// A data point as the component hands it out.
struct PointReading {
    store::Time time = 0;
    PointValue value;
    PointValue code;
    std::string occurrence;
    std::string extra;
};

/// An occurrence as the component hands it out.
struct OccurrenceReading {
    std::int32_t tag = 0;
    store::Time time = 0;
    std::string text;  ///< the value as a text, empty for none
    PointValue value;
    PointValue code;
    store::Occurrence parts;
};

using OccurrenceObject = com::Ptr<_OccurrenceDataWrapper>;

OccurrenceReading readingOf(_OccurrenceDataWrapper& occurrence);

/// Says something anew of a part of an occurrence that is there. Nothing is saved by it.
void change(_OccurrenceDataWrapper& occurrence, OccurrenceKind kind, const PartChanges& changes);

/// A value to write.
using WrittenValue = std::variant<std::monostate, std::int32_t, float, std::string>;

/// What a special value or function is asked for as: the component has an operation for each.
enum class AnswerKind { text, number, rounded, boolean };
using Answer = std::variant<std::string, std::int32_t, bool>;

/// The component's lists of names, indexed by unit number or code.
enum class NameList {
    units,
    unitOrisCodes,
    unitIds,
    shortMonitorCodes,
    longMonitorCodes,
    shortParameterCodes,
    longParameterCodes,
};

/// The number that a text of the component stands for, in the user's locale; nothing when it is none.
std::optional<double> numberIn(std::wstring_view text);

/// Whether the component takes a text for a number, in the user's locale.
bool readsAsNumber(const std::string& text);

/// Calls that fail throw com::Error; the component's refusals are results here as they are there, with lines
/// in the problems list.
class Component {
  public:
    /// Creates the component. Throws Failure (environment) when it is not registered for programs like this
    /// one.
    Component();
    ~Component();
    Component(const Component&) = delete;
    Component& operator=(const Component&) = delete;

    /// Binds to a DAHS. False when the engine refused; the problems list says why.
    bool setUp(std::int32_t dahsId);
    /// Empties the problems list and returns its entries, "(time stamp) text" each.
    std::vector<std::string> takeProblems();

    bool exists(std::int32_t pid);
    bool isStored(std::int32_t pid);
    std::string name(std::int32_t pid) { return text(&_DIWrapper::Param_Name, pid); }
    std::string units(std::int32_t pid) { return text(&_DIWrapper::Param_MeasUnits, pid); }
    std::string format(std::int32_t pid) { return text(&_DIWrapper::Param_Fmt, pid); }
    std::string interval(std::int32_t pid) { return text(&_DIWrapper::Param_IntervalType, pid); }
    std::string configConnection() { return dahsText(&_DIWrapper::SelectedDahs_ConfigConnection); }
    std::string alarmConnection() { return dahsText(&_DIWrapper::SelectedDahs_AlarmConnection); }

    std::string siteId() { return dahsText(&_DIWrapper::SelectedDahs_SiteID); }
    std::string siteName() { return dahsText(&_DIWrapper::SelectedDahs_DahsCompleteName); }
    store::SiteConnections siteConnections();

    struct UsedPids {
        std::vector<std::int32_t> stored;
        std::vector<std::int32_t> constant;
    };
    /// Nothing when the component refused.
    std::optional<UsedPids> uses(std::int32_t pid);

    /// A list of the component, in the engine's order. Not for Kind::all, which it has no list for.
    std::vector<std::int32_t> list(const ParamsSelection& selection);
    /// The relationship document, empty when the parameter has none. Nothing when the component refused.
    std::optional<std::string> relationship(std::int32_t pid);

    // An empty text, 0 or false when the component refused or trapped a failure: the problems list says so,
    // and it alone.
    Answer specialValue(std::int32_t pid, std::int32_t id, AnswerKind kind);
    Answer callFunction(std::int32_t pid, std::int32_t id, std::span<const FunctionArgument> arguments,
                        AnswerKind kind);
    std::int32_t operatingTime(std::int32_t pid, store::Time from, store::Time to);

    std::vector<std::string> names(NameList list);

    /// Nothing when the component refused, or when anything failed.
    std::optional<Reading> readOne(std::int32_t pid, store::Time time);
    /// Nothing when the component refused.
    std::optional<std::vector<Reading>> read(std::int32_t pid, store::Time start, std::int32_t count,
                                             const store::Interval& interval);

    /// Those that begin from first to last, both included, in order of time.
    std::vector<PointReading> dataPoints(std::int32_t pid, const store::Interval& interval, store::Time first,
                                         store::Time last);
    /// The extra-value text of one interval; "" removes it. False when the component did not write it.
    bool setExtra(std::int32_t pid, const store::Interval& interval, store::Time time,
                  const std::string& text);

    /// What the query asks for, in the engine's order.
    std::vector<OccurrenceObject> occurrences(const OccurrenceQuery& query);
    /// The occurrence of that parameter and time, made if there is none. No object when the component
    /// refused.
    OccurrenceObject createOccurrence(std::int32_t pid, store::Time time);
    /// False when the component did not save it.
    bool saveOccurrence(const OccurrenceObject& occurrence);

    bool writeCode(std::int32_t pid, store::Time time, std::int32_t code);
    bool writeValue(std::int32_t pid, store::Time time, const WrittenValue& value);
    /// Value and monitor code in one write. Not for texts, which the component has no such operation for.
    bool writeBoth(std::int32_t pid, store::Time time, const WrittenValue& value, std::int32_t code);

    /// All of a run or nothing of it.
    bool writeRun(std::int32_t pid, const store::Interval& interval, const WrittenRun& run);

    /// False when the component refused. The log gives the alarm its site id.
    bool writeAlarm(const store::Alarm& alarm);

  private:
    using DahsText = HRESULT (STDMETHODCALLTYPE _DIWrapper::*)(BSTR*);
    std::string dahsText(DahsText getter);
    using TextGetter = HRESULT (STDMETHODCALLTYPE _DIWrapper::*)(long, BSTR*);
    std::string text(TextGetter getter, std::int32_t pid);

    com::Ptr<_DIWrapper> wrapper_;
};

}  // namespace vtdn::client
