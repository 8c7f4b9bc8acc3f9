// The class DIWrapper: binding to a DAHS and access to its data. The overrides stand under the topic whose
// file defines them, src/<topic>/DIWrapper_<part>.cpp; each converts its arguments, calls the topic's
// operation and converts the result.
#pragma once

#include <VTWrapperDN.h>

#include "binding/session.h"
#include "com/object.h"

namespace vtdn {

class DIWrapper final : public com::Object<DIWrapper, _DIWrapper> {
  public:
    static constexpr const CLSID& classId = CLSID_DIWrapper;

    // Binding: src/binding/DIWrapper_binding.cpp
    STDMETHODIMP Setup(LONG lngDahsID, VARIANT_BOOL* result) noexcept override;
    STDMETHODIMP Setup3(LONG lngDahsID, BSTR strClientAppName, VARIANT_BOOL* result) noexcept override;
    STDMETHODIMP Setup2(BSTR strForceSiteID, BSTR strForceAlarmConnection, BSTR strForceConfigConnection,
                        BSTR strForceDataConnection, BSTR strForceDataShortTermConnection,
                        BSTR strForceRealtimeConnection, VARIANT_BOOL* result) noexcept override;
    STDMETHODIMP Setup4(BSTR strForceSiteID, BSTR strForceAlarmConnection, BSTR strForceConfigConnection,
                        BSTR strForceDataConnection, BSTR strForceDataShortTermConnection,
                        BSTR strForceRealtimeConnection, BSTR strClientAppName,
                        VARIANT_BOOL* result) noexcept override;
    STDMETHODIMP Teardown() noexcept override;
    STDMETHODIMP SelectedDahs_VantorDir(BSTR* result) noexcept override;
    STDMETHODIMP SelectedDahs_VantorSystemDir(BSTR* result) noexcept override;
    STDMETHODIMP SelectedDahs_AlarmConnection(BSTR* result) noexcept override;
    STDMETHODIMP SelectedDahs_ConfigConnection(BSTR* result) noexcept override;
    STDMETHODIMP SelectedDahs_DahsCompleteName(BSTR* result) noexcept override;
    STDMETHODIMP SelectedDahs_DahsID(LONG* result) noexcept override;
    STDMETHODIMP SelectedDahs_DataConnection(BSTR* result) noexcept override;
    STDMETHODIMP SelectedDahs_RealtimeConnection(BSTR* result) noexcept override;
    STDMETHODIMP SelectedDahs_DataShortTermConnection(BSTR* result) noexcept override;
    STDMETHODIMP SelectedDahs_SiteID(BSTR* result) noexcept override;
    STDMETHODIMP GetAndClearProblemsList(BSTR* result) noexcept override;

    // Parameter metadata: src/params/DIWrapper_metadata.cpp
    STDMETHODIMP Param_DoesExist(LONG lngPID, VARIANT_BOOL* result) noexcept override;
    STDMETHODIMP Param_IsDBDataIO(LONG lngPID, VARIANT_BOOL* result) noexcept override;
    STDMETHODIMP Param_Fmt(LONG lngPID, BSTR* result) noexcept override;
    STDMETHODIMP Param_IntervalType(LONG lngPID, BSTR* result) noexcept override;
    STDMETHODIMP Param_MeasUnits(LONG lngPID, BSTR* result) noexcept override;
    STDMETHODIMP Param_Name(LONG lngPID, BSTR* result) noexcept override;
    STDMETHODIMP Param_FindPIDsUsedByPID(LONG lngPID, BSTR* strEditablePIDs, BSTR* strConstantPIDs,
                                         VARIANT_BOOL* result) noexcept override;

    // Lists of parameters: src/params/DIWrapper_lists.cpp
    STDMETHODIMP GetListOfTypeXPIDs(LONG lngParamType, BSTR* result) noexcept override;
    STDMETHODIMP GetListOf75CalPIDs(BSTR* result) noexcept override;
    STDMETHODIMP GetListOfCalPIDs(BSTR* result) noexcept override;
    STDMETHODIMP GetListOf75LinearityPIDs(BSTR* result) noexcept override;
    STDMETHODIMP GetListOf75IntfCheckPIDs(BSTR* result) noexcept override;

    // Relationships: src/params/DIWrapper_relationships.cpp
    STDMETHODIMP GetListOfRelationshipPIDs(ParamRelationshipEnum lngParamRelationship, LONG lngIntervalCount,
                                           BSTR* result) noexcept override;
    STDMETHODIMP GetRelationshipDetailData(LONG lngPID, BSTR* strRelationshipInfoXML,
                                           VARIANT_BOOL* result) noexcept override;
    STDMETHODIMP GetListOfAllRelationshipPIDs(BSTR* result) noexcept override;

    // Reads: src/params/DIWrapper_reads.cpp
    STDMETHODIMP Param_GetData_String(LONG lngPID, DATE dtmStartTime, BSTR* strValue, LONG* lngMC,
                                      VARIANT_BOOL* result) noexcept override;
    STDMETHODIMP Param_GetDataArray_Integer(LONG lngPID, DATE dtmPeriodStart, LONG lngCount,
                                            BSTR strIntervalType, LONG lngIntervalLength,
                                            SAFEARRAY** alngValues, SAFEARRAY** alngMCs,
                                            SAFEARRAY** ablnNonNumeric,
                                            VARIANT_BOOL* result) noexcept override;
    STDMETHODIMP Param_GetDataArray_Single(LONG lngPID, DATE dtmPeriodStart, LONG lngCount,
                                           BSTR strIntervalType, LONG lngIntervalLength,
                                           SAFEARRAY** asngValues, SAFEARRAY** alngMCs,
                                           SAFEARRAY** ablnNonNumeric,
                                           VARIANT_BOOL* result) noexcept override;
    STDMETHODIMP Param_GetDataArray_String(LONG lngPID, DATE dtmPeriodStart, LONG lngCount,
                                           BSTR strIntervalType, LONG lngIntervalLength,
                                           SAFEARRAY** astrValues, SAFEARRAY** alngMCs,
                                           VARIANT_BOOL* result) noexcept override;

    // Writes of one interval: src/params/DIWrapper_writes.cpp
    STDMETHODIMP Param_WriteMC(LONG lngPID, DATE dtmTStamp, LONG lngMC,
                               VARIANT_BOOL* result) noexcept override;
    STDMETHODIMP Param_WriteValue_Null(LONG lngPID, DATE dtmTStamp, VARIANT_BOOL* result) noexcept override;
    STDMETHODIMP Param_WriteValue_Integer(LONG lngPID, DATE dtmTStamp, LONG lngValue,
                                          VARIANT_BOOL* result) noexcept override;
    STDMETHODIMP Param_WriteValue_Single(LONG lngPID, DATE dtmTStamp, float sngValue,
                                         VARIANT_BOOL* result) noexcept override;
    STDMETHODIMP Param_WriteValue_String(LONG lngPID, DATE dtmTStamp, BSTR strValue,
                                         VARIANT_BOOL* result) noexcept override;
    STDMETHODIMP Param_WriteVMC_Null(LONG lngPID, DATE dtmTStamp, LONG lngMC,
                                     VARIANT_BOOL* result) noexcept override;
    STDMETHODIMP Param_WriteVMC_Integer(LONG lngPID, DATE dtmTStamp, LONG lngValue, LONG lngMC,
                                        VARIANT_BOOL* result) noexcept override;
    STDMETHODIMP Param_WriteVMC_Single(LONG lngPID, DATE dtmTStamp, float sngValue, LONG lngMC,
                                       VARIANT_BOOL* result) noexcept override;
    STDMETHODIMP Param_WriteVMC_String(LONG lngPID, DATE dtmTStamp, float strValue, LONG lngMC,
                                       VARIANT_BOOL* result) noexcept override;

    // Writes of a run: src/params/DIWrapper_bulk_write.cpp
    STDMETHODIMP Param_WriteValues(LONG lngPID, DATE dtmPeriodStart, LONG lngIntervalCount,
                                   BSTR strIntervalType, LONG lngIntervalLength, BSTR strValues,
                                   SAFEARRAY** lngMCs, SAFEARRAY** lngFlags,
                                   VARIANT_BOOL* result) noexcept override;

    // Special values and functions: src/params/DIWrapper_special.cpp
    STDMETHODIMP Param_CallSF_CalcOpTime(LONG lngPID, DATE dtmStart, DATE dtmEnd,
                                         LONG* result) noexcept override;
    STDMETHODIMP Param_GetSpecialValue_Int32(LONG lngPID, LONG lngSpecialValueID,
                                             LONG* result) noexcept override;
    STDMETHODIMP Param_GetSpecialValue_Boolean(LONG lngPID, LONG lngSpecialValueID,
                                               VARIANT_BOOL* result) noexcept override;
    STDMETHODIMP Param_GetSpecialValue_String(LONG lngPID, LONG lngSpecialValueID,
                                              BSTR* result) noexcept override;
    STDMETHODIMP Param_GetSpecialFunction_Boolean(LONG lngPID, LONG lngSpecialFunctionID,
                                                  SAFEARRAY** varMoreArgs,
                                                  VARIANT_BOOL* result) noexcept override;
    STDMETHODIMP Param_GetSpecialFunction_Int32(LONG lngPID, LONG lngSpecialFunctionID,
                                                SAFEARRAY** varMoreArgs, LONG* result) noexcept override;
    STDMETHODIMP Param_GetSpecialFunction_Real32(LONG lngPID, LONG lngSpecialFunctionID,
                                                 SAFEARRAY** varMoreArgs, LONG* result) noexcept override;
    STDMETHODIMP Param_GetSpecialFunction_String(LONG lngPID, LONG lngSpecialFunctionID,
                                                 SAFEARRAY** varMoreArgs, BSTR* result) noexcept override;

    // Name lists, parameter cache, alarm log: src/binding/DIWrapper_names.cpp
    STDMETHODIMP Params_FlushCache() noexcept override;
    STDMETHODIMP Utils_GetUnitNames(SAFEARRAY** result) noexcept override;
    STDMETHODIMP Utils_GetEDRUnitORISCodes(SAFEARRAY** result) noexcept override;
    STDMETHODIMP Utils_GetEDRUnitIDs(SAFEARRAY** result) noexcept override;
    STDMETHODIMP Utils_GetLongMCNames(SAFEARRAY** result) noexcept override;
    STDMETHODIMP Utils_GetShortMCNames(SAFEARRAY** result) noexcept override;
    STDMETHODIMP Utils_GetLongPCNames(SAFEARRAY** result) noexcept override;
    STDMETHODIMP Utils_GetShortPCNames(SAFEARRAY** result) noexcept override;
    STDMETHODIMP WriteStrToAlarm(DATE dtmTStamp, BSTR strAlarmMsg, BSTR strCategory, LONG lngAlarmSeverity,
                                 BSTR strAlarmGroup, BSTR strAlarmSource,
                                 VARIANT_BOOL* result) noexcept override;

    // Data points: src/occurrences/DIWrapper_data_points.cpp
    STDMETHODIMP GetLongTermDataPoints(LONG lngTagID, BSTR strInterval, DATE dtmFirst, DATE dtmLast,
                                       SAFEARRAY** result) noexcept override;
    STDMETHODIMP GetShortTermDataPoints(LONG lngTagID, BSTR strInterval, DATE dtmFirst, DATE dtmLast,
                                        SAFEARRAY** result) noexcept override;
    STDMETHODIMP MakeBlankDataPointWrapper(DATE dtmStart, _DataPointBasicWrapper** result) noexcept override;
    STDMETHODIMP UpdateLongTermDataPointXValue(_DataPointBasicWrapper* objDPWrapper, LONG lngTagID,
                                               BSTR strInterval, VARIANT_BOOL* result) noexcept override;
    STDMETHODIMP UpdateShortTermDataPointXValue(_DataPointBasicWrapper* objDPWrapper, LONG lngTagID,
                                                BSTR strInterval, VARIANT_BOOL* result) noexcept override;

    // Occurrences: src/occurrences/DIWrapper_occurrences.cpp
    STDMETHODIMP SaveOccurrence(_OccurrenceDataWrapper* objOccurrence,
                                VARIANT_BOOL* result) noexcept override;
    STDMETHODIMP GetOccurrences(DATE dtmFirstTStamp, DATE dtmLastTStamp, VARIANT_BOOL blnShowDowntimes,
                                VARIANT blnShowExceedences, LONG lngExcludeFilter, VARIANT_BOOL blnOrderByTag,
                                SAFEARRAY** lngUnitOrTagList, SAFEARRAY** result) noexcept override;
    STDMETHODIMP CreateOrRetrieveOccurrence(LONG lngOccPID, DATE dtmTStamp,
                                            _OccurrenceDataWrapper** result) noexcept override;

  private:
    HRESULT setUpForced(const engine::ForcedSite& site, std::wstring_view clientName,
                        VARIANT_BOOL* result) noexcept;
    HRESULT selectedDahs(engine::TextProperty<DISelectedDahs> property, BSTR* result) noexcept;

    binding::Session session_;
};

}  // namespace vtdn
