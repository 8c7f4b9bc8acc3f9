// What the operations of one wrapper share: the engine object, the problems list and the checks in front of
// every engine call.
#pragma once

#include <cstdint>
#include <string_view>

#include "binding/problem_texts.h"
#include "binding/problems_list.h"
#include "binding/time_stamp.h"
#include "engine/client.h"
#include "engine/messages.h"

namespace vtdn::binding {

/// Set up exactly when it holds an engine object. Released while set up, it lets go of the engine and does
/// not close it.
class Session final : private com::EventListener {
  public:
    Session() = default;
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session() { release(); }

    [[nodiscard]] bool isSetUp() const noexcept { return static_cast<bool>(engine_); }
    /// The engine, or none before set-up. A reference of the caller's own: events of the engine may reach
    /// code that ends the binding.
    [[nodiscard]] engine::Engine engine() const noexcept { return engine_; }

    /// Creates the engine object and listens to its messages from then on.
    void bind();
    /// Stops listening and releases the engine object.
    void release() noexcept;

    void addProblem(std::wstring_view problem) { problems_.add(timeStamp_.now(), problem); }
    /// The whole list; it is empty afterwards.
    [[nodiscard]] com::Bstr takeProblems();

    // The common checks. Each gives nothing when the operation is to return its default result: before set-up
    // silently, after a failed check with the problem of that check.

    /// The parameters of the site, which know the PID.
    [[nodiscard]] engine::Params paramsWith(std::int32_t pid, Code unknownPid);
    /// The parameter of a PID.
    [[nodiscard]] engine::Param param(std::int32_t pid, Code unknownPid);
    /// The parameter of a PID, whose values are stored in the database.
    [[nodiscard]] engine::Param writableParam(std::int32_t pid, Code unknownPid, Code notDatabase);

  private:
    /// Every message of the engine is a problem, whatever its type.
    void event(DISPID id, const com::EventArguments& arguments) override;

    engine::Engine engine_;
    com::EventSink events_;
    ProblemsList problems_;
    TimeStamp timeStamp_;
};

}  // namespace vtdn::binding
