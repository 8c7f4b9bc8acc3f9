// The component over the embedded engine: what its clients see of values, refusals and messages.
#include "on_engine.h"
#include "support/array.h"
#include "support/client.h"

namespace vtdn::embedded::test {
namespace {

using vtdn::test::Array;
using vtdn::test::Client;
using vtdn::test::Component;

class WrapperOnEngine : public OnSite {
  protected:
    void SetUp() override { ASSERT_TRUE(client.setup(dahsId)) << client.problems(); }

    Component component{vtdn::test::besideProgram(L"VTWrapDN.dll")};
    Client client{component.create<_DIWrapper>(CLSID_DIWrapper)};
};

}  // namespace

TEST_F(WrapperOnEngine, WhatIsWrittenIsRead) {
    EXPECT_TRUE(client.yes(&_DIWrapper::Param_WriteVMC_Single, LONG{hourPid}, hour(1), 2.5F, LONG{0}));
    EXPECT_TRUE(
        client.yes(&_DIWrapper::Param_WriteValue_String, LONG{hourPid}, hour(2), com::Bstr(L"N/A").get()));
    Array<float> values(0, 1);
    Array<LONG> codes(0, 1);
    Array<VARIANT_BOOL> nonNumeric(0, 1);
    EXPECT_TRUE(client.yes(&_DIWrapper::Param_GetDataArray_Single, LONG{hourPid}, hour(0), LONG{4},
                           com::Bstr(L"h").get(), LONG{1}, values.inOut(), codes.inOut(),
                           nonNumeric.inOut()));
    EXPECT_EQ(values.values(), (std::vector<float>{0, 2.5F, 0, 0}));
    EXPECT_EQ(nonNumeric.values(), (std::vector<bool>{true, false, true, true}));
    EXPECT_EQ(client.problems(), L"");
}

TEST_F(WrapperOnEngine, ARefusedStoreIsTheEnginesErrorAndAProblem) {
    const auto failure =
        client.failure(&_DIWrapper::Param_WriteValue_Integer, LONG{hourPid}, hour(1.5), LONG{1});
    EXPECT_EQ(failure.source, L"VTEngine");
    EXPECT_NE(failure.description.find(L"2007-03-25 01:30"), std::wstring::npos) << failure.description;
    EXPECT_EQ(client.problemTexts(), std::vector{failure.description});
}

TEST_F(WrapperOnEngine, ARefusedRunIsTheEnginesErrorAndLeavesTheArrays) {
    Array<LONG> values(0, 2);
    Array<LONG> codes(0, 2);
    Array<VARIANT_BOOL> nonNumeric(0, 2);
    for (const LONG count : {-1L, LONG_MAX}) {
        const auto failure =
            client.failure(&_DIWrapper::Param_GetDataArray_Integer, LONG{hourPid}, hour(0), count,
                           com::Bstr(L"h").get(), LONG{1}, values.inOut(), codes.inOut(), nonNumeric.inOut());
        EXPECT_EQ(failure.result, DISP_E_OVERFLOW) << count;
        EXPECT_EQ(failure.source, L"VTEngine");
    }
    EXPECT_EQ(values.values().size(), 2U);
}

TEST_F(WrapperOnEngine, ARefusedSetUpIsAProblemAndLeavesTheWrapperSetUp) {
    client.teardown();
    EXPECT_FALSE(client.setup(dahsId + 1));
    EXPECT_EQ(client.problemTexts().size(), 1U);
    EXPECT_EQ(client.number(&_DIWrapper::SelectedDahs_DahsID), 0);
    EXPECT_FALSE(client.setup(dahsId)) << "Not before Teardown";
    client.teardown();
    EXPECT_TRUE(client.setup(dahsId));
}

TEST_F(WrapperOnEngine, TheInputsOfACalculationAreFound) {
    com::Bstr editable;
    com::Bstr constants;
    EXPECT_FALSE(client.yes(&_DIWrapper::Param_FindPIDsUsedByPID, LONG{monthPid}, editable.receive(),
                            constants.receive()));
    EXPECT_EQ(client.problemTexts().size(), 1U);
    EXPECT_TRUE(client.yes(&_DIWrapper::Param_FindPIDsUsedByPID, LONG{formulaPid}, editable.receive(),
                           constants.receive()));
    EXPECT_EQ(editable.view(), L"504030000");
    EXPECT_EQ(constants.view(), L"590500000");
}

TEST_F(WrapperOnEngine, DataPointsGoThroughTheComponent) {
    const com::Bstr hourly(L"1h");
    ASSERT_TRUE(client.yes(&_DIWrapper::Param_WriteVMC_Single, LONG{hourPid}, hour(1), 2.5F, LONG{0}));
    com::SafeArray listed;
    ASSERT_EQ(client->GetLongTermDataPoints(hourPid, hourly.get(), hour(0), hour(5), listed.inOut()), S_OK);
    {
        const com::ArrayView<IDispatch*> points(listed.get());
        ASSERT_EQ(points.size(), 1U);
        const auto point = com::Ptr<IDispatch>(points[0]).as<_DataPointBasicWrapper>();
        ASSERT_TRUE(point);
        com::Variant value;
        EXPECT_EQ(point->get_NValue(value.receive()), S_OK);
        EXPECT_EQ(value.get().fltVal, 2.5F);
        const com::Bstr text(L"<x/>");
        EXPECT_EQ(point->put_XValueXML(text.get()), S_OK);
        EXPECT_TRUE(
            client.yes(&_DIWrapper::UpdateLongTermDataPointXValue, point.get(), LONG{hourPid}, hourly.get()));
        const auto failure = client.failure(&_DIWrapper::UpdateShortTermDataPointXValue, point.get(),
                                            LONG{hourPid}, hourly.get());
        EXPECT_EQ(failure.source, L"VTEngine");
        EXPECT_EQ(client.problemTexts(), std::vector{failure.description});
    }
    com::SafeArray none;
    ASSERT_EQ(client->GetLongTermDataPoints(hourPid, hourly.get(), hour(2), hour(5), none.inOut()), S_OK);
    EXPECT_EQ(none.get(), nullptr) << "No array where there is nothing";
}

}  // namespace vtdn::embedded::test
