// What this assembly throws beside the usual exceptions for wrong arguments.
using System;
using System.IO;

namespace Tabrin
{
/// <summary>The library was not found, cannot be loaded, or is of another version.</summary>
public sealed class TabrinLibraryException : Exception
{
    internal TabrinLibraryException(string message, Exception inner = null) : base(message, inner)
    {
    }
}

/// <summary>What became of a file, as the library says it.</summary>
public enum FileStatus
{
    Reading = 0,
    Writing = 1,
    Closed = 2,
    PathTooLong = 3,
    PathInvalid = 4,
    PathEmpty = 5,
    NotOpened = 6,
    Failed = 8,
    EndOfFile = 9,
}

/// <summary>A file was not read or not written: the status says in which step.</summary>
public sealed class TabrinFileException : IOException
{
    internal TabrinFileException(uint status, string path)
        : base(path + ": " + Explain((FileStatus)status) + " (status " + status + ")")
    {
        Status = (FileStatus)status;
        Path = path;
    }

    public FileStatus Status { get; }

    public string Path { get; }

    private static string Explain(FileStatus status)
    {
        switch (status)
        {
        case FileStatus.Closed:
            return "the database holds no messages, so there is nothing to write";
        case FileStatus.PathTooLong:
            return "the path is longer than 259 bytes of UTF-8";
        case FileStatus.PathInvalid:
            return "the path is not valid UTF-8";
        case FileStatus.PathEmpty:
            return "the path is empty";
        case FileStatus.NotOpened:
            return "the file cannot be opened";
        case FileStatus.Failed:
            return "reading, writing or closing failed on the way, or memory ran out";
        default:
            return "unknown reason";
        }
    }
}

/// <summary>A text that its field in the library cannot hold.</summary>
public sealed class TextTooLongException : ArgumentException
{
    internal TextTooLongException(string field, int size, int limit)
        : base(field + ": takes " + size + " bytes, and the limit is " + limit + " (cut: true cuts it)")
    {
        Field = field;
        Size = size;
        Limit = limit;
    }

    /// <summary>Which field of what.</summary>
    public string Field { get; }

    /// <summary>Bytes of UTF-8.</summary>
    public int Size { get; }

    /// <summary>Bytes of UTF-8.</summary>
    public int Limit { get; }
}

/// <summary>The library would give something that was read another identifier than it has.</summary>
public sealed class IdentifierException : InvalidOperationException
{
    internal IdentifierException(string message) : base(message)
    {
    }
}
}
