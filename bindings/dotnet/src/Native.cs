// The interface of the library, as include/tabrin.h describes it: its functions, and its records with their bytes.
using System;
using System.Runtime.InteropServices;

namespace Tabrin
{
[StructLayout(LayoutKind.Explicit, Size = 264)]
internal unsafe struct CanErrorData
{
    [FieldOffset(0)]
    public uint Code;
    [FieldOffset(4)]
    public uint Line;
    [FieldOffset(8)]
    public fixed byte Text[256];
}

[StructLayout(LayoutKind.Explicit, Size = 8)]
internal struct DatabaseInfo
{
    [FieldOffset(0)]
    public uint ProtocolType;
    [FieldOffset(4)]
    public uint CanFd;
}

[StructLayout(LayoutKind.Explicit, Size = 640)]
internal unsafe struct CanMessageData
{
    [FieldOffset(0)]
    public uint Id;
    [FieldOffset(4)]
    public fixed byte IdentifierName[33];
    [FieldOffset(40)]
    public uint Dlc;
    [FieldOffset(44)]
    public fixed byte Name[256];
    [FieldOffset(300)]
    public fixed byte Transmitter[33];
    [FieldOffset(336)]
    public uint NumSignals;
    [FieldOffset(344)]
    public fixed byte Comment[256];
    [FieldOffset(600)]
    public fixed byte SendType[33];
    [FieldOffset(636)]
    public uint CycleTime;
}

[StructLayout(LayoutKind.Explicit, Size = 944)]
internal unsafe struct CanSignalData
{
    [FieldOffset(0)]
    public fixed byte IdentifierName[33];
    [FieldOffset(33)]
    public fixed byte Name[256];
    [FieldOffset(289)]
    public fixed byte Unit[33];
    [FieldOffset(322)]
    public fixed byte Receivers[256];
    [FieldOffset(578)]
    public fixed byte Comment[256];
    [FieldOffset(836)]
    public uint MultiplexKind;
    [FieldOffset(840)]
    public uint MultiplexValue;
    [FieldOffset(844)]
    public uint StartBit;
    [FieldOffset(848)]
    public uint Length;
    [FieldOffset(852)]
    public uint ByteOrder;
    [FieldOffset(856)]
    public uint ValueType;
    [FieldOffset(864)]
    public double Factor;
    [FieldOffset(872)]
    public double Offset;
    [FieldOffset(880)]
    public double Minimum;
    [FieldOffset(888)]
    public double Maximum;
    [FieldOffset(896)]
    public uint NumValueDescriptions;
    [FieldOffset(900)]
    public uint StartValue;
    [FieldOffset(904)]
    public uint InactiveValue;
    [FieldOffset(908)]
    public fixed byte UnitAsWritten[33];
}

[StructLayout(LayoutKind.Explicit, Size = 260)]
internal unsafe struct CanSignalEnumData
{
    [FieldOffset(0)]
    public int Value;
    [FieldOffset(4)]
    public fixed byte Text[256];
}

/// <summary>
/// The seventeen functions. The name without prefix and ending becomes tabrin64.dll on Windows and libtabrin64.so
/// elsewhere, by the rules of every runtime.
/// </summary>
internal static unsafe class Native
{
    private const string Library = "tabrin64";
    private const CallingConvention Convention = CallingConvention.Cdecl;

    [DllImport(Library, CallingConvention = Convention, ExactSpelling = true)]
    public static extern float TabrinGetLibraryVersion();

    [DllImport(Library, CallingConvention = Convention, ExactSpelling = true)]
    [return:MarshalAs(UnmanagedType.I1)]
    public static extern bool TabrinReadDbcFile(byte[] path, uint pathBufferSize, out uint status);

    [DllImport(Library, CallingConvention = Convention, ExactSpelling = true)]
    [return:MarshalAs(UnmanagedType.I1)]
    public static extern bool TabrinWriteDbcFile(byte[] path, uint pathBufferSize, uint messageOrder, out uint status);

    [DllImport(Library, CallingConvention = Convention, ExactSpelling = true)]
    [return:MarshalAs(UnmanagedType.I1)]
    public static extern bool TabrinClearData();

    [DllImport(Library, CallingConvention = Convention, ExactSpelling = true)]
    [return:MarshalAs(UnmanagedType.I1)]
    public static extern bool TabrinGetDatabaseInfo(DatabaseInfo* destination, UIntPtr size);

    [DllImport(Library, CallingConvention = Convention, ExactSpelling = true)]
    [return:MarshalAs(UnmanagedType.I1)]
    public static extern bool TabrinSetDatabaseInfo(DatabaseInfo* source, UIntPtr size);

    [DllImport(Library, CallingConvention = Convention, ExactSpelling = true)]
    public static extern long TabrinGetNumCanMessages();

    [DllImport(Library, CallingConvention = Convention, ExactSpelling = true)]
    [return:MarshalAs(UnmanagedType.I1)]
    public static extern bool TabrinAppendCanMessage(CanMessageData* data);

    [DllImport(Library, CallingConvention = Convention, ExactSpelling = true)]
    [return:MarshalAs(UnmanagedType.I1)]
    public static extern bool TabrinGetCanMessageData(uint message, CanMessageData* data);

    [DllImport(Library, CallingConvention = Convention, ExactSpelling = true)]
    [return:MarshalAs(UnmanagedType.I1)]
    public static extern bool TabrinGetNumCanSignalsInCanMessage(uint message, out uint count);

    [DllImport(Library, CallingConvention = Convention, ExactSpelling = true)]
    [return:MarshalAs(UnmanagedType.I1)]
    public static extern bool TabrinAppendCanSignalToCanMessage(uint message, CanSignalData* data);

    [DllImport(Library, CallingConvention = Convention, ExactSpelling = true)]
    [return:MarshalAs(UnmanagedType.I1)]
    public static extern bool TabrinGetCanSignalData(uint message, uint signal, CanSignalData* data);

    [DllImport(Library, CallingConvention = Convention, ExactSpelling = true)]
    [return:MarshalAs(UnmanagedType.I1)]
    public static extern bool TabrinGetNumEnumsInCanSignal(uint message, uint signal, out uint count);

    [DllImport(Library, CallingConvention = Convention, ExactSpelling = true)]
    [return:MarshalAs(UnmanagedType.I1)]
    public static extern bool TabrinAppendEnumToCanSignal(uint message, uint signal, CanSignalEnumData* data);

    [DllImport(Library, CallingConvention = Convention, ExactSpelling = true)]
    [return:MarshalAs(UnmanagedType.I1)]
    public static extern bool TabrinGetCanSignalEnumData(
        uint message, uint signal, uint index, CanSignalEnumData* data);

    [DllImport(Library, CallingConvention = Convention, ExactSpelling = true)]
    public static extern long TabrinGetNumCanErrors();

    [DllImport(Library, CallingConvention = Convention, ExactSpelling = true)]
    [return:MarshalAs(UnmanagedType.I1)]
    public static extern bool TabrinGetErrorData(uint index, CanErrorData* data);

    /// <summary>Whether the runtime lays the records out as they are declared.</summary>
    public static void CheckLayouts()
    {
        CheckSmallRecords();
        CheckMessage();
        CheckSignal();
    }

    private static void CheckSmallRecords()
    {
        CanErrorData error;
        Expect("CanErrorData", 264, sizeof(CanErrorData));
        Expect("CanErrorData.Code", 0, (byte*)&error.Code - (byte*)&error);
        Expect("CanErrorData.Line", 4, (byte*)&error.Line - (byte*)&error);
        Expect("CanErrorData.Text", 8, error.Text - (byte*)&error);
        DatabaseInfo info;
        Expect("DatabaseInfo", 8, sizeof(DatabaseInfo));
        Expect("DatabaseInfo.ProtocolType", 0, (byte*)&info.ProtocolType - (byte*)&info);
        Expect("DatabaseInfo.CanFd", 4, (byte*)&info.CanFd - (byte*)&info);
        CanSignalEnumData description;
        Expect("CanSignalEnumData", 260, sizeof(CanSignalEnumData));
        Expect("CanSignalEnumData.Value", 0, (byte*)&description.Value - (byte*)&description);
        Expect("CanSignalEnumData.Text", 4, description.Text - (byte*)&description);
    }

    private static void CheckMessage()
    {
        CanMessageData message;
        byte* start = (byte*)&message;
        Expect("CanMessageData", 640, sizeof(CanMessageData));
        Expect("CanMessageData.Id", 0, (byte*)&message.Id - start);
        Expect("CanMessageData.IdentifierName", 4, message.IdentifierName - start);
        Expect("CanMessageData.Dlc", 40, (byte*)&message.Dlc - start);
        Expect("CanMessageData.Name", 44, message.Name - start);
        Expect("CanMessageData.Transmitter", 300, message.Transmitter - start);
        Expect("CanMessageData.NumSignals", 336, (byte*)&message.NumSignals - start);
        Expect("CanMessageData.Comment", 344, message.Comment - start);
        Expect("CanMessageData.SendType", 600, message.SendType - start);
        Expect("CanMessageData.CycleTime", 636, (byte*)&message.CycleTime - start);
    }

    private static void CheckSignal()
    {
        CanSignalData signal;
        byte* start = (byte*)&signal;
        Expect("CanSignalData", 944, sizeof(CanSignalData));
        Expect("CanSignalData.IdentifierName", 0, signal.IdentifierName - start);
        Expect("CanSignalData.Name", 33, signal.Name - start);
        Expect("CanSignalData.Unit", 289, signal.Unit - start);
        Expect("CanSignalData.Receivers", 322, signal.Receivers - start);
        Expect("CanSignalData.Comment", 578, signal.Comment - start);
        Expect("CanSignalData.MultiplexKind", 836, (byte*)&signal.MultiplexKind - start);
        Expect("CanSignalData.MultiplexValue", 840, (byte*)&signal.MultiplexValue - start);
        Expect("CanSignalData.StartBit", 844, (byte*)&signal.StartBit - start);
        Expect("CanSignalData.Length", 848, (byte*)&signal.Length - start);
        Expect("CanSignalData.ByteOrder", 852, (byte*)&signal.ByteOrder - start);
        Expect("CanSignalData.ValueType", 856, (byte*)&signal.ValueType - start);
        Expect("CanSignalData.Factor", 864, (byte*)&signal.Factor - start);
        Expect("CanSignalData.Offset", 872, (byte*)&signal.Offset - start);
        Expect("CanSignalData.Minimum", 880, (byte*)&signal.Minimum - start);
        Expect("CanSignalData.Maximum", 888, (byte*)&signal.Maximum - start);
        Expect("CanSignalData.NumValueDescriptions", 896, (byte*)&signal.NumValueDescriptions - start);
        Expect("CanSignalData.StartValue", 900, (byte*)&signal.StartValue - start);
        Expect("CanSignalData.InactiveValue", 904, (byte*)&signal.InactiveValue - start);
        Expect("CanSignalData.UnitAsWritten", 908, signal.UnitAsWritten - start);
    }

    private static void Expect(string what, long documented, long actual)
    {
        if (actual != documented)
        {
            throw new TabrinLibraryException(
                what + ": " + actual + " bytes in this runtime, and " + documented + " in the library");
        }
    }
}
}
