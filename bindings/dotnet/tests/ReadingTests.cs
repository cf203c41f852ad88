// What a file says is what the database has. The expected values are read off examples/engine.dbc by eye.
using System;
using System.Collections.Generic;
using System.Linq;
using NUnit.Framework;

namespace Tabrin.Tests
{
[TestFixture]
public class ReadingTests : InFolder
{
    private Database engine;

    [TestFixtureSetUp]
    public void ReadSample()
    {
        engine = Database.Read(Files.Sample);
    }

    [TestCase(0, 256U, "EngineStatus", 8U, "EngineControl", 5)]
    [TestCase(1, 272U, "EngineTemperatures", 6U, "EngineControl", 4)]
    [TestCase(2, 512U, "GearStatus", 4U, "GearControl", 3)]
    [TestCase(3, 2566844672U, "FuelConsumption", 8U, "EngineControl", 2)]
    [TestCase(4, 1792U, "EngineDetails", 8U, "EngineControl", 6)]
    [TestCase(5, 1536U, "DashboardRequest", 2U, "Dashboard", 1)]
    public void MessagesAreThoseOfTheFile(int index, uint id, string name, uint dlc, string transmitter, int signals)
    {
        Message message = engine[index];
        Assert.That(engine.Count, Is.EqualTo(6));
        Assert.That(message.Id, Is.EqualTo(id));
        Assert.That(message.Name, Is.EqualTo(name));
        Assert.That(message.IdentifierName, Is.EqualTo(name));
        Assert.That(message.Dlc, Is.EqualTo(dlc));
        Assert.That(message.Transmitter, Is.EqualTo(transmitter));
        Assert.That(message.Signals.Count, Is.EqualTo(signals));
    }

    [Test]
    public void MessageHasWhatAttributesAndCommentsSay()
    {
        Assert.That(engine[0].Comment, Is.EqualTo("What everybody needs to know about the engine"));
        Assert.That(engine[0].SendType, Is.EqualTo("cyclic"));
        Assert.That(engine[0].CycleTime, Is.EqualTo(10));
    }

    [Test]
    public void FrameIdHasNoFlag()
    {
        Message fuel = engine.ByName("FuelConsumption");
        Assert.That(fuel.FrameId, Is.EqualTo(0x18FEF100));
        Assert.That(fuel.IsExtended, Is.True);
        Assert.That(engine[0].FrameId, Is.EqualTo(0x100));
        Assert.That(engine[0].IsExtended, Is.False);
    }

    [Test]
    public void SignalHasWhatItsStatementSays()
    {
        Signal signal = engine.ByName("EngineTemperatures").ByName("ExhaustTemperature");
        Assert.That(signal.StartBit, Is.EqualTo(31));
        Assert.That(signal.Length, Is.EqualTo(16));
        Assert.That(signal.ByteOrder, Is.EqualTo(ByteOrder.BigEndian));
        Assert.That(signal.ValueType, Is.EqualTo(SignalValueType.Unsigned));
        Assert.That(signal.Factor, Is.EqualTo(0.1));
        Assert.That(signal.Offset, Is.EqualTo(-40));
        Assert.That(signal.Minimum, Is.EqualTo(-40));
        Assert.That(signal.Maximum, Is.EqualTo(1200));
        Assert.That(signal.Unit, Is.EqualTo("°C"));
        Assert.That(signal.UnitAscii, Is.EqualTo("_C"));
        Assert.That(signal.Receivers, Is.EqualTo(new[] { "Diagnostics" }));
        Assert.That(signal.MultiplexKind, Is.EqualTo(MultiplexKind.None));
    }

    [Test]
    public void SignalHasWhatLaterStatementsSay()
    {
        Assert.That(engine[0].Signals[2].Comment, Is.EqualTo("0 % is closed, 100 % is \\\"wide open\\\""));
        Assert.That(engine.ByName("EngineTemperatures").ByName("CoolantTemperature").StartValue, Is.EqualTo(60));
        Assert.That(engine.ByName("FuelConsumption").ByName("FuelRate").ValueType, Is.EqualTo(SignalValueType.Float));
        Assert.That(engine[0].ByName("EngineSpeed").Receivers, Is.EqualTo(new[] { "GearControl", "Dashboard" }));
    }

    [Test]
    public void StartAndInactiveValuesAreToldApart()
    {
        Files.Write(
            InIt("values.dbc"),
            "BO_ 1 A: 8 N\n SG_ S : 0|8@1- (1,0) [0|1] \"\" N\n" +
                "BA_DEF_ SG_ \"GenSigStartValue\" INT -10 10;\nBA_ \"GenSigStartValue\" SG_ 1 S 7;\n" +
                "BA_DEF_ SG_ \"GenSigInactiveValue\" INT -10 10;\nBA_ \"GenSigInactiveValue\" SG_ 1 S 9;\n");
        Signal signal = Database.Read(InIt("values.dbc"))[0].Signals[0];
        Assert.That(signal.StartValue, Is.EqualTo(7));
        Assert.That(signal.InactiveValue, Is.EqualTo(9));
    }

    [Test]
    public void MultiplexingIsRead()
    {
        Signal[] signals = engine.ById(1792).ToArray();
        Assert.That(signals[0].MultiplexKind, Is.EqualTo(MultiplexKind.Multiplexor));
        Assert.That(signals.Skip(1).All(signal => signal.MultiplexKind == MultiplexKind.Multiplexed));
        Assert.That(signals.Select(signal => signal.MultiplexValue), Is.EqualTo(new uint[] { 0, 0, 0, 1, 2, 2 }));
    }

    [Test]
    public void ValueDescriptionsAreInOrder()
    {
        Signal gear = engine.ByName("GearStatus").ByName("Gear");
        Assert.That(gear.ValueDescriptions.Keys, Is.EqualTo(new[] { -1, 0 }));
        Assert.That(gear.ValueDescriptions[-1], Is.EqualTo("reverse"));
        Assert.That(engine[0].Signals[0].ValueDescriptions, Is.Empty);
    }

    [Test]
    public void FaultyStatementIsListed()
    {
        FaultyStatement fault = engine.Errors.Single();
        Assert.That(fault.Code, Is.EqualTo(FaultCode.SignalScale));
        Assert.That(fault.Line, Is.EqualTo(48));
        Assert.That(fault.Text.Trim(), Is.EqualTo("SG_ RequestedPage : 8|8@1+ 1,0 [0|2] \"\" EngineControl"));
        Assert.That(fault.ToString(), Is.StringStarting("line 48: SignalScale: SG_ RequestedPage"));
    }

    [Test]
    public void NothingOfAFileIsLeftForTheNext()
    {
        Files.Write(
            InIt("fd.dbc"), "BA_DEF_ \"BusType\" STRING ;\nBA_ \"BusType\" \"CAN FD\";\n" +
                                "BA_DEF_ \"IsNMEA\" INT 0 1;\nBA_ \"IsNMEA\" 1;\n");
        Files.Write(InIt("small.dbc"), Files.Small);
        Database first = Database.Read(InIt("fd.dbc"));
        Database second = Database.Read(InIt("small.dbc"));
        Assert.That(first.CanFd, Is.True);
        Assert.That(first.Protocol, Is.EqualTo(ProtocolType.Nmea2000));
        Assert.That(first.Count, Is.EqualTo(0));
        Assert.That(second.CanFd, Is.False);
        Assert.That(second.Protocol, Is.EqualTo(ProtocolType.None));
        Assert.That(second.Count, Is.EqualTo(1));
    }

    [TestCase(255, "", 255)]
    [TestCase(300, "", 255)]
    [TestCase(254, "é", 254)]
    [TestCase(253, "€", 253)]
    public void TextCutByTheLibraryIsHandedOn(int letters, string end, int kept)
    {
        Files.Write(InIt("long.dbc"), "BO_ 1 A: 8 N\nCM_ BO_ 1 \"" + new string('a', letters) + end + "\";\n");
        Assert.That(Database.Read(InIt("long.dbc"))[0].Comment, Is.EqualTo(new string('a', kept)));
    }

    [Test]
    public void LongNameAndIdentifierAreToldApart()
    {
        Files.Write(
            InIt("names.dbc"),
            "BO_ 1 EngData: 8 N\n" +
                "BA_DEF_ BO_ \"Kestrune_Msg_Name\" STRING ;\nBA_ \"Kestrune_Msg_Name\" BO_ 1 \"Engine data\";\n");
        Database database = Database.Read(InIt("names.dbc"));
        Assert.That(database[0].Name, Is.EqualTo("Engine data"));
        Assert.That(database[0].IdentifierName, Is.EqualTo("EngData"));
        Assert.That(database.ByName("EngData"), Is.SameAs(database.ByName("Engine data")));
    }

    [Test]
    public void FirstOfEqualMessagesIsFound()
    {
        Files.Write(InIt("equal.dbc"), "BO_ 7 A: 1 N\nBO_ 7 B: 2 N\nBO_ 8 A: 3 N\n");
        Database database = Database.Read(InIt("equal.dbc"));
        Assert.That(database.ById(7), Is.SameAs(database[0]));
        Assert.That(database.ByName("A"), Is.SameAs(database[0]));
    }

    [Test]
    public void NoPropertyCanBeSet()
    {
        foreach (Type type in new[] { typeof(Database), typeof(Message), typeof(Signal), typeof(FaultyStatement) })
        {
            Assert.That(type.GetProperties().Where(property => property.CanWrite), Is.Empty, type.Name);
        }
    }

    [Test]
    public void NoListCanBeChanged()
    {
        var receivers = (IList<string>)engine[0].Signals[0].Receivers;
        var signals = (IList<Signal>)engine[0].Signals;
        var values = (IDictionary<int, string>)engine[2].Signals[0].ValueDescriptions;
        Assert.Throws<NotSupportedException>(() => receivers[0] = "Other");
        Assert.Throws<NotSupportedException>(() => signals[0] = null);
        Assert.Throws<NotSupportedException>(() => values[0] = "other");
    }

    [Test]
    public void MissingFileIsToldWithItsStatus()
    {
        var error = Assert.Throws<TabrinFileException>(() => Database.Read(InIt("missing.dbc")));
        Assert.That(error.Status, Is.EqualTo(FileStatus.NotOpened));
        Assert.That(error.Path, Is.EqualTo(InIt("missing.dbc")));
        Assert.That(error.Message, Is.EqualTo(InIt("missing.dbc") + ": the file cannot be opened (status 6)"));
    }
}
}
