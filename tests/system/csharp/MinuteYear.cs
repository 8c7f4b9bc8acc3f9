// A year of minutes as a client writes it in two requests, and what must then be read.

using System;
using System.Globalization;
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
        var codes = new int[Minutes];
        var flagged = new bool[Minutes];
        var singles = new float[Minutes];
        Tally.True(wrapper.Param_GetDataArray_Single(Demo.So2Analyzer, Start, Minutes, "m", 1, ref singles, ref codes, ref flagged), "singles refused");
        for (int i = 0; i < Minutes; i++)
        {
            float? number = Number(Text(i));
            if (singles[i] != (number ?? 0) || flagged[i] != (number == null) || codes[i] != Code(i)) Differs("single", i, singles[i], codes[i], flagged[i]);
        }

        var integers = new int[Minutes];
        Tally.True(wrapper.Param_GetDataArray_Integer(Demo.So2Analyzer, Start, Minutes, "m", 1, ref integers, ref codes, ref flagged), "integers refused");
        for (int i = 0; i < Minutes; i++)
        {
            float? number = Number(Text(i));
            double rounded = Math.Round(number ?? double.NaN, MidpointRounding.ToEven);
            bool fits = rounded >= short.MinValue && rounded <= short.MaxValue;
            if (integers[i] != (fits ? (int)rounded : 0) || flagged[i] == fits || codes[i] != Code(i)) Differs("integer", i, integers[i], codes[i], flagged[i]);
        }

        var texts = new string[Minutes];
        Tally.True(wrapper.Param_GetDataArray_String(Demo.So2Analyzer, Start, Minutes, "m", 1, ref texts, ref codes), "texts refused");
        for (int i = 0; i < Minutes; i++)
            if ((texts[i] ?? "") != (Number(Text(i))?.ToString() ?? Text(i)) || codes[i] != Code(i)) Differs("text", i, texts[i], codes[i], false);
    }

    private static void Request(_DIWrapper wrapper, int round, Func<int, int> flag)
    {
        var values = new StringBuilder();
        var codes = new int[Minutes];
        var flags = new int[Minutes];
        for (int i = 0; i < Minutes; i++)
        {
            values.Append(i == 0 ? "" : "\t").Append(Text(i, round));
            codes[i] = Code(i, round);
            flags[i] = flag(i);
        }
        bool written = wrapper.Param_WriteValues(Demo.So2Analyzer, Start, Minutes, "m", 1, values.ToString(), ref codes, ref flags);
        Tally.True(written, "not written: " + wrapper.GetAndClearProblemsList());
    }

    private static void Differs(string kind, int i, object value, int code, bool flagged) =>
        throw new Exception(string.Format("minute {0} as {1}: wrote <{2}> with code {3}, read <{4}> with code {5}{6}", i, kind, Text(i), Code(i), value,
                                          code, flagged ? ", flagged" : ""));

    // The mask of the second request: all five kinds of flags side by side, and for some hours one flag throughout.
    private static int Flag(int i) => i / 60 % 4 == 0 ? i / 240 % 5 : i % 5;

    private static string Text(int i) => Text(i, Flag(i) == ValueOnly || Flag(i) == Both ? 1 : 0);
    private static int Code(int i) => Code(i, Flag(i) == CodeOnly || Flag(i) == Both ? 1 : 0);

    // Days of numbers, a day in ten without values and one of texts; in the other days all of it mixed.
    private static string Text(int i, int round)
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

    private static int Code(int i, int round)
    {
        i += round * 7;
        return i % 1009 == 0 ? int.MinValue + i : i / 45 % 200; // known or not: codes of a run are not looked at
    }

    private static float? Number(string text) =>
        float.TryParse(text, NumberStyles.Float | NumberStyles.AllowThousands, CultureInfo.CurrentCulture, out float number) ? number : (float?)null;
}
