"""From the library's database to values of ours."""

from __future__ import annotations

import ctypes
import gc
from contextlib import contextmanager
from typing import Any, Iterator, TypeVar

from . import _checks
from ._errors import FileError, TabrinError
from ._library import Library, loaded_library, lock
from ._model import (
    ByteOrder,
    Database,
    FaultCode,
    FaultyStatement,
    Message,
    MultiplexKind,
    ProtocolType,
    Signal,
    ValueDescription,
    ValueType,
)
from ._records import CanErrorData, CanMessageData, CanSignalData, CanSignalEnumData, DatabaseInfo

# Looked up a hundred thousand times in a large file, where calling an enumeration takes ten times as long.
_BYTE_ORDERS = {int(code): code for code in ByteOrder}
_VALUE_TYPES = {int(code): code for code in ValueType}
_MULTIPLEX_KINDS = {int(code): code for code in MultiplexKind}

Value = TypeVar("Value")


def read(path: _checks.Path) -> Database:
    """Reads a DBC file.

    Statements of messages and signals that cannot be read are left out and listed in ``errors``. Raises PathError for a
    path that the library does not take, and FileError when the file cannot be read.
    """
    plain = _checks.encoded_path("path", path)
    with lock:
        library = loaded_library()
        try:
            read_into_library(library, plain)
            with _collector_paused():
                return _Copier(library).database()
        finally:
            empty(library)


def empty(library: Library) -> None:
    """Leaves nothing behind. The flag for CAN FD, which clearing keeps, would find its way into the next file read."""
    library.TabrinClearData()
    library.TabrinSetDatabaseInfo(ctypes.byref(DatabaseInfo()), ctypes.sizeof(DatabaseInfo))


def read_into_library(library: Library, plain: bytes) -> None:
    empty(library)
    status = ctypes.c_uint32()
    if not library.TabrinReadDbcFile(plain, len(plain), ctypes.byref(status)):
        raise FileError(status.value, plain[:-1].decode())


def copied_errors(library: Library) -> tuple[FaultyStatement, ...]:
    record = CanErrorData()
    faults = []
    for index in range(library.TabrinGetNumCanErrors()):
        _demand(library.TabrinGetErrorData(index, record))
        faults.append(FaultyStatement(FaultCode(record.code), record.line, record.text.decode()))
    return tuple(faults)


@contextmanager
def _collector_paused() -> Iterator[None]:
    """Copying makes hundreds of thousands of objects and no cycles. Looking for some takes two fifths of its time."""
    if not gc.isenabled():
        yield
        return
    gc.disable()
    try:
        yield
    finally:
        gc.enable()


def _demand(done: bool) -> None:
    if not done:
        raise TabrinError("the library did not give out a part of its database")


def _made(kind: type[Value], **values: Any) -> Value:
    """An object without the checks of its constructor: what comes from the library has passed them."""
    made = kind.__new__(kind)
    made.__dict__.update(values)
    return made


class _Copier:
    """Copies the whole database through three records, which are used again for every object."""

    def __init__(self, library: Library) -> None:
        self._library = library
        self._message = CanMessageData()
        self._signal = CanSignalData()
        self._description = CanSignalEnumData()
        # Units, nodes and descriptions repeat all over a file. One object for all that are equal saves most of their
        # memory.
        self._texts: dict[bytes, str] = {b"": ""}
        self._receivers: dict[bytes, tuple[str, ...]] = {b"": ()}

    def database(self) -> Database:
        info = DatabaseInfo()
        _demand(self._library.TabrinGetDatabaseInfo(ctypes.byref(info), ctypes.sizeof(info)))
        return _made(
            Database,
            messages=tuple([self._copied_message(index) for index in range(self._library.TabrinGetNumCanMessages())]),
            protocol=ProtocolType(info.protocolType),
            can_fd=info.canFd != 0,
            errors=copied_errors(self._library),
        )

    def _copied_message(self, index: int) -> Message:
        record = self._message
        _demand(self._library.TabrinGetCanMessageData(index, record))
        name = record.name
        identifier_name = record.identifierName
        long_name = name.decode()
        return _made(
            Message,
            id=record.id,
            name=long_name,
            dlc=record.dlc,
            signals=self._copied_signals(index, record.numSignals),
            transmitter=self._text(record.transmitter),
            comment=record.comment.decode(),
            send_type=self._text(record.sendType),
            cycle_time=record.cycleTime,
            identifier_name=long_name if identifier_name == name else identifier_name.decode(),
        )

    def _copied_signals(self, message: int, count: int) -> tuple[Signal, ...]:
        get = self._library.TabrinGetCanSignalData
        record = self._signal
        signals = []
        for index in range(count):
            _demand(get(message, index, record))
            name = record.name
            identifier_name = record.identifierName
            long_name = name.decode()
            signals.append(
                _made(
                    Signal,
                    name=long_name,
                    start_bit=record.startBit,
                    length=record.length,
                    byte_order=_BYTE_ORDERS[record.byteOrder],
                    value_type=_VALUE_TYPES[record.valueType],
                    factor=record.factor,
                    offset=record.offset,
                    minimum=record.minimum,
                    maximum=record.maximum,
                    unit=self._text(record.unitAsWritten),
                    receivers=self._receiver_names(record.receivers),
                    comment=record.comment.decode(),
                    multiplex_kind=_MULTIPLEX_KINDS[record.multiplexKind],
                    multiplex_value=record.multiplexValue,
                    start_value=record.startValue,
                    inactive_value=record.inactiveValue,
                    value_descriptions=self._copied_descriptions(message, index, record.numValueDescriptions),
                    identifier_name=long_name if identifier_name == name else identifier_name.decode(),
                    unit_ascii=self._text(record.unit),
                )
            )
        return tuple(signals)

    def _copied_descriptions(self, message: int, signal: int, count: int) -> tuple[ValueDescription, ...]:
        if count == 0:
            return ()
        get = self._library.TabrinGetCanSignalEnumData
        record = self._description
        descriptions = []
        for index in range(count):
            _demand(get(message, signal, index, record))
            descriptions.append(_made(ValueDescription, value=record.value, text=self._text(record.text)))
        return tuple(descriptions)

    def _text(self, data: bytes) -> str:
        known = self._texts.get(data)
        if known is None:
            known = self._texts[data] = data.decode()
        return known

    def _receiver_names(self, data: bytes) -> tuple[str, ...]:
        known = self._receivers.get(data)
        if known is None:
            # A list that was cut can end in a comma.
            known = self._receivers[data] = tuple([self._text(name) for name in data.split(b",") if name])
        return known
