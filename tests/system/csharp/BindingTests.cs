using System;
using VTWrapperDN;

internal static class BindingTests
{
    public static void Run()
    {
        Tally.Test("before set-up everything is empty and nothing is a problem", () =>
        {
            var wrapper = (_DIWrapper)new DIWrapper();
            Tally.Equal("", wrapper.SelectedDahs_SiteID());
            Tally.Equal(0, wrapper.SelectedDahs_DahsID());
            Tally.Equal("", wrapper.Param_Name(Demo.So2Mass));
            Tally.Equal(false, wrapper.Param_DoesExist(Demo.So2Mass));
            Tally.Equal("", wrapper.GetAndClearProblemsList());
            wrapper.Teardown();
        });

        Tally.Test("a DAHS of the directory is bound and says which it is", () => Demo.WithBound(wrapper =>
        {
            Tally.Equal(Demo.Barry, wrapper.SelectedDahs_DahsID());
            Tally.Equal("BARRY5", wrapper.SelectedDahs_SiteID());
            Tally.True(wrapper.SelectedDahs_DahsCompleteName().StartsWith("Barry (ORIS 3)"), "the complete name");
            Tally.True(wrapper.SelectedDahs_DataConnection().Contains("Database="), "the data connection");
            Tally.Equal("", wrapper.GetAndClearProblemsList());
        }));

        Tally.Test("a second set-up is refused and leaves the first working", () => Demo.WithBound(wrapper =>
        {
            Tally.Equal(false, wrapper.Setup(Demo.Smith));
            Tally.Equal(Demo.Barry, wrapper.SelectedDahs_DahsID());
        }));

        Tally.Test("an unknown DAHS is refused with a message of the engine and needs a teardown", () =>
        {
            var wrapper = (_DIWrapper)new DIWrapper();
            Tally.Equal(false, wrapper.Setup(4711));
            string problems = wrapper.GetAndClearProblemsList();
            Tally.True(problems.Contains("4711"), "the message names the id: " + problems);
            Tally.True(problems.StartsWith("("), "the entry starts with its time stamp");
            Tally.Equal("", wrapper.GetAndClearProblemsList());
            Tally.Equal(false, wrapper.Setup(Demo.Barry), "set-up without teardown");
            wrapper.Teardown();
            Tally.Equal(true, wrapper.Setup(Demo.Barry), "set-up after teardown");
            wrapper.Teardown();
        });

        Tally.Test("forced connections bind the same site", () =>
        {
            _DIWrapper first = Demo.Bound();
            var forced = (_DIWrapper)new DIWrapper();
            bool bound = forced.Setup4(first.SelectedDahs_SiteID(), first.SelectedDahs_AlarmConnection(),
                                       first.SelectedDahs_ConfigConnection(), first.SelectedDahs_DataConnection(),
                                       first.SelectedDahs_DataShortTermConnection(),
                                       first.SelectedDahs_RealtimeConnection(), "  ");
            Tally.True(bound, "not bound: " + forced.GetAndClearProblemsList());
            Tally.Equal(first.Param_Name(Demo.So2Mass), forced.Param_Name(Demo.So2Mass));
            forced.Teardown();
            first.Teardown();
        });

        Tally.Test("malformed connections are refused with a message", () =>
        {
            var wrapper = (_DIWrapper)new DIWrapper();
            Tally.Equal(false, wrapper.Setup2("BARRY5", "Driver", "no such thing", ";;=;", "", ""));
            Tally.True(wrapper.GetAndClearProblemsList().Length > 30, "no message");
            wrapper.Teardown();
        });
    }
}
