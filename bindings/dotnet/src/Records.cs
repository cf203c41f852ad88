// Texts in records, and values laid out as records.
using System;
using System.Collections.Generic;
using System.Linq;
using System.Text;

namespace Tabrin
{
internal static unsafe class Utf8
{
    private static readonly Encoding Strict = new UTF8Encoding(false, true);

    /// <summary>The text of a field, which the library always ends with a NUL.</summary>
    public static string Text(byte* field)
    {
        int length = Length(field);
        return length == 0 ? "" : Encoding.UTF8.GetString(field, length);
    }

    public static int Length(byte* field)
    {
        int length = 0;
        while (field[length] != 0)
        {
            ++length;
        }
        return length;
    }

    public static byte[] Bytes(string field, string text)
    {
        if (text.IndexOf('\0') >= 0)
        {
            throw new ArgumentException(field + ": holds a NUL, behind which the library would not look");
        }
        try
        {
            return Strict.GetBytes(text);
        }
        catch (EncoderFallbackException error)
        {
            throw new ArgumentException(field + ": no valid text: " + error.Message);
        }
    }

    /// <summary>The bytes for a field, cut in front of the first character that does not fit.</summary>
    public static byte[] Bytes(string field, string text, int limit, bool cut)
    {
        byte[] bytes = Bytes(field, text);
        if (bytes.Length <= limit)
        {
            return bytes;
        }
        if (!cut)
        {
            throw new TextTooLongException(field, bytes.Length, limit);
        }
        int length = limit;
        while (length > 0 && (bytes[length] & 0xC0) == 0x80)
        {
            --length;
        }
        Array.Resize(ref bytes, length);
        return bytes;
    }
}

/// <summary>
/// Units, nodes and descriptions repeat all over a file. One object for all that are equal saves most of their memory.
/// </summary>
internal sealed unsafe class TextCache
{
    private readonly Dictionary<string, string> texts = new Dictionary<string, string>();
    private readonly Dictionary<string, IReadOnlyList<string>> lists = new Dictionary<string, IReadOnlyList<string>>();

    public string Text(byte* field)
    {
        return Known(Utf8.Text(field));
    }

    /// <summary>The text of the field, as the same object if it is equal to one that is there.</summary>
    public string Same(string other, byte* field)
    {
        string text = Utf8.Text(field);
        return text == other ? other : text;
    }

    public IReadOnlyList<string> List(byte* field)
    {
        string joined = Utf8.Text(field);
        IReadOnlyList<string> known;
        if (!lists.TryGetValue(joined, out known))
        {
            // A list that was cut can end in a comma.
            string[] names = joined.Split(new[] { ',' }, StringSplitOptions.RemoveEmptyEntries);
            known = Array.AsReadOnly(names.Select(Known).ToArray());
            lists.Add(joined, known);
        }
        return known;
    }

    private string Known(string text)
    {
        string known;
        if (!texts.TryGetValue(text, out known))
        {
            texts.Add(text, text);
            known = text;
        }
        return known;
    }
}

/// <summary>Lays out messages as records and appends them; says which field of what it cannot.</summary>
internal sealed unsafe class RecordWriter
{
    private const int TextLimit = 255;
    private const int NodeLimit = 32;

    private readonly bool cut;
    private readonly bool rename;

    public RecordWriter(bool cut, bool rename)
    {
        this.cut = cut;
        this.rename = rename;
    }

    public void CheckTexts(Message message)
    {
        CanMessageData record;
        Fill(&record, message);
        foreach (Signal signal in message.Signals)
        {
            CanSignalData signalRecord;
            Fill(&signalRecord, message, signal);
            foreach (KeyValuePair<int, string> entry in signal.ValueDescriptions)
            {
                CanSignalEnumData description;
                Fill(&description, message, signal, entry);
            }
        }
    }

    public void Append(uint index, Message message)
    {
        CanMessageData record;
        Fill(&record, message);
        Database.Demand(Native.TabrinAppendCanMessage(&record));
        Database.Demand(Native.TabrinGetCanMessageData(index, &record));
        CompareIdentifier(Where(message), message.IdentifierName, record.IdentifierName);
        for (uint i = 0; i < message.Signals.Count; ++i)
        {
            Append(index, i, message, message.Signals[(int)i]);
        }
    }

    private static string Where(Message message)
    {
        return "message '" + message.Name + "'";
    }

    private static string Where(Message message, Signal signal)
    {
        return Where(message) + ", signal '" + signal.Name + "'";
    }

    private void Append(uint message, uint index, Message owner, Signal signal)
    {
        CanSignalData record;
        Fill(&record, owner, signal);
        Database.Demand(Native.TabrinAppendCanSignalToCanMessage(message, &record));
        Database.Demand(Native.TabrinGetCanSignalData(message, index, &record));
        CompareIdentifier(Where(owner, signal), signal.IdentifierName, record.IdentifierName);
        foreach (KeyValuePair<int, string> entry in signal.ValueDescriptions)
        {
            CanSignalEnumData description;
            Fill(&description, owner, signal, entry);
            Database.Demand(Native.TabrinAppendEnumToCanSignal(message, index, &description));
        }
    }

        private void CompareIdentifier(string where, string was, byte* field)
        {
            string made = Utf8.Text(field);
            if (!rename && was.Length > 0 && made != was)
            {
            throw new IdentifierException(
                where + ": was read as " + was + " and would be written as " + made + " (rename: true allows it)");
            }
        }

        private void Fill(CanMessageData* record, Message message)
        {
            *record = default(CanMessageData);
            record->Id = message.Id;
            record->Dlc = message.Dlc;
            Put(record->Name, Where(message) + ", name", message.Name, TextLimit);
            Put(record->Transmitter, Where(message) + ", transmitter", message.Transmitter, NodeLimit);
            Put(record->Comment, Where(message) + ", comment", message.Comment, TextLimit);
        }

        private void Fill(CanSignalData* record, Message message, Signal signal)
        {
            string
                where =
  Where(message, signal);
            *record = default(CanSignalData);
            Put(record->Name, where + ", name", signal.Name, TextLimit);
            Put(record->Unit, where + ", unit", signal.Unit, NodeLimit);
            Put(record->Comment, where + ", comment", signal.Comment, TextLimit);
            Copy(record->Receivers, Receivers(where, signal.Receivers));
            record->MultiplexKind = (uint)signal.MultiplexKind;
            record->MultiplexValue = signal.MultiplexValue;
            record->StartBit = signal.StartBit;
            record->Length = signal.Length;
            record->ByteOrder = (uint)signal.ByteOrder;
            record->ValueType = (uint)signal.ValueType;
            record->Factor = signal.Factor;
            record->Offset = signal.Offset;
            record->Minimum = signal.Minimum;
            record->Maximum = signal.Maximum;
            record->StartValue = signal.StartValue;
            record->InactiveValue = signal.InactiveValue;
        }

        private void Fill(CanSignalEnumData* record, Message message, Signal signal, KeyValuePair<int, string> entry)
        {
            *record = default(CanSignalEnumData);
            record->Value = entry.Key;
            Put(record->Text, Where(message, signal) + ", text of value " + entry.Key, entry.Value, TextLimit);
        }

        private void Put(byte* target, string field, string text, int limit)
        {
            Copy(target, Utf8.Bytes(field, text, limit, cut));
        }

        private static void Copy(byte* target, byte[] bytes)
        {
            for (int i = 0; i < bytes.Length; ++i)
            {
                target[i] = bytes[i];
            }
        }

        // The library makes one byte of every character of a receiver, and takes 32 of them. When the list is cut,
        // names are left out whole: half a name would be another node.
        private byte[] Receivers(string where, IReadOnlyList<string> receivers)
        {
            byte[] joined = new byte[0];
            for (int i = 0; i < receivers.Count; ++i)
            {
                string name = Receiver(where + ", receivers[" + i + "]", receivers[i].Trim());
                byte[] longer = joined.Concat(Utf8.Bytes(where + ", receivers", i == 0 ? name : "," + name)).ToArray();
                if (longer.Length > TextLimit && cut)
                {
                    return joined;
                }
                joined = longer;
            }
            if (joined.Length > TextLimit)
            {
                throw new TextTooLongException(where + ", receivers", joined.Length, TextLimit);
            }
            return joined;
        }

        private string Receiver(string field, string name)
        {
            int characters = 0;
            for (int i = 0; i < name.Length; ++i)
            {
                if (char.IsLowSurrogate(name[i]))
                {
                    continue; // the second half of the character before
                }
                if (characters == NodeLimit && cut)
                {
                    return name.Substring(0, i);
                }
                ++characters;
            }
            if (characters > NodeLimit)
            {
                throw new TextTooLongException(field, characters, NodeLimit);
            }
            return name;
        }
}
}
