// The fixture of the tests of bulk writes on a strict engine.
#pragma once

#include <algorithm>
#include <initializer_list>
#include <string>
#include <vector>

#include "operations/on_strict_engine.h"
#include "support/array.h"

namespace vtdn::test {

/// What the tests write to, and from when on.
inline constexpr LONG bulkPid = 100501000;  // 1-005-0-10-00
inline constexpr DATE bulkStart = 39448.25;

/// An array of a client with these elements.
class Longs : public Array<LONG> {
  public:
    Longs() = default;  ///< not allocated
    Longs(std::initializer_list<LONG> values, LONG lower = 0)
        : Array(lower, static_cast<ULONG>(values.size())), values_(values) {
        const com::ArrayView<LONG> elements(get());
        std::copy(values.begin(), values.end(), elements.begin());
        before_ = data();
    }
    void expectUnchanged() const {
        if (!get()) return;
        EXPECT_EQ(data(), before_);
        EXPECT_EQ(values(), values_);
        EXPECT_EQ(get()->cLocks, 0U);
    }

  private:
    std::vector<LONG> values_;
    const void* before_ = nullptr;
};

class BulkWrite : public OnStrictEngine {
  protected:
    [[nodiscard]] bool write(std::wstring_view values, Array<LONG>& mcs, Array<LONG>& flags, LONG count) {
        const Bstr text(values);
        return client.yes(&_DIWrapper::Param_WriteValues, bulkPid, bulkStart, count, type.get(), LONG{2},
                          text.get(), mcs.inOut(), flags.inOut());
    }
    [[nodiscard]] Failure fail(std::wstring_view values, Array<LONG>& mcs, Array<LONG>& flags, LONG count) {
        const Bstr text(values);
        return client.failure(&_DIWrapper::Param_WriteValues, bulkPid, bulkStart, count, type.get(), LONG{2},
                              text.get(), mcs.inOut(), flags.inOut());
    }
    /// The engine is asked whether the parameter can be written.
    static std::vector<Call> checks() {
        return {{"Engine.Params"},
                {"Params.Exists(100501000)", true},
                {"Params.Item(100501000, -1)"},
                {param(bulkPid, "IOType"), 38}};
    }
    /// The two arrays are made for so many intervals.
    static std::vector<Call> arrays(LONG count) {
        const std::string define = "Define(39448.25, " + std::to_string(count) + ", '1h', 2, 0)";
        return {{"new DIDataArray"},
                {"Array." + define},
                {"new DIDataArray"},
                {"Array2." + define},
                {"Array2.Fill(I4 0, 0)"}};
    }
    static Call store() {
        return {param(bulkPid, "SpecialFunction(33, [0..1: Dispatch Array, Dispatch Array2])"), true};
    }
    /// What an interval gets: the mask goes first.
    static std::vector<Call> item(int index, int flag, const std::string& value, LONG mc) {
        const std::string place = std::to_string(index);
        return {{"Array2.SetItem(" + place + ", I4 " + std::to_string(flag) + ", 0)"},
                {"Array.SetItem(" + place + ", " + value + ", " + std::to_string(mc) + ")"}};
    }
    void expectWrite(LONG count, const std::vector<std::vector<Call>>& items) {
        engine.expect(checks());
        engine.expect(arrays(count));
        for (const auto& calls : items) engine.expect(calls);
        engine.expect({store()});
    }
    void expectProblem(const wchar_t* text) {
        EXPECT_EQ(client.problemTexts(), std::vector<std::wstring>{text});
    }
    /// One text with flag 1; what the engine sees as its value.
    void expectValue(std::wstring_view text, const std::string& value) {
        Longs mcs{7};
        Longs flags{1};
        expectWrite(1, {item(1, 1, value, 0)});
        EXPECT_TRUE(write(text, mcs, flags, 1)) << value;
    }

    const Bstr type{L"1h"};
};

}  // namespace vtdn::test
