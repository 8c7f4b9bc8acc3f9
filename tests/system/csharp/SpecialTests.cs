// Numbered facts and functions of parameters. What a function gives is computed here once more from what is read.

using System;
using System.Collections.Generic;
using System.Linq;
using VTWrapperDN;

internal static class SpecialTests
{
    private static readonly DateTime Free = new DateTime(2008, 7, 1); // behind the demo's data
    private static readonly DateTime July = new DateTime(2007, 7, 1); // absent from the demo's data
    private const int OperatingTime = 32, Availability = 101, Average = 102, Sum = 103, Minimum = 104, Maximum = 105, Count = 106;
    private const string NoSuchFunction = "5, The engine has no special function 999. It has 6 (stores one data item), ";

    public static void Run()
    {
        Values();
        Functions();
        Refusals();
    }

    private static void Values()
    {
        Tally.Test("a special value is a number, a boolean and a text, whatever it is kept as", () => Demo.WithBound(wrapper =>
        {
            void Check(int pid, int id, int number, bool boolean, string text)
            {
                Tally.Equal(number, wrapper.Param_GetSpecialValue_Int32(pid, id), "number " + id);
                Tally.Equal(boolean, wrapper.Param_GetSpecialValue_Boolean(pid, id), "boolean " + id);
                Tally.Equal(text, wrapper.Param_GetSpecialValue_String(pid, id), "text " + id);
            }
            Check(Demo.Unit, -17, -1, true, "True");
            Check(Demo.Unit, -95, 3, true, "3");
            Check(Demo.Unit, -97, 5, true, "5");
            Check(Demo.So2Analyzer, -25, 0, false, "False");
            Check(Demo.So2Mass, 1001, Demo.OperatingTime, true, Demo.OperatingTime.ToString());
            Tally.Lines(Demo.Problems(wrapper));
        }));

        Tally.Test("what cannot be converted is the default result, and a problem for a boolean only", () => Demo.WithBound(wrapper =>
        {
            Tally.Equal("40CFR75", wrapper.Param_GetSpecialValue_String(Demo.So2Analyzer, -22));
            Tally.Equal(0, wrapper.Param_GetSpecialValue_Int32(Demo.So2Analyzer, -22));
            Tally.Equal(0, wrapper.Param_GetSpecialValue_Int32(Demo.So2Analyzer, 4711));
            Tally.Equal("", wrapper.Param_GetSpecialValue_String(Demo.So2Analyzer, 4711));
            Tally.Lines(Demo.Problems(wrapper));
            Tally.Equal(false, wrapper.Param_GetSpecialValue_Boolean(Demo.So2Analyzer, -22));
            Tally.Equal(false, wrapper.Param_GetSpecialValue_Boolean(Demo.So2Analyzer, 4711));
            Tally.Lines(Demo.Problems(wrapper), "13, Type mismatch (WDN-037)", "94, Invalid use of Null (WDN-037)");
        }));
    }

    private static void Functions()
    {
        Tally.Test("average, sum, minimum, maximum and count over a span are those of the values in it", () => Demo.WithBound(wrapper =>
        {
            foreach (int pid in new[] { Demo.So2Mass, Demo.GrossLoad, Demo.MinuteLoad })
            {
                DateTime start = new DateTime(2007, 4, 6), end = new DateTime(2007, 4, 9, 5, 0, 0);
                var all = Read(wrapper, pid, start, end);
                double[] numbers = all.Select(i => i.number).OfType<double>().ToArray();
                Tally.True(numbers.Length > 60 && numbers.Length < all.Length, "a span with gaps");
                Near(numbers.Average(), Text(wrapper, pid, Average, start, end), "average");
                Near(numbers.Sum(), Text(wrapper, pid, Sum, start, end), "sum");
                Near(numbers.Min(), Text(wrapper, pid, Minimum, start, end), "minimum");
                Near(numbers.Max(), Text(wrapper, pid, Maximum, start, end), "maximum");
                Tally.Equal(numbers.Length.ToString(), Text(wrapper, pid, Count, start, end), "count");
                object[] span = Span(start, end);
                Tally.Equal(numbers.Length, wrapper.Param_GetSpecialFunction_Int32(pid, Count, ref span), "count");
                Tally.Equal((int)Math.Round(numbers.Sum()), wrapper.Param_GetSpecialFunction_Int32(pid, Sum, ref span), "whole sum");
                Tally.Equal((int)Math.Round((float)numbers.Average()), wrapper.Param_GetSpecialFunction_Real32(pid, Average, ref span), "rounded average");
                Tally.Equal(true, wrapper.Param_GetSpecialFunction_Boolean(pid, Count, ref span), "count as a boolean");
                Tally.Equal(2, span.Length, "the client's arguments");
            }
            Tally.Lines(Demo.Problems(wrapper));
        }));

        Tally.Test("operating time counts parts of hours in proportion", () => Demo.WithBound(wrapper =>
        {
            DateTime start = new DateTime(2007, 4, 5, 6, 30, 0), end = new DateTime(2007, 4, 7, 8, 15, 0);
            double hours = 0;
            foreach (var (time, number, _) in Read(wrapper, Demo.OperatingTime, start.AddMinutes(-30), end.AddMinutes(45)))
            {
                DateTime from = time < start ? start : time, to = time.AddHours(1) > end ? end : time.AddHours(1);
                hours += (number ?? 0) * (to - from).TotalHours;
            }
            Tally.True(hours > 40 && hours < 49.5, "not an ordinary span: " + hours);
            foreach (int pid in new[] { Demo.OperatingTime, Demo.So2Mass, Demo.MinuteLoad })
            {
                Near(hours, Text(wrapper, pid, OperatingTime, start, end), "hours");
                Tally.Equal((int)Math.Round(hours), wrapper.Param_CallSF_CalcOpTime(pid, start, end), "whole hours");
            }
            Tally.Lines(Demo.Problems(wrapper));
        }));

        Tally.Test("availability is the share of the hours with a value that counts", () => Demo.WithBound(wrapper =>
        {
            foreach (int pid in new[] { Demo.So2Mass, 503030000, 505030000 })
            {
                DateTime start = new DateTime(2007, 1, 1), end = new DateTime(2007, 3, 1);
                var counting = new HashSet<int>(wrapper.Param_GetSpecialValue_String(pid, 1002).Split(',').Select(int.Parse));
                var all = Read(wrapper, pid, start, end);
                int available = all.Count(i => i.number != null && counting.Contains(i.code));
                Tally.True(available > 100 && available < all.Length, "an ordinary span");
                Near(100.0 * available / all.Length, Text(wrapper, pid, Availability, start, end), "availability of " + pid);
            }
            Tally.Lines(Demo.Problems(wrapper));
        }));

        Tally.Test("a span without a number has the count and the sum 0", () => Demo.WithBound(wrapper =>
        {
            Tally.Equal("0", Text(wrapper, Demo.So2Mass, Count, July, July.AddDays(1)));
            Tally.Equal("0", Text(wrapper, Demo.So2Mass, Sum, July, July.AddDays(1)));
        }));

        Tally.Test("halves of a rounded single go to the even neighbour", () => Demo.WithBound(wrapper =>
        {
            object[] span = Span(Free, Free.AddHours(1));
            foreach (var (value, rounded) in new[] { (0.5f, 0), (1.5f, 2), (2.5f, 2), (3.7f, 4), (-2.5f, -2) })
            {
                Tally.True(wrapper.Param_WriteValue_Single(Demo.So2Mass, Free, value), "not written");
                Tally.Equal(rounded, wrapper.Param_GetSpecialFunction_Real32(Demo.So2Mass, Sum, ref span), "rounded " + value);
                Tally.Equal(rounded, wrapper.Param_GetSpecialFunction_Int32(Demo.So2Mass, Sum, ref span), "whole " + value);
            }
            Tally.True(wrapper.Param_WriteVMC_Null(Demo.So2Mass, Free, 0), "not cleared");
        }));
    }

    private static void Refusals()
    {
        Tally.Test("an unknown parameter is a problem of each member's own", () => Demo.WithBound(wrapper =>
        {
            object[] span = Span(Free, Free.AddDays(1));
            Tally.Equal(0, wrapper.Param_GetSpecialValue_Int32(Demo.Unknown, -95));
            Tally.Equal(false, wrapper.Param_GetSpecialValue_Boolean(Demo.Unknown, -17));
            Tally.Equal(0, wrapper.Param_CallSF_CalcOpTime(Demo.Unknown, Free, Free));
            Tally.Equal("", wrapper.Param_GetSpecialValue_String(Demo.Unknown, -97));
            Tally.Equal(false, wrapper.Param_GetSpecialFunction_Boolean(Demo.Unknown, Count, ref span));
            Tally.Equal(0, wrapper.Param_GetSpecialFunction_Int32(Demo.Unknown, Count, ref span));
            Tally.Equal(0, wrapper.Param_GetSpecialFunction_Real32(Demo.Unknown, Count, ref span));
            Tally.Equal("", wrapper.Param_GetSpecialFunction_String(Demo.Unknown, Count, ref span));
            Tally.Lines(Demo.Problems(wrapper), new[] { "031", "035", "042", "047", "0049", "0052", "0055", "0058" }
                            .Select(code => "PID 5-999-3-00-00 does not exist (WDN-" + code + ")").ToArray());
        }));

        Tally.Test("what the engine refuses is its number and sentence, not an exception", () => Demo.WithBound(wrapper =>
        {
            object[] span = Span(Free, Free.AddDays(1)), one = { Free }, texts = { "today", "tomorrow" }, backwards = Span(Free, July);
            Tally.Equal(false, wrapper.Param_GetSpecialFunction_Boolean(Demo.So2Mass, 999, ref span));
            Tally.Equal(0, wrapper.Param_GetSpecialFunction_Int32(Demo.So2Mass, Average, ref one));
            Tally.Equal(0, wrapper.Param_GetSpecialFunction_Real32(Demo.So2Mass, Average, ref texts));
            Tally.Equal("", wrapper.Param_GetSpecialFunction_String(Demo.So2Mass, Average, ref backwards));
            Tally.Equal(0, wrapper.Param_CallSF_CalcOpTime(Demo.RatedHeatInput, Free, Free));
            string[] lines = Refused(wrapper);
            Tally.Equal(5, lines.Length, "lines");
            Tally.True(lines[0].StartsWith(NoSuchFunction) && lines[0].EndsWith(". (WDN-0050)"), lines[0]);
            Tally.Equal("450, Special function 102 takes 2 arguments, the start and the end of a span of time, two dates. It was given 1. (WDN-0053)", lines[1]);
            Tally.Equal("13, Special function 102 takes the start and the end of a span of time, two dates. Its first argument is no date. (WDN-0056)", lines[2]);
            Tally.Equal("6, The span from 2008-07-01 00:00 to 2007-07-01 00:00 ends before it starts. Give the earlier time first. (WDN-0059)", lines[3]);
            Tally.Equal("5, There is no operating time for 5-901-0-00-00: the units of 5-901-0-00-00 are \"mmBtu/hr\". " +
                        "Name a parameter whose units are h, min or s in its special value 1001. (WDN-043)", lines[4]);
        }));

        Tally.Test("a result that does not convert is a problem, or nothing for a text and for operating time", () => Demo.WithBound(wrapper =>
        {
            object[] nothing = Span(July, July.AddDays(1)), large = Span(Free, Free.AddHours(1));
            Tally.Equal(false, wrapper.Param_GetSpecialFunction_Boolean(Demo.So2Mass, Average, ref nothing));
            Tally.Equal(0, wrapper.Param_GetSpecialFunction_Int32(Demo.So2Mass, Average, ref nothing));
            Tally.Equal(0, wrapper.Param_GetSpecialFunction_Real32(Demo.So2Mass, Average, ref nothing));
            Tally.Equal("", wrapper.Param_GetSpecialFunction_String(Demo.So2Mass, Average, ref nothing));
            Tally.True(wrapper.Param_WriteValue_Single(Demo.So2Mass, Free, 3e9f), "not written");
            Tally.Equal(0, wrapper.Param_GetSpecialFunction_Int32(Demo.So2Mass, Sum, ref large));
            Tally.Equal(0, wrapper.Param_GetSpecialFunction_Real32(Demo.So2Mass, Sum, ref large));
            Tally.Equal(true, wrapper.Param_GetSpecialFunction_Boolean(Demo.So2Mass, Sum, ref large));
            Tally.Equal("3000000000", wrapper.Param_GetSpecialFunction_String(Demo.So2Mass, Sum, ref large));
            Tally.True(wrapper.Param_WriteVMC_Null(Demo.So2Mass, Free, 0), "not cleared");
            Tally.Lines(Demo.Problems(wrapper), "94, Invalid use of Null (WDN-0051)", "94, Invalid use of Null (WDN-0054)",
                        "94, Invalid use of Null (WDN-0057)", "6, Overflow (WDN-0054)", "6, Overflow (WDN-0057)");
        }));
    }

    // The list holds what the engine itself says, too.
    private static string[] Refused(_DIWrapper wrapper) => Demo.Problems(wrapper).Where(line => line.Contains("(WDN-")).ToArray();

    private static object[] Span(DateTime start, DateTime end) => new object[] { start, end };

    private static string Text(_DIWrapper wrapper, int pid, int function, DateTime start, DateTime end)
    {
        object[] span = Span(start, end);
        return wrapper.Param_GetSpecialFunction_String(pid, function, ref span);
    }

    // The texts that are read have the digits of singles.
    private static void Near(double expected, string actual, string what)
    {
        Tally.True(double.TryParse(actual, out double number), what + " is <" + actual + ">");
        Tally.True(Math.Abs(number - expected) <= 1e-6 * Math.Abs(expected), string.Format("{0}: expected {1:R}, got {2:R}", what, expected, number));
    }

    private static (DateTime time, double? number, int code)[] Read(_DIWrapper wrapper, int pid, DateTime start, DateTime end)
    {
        bool minutes = wrapper.Param_IntervalType(pid) == "1m";
        int count = (int)(minutes ? (end - start).TotalMinutes : (end - start).TotalHours);
        var texts = new string[count];
        var codes = new int[count];
        Tally.True(wrapper.Param_GetDataArray_String(pid, start, count, minutes ? "m" : "h", 1, ref texts, ref codes), "not read: " + pid);
        return Enumerable.Range(0, count).Select(i => (minutes ? start.AddMinutes(i) : start.AddHours(i),
                                                       double.TryParse(texts[i], out double number) ? number : (double?)null, codes[i])).ToArray();
    }
}
