// What the tests know of the demo site "Barry unit 5".

using System;
using System.Collections.Generic;
using System.Globalization;
using System.IO;
using System.Linq;
using System.Text.RegularExpressions;
using VTWrapperDN;

internal static class Demo
{
    public const int Barry = 1;
    public const int Smith = 2;
    public const int So2Mass = 504030000;      // 5-040-3-00-00, lb/hr, hourly, in the database
    public const int GrossLoad = 502030000;    // 5-020-3-00-00, MW, hourly, in the database
    public const int UnitStatus = 501530100;   // 5-015-3-01-00, texts
    public const int RatedHeatInput = 590100000; // 5-901-0-00-00, a constant
    public const int OperatingTime = 501030000; // 5-010-3-00-00, hr, hourly, in the database
    public const int MinuteLoad = 502010100;   // 5-020-1-01-00, the first level of a relationship
    public const int So2Analyzer = 511010001;  // 5-110-1-00-01, ppm, by the minute, no values
    public const int Unit = 500100000;         // 5-001-0-00-00, what is said of the unit itself
    public const int Unknown = 599930000;

    public static _DIWrapper Bound(int dahs = Barry)
    {
        var wrapper = (_DIWrapper)new DIWrapper();
        if (!wrapper.Setup3(dahs, "System tests"))
        {
            string problems = wrapper.GetAndClearProblemsList();
            wrapper.Teardown();
            throw new Exception("not bound: " + problems);
        }
        return wrapper;
    }

    public static void WithBound(Action<_DIWrapper> body)
    {
        _DIWrapper wrapper = Bound();
        try
        {
            body(wrapper);
        }
        finally
        {
            wrapper.Teardown();
        }
    }

    public static void WithUnbound(Action<_DIWrapper> body)
    {
        var wrapper = (_DIWrapper)new DIWrapper();
        body(wrapper);
        wrapper.Teardown();
    }

    /// <summary>The texts of the problems list without their time stamps, which it empties.</summary>
    public static string[] Problems(_DIWrapper wrapper)
    {
        string list = wrapper.GetAndClearProblemsList();
        return list == "" ? new string[0] : list.Split('\t').Select(line => line.Substring(line.IndexOf(") ") + 2)).ToArray();
    }

    /// <summary>The rows of a file of the demo site without its header. Cells may stand between quotation marks.</summary>
    public static string[][] Table(string folder, string file)
    {
        IEnumerable<string> lines = File.ReadAllLines(Path.Combine(folder, "barry5", file)).Skip(1);
        return lines.Select(line => Regex.Matches(line, "(?:^|,)(?:\"([^\"]*)\"|([^,]*))")
                                        .Select(m => m.Groups[1].Value + m.Groups[2].Value).ToArray()).ToArray();
    }

    /// <summary>One column of the hourly demo file: what a reader of the public data sees.</summary>
    public static Dictionary<DateTime, (string value, string code)> HourlyColumn(string folder, string pid)
    {
        string[] lines = File.ReadAllLines(Path.Combine(folder, "barry5", "values", "hourly-2007.csv"));
        string[] header = lines[0].Split(',');
        int value = Array.IndexOf(header, pid), code = Array.IndexOf(header, pid + " mc");
        return lines.Skip(1).Select(l => l.Split(',')).ToDictionary(
            f => DateTime.ParseExact(f[0], "yyyy-MM-dd HH:mm", CultureInfo.InvariantCulture), f => (f[value], f[code]));
    }
}
