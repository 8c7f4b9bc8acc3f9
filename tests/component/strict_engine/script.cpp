#include "strict_engine/script.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

#include "com/error.h"
#include "com/ptr.h"
#include "com/strings.h"

namespace vtdn::fake {

Answer::Answer(bool value) : value_(com::Variant::ofBool(value)) {}
Answer::Answer(int value) : value_(com::Variant::of(static_cast<LONG>(value))) {}
Answer::Answer(double value) : value_(com::Variant::of(value)) {}
Answer::Answer(const wchar_t* value) : value_(com::Variant::of(std::wstring_view(value))) {}
Answer::Answer(com::Variant value) : value_(std::move(value)) {}

Answer Answer::failure(HRESULT result) {
    Answer answer;
    answer.result_ = result;
    return answer;
}

Answer Answer::failure(HRESULT result, const wchar_t* source, const wchar_t* description) {
    Answer answer = failure(result);
    answer.errorInfo_ = ErrorInfo{source, description};
    return answer;
}

Answer Answer::noObject() {
    Answer answer;
    answer.hasObject_ = false;
    return answer;
}

Answer& Answer::message(LONG type, std::wstring text, EventArguments how) & {
    messages_.push_back({type, std::move(text), how});
    return *this;
}

Answer&& Answer::message(LONG type, std::wstring text, EventArguments how) && {
    return std::move(message(type, std::move(text), how));
}

Answer&& Answer::during(std::function<void()> action) && {
    action_ = std::move(action);
    return std::move(*this);
}

Answer Script::play(const std::string& text) {
    while (!expected_.empty() && expected_.front().optional && expected_.front().text != text) {
        expected_.pop_front();
    }
    if (expected_.empty() || expected_.front().text != text) {
        ADD_FAILURE() << "Unexpected call: " << text
                      << "\n  expected: " << (expected_.empty() ? "no call" : expected_.front().text)
                      << played();
        return Answer::failure(E_UNEXPECTED);
    }
    Answer answer = std::move(expected_.front().answer);
    expected_.pop_front();
    played_.push_back(text);
    // From here on the component may make further calls.
    for (const Answer::Message& message : answer.messages()) {
        EXPECT_TRUE(SUCCEEDED(sinks->raise(message.type, message.text, message.how)));
    }
    if (answer.action()) answer.action()();
    if (answer.errorInfo()) {
        const auto info = com::makeErrorInfo(answer.errorInfo()->source, answer.errorInfo()->description,
                                             __uuidof(DIEngine));
        SetErrorInfo(0, info.get());
    }
    return answer;
}

std::string Script::played() const {
    std::string text = "\n  calls so far:";
    for (const std::string& call : played_) text += "\n    " + call;
    return text;
}

void Script::verify() {
    while (!expected_.empty() && expected_.front().optional) expected_.pop_front();
    if (expected_.empty()) return;
    std::string missing;
    for (const Call& call : expected_) missing += "\n    " + call.text;
    ADD_FAILURE() << "Calls that never came:" << missing << played();
    expected_.clear();
}

void Script::born(const void* object, const std::string& name) {
    alive_.push_back({object, name});
    mostAlive_ = std::max(mostAlive_, alive_.size());
}

void Script::died(const void* object) {
    const auto found = std::find_if(alive_.begin(), alive_.end(),
                                    [object](const Alive& one) { return one.object == object; });
    const std::string name = found->name;
    alive_.erase(found);
    const auto begins = [&name](const std::string& beginning) { return name.starts_with(beginning); };
    if (std::any_of(recordedReleases.begin(), recordedReleases.end(), begins))
        static_cast<void>(play("release " + name));
}

std::string Script::nameOf(const void* object) const {
    for (const Alive& one : alive_) {
        if (one.object == object) return one.name;
    }
    return object ? "a stranger" : "Nothing";
}

std::vector<std::string> Script::alive() const {
    std::vector<std::string> names;
    for (const Alive& one : alive_) names.push_back(one.name);
    return names;
}

StrictEngine::StrictEngine() : script_(std::make_shared<Script>()) {
    const auto serve = [this](REFCLSID classId, const char* call, auto make) {
        classes_.serve(classId, [script = script_, call, make](REFIID iid, void** out) {
            const HRESULT result = script->play(call).result();
            return FAILED(result) ? result : make(script)->QueryInterface(iid, out);
        });
    };
    serve(__uuidof(DIEngineClass), "new DIEngine", makeStrictEngine);
    serve(__uuidof(DIDataArrayClass), "new DIDataArray", makeStrictArray);
    serve(__uuidof(DIDataArrayItemClass), "new DIDataArrayItem", makeStrictItem);
    serve(__uuidof(DIDataPointClass), "new DIDataPoint", makeStrictDataPoint);
}

StrictEngine::~StrictEngine() {
    script_->verify();
    EXPECT_TRUE(alive().empty()) << "Objects of the engine that were never released: "
                                 << testing::PrintToString(alive());
    EXPECT_EQ(sinks(), 0U) << "Event sinks that are still connected";
}

void StrictEngine::expect(std::initializer_list<Call> calls) {
    for (const Call& call : calls) script_->expect(call);
}
void StrictEngine::expect(const std::vector<Call>& calls) {
    for (const Call& call : calls) script_->expect(call);
}
void StrictEngine::verify() {
    script_->verify();
}
void StrictEngine::expectReleases(std::vector<std::string> names) {
    script_->recordedReleases = std::move(names);
}
void StrictEngine::leaveMoreArguments(MoreArguments what) {
    script_->moreArguments = what;
}
void StrictEngine::raise(LONG type, const std::wstring& text) {
    script_->sinks->raise(type, text);
}
std::size_t StrictEngine::sinks() const {
    return script_->sinks->count();
}
std::vector<std::string> StrictEngine::alive() const {
    return script_->alive();
}
std::size_t StrictEngine::mostAlive() const {
    return script_->mostAlive();
}

}  // namespace vtdn::fake
