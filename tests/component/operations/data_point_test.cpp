// A data point's object: its members with a data point of the engine behind it and without.
#include "occurrences/data_point.h"

#include <array>

#include "operations/on_strict_engine.h"
#include "operations/records.h"

namespace vtdn::test {
namespace {

using com::Variant;

constexpr DATE when = 39448.25;

using Read = HRESULT (STDMETHODCALLTYPE _DataPointBasicWrapper::*)(VARIANT*);
using Write = HRESULT (STDMETHODCALLTYPE _DataPointBasicWrapper::*)(VARIANT);
using Call0 = HRESULT (STDMETHODCALLTYPE _DataPointBasicWrapper::*)();
using Question = HRESULT (STDMETHODCALLTYPE _DataPointBasicWrapper::*)(VARIANT_BOOL*);

/// The value and the monitor code, which follow the same rules.
struct Numeric {
    std::string member;
    Read read;
    Write write;
    Question isNull;
    Call0 clear;
};
const std::array<Numeric, 2> numerics = {
    {{"Blank.NValue", &_DataPointBasicWrapper::get_NValue, &_DataPointBasicWrapper::put_NValue,
      &_DataPointBasicWrapper::get_IsNValueNull, &_DataPointBasicWrapper::SetNValueToNull},
     {"Blank.MC", &_DataPointBasicWrapper::get_MC, &_DataPointBasicWrapper::put_MC,
      &_DataPointBasicWrapper::get_IsMCNull, &_DataPointBasicWrapper::SetMCToNull}}};

/// The two texts, which follow the same rules.
struct Text {
    std::string member;
    HRESULT (STDMETHODCALLTYPE _DataPointBasicWrapper::*read)(BSTR*);
    HRESULT (STDMETHODCALLTYPE _DataPointBasicWrapper::*write)(BSTR);
};
const std::array<Text, 2> texts = {
    {{"Blank.OccDataXML", &_DataPointBasicWrapper::get_OccDataXML, &_DataPointBasicWrapper::put_OccDataXML},
     {"Blank.XValueXML", &_DataPointBasicWrapper::get_XValueXML, &_DataPointBasicWrapper::put_XValueXML}}};

Variant of(VARTYPE type, auto set) {
    Variant v;
    set(*v.inOut());
    v.inOut()->vt = type;
    return v;
}
Variant shortOf(SHORT value) {
    return of(VT_I2, [=](VARIANT& v) { v.iVal = value; });
}
Variant byteOf(BYTE value) {
    return of(VT_UI1, [=](VARIANT& v) { v.bVal = value; });
}
Variant longLongOf(LONGLONG value) {
    return of(VT_I8, [=](VARIANT& v) { v.llVal = value; });
}
Variant currencyOf(double value) {
    return of(VT_CY, [=](VARIANT& v) { EXPECT_EQ(VarCyFromR8(value, &v.cyVal), S_OK); });
}
Variant decimalOf(double value) {
    return of(VT_DECIMAL, [=](VARIANT& v) { EXPECT_EQ(VarDecFromR8(value, &v.decVal), S_OK); });
}
Variant arrayOf(VARTYPE type) {
    return of(static_cast<VARTYPE>(VT_ARRAY | type),
              [=](VARIANT& v) { v.parray = SafeArrayCreateVector(type, 0, 2); });
}

/// Nothing of these counts as a number.
std::vector<Variant> noNumbers(IDispatch* object) {
    return {Variant::of(L"abc"),
            Variant::of(L""),
            Variant::of(L" "),
            Variant::of(L"12.5 kg"),
            Variant::of(L"1e999"),
            of(VT_BSTR, [](VARIANT& v) { v.bstrVal = nullptr; }),
            Variant(),
            Variant::null(),
            Variant::ofDate(when),
            Variant::missing(),
            Variant::of(static_cast<IDispatch*>(nullptr)),
            Variant::of(object),
            arrayOf(VT_R8),
            arrayOf(VT_VARIANT)};
}

class DataPointMembers : public OnStrictEngine {
  protected:
    DataPointMembers() {
        engine.expect({{"new DIDataPoint"}, {"Blank.Initialise(39448.25)"}});
        EXPECT_EQ(client->MakeBlankDataPointWrapper(when, point.receive()), S_OK);
    }
    template <class M, class... A>
    Failure failure(M member, A... arguments) {
        const HRESULT result = (point.get()->*member)(arguments...);
        EXPECT_TRUE(FAILED(result));
        return takeFailure(result);
    }

    DataPoint point;
};

TEST_F(DataPointMembers, TheTimeStampIsTheEngines) {
    for (const double stamp : {0.0, when, -1.5, 401768.99999}) {
        engine.expect({{"Blank.TStamp", stamp}});
        EXPECT_EQ(read(point, &_DataPointBasicWrapper::get_TStamp), stamp);
    }
}

TEST_F(DataPointMembers, AValueThatIsANumberIsReadAsItIs) {
    for (const Numeric& one : numerics) {
        for (const Variant& value :
             {Variant::of(LONG{12}), Variant::of(-12.5), Variant::of(12.5F), shortOf(-7), byteOf(7),
              longLongOf(1LL << 40), currencyOf(1.25), decimalOf(2.5), Variant::ofBool(true),
              Variant::ofBool(false), Variant::of(L"12.5"), Variant::of(L" -3 "), Variant::of(L"1e3")}) {
            engine.expect({{one.member, value}});
            const Variant got = readValue(point, one.read);
            EXPECT_EQ(got.type(), value.type()) << one.member;
            EXPECT_EQ(VarCmp(const_cast<VARIANT*>(&got.get()), const_cast<VARIANT*>(&value.get()),
                             LOCALE_INVARIANT, 0),
                      static_cast<HRESULT>(VARCMP_EQ))
                << one.member << " of type " << value.type();
        }
    }
}

TEST_F(DataPointMembers, AValueThatIsNoNumberReadsAsNull) {
    for (const Numeric& one : numerics) {
        for (const Variant& value : noNumbers(client.get())) {
            engine.expect({{one.member, value}});
            EXPECT_TRUE(readValue(point, one.read).isNull()) << one.member << " of type " << value.type();
        }
    }
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(DataPointMembers, ANumberIsWrittenAsItCame) {
    for (const Numeric& one : numerics) {
        const struct {
            Variant value;
            const char* written;
        } rows[] = {{Variant::of(LONG{12}), "I4 12"},     {Variant::of(12.5), "R8 12.5"},
                    {Variant::of(-12.5F), "R4 -12.5"},    {shortOf(7), "I2 7"},
                    {Variant::ofBool(true), "Bool True"}, {Variant::of(L"12.5"), "BSTR '12.5'"},
                    {Variant::of(L" -3 "), "BSTR ' -3 '"}};
        for (const auto& row : rows) {
            engine.expect({{one.member + " = " + row.written}});
            EXPECT_EQ((point.get()->*one.write)(row.value.get()), S_OK);
            engine.verify();
        }
    }
}

TEST_F(DataPointMembers, ANumberInAClientsVariableIsWrittenAsAValue) {
    for (const Numeric& one : numerics) {
        LONG number = 12;
        VARIANT byReference{};
        byReference.vt = VT_BYREF | VT_I4;
        byReference.plVal = &number;
        engine.expect({{one.member + " = I4 12"}});
        EXPECT_EQ((point.get()->*one.write)(byReference), S_OK);
        Variant variable = Variant::of(L"12.5");
        VARIANT outer{};
        outer.vt = VT_BYREF | VT_VARIANT;
        outer.pvarVal = variable.inOut();
        engine.expect({{one.member + " = BSTR '12.5'"}});
        EXPECT_EQ((point.get()->*one.write)(outer), S_OK);
        variable = Variant::null();
        EXPECT_EQ((point.get()->*one.write)(outer), S_OK);
        engine.verify();
    }
}

TEST_F(DataPointMembers, WhatIsNoNumberIsNotWrittenAndNothingIsSaid) {
    for (const Numeric& one : numerics) {
        for (const Variant& value : noNumbers(client.get()))
            EXPECT_EQ((point.get()->*one.write)(value.get()), S_OK) << "type " << value.type();
    }
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(DataPointMembers, NoValueEqualsNullNotEvenNullItself) {
    for (const Numeric& one : numerics) {
        for (const Variant& value :
             {Variant::null(), Variant(), Variant::of(LONG{0}), Variant::of(12.5), Variant::of(L"abc")}) {
            engine.expect({{one.member, value}});
            EXPECT_EQ(read(point, one.isNull), VARIANT_FALSE) << one.member;
        }
    }
}

TEST_F(DataPointMembers, ClearingWritesNull) {
    for (const Numeric& one : numerics) {
        engine.expect({{one.member + " = Null"}});
        EXPECT_EQ((point.get()->*one.clear)(), S_OK);
        engine.verify();
    }
}

TEST_F(DataPointMembers, TextsTravelUnchanged) {
    using namespace std::string_literals;
    for (const Text& one : texts) {
        for (const std::wstring& content : {L""s, L"<Occ a=\"&amp;\">\r\n</Occ>"s, L"no markup & at all"s,
                                            L"x\0y"s, L"\xD83D\xDE00"s, std::wstring(100'000, L'z')}) {
            const Bstr text(content);
            engine.expect({{one.member, Variant::of(std::wstring_view(content))}});
            EXPECT_EQ(readText(point, one.read), content) << one.member;
            engine.expect({{one.member + " = '" + com::toUtf8(content) + "'"}});
            EXPECT_EQ((point.get()->*one.write)(text.get()), S_OK);
            engine.verify();
        }
        // A null string is an empty one, both ways.
        engine.expect({{one.member}});
        EXPECT_EQ(readText(point, one.read), L"");
        engine.expect({{one.member + " = ''"}});
        EXPECT_EQ((point.get()->*one.write)(nullptr), S_OK);
    }
}

TEST_F(DataPointMembers, EveryFailureOfTheEngineReachesTheClientWithoutAProblem) {
    setUpClient();
    DATE date = 1;
    engine.expect({{"Blank.TStamp", engineFails()}});
    EXPECT_EQ(failure(&_DataPointBasicWrapper::get_TStamp, &date), engineFailure());
    EXPECT_EQ(date, 0);
    for (const Numeric& one : numerics) {
        VARIANT value{};
        engine.expect({{one.member, engineFails()}});
        EXPECT_EQ(failure(one.read, &value), engineFailure());
        EXPECT_EQ(value.vt, VT_EMPTY);
        VARIANT_BOOL isNull = VARIANT_TRUE;
        engine.expect({{one.member, engineFails()}});
        EXPECT_EQ(failure(one.isNull, &isNull), engineFailure());
        EXPECT_EQ(isNull, VARIANT_FALSE);
        engine.expect({{one.member + " = I4 7", engineFails()}});
        EXPECT_EQ(failure(one.write, Variant::of(LONG{7}).get()), engineFailure());
        engine.expect({{one.member + " = Null", engineFails()}});
        EXPECT_EQ(failure(one.clear), engineFailure());
    }
    for (const Text& one : texts) {
        BSTR text = nullptr;
        engine.expect({{one.member, engineFails()}});
        EXPECT_EQ(failure(one.read, &text), engineFailure());
        EXPECT_EQ(text, nullptr);
        engine.expect({{one.member + " = ''", engineFails()}});
        EXPECT_EQ(failure(one.write, BSTR{nullptr}), engineFailure());
    }
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(DataPointMembers, ANullPointerForAResultIsRefusedWithoutAskingTheEngine) {
    EXPECT_EQ(failure(&_DataPointBasicWrapper::get_TStamp, static_cast<DATE*>(nullptr)).result, E_POINTER);
    for (const Numeric& one : numerics) {
        EXPECT_EQ(failure(one.read, static_cast<VARIANT*>(nullptr)).result, E_POINTER);
        EXPECT_EQ(failure(one.isNull, static_cast<VARIANT_BOOL*>(nullptr)).result, E_POINTER);
    }
    for (const Text& one : texts) EXPECT_EQ(failure(one.read, static_cast<BSTR*>(nullptr)).result, E_POINTER);
}

TEST_F(DataPointMembers, TheEnginesDataPointEndsWithTheObject) {
    EXPECT_EQ(engine.alive(), std::vector<std::string>{"Blank"});
    client.release();
    engine.expect({{"Blank.TStamp", when}});
    EXPECT_EQ(read(point, &_DataPointBasicWrapper::get_TStamp), when);
    point.reset();
    EXPECT_TRUE(engine.alive().empty());
    client = Client();
}

/// An object without a data point, which no operation hands out.
class DetachedDataPoint : public testing::Test {
  protected:
    const com::Ptr<DataPointBasicWrapper> object = com::make<DataPointBasicWrapper>();
    const DataPoint point{object.get()};
};

TEST_F(DetachedDataPoint, ReadsAsNothing) {
    EXPECT_EQ(read(point, &_DataPointBasicWrapper::get_TStamp), 0);
    for (const Numeric& one : numerics) {
        EXPECT_TRUE(readValue(point, one.read).isNull());
        EXPECT_EQ(read(point, one.isNull), VARIANT_TRUE);
    }
    for (const Text& one : texts) EXPECT_EQ(readText(point, one.read), L"");
}

TEST_F(DetachedDataPoint, IgnoresWhatIsWritten) {
    const Bstr text(L"<x/>");
    for (const Numeric& one : numerics) {
        EXPECT_EQ((point.get()->*one.write)(Variant::of(12.5).get()), S_OK);
        EXPECT_TRUE(readValue(point, one.read).isNull());
        EXPECT_EQ((point.get()->*one.clear)(), S_OK);
        EXPECT_EQ(read(point, one.isNull), VARIANT_TRUE);
    }
    for (const Text& one : texts) {
        EXPECT_EQ((point.get()->*one.write)(text.get()), S_OK);
        EXPECT_EQ(readText(point, one.read), L"");
    }
}

}  // namespace
}  // namespace vtdn::test
