using System;
using System.Globalization;
using VTWrapperDN;

internal static class ReadTests
{
    private static readonly DateTime January = new DateTime(2007, 1, 1);
    private static readonly DateTime October = new DateTime(2007, 10, 1);
    private const int Hours = 31 * 24;

    public static void Run(string folder)
    {
        Tally.Test("a month of singles equals the file that was imported, value by value and code by code", () => Demo.WithBound(wrapper =>
        {
            var file = Demo.HourlyColumn(folder, "5-040-3-00-00");
            var values = new float[Hours];
            var codes = new int[Hours];
            var missing = new bool[Hours];
            Tally.True(wrapper.Param_GetDataArray_Single(Demo.So2Mass, October, Hours, "h", 1, ref values, ref codes, ref missing),
                       "refused: " + wrapper.GetAndClearProblemsList());
            int present = 0;
            int inFile = 0;
            for (int i = 0; i < Hours; i++)
            {
                var (value, code) = file[October.AddHours(i)];
                Tally.Equal(value == "", missing[i], "missing at hour " + i);
                Tally.Equal(value == "" ? 0f : float.Parse(value, CultureInfo.InvariantCulture), values[i], "value of hour " + i);
                Tally.Equal(code == "" ? 0 : int.Parse(code), codes[i], "code of hour " + i);
                if (value != "") inFile++;
                if (!missing[i]) present++;
            }
            Tally.Equal(inFile, present, "hours with a value");
            Tally.Equal(736, present, "hours with a value");
        }));

        Tally.Test("whole numbers come back up to 32767 and are flagged beyond", () => Demo.WithBound(wrapper =>
        {
            var values = new int[24];
            var codes = new int[24];
            var flagged = new bool[24];
            Tally.True(wrapper.Param_GetDataArray_Integer(Demo.GrossLoad, January, 24, "h", 1, ref values, ref codes, ref flagged), "refused");
            Tally.Equal(760, values[0]);
            Tally.Equal(false, flagged[0]);

            int one = 1;
            var value = new int[one];
            var code = new int[one];
            var flag = new bool[one];
            DateTime free = new DateTime(2008, 2, 1);
            foreach (var (written, read, isFlagged) in new[] { (32767f, 32767, false), (32768f, 0, true), (40000f, 0, true), (2.5f, 2, false), (3.5f, 4, false), (-32768f, -32768, false) })
            {
                Tally.True(wrapper.Param_WriteValue_Single(Demo.GrossLoad, free, written), "not written");
                Tally.True(wrapper.Param_GetDataArray_Integer(Demo.GrossLoad, free, 1, "h", 1, ref value, ref code, ref flag), "refused");
                Tally.Equal(read, value[0], "read of " + written);
                Tally.Equal(isFlagged, flag[0], "flag of " + written);
            }
            Tally.True(wrapper.Param_WriteVMC_Null(Demo.GrossLoad, free, 0), "not cleared");
        }));

        Tally.Test("texts come back as texts, numbers as their text, nothing as the empty text", () => Demo.WithBound(wrapper =>
        {
            var texts = new string[1];
            var codes = new int[1];
            Tally.True(wrapper.Param_GetDataArray_String(Demo.UnitStatus, January, 1, "h", 1, ref texts, ref codes), "refused");
            Tally.Equal("operating", texts[0]);
            Tally.Equal(110, codes[0]);
            Tally.True(wrapper.Param_GetDataArray_String(Demo.So2Mass, January, 1, "h", 1, ref texts, ref codes), "refused");
            Tally.Equal((5680.7f).ToString(), texts[0]);
            Tally.True(wrapper.Param_GetDataArray_String(Demo.So2Mass, new DateTime(2007, 7, 4), 1, "h", 1, ref texts, ref codes), "refused");
            Tally.True(string.IsNullOrEmpty(texts[0]), "a value in a month that is absent");
        }));

        Tally.Test("one interval reads as text with its code", () => Demo.WithBound(wrapper =>
        {
            string value = "left over";
            int code = -1;
            Tally.True(wrapper.Param_GetData_String(Demo.So2Mass, January, ref value, ref code), "refused");
            Tally.Equal((5680.7f).ToString(), value);
            Tally.Equal(102, code);
            Tally.Equal(false, wrapper.Param_GetData_String(Demo.So2Mass, January.AddMinutes(7), ref value, ref code), "off the hour");
            Tally.Equal("", value ?? "");
            Tally.Equal(0, code);
        }));

        Tally.Test("arrays of other bounds are replaced, arrays that fit are filled", () => Demo.WithBound(wrapper =>
        {
            var values = new float[3];
            var codes = new int[1000];
            var missing = new bool[24];
            Tally.True(wrapper.Param_GetDataArray_Single(Demo.So2Mass, January, 24, "h", 1, ref values, ref codes, ref missing), "refused");
            Tally.Equal(24, values.Length);
            Tally.Equal(24, codes.Length);
            Tally.Equal(24, missing.Length);
            Tally.Equal(5680.7f, values[0]);
        }));

        Tally.Test("constants and calculated parameters read like any other", () => Demo.WithBound(wrapper =>
        {
            string value = "";
            int code = 0;
            Tally.True(wrapper.Param_GetData_String(Demo.RatedHeatInput, January, ref value, ref code), "refused");
            Tally.Equal("11057", value);
            Tally.Equal(false, wrapper.Param_IsDBDataIO(Demo.RatedHeatInput));
        }));

        Tally.Test("metadata is what the site says", () => Demo.WithBound(wrapper =>
        {
            Tally.Equal("SO2 mass", wrapper.Param_Name(Demo.So2Mass));
            Tally.Equal("lb/hr", wrapper.Param_MeasUnits(Demo.So2Mass));
            Tally.Equal("0.0", wrapper.Param_Fmt(Demo.So2Mass));
            Tally.Equal("1h", wrapper.Param_IntervalType(Demo.So2Mass));
            Tally.Equal(true, wrapper.Param_IsDBDataIO(Demo.So2Mass));
            Tally.Equal(true, wrapper.Param_DoesExist(Demo.So2Mass));
            Tally.Equal(false, wrapper.Param_DoesExist(Demo.Unknown));
            Tally.Equal("", wrapper.GetAndClearProblemsList());
        }));
    }
}
