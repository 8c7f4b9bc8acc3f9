// What special values and special functions are asked with: ids, spans, and the client's array of arguments.
#include "fake_engine/lenient.h"
#include "operations/special_operations.h"

namespace vtdn::test {
namespace {

using com::Variant;

constexpr LONG pid = specialPid;
constexpr LONG id = specialId;

class SpecialIds : public OnStrictEngine {};

TEST_F(SpecialIds, ReachTheEngineUnchangedAndWithoutArgumentsBeyond) {
    setUpClient();
    for (const LONG any : {0L, 1L, -1L, 6L, 33L, -22L, 0x7FFFFFFFL, -0x7FFFFFFFL - 1}) {
        const std::string shownId = std::to_string(any);
        expectParam(pid);
        engine.expect({{param(pid, "SpecialValue(" + shownId + ")"), 3}});
        EXPECT_EQ(client.number(&_DIWrapper::Param_GetSpecialValue_Int32, pid, any), 3);
        MoreArgs args;
        expectParam(pid);
        engine.expect(
            {{param(pid, "SpecialFunction(" + shownId + ", [0..0: " + MoreArgs::text + "])"), L"y"}});
        EXPECT_EQ(client.text(&_DIWrapper::Param_GetSpecialFunction_String, pid, any, args.inOut()), L"y");
        args.expectUnchanged();
    }
}

TEST_F(SpecialIds, TheSpanOfTheOperatingTimeReachesTheEngineUnchanged) {
    setUpClient();
    for (const auto& [start, end, shownSpan] :
         {std::tuple{39448.0, 39449.0, "Date 39448, Date 39449"},
          {39449.5, 39448.25, "Date 39449.5, Date 39448.25"},
          {0.0, 0.0, "Date 0, Date 0"},
          {-1.25, 39448.123456789, "Date -1.25, Date 39448.123456789"}}) {
        expectParam(pid);
        engine.expect({{param(pid, std::string("SpecialFunction(32, [0..1: ") + shownSpan + "])"), 7}});
        EXPECT_EQ(client.number(&_DIWrapper::Param_CallSF_CalcOpTime, pid, start, end), 7);
    }
}

class SpecialArguments : public OnStrictEngine {
  protected:
    /// A good call; what the engine sees as the one element of its arguments.
    void expectNested(SAFEARRAY** args, const std::string& element) {
        expectParam(pid);
        engine.expect({{param(pid, "SpecialFunction(77, [0..0: " + element + "])"), 5}});
        EXPECT_EQ(client.number(&_DIWrapper::Param_GetSpecialFunction_Int32, pid, id, args), 5);
        EXPECT_EQ(client.problems(), L"");
    }
};

TEST_F(SpecialArguments, AreNestedWholeWhateverTheyHold) {
    setUpClient();
    Array<VARIANT> none;
    expectNested(none.inOut(), "no array");
    EXPECT_EQ(none.get(), nullptr);
    Array<VARIANT> empty(0, 0);
    expectNested(empty.inOut(), "[0..-1:]");
    Array<VARIANT> one(-3, 1);
    expectNested(one.inOut(), "[-3..-3: Empty]");
    Array<VARIANT> several(0, 4);
    {
        const com::ArrayView<VARIANT> elements(several.get());
        Variant::null().detachTo(&elements[0]);
        Variant::ofDate(39448.5).detachTo(&elements[1]);
        Variant::of(2.5F).detachTo(&elements[2]);
        arrayVariant().detachTo(&elements[3]);
    }
    expectNested(several.inOut(), "[0..3: Null, Date 39448.5, R4 2.5, [0..1: Empty, Empty]]");
    Array<VARIANT> two(VT_VARIANT, {{2, 0}, {3, 0}});
    expectNested(two.inOut(), "an array of another kind");
    EXPECT_EQ(SafeArrayGetDim(two.get()), 2U);
}

TEST_F(SpecialArguments, OfALockedArrayAreCopiedAndTheLockStays) {
    setUpClient();
    Array<VARIANT> locked(0, 1);
    ASSERT_EQ(SafeArrayLock(locked.get()), S_OK);
    expectNested(locked.inOut(), "[0..0: Empty]");
    EXPECT_EQ(locked.get()->cLocks, 1U);
    SafeArrayUnlock(locked.get());
}

TEST_F(SpecialArguments, OfAnotherElementTypeAreATrappedError13) {
    setUpClient();
    Array<LONG> numbers(0, 3);
    expectExists(pid, true);
    engine.expect({{"Params.Item(100501000, -1)"}});
    EXPECT_EQ(client.number(&_DIWrapper::Param_GetSpecialFunction_Int32, pid, id, numbers.inOut()), 0);
    EXPECT_EQ(client.problemTexts(), std::vector<std::wstring>{L"13, Type mismatch (WDN-0053)"});
    EXPECT_EQ(numbers.values(), (std::vector<LONG>{0, 0, 0}));
}

TEST_F(SpecialArguments, AnEngineMayLeaveAnythingInThem) {
    setUpClient();
    for (const auto left : {fake::MoreArguments::replace, fake::MoreArguments::clear}) {
        engine.leaveMoreArguments(left);
        MoreArgs args;
        expectNested(args.inOut(), MoreArgs::text);
        args.expectUnchanged();
        expectParam(pid);
        engine.expect({{param(pid, "SpecialFunction(32, [0..1: Date 1, Date 2])"), 9}});
        EXPECT_EQ(client.number(&_DIWrapper::Param_CallSF_CalcOpTime, pid, 1.0, 2.0), 9);
        EXPECT_EQ(engine.alive(), std::vector<std::string>{"Engine"});
    }
}

TEST_F(SpecialArguments, AnObjectAmongThemReachesTheEngineAndIsReleased) {
    setUpClient();
    fake::Site site;
    const com::Ptr<IDispatch> object = fake::makeDataItem(site).as<IDispatch>();
    {
        Array<VARIANT> args(0, 1);
        {
            const com::ArrayView<VARIANT> elements(args.get());
            Variant::of(object.get()).detachTo(&elements[0]);
        }
        expectNested(args.inOut(), "[0..0: Dispatch a stranger]");
    }
    object->AddRef();
    EXPECT_EQ(object->Release(), 1U);
}

TEST_F(SpecialArguments, MissingByReferenceIsANullPointer) {
    setUpClient();
    EXPECT_EQ(
        client
            .failure(&_DIWrapper::Param_GetSpecialFunction_Int32, pid, id, static_cast<SAFEARRAY**>(nullptr))
            .result,
        E_POINTER);
}

}  // namespace
}  // namespace vtdn::test
