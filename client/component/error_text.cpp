#include "client/component/error_text.h"

#include "com/strings.h"

namespace vtdn::client {

std::string describe(const com::Error& error) {
    std::string text = "Error " + std::to_string(error.number()) + ", " + com::toUtf8(error.description());
    com::Bstr source;
    if (error.info() && SUCCEEDED(error.info()->GetSource(source.receive())) && !source.view().empty())
        text += " (from " + com::toUtf8(source.view()) + ")";
    return text;
}

std::string adviceFor(const com::Error& error) {
    constexpr LONG notCreatable = 429;
    constexpr LONG wrongInterface = 430;
    constexpr LONG denied = 70;
    switch (error.number()) {
        case notCreatable:
        case wrongInterface:
            return "`vtdn doctor` says which class cannot be created and how to mend it.";
        case denied:
            return "Check that you may write to the site's databases; `vtdn doctor` shows where they are.";
        default:
            return "Check the time, the interval and the value against `vtdn params show PID`; `vtdn doctor` "
                   "checks the rest.";
    }
}

}  // namespace vtdn::client
