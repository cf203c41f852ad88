// What the tests share.
using System;
using System.Collections.Generic;
using System.Diagnostics;
using System.IO;
using System.Text;
using NUnit.Framework;

namespace Tabrin.Tests
{
internal static class Variable
{
    public static string Get(string name)
    {
        string value = Environment.GetEnvironmentVariable(name);
        Assert.That(value, Is.Not.Null.And.Not.Empty, "the environment variable " + name);
        return value;
    }
}

internal static class Files
{
    public const string Small = "BO_ 1 Only: 8 Node\n SG_ One : 0|8@1+ (1,0) [0|255] \"\" Node\n";

    public static string Tree => Variable.Get("TABRIN_SOURCE_DIR");

    public static string Sample => Path.Combine(Tree, "examples", "engine.dbc");

    public static string[] Lines(string path)
    {
        return File.ReadAllText(path).Replace("\r\n", "\n").Split('\n');
    }

    public static void Write(string path, string text)
    {
        File.WriteAllText(path, text, new UTF8Encoding(false));
    }
}

/// <summary>A folder for one test, gone behind it.</summary>
public abstract class InFolder
{
    protected string Folder { get; private set; }

    [SetUp]
    public void MakeFolder()
    {
        Folder = Path.Combine(Path.GetTempPath(), "tabrin_" + Guid.NewGuid().ToString("N"));
        Directory.CreateDirectory(Folder);
    }

    [TearDown]
    public void RemoveFolder()
    {
        Directory.Delete(Folder, true);
    }

    protected string InIt(params string[] names)
    {
        string path = Folder;
        foreach (string name in names)
        {
            path = Path.Combine(path, name);
        }
        return path;
    }
}

/// <summary>Runs a program of this build in another process.</summary>
internal sealed class Run
{
    private Run(int code, string output, string complaint)
    {
        Code = code;
        Output = output;
        Complaint = complaint;
    }

    public int Code { get; }

    public string Output { get; }

    public string Complaint { get; }

    public static Run Program(
        string program, string folder, IEnumerable<string> arguments, IDictionary<string, string> variables = null)
    {
        var start = new ProcessStartInfo(Variable.Get("TABRIN_MONO")) {
            UseShellExecute = false,
            RedirectStandardOutput = true,
            RedirectStandardError = true,
            StandardOutputEncoding = Encoding.UTF8,
            StandardErrorEncoding = Encoding.UTF8,
            WorkingDirectory = folder,
            Arguments = Quoted(program) + " " +
                        string.Join(" ", Array.ConvertAll(new List<string>(arguments).ToArray(), Quoted)),
        };
        start.EnvironmentVariables.Remove("TABRIN_LIBRARY");
        foreach (KeyValuePair<string, string> variable in variables ?? new Dictionary<string, string>())
        {
            start.EnvironmentVariables[variable.Key] = variable.Value;
        }
        using (Process process = Process.Start(start))
        {
            string output = process.StandardOutput.ReadToEnd();
            string complaint = process.StandardError.ReadToEnd();
            process.WaitForExit();
            return new Run(process.ExitCode, output, complaint);
        }
    }

    private static string Quoted(string argument)
    {
        return "\"" + argument + "\"";
    }
}
}
