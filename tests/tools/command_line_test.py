"""Arguments, files with unusual names, a missing library, and where the output goes."""

import os
import shutil
import subprocess

from support import ProgramTest, Settings, head, only_on_linux

ONE = head("BO_ 1 A: 8 Engine", ' SG_ S : 0|8@1+ (1,0) [0|0] "" Gear')
COMMANDS = ("show", "check", "convert")


class Arguments(ProgramTest):
    def test_help_names_commands(self):
        status, output, errors = self.run_program("--help")
        self.assertEqual((0, ""), (status, errors))
        for word in (*COMMANDS, "--version", "Exit status: 0"):
            self.assertIn(word, output)

    def test_help_of_a_command_names_its_arguments(self):
        for command, words in (("show", ("FILE", "MESSAGE", "--json", "--color")), ("check", ("FILE", "--color")),
                               ("convert", ("IN", "OUT", "--order", "--force"))):
            with self.subTest(command):
                status, output, errors = self.run_program(command, "--help")
                self.assertEqual((0, ""), (status, errors))
                for word in (*words, "--help", "--version"):
                    self.assertIn(word, output)

    def test_version_is_that_of_program_and_library(self):
        for arguments in (["--version"], *([command, "--version"] for command in COMMANDS)):
            with self.subTest(arguments):
                status, output, errors = self.run_program(*arguments)
                self.assertEqual((0, ""), (status, errors))
                self.assertTrue(output.startswith("tabrin 1.31\nlibrary 1.31 ("), output)
                self.assertIn(Settings.library.name + ")\n", output)

    def test_wrong_calls_are_answered_with_what_is_wrong(self):
        for arguments, word in (([], "name a command: show, check or convert"), (["paint"], "paint"), (["--paint"], "--paint"),
                                (["show"], "FILE"), (["check"], "FILE"), (["convert", "a.dbc"], "OUT"),
                                (["show", "a", "b", "c"], "c"), (["show", "a.dbc", "--force"], "--force"),
                                (["check", "a.dbc", "--json"], "--json"), (["convert", "a", "b", "c"], "c"),
                                (["convert", "a", "b", "--order", "size"], "size"),
                                (["convert", "a", "b", "--order"], "--order"),
                                (["show", "a.dbc", "--color", "red"], "red")):
            with self.subTest(arguments):
                self.expect_failure(arguments, "tabrin: ", word, "--help")


class Files(ProgramTest):
    def test_files_with_unusual_names_are_used(self):
        names = ["Zählung 速度 🚗.dbc", "[a,b].dbc", "a=b.dbc", "100%.dbc", "#1 'x'.dbc", "-x.dbc"]
        if not Settings.windows:
            names += ['"quoted".dbc', "back\\slash.dbc", "*.dbc"]
        for name in names:
            with self.subTest(name):
                self.write(name, ONE)
                self.assertEqual((0, f"{name}: 1 message, 1 signal, 0 errors\n", ""),
                                 self.run_program("check", "--", name))
                self.assertEqual((0, f"new {name}: 1 message written, in the order of the file read\n", ""),
                                 self.run_program("convert", "--", name, "new " + name))
                status, output, _ = self.run_program("show", "--", "new " + name, "A")
                self.assertEqual(0, status)
                self.assertTrue(output.startswith("A  0x001 (1), 8 bytes"), output)

    def test_folder_with_an_unusual_name_is_used(self):
        folder = self.folder / "Prüfstand №1"
        folder.mkdir()
        (folder / "a.dbc").write_text(ONE)
        self.assertEqual(0, self.run_program("check", "Prüfstand №1/a.dbc")[0])
        self.assertEqual(0, self.run_program("check", folder / "a.dbc")[0])
        self.assertEqual(0, self.run_program("convert", "Prüfstand №1/a.dbc", "Prüfstand №1/b.dbc")[0])
        self.assertEqual(["a.dbc", "b.dbc"], sorted(os.listdir(folder)))

    def test_files_that_cannot_be_read_are_told(self):
        (self.folder / "folder").mkdir()
        self.write("a.dbc", ONE)
        for path, words in (("none.dbc", "none.dbc: there is no such file: check its name and folder"),
                            ("none/a.dbc", "none/a.dbc: there is no such file"),
                            ("folder", "folder: this is a folder: name a file in it"),
                            ("", ": the path is empty: name a file"),
                            ("./" * 129 + "a.dbc", "its path is longer than 259 bytes: change into its folder")):
            with self.subTest(path):
                self.expect_failure(["show", path], "tabrin: ", words)

    def test_path_of_259_bytes_is_read(self):
        self.write("a.dbc", ONE)
        self.assertEqual(0, self.run_program("check", "./" * 127 + "a.dbc")[0])

    @only_on_linux("under Wine everything can be read")
    def test_file_without_permission_is_told(self):
        path = self.write("a.dbc", ONE)
        path.chmod(0)
        if os.geteuid() != 0:
            self.expect_failure(["show", "a.dbc"], "a.dbc: it cannot be opened: check whether you may read it")
            return
        # Root may read everything, so the program and its files go where somebody else reaches them.
        shutil.copy(Settings.program, self.folder)
        shutil.copy(Settings.library, self.folder)
        self.folder.chmod(0o755)
        open_to_all = subprocess.run(["setpriv", "--reuid=65534", "--clear-groups", "test", "-x",
                                      str(self.folder / "tabrin")], check=False).returncode == 0
        if not open_to_all:
            self.skipTest("the build folder cannot be reached by another user")
        self.expect_failure(["--reuid=65534", "--clear-groups", self.folder / "tabrin", "show", "a.dbc"],
                            "a.dbc: it cannot be opened: check whether you may read it", program="setpriv")

    @only_on_linux("paths of Windows cannot be invalid UTF-8")
    def test_name_that_is_not_utf8_is_refused(self):
        with open(os.path.join(os.fsencode(self.folder), b"\xff.dbc"), "w") as file:
            file.write(ONE)
        done = subprocess.run([Settings.program, "check", b"\xff.dbc"], cwd=self.folder, capture_output=True, check=False)
        self.assertEqual(2, done.returncode)
        self.assertIn(b"its path is not valid UTF-8: rename the file", done.stderr)

    def test_wildcards_are_replaced_on_windows(self):
        if not Settings.windows:
            self.skipTest("shells do this on Linux")
        self.write("a.dbc", ONE)
        self.write("b.dbc", ONE)
        status, output, _ = self.run_program("check", "*.dbc")
        self.assertEqual(0, status)
        self.assertTrue(output.endswith("2 files: 2 messages, 2 signals, 0 errors\n"), output)


class LibraryFile(ProgramTest):
    """The program alone in a folder, with the library here and there."""

    def setUp(self):
        super().setUp()
        (self.folder / "bin").mkdir()
        shutil.copy(Settings.program, self.folder / "bin")
        self.program = self.folder / "bin" / Settings.program.name
        self.write("a.dbc", ONE)
        self.variable = "PATH" if Settings.windows else "LD_LIBRARY_PATH"

    def test_missing_library_is_told(self):
        # On Windows a library in the current folder must not be taken.
        if Settings.windows:
            shutil.copy(Settings.library, self.folder)
        errors = self.expect_failure(["check", "a.dbc"],
                                     f"tabrin: the library {Settings.library.name} cannot be loaded. It was looked for",
                                     "no such file", self.variable, "Put the library beside the program",
                                     program=self.program)
        self.assertIn(Settings.library.name + ": no such file", errors.replace("\\", "/").replace("Z:", ""))
        self.expect_failure(["--version"], "tabrin 1.31 without its library: the library", program=self.program)

    def test_help_needs_no_library(self):
        self.assertEqual(0, self.run_program("--help", program=self.program)[0])

    def test_library_beside_the_program_is_found(self):
        shutil.copy(Settings.library, self.folder / "bin")
        self.assertEqual(0, self.run_program("check", "a.dbc", program=self.program)[0])

    @only_on_linux("on Windows it lies beside the program")
    def test_library_in_the_folder_of_libraries_is_found(self):
        (self.folder / "lib").mkdir()
        shutil.copy(Settings.library, self.folder / "lib")
        status, output, errors = self.run_program("--version", program=self.program)
        self.assertEqual((0, ""), (status, errors))
        self.assertIn(f"({self.folder}/lib/{Settings.library.name})", output)

    def test_library_on_the_search_path_is_found(self):
        (self.folder / "elsewhere ü").mkdir()
        shutil.copy(Settings.library, self.folder / "elsewhere ü")
        if Settings.windows:
            environment = {"WINEPATH": "Z:" + str(self.folder / "elsewhere ü").replace("/", "\\")}
        else:
            environment = {"LD_LIBRARY_PATH": str(self.folder / "elsewhere ü")}
        self.assertEqual((0, "a.dbc: 1 message, 1 signal, 0 errors\n", ""),
                         self.run_program("check", "a.dbc", program=self.program, env=environment))

    def test_file_that_is_no_library_is_told(self):
        (self.folder / "bin" / Settings.library.name).write_text("no library" * 100)
        self.expect_failure(["check", "a.dbc"], "cannot be loaded",
                            "no library for 64-bit programs" if Settings.windows else "invalid ELF header",
                            program=self.program)

    @only_on_linux("needs some library of the system")
    def test_library_without_the_functions_is_refused(self):
        command = ["cc", "-shared", "-o", self.folder / "bin" / Settings.library.name, "-x", "c", os.devnull]
        subprocess.run(command, check=True)
        self.expect_failure(["check", "a.dbc"], "is not the library that this program needs: it has no function Tabrin",
                            program=self.program)


class Output(ProgramTest):
    @only_on_linux("there is no full device on Windows")
    def test_output_that_cannot_be_written_is_told(self):
        self.write("a.dbc", ONE)
        for arguments in (["show", "a.dbc"], ["check", "a.dbc"], ["show", "a.dbc", "--json"], ["--help"], ["--version"]):
            with self.subTest(arguments), open("/dev/full", "wb") as full:
                status, _, errors = self.run_program(*arguments, stdout=full)
                self.assertEqual(2, status)
                self.assertEqual("tabrin: the output cannot be written: No space left on device\n", errors)

    def test_colours_are_a_choice(self):
        self.write("a.dbc", ONE)
        for command in (["show", "a.dbc"], ["check", "a.dbc"]):
            for options, coloured in (([], False), (["--color", "auto"], False), (["--color", "never"], False),
                                      (["--color", "always"], True)):
                with self.subTest(command + options):
                    _, output, _ = self.run_program(*command, *options)
                    self.assertEqual(coloured, "\x1b[" in output)

    def terminal(self):
        try:
            return os.openpty()
        except OSError as error:  # in a folder that is made the root, without the devices for it
            return self.skipTest(f"there are no pseudo-terminals here: {error}")

    @only_on_linux("pseudo-terminals are of Unix")
    def test_colours_on_a_terminal(self):
        self.write("a.dbc", ONE)
        for environment, coloured in (({"TERM": "xterm"}, True), ({"TERM": "dumb"}, False),
                                      ({"TERM": "xterm", "NO_COLOR": "1"}, False),
                                      ({"TERM": "xterm", "NO_COLOR": ""}, True)):
            with self.subTest(environment):
                ours, theirs = self.terminal()
                try:
                    status, _, errors = self.run_program("check", "a.dbc", env=environment, stdout=theirs)
                    os.close(theirs)
                    output = os.read(ours, 10000)
                finally:
                    os.close(ours)
                self.assertEqual((0, ""), (status, errors))
                self.assertIn(b"a.dbc: 1 message", output)
                self.assertEqual(coloured, b"\x1b[" in output)

    @only_on_linux("signals are of Unix")
    def test_reader_that_goes_away_causes_no_complaint(self):
        self.write("a.dbc", ONE)
        line = f"'{Settings.program}' show a.dbc | true; exit ${{PIPESTATUS[0]}}"
        done = subprocess.run(["bash", "-c", line], cwd=self.folder, capture_output=True, check=False)
        self.assertIn(done.returncode, (0, 141))  # written before `true` had ended, or stopped by the system
        self.assertEqual(b"", done.stderr)
