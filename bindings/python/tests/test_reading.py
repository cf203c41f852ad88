"""What a file says is what the database has. The expected values are read off examples/engine.dbc by eye."""

from __future__ import annotations

import copy
import dataclasses
import pickle
from pathlib import Path

import pytest
from conftest import SAMPLE

import tabrin
from tabrin import ByteOrder, FaultCode, MultiplexKind, ProtocolType, ValueDescription, ValueType


@pytest.fixture(scope="module")
def engine() -> tabrin.Database:
    return tabrin.read(SAMPLE)


def test_messages_are_those_of_the_file(engine: tabrin.Database) -> None:
    assert [
        (message.id, message.name, message.dlc, message.transmitter, len(message.signals)) for message in engine
    ] == [
        (256, "EngineStatus", 8, "EngineControl", 5),
        (272, "EngineTemperatures", 6, "EngineControl", 4),
        (512, "GearStatus", 4, "GearControl", 3),
        (2566844672, "FuelConsumption", 8, "EngineControl", 2),
        (1792, "EngineDetails", 8, "EngineControl", 6),
        (1536, "DashboardRequest", 2, "Dashboard", 1),
    ]


def test_message_has_what_attributes_and_comments_say(engine: tabrin.Database) -> None:
    message = engine[0]
    assert message.comment == "What everybody needs to know about the engine"
    assert message.send_type == "cyclic"
    assert message.cycle_time == 10
    assert message.identifier_name == "EngineStatus"


def test_frame_id_has_no_flag(engine: tabrin.Database) -> None:
    fuel = engine.by_name("FuelConsumption")
    assert (fuel.frame_id, fuel.is_extended) == (0x18FEF100, True)
    assert (engine[0].frame_id, engine[0].is_extended) == (0x100, False)


def test_signal_has_what_its_statement_says(engine: tabrin.Database) -> None:
    signal = engine.by_name("EngineTemperatures").by_name("ExhaustTemperature")
    assert (signal.start_bit, signal.length) == (31, 16)
    assert signal.byte_order is ByteOrder.BIG_ENDIAN
    assert signal.value_type is ValueType.UNSIGNED
    assert (signal.factor, signal.offset, signal.minimum, signal.maximum) == (0.1, -40.0, -40.0, 1200.0)
    assert (signal.unit, signal.unit_ascii) == ("°C", "_C")
    assert signal.receivers == ("Diagnostics",)
    assert signal.multiplex_kind is MultiplexKind.NONE


def test_signal_has_what_later_statements_say(engine: tabrin.Database) -> None:
    assert engine[0].signals[2].comment == r"0 % is closed, 100 % is \"wide open\""
    assert engine.by_name("GearStatus").by_name("Gear").comment == "The gear engaged:\n-1 is reverse, 0 is neutral"
    assert engine.by_name("EngineTemperatures").by_name("CoolantTemperature").start_value == 60
    assert engine.by_name("FuelConsumption").by_name("FuelRate").value_type is ValueType.FLOAT
    assert engine[0].by_name("EngineSpeed").receivers == ("GearControl", "Dashboard")


def test_start_and_inactive_values_are_told_apart(tmp_path: Path) -> None:
    path = tmp_path / "values.dbc"
    path.write_text(
        'BO_ 1 A: 8 N\n SG_ S : 0|8@1- (1,0) [0|1] "" N\n'
        'BA_DEF_ SG_ "GenSigStartValue" INT -10 10;\nBA_ "GenSigStartValue" SG_ 1 S 7;\n'
        'BA_DEF_ SG_ "GenSigInactiveValue" INT -10 10;\nBA_ "GenSigInactiveValue" SG_ 1 S 9;\n'
    )
    signal = tabrin.read(path)[0].signals[0]
    assert (signal.start_value, signal.inactive_value) == (7, 9)


def test_multiplexing_is_read(engine: tabrin.Database) -> None:
    assert [(signal.multiplex_kind, signal.multiplex_value) for signal in engine.by_id(1792)] == [
        (MultiplexKind.MULTIPLEXOR, 0),
        (MultiplexKind.MULTIPLEXED, 0),
        (MultiplexKind.MULTIPLEXED, 0),
        (MultiplexKind.MULTIPLEXED, 1),
        (MultiplexKind.MULTIPLEXED, 2),
        (MultiplexKind.MULTIPLEXED, 2),
    ]


def test_value_descriptions_are_in_order(engine: tabrin.Database) -> None:
    gear = engine.by_name("GearStatus").by_name("Gear")
    assert gear.value_descriptions == (ValueDescription(-1, "reverse"), ValueDescription(0, "neutral"))
    assert gear.describe(-1) == "reverse"
    assert gear.describe(5) is None


def test_faulty_statement_is_listed(engine: tabrin.Database) -> None:
    (fault,) = engine.errors
    assert (fault.code, fault.line) == (FaultCode.SIGNAL_SCALE, 48)
    assert fault.text.strip() == 'SG_ RequestedPage : 8|8@1+ 1,0 [0|2] "" EngineControl'
    assert str(fault).startswith("line 48: signal scale: SG_ RequestedPage")


def test_database_information_is_read(tmp_path: Path) -> None:
    path = tmp_path / "info.dbc"
    path.write_text(
        'BA_DEF_ "IsNMEA" INT 0 1;\nBA_DEF_DEF_ "IsNMEA" 1;\nBA_DEF_ "BusType" STRING ;\nBA_ "BusType" "CAN FD";\n'
    )
    database = tabrin.read(path)
    assert (database.protocol, database.can_fd, len(database)) == (ProtocolType.NMEA2000, True, 0)


def test_nothing_of_a_file_is_left_for_the_next(tmp_path: Path, small_file: Path) -> None:
    path = tmp_path / "fd.dbc"
    path.write_text('BA_DEF_ "BusType" STRING ;\nBA_ "BusType" "CAN FD";\n')
    assert tabrin.read(path).can_fd
    assert not tabrin.read(small_file).can_fd


def test_database_does_not_see_what_is_read_later(small_file: Path) -> None:
    first = tabrin.read(SAMPLE)
    before = copy.deepcopy(first)
    tabrin.read(small_file)
    assert first == before
    assert len(first) == 6


@pytest.mark.parametrize(
    ("comment", "expected"),
    [
        ("a" * 255, "a" * 255),
        ("a" * 300, "a" * 255),
        ("a" * 254 + "é", "a" * 254),
        ("a" * 253 + "€", "a" * 253),
    ],
    ids=["fits", "cut", "in front of two bytes", "in front of three bytes"],
)
def test_text_cut_by_the_library_is_handed_on(tmp_path: Path, comment: str, expected: str) -> None:
    path = tmp_path / "long.dbc"
    path.write_text(f'BO_ 1 A: 8 N\nCM_ BO_ 1 "{comment}";\n', encoding="utf-8")
    assert tabrin.read(path)[0].comment == expected


def test_long_name_and_identifier_are_told_apart(tmp_path: Path) -> None:
    path = tmp_path / "names.dbc"
    path.write_text(
        'BO_ 1 EngData: 8 N\n SG_ Spd : 0|8@1+ (1,0) [0|1] "" N\n'
        'BA_DEF_ BO_ "Kestrune_Msg_Name" STRING ;\nBA_ "Kestrune_Msg_Name" BO_ 1 "Engine data";\n'
        'BA_DEF_ SG_ "Kestrune_Sig_Name" STRING ;\nBA_ "Kestrune_Sig_Name" SG_ 1 Spd "Speed of it";\n'
    )
    database = tabrin.read(path)
    assert (database[0].name, database[0].identifier_name) == ("Engine data", "EngData")
    assert database.by_name("Engine data") is database.by_name("EngData")
    assert database[0].by_name("Spd") is database[0].by_name("Speed of it")
    assert (database[0].signals[0].name, database[0].signals[0].identifier_name) == ("Speed of it", "Spd")


def test_first_of_equal_messages_is_found(tmp_path: Path) -> None:
    path = tmp_path / "equal.dbc"
    path.write_text("BO_ 7 A: 1 N\nBO_ 7 B: 2 N\nBO_ 8 A: 3 N\n")
    database = tabrin.read(path)
    assert database.by_id(7) is database[0]
    assert database.by_name("A") is database[0]


def test_databases_and_messages_are_sequences(engine: tabrin.Database) -> None:
    assert len(engine) == 6
    assert list(engine) == list(engine.messages)
    assert engine[-1] is engine[5]
    assert list(engine[5]) == list(engine[5].signals)


def test_nothing_can_be_changed(engine: tabrin.Database) -> None:
    for value in (
        engine,
        engine[0],
        engine[0].signals[0],
        engine[0].signals[3].value_descriptions[0],
        engine.errors[0],
    ):
        for field in dataclasses.fields(value):
            with pytest.raises(dataclasses.FrozenInstanceError):
                setattr(value, field.name, None)


def test_databases_of_one_file_are_equal(engine: tabrin.Database) -> None:
    again = tabrin.read(SAMPLE)
    assert again == engine
    assert hash(again) == hash(engine)


def test_database_of_another_file_is_not_equal(engine: tabrin.Database, small_file: Path) -> None:
    assert tabrin.read(small_file) != engine


def test_database_can_be_pickled(engine: tabrin.Database) -> None:
    assert pickle.loads(pickle.dumps(engine)) == engine


def test_database_becomes_plain_dictionaries(engine: tabrin.Database) -> None:
    assert dataclasses.asdict(engine)["messages"][2]["signals"][0]["value_descriptions"][0] == {
        "value": -1,
        "text": "reverse",
    }


def test_what_was_read_passes_the_checks_of_what_is_built(engine: tabrin.Database) -> None:
    for message in engine:
        assert dataclasses.replace(message, signals=[dataclasses.replace(signal) for signal in message]) == message


def test_path_may_be_a_text(small_file: Path) -> None:
    assert tabrin.read(str(small_file)) == tabrin.read(small_file)


@pytest.mark.parametrize("name", ["missing.dbc", "no folder/a.dbc"])
def test_missing_file(tmp_path: Path, name: str) -> None:
    with pytest.raises(tabrin.FileError, match=r"cannot be opened \(status 6\)") as caught:
        tabrin.read(tmp_path / name)
    assert caught.value.status == tabrin.FileStatus.NOT_OPENED
    assert caught.value.path == str(tmp_path / name)
    assert isinstance(caught.value, OSError)


def test_folder_is_no_file(tmp_path: Path) -> None:
    with pytest.raises(tabrin.FileError):
        tabrin.read(tmp_path)
