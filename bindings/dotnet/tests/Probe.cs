// Says which library this process loads, for the tests of the search: Probe [FILE]
using System;
using Tabrin;

internal static class Probe
{
    private static int Main(string[] arguments)
    {
        try
        {
            Console.WriteLine(Library.Load(arguments.Length == 1 ? arguments[0] : null));
            return 0;
        }
        catch (TabrinLibraryException error)
        {
            Console.WriteLine(error.Message);
            return 1;
        }
    }
}
