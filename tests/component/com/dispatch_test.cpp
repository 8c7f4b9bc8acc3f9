// Late-bound calls: names, values, results, failures.
#include <gtest/gtest.h>

#include "com/safe_array.h"
#include "probe.h"
#include "support/late.h"

namespace vtdn::test {
namespace {

using com::Variant;

VARIANT number(LONG value) {
    return Variant::of(value).get();
}

class Dispatch : public testing::Test {
  protected:
    com::Ptr<Probe> probe = com::make<Probe>(5);
    Late late{static_cast<IProbe*>(probe.get())};

    IProbe* dual() { return probe.get(); }

    HRESULT idsOf(std::vector<std::wstring> names, std::vector<DISPID>& ids) {
        std::vector<LPOLESTR> pointers;
        pointers.reserve(names.size());
        for (std::wstring& name : names) pointers.push_back(name.data());
        ids.assign(names.size(), 12345);
        return dual()->GetIDsOfNames(IID_NULL, pointers.data(), static_cast<UINT>(pointers.size()), 0,
                                     ids.data());
    }
};

TEST_F(Dispatch, EveryMemberHasItsSlotBehindThoseOfIDispatch) {
    // The members are in the order of their ids in the description, so the slots count up from the eighth.
    unsigned slot = 7;
    const com::DispatchTable& table = com::dispatchTable<IProbe>();
    ASSERT_EQ(table.members().size(), 33U);
    for (const com::Member& member : table.members()) EXPECT_EQ(member.slot, slot++) << member.id;
}

TEST_F(Dispatch, NamesAreFoundInAnyCase) {
    std::vector<DISPID> ids;
    for (const wchar_t* name : {L"EveryValue", L"everyvalue", L"EVERYVALUE"}) {
        EXPECT_EQ(idsOf({name}, ids), S_OK);
        EXPECT_EQ(ids[0], 11);
    }
}

TEST_F(Dispatch, GivesTheSameIdsAsThePlatformsTypeInformation) {
    com::Ptr<ITypeInfo> info;
    ASSERT_EQ(dual()->GetTypeInfo(0, 0, info.receive()), S_OK);
    for (const wchar_t* name : {L"Number", L"any", L"CELL", L"Three", L"Probes", L"Raise", L"FailPlain"}) {
        OLECHAR* pointer = const_cast<OLECHAR*>(name);
        MEMBERID expected = 0;
        DISPID found = 0;
        ASSERT_EQ(info->GetIDsOfNames(&pointer, 1, &expected), S_OK) << name;
        EXPECT_EQ(dual()->GetIDsOfNames(IID_NULL, &pointer, 1, 0, &found), S_OK);
        EXPECT_EQ(found, expected) << name;
    }
}

TEST_F(Dispatch, ArgumentNamesAreTheirPositions) {
    std::vector<DISPID> ids;
    EXPECT_EQ(idsOf({L"Optional", L"C", L"a", L"d"}, ids), S_OK);
    EXPECT_EQ(ids, (std::vector<DISPID>{13, 2, 0, 3}));
}

TEST_F(Dispatch, EveryUnknownNameIsMarked) {
    std::vector<DISPID> ids;
    EXPECT_EQ(idsOf({L"Optional", L"nothing", L"b"}, ids), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(ids, (std::vector<DISPID>{13, DISPID_UNKNOWN, 1}));
    EXPECT_EQ(idsOf({L"Nobody", L"a"}, ids), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(ids, (std::vector<DISPID>{DISPID_UNKNOWN, DISPID_UNKNOWN}));
    for (const wchar_t* name : {L"", L"Numbe", L"Numbers", L"\x00C9tat"})
        EXPECT_EQ(idsOf({name}, ids), DISP_E_UNKNOWNNAME);
}

TEST_F(Dispatch, AnInterfaceIdOtherThanNullIsRefused) {
    OLECHAR name[] = L"Number";
    OLECHAR* pointer = name;
    DISPID id = 0;
    DISPPARAMS none{};
    Variant result;
    EXPECT_EQ(dual()->GetIDsOfNames(IID_IDispatch, &pointer, 1, 0, &id), DISP_E_UNKNOWNINTERFACE);
    EXPECT_EQ(
        dual()->Invoke(1, IID_IDispatch, 0, DISPATCH_PROPERTYGET, &none, result.receive(), nullptr, nullptr),
        DISP_E_UNKNOWNINTERFACE);
}

TEST_F(Dispatch, MisusedPointersAreRefused) {
    DISPID id = 0;
    EXPECT_EQ(dual()->GetIDsOfNames(IID_NULL, nullptr, 1, 0, &id), E_INVALIDARG);
    EXPECT_EQ(dual()->GetTypeInfoCount(nullptr), E_POINTER);
    EXPECT_EQ(dual()->GetTypeInfo(0, 0, nullptr), E_POINTER);
    Variant result;
    EXPECT_EQ(
        dual()->Invoke(1, IID_NULL, 0, DISPATCH_PROPERTYGET, nullptr, result.receive(), nullptr, nullptr),
        E_INVALIDARG);
    DISPPARAMS noList{nullptr, nullptr, 2, 0};
    EXPECT_EQ(dual()->Invoke(10, IID_NULL, 0, DISPATCH_METHOD, &noList, nullptr, nullptr, nullptr),
              E_INVALIDARG);
    VARIANT argument = number(1);
    DISPPARAMS moreNames{&argument, &id, 1, 2};
    EXPECT_EQ(dual()->Invoke(10, IID_NULL, 0, DISPATCH_METHOD, &moreNames, nullptr, nullptr, nullptr),
              E_INVALIDARG);
    DISPPARAMS noNames{&argument, nullptr, 1, 1};
    EXPECT_EQ(dual()->Invoke(10, IID_NULL, 0, DISPATCH_METHOD, &noNames, nullptr, nullptr, nullptr),
              E_INVALIDARG);
}

TEST_F(Dispatch, HandsOutItsTypeInformation) {
    UINT count = 0;
    EXPECT_EQ(dual()->GetTypeInfoCount(&count), S_OK);
    EXPECT_EQ(count, 1U);
    com::Ptr<ITypeInfo> info;
    EXPECT_EQ(dual()->GetTypeInfo(1, 0, info.receive()), DISP_E_BADINDEX);
    ASSERT_EQ(dual()->GetTypeInfo(0, 0, info.receive()), S_OK);
    com::Bstr name;
    ASSERT_EQ(info->GetDocumentation(MEMBERID_NIL, name.receive(), nullptr, nullptr, nullptr), S_OK);
    EXPECT_EQ(name.view(), L"IProbe");
}

TEST_F(Dispatch, PropertiesAreReadAndWritten) {
    EXPECT_EQ(late.get(L"Number"), S_OK);
    EXPECT_EQ(late.result.type(), VT_I4);
    EXPECT_EQ(late.result.get().lVal, 5);
    EXPECT_EQ(late.put(L"Number", {number(8)}), S_OK);
    EXPECT_EQ(late.get(L"Number"), S_OK);
    EXPECT_EQ(late.result.get().lVal, 8);
}

TEST_F(Dispatch, APropertyWithArgumentsTakesTheNewValueLast) {
    EXPECT_EQ(late.put(L"Cell", {number(3), Variant::of(L"left").get(), Variant::of(L"new").get()}), S_OK);
    EXPECT_EQ(late.get(L"Cell", {number(4), Variant::of(L"right").get()}), S_OK);
    EXPECT_EQ(late.text(), L"4/right/new@3,left");
}

TEST_F(Dispatch, APutWithoutItsNamedValueIsRefused) {
    EXPECT_EQ(late.call(L"Number", {number(8)}, DISPATCH_PROPERTYPUT), DISP_E_PARAMNOTFOUND);
    EXPECT_EQ(late.put(L"Cell", {number(8)}), DISP_E_PARAMNOTOPTIONAL);
    EXPECT_EQ(late.put(L"Number", {number(1), number(2)}), DISP_E_BADPARAMCOUNT);
}

TEST_F(Dispatch, AReferenceIsPutByItsOwnMember) {
    IProbe* other = probe.get();
    EXPECT_EQ(late.put(L"Any", {Variant::of(static_cast<IDispatch*>(other)).get()}, DISPATCH_PROPERTYPUTREF),
              S_OK);
    EXPECT_EQ(late.get(L"Any"), S_OK);
    EXPECT_EQ(late.result.type(), VT_DISPATCH);
    EXPECT_EQ(late.result.get().pdispVal, other);
    // A caller that leaves it open means the reference, when there is a member for it.
    EXPECT_EQ(late.put(L"Any", {number(3)}, DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF),
              DISP_E_TYPEMISMATCH);
    EXPECT_EQ(late.put(L"Any", {number(3)}), S_OK);
    EXPECT_EQ(late.put(L"Number", {number(3)}, DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF), S_OK);
}

TEST_F(Dispatch, WrongFlagsAndUnknownIdsAreNoMember) {
    EXPECT_EQ(late.call(L"Number"), DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(late.get(L"Three"), DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(late.put(L"Number", {number(1)}, DISPATCH_PROPERTYPUTREF), DISP_E_MEMBERNOTFOUND);
    for (const DISPID id : {0L, 4L, 99L, -1L, -0x56544EL})
        EXPECT_EQ(late.callId(id, {}, {}, DISPATCH_METHOD), DISP_E_MEMBERNOTFOUND) << id;
    // Script engines call what may be either.
    EXPECT_EQ(late.call(L"Number", {}, DISPATCH_METHOD | DISPATCH_PROPERTYGET), S_OK);
}

TEST_F(Dispatch, ValuesOfTheDeclaredTypesArriveUnchanged) {
    VARIANT byte = number(0), small = number(0), big = number(0), flag = number(0);
    byte.vt = VT_UI1;
    byte.bVal = 200;
    small.vt = VT_I2;
    small.iVal = -300;
    big.vt = VT_I8;
    big.llVal = -12345678901234;
    flag.vt = VT_BOOL;
    flag.boolVal = 1;
    EXPECT_EQ(late.call(L"EveryValue",
                        {byte, small, number(-70000), Variant::of(0.1F).get(), Variant::of(0.1).get(),
                         Variant::ofDate(2.25).get(), Variant::of(std::wstring_view(L"a\0b", 3)).get(), flag,
                         Variant::of(L"any").get(), number(2), big}),
              S_OK);
    EXPECT_EQ(late.text(),
              L"200|-300|-70000|0.1|0.1|2.25|a" + std::wstring(1, L'\0') + L"b|1|any|2|-12345678901234");
}

TEST_F(Dispatch, ValuesOfOtherTypesAreConverted) {
    EXPECT_EQ(late.call(L"EveryValue",
                        {Variant::of(L"200").get(), Variant::of(-300.5).get(), Variant::of(L" -70000 ").get(),
                         Variant::of(L"0.1").get(), number(3), Variant::of(2.25).get(), number(12), number(7),
                         Variant::ofBool(true).get(), Variant::of(1.5F).get(), Variant::of(L"5").get()}),
              S_OK);
    EXPECT_EQ(late.text(), L"200|-300|-70000|0.1|3|2.25|12|-1|True|2|5");
}

TEST_F(Dispatch, EmptyIsZeroAndNoText) {
    const VARIANT empty = Variant().get();
    EXPECT_EQ(late.call(L"Three", {empty, empty, empty}), S_OK);
    EXPECT_EQ(late.text(), L"0|0|");
}

TEST_F(Dispatch, AWrongArgumentIsNamed) {
    const VARIANT good = number(1);
    for (const Variant& wrong : {Variant::of(L"x"), Variant::null(), Variant::missing()}) {
        const HRESULT expected = wrong.type() == VT_ERROR ? DISP_E_PARAMNOTOPTIONAL : DISP_E_TYPEMISMATCH;
        EXPECT_EQ(late.call(L"Three", {wrong.get(), good, good}), expected);
        EXPECT_EQ(late.bad, 2U);
        EXPECT_EQ(late.call(L"Three", {good, wrong.get(), good}), expected);
        EXPECT_EQ(late.bad, 1U);
    }
    EXPECT_EQ(late.call(L"Three", {good, good, Variant::null().get()}), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(late.bad, 0U);
    EXPECT_EQ(late.call(L"Three", {Variant::of(3e9).get(), good, good}), DISP_E_OVERFLOW);
    EXPECT_EQ(late.bad, 2U);
    com::SafeArray longs = com::SafeArray::of<LONG>(1);
    EXPECT_EQ(late.call(L"Three", {array(VT_I4, longs.get()), good, good}), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(late.call(L"Three", {Variant::of(static_cast<IDispatch*>(nullptr)).get(), good, good}),
              DISP_E_TYPEMISMATCH);
}

TEST_F(Dispatch, WhatTheCallerDoesNotWantIsNotGiven) {
    VARIANT arguments[] = {Variant::null().get(), number(1), number(1)};
    DISPPARAMS list{arguments, nullptr, 3, 0};
    EXPECT_EQ(dual()->Invoke(10, IID_NULL, 0, DISPATCH_METHOD, &list, nullptr, nullptr, nullptr),
              DISP_E_TYPEMISMATCH);
    arguments[0] = number(2);
    EXPECT_EQ(dual()->Invoke(10, IID_NULL, 0, DISPATCH_METHOD, &list, nullptr, nullptr, nullptr), S_OK);
}

TEST_F(Dispatch, ReferencesArriveAsTheirValues) {
    LONG a = 4;
    Variant b = Variant::of(L"2.5");
    com::Bstr text(L"c");
    BSTR c = text.get();
    EXPECT_EQ(late.call(L"Three", {ref(a), ref(b), ref(c)}), S_OK);
    EXPECT_EQ(late.text(), L"4|2.5|c");
    VARIANT twice = ref(b);
    EXPECT_EQ(late.call(L"Three", {ref(a), reference(VT_VARIANT, &twice), ref(c)}), S_OK);
    EXPECT_EQ(late.text(), L"4|2.5|c");
    EXPECT_EQ(late.call(L"Three", {reference(VT_I4, nullptr), ref(b), ref(c)}), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(late.call(L"Three", {reference(VT_VARIANT, nullptr), ref(b), ref(c)}), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(b.type(), VT_BSTR);
}

TEST_F(Dispatch, FloatsAndDoublesFindTheirRegisters) {
    EXPECT_EQ(late.call(L"Floats", {Variant::of(1.5F).get(), Variant::of(2.5).get(), Variant::of(3.5F).get(),
                                    Variant::of(4.5).get(), Variant::of(5.5F).get(), number(6)}),
              S_OK);
    EXPECT_EQ(late.result.type(), VT_R8);
    EXPECT_DOUBLE_EQ(late.result.get().dblVal, 1.5 + 25 + 350 + 4500 + 55000 + 600000);
}

TEST_F(Dispatch, AVariantArgumentKeepsItsKind) {
    const auto kindOf = [&](const VARIANT& v) {
        EXPECT_EQ(late.call(L"Kind", {v}), S_OK);
        return static_cast<VARTYPE>(late.result.get().lVal);
    };
    EXPECT_EQ(kindOf(Variant().get()), VT_EMPTY);
    EXPECT_EQ(kindOf(Variant::null().get()), VT_NULL);
    EXPECT_EQ(kindOf(Variant::missing().get()), VT_ERROR);
    EXPECT_EQ(kindOf(Variant::of(static_cast<IDispatch*>(nullptr)).get()), VT_DISPATCH);
    EXPECT_EQ(kindOf(Variant::of(1.5F).get()), VT_R4);
    Variant variable = Variant::of(2.5F);
    EXPECT_EQ(kindOf(ref(variable)), VT_R4);
    LONG number32 = 1;
    EXPECT_EQ(kindOf(ref(number32)), VT_I4);
    com::SafeArray longs = com::SafeArray::of<LONG>(1);
    SAFEARRAY* pointer = longs.get();
    EXPECT_EQ(kindOf(refArray(VT_I4, pointer)), VT_ARRAY | VT_I4);
}

TEST_F(Dispatch, ABooleanResultIsZeroOrMinusOne) {
    VARIANT odd = Variant::ofBool(true).get();
    odd.boolVal = 4;
    EXPECT_EQ(late.call(L"Flag", {odd}), S_OK);
    EXPECT_EQ(late.result.type(), VT_BOOL);
    EXPECT_EQ(late.result.get().boolVal, VARIANT_TRUE);
    EXPECT_EQ(late.call(L"Flag", {Variant::of(L"false").get()}), S_OK);
    EXPECT_EQ(late.result.get().boolVal, VARIANT_FALSE);
}

TEST_F(Dispatch, WhatIsLeftOutHasItsDefault) {
    EXPECT_EQ(late.call(L"Optional", {number(1)}), S_OK);
    EXPECT_EQ(late.text(), L"1|7|seven|missing");
    EXPECT_EQ(late.call(L"Optional", {number(1), Variant::missing().get(), Variant::of(L"x").get()}), S_OK);
    EXPECT_EQ(late.text(), L"1|7|x|missing");
    EXPECT_EQ(late.callNamed(L"Optional", {L"d", L"a"}, {Variant::of(L"last").get(), number(2)}), S_OK);
    EXPECT_EQ(late.text(), L"2|7|seven|last");
}

TEST_F(Dispatch, TheNumberOfArgumentsIsChecked) {
    EXPECT_EQ(late.call(L"Optional"), DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(late.call(L"Three", {number(1), number(2)}), DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(late.call(L"Three", {number(1), number(2), number(3), number(4)}), DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(late.get(L"Number", {number(1)}), DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(late.callNamed(L"Optional", {L"b"}, {number(1)}), DISP_E_PARAMNOTOPTIONAL);
}

TEST_F(Dispatch, NamedArgumentsAreChecked) {
    EXPECT_EQ(late.callId(13, {77}, {number(1), number(2)}, DISPATCH_METHOD), DISP_E_PARAMNOTFOUND);
    EXPECT_EQ(late.bad, 0U);
    // Given twice: by position and by name.
    EXPECT_EQ(late.callId(13, {0}, {number(1), number(2)}, DISPATCH_METHOD), DISP_E_PARAMNOTFOUND);
    EXPECT_EQ(late.callId(13, {DISPID_PROPERTYPUT}, {number(1), number(2)}, DISPATCH_METHOD),
              DISP_E_PARAMNOTFOUND);
}

TEST_F(Dispatch, AFailureComesWithItsErrorInfo) {
    EXPECT_EQ(late.call(L"Fail", {number(E_ACCESSDENIED), Variant::of(L"Not today").get()}),
              DISP_E_EXCEPTION);
    EXPECT_EQ(late.exception.scode, E_ACCESSDENIED);
    EXPECT_EQ(late.description(), L"Not today");
    EXPECT_EQ(late.source(), L"ToolkitTest.Probe");
    EXPECT_EQ(late.exception.wCode, 0);
    EXPECT_EQ(late.result.type(), VT_EMPTY);
    // Taken off the thread.
    com::Ptr<IErrorInfo> info;
    EXPECT_EQ(GetErrorInfo(0, info.receive()), S_FALSE);
}

TEST_F(Dispatch, AFailureWithoutErrorInfoHasItsNumbersText) {
    EXPECT_EQ(late.call(L"FailPlain", {number(com::unsetObject)}), DISP_E_EXCEPTION);
    EXPECT_EQ(late.exception.scode, com::unsetObject);
    EXPECT_EQ(late.description(), L"Object variable or With block variable not set");
    EXPECT_EQ(late.call(L"FailPlain", {number(E_FAIL)}), DISP_E_EXCEPTION);
    EXPECT_EQ(late.description(), L"Automation error");
}

TEST_F(Dispatch, WithoutAnExceptionTheCallerGetsTheMembersOwnResult) {
    const Variant text = Variant::of(L"");
    VARIANT arguments[] = {text.get(), number(E_ACCESSDENIED)};
    DISPPARAMS list{arguments, nullptr, 2, 0};
    EXPECT_EQ(dual()->Invoke(50, IID_NULL, 0, DISPATCH_METHOD, &list, nullptr, nullptr, nullptr),
              E_ACCESSDENIED);
    com::Ptr<IErrorInfo> info;
    EXPECT_EQ(GetErrorInfo(0, info.receive()), S_OK);
}

}  // namespace
}  // namespace vtdn::test
