// The component's type library as C# declarations: what a type library importer would make of it, ready to compile
// into a client, so that no interop assembly has to be built or shipped.
//
//     var wrapper = (VTWrapperDN._DIWrapper)new VTWrapperDN.DIWrapper();
//
// Dates are local standard time. Arrays that a member fills are replaced by arrays from 0 to lngCount - 1; pass
// dimensioned ones, never null. An array of objects that a member returns is null where there is nothing. An engine
// failure arrives as a COMException with the engine's number and text.

using System;
using System.Runtime.InteropServices;

// One release of the runtime calls dual interfaces obsolete; they work there as everywhere.
#pragma warning disable CS0618

namespace VTWrapperDN
{
    /// <summary>Averaging levels of related parameters.</summary>
    [Guid("D3E4733C-DC21-4527-BC33-B9D8E0836345")]
    public enum ParamRelationshipEnum
    {
        ParamRelationship_Minute = 1,
        ParamRelationship_Hourly = 2,
        ParamRelationship_Daily = 3,
    }

    /// <summary>Access to the data of one DAHS: binding, problems list, parameters.</summary>
    [ComImport, Guid("61552E09-705D-4941-B814-56114E8B44D7"), InterfaceType(ComInterfaceType.InterfaceIsDual)]
    public interface _DIWrapper
    {
        // Binding to a DAHS.
        /// <summary>Binds the wrapper to a DAHS of the directory. False when already set up or refused by the engine; the wrapper stays bound until Teardown either way.</summary>
        [DispId(1)]
        bool Setup(int lngDahsID);

        /// <summary>Setup under a client application name; a blank name becomes VantorDNWrapper.</summary>
        [DispId(2)]
        bool Setup3(int lngDahsID, [In, MarshalAs(UnmanagedType.BStr)] string strClientAppName);

        /// <summary>Binds the wrapper to a site by its id and five connection strings instead of a directory entry.</summary>
        [DispId(3)]
        bool Setup2(
            [In, MarshalAs(UnmanagedType.BStr)] string strForceSiteID,
            [In, MarshalAs(UnmanagedType.BStr)] string strForceAlarmConnection,
            [In, MarshalAs(UnmanagedType.BStr)] string strForceConfigConnection,
            [In, MarshalAs(UnmanagedType.BStr)] string strForceDataConnection,
            [In, MarshalAs(UnmanagedType.BStr)] string strForceDataShortTermConnection,
            [In, MarshalAs(UnmanagedType.BStr)] string strForceRealtimeConnection);

        /// <summary>Setup2 under a client application name; a blank name becomes VantorDNWrapper.</summary>
        [DispId(4)]
        bool Setup4(
            [In, MarshalAs(UnmanagedType.BStr)] string strForceSiteID,
            [In, MarshalAs(UnmanagedType.BStr)] string strForceAlarmConnection,
            [In, MarshalAs(UnmanagedType.BStr)] string strForceConfigConnection,
            [In, MarshalAs(UnmanagedType.BStr)] string strForceDataConnection,
            [In, MarshalAs(UnmanagedType.BStr)] string strForceDataShortTermConnection,
            [In, MarshalAs(UnmanagedType.BStr)] string strForceRealtimeConnection,
            [In, MarshalAs(UnmanagedType.BStr)] string strClientAppName);

        /// <summary>Closes the engine and ends the binding; nothing happens when not set up.</summary>
        [DispId(5)]
        void Teardown();

        /// <summary>Directory of the product family ("" before set-up).</summary>
        [DispId(6)]
        [return: MarshalAs(UnmanagedType.BStr)]
        string SelectedDahs_VantorDir();

        /// <summary>System directory of the product family ("" before set-up).</summary>
        [DispId(7)]
        [return: MarshalAs(UnmanagedType.BStr)]
        string SelectedDahs_VantorSystemDir();

        /// <summary>Connection string of the alarm database ("" before set-up).</summary>
        [DispId(8)]
        [return: MarshalAs(UnmanagedType.BStr)]
        string SelectedDahs_AlarmConnection();

        /// <summary>Connection string of the configuration database ("" before set-up).</summary>
        [DispId(9)]
        [return: MarshalAs(UnmanagedType.BStr)]
        string SelectedDahs_ConfigConnection();

        /// <summary>Complete name of the DAHS ("" before set-up).</summary>
        [DispId(10)]
        [return: MarshalAs(UnmanagedType.BStr)]
        string SelectedDahs_DahsCompleteName();

        /// <summary>Id of the DAHS (0 before set-up).</summary>
        [DispId(11)]
        int SelectedDahs_DahsID();

        /// <summary>Connection string of the data database ("" before set-up).</summary>
        [DispId(12)]
        [return: MarshalAs(UnmanagedType.BStr)]
        string SelectedDahs_DataConnection();

        /// <summary>Connection string of the realtime database ("" before set-up).</summary>
        [DispId(13)]
        [return: MarshalAs(UnmanagedType.BStr)]
        string SelectedDahs_RealtimeConnection();

        /// <summary>Connection string of the short-term data database ("" before set-up).</summary>
        [DispId(14)]
        [return: MarshalAs(UnmanagedType.BStr)]
        string SelectedDahs_DataShortTermConnection();

        /// <summary>Identifier of the site ("" before set-up).</summary>
        [DispId(15)]
        [return: MarshalAs(UnmanagedType.BStr)]
        string SelectedDahs_SiteID();

        // Problems list.
        /// <summary>The problems since the last call, separated by tabs, each "(time stamp) text"; empties the list.</summary>
        [DispId(31)]
        [return: MarshalAs(UnmanagedType.BStr)]
        string GetAndClearProblemsList();

        // Parameter metadata.
        /// <summary>Whether the engine knows the parameter.</summary>
        [DispId(51)]
        bool Param_DoesExist(int lngPID);

        /// <summary>Whether the values of the parameter are stored in the database, so that they can be written (I/O type 38).</summary>
        [DispId(52)]
        bool Param_IsDBDataIO(int lngPID);

        /// <summary>Display format of the parameter.</summary>
        [DispId(53)]
        [return: MarshalAs(UnmanagedType.BStr)]
        string Param_Fmt(int lngPID);

        /// <summary>Interval type of the parameter.</summary>
        [DispId(54)]
        [return: MarshalAs(UnmanagedType.BStr)]
        string Param_IntervalType(int lngPID);

        /// <summary>Unit of measure of the parameter.</summary>
        [DispId(55)]
        [return: MarshalAs(UnmanagedType.BStr)]
        string Param_MeasUnits(int lngPID);

        /// <summary>Name of the parameter.</summary>
        [DispId(56)]
        [return: MarshalAs(UnmanagedType.BStr)]
        string Param_Name(int lngPID);

        /// <summary>Lists the editable and the constant parameters that a parameter of time type 3 is computed from, as nine-digit PIDs joined by ";".</summary>
        [DispId(57)]
        bool Param_FindPIDsUsedByPID(
            int lngPID,
            [In, Out, MarshalAs(UnmanagedType.BStr)] ref string strEditablePIDs,
            [In, Out, MarshalAs(UnmanagedType.BStr)] ref string strConstantPIDs);

        // Lists of parameters: nine-digit PIDs joined by ";", in the engine's order ("" before set-up).
        /// <summary>The parameters of one parameter type.</summary>
        [DispId(61)]
        [return: MarshalAs(UnmanagedType.BStr)]
        string GetListOfTypeXPIDs(int lngParamType);

        /// <summary>The calibration parameters under 40 CFR part 75.</summary>
        [DispId(62)]
        [return: MarshalAs(UnmanagedType.BStr)]
        string GetListOf75CalPIDs();

        /// <summary>The calibration parameters.</summary>
        [DispId(63)]
        [return: MarshalAs(UnmanagedType.BStr)]
        string GetListOfCalPIDs();

        /// <summary>The linearity parameters under 40 CFR part 75.</summary>
        [DispId(64)]
        [return: MarshalAs(UnmanagedType.BStr)]
        string GetListOf75LinearityPIDs();

        /// <summary>The interference-check parameters under 40 CFR part 75.</summary>
        [DispId(65)]
        [return: MarshalAs(UnmanagedType.BStr)]
        string GetListOf75IntfCheckPIDs();

        // Relationships between the averaging levels of a quantity.
        /// <summary>The parameters that carry a relationship of so many minutes, hours or days, as nine-digit PIDs joined by ";".</summary>
        [DispId(71)]
        [return: MarshalAs(UnmanagedType.BStr)]
        string GetListOfRelationshipPIDs(ParamRelationshipEnum lngParamRelationship, int lngIntervalCount);

        /// <summary>The relationship of a parameter as an XML document; "" when it has none.</summary>
        [DispId(72)]
        bool GetRelationshipDetailData(
            int lngPID,
            [In, Out, MarshalAs(UnmanagedType.BStr)] ref string strRelationshipInfoXML);

        /// <summary>All parameters that carry a relationship, as nine-digit PIDs joined by ";".</summary>
        [DispId(73)]
        [return: MarshalAs(UnmanagedType.BStr)]
        string GetListOfAllRelationshipPIDs();

        // Reads.
        /// <summary>Reads one interval as text with its monitor code; any failure gives False, "" and 0.</summary>
        [DispId(81)]
        bool Param_GetData_String(
            int lngPID,
            DateTime dtmStartTime,
            [In, Out, MarshalAs(UnmanagedType.BStr)] ref string strValue,
            ref int lngMC);

        /// <summary>Reads a run of intervals as whole numbers from -32768 to 32767; anything else is 0 and flagged in ablnNonNumeric. Arrays become 0 To lngCount - 1.</summary>
        [DispId(82)]
        bool Param_GetDataArray_Integer(
            int lngPID,
            DateTime dtmPeriodStart,
            int lngCount,
            [In, MarshalAs(UnmanagedType.BStr)] string strIntervalType,
            int lngIntervalLength,
            [In, Out, MarshalAs(UnmanagedType.SafeArray, SafeArraySubType = VarEnum.VT_I4)] ref int[] alngValues,
            [In, Out, MarshalAs(UnmanagedType.SafeArray, SafeArraySubType = VarEnum.VT_I4)] ref int[] alngMCs,
            [In, Out, MarshalAs(UnmanagedType.SafeArray, SafeArraySubType = VarEnum.VT_BOOL)] ref bool[] ablnNonNumeric);

        /// <summary>Reads a run of intervals as singles; no value is 0 and flagged in ablnNonNumeric. Arrays become 0 To lngCount - 1.</summary>
        [DispId(83)]
        bool Param_GetDataArray_Single(
            int lngPID,
            DateTime dtmPeriodStart,
            int lngCount,
            [In, MarshalAs(UnmanagedType.BStr)] string strIntervalType,
            int lngIntervalLength,
            [In, Out, MarshalAs(UnmanagedType.SafeArray, SafeArraySubType = VarEnum.VT_R4)] ref float[] asngValues,
            [In, Out, MarshalAs(UnmanagedType.SafeArray, SafeArraySubType = VarEnum.VT_I4)] ref int[] alngMCs,
            [In, Out, MarshalAs(UnmanagedType.SafeArray, SafeArraySubType = VarEnum.VT_BOOL)] ref bool[] ablnNonNumeric);

        /// <summary>Reads a run of intervals as texts; no value is "". Arrays become 0 To lngCount - 1.</summary>
        [DispId(84)]
        bool Param_GetDataArray_String(
            int lngPID,
            DateTime dtmPeriodStart,
            int lngCount,
            [In, MarshalAs(UnmanagedType.BStr)] string strIntervalType,
            int lngIntervalLength,
            [In, Out, MarshalAs(UnmanagedType.SafeArray, SafeArraySubType = VarEnum.VT_BSTR)] ref string[] astrValues,
            [In, Out, MarshalAs(UnmanagedType.SafeArray, SafeArraySubType = VarEnum.VT_I4)] ref int[] alngMCs);

        // Writes of one interval.
        /// <summary>Writes the monitor code of one interval and keeps its value.</summary>
        [DispId(111)]
        bool Param_WriteMC(int lngPID, DateTime dtmTStamp, int lngMC);

        /// <summary>Clears the value of one interval and keeps its monitor code.</summary>
        [DispId(112)]
        bool Param_WriteValue_Null(int lngPID, DateTime dtmTStamp);

        /// <summary>Writes a whole number to one interval and keeps its monitor code.</summary>
        [DispId(113)]
        bool Param_WriteValue_Integer(int lngPID, DateTime dtmTStamp, int lngValue);

        /// <summary>Writes a single to one interval and keeps its monitor code.</summary>
        [DispId(114)]
        bool Param_WriteValue_Single(int lngPID, DateTime dtmTStamp, float sngValue);

        /// <summary>Writes a text to one interval and keeps its monitor code.</summary>
        [DispId(115)]
        bool Param_WriteValue_String(
            int lngPID,
            DateTime dtmTStamp,
            [In, MarshalAs(UnmanagedType.BStr)] string strValue);

        /// <summary>Writes no value and a monitor code to one interval.</summary>
        [DispId(116)]
        bool Param_WriteVMC_Null(int lngPID, DateTime dtmTStamp, int lngMC);

        /// <summary>Writes a whole number and a monitor code to one interval.</summary>
        [DispId(117)]
        bool Param_WriteVMC_Integer(int lngPID, DateTime dtmTStamp, int lngValue, int lngMC);

        /// <summary>Writes a single and a monitor code to one interval.</summary>
        [DispId(118)]
        bool Param_WriteVMC_Single(int lngPID, DateTime dtmTStamp, float sngValue, int lngMC);

        /// <summary>Writes a single and a monitor code to one interval: strValue is a number here.</summary>
        [DispId(119)]
        bool Param_WriteVMC_String(int lngPID, DateTime dtmTStamp, float strValue, int lngMC);

        // Writes of a run of intervals.
        /// <summary>Writes a run of intervals in one request: values separated by tabs (an empty one is no value), monitor codes, and flags (1 value, 2 monitor code, 3 both, any other number nothing); arrays are 0 To lngIntervalCount - 1 and are not changed.</summary>
        [DispId(131)]
        bool Param_WriteValues(
            int lngPID,
            DateTime dtmPeriodStart,
            int lngIntervalCount,
            [In, MarshalAs(UnmanagedType.BStr)] string strIntervalType,
            int lngIntervalLength,
            [In, MarshalAs(UnmanagedType.BStr)] string strValues,
            [In, Out, MarshalAs(UnmanagedType.SafeArray, SafeArraySubType = VarEnum.VT_I4)] ref int[] lngMCs,
            [In, Out, MarshalAs(UnmanagedType.SafeArray, SafeArraySubType = VarEnum.VT_I4)] ref int[] lngFlags);

        // Numbered facts and functions of a parameter. What the engine refuses is a problem with its number and description.
        /// <summary>Operating time from dtmStart to dtmEnd as a whole number; 0 when the engine's answer is no number.</summary>
        [DispId(141)]
        int Param_CallSF_CalcOpTime(int lngPID, DateTime dtmStart, DateTime dtmEnd);

        /// <summary>A special value as a whole number; 0 when it is no number.</summary>
        [DispId(142)]
        int Param_GetSpecialValue_Int32(int lngPID, int lngSpecialValueID);

        /// <summary>A special value as a boolean.</summary>
        [DispId(143)]
        bool Param_GetSpecialValue_Boolean(int lngPID, int lngSpecialValueID);

        /// <summary>A special value as text; "" when it cannot be one.</summary>
        [DispId(144)]
        [return: MarshalAs(UnmanagedType.BStr)]
        string Param_GetSpecialValue_String(int lngPID, int lngSpecialValueID);

        /// <summary>The result of a special function as a boolean; varMoreArgs reaches the engine whole, as its one argument.</summary>
        [DispId(145)]
        bool Param_GetSpecialFunction_Boolean(
            int lngPID,
            int lngSpecialFunctionID,
            [In, Out, MarshalAs(UnmanagedType.SafeArray, SafeArraySubType = VarEnum.VT_VARIANT)] ref object[] varMoreArgs);

        /// <summary>The result of a special function as a whole number, halves to even.</summary>
        [DispId(146)]
        int Param_GetSpecialFunction_Int32(
            int lngPID,
            int lngSpecialFunctionID,
            [In, Out, MarshalAs(UnmanagedType.SafeArray, SafeArraySubType = VarEnum.VT_VARIANT)] ref object[] varMoreArgs);

        /// <summary>The result of a special function as a single, rounded to a whole number, halves to even.</summary>
        [DispId(147)]
        int Param_GetSpecialFunction_Real32(
            int lngPID,
            int lngSpecialFunctionID,
            [In, Out, MarshalAs(UnmanagedType.SafeArray, SafeArraySubType = VarEnum.VT_VARIANT)] ref object[] varMoreArgs);

        /// <summary>The result of a special function as text; "" when it cannot be one.</summary>
        [DispId(148)]
        [return: MarshalAs(UnmanagedType.BStr)]
        string Param_GetSpecialFunction_String(
            int lngPID,
            int lngSpecialFunctionID,
            [In, Out, MarshalAs(UnmanagedType.SafeArray, SafeArraySubType = VarEnum.VT_VARIANT)] ref object[] varMoreArgs);

        // Name lists and the parameter cache: error 91 before set-up. The alarm log.
        /// <summary>Empties the engine's cache of parameters.</summary>
        [DispId(161)]
        void Params_FlushCache();

        /// <summary>Names of the units, 0 To 19.</summary>
        [DispId(162)]
        [return: MarshalAs(UnmanagedType.SafeArray, SafeArraySubType = VarEnum.VT_BSTR)]
        string[] Utils_GetUnitNames();

        /// <summary>ORIS codes of the units for electronic data reports, 0 To 19; "" for a unit that reports none.</summary>
        [DispId(163)]
        [return: MarshalAs(UnmanagedType.SafeArray, SafeArraySubType = VarEnum.VT_BSTR)]
        string[] Utils_GetEDRUnitORISCodes();

        /// <summary>Unit ids for electronic data reports, 0 To 19; "" for a unit that reports none.</summary>
        [DispId(164)]
        [return: MarshalAs(UnmanagedType.SafeArray, SafeArraySubType = VarEnum.VT_BSTR)]
        string[] Utils_GetEDRUnitIDs();

        /// <summary>Long names of the monitor codes, from 0 to the highest code.</summary>
        [DispId(165)]
        [return: MarshalAs(UnmanagedType.SafeArray, SafeArraySubType = VarEnum.VT_BSTR)]
        string[] Utils_GetLongMCNames();

        /// <summary>Short names of the monitor codes, from 0 to the highest code.</summary>
        [DispId(166)]
        [return: MarshalAs(UnmanagedType.SafeArray, SafeArraySubType = VarEnum.VT_BSTR)]
        string[] Utils_GetShortMCNames();

        /// <summary>Long names of the parameter codes, from 0 to the highest code.</summary>
        [DispId(167)]
        [return: MarshalAs(UnmanagedType.SafeArray, SafeArraySubType = VarEnum.VT_BSTR)]
        string[] Utils_GetLongPCNames();

        /// <summary>Short names of the parameter codes, from 0 to the highest code.</summary>
        [DispId(168)]
        [return: MarshalAs(UnmanagedType.SafeArray, SafeArraySubType = VarEnum.VT_BSTR)]
        string[] Utils_GetShortPCNames();

        /// <summary>Writes a text into the alarm log of the DAHS; False before set-up and for a severity outside 0 to 4.</summary>
        [DispId(169)]
        bool WriteStrToAlarm(
            DateTime dtmTStamp,
            [In, MarshalAs(UnmanagedType.BStr)] string strAlarmMsg,
            [In, MarshalAs(UnmanagedType.BStr)] string strCategory,
            int lngAlarmSeverity,
            [In, MarshalAs(UnmanagedType.BStr)] string strAlarmGroup,
            [In, MarshalAs(UnmanagedType.BStr)] string strAlarmSource);


        // Data points of a tag.
        /// <summary>Long-term (an hour and longer) data points of a tag from one time to another, in order of time; null where there is nothing.</summary>
        [DispId(201)]
        [return: MarshalAs(UnmanagedType.SafeArray, SafeArraySubType = VarEnum.VT_DISPATCH)]
        _DataPointBasicWrapper[] GetLongTermDataPoints(
            int lngTagID,
            [In, MarshalAs(UnmanagedType.BStr)] string strInterval,
            DateTime dtmFirst,
            DateTime dtmLast);

        /// <summary>Short-term (below an hour) data points of a tag from one time to another, in order of time; null where there is nothing.</summary>
        [DispId(202)]
        [return: MarshalAs(UnmanagedType.SafeArray, SafeArraySubType = VarEnum.VT_DISPATCH)]
        _DataPointBasicWrapper[] GetShortTermDataPoints(
            int lngTagID,
            [In, MarshalAs(UnmanagedType.BStr)] string strInterval,
            DateTime dtmFirst,
            DateTime dtmLast);

        /// <summary>A blank data point at a time; works before set-up, too.</summary>
        [DispId(203)]
        [return: MarshalAs(UnmanagedType.Interface)]
        _DataPointBasicWrapper MakeBlankDataPointWrapper(DateTime dtmStart);

        /// <summary>Writes the extra value of a long-term data point and nothing else of it.</summary>
        [DispId(204)]
        bool UpdateLongTermDataPointXValue(
            [In, MarshalAs(UnmanagedType.Interface)] _DataPointBasicWrapper objDPWrapper,
            int lngTagID,
            [In, MarshalAs(UnmanagedType.BStr)] string strInterval);

        /// <summary>Writes the extra value of a short-term data point and nothing else of it.</summary>
        [DispId(205)]
        bool UpdateShortTermDataPointXValue(
            [In, MarshalAs(UnmanagedType.Interface)] _DataPointBasicWrapper objDPWrapper,
            int lngTagID,
            [In, MarshalAs(UnmanagedType.BStr)] string strInterval);

        /// <summary>Saves what was changed of an occurrence; value and monitor code of its data point stay.</summary>
        [DispId(211)]
        bool SaveOccurrence([In, MarshalAs(UnmanagedType.Interface)] _OccurrenceDataWrapper objOccurrence);

        /// <summary>Occurrences from one time to another; null where there is nothing. blnShowExceedences is a boolean, or what converts to one; lngExcludeFilter is 0 for all, 1 or 2 as the engine has it; lngUnitOrTagList names units or tags, null means all.</summary>
        [DispId(212)]
        [return: MarshalAs(UnmanagedType.SafeArray, SafeArraySubType = VarEnum.VT_DISPATCH)]
        _OccurrenceDataWrapper[] GetOccurrences(
            DateTime dtmFirstTStamp,
            DateTime dtmLastTStamp,
            bool blnShowDowntimes,
            [In, MarshalAs(UnmanagedType.Struct)] object blnShowExceedences,
            int lngExcludeFilter,
            bool blnOrderByTag,
            [In, Out, MarshalAs(UnmanagedType.SafeArray, SafeArraySubType = VarEnum.VT_I4)] ref int[] lngUnitOrTagList);

        /// <summary>The occurrence of an occurrence parameter at a time, created when there is none yet; null, and a problem, when that fails.</summary>
        [DispId(213)]
        [return: MarshalAs(UnmanagedType.Interface)]
        _OccurrenceDataWrapper CreateOrRetrieveOccurrence(int lngOccPID, DateTime dtmTStamp);
    }

    /// <summary>One stored value of a tag at a time.</summary>
    [ComImport, Guid("28ACE052-88A6-4EE7-A371-81C054F9495A"), InterfaceType(ComInterfaceType.InterfaceIsDual)]
    public interface _DataPointBasicWrapper
    {
        /// <summary>Time stamp.</summary>
        [DispId(1)]
        DateTime TStamp
        {
            [DispId(1)]
            get;
        }

        /// <summary>Value; DBNull for none. Only numbers, and texts that read as numbers, are written.</summary>
        [DispId(2)]
        object NValue
        {
            [DispId(2)]
            [return: MarshalAs(UnmanagedType.Struct)]
            get;
            [DispId(2)]
            [param: In, MarshalAs(UnmanagedType.Struct)]
            set;
        }

        /// <summary>True for an object without a data point only; to see whether there is a value, test NValue for DBNull.</summary>
        [DispId(3)]
        bool IsNValueNull
        {
            [DispId(3)]
            get;
        }

        /// <summary>Clears the value.</summary>
        [DispId(4)]
        void SetNValueToNull();

        /// <summary>Monitor code; DBNull for none. Only numbers, and texts that read as numbers, are written.</summary>
        [DispId(5)]
        object MC
        {
            [DispId(5)]
            [return: MarshalAs(UnmanagedType.Struct)]
            get;
            [DispId(5)]
            [param: In, MarshalAs(UnmanagedType.Struct)]
            set;
        }

        /// <summary>True for an object without a data point only; to see whether there is a code, test MC for DBNull.</summary>
        [DispId(6)]
        bool IsMCNull
        {
            [DispId(6)]
            get;
        }

        /// <summary>Clears the monitor code.</summary>
        [DispId(7)]
        void SetMCToNull();

        /// <summary>Occurrence as the engine writes it.</summary>
        [DispId(8)]
        string OccDataXML
        {
            [DispId(8)]
            [return: MarshalAs(UnmanagedType.BStr)]
            get;
            [DispId(8)]
            [param: In, MarshalAs(UnmanagedType.BStr)]
            set;
        }

        /// <summary>Extra value as the engine keeps it.</summary>
        [DispId(9)]
        string XValueXML
        {
            [DispId(9)]
            [return: MarshalAs(UnmanagedType.BStr)]
            get;
            [DispId(9)]
            [param: In, MarshalAs(UnmanagedType.BStr)]
            set;
        }
    }

    /// <summary>An occurrence: a data point with an excursion, a monitor downtime, or both. SaveOccurrence keeps what is set here.</summary>
    [ComImport, Guid("B1CA740D-7E49-47A5-B1EA-1A69F26A3A1F"), InterfaceType(ComInterfaceType.InterfaceIsDual)]
    public interface _OccurrenceDataWrapper
    {
        /// <summary>PID of the tag whose data point it is.</summary>
        [DispId(1)]
        int AffectedPID
        {
            [DispId(1)]
            get;
        }

        /// <summary>Value of the data point; DBNull for none.</summary>
        [DispId(2)]
        object NValue
        {
            [DispId(2)]
            [return: MarshalAs(UnmanagedType.Struct)]
            get;
        }

        /// <summary>Value of the data point as text.</summary>
        [DispId(3)]
        string TextValue
        {
            [DispId(3)]
            [return: MarshalAs(UnmanagedType.BStr)]
            get;
        }

        /// <summary>Monitor code of the data point; DBNull for none.</summary>
        [DispId(4)]
        object MC
        {
            [DispId(4)]
            [return: MarshalAs(UnmanagedType.Struct)]
            get;
        }

        /// <summary>Beginning of the interval.</summary>
        [DispId(5)]
        DateTime StartDate
        {
            [DispId(5)]
            get;
        }

        /// <summary>Whether there is an excursion. Without one its properties are 0, "" and false, and cannot be set.</summary>
        [DispId(6)]
        bool HasExcursion
        {
            [DispId(6)]
            get;
        }

        /// <summary>Whether there is a downtime. Without one its properties are 0, "" and false, and cannot be set.</summary>
        [DispId(7)]
        bool HasDowntime
        {
            [DispId(7)]
            get;
        }

        /// <summary>PID of the occurrence parameter of the excursion.</summary>
        [DispId(8)]
        int Excursion_PID
        {
            [DispId(8)]
            get;
        }

        /// <summary>PID of the occurrence parameter of the downtime.</summary>
        [DispId(9)]
        int Downtime_PID
        {
            [DispId(9)]
            get;
        }

        /// <summary>What was done about the excursion.</summary>
        [DispId(10)]
        string Excursion_Action
        {
            [DispId(10)]
            [return: MarshalAs(UnmanagedType.BStr)]
            get;
            [DispId(10)]
            [param: In, MarshalAs(UnmanagedType.BStr)]
            set;
        }

        /// <summary>What was done about the downtime.</summary>
        [DispId(11)]
        string Downtime_Action
        {
            [DispId(11)]
            [return: MarshalAs(UnmanagedType.BStr)]
            get;
            [DispId(11)]
            [param: In, MarshalAs(UnmanagedType.BStr)]
            set;
        }

        /// <summary>Reason of the excursion.</summary>
        [DispId(12)]
        string Excursion_Reason
        {
            [DispId(12)]
            [return: MarshalAs(UnmanagedType.BStr)]
            get;
            [DispId(12)]
            [param: In, MarshalAs(UnmanagedType.BStr)]
            set;
        }

        /// <summary>Reason of the downtime.</summary>
        [DispId(13)]
        string Downtime_Reason
        {
            [DispId(13)]
            [return: MarshalAs(UnmanagedType.BStr)]
            get;
            [DispId(13)]
            [param: In, MarshalAs(UnmanagedType.BStr)]
            set;
        }

        /// <summary>Whether the excursion may be left out of reports.</summary>
        [DispId(14)]
        bool Excursion_Excludable
        {
            [DispId(14)]
            get;
            [DispId(14)]
            set;
        }

        /// <summary>Whether the downtime may be left out of reports.</summary>
        [DispId(15)]
        bool Downtime_Excludable
        {
            [DispId(15)]
            get;
            [DispId(15)]
            set;
        }

        /// <summary>Category of the excursion.</summary>
        [DispId(16)]
        string Excursion_Category
        {
            [DispId(16)]
            [return: MarshalAs(UnmanagedType.BStr)]
            get;
            [DispId(16)]
            [param: In, MarshalAs(UnmanagedType.BStr)]
            set;
        }

        /// <summary>Category of the downtime.</summary>
        [DispId(17)]
        string Downtime_Category
        {
            [DispId(17)]
            [return: MarshalAs(UnmanagedType.BStr)]
            get;
            [DispId(17)]
            [param: In, MarshalAs(UnmanagedType.BStr)]
            set;
        }

        /// <summary>The limit that was exceeded, as text.</summary>
        [DispId(18)]
        string Excursion_Limit
        {
            [DispId(18)]
            [return: MarshalAs(UnmanagedType.BStr)]
            get;
        }

        /// <summary>PID of the limit that was exceeded.</summary>
        [DispId(19)]
        int Excursion_LimitPID
        {
            [DispId(19)]
            get;
        }
    }

    /// <summary>A wrapper around the data-interface engine of one DAHS.</summary>
    [ComImport, Guid("CDD8700E-2853-4DCB-8A86-00FBB41A5AF4"), ClassInterface(ClassInterfaceType.None)]
    public class DIWrapper
    {
    }

    /// <summary>One stored value of a tag at a time. The component's operations hand it out: new fails.</summary>
    [ComImport, Guid("476BBDD6-D693-42ED-8DBD-7735617BAABB"), ClassInterface(ClassInterfaceType.None)]
    public class DataPointBasicWrapper
    {
    }

    /// <summary>A data point with an excursion, a monitor downtime, or both. The component's operations hand it out: new fails.</summary>
    [ComImport, Guid("1D02E9EB-7404-4354-AC99-91D03B3AA7E3"), ClassInterface(ClassInterfaceType.None)]
    public class OccurrenceDataWrapper
    {
    }
}
