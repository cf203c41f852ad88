// Writes a DBC file anew, with its messages in another order: ConvertFile SOURCE TARGET [id|name|file]
using System;
using System.Collections.Generic;
using System.IO;
using Tabrin;

internal static class ConvertFile
{
    private static readonly Dictionary<string, MessageOrder> Orders = new Dictionary<string, MessageOrder> {
        { "id", MessageOrder.Identifier },
        { "name", MessageOrder.Name },
        { "file", MessageOrder.Database },
    };

    private static int Main(string[] arguments)
    {
        var order = MessageOrder.Database;
        bool known = arguments.Length == 2 || (arguments.Length == 3 && Orders.TryGetValue(arguments[2], out order));
        if (!known)
        {
            Console.Error.WriteLine("usage: ConvertFile SOURCE TARGET [id|name|file]");
            return 2;
        }
        try
        {
            foreach (FaultyStatement fault in Database.Convert(arguments[0], arguments[1], order))
            {
                Console.WriteLine("left out: " + fault);
            }
            Console.WriteLine(arguments[1] + " is written");
            return 0;
        }
        catch (Exception error) when (error is IOException || error is TabrinLibraryException)
        {
            Console.Error.WriteLine(error.Message);
            return 1;
        }
    }
}
