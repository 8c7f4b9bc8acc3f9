// The component from the common language runtime with typed interop, on the embedded engine and the demo sites.
// Arguments: the component's file, the folder of the demo data.

using System;

internal static class Program
{
    [STAThread]
    private static int Main(string[] arguments)
    {
        TypeLibraryTest.Run(arguments[0]);
        BindingTests.Run();
        ReadTests.Run(arguments[1]);
        WriteTests.Run();
        ErrorTests.Run();
        return Tally.Report();
    }
}
