#!/usr/bin/env python3
"""check_documents.py <source folder> <program tabrin>: the documents say what is so.

- Links lead to a file, and to a heading in it.
- Files and folders named in them exist, and so do the scripts, presets and test programs in their commands.
- Snippets of C and C++ are lines of an example.
- What they show of the program's output is what it prints.
- docs/interface.md has the functions, offsets and codes of the header.
"""

import json
import os
import pathlib
import re
import subprocess
import sys

FENCE = re.compile(r"^```([^\n]*)\n(.*?)^```$", re.MULTILINE | re.DOTALL)
FOLDERS = "bench|bindings|cmake|docs|examples|fuzz|include|scripts|src|tests|tools"
RECORD_SIZES = {"CanErrorData": 264, "DatabaseInfo": 8, "CanMessageData": 640, "CanSignalData": 944,
                "CanSignalEnumData": 260}


class Checker:
    def __init__(self, root, program):
        self.root = root
        self.program = program
        self.problems = 0
        self.checked = {}
        self.documents = sorted([*root.glob("*.md"), *root.glob("docs/*.md")])
        self.examples = [path.read_text(encoding="utf-8") for path in sorted(root.glob("examples/*.c*"))]
        presets = json.loads((root / "CMakePresets.json").read_text(encoding="utf-8"))
        self.presets = {preset["name"] for preset in presets["configurePresets"]}
        self.header = (root / "include" / "tabrin.h").read_text(encoding="utf-8")

    def report(self, kind, document, good, problem):
        self.checked[kind] = self.checked.get(kind, 0) + 1
        if not good:
            self.problems += 1
            print(f"{document.relative_to(self.root)}: {problem}")

    def check(self):
        for document in self.documents:
            text = document.read_text(encoding="utf-8")
            prose = FENCE.sub("", text)
            self.check_links(document, prose)
            self.check_paths(document, prose)
            for kind, block in FENCE.findall(text):
                if kind in ("c", "cpp"):
                    self.report("snippets", document, any(block in example for example in self.examples),
                                f"these lines are in no example:\n{block}")
                elif kind == "console":
                    self.check_output(document, block)
                elif kind == "sh":
                    self.check_commands(document, block)
        self.check_interface()

    def check_links(self, document, text):
        for target in re.findall(r"\]\(([^)\s]+)\)", text):
            if re.match(r"[a-z]+:", target):
                continue
            path, _, anchor = target.partition("#")
            file = document.parent / path if path else document
            good = file.exists()
            if good and anchor:
                good = anchor in self.headings(file)
            self.report("links", document, good, f"this link leads nowhere: {target}")

    @staticmethod
    def headings(file):
        """As they are turned into anchors: lower case, without punctuation, blanks as hyphens."""
        text = FENCE.sub("", file.read_text(encoding="utf-8"))
        for title in re.findall(r"^#+ +(.*)$", text, re.MULTILINE):
            yield re.sub(r"[^\w\- ]", "", title.lower()).replace(" ", "-")

    def check_paths(self, document, text):
        for path in re.findall(rf"`((?:{FOLDERS})/[\w./-]*)`", text):
            self.report("paths", document, (self.root / path).exists() or self.is_made_by_a_build(path),
                        f"there is no {path}")
        for name in re.findall(r"`([\w]+\.(?:cpp|c|h|py|sh|dbc|md))`", text):
            found = (self.root / name).exists() or any(
                next(self.root.glob(f"{folder}/**/{name}"), None) for folder in FOLDERS.split("|"))
            self.report("paths", document, found, f"there is no file {name}")

    def is_made_by_a_build(self, path):
        ignored = (self.root / ".gitignore").read_text(encoding="utf-8").split()
        return any((path + "/").startswith(folder.lstrip("/")) for folder in ignored)

    def check_output(self, document, block):
        command, output = block.split("\n", 1)
        words = command.split()
        if words[:2] != ["$", "tabrin"]:
            self.report("outputs", document, False, f"only the program tabrin is run here, not: {command}")
            return
        done = subprocess.run([self.program, *words[2:]], cwd=self.root, capture_output=True, check=False)
        printed = done.stdout.decode()
        self.report("outputs", document, printed.startswith(output) and done.returncode in (0, 1),
                    f"{command}\nprints something else:\n{printed}{done.stderr.decode()}")

    def check_commands(self, document, block):
        for line in block.splitlines():
            words = line.split("#")[0].split()
            if not words:
                continue
            if words[0].startswith("scripts/"):
                self.report("commands", document, os.access(self.root / words[0], os.X_OK),
                            f"there is no script to run: {words[0]}")
            preset = re.search(r"--preset (\S+)|build/((?:linux|windows)-\w+)", line)
            if preset:
                name = preset.group(1) or preset.group(2)
                self.report("commands", document, name in self.presets, f"there is no preset {name}")
            for test in re.findall(r"-R ([\w.]+)", line) + re.findall(r"tests/(tabrin_\w+)", line):
                self.report("commands", document, self.is_test(test), f"there is no test {test}")

    def is_test(self, name):
        return any(re.search(rf"(add_test\(NAME |tabrin_add_test_program\(){re.escape(name)}\b", path.read_text(encoding="utf-8"))
                   for path in self.root.glob("tests/**/CMakeLists.txt"))

    def check_interface(self):
        document = self.root / "docs" / "interface.md"
        text = document.read_text(encoding="utf-8")
        functions = re.findall(r"^TABRIN_API \S+ (\w+)\(", self.header, re.MULTILINE)
        listed = re.findall(r"^\| `(Tabrin\w+)` \|", text, re.MULTILINE)
        self.report("interface", document, len(functions) == 17 and sorted(functions) == sorted(listed),
                    f"functions are not those of the header: {sorted(set(functions) ^ set(listed))}")
        codes = re.findall(r"\b(TABRIN_\w+) = (\d+)", self.header)
        rows = [(name, number) for number, name in re.findall(r"^\| (\d+) \| `(TABRIN_\w+)` \|", text, re.MULTILINE)]
        self.report("interface", document, codes and sorted(codes) == sorted(rows),
                    f"codes are not those of the header: {sorted(set(codes) ^ set(rows))}")
        for record, size in RECORD_SIZES.items():
            self.check_record(document, text, record, size)

    def check_record(self, document, text, record, size):
        body = re.search(rf"typedef struct {record} \{{(.*?)\}} {record};", self.header, re.DOTALL).group(1)
        fields = re.findall(r"^    (\w+) (\w+)(\[\d+\])?; +/\* +(\d+) ", body, re.MULTILINE)
        types = {"uint32_t": "u32", "int32_t": "i32"}
        expected = [(offset, types.get(kind, kind) + array, name) for kind, name, array, offset in fields
                    if not name.startswith("reserved")]
        section = re.search(rf"^### {record}\n(.*?)(?=^##)", text, re.MULTILINE | re.DOTALL)
        found = section.group(1) if section else ""
        rows = re.findall(r"^\| (\d+) \| `([^`]+)` \| `(\w+)` \|", found, re.MULTILINE)
        self.report("interface", document, expected and expected == rows and found.lstrip().startswith(f"{size} bytes"),
                    f"{record} is not as in the header: {expected} {rows}")


def main():
    checker = Checker(pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2]).resolve())
    checker.check()
    print(", ".join(f"{count} {kind}" for kind, count in sorted(checker.checked.items())))
    # Each kind is found somewhere, or the search for it is broken.
    missing = {"links", "paths", "snippets", "outputs", "commands", "interface"} - checker.checked.keys()
    if missing:
        print(f"nothing was found to check of: {missing}")
    return 1 if checker.problems or missing else 0


if __name__ == "__main__":
    sys.exit(main())
