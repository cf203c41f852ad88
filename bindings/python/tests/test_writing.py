"""A database that is built reaches the file. The expected lines are written by hand."""

from __future__ import annotations

import dataclasses
from pathlib import Path

import pytest
from conftest import SAMPLE

import tabrin
from tabrin import _checks
from tabrin import ByteOrder, Message, MessageOrder, MultiplexKind, ProtocolType, Signal, ValueDescription, ValueType

BUILT = tabrin.Database(
    messages=(
        Message(
            5,
            "Second",
            8,
            transmitter="Node A",
            comment='say "hi"',
            signals=(
                Signal(
                    "Big",
                    7,
                    16,
                    byte_order=ByteOrder.BIG_ENDIAN,
                    value_type=ValueType.SIGNED,
                    factor=0.5,
                    offset=-1,
                    minimum=-10,
                    maximum=10,
                    unit="µs",
                    receivers=("X", "Y"),
                    comment="c",
                    value_descriptions=(ValueDescription(3, "three"), ValueDescription(-1, "minus")),
                ),
                Signal("Switch", 16, 8, multiplex_kind=MultiplexKind.MULTIPLEXOR),
                Signal(
                    "Real",
                    24,
                    32,
                    value_type=ValueType.FLOAT,
                    multiplex_kind=MultiplexKind.MULTIPLEXED,
                    multiplex_value=4,
                ),
            ),
        ),
        Message(0x80000009, "First", 2),
    ),
    protocol=ProtocolType.J1939,
    can_fd=True,
)

# From the message section to the end.
WRITTEN = """\
BO_ 5 Second: 8 Node_A
 SG_ Big : 7|16@0- (0.5,-1) [-10|10] "_s" X,Y
 SG_ Switch M : 16|8@1+ (1,0) [0|0] "" Kestrune
 SG_ Real m4 : 24|32@1- (1,0) [0|0] "" Kestrune

BO_ 2147483657 First: 2 Kestrune

CM_ BO_ 5 "say \\"hi\\"";
CM_ SG_ 5 Big "c";
BA_DEF_ "BusType" STRING ;
BA_DEF_ "J1939PGN" INT 0 1;
BA_DEF_DEF_ "BusType" "CAN FD";
BA_DEF_DEF_ "J1939PGN" 1;
VAL_ 5 Big -1 "minus" 3 "three";
SIG_VALTYPE_ 5 Real : 1;
"""


def text_of(path: Path) -> str:
    return path.read_bytes().decode().replace("\r\n", "\n")


def message_lines(path: Path) -> list[str]:
    return [line for line in text_of(path).split("\n") if line.startswith("BO_ ")]


def test_file_has_everything(tmp_path: Path) -> None:
    path = tmp_path / "built.dbc"
    BUILT.write(path)
    text = text_of(path)
    assert text[text.index("BO_ 5") :] == WRITTEN


def test_built_database_comes_back(tmp_path: Path) -> None:
    path = tmp_path / "built.dbc"
    BUILT.write(path)
    again = tabrin.read(path)
    # Of what was given, only this is not in the file: nodes become identifiers, units ASCII, quotes carry a backslash.
    big, switch, real = BUILT[0].signals
    big = dataclasses.replace(big, unit="_s")
    expected = dataclasses.replace(
        BUILT[0], transmitter="Node_A", comment=r"say \"hi\"", signals=(big, with_receiver(switch), with_receiver(real))
    )
    assert again == dataclasses.replace(
        BUILT, messages=(expected, dataclasses.replace(BUILT[1], transmitter="Kestrune"))
    )


def with_receiver(signal: Signal) -> Signal:
    return dataclasses.replace(signal, receivers=("Kestrune",))


@pytest.mark.parametrize(
    ("order", "expected"),
    [
        (MessageOrder.IDENTIFIER, ["BO_ 2147483657 First: 2 Kestrune", "BO_ 5 Second: 8 Node_A"]),
        (MessageOrder.NAME, ["BO_ 2147483657 First: 2 Kestrune", "BO_ 5 Second: 8 Node_A"]),
        (MessageOrder.DATABASE, ["BO_ 5 Second: 8 Node_A", "BO_ 2147483657 First: 2 Kestrune"]),
    ],
)
def test_messages_are_in_the_order_asked_for(tmp_path: Path, order: MessageOrder, expected: list[str]) -> None:
    path = tmp_path / "ordered.dbc"
    BUILT.write(path, order)
    assert message_lines(path) == expected


def test_orders_by_name_and_identifier_differ(tmp_path: Path) -> None:
    path = tmp_path / "ordered.dbc"
    database = tabrin.Database((Message(1, "B", 0), Message(3, "C", 0), Message(2, "A", 0)))
    database.write(path, MessageOrder.NAME)
    assert [line.split()[2] for line in message_lines(path)] == ["A:", "B:", "C:"]
    database.write(path, MessageOrder.IDENTIFIER)
    assert [line.split()[2] for line in message_lines(path)] == ["C:", "A:", "B:"]


def test_file_read_and_written_is_as_if_converted(tmp_path: Path) -> None:
    tabrin.read(SAMPLE).write(tmp_path / "written.dbc")
    tabrin.convert(SAMPLE, tmp_path / "converted.dbc")
    assert (tmp_path / "written.dbc").read_bytes() == (tmp_path / "converted.dbc").read_bytes()
    assert message_lines(tmp_path / "written.dbc")[0] == "BO_ 256 EngineStatus: 8 EngineControl"


def test_conversion_tells_what_was_faulty(tmp_path: Path) -> None:
    (fault,) = tabrin.convert(SAMPLE, tmp_path / "converted.dbc", MessageOrder.IDENTIFIER)
    assert fault.line == 48
    assert message_lines(tmp_path / "converted.dbc")[0] == "BO_ 2566844672 FuelConsumption: 8 EngineControl"


def test_conversion_onto_itself(small_file: Path) -> None:
    tabrin.convert(small_file, small_file)
    assert message_lines(small_file) == ["BO_ 1 Only: 8 Node"]


# --- Identifiers that the library would change ---------------------------------------------------------------------


@pytest.fixture
def renamed(tmp_path: Path) -> Path:
    path = tmp_path / "renamed.dbc"
    path.write_text(
        'BO_ 1 EngData: 8 N\n SG_ Spd : 0|8@1+ (1,0) [0|1] "" N\n'
        'BA_DEF_ SG_ "Kestrune_Sig_Name" STRING ;\nBA_ "Kestrune_Sig_Name" SG_ 1 Spd "Speed of it";\n'
    )
    return path


def test_other_identifier_is_refused(tmp_path: Path, renamed: Path) -> None:
    target = tmp_path / "out.dbc"
    with pytest.raises(
        tabrin.IdentifierError, match="signal 'Speed of it': was read as Spd and would be written as Speed_of_it"
    ):
        tabrin.read(renamed).write(target)
    assert not target.exists()


def test_other_identifier_can_be_allowed(tmp_path: Path, renamed: Path) -> None:
    target = tmp_path / "out.dbc"
    tabrin.read(renamed).write(target, rename=True)
    assert ' SG_ Speed_of_it : 0|8@1+ (1,0) [0|1] "" N\n' in text_of(target)


def test_conversion_keeps_identifiers(tmp_path: Path, renamed: Path) -> None:
    target = tmp_path / "out.dbc"
    tabrin.convert(renamed, target)
    assert ' SG_ Spd : 0|8@1+ (1,0) [0|1] "" N\n' in text_of(target)
    assert tabrin.read(target)[0].signals[0].name == "Speed of it"


def test_new_name_makes_a_new_identifier(tmp_path: Path) -> None:
    database = tabrin.read(SAMPLE)
    message = dataclasses.replace(database[5], name="Other")
    dataclasses.replace(database, messages=(message,)).write(tmp_path / "out.dbc")
    assert message_lines(tmp_path / "out.dbc") == ["BO_ 1536 Other: 2 Dashboard"]


# --- Texts that are too long ---------------------------------------------------------------------------------------


def message_with(**fields: object) -> tabrin.Database:
    return tabrin.Database((dataclasses.replace(Message(1, "M", 8), **fields),))


def signal_with(**fields: object) -> tabrin.Database:
    return message_with(signals=(dataclasses.replace(Signal("S", 0, 8), **fields),))


TOO_LONG = [
    (message_with(name="n" * 256), "name", 256, 255),
    (message_with(transmitter="t" * 33), "transmitter", 33, 32),
    (message_with(comment="c" * 256), "comment", 256, 255),
    (message_with(comment="é" * 128), "comment", 256, 255),
    (signal_with(name="n" * 256), "name", 256, 255),
    (signal_with(unit="u" * 33), "unit", 33, 32),
    (signal_with(comment="c" * 1000), "comment", 1000, 255),
    (signal_with(receivers=("r" * 33,)), r"receivers\[0\]", 33, 32),
    (signal_with(receivers=("r" * 31,) * 9), "receivers", 287, 255),
    (signal_with(value_descriptions=(ValueDescription(7, "v" * 256),)), "text of value 7", 256, 255),
]


@pytest.mark.parametrize(("database", "field", "size", "limit"), TOO_LONG)
def test_long_text_is_refused(tmp_path: Path, database: tabrin.Database, field: str, size: int, limit: int) -> None:
    path = tmp_path / "kept.dbc"
    path.write_text("as it was")
    with pytest.raises(
        tabrin.TextTooLongError, match=f"^message '.*, {field}: takes {size} bytes, and the limit is {limit}"
    ) as caught:
        database.write(path)
    assert (caught.value.size, caught.value.limit) == (size, limit)
    assert path.read_text() == "as it was"


@pytest.mark.parametrize(
    ("database", "expected"),
    [
        (message_with(name="n" * 300), 'BA_ "Kestrune_Msg_Name" BO_ 1 "' + "n" * 255 + '";'),
        (message_with(transmitter="t" * 31 + "é"), "BO_ 1 M: 8 " + "t" * 31),
        (message_with(comment="c" * 254 + "é"), 'CM_ BO_ 1 "' + "c" * 254 + '";'),
        (message_with(comment="c" * 253 + "€"), 'CM_ BO_ 1 "' + "c" * 253 + '";'),
        (message_with(comment="c" * 252 + "\U0001f697"), 'CM_ BO_ 1 "' + "c" * 252 + '";'),
        (message_with(comment="c" * 251 + "\U0001f697" + "d"), 'CM_ BO_ 1 "' + "c" * 251 + '\U0001f697";'),
        (signal_with(unit="u" * 40), ' SG_ S : 0|8@1+ (1,0) [0|0] "' + "u" * 32 + '" Kestrune'),
        (signal_with(receivers=("r" * 33, "s")), ' SG_ S : 0|8@1+ (1,0) [0|0] "" ' + "r" * 32 + ",s"),
        # Eight of 31 with their commas make 255: they fit, and the ninth is left out whole.
        (signal_with(receivers=("r" * 31,) * 9), ' SG_ S : 0|8@1+ (1,0) [0|0] "" ' + ",".join(["r" * 31] * 8)),
        (signal_with(receivers=("r" * 30,) * 9), ' SG_ S : 0|8@1+ (1,0) [0|0] "" ' + ",".join(["r" * 30] * 8)),
        (signal_with(value_descriptions=(ValueDescription(7, "v" * 300),)), 'VAL_ 1 S 7 "' + "v" * 255 + '";'),
    ],
)
def test_long_text_can_be_cut(tmp_path: Path, database: tabrin.Database, expected: str) -> None:
    path = tmp_path / "cut.dbc"
    database.write(path, cut=True)
    assert expected in text_of(path).split("\n")


@pytest.mark.parametrize(
    ("text", "limit", "expected"),
    [
        ("aé", 2, b"a"),
        ("aé", 1, b"a"),
        ("é", 1, b""),
        ("a€", 3, b"a"),
        ("\U0001f697", 3, b""),
        ("aéb", 3, "aé".encode()),
    ],
)
def test_no_part_of_a_character_is_left(text: str, limit: int, expected: bytes) -> None:
    # In a file it would not show: the library drops such a part.
    assert _checks.encoded("field", text, limit, True) == expected


@pytest.mark.parametrize(
    "database",
    [
        message_with(name="n" * 255),
        message_with(transmitter="t" * 32),
        message_with(comment="é" * 127 + "e"),
        signal_with(unit="u" * 32),
        signal_with(receivers=("é" * 32,)),
        signal_with(receivers=("r" * 31,) * 8),
        signal_with(value_descriptions=(ValueDescription(7, "v" * 255),)),
    ],
)
def test_longest_text_is_taken(tmp_path: Path, database: tabrin.Database) -> None:
    database.write(tmp_path / "fits.dbc")
    database.write(tmp_path / "cut.dbc", cut=True)
    assert (tmp_path / "fits.dbc").read_bytes() == (tmp_path / "cut.dbc").read_bytes()


# --- Files that cannot be written ----------------------------------------------------------------------------------


def test_empty_database_is_not_written(tmp_path: Path) -> None:
    path = tmp_path / "kept.dbc"
    path.write_text("as it was")
    with pytest.raises(tabrin.FileError, match=r"holds no messages, so there is nothing to write \(status 2\)"):
        tabrin.Database().write(path)
    assert path.read_text() == "as it was"


def test_missing_folder(tmp_path: Path) -> None:
    with pytest.raises(tabrin.FileError, match=r"cannot be opened \(status 6\)"):
        BUILT.write(tmp_path / "missing" / "a.dbc")


@pytest.mark.skipif(not Path("/dev/full").exists(), reason="needs a device that is always full")
def test_full_disk() -> None:
    with pytest.raises(tabrin.FileError, match=r"failed on the way, or memory ran out \(status 8\)"):
        BUILT.write("/dev/full")
