"""One operation at a time, whatever the threads do."""

from __future__ import annotations

import signal
import sys
import threading
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path
from typing import Callable, Iterator

import pytest
from conftest import SAMPLE

import tabrin
from tabrin import Database, Message, Signal
from tabrin import _reading
from tabrin._library import Library, lock


@pytest.fixture
def hasty_threads() -> Iterator[None]:
    before = sys.getswitchinterval()
    sys.setswitchinterval(1e-6)
    yield
    sys.setswitchinterval(before)


def test_threads_get_what_they_asked_for(tmp_path: Path, hasty_threads: None) -> None:
    def database(number: int) -> Database:
        signals = tuple(Signal(f"S{number}_{index}", index, number + 1) for index in range(20))
        return Database(tuple(Message(100 * number + index, f"M{number}_{index}", 8, signals) for index in range(20)))

    def work(number: int) -> bool:
        path = tmp_path / f"{number}.dbc"
        mine = database(number)
        for _ in range(10):
            mine.write(path)
            again = tabrin.read(path)
            expected = [(message.id, message.name, [signal.name for signal in message]) for message in mine]
            if [(message.id, message.name, [signal.name for signal in message]) for message in again] != expected:
                return False
        return True

    with ThreadPoolExecutor(8) as pool:
        assert list(pool.map(work, range(8))) == [True] * 8


def test_thread_waits_for_its_turn() -> None:
    results: list[Database] = []
    thread = threading.Thread(target=lambda: results.append(tabrin.read(SAMPLE)))
    with lock:
        thread.start()
        thread.join(0.2)
        assert thread.is_alive()
        assert results == []
    thread.join(30)
    assert len(results[0]) == 6


def test_thread_in_the_middle_of_a_call_is_refused(tmp_path: Path) -> None:
    attempts: list[Callable[[], object]] = [
        lambda: tabrin.read(SAMPLE),
        lambda: tabrin.convert(SAMPLE, tmp_path / "never.dbc"),
        lambda: Database((Message(1, "M", 8),)).write(tmp_path / "never.dbc"),
        tabrin.load,
    ]
    with lock:
        for attempt in attempts:
            with pytest.raises(tabrin.BusyError, match="busy with a call of this thread"):
                attempt()
    assert not (tmp_path / "never.dbc").exists()
    assert len(tabrin.read(SAMPLE)) == 6


@pytest.mark.skipif(not hasattr(signal, "SIGUSR1"), reason="needs a signal to send")
def test_signal_handler_in_the_middle_of_a_call_is_refused(small_file: Path, monkeypatch: pytest.MonkeyPatch) -> None:
    caught: list[Exception] = []

    def handler(number: int, frame: object) -> None:
        try:
            tabrin.read(small_file)
        except tabrin.TabrinError as error:
            caught.append(error)

    def interrupted(library: Library) -> tuple[tabrin.FaultyStatement, ...]:
        signal.raise_signal(signal.SIGUSR1)
        return copied_errors(library)

    copied_errors = _reading.copied_errors
    monkeypatch.setattr(_reading, "copied_errors", interrupted)
    before = signal.signal(signal.SIGUSR1, handler)
    try:
        database = tabrin.read(SAMPLE)
    finally:
        signal.signal(signal.SIGUSR1, before)
    assert [type(error) for error in caught] == [tabrin.BusyError]
    assert (len(database), len(database.errors)) == (6, 1)


def test_lock_is_free_after_a_failure(tmp_path: Path) -> None:
    with pytest.raises(tabrin.FileError):
        tabrin.read(tmp_path / "missing.dbc")
    with ThreadPoolExecutor(1) as pool:
        assert len(pool.submit(tabrin.read, SAMPLE).result(30)) == 6
