"""What docs/dbc-subset.md shows of files read and written is what the program makes of them."""

import re

from support import ProgramTest, Settings


def examples():
    """Pairs of a file and of lines of what is written of it, with the line of the document they begin in."""
    text = (Settings.sources / "docs" / "dbc-subset.md").read_text(encoding="utf-8")
    blocks = [(match.group(1), match.group(2), text.count("\n", 0, match.start()) + 1)
              for match in re.finditer(r"^```dbc( written)?\n(.*?)^```$", text, re.MULTILINE | re.DOTALL)]
    for file, written in zip(blocks[::2], blocks[1::2], strict=True):
        assert file[0] is None and written[0], f"line {file[2]}: no pair"
        yield file[1], written[1], file[2]


class SubsetDocument(ProgramTest):
    def test_examples_are_written_as_shown(self):
        count = 0
        for file, expected, line in examples():
            with self.subTest(f"line {line}"):
                self.write("in.dbc", file)
                status, _, errors = self.run_program("convert", "in.dbc", "out.dbc", "--force")
                self.assertIn(status, (0, 1), errors)  # 1: the example has a faulty statement
                written = (self.folder / "out.dbc").read_bytes().decode().replace("\r\n", "\n")
                self.assertIn("\n" + expected, written)
            count += 1
        self.assertGreater(count, 8)
