// The eight special-value and special-function operations as a table, and the fixture of their tests.
#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

#include "com/safe_array.h"
#include "operations/on_strict_engine.h"
#include "support/array.h"

namespace vtdn::test {

/// What the operations of the table are called with.
inline constexpr LONG specialPid = 100501000;  // 1-005-0-10-00
inline constexpr LONG specialId = 77;

/// An array of arguments as clients give it: a number and a text, from index 2.
class MoreArgs {
  public:
    MoreArgs() {
        const com::ArrayView<VARIANT> elements(array_.get());
        com::Variant::of(LONG{5}).detachTo(&elements[0]);
        com::Variant::of(L"x").detachTo(&elements[1]);
    }
    [[nodiscard]] SAFEARRAY** inOut() { return array_.inOut(); }
    /// As the script writes it.
    static constexpr const char* text = "[2..3: I4 5, BSTR 'x']";
    void expectUnchanged() const {
        EXPECT_EQ(array_.lower(), 2);
        EXPECT_EQ(array_.upper(), 3);
        EXPECT_EQ(array_.get()->cLocks, 0U);
        const com::ArrayView<VARIANT> elements(array_.get());
        EXPECT_EQ(elements[0].lVal, 5);
        EXPECT_EQ(com::view(elements[1].bstrVal), L"x");
    }

  private:
    Array<VARIANT> array_{2, 2};
};

/// One of the eight operations.
struct Special {
    const char* name;
    /// The call with good arguments, which must succeed; its result in words.
    std::function<std::wstring(const Client&)> call;
    /// The call, which must fail.
    std::function<Failure(const Client&)> fail;
    std::string engineCall;  ///< of the parameter
    const wchar_t* nothing;  ///< the default result
    const wchar_t* unknownPid;
    const wchar_t* callFailed;
    const wchar_t* conversionFailed;  ///< null: no line
};
void PrintTo(const Special& special, std::ostream* out);

extern const Special operatingTime;
extern const Special valueInt32;
extern const Special valueBoolean;
extern const Special valueString;
extern const Special functionBoolean;
extern const Special functionInt32;
extern const Special functionReal32;
extern const Special functionString;

class SpecialsOnStrictEngine : public OnStrictEngine {
  protected:
    /// The call with this answer of the engine.
    std::wstring callWith(const Special& special, const Answer& answer) {
        expectParam(specialPid);
        engine.expect({{param(specialPid, special.engineCall), answer}});
        return special.call(client);
    }
    void expectProblem(const std::wstring& text) {
        EXPECT_EQ(client.problemTexts(), std::vector<std::wstring>{text});
    }
    /// The answer converts to this result.
    void expectGood(const Special& special, const com::Variant& answer, const std::wstring& result) {
        EXPECT_EQ(callWith(special, answer), result) << special.name << ", type " << answer.type();
        EXPECT_EQ(client.problems(), L"") << special.name << ", type " << answer.type();
    }
    /// The answer does not convert: the default result, with a line where the operation has one.
    void expectBad(const Special& special, const com::Variant& answer, const std::wstring& error) {
        SCOPED_TRACE(std::string(special.name) + ", type " + std::to_string(answer.type()));
        EXPECT_EQ(callWith(special, answer), special.nothing);
        if (special.conversionFailed) {
            expectProblem(error + L" " + special.conversionFailed);
        } else {
            EXPECT_EQ(client.problems(), L"");
        }
    }
};

/// An array of two elements in a variant.
com::Variant arrayVariant();

}  // namespace vtdn::test
