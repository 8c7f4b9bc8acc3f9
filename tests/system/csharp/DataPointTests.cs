// Data points: typed arrays of objects, values that may be null, and texts to the character.

using System;
using System.Globalization;
using System.Linq;
using System.Runtime.InteropServices;
using VTWrapperDN;

internal static class DataPointTests
{
    private static readonly DateTime April = new DateTime(2007, 4, 5);
    private static readonly DateTime Running = new DateTime(2007, 4, 6, 1, 0, 0); // an hour with a value
    private static readonly DateTime Free = new DateTime(2008, 9, 1); // behind the demo's data
    private const string AnyText = "<x a=\"1\">\r\n\t&amp; \0 \u20AC \U0001F3ED</x>";

    public static void Run(string folder)
    {
        Tally.Test("the data points of a day are a typed array with what the file says", () => Demo.WithBound(wrapper =>
        {
            var file = Demo.HourlyColumn(folder, "5-040-3-00-00");
            _DataPointBasicWrapper[] points = wrapper.GetLongTermDataPoints(Demo.So2Mass, "1h", April, April.AddHours(23));
            var stored = Enumerable.Range(0, 24).Select(h => April.AddHours(h)).Where(t => file[t].value != "" || file[t].code != "").ToArray();
            Tally.True(stored.Length > 12, "an ordinary day");
            Tally.Equal(stored.Length, points.Length, "points");
            for (int i = 0; i < points.Length; i++)
            {
                var (value, code) = file[stored[i]];
                Tally.Equal(stored[i], points[i].TStamp, "time");
                Tally.Equal(value == "" ? DBNull.Value : (object)double.Parse(value, CultureInfo.InvariantCulture), points[i].NValue, "value");
                Tally.Equal<object>(code == "" ? 0 : int.Parse(code), points[i].MC, "code");
                Tally.Equal("", points[i].XValueXML ?? "");
                Tally.Equal("", points[i].OccDataXML ?? "");
                Tally.Equal(false, points[i].IsNValueNull || points[i].IsMCNull);
            }
        }));

        Tally.Test("where nothing is stored there is no array", () => Demo.WithBound(wrapper =>
        {
            Tally.True(wrapper.GetLongTermDataPoints(Demo.So2Mass, "1h", Free, Free.AddDays(30)) == null, "an array of hours");
            Tally.True(wrapper.GetShortTermDataPoints(Demo.So2Analyzer, "1m", Free, Free.AddDays(30)) == null, "an array of minutes");
            Tally.Equal("", wrapper.GetAndClearProblemsList());
        }));

        Tally.Test("an extra value comes back to the character, and nothing else changes", () =>
        {
            object before = null;
            Demo.WithBound(wrapper =>
            {
                _DataPointBasicWrapper point = wrapper.GetLongTermDataPoints(Demo.So2Mass, "1h", Running, Running)[0];
                before = point.NValue;
                Tally.True(before is double, "an hour with a value");
                point.XValueXML = AnyText;
                point.NValue = 1e6; // of the object alone
                point.OccDataXML = "<not written/>";
                Tally.Equal(true, wrapper.UpdateLongTermDataPointXValue(point, Demo.So2Mass, "1h"));
            });
            Demo.WithBound(wrapper =>
            {
                _DataPointBasicWrapper point = wrapper.GetLongTermDataPoints(Demo.So2Mass, "60m", Running, Running).Single();
                Tally.Equal(AnyText, point.XValueXML);
                Tally.Equal(before, point.NValue);
                Tally.Equal("", point.OccDataXML ?? "");
                point.XValueXML = "";
                Tally.Equal(true, wrapper.UpdateLongTermDataPointXValue(point, Demo.So2Mass, "1h"));
                Tally.Equal("", wrapper.GetLongTermDataPoints(Demo.So2Mass, "1h", Running, Running)[0].XValueXML ?? "");
            });
        });

        Tally.Test("a blank data point needs no set-up and is written at its time", () =>
        {
            _DataPointBasicWrapper point = null;
            Demo.WithUnbound(wrapper => point = wrapper.MakeBlankDataPointWrapper(Free.AddMinutes(5)));
            Tally.Equal(Free.AddMinutes(5), point.TStamp);
            Tally.Equal<object>(DBNull.Value, point.NValue);
            Tally.Equal<object>(DBNull.Value, point.MC);
            point.XValueXML = "minute \U0001F3ED";
            Demo.WithBound(wrapper =>
            {
                Tally.Equal(true, wrapper.UpdateShortTermDataPointXValue(point, Demo.So2Analyzer, "1m"));
                _DataPointBasicWrapper written = wrapper.GetShortTermDataPoints(Demo.So2Analyzer, "1m", Free, Free.AddHours(1)).Single();
                Tally.Equal(point.TStamp, written.TStamp);
                Tally.Equal("minute \U0001F3ED", written.XValueXML);
                point.XValueXML = null;
                Tally.Equal(true, wrapper.UpdateShortTermDataPointXValue(point, Demo.So2Analyzer, "1m"));
                Tally.True(wrapper.GetShortTermDataPoints(Demo.So2Analyzer, "1m", Free, Free.AddHours(1)) == null, "left something");
            });
        });

        Tally.Test("value and code take numbers and texts that read as numbers", () => Demo.WithUnbound(wrapper =>
        {
            _DataPointBasicWrapper point = wrapper.MakeBlankDataPointWrapper(Free);
            point.NValue = 2.5;
            point.MC = "12";
            Tally.Equal<object>(2.5, point.NValue);
            Tally.Equal<object>(12, point.MC);
            point.NValue = "abc";
            point.MC = DBNull.Value;
            Tally.Equal<object>(2.5, point.NValue, "what is no number is not written");
            Tally.Equal<object>(12, point.MC, "Null is no number");
            point.SetNValueToNull();
            point.SetMCToNull();
            Tally.Equal<object>(DBNull.Value, point.NValue);
            Tally.Equal<object>(DBNull.Value, point.MC);
            Tally.Equal(false, point.IsNValueNull || point.IsMCNull, "no value equals Null");
        }));

        Tally.Test("what the engine refuses is an exception and a problem with its sentence", () => Demo.WithBound(wrapper =>
        {
            void Refused(int number, string part, Action call)
            {
                var failure = Tally.Throws<COMException>(call);
                Tally.Equal(number, failure.ErrorCode & 0xFFFF, failure.Message);
                Tally.Equal("VTEngine", failure.Source);
                Tally.True(failure.Message.Contains(part), failure.Message);
                Tally.Lines(Demo.Problems(wrapper), failure.Message);
            }
            Refused(5, "short-term data", () => wrapper.GetLongTermDataPoints(Demo.So2Analyzer, "1m", Free, Free));
            Refused(5, "long-term data", () => wrapper.GetShortTermDataPoints(Demo.So2Mass, "1h", Free, Free));
            Refused(5, "fortnight", () => wrapper.GetLongTermDataPoints(Demo.So2Mass, "fortnight", Free, Free));
            Refused(11, "5-999-3-00-00", () => wrapper.GetLongTermDataPoints(Demo.Unknown, "1h", Free, Free)); // DISP_E_BADINDEX
            _DataPointBasicWrapper point = wrapper.MakeBlankDataPointWrapper(Free.AddMinutes(30));
            Refused(5, "2008-09-01 00:30", () => wrapper.UpdateLongTermDataPointXValue(point, Demo.So2Mass, "1h"));
        }));

        Tally.Test("before set-up there is no array, and nothing is written", () => Demo.WithUnbound(wrapper =>
        {
            Tally.True(wrapper.GetLongTermDataPoints(Demo.So2Mass, "1h", Running, Running) == null, "an array");
            Tally.Equal(false, wrapper.UpdateLongTermDataPointXValue(wrapper.MakeBlankDataPointWrapper(Free), Demo.So2Mass, "1h"));
            Tally.Equal(false, wrapper.UpdateShortTermDataPointXValue(null, Demo.So2Analyzer, "1m"));
            Tally.Equal("", wrapper.GetAndClearProblemsList());
        }));
    }
}
