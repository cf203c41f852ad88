// Finding and loading the shared library. The runtimes differ in how one tells them where a library is, and the .NET
// Framework knows no way at all. What works with all of them: load the file by its path, after which the loader of the
// system takes it for the name in DllImport. Runtimes that look elsewhere before they ask the loader are found out.
using System;
using System.Collections.Generic;
using System.Globalization;
using System.IO;
using System.Runtime.InteropServices;

namespace Tabrin
{
/// <summary>The shared library that this process uses.</summary>
public static class Library
{
    /// <summary>The version of the library that this assembly is for.</summary>
    public const string Version = "1.31";

    /// <summary>Names the file of the library.</summary>
    public const string EnvironmentVariable = "TABRIN_LIBRARY";

    // One operation on the library's one database at a time.
    internal static readonly object Gate = new object();

    private static string loaded;

    private static bool IsWindows => System.IO.Path.DirectorySeparatorChar == '\\';

    private static string FileName => IsWindows ? "tabrin64.dll" : "libtabrin64.so";

    /// <summary>
    /// Loads the library and says which it is. Only needed to choose one: otherwise the first operation loads it. It is
    /// looked for in this order: the file that the environment variable TABRIN_LIBRARY names; the folder of this
    /// assembly, and runtimes/(win|linux)-x64/native below it; the system's search path.
    /// </summary>
    /// <param name="path">The file of the library, or null to look for it.</param>
    /// <exception cref="TabrinLibraryException">There is none, or it is of another version, or another one is in use.
    /// </exception>
    public static string Load(string path = null)
    {
        lock (Gate)
        {
            if (loaded == null)
            {
                Native.CheckLayouts();
                loaded = path != null ? Open(path) : Find();
            }
            else if (path != null && !IsSameFile(path, loaded))
            {
                throw new TabrinLibraryException(loaded + " is in use already, so " + path + " cannot be loaded");
            }
            return loaded;
        }
    }

    private static bool IsSameFile(string path, string other)
    {
        return System.IO.Path.GetFullPath(path) == System.IO.Path.GetFullPath(other);
    }

    // Takes the first that is there. One that is there and does not fit is an error, and not passed over.
    private static string Find()
    {
        string chosen = Environment.GetEnvironmentVariable(EnvironmentVariable);
        if (!string.IsNullOrEmpty(chosen))
        {
            return Open(chosen);
        }
        var lookedAt = new List<string> { "the environment variable " + EnvironmentVariable + ": not set" };
        foreach (string candidate in Candidates())
        {
            if (File.Exists(candidate))
            {
                return Open(candidate);
            }
            lookedAt.Add(candidate + ": no such file");
        }
        lookedAt.Add("the system's search path (with " + (IsWindows ? "PATH" : "LD_LIBRARY_PATH") + ")");
        return FindInSystem(lookedAt);
    }

    private static IEnumerable<string> Candidates()
    {
        string location = typeof(Library).Assembly.Location;
        string folder = string.IsNullOrEmpty(location)
                            ? AppDomain.CurrentDomain.BaseDirectory // an assembly inside of a program in one file
                            : System.IO.Path.GetDirectoryName(location);
        yield return System.IO.Path.Combine(folder, FileName);
        string runtime = IsWindows ? "win-x64" : "linux-x64";
        yield return System.IO.Path.Combine(folder, "runtimes", runtime, "native", FileName);
    }

    private static string FindInSystem(List<string> lookedAt)
    {
        try
        {
            CheckVersion(FileName, Native.TabrinGetLibraryVersion());
            return FileName;
        }
        catch (DllNotFoundException error)
        {
            throw new TabrinLibraryException(
                "the Tabrin library was not found. Looked at:\n  " + string.Join("\n  ", lookedAt), error);
        }
        catch (EntryPointNotFoundException error)
        {
            throw NotTabrin(FileName, error);
        }
        catch (BadImageFormatException error)
        {
            throw new TabrinLibraryException(FileName + " is not for this system: " + error.Message, error);
        }
    }

    // Asks the file itself before anything is bound to it, so that a wrong one does not stay for good.
    private static string Open(string path)
    {
        string full = System.IO.Path.GetFullPath(path);
        if (!File.Exists(full))
        {
            throw new TabrinLibraryException(full + " cannot be loaded: no such file");
        }
        if (IsWindows && !System.IO.Path.GetFileName(full).Equals(FileName, StringComparison.OrdinalIgnoreCase))
        {
            throw new TabrinLibraryException(full + " cannot be loaded: on Windows it has to be named " + FileName);
        }
        IntPtr handle = SystemLoader.Load(full);
        try
        {
            CheckVersion(full, SystemLoader.Function<GetVersion>(handle, full, "TabrinGetLibraryVersion")());
        }
        catch (TabrinLibraryException)
        {
            SystemLoader.Unload(handle);
            throw;
        }
        SystemLoader.TellMono(full);
        CheckBinding(handle, full);
        return full;
    }

    private static void CheckVersion(string path, float number)
    {
        string version = number.ToString("F2", CultureInfo.InvariantCulture);
        if (version != Version)
        {
            throw new TabrinLibraryException(
                path + " is version " + version + " of the Tabrin library; this assembly needs " + Version);
        }
    }

    // All runtimes look beside the assembly first, and take what is there, whatever is loaded already. Both would then
    // have a database of their own, which tells them apart.
    internal static unsafe void CheckBinding(IntPtr handle, string path)
    {
        var mark = new DatabaseInfo { ProtocolType = 0x54616272, CanFd = 0x696E3634 };
        var none = default(DatabaseInfo);
        DatabaseInfo found;
        var size = (UIntPtr)sizeof(DatabaseInfo);
        SetInfo set = SystemLoader.Function<SetInfo>(handle, path, "TabrinSetDatabaseInfo");
        set(&mark, size);
        try
        {
            Native.TabrinGetDatabaseInfo(&found, size);
        }
        catch (DllNotFoundException error)
        {
            throw new TabrinLibraryException(path + " is loaded, but the runtime does not take it", error);
        }
        finally
        {
            set(&none, size);
        }
        if (found.ProtocolType != mark.ProtocolType || found.CanFd != mark.CanFd)
        {
            throw new TabrinLibraryException(
                path + " cannot be used: the runtime prefers another library, probably one beside the assembly");
        }
    }

    internal static TabrinLibraryException NotTabrin(string path, Exception inner)
    {
        return new TabrinLibraryException(path + " is not the Tabrin library: " + inner.Message, inner);
    }

    [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
    private delegate float GetVersion();

    [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
    private unsafe delegate byte SetInfo(DatabaseInfo* source, UIntPtr size);

    internal static class SystemLoader
    {
        private const int Now = 2;
        private const int Global = 0x100;

        public static IntPtr Load(string path)
        {
            IntPtr handle = IsWindows ? LoadLibraryW(path) : dlopen(Utf8(path), Now | Global);
            if (handle == IntPtr.Zero)
            {
                string reason = IsWindows ? "error " + Marshal.GetLastWin32Error() : Marshal.PtrToStringAnsi(dlerror());
                throw new TabrinLibraryException(path + " cannot be loaded: " + reason);
            }
            return handle;
        }

        public static T Function<T>(IntPtr handle, string path, string name)
        {
            IntPtr function = IsWindows ? GetProcAddress(handle, name) : dlsym(handle, name);
            if (function == IntPtr.Zero)
            {
                throw new TabrinLibraryException(path + " is not the Tabrin library: it has no function " + name);
            }
            return (T)(object)Marshal.GetDelegateForFunctionPointer(function, typeof(T));
        }

        public static void Unload(IntPtr handle)
        {
            if (IsWindows)
            {
                FreeLibrary(handle);
            }
            else
            {
                dlclose(handle);
            }
        }

        // Mono looks in /usr/lib too before it asks the loader, and so would prefer an installed library to any chosen
        // one. It alone can be told.
        public static void TellMono(string path)
        {
            if (Type.GetType("Mono.Runtime") == null)
            {
                return;
            }
            try
            {
                mono_dllmap_insert(IntPtr.Zero, Utf8("tabrin64"), IntPtr.Zero, Utf8(path), IntPtr.Zero);
            }
            catch (EntryPointNotFoundException)
            {
                // One without this function: what it takes is checked behind this.
            }
        }

        private static byte[] Utf8(string text)
        {
            return System.Text.Encoding.UTF8.GetBytes(text + "\0");
        }

        [DllImport("kernel32", CharSet = CharSet.Unicode, ExactSpelling = true, SetLastError = true)]
        private static extern IntPtr LoadLibraryW(string path);

        [DllImport("kernel32", CharSet = CharSet.Ansi, ExactSpelling = true)]
        private static extern IntPtr GetProcAddress(IntPtr module, string name);

        [DllImport("kernel32", ExactSpelling = true)]
        private static extern bool FreeLibrary(IntPtr module);

        [DllImport("__Internal")]
        private static extern void mono_dllmap_insert(
            IntPtr assembly, byte[] library, IntPtr function, byte[] newLibrary, IntPtr newFunction);

        // Named in full: without its number it is part of the files for developers.
        [DllImport("libdl.so.2")]
        private static extern IntPtr dlopen(byte[] path, int flags);

        [DllImport("libdl.so.2", CharSet = CharSet.Ansi)]
        private static extern IntPtr dlsym(IntPtr handle, string name);

        [DllImport("libdl.so.2")]
        private static extern IntPtr dlerror();

        [DllImport("libdl.so.2")]
        private static extern int dlclose(IntPtr handle);
    }
}
}
