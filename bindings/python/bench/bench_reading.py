"""Where the time of tabrin.read goes: bench_reading.py FILE [ROUNDS]

The library is called through ctypes, so the time of its getters is that of the calls less that of as many calls which
it answers at once, for an index that is out of range. Every line is the median over the rounds, in processor time of
this process: on a machine that does other work beside, the time of day would measure that too.
"""

from __future__ import annotations

import ctypes
import gc
import os
import statistics
import sys
import time
from typing import Callable

import tabrin
from tabrin import _library, _reading
from tabrin._records import CanMessageData, CanSignalData, CanSignalEnumData

OUT_OF_RANGE = 0xFFFFFFFF


class Calls:
    """The calls of the getters that copying a database makes, without what is done with their results."""

    def __init__(self, library: _library.Library) -> None:
        self._library = library
        self.message = CanMessageData()
        self.signal = CanSignalData()
        self.description = CanSignalEnumData()
        self.shape: list[list[int]] = []

    def count(self) -> int:
        """Notes how many signals and descriptions there are. The number of all calls."""
        self.shape = []
        for message in range(self._library.TabrinGetNumCanMessages()):
            self._library.TabrinGetCanMessageData(message, self.message)
            signals = []
            for signal in range(self.message.numSignals):
                self._library.TabrinGetCanSignalData(message, signal, self.signal)
                signals.append(self.signal.numValueDescriptions)
            self.shape.append(signals)
        return sum(1 + len(signals) + sum(signals) for signals in self.shape)

    def make(self, in_range: bool) -> None:
        get_message = self._library.TabrinGetCanMessageData
        get_signal = self._library.TabrinGetCanSignalData
        get_description = self._library.TabrinGetCanSignalEnumData
        for index, signals in enumerate(self.shape):
            message = index if in_range else OUT_OF_RANGE
            get_message(message, self.message)
            for signal, descriptions in enumerate(signals):
                get_signal(message, signal, self.signal)
                for description in range(descriptions):
                    get_description(message, signal, description, self.description)


def seconds(work: Callable[[], object]) -> float:
    gc.collect()
    start = time.process_time()
    kept = work()  # freed behind the measurement
    end = time.process_time()
    del kept
    return end - start


def measure(path: str, rounds: int) -> dict[str, float]:
    plain = os.fsencode(path) + b"\0"
    taken: dict[str, list[float]] = {}

    def note(what: str, work: Callable[[], object]) -> None:
        taken.setdefault(what, []).append(seconds(work))

    for _ in range(rounds):
        note("whole", lambda: tabrin.read(path))
        with _library.lock:
            library = _library.loaded_library()
            note("parsing", lambda: _reading.read_into_library(library, plain))
            calls = Calls(library)
            calls.count()
            note("calls", lambda: calls.make(in_range=True))
            note("empty calls", lambda: calls.make(in_range=False))
            with _reading._collector_paused():
                note("copying", lambda: _reading._Copier(library).database())
            note("clearing", lambda: _reading.empty(library))
    return {what: statistics.median(values) for what, values in taken.items()}


def print_table(path: str, times: dict[str, float]) -> None:
    getters = times["calls"] - times["empty calls"]
    in_library = times["parsing"] + getters + times["clearing"]
    whole = times["parsing"] + times["copying"] + times["clearing"]
    rows = [
        ("tabrin.read", times["whole"]),
        ("the same in parts", whole),
        ("  in the library", in_library),
        ("    parsing", times["parsing"]),
        ("    filling records", getters),
        ("    clearing", times["clearing"]),
        ("  calling it through ctypes", times["empty calls"]),
        ("  texts, numbers and objects", times["copying"] - times["calls"]),
    ]
    database = tabrin.read(path)
    signals = [signal for message in database for signal in message]
    descriptions = sum(len(signal.value_descriptions) for signal in signals)
    print(
        f"{os.path.getsize(path) / 1e6:.1f} MB: {len(database)} messages, {len(signals)} signals, "
        f"{descriptions} value descriptions; Python {sys.version.split()[0]}"
    )
    for name, value in rows:
        print(f"{name:<30} {value * 1e3:7.0f} ms {value / whole:6.0%}")


def main() -> int:
    if len(sys.argv) not in (2, 3):
        print(__doc__, file=sys.stderr)
        return 2
    path = sys.argv[1]
    print_table(path, measure(path, int(sys.argv[2]) if len(sys.argv) == 3 else 9))
    return 0


if __name__ == "__main__":
    sys.exit(main())
