"""What is checked before anything reaches the library: types, ranges, and texts against the fields that take them."""

from __future__ import annotations

import enum
import os
from typing import Any, Type, TypeVar, Union

from ._errors import FieldTypeError, FieldValueError, FileStatus, PathError, TextTooLongError

Path = Union[str, "os.PathLike[str]"]
Code = TypeVar("Code", bound=enum.IntEnum)
Item = TypeVar("Item")

PATH_LIMIT = 259  # the library takes 260 bytes with the NUL
U32 = (0, 0xFFFFFFFF)
I32 = (-0x80000000, 0x7FFFFFFF)


def _wrong_type(field: str, expected: str, value: object) -> FieldTypeError:
    return FieldTypeError(f"{field}: expected {expected}, not {type(value).__name__}")


def text(field: str, value: object) -> str:
    if not isinstance(value, str):
        raise _wrong_type(field, "a text (str)", value)
    return value


def whole_number(field: str, value: object, limits: tuple[int, int] = U32) -> int:
    # True is an int to Python, and hardly ever what somebody means by a start bit.
    if not isinstance(value, int) or isinstance(value, bool):
        raise _wrong_type(field, "a whole number (int)", value)
    if not limits[0] <= value <= limits[1]:
        raise FieldValueError(f"{field}: {value} is not between {limits[0]} and {limits[1]}")
    return int(value)


def number(field: str, value: object) -> float:
    if not isinstance(value, (int, float)) or isinstance(value, bool):
        raise _wrong_type(field, "a number (float)", value)
    try:
        return float(value)
    except OverflowError:
        raise FieldValueError(f"{field}: {value} is too large for a float") from None


def flag(field: str, value: object) -> bool:
    if not isinstance(value, bool):
        raise _wrong_type(field, "True or False", value)
    return value


def code(field: str, value: object, kind: Type[Code]) -> Code:
    known = whole_number(field, value)
    try:
        return kind(known)
    except ValueError:
        raise FieldValueError(f"{field}: {known} is no {kind.__name__}") from None


def items(field: str, value: Any, kind: Type[Item]) -> tuple[Item, ...]:
    """Takes any iterable but a text, which would fall into its letters."""
    if isinstance(value, str):
        raise _wrong_type(field, f"several {kind.__name__}", value)
    try:
        taken = tuple(value)
    except TypeError:
        raise _wrong_type(field, f"several {kind.__name__}", value) from None
    for index, item in enumerate(taken):
        if not isinstance(item, kind):
            raise _wrong_type(f"{field}[{index}]", kind.__name__, item)
    return taken


def encoded(field: str, value: str, limit: int, cut: bool) -> bytes:
    """The bytes for a field of ``limit`` bytes and a NUL, cut in front of the first character that does not fit."""
    try:
        data = value.encode()
    except UnicodeEncodeError as error:
        raise FieldValueError(f"{field}: no valid text: {error}") from None
    if b"\0" in data:
        raise FieldValueError(f"{field}: holds a NUL, behind which the library would not look")
    if len(data) <= limit:
        return data
    if not cut:
        raise TextTooLongError(field, len(data), limit)
    return data[:limit].decode(errors="ignore").encode()


def path_text(field: str, path: Path) -> str:
    try:
        plain = os.fspath(path)
    except TypeError:
        raise _wrong_type(field, "a path", path) from None
    if not isinstance(plain, str):
        raise _wrong_type(field, "a path of texts (str)", plain)
    return plain


def encoded_path(field: str, path: Path) -> bytes:
    """The path as the library takes it, with its NUL."""
    plain = path_text(field, path)
    try:
        data = plain.encode()
    except UnicodeEncodeError:
        raise PathError(FileStatus.PATH_INVALID, plain) from None
    if not data:
        raise PathError(FileStatus.PATH_EMPTY, plain)
    if b"\0" in data:
        raise PathError(FileStatus.PATH_INVALID, plain)
    if len(data) > PATH_LIMIT:
        raise PathError(FileStatus.PATH_TOO_LONG, plain)
    return data + b"\0"
