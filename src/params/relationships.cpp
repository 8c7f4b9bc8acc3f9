#include "params/relationships.h"

#include <string>

#include "params/averaging_levels.h"
#include "params/pid_list.h"

namespace vtdn::params {
namespace {

constexpr std::wstring_view xmlDeclaration = L"<?xml version=\"1.0\"?>\r\n";

/// Fetched for each question: that is how often engines expect to be asked.
engine::Relationship relationshipOf(const engine::Param& param) {
    auto relationship = param.relationship();
    if (!relationship) com::throwError(com::unsetObject);
    return relationship;
}

template <class Belongs>
com::Bstr listWhere(const engine::Engine& engine, Belongs belongs) {
    const auto params = engine.relationshipParams();
    std::wstring list;
    const LONG count = params.count();
    for (LONG i = 1; i <= count; ++i) {
        const auto param = params.item(i);
        if (belongs(param)) addPid(list, param.pid());
    }
    return com::Bstr(list);
}

}  // namespace

com::Bstr listRelated(const binding::Session& session, std::int32_t level, std::int32_t intervalCount) {
    const auto engine = session.engine();
    const wchar_t unit = intervalUnitOf(level);
    if (!engine || unit == 0) return {};
    return listWhere(engine, [&](const engine::Param& param) {
        const auto found = relationshipOf(param).text(&DIRelationship::get_IntervalUnit);
        const LONG count = relationshipOf(param).intervalCount();
        return found.view() == std::wstring_view(&unit, 1) && count == intervalCount;
    });
}

com::Bstr listAllRelated(const binding::Session& session) {
    const auto engine = session.engine();
    if (!engine) return {};
    return listWhere(engine, [](const engine::Param&) { return true; });
}

bool relationshipDetail(binding::Session& session, std::int32_t pid, const com::ClientBstr& xml) {
    const auto params = session.paramsWith(pid, relationshipUnknownPid);
    if (!params) return false;
    xml.set(com::Bstr(L""));
    const auto relationship = params.item(pid).relationship();
    if (!relationship) return true;
    const auto elements = relationship.text(&DIRelationship::get_DetailXML);
    std::wstring document(xmlDeclaration);
    document += elements.view();
    xml.set(com::Bstr(document));
    return true;
}

}  // namespace vtdn::params
