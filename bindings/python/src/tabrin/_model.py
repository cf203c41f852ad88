"""The database as values: nothing here changes once it is made."""

from __future__ import annotations

import dataclasses
import enum
from dataclasses import dataclass
from functools import cached_property
from typing import Iterator, Optional

from . import _checks
from ._errors import FieldValueError, MessageIndexError, NotFoundError

_EXTENDED_FLAG = 0x80000000
_FRAME_ID_MASK = 0x1FFFFFFF
_MAX_SIGNALS = 10000
_MAX_RECEIVER = 32


class ProtocolType(enum.IntEnum):
    """What the network speaks."""

    NONE = 0
    J1939 = 1
    NMEA2000 = 2


class MultiplexKind(enum.IntEnum):
    """Whether a signal is in every frame of its message."""

    NONE = 0
    MULTIPLEXOR = 1
    MULTIPLEXED = 2


class ByteOrder(enum.IntEnum):
    """Big endian is also known as Motorola, little endian as Intel."""

    BIG_ENDIAN = 0
    LITTLE_ENDIAN = 1


class ValueType(enum.IntEnum):
    """How the raw bits of a signal are to be understood."""

    UNSIGNED = 0
    SIGNED = 1
    FLOAT = 2
    DOUBLE = 3


class MessageOrder(enum.IntEnum):
    """The order of messages in a written file. By identifier means: the largest first."""

    IDENTIFIER = 0
    NAME = 1
    DATABASE = 2


class FaultCode(enum.IntEnum):
    """The step of a statement that could not be read."""

    MESSAGE_ID = 0
    MESSAGE_NAME = 1
    MESSAGE_LENGTH = 2
    SIGNAL_NAME = 3
    SIGNAL_BITS = 4
    SIGNAL_SCALE = 5
    SIGNAL_RANGE = 6


@dataclass(frozen=True)
class FaultyStatement:
    """A message or signal statement that was left out in reading."""

    code: FaultCode
    line: int
    text: str

    def __str__(self) -> str:
        return f"line {self.line}: {self.code.name.lower().replace('_', ' ')}: {self.text.rstrip()}"


@dataclass(frozen=True)
class ValueDescription:
    """What one raw value of a signal means."""

    value: int
    text: str

    def __post_init__(self) -> None:
        _checks.whole_number("value", self.value, _checks.I32)
        _checks.text("text", self.text)


@dataclass(frozen=True)
class Signal:
    """One signal of a message. Physical value = raw value * factor + offset.

    ``identifier_name`` and ``unit_ascii`` come from the library alone: the name and the unit in the form that files
    carry. They are empty until a database is read. ``start_value`` and ``inactive_value`` are raw values, a signed one
    by its bits as an unsigned number; the library reads them and does not write them. Quotes in ``comment`` carry a
    backslash in files; they need none when a comment is given.
    """

    name: str
    start_bit: int
    length: int
    byte_order: ByteOrder = ByteOrder.LITTLE_ENDIAN
    value_type: ValueType = ValueType.UNSIGNED
    factor: float = 1.0
    offset: float = 0.0
    minimum: float = 0.0
    maximum: float = 0.0
    unit: str = ""
    receivers: tuple[str, ...] = ()
    comment: str = ""
    multiplex_kind: MultiplexKind = MultiplexKind.NONE
    multiplex_value: int = 0
    start_value: int = 0
    inactive_value: int = 0
    value_descriptions: tuple[ValueDescription, ...] = ()
    identifier_name: str = dataclasses.field(default="", init=False, compare=False)
    unit_ascii: str = dataclasses.field(default="", init=False, compare=False)

    def __post_init__(self) -> None:
        values = self.__dict__
        for field in ("name", "unit", "comment"):
            _checks.text(field, values[field])
        for field in ("start_bit", "length", "multiplex_value", "start_value", "inactive_value"):
            _checks.whole_number(field, values[field])
        for field in ("factor", "offset", "minimum", "maximum"):
            values[field] = _checks.number(field, values[field])
        values["byte_order"] = _checks.code("byte_order", self.byte_order, ByteOrder)
        values["value_type"] = _checks.code("value_type", self.value_type, ValueType)
        values["multiplex_kind"] = _checks.code("multiplex_kind", self.multiplex_kind, MultiplexKind)
        values["receivers"] = _checked_receivers(self.receivers)
        values["value_descriptions"] = _checked_descriptions(self.value_descriptions)
        _check_float_length(self.value_type, self.length)

    def describe(self, value: int) -> Optional[str]:
        """The description of a raw value, or None."""
        return next((entry.text for entry in self.value_descriptions if entry.value == value), None)


@dataclass(frozen=True)
class Message:
    """One message with its signals.

    ``id`` is as files have it: bit 31 marks a 29-bit identifier, which ``frame_id`` gives without it. ``send_type`` and
    ``cycle_time`` are read and not written. ``identifier_name`` is the name in the form that files carry, made by the
    library: empty until a database is read.
    """

    id: int
    name: str
    dlc: int
    signals: tuple[Signal, ...] = ()
    transmitter: str = ""
    comment: str = ""
    send_type: str = ""
    cycle_time: int = 0
    identifier_name: str = dataclasses.field(default="", init=False, compare=False)

    def __post_init__(self) -> None:
        values = self.__dict__
        for field in ("name", "transmitter", "comment", "send_type"):
            _checks.text(field, values[field])
        for field in ("id", "dlc", "cycle_time"):
            _checks.whole_number(field, values[field])
        values["signals"] = _checks.items("signals", self.signals, Signal)
        if len(self.signals) > _MAX_SIGNALS:
            raise FieldValueError(f"signals: {len(self.signals)}, and the limit is {_MAX_SIGNALS}")

    @property
    def frame_id(self) -> int:
        """The identifier on the bus, of 11 or 29 bits."""
        return self.id & _FRAME_ID_MASK

    @property
    def is_extended(self) -> bool:
        """Whether the identifier has 29 bits."""
        return self.id & _EXTENDED_FLAG != 0

    def __iter__(self) -> Iterator[Signal]:
        return iter(self.signals)

    def by_name(self, name: str) -> Signal:
        """The signal with this identifier, else the first with this long name. Raises NotFoundError."""
        try:
            return self._signals_by_name[_checks.text("name", name)]
        except KeyError:
            raise NotFoundError(f"message {self.name!r} has no signal {name!r}") from None

    @cached_property
    def _signals_by_name(self) -> dict[str, Signal]:
        found = {signal.name: signal for signal in reversed(self.signals)}
        found.update({signal.identifier_name: signal for signal in reversed(self.signals) if signal.identifier_name})
        return found


@dataclass(frozen=True)
class Database:
    """A CAN database: a sequence of messages, with what the last read found wrong in ``errors``."""

    messages: tuple[Message, ...] = ()
    protocol: ProtocolType = ProtocolType.NONE
    can_fd: bool = False
    errors: tuple[FaultyStatement, ...] = ()

    def __post_init__(self) -> None:
        values = self.__dict__
        values["messages"] = _checks.items("messages", self.messages, Message)
        values["protocol"] = _checks.code("protocol", self.protocol, ProtocolType)
        values["errors"] = _checks.items("errors", self.errors, FaultyStatement)
        _checks.flag("can_fd", self.can_fd)

    def __len__(self) -> int:
        return len(self.messages)

    def __iter__(self) -> Iterator[Message]:
        return iter(self.messages)

    def __getitem__(self, index: int) -> Message:
        """The message of this index, as in a list. Raises MessageIndexError."""
        count = len(self.messages)
        if not -count <= _checks.whole_number("index", index, _checks.I32) < count:
            raise MessageIndexError(f"message index {index} is out of range: the database has {count} messages")
        return self.messages[index]

    def by_name(self, name: str) -> Message:
        """The message with this identifier, else the first with this long name. Raises NotFoundError."""
        try:
            return self._messages_by_name[_checks.text("name", name)]
        except KeyError:
            raise NotFoundError(f"there is no message {name!r}") from None

    def by_id(self, id: int) -> Message:
        """The first message with this ``id``, bit 31 included. Raises NotFoundError."""
        try:
            return self._messages_by_id[_checks.whole_number("id", id)]
        except KeyError:
            raise NotFoundError(f"there is no message with the identifier {id}") from None

    def write(
        self,
        path: _checks.Path,
        order: MessageOrder = MessageOrder.DATABASE,
        *,
        cut: bool = False,
        rename: bool = False,
    ) -> None:
        """Writes a DBC file; one that is there is replaced.

        ``cut`` allows to cut texts that are too long for the library, in front of the first character that does not
        fit. The library makes the identifier of every message and signal from its name. Where that is not the
        identifier under which it was read, IdentifierError is raised and no file is touched, unless ``rename`` allows
        it. To convert a file as it is, take ``tabrin.convert``.
        """
        from ._writing import write  # which imports this module

        write(self, path, order, cut, rename)

    @cached_property
    def _messages_by_name(self) -> dict[str, Message]:
        found = {message.name: message for message in reversed(self.messages)}
        found.update(
            {message.identifier_name: message for message in reversed(self.messages) if message.identifier_name}
        )
        return found

    @cached_property
    def _messages_by_id(self) -> dict[int, Message]:
        return {message.id: message for message in reversed(self.messages)}


def _checked_receivers(value: object) -> tuple[str, ...]:
    receivers = _checks.items("receivers", value, str)
    for index, receiver in enumerate(receivers):
        field = f"receivers[{index}]"
        if not receiver.strip():
            raise FieldValueError(f"{field}: is empty")
        if "," in receiver:
            raise FieldValueError(f"{field}: holds a comma, which would make two of it: {receiver!r}")
    return receivers


def _checked_descriptions(value: object) -> tuple[ValueDescription, ...]:
    entries = sorted(_checks.items("value_descriptions", value, ValueDescription), key=lambda entry: entry.value)
    for first, second in zip(entries, entries[1:]):
        if first.value == second.value:
            raise FieldValueError(f"value_descriptions: {first.value} is described twice")
    return tuple(entries)


def _check_float_length(value_type: ValueType, length: int) -> None:
    expected = {ValueType.FLOAT: 32, ValueType.DOUBLE: 64}.get(value_type, length)
    if length != expected:
        raise FieldValueError(f"length: a signal of type {value_type.name} has {expected} bits, not {length}")
