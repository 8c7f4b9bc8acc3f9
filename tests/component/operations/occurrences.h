// The fixture of the tests of occurrences: one client over a strict engine, with an occurrence in its hands.
#pragma once

#include "operations/on_strict_engine.h"
#include "operations/records.h"

namespace vtdn::test {

using com::Variant;

class OnOccurrences : public OnStrictEngine {
  protected:
    static constexpr DATE first = 39448.25;
    static constexpr DATE last = 39449;
    static constexpr const char* listCall =
        "LongTerm.GetOccurrences('S1', 39448.25, 39449, True, True, 0, False, Dispatch Nothing)";

    /// A list is asked for and holds `count` occurrences.
    void expectList(int count) {
        engine.expect(
            {{"Engine.SiteID", L"S1"}, {"Engine.LongTermData"}, {listCall}, {"Occurrences.Count", count}});
        for (int i = 1; i <= count; ++i) engine.expect({{"Occurrences.Item(" + std::to_string(i) + ")"}});
    }
    /// All occurrences, as the client of expectList() asks for them.
    [[nodiscard]] com::SafeArray list() const {
        SAFEARRAY* none = nullptr;
        // Not looked at by the call.
        SAFEARRAY* array = reinterpret_cast<SAFEARRAY*>(sizeof(SAFEARRAY));
        const HRESULT result = client->GetOccurrences(first, last, VARIANT_TRUE, Variant::ofBool(true).get(),
                                                      0, VARIANT_FALSE, &none, &array);
        EXPECT_EQ(result, S_OK) << takeFailure(result);
        EXPECT_EQ(none, nullptr);
        return FAILED(result) ? com::SafeArray() : com::SafeArray(array);
    }
    /// The client is set up and holds one occurrence, called Occurrence(1).
    [[nodiscard]] Occurrence listedOne() {
        setUpClient();
        expectList(1);
        const auto array = list();
        return elementsOf<_OccurrenceDataWrapper>(array.get()).at(0);
    }
};

}  // namespace vtdn::test
