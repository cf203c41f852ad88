// Lists the signals of a DBC file as a table: ListSignals FILE
using System;
using System.Collections.Generic;
using System.Globalization;
using System.IO;
using System.Linq;
using System.Text;
using Tabrin;

internal static class ListSignals
{
    private static int Main(string[] arguments)
    {
        if (arguments.Length != 1)
        {
            Console.Error.WriteLine("usage: ListSignals FILE");
            return 2;
        }
        Console.OutputEncoding = new UTF8Encoding(false);
        try
        {
            Print(Database.Read(arguments[0]));
            return 0;
        }
        catch (Exception error) when (error is IOException || error is TabrinLibraryException)
        {
            Console.Error.WriteLine(error.Message);
            return 1;
        }
    }

    private static void Print(Database database)
    {
        var table = new List<string[]> { new[] { "id", "message", "signal", "bits", "factor", "offset", "unit" } };
        foreach (Message message in database)
        {
            table.AddRange(message.Signals.Select(signal => Row(message, signal)));
        }
        int[] widths = Enumerable.Range(0, table[0].Length).Select(i => table.Max(row => row[i].Length)).ToArray();
        foreach (string[] row in table)
        {
            Console.WriteLine(string.Join("  ", row.Select((cell, i) => cell.PadRight(widths[i]))).TrimEnd());
        }
        foreach (FaultyStatement fault in database.Errors)
        {
            Console.WriteLine("left out: " + fault);
        }
    }

    private static string[] Row(Message message, Signal signal)
    {
        return new[] {
            message.FrameId.ToString("x"),
            message.Name,
            signal.Name,
            signal.StartBit + "|" + signal.Length,
            signal.Factor.ToString("G10", CultureInfo.InvariantCulture),
            signal.Offset.ToString("G10", CultureInfo.InvariantCulture),
            signal.Unit,
        };
    }
}
