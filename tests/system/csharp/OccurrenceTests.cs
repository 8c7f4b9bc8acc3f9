// Occurrences: typed arrays of objects, filters, edits to the character, one made and retrieved.

using System;
using System.Linq;
using System.Runtime.InteropServices;
using VTWrapperDN;

internal static class OccurrenceTests
{
    private const int Site = 3; // tests/system/occurrence_site
    private const int So2Rate = 704030000;
    private const int NoxAnalyzer = 705010001; // by the minute
    private const int OtherRate = 804030000;
    private const int So2Limit = 790100000;
    private const int So2Excess = 798030001;
    private const int So2Downtime = 798030002;
    private const int NoxDowntime = 798110002;
    private const int OtherDowntime = 898030002;

    private static readonly DateTime January = new DateTime(2024, 1, 1);
    private static readonly DateTime Both = new DateTime(2024, 1, 1, 8, 0, 0); // a downtime and an excursion
    private static readonly DateTime Free = new DateTime(2024, 7, 1);          // behind the site's data
    private static readonly DateTime Kept = new DateTime(2024, 8, 1);          // for the second process
    private const string AnyText = " <r a=\"1\">\r\n\t&amp;\0\\ \u20AC \U0001F3ED</r> ";

    public static void Run()
    {
        Lists();
        Edits();
        Made();
        Refused();
        Tally.Test("an occurrence is made for the second process", () => WithBound(wrapper =>
        {
            _OccurrenceDataWrapper made = wrapper.CreateOrRetrieveOccurrence(OtherDowntime, Kept);
            made.Downtime_Reason = AnyText;
            Tally.Equal(true, wrapper.SaveOccurrence(made));
        }));
    }

    public static void RunAgain() =>
        Tally.Test("an occurrence is found by the second process", () => WithBound(wrapper =>
        {
            _OccurrenceDataWrapper found = List(wrapper, Kept, Kept, 8).Single();
            Tally.Equal(AnyText, found.Downtime_Reason);
            Tally.Equal(OtherDowntime, found.Downtime_PID);
            Tally.Equal(Kept, found.StartDate);
        }));

    private static void Lists()
    {
        Tally.Test("the occurrences of two days are a typed array in order of time", () => WithBound(wrapper =>
        {
            _OccurrenceDataWrapper[] all = List(wrapper, January, January.AddDays(2));
            Tally.Equal(43, all.Length, "occurrences");
            Tally.True(all.Zip(all.Skip(1), (a, b) => a.StartDate <= b.StartDate).All(inOrder => inOrder), "the order of time");
            Tally.True(all.All(one => one.HasDowntime || one.HasExcursion), "a part in each");
            _OccurrenceDataWrapper[] byTag = List(wrapper, January, January.AddDays(2), true, true, 0, true, null);
            Tally.True(byTag.Select(one => one.AffectedPID).SequenceEqual(all.Select(one => one.AffectedPID).OrderBy(tag => tag)), "the order of tags");
            Tally.Equal("", wrapper.GetAndClearProblemsList());
        }));

        Tally.Test("units and tags in the list are those that are listed, and an empty list is not no list", () => WithBound(wrapper =>
        {
            int Count(params int[] list) => List(wrapper, January, January.AddDays(2), list)?.Length ?? 0;
            Tally.Equal(38, Count(7));
            Tally.Equal(5, Count(8));
            Tally.Equal(8, Count(So2Rate));
            Tally.Equal(35, Count(NoxDowntime, 8));
            Tally.Equal(3, Count(So2Excess));
            Tally.Equal(0, Count());
            Tally.Equal(0, Count(19));
        }));

        Tally.Test("kinds and the exclusion filter choose", () => WithBound(wrapper =>
        {
            int Count(bool downtimes, object excursions, int filter) =>
                List(wrapper, January, January.AddDays(2), downtimes, excursions, filter, false, new[] { So2Rate })?.Length ?? 0;
            Tally.Equal(8, Count(true, true, 0));
            Tally.Equal(6, Count(true, false, 0));
            Tally.Equal(3, Count(false, "True", 0));
            Tally.Equal(0, Count(false, 0, 0));
            Tally.Equal(5, Count(true, true, 1));
            Tally.Equal(4, Count(true, true, 2));
            Tally.Equal(8, Count(true, true, 3));
            Tally.Equal(8, Count(true, true, -1));
        }));

        Tally.Test("where there are none there is no array", () => WithBound(
            wrapper => Tally.True(List(wrapper, Free, Free.AddDays(10)) == null, "an array")));
    }

    private static void Edits()
    {
        Tally.Test("an occurrence has what is known of it", () => WithBound(wrapper =>
        {
            _OccurrenceDataWrapper one = List(wrapper, Both, Both, So2Rate).Single();
            Tally.Equal(So2Rate, one.AffectedPID);
            Tally.Equal(Both, one.StartDate);
            Tally.Equal<object>(0.68, one.NValue);
            Tally.Equal<object>(1, one.MC);
            Tally.True(one.TextValue.Contains("680"), one.TextValue);
            Tally.Equal(So2Excess, one.Excursion_PID);
            Tally.Equal("Startup", one.Excursion_Reason);
            Tally.Equal("0.5 lb/mmBtu", one.Excursion_Limit);
            Tally.Equal(So2Limit, one.Excursion_LimitPID);
            Tally.Equal(So2Downtime, one.Downtime_PID);
            Tally.Equal("maintenance", one.Downtime_Category);
            Tally.Equal("New filter", one.Downtime_Action);
            Tally.Equal(true, one.Downtime_Excludable);
        }));

        Tally.Test("edits come back to the character, and nothing else changes", () =>
        {
            _OccurrenceDataWrapper edited = null;
            WithBound(wrapper =>
            {
                edited = List(wrapper, Both, Both, So2Rate).Single();
                edited.Downtime_Reason = AnyText;
                edited.Excursion_Action = "\U0001F3ED";
                edited.Downtime_Excludable = false;
                Tally.Equal(true, wrapper.SaveOccurrence(edited));
            });
            WithBound(wrapper =>
            {
                _OccurrenceDataWrapper one = List(wrapper, Both, Both, So2Rate).Single();
                Tally.Equal(AnyText, one.Downtime_Reason);
                Tally.Equal("\U0001F3ED", one.Excursion_Action);
                Tally.Equal(false, one.Downtime_Excludable);
                Tally.Equal("maintenance", one.Downtime_Category);
                Tally.Equal("Startup", one.Excursion_Reason);
                Tally.Equal<object>(0.68, one.NValue);
                Tally.Equal<object>(1, one.MC);
                // The object of a wrapper that was torn down.
                edited.Downtime_Reason = "Filter changed";
                edited.Excursion_Action = null;
                edited.Downtime_Excludable = true;
                Tally.Equal(true, wrapper.SaveOccurrence(edited));
                one = List(wrapper, Both, Both, So2Rate).Single();
                Tally.Equal("Filter changed", one.Downtime_Reason);
                Tally.Equal("", one.Excursion_Action ?? "");
            });
        });
    }

    private static void Made()
    {
        Tally.Test("an occurrence is made once and retrieved afterwards", () => WithBound(wrapper =>
        {
            _OccurrenceDataWrapper made = wrapper.CreateOrRetrieveOccurrence(So2Downtime, Free);
            Tally.Equal(true, made.HasDowntime);
            Tally.Equal(false, made.HasExcursion);
            Tally.Equal<object>(DBNull.Value, made.NValue);
            Tally.Equal(Free, made.StartDate);
            made.Downtime_Category = "kept";
            made.Excursion_Category = "not there";
            Tally.Equal("", made.Excursion_Category ?? "", "a missing part");
            Tally.Equal(0, made.Excursion_PID);
            Tally.Equal(true, wrapper.SaveOccurrence(made));
            Tally.Equal("kept", wrapper.CreateOrRetrieveOccurrence(So2Downtime, Free).Downtime_Category);
            _OccurrenceDataWrapper both = wrapper.CreateOrRetrieveOccurrence(So2Excess, Free);
            Tally.Equal("0.5 lb/mmBtu", both.Excursion_Limit);
            Tally.Equal("kept", both.Downtime_Category);
            Tally.Equal(NoxAnalyzer, wrapper.CreateOrRetrieveOccurrence(NoxDowntime, Free).AffectedPID);
            Tally.Equal("", wrapper.GetAndClearProblemsList());
        }));
    }

    private static void Refused()
    {
        Tally.Test("what cannot be made is no object and a problem", () => WithBound(wrapper =>
        {
            Tally.True(wrapper.CreateOrRetrieveOccurrence(Demo.Unknown, Free) == null, "an occurrence of an unknown parameter");
            Tally.True(wrapper.CreateOrRetrieveOccurrence(So2Rate, Free) == null, "an occurrence of a tag");
            Tally.Lines(Demo.Problems(wrapper), "PID 5-999-3-00-00 does not exist (WDN-0065)",
                        "PID 7-040-3-00-00 is not an occurrence parameter (WDN-0060)");
            Tally.True(wrapper.CreateOrRetrieveOccurrence(So2Downtime, Free.AddMinutes(30)) == null, "an occurrence off the hour");
            string last = Demo.Problems(wrapper).Last();
            Tally.True(last.StartsWith("Error in creating/retrieving occurrence data points.  5 ") && last.Contains("2024-07-01 00:30"), last);
        }));

        Tally.Test("another object is a type mismatch", () => WithBound(wrapper =>
        {
            var failure = Tally.Throws<COMException>(() => Save(wrapper, wrapper.MakeBlankDataPointWrapper(Free)));
            Tally.Equal(unchecked((int)0x80020005), failure.ErrorCode, failure.Message);
            Tally.Equal(false, wrapper.SaveOccurrence(null));
        }));

        Tally.Test("a span that ends before it starts, and no boolean, are exceptions", () => WithBound(wrapper =>
        {
            Exception span = Tally.Throws<Exception>(() => List(wrapper, Free, Free.AddDays(-1)));
            Tally.Equal("VTEngine", span.Source, span.Message);
            Exception boolean = Tally.Throws<Exception>(() => List(wrapper, Free, Free, true, "neither", 0, false, null));
            Tally.Equal(unchecked((int)0x80020005), boolean.HResult, boolean.Message);
        }));

        Tally.Test("before set-up there are none, and none is made or saved", () => Demo.WithUnbound(wrapper =>
        {
            Tally.True(List(wrapper, January, Free) == null, "an array");
            Tally.True(wrapper.CreateOrRetrieveOccurrence(So2Downtime, Free) == null, "an occurrence");
            Tally.Equal(false, wrapper.SaveOccurrence(null));
            Tally.Equal("", wrapper.GetAndClearProblemsList());
        }));
    }

    /// <summary>As a late-bound client calls it: the compiler would not let another object through.</summary>
    private static void Save(_DIWrapper wrapper, object occurrence)
    {
        try
        {
            Type.GetTypeFromProgID("VTWrapDN.DIWrapper").InvokeMember(
                "SaveOccurrence", System.Reflection.BindingFlags.InvokeMethod, null, wrapper, new[] { occurrence });
        }
        catch (System.Reflection.TargetInvocationException failure)
        {
            throw failure.InnerException;
        }
    }

    private static _OccurrenceDataWrapper[] List(_DIWrapper wrapper, DateTime first, DateTime last) =>
        List(wrapper, first, last, true, true, 0, false, null);

    private static _OccurrenceDataWrapper[] List(_DIWrapper wrapper, DateTime first, DateTime last, params int[] list) =>
        List(wrapper, first, last, true, true, 0, false, list);

    private static _OccurrenceDataWrapper[] List(_DIWrapper wrapper, DateTime first, DateTime last, bool downtimes,
                                                 object excursions, int filter, bool byTag, int[] list) =>
        wrapper.GetOccurrences(first, last, downtimes, excursions, filter, byTag, ref list);

    private static void WithBound(Action<_DIWrapper> body)
    {
        _DIWrapper wrapper = Demo.Bound(Site);
        try
        {
            body(wrapper);
        }
        finally
        {
            wrapper.Teardown();
        }
    }
}
