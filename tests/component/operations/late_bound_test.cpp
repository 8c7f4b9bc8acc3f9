// The newer members as scripts call them: by name, with variables that hold anything.
#include <gtest/gtest.h>

#include <initializer_list>

#include "fake_engine/lenient.h"
#include "support/array.h"
#include "support/client.h"
#include "support/late.h"

namespace vtdn::test {
namespace {

using com::Variant;

constexpr LONG pid = 530001;

VARIANT number(LONG value) {
    return Variant::of(value).get();
}
VARIANT date(DATE value) {
    return Variant::ofDate(value).get();
}

/// A script's variable with an array of VARIANT.
Variant scriptArray(std::initializer_list<Variant> values) {
    Variant variable;
    variable.inOut()->parray = SafeArrayCreateVector(VT_VARIANT, 0, static_cast<ULONG>(values.size()));
    variable.inOut()->vt = VT_ARRAY | VT_VARIANT;
    const com::ArrayView<VARIANT> elements(variable.get().parray);
    std::size_t i = 0;
    for (const Variant& value : values) Variant(value).detachTo(&elements[i++]);
    return variable;
}
/// A script's variable with an array of another type.
Variant typedArray(std::initializer_list<LONG> values) {
    Variant variable;
    variable.inOut()->parray = SafeArrayCreateVector(VT_I4, 0, static_cast<ULONG>(values.size()));
    variable.inOut()->vt = VT_ARRAY | VT_I4;
    const com::ArrayView<LONG> elements(variable.get().parray);
    std::size_t i = 0;
    for (const LONG value : values) elements[i++] = value;
    return variable;
}

/// The elements of an array in a variable, as text.
std::vector<std::wstring> elementsOf(const Variant& variable) {
    std::vector<std::wstring> all;
    const VARIANT& value = variable.get();
    if (value.vt == (VT_ARRAY | VT_VARIANT)) {
        for (const VARIANT& element : com::ArrayView<VARIANT>(value.parray)) {
            com::Bstr text;
            EXPECT_EQ(com::toText(element, text), S_OK);
            all.emplace_back(text.view());
        }
    } else if (value.vt == (VT_ARRAY | VT_I4)) {
        for (const LONG element : com::ArrayView<LONG>(value.parray)) all.push_back(std::to_wstring(element));
    } else {
        ADD_FAILURE() << "type " << value.vt;
    }
    return all;
}
using Elements = std::vector<std::wstring>;

class Scripts : public testing::Test {
  protected:
    Scripts() {
        fake::Parameter& parameter = site.parameters[pid];
        parameter.type = 3;
        parameter.relationship = fake::Relationship{1, L"h", L"<r/>"};
        parameter.specialValues.insert_or_assign(-22, Variant::of(L"40CFR75"));
        parameter.specialValues.insert_or_assign(77, Variant::of(2.5));
        parameter.functionAnswer = Variant::of(L"3.5");
        site.parameters[530002].type = 45;
        site.parameters[530002].specialValues.insert_or_assign(-32, Variant::of(LONG{1}));
        site.parameters[100100000].specialValues = {
            {-17, Variant::ofBool(true)}, {-95, Variant::of(LONG{3456})}, {-97, Variant::of(L"CT1")}};
        site.units = {L"Common", L"Unit 1"};
        site.monitorCodes = {{L"OK", L"BAD"}, {L"Valid", L"Invalid"}};
        site.parameterCodes = {{L"SO2"}, {L"Sulfur dioxide"}};
        site.siteId = L"S1";
        EXPECT_TRUE(client.setup());
    }
    ~Scripts() override {
        late.result = Variant();
        EXPECT_EQ(client.problems(), L"");
    }

    /// A call that succeeds with a result of this type.
    void good(const wchar_t* name, std::vector<VARIANT> arguments, VARTYPE type) {
        EXPECT_EQ(late.call(name, std::move(arguments)), S_OK)
            << com::toUtf8(name) << ": " << com::toUtf8(late.description());
        EXPECT_EQ(late.result.type(), type) << com::toUtf8(name);
    }
    [[nodiscard]] const fake::Parameter& parameter() const { return site.parameters.at(pid); }

    fake::Site site;
    const fake::LenientServer server{site};
    const Client client;
    Late late{client.get()};
};

TEST_F(Scripts, GetListsAsTexts) {
    good(L"GetListOfTypeXPIDs", {number(3)}, VT_BSTR);
    EXPECT_EQ(late.text(), L"000530001");
    Variant type = Variant::of(L"45");
    good(L"getlistoftypexpids", {ref(type)}, VT_BSTR);
    EXPECT_EQ(late.text(), L"000530002");
    good(L"GetListOf75CalPIDs", {}, VT_BSTR);
    EXPECT_EQ(late.text(), L"000530001");
    good(L"GetListOfCalPIDs", {}, VT_BSTR);
    EXPECT_EQ(late.text(), L"000530001");
    good(L"GetListOf75LinearityPIDs", {}, VT_BSTR);
    EXPECT_EQ(late.text(), L"000530002");
    good(L"GetListOf75IntfCheckPIDs", {}, VT_BSTR);
    EXPECT_EQ(late.text(), L"");
}

TEST_F(Scripts, AskForRelationshipsByNumber) {
    good(L"GetListOfRelationshipPIDs", {number(2), number(1)}, VT_BSTR);
    EXPECT_EQ(late.text(), L"000530001");
    Variant level = Variant::of(2.0);
    Variant count = Variant::of(L"1");
    good(L"GetListOfRelationshipPIDs", {ref(level), ref(count)}, VT_BSTR);
    EXPECT_EQ(late.text(), L"000530001");
    good(L"GetListOfRelationshipPIDs", {number(4), number(1)}, VT_BSTR);
    EXPECT_EQ(late.text(), L"");
    EXPECT_EQ(late.call(L"GetListOfRelationshipPIDs", {Variant::of(1e300).get(), number(1)}),
              DISP_E_OVERFLOW);
    EXPECT_EQ(late.call(L"GetListOfRelationshipPIDs", {Variant::null().get(), number(1)}),
              DISP_E_TYPEMISMATCH);
    good(L"GetListOfAllRelationshipPIDs", {}, VT_BSTR);
    EXPECT_EQ(late.text(), L"000530001");
}

TEST_F(Scripts, GetTheRelationshipInAVariable) {
    Variant xml;
    good(L"GetRelationshipDetailData", {number(pid), ref(xml)}, VT_BOOL);
    EXPECT_EQ(late.text(), L"True");
    ASSERT_EQ(xml.type(), VT_BSTR);
    EXPECT_EQ(com::view(xml.get().bstrVal), L"<?xml version=\"1.0\"?>\r\n<r/>");
    good(L"GetRelationshipDetailData", {number(530002), ref(xml)}, VT_BOOL);
    EXPECT_EQ(com::view(xml.get().bstrVal), L"");
    BSTR typed = SysAllocString(L"old");
    good(L"GetRelationshipDetailData", {number(pid), ref(typed)}, VT_BOOL);
    EXPECT_EQ(com::Bstr::adopt(typed).view(), L"<?xml version=\"1.0\"?>\r\n<r/>");
}

TEST_F(Scripts, WriteRunsFromArraysOfAnyKind) {
    const Variant type = Variant::of(L"1h");
    const Variant values = Variant::of(L"1.5\t\tABC");
    const auto write = [&](VARIANT mcs, VARIANT flags) {
        site.parameters[pid].written.clear();
        good(L"Param_WriteValues",
             {number(pid), date(39448), number(3), type.get(), number(1), values.get(), mcs, flags}, VT_BOOL);
        EXPECT_EQ(late.text(), L"True");
        ASSERT_EQ(parameter().written.size(), 3U);
        EXPECT_EQ(parameter().written[0].value.type(), VT_R4);
        EXPECT_EQ(parameter().written[1].value.type(), VT_NULL);
        EXPECT_EQ(parameter().written[2].value.type(), VT_BSTR);
        EXPECT_EQ(parameter().written[1].mc, 11);
        EXPECT_EQ(parameter().mask[2].value.get().lVal, 3);
    };
    const Elements codes{L"10", L"11", L"12"};
    const Elements asked{L"3", L"3", L"3"};
    // A script's arrays of VARIANT, by reference, of mixed content.
    Variant mcs = scriptArray({Variant::of(LONG{10}), Variant::of(L"11"), Variant::of(12.0)});
    Variant flags = scriptArray({Variant::of(3.0), Variant::of(LONG{3}), Variant::of(L"3")});
    write(ref(mcs), ref(flags));
    EXPECT_EQ(mcs.type(), VT_ARRAY | VT_VARIANT);
    EXPECT_EQ(elementsOf(mcs), codes);
    EXPECT_EQ(elementsOf(flags), asked);
    // The same by value.
    write(mcs.get(), flags.get());
    EXPECT_EQ(elementsOf(mcs), codes);
    // Arrays of the exact type, in variables, by value, and by reference.
    Variant typedMcs = typedArray({10, 11, 12});
    Variant typedFlags = typedArray({3, 3, 3});
    write(ref(typedMcs), ref(typedFlags));
    write(typedMcs.get(), typedFlags.get());
    SAFEARRAY* mcsArray = typedMcs.get().parray;
    SAFEARRAY* flagsArray = typedFlags.get().parray;
    write(refArray(VT_I4, mcsArray), refArray(VT_I4, flagsArray));
    EXPECT_EQ(mcsArray, typedMcs.get().parray);
    EXPECT_EQ(elementsOf(typedMcs), codes);
    EXPECT_EQ(elementsOf(typedFlags), asked);
}

TEST_F(Scripts, WriteRunsWithEveryArgumentInAVariable) {
    Variant of = Variant::of(LONG{pid});
    Variant start = Variant::of(39448.0);
    Variant count = Variant::of(L"2");
    Variant type = Variant::of(L"1h");
    Variant length = Variant::of(1.0);
    Variant values = Variant::of(L"5\t6");
    Variant mcs = scriptArray({Variant::of(LONG{1}), Variant::of(LONG{2})});
    Variant flags = scriptArray({Variant::of(LONG{0}), Variant::of(LONG{2})});
    good(L"Param_WriteValues",
         {ref(of), ref(start), ref(count), ref(type), ref(length), ref(values), ref(mcs), ref(flags)},
         VT_BOOL);
    EXPECT_EQ(late.text(), L"True");
    ASSERT_EQ(parameter().written.size(), 2U);
    EXPECT_EQ(parameter().written[1].value.type(), VT_EMPTY);
    EXPECT_EQ(parameter().written[1].mc, 2);
    EXPECT_EQ(com::view(values.get().bstrVal), L"5\t6");
}

TEST_F(Scripts, AreToldWhichArrayIsWrong) {
    const Variant text = Variant::of(L"1");
    Variant good_ = typedArray({1});
    Variant bad = scriptArray({Variant::of(L"abc")});
    EXPECT_EQ(late.call(L"Param_WriteValues", {number(pid), date(0), number(1), text.get(), number(1),
                                               text.get(), ref(bad), ref(good_)}),
              DISP_E_TYPEMISMATCH);
    EXPECT_EQ(late.bad, 1U);
    EXPECT_EQ(late.call(L"Param_WriteValues", {number(pid), date(0), number(1), text.get(), number(1),
                                               text.get(), ref(good_), ref(bad)}),
              DISP_E_TYPEMISMATCH);
    EXPECT_EQ(late.bad, 0U);
    EXPECT_TRUE(parameter().written.empty());
}

TEST_F(Scripts, AskForSpecialValuesInEveryType) {
    good(L"Param_GetSpecialValue_Int32", {number(pid), number(77)}, VT_I4);
    EXPECT_EQ(late.text(), L"2");
    good(L"Param_GetSpecialValue_Boolean", {number(pid), number(77)}, VT_BOOL);
    EXPECT_EQ(late.text(), L"True");
    Variant id = Variant::of(L"77");
    good(L"Param_GetSpecialValue_String", {number(pid), ref(id)}, VT_BSTR);
    EXPECT_EQ(late.text(), L"2.5");
    good(L"Param_GetSpecialValue_String", {number(pid), number(78)}, VT_BSTR);
    EXPECT_EQ(late.text(), L"");
}

TEST_F(Scripts, CallSpecialFunctionsWithArraysOfArguments) {
    Variant arguments = scriptArray({Variant::ofDate(39448), Variant::of(L"text"), Variant::null()});
    for (const VARIANT& given : {ref(arguments), arguments.get()}) {
        good(L"Param_GetSpecialFunction_Boolean", {number(pid), number(101), given}, VT_BOOL);
        EXPECT_EQ(late.text(), L"True");
        good(L"Param_GetSpecialFunction_Int32", {number(pid), number(101), given}, VT_I4);
        EXPECT_EQ(late.text(), L"4");
        good(L"Param_GetSpecialFunction_Real32", {number(pid), number(101), given}, VT_I4);
        EXPECT_EQ(late.text(), L"4");
        good(L"Param_GetSpecialFunction_String", {number(pid), number(101), given}, VT_BSTR);
        EXPECT_EQ(late.text(), L"3.5");
    }
    ASSERT_EQ(arguments.type(), VT_ARRAY | VT_VARIANT);
    const com::ArrayView<VARIANT> elements(arguments.get().parray);
    EXPECT_EQ(elements.size(), 3U);
    EXPECT_EQ(elements[0].vt, VT_DATE);
    EXPECT_EQ(com::view(elements[1].bstrVal), L"text");
    EXPECT_EQ(elements[2].vt, VT_NULL);
}

TEST_F(Scripts, CallTheOperatingTimeWithDatesOfAnyKind) {
    Variant start = Variant::of(39448.0);
    good(L"Param_CallSF_CalcOpTime", {number(pid), ref(start), date(39449)}, VT_I4);
    EXPECT_EQ(late.text(), L"4");
    good(L"Param_CallSF_CalcOpTime", {number(pid), number(39448), number(39449)}, VT_I4);
    EXPECT_EQ(late.text(), L"4");
}

TEST_F(Scripts, GetNamesAsArraysThatTheyCanIndex) {
    constexpr VARTYPE texts = VT_ARRAY | VT_VARIANT;
    good(L"Utils_GetUnitNames", {}, texts);
    Elements units(20);
    units[0] = L"Common";
    units[1] = L"Unit 1";
    EXPECT_EQ(elementsOf(late.result), units);
    good(L"Utils_GetEDRUnitORISCodes", {}, texts);
    Elements codes(20);
    codes[1] = L"3456";
    EXPECT_EQ(elementsOf(late.result), codes);
    good(L"Utils_GetEDRUnitIDs", {}, texts);
    codes[1] = L"CT1";
    EXPECT_EQ(elementsOf(late.result), codes);
    good(L"Utils_GetLongMCNames", {}, texts);
    EXPECT_EQ(elementsOf(late.result), (Elements{L"Valid", L"Invalid"}));
    good(L"Utils_GetShortMCNames", {}, texts);
    EXPECT_EQ(elementsOf(late.result), (Elements{L"OK", L"BAD"}));
    good(L"Utils_GetLongPCNames", {}, texts);
    EXPECT_EQ(elementsOf(late.result), Elements{L"Sulfur dioxide"});
    good(L"Utils_GetShortPCNames", {}, texts);
    EXPECT_EQ(elementsOf(late.result), Elements{L"SO2"});
    good(L"Params_FlushCache", {}, VT_EMPTY);
    EXPECT_EQ(site.cacheFlushes, 1);
}

TEST_F(Scripts, WriteAlarms) {
    Variant message = Variant::of(L"Flow is low");
    const Variant category = Variant::of(L"DAHS");
    Variant severity = Variant::of(L"4");
    const Variant empty = Variant::of(L"");
    good(L"WriteStrToAlarm",
         {date(39448.5), ref(message), category.get(), ref(severity), empty.get(), number(12)}, VT_BOOL);
    EXPECT_EQ(late.text(), L"True");
    EXPECT_EQ(site.alarms,
              (std::vector<fake::Alarm>{{site.siteId, 39448.5, L"Flow is low", L"DAHS", 4, L"", L"12"}}));
    severity = Variant::of(LONG{5});
    good(L"WriteStrToAlarm",
         {date(39448.5), ref(message), category.get(), ref(severity), empty.get(), empty.get()}, VT_BOOL);
    EXPECT_EQ(late.text(), L"False");
    EXPECT_EQ(site.alarms.size(), 1U);
}

TEST_F(Scripts, AreToldThatAWrapperIsNotSetUpYet) {
    const Client fresh;
    Late caller(fresh.get());
    for (const wchar_t* name : {L"Params_FlushCache", L"Utils_GetUnitNames", L"Utils_GetEDRUnitORISCodes",
                                L"Utils_GetEDRUnitIDs", L"Utils_GetLongMCNames", L"Utils_GetShortMCNames",
                                L"Utils_GetLongPCNames", L"Utils_GetShortPCNames"}) {
        EXPECT_EQ(caller.call(name), DISP_E_EXCEPTION);
        EXPECT_EQ(caller.exception.scode, numbered(91));
        EXPECT_EQ(caller.description(), L"Object variable or With block variable not set");
        EXPECT_EQ(caller.source(), L"VTWrapDN.DIWrapper");
        EXPECT_EQ(caller.result.type(), VT_EMPTY);
    }
}

}  // namespace
}  // namespace vtdn::test
