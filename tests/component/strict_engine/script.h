// The script behind a StrictEngine, and the names of the engine's objects.
#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <vector>

#include "strict_engine/strict.h"

namespace vtdn::fake {

class Script {
  public:
    void expect(const Call& call) { expected_.push_back(call); }
    void verify();

    /// Plays one call: compares it with the script, raises the events of its answer and sets its error info.
    /// A call that is not expected fails with E_UNEXPECTED.
    Answer play(const std::string& text);

    void born(const void* object, const std::string& name);
    void died(const void* object);
    [[nodiscard]] std::string nameOf(const void* object) const;

    std::vector<std::string> recordedReleases;  ///< beginnings of names
    MoreArguments moreArguments = MoreArguments::keep;
    std::shared_ptr<Sinks> sinks = std::make_shared<Sinks>();

    [[nodiscard]] std::vector<std::string> alive() const;
    [[nodiscard]] std::size_t mostAlive() const { return mostAlive_; }

  private:
    /// The calls so far, for a report.
    [[nodiscard]] std::string played() const;

    struct Alive {
        const void* object;
        std::string name;
    };
    std::deque<Call> expected_;
    std::vector<std::string> played_;
    std::vector<Alive> alive_;
    std::size_t mostAlive_ = 0;
};

/// The engine classes, whose calls go to the script.
com::Ptr<IUnknown> makeStrictEngine(const std::shared_ptr<Script>& script);
com::Ptr<IUnknown> makeStrictArray(const std::shared_ptr<Script>& script);
com::Ptr<IUnknown> makeStrictItem(const std::shared_ptr<Script>& script);
com::Ptr<IUnknown> makeStrictDataPoint(const std::shared_ptr<Script>& script);

}  // namespace vtdn::fake
