// What other processes do: the examples, and the search for the library, of which a process loads only one.
using System.Collections.Generic;
using System.IO;
using System.Linq;
using NUnit.Framework;

namespace Tabrin.Tests
{
[TestFixture]
public class ProgramTests : InFolder
{
    private const string LibraryName = "libtabrin64.so";

    private const string Fault =
        "left out: line 48: SignalScale: SG_ RequestedPage : 8|8@1+ 1,0 [0|2] \"\" EngineControl\n";

    private static readonly string[] Table = {
        "id        message             signal              bits   factor  offset  unit",
        "100       EngineStatus        EngineSpeed         0|16   0.25    0       rpm",
        "100       EngineStatus        EngineTorque        16|12  0.5     0       Nm",
        "100       EngineStatus        ThrottlePosition    28|10  0.1     0       %",
        "100       EngineStatus        EngineState         38|3   1       0",
        "100       EngineStatus        OilPressureLow      41|1   1       0",
        "110       EngineTemperatures  CoolantTemperature  7|8    1       -40     °C",
        "110       EngineTemperatures  OilTemperature      15|8   1       -40     °C",
        "110       EngineTemperatures  IntakeTemperature   23|8   1       -40     °C",
        "110       EngineTemperatures  ExhaustTemperature  31|16  0.1     -40     °C",
        "200       GearStatus          Gear                0|4    1       0",
        "200       GearStatus          GearLever           4|3    1       0",
        "200       GearStatus          ClutchSlip          8|16   0.125   0       rpm",
        "18fef100  FuelConsumption     FuelRate            0|32   1       0       l/h",
        "18fef100  FuelConsumption     FuelUsed            32|32  0.001   0       l",
        "700       EngineDetails       Page                0|8    1       0",
        "700       EngineDetails       RunTime             8|32   1       0       s",
        "700       EngineDetails       StartCount          40|16  1       0",
        "700       EngineDetails       KnockLevel          8|8    0.5     0       dB",
        "700       EngineDetails       BoostPressure       8|12   0.002   0       bar",
        "700       EngineDetails       BatteryVoltage      24|10  0.02    0       V",
        "600       DashboardRequest    DimmingLevel        0|7    1       0       %",
    };

    private static readonly string[] Weather = {
        "BU_ :  Roof Logger Kestrune Display",
        "",
        "BO_ 288 Weather: 8 Roof",
        " SG_ Temperature : 0|12@1- (0.1,0) [-60|60] \"_C\" Kestrune",
        " SG_ Sky : 12|2@1+ (1,0) [0|3] \"\" Display,Logger",
        "",
        "BO_ 2566848513 Wind: 8 Roof",
        " SG_ Page M : 0|8@1+ (1,0) [0|1] \"\" Kestrune",
        " SG_ Speed m0 : 8|32@1- (1,0) [0|0] \"m/s\" Kestrune",
        " SG_ Direction_of_wind m1 : 8|9@1+ (1,0) [0|359] \"\" Kestrune",
        "",
        "CM_ BO_ 288 \"Once a second\";",
        "BA_DEF_ \"BusType\" STRING ;",
        "BA_DEF_ SG_ \"Kestrune_Sig_Name\" STRING ;",
        "BA_DEF_DEF_ \"BusType\" \"CAN FD\";",
        "BA_DEF_DEF_ \"Kestrune_Sig_Name\" \"\";",
        "BA_ \"Kestrune_Sig_Name\" SG_ 2566848513 Direction_of_wind \"Direction of wind\";",
        "VAL_ 288 Sky 0 \"clear\" 1 \"cloudy\" 3 \"no idea\";",
        "SIG_VALTYPE_ 2566848513 Speed : 1;",
        "",
    };

    private static string Built => Path.GetDirectoryName(typeof(Database).Assembly.Location);

    private static string LibraryFile => Variable.Get("TABRIN_LIBRARY");

    private static string OtherVersion => Variable.Get("TABRIN_OTHER_VERSION_LIBRARY");

    private Run Example(string name, params string[] arguments)
    {
        var variables = new Dictionary<string, string> { { "TABRIN_LIBRARY", LibraryFile } };
        return Run.Program(Path.Combine(Built, name + ".exe"), Folder, arguments, variables);
    }

    // The programs lie in a folder of their own, so that nothing is beside them but what the test puts there.
    private Run Probe(string argument = null, IDictionary<string, string> variables = null)
    {
        foreach (string name in new[] { "Probe.exe", "Tabrin.dll" })
        {
            File.Copy(Path.Combine(Built, name), InIt(name));
        }
        return Run.Program(InIt("Probe.exe"), Folder, argument == null ? new string[0] : new[] { argument }, variables);
    }

    private string PutLibrary(string library, params string[] folder)
    {
        Directory.CreateDirectory(InIt(folder));
        string path = InIt(folder.Concat(new[] { LibraryName }).ToArray());
        File.Copy(library, path);
        return path;
    }

    // Another name for the library in the search path of the system: one may be installed there, and be found.
    private string SearchFor(string name)
    {
        string map = "<configuration><dllmap dll=\"tabrin64\" target=\"" + name + "\"/></configuration>";
        Files.Write(InIt("Tabrin.dll.config"), map);
        return name;
    }

    private Run ProbeSystem(string library)
    {
        Directory.CreateDirectory(InIt("system"));
        File.Copy(library, InIt("system", SearchFor("libtabrin64_elsewhere.so")));
        return Probe(null, new Dictionary<string, string> { { "LD_LIBRARY_PATH", InIt("system") } });
    }

    [Test]
    public void ListSignalsPrintsItsTable()
    {
        Run run = Example("ListSignals", Files.Sample);
        Assert.That(run.Output, Is.EqualTo(string.Join("\n", Table) + "\n" + Fault));
        Assert.That(run.Code, Is.EqualTo(0));
    }

    [TestCase("file", "BO_ 256 EngineStatus: 8 EngineControl")]
    [TestCase("id", "BO_ 2566844672 FuelConsumption: 8 EngineControl")]
    [TestCase("name", "BO_ 1536 DashboardRequest: 2 Dashboard")]
    public void ConvertFileWritesInTheOrderAskedFor(string order, string first)
    {
        Run run = Example("ConvertFile", Files.Sample, "out.dbc", order);
        Assert.That(run.Output, Is.EqualTo(Fault + "out.dbc is written\n"));
        Assert.That(run.Code, Is.EqualTo(0));
        Assert.That(Files.Lines(InIt("out.dbc")).First(line => line.StartsWith("BO_ ")), Is.EqualTo(first));
    }

    [Test]
    public void BuildDatabaseWritesItsFile()
    {
        Run run = Example("BuildDatabase", "weather.dbc");
        Assert.That(run.Output, Is.EqualTo("weather.dbc: 2 messages\n"));
        Assert.That(run.Code, Is.EqualTo(0));
        Assert.That(Files.Lines(InIt("weather.dbc")).SkipWhile(line => !line.StartsWith("BU_ :")), Is.EqualTo(Weather));
    }

    [TestCase("ListSignals")]
    [TestCase("ConvertFile")]
    [TestCase("BuildDatabase")]
    public void ExampleCalledWronglyTellsItsUsage(string name)
    {
        Run run = Example(name);
        Assert.That(run.Code, Is.EqualTo(2));
        Assert.That(run.Complaint, Is.StringStarting("usage: " + name));
    }

    [TestCase("ListSignals", "missing.dbc")]
    [TestCase("ConvertFile", "missing.dbc", "out.dbc")]
    [TestCase("BuildDatabase", "missing/out.dbc")]
    public void ExampleThatFailsTellsWhy(string name, params string[] arguments)
    {
        Run run = Example(name, arguments);
        Assert.That(run.Code, Is.EqualTo(1));
        Assert.That(run.Complaint, Is.EqualTo(arguments[0] + ": the file cannot be opened (status 6)\n"));
    }

    [Test]
    public void LibraryNamedByTheEnvironmentIsTaken()
    {
        PutLibrary(OtherVersion);
        string named = LibraryFile;
        Run run = Probe(null, new Dictionary<string, string> { { "TABRIN_LIBRARY", OtherVersion } });
        Assert.That(run.Output, Is.StringStarting(OtherVersion + " is version 1.30"));
        File.Delete(InIt(LibraryName));
        run = Run.Program(
            InIt("Probe.exe"), Folder, new string[0], new Dictionary<string, string> { { "TABRIN_LIBRARY", named } });
        Assert.That(run.Output, Is.EqualTo(named + "\n"));
    }

    [Test]
    public void LibraryBesideTheAssemblyIsTaken()
    {
        string beside = PutLibrary(LibraryFile);
        Assert.That(Probe().Output, Is.EqualTo(beside + "\n"));
    }

    [Test]
    public void LibraryInTheFolderOfARuntimeIsTaken()
    {
        string below = PutLibrary(LibraryFile, "runtimes", "linux-x64", "native");
        Assert.That(Probe().Output, Is.EqualTo(below + "\n"));
    }

    [Test]
    public void LibraryInTheSearchPathOfTheSystemIsTaken()
    {
        Assert.That(ProbeSystem(LibraryFile).Output, Is.EqualTo(LibraryName + "\n"));
    }

    [Test]
    public void LibraryOfAnExplicitPathIsTaken()
    {
        string chosen = PutLibrary(LibraryFile, "chosen");
        var variables = new Dictionary<string, string> { { "TABRIN_LIBRARY", "missing.so" } };
        Assert.That(Probe(chosen, variables).Output, Is.EqualTo(chosen + "\n"));
    }

    [Test]
    public void LibraryOfAnExplicitPathIsTakenInsteadOfTheOneBesideTheAssembly()
    {
        PutLibrary(LibraryFile);
        string chosen = PutLibrary(LibraryFile, "chosen");
        Assert.That(Probe(chosen).Output, Is.EqualTo(chosen + "\n"));
    }

    // This process has its library. A runtime that took one where another was asked for must not go unnoticed.
    [Test]
    public void LibraryThatTheRuntimeDoesNotTakeIsRefused()
    {
        Library.Load();
        string other = PutLibrary(LibraryFile);
        System.IntPtr handle = Library.SystemLoader.Load(other);
        try
        {
            var error = Assert.Throws<TabrinLibraryException>(() => Library.CheckBinding(handle, other));
            Assert.That(
                error.Message, Is.StringStarting(other + " cannot be used: the runtime prefers another library"));
        }
        finally
        {
            Library.SystemLoader.Unload(handle);
        }
    }

    [Test]
    public void MissingLibraryIsToldWithAllPlaces()
    {
        SearchFor("libtabrin64_nowhere.so");
        Run run = Probe();
        Assert.That(run.Code, Is.EqualTo(1));
        Assert.That(
            run.Output.Split('\n'), Is.EqualTo(new[] {
                "the Tabrin library was not found. Looked at:",
                "  the environment variable TABRIN_LIBRARY: not set",
                "  " + InIt(LibraryName) + ": no such file",
                "  " + InIt("runtimes", "linux-x64", "native", LibraryName) + ": no such file",
                "  the system's search path (with LD_LIBRARY_PATH)",
                "",
            }));
    }

    [Test]
    public void MissingFileIsNotPassedOver()
    {
        PutLibrary(LibraryFile);
        string missing = InIt("missing.so");
        Assert.That(Probe(missing).Output, Is.EqualTo(missing + " cannot be loaded: no such file\n"));
    }

    [Test]
    public void FileThatIsNoLibraryIsRefused()
    {
        Files.Write(InIt("text.so"), "text");
        Assert.That(Probe(InIt("text.so")).Output, Is.StringStarting(InIt("text.so") + " cannot be loaded: "));
    }

    [Test]
    public void LibraryOfAnotherVersionIsRefused()
    {
        string beside = PutLibrary(OtherVersion);
        Run run = Probe();
        Assert.That(run.Code, Is.EqualTo(1));
        Assert.That(
            run.Output, Is.EqualTo(beside + " is version 1.30 of the Tabrin library; this assembly needs 1.31\n"));
    }

    [Test]
    public void LibraryOfAnotherVersionInTheSearchPathIsRefused()
    {
        Assert.That(
            ProbeSystem(OtherVersion).Output,
            Is.EqualTo(LibraryName + " is version 1.30 of the Tabrin library; this assembly needs 1.31\n"));
    }

    [Test]
    public void SecondLibraryIsRefused()
    {
        string before = Library.Load();
        Assert.That(before, Is.EqualTo(LibraryFile));
        Assert.That(Library.Load(before), Is.EqualTo(before));
        string other = PutLibrary(LibraryFile);
        var error = Assert.Throws<TabrinLibraryException>(() => Library.Load(other));
        Assert.That(error.Message, Is.EqualTo(before + " is in use already, so " + other + " cannot be loaded"));
        Assert.That(Database.Read(Files.Sample).Count, Is.EqualTo(6));
    }
}
}
