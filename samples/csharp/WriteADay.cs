// Lists the calibrated parameters of the demo site, and writes a day of minutes to the first of them in one request.

using System;
using System.Linq;
using System.Runtime.InteropServices;
using VTWrapperDN;

internal static class WriteADay
{
    private const int Dahs = 1;
    private const int Minutes = 24 * 60;
    private const int ValueAndCode = 3; // the flag of an interval of which both are written
    private const int Measured = 1;
    private const int Missing = 9;

    [STAThread]
    private static int Main()
    {
        var wrapper = (_DIWrapper)new DIWrapper();
        try
        {
            if (!wrapper.Setup3(Dahs, "Write a day"))
            {
                Console.Error.WriteLine("Not bound: " + wrapper.GetAndClearProblemsList());
                return 1;
            }

            string[] units = wrapper.Utils_GetUnitNames();
            int[] pids = wrapper.GetListOfCalPIDs().Split(';').Select(int.Parse).ToArray();
            foreach (int pid in pids)
                Console.WriteLine("{0}  {1}, {2}", pid, units[pid / 100000000], wrapper.Param_Name(pid));

            // One text for the whole run, its values separated by tabs; an empty one is a minute without a value.
            string[] values = Enumerable.Range(0, Minutes).Select(i => i % 60 == 59 ? "" : (400 + i % 60).ToString()).ToArray();
            int[] codes = values.Select(value => value == "" ? Missing : Measured).ToArray();
            int[] flags = Enumerable.Repeat(ValueAndCode, Minutes).ToArray();
            if (!wrapper.Param_WriteValues(pids[0], new DateTime(2008, 5, 1), Minutes, "m", 1, string.Join("\t", values),
                                           ref codes, ref flags))
            {
                Console.Error.WriteLine("Not written: " + wrapper.GetAndClearProblemsList());
                return 1;
            }
            Console.WriteLine("{0} minutes written to {1}", Minutes, pids[0]);
            return 0;
        }
        catch (COMException failure)
        {
            Console.Error.WriteLine("0x{0:X8} {1}", failure.ErrorCode, failure.Message);
            return 1;
        }
        finally
        {
            wrapper.Teardown();
        }
    }
}
