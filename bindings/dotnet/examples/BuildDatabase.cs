// Builds a small database from nothing and writes it as a DBC file: BuildDatabase TARGET
using System;
using System.Collections.Generic;
using System.IO;
using Tabrin;

internal static class BuildDatabase
{
    private static int Main(string[] arguments)
    {
        if (arguments.Length != 1)
        {
            Console.Error.WriteLine("usage: BuildDatabase TARGET");
            return 2;
        }
        try
        {
            var weather = new Database(new[] { Weather(), Wind() }, canFd: true);
            weather.Write(arguments[0], MessageOrder.Name);
            Console.WriteLine(arguments[0] + ": " + weather.Count + " messages");
            return 0;
        }
        catch (Exception error) when (error is IOException || error is TabrinLibraryException)
        {
            Console.Error.WriteLine(error.Message);
            return 1;
        }
    }

    private static Message Weather()
    {
        var sky = new Dictionary<int, string> { { 0, "clear" }, { 1, "cloudy" }, { 3, "no idea" } };
        var signals = new[] {
            new Signal(
                "Temperature", 0, 12, valueType: SignalValueType.Signed, factor: 0.1, minimum: -60, maximum: 60,
                unit: "°C"),
            new Signal("Sky", 12, 2, maximum: 3, receivers: new[] { "Display", "Logger" }, valueDescriptions: sky),
        };
        return new Message(0x120, "Weather", 8, signals, transmitter: "Roof", comment: "Once a second");
    }

    private static Message Wind()
    {
        var signals = new[] {
            new Signal("Page", 0, 8, maximum: 1, multiplexKind: MultiplexKind.Multiplexor),
            new Signal(
                "Speed", 8, 32, valueType: SignalValueType.Float, unit: "m/s",
                multiplexKind: MultiplexKind.Multiplexed),
            new Signal(
                "Direction of wind", 8, 9, maximum: 359, multiplexKind: MultiplexKind.Multiplexed, multiplexValue: 1),
        };
        return new Message(0x80000000 | 0x18FF0001, "Wind", 8, signals, transmitter: "Roof");
    }
}
