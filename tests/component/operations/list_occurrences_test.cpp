// Occurrences listed: what the engine is asked for, and what a client gets.
#include <utility>

#include "operations/occurrences.h"
#include "support/array.h"
#include "support/late.h"

namespace vtdn::test {
namespace {

/// An array of these numbers from an index on.
class Numbers : public Array<LONG> {
  public:
    Numbers(LONG lower, const std::vector<LONG>& values) : Array(lower, static_cast<ULONG>(values.size())) {
        const com::ArrayView<LONG> elements(get());
        std::size_t i = 0;
        for (const LONG value : values) elements[i++] = value;
    }
};

class ListedOccurrences : public OnOccurrences {
  protected:
    /// What a client asks for besides the span; everything is the default.
    struct Request {
        VARIANT_BOOL downtimes = VARIANT_TRUE;
        Variant exceedences = Variant::ofBool(true);
        LONG filter = 0;
        VARIANT_BOOL orderByTag = VARIANT_FALSE;
    };
    [[nodiscard]] HRESULT ask(const Request& request, SAFEARRAY** unitsOrTags, SAFEARRAY** result) const {
        return client->GetOccurrences(first, last, request.downtimes, request.exceedences.get(),
                                      request.filter, request.orderByTag, unitsOrTags, result);
    }
    /// A request that reaches the engine as `handed`, and finds nothing.
    void expectAsked(const Request& request, SAFEARRAY** unitsOrTags, const std::string& handed) {
        engine.expect(
            {{"Engine.SiteID", L"S1"},
             {"Engine.LongTermData"},
             {"LongTerm.GetOccurrences('S1', 39448.25, 39449, " + handed + ")", Answer::noObject()}});
        SAFEARRAY* result = nullptr;
        const HRESULT asked = ask(request, unitsOrTags, &result);
        EXPECT_EQ(asked, S_OK) << takeFailure(asked);
        EXPECT_EQ(result, nullptr);
        engine.verify();
    }
    void expectAsked(const Request& request, const std::string& handed) {
        SAFEARRAY* none = nullptr;
        expectAsked(request, &none, handed);
        EXPECT_EQ(none, nullptr);
    }
    /// A request that is refused before the engine is asked.
    [[nodiscard]] Failure refused(const Request& request, SAFEARRAY** unitsOrTags) const {
        SAFEARRAY* result = nullptr;
        const HRESULT asked = ask(request, unitsOrTags, &result);
        EXPECT_TRUE(FAILED(asked));
        EXPECT_EQ(result, nullptr);
        return takeFailure(asked);
    }
    [[nodiscard]] Failure failList() const {
        SAFEARRAY* none = nullptr;
        return refused({}, &none);
    }
    static std::vector<Call> threeListed() {
        return {{"Engine.SiteID", L"S1"}, {"Engine.LongTermData"}, {listCall},
                {"Occurrences.Count", 3}, {"Occurrences.Item(1)"}, {"Occurrences.Item(2)"},
                {"Occurrences.Item(3)"}};
    }
};

TEST_F(ListedOccurrences, BeforeSetUpThereIsNoArrayWhateverIsAskedFor) {
    Request nonsense;
    nonsense.exceedences = Variant::of(L"maybe");
    SAFEARRAY* none = nullptr;
    SAFEARRAY* result = nullptr;
    EXPECT_EQ(list().get(), nullptr);
    EXPECT_EQ(ask(nonsense, &none, &result), S_OK);
    EXPECT_EQ(result, nullptr);
    setUpClient();
    engine.expect({{"Engine.Close"}});
    client.teardown();
    EXPECT_EQ(list().get(), nullptr);
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(ListedOccurrences, NoListAndAnEmptyOneGiveNoArray) {
    setUpClient();
    expectAsked({}, "True, True, 0, False, Dispatch Nothing");
    for (const int none : {0, -1}) {
        engine.expect({{"Engine.SiteID", L"S1"}, {"Engine.LongTermData"}, {listCall}});
        engine.expect({{"Occurrences.Count", none}});
        EXPECT_EQ(list().get(), nullptr);
        EXPECT_EQ(engine.alive(), std::vector<std::string>{"Engine"});
    }
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(ListedOccurrences, AListIsAnArrayFrom0InTheEnginesOrder) {
    setUpClient();
    expectList(3);
    const auto array = list();
    VARTYPE type = VT_EMPTY;
    ASSERT_EQ(SafeArrayGetVartype(array.get(), &type), S_OK);
    EXPECT_EQ(type, VT_DISPATCH);
    EXPECT_EQ(SafeArrayGetDim(array.get()), 1U);
    EXPECT_EQ(com::bounds(array.get()), (com::Bounds{0, 2}));
    EXPECT_EQ(array.get()->cLocks, 0U);
    EXPECT_EQ(engine.alive(),
              (std::vector<std::string>{"Engine", "Occurrence(1)", "Occurrence(2)", "Occurrence(3)"}));
    const auto occurrences = elementsOf<_OccurrenceDataWrapper>(array.get());
    for (std::size_t i = 0; i < occurrences.size(); ++i) {
        const auto number = static_cast<int>(i + 1);
        engine.expect({{"Occurrence(" + std::to_string(number) + ").AffectedPID", number}});
        EXPECT_EQ(read(occurrences[i], &_OccurrenceDataWrapper::get_AffectedPID), number);
    }
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(ListedOccurrences, TheSpanAndTheSiteReachTheEngineUnchanged) {
    setUpClient();
    SAFEARRAY* none = nullptr;
    for (const auto& [from, to, seen] : {std::tuple{last, first, "39449, 39448.25"},
                                         {-1.25, 0.0, "-1.25, 0"},
                                         {401768.99999, 401768.99999, "401768.99999, 401768.99999"}}) {
        engine.expect({{"Engine.SiteID"},
                       {"Engine.LongTermData"},
                       {"LongTerm.GetOccurrences('', " + std::string(seen) +
                            ", True, True, 0, False, Dispatch Nothing)",
                        Answer::noObject()}});
        SAFEARRAY* result = nullptr;
        EXPECT_EQ(client->GetOccurrences(from, to, VARIANT_TRUE, Variant::ofBool(true).get(), 0,
                                         VARIANT_FALSE, &none, &result),
                  S_OK);
        EXPECT_EQ(result, nullptr);
    }
}

TEST_F(ListedOccurrences, AFilterOutside0To2CountsAs0) {
    setUpClient();
    for (const auto& [filter, handed] :
         {std::pair{0L, 0}, {1L, 1}, {2L, 2}, {-1L, 0}, {3L, 0}, {2147483647L, 0}, {-2147483647L - 1, 0}}) {
        Request request;
        request.filter = filter;
        expectAsked(request, "True, True, " + std::to_string(handed) + ", False, Dispatch Nothing");
    }
}

TEST_F(ListedOccurrences, AnyNumberBut0IsTrue) {
    setUpClient();
    for (const int given : {0, -1, 1, 2, 256, -2}) {
        const std::string seen = given != 0 ? "True" : "False";
        Request request;
        request.downtimes = static_cast<VARIANT_BOOL>(given);
        expectAsked(request, seen + ", True, 0, False, Dispatch Nothing");
        request.downtimes = VARIANT_FALSE;
        request.orderByTag = static_cast<VARIANT_BOOL>(given);
        expectAsked(request, "False, True, 0, " + seen + ", Dispatch Nothing");
    }
}

TEST_F(ListedOccurrences, WhetherToShowExceedencesIsConverted) {
    setUpClient();
    const std::pair<Variant, bool> rows[] = {
        {Variant::ofBool(true), true},  {Variant::ofBool(false), false}, {Variant::of(LONG{1}), true},
        {Variant::of(LONG{0}), false},  {Variant::of(LONG{256}), true},  {Variant::of(-0.25), true},
        {Variant::of(0.0), false},      {Variant::of(0.0F), false},      {Variant(), false},
        {Variant::ofDate(0), false},    {Variant::ofDate(first), true},  {Variant::of(L"True"), true},
        {Variant::of(L"false"), false}, {Variant::of(L"TRUE"), true},    {Variant::of(L"1"), true},
        {Variant::of(L"0"), false},     {Variant::of(L" -0.5 "), true},  {Variant::of(L"0.00"), false}};
    for (const auto& [given, seen] : rows) {
        SCOPED_TRACE("type " + std::to_string(given.type()));
        Request request;
        request.exceedences = given;
        expectAsked(request,
                    std::string("True, ") + (seen ? "True" : "False") + ", 0, False, Dispatch Nothing");
        // The same in a client's variable.
        Variant variable = given;
        VARIANT outer = ref(variable);
        SAFEARRAY* none = nullptr;
        SAFEARRAY* result = nullptr;
        engine.expect({{"Engine.SiteID", L"S1"},
                       {"Engine.LongTermData"},
                       {std::string("LongTerm.GetOccurrences('S1', 39448.25, 39449, True, ") +
                            (seen ? "True" : "False") + ", 0, False, Dispatch Nothing)",
                        Answer::noObject()}});
        EXPECT_EQ(client->GetOccurrences(first, last, VARIANT_TRUE, outer, 0, VARIANT_FALSE, &none, &result),
                  S_OK);
        engine.verify();
    }
}

TEST_F(ListedOccurrences, WhatIsNoBooleanIsRefusedBeforeTheEngineIsAsked) {
    setUpClient();
    Variant numbers;
    numbers.inOut()->parray = SafeArrayCreateVector(VT_I4, 0, 2);
    numbers.inOut()->vt = VT_ARRAY | VT_I4;
    const struct {
        Variant given;
        LONG number;
    } rows[] = {{Variant::null(), 94},      {Variant::of(L"maybe"), 13},
                {Variant::of(L""), 13},     {Variant::of(L" "), 13},
                {Variant::of(L"1 kg"), 13}, {Variant::missing(), 13},
                {std::move(numbers), 13},   {Variant::of(static_cast<IDispatch*>(nullptr)), 91}};
    for (const auto& row : rows) {
        Request request;
        request.exceedences = row.given;
        SAFEARRAY* none = nullptr;
        EXPECT_EQ(clientNumber(refused(request, &none).result), row.number) << "type " << row.given.type();
    }
    Request object;
    object.exceedences = Variant::of(static_cast<IDispatch*>(client.get()));
    SAFEARRAY* none = nullptr;
    EXPECT_EQ(clientNumber(refused(object, &none).result), 13);
    EXPECT_EQ(client.problems(), L"");
}

// ---- The list of units or tags

TEST_F(ListedOccurrences, AListOfUnitsOrTagsReachesTheEngineAsTheClientHasIt) {
    setUpClient();
    const struct {
        LONG lower;
        std::vector<LONG> values;
        const char* handed;
    } rows[] = {{0, {530001}, "I4[0..0: 530001]"},
                {1, {1, 19, 530001}, "I4[1..3: 1, 19, 530001]"},
                {-3, {-1, 2147483647}, "I4[-3..-2: -1, 2147483647]"},
                {0, {}, "I4[0..-1:]"},
                {5, {}, "I4[5..4:]"}};
    for (const auto& row : rows) {
        Numbers numbers(row.lower, row.values);
        const void* const data = numbers.data();
        expectAsked({}, numbers.inOut(), "True, True, 0, False, " + std::string(row.handed));
        // It is the client's, as it was.
        ASSERT_TRUE(numbers.get());
        EXPECT_EQ(numbers.data(), data);
        EXPECT_EQ(numbers.lower(), row.lower);
        EXPECT_EQ(numbers.values(), row.values);
        EXPECT_EQ(numbers.get()->cLocks, 0U);
    }
}

TEST_F(ListedOccurrences, AListOfAnotherShapeOrTypeIsRefusedBeforeTheEngineIsAsked) {
    setUpClient();
    Array<LONG> table(VT_I4, {{2, 0}, {3, 0}});
    EXPECT_EQ(clientNumber(refused({}, table.inOut()).result), 9);
    EXPECT_EQ(SafeArrayGetDim(table.get()), 2U);
    for (const VARTYPE type : {VT_R8, VT_I2, VT_BSTR, VT_VARIANT, VT_DISPATCH}) {
        Array<LONG> other(type, {{2, 0}});
        EXPECT_EQ(clientNumber(refused({}, other.inOut()).result), 13) << "type " << type;
    }
    EXPECT_EQ(refused({}, nullptr).result, E_POINTER);
    SAFEARRAY* none = nullptr;
    EXPECT_EQ(ask({}, &none, nullptr), E_POINTER);
    static_cast<void>(takeFailure(E_POINTER));
    EXPECT_EQ(client.problems(), L"");
}

// ---- Failures and ends

TEST_F(ListedOccurrences, AFailureOfAnyCallReachesTheClientAndNothingIsLeft) {
    setUpClient();
    const auto calls = threeListed();
    for (std::size_t failing = 0; failing < calls.size(); ++failing) {
        for (const bool explained : {true, false}) {
            for (std::size_t i = 0; i < failing; ++i) engine.expect({calls[i]});
            engine.expect({{calls[failing].text, explained ? engineFails() : Answer::failure(engineResult)}});
            const Failure failure = failList();
            EXPECT_EQ(failure.result, engineResult) << calls[failing].text;
            if (explained) {
                EXPECT_EQ(failure, engineFailure()) << calls[failing].text;
            }
            EXPECT_EQ(engine.alive(), std::vector<std::string>{"Engine"}) << calls[failing].text;
        }
    }
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(ListedOccurrences, AManagerOrAnOccurrenceThatTheEngineDoesNotHandOutIsError91) {
    setUpClient();
    const auto calls = threeListed();
    for (const std::size_t missing : {std::size_t{1}, std::size_t{5}}) {
        for (std::size_t i = 0; i < missing; ++i) engine.expect({calls[i]});
        engine.expect({{calls[missing].text, Answer::noObject()}});
        EXPECT_EQ(failList().result, unsetObject) << calls[missing].text;
        EXPECT_EQ(engine.alive(), std::vector<std::string>{"Engine"}) << calls[missing].text;
    }
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(ListedOccurrences, ObjectsStayValidWhateverIsReleasedFirst) {
    for (const bool arrayFirst : {true, false}) {
        setUpClient();
        expectList(2);
        auto array = list();
        std::vector<Occurrence> occurrences = elementsOf<_OccurrenceDataWrapper>(array.get());
        if (arrayFirst) array = {};
        engine.expect({{"Engine.Close"}});
        client.teardown();
        if (!arrayFirst) array = {};
        engine.expect({{"Occurrence(2).Event"},
                       {"Event.HasDowntime", true},
                       {"Occurrence(2).Event"},
                       {"Event.Downtime_Reason = 'Calibration'"},
                       {"Occurrence(1).StartDate", first}});
        EXPECT_EQ(occurrences[1]->put_Downtime_Reason(Bstr(L"Calibration").get()), S_OK);
        occurrences.pop_back();
        EXPECT_EQ(engine.alive(), std::vector<std::string>{"Occurrence(1)"});
        EXPECT_EQ(read(occurrences[0], &_OccurrenceDataWrapper::get_StartDate), first);
        occurrences.clear();
        EXPECT_TRUE(engine.alive().empty());
    }
}

}  // namespace
}  // namespace vtdn::test
