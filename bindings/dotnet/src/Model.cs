// The database as values: nothing here changes once it is made.
using System;
using System.Collections;
using System.Collections.Generic;
using System.Collections.ObjectModel;
using System.Linq;

namespace Tabrin
{
public enum ProtocolType
{
    None = 0,
    J1939 = 1,
    Nmea2000 = 2,
}

/// <summary>Whether a signal is in every frame of its message.</summary>
public enum MultiplexKind
{
    None = 0,
    Multiplexor = 1,
    Multiplexed = 2,
}

/// <summary>Big endian is also known as Motorola, little endian as Intel.</summary>
public enum ByteOrder
{
    BigEndian = 0,
    LittleEndian = 1,
}

/// <summary>How the raw bits of a signal are to be understood.</summary>
public enum SignalValueType
{
    Unsigned = 0,
    Signed = 1,
    Float = 2,
    Double = 3,
}

/// <summary>The order of messages in a written file. By identifier means: the largest first.</summary>
public enum MessageOrder
{
    Identifier = 0,
    Name = 1,
    Database = 2,
}

/// <summary>The step of a statement that could not be read.</summary>
public enum FaultCode
{
    MessageId = 0,
    MessageName = 1,
    MessageLength = 2,
    SignalName = 3,
    SignalBits = 4,
    SignalScale = 5,
    SignalRange = 6,
}

/// <summary>A message or signal statement that was left out in reading.</summary>
public sealed class FaultyStatement
{
    internal FaultyStatement(FaultCode code, uint line, string text)
    {
        Code = code;
        Line = line;
        Text = text;
    }

    public FaultCode Code { get; }

    public uint Line { get; }

    public string Text { get; }

    public override string ToString()
    {
        return "line " + Line + ": " + Code + ": " + Text.TrimEnd();
    }
}

/// <summary>One signal of a message. Physical value = raw value * Factor + Offset.</summary>
public sealed class Signal
{
    private static readonly IReadOnlyDictionary<int, string> NoDescriptions =
        new ReadOnlyDictionary<int, string>(new SortedList<int, string>());

    public Signal(
        string name, uint startBit, uint length, ByteOrder byteOrder = ByteOrder.LittleEndian,
        SignalValueType valueType = SignalValueType.Unsigned, double factor = 1, double offset = 0, double minimum = 0,
        double maximum = 0, string unit = "", IEnumerable<string> receivers = null, string comment = "",
        MultiplexKind multiplexKind = MultiplexKind.None, uint multiplexValue = 0, uint startValue = 0,
        uint inactiveValue = 0, IEnumerable<KeyValuePair<int, string>> valueDescriptions = null)
    {
        Name = Check.NotNull(nameof(name), name);
        StartBit = startBit;
        Length = length;
        ByteOrder = Check.Defined(nameof(byteOrder), byteOrder);
        ValueType = Check.Defined(nameof(valueType), valueType);
        Factor = factor;
        Offset = offset;
        Minimum = minimum;
        Maximum = maximum;
        Unit = Check.NotNull(nameof(unit), unit);
        Receivers = CheckedReceivers(receivers);
        Comment = Check.NotNull(nameof(comment), comment);
        MultiplexKind = Check.Defined(nameof(multiplexKind), multiplexKind);
        MultiplexValue = multiplexValue;
        StartValue = startValue;
        InactiveValue = inactiveValue;
        ValueDescriptions = CheckedDescriptions(valueDescriptions);
        IdentifierName = "";
        UnitAscii = "";
        CheckFloatLength();
    }

    internal unsafe Signal(CanSignalData* record, TextCache texts, SortedList<int, string> descriptions)
    {
        Name = Utf8.Text(record->Name);
        IdentifierName = texts.Same(Name, record->IdentifierName);
        StartBit = record->StartBit;
        Length = record->Length;
        ByteOrder = (ByteOrder)record->ByteOrder;
        ValueType = (SignalValueType)record->ValueType;
        Factor = record->Factor;
        Offset = record->Offset;
        Minimum = record->Minimum;
        Maximum = record->Maximum;
        Unit = texts.Text(record->UnitAsWritten);
        UnitAscii = texts.Text(record->Unit);
        Receivers = texts.List(record->Receivers);
        Comment = Utf8.Text(record->Comment);
        MultiplexKind = (MultiplexKind)record->MultiplexKind;
        MultiplexValue = record->MultiplexValue;
        StartValue = record->StartValue;
        InactiveValue = record->InactiveValue;
        ValueDescriptions = descriptions == null ? NoDescriptions : new ReadOnlyDictionary<int, string>(descriptions);
    }

    public string Name { get; }

    /// <summary>The name as files carry it. Made by the library: empty for a signal that was not read.</summary>
    public string IdentifierName { get; }

    public uint StartBit { get; }

    /// <summary>In bits.</summary>
    public uint Length { get; }

    public ByteOrder ByteOrder { get; }

    public SignalValueType ValueType { get; }

    public double Factor { get; }

    public double Offset { get; }

    public double Minimum { get; }

    public double Maximum { get; }

    public string Unit { get; }

    /// <summary>The unit as files carry it. Made by the library: empty for a signal that was not read.</summary>
    public string UnitAscii { get; }

    public IReadOnlyList<string> Receivers { get; }

    /// <summary>Quotes carry a backslash, also when they are given without one.</summary>
    public string Comment { get; }

    public MultiplexKind MultiplexKind { get; }

    public uint MultiplexValue { get; }

    /// <summary>A raw value, a signed one by its bits. Read from files and not written.</summary>
    public uint StartValue { get; }

    /// <summary>A raw value, a signed one by its bits. Read from files and not written.</summary>
    public uint InactiveValue { get; }

    /// <summary>What raw values mean, in the order of the values.</summary>
    public IReadOnlyDictionary<int, string> ValueDescriptions { get; }

    private static IReadOnlyList<string> CheckedReceivers(IEnumerable<string> receivers)
    {
        string[] taken = (receivers ?? Enumerable.Empty<string>()).ToArray();
        for (int i = 0; i < taken.Length; ++i)
        {
            string field = "receivers[" + i + "]";
            if (Check.NotNull(field, taken[i]).Trim().Length == 0)
            {
                throw new ArgumentException(field + ": is empty");
            }
            if (taken[i].Contains(","))
            {
                throw new ArgumentException(field + ": holds a comma, which would make two of it: " + taken[i]);
            }
        }
        return Array.AsReadOnly(taken);
    }

    private static IReadOnlyDictionary<int, string> CheckedDescriptions(
        IEnumerable<KeyValuePair<int, string>> descriptions)
    {
        if (descriptions == null)
        {
            return NoDescriptions;
        }
        var taken = new SortedList<int, string>();
        foreach (KeyValuePair<int, string> entry in descriptions)
        {
            Check.NotNull("valueDescriptions[" + entry.Key + "]", entry.Value);
            if (taken.ContainsKey(entry.Key))
            {
                throw new ArgumentException("valueDescriptions: " + entry.Key + " is described twice");
            }
            taken.Add(entry.Key, entry.Value);
        }
        return new ReadOnlyDictionary<int, string>(taken);
    }

    private void CheckFloatLength()
    {
        uint expected = ValueType == SignalValueType.Float ? 32 : ValueType == SignalValueType.Double ? 64 : Length;
        if (Length != expected)
        {
            throw new ArgumentException(
                "length: a signal of type " + ValueType + " has " + expected + " bits, not " + Length);
        }
    }
}

/// <summary>One message with its signals.</summary>
public sealed class Message : IEnumerable<Signal>
{
    private const int MaxSignals = 10000;
    private const uint ExtendedFlag = 0x80000000;
    private const uint FrameIdMask = 0x1FFFFFFF;

    public Message(
        uint id, string name, uint dlc, IEnumerable<Signal> signals = null, string transmitter = "",
        string comment = "")
    {
        Id = id;
        Name = Check.NotNull(nameof(name), name);
        Dlc = dlc;
        Signals = Check.Items(nameof(signals), signals);
        Transmitter = Check.NotNull(nameof(transmitter), transmitter);
        Comment = Check.NotNull(nameof(comment), comment);
        SendType = "";
        IdentifierName = "";
        if (Signals.Count > MaxSignals)
        {
            throw new ArgumentException("signals: " + Signals.Count + ", and the limit is " + MaxSignals);
        }
    }

    internal unsafe Message(CanMessageData* record, TextCache texts, Signal[] signals)
    {
        Id = record->Id;
        Name = Utf8.Text(record->Name);
        IdentifierName = texts.Same(Name, record->IdentifierName);
        Dlc = record->Dlc;
        Signals = Array.AsReadOnly(signals);
        Transmitter = texts.Text(record->Transmitter);
        Comment = Utf8.Text(record->Comment);
        SendType = texts.Text(record->SendType);
        CycleTime = record->CycleTime;
    }

    /// <summary>As files have it: bit 31 marks a 29-bit identifier.</summary>
    public uint Id { get; }

    /// <summary>The identifier on the bus, of 11 or 29 bits.</summary>
    public uint FrameId => Id & FrameIdMask;

    /// <summary>Whether the identifier has 29 bits.</summary>
    public bool IsExtended => (Id & ExtendedFlag) != 0;

    public string Name { get; }

    /// <summary>The name as files carry it. Made by the library: empty for a message that was not read.</summary>
    public string IdentifierName { get; }

    /// <summary>Data length in bytes.</summary>
    public uint Dlc { get; }

    public IReadOnlyList<Signal> Signals { get; }

    public string Transmitter { get; }

    /// <summary>Quotes carry a backslash, also when they are given without one.</summary>
    public string Comment { get; }

    /// <summary>Read from files and not written.</summary>
    public string SendType { get; }

    /// <summary>In milliseconds by custom. Read from files and not written.</summary>
    public uint CycleTime { get; }

    /// <summary>The signal with this identifier, else the first with this long name.</summary>
    /// <exception cref="KeyNotFoundException">There is none.</exception>
    public Signal ByName(string name)
    {
        Check.NotNull(nameof(name), name);
        Signal found = Signals.FirstOrDefault(signal => signal.IdentifierName == name && name.Length > 0) ??
                       Signals.FirstOrDefault(signal => signal.Name == name);
        if (found == null)
        {
            throw new KeyNotFoundException("message '" + Name + "' has no signal '" + name + "'");
        }
        return found;
    }

    public IEnumerator<Signal> GetEnumerator()
    {
        return Signals.GetEnumerator();
    }

    IEnumerator IEnumerable.GetEnumerator()
    {
        return GetEnumerator();
    }
}

internal static class Check
{
    public static T NotNull<T>(string field, T value)
        where T : class
    {
        if (value == null)
        {
            throw new ArgumentNullException(field);
        }
        return value;
    }

    public static T Defined<T>(string field, T value)
    {
        if (!Enum.IsDefined(typeof(T), value))
        {
            throw new ArgumentOutOfRangeException(field, value, field + ": is no " + typeof(T).Name);
        }
        return value;
    }

    public static IReadOnlyList<T> Items<T>(string field, IEnumerable<T> items)
        where T : class
    {
        T[] taken = (items ?? Enumerable.Empty<T>()).ToArray();
        for (int i = 0; i < taken.Length; ++i)
        {
            NotNull(field + "[" + i + "]", taken[i]);
        }
        return Array.AsReadOnly(taken);
    }
}
}
