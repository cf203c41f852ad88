"""The wheel carries everything that is needed, and nothing more."""

from __future__ import annotations

import os
import re
import shutil
import subprocess
import sys
import zipfile
from pathlib import Path

import pytest
from conftest import BINDING, ROOT, SAMPLE, Run

import tabrin

MODULES = sorted(path.name for path in (BINDING / "src" / "tabrin").glob("*.py"))


def build_wheel(source: Path, library: Path, target: Path) -> Path:
    subprocess.run(
        [sys.executable, "-m", "build", "--wheel", "--no-isolation", "--outdir", str(target), str(source)],
        env={**os.environ, "TABRIN_LIBRARY": str(library)},
        check=True,
        stdout=subprocess.DEVNULL,
    )
    (wheel,) = target.iterdir()
    return wheel


@pytest.fixture(scope="module")
def source(tmp_path_factory: pytest.TempPathFactory) -> Path:
    """A copy: building leaves folders in the source."""
    folder = tmp_path_factory.mktemp("wheel") / "python"
    shutil.copytree(BINDING, folder, ignore=shutil.ignore_patterns("build", "*.egg-info", "__pycache__"))
    return folder


@pytest.fixture(scope="module")
def wheel(source: Path) -> Path:
    return build_wheel(source, Path(os.environ["TABRIN_LIBRARY"]), source.parent / "linux")


def test_contents(wheel: Path) -> None:
    assert wheel.name == "tabrin-1.31.0-py3-none-linux_x86_64.whl"
    with zipfile.ZipFile(wheel) as archive:
        names = {name.partition("/")[2] for name in archive.namelist() if name.startswith("tabrin/")}
        assert names == {*MODULES, "py.typed", "libtabrin64.so"}
        assert archive.read("tabrin/libtabrin64.so") == Path(os.environ["TABRIN_LIBRARY"]).read_bytes()


def test_installed_wheel_brings_its_library(wheel: Path, run_python: Run, tmp_path: Path) -> None:
    subprocess.run(
        [sys.executable, "-m", "installer", "--prefix", "/inside", "--destdir", str(tmp_path), str(wheel)], check=True
    )
    (package,) = (tmp_path / "inside").rglob("tabrin")
    code = f"import tabrin; print(tabrin.load().path); print(len(tabrin.read({str(SAMPLE)!r})))"
    result = run_python(["-c", code], package=package.parent)
    assert (result.stdout, result.stderr) == (f"{package / 'libtabrin64.so'}\n6\n", "")


def test_wheel_for_windows(wheel: Path, source: Path, tmp_path: Path) -> None:
    library = tmp_path / "tabrin64.dll"
    library.write_bytes(b"stands for one")
    built = build_wheel(source, library, tmp_path / "windows")
    assert built.name == "tabrin-1.31.0-py3-none-win_amd64.whl"
    with zipfile.ZipFile(built) as archive:
        libraries = [name for name in archive.namelist() if name.endswith((".so", ".dll"))]
        assert libraries == ["tabrin/tabrin64.dll"]


def test_version_is_that_of_the_project() -> None:
    found = re.search(r"^    VERSION (\S+)$", (ROOT / "CMakeLists.txt").read_text(), re.MULTILINE)
    assert found is not None
    assert tabrin.__version__ == found[1]
    assert f'version = "{found[1]}"' in (BINDING / "pyproject.toml").read_text()
    assert found[1].startswith(f"{tabrin.load().version}.")
