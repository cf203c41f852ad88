"""What the tests share. The library is the one that TABRIN_LIBRARY names."""

from __future__ import annotations

import os
import subprocess
import sys
from pathlib import Path
from typing import Callable, Mapping, Optional, Sequence

import pytest

BINDING = Path(__file__).resolve().parents[1]
ROOT = BINDING.parents[1]
SAMPLE = ROOT / "examples" / "engine.dbc"

# One message, and nothing else: what is written into a file when only its existence matters.
SMALL_FILE = 'BO_ 1 Only: 8 Node\n SG_ One : 0|8@1+ (1,0) [0|255] "" Node\n'

Run = Callable[..., "subprocess.CompletedProcess[str]"]


@pytest.fixture
def small_file(tmp_path: Path) -> Path:
    path = tmp_path / "small.dbc"
    path.write_text(SMALL_FILE)
    return path


@pytest.fixture
def run_python(tmp_path: Path) -> Run:
    """Runs Python in a folder of its own, with this package in its path and no hint where the library is."""

    def run(
        arguments: Sequence[str], variables: Optional[Mapping[str, str]] = None, package: Path = BINDING / "src"
    ) -> subprocess.CompletedProcess[str]:
        environment = {name: value for name, value in os.environ.items() if name != "TABRIN_LIBRARY"}
        environment.update({"PYTHONPATH": str(package), "PYTHONIOENCODING": "utf-8", **(variables or {})})
        return subprocess.run(
            [sys.executable, *arguments],
            env=environment,
            cwd=tmp_path,
            capture_output=True,
            encoding="utf-8",
            timeout=60,
        )

    return run
