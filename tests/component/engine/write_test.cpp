// Special function 6: storing one data item.
#include <cmath>

#include "on_engine.h"

namespace vtdn::embedded::test {
namespace {

/// A data item of another library.
class ForeignItem final : public DIDataArrayItem {
  public:
    com::Variant value;
    LONG mc = 0;
    HRESULT answer = S_OK;

    STDMETHODIMP QueryInterface(REFIID iid, void** out) noexcept override {
        *out =
            iid == __uuidof(DIDataArrayItem) || iid == IID_IUnknown || iid == IID_IDispatch ? this : nullptr;
        if (*out) AddRef();
        return *out ? S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() noexcept override { return ++references; }
    STDMETHODIMP_(ULONG) Release() noexcept override { return --references; }
    STDMETHODIMP GetTypeInfoCount(UINT*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                        UINT*) noexcept override {
        return E_NOTIMPL;
    }
    STDMETHODIMP get_Value(VARIANT* result) noexcept override {
        VariantInit(result);
        return FAILED(answer) ? answer : VariantCopy(result, value.inOut());
    }
    STDMETHODIMP put_Value(VARIANT) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP get_MC(LONG* result) noexcept override {
        *result = mc;
        return S_OK;
    }
    STDMETHODIMP put_MC(LONG) noexcept override { return E_NOTIMPL; }

    ULONG references = 1;
};

class EngineWrite : public OnEngine {
  protected:
    /// Calls a special function with these arguments; the failure must be a message too, unless there is
    /// none.
    Failure special(LONG id, std::vector<com::Variant> arguments, LONG lower = 0) {
        SAFEARRAYBOUND bound{static_cast<ULONG>(arguments.size()), lower};
        com::SafeArray array(SafeArrayCreate(VT_VARIANT, 1, &bound));
        {
            const com::ArrayView<VARIANT> view(array.get());
            for (std::size_t i = 0; i < arguments.size(); ++i) arguments[i].detachTo(&view[i]);
        }
        return call(id, array);
    }
    Failure call(LONG id, com::SafeArray& array) {
        Failure failure = failureOf([&] {
            const com::Variant result = param(hourPid).specialFunction(id, array);
            EXPECT_EQ(result.type(), VT_BOOL);
            EXPECT_EQ(result.get().boolVal, VARIANT_TRUE);
        });
        EXPECT_EQ(heard.take(),
                  failure.number == 0 ? std::vector<std::wstring>{} : std::vector{failure.description});
        return failure;
    }
    [[nodiscard]] static com::Variant item(const com::Variant& value, LONG mc) {
        const auto made = engine::DataItem::create();
        made.putValue(value);
        made.putMc(mc);
        return com::Variant::of(made.get());
    }
    [[nodiscard]] static com::Variant five() { return com::Variant::of(LONG{5}); }
};

}  // namespace

TEST_F(EngineWrite, ANewItemIsNullWithCodeZero) {
    const auto made = engine::DataItem::create();
    com::Variant value;
    made.value(value);
    EXPECT_TRUE(value.isNull());
    EXPECT_EQ(made.mc(), 0);
}

TEST_F(EngineWrite, AnItemTellsWhatWouldBeStored) {
    const auto made = engine::DataItem::create();
    made.putValue(com::Variant::ofBool(true));
    com::Variant value;
    made.value(value);
    EXPECT_EQ(value.type(), VT_I4);
    EXPECT_EQ(value.get().lVal, -1);
}

TEST_F(EngineWrite, AValueThatCannotBeKeptIsRefusedWhenItIsPut) {
    const auto made = engine::DataItem::create();
    made.putValue(five());
    const Failure failure = failureOf([&] { made.putValue(com::Variant::of(std::nan(""))); });
    EXPECT_EQ(failure.number, 6);
    EXPECT_NE(failure.description.find(L"NaN"), std::wstring::npos);
    com::Variant value;
    made.value(value);
    EXPECT_EQ(value.get().lVal, 5) << "A refused value leaves the one before";
}

TEST_F(EngineWrite, WhatIsStoredIsReadByAnotherConnection) {
    write(hourPid, hour(3), com::Variant::of(2.5F), 7);
    store::Site other(connections(), "DEMO");
    EXPECT_EQ(other.read(hourPid, store::timeOf({2007, 3, 25, 3, 0, 0})), (store::Item{2.5F, 7}));
}

TEST_F(EngineWrite, TextsSurviveWithNulAndBeyondTheBasicPlane) {
    using namespace std::string_literals;
    const std::wstring text = L"a\0b \u4e2d \U0001F3ED"s;
    write(hourPid, hour(4), com::Variant::of(text), 1);
    EXPECT_EQ(com::view(read(hourPid, hour(4)).get().bstrVal), text);
}

TEST_F(EngineWrite, TheStoredItemChangedAndStoredAgainKeepsTheRest) {
    write(hourPid, hour(5), com::Variant::of(2.5F), 7);
    const auto stored = param(hourPid).dataItem(hour(5));
    stored.putMc(9);
    storeItem(param(hourPid), hour(5), stored.get());
    const auto again = param(hourPid).dataItem(hour(5));
    com::Variant value;
    again.value(value);
    EXPECT_EQ(value.get().fltVal, 2.5F);
    EXPECT_EQ(again.mc(), 9);
}

TEST_F(EngineWrite, AnyCodeIsStoredKnownOrNot) {
    for (const LONG mc : {0L, -1L, LONG_MAX, LONG_MIN, 99L}) {
        write(hourPid, hour(6), five(), mc);
        EXPECT_EQ(param(hourPid).dataItem(hour(6)).mc(), mc);
    }
}

TEST_F(EngineWrite, TheArgumentsMayHaveAnyLowerBound) {
    for (const LONG lower : {-3L, 1L, 100L})
        EXPECT_EQ(special(6, {com::Variant::ofDate(hour(1)), item(five(), 1)}, lower).number, 0) << lower;
}

TEST_F(EngineWrite, TheTimeMayBeASerialNumber) {
    EXPECT_EQ(special(6, {com::Variant::of(hour(1)), item(five(), 1)}).number, 0);
    EXPECT_EQ(read(hourPid, hour(1)).get().lVal, 5);
}

TEST_F(EngineWrite, ArgumentsByReferenceAreFollowed) {
    com::Variant time = com::Variant::ofDate(hour(2));
    com::Variant made = item(five(), 1);
    com::SafeArray array = com::SafeArray::of<VARIANT>(2);
    {
        const com::ArrayView<VARIANT> view(array.get());
        view[0].vt = view[1].vt = VT_BYREF | VT_VARIANT;
        view[0].pvarVal = time.inOut();
        view[1].pvarVal = made.inOut();
    }
    EXPECT_EQ(call(6, array).number, 0);
    EXPECT_EQ(read(hourPid, hour(2)).get().lVal, 5);
}

TEST_F(EngineWrite, AnItemOfAnotherLibraryIsStored) {
    ForeignItem foreign;
    foreign.value = com::Variant::of(std::wstring_view(L"N/A"));
    foreign.mc = 4;
    storeItem(param(hourPid), hour(8), &foreign);
    EXPECT_EQ(com::view(read(hourPid, hour(8)).get().bstrVal), L"N/A");
    EXPECT_EQ(param(hourPid).dataItem(hour(8)).mc(), 4);
    EXPECT_EQ(foreign.references, 1U);
}

TEST_F(EngineWrite, AnItemOfAnotherLibraryThatFailsOrHoldsNoValueIsRefused) {
    ForeignItem foreign;
    foreign.answer = E_NOTIMPL;
    EXPECT_EQ(special(6, {com::Variant::ofDate(hour(1)), com::Variant::of(&foreign)}).number, 445);
    foreign.answer = S_OK;
    foreign.value = com::Variant::of(static_cast<IDispatch*>(nullptr));
    EXPECT_EQ(special(6, {com::Variant::ofDate(hour(1)), com::Variant::of(&foreign)}).number, 13);
    foreign.value = com::Variant::of(HUGE_VAL);
    EXPECT_EQ(special(6, {com::Variant::ofDate(hour(1)), com::Variant::of(&foreign)}).number, 6);
    EXPECT_EQ(foreign.references, 1U);
    EXPECT_EQ(read(hourPid, hour(1)).type(), VT_NULL);
}

TEST_F(EngineWrite, OtherArgumentsAreRefused) {
    const auto date = com::Variant::ofDate(hour(1));
    EXPECT_EQ(special(6, {}).number, 450);
    EXPECT_EQ(special(6, {date}).number, 450);
    EXPECT_EQ(special(6, {date, item(five(), 1), five()}).number, 450);
    EXPECT_EQ(special(6, {item(five(), 1), date}).number, 13);
    EXPECT_EQ(special(6, {com::Variant::of(std::wstring_view(L"2007-03-25")), item(five(), 1)}).number, 13);
    EXPECT_EQ(special(6, {com::Variant::null(), item(five(), 1)}).number, 13);
    EXPECT_EQ(special(6, {date, five()}).number, 13);
    EXPECT_EQ(special(6, {date, com::Variant::missing()}).number, 13);
    EXPECT_EQ(special(6, {date, com::Variant::of(static_cast<IDispatch*>(nullptr))}).number, 91);
    EXPECT_EQ(special(6, {date, com::Variant::of(engine.get())}).number, 13);
    EXPECT_EQ(read(hourPid, hour(1)).type(), VT_NULL);
}

TEST_F(EngineWrite, OtherArraysAreRefused) {
    com::SafeArray none;
    EXPECT_EQ(call(6, none).number, 13);
    com::SafeArray numbers = com::SafeArray::of<LONG>(2);
    EXPECT_EQ(call(6, numbers).number, 13);
    SAFEARRAYBOUND bounds[]{{2, 0}, {2, 0}};
    com::SafeArray square(SafeArrayCreate(VT_VARIANT, 2, bounds));
    EXPECT_EQ(call(6, square).number, 13);
}

TEST_F(EngineWrite, OtherFunctionsAreRefused) {
    for (const LONG id : {0L, 5L, 7L, 31L, 34L, 100L, 107L, -6L, LONG_MAX}) {
        const Failure failure = special(id, {com::Variant::ofDate(hour(1)), item(five(), 1)});
        EXPECT_EQ(failure.number, 5) << id;
        EXPECT_NE(failure.description.find(std::to_wstring(id)), std::wstring::npos) << failure.description;
        for (const wchar_t* known :
             {L" 6 ", L" 32 ", L" 33 ", L" 101 ", L" 102 ", L" 103 ", L" 104 ", L" 105 ", L" 106 "})
            EXPECT_NE(failure.description.find(known), std::wstring::npos) << failure.description;
    }
}

TEST_F(EngineWrite, WhatTheStoreRefusesIsAnErrorAndAMessage) {
    const auto refused = [&](LONG pid, DATE at) {
        Failure failure = failureOf([&] { write(pid, at, five(), 1); });
        EXPECT_EQ(heard.take(), std::vector{failure.description});
        return failure;
    };
    EXPECT_EQ(refused(limitPid, hour(1)).number, 70);
    EXPECT_EQ(refused(formulaPid, hour(1)).number, 70);
    EXPECT_EQ(refused(averagePid, hour(1)).number, 70);
    const Failure off = refused(hourPid, hour(1.5));
    EXPECT_EQ(off.number, 5);
    EXPECT_NE(off.description.find(L"2007-03-25 01:30"), std::wstring::npos) << off.description;
    EXPECT_EQ(refused(monthPid, hour(0)).number, 5);
    EXPECT_EQ(refused(hourPid, 1e10).number, 6);
}

TEST_F(EngineWrite, TheErrorInfoNamesTheEngineAsItsSource) {
    com::SafeArray none;
    com::Variant result;
    const HRESULT hr = param(hourPid).get()->SpecialFunction(6, none.inOut(), result.receive());
    const com::Error error = com::lastError(hr);
    ASSERT_TRUE(error.info());
    com::Bstr source;
    error.info()->GetSource(source.receive());
    EXPECT_EQ(source.view(), L"VTEngine");
}

}  // namespace vtdn::embedded::test
