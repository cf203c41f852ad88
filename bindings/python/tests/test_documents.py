"""What the documents show of this package works."""

from __future__ import annotations

import os
import re
from pathlib import Path

import pytest
from conftest import ROOT, Run


@pytest.mark.parametrize("document", ["README.md", "docs/python.md"])
def test_snippets(run_python: Run, tmp_path: Path, document: str) -> None:
    (tmp_path / "examples").symlink_to(ROOT / "examples")
    snippets = re.findall(
        r"^```python\n(.*?)^```", (ROOT / document).read_text(encoding="utf-8"), re.DOTALL | re.MULTILINE
    )
    code = "\n".join(snippets)  # later ones use what earlier ones have made
    assert "import tabrin" in code
    result = run_python(["-c", code], {"TABRIN_LIBRARY": os.environ["TABRIN_LIBRARY"]})
    assert (result.returncode, result.stderr) == (0, "")
    assert "EngineStatus" in result.stdout
