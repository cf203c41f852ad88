"""Wrong use is answered by an exception that says what is wrong, and changes nothing."""

from __future__ import annotations

import ctypes
import math
from pathlib import Path
from typing import Any, Callable, Iterator

import pytest
from conftest import SAMPLE

import tabrin
from tabrin import Database, FaultyStatement, Message, Signal, ValueDescription, ValueType
from tabrin._library import Library, loaded_library, lock
from tabrin._records import CanMessageData


@pytest.fixture
def marked_library() -> Iterator[Library]:
    """The library with something in it that an operation of this package would clear away."""
    with lock:
        library = loaded_library()
        assert library.TabrinAppendCanMessage(CanMessageData(id=4711, name=b"Mark"))
    yield library
    with lock:
        library.TabrinClearData()


WRONG_TYPES: list[tuple[str, Callable[[], Any]]] = [
    ("name: expected a text .str., not int", lambda: Signal(5, 0, 8)),  # type: ignore[arg-type]
    ("name: expected a text .str., not bytes", lambda: Message(1, b"M", 8)),  # type: ignore[arg-type]
    ("start_bit: expected a whole number .int., not str", lambda: Signal("S", "0", 8)),  # type: ignore[arg-type]
    ("length: expected a whole number .int., not float", lambda: Signal("S", 0, 8.0)),  # type: ignore[arg-type]
    ("length: expected a whole number .int., not bool", lambda: Signal("S", 0, True)),
    ("factor: expected a number .float., not str", lambda: Signal("S", 0, 8, factor="1")),  # type: ignore[arg-type]
    ("unit: expected a text .str., not NoneType", lambda: Signal("S", 0, 8, unit=None)),  # type: ignore[arg-type]
    ("receivers: expected several str, not str", lambda: Signal("S", 0, 8, receivers="A,B")),  # type: ignore[arg-type]
    ("receivers.1.: expected str, not int", lambda: Signal("S", 0, 8, receivers=("A", 5))),  # type: ignore[arg-type]
    ("value_type: expected a whole number", lambda: Signal("S", 0, 8, value_type="float")),  # type: ignore[arg-type]
    (
        "value_descriptions.0.: expected ValueDescription, not tuple",
        lambda: Signal("S", 0, 8, value_descriptions=((0, "off"),)),  # type: ignore[arg-type]
    ),
    ("value: expected a whole number", lambda: ValueDescription("0", "off")),  # type: ignore[arg-type]
    ("text: expected a text", lambda: ValueDescription(0, None)),  # type: ignore[arg-type]
    ("id: expected a whole number .int., not str", lambda: Message("0x1", "M", 8)),  # type: ignore[arg-type]
    ("signals: expected several Signal, not int", lambda: Message(1, "M", 8, 5)),  # type: ignore[arg-type]
    ("signals.0.: expected Signal, not str", lambda: Message(1, "M", 8, ("S",))),  # type: ignore[arg-type]
    ("messages.0.: expected Message, not str", lambda: Database(("M",))),  # type: ignore[arg-type]
    ("messages: expected several Message, not int", lambda: Database(5)),  # type: ignore[arg-type]
    ("errors: expected several FaultyStatement, not NoneType", lambda: Database(errors=None)),  # type: ignore[arg-type]
    ("can_fd: expected True or False, not int", lambda: Database(can_fd=1)),  # type: ignore[arg-type]
    ("path: expected a path, not int", lambda: tabrin.read(5)),  # type: ignore[arg-type]
    ("path: expected a path of texts .str., not bytes", lambda: tabrin.read(b"a.dbc")),  # type: ignore[arg-type]
    ("target: expected a path, not NoneType", lambda: tabrin.convert("a.dbc", None)),  # type: ignore[arg-type]
    ("order: expected a whole number", lambda: tabrin.convert("a.dbc", "b.dbc", "id")),  # type: ignore[arg-type]
    ("cut: expected True or False, not str", lambda: Database().write("a.dbc", cut="yes")),  # type: ignore[arg-type]
    ("rename: expected True or False, not int", lambda: Database().write("a.dbc", rename=1)),  # type: ignore[arg-type]
    ("index: expected a whole number .int., not str", lambda: Database()["M"]),  # type: ignore[index]
    ("name: expected a text .str., not int", lambda: Database().by_name(5)),  # type: ignore[arg-type]
    ("id: expected a whole number .int., not str", lambda: Database().by_id("5")),  # type: ignore[arg-type]
]


@pytest.mark.parametrize(("message", "attempt"), WRONG_TYPES, ids=[message for message, _ in WRONG_TYPES])
def test_wrong_type(marked_library: Library, message: str, attempt: Callable[[], Any]) -> None:
    with pytest.raises(tabrin.FieldTypeError, match=f"^{message}") as caught:
        attempt()
    assert isinstance(caught.value, TypeError)
    assert marked_library.TabrinGetNumCanMessages() == 1


WRONG_VALUES: list[tuple[str, Callable[[], Any]]] = [
    ("id: 4294967296 is not between 0 and 4294967295", lambda: Message(2**32, "M", 8)),
    ("id: -1 is not between", lambda: Message(-1, "M", 8)),
    ("dlc: -8 is not between", lambda: Message(1, "M", -8)),
    ("start_bit: -1 is not between", lambda: Signal("S", -1, 8)),
    ("multiplex_value: 4294967296 is not between", lambda: Signal("S", 0, 8, multiplex_value=2**32)),
    ("value: 2147483648 is not between -2147483648 and 2147483647", lambda: ValueDescription(2**31, "x")),
    ("value: -2147483649 is not between", lambda: ValueDescription(-(2**31) - 1, "x")),
    ("factor: 10* is too large for a float", lambda: Signal("S", 0, 8, factor=10**400)),
    ("byte_order: 2 is no ByteOrder", lambda: Signal("S", 0, 8, byte_order=2)),  # type: ignore[arg-type]
    ("multiplex_kind: 9 is no MultiplexKind", lambda: Signal("S", 0, 8, multiplex_kind=9)),  # type: ignore[arg-type]
    ("protocol: 3 is no ProtocolType", lambda: Database(protocol=3)),  # type: ignore[arg-type]
    ("order: 3 is no MessageOrder", lambda: tabrin.convert("a", "b", 3)),  # type: ignore[arg-type]
    ("length: a signal of type FLOAT has 32 bits, not 16", lambda: Signal("S", 0, 16, value_type=ValueType.FLOAT)),
    ("length: a signal of type DOUBLE has 64 bits, not 32", lambda: Signal("S", 0, 32, value_type=ValueType.DOUBLE)),
    ("receivers.1.: is empty", lambda: Signal("S", 0, 8, receivers=("A", " "))),
    ("receivers.0.: holds a comma, which would make two of it: 'A,B'", lambda: Signal("S", 0, 8, receivers=("A,B",))),
    (
        "value_descriptions: 1 is described twice",
        lambda: Signal("S", 0, 8, value_descriptions=(ValueDescription(1, "a"), ValueDescription(1, "b"))),
    ),
    ("signals: 10001, and the limit is 10000", lambda: Message(1, "M", 8, (Signal("S", 0, 8),) * 10001)),
    ("message 'a.x00b', name: holds a NUL", lambda: Database((Message(1, "a\0b", 8),)).write("never.dbc")),
    (
        "message 'M', comment: no valid text",
        lambda: Database((Message(1, "M", 8, comment="\ud800"),)).write("never.dbc"),
    ),
]


@pytest.mark.parametrize(("message", "attempt"), WRONG_VALUES, ids=[message for message, _ in WRONG_VALUES])
def test_wrong_value(marked_library: Library, message: str, attempt: Callable[[], Any]) -> None:
    with pytest.raises(tabrin.FieldValueError, match=f"^{message}") as caught:
        attempt()
    assert isinstance(caught.value, ValueError)
    assert marked_library.TabrinGetNumCanMessages() == 1


PATHS = [
    ("", "the path is empty", 5),
    ("a\0b.dbc", "not valid UTF-8, or holds a NUL", 4),
    ("\udcff.dbc", "not valid UTF-8, or holds a NUL", 4),
    ("a" * 260, "longer than 259 bytes", 3),
    ("é" * 130, "longer than 259 bytes", 3),
]


@pytest.mark.parametrize(("path", "message", "status"), PATHS, ids=["empty", "NUL", "no text", "long", "long in UTF-8"])
@pytest.mark.parametrize(
    "attempt",
    [
        tabrin.read,
        lambda path: tabrin.convert(path, "never.dbc"),
        lambda path: tabrin.convert(SAMPLE, path),
        lambda path: Database((Message(1, "M", 8),)).write(path),
    ],
    ids=["read", "convert from", "convert to", "write"],
)
def test_wrong_path(
    marked_library: Library, attempt: Callable[[str], Any], path: str, message: str, status: int
) -> None:
    with pytest.raises(tabrin.PathError, match=message) as caught:
        attempt(path)
    assert caught.value.status == status
    assert isinstance(caught.value, (OSError, ValueError))
    assert marked_library.TabrinGetNumCanMessages() == 1


def test_longest_path_is_taken(tmp_path: Path, monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.chdir(tmp_path)
    (tmp_path / "folder").mkdir()
    # 259 bytes, in a file name that is itself not longer than file systems take.
    path = "./././././folder/" + "a" * 238 + ".dbc"
    assert len(path) == 259
    Database((Message(1, "M", 8),)).write(path)
    assert len(tabrin.read(path)) == 1
    with pytest.raises(tabrin.PathError):
        tabrin.read("./" + path)


@pytest.mark.parametrize("index", [6, 7, 1000000, -7])
def test_message_index_out_of_range(index: int) -> None:
    database = tabrin.read(SAMPLE)
    with pytest.raises(
        tabrin.MessageIndexError, match=f"message index {index} is out of range: the database has 6 messages"
    ):
        database[index]
    assert isinstance(tabrin.MessageIndexError(), IndexError)


def test_unknown_names() -> None:
    database = tabrin.read(SAMPLE)
    with pytest.raises(tabrin.NotFoundError) as caught:
        database.by_name("enginestatus")
    assert str(caught.value) == "there is no message 'enginestatus'"
    assert isinstance(caught.value, KeyError)
    with pytest.raises(tabrin.NotFoundError, match="no message with the identifier 257"):
        database.by_id(257)
    with pytest.raises(tabrin.NotFoundError, match="message 'EngineStatus' has no signal 'Gear'"):
        database[0].by_name("Gear")


def test_failed_write_leaves_the_values_alone(tmp_path: Path) -> None:
    database = tabrin.read(SAMPLE)
    with pytest.raises(tabrin.FileError):
        database.write(tmp_path / "missing" / "out.dbc")
    assert database == tabrin.read(SAMPLE)


def test_library_is_left_empty_after_every_operation(tmp_path: Path) -> None:
    library = loaded_library()
    tabrin.read(SAMPLE).write(tmp_path / "out.dbc")
    assert library.TabrinGetNumCanMessages() == 0
    assert library.TabrinGetNumCanErrors() == 0
    with pytest.raises(tabrin.FileError):
        tabrin.convert(SAMPLE, tmp_path / "missing" / "out.dbc")
    assert library.TabrinGetNumCanMessages() == 0
    info = (ctypes.c_uint32 * 2)(7, 7)
    assert library.TabrinGetDatabaseInfo(info, 8)
    assert list(info) == [0, 0]


def test_what_is_no_number_is_taken_as_one(tmp_path: Path) -> None:
    # Files can hold them, so a database that was read may not be refused for them.
    database = Database((Message(1, "M", 8, (Signal("S", 0, 8, maximum=math.inf),)),))
    database.write(tmp_path / "inf.dbc")
    assert tabrin.read(tmp_path / "inf.dbc")[0].signals[0].maximum == math.inf


def test_exceptions_can_be_pickled() -> None:
    import pickle

    for error in (
        tabrin.FileError(6, "a.dbc"),
        tabrin.PathError(3, "b.dbc"),
        tabrin.TextTooLongError("name", 300, 255),
        tabrin.LibraryError("not found", ["here", "there"]),
    ):
        again = pickle.loads(pickle.dumps(error))
        assert (type(again), str(again)) == (type(error), str(error))


def test_fault_is_a_plain_value() -> None:
    assert FaultyStatement(tabrin.FaultCode.MESSAGE_ID, 3, "BO_ x\n") == FaultyStatement(
        tabrin.FaultCode.MESSAGE_ID, 3, "BO_ x\n"
    )
