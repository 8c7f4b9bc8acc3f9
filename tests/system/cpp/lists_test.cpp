// Lists of parameters, relationships, names, the parameter cache and alarms.
#include "bound.h"

namespace vtdn::test {
namespace {

using Lists = OnDemoSite;

constexpr DATE february2008 = 39507.5;

std::vector<std::wstring> textsOf(SAFEARRAY* array) {
    std::vector<std::wstring> texts;
    const com::ArrayView<BSTR> elements(array);
    for (const BSTR element : elements) texts.emplace_back(com::view(element));
    return texts;
}

std::vector<std::wstring> names(const Client& client,
                                HRESULT (STDMETHODCALLTYPE _DIWrapper::*member)(SAFEARRAY**)) {
    com::SafeArray array;
    EXPECT_EQ((client.get()->*member)(array.inOut()), S_OK);
    return textsOf(array.get());
}

TEST_F(Lists, ByKindAreThoseOfTheDemoSiteInOrder) {
    const std::wstring part75 =
        L"511010001;511010002;511110001;511110002;511210001;511210002;511410001;511410002";
    EXPECT_EQ(client_.text(&_DIWrapper::GetListOf75CalPIDs), part75);
    EXPECT_EQ(client_.text(&_DIWrapper::GetListOfCalPIDs),
              part75 + L";511510001;511510002;511610001;511610002");
    EXPECT_EQ(client_.text(&_DIWrapper::GetListOf75LinearityPIDs),
              L"512010001;512010002;512110001;512110002;512210001;512210002");
    EXPECT_EQ(client_.text(&_DIWrapper::GetListOf75IntfCheckPIDs), L"511610001;511610002");
    EXPECT_EQ(client_.text(&_DIWrapper::GetListOfTypeXPIDs, LONG{45}),
              L"512010001;512010002;512010003;512110001;512110002;512110003;512210001;512210002;512210003");
    EXPECT_EQ(client_.text(&_DIWrapper::GetListOfTypeXPIDs, LONG{4711}), L"");
}

TEST_F(Lists, RelationshipsAreListedByTheirInterval) {
    EXPECT_EQ(client_.text(&_DIWrapper::GetListOfRelationshipPIDs, ParamRelationship_Minute, LONG{15}),
              L"502020200;503020200;505020200");
    EXPECT_EQ(client_.text(&_DIWrapper::GetListOfRelationshipPIDs, ParamRelationship_Daily, LONG{1}),
              L"501040200;502040200;502040203;503040200;503040203;504040200;505040200;505040203;505140200");
    EXPECT_EQ(
        client_.text(&_DIWrapper::GetListOfRelationshipPIDs, static_cast<ParamRelationshipEnum>(0), LONG{1}),
        L"");
    EXPECT_EQ(client_.text(&_DIWrapper::GetListOfAllRelationshipPIDs).size(), 24U * 10 - 1);
}

TEST_F(Lists, DetailOfARelationshipReplacesTheClientsText) {
    com::Bstr xml(L"left over");
    EXPECT_TRUE(client_.yes(&_DIWrapper::GetRelationshipDetailData, so2Mass, xml.receive()));
    EXPECT_EQ(xml.view(),
              L"<?xml version=\"1.0\"?>\r\n<Relationship>"
              L"<Parameter PID=\"504030000\" Name=\"SO2 mass\" IntervalCount=\"1\" IntervalUnit=\"h\" "
              L"Units=\"lb/hr\" Computation=\"stored\"/>"
              L"<Parameter PID=\"504040200\" Name=\"SO2 mass of the day\" IntervalCount=\"1\" "
              L"IntervalUnit=\"d\" Units=\"lb\" Computation=\"sum\" SourcePID=\"504030000\"/>"
              L"</Relationship>");
    BSTR kept = SysAllocString(L"left over");
    EXPECT_FALSE(client_.yes(&_DIWrapper::GetRelationshipDetailData, nobodysPid, &kept));
    EXPECT_EQ(com::Bstr::adopt(kept).view(), L"left over");
    EXPECT_EQ(client_.problemTexts(),
              (std::vector<std::wstring>{L"PID 5-999-3-00-00 does not exist (WDN-044)"}));
}

TEST_F(Lists, NamesOfUnitsAndCodes) {
    const auto units = names(client_, &_DIWrapper::Utils_GetUnitNames);
    ASSERT_EQ(units.size(), 20U);
    EXPECT_EQ(units[5], L"Barry 5");
    EXPECT_EQ(units[19], L"");
    std::vector<std::wstring> reported(20);
    reported[5] = L"3";
    EXPECT_EQ(names(client_, &_DIWrapper::Utils_GetEDRUnitORISCodes), reported);
    reported[5] = L"5";
    EXPECT_EQ(names(client_, &_DIWrapper::Utils_GetEDRUnitIDs), reported);

    const auto shortMcs = names(client_, &_DIWrapper::Utils_GetShortMCNames);
    const auto longMcs = names(client_, &_DIWrapper::Utils_GetLongMCNames);
    ASSERT_EQ(shortMcs.size(), 199U);
    ASSERT_EQ(longMcs.size(), 199U);
    EXPECT_EQ(shortMcs[102], L"Calculated");
    EXPECT_EQ(longMcs[1], L"Certified primary emission/flow monitoring system.");
    EXPECT_EQ(shortMcs[18], L"");
    const auto shortPcs = names(client_, &_DIWrapper::Utils_GetShortPCNames);
    const auto longPcs = names(client_, &_DIWrapper::Utils_GetLongPCNames);
    ASSERT_EQ(shortPcs.size(), 29U);
    ASSERT_EQ(longPcs.size(), 29U);
    EXPECT_EQ(shortPcs[16], L"SO2");
    EXPECT_EQ(longPcs[16], L"SO2 Mass Emissions Rate (lb/hr)");
}

TEST_F(Lists, EmptiedCacheIsFilledAgain) {
    const std::wstring before = client_.text(&_DIWrapper::GetListOfCalPIDs);
    EXPECT_EQ(client_->Params_FlushCache(), S_OK);
    EXPECT_EQ(client_.text(&_DIWrapper::GetListOfCalPIDs), before);
}

TEST_F(Lists, AlarmsAreWrittenWithASeverityFrom0To4) {
    const com::Bstr message(L"Opacity");
    const com::Bstr empty(L"");
    for (LONG severity = -1; severity <= 5; ++severity)
        EXPECT_EQ(client_.yes(&_DIWrapper::WriteStrToAlarm, february2008, message.get(), empty.get(),
                              severity, empty.get(), empty.get()),
                  severity >= 0 && severity <= 4)
            << severity;
}

TEST(BeforeSetUp, EightMembersAreError91AndTheRestIsEmpty) {
    const Client client(registered());
    const Failure unset{numbered(91), L"VTWrapDN.DIWrapper",
                        L"Object variable or With block variable not set"};
    EXPECT_EQ(takeFailure(client->Params_FlushCache()), unset);
    EXPECT_EQ(client.failure(&_DIWrapper::Utils_GetUnitNames), unset);
    EXPECT_EQ(client.failure(&_DIWrapper::Utils_GetEDRUnitORISCodes), unset);
    EXPECT_EQ(client.failure(&_DIWrapper::Utils_GetEDRUnitIDs), unset);
    EXPECT_EQ(client.failure(&_DIWrapper::Utils_GetLongMCNames), unset);
    EXPECT_EQ(client.failure(&_DIWrapper::Utils_GetShortMCNames), unset);
    EXPECT_EQ(client.failure(&_DIWrapper::Utils_GetLongPCNames), unset);
    EXPECT_EQ(client.failure(&_DIWrapper::Utils_GetShortPCNames), unset);
    EXPECT_EQ(client.text(&_DIWrapper::GetListOfCalPIDs), L"");
    EXPECT_EQ(client.text(&_DIWrapper::GetListOfAllRelationshipPIDs), L"");
    EXPECT_EQ(client.number(&_DIWrapper::Param_GetSpecialValue_Int32, unitItself, LONG{-95}), 0);
    EXPECT_EQ(client.problems(), L"");
}

}  // namespace
}  // namespace vtdn::test
