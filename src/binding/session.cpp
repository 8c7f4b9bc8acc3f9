#include "binding/session.h"

#include <utility>

#include "binding/io_type.h"

namespace vtdn::binding {

void Session::bind() {
    auto engine = engine::Engine::create();
    messages_.connect(engine, *this);
    engine_ = std::move(engine);
}

void Session::release() noexcept {
    messages_.disconnect();
    engine_ = {};
}

com::Bstr Session::takeProblems() {
    com::Bstr text(problems_.text());
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

}  // namespace vtdn::binding
