// The same members late bound, by name, as managed clients without declarations call them.

using System;
using System.Linq;
using System.Reflection;
using System.Runtime.InteropServices;

internal static class LateTests
{
    private static readonly DateTime January = new DateTime(2007, 1, 1);
    private static readonly DateTime Free = new DateTime(2008, 8, 1);

    public static void Run()
    {
        Tally.Test("late binding by name works, by-reference arguments included", () => WithBound(wrapper =>
        {
            var single = new object[] { Demo.So2Mass, January, "", 0 };
            Tally.Equal<object>(true, wrapper.Call("Param_GetData_String", single, 2, 3));
            Tally.Equal<object>((5680.7f).ToString(), single[2]);
            Tally.Equal<object>(102, single[3]);
            var run = new object[] { Demo.So2Mass, January, 2, "h", 1, new float[1], new int[1], new bool[1] };
            Tally.Equal<object>(true, wrapper.Call("Param_GetDataArray_Single", run, 5, 6, 7));
            Tally.Equal(2, ((float[])run[5]).Length);
            Tally.Equal(5680.7f, ((float[])run[5])[0]);
        }));

        Tally.Test("a list of names is an array of objects with a text in each", () => WithBound(wrapper =>
        {
            var names = (object[])wrapper.Call("Utils_GetUnitNames");
            Tally.Equal(20, names.Length);
            Tally.Equal<object>("Barry 5", names[5]);
            Tally.Equal<object>("", names[19]);
            Tally.True(((object[])wrapper.Call("Utils_GetShortMCNames")).All(name => name is string), "texts");
        }));

        Tally.Test("lists and relationships, numbers in place of the enumeration", () => WithBound(wrapper =>
        {
            Tally.Equal<object>("511610001;511610002", wrapper.Call("GetListOf75IntfCheckPIDs"));
            Tally.Equal<object>("502020200;503020200;505020200", wrapper.Call("GetListOfRelationshipPIDs", new object[] { 1, 15 }));
            Tally.Equal<object>("", wrapper.Call("GetListOfRelationshipPIDs", new object[] { 4, 1 }));
            var detail = new object[] { Demo.MinuteLoad, "" };
            Tally.Equal<object>(true, wrapper.Call("GetRelationshipDetailData", detail, 1));
            Tally.True(((string)detail[1]).StartsWith("<?xml version=\"1.0\"?>\r\n<Relationship>"), (string)detail[1]);
        }));

        Tally.Test("a run is written from typed arrays and from arrays of objects", () => WithBound(wrapper =>
        {
            var typed = new object[] { Demo.So2Analyzer, Free, 2, "m", 1, "1\tn/a", new[] { 1, 2 }, new[] { 3, 3 } };
            Tally.Equal<object>(true, wrapper.Call("Param_WriteValues", typed, 6, 7));
            Tally.Equal("1|1 n/a|2", Stored(wrapper, 2));
            var objects = new object[] { Demo.So2Analyzer, Free, 2, "m", 1, "7\t8", new object[] { 5, "6" }, new object[] { 2, 1.0 } };
            Tally.Equal<object>(true, wrapper.Call("Param_WriteValues", objects, 6, 7));
            Tally.Equal("1|5 8|2", Stored(wrapper, 2));
        }));

        Tally.Test("arrays that begin at 1 are refused as of another size", () => WithBound(wrapper =>
        {
            Array FromOne(params int[] values)
            {
                Array array = Array.CreateInstance(typeof(int), new[] { values.Length }, new[] { 1 });
                for (int i = 0; i < values.Length; i++) array.SetValue(values[i], i + 1);
                return array;
            }
            var run = new object[] { Demo.So2Analyzer, Free, 2, "m", 1, "3\t4", FromOne(1, 2), FromOne(3, 3) };
            Tally.Equal<object>(false, wrapper.Call("Param_WriteValues", run, 6, 7));
            Tally.True(((string)wrapper.Call("GetAndClearProblemsList"))
                           .EndsWith(") Array sizes are different. Can't write values/MCs to 5-110-1-00-01 (WDN-040)"), "the problem");
        }));

        Tally.Test("special values and functions", () => WithBound(wrapper =>
        {
            Tally.Equal<object>("40CFR75", wrapper.Call("Param_GetSpecialValue_String", new object[] { Demo.So2Analyzer, -22 }));
            Tally.Equal<object>(3, wrapper.Call("Param_GetSpecialValue_Int32", new object[] { Demo.Unit, -95 }));
            var count = new object[] { Demo.So2Mass, 106, new object[] { January, January.AddDays(1) } };
            Tally.Equal<object>(24, wrapper.Call("Param_GetSpecialFunction_Int32", count, 2));
            Tally.Equal<object>(true, wrapper.Call("WriteStrToAlarm", new object[] { Free, "late", "Test", 1, "Group", "C#" }));
        }));

        Tally.Test("an error before set-up has its number and text", () =>
        {
            var failure = Tally.Throws<TargetInvocationException>(() => new Late().Call("Utils_GetUnitNames"));
            Tally.Equal(unchecked((int)0x800A005B), ((COMException)failure.InnerException).ErrorCode);
            Tally.Equal("Object variable or With block variable not set", failure.InnerException.Message);
        });
    }

    private static string Stored(Late wrapper, int count)
    {
        var run = new object[] { Demo.So2Analyzer, Free, count, "m", 1, new string[1], new int[1] };
        Tally.Equal<object>(true, wrapper.Call("Param_GetDataArray_String", run, 5, 6));
        return string.Join(" ", ((string[])run[5]).Zip((int[])run[6], (text, code) => text + "|" + code));
    }

    private static void WithBound(Action<Late> body)
    {
        var wrapper = new Late();
        Tally.Equal<object>(true, wrapper.Call("Setup", new object[] { Demo.Barry }));
        body(wrapper);
        wrapper.Call("Teardown");
    }

    private sealed class Late
    {
        private readonly Type type;
        private readonly object instance;

        public Late()
        {
            type = Type.GetTypeFromProgID("VTWrapDN.DIWrapper");
            Tally.True(type != null, "the ProgID is not registered");
            instance = Activator.CreateInstance(type);
        }

        public object Call(string member) => Call(member, new object[0]);

        public object Call(string member, object[] arguments, params int[] byReference)
        {
            var modifiers = new ParameterModifier(Math.Max(1, arguments.Length));
            foreach (int i in byReference) modifiers[i] = true;
            return type.InvokeMember(member, BindingFlags.InvokeMethod, null, instance, arguments,
                                     arguments.Length == 0 ? null : new[] { modifiers }, null, null);
        }
    }
}
