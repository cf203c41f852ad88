"""Builds a wheel that carries the shared library, for the system which that library is for.

The library is the one that the environment variable TABRIN_LIBRARY names, or that the source tree was built to.
"""

from __future__ import annotations

import os
import shutil
import sys
from pathlib import Path

from setuptools import Distribution, setup
from setuptools.command.build_py import build_py
from wheel.bdist_wheel import bdist_wheel

NAMES = {".so": "libtabrin64.so", ".dll": "tabrin64.dll"}
PRESET = {"win32": "windows-release"}.get(sys.platform, "linux-release")
TREE = Path(__file__).resolve().parents[2]


def library() -> Path:
    built = TREE / "build" / PRESET / NAMES[".dll" if sys.platform == "win32" else ".so"]
    path = Path(os.environ.get("TABRIN_LIBRARY", built))
    if path.suffix not in NAMES or not path.is_file():
        raise SystemExit(f"{path}: no such library. Build it, or name another in TABRIN_LIBRARY")
    return path


class BuildWithLibrary(build_py):
    """Puts the library beside the modules, where the package looks for it."""

    def run(self) -> None:
        super().run()
        source = library()
        folder = Path(self.build_lib) / "tabrin"
        for name in NAMES.values():  # a wheel for the other system may have been built before
            (folder / name).unlink(missing_ok=True)
        shutil.copyfile(source, folder / NAMES[source.suffix])


class SystemDependent(Distribution):
    """The library is to setuptools what an extension module is: it makes the wheel one for a system."""

    def has_ext_modules(self) -> bool:
        return True


class PlatformWheel(bdist_wheel):
    """Any Python 3, for there is no extension module inside, on one system."""

    def get_tag(self) -> tuple[str, str, str]:
        platform = "win_amd64" if library().suffix == ".dll" else "linux_x86_64"
        return "py3", "none", platform


setup(distclass=SystemDependent, cmdclass={"build_py": BuildWithLibrary, "bdist_wheel": PlatformWheel})
