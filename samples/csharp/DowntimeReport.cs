// Reports the monitor downtimes and the excursions of 2007 from the demo site, one line for each parameter that had any.

using System;
using System.Linq;
using System.Runtime.InteropServices;
using VTWrapperDN;

internal static class DowntimeReport
{
    private const int Dahs = 1;

    [STAThread]
    private static int Main()
    {
        var wrapper = (_DIWrapper)new DIWrapper();
        try
        {
            if (!wrapper.Setup3(Dahs, "Downtime report"))
            {
                Console.Error.WriteLine("Not bound: " + wrapper.GetAndClearProblemsList());
                return 1;
            }

            int[] everything = null; // or numbers of units and PIDs
            _OccurrenceDataWrapper[] found = wrapper.GetOccurrences(
                new DateTime(2007, 1, 1), new DateTime(2007, 12, 31, 23, 59, 59), true, true, 0, true, ref everything);
            foreach (var tag in (found ?? new _OccurrenceDataWrapper[0]).GroupBy(one => one.AffectedPID))
            {
                var downtimes = tag.Where(one => one.HasDowntime).ToArray();
                var excursions = tag.Where(one => one.HasExcursion).ToArray();
                Console.WriteLine("{0}: {1} intervals of {2} down, {3} of them excludable, {4} over a limit",
                                  wrapper.Param_Name(tag.Key), downtimes.Length, wrapper.Param_IntervalType(tag.Key),
                                  downtimes.Count(one => one.Downtime_Excludable), excursions.Length);
                foreach (var category in downtimes.GroupBy(one => one.Downtime_Category))
                    Console.WriteLine("  {0} down: {1}", category.Count(), category.Key);
                foreach (var category in excursions.GroupBy(one => one.Excursion_Category))
                    Console.WriteLine("  {0} over a limit: {1}", category.Count(), category.Key);
            }
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
