// Counts checks, so that one test program is one process: starting the runtime costs more than all its checks.

using System;

internal static class Tally
{
    private static int passed;
    private static int failed;

    /// <summary>Runs one test; an exception fails it.</summary>
    public static void Test(string name, Action body)
    {
        try
        {
            body();
            passed++;
            Console.WriteLine("ok    " + name);
        }
        catch (Exception failure)
        {
            failed++;
            Console.WriteLine("FAIL  " + name + ": " + failure.Message);
        }
    }

    public static void Equal<T>(T expected, T actual, string what = "value")
    {
        if (!Equals(expected, actual))
            throw new Exception(string.Format("{0}: expected <{1}>, got <{2}>", what, expected, actual));
    }

    /// <summary>Exactly these lines, in this order.</summary>
    public static void Lines(string[] actual, params string[] expected) =>
        Equal(string.Join("\n", expected), string.Join("\n", actual), "lines");

    public static void True(bool condition, string what)
    {
        if (!condition) throw new Exception(what);
    }

    public static T Throws<T>(Action body) where T : Exception
    {
        try
        {
            body();
        }
        catch (T expected)
        {
            return expected;
        }
        throw new Exception("nothing was thrown where a " + typeof(T).Name + " was expected");
    }

    /// <summary>Prints the count; the program's exit code.</summary>
    public static int Report()
    {
        Console.WriteLine("{0} passed, {1} failed", passed, failed);
        return failed == 0 ? 0 : 1;
    }
}
