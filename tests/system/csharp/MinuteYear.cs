// A year of minutes as a client writes it in two requests, and what must then be read.

using System;
using System.Globalization;
using System.Linq;
using System.Text;
using VTWrapperDN;

internal static class MinuteYear
{
    public const int Minutes = 365 * 24 * 60;
    public static readonly DateTime Start = new DateTime(2009, 1, 1);

    private const int ValueOnly = 1;
    private const int CodeOnly = 2;
    private const int Both = 3;

    /// <summary>Writes all of the year, and then a part of each of its days anew under a mask.</summary>
    public static void Write(_DIWrapper wrapper)
    {
        Request(wrapper, 0, i => Both);
        Request(wrapper, 1, Flag);
    }

    /// <summary>Compares the year as three kinds of arrays with what was written, value by value and code by code.</summary>
    public static void Check(_DIWrapper wrapper)
    {
        string[] written = Enumerable.Range(0, Minutes).Select(Text).ToArray();
        float?[] numbers = written.Select(Number).ToArray();
        int[] writtenCodes = Enumerable.Range(0, Minutes).Select(Code).ToArray();
        void Compare(string kind, Func<int, bool> same, Func<int, object> read, int[] readCodes)
        {
            for (int i = 0; i < Minutes; i++)
                if (!same(i) || readCodes[i] != writtenCodes[i])
                    throw new Exception(string.Format("minute {0} as {1}: wrote <{2}> with code {3}, read <{4}> with code {5}", i, kind,
                                                      written[i], writtenCodes[i], read(i), readCodes[i]));
        }

        var codes = new int[Minutes];
        var flagged = new bool[Minutes];
        var singles = new float[Minutes];
        Tally.True(wrapper.Param_GetDataArray_Single(Demo.So2Analyzer, Start, Minutes, "m", 1, ref singles, ref codes, ref flagged), "singles refused");
        Compare("single", i => singles[i] == (numbers[i] ?? 0) && flagged[i] == (numbers[i] == null), i => singles[i], codes);

        var integers = new int[Minutes];
        Tally.True(wrapper.Param_GetDataArray_Integer(Demo.So2Analyzer, Start, Minutes, "m", 1, ref integers, ref codes, ref flagged), "integers refused");
        bool SameInteger(int i)
        {
            double rounded = Math.Round(numbers[i] ?? double.NaN, MidpointRounding.ToEven);
            bool fits = rounded >= short.MinValue && rounded <= short.MaxValue;
            return integers[i] == (fits ? (int)rounded : 0) && flagged[i] != fits;
        }
        Compare("integer", SameInteger, i => integers[i], codes);

        var texts = new string[Minutes];
        Tally.True(wrapper.Param_GetDataArray_String(Demo.So2Analyzer, Start, Minutes, "m", 1, ref texts, ref codes), "texts refused");
        Compare("text", i => (texts[i] ?? "") == (numbers[i]?.ToString() ?? written[i]), i => texts[i], codes);
    }

    private static void Request(_DIWrapper wrapper, int round, Func<int, int> flag)
    {
        var values = new StringBuilder();
        var codes = new int[Minutes];
        var flags = new int[Minutes];
        for (int i = 0; i < Minutes; i++)
        {
            values.Append(i == 0 ? "" : "\t").Append(TextIn(round, i));
            codes[i] = CodeIn(round, i);
            flags[i] = flag(i);
        }
        bool written = wrapper.Param_WriteValues(Demo.So2Analyzer, Start, Minutes, "m", 1, values.ToString(), ref codes, ref flags);
        Tally.True(written, "not written: " + wrapper.GetAndClearProblemsList());
    }

    // The mask of the second request: all five kinds of flags side by side, and for some hours one flag throughout.
    private static int Flag(int i) => i / 60 % 4 == 0 ? i / 240 % 5 : i % 5;

    private static string Text(int i) => TextIn(Flag(i) == ValueOnly || Flag(i) == Both ? 1 : 0, i);
    private static int Code(int i) => CodeIn(Flag(i) == CodeOnly || Flag(i) == Both ? 1 : 0, i);

    // Days of numbers, a day in ten without values and one of texts; in the other days all of it mixed.
    private static string TextIn(int round, int i)
    {
        i += round * 7;
        switch (i / 1440 % 10)
        {
            case 3: return "";
            case 5: return "calibrating";
            case 7: return (i % 5000 / 10f).ToString();
        }
        switch (i % 97)
        {
            case 0: return "";
            case 1: return "n/a";
            case 2: return "\u00b5g/m\u00b3 \u20ac \U0001F600";
            case 3: return "40000";
            case 4: return (-32768.5f).ToString();
            case 5: return "True";
            case 6: return (i % 300 + 0.5f).ToString(); // halves
            case 7: return "1E-3";
            case 8: return " 12 ";
            default: return ((i % 50000 - 10000) / 10f).ToString();
        }
    }

    private static int CodeIn(int round, int i)
    {
        i += round * 7;
        return i % 1009 == 0 ? int.MinValue + i : i / 45 % 200; // known or not: codes of a run are not looked at
    }

    private static float? Number(string text) =>
        float.TryParse(text, NumberStyles.Float | NumberStyles.AllowThousands, CultureInfo.CurrentCulture, out float number) ? number : (float?)null;
}
