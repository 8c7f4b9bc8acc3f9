using System;
using System.Threading;
using VTWrapperDN;

internal static class WriteTests
{
    private static readonly DateTime Free = new DateTime(2008, 3, 1, 5, 0, 0); // behind the demo's data
    private const int Known = 102;

    private static (string value, int code) Stored(DateTime time)
    {
        string value = "";
        int code = 0;
        _DIWrapper wrapper = Demo.Bound(); // a binding of its own: what it reads was stored
        Tally.True(wrapper.Param_GetData_String(Demo.So2Mass, time, ref value, ref code), "not read");
        wrapper.Teardown();
        return (value ?? "", code);
    }

    public static void Run()
    {
        Tally.Test("every write stores what it says and keeps the rest", () =>
        {
            void Check(Func<_DIWrapper, bool> write, string value, int code)
            {
                Demo.WithBound(wrapper => Tally.True(write(wrapper), "refused: " + wrapper.GetAndClearProblemsList()));
                Tally.Equal((value, code), Stored(Free));
            }
            Check(w => w.Param_WriteVMC_Integer(Demo.So2Mass, Free, 42, Known), "42", Known);
            Check(w => w.Param_WriteValue_Single(Demo.So2Mass, Free, 0.1f), (0.1f).ToString(), Known);
            Check(w => w.Param_WriteMC(Demo.So2Mass, Free, 0), (0.1f).ToString(), 0);
            Check(w => w.Param_WriteValue_String(Demo.So2Mass, Free, "n/a \u20ac \U0001F600"), "n/a \u20ac \U0001F600", 0);
            Check(w => w.Param_WriteVMC_Single(Demo.So2Mass, Free, 1e-3f, Known), (1e-3f).ToString(), Known);
            Check(w => w.Param_WriteValue_Null(Demo.So2Mass, Free), "", Known);
            Check(w => w.Param_WriteVMC_String(Demo.So2Mass, Free, 12.5f, 0), (12.5f).ToString(), 0);
            Check(w => w.Param_WriteValue_Integer(Demo.So2Mass, Free, -7), "-7", 0);
            Check(w => w.Param_WriteVMC_Null(Demo.So2Mass, Free, 0), "", 0);
        });

        Tally.Test("refused writes say why, with their codes, and store nothing", () => Demo.WithBound(wrapper =>
        {
            var before = Stored(Free);
            Tally.Equal(false, wrapper.Param_WriteVMC_Single(Demo.So2Mass, Free, 1f, 98765));
            Tally.Equal(false, wrapper.Param_WriteVMC_Single(Demo.Unknown, Free, 1f, Known));
            Tally.Equal(false, wrapper.Param_WriteVMC_Single(Demo.RatedHeatInput, Free, 1f, Known));
            string[] lines = wrapper.GetAndClearProblemsList().Split('\t');
            Tally.Equal(3, lines.Length, "entries");
            Tally.True(lines[0].EndsWith(") '98765' is not a known monitor code (WDN-016)"), lines[0]);
            Tally.True(lines[1].EndsWith(") PID 5-999-3-00-00 does not exist (WDN-017)"), lines[1]);
            Tally.True(lines[2].EndsWith(") 5-901-0-00-00 is not a DBDataIO parameter (WDN-018)"), lines[2]);
            Tally.Equal(before, Stored(Free));
        }));

        Tally.Test("a wrapper made on this thread serves a thread of another apartment", () => Demo.WithBound(wrapper =>
        {
            string name = null;
            Exception failure = null;
            var other = new Thread(() =>
            {
                try
                {
                    name = wrapper.Param_Name(Demo.So2Mass);
                }
                catch (Exception e)
                {
                    failure = e;
                }
            });
            other.SetApartmentState(ApartmentState.MTA);
            other.Start();
            while (!other.Join(10)) Thread.CurrentThread.Join(0); // lets this apartment answer
            if (failure != null) throw failure;
            Tally.Equal("SO2 mass", name);
        }));
    }
}
