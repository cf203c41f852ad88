// Reading and writing: from the library's one database to values and back.
using System;
using System.Collections;
using System.Collections.Generic;
using System.IO;
using System.Linq;

namespace Tabrin
{
/// <summary>
/// A CAN database: a list of messages, with what the last read found wrong in Errors. It is a value, independent of the
/// library and of what is read after it. The library itself holds one database for the whole process; this class uses
/// it for the time of a call, one call at a time, and leaves it empty.
/// </summary>
public sealed class Database : IReadOnlyList<Message>
{
    private const int PathLimit = 259;

    private readonly IReadOnlyList<Message> messages;

    public Database(IEnumerable<Message> messages = null, ProtocolType protocol = ProtocolType.None, bool canFd = false)
    {
        this.messages = Check.Items(nameof(messages), messages);
        Protocol = Check.Defined(nameof(protocol), protocol);
        CanFd = canFd;
        Errors = new FaultyStatement[0];
    }

    private Database(Message[] messages, DatabaseInfo info, FaultyStatement[] errors)
    {
        this.messages = Array.AsReadOnly(messages);
        Protocol = (ProtocolType)info.ProtocolType;
        CanFd = info.CanFd != 0;
        Errors = Array.AsReadOnly(errors);
    }

    public ProtocolType Protocol { get; }

    public bool CanFd { get; }

    /// <summary>The message and signal statements that were left out in reading.</summary>
    public IReadOnlyList<FaultyStatement> Errors { get; }

    /// <summary>The number of messages.</summary>
    public int Count => messages.Count;

    /// <exception cref="ArgumentOutOfRangeException">There is no message of this index.</exception>
    public Message this[int index]
    {
        get
        {
            if (index < 0 || index >= messages.Count)
            {
                throw new ArgumentOutOfRangeException(
                    nameof(index),
                    "message index " + index + " is out of range: the database has " + Count + " messages");
            }
            return messages[index];
        }
    }

    public IEnumerator<Message> GetEnumerator()
    {
        return messages.GetEnumerator();
    }

    IEnumerator IEnumerable.GetEnumerator()
    {
        return GetEnumerator();
    }

    /// <summary>The message with this identifier, else the first with this long name.</summary>
    /// <exception cref="KeyNotFoundException">There is none.</exception>
    public Message ByName(string name)
    {
        Check.NotNull(nameof(name), name);
        Message found = messages.FirstOrDefault(message => message.IdentifierName == name && name.Length > 0) ??
                        messages.FirstOrDefault(message => message.Name == name);
        if (found == null)
        {
            throw new KeyNotFoundException("there is no message '" + name + "'");
        }
        return found;
    }

    /// <summary>The first message with this identifier, bit 31 included.</summary>
    /// <exception cref="KeyNotFoundException">There is none.</exception>
    public Message ById(uint id)
    {
        Message found = messages.FirstOrDefault(message => message.Id == id);
        if (found == null)
        {
            throw new KeyNotFoundException("there is no message with the identifier " + id);
        }
        return found;
    }

    /// <summary>
    /// Reads a DBC file. Statements of messages and signals that cannot be read are left out and listed in Errors.
    /// </summary>
    /// <exception cref="TabrinFileException">The file cannot be read.</exception>
    /// <exception cref="PathTooLongException">The path has more than 259 bytes of UTF-8.</exception>
    public static Database Read(string path)
    {
        byte[] plain = PlainPath(nameof(path), path);
        lock (Library.Gate)
        {
            Library.Load();
            try
            {
                ReadIntoLibrary(plain, path);
                return Copied();
            }
            finally
            {
                Empty();
            }
        }
    }

    /// <summary>
    /// Reads one file and writes it to the other, all within the library: nothing is cut, and no name changes, on the
    /// way.
    /// </summary>
    /// <returns>The statements that were left out.</returns>
    public static IReadOnlyList<FaultyStatement> Convert(
        string source, string target, MessageOrder order = MessageOrder.Database)
    {
        byte[] plainSource = PlainPath(nameof(source), source);
        byte[] plainTarget = PlainPath(nameof(target), target);
        Check.Defined(nameof(order), order);
        lock (Library.Gate)
        {
            Library.Load();
            try
            {
                ReadIntoLibrary(plainSource, source);
                FaultyStatement[] errors = CopiedErrors();
                WriteFile(plainTarget, target, order);
                return Array.AsReadOnly(errors);
            }
            finally
            {
                Empty();
            }
        }
    }

    /// <summary>
    /// Writes a DBC file; one that is there is replaced. The library makes the identifier of every message and signal
    /// from its name. To convert a file as it is, take Convert.
    /// </summary>
    /// <param name="path">Where to.</param>
    /// <param name="order">The order of the messages.</param>
    /// <param name="cut">Cut texts that are too long for the library, in front of the first character that does not
    /// fit.
    /// </param>
    /// <param name="rename">Write another identifier than something was read under, where the library makes another of
    /// its name.</param>
    /// <exception cref="TextTooLongException">A text does not fit and may not be cut.</exception>
    /// <exception cref="IdentifierException">An identifier would change and may not.</exception>
    /// <exception cref="TabrinFileException">The file cannot be written.</exception>
    /// <exception cref="PathTooLongException">The path has more than 259 bytes of UTF-8.</exception>
    public void Write(string path, MessageOrder order = MessageOrder.Database, bool cut = false, bool rename = false)
    {
        byte[] plain = PlainPath(nameof(path), path);
        Check.Defined(nameof(order), order);
        var records = new RecordWriter(cut, rename);
        foreach (Message message in messages)
        {
            records.CheckTexts(message); // before the library is touched
        }
        lock (Library.Gate)
        {
            Library.Load();
            try
            {
                Empty();
                SetInfo(new DatabaseInfo { ProtocolType = (uint)Protocol, CanFd = CanFd ? 1U : 0U });
                for (int i = 0; i < messages.Count; ++i)
                {
                    records.Append((uint)i, messages[i]);
                }
                WriteFile(plain, path, order);
            }
            finally
            {
                Empty();
            }
        }
    }

    private static byte[] PlainPath(string field, string path)
    {
        if (Check.NotNull(field, path).Length == 0)
        {
            throw new ArgumentException(field + ": is empty");
        }
        byte[] plain = Utf8.Bytes(field, path);
        if (plain.Length > PathLimit)
        {
            throw new PathTooLongException(
                field + ": takes " + plain.Length + " bytes of UTF-8, and the limit is " + PathLimit + ": " + path);
        }
        Array.Resize(ref plain, plain.Length + 1);
        return plain;
    }

    // Leaves nothing behind. The flag for CAN FD, which clearing keeps, would find its way into the next file read.
    private static void Empty()
    {
        Native.TabrinClearData();
        SetInfo(default(DatabaseInfo));
    }

    private static unsafe void SetInfo(DatabaseInfo info)
    {
        Native.TabrinSetDatabaseInfo(&info, (UIntPtr)sizeof(DatabaseInfo));
    }

    private static void ReadIntoLibrary(byte[] plain, string path)
    {
        uint status;
        Empty();
        if (!Native.TabrinReadDbcFile(plain, (uint)plain.Length, out status))
        {
            throw new TabrinFileException(status, path);
        }
    }

    private static void WriteFile(byte[] plain, string path, MessageOrder order)
    {
        uint status;
        bool done = Native.TabrinWriteDbcFile(plain, (uint)plain.Length, (uint)order, out status);
        // Closing can fail after everything was written; the library then calls it done.
        if (!done || status != (uint)FileStatus.Closed)
        {
            throw new TabrinFileException(status, path);
        }
    }

    private static unsafe Database Copied()
    {
        DatabaseInfo info;
        Native.TabrinGetDatabaseInfo(&info, (UIntPtr)sizeof(DatabaseInfo));
        var texts = new TextCache();
        var copied = new Message[Native.TabrinGetNumCanMessages()];
        CanMessageData record;
        for (uint i = 0; i < copied.Length; ++i)
        {
            Demand(Native.TabrinGetCanMessageData(i, &record));
            copied[i] = new Message(&record, texts, CopiedSignals(i, record.NumSignals, texts));
        }
        return new Database(copied, info, CopiedErrors());
    }

    private static unsafe Signal[] CopiedSignals(uint message, uint count, TextCache texts)
    {
        var copied = new Signal[count];
        CanSignalData record;
        for (uint i = 0; i < count; ++i)
        {
            Demand(Native.TabrinGetCanSignalData(message, i, &record));
            copied[i] = new Signal(&record, texts, CopiedDescriptions(message, i, record.NumValueDescriptions, texts));
        }
        return copied;
    }

    private static unsafe SortedList<int, string> CopiedDescriptions(
        uint message, uint signal, uint count, TextCache texts)
    {
        if (count == 0)
        {
            return null;
        }
        var copied = new SortedList<int, string>((int)count);
        CanSignalEnumData record;
        for (uint i = 0; i < count; ++i)
        {
            Demand(Native.TabrinGetCanSignalEnumData(message, signal, i, &record));
            copied.Add(record.Value, texts.Text(record.Text));
        }
        return copied;
    }

    private static unsafe FaultyStatement[] CopiedErrors()
    {
        var copied = new FaultyStatement[Native.TabrinGetNumCanErrors()];
        CanErrorData record;
        for (uint i = 0; i < copied.Length; ++i)
        {
            Demand(Native.TabrinGetErrorData(i, &record));
            copied[i] = new FaultyStatement((FaultCode)record.Code, record.Line, Utf8.Text(record.Text));
        }
        return copied;
    }

    internal static void Demand(bool done)
    {
        if (!done)
        {
            throw new InvalidOperationException("the library did not take or give a part of its database");
        }
    }
}
}
