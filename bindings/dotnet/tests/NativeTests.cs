// The records and functions are those of the header of the library.
using System;
using System.Collections.Generic;
using System.IO;
using System.Linq;
using System.Reflection;
using System.Runtime.InteropServices;
using System.Text.RegularExpressions;
using NUnit.Framework;

namespace Tabrin.Tests
{
[TestFixture]
public class NativeTests
{
    private static string Header => File.ReadAllText(Path.Combine(Files.Tree, "include", "tabrin.h"));

    [Test]
    public void RuntimeLaysRecordsOutAsDocumented()
    {
        Assert.That(Native.CheckLayouts, Throws.Nothing);
    }

    [TestCase("CanErrorData", 264, 3)]
    [TestCase("DatabaseInfo", 8, 2)]
    [TestCase("CanMessageData", 640, 9)]
    [TestCase("CanSignalData", 944, 19)]
    [TestCase("CanSignalEnumData", 260, 2)]
    public void OffsetsAndSizeAreThoseOfTheHeader(string name, int size, int fields)
    {
        Type record = typeof(Native).Assembly.GetType("Tabrin." + name, true);
        Match found = Regex.Match(
            Header, @"\((\d+) bytes\)[^/]*\*/\s*typedef struct " + name + @" \{\n(.*?)\n\} " + name,
            RegexOptions.Singleline);
        Assert.That(found.Success);
        Assert.That(found.Groups[1].Value, Is.EqualTo(size.ToString()));
        Assert.That(Marshal.SizeOf(record), Is.EqualTo(size));
        Dictionary<string, int> documented = Documented(found.Groups[2].Value);
        Assert.That(documented.Count, Is.EqualTo(fields));
        foreach (FieldInfo field in record.GetFields())
        {
            string inHeader = char.ToLowerInvariant(field.Name[0]) + field.Name.Substring(1);
            Assert.That(documented.ContainsKey(inHeader), field.Name);
            Assert.That(Marshal.OffsetOf(record, field.Name).ToInt32(), Is.EqualTo(documented[inHeader]), field.Name);
        }
        Assert.That(record.GetFields().Length, Is.EqualTo(fields));
    }

    [Test]
    public void EveryFunctionOfTheHeaderIsDeclared()
    {
        string[] inHeader = Regex.Matches(Header, @"^TABRIN_API \w+ (\w+)\(", RegexOptions.Multiline)
                                .Cast<Match>()
                                .Select(match => match.Groups[1].Value)
                                .ToArray();
        string[] declared = typeof(Native)
                                .GetMethods(BindingFlags.Static | BindingFlags.Public)
                                .Where(method => method.Attributes.HasFlag(MethodAttributes.PinvokeImpl))
                                .Select(method => method.Name)
                                .ToArray();
        Assert.That(inHeader.Length, Is.EqualTo(17));
        Assert.That(declared, Is.EquivalentTo(inHeader));
    }

    // Name without the reserved fields, which are not declared here, and offset.
    private static Dictionary<string, int> Documented(string body)
    {
        return Regex.Matches(body, @"^    \w+ (\w+)(?:\[\d+\])?; +/\* +(\d+)  ", RegexOptions.Multiline)
            .Cast<Match>()
            .Where(match => !match.Groups[1].Value.StartsWith("reserved"))
            .ToDictionary(match => match.Groups[1].Value, match => int.Parse(match.Groups[2].Value));
    }
}
}
