"""Finding and loading the shared library, its functions, and the lock around it."""

from __future__ import annotations

import ctypes
import ctypes.util
import os
import sys
import threading
from dataclasses import dataclass
from pathlib import Path
from types import TracebackType
from typing import Any, Callable, Iterator, Optional, Type

from . import _checks
from ._errors import BusyError, LibraryError
from ._records import CanErrorData, CanMessageData, CanSignalData, CanSignalEnumData

VERSION = "1.31"
ENVIRONMENT_VARIABLE = "TABRIN_LIBRARY"
FILE_NAME = "tabrin64.dll" if sys.platform == "win32" else "libtabrin64.so"

_u32 = ctypes.c_uint32
_pointer = ctypes.c_void_p
_PROTOTYPES: dict[str, tuple[Any, list[Any]]] = {
    "TabrinGetLibraryVersion": (ctypes.c_float, []),
    "TabrinReadDbcFile": (ctypes.c_bool, [ctypes.c_char_p, _u32, _pointer]),
    "TabrinWriteDbcFile": (ctypes.c_bool, [ctypes.c_char_p, _u32, _u32, _pointer]),
    "TabrinClearData": (ctypes.c_bool, []),
    "TabrinGetDatabaseInfo": (ctypes.c_bool, [_pointer, ctypes.c_size_t]),
    "TabrinSetDatabaseInfo": (ctypes.c_bool, [_pointer, ctypes.c_size_t]),
    "TabrinGetNumCanMessages": (ctypes.c_int64, []),
    "TabrinAppendCanMessage": (ctypes.c_bool, [ctypes.POINTER(CanMessageData)]),
    "TabrinGetCanMessageData": (ctypes.c_bool, [_u32, ctypes.POINTER(CanMessageData)]),
    "TabrinGetNumCanSignalsInCanMessage": (ctypes.c_bool, [_u32, _pointer]),
    "TabrinAppendCanSignalToCanMessage": (ctypes.c_bool, [_u32, ctypes.POINTER(CanSignalData)]),
    "TabrinGetCanSignalData": (ctypes.c_bool, [_u32, _u32, ctypes.POINTER(CanSignalData)]),
    "TabrinGetNumEnumsInCanSignal": (ctypes.c_bool, [_u32, _u32, _pointer]),
    "TabrinAppendEnumToCanSignal": (ctypes.c_bool, [_u32, _u32, ctypes.POINTER(CanSignalEnumData)]),
    "TabrinGetCanSignalEnumData": (ctypes.c_bool, [_u32, _u32, _u32, ctypes.POINTER(CanSignalEnumData)]),
    "TabrinGetNumCanErrors": (ctypes.c_int64, []),
    "TabrinGetErrorData": (ctypes.c_bool, [_u32, ctypes.POINTER(CanErrorData)]),
}
# These may take long, and let other threads of Python run meanwhile. For the others, which take less than a
# microsecond, giving up and taking back the interpreter would cost as much as the call.
_LONG_CALLS = ("TabrinReadDbcFile", "TabrinWriteDbcFile", "TabrinClearData")


@dataclass(frozen=True)
class LibraryInfo:
    """Which library is in use."""

    path: str
    version: str


class Library:
    """The seventeen functions as attributes, with their types declared."""

    def __init__(self, path: str) -> None:
        try:
            quick, long = ctypes.PyDLL(path), ctypes.CDLL(path)
        except OSError as error:
            raise LibraryError(f"{path} cannot be loaded: {error}") from error
        for name, (result, arguments) in _PROTOTYPES.items():
            try:
                function = getattr(long if name in _LONG_CALLS else quick, name)
            except AttributeError:
                raise LibraryError(f"{path} is not the Tabrin library: it has no function {name}") from None
            function.restype = result
            function.argtypes = arguments
            setattr(self, name, function)
            if name == "TabrinGetLibraryVersion":  # the first of them: other versions may lack some of the others
                self.info = LibraryInfo(path, _checked_version(path, function()))

    def __getattr__(self, name: str) -> Callable[..., Any]:
        raise AttributeError(name)  # for type checkers: all functions are set in __init__


def _checked_version(path: str, number: float) -> str:
    version = f"{number:.2f}"
    if version != VERSION:
        raise LibraryError(f"{path} is version {version} of the Tabrin library; this package needs {VERSION}")
    return version


def _output_folders() -> Iterator[Path]:
    """Where the build leaves the library, when this package is used from a source tree."""
    parents = Path(__file__).resolve().parents
    root = parents[4] if len(parents) > 4 else None
    if root is not None and (root / "include" / "tabrin.h").is_file():
        yield root / "build" / ("windows-release" if sys.platform == "win32" else "linux-release")


def _open_from_system(looked_at: list[str]) -> Optional[Library]:
    if sys.platform == "win32":
        found = ctypes.util.find_library("tabrin64")
        looked_at.append("the folders of PATH: " + ("found" if found else f"no {FILE_NAME}"))
        return Library(found) if found else None
    try:
        ctypes.PyDLL(FILE_NAME)
    except OSError as error:
        looked_at.append(f"the system's search path (with LD_LIBRARY_PATH): {error}")
        return None
    return Library(FILE_NAME)


def _search() -> Library:
    """Takes the first that is there. One that is there and does not fit is an error, and not passed over."""
    chosen = os.environ.get(ENVIRONMENT_VARIABLE)
    if chosen:
        return Library(chosen)
    looked_at = [f"the environment variable {ENVIRONMENT_VARIABLE}: not set"]
    for folder in (Path(__file__).resolve().parent, *_output_folders()):
        candidate = folder / FILE_NAME
        if candidate.is_file():
            return Library(str(candidate))
        looked_at.append(f"{candidate}: no such file")
    library = _open_from_system(looked_at)
    if library is None:
        raise LibraryError("the Tabrin library was not found. Looked at:", looked_at)
    return library


class _Lock:
    """One operation at a time. Other threads wait; the same thread, which would wait for itself, gets an exception.

    A signal handler can run between any two steps here. Before an operation has begun and when it has ended, it may have
    the library; what it then does is over before the step behind it.
    """

    def __init__(self) -> None:
        self._lock = threading.RLock()
        self._busy = False

    def __enter__(self) -> None:
        self._lock.acquire()
        if self._busy:
            self._lock.release()
            raise BusyError("the library is busy with a call of this thread")
        self._busy = True

    def __exit__(
        self, kind: Optional[Type[BaseException]], value: Optional[BaseException], trace: Optional[TracebackType]
    ) -> None:
        self._busy = False
        self._lock.release()


lock = _Lock()
_loaded: Optional[Library] = None


def loaded_library() -> Library:
    """The library, loaded at the first call. The caller holds the lock."""
    global _loaded
    if _loaded is None:
        _loaded = _search()
    return _loaded


def load(path: Optional[_checks.Path] = None) -> LibraryInfo:
    """Loads the shared library and says which it is; without ``path``, the one that is found.

    Only needed to choose the library: otherwise the first operation loads it. It is looked for in this order: the file
    that the environment variable ``TABRIN_LIBRARY`` names; beside this package, where a wheel has it; in the build
    folder of the source tree; in the system's search path.

    Raises LibraryError when there is none, when it is of another version, or when another one is in use already.
    """
    global _loaded
    wanted = None if path is None else _checks.path_text("path", path)
    with lock:
        if wanted is None:
            return loaded_library().info
        if _loaded is None:
            _loaded = Library(wanted)
        elif os.path.realpath(wanted) != os.path.realpath(_loaded.info.path):
            raise LibraryError(f"{_loaded.info.path} is in use already, so {wanted} cannot be loaded")
        return _loaded.info
