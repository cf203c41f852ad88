"""Reading pauses the garbage collector, and leaves it as it was."""

from __future__ import annotations

import gc
from pathlib import Path

import pytest
from conftest import SAMPLE

import tabrin


@pytest.mark.parametrize("enabled", [True, False])
def test_collector_is_left_as_it_was(tmp_path: Path, enabled: bool) -> None:
    before = gc.isenabled()
    try:
        (gc.enable if enabled else gc.disable)()
        tabrin.read(SAMPLE)
        assert gc.isenabled() == enabled
        with pytest.raises(tabrin.FileError):
            tabrin.read(tmp_path / "missing.dbc")
        assert gc.isenabled() == enabled
    finally:
        (gc.enable if before else gc.disable)()
