// The fixture of the operation tests: one client over a strict engine.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "com/strings.h"
#include "strict_engine/strict.h"
#include "support/client.h"

namespace vtdn::test {

using com::Bstr;
using fake::Answer;
using fake::Call;

/// A failure that an engine explains, and the same as the client must see it.
inline constexpr HRESULT engineResult = static_cast<HRESULT>(0x80041234);
inline Answer engineFails() {
    return Answer::failure(engineResult, L"Engine", L"The database is away.");
}
inline Failure engineFailure() {
    return {engineResult, L"Engine", L"The database is away."};
}

/// 91, the automation error for an unset object reference.
inline constexpr HRESULT unsetObject = numbered(91);

class OnStrictEngine : public testing::Test {
  protected:
    /// The client is set up by id 1, as the engine's script says.
    void setUpClient() {
        engine.expect({{"new DIEngine"},
                       {"Engine.SetClientAppName('VantorDNWrapper')"},
                       {"Engine.SetupByDahsID(1)", true}});
        EXPECT_TRUE(client.setup());
    }
    /// The engine is asked for a parameter that it knows.
    void expectParam(LONG pid) {
        expectExists(pid, true);
        engine.expect({{"Params.Item(" + std::to_string(pid) + ", -1)"}});
    }
    /// The engine is asked whether it knows a parameter.
    void expectExists(LONG pid, bool exists) {
        engine.expect({{"Engine.Params"}, {"Params.Exists(" + std::to_string(pid) + ")", exists}});
    }
    /// A member of a parameter, as the script writes it.
    static std::string param(LONG pid, const std::string& member) {
        return "Param(" + std::to_string(pid) + ")." + member;
    }

    fake::StrictEngine engine;
    Client client;  // goes first: the engine then looks for what is left
};

}  // namespace vtdn::test
