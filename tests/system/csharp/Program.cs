// The component from the common language runtime with typed interop, on the embedded engine and the demo sites.
// Arguments: the component's file, the folder of the demo data. Without arguments the second process: it looks for
// what the first one wrote.

using System;

internal static class Program
{
    [STAThread]
    private static int Main(string[] arguments)
    {
        if (arguments.Length == 0)
        {
            BulkWriteTests.RunAgain();
            OccurrenceTests.RunAgain();
            return Tally.Report();
        }
        TypeLibraryTest.Run(arguments[0]);
        BindingTests.Run();
        ReadTests.Run(arguments[1]);
        WriteTests.Run();
        ListTests.Run(arguments[1]);
        BulkWriteTests.Run();
        SpecialTests.Run();
        DataPointTests.Run(arguments[1]);
        OccurrenceTests.Run();
        NameTests.Run(arguments[1]);
        ErrorTests.Run();
        LateTests.Run();
        return Tally.Report();
    }
}
