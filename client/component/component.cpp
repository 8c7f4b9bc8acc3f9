#include "client/component/component.h"

#include <algorithm>

#include "client/cli/failure.h"
#include "com/error.h"
#include "com/strings.h"

namespace vtdn::client {

Component::Component() {
    const HRESULT result = CoCreateInstance(CLSID_DIWrapper, nullptr, CLSCTX_INPROC_SERVER, IID__DIWrapper,
                                            wrapper_.receiveVoid());
    if (FAILED(result))
        throw Failure(ExitCode::environment,
                      "The component VTWrapDN.DIWrapper cannot be created (" +
                          com::toUtf8(com::lastError(result).description()) + ").",
                      "`vtdn doctor` says what is missing and how to mend it.");
}

Component::~Component() {
    // The last call of this binding: whatever it fails with, there is nothing left to do about it.
    if (wrapper_) wrapper_->Teardown();
}

bool Component::setUp(std::int32_t dahsId) {
    VARIANT_BOOL done = VARIANT_FALSE;
    com::check(wrapper_->Setup3(dahsId, com::Bstr(L"vtdn").get(), &done));
    return done != VARIANT_FALSE;
}

std::vector<std::string> Component::takeProblems() {
    com::Bstr list;
    com::check(wrapper_->GetAndClearProblemsList(list.receive()));
    const std::string text = com::toUtf8(list.view());
    std::vector<std::string> entries;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find('\t', start), text.size());
        entries.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return entries;
}

std::string Component::text(TextGetter getter, std::int32_t pid) {
    com::Bstr text;
    com::check((wrapper_.get()->*getter)(pid, text.receive()));
    return com::toUtf8(text.view());
}

bool Component::exists(std::int32_t pid) {
    VARIANT_BOOL result = VARIANT_FALSE;
    com::check(wrapper_->Param_DoesExist(pid, &result));
    return result != VARIANT_FALSE;
}

bool Component::isStored(std::int32_t pid) {
    VARIANT_BOOL result = VARIANT_FALSE;
    com::check(wrapper_->Param_IsDBDataIO(pid, &result));
    return result != VARIANT_FALSE;
}

std::string Component::dahsText(DahsText getter) {
    com::Bstr text;
    com::check((wrapper_.get()->*getter)(text.receive()));
    return com::toUtf8(text.view());
}

store::SiteConnections Component::siteConnections() {
    return {alarmConnection(), configConnection(), dahsText(&_DIWrapper::SelectedDahs_DataConnection),
            dahsText(&_DIWrapper::SelectedDahs_DataShortTermConnection),
            dahsText(&_DIWrapper::SelectedDahs_RealtimeConnection)};
}

}  // namespace vtdn::client
