// Reads the hourly SO2 mass emissions of October 2007 from the demo site and sums them up.

using System;
using System.Runtime.InteropServices;
using VTWrapperDN;

internal static class ReadAMonth
{
    private const int Dahs = 1;
    private const int So2Mass = 504030000; // 5-040-3-00-00, lb/hr

    [STAThread]
    private static int Main()
    {
        var wrapper = (_DIWrapper)new DIWrapper();
        try
        {
            if (!wrapper.Setup3(Dahs, "Read a month"))
            {
                Console.Error.WriteLine("Not bound: " + wrapper.GetAndClearProblemsList());
                return 1;
            }

            int hours = 31 * 24;
            var values = new float[hours];
            var codes = new int[hours];
            var missing = new bool[hours];
            if (!wrapper.Param_GetDataArray_Single(So2Mass, new DateTime(2007, 10, 1), hours, "h", 1,
                                                   ref values, ref codes, ref missing))
            {
                Console.Error.WriteLine("Not read: " + wrapper.GetAndClearProblemsList());
                return 1;
            }

            double pounds = 0;
            int measured = 0;
            for (int i = 0; i < hours; i++)
            {
                if (missing[i]) continue;
                pounds += values[i];
                measured++;
            }
            Console.WriteLine("{0} of {1}: {2} of {3} hours have a value, {4:F1} lb in all",
                              wrapper.Param_Name(So2Mass), wrapper.SelectedDahs_DahsCompleteName(), measured, hours,
                              pounds);
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
