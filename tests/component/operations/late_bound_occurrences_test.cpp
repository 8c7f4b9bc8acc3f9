// Occurrences as scripts have them: by name, with variables that hold anything.
#include <initializer_list>
#include <string>
#include <vector>

#include "operations/occurrences.h"
#include "support/late.h"

namespace vtdn::test {
namespace {

class ScriptedOccurrences : public OnOccurrences {
  protected:
    ScriptedOccurrences() { setUpClient(); }

    /// The engine is asked for a list of units or tags, and for exceedences or not.
    void expectAsked(const std::string& exceedences, const std::string& tags) {
        engine.expect({{"Engine.SiteID", L"S1"},
                       {"Engine.LongTermData"},
                       {"LongTerm.GetOccurrences('S1', 39448.25, 39449, True, " + exceedences +
                            ", 2, False, " + tags + ")",
                        Answer::noObject()}});
    }
    HRESULT ask(const VARIANT& exceedences, const VARIANT& tags) {
        return late.call(L"GetOccurrences", {Variant::ofDate(first).get(), Variant::ofDate(last).get(),
                                             Variant::ofBool(true).get(), exceedences,
                                             Variant::of(LONG{2}).get(), Variant::ofBool(false).get(), tags});
    }
    void expectFound(const VARIANT& exceedences, const VARIANT& tags) {
        EXPECT_EQ(ask(exceedences, tags), S_OK) << com::toUtf8(late.description());
        EXPECT_EQ(late.result.type(), VT_EMPTY);
        engine.verify();
    }
    /// A variable with an array of these.
    static Variant arrayOf(VARTYPE type, std::initializer_list<LONG> values) {
        Variant variable;
        variable.inOut()->parray = SafeArrayCreateVector(type, 0, static_cast<ULONG>(values.size()));
        variable.inOut()->vt = static_cast<VARTYPE>(VT_ARRAY | type);
        LONG i = 0;
        for (LONG value : values) {
            Variant element = Variant::of(value);
            void* const from = type == VT_VARIANT ? static_cast<void*>(element.inOut()) : &value;
            EXPECT_EQ(SafeArrayPutElement(variable.get().parray, &i, from), S_OK);
            ++i;
        }
        return variable;
    }

    Late late{client.get()};
};

TEST_F(ScriptedOccurrences, AreListedAsAnArrayOfVariant) {
    Variant none;
    engine.expect({{"Engine.SiteID", L"S1"},
                   {"Engine.LongTermData"},
                   {"LongTerm.GetOccurrences('S1', 39448.25, 39449, True, True, 2, False, Dispatch Nothing)"},
                   {"Occurrences.Count", 2},
                   {"Occurrences.Item(1)"},
                   {"Occurrences.Item(2)"}});
    ASSERT_EQ(ask(Variant::ofBool(true).get(), ref(none)), S_OK);
    ASSERT_EQ(late.result.type(), VT_ARRAY | VT_VARIANT);
    SAFEARRAY* const array = late.result.get().parray;
    EXPECT_EQ(com::bounds(array), (com::Bounds{0, 1}));
    int number = 0;
    for (const VARIANT& element : com::ArrayView<VARIANT>(array)) {
        ASSERT_EQ(element.vt, VT_DISPATCH);
        ++number;
        Late occurrence(element.pdispVal);
        engine.expect({{"Occurrence(" + std::to_string(number) + ").AffectedPID", number}});
        EXPECT_EQ(occurrence.get(L"affectedpid"), S_OK);
        EXPECT_EQ(occurrence.result.type(), VT_I4);
        EXPECT_EQ(occurrence.text(), std::to_wstring(number));
    }
}

TEST_F(ScriptedOccurrences, TakeTheListOfUnitsOrTagsInAnyForm) {
    const Variant yes = Variant::ofBool(true);
    // Nothing in the variable, and a null reference to an array.
    Variant none;
    SAFEARRAY* null = nullptr;
    for (const VARIANT& tags : {ref(none), refArray(VT_I4, null)}) {
        expectAsked("True", "Dispatch Nothing");
        expectFound(yes.get(), tags);
    }
    EXPECT_EQ(none.type(), VT_EMPTY);
    EXPECT_EQ(null, nullptr);
    for (const VARTYPE type : {VT_VARIANT, VT_I4}) {
        const auto expectNumbers = [&](const VARIANT& tags) {
            expectAsked("True", "I4[0..1: 7, 530001]");
            expectFound(yes.get(), tags);
        };
        Variant variable = arrayOf(type, {7, 530001});
        expectNumbers(ref(variable));
        ASSERT_EQ(variable.type(), VT_ARRAY | type) << "the client's variable stays what it was";
        EXPECT_EQ(com::bounds(variable.get().parray), (com::Bounds{0, 1}));
        expectNumbers(variable.get());
        Variant typed = arrayOf(type, {7, 530001});
        expectNumbers(refArray(type, typed.inOut()->parray));
        EXPECT_EQ(com::bounds(typed.get().parray), (com::Bounds{0, 1}));
        Variant empty = arrayOf(type, {});
        expectAsked("True", "I4[0..-1:]");
        expectFound(yes.get(), ref(empty));
    }
    Variant word = Variant::of(L"no list");
    EXPECT_EQ(ask(yes.get(), ref(word)), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(late.bad, 0U);
}

TEST_F(ScriptedOccurrences, SayWhetherToShowExceedencesInAnyForm) {
    Variant none;
    const std::pair<Variant, const char*> rows[] = {{Variant::ofBool(false), "False"},
                                                    {Variant::of(LONG{-1}), "True"},
                                                    {Variant::of(L"True"), "True"},
                                                    {Variant::of(L"0"), "False"},
                                                    {Variant(), "False"}};
    for (const auto& [given, seen] : rows) {
        Variant variable = given;
        for (const VARIANT& argument : {variable.get(), ref(variable)}) {
            expectAsked(seen, "Dispatch Nothing");
            expectFound(argument, ref(none));
        }
    }
    for (const auto& [given, number, description] : {std::tuple{Variant::null(), 94, L"Invalid use of Null"},
                                                     {Variant::of(L"maybe"), 13, L"Type mismatch"},
                                                     {Variant::missing(), 13, L"Type mismatch"}}) {
        ASSERT_EQ(ask(given.get(), ref(none)), DISP_E_EXCEPTION);
        EXPECT_EQ(clientNumber(late.exception.scode), number);
        EXPECT_EQ(late.description(), description);
        EXPECT_EQ(late.source(), L"VTWrapDN.DIWrapper");
    }
    EXPECT_EQ(client.problems(), L"");
}

/// A script's own occurrence.
class ScriptedMembers : public OnOccurrences {
  protected:
    void expectField(const std::string& has, const std::string& field, const Answer& answer = {}) {
        engine.expect({{"Occurrence(1).Event"},
                       {"Event." + has, true},
                       {"Occurrence(1).Event"},
                       {"Event." + field, answer}});
    }

    Occurrence occurrence = listedOne();
    Late late{occurrence.get()};
};

TEST_F(ScriptedMembers, WhatCannotBeSetIsReadOnly) {
    const struct {
        const wchar_t* name;
        std::vector<Call> calls;
        VARTYPE type;
    } rows[] = {
        {L"AffectedPID", {{"Occurrence(1).AffectedPID", 530001}}, VT_I4},
        {L"NValue", {{"Occurrence(1).NValue", Variant::null()}}, VT_NULL},
        {L"TextValue", {{"Occurrence(1).TextValue(Nothing)", L"5"}}, VT_BSTR},
        {L"MC", {{"Occurrence(1).MC", 2.5}}, VT_R8},
        {L"StartDate", {{"Occurrence(1).StartDate", first}}, VT_DATE},
        {L"HasExcursion", {{"Occurrence(1).Event"}, {"Event.HasExcursion", 1}}, VT_BOOL},
        {L"HasDowntime", {{"Occurrence(1).Event"}, {"Event.HasDowntime", false}}, VT_BOOL},
        {L"Excursion_PID", {{"Occurrence(1).Event"}, {"Event.HasExcursion", false}}, VT_I4},
        {L"Downtime_PID", {{"Occurrence(1).Event"}, {"Event.HasDowntime", false}}, VT_I4},
        {L"Excursion_Limit", {{"Occurrence(1).Event"}, {"Event.HasExcursion", false}}, VT_BSTR},
        {L"Excursion_LimitPID", {{"Occurrence(1).Event", Answer::noObject()}}, VT_I4},
    };
    for (const auto& row : rows) {
        engine.expect(row.calls);
        EXPECT_EQ(late.get(row.name), S_OK) << com::toUtf8(row.name);
        EXPECT_EQ(late.result.type(), row.type) << com::toUtf8(row.name);
        engine.verify();
        EXPECT_EQ(late.put(row.name, {Variant::of(LONG{1}).get()}), DISP_E_MEMBERNOTFOUND)
            << com::toUtf8(row.name);
    }
}

TEST_F(ScriptedMembers, TheOthersAreSetFromAnythingThatConverts) {
    const std::pair<const wchar_t*, std::string> texts[] = {
        {L"Excursion_Action", "Excursion_Action"},     {L"Downtime_Action", "Downtime_Action"},
        {L"excursion_reason", "Excursion_Reason"},     {L"DOWNTIME_REASON", "Downtime_Reason"},
        {L"Excursion_Category", "Excursion_Category"}, {L"Downtime_Category", "Downtime_Category"}};
    for (const auto& [name, member] : texts) {
        const std::string has = member.starts_with("Excursion") ? "HasExcursion" : "HasDowntime";
        Variant variable = Variant::of(L"<&>");
        expectField(has, member + " = '<&>'");
        EXPECT_EQ(late.put(name, {ref(variable)}), S_OK);
        expectField(has, member + " = '7'");
        EXPECT_EQ(late.put(name, {Variant::of(LONG{7}).get()}), S_OK);
        expectField(has, member, L"kept");
        EXPECT_EQ(late.get(name), S_OK);
        EXPECT_EQ(late.text(), L"kept");
    }
    const std::pair<const wchar_t*, std::string> flags[] = {{L"Excursion_Excludable", "Excursion_Excludable"},
                                                            {L"Downtime_Excludable", "Downtime_Excludable"}};
    for (const auto& [name, member] : flags) {
        const std::string has = member.starts_with("Excursion") ? "HasExcursion" : "HasDowntime";
        Variant variable = Variant::of(L"True");
        expectField(has, member + " = True");
        EXPECT_EQ(late.put(name, {ref(variable)}), S_OK);
        expectField(has, member + " = True");
        EXPECT_EQ(late.put(name, {Variant::of(LONG{2}).get()}), S_OK);
        expectField(has, member, 1);
        EXPECT_EQ(late.get(name), S_OK);
        ASSERT_EQ(late.result.type(), VT_BOOL);
        EXPECT_EQ(late.result.get().boolVal, VARIANT_TRUE);
        Variant word = Variant::of(L"maybe");
        EXPECT_EQ(late.put(name, {ref(word)}), DISP_E_TYPEMISMATCH);
    }
}

TEST_F(ScriptedMembers, SeeTheEnginesFailure) {
    engine.expect({{"Occurrence(1).Event", engineFails()}});
    ASSERT_EQ(late.get(L"HasExcursion"), DISP_E_EXCEPTION);
    EXPECT_EQ(late.exception.scode, engineResult);
    EXPECT_EQ(late.source(), L"Engine");
    EXPECT_EQ(late.description(), L"The database is away.");
}

}  // namespace
}  // namespace vtdn::test
