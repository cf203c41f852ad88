"""CAN bus databases in the DBC text format, read and written by the Tabrin library.

    import tabrin

    database = tabrin.read("engine.dbc")
    for message in database:
        for signal in message:
            print(message.name, signal.name, signal.unit)
    database.write("copy.dbc", tabrin.MessageOrder.NAME)

A database is a value: it never changes, and is independent of the library and of what is read after it. The library
itself holds one database for the whole process. This package uses it for the time of a call, under a lock, and leaves
it empty.
"""

from ._errors import (
    BusyError,
    FieldTypeError,
    FieldValueError,
    FileError,
    FileStatus,
    IdentifierError,
    LibraryError,
    MessageIndexError,
    NotFoundError,
    PathError,
    TabrinError,
    TextTooLongError,
)
from ._library import LibraryInfo, load
from ._model import (
    ByteOrder,
    Database,
    FaultCode,
    FaultyStatement,
    Message,
    MessageOrder,
    MultiplexKind,
    ProtocolType,
    Signal,
    ValueDescription,
    ValueType,
)
from ._reading import read
from ._writing import convert

__version__ = "1.31.0"

__all__ = [
    "BusyError",
    "ByteOrder",
    "Database",
    "FaultCode",
    "FaultyStatement",
    "FieldTypeError",
    "FieldValueError",
    "FileError",
    "FileStatus",
    "IdentifierError",
    "LibraryError",
    "LibraryInfo",
    "Message",
    "MessageIndexError",
    "MessageOrder",
    "MultiplexKind",
    "NotFoundError",
    "PathError",
    "ProtocolType",
    "Signal",
    "TabrinError",
    "TextTooLongError",
    "ValueDescription",
    "ValueType",
    "convert",
    "load",
    "read",
]
