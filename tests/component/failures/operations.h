// Every operation of the wrapper as a row: a call with good arguments, and its outcome in one text.
#pragma once

#include <VTWrapperDN.h>

#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

#include "com/platform.h"
#include "fake_engine/lenient.h"

namespace vtdn::test {

/// How a call ended. The arguments are freed by then; a reading of every output element is in `text`.
struct Outcome {
    HRESULT result = S_OK;
    std::wstring text;
};

/// What happens right before and right after the call itself; its arguments are made before and freed after.
struct Around {
    std::function<void()> before;
    std::function<void()> after;
};

/// What an engine failure in the middle of an operation does to it.
enum class Failing {
    untrapped,     ///< reaches the client
    trapped,       ///< ends the operation with False and empty outputs
    numberReads,   ///< the second reading of a value only makes that value missing
    textReads,     ///< any reading of a value only makes that value missing
    toProblem,     ///< from fetching the parameter on: a problem, and the default result
    allToProblem,  ///< from the first call on: a problem of its own form, and the default result
};

struct Operation {
    const char* name;
    std::function<Outcome(_DIWrapper&, const Around&)> call;
    Failing failing = Failing::untrapped;
    bool setsUp = false;  ///< begins with a wrapper that is not set up
    bool tearsDown = false;

    [[nodiscard]] bool changesBinding() const { return setsUp || tearsDown; }
};
void PrintTo(const Operation& operation, std::ostream* out);

const std::vector<Operation>& operations();

/// The parameters that the operations use.
void furnish(fake::Site& site);

}  // namespace vtdn::test
