// Name lists, the parameter cache, the alarm log, and all of the members before set-up.

using System;
using System.Linq;
using System.Runtime.InteropServices;
using VTWrapperDN;

internal static class NameTests
{
    private const int Units = 20;
    private static readonly DateTime Noon = new DateTime(2008, 2, 29, 12, 0, 0);

    public static void Run(string folder)
    {
        Tally.Test("units are named from 0 to 19", () => Demo.WithBound(wrapper =>
        {
            string[] names = wrapper.Utils_GetUnitNames();
            Tally.Lines(names, Enumerable.Range(0, Units).Select(unit => unit >= 1 && unit <= 5 ? "Barry " + unit : "").ToArray());
            Tally.Lines(wrapper.Utils_GetEDRUnitORISCodes(), Enumerable.Range(0, Units).Select(unit => unit == 5 ? "3" : "").ToArray());
            Tally.Lines(wrapper.Utils_GetEDRUnitIDs(), Enumerable.Range(0, Units).Select(unit => unit == 5 ? "5" : "").ToArray());
        }));

        Tally.Test("codes are named up to the highest one, as in the site's files", () => Demo.WithBound(wrapper =>
        {
            void Check(string file, int highest, string[] shortNames, string[] longNames)
            {
                string[][] table = Demo.Table(folder, file);
                Tally.Equal(highest + 1, shortNames.Length, "short names in " + file);
                Tally.Equal(highest + 1, longNames.Length, "long names in " + file);
                for (int code = 0; code <= highest; code++)
                {
                    string[] row = table.SingleOrDefault(r => r[0] == code.ToString());
                    Tally.Equal(row?[1] ?? "", shortNames[code], "short name of " + code);
                    Tally.Equal(row?[2] ?? "", longNames[code], "long name of " + code);
                }
            }
            Check("monitor_codes.csv", 198, wrapper.Utils_GetShortMCNames(), wrapper.Utils_GetLongMCNames());
            Check("parameter_codes.csv", 28, wrapper.Utils_GetShortPCNames(), wrapper.Utils_GetLongPCNames());
            Tally.Equal("Flag 98", wrapper.Utils_GetShortMCNames()[198]);
            Tally.Equal("", wrapper.Utils_GetShortMCNames()[18], "a code that the site does not have");
            Tally.Equal("SO2", wrapper.Utils_GetShortPCNames()[16]);
        }));

        Tally.Test("an emptied cache is filled again", () => Demo.WithBound(wrapper =>
        {
            string before = wrapper.Param_Name(Demo.So2Mass) + wrapper.GetListOfCalPIDs();
            wrapper.Params_FlushCache();
            Tally.Equal(before, wrapper.Param_Name(Demo.So2Mass) + wrapper.GetListOfCalPIDs());
        }));

        Tally.Test("alarms of severity 0 to 4 are written, others are not", () => Demo.WithBound(wrapper =>
        {
            for (int severity = 0; severity <= 4; severity++)
                Tally.Equal(true, wrapper.WriteStrToAlarm(Noon.AddMinutes(severity), "Opacity \u20ac " + severity, "Test", severity, "Group", "C#"));
            Tally.Equal(false, wrapper.WriteStrToAlarm(Noon, "too low", "Test", -1, "Group", "C#"));
            Tally.Equal(false, wrapper.WriteStrToAlarm(Noon, "too high", "Test", 5, "Group", "C#"));
            Tally.Equal(true, wrapper.WriteStrToAlarm(Noon.AddHours(1), "", "", 0, "", ""), "empty texts");
            Tally.Equal("", wrapper.GetAndClearProblemsList());
        }));

        Tally.Test("before set-up the eight name members are error 91", () => Demo.WithUnbound(wrapper =>
        {
            foreach (Action call in new Action[] { () => wrapper.Params_FlushCache(), () => wrapper.Utils_GetUnitNames(),
                                                   () => wrapper.Utils_GetEDRUnitORISCodes(), () => wrapper.Utils_GetEDRUnitIDs(),
                                                   () => wrapper.Utils_GetLongMCNames(), () => wrapper.Utils_GetShortMCNames(),
                                                   () => wrapper.Utils_GetLongPCNames(), () => wrapper.Utils_GetShortPCNames() })
            {
                var failure = Tally.Throws<COMException>(call);
                Tally.Equal(unchecked((int)0x800A005B), failure.ErrorCode);
                Tally.Equal("Object variable or With block variable not set", failure.Message);
            }
        }));

        Tally.Test("before set-up everything else has its default result and is no problem", () => Demo.WithUnbound(wrapper =>
        {
            Tally.Equal("", wrapper.GetListOfTypeXPIDs(3) + wrapper.GetListOf75CalPIDs() + wrapper.GetListOfCalPIDs() +
                            wrapper.GetListOf75LinearityPIDs() + wrapper.GetListOf75IntfCheckPIDs() + wrapper.GetListOfAllRelationshipPIDs() +
                            wrapper.GetListOfRelationshipPIDs(ParamRelationshipEnum.ParamRelationship_Hourly, 1));
            string xml = "left over";
            Tally.Equal(false, wrapper.GetRelationshipDetailData(Demo.So2Mass, ref xml));
            Tally.Equal("left over", xml);
            int[] one = { 3 };
            Tally.Equal(false, wrapper.Param_WriteValues(Demo.So2Mass, Noon, 1, "h", 1, "1", ref one, ref one));
            object[] span = { Noon, Noon };
            Tally.Equal(0, wrapper.Param_CallSF_CalcOpTime(Demo.So2Mass, Noon, Noon));
            Tally.Equal(0, wrapper.Param_GetSpecialValue_Int32(Demo.Unit, -95));
            Tally.Equal(false, wrapper.Param_GetSpecialValue_Boolean(Demo.Unit, -17));
            Tally.Equal("", wrapper.Param_GetSpecialValue_String(Demo.Unit, -97));
            Tally.Equal(false, wrapper.Param_GetSpecialFunction_Boolean(Demo.So2Mass, 106, ref span));
            Tally.Equal(0, wrapper.Param_GetSpecialFunction_Int32(Demo.So2Mass, 106, ref span));
            Tally.Equal(0, wrapper.Param_GetSpecialFunction_Real32(Demo.So2Mass, 106, ref span));
            Tally.Equal("", wrapper.Param_GetSpecialFunction_String(Demo.So2Mass, 106, ref span));
            Tally.Equal(false, wrapper.WriteStrToAlarm(Noon, "unbound", "", 0, "", ""));
            Tally.Equal("", wrapper.GetAndClearProblemsList());
        }));
    }
}
