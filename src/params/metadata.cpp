#include "params/metadata.h"

#include "binding/io_type.h"
#include "common/lists.h"
#include "params/elements.h"
#include "params/used_pids.h"

namespace vtdn::params {
namespace {

constexpr binding::Code isDatabaseIoUnknownPid = binding::code(30);

/// "Out of stack space", number 28: what a walk without end comes to.
constexpr HRESULT outOfStack = static_cast<HRESULT>(0x800A001C);

/// A piece of the engine's list of used PIDs, by the user's way of writing numbers.
common::Reading readLong(std::wstring_view piece, std::int32_t& number) {
    const auto text = com::Variant::of(piece);
    if (!com::isNumeric(text.get())) return common::Reading::notNumeric;
    LONG value = 0;
    if (!converted(com::toInt32(text.get(), value))) return common::Reading::outOfRange;
    number = value;
    return common::Reading::number;
}

/// The walk's questions. The parameter is fetched anew for each of them.
struct Inputs {
    const engine::Params& params;

    std::vector<std::int32_t> usedPids(std::int32_t pid) const {
        const auto list = params.item(pid).text(&DIParam::get_UsedPIDs);
        return common::splitToLongs(list.view(), L",", readLong).value_or(std::vector<std::int32_t>());
    }
    std::int32_t ioType(std::int32_t pid) const { return params.item(pid).ioType(); }
};

struct Lists {
    com::Bstr& editables;
    com::Bstr& constants;

    void editable(std::int32_t pid) const { editables = com::Bstr(withPid(editables.view(), pid)); }
    void constant(std::int32_t pid) const { constants = com::Bstr(withPid(constants.view(), pid)); }
    [[noreturn]] void tooDeep() const { com::throwError(outOfStack); }
};

com::Bstr sortedUnique(const com::Bstr& list) {
    return com::Bstr(common::sortUniqueDelimited(list.view(), L";"));
}

}  // namespace

com::Bstr text(binding::Session& session, const TextProperty& which, std::int32_t pid) {
    const auto param = session.param(pid, which.unknownPid);
    return param ? param.text(which.property) : com::Bstr();
}

bool doesExist(const binding::Session& session, std::int32_t pid) {
    const auto engine = session.engine();
    return engine && engine.params().exists(pid);
}

bool isDatabaseIo(binding::Session& session, std::int32_t pid) {
    const auto param = session.param(pid, isDatabaseIoUnknownPid);
    return param && param.ioType() == binding::databaseIo;
}

bool findPidsUsedBy(binding::Session& session, std::int32_t pid, com::Bstr& editable, com::Bstr& constant) {
    if (!session.isSetUp()) return false;
    if (!isEditableTimeType(pid)) {
        session.addProblem(binding::wrongTimeType(pid, usedPidsWrongTimeType));
        return false;
    }
    const auto params = session.paramsWith(pid, usedPidsUnknownPid);
    if (!params) return false;
    Inputs inputs{params};
    Lists found{editable, constant};
    walkInputs(inputs, found, pid);
    editable = sortedUnique(editable);
    constant = sortedUnique(constant);
    return true;
}

}  // namespace vtdn::params
