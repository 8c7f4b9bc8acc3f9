// Late-bound calls: arguments by reference, arrays and objects, from exact-typed callers and from scripts.
#include <gtest/gtest.h>

#include "com/safe_array.h"
#include "probe.h"
#include "support/late.h"

namespace vtdn::test {
namespace {

using com::ArrayView;
using com::SafeArray;
using com::Variant;

VARIANT number(LONG value) {
    return Variant::of(value).get();
}

/// A script's array: of VARIANT, one dimension.
SafeArray scriptArray(std::initializer_list<Variant> values, LONG lower = 0) {
    SAFEARRAYBOUND bound{static_cast<ULONG>(values.size()), lower};
    SafeArray made(SafeArrayCreate(VT_VARIANT, 1, &bound));
    ArrayView<VARIANT> view(made.get());
    std::size_t i = 0;
    for (const Variant& value : values) Variant(value).detachTo(&view[i++]);
    return made;
}

/// A script's variable with an array in it.
Variant variableOf(SafeArray array) {
    Variant variable;
    variable.inOut()->vt = VT_ARRAY | VT_VARIANT;
    variable.inOut()->parray = array.detach();
    return variable;
}

/// What a script reads: the elements as texts, with their types.
std::wstring contents(const VARIANT& variable) {
    if (variable.vt != (VT_ARRAY | VT_VARIANT)) return L"no array of VARIANT";
    std::wstring list = std::to_wstring(com::bounds(variable.parray).lower) + L":";
    for (const VARIANT& element : ArrayView<VARIANT>(variable.parray)) {
        com::Bstr text;
        list += L" " + std::to_wstring(element.vt) + L"=";
        list += FAILED(com::toText(element, text)) ? std::wstring(L"?") : std::wstring(text.view());
    }
    return list;
}

class References : public testing::Test {
  protected:
    com::Ptr<Probe> probe = com::make<Probe>(5);
    Late late{static_cast<IProbe*>(probe.get())};
};

TEST_F(References, OfTheDeclaredTypesArePassedAsTheyAre) {
    LONG longValue = 4;
    float single = 1.5F;
    BSTR text = SysAllocString(L"ab");
    VARIANT_BOOL flag = VARIANT_FALSE;
    DATE when = 2.25;
    Variant anything = Variant::of(L"x");
    EXPECT_EQ(late.call(L"References", {ref(longValue), ref(single), ref(text), reference(VT_BOOL, &flag),
                                        reference(VT_DATE, &when), ref(anything)}),
              S_OK);
    EXPECT_EQ(longValue, 8);
    EXPECT_EQ(single, 3.0F);
    EXPECT_EQ(com::Bstr::adopt(text).view(), L"abab");
    EXPECT_EQ(flag, VARIANT_TRUE);
    EXPECT_EQ(when, 4.5);
    EXPECT_EQ(com::view(anything.get().bstrVal), L"xx");
}

TEST_F(References, OfScriptsAreConvertedInAndBack) {
    Variant a = Variant::of(L"4"), b = Variant::of(3.0), c = Variant::of(LONG{12}), d,
            e = Variant::of(LONG{2}), f;
    EXPECT_EQ(late.call(L"References", {ref(a), ref(b), ref(c), ref(d), ref(e), ref(f)}), S_OK);
    EXPECT_EQ(a.type(), VT_I4);
    EXPECT_EQ(a.get().lVal, 8);
    EXPECT_EQ(b.type(), VT_R4);
    EXPECT_EQ(b.get().fltVal, 6.0F);
    EXPECT_EQ(c.type(), VT_BSTR);
    EXPECT_EQ(com::view(c.get().bstrVal), L"1212");
    EXPECT_EQ(d.type(), VT_BOOL);
    EXPECT_EQ(d.get().boolVal, VARIANT_TRUE);
    EXPECT_EQ(e.type(), VT_DATE);
    EXPECT_EQ(e.get().date, 4.0);
    EXPECT_EQ(f.type(), VT_BSTR);
}

TEST_F(References, OfScriptsThatAlreadyHoldTheTypeAreUsedInPlace) {
    Variant a = Variant::of(LONG{4}), b = Variant::of(1.5F), c = Variant::of(L"ab"),
            d = Variant::ofBool(true), e = Variant::ofDate(1), f = Variant::of(L"x");
    EXPECT_EQ(late.call(L"References", {ref(a), ref(b), ref(c), ref(d), ref(e), ref(f)}), S_OK);
    EXPECT_EQ(a.get().lVal, 8);
    EXPECT_EQ(com::view(c.get().bstrVal), L"abab");
    EXPECT_EQ(d.get().boolVal, VARIANT_FALSE);
}

TEST_F(References, ThroughAReferenceToAVariableReachTheVariable) {
    Variant inner = Variant::of(L"4");
    VARIANT outer = ref(inner);
    LONG zero = 0;
    Variant text;
    EXPECT_EQ(late.call(L"References", {reference(VT_VARIANT, &outer), number(0), ref(text), number(0),
                                        number(0), number(0)}),
              S_OK);
    EXPECT_EQ(inner.type(), VT_I4);
    EXPECT_EQ(inner.get().lVal, 8);
    // A variable that refers to a number of the declared type.
    zero = 21;
    VARIANT toNumber = ref(zero);
    EXPECT_EQ(late.call(L"References", {reference(VT_VARIANT, &toNumber), number(0), ref(text), number(0),
                                        number(0), number(0)}),
              S_OK);
    EXPECT_EQ(zero, 42);
}

TEST_F(References, TakeValuesAsWellAndDropTheResult) {
    const VARIANT one = number(1);
    EXPECT_EQ(late.call(L"References", {one, one, one, one, one, one}), S_OK);
    EXPECT_EQ(one.lVal, 1);
}

TEST_F(References, OfAnotherTypeAreRefused) {
    double wrong = 1;
    const VARIANT one = number(1);
    EXPECT_EQ(late.call(L"References", {reference(VT_R8, &wrong), one, one, one, one, one}),
              DISP_E_TYPEMISMATCH);
    EXPECT_EQ(late.bad, 5U);
    Variant text = Variant::of(L"no number");
    EXPECT_EQ(late.call(L"References", {one, ref(text), one, one, one, one}), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(late.bad, 4U);
    EXPECT_EQ(com::view(text.get().bstrVal), L"no number");
    EXPECT_EQ(late.call(L"References", {reference(VT_VARIANT, nullptr), one, one, one, one, one}),
              DISP_E_TYPEMISMATCH);
    EXPECT_EQ(late.call(L"References", {Variant::missing().get(), one, one, one, one, one}),
              DISP_E_PARAMNOTOPTIONAL);
}

TEST_F(References, OutArgumentsReplaceWhatWasThere) {
    LONG longValue = 1;
    BSTR text = SysAllocString(L"old");
    EXPECT_EQ(late.call(L"Outs", {ref(longValue), ref(text)}), S_OK);
    EXPECT_EQ(longValue, 5);
    EXPECT_EQ(com::Bstr::adopt(text).view(), L"out");
    Variant a = Variant::of(L"old"), b = Variant::of(L"old");
    EXPECT_EQ(late.call(L"Outs", {ref(a), ref(b)}), S_OK);
    EXPECT_EQ(a.get().lVal, 5);
    EXPECT_EQ(com::view(b.get().bstrVal), L"out");
}

TEST_F(References, StayWhatTheyWereWhenTheCallFails) {
    Variant a = Variant::of(L"4"), b = Variant::of(LONG{3}), c = variableOf(scriptArray({Variant::of(1.5F)}));
    EXPECT_EQ(late.call(L"FailLate", {ref(a), ref(b), ref(c)}), DISP_E_EXCEPTION);
    EXPECT_EQ(late.description(), L"Failed late");
    EXPECT_EQ(com::view(a.get().bstrVal), L"4");
    EXPECT_EQ(b.get().lVal, 3);
    EXPECT_EQ(contents(c.get()), L"0: 4=1.5");

    LONG number32 = 4;
    BSTR text = SysAllocString(L"old");
    SAFEARRAY* values = SafeArray::of<float>(2).detach();
    EXPECT_EQ(late.call(L"FailLate", {ref(number32), ref(text), refArray(VT_R4, values)}), DISP_E_EXCEPTION);
    EXPECT_EQ(com::Bstr::adopt(text).view(), L"half done");
    EXPECT_EQ(com::bounds(SafeArray(values).get()), (com::Bounds{0, 4}));
}

TEST_F(References, ToTypedArraysArePassedAsTheyAre) {
    SAFEARRAY* singles = SafeArray::of<float>(3).detach();
    SAFEARRAY* const before = singles;
    EXPECT_EQ(late.call(L"Singles", {refArray(VT_R4, singles), number(3)}), S_OK);
    EXPECT_EQ(singles, before);
    EXPECT_EQ(ArrayView<float>(singles)[2], 2.5F);
    EXPECT_EQ(late.call(L"Singles", {refArray(VT_R4, singles), number(5)}), S_OK);
    EXPECT_EQ(ArrayView<float>(singles).size(), 5U);
    SafeArray owned(singles);
}

TEST_F(References, ToScriptArraysComeBackAsScriptArrays) {
    struct Case {
        const wchar_t* member;
        const wchar_t* expected;
    };
    for (const Case& c : {Case{L"Singles", L"0: 4=0.5 4=1.5"}, Case{L"Longs", L"0: 3=0 3=1"},
                          Case{L"Flags", L"0: 11=False 11=True"}, Case{L"Texts", L"0: 8=t0 8=t1"},
                          Case{L"Variants", L"0: 3=0 3=1"}}) {
        // Another size, the same size, another lower bound.
        for (Variant variable : {variableOf(scriptArray({Variant(), Variant(), Variant()})),
                                 variableOf(scriptArray({Variant::of(LONG{1}), Variant()})),
                                 variableOf(scriptArray({Variant(), Variant()}, 1)),
                                 variableOf(scriptArray({Variant(), Variant()}, -5))}) {
            EXPECT_EQ(late.call(c.member, {ref(variable), number(2)}), S_OK) << c.member;
            EXPECT_EQ(contents(variable.get()), c.expected) << c.member;
        }
    }
}

TEST_F(References, ToAScriptArrayOfItsOwnComeBackInIt) {
    // How script engines hold a declared array: the variable refers to it.
    SAFEARRAY* array = scriptArray({Variant(), Variant(), Variant()}).detach();
    Variant variable;
    *variable.inOut() = refArray(VT_VARIANT, array);
    EXPECT_EQ(late.call(L"Longs", {ref(variable), number(3)}), S_OK);
    EXPECT_EQ(contents(test::array(VT_VARIANT, array)), L"0: 3=0 3=1 3=2");
    EXPECT_EQ(late.call(L"Longs", {refArray(VT_VARIANT, array), number(2)}), S_OK);
    EXPECT_EQ(contents(test::array(VT_VARIANT, array)), L"0: 3=0 3=1");
    variable.inOut()->vt = VT_EMPTY;
    SafeArray owned(array);
}

TEST_F(References, ToAFixedScriptArrayFillItButCannotResizeIt) {
    SAFEARRAY* array = scriptArray({Variant(), Variant()}).detach();
    array->fFeatures |= FADF_FIXEDSIZE;
    EXPECT_EQ(late.call(L"Longs", {refArray(VT_VARIANT, array), number(2)}), S_OK);
    EXPECT_EQ(contents(test::array(VT_VARIANT, array)), L"0: 3=0 3=1");
    EXPECT_EQ(late.call(L"Longs", {refArray(VT_VARIANT, array), number(3)}), DISP_E_ARRAYISLOCKED);
    EXPECT_EQ(contents(test::array(VT_VARIANT, array)), L"0: 3=0 3=1");
    array->fFeatures &= static_cast<USHORT>(~FADF_FIXEDSIZE);
    SafeArray owned(array);
}

TEST_F(References, ToALockedScriptArrayAreRefusedBeforeTheCall) {
    Variant variable = variableOf(scriptArray({Variant(), Variant()}));
    {
        const ArrayView<VARIANT> lock(variable.get().parray);
        EXPECT_EQ(late.call(L"Longs", {ref(variable), number(2)}), DISP_E_ARRAYISLOCKED);
        EXPECT_EQ(late.bad, 1U);
    }
    EXPECT_EQ(late.call(L"Longs", {ref(variable), number(2)}), S_OK);
}

TEST_F(References, ToAVariableWithATypedArrayKeepItsType) {
    Variant variable;
    variable.inOut()->vt = VT_ARRAY | VT_R4;
    variable.inOut()->parray = SafeArray::of<float>(1).detach();
    EXPECT_EQ(late.call(L"Singles", {ref(variable), number(2)}), S_OK);
    EXPECT_EQ(variable.type(), VT_ARRAY | VT_R4);
    EXPECT_EQ(ArrayView<float>(variable.get().parray)[1], 1.5F);
}

TEST_F(References, ToAnEmptyVariableMeanNoArray) {
    Variant variable;
    EXPECT_EQ(late.call(L"Longs", {ref(variable), number(-1)}), S_OK);
    EXPECT_EQ(variable.type(), VT_EMPTY);
    EXPECT_EQ(late.call(L"Longs", {ref(variable), number(2)}), DISP_E_EXCEPTION);
    EXPECT_EQ(late.exception.scode, DISP_E_BADINDEX);
    EXPECT_EQ(variable.type(), VT_EMPTY);
}

TEST_F(References, ToAnErasedArrayBecomeEmpty) {
    Variant variable = variableOf(scriptArray({Variant(), Variant()}));
    EXPECT_EQ(late.call(L"Erase", {ref(variable)}), S_OK);
    EXPECT_EQ(variable.type(), VT_EMPTY);
    SAFEARRAY* typed = SafeArray::of<LONG>(2).detach();
    EXPECT_EQ(late.call(L"Erase", {refArray(VT_I4, typed)}), S_OK);
    EXPECT_EQ(typed, nullptr);
}

TEST_F(References, ToArraysOfAnotherTypeAreRefused) {
    SAFEARRAY* longs = SafeArray::of<LONG>(2).detach();
    EXPECT_EQ(late.call(L"Singles", {refArray(VT_I4, longs), number(2)}), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(late.bad, 1U);
    Variant variable;
    *variable.inOut() = test::array(VT_I4, longs);
    EXPECT_EQ(late.call(L"Singles", {ref(variable), number(2)}), DISP_E_TYPEMISMATCH);
    for (Variant wrong : {Variant::of(LONG{1}), Variant::null(), Variant::of(L"x")})
        EXPECT_EQ(late.call(L"Singles", {ref(wrong), number(2)}), DISP_E_TYPEMISMATCH);
    Variant texts = variableOf(scriptArray({Variant::of(L"x")}));
    EXPECT_EQ(late.call(L"Singles", {ref(texts), number(2)}), DISP_E_TYPEMISMATCH);
}

TEST_F(References, ToTwoDimensionsReachTheCalleeAsTwoDimensions) {
    SAFEARRAYBOUND bounds[] = {{2, 0}, {3, 1}};
    Variant variable = variableOf(SafeArray(SafeArrayCreate(VT_VARIANT, 2, bounds)));
    EXPECT_EQ(late.call(L"Longs", {ref(variable), number(2)}), DISP_E_EXCEPTION);
    EXPECT_EQ(late.exception.scode, DISP_E_BADINDEX);
    EXPECT_EQ(late.call(L"Longs", {ref(variable), number(-1)}), S_OK);
    LONG lower = 0, upper = 0;
    SafeArrayGetLBound(variable.get().parray, 2, &lower);
    SafeArrayGetUBound(variable.get().parray, 2, &upper);
    EXPECT_EQ(lower, 1);
    EXPECT_EQ(upper, 3);
}

TEST_F(References, ArraysByValueAreConvertedAndLeftAlone) {
    const SafeArray numbers = scriptArray({Variant::of(1.5), Variant::of(L"2"), Variant::of(LONG{3})}, -1);
    EXPECT_EQ(late.call(L"Sum", {test::array(VT_VARIANT, numbers.get())}), S_OK);
    EXPECT_EQ(late.result.get().dblVal, 6.5);
    EXPECT_EQ(contents(test::array(VT_VARIANT, numbers.get())), L"-1: 5=1.5 8=2 3=3");
    Variant variable = variableOf(scriptArray({Variant::of(LONG{4})}));
    EXPECT_EQ(late.call(L"Sum", {ref(variable)}), S_OK);
    EXPECT_EQ(late.result.get().dblVal, 4.0);
    const SafeArray typed = SafeArray::of<float>(2);
    EXPECT_EQ(late.call(L"Sum", {test::array(VT_R4, typed.get())}), S_OK);
    // A by-reference argument gets a copy of an array by value, so the caller's stays.
    EXPECT_EQ(late.call(L"Singles", {test::array(VT_R4, typed.get()), number(7)}), S_OK);
    EXPECT_EQ(ArrayView<float>(typed.get()).size(), 2U);
}

TEST_F(References, AnArrayResultComesAsAScriptCanIndexIt) {
    EXPECT_EQ(late.call(L"MakeLongs", {number(3)}), S_OK);
    ASSERT_EQ(late.result.type(), VT_ARRAY | VT_VARIANT);
    const Variant made = late.result;
    const ArrayView<VARIANT> view(made.get().parray);
    ASSERT_EQ(view.size(), 3U);
    EXPECT_EQ(view[2].vt, VT_I4);
    EXPECT_EQ(view[2].lVal, 2);
    EXPECT_EQ(late.call(L"MakeLongs", {number(0)}), S_OK);
    EXPECT_EQ(late.result.type(), VT_EMPTY);
}

class Objects : public References {
  protected:
    static Variant objectOf(LONG value) {
        return Variant::of(static_cast<IProbe*>(com::make<Probe>(value).get()));
    }
    static LONG numberOf(const VARIANT& v) {
        LONG value = -1;
        if (v.vt == VT_DISPATCH && v.pdispVal) static_cast<IProbe*>(v.pdispVal)->get_Number(&value);
        return value;
    }
};

TEST_F(Objects, ArriveAsTheDeclaredInterface) {
    const Variant other = objectOf(7);
    EXPECT_EQ(late.call(L"Other", {other.get()}), S_OK);
    EXPECT_EQ(late.result.get().lVal, 7);
    Variant variable = other;
    EXPECT_EQ(late.call(L"Other", {ref(variable)}), S_OK);
    EXPECT_EQ(late.result.get().lVal, 7);
    VARIANT unknown = other.get();
    unknown.vt = VT_UNKNOWN;
    EXPECT_EQ(late.call(L"Other", {unknown}), S_OK);
    EXPECT_EQ(late.result.get().lVal, 7);
}

TEST_F(Objects, MayBeNull) {
    EXPECT_EQ(late.call(L"Other", {Variant::of(static_cast<IDispatch*>(nullptr)).get()}), S_OK);
    EXPECT_EQ(late.result.get().lVal, -1);
    EXPECT_EQ(late.call(L"MakeProbe", {number(0)}), S_OK);
    EXPECT_EQ(late.result.type(), VT_DISPATCH);
    EXPECT_EQ(late.result.get().pdispVal, nullptr);
}

TEST_F(Objects, OfAnotherClassAreRefused) {
    com::Ptr<ITypeInfo> foreign;
    ASSERT_EQ(probe->GetTypeInfo(0, 0, foreign.receive()), S_OK);
    VARIANT unknown = number(0);
    unknown.vt = VT_UNKNOWN;
    unknown.punkVal = foreign.get();
    EXPECT_EQ(late.call(L"Other", {unknown}), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(late.call(L"Other", {number(1)}), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(late.call(L"Other", {Variant::null().get()}), DISP_E_TYPEMISMATCH);
}

TEST_F(Objects, ByReferenceAreReplaced) {
    Variant variable = objectOf(7);
    EXPECT_EQ(late.call(L"Swap", {ref(variable)}), S_OK);
    EXPECT_EQ(numberOf(variable.get()), 5);
    Variant empty;
    EXPECT_EQ(late.call(L"Swap", {ref(empty)}), S_OK);
    EXPECT_EQ(numberOf(empty.get()), 7);
    IDispatch* typed = static_cast<IProbe*>(com::make<Probe>(9).detach());
    EXPECT_EQ(late.call(L"Swap", {reference(VT_DISPATCH, &typed)}), S_OK);
    EXPECT_EQ(numberOf(Variant::of(typed).get()), 7);
    com::Ptr<IDispatch>::adopt(typed).reset();
    EXPECT_EQ(late.get(L"Number"), S_OK);
    EXPECT_EQ(late.result.get().lVal, 9);
}

TEST_F(Objects, ComeAsResultsAndArrays) {
    EXPECT_EQ(late.call(L"MakeProbe", {number(3)}), S_OK);
    EXPECT_EQ(numberOf(late.result.get()), 3);
    EXPECT_EQ(late.call(L"MakeProbes", {number(4)}), S_OK);
    ASSERT_EQ(late.result.type(), VT_ARRAY | VT_VARIANT);
    const Variant made = late.result;
    EXPECT_EQ(numberOf(ArrayView<VARIANT>(made.get().parray)[3]), 3);
    EXPECT_EQ(late.call(L"AddProbes", {made.get()}), S_OK);
    EXPECT_EQ(late.result.get().lVal, 6);
}

TEST_F(Objects, InScriptArraysGoBothWays) {
    const SafeArray mixed = scriptArray({objectOf(3), Variant(), objectOf(4)});
    EXPECT_EQ(late.call(L"AddProbes", {test::array(VT_VARIANT, mixed.get())}), S_OK);
    EXPECT_EQ(late.result.get().lVal, 7);
    const SafeArray wrong = scriptArray({objectOf(3), Variant::of(LONG{1})});
    EXPECT_EQ(late.call(L"AddProbes", {test::array(VT_VARIANT, wrong.get())}), DISP_E_TYPEMISMATCH);

    Variant variable = variableOf(scriptArray({objectOf(3)}));
    EXPECT_EQ(late.call(L"Probes", {ref(variable), number(2)}), S_OK);
    ASSERT_EQ(variable.type(), VT_ARRAY | VT_VARIANT);
    const ArrayView<VARIANT> view(variable.get().parray);
    ASSERT_EQ(view.size(), 2U);
    EXPECT_EQ(numberOf(view[1]), 1);
}

TEST_F(Objects, AreAllReleased) {
    const LONG before = Probe::count();
    {
        Variant variable = variableOf(scriptArray({objectOf(3)}));
        EXPECT_EQ(late.call(L"Probes", {ref(variable), number(2)}), S_OK);
        EXPECT_EQ(late.call(L"MakeProbes", {number(4)}), S_OK);
        EXPECT_EQ(late.call(L"AddProbes", {Variant(late.result).get()}), S_OK);
        Variant object = objectOf(1);
        EXPECT_EQ(late.call(L"Swap", {ref(object)}), S_OK);
    }
    EXPECT_EQ(Probe::count(), before);
}

}  // namespace
}  // namespace vtdn::test
