// Each engine call and each allocation of each operation fails in turn: what the client sees, and what is
// left.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "com/error.h"
#include "failures/operations.h"
#include "support/allocation_spy.h"
#include "support/client.h"

namespace vtdn::test {
namespace {

using com::Bstr;

constexpr HRESULT engineResult = static_cast<HRESULT>(0x80041234);
const Failure explained{engineResult, L"Engine", L"The database is away."};

/// Counts the engine's calls and fails one of them.
class FailingCall : public fake::Tap {
  public:
    HRESULT onCall(const char* call) override {
        calls_.emplace_back(call);
        if (calls_.size() != failing_) return S_OK;
        if (withInfo_) {
            SetErrorInfo(0, com::makeErrorInfo(explained.source, explained.description, GUID_NULL).get());
        }
        return result_;
    }
    /// The call with the number `failing` fails, from 1; none when it is 0.
    void arm(std::size_t failing, HRESULT result, bool withInfo) {
        calls_.clear();
        failing_ = failing;
        result_ = result;
        withInfo_ = withInfo;
    }
    [[nodiscard]] const std::vector<std::string>& calls() const { return calls_; }

  private:
    std::vector<std::string> calls_;
    std::size_t failing_ = 0;
    HRESULT result_ = S_OK;
    bool withInfo_ = false;
};

/// Whether the call with an index is the first reading of a value since its item was fetched.
bool isFirstReading(const std::vector<std::string>& calls, std::size_t index) {
    return calls[index] == "DIDataArrayItem.Value" && calls[index - 1] != "DIDataArrayItem.Value";
}

/// The one spy of this program. Never withdrawn: the platform refuses that while it keeps a block of its own.
AllocationSpy& spy() {
    static auto* const one = new AllocationSpy;
    return *one;
}

class Failures : public testing::TestWithParam<Operation> {
  protected:
    Failures() {
        spy();  // from here on every block is seen, those of the site too
        site.tap = &tap;
    }

    /// A wrapper, and a site, in the state in which the operation begins.
    [[nodiscard]] Client ready() {
        furnish(site);
        Client client;
        if (!GetParam().setsUp) {
            EXPECT_TRUE(client.setup());
        }
        objects_ = site.objects;
        blocks_ = spy().live();
        return client;
    }
    static Outcome call(const Client& client) {
        return GetParam().call(*client.get(), {[] {}, [] {}});
    }
    /// The calls and the outcome of the operation when nothing fails.
    Outcome good(std::vector<std::string>& calls) {
        const Client client = ready();
        tap.arm(0, S_OK, false);
        Outcome outcome = call(client);
        EXPECT_EQ(outcome.result, S_OK);
        calls = tap.calls();
        return outcome;
    }
    /// The engine's failure is suppressed: the operation goes on without that value.
    static bool isSuppressed(const std::vector<std::string>& calls, std::size_t index) {
        if (calls[index] != "DIDataArrayItem.Value") return false;
        return GetParam().failing == Failing::textReads ||
               (GetParam().failing == Failing::numberReads && !isFirstReading(calls, index));
    }

    /// What the operation gives when it does nothing: as before set-up.
    static std::wstring nothing() {
        const Client fresh;
        return call(fresh).text;
    }
    /// The engine's failure is a problem with its number and description.
    static bool isProblem(const std::vector<std::string>& calls, std::size_t index) {
        return GetParam().failing == Failing::allToProblem ||
               (GetParam().failing == Failing::toProblem && calls[index] != "DIEngine.Params" &&
                calls[index] != "DIParams.Exists");
    }
    /// Whether some failure of the operation is a problem.
    static bool hasProblems() {
        return GetParam().failing == Failing::toProblem || GetParam().failing == Failing::allToProblem;
    }
    static void expectProblem(const std::vector<std::wstring>& problems, LONG number,
                              const std::wstring& description) {
        ASSERT_EQ(problems.size(), 1U);
        const std::wstring text = std::to_wstring(number);
        if (GetParam().failing == Failing::allToProblem) {
            EXPECT_EQ(problems[0],
                      L"Error in creating/retrieving occurrence data points.  " + text + L" " + description);
        } else {
            EXPECT_TRUE(problems[0].starts_with(text + L", " + description + L" (WDN-0"))
                << com::toUtf8(problems[0]);
        }
    }

    /// An operation that does not change the binding leaves as many objects and blocks as there were.
    void expectBalance() {
        furnish(site);  // what the engine has stored is the engine's
        if (GetParam().changesBinding()) return;
        EXPECT_EQ(spy().live(), blocks_);
        EXPECT_EQ(site.objects, objects_);
    }
    [[nodiscard]] long objectsBefore() const { return objects_; }

    fake::Site site;
    FailingCall tap;
    fake::LenientServer server{site};

  private:
    long objects_ = 0;
    long blocks_ = 0;
};

INSTANTIATE_TEST_SUITE_P(AllOperations, Failures, testing::ValuesIn(operations()),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST_P(Failures, EveryFailingEngineCallEndsAsTheOperationSaysAndLeavesNothingBehind) {
    std::vector<std::string> calls;
    const Outcome whole = good(calls);
    for (const bool withInfo : {true, false}) {
        for (std::size_t i = 0; i < calls.size(); ++i) {
            SCOPED_TRACE(calls[i] + ", call " + std::to_string(i + 1) +
                         (withInfo ? "" : ", without error info"));
            {
                const Client client = ready();
                tap.arm(i + 1, engineResult, withInfo);
                const Outcome outcome = call(client);
                const Failure failure = takeFailure(outcome.result);
                tap.arm(0, S_OK, false);
                const auto problems = client.problemTexts();
                EXPECT_EQ(problems.size(), isProblem(calls, i) ? 1U : 0U);
                EXPECT_EQ(outcome.text.find(L"locked"), std::wstring::npos);
                if (isProblem(calls, i)) {
                    EXPECT_EQ(outcome.result, S_OK);
                    EXPECT_EQ(outcome.text, nothing());
                    expectProblem(problems, engineResult,
                                  withInfo ? L"The database is away." : L"Automation error");
                } else if (GetParam().failing == Failing::trapped) {
                    EXPECT_EQ(outcome.result, S_OK);
                    // A failing second reading may count as a value without text.
                    if (calls[i] != "DIDataArrayItem.Value" || isFirstReading(calls, i)) {
                        EXPECT_EQ(outcome.text, L"False''0");
                    }
                } else if (isSuppressed(calls, i)) {
                    EXPECT_EQ(outcome.result, S_OK);
                    EXPECT_NE(outcome.text, whole.text);
                    EXPECT_TRUE(outcome.text.starts_with(L"True"));
                } else if (withInfo) {
                    EXPECT_EQ(failure, explained);
                } else {
                    EXPECT_EQ(failure.result, engineResult);
                    EXPECT_TRUE(failure.description.empty() || failure.description == L"Automation error")
                        << failure;
                }
                if (GetParam().setsUp) {
                    const bool made = calls[i] != "new DIEngine";
                    EXPECT_EQ(site.objects, made ? objectsBefore() + 1 : objectsBefore());
                    EXPECT_EQ(client.setup(), !made);
                } else {
                    expectBalance();
                }
            }
            EXPECT_EQ(site.objects, 0);
        }
    }
}

TEST_P(Failures, ASuccessfulCallLeavesNothingBehind) {
    std::vector<std::string> calls;
    static_cast<void>(good(calls));  // whatever the platform makes once is made now
    {
        const Client client = ready();
        EXPECT_EQ(call(client).result, S_OK);
        expectBalance();
    }
    EXPECT_EQ(site.objects, 0);
}

TEST_P(Failures, OutOfMemoryAtAnyAllocationIsACleanFailure) {
    std::vector<std::string> calls;
    const Outcome whole = good(calls);
    for (const auto how : {AllocationSpy::Refuse::one, AllocationSpy::Refuse::allFrom}) {
        bool refused = true;
        for (std::size_t index = 0; refused; ++index) {
            SCOPED_TRACE("allocation " + std::to_string(index));
            {
                const Client client = ready();
                tap.arm(0, S_OK, false);
                const Outcome outcome = GetParam().call(
                    *client.get(), {[&] { spy().refuse(index, how); }, [&] { refused = spy().stop(); }});
                static_cast<void>(takeFailure(outcome.result));
                EXPECT_EQ(outcome.text.find(L"locked"), std::wstring::npos);
                const auto problems = client.problemTexts();
                if (!hasProblems()) {
                    EXPECT_TRUE(problems.empty());
                }
                if (FAILED(outcome.result)) {
                    EXPECT_EQ(clientNumber(outcome.result), 7);
                    // The failure was trapped, and then there was no memory for an empty text either.
                    if (!problems.empty()) expectProblem(problems, 7, L"Out of memory");
                } else if (!problems.empty()) {
                    expectProblem(problems, 7, L"Out of memory");
                    EXPECT_EQ(outcome.text, nothing());
                } else if (hasProblems()) {
                    // A conversion that fails is silent in some of them.
                    EXPECT_TRUE(outcome.text == whole.text || outcome.text == nothing());
                } else if (GetParam().failing == Failing::trapped) {
                    EXPECT_TRUE(outcome.text == L"False''0" || outcome.text == whole.text);
                } else if (GetParam().failing == Failing::untrapped) {
                    // The platform did without the block.
                    EXPECT_EQ(outcome.text, whole.text);
                } else {
                    // The engine was short of it in a reading whose failure only makes the value missing.
                    EXPECT_TRUE(outcome.text.starts_with(L"True"));
                }
                expectBalance();
            }
            EXPECT_EQ(site.objects, 0);
        }
    }
}

/// The operations that leave the binding as it is, and so can be called again.
class RepeatedFailures : public Failures {};

std::vector<Operation> repeatable() {
    std::vector<Operation> some;
    for (const Operation& operation : operations()) {
        if (!operation.changesBinding()) some.push_back(operation);
    }
    return some;
}

INSTANTIATE_TEST_SUITE_P(AllRepeatable, RepeatedFailures, testing::ValuesIn(repeatable()),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST_P(RepeatedFailures, TheOperationWorksAgainAfterEveryFailure) {
    std::vector<std::string> calls;
    const Outcome whole = good(calls);
    const Client client = ready();
    for (std::size_t i = 0; i < calls.size(); ++i) {
        tap.arm(i + 1, E_FAIL, true);
        static_cast<void>(call(client));
        tap.arm(0, S_OK, false);
        const Outcome again = call(client);
        EXPECT_EQ(again.result, S_OK);
        EXPECT_EQ(again.text, whole.text);
        EXPECT_EQ(tap.calls(), calls);
    }
}

struct Number {
    HRESULT result;
    const wchar_t* description;
};

/// A client that is set up over an engine whose next call can be made to fail.
class FailureNumbers : public testing::Test {
  protected:
    FailureNumbers() {
        furnish(site);
        site.tap = &tap;
        EXPECT_TRUE(client.setup());
    }

    fake::Site site;
    FailingCall tap;
    const fake::LenientServer server{site};
    const Client client;
};

TEST_F(FailureNumbers, AFailureWithoutErrorInfoKeepsItsResultAndHasItsNumbersOwnTextOrNone) {
    const Number numbers[] = {
        {static_cast<HRESULT>(0x800A005B), L"Object variable or With block variable not set"},
        {static_cast<HRESULT>(0x800A000D), L"Type mismatch"},
        {DISP_E_TYPEMISMATCH, L"Type mismatch"},
        {DISP_E_OVERFLOW, L"Overflow"},
        {DISP_E_DIVBYZERO, L"Division by zero"},
        {DISP_E_BADINDEX, L"Subscript out of range"},
        {DISP_E_ARRAYISLOCKED, L"This array is fixed or temporarily locked"},
        {E_INVALIDARG, L"Invalid procedure call or argument"},
        {E_OUTOFMEMORY, L"Out of memory"},
        {E_NOTIMPL, L"Object doesn't support this action"},
        {E_NOINTERFACE, L"Class does not support Automation or does not support expected interface"},
        {REGDB_E_CLASSNOTREG, L"ActiveX component can't create object"},
        {E_ACCESSDENIED, L"Permission denied"},
        {E_FAIL, L"Automation error"},
        {RPC_E_DISCONNECTED, L"Automation error"},
    };
    for (const auto& [result, description] : numbers) {
        tap.arm(1, result, false);
        const Failure failure = client.failure(&_DIWrapper::Param_Name, 530001);
        EXPECT_EQ(failure.result, result);
        EXPECT_TRUE(failure.description.empty() || failure.description == description) << failure;
        tap.arm(1, result, true);
        EXPECT_EQ(client.failure(&_DIWrapper::Param_Name, 530001),
                  (Failure{result, explained.source, explained.description}));
    }
}

TEST_F(FailureNumbers, ALateBoundClientSeesTheEnginesFailureToo) {
    VARIANT pid{};
    pid.vt = VT_I4;
    pid.lVal = 530001;
    DISPPARAMS params{&pid, nullptr, 1, 0};
    constexpr DISPID paramName = 56;
    for (const bool withInfo : {true, false}) {
        tap.arm(1, engineResult, withInfo);
        com::Variant result;
        EXCEPINFO info{};
        ASSERT_EQ(client->Invoke(paramName, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &params,
                                 result.receive(), &info, nullptr),
                  DISP_E_EXCEPTION);
        const Bstr source = Bstr::adopt(info.bstrSource);
        const Bstr description = Bstr::adopt(info.bstrDescription);
        const Bstr help = Bstr::adopt(info.bstrHelpFile);
        EXPECT_EQ(info.scode, engineResult);
        EXPECT_EQ(result.type(), VT_EMPTY);
        if (withInfo) {
            EXPECT_EQ(source.view(), explained.source);
            EXPECT_EQ(description.view(), explained.description);
        } else {
            EXPECT_TRUE(description.view().empty() || description.view() == L"Automation error");
        }
    }
}

TEST(Creation, OutOfMemoryWhileAWrapperIsMadeIsACleanFailure) {
    // Whatever is made once is made now.
    { const Client first; }
    bool refused = true;
    for (std::size_t index = 0; refused; ++index) {
        const long blocks = spy().live();
        com::Ptr<_DIWrapper> wrapper;
        spy().refuse(index, AllocationSpy::Refuse::one);
        try {
            wrapper = component().create<_DIWrapper>(CLSID_DIWrapper);
        } catch (const com::Error& error) {
            EXPECT_EQ(error.result(), E_OUTOFMEMORY);
        }
        refused = spy().stop();
        wrapper.reset();
        EXPECT_EQ(spy().live(), blocks);
    }
}

}  // namespace
}  // namespace vtdn::test
