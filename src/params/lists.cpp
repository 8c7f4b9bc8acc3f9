#include "params/lists.h"

#include <string>

#include "binding/variants.h"
#include "params/arguments.h"
#include "params/pid_list.h"

namespace vtdn::params {
namespace {

constexpr std::wstring_view part75Program = L"40CFR75";

bool isText(const com::Variant& value, std::wstring_view text) {
    if (value.isNull()) return false;
    com::Bstr found;
    com::check(com::toText(value.get(), found));
    return found.view() == text;
}

bool isOne(const com::Variant& value) {
    LONG number = 0;
    if (!value.isNull()) com::check(com::toInt32(value.get(), number));
    return number == 1;
}

bool belongs(const engine::Param& param, const ListKind& kind) {
    if (kind.part75 && !isText(param.specialValue(special_value::program), part75Program)) return false;
    bool all = true;
    for (const Flag& flag : kind.flags)
        all = binding::isTrue(param.specialValue(flag.id)) == flag.wanted && all;
    return all && (!kind.marker || isOne(param.specialValue(*kind.marker)));
}

}  // namespace

com::Bstr listParams(const binding::Session& session, const ListKind& kind) {
    const auto engine = session.engine();
    if (!engine) return {};
    const auto params = engine.paramsOfTypes(argumentArray(com::Variant::of(LONG{kind.parameterType})));
    std::wstring list;
    const LONG count = params.count();
    for (LONG i = 1; i <= count; ++i) {
        const auto param = params.item(i);
        if (belongs(param, kind)) addPid(list, param.pid());
    }
    return com::Bstr(list);
}

}  // namespace vtdn::params
