"""Which library is loaded, and what is said when none can be.

A process loads only one, so each case is a Python of its own. Its package lies in a folder that is no source tree:
there, the build folder would be found.
"""

from __future__ import annotations

import os
import shutil
from pathlib import Path
from typing import Optional

import pytest
from conftest import BINDING, SAMPLE, Run

import tabrin

LIBRARY = Path(os.environ["TABRIN_LIBRARY"])
OTHER_VERSION = Path(os.environ["TABRIN_OTHER_VERSION_LIBRARY"])
PRINT_PATH = "import tabrin; print(tabrin.load().path)"


@pytest.fixture
def package(tmp_path: Path) -> Path:
    """The folder of a copy of the package, without the library."""
    folder = tmp_path / "site"
    shutil.copytree(BINDING / "src" / "tabrin", folder / "tabrin", ignore=shutil.ignore_patterns("*.so", "__pycache__"))
    return folder


def put_library(folder: Path, library: Path = LIBRARY) -> Path:
    folder.mkdir(parents=True, exist_ok=True)
    return Path(shutil.copy(library, folder / LIBRARY.name))


def test_environment_variable_names_it(run_python: Run, package: Path, tmp_path: Path) -> None:
    put_library(package / "tabrin")
    named = put_library(tmp_path / "elsewhere")
    result = run_python(["-c", PRINT_PATH], {"TABRIN_LIBRARY": str(named)}, package)
    assert (result.stdout, result.stderr) == (f"{named}\n", "")


def test_beside_the_package(run_python: Run, package: Path) -> None:
    beside = put_library(package / "tabrin")
    result = run_python(["-c", PRINT_PATH], package=package)
    assert (result.stdout, result.stderr) == (f"{beside}\n", "")


def test_build_folder_of_the_source_tree(run_python: Run, tmp_path: Path) -> None:
    tree = tmp_path / "tree"
    shutil.copytree(BINDING / "src" / "tabrin", tree / "bindings" / "python" / "src" / "tabrin")
    (tree / "include").mkdir()
    (tree / "include" / "tabrin.h").touch()
    built = put_library(tree / "build" / "linux-release")
    result = run_python(["-c", PRINT_PATH], package=tree / "bindings" / "python" / "src")
    assert (result.stdout, result.stderr) == (f"{built}\n", "")


def test_search_path_of_the_system(run_python: Run, package: Path, tmp_path: Path) -> None:
    put_library(tmp_path / "system")
    result = run_python(["-c", PRINT_PATH], {"LD_LIBRARY_PATH": str(tmp_path / "system")}, package)
    assert (result.stdout, result.stderr) == (f"{LIBRARY.name}\n", "")


def test_explicit_path_goes_first(run_python: Run, package: Path, tmp_path: Path) -> None:
    put_library(package / "tabrin")
    chosen = put_library(tmp_path / "chosen")
    code = f"import tabrin; tabrin.load({str(chosen)!r}); print(tabrin.load().path, len(tabrin.read({str(SAMPLE)!r})))"
    result = run_python(["-c", code], {"TABRIN_LIBRARY": "missing.so"}, package)
    assert (result.stdout, result.stderr) == (f"{chosen} 6\n", "")


def test_import_needs_no_library(run_python: Run, package: Path) -> None:
    result = run_python(["-c", "import tabrin; print(tabrin.Signal('S', 0, 8).name)"], package=package)
    assert (result.stdout, result.stderr) == ("S\n", "")


def complaint(run_python: Run, package: Path, path: Optional[Path] = None, name: str = LIBRARY.name) -> str:
    argument = "" if path is None else repr(str(path))
    code = (
        f"import tabrin, tabrin._library\ntabrin._library.FILE_NAME = {name!r}\n"
        f"try:\n    tabrin.load({argument})\nexcept tabrin.LibraryError as error:\n    print(error)"
    )
    result = run_python(["-c", code], package=package)
    assert result.stderr == ""
    return str(result.stdout)


# Under its own name the library may be installed on this system, and be found.
ABSENT = "libtabrin64_nowhere.so"


def test_says_where_it_looked(run_python: Run, package: Path) -> None:
    lines = complaint(run_python, package, name=ABSENT).splitlines()
    assert lines[0] == "the Tabrin library was not found. Looked at:"
    assert lines[1] == "  the environment variable TABRIN_LIBRARY: not set"
    assert lines[2] == f"  {package / 'tabrin' / ABSENT}: no such file"
    assert lines[3].startswith(f"  the system's search path (with LD_LIBRARY_PATH): {ABSENT}: cannot open")
    assert len(lines) == 4


def test_names_the_build_folder_it_looked_at(run_python: Run, tmp_path: Path) -> None:
    tree = tmp_path / "tree"
    shutil.copytree(BINDING / "src" / "tabrin", tree / "bindings" / "python" / "src" / "tabrin")
    (tree / "include").mkdir()
    (tree / "include" / "tabrin.h").touch()
    lines = complaint(run_python, tree / "bindings" / "python" / "src", name=ABSENT).splitlines()
    assert lines[3] == f"  {tree / 'build' / 'linux-release' / ABSENT}: no such file"


def test_missing_file_is_not_passed_over(run_python: Run, package: Path, tmp_path: Path) -> None:
    put_library(package / "tabrin")
    missing = tmp_path / "missing.so"
    assert complaint(run_python, package, missing).startswith(f"{missing} cannot be loaded: ")


def test_library_of_another_version(run_python: Run, package: Path) -> None:
    assert complaint(run_python, package, OTHER_VERSION) == (
        f"{OTHER_VERSION} is version 1.30 of the Tabrin library; this package needs 1.31\n"
    )


def test_library_of_another_version_beside_the_package(run_python: Run, package: Path) -> None:
    beside = put_library(package / "tabrin", OTHER_VERSION)
    assert (
        complaint(run_python, package) == f"{beside} is version 1.30 of the Tabrin library; this package needs 1.31\n"
    )


def test_another_library(run_python: Run, package: Path) -> None:
    assert complaint(run_python, package, Path("libc.so.6")) == (
        "libc.so.6 is not the Tabrin library: it has no function TabrinGetLibraryVersion\n"
    )


def test_second_library_is_refused(tmp_path: Path) -> None:
    before = tabrin.load()
    assert before == tabrin.LibraryInfo(str(LIBRARY), "1.31")
    assert tabrin.load(LIBRARY) == before
    other = put_library(tmp_path)
    with pytest.raises(tabrin.LibraryError, match="is in use already, so .* cannot be loaded"):
        tabrin.load(other)
    assert tabrin.load() == before
    assert len(tabrin.read(SAMPLE)) == 6


def test_path_of_the_wrong_type() -> None:
    with pytest.raises(tabrin.FieldTypeError, match="path: expected a path, not int"):
        tabrin.load(5)  # type: ignore[arg-type]
