// Data points listed, made blank, and their extra values written.
#include "fake_engine/object.h"
#include "occurrences/data_point.h"
#include "operations/on_strict_engine.h"
#include "operations/records.h"
#include "support/late.h"

namespace vtdn::test {
namespace {

using com::Variant;

constexpr LONG tag = 530001;
constexpr DATE first = 39448.25;
constexpr DATE last = 39449;

const Bstr hourly(L"1h");

using ListMember = Member<LONG, BSTR, DATE, DATE, SAFEARRAY**>;
using UpdateMember = Member<_DataPointBasicWrapper*, LONG, BSTR, VARIANT_BOOL*>;

/// The long-term and the short-term operations, which differ in the engine's manager only.
struct Term {
    const char* name;
    std::string fetch;
    std::string list;
    std::string update;
    ListMember listMember;
    UpdateMember updateMember;
    const wchar_t* listName;
    const wchar_t* updateName;
};
void PrintTo(const Term& term, std::ostream* out) {
    *out << term.name;
}

const Term longTerm = {"LongTerm",
                       "Engine.LongTermData",
                       "LongTerm.GetLongTermDataPoints",
                       "LongTerm.UpdateXValue",
                       &_DIWrapper::GetLongTermDataPoints,
                       &_DIWrapper::UpdateLongTermDataPointXValue,
                       L"GetLongTermDataPoints",
                       L"UpdateLongTermDataPointXValue"};
const Term shortTerm = {"ShortTerm",
                        "Engine.ShortTermData",
                        "ShortTerm.GetShortTermDataPoints",
                        "ShortTerm.UpdateXValue",
                        &_DIWrapper::GetShortTermDataPoints,
                        &_DIWrapper::UpdateShortTermDataPointXValue,
                        L"GetShortTermDataPoints",
                        L"UpdateShortTermDataPointXValue"};

class DataPoints : public OnStrictEngine, public testing::WithParamInterface<Term> {
  protected:
    static const Term& term() { return GetParam(); }
    static std::string listCall(const std::string& arguments = "'S1', 530001, '1h', 39448.25, 39449") {
        return term().list + "(" + arguments + ")";
    }
    void expectManager() { engine.expect({{"Engine.SiteID", L"S1"}, {term().fetch}}); }
    /// A list is asked for and holds `count` data points.
    void expectList(int count) {
        expectManager();
        engine.expect({{listCall()}, {"Points.Count", count}});
        for (int i = 1; i <= count; ++i) engine.expect({{"Points.Item(" + std::to_string(i) + ")"}});
    }
    [[nodiscard]] com::SafeArray list() const {
        // Not looked at by the call.
        SAFEARRAY* array = reinterpret_cast<SAFEARRAY*>(sizeof(SAFEARRAY));
        const HRESULT result = (client.get()->*term().listMember)(tag, hourly.get(), first, last, &array);
        EXPECT_EQ(result, S_OK) << takeFailure(result);
        return FAILED(result) ? com::SafeArray() : com::SafeArray(array);
    }
    [[nodiscard]] Failure failList() const {
        return client.failure(term().listMember, tag, hourly.get(), first, last);
    }
    [[nodiscard]] bool update(_DataPointBasicWrapper* point) const {
        return client.yes(term().updateMember, point, tag, hourly.get());
    }
    [[nodiscard]] Failure failUpdate(_DataPointBasicWrapper* point) const {
        return client.failure(term().updateMember, point, tag, hourly.get());
    }
    [[nodiscard]] DataPoint blank() {
        engine.expect({{"new DIDataPoint"}, {"Blank.Initialise(39448.25)"}});
        DataPoint point;
        EXPECT_EQ(client->MakeBlankDataPointWrapper(first, point.receive()), S_OK);
        return point;
    }
};

INSTANTIATE_TEST_SUITE_P(Terms, DataPoints, testing::Values(longTerm, shortTerm),
                         [](const auto& tested) { return std::string(tested.param.name); });

// ---- Lists

TEST_P(DataPoints, BeforeSetUpThereIsNoArrayAndNoProblem) {
    EXPECT_EQ(list().get(), nullptr);
    setUpClient();
    engine.expect({{"Engine.Close"}});
    client.teardown();
    EXPECT_EQ(list().get(), nullptr);
    EXPECT_EQ(client.problems(), L"");
}

TEST_P(DataPoints, NoListAndAnEmptyOneGiveNoArray) {
    setUpClient();
    expectManager();
    engine.expect({{listCall(), Answer::noObject()}});
    EXPECT_EQ(list().get(), nullptr);
    for (const int none : {0, -1}) {
        expectManager();
        engine.expect({{listCall()}, {"Points.Count", none}});
        EXPECT_EQ(list().get(), nullptr);
    }
    EXPECT_EQ(client.problems(), L"");
}

TEST_P(DataPoints, AListIsAnArrayFrom0InTheEnginesOrder) {
    setUpClient();
    expectList(3);
    const auto array = list();
    VARTYPE type = VT_EMPTY;
    ASSERT_EQ(SafeArrayGetVartype(array.get(), &type), S_OK);
    EXPECT_EQ(type, VT_DISPATCH);
    EXPECT_EQ(SafeArrayGetDim(array.get()), 1U);
    EXPECT_EQ(com::bounds(array.get()), (com::Bounds{0, 2}));
    EXPECT_EQ(array.get()->cLocks, 0U);
    const auto points = elementsOf<_DataPointBasicWrapper>(array.get());
    for (std::size_t i = 0; i < points.size(); ++i) {
        engine.expect({{"Point(" + std::to_string(i + 1) + ").TStamp", first + static_cast<double>(i)}});
        EXPECT_EQ(read(points[i], &_DataPointBasicWrapper::get_TStamp), first + static_cast<double>(i));
    }
    EXPECT_EQ(client.problems(), L"");
}

TEST_P(DataPoints, TheArgumentsReachTheEngineUnchanged) {
    setUpClient();
    for (const auto& [interval, seen] :
         {std::pair{L"1h", "'1h'"}, {L"", "''"}, {L" not an interval ", "' not an interval '"}}) {
        const Bstr text(interval);
        expectManager();
        engine.expect(
            {{listCall("'S1', -2147483648, " + std::string(seen) + ", 39449, 0"), Answer::noObject()}});
        SAFEARRAY* array = nullptr;
        EXPECT_EQ((client.get()->*term().listMember)(-0x7FFFFFFFL - 1, text.get(), last, 0, &array), S_OK);
        EXPECT_EQ(array, nullptr);
    }
    // A null text is an empty one; a site without an id.
    engine.expect(
        {{"Engine.SiteID"}, {term().fetch}, {listCall("'', 0, '', -1, 39449"), Answer::noObject()}});
    SAFEARRAY* array = nullptr;
    EXPECT_EQ((client.get()->*term().listMember)(0, nullptr, -1, last, &array), S_OK);
    EXPECT_EQ(array, nullptr);
}

TEST_P(DataPoints, TheManagerAndTheListEndWithTheCall) {
    setUpClient();
    expectList(2);
    auto array = list();
    EXPECT_EQ(engine.alive(), (std::vector<std::string>{"Engine", "Point(1)", "Point(2)"}));
    array = {};
    EXPECT_EQ(engine.alive(), std::vector<std::string>{"Engine"});
}

TEST_P(DataPoints, AFailureOfAnyCallReachesTheClientAndNothingIsLeft) {
    setUpClient();
    const std::vector<Call> calls = {{"Engine.SiteID", L"S1"}, {term().fetch},     {listCall()},
                                     {"Points.Count", 3},      {"Points.Item(1)"}, {"Points.Item(2)"},
                                     {"Points.Item(3)"}};
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

TEST_P(DataPoints, AManagerOrADataPointThatTheEngineDoesNotHandOutIsError91) {
    setUpClient();
    engine.expect({{"Engine.SiteID", L"S1"}, {term().fetch, Answer::noObject()}});
    EXPECT_EQ(failList().result, unsetObject);
    expectManager();
    engine.expect(
        {{listCall()}, {"Points.Count", 2}, {"Points.Item(1)"}, {"Points.Item(2)", Answer::noObject()}});
    EXPECT_EQ(failList().result, unsetObject);
    EXPECT_EQ(engine.alive(), std::vector<std::string>{"Engine"});
    EXPECT_EQ(client.problems(), L"");
}

TEST_P(DataPoints, ALateBoundClientGetsAnArrayOfVariant) {
    setUpClient();
    Late late(client.get());
    const Variant interval = Variant::of(L"1h");
    const std::vector<VARIANT> all = {Variant::of(tag).get(), interval.get(), Variant::ofDate(first).get(),
                                      Variant::ofDate(last).get()};
    expectList(2);
    ASSERT_EQ(late.call(term().listName, all), S_OK);
    ASSERT_EQ(late.result.type(), VT_ARRAY | VT_VARIANT);
    {
        SAFEARRAY* array = late.result.get().parray;
        EXPECT_EQ(com::bounds(array), (com::Bounds{0, 1}));
        const com::ArrayView<VARIANT> elements(array);
        int index = 0;
        for (const VARIANT& element : elements) {
            ASSERT_EQ(element.vt, VT_DISPATCH);
            Late point(element.pdispVal);
            ++index;
            engine.expect({{"Point(" + std::to_string(index) + ").MC", index}});
            EXPECT_EQ(point.get(L"MC"), S_OK);
            EXPECT_EQ(point.text(), std::to_wstring(index));
        }
    }
    expectManager();
    engine.expect({{listCall(), Answer::noObject()}});
    ASSERT_EQ(late.call(term().listName, all), S_OK);
    EXPECT_EQ(late.result.type(), VT_EMPTY);
    EXPECT_EQ(engine.alive(), std::vector<std::string>{"Engine"});
}

TEST_P(DataPoints, ObjectsStayValidWhateverIsReleasedFirst) {
    for (const bool arrayFirst : {true, false}) {
        setUpClient();
        expectList(2);
        auto array = list();
        std::vector<DataPoint> points = elementsOf<_DataPointBasicWrapper>(array.get());
        if (arrayFirst) array = {};
        engine.expect({{"Engine.Close"}});
        client.teardown();
        if (!arrayFirst) array = {};
        engine.expect({{"Point(2).XValueXML = '<x/>'"}, {"Point(1).TStamp", first}});
        EXPECT_EQ(points[1]->put_XValueXML(Bstr(L"<x/>").get()), S_OK);
        points.pop_back();
        EXPECT_EQ(engine.alive(), std::vector<std::string>{"Point(1)"});
        EXPECT_EQ(read(points[0], &_DataPointBasicWrapper::get_TStamp), first);
        points.clear();
        EXPECT_TRUE(engine.alive().empty());
    }
}

// ---- Updates

TEST_P(DataPoints, AnUpdateWithoutAnObjectOrWithoutSetUpIsFalseAndAsksNothing) {
    const DataPoint point = blank();
    EXPECT_FALSE(update(point.get()));
    EXPECT_FALSE(update(nullptr));
    setUpClient();
    EXPECT_FALSE(update(nullptr));
    EXPECT_EQ(client.problems(), L"");
}

TEST_P(DataPoints, AnUpdateOfAnObjectWithoutADataPointIsFalseAndAsksNothing) {
    setUpClient();
    const auto object = com::make<DataPointBasicWrapper>();
    EXPECT_FALSE(update(object.get()));
    EXPECT_EQ(client.problems(), L"");
}

TEST_P(DataPoints, AnUpdateHandsTheExtraValueToTheManager) {
    setUpClient();
    const DataPoint point = blank();
    for (const bool answer : {true, false}) {
        engine.expect({{"Engine.SiteID", L"S1"},
                       {"Blank.TStamp", first},
                       {"Blank.XValueXML", L"<x/>"},
                       {term().fetch},
                       {term().update + "('S1', 530001, '1h', 39448.25, '<x/>')", answer}});
        EXPECT_EQ(update(point.get()), answer);
    }
    // An unusual True; an interval text that is none; no extra value.
    const Bstr any(L" no interval ");
    engine.expect({{"Engine.SiteID"},
                   {"Blank.TStamp", 0.0},
                   {"Blank.XValueXML"},
                   {term().fetch},
                   {term().update + "('', -1, ' no interval ', 0, '')", 1}});
    EXPECT_TRUE(client.yes(term().updateMember, point.get(), LONG{-1}, any.get()));
    EXPECT_EQ(client.problems(), L"");
}

TEST_P(DataPoints, TheManagerEndsWithTheUpdate) {
    setUpClient();
    const DataPoint point = blank();
    engine.expect({{"Engine.SiteID", L"S1"},
                   {"Blank.TStamp", first},
                   {"Blank.XValueXML", L"<x/>"},
                   {term().fetch},
                   {term().update + "('S1', 530001, '1h', 39448.25, '<x/>')", true}});
    EXPECT_TRUE(update(point.get()));
    EXPECT_EQ(engine.alive(), (std::vector<std::string>{"Engine", "Blank"}));
}

TEST_P(DataPoints, AFailureOfAnyCallOfAnUpdateReachesTheClientAndNothingIsLeft) {
    setUpClient();
    const DataPoint point = blank();
    const std::vector<Call> calls = {{"Engine.SiteID", L"S1"},
                                     {"Blank.TStamp", first},
                                     {"Blank.XValueXML", L"<x/>"},
                                     {term().fetch},
                                     {term().update + "('S1', 530001, '1h', 39448.25, '<x/>')"}};
    for (std::size_t failing = 0; failing < calls.size(); ++failing) {
        for (std::size_t i = 0; i < failing; ++i) engine.expect({calls[i]});
        engine.expect({{calls[failing].text, engineFails()}});
        EXPECT_EQ(failUpdate(point.get()), engineFailure()) << calls[failing].text;
        EXPECT_EQ(engine.alive(), (std::vector<std::string>{"Engine", "Blank"}));
    }
    engine.expect({calls[0], calls[1], calls[2], {term().fetch, Answer::noObject()}});
    EXPECT_EQ(failUpdate(point.get()).result, unsetObject);
    EXPECT_EQ(client.problems(), L"");
}

/// A client's own object behind the interface of a data point.
class ForeignDataPoint final : public fake::EngineObject<_DataPointBasicWrapper> {
  public:
    STDMETHODIMP get_TStamp(DATE*) override { return E_NOTIMPL; }
    STDMETHODIMP get_NValue(VARIANT*) override { return E_NOTIMPL; }
    STDMETHODIMP put_NValue(VARIANT) override { return E_NOTIMPL; }
    STDMETHODIMP get_IsNValueNull(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP SetNValueToNull() override { return E_NOTIMPL; }
    STDMETHODIMP get_MC(VARIANT*) override { return E_NOTIMPL; }
    STDMETHODIMP put_MC(VARIANT) override { return E_NOTIMPL; }
    STDMETHODIMP get_IsMCNull(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP SetMCToNull() override { return E_NOTIMPL; }
    STDMETHODIMP get_OccDataXML(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP put_OccDataXML(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP get_XValueXML(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP put_XValueXML(BSTR) override { return E_NOTIMPL; }
};

TEST_P(DataPoints, AnObjectOfAnotherClassIsError13) {
    setUpClient();
    const DataPoint foreign(new ForeignDataPoint);
    EXPECT_EQ(clientNumber(failUpdate(foreign.get()).result), 13);
    // A wrapper of this component itself, late bound.
    Late late(client.get());
    const Variant interval = Variant::of(L"1h");
    const Variant wrapper = Variant::of(static_cast<IDispatch*>(client.get()));
    EXPECT_EQ(late.call(term().updateName, {wrapper.get(), Variant::of(tag).get(), interval.get()}),
              DISP_E_TYPEMISMATCH);
    EXPECT_EQ(late.bad, 2U);
    EXPECT_EQ(client.problems(), L"");
}

TEST_P(DataPoints, ALateBoundClientHandsItsObjectBack) {
    setUpClient();
    const DataPoint point = blank();
    Late late(client.get());
    const Variant interval = Variant::of(L"1h");
    Variant variable = Variant::of(static_cast<IDispatch*>(point.get()));
    for (const VARIANT& argument : {variable.get(), ref(variable)}) {
        engine.expect({{"Engine.SiteID", L"S1"},
                       {"Blank.TStamp", first},
                       {"Blank.XValueXML", L"<x/>"},
                       {term().fetch},
                       {term().update + "('S1', 530001, '1h', 39448.25, '<x/>')", true}});
        ASSERT_EQ(late.call(term().updateName, {argument, Variant::of(tag).get(), interval.get()}), S_OK);
        EXPECT_EQ(late.result.type(), VT_BOOL);
        EXPECT_EQ(late.result.get().boolVal, VARIANT_TRUE);
    }
    // Nothing, and a variable that holds nothing yet.
    Variant none;
    for (const VARIANT& argument : {Variant::of(static_cast<IDispatch*>(nullptr)).get(), ref(none)}) {
        ASSERT_EQ(late.call(term().updateName, {argument, Variant::of(tag).get(), interval.get()}), S_OK);
        EXPECT_EQ(late.result.get().boolVal, VARIANT_FALSE);
    }
}

// ---- Blank data points

class BlankDataPoints : public OnStrictEngine {
  protected:
    static constexpr auto make = &_DIWrapper::MakeBlankDataPointWrapper;
};

TEST_F(BlankDataPoints, AreMadeBeforeSetUpAfterItAndAfterTeardown) {
    const auto makeOne = [this](DATE time, const std::string& written) {
        engine.expect({{"new DIDataPoint"}, {"Blank.Initialise(" + written + ")"}});
        DataPoint point;
        EXPECT_EQ(client->MakeBlankDataPointWrapper(time, point.receive()), S_OK);
        EXPECT_TRUE(point);
        engine.verify();
    };
    makeOne(first, "39448.25");
    setUpClient();
    makeOne(0, "0");
    makeOne(-1.5, "-1.5");
    engine.expect({{"Engine.Close"}});
    client.teardown();
    makeOne(last, "39449");
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(BlankDataPoints, AreNotNullAlthoughNoValueWasSet) {
    engine.expect({{"new DIDataPoint"}, {"Blank.Initialise(39448.25)"}});
    DataPoint point;
    EXPECT_EQ(client->MakeBlankDataPointWrapper(first, point.receive()), S_OK);
    engine.expect({{"Blank.NValue", Variant::null()},
                   {"Blank.MC", Variant::null()},
                   {"Blank.NValue", Variant::null()},
                   {"Blank.MC", Variant::null()}});
    EXPECT_EQ(read(point, &_DataPointBasicWrapper::get_IsNValueNull), VARIANT_FALSE);
    EXPECT_EQ(read(point, &_DataPointBasicWrapper::get_IsMCNull), VARIANT_FALSE);
    EXPECT_TRUE(readValue(point, &_DataPointBasicWrapper::get_NValue).isNull());
    EXPECT_TRUE(readValue(point, &_DataPointBasicWrapper::get_MC).isNull());
}

TEST_F(BlankDataPoints, AFailureOfEitherCallReachesTheClientAndNothingIsLeft) {
    engine.expect({{"new DIDataPoint", engineFails()}});
    EXPECT_EQ(client.failure(make, first).result, engineResult);
    engine.expect({{"new DIDataPoint"}, {"Blank.Initialise(39448.25)", engineFails()}});
    EXPECT_EQ(client.failure(make, first), engineFailure());
    EXPECT_TRUE(engine.alive().empty());
    EXPECT_EQ(client->MakeBlankDataPointWrapper(first, nullptr), E_POINTER);
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(BlankDataPoints, AreReadAndWrittenLateBound) {
    Late late(client.get());
    engine.expect({{"new DIDataPoint"}, {"Blank.Initialise(39448.25)"}});
    ASSERT_EQ(late.call(L"MakeBlankDataPointWrapper", {Variant::ofDate(first).get()}), S_OK);
    ASSERT_EQ(late.result.type(), VT_DISPATCH);
    Late point(late.result.get().pdispVal);
    const Variant text = Variant::of(L"12.5");
    const Variant noNumber = Variant::of(L"abc");
    const Variant xml = Variant::of(L"<x/>");
    for (const auto& [name, member] : {std::pair{L"NValue", "Blank.NValue"}, {L"mc", "Blank.MC"}}) {
        engine.expect(
            {{member + std::string(" = I4 7")}, {member + std::string(" = BSTR '12.5'")}, {member, 7}});
        EXPECT_EQ(point.put(name, {Variant::of(LONG{7}).get()}), S_OK);
        EXPECT_EQ(point.put(name, {text.get()}), S_OK);
        EXPECT_EQ(point.put(name, {noNumber.get()}), S_OK);
        EXPECT_EQ(point.put(name, {Variant::null().get()}), S_OK);
        EXPECT_EQ(point.get(name), S_OK);
        EXPECT_EQ(point.result.type(), VT_I4);
        engine.expect({{member, Variant::null()}});
        EXPECT_EQ(point.get(name), S_OK);
        EXPECT_TRUE(point.result.isNull());
    }
    engine.expect({{"Blank.TStamp", first}});
    EXPECT_EQ(point.get(L"TStamp"), S_OK);
    EXPECT_EQ(point.result.type(), VT_DATE);
    EXPECT_EQ(point.result.get().date, first);
    EXPECT_EQ(point.put(L"TStamp", {Variant::ofDate(last).get()}), DISP_E_MEMBERNOTFOUND);
    for (const auto& [name, member] :
         {std::pair{L"OccDataXML", "Blank.OccDataXML"}, {L"XValueXML", "Blank.XValueXML"}}) {
        engine.expect(
            {{member + std::string(" = '<x/>'")}, {member, L"<y/>"}, {member + std::string(" = '7'")}});
        EXPECT_EQ(point.put(name, {xml.get()}), S_OK);
        EXPECT_EQ(point.get(name), S_OK);
        EXPECT_EQ(point.text(), L"<y/>");
        EXPECT_EQ(point.put(name, {Variant::of(LONG{7}).get()}), S_OK);
    }
    engine.expect({{"Blank.NValue"}, {"Blank.MC"}, {"Blank.NValue = Null"}, {"Blank.MC = Null"}});
    for (const wchar_t* question : {L"IsNValueNull", L"IsMCNull"}) {
        EXPECT_EQ(point.get(question), S_OK);
        EXPECT_EQ(point.result.type(), VT_BOOL);
        EXPECT_EQ(point.result.get().boolVal, VARIANT_FALSE);
    }
    EXPECT_EQ(point.call(L"SetNValueToNull"), S_OK);
    EXPECT_EQ(point.call(L"SetMCToNull"), S_OK);
}

}  // namespace
}  // namespace vtdn::test
