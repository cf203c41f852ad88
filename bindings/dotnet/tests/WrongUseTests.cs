// Wrong use is answered by an exception that says what is wrong, and changes nothing.
using System;
using System.Collections.Generic;
using System.IO;
using System.Linq;
using System.Threading;
using NUnit.Framework;

namespace Tabrin.Tests
{
[TestFixture]
public class WrongUseTests : InFolder
{
    private static readonly Message[] OneMessage = { new Message(1, "M", 8) };

    private static IEnumerable<TestCaseData> Attempts()
    {
        yield return Case("name", () => new Signal(null, 0, 8));
        yield return Case("unit", () => new Signal("S", 0, 8, unit: null));
        yield return Case("receivers[1]", () => new Signal("S", 0, 8, receivers: new[] { "A", null }));
        yield return Case("receivers[1]: is empty", () => new Signal("S", 0, 8, receivers: new[] { "A", " " }));
        yield return Case("receivers[0]: holds a comma", () => new Signal("S", 0, 8, receivers: new[] { "A,B" }));
        yield return Case("byteOrder: is no ByteOrder", () => new Signal("S", 0, 8, (ByteOrder)2));
        yield return Case(
            "valueType: is no SignalValueType", () => new Signal("S", 0, 8, valueType: (SignalValueType)4));
        yield return Case(
            "multiplexKind: is no MultiplexKind", () => new Signal("S", 0, 8, multiplexKind: (MultiplexKind)(-1)));
        yield return Case(
            "length: a signal of type Float has 32 bits, not 16",
            () => new Signal("S", 0, 16, valueType: SignalValueType.Float));
        yield return Case(
            "length: a signal of type Double has 64 bits, not 32",
            () => new Signal("S", 0, 32, valueType: SignalValueType.Double));
        yield return Case(
            "valueDescriptions: 1 is described twice", () => new Signal("S", 0, 8, valueDescriptions: Twice(1)));
        yield return Case(
            "valueDescriptions[5]",
            () => new Signal("S", 0, 8, valueDescriptions: new Dictionary<int, string> { { 5, null } }));
        yield return Case("name", () => new Message(1, null, 8));
        yield return Case("signals[0]", () => new Message(1, "M", 8, new Signal[1]));
        yield return Case(
            "signals: 10001, and the limit is 10000",
            () => new Message(1, "M", 8, Enumerable.Repeat(new Signal("S", 0, 8), 10001)));
        yield return Case("messages[0]", () => new Database(new Message[1]));
        yield return Case("protocol: is no ProtocolType", () => new Database(null, (ProtocolType)3));
        yield return Case(
            "order: is no MessageOrder", () => new Database(OneMessage).Write("never.dbc", (MessageOrder)3));
        yield return Case("order: is no MessageOrder", () => Database.Convert("a.dbc", "b.dbc", (MessageOrder)(-1)));
        yield return Case("path", () => Database.Read(null));
        yield return Case("path: is empty", () => Database.Read(""));
        yield return Case("source: holds a NUL", () => Database.Convert("a\0b.dbc", "never.dbc"));
        yield return Case("target: no valid text", () => Database.Convert("a.dbc", "\ud800.dbc"));
        yield return Case("name", () => new Database().ByName(null));
        yield return Case(
            "message 'M', comment: holds a NUL",
            () => new Database(new[] { new Message(1, "M", 8, comment: "a\0b") }).Write("never.dbc"));
        yield return Case(
            "message 'M', comment: no valid text",
            () => new Database(new[] { new Message(1, "M", 8, comment: "\udc00") }).Write("never.dbc"));
    }

    private static TestCaseData Case(string message, TestDelegate attempt)
    {
        return new TestCaseData(message, attempt).SetName("WrongArgument: " + message.Replace('.', ' '));
    }

    private static IEnumerable<KeyValuePair<int, string>> Twice(int value)
    {
        yield return new KeyValuePair<int, string>(value, "a");
        yield return new KeyValuePair<int, string>(value, "b");
    }

    [TestCaseSource("Attempts")]
    public unsafe void WrongArgument(string message, TestDelegate attempt)
    {
        Library.Load();
        var mark = new CanMessageData { Id = 4711 };
        Native.TabrinClearData();
        Assert.That(Native.TabrinAppendCanMessage(&mark));
        try
        {
            Exception error = Assert.Catch<ArgumentException>(attempt);
            Assert.That(error.Message, Is.StringContaining(message));
            // Nothing has reached the library: an operation would have cleared it.
            Assert.That(Native.TabrinGetNumCanMessages(), Is.EqualTo(1));
        }
        finally
        {
            Native.TabrinClearData();
        }
        Assert.That(File.Exists("never.dbc"), Is.False);
    }

    [TestCase("a", 260)]
    [TestCase("é", 130)]
    public void LongPathIsRefused(string letter, int count)
    {
        string path = string.Concat(Enumerable.Repeat(letter, count));
        var attempts = new Dictionary<string, TestDelegate> {
            { "read", () => Database.Read(path) },
            { "convert from", () => Database.Convert(path, "never.dbc") },
            { "convert to", () => Database.Convert(Files.Sample, path) },
            { "write", () => new Database(OneMessage).Write(path) },
        };
        foreach (KeyValuePair<string, TestDelegate> attempt in attempts)
        {
            var error = Assert.Throws<PathTooLongException>(attempt.Value, attempt.Key);
            Assert.That(error.Message, Is.StringContaining("takes 260 bytes of UTF-8, and the limit is 259"));
        }
    }

    [Test]
    public void LongestPathIsTaken()
    {
        string start = InIt("folder");
        Directory.CreateDirectory(start);
        int rest = 259 - start.Length - "/a.dbc".Length;
        string path = start + string.Concat(Enumerable.Repeat("/.", rest / 2)) + (rest % 2 == 0 ? "/a.dbc" : "/aa.dbc");
        Assert.That(path.Length, Is.EqualTo(259));
        new Database(OneMessage).Write(path);
        Assert.That(Database.Read(path).Count, Is.EqualTo(1));
    }

    [TestCase(6)]
    [TestCase(-1)]
    [TestCase(int.MaxValue)]
    public void MessageIndexOutOfRangeIsRefused(int index)
    {
        Database database = Database.Read(Files.Sample);
        var error = Assert.Throws<ArgumentOutOfRangeException>(() => database[index].ToString());
        Assert.That(
            error.Message,
            Is.StringContaining("message index " + index + " is out of range: the database has 6 messages"));
        Assert.That(database.Count, Is.EqualTo(6));
    }

    [Test]
    public void UnknownNamesAreRefused()
    {
        Database database = Database.Read(Files.Sample);
        Assert.That(
            Assert.Throws<KeyNotFoundException>(() => database.ByName("enginestatus")).Message,
            Is.EqualTo("there is no message 'enginestatus'"));
        Assert.That(
            Assert.Throws<KeyNotFoundException>(() => database.ById(257)).Message,
            Is.EqualTo("there is no message with the identifier 257"));
        Assert.That(
            Assert.Throws<KeyNotFoundException>(() => database[0].ByName("Gear")).Message,
            Is.EqualTo("message 'EngineStatus' has no signal 'Gear'"));
    }

    [Test]
    public unsafe void LibraryIsLeftEmptyAfterEveryOperation()
    {
        Database.Read(Files.Sample).Write(InIt("out.dbc"));
        Assert.That(Native.TabrinGetNumCanMessages(), Is.EqualTo(0));
        Assert.Throws<TabrinFileException>(() => Database.Convert(Files.Sample, InIt("missing", "out.dbc")));
        Assert.That(Native.TabrinGetNumCanMessages(), Is.EqualTo(0));
        Assert.That(Native.TabrinGetNumCanErrors(), Is.EqualTo(0));
        var info = new DatabaseInfo { ProtocolType = 7, CanFd = 7 };
        Native.TabrinGetDatabaseInfo(&info, (UIntPtr)8);
        Assert.That(info.ProtocolType, Is.EqualTo(0));
        Assert.That(info.CanFd, Is.EqualTo(0));
    }

    [Test]
    public void ThreadsGetWhatTheyAskedFor()
    {
        var problems = new List<string>();
        Thread[] threads =
            Enumerable.Range(0, 8).Select(number => new Thread(() => WriteAndRead(number, problems))).ToArray();
        Array.ForEach(threads, thread => thread.Start());
        Array.ForEach(threads, thread => thread.Join());
        Assert.That(problems, Is.Empty);
    }

    private void WriteAndRead(int number, List<string> problems)
    {
        try
        {
            string path = InIt(number + ".dbc");
            Signal[] signals =
                Enumerable.Range(0, 20).Select(i => new Signal("S" + number + "_" + i, (uint)i, 8)).ToArray();
            for (int round = 0; round < 20; ++round)
            {
                new Database(
                    Enumerable.Range(0, number + 1).Select(i => new Message((uint)i, "M" + number, 8, signals)))
                    .Write(path);
                Database again = Database.Read(path);
                Assert.That(again.Count, Is.EqualTo(number + 1));
                Assert.That(again.All(message => message.Name == "M" + number));
                Assert.That(
                    again[number].Select(signal => signal.Name), Is.EqualTo(signals.Select(signal => signal.Name)));
            }
        }
        catch (Exception error)
        {
            lock (problems)
            {
                problems.Add(number + ": " + error);
            }
        }
    }

    [Test]
    public void ThreadWaitsForItsTurn()
    {
        Database read = null;
        var thread = new Thread(() => read = Database.Read(Files.Sample));
        lock (Library.Gate)
        {
            thread.Start();
            Assert.That(thread.Join(200), Is.False);
            Assert.That(read, Is.Null);
        }
        Assert.That(thread.Join(30000), Is.True);
        Assert.That(read.Count, Is.EqualTo(6));
    }
}
}
