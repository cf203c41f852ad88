"""The examples do what they say. What is expected of them is written by hand."""

from __future__ import annotations

import os
from pathlib import Path

import pytest
from conftest import BINDING, SAMPLE, Run

TABLE = """\
id        message             signal              bits   factor  offset  unit
100       EngineStatus        EngineSpeed         0|16   0.25    0       rpm
100       EngineStatus        EngineTorque        16|12  0.5     0       Nm
100       EngineStatus        ThrottlePosition    28|10  0.1     0       %
100       EngineStatus        EngineState         38|3   1       0
100       EngineStatus        OilPressureLow      41|1   1       0
110       EngineTemperatures  CoolantTemperature  7|8    1       -40     °C
110       EngineTemperatures  OilTemperature      15|8   1       -40     °C
110       EngineTemperatures  IntakeTemperature   23|8   1       -40     °C
110       EngineTemperatures  ExhaustTemperature  31|16  0.1     -40     °C
200       GearStatus          Gear                0|4    1       0
200       GearStatus          GearLever           4|3    1       0
200       GearStatus          ClutchSlip          8|16   0.125   0       rpm
18fef100  FuelConsumption     FuelRate            0|32   1       0       l/h
18fef100  FuelConsumption     FuelUsed            32|32  0.001   0       l
700       EngineDetails       Page                0|8    1       0
700       EngineDetails       RunTime             8|32   1       0       s
700       EngineDetails       StartCount          40|16  1       0
700       EngineDetails       KnockLevel          8|8    0.5     0       dB
700       EngineDetails       BoostPressure       8|12   0.002   0       bar
700       EngineDetails       BatteryVoltage      24|10  0.02    0       V
600       DashboardRequest    DimmingLevel        0|7    1       0       %
left out: line 48: signal scale: SG_ RequestedPage : 8|8@1+ 1,0 [0|2] "" EngineControl
"""

WEATHER = """\
BU_ :  Roof Logger Kestrune Display

BO_ 288 Weather: 8 Roof
 SG_ Temperature : 0|12@1- (0.1,0) [-60|60] "_C" Kestrune
 SG_ Sky : 12|2@1+ (1,0) [0|3] "" Display,Logger

BO_ 2566848513 Wind: 8 Roof
 SG_ Page M : 0|8@1+ (1,0) [0|1] "" Kestrune
 SG_ Speed m0 : 8|32@1- (1,0) [0|0] "m/s" Kestrune
 SG_ Direction_of_wind m1 : 8|9@1+ (1,0) [0|359] "" Kestrune

CM_ BO_ 288 "Once a second";
BA_DEF_ "BusType" STRING ;
BA_DEF_ SG_ "Kestrune_Sig_Name" STRING ;
BA_DEF_DEF_ "BusType" "CAN FD";
BA_DEF_DEF_ "Kestrune_Sig_Name" "";
BA_ "Kestrune_Sig_Name" SG_ 2566848513 Direction_of_wind "Direction of wind";
VAL_ 288 Sky 0 "clear" 1 "cloudy" 3 "no idea";
SIG_VALTYPE_ 2566848513 Speed : 1;
"""


def example(run_python: Run, name: str, *arguments: str) -> tuple[int, str, str]:
    result = run_python(
        [str(BINDING / "examples" / name), *arguments], {"TABRIN_LIBRARY": os.environ["TABRIN_LIBRARY"]}
    )
    return result.returncode, result.stdout, result.stderr


def test_list_signals(run_python: Run) -> None:
    assert example(run_python, "list_signals.py", str(SAMPLE)) == (0, TABLE, "")


def test_build_database(run_python: Run, tmp_path: Path) -> None:
    assert example(run_python, "build_database.py", "weather.dbc") == (0, "weather.dbc: 2 messages\n", "")
    text = (tmp_path / "weather.dbc").read_bytes().decode().replace("\r\n", "\n")
    assert text[text.index("BU_ :") :] == WEATHER


@pytest.mark.parametrize(
    ("order", "first"),
    [
        ((), "BO_ 256 EngineStatus: 8 EngineControl"),
        (("file",), "BO_ 256 EngineStatus: 8 EngineControl"),
        (("id",), "BO_ 2566844672 FuelConsumption: 8 EngineControl"),
        (("name",), "BO_ 1536 DashboardRequest: 2 Dashboard"),
    ],
)
def test_convert(run_python: Run, tmp_path: Path, order: tuple[str, ...], first: str) -> None:
    expected = (
        'left out: line 48: signal scale: SG_ RequestedPage : 8|8@1+ 1,0 [0|2] "" EngineControl\nout.dbc is written\n'
    )
    assert example(run_python, "convert.py", str(SAMPLE), "out.dbc", *order) == (0, expected, "")
    lines = (tmp_path / "out.dbc").read_text().split("\n")
    assert next(line for line in lines if line.startswith("BO_ ")) == first


@pytest.mark.parametrize("name", ["list_signals.py", "convert.py", "build_database.py"])
def test_called_wrongly(run_python: Run, name: str) -> None:
    code, output, complaint = example(run_python, name)
    assert (code, output) == (2, "")
    assert name in complaint


@pytest.mark.parametrize(
    ("name", "arguments", "complaint"),
    [
        ("list_signals.py", ("missing.dbc",), "'missing.dbc': the file cannot be opened (status 6)\n"),
        ("convert.py", ("missing.dbc", "out.dbc"), "'missing.dbc': the file cannot be opened (status 6)\n"),
        ("convert.py", (str(SAMPLE), "missing/out.dbc"), "'missing/out.dbc': the file cannot be opened (status 6)\n"),
        ("build_database.py", ("missing/out.dbc",), "'missing/out.dbc': the file cannot be opened (status 6)\n"),
    ],
)
def test_failure_is_told(run_python: Run, name: str, arguments: tuple[str, ...], complaint: str) -> None:
    assert example(run_python, name, *arguments) == (1, "", complaint)
