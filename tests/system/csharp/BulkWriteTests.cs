// Runs of values in one request.

using System;
using System.Linq;
using VTWrapperDN;

internal static class BulkWriteTests
{
    private static readonly DateTime Free = new DateTime(2008, 6, 1); // behind the demo's data
    private const int Pid = Demo.So2Analyzer;

    public static void Run()
    {
        Tally.Test("a year of minutes comes back value by value and code by code through all three array reads", () =>
        {
            Demo.WithBound(MinuteYear.Write);
            Demo.WithBound(MinuteYear.Check);
        });

        Tally.Test("numbers, nothing and texts are written with their codes", () => Demo.WithBound(wrapper =>
        {
            Write(wrapper, Number(1.5f) + "\t\tABC", new[] { 1, 2, 102 }, new[] { 3, 3, 3 });
            Tally.Equal(Number(1.5f) + "|1 |2 ABC|102", Stored(wrapper, 3));
        }));

        Tally.Test("flags choose value, code, both or neither", () => Demo.WithBound(wrapper =>
        {
            Write(wrapper, "1\t2\t3\t4\t5", new[] { 11, 12, 13, 14, 15 }, new[] { 3, 3, 3, 3, 3 });
            Write(wrapper, "21\t22\t23\t24\t25", new[] { 31, 32, 33, 34, 35 }, new[] { 0, 1, 2, 3, 7 });
            Tally.Equal("1|11 22|12 3|33 24|34 5|15", Stored(wrapper, 5));
            Write(wrapper, "\t", new[] { 41, 42 }, new[] { 0, 1 });
            Tally.Equal("1|11 |12", Stored(wrapper, 2), "no value in place of one");
        }));

        Tally.Test("a tab at the end makes one more field, and no text is no field", () => Demo.WithBound(wrapper =>
        {
            Write(wrapper, "5\t", new[] { 1, 2 }, new[] { 3, 3 });
            Tally.Equal("5|1 |2", Stored(wrapper, 2));
            var none = new int[0];
            Tally.Equal(true, wrapper.Param_WriteValues(Pid, Free, 0, "m", 1, "", ref none, ref none));
            Tally.Equal("5|1 |2", Stored(wrapper, 2));
            Tally.Lines(Demo.Problems(wrapper));
        }));

        Tally.Test("the client's arrays stay as they were", () => Demo.WithBound(wrapper =>
        {
            int[] codes = { 1, 2 }, flags = { 3, 9 };
            int[] sameCodes = codes, sameFlags = flags;
            Tally.True(wrapper.Param_WriteValues(Pid, Free, 2, "m", 1, "1\t2", ref codes, ref flags), "not written");
            Tally.True(codes.SequenceEqual(new[] { 1, 2 }) && flags.SequenceEqual(new[] { 3, 9 }), "changed");
            Tally.True(sameCodes.SequenceEqual(codes) && sameFlags.SequenceEqual(flags), "replaced by other contents");
        }));

        Tally.Test("a run that does not fit is refused with its own problem and stores nothing", () => Demo.WithBound(wrapper =>
        {
            Write(wrapper, "1\t2\t3", new[] { 1, 2, 3 }, new[] { 3, 3, 3 });
            int[] two = { 3, 3 }, three = { 3, 3, 3 };
            Tally.Equal(false, wrapper.Param_WriteValues(Demo.Unknown, Free, 9, "m", 1, "7", ref two, ref three));
            Tally.Equal(false, wrapper.Param_WriteValues(Demo.RatedHeatInput, Free, 9, "m", 1, "7", ref two, ref three));
            Tally.Equal(false, wrapper.Param_WriteValues(Pid, Free, 9, "m", 1, "7\t8\t9", ref two, ref three));
            Tally.Equal(false, wrapper.Param_WriteValues(Pid, Free, 9, "m", 1, "7\t8\t9", ref three, ref two));
            Tally.Equal(false, wrapper.Param_WriteValues(Pid, Free, 9, "m", 1, "7\t8", ref three, ref three));
            Tally.Equal(false, wrapper.Param_WriteValues(Pid, Free, 4, "m", 1, "7\t8\t9", ref three, ref three));
            Tally.Equal(false, wrapper.Param_WriteValues(Pid, Free, 2, "m", 1, "7\t8\t9", ref three, ref three));
            const string sizes = "Array sizes are different. Can't write values/MCs to 5-110-1-00-01 (WDN-040)";
            const string count = "Count does not match array size. Can't write values/MCs to 5-110-1-00-01 (WDN-041)";
            Tally.Lines(Demo.Problems(wrapper), "PID 5-999-3-00-00 does not exist (WDN-038)",
                        "5-901-0-00-00 is not a DBDataIO parameter (WDN-039)", sizes, sizes, sizes, count, count);
            Tally.Equal("1|1 2|2 3|3", Stored(wrapper, 3));
        }));

        Tally.Test("what the engine refuses is an exception, and nothing of the run is stored", () => Demo.WithBound(wrapper =>
        {
            Write(wrapper, "1\t2\t3", new[] { 1, 2, 3 }, new[] { 3, 3, 3 });
            int[] codes = { 7, 7, 7 }, flags = { 3, 3, 3 };
            string tooLong = new string('x', 70000);
            Tally.Throws<Exception>(() => wrapper.Param_WriteValues(Pid, Free, 3, "m", 1, "7\t8\t" + tooLong, ref codes, ref flags));
            Tally.Throws<Exception>(() => wrapper.Param_WriteValues(Pid, Free.AddSeconds(7), 3, "m", 1, "7\t8\t9", ref codes, ref flags));
            Tally.Throws<Exception>(() => wrapper.Param_WriteValues(Pid, Free, 3, "fortnight", 1, "7\t8\t9", ref codes, ref flags));
            int[] none = null;
            Tally.Throws<Exception>(() => wrapper.Param_WriteValues(Pid, Free, 3, "m", 1, "7\t8\t9", ref none, ref flags));
            Tally.Equal("1|1 2|2 3|3", Stored(wrapper, 3));
            Tally.Lines(Demo.Problems(wrapper).Where(line => line.Contains("(WDN-")).ToArray());
        }));
    }

    /// <summary>In a second process: what the first one wrote.</summary>
    public static void RunAgain()
    {
        Tally.Test("a year of minutes that another process wrote is there, masked writes included", () => Demo.WithBound(MinuteYear.Check));
        Tally.Test("so is the last small run", () => Demo.WithBound(wrapper => Tally.Equal("1|1 2|2 3|3", Stored(wrapper, 3))));
    }

    private static string Number(float number) => number.ToString();

    private static void Write(_DIWrapper wrapper, string values, int[] codes, int[] flags) =>
        Tally.True(wrapper.Param_WriteValues(Pid, Free, codes.Length, "m", 1, values, ref codes, ref flags),
                   "refused: " + string.Join("; ", Demo.Problems(wrapper)));

    private static string Stored(_DIWrapper wrapper, int count)
    {
        var texts = new string[count];
        var codes = new int[count];
        Tally.True(wrapper.Param_GetDataArray_String(Pid, Free, count, "m", 1, ref texts, ref codes), "not read");
        return string.Join(" ", texts.Zip(codes, (text, code) => text + "|" + code));
    }
}
