using System;
using System.Runtime.InteropServices;
using VTWrapperDN;

internal static class ErrorTests
{
    private static readonly DateTime January = new DateTime(2007, 1, 1);

    public static void Run()
    {
        Tally.Test("an engine failure is an exception with the engine's number, text and source", () => Demo.WithBound(wrapper =>
        {
            var values = new float[1];
            var codes = new int[1];
            var missing = new bool[1];
            Exception failure = Tally.Throws<Exception>(
                () => wrapper.Param_GetDataArray_Single(Demo.So2Mass, January, 1, "fortnight", 1, ref values, ref codes, ref missing));
            Tally.True(failure is COMException || failure is ArgumentException, failure.GetType().Name);
            Tally.True(failure.Message.Contains("fortnight"), "the text names what was wrong: " + failure.Message);
            Tally.Equal("VTEngine", failure.Source);
        }));

        Tally.Test("a write off the hour is an exception, not silence", () => Demo.WithBound(wrapper =>
        {
            Exception failure = Tally.Throws<Exception>(() => wrapper.Param_WriteValue_Single(Demo.So2Mass, January.AddMinutes(7), 1f));
            Tally.True(failure.Message.Length > 20, failure.Message);
        }));

        Tally.Test("an array that is not there is error 9", () => Demo.WithBound(wrapper =>
        {
            float[] values = null;
            var codes = new int[1];
            var missing = new bool[1];
            var failure = Tally.Throws<COMException>(
                () => wrapper.Param_GetDataArray_Single(Demo.So2Mass, January, 1, "h", 1, ref values, ref codes, ref missing));
            Tally.Equal(unchecked((int)0x8002000B), failure.ErrorCode); // number 9 to automation clients
            Tally.Equal("Subscript out of range", failure.Message);
        }));

        Tally.Test("absurd counts are refused before anything is allocated", () => Demo.WithBound(wrapper =>
        {
            foreach (int count in new[] { 0, -1, int.MinValue, int.MaxValue })
            {
                var values = new float[1];
                var codes = new int[1];
                var missing = new bool[1];
                Tally.Throws<Exception>(
                    () => wrapper.Param_GetDataArray_Single(Demo.So2Mass, January, count, "h", 1, ref values, ref codes, ref missing));
                Tally.Equal(1, values.Length, "the array after count " + count);
            }
        }));
    }
}
