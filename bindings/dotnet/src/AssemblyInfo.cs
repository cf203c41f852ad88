using System.Reflection;
using System.Runtime.CompilerServices;

[assembly:AssemblyTitle("Tabrin")]
[assembly:AssemblyDescription("CAN bus databases in the DBC text format, read and written by the Tabrin library")]
[assembly:AssemblyVersion("1.31.0.0")]
[assembly:InternalsVisibleTo("Tabrin.Tests")]
