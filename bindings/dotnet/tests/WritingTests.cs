// A database that is built reaches the file. The expected lines are written by hand.
using System.Collections.Generic;
using System.IO;
using System.Linq;
using NUnit.Framework;

namespace Tabrin.Tests
{
[TestFixture]
public class WritingTests : InFolder
{
    // From the message section to the end.
    private static readonly string[] Written = {
        "BO_ 5 Second: 8 Node_A",
        " SG_ Big : 7|16@0- (0.5,-1) [-10|10] \"_s\" X,Y",
        " SG_ Switch M : 16|8@1+ (1,0) [0|0] \"\" Kestrune",
        " SG_ Real m4 : 24|32@1- (1,0) [0|0] \"\" Kestrune",
        "",
        "BO_ 2147483657 First: 2 Kestrune",
        "",
        "CM_ BO_ 5 \"say \\\"hi\\\"\";",
        "CM_ SG_ 5 Big \"c\";",
        "BA_DEF_ \"BusType\" STRING ;",
        "BA_DEF_ \"J1939PGN\" INT 0 1;",
        "BA_DEF_DEF_ \"BusType\" \"CAN FD\";",
        "BA_DEF_DEF_ \"J1939PGN\" 1;",
        "VAL_ 5 Big -1 \"minus\" 3 \"three\";",
        "SIG_VALTYPE_ 5 Real : 1;",
        "",
    };

    private static Database Built()
    {
        var values = new Dictionary<int, string> { { 3, "three" }, { -1, "minus" } };
        var big = new Signal(
            "Big", 7, 16, ByteOrder.BigEndian, SignalValueType.Signed, 0.5, -1, -10, 10, "µs", new[] { "X", "Y" }, "c",
            valueDescriptions: values);
        var toggle = new Signal("Switch", 16, 8, multiplexKind: MultiplexKind.Multiplexor);
        var real = new Signal(
            "Real", 24, 32, valueType: SignalValueType.Float, multiplexKind: MultiplexKind.Multiplexed,
            multiplexValue: 4);
        var second = new Message(5, "Second", 8, new[] { big, toggle, real }, "Node A", "say \"hi\"");
        return new Database(new[] { second, new Message(0x80000009, "First", 2) }, ProtocolType.J1939, true);
    }

    private static Database WithMessage(string name = "M", string transmitter = "", string comment = "")
    {
        return new Database(new[] { new Message(1, name, 8, null, transmitter, comment) });
    }

    private static Database WithSignal(
        string name = "S", string unit = "", string[] receivers = null, string comment = "", string value = "v")
    {
        var values = new Dictionary<int, string> { { 7, value } };
        var signal =
            new Signal(name, 0, 8, unit: unit, receivers: receivers, comment: comment, valueDescriptions: values);
        return new Database(new[] { new Message(1, "M", 8, new[] { signal }) });
    }

    [Test]
    public void FileHasEverything()
    {
        Built().Write(InIt("built.dbc"));
        Assert.That(Files.Lines(InIt("built.dbc")).SkipWhile(line => !line.StartsWith("BO_ ")), Is.EqualTo(Written));
    }

    [TestCase(MessageOrder.Identifier, "CAB")]
    [TestCase(MessageOrder.Name, "ABC")]
    [TestCase(MessageOrder.Database, "BCA")]
    public void MessagesAreInTheOrderAskedFor(MessageOrder order, string expected)
    {
        new Database(new[] { new Message(1, "B", 0), new Message(3, "C", 0), new Message(2, "A", 0) })
            .Write(InIt("ordered.dbc"), order);
        string[] names = Files.Lines(InIt("ordered.dbc"))
                             .Where(line => line.StartsWith("BO_ "))
                             .Select(line => line.Split(' ') [2].TrimEnd(':'))
                             .ToArray();
        Assert.That(string.Concat(names), Is.EqualTo(expected));
    }

    [Test]
    public void FileReadAndWrittenIsAsIfConverted()
    {
        Database.Read(Files.Sample).Write(InIt("written.dbc"));
        FaultyStatement fault = Database.Convert(Files.Sample, InIt("converted.dbc")).Single();
        Assert.That(fault.Line, Is.EqualTo(48));
        Assert.That(File.ReadAllBytes(InIt("written.dbc")), Is.EqualTo(File.ReadAllBytes(InIt("converted.dbc"))));
        Assert.That(Files.Lines(InIt("written.dbc")), Has.Member("BO_ 256 EngineStatus: 8 EngineControl"));
    }

    // A file whose signal has an identifier that is not made of its long name.
    private string Renamed()
    {
        Files.Write(
            InIt("renamed.dbc"),
            "BO_ 1 EngData: 8 N\n SG_ Spd : 0|8@1+ (1,0) [0|1] \"\" N\n" +
                "BA_DEF_ SG_ \"Kestrune_Sig_Name\" STRING ;\nBA_ \"Kestrune_Sig_Name\" SG_ 1 Spd \"Speed of it\";\n");
        return InIt("renamed.dbc");
    }

    [Test]
    public void OtherIdentifierIsRefused()
    {
        Database database = Database.Read(Renamed());
        var error = Assert.Throws<IdentifierException>(() => database.Write(InIt("out.dbc")));
        Assert.That(error.Message, Is.StringContaining("was read as Spd and would be written as Speed_of_it"));
        Assert.That(File.Exists(InIt("out.dbc")), Is.False);
    }

    [Test]
    public void OtherIdentifierCanBeAllowed()
    {
        Database.Read(Renamed()).Write(InIt("out.dbc"), rename: true);
        Assert.That(Files.Lines(InIt("out.dbc")), Has.Member(" SG_ Speed_of_it : 0|8@1+ (1,0) [0|1] \"\" N"));
    }

    [Test]
    public void ConversionKeepsIdentifiers()
    {
        Database.Convert(Renamed(), InIt("kept.dbc"));
        Assert.That(Files.Lines(InIt("kept.dbc")), Has.Member(" SG_ Spd : 0|8@1+ (1,0) [0|1] \"\" N"));
    }

    private static IEnumerable<TestCaseData> TooLong()
    {
        yield return new TestCaseData(WithMessage(name: new string('n', 256)), ", name", 256, 255);
        yield return new TestCaseData(WithMessage(transmitter: new string('t', 33)), ", transmitter", 33, 32);
        yield return new TestCaseData(WithMessage(comment: new string('é', 128)), ", comment", 256, 255);
        yield return new TestCaseData(WithSignal(name: new string('n', 256)), ", name", 256, 255);
        yield return new TestCaseData(WithSignal(unit: new string('u', 33)), ", unit", 33, 32);
        yield return new TestCaseData(WithSignal(comment: new string('c', 1000)), ", comment", 1000, 255);
        yield return new TestCaseData(WithSignal(receivers: new[] { new string('r', 33) }), ", receivers[0]", 33, 32);
        yield return new TestCaseData(WithSignal(receivers: Receivers(31, 9)), ", receivers", 287, 255);
        yield return new TestCaseData(WithSignal(value: new string('v', 256)), ", text of value 7", 256, 255);
    }

    [TestCaseSource("TooLong")]
    public void LongTextIsRefused(Database database, string field, int size, int limit)
    {
        Files.Write(InIt("kept.dbc"), "as it was");
        var error = Assert.Throws<TextTooLongException>(() => database.Write(InIt("kept.dbc")));
        Assert.That(error.Field, Is.StringStarting("message '").And.StringEnding(field));
        Assert.That(error.Size, Is.EqualTo(size));
        Assert.That(error.Limit, Is.EqualTo(limit));
        Assert.That(error.Message, Is.StringContaining("takes " + size + " bytes, and the limit is " + limit));
        Assert.That(File.ReadAllText(InIt("kept.dbc")), Is.EqualTo("as it was"));
    }

    private static IEnumerable<TestCaseData> Cut()
    {
        string comment = new string('c', 251);
        yield return new TestCaseData(
            WithMessage(transmitter: new string('t', 31) + "é"), "BO_ 1 M: 8 " + new string('t', 31));
        yield return new TestCaseData(WithMessage(comment: comment + "cccé"), "CM_ BO_ 1 \"" + comment + "ccc\";");
        yield return new TestCaseData(WithMessage(comment: comment + "cc€"), "CM_ BO_ 1 \"" + comment + "cc\";");
        yield return new TestCaseData(WithMessage(comment: comment + "c\U0001f697"), "CM_ BO_ 1 \"" + comment + "c\";");
        yield return new TestCaseData(
            WithMessage(comment: comment + "\U0001f697d"), "CM_ BO_ 1 \"" + comment + "\U0001f697\";");
        yield return new TestCaseData(
            WithSignal(unit: new string('u', 40)),
            " SG_ S : 0|8@1+ (1,0) [0|0] \"" + new string('u', 32) + "\" Kestrune");
        yield return new TestCaseData(
            WithSignal(receivers: new[] { new string('r', 33), "s" }),
            " SG_ S : 0|8@1+ (1,0) [0|0] \"\" " + new string('r', 32) + ",s");
        yield return new TestCaseData(
            WithSignal(receivers: Receivers(31, 9)),
            " SG_ S : 0|8@1+ (1,0) [0|0] \"\" " + string.Join(",", Receivers(31, 8)));
        yield return new TestCaseData(
            WithSignal(receivers: Receivers(30, 9)),
            " SG_ S : 0|8@1+ (1,0) [0|0] \"\" " + string.Join(",", Receivers(30, 8)));
        yield return new TestCaseData(
            WithSignal(value: new string('v', 300)), "VAL_ 1 S 7 \"" + new string('v', 255) + "\";");
    }

    [TestCaseSource("Cut")]
    public void LongTextCanBeCut(Database database, string expected)
    {
        database.Write(InIt("cut.dbc"), cut: true);
        Assert.That(Files.Lines(InIt("cut.dbc")), Has.Member(expected));
    }

    // In a file it would not show: the library drops such a part.
    [TestCase("aé", 2, 1)]
    [TestCase("é", 1, 0)]
    [TestCase("a€", 3, 1)]
    [TestCase("\U0001f697", 3, 0)]
    [TestCase("aéb", 3, 3)]
    public void NoPartOfACharacterIsLeft(string text, int limit, int kept)
    {
        Assert.That(Utf8.Bytes("field", text, limit, true).Length, Is.EqualTo(kept));
    }

    private static IEnumerable<TestCaseData> Longest()
    {
        yield return new TestCaseData(WithMessage(name: new string('n', 255)));
        yield return new TestCaseData(WithMessage(comment: new string('é', 127) + "e"));
        yield return new TestCaseData(WithSignal(unit: new string('u', 32)));
        yield return new TestCaseData(WithSignal(receivers: new[] { new string('é', 32) }));
        yield return new TestCaseData(WithSignal(receivers: Receivers(31, 8)));
        yield return new TestCaseData(WithSignal(value: new string('v', 255)));
    }

    [TestCaseSource("Longest")]
    public void LongestTextIsTaken(Database database)
    {
        database.Write(InIt("fits.dbc"));
        database.Write(InIt("cut.dbc"), cut: true);
        Assert.That(File.ReadAllBytes(InIt("fits.dbc")), Is.EqualTo(File.ReadAllBytes(InIt("cut.dbc"))));
    }

    [Test]
    public void EmptyDatabaseIsNotWritten()
    {
        Files.Write(InIt("kept.dbc"), "as it was");
        var error = Assert.Throws<TabrinFileException>(() => new Database().Write(InIt("kept.dbc")));
        Assert.That(error.Message, Is.StringContaining("holds no messages, so there is nothing to write (status 2)"));
        Assert.That(File.ReadAllText(InIt("kept.dbc")), Is.EqualTo("as it was"));
    }

    [Test]
    public void MissingFolderIsTold()
    {
        var error = Assert.Throws<TabrinFileException>(() => Built().Write(InIt("missing", "a.dbc")));
        Assert.That(error.Status, Is.EqualTo(FileStatus.NotOpened));
    }

    private static string[] Receivers(int length, int count)
    {
        return Enumerable.Repeat(new string('r', length), count).ToArray();
    }
}
}
