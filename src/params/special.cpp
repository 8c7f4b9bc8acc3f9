#include "params/special.h"

#include <new>

#include "params/arguments.h"
#include "params/special_kinds.h"

namespace vtdn::params {
namespace {

/// The function that calculates operating time: its arguments are the start and the end of the span.
constexpr LONG calculateOperatingTime = 32;

/// What is caught here ends as a problem with its number and description.
void addTrapped(binding::Session& session, const com::Error& error, binding::Code code) {
    session.addProblem(binding::trappedError(error.number(), error.description(), code));
}

/// The one procedure. `ask` puts the question to the parameter; `convert` makes the result of the answer.
template <class Result, class Ask, class Convert>
Result askSpecial(binding::Session& session, std::int32_t pid, const SpecialKind& kind, Ask ask,
                  Convert convert) {
    const auto params = session.paramsWith(pid, kind.unknownPid);
    if (!params) return Result{};
    com::Variant answer;
    try {
        answer = ask(params.item(pid));
    } catch (const com::Error& error) {
        addTrapped(session, error, kind.callFailed);
        return Result{};
    } catch (const std::bad_alloc&) {
        addTrapped(session, com::Error(E_OUTOFMEMORY), kind.callFailed);
        return Result{};
    }
    Result result{};
    const HRESULT converted = convert(answer.get(), result);
    if (SUCCEEDED(converted)) return result;
    if (kind.conversionFailed) addTrapped(session, com::Error(converted), *kind.conversionFailed);
    return Result{};
}

auto value(LONG id) {
    return [id](const engine::Param& param) { return param.specialValue(id); };
}

auto function(LONG id, SAFEARRAY* moreArgs) {
    return [id, moreArgs](const engine::Param& param) {
        auto arguments = argumentArray(com::Variant::of(moreArgs));
        return param.specialFunction(id, arguments);
    };
}

/// Anything that is no number is 0.
HRESULT toLongOrZero(const VARIANT& value, LONG& out) noexcept {
    return com::isNumeric(value) ? com::toInt32(value, out) : S_OK;
}

HRESULT toRoundedSingle(const VARIANT& value, LONG& out) noexcept {
    float single = 0;
    const HRESULT result = com::toSingle(value, single);
    return FAILED(result) ? result : com::toInt32(com::Variant::of(single).get(), out);
}

}  // namespace

LONG callOperatingTime(binding::Session& session, std::int32_t pid, DATE start, DATE end) {
    const auto ask = [start, end](const engine::Param& param) {
        auto arguments = argumentArray(com::Variant::ofDate(start), com::Variant::ofDate(end));
        return param.specialFunction(calculateOperatingTime, arguments);
    };
    return askSpecial<LONG>(session, pid, operatingTime, ask, toLongOrZero);
}

LONG specialValueAsLong(binding::Session& session, std::int32_t pid, LONG id) {
    return askSpecial<LONG>(session, pid, specialValueInt32, value(id), toLongOrZero);
}

bool specialValueAsBool(binding::Session& session, std::int32_t pid, LONG id) {
    return askSpecial<bool>(session, pid, specialValueBoolean, value(id), com::toBool);
}

com::Bstr specialValueAsText(binding::Session& session, std::int32_t pid, LONG id) {
    return askSpecial<com::Bstr>(session, pid, specialValueString, value(id), com::toText);
}

bool specialFunctionAsBool(binding::Session& session, std::int32_t pid, LONG id, SAFEARRAY* moreArgs) {
    return askSpecial<bool>(session, pid, specialFunctionBoolean, function(id, moreArgs), com::toBool);
}

LONG specialFunctionAsLong(binding::Session& session, std::int32_t pid, LONG id, SAFEARRAY* moreArgs) {
    return askSpecial<LONG>(session, pid, specialFunctionInt32, function(id, moreArgs), com::toInt32);
}

LONG specialFunctionAsRoundedSingle(binding::Session& session, std::int32_t pid, LONG id,
                                    SAFEARRAY* moreArgs) {
    return askSpecial<LONG>(session, pid, specialFunctionReal32, function(id, moreArgs), toRoundedSingle);
}

com::Bstr specialFunctionAsText(binding::Session& session, std::int32_t pid, LONG id, SAFEARRAY* moreArgs) {
    return askSpecial<com::Bstr>(session, pid, specialFunctionString, function(id, moreArgs), com::toText);
}

}  // namespace vtdn::params
