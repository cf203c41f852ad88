"""From values of ours to the library's database, and to a file."""

from __future__ import annotations

import ctypes

from . import _checks
from ._errors import (
    FieldTypeError,
    FieldValueError,
    FileError,
    FileStatus,
    IdentifierError,
    TabrinError,
    TextTooLongError,
)
from ._library import Library, loaded_library, lock
from ._model import _MAX_RECEIVER, Database, FaultyStatement, Message, MessageOrder, Signal, ValueDescription
from ._reading import copied_errors, empty, read_into_library
from ._records import CanMessageData, CanSignalData, CanSignalEnumData, DatabaseInfo

_NAME_LIMIT = _COMMENT_LIMIT = _RECEIVERS_LIMIT = _TEXT_LIMIT = 255
_NODE_LIMIT = _UNIT_LIMIT = 32


def convert(
    source: _checks.Path, target: _checks.Path, order: MessageOrder = MessageOrder.DATABASE
) -> tuple[FaultyStatement, ...]:
    """Reads ``source`` and writes it to ``target``, all within the library, and gives back what was faulty in it.

    Nothing is cut, and no name changes, on the way; what the library does not keep, or does not write, is left out. The
    two may be the same file.
    """
    plain_source = _checks.encoded_path("source", source)
    plain_target = _checks.encoded_path("target", target)
    known_order = _checks.code("order", order, MessageOrder)
    with lock:
        library = loaded_library()
        try:
            read_into_library(library, plain_source)
            faults = copied_errors(library)
            _write_file(library, plain_target, known_order)
            return faults
        finally:
            empty(library)


def write(database: Database, path: _checks.Path, order: MessageOrder, cut: bool, rename: bool) -> None:
    """See Database.write. Everything is checked and laid out before the library is touched."""
    plain = _checks.encoded_path("path", path)
    known_order = _checks.code("order", order, MessageOrder)
    _checks.flag("rename", rename)
    records = _Records(_checks.flag("cut", cut))
    laid_out = [records.message(message) for message in database]
    with lock:
        library = loaded_library()
        try:
            empty(library)
            _set_info(library, database)
            for index, (message, (record, signals)) in enumerate(zip(database, laid_out)):
                _append_message(library, index, record, signals)
                if not rename:
                    _compare_identifiers(library, index, message)
            _write_file(library, plain, known_order)
        finally:
            empty(library)


_SignalRecords = tuple[CanSignalData, list[CanSignalEnumData]]
_MessageRecords = tuple[CanMessageData, list[_SignalRecords]]


class _Records:
    """Lays out values as records; says which field of what it cannot."""

    def __init__(self, cut: bool) -> None:
        self._cut = cut

    def message(self, message: Message) -> _MessageRecords:
        where = f"message {message.name!r}"
        record = CanMessageData(
            id=message.id,
            dlc=message.dlc,
            name=self._text(where, "name", message.name, _NAME_LIMIT),
            transmitter=self._text(where, "transmitter", message.transmitter, _NODE_LIMIT),
            comment=self._text(where, "comment", message.comment, _COMMENT_LIMIT),
        )
        return record, [self._signal(f"{where}, signal {signal.name!r}", signal) for signal in message]

    def _signal(self, where: str, signal: Signal) -> _SignalRecords:
        record = CanSignalData(
            name=self._text(where, "name", signal.name, _NAME_LIMIT),
            unit=self._text(where, "unit", signal.unit, _UNIT_LIMIT),
            receivers=self._receivers(where, signal.receivers),
            comment=self._text(where, "comment", signal.comment, _COMMENT_LIMIT),
            multiplexKind=signal.multiplex_kind,
            multiplexValue=signal.multiplex_value,
            startBit=signal.start_bit,
            length=signal.length,
            byteOrder=signal.byte_order,
            valueType=signal.value_type,
            factor=signal.factor,
            offset=signal.offset,
            minimum=signal.minimum,
            maximum=signal.maximum,
            startValue=signal.start_value,
            inactiveValue=signal.inactive_value,
        )
        return record, [self._description(where, entry) for entry in signal.value_descriptions]

    def _description(self, where: str, entry: ValueDescription) -> CanSignalEnumData:
        text = self._text(where, f"text of value {entry.value}", entry.text, _TEXT_LIMIT)
        return CanSignalEnumData(value=entry.value, text=text)

    def _text(self, where: str, field: str, text: str, limit: int) -> bytes:
        return _checks.encoded(f"{where}, {field}", text, limit, self._cut)

    def _receivers(self, where: str, receivers: tuple[str, ...]) -> bytes:
        # The library makes one byte of every character of a receiver, and takes 32 of them.
        for index, receiver in enumerate(receivers):
            if len(receiver.strip()) > _MAX_RECEIVER and not self._cut:
                raise TextTooLongError(f"{where}, receivers[{index}]", len(receiver.strip()), _MAX_RECEIVER)
        joined = ",".join([receiver.strip()[:_MAX_RECEIVER] for receiver in receivers])
        data = self._text(where, "receivers", joined, _RECEIVERS_LIMIT)
        if len(data) < len(joined.encode()) and joined.encode()[len(data) : len(data) + 1] != b",":
            data = data.rpartition(b",")[0]  # half a name would be another node
        return data


def _set_info(library: Library, database: Database) -> None:
    info = DatabaseInfo(protocolType=database.protocol, canFd=int(database.can_fd))
    library.TabrinSetDatabaseInfo(ctypes.byref(info), ctypes.sizeof(info))


def _append_message(library: Library, index: int, record: CanMessageData, signals: list[_SignalRecords]) -> None:
    _demand(library.TabrinAppendCanMessage(record))
    for position, (signal, descriptions) in enumerate(signals):
        _demand(library.TabrinAppendCanSignalToCanMessage(index, signal))
        for description in descriptions:
            _demand(library.TabrinAppendEnumToCanSignal(index, position, description))


def _demand(done: bool) -> None:
    if not done:
        raise TabrinError("the library did not take a part of the database")


def _compare_identifiers(library: Library, index: int, message: Message) -> None:
    where = f"message {message.name!r}"
    if message.identifier_name:
        record = CanMessageData()
        _demand(library.TabrinGetCanMessageData(index, record))
        _compare_identifier(where, message.identifier_name, record.identifierName)
    signal_record = CanSignalData()
    for position, signal in enumerate(message):
        if signal.identifier_name:
            _demand(library.TabrinGetCanSignalData(index, position, signal_record))
            _compare_identifier(
                f"{where}, signal {signal.name!r}", signal.identifier_name, signal_record.identifierName
            )


def _compare_identifier(where: str, was: str, made: bytes) -> None:
    if made != was.encode():
        raise IdentifierError(
            f"{where}: was read as {was} and would be written as {made.decode()} (rename=True allows it)"
        )


def _write_file(library: Library, plain: bytes, order: MessageOrder) -> None:
    status = ctypes.c_uint32()
    done = library.TabrinWriteDbcFile(plain, len(plain), order, ctypes.byref(status))
    # Closing can fail after everything was written; the library then calls it done.
    if not done or status.value != FileStatus.CLOSED:
        raise FileError(status.value, plain[:-1].decode())
