#include "binding/session.h"

#include <utility>

#include "binding/io_type.h"

namespace vtdn::binding {

void Session::bind() {
    auto engine = engine::Engine::create();
    engine::listen(events_, engine, *this);
    engine_ = std::move(engine);
}

void Session::release() noexcept {
    events_.disconnect();
    engine_ = {};
}

com::Bstr Session::takeProblems() {
    auto text = com::Bstr::ofLength(problems_.size());
    problems_.copyTo(text.get());
    problems_.clear();
    return text;
}

engine::Params Session::paramsWith(std::int32_t pid, Code unknownPid) {
    const auto engine = engine_;
    if (!engine) return {};
    auto params = engine.params();
    if (params.exists(pid)) return params;
    addProblem(doesNotExist(pid, unknownPid));
    return {};
}

engine::Param Session::param(std::int32_t pid, Code unknownPid) {
    const auto params = paramsWith(pid, unknownPid);
    return params ? params.item(pid) : engine::Param();
}

engine::Param Session::writableParam(std::int32_t pid, Code unknownPid, Code notDatabase) {
    auto param = this->param(pid, unknownPid);
    if (!param || param.ioType() == databaseIo) return param;
    addProblem(notDatabaseIo(pid, notDatabase));
    return {};
}

void Session::event(DISPID id, const com::EventArguments& arguments) {
    if (const auto description = engine::messageDescription(id, arguments)) addProblem(description->view());
}

}  // namespace vtdn::binding
