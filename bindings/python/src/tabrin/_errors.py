"""What this package raises. Every exception is a ``TabrinError``, and one of Python's own kinds beside it."""

from __future__ import annotations

import enum
from typing import Any, Sequence


class FileStatus(enum.IntEnum):
    """What became of a file, as the library says it."""

    READING = 0
    WRITING = 1
    CLOSED = 2
    PATH_TOO_LONG = 3
    PATH_INVALID = 4
    PATH_EMPTY = 5
    NOT_OPENED = 6
    FAILED = 8
    END_OF_FILE = 9


_EXPLANATIONS = {
    FileStatus.CLOSED: "the database holds no messages, so there is nothing to write",
    FileStatus.PATH_TOO_LONG: "the path is longer than 259 bytes of UTF-8",
    FileStatus.PATH_INVALID: "the path cannot be told to the library: it is not valid UTF-8, or holds a NUL",
    FileStatus.PATH_EMPTY: "the path is empty",
    FileStatus.NOT_OPENED: "the file cannot be opened",
    FileStatus.FAILED: "reading, writing or closing failed on the way, or memory ran out",
}


class TabrinError(Exception):
    """The base of all exceptions of this package."""


class LibraryError(TabrinError):
    """The shared library was not found, cannot be loaded, or is of another version."""

    def __init__(self, message: str, looked_at: Sequence[str] = ()) -> None:
        super().__init__(message, tuple(looked_at))
        self.looked_at = tuple(looked_at)

    def __str__(self) -> str:
        return "\n  ".join((str(self.args[0]), *self.looked_at))


class FileError(TabrinError, OSError):
    """A file was not read or not written: ``status`` says in which step, ``path`` which."""

    def __init__(self, status: int, path: str) -> None:
        super().__init__()
        self.status = status
        self.path = path

    def __str__(self) -> str:
        try:
            explanation = _EXPLANATIONS[FileStatus(self.status)]
        except (KeyError, ValueError):
            explanation = "unknown reason"
        return f"{self.path!r}: {explanation} (status {int(self.status)})"

    def __reduce__(self) -> tuple[Any, ...]:
        return type(self), (self.status, self.path)


class PathError(FileError, ValueError):
    """A path that the library does not take. Nothing was opened."""


class FieldTypeError(TabrinError, TypeError):
    """A value of the wrong type, by the name of the field or argument."""


class FieldValueError(TabrinError, ValueError):
    """A value that its field cannot hold, or that the library would change without a word."""


class TextTooLongError(FieldValueError):
    """A text that its field in the library cannot hold: ``size`` and ``limit`` are bytes."""

    def __init__(self, field: str, size: int, limit: int) -> None:
        super().__init__(field, size, limit)
        self.field = field
        self.size = size
        self.limit = limit

    def __str__(self) -> str:
        return f"{self.field}: takes {self.size} bytes, and the limit is {self.limit} (cut=True cuts it)"


class IdentifierError(FieldValueError):
    """The library would give something that was read another identifier than it has."""


class NotFoundError(TabrinError, KeyError):
    """No message or signal has this name or identifier."""

    def __str__(self) -> str:
        return str(self.args[0])  # KeyError alone shows it in quotes


class MessageIndexError(TabrinError, IndexError):
    """There is no message of this index."""


class BusyError(TabrinError, RuntimeError):
    """A signal handler or the like calls the library in the middle of a call of its own thread."""
