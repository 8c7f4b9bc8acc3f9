// A recording engine that holds the component to a script: which calls, in which order, with which arguments.
// A call that the script does not expect next fails the test, and so do a call that never comes and an object
// that is never released.
//
//     StrictEngine engine;
//     engine.expect({
//         {"Engine.Params"},
//         {"Params.Exists(530001)", true},
//         {"Params.Item(530001, -1)"},
//         {"Param(530001).Name", L"Stack flow"},
//     });
//
// Every object has a name: Engine, Params, Param(pid), Utils, Dahs, Alarms, Relationship, List for a
// collection of parameters and Listed(n) for its n-th, Array (Array2 for the second one alive), Item(n) for
// the n-th of an array, Stored for an item from GetDataItem and New for one that was created, LongTerm and
// ShortTerm for the managers of data points, Points for a collection of data points and Point(n) for its
// n-th, Blank for a data point that was created, Found for one that was looked for, Occurrences for a
// collection of occurrences and Occurrence(n) for its n-th, Event for what belongs to a data point or an
// occurrence. Texts stand in single quotes; values in a variant follow their type: I4 12, R4 12.5, BSTR 'x',
// Null, Date 39508.5, Dispatch New, [0..1: Empty, I4 1] for an array of variants and I4[0..1: 7, 8] for one
// of numbers.
#pragma once

#include <VTDI.h>
#include <oleauto.h>

#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "com/variant.h"
#include "fake_engine/class_objects.h"
#include "fake_engine/event_source.h"

namespace vtdn::fake {

/// What an expected call answers. Nothing said: success, with the object that the call hands out or with "",
/// 0 or False.
class Answer {
  public:
    Answer() = default;
    Answer(bool value);            // NOLINT(google-explicit-constructor): scripts read as tables
    Answer(int value);             // NOLINT(google-explicit-constructor)
    Answer(double value);          // NOLINT(google-explicit-constructor)
    Answer(const wchar_t* value);  // NOLINT(google-explicit-constructor)
    Answer(com::Variant value);    // NOLINT(google-explicit-constructor)

    /// A failure, without an error info.
    static Answer failure(HRESULT result);
    /// A failure with an error info.
    static Answer failure(HRESULT result, const wchar_t* source, const wchar_t* description);
    /// Success, but with a null pointer where an object is meant.
    static Answer noObject();

    /// Raises a Message event in the middle of the call. Can be said several times.
    Answer& message(LONG type, std::wstring text, EventArguments how = EventArguments::byValue) &;
    Answer&& message(LONG type, std::wstring text, EventArguments how = EventArguments::byValue) &&;
    /// Runs in the middle of the call.
    Answer&& during(std::function<void()> action) &&;

    struct ErrorInfo {
        std::wstring source;
        std::wstring description;
    };
    struct Message {
        LONG type;
        std::wstring text;
        EventArguments how;
    };

    [[nodiscard]] HRESULT result() const { return result_; }
    [[nodiscard]] const std::optional<ErrorInfo>& errorInfo() const { return errorInfo_; }
    [[nodiscard]] const com::Variant& value() const { return value_; }
    [[nodiscard]] bool hasObject() const { return hasObject_; }
    [[nodiscard]] const std::vector<Message>& messages() const { return messages_; }
    [[nodiscard]] const std::function<void()>& action() const { return action_; }

  private:
    HRESULT result_ = S_OK;
    std::optional<ErrorInfo> errorInfo_;
    com::Variant value_;
    bool hasObject_ = true;
    std::vector<Message> messages_;
    std::function<void()> action_;
};

/// One line of a script.
struct Call {
    std::string text;
    Answer answer;
    bool optional = false;  ///< the component may leave this call out

    Call(std::string callText) : text(std::move(callText)) {}  // NOLINT(google-explicit-constructor)
    Call(const char* callText) : text(callText) {}             // NOLINT(google-explicit-constructor)
    Call(std::string callText, Answer callAnswer)
        : text(std::move(callText)), answer(std::move(callAnswer)) {}
    /// The same call, which may be left out.
    [[nodiscard]] Call orNot() const {
        Call call = *this;
        call.optional = true;
        return call;
    }
};

/// What a client did to the array of more arguments of SpecialFunction, and what the engine leaves there.
enum class MoreArguments {
    keep,     ///< as it came
    replace,  ///< another array in its place
    clear,    ///< none
};

class Script;

/// Serves the engine classes on the calling thread until it goes; then every expectation must be met, every
/// object dead and every sink gone. Failures are reported to GoogleTest.
class StrictEngine {
  public:
    StrictEngine();
    ~StrictEngine();
    StrictEngine(const StrictEngine&) = delete;
    StrictEngine& operator=(const StrictEngine&) = delete;

    void expect(std::initializer_list<Call> calls);
    void expect(const std::vector<Call>& calls);
    /// The calls expected so far must have come by now.
    void verify();

    /// From now on the end of an object whose name begins so is a call like any other: "release Stored".
    void expectReleases(std::vector<std::string> names);
    /// What SpecialFunction leaves in the array of more arguments.
    void leaveMoreArguments(MoreArguments what);

    /// Raises Message now, outside any call.
    void raise(LONG type, const std::wstring& text);
    /// Sinks that are connected now.
    [[nodiscard]] std::size_t sinks() const;
    /// Objects that are alive now, names in order of creation.
    [[nodiscard]] std::vector<std::string> alive() const;
    /// The most objects that were alive at one time so far.
    [[nodiscard]] std::size_t mostAlive() const;

  private:
    std::shared_ptr<Script> script_;
    ClassObjects classes_;
};

}  // namespace vtdn::fake
