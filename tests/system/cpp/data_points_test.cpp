// Data points: listed, their extra values written and read back.
#include "bound.h"

namespace vtdn::test {
namespace {

using namespace std::string_literals;

constexpr DATE april2007 = 39177;  // the 5th
constexpr DATE free2008 = 39692;   // 1 September, behind the demo's data
constexpr LONG dayOfHours = 24;

using Point = com::Ptr<_DataPointBasicWrapper>;

const std::wstring anyText = L"<x a=\"1\">\r\n\t&amp; \0 \u20AC \U0001F3ED</x>"s;

class DataPoints : public OnDemoSite {
  protected:
    using List = HRESULT (STDMETHODCALLTYPE _DIWrapper::*)(LONG, BSTR, DATE, DATE, SAFEARRAY**);

    /// The data points in the array of a list; none when there is no array.
    static std::vector<Point> listed(const Client& client, List list, LONG tag, const wchar_t* interval,
                                     DATE first, DATE last) {
        const com::Bstr text(interval);
        com::SafeArray array;
        EXPECT_EQ((client.get()->*list)(tag, text.get(), first, last, array.inOut()), S_OK);
        std::vector<Point> points;
        if (!array.get()) return points;
        EXPECT_EQ(com::bounds(array.get()).lower, 0);
        const com::ArrayView<IDispatch*> elements(array.get());
        EXPECT_GT(elements.size(), 0U) << "Where nothing is there is no array";
        for (IDispatch* element : elements)
            points.push_back(com::Ptr<IDispatch>(element).as<_DataPointBasicWrapper>());
        return points;
    }
    [[nodiscard]] std::vector<Point> hours(DATE first, DATE last) const {
        return listed(client_, &_DIWrapper::GetLongTermDataPoints, so2Mass, L"1h", first, last);
    }
    [[nodiscard]] bool update(const Point& point) const {
        const com::Bstr hour(L"1h");
        return client_.yes(&_DIWrapper::UpdateLongTermDataPointXValue, point.get(), so2Mass, hour.get());
    }
    static Point blank(const Client& client, DATE at) {
        Point point;
        EXPECT_EQ(client->MakeBlankDataPointWrapper(at, point.receive()), S_OK);
        return point;
    }
    static com::Variant value(const Point& point) {
        com::Variant result;
        EXPECT_EQ(point->get_NValue(result.receive()), S_OK);
        return result;
    }
    static DATE time(const Point& point) {
        DATE result = 0;
        EXPECT_EQ(point->get_TStamp(&result), S_OK);
        return result;
    }
    static std::wstring extra(const Point& point) {
        com::Bstr result;
        EXPECT_EQ(point->get_XValueXML(result.receive()), S_OK);
        return std::wstring(result.view());
    }
    static void putExtra(const Point& point, std::wstring_view text) {
        const com::Bstr given(text);
        EXPECT_EQ(point->put_XValueXML(given.get()), S_OK);
    }
};

TEST_F(DataPoints, OfADayHaveTheValuesThatARunHas) {
    std::vector<double> found;
    DATE before = 0;
    for (const Point& point : hours(april2007, april2007 + 23.0 / dayOfHours)) {
        EXPECT_GT(time(point), before);
        before = time(point);
        const com::Variant number = value(point);
        if (number.isNull()) continue;
        ASSERT_EQ(number.type(), VT_R8);
        found.push_back(static_cast<float>(number.get().dblVal));
        com::Variant code;
        EXPECT_EQ(point->get_MC(code.receive()), S_OK);
        EXPECT_EQ(code.type(), VT_I4);
        EXPECT_EQ(extra(point), L"");
    }
    ASSERT_GT(found.size(), 12U);
    EXPECT_EQ(found, numbers(so2Mass, april2007, dayOfHours));
}

TEST_F(DataPoints, ExtraValuesComeBackToTheCharacterAndNothingElseChanges) {
    const auto before = hours(april2007 + 1, april2007 + 1.5);
    ASSERT_GT(before.size(), 2U);
    putExtra(before[1], anyText);
    EXPECT_TRUE(update(before[1]));
    Client another(registered());
    ASSERT_TRUE(another.setup(barry));
    const auto after =
        listed(another, &_DIWrapper::GetLongTermDataPoints, so2Mass, L"1h", april2007 + 1, april2007 + 1.5);
    ASSERT_EQ(after.size(), before.size());
    for (std::size_t i = 0; i < after.size(); ++i) {
        EXPECT_EQ(extra(after[i]), i == 1 ? anyText : L"");
        EXPECT_EQ(value(after[i]).type(), VT_R8);
        EXPECT_EQ(value(after[i]).get().dblVal, value(before[i]).get().dblVal);
    }
    another.teardown();
    another.release();
    putExtra(before[1], L"");
    EXPECT_TRUE(update(before[1]));
    EXPECT_EQ(extra(hours(april2007 + 1, april2007 + 1.5)[1]), L"");
}

TEST_F(DataPoints, ABlankOneIsWrittenAtItsTime) {
    const Client unbound(registered());
    const Point point = blank(unbound, free2008 + 0.5);
    EXPECT_EQ(time(point), free2008 + 0.5);
    EXPECT_TRUE(value(point).isNull());
    VARIANT_BOOL null = VARIANT_TRUE;
    EXPECT_EQ(point->get_IsNValueNull(&null), S_OK);
    EXPECT_EQ(null, VARIANT_FALSE) << "No value equals Null, not even Null";
    putExtra(point, L"<blank/>");
    EXPECT_TRUE(hours(free2008, free2008 + 1).empty());
    EXPECT_TRUE(update(point));
    const auto found = hours(free2008, free2008 + 1);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(time(found[0]), free2008 + 0.5);
    EXPECT_EQ(extra(found[0]), L"<blank/>");
    putExtra(point, L"");
    EXPECT_TRUE(update(point));
    EXPECT_TRUE(hours(free2008, free2008 + 1).empty());
}

TEST_F(DataPoints, OfMinutesAreShortTerm) {
    const com::Bstr minute(L"1m");
    const Point point = blank(client_, free2008);
    putExtra(point, L"minute");
    EXPECT_TRUE(
        client_.yes(&_DIWrapper::UpdateShortTermDataPointXValue, point.get(), so2Analyzer, minute.get()));
    const auto list = [&] {
        return listed(client_, &_DIWrapper::GetShortTermDataPoints, so2Analyzer, L"1m", free2008,
                      free2008 + 1);
    };
    ASSERT_EQ(list().size(), 1U);
    EXPECT_EQ(extra(list()[0]), L"minute");
    putExtra(point, L"");
    EXPECT_TRUE(
        client_.yes(&_DIWrapper::UpdateShortTermDataPointXValue, point.get(), so2Analyzer, minute.get()));
    EXPECT_TRUE(list().empty());
}

TEST_F(DataPoints, WhatTheEngineRefusesIsItsErrorAndAProblem) {
    const com::Bstr hour(L"1h");
    const auto refused = [&](LONG number, const Failure& failure) {
        EXPECT_EQ(clientNumber(failure.result), number) << failure.description;
        EXPECT_EQ(failure.source, L"VTEngine");
        EXPECT_EQ(client_.problemTexts(), std::vector{failure.description});
    };
    refused(5, client_.failure(&_DIWrapper::GetShortTermDataPoints, so2Mass, hour.get(), april2007,
                               april2007 + 1));
    refused(9, client_.failure(&_DIWrapper::GetLongTermDataPoints, nobodysPid, hour.get(), april2007,
                               april2007 + 1));
    refused(6, client_.failure(&_DIWrapper::GetLongTermDataPoints, so2Mass, hour.get(), april2007 + 1,
                               april2007));
    const Point point = blank(client_, free2008 + 0.01);
    refused(5, client_.failure(&_DIWrapper::UpdateLongTermDataPointXValue, point.get(), so2Mass, hour.get()));
}

TEST(DataPointsBeforeSetUp, AreNone) {
    const Client client(registered());
    const com::Bstr hour(L"1h");
    com::SafeArray array;
    EXPECT_EQ(client->GetLongTermDataPoints(so2Mass, hour.get(), april2007, april2007 + 1, array.inOut()),
              S_OK);
    EXPECT_EQ(array.get(), nullptr);
    EXPECT_FALSE(client.yes(&_DIWrapper::UpdateLongTermDataPointXValue,
                            static_cast<_DataPointBasicWrapper*>(nullptr), so2Mass, hour.get()));
    EXPECT_EQ(client.problems(), L"");
}

}  // namespace
}  // namespace vtdn::test
