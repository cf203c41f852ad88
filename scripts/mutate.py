#!/usr/bin/env python3
"""mutate.py [options] [file...]: would the tests notice? Changes one thing at a time in the sources of src/ and says
which changes no test fails for.

Changed are comparisons, constants, arithmetic and boolean operators, conditions, returned values, texts, and whole
statements are dropped. Each changed source (a mutant) is compiled and linked, by itself, in a copy of the tree, and
then run: first the unit tests of that source, then the other unit tests, then the interface tests, the slow ones last
in each, up to the first failure. A mutant that a test fails for, or that takes several times as long, is killed.

Files and patterns select sources ("src/io/*", "*/text_scan.h"); without them all are taken. Those for Windows only
(*_win32.cpp) are taken by --windows, and no others: they are compiled with MinGW-w64 and run under Wine, which is slow.

docs/mutation_survivors.md lists the changes that are none, as nothing that a caller can see comes of them, each with
its reason; they are shown as such.

What was found is kept in build/mutation/log.jsonl, and a later run goes on behind it: only mutants of lines that have
changed since, or stand beside one that has, are tried again. --again tries the survivors again, which is for after a test
has been written. --quick leaves out the slow tests and most compiling; what survives it is tried in full by --again.

Needs clang-14, lld-14, cmake, ninja and what the tests need; the tests have to pass without any change.
"""
import argparse
import collections
import concurrent.futures
import ctypes
import fnmatch
import hashlib
import json
import os
import queue
import random
import re
import resource
import shutil
import signal
import subprocess
import sys
import threading
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
WORK = ROOT / "build" / "mutation"
LOG = WORK / "log.jsonl"
EXCUSES = ROOT / "docs" / "mutation_survivors.md"
SLOW_SECONDS = 0.1
COPIED = ("CMakeLists.txt", "bindings", "cmake", "include", "src", "tests", "fuzz")

# --- What is changed

TOKEN = re.compile(r"""
    (?P<skip> //[^\n]* | /\*.*?\*/ | ^[ \t]*\#(?:\\\n|[^\n])*)
  | (?P<string> "(?:\\.|[^"\\\n])*")
  | (?P<char> '(?:\\.[0-9a-f]*|[^'\\\n])')
  | (?P<number> (?:0x[0-9A-Fa-f']+|[0-9][0-9']*(?:\.[0-9]+)?(?:e[+-]?[0-9]+)?)[uUlLzZfF]*)
  | (?P<name> [A-Za-z_]\w*)
  | (?P<operator> <=>|<<=|>>=|->|::|\+\+|--|&&|\|\||[-+*/%&|^=!<>]=|<<|[-+*/%&|^!<>=?:;,.~(){}\[\]])
  | (?P<space> \s+)
""", re.X | re.S | re.M)

BINARY = {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "==", "&&": "||", "||": "&&", "+": "-",
          "-": "+", "*": "/", "/": "*", "%": "*", "<<": ">>", ">>": "<<", "&": "|", "|": "&", "^": "|", "+=": "-=",
          "-=": "+=", "|=": "&=", "&=": "|=", "<<=": ">>=", ">>=": "<<="}
UNARY = {"++": "--", "--": "++", "!": ""}
WORDS = {"true": "false", "false": "true"}
CONDITION = re.compile(r"(?:if|while) \(")
RETURNED_ENUMERATOR = re.compile(r"return ([A-Z]\w*)::([A-Z]\w*);")
RETURNED_CONSTANT = re.compile(r"return (k[A-Z]\w*);")
DECIDED = re.compile(r" (?:[<>]=?|[!=]=|&&|\|\|) |^!|;")
KEPT = re.compile(r"(?:using|template|namespace|enum|struct|class|friend|case|default|public|private|else"
                  r"|static|constexpr|const|auto|explicit|virtual|inline|if|for|while|switch|do|extern|throw|try)\b"
                  r"|return [^;]", re.S)
DECLARATION = re.compile(r"(?:[\w:]|<[^;(){}]*>)+[&*]*\s+[&*]*\w+\s*(?:[;={(\[:]|$)|[^;{}]*\b(?:delete|default);|~")


def changed_number(text):
    digits, suffix = re.fullmatch(r"(0x[0-9A-Fa-f']+|[0-9.e']+?(?:e[+-]?[0-9]+)?)([uUlLzZfF]*)", text).groups()
    if re.search(r"^(?!0x).*[.e]", digits):
        return [f"{float(digits) + 1}{suffix}"]
    octal = re.fullmatch(r"0[0-7]+", digits)
    value = int(digits.replace("'", ""), 8 if octal else 0)
    shown = hex if digits.startswith("0x") else "0{:o}".format if octal else str
    return [shown(value + 1) + suffix] + ([shown(value - 1) + suffix] if value > 0 else [])


def changed_char(text):
    code = ord(text[1:-1].encode().decode("unicode_escape"))
    return [f"'\\x{(code + 1) % 256:02x}'"]


def changed_string(text):
    body = re.findall(r"\\x[0-9a-fA-F]+|\\[0-7]{1,3}|\\.|[^\\]", text[1:-1])
    return [f'"{"".join(body)}""~"'] + ([f'"{"".join(body[:-1])}"'] if body else [])


def closing(text, start):
    """The place of the bracket that closes the one at `start`."""
    depth = 0
    for token in TOKEN.finditer(text, start):
        depth += {"(": 1, ")": -1}.get(token.group(), 0)
        if depth == 0:
            return token.start()
    return None


def dropped_statement(text, start):
    """The end of the statement that starts here, when it is one that can be left out."""
    if KEPT.match(text, start) or DECLARATION.match(text, start) or not re.match(r"[\w+*(-]", text[start:]):
        return None
    depth = 0
    for token in TOKEN.finditer(text, start):
        depth += {"(": 1, "{": 1, "[": 1, ")": -1, "}": -1, "]": -1}.get(token.group(), 0)
        if depth < 0:
            return None
        if depth == 0 and token.group() == ";":
            return token.end()
        if depth == 0 and token.group() == "}" and not re.match(r"\s*[;,).\[]", text[token.end():]):
            return None
    return None


def changes(text):
    """All changes of a source, as (start, end, replacement)."""
    before = ";"
    brackets = []
    behind_assertion = 0
    for token in TOKEN.finditer(text):
        kind, start, end, word = token.lastgroup, token.start(), token.end(), token.group()
        if word == "static_assert":
            behind_assertion = closing(text, end)
        if kind in ("space", "skip") or start <= behind_assertion:
            continue
        starts_line = text[:start].rstrip(" ").endswith("\n")
        in_block = brackets[-1:] in ([], ["{"])
        if in_block and (before in (";", "{", "}") or (before == ":" and starts_line)):
            statement_end = dropped_statement(text, start)
            if statement_end:
                yield start, statement_end, ";"
        spaced = text[start - 1].isspace() and text[end:end + 1].isspace()
        if kind == "number":
            yield from ((start, end, other) for other in changed_number(word))
        elif kind == "char":
            yield from ((start, end, other) for other in changed_char(word))
        elif kind == "string" and before != "extern":
            yield from ((start, end, other) for other in changed_string(word))
        elif word in WORDS:
            yield start, end, WORDS[word]
        elif kind == "operator" and before != "operator" and (word in UNARY or (word in BINARY and spaced)):
            yield start, end, UNARY.get(word, BINARY.get(word))
        if CONDITION.match(text, start):
            opening = text.index("(", start)
            condition = text[opening + 1:closing(text, opening)]
            if not DECIDED.search(condition):
                yield opening, closing(text, opening) + 1, f"(!({condition}))"
        for pattern, other in ((RETURNED_CONSTANT, "return {};"),
                               (RETURNED_ENUMERATOR, r"return static_cast<\1>(static_cast<int>(\1::\2) + 1);")):
            returned = pattern.match(text, start)
            if returned:
                yield start, returned.end(), returned.expand(other)
        if word in ("(", "{", "["):
            brackets.append(word)
        elif word in (")", "}", "]"):
            brackets.pop()
        before = word


class Mutant:
    def __init__(self, file, text, change):
        self.file, self.text = file, text
        self.start, self.end, self.new = change
        self.old = text[self.start:self.end]
        self.line = text.count("\n", 0, self.start) + 1

    def key(self):
        """By what is known again when other lines have changed."""
        lines = self.text.splitlines()
        around = "\n".join(line.strip() for line in lines[max(self.line - 2, 0):self.line + 1])
        column = self.start - self.text.rfind("\n", 0, self.start)
        content = f"{around}\n{column} {self.old} {self.new}"
        return f"{self.file} {hashlib.sha1(content.encode()).hexdigest()}"

    def changed_text(self):
        return self.text[:self.start] + self.new + self.text[self.end:]

    def place(self):
        """The source line and what is changed in it, which outlast changes of other lines."""
        line_start = self.text.rfind("\n", 0, self.start) + 1
        line = self.text[line_start:self.text.index("\n", self.start)]
        old, new = (re.sub(r"\s+", " ", part) for part in (self.old, self.new))
        change = "dropped" if new == ";" else f"{old} -> {new or 'nothing'}"
        if line.count(self.old) > 1:
            change += f" in column {self.start - line_start - len(line) + len(line.lstrip()) + 1}"
        return line.strip(), change

    def __str__(self):
        return f"{self.file}:{self.line}:\n- `{'` `'.join(self.place())}`: "


def excused_places():
    """The changes that are none, or that no test can notice, as listed with their reasons."""
    file = None
    for line in EXCUSES.read_text(encoding="utf-8").splitlines() if EXCUSES.exists() else ():
        if line.startswith("## "):
            file = line[3:].strip()
        entry = re.match(r"- `(.*?)` `(.*?)`:", line)
        if entry:
            yield file, *entry.groups()


def all_mutants(patterns, windows=False):
    for path in sorted((ROOT / "src").glob("*/*"), key=lambda path: (path.suffix, path)):
        file = path.relative_to(ROOT).as_posix()
        chosen = any(fnmatch.fnmatch(file, pattern) for pattern in patterns or ["*"])
        if chosen and path.suffix in (".cpp", ".h") and path.stem.endswith("_win32") == windows:
            text = path.read_text(encoding="utf-8")
            yield from (Mutant(file, text, change) for change in changes(text))


# --- How it is tried

class Failed(Exception):
    pass


def run(command, folder, cpu_seconds=None, memory=None):
    """The CPU time that a command took; Failed when it did not end well, or not in time."""
    def limit():
        ctypes.CDLL(None).prctl(1, signal.SIGKILL)  # ends with this script, however that ends
        if cpu_seconds:
            resource.setrlimit(resource.RLIMIT_CPU, (cpu_seconds, cpu_seconds + 1))
        if memory:
            resource.setrlimit(resource.RLIMIT_AS, (memory, memory))

    process = subprocess.Popen(command, cwd=folder, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                               stderr=subprocess.STDOUT, preexec_fn=limit, start_new_session=True)
    try:
        output, _ = process.communicate(timeout=10 + 10 * cpu_seconds if cpu_seconds else None)
    except subprocess.TimeoutExpired:
        output = b"out of time"
    finally:
        try:
            os.killpg(process.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
    if process.wait() != 0:
        raise Failed(f"{' '.join(map(str, command))}: {process.returncode}\n{output.decode(errors='replace')}")


class Tree:
    """A copy of the sources and its build folder."""

    quick = False

    def __init__(self, number, launcher=(), suffix="", memory=1 << 32):
        self.folder = WORK / f"tree{number}"
        self.build = self.folder / "build"
        self.launcher, self.suffix, self.memory = launcher, suffix, memory
        self.times = {}
        self.changed = None
        self.folder.mkdir(exist_ok=True)
        for name in COPIED:
            self.copy(ROOT / name, self.folder / name)
        self.configure()
        self.compile("tabrin_unit_tests", "tabrin_interface_tests")
        for program in ("tabrin_unit_tests", "tabrin_interface_tests"):
            self.times[program] = {"not known yet": 120}
            self.test(program, "*", f"--gtest_output=json:{program}.json")
            report = json.loads((self.build / "tests" / f"{program}.json").read_text(encoding="utf-8"))
            self.times[program] = {f"{suite['name']}.{case['name']}": float(case["time"].rstrip("s"))
                                   for suite in report["testsuites"] for case in suite["testsuite"]}

    def copy(self, source, target):
        """Touches only what differs, so that only that is compiled again."""
        if source.is_dir():
            target.mkdir(parents=True, exist_ok=True)
            for stale in set(os.listdir(target)) - set(os.listdir(source)):
                path = target / stale
                shutil.rmtree(path) if path.is_dir() else path.unlink()
            for entry in source.iterdir():
                self.copy(entry, target / entry.name)
        elif not target.exists() or target.read_bytes() != source.read_bytes():
            shutil.copyfile(source, target)

    def configure(self):
        """Precompiled headers save half of the time for a source, and nothing has to look for new files."""
        hook = self.folder / "precompiled.cmake"
        headers = sorted(set(re.findall(r"#include (<[a-z_]+>)", "".join(
            path.read_text(encoding="utf-8") for path in (ROOT / "src").glob("*/*.[ch]*")))))
        deferred = [f"target_precompile_headers tabrin_core PRIVATE {' '.join(headers)}", *self.further_settings()]
        hook.write_text("".join(f"cmake_language(DEFER CALL {call})\n" for call in deferred), encoding="utf-8")
        run(["cmake", "-G", "Ninja", "-S", self.folder, "-B", self.build, "-DCMAKE_BUILD_TYPE=Debug",
             "-DCMAKE_CXX_FLAGS_DEBUG=-O0 -w -D_GLIBCXX_ASSERTIONS", "-DCMAKE_SUPPRESS_REGENERATION=ON",
             "-DTABRIN_BUILD_EXAMPLES=OFF", "-DTABRIN_BUILD_TOOLS=OFF", f"-DTABRIN_CORPUS_DIR={WORK / 'no-corpus'}",
             f"-DCMAKE_PROJECT_TOP_LEVEL_INCLUDES={hook}", *self.toolchain()], WORK)

    def further_settings(self):
        return []

    def toolchain(self):
        return ["-DCMAKE_C_COMPILER=clang-14", "-DCMAKE_CXX_COMPILER=clang++-14",
                "-DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=lld", "-DCMAKE_SHARED_LINKER_FLAGS=-fuse-ld=lld"]

    def compile(self, *targets):
        run(["ninja", "-j1", *targets], self.build)

    def test(self, program, selection, *options):
        leftovers = self.build / "tests" / "tmp" / program
        shutil.rmtree(leftovers, ignore_errors=True)
        leftovers.mkdir(parents=True)
        chosen, _, left_out = (part.split(":") for part in selection.partition("-"))
        usual = sum(seconds for case, seconds in self.times[program].items()
                    if any(fnmatch.fnmatchcase(case, one) for one in chosen) and case not in left_out)
        run([*self.launcher, self.build / "tests" / (program + self.suffix), f"--gtest_filter={selection}",
             "--gtest_fail_fast", "--gtest_brief=1", *options], self.build / "tests", 2 + int(4 * usual), self.memory)

    def test_all(self, program):
        slow = ":".join(case for case, seconds in self.times[program].items() if seconds > SLOW_SECONDS)
        self.test(program, "*-" + slow)
        if slow and not self.quick:
            self.test(program, slow)

    def own_tests(self, file):
        """The filter for the unit tests of a source: those in the test files that have its name."""
        stem = re.sub(r"_(posix|win32)$", "", Path(file).stem)
        suites = set()
        for path in (self.folder / "tests").glob(f"*/{stem}*.cpp"):
            suites |= set(re.findall(r"^TEST(?:_[FP])?\((\w+),", path.read_text(encoding="utf-8"), re.M))
        built = {case.split(".")[0].split("/")[-1] for case in self.times["tabrin_unit_tests"]}
        return ":".join(f"{suite}.*:*/{suite}.*" for suite in sorted(suites & built))

    def verdict(self, mutant):
        programs = ["tabrin_unit_tests", "tabrin_interface_tests"]
        if mutant.file.startswith("src/api/"):
            programs.remove("tabrin_unit_tests")  # they do without that layer
        elif mutant.file.endswith(".h"):
            programs.reverse()  # most unit tests include a header, and would all have to be compiled first
        for program in programs:
            try:
                self.compile("tabrin64" if program == "tabrin_interface_tests" else program)
            except Failed:
                return "did not build"
            try:
                self.compile(program)
                self.run_tests(program, mutant.file)
            except Failed:
                return "killed"
        return "survived"

    def run_tests(self, program, file):
        own = self.own_tests(file) if program == "tabrin_unit_tests" else ""
        if own:
            self.test(program, own)
        self.test_all(program)

    def attempt(self, mutant):
        path = self.folder / mutant.file
        if self.changed not in (None, path):
            self.restore()
        self.changed = path
        path.write_text(mutant.changed_text(), encoding="utf-8")
        self.note_changed(path)
        return self.verdict(mutant)

    def note_changed(self, path):
        pass

    def restore(self):
        if self.changed:
            shutil.copyfile(ROOT / self.changed.relative_to(self.folder), self.changed)
            self.note_changed(self.changed)
            self.changed = None


class QuickHeaderTree(Tree):
    """Where a header is changed, only the library is compiled again, in one piece. What the unit tests have of the header
    comes from that piece, too, as it is linked in front of them; but for what the compiler puts in place, such as
    constants. So what survives may not survive --again, which compiles them."""

    def __init__(self, number):
        super().__init__(f"_headers{number}")

    def further_settings(self):
        library = self.build / "CMakeFiles/tabrin_core.dir/Unity/unity_0_cxx.cxx.o"
        return ["set_target_properties tabrin_core PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 0",
                f"target_link_options tabrin_unit_tests BEFORE PRIVATE LINKER:-z,muldefs {library}"]

    def note_changed(self, path):
        os.utime(path, (1, 1))
        for target in ("tabrin_core", "tabrin64"):
            for compiled in (self.build / f"CMakeFiles/{target}.dir").glob("*/**/*.o"):
                compiled.unlink()


class WindowsTree(Tree):
    def __init__(self, number):
        wine = shutil.which("wine64", path=os.environ["PATH"] + ":/usr/lib/wine")
        prefix = WORK / "wine"
        os.environ.update(WINEPREFIX=str(prefix), WINEDEBUG="-all", WINEDLLOVERRIDES="mscoree,mshtml,winedbg.exe=d")
        run(["bash", ROOT / "scripts" / "wine_server.sh", "start", wine, prefix], ROOT)
        super().__init__(f"_windows{number}", [wine], ".exe", None)

    def toolchain(self):
        return ["--toolchain", self.folder / "cmake" / "mingw-w64-x86_64.cmake"]


def work(number, kind, waiting, results, lock):
    tree = kind(number)
    while True:
        try:
            mutants = waiting.get_nowait()
        except queue.Empty:
            tree.restore()
            return
        for mutant in mutants:
            start = time.monotonic()
            result = tree.attempt(mutant)
            with lock, open(LOG, "a", encoding="utf-8") as log:
                results[mutant.key()] = result
                entry = {"key": mutant.key(), "result": result, "seconds": round(time.monotonic() - start, 2)}
                log.write(json.dumps(entry) + "\n")
                if result == "survived":
                    print(mutant, flush=True)


def try_all(mutants, results, jobs, kind):
    waiting = queue.Queue()
    for start in range(0, len(mutants), 25):  # neighbours share a source, and changing back costs a compilation
        waiting.put(mutants[start:start + 25])
    lock = threading.Lock()
    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        for worker in [pool.submit(work, number, kind, waiting, results, lock) for number in range(jobs)]:
            worker.result()


def by_tree(mutants, options):
    headers = [mutant for mutant in mutants if mutant.file.endswith(".h") and options.quick]
    others = [mutant for mutant in mutants if mutant not in headers]
    return (WindowsTree if options.windows else Tree, others), (QuickHeaderTree, headers)


# --- What is said

def print_table(mutants, results):
    excused = set(excused_places())
    tally = collections.defaultdict(collections.Counter)
    for mutant in mutants:
        result = results.get(mutant.key(), "not tried")
        if result == "survived" and (mutant.file, *mutant.place()) in excused:
            result = "no change"
        for row in (mutant.file, "all"):
            tally[row][result] += 1
    columns = ("killed", "survived", "no change", "did not build", "not tried")
    print(f"\n{'':36}" + "".join(f"{column:>15}" for column in columns) + f"{'killed':>10}")
    tally["all"] = tally.pop("all")
    for row, counts in tally.items():
        changed = counts["killed"] + counts["survived"]
        share = f"{100 * counts['killed'] / changed:.1f} %" if changed else "-"
        print(f"{row:36}" + "".join(f"{counts[column]:15}" for column in columns) + f"{share:>10}")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("files", nargs="*", help="sources or patterns, from the root of the repository")
    parser.add_argument("--sample", type=int, metavar="N", help="try only N mutants, drawn at random")
    parser.add_argument("--seed", type=int, default=1, help="what to draw them by (1)")
    parser.add_argument("--jobs", type=int, default=1, help="copies of the tree to work in side by side (1)")
    parser.add_argument("--windows", action="store_true", help="the sources for Windows, under Wine")
    parser.add_argument("--quick", action="store_true", help="leave out slow tests, which --again catches up on")
    parser.add_argument("--again", action="store_true", help="try again what survived")
    parser.add_argument("--report", action="store_true", help="try nothing, print the table and the survivors")
    options = parser.parse_args()
    Tree.quick = options.quick

    WORK.mkdir(parents=True, exist_ok=True)
    mutants = list(all_mutants(options.files, options.windows))
    if options.sample is not None and options.sample < len(mutants):
        chosen = set(random.Random(options.seed).sample(range(len(mutants)), options.sample))
        mutants = [mutant for number, mutant in enumerate(mutants) if number in chosen]
    results = {}
    if LOG.exists():
        for line in LOG.read_text(encoding="utf-8").splitlines():
            entry = json.loads(line)
            results[entry["key"]] = entry["result"]

    excused = set(excused_places())
    if options.report:
        for mutant in mutants:
            if results.get(mutant.key()) == "survived" and (mutant.file, *mutant.place()) not in excused:
                print(mutant)
    else:
        done = ("killed", "did not build") if options.again else ("killed", "did not build", "survived")
        pending = [mutant for mutant in mutants if results.get(mutant.key()) not in done]
        if options.again:
            pending = [mutant for mutant in pending
                       if mutant.key() in results and (mutant.file, *mutant.place()) not in excused]
        try:
            for kind, mutants_of_kind in by_tree(pending, options):
                if mutants_of_kind:
                    try_all(mutants_of_kind, results, options.jobs, kind)
        except Failed as failure:
            sys.exit(f"without any change: {failure}")
    print_table(mutants, results)


if __name__ == "__main__":
    sys.exit(main())
