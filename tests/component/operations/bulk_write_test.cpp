// Writes of a run in one request, call by call. What an engine with blocks gets is bulk_blocks_test.cpp's.
#include "operations/bulk_write.h"

namespace vtdn::test {
namespace {

using com::Variant;

constexpr LONG pid = bulkPid;
constexpr DATE start = bulkStart;

TEST_F(BulkWrite, BeforeSetUpTheResultIsFalseAndNothingIsLookedAt) {
    Longs mcs;
    Longs flags{1, 2};
    EXPECT_FALSE(write(L"1\t2\t3", mcs, flags, 7));
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(BulkWrite, NumberNullAndTextAreWrittenWithTheirMonitorCodes) {
    setUpClient();
    Longs mcs{10, -11, 1234567};
    Longs flags{3, 3, 3};
    expectWrite(3, {item(1, 3, "R4 1.5", 10), item(2, 3, "Null", -11), item(3, 3, "BSTR 'ABC'", 1234567)});
    EXPECT_TRUE(write(L"1.5\t\tABC", mcs, flags, 3));
    EXPECT_EQ(client.problems(), L"");
    mcs.expectUnchanged();
    flags.expectUnchanged();
}

TEST_F(BulkWrite, EachFlagTakesItsShare) {
    setUpClient();
    Longs mcs{10, 11, 12, 13};
    Longs flags{1, 2, 3, 0};
    expectWrite(4, {item(1, 1, "R4 5", 0), item(2, 2, "Empty", 11), item(3, 3, "R4 7", 12)});
    EXPECT_TRUE(write(L"5\t6\t7\t8", mcs, flags, 4));
    mcs.expectUnchanged();
    flags.expectUnchanged();
}

TEST_F(BulkWrite, AnyOtherFlagWritesNothingAndItsTextIsNotRead) {
    setUpClient();
    Longs mcs{1, 1, 1, 1, 1, 1, 1, 1};
    Longs flags{0, -1, 4, 5, 7, 0x7FFFFFFF, -0x7FFFFFFF - 1, 258};
    expectWrite(8, {});
    // A number beyond a single would be an error.
    EXPECT_TRUE(write(L"1e39\t1e39\t1e39\t1e39\t1e39\t1e39\t1e39\t1e39", mcs, flags, 8));
    Longs two{4, 5};
    Longs onlyCode{0, 2};
    expectWrite(2, {item(2, 2, "Empty", 5)});
    EXPECT_TRUE(write(L"1e39\t1e39", two, onlyCode, 2));
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(BulkWrite, ATrailingTabIsOneFieldMore) {
    setUpClient();
    Longs mcs{1, 2};
    Longs flags{3, 3};
    expectWrite(2, {item(1, 3, "R4 5", 1), item(2, 3, "Null", 2)});
    EXPECT_TRUE(write(L"5\t", mcs, flags, 2));
    // Two empty fields.
    expectWrite(2, {item(1, 3, "Null", 1), item(2, 3, "Null", 2)});
    EXPECT_TRUE(write(L"\t", mcs, flags, 2));
    Longs one{1};
    Longs oneFlag{1};
    engine.expect(checks());
    EXPECT_FALSE(write(L"5\t", one, oneFlag, 1));
    expectProblem(L"Array sizes are different. Can't write values/MCs to 1-005-0-10-00 (WDN-040)");
}

TEST_F(BulkWrite, AnEmptyRunPassesEveryCheckAndReachesTheEngine) {
    setUpClient();
    Array<LONG> noMcs(0, 0);
    Array<LONG> noFlags(0, 0);
    expectWrite(0, {});
    EXPECT_TRUE(write(L"", noMcs, noFlags, 0));
    expectWrite(0, {});
    EXPECT_TRUE(client.yes(&_DIWrapper::Param_WriteValues, pid, start, LONG{0}, type.get(), LONG{2},
                           static_cast<BSTR>(nullptr), noMcs.inOut(), noFlags.inOut()));
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(BulkWrite, TextsThatReadAsNumbersAreWrittenAsSingles) {
    setUpClient();
    expectValue(L"12", "R4 12");
    expectValue(L"-0.1", "R4 -0.1");
    expectValue(L"1,234.5", "R4 1234.5");
    expectValue(L" 12 ", "R4 12");
    expectValue(L"1e3", "R4 1000");
    expectValue(L"1E-3", "R4 0.001");
    expectValue(L"+3", "R4 3");
    expectValue(L"5-", "R4 -5");
    expectValue(L"(5)", "R4 -5");
    expectValue(L"$5", "R4 5");
    expectValue(L".5", "R4 0.5");
    expectValue(L"5.", "R4 5");
    expectValue(L"16777217", "R4 16777216");
    expectValue(L"3.4028235e38", "R4 3.4028235e+38");
    expectValue(L"00000000000000000000012", "R4 12");
    expectValue(L"123456789012345678901234567890", "R4 1.2345679e+29");
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(BulkWrite, HexadecimalAndOctalTextsAreWhatThePlatformReads) {
    setUpClient();
    for (const wchar_t* text : {L"&H10", L"&h1F", L"&O17", L"&H", L"&HZZ"}) {
        const auto value = Variant::of(std::wstring_view(text));
        float single = 0;
        if (com::isNumeric(value.get())) {
            ASSERT_EQ(com::toSingle(value.get(), single), S_OK);
            expectValue(text, "R4 " + std::to_string(static_cast<int>(single)));
        } else {
            expectValue(text, "BSTR '" + com::toUtf8(text) + "'");
        }
    }
}

TEST_F(BulkWrite, OtherTextsAreWrittenAsTheyStand) {
    setUpClient();
    for (const wchar_t* text : {L"ABC", L" ", L"  ", L"1 2", L"1.2.3", L"12a", L"0x10", L"True", L"N/A",
                                L"1;2", L"line\r\nbreak", L"\xD83D\xDE00", L"1e400"})
        expectValue(text, "BSTR '" + com::toUtf8(text) + "'");
    const std::wstring_view withNul(L"a\0b", 3);
    expectValue(withNul, std::string("BSTR 'a\0b'", 10));
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(BulkWrite, ANumberBeyondASingleIsError6AndNothingIsStored) {
    setUpClient();
    for (const wchar_t* text : {L"1e39", L"-1e39", L"3.41e38", L"1000000000000000000000000000000000000000"}) {
        Longs mcs{1, 2};
        Longs flags{3, 1};
        engine.expect(checks());
        engine.expect(arrays(2));
        engine.expect(item(1, 3, "R4 5", 1));
        const Failure failure = fail(std::wstring(L"5\t") + text, mcs, flags, 2);
        EXPECT_EQ(failure.result, DISP_E_OVERFLOW) << com::toUtf8(text);
        EXPECT_TRUE(failure.description.empty() || failure.description == L"Overflow") << failure;
        EXPECT_EQ(engine.alive(), std::vector<std::string>{"Engine"});
        mcs.expectUnchanged();
        flags.expectUnchanged();
    }
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(BulkWrite, TheRunReachesTheEngineUnchanged) {
    setUpClient();
    const struct {
        DATE start;
        std::wstring type;
        LONG length;
        std::string define;
    } rows[] = {
        {0.0, L"", 0, "Define(0, 1, '', 0, 0)"},
        {-1.25, L"no interval", -7, "Define(-1.25, 1, 'no interval', -7, 0)"},
        {39448.123456789, std::wstring(L"a\0b", 3), 0x7FFFFFFF,
         std::string("Define(39448.123456789, 1, 'a\0b', 2147483647, 0)", 48)},
    };
    for (const auto& row : rows) {
        Longs mcs{1};
        Longs flags{0};
        const Bstr intervals(row.type);
        const Bstr text(L"x");
        engine.expect(checks());
        engine.expect({{"new DIDataArray"},
                       {"Array." + row.define},
                       {"new DIDataArray"},
                       {"Array2." + row.define},
                       {"Array2.Fill(I4 0, 0)"},
                       store()});
        EXPECT_TRUE(client.yes(&_DIWrapper::Param_WriteValues, pid, row.start, LONG{1}, intervals.get(),
                               row.length, text.get(), mcs.inOut(), flags.inOut()));
    }
}

TEST_F(BulkWrite, TextsThatTheClientChangesMeanwhileAreStillThoseOfTheCall) {
    setUpClient();
    const Bstr intervals(L"1h");
    const Bstr text(L"11\t22");
    Longs mcs{1, 2};
    Longs flags{1, 1};
    std::vector<Call> first = checks();
    first.back().answer = Answer(38).during([&] {
        intervals.get()[0] = L'9';
        text.get()[0] = L'x';
        text.get()[2] = L'-';
    });
    engine.expect(first);
    engine.expect(arrays(2));
    engine.expect(item(1, 1, "R4 11", 0));
    engine.expect(item(2, 1, "R4 22", 0));
    engine.expect({store()});
    EXPECT_TRUE(client.yes(&_DIWrapper::Param_WriteValues, pid, start, LONG{2}, intervals.get(), LONG{2},
                           text.get(), mcs.inOut(), flags.inOut()));
}

TEST_F(BulkWrite, AFailureOfAnyCallReachesTheClientWithoutAProblem) {
    setUpClient();
    std::vector<Call> calls = checks();
    for (const Call& call : arrays(2)) calls.push_back(call);
    for (const Call& call : item(1, 3, "R4 1", 5)) calls.push_back(call);
    for (const Call& call : item(2, 2, "Empty", 6)) calls.push_back(call);
    calls.push_back(store());
    for (std::size_t failing = 0; failing < calls.size(); ++failing) {
        for (const bool explained : {true, false}) {
            for (std::size_t i = 0; i < failing; ++i) engine.expect({calls[i]});
            engine.expect({{calls[failing].text, explained ? engineFails() : Answer::failure(engineResult)}});
            Longs mcs{5, 6};
            Longs flags{3, 2};
            const Failure failure = fail(L"1\t2", mcs, flags, 2);
            EXPECT_EQ(failure.result, engineResult) << calls[failing].text;
            if (explained) {
                EXPECT_EQ(failure, engineFailure()) << calls[failing].text;
            }
            EXPECT_EQ(client.problems(), L"") << calls[failing].text;
            EXPECT_EQ(engine.alive(), std::vector<std::string>{"Engine"}) << calls[failing].text;
            mcs.expectUnchanged();
            flags.expectUnchanged();
        }
    }
}

TEST_F(BulkWrite, AnObjectThatTheEngineDoesNotHandOutIsError91) {
    setUpClient();
    Longs mcs{1};
    Longs flags{1};
    engine.expect({{"Engine.Params", Answer::noObject()}});
    EXPECT_EQ(fail(L"1", mcs, flags, 1).result, unsetObject);
    expectExists(pid, true);
    engine.expect({{"Params.Item(100501000, -1)", Answer::noObject()}});
    EXPECT_EQ(fail(L"1", mcs, flags, 1).result, unsetObject);
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(BulkWrite, TheResultIsTheEnginesOwnAsABoolean) {
    setUpClient();
    Longs mcs{1};
    Longs flags{0};
    const auto writeWith = [&](const Variant& answer) {
        engine.expect(checks());
        engine.expect(arrays(1));
        engine.expect({{store().text, answer}});
        return write(L"x", mcs, flags, 1);
    };
    for (const Variant& yes :
         {Variant::ofBool(true), Variant::of(LONG{5}), Variant::of(0.5), Variant::of(L"True")})
        EXPECT_TRUE(writeWith(yes)) << yes.type();
    for (const Variant& no : {Variant::ofBool(false), Variant::of(LONG{0}), Variant(), Variant::of(L"False")})
        EXPECT_FALSE(writeWith(no)) << no.type();
    const auto failWith = [&](const Variant& answer) {
        engine.expect(checks());
        engine.expect(arrays(1));
        engine.expect({{store().text, answer}});
        return clientNumber(fail(L"x", mcs, flags, 1).result);
    };
    EXPECT_EQ(failWith(Variant::null()), 94);
    EXPECT_EQ(failWith(Variant::of(L"abc")), 13);
    EXPECT_EQ(failWith(Variant::missing()), 13);
    EXPECT_EQ(failWith(Variant::of(static_cast<IDispatch*>(nullptr))), 91);
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(BulkWrite, AnEngineMayLeaveAnythingInTheArrayOfMoreArguments) {
    setUpClient();
    for (const auto left : {fake::MoreArguments::replace, fake::MoreArguments::clear}) {
        engine.leaveMoreArguments(left);
        Longs mcs{5};
        Longs flags{3};
        expectWrite(1, {item(1, 3, "R4 1", 5)});
        EXPECT_TRUE(write(L"1", mcs, flags, 1));
        EXPECT_EQ(engine.alive(), std::vector<std::string>{"Engine"});
    }
}

TEST_F(BulkWrite, MessagesOnTheWayAreProblemsAndTheResultIsTheEngines) {
    setUpClient();
    Longs mcs{5};
    Longs flags{3};
    engine.expect(checks());
    engine.expect(arrays(1));
    engine.expect(item(1, 3, "R4 1", 5));
    engine.expect({{store().text, Answer(true).message(1, L"value not accepted")}});
    EXPECT_TRUE(write(L"1", mcs, flags, 1));
    expectProblem(L"value not accepted");
}

TEST_F(BulkWrite, ATeardownInTheMiddleIsSafe) {
    setUpClient();
    Longs mcs{5};
    Longs flags{3};
    engine.expect(checks());
    engine.expect(arrays(1));
    engine.expect(item(1, 3, "R4 1", 5));
    engine.expect({{store().text, Answer(true).during([this] {
                        engine.expect({{"Engine.Close"}});
                        client.teardown();
                    })}});
    EXPECT_TRUE(write(L"1", mcs, flags, 1));
    EXPECT_TRUE(engine.alive().empty());
}

}  // namespace
}  // namespace vtdn::test
