"""`tabrin convert`: what is written, and that a failure never costs a file."""

import os
import stat

from support import END, ProgramTest, head, only_on_linux

TWO = head(
    "BO_ 1 B: 8 Engine",
    ' SG_ Speed : 0|16@1+ (0.5,0) [0|100] "km/h" Gear',
    "BO_ 300 C: 8 Engine",
    "BO_ 20 A: 8 Engine",
)


class Convert(ProgramTest):
    def setUp(self):
        super().setUp()
        self.write("in.dbc", TWO)

    def message_lines(self, name):
        text = (self.folder / name).read_bytes().decode()
        self.assertEqual(text.count("\n"), text.count("\r\n"))
        return [line for line in text.split("\r\n") if line.startswith("BO_ ")]

    def test_messages_are_in_the_order_asked_for(self):
        a, b, c = "BO_ 20 A: 8 Engine", "BO_ 1 B: 8 Engine", "BO_ 300 C: 8 Engine"
        for options, expected, words in (
                (["--order", "id"], [c, a, b], "by identifier, the largest first"),
                (["--order", "name"], [a, b, c], "by name"),
                (["--order", "file"], [b, c, a], "in the order of the file read"),
                ([], [b, c, a], "in the order of the file read")):
            with self.subTest(options):
                self.assertEqual((0, f"out.dbc: 3 messages written, {words}\n", ""),
                                 self.run_program("convert", "in.dbc", "out.dbc", *options, "--force"))
                self.assertEqual(expected, self.message_lines("out.dbc"))
                self.assertEqual(["in.dbc", "out.dbc"], self.names())

    def test_signals_go_with_their_messages(self):
        self.run_program("convert", "in.dbc", "out.dbc")
        self.assertIn(b'BO_ 1 B: 8 Engine\r\n SG_ Speed : 0|16@1+ (0.5,0) [0|100] "km/h" Gear\r\n',
                      (self.folder / "out.dbc").read_bytes())

    def test_refuses_to_replace_a_file(self):
        self.write("out.dbc", "precious")
        self.expect_failure(["convert", "in.dbc", "out.dbc"], "tabrin: out.dbc: there is a file of that name", "--force")
        self.assertEqual(b"precious", (self.folder / "out.dbc").read_bytes())
        self.assertEqual(["in.dbc", "out.dbc"], self.names())

    def test_a_file_can_be_replaced_by_itself(self):
        status, _, _ = self.run_program("convert", "in.dbc", "in.dbc", "--order", "name", "--force")
        self.assertEqual(0, status)
        self.assertEqual(["BO_ 20 A: 8 Engine", "BO_ 1 B: 8 Engine", "BO_ 300 C: 8 Engine"],
                         self.message_lines("in.dbc"))
        self.assertEqual(["in.dbc"], self.names())

    def test_statements_that_are_lost_are_told(self):
        self.write("bad.dbc", head("BO_ 1 A: 8 Engine", "BO_ x B: 8 Engine", END))
        status, output, errors = self.run_program("convert", "bad.dbc", "out.dbc")
        self.assertEqual((1, "out.dbc: 1 message written, in the order of the file read\n"), (status, output))
        self.assertTrue(errors.startswith("bad.dbc:5: error 0: no message identifier"), errors)
        self.assertTrue(errors.endswith("tabrin: 1 statement of bad.dbc cannot be read and is missing in out.dbc\n"))
        self.assertEqual(["BO_ 1 A: 8 Engine"], self.message_lines("out.dbc"))

    def test_input_that_cannot_be_used_costs_no_file(self):
        self.write("out.dbc", "precious")
        self.write("empty.dbc", head())
        for name, words in (("none.dbc", "there is no such file"), ("empty.dbc", "there are no messages in it"),
                            (".", "this is a folder")):
            with self.subTest(name):
                self.expect_failure(["convert", name, "out.dbc", "--force"], f"tabrin: {name}: {words}")
                self.assertEqual(b"precious", (self.folder / "out.dbc").read_bytes())
                self.assertEqual(["empty.dbc", "in.dbc", "out.dbc"], self.names())

    def test_output_that_cannot_be_used_is_refused(self):
        (self.folder / "folder").mkdir()
        for name, words in (("folder", "this is a folder"), ("none/out.dbc", "no file can be made in its folder"),
                            ("", "the path to write to is empty")):
            with self.subTest(name):
                self.expect_failure(["convert", "in.dbc", name, "--force"], words)
                self.assertEqual(["folder", "in.dbc"], self.names())

    def test_output_path_that_is_too_long_is_refused(self):
        path = "/".join(["0123456789" * 12] * 2)
        (self.folder / path).mkdir(parents=True)
        self.expect_failure(["convert", "in.dbc", path + "/o.dbc"], "its path is longer than about 230 bytes")
        self.assertEqual([], os.listdir(self.folder / path))

    @only_on_linux("Wine has no special files")
    def test_output_that_is_no_ordinary_file_is_refused(self):
        pipe = self.folder / "pipe"
        os.mkfifo(pipe)
        self.expect_failure(["convert", "in.dbc", "pipe", "--force"], "pipe: this is no ordinary file")
        self.assertTrue(stat.S_ISFIFO(pipe.stat().st_mode))

    @only_on_linux("the limit on the size of files, which stands for a full disk, is one of Linux")
    def test_full_disk_costs_no_file(self):
        import resource
        for existing in (None, b"precious"):
            with self.subTest(existing):
                if existing:
                    self.write("out.dbc", existing)
                self.expect_failure(["convert", "in.dbc", "out.dbc", "--force"],
                                    "tabrin: out.dbc: not written: writing broke off: is the disk full?",
                                    preexec=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (100, 100)))
                self.assertEqual(["in.dbc"] + (["out.dbc"] if existing else []), self.names())
                if existing:
                    self.assertEqual(existing, (self.folder / "out.dbc").read_bytes())

    @only_on_linux("permissions of Linux")
    def test_replaced_file_keeps_its_permissions(self):
        path = self.write("out.dbc", "old")
        path.chmod(0o640)
        self.run_program("convert", "in.dbc", "out.dbc", "--force")
        self.assertEqual(0o640, stat.S_IMODE(path.stat().st_mode))
        self.assertEqual(3, len(self.message_lines("out.dbc")))

    @only_on_linux("permissions of Linux")
    def test_new_file_has_ordinary_permissions(self):
        self.run_program("convert", "in.dbc", "out.dbc", preexec=lambda: os.umask(0o027))
        self.assertEqual(0o640, stat.S_IMODE((self.folder / "out.dbc").stat().st_mode))

    @only_on_linux("symbolic links are a privilege on Windows")
    def test_symbolic_link_stays_one(self):
        (self.folder / "real").mkdir()
        (self.folder / "real" / "out.dbc").write_text("old")
        (self.folder / "link.dbc").symlink_to("real/out.dbc")
        self.expect_failure(["convert", "in.dbc", "link.dbc"], "there is a file of that name")
        self.assertEqual(0, self.run_program("convert", "in.dbc", "link.dbc", "--force")[0])
        self.assertTrue((self.folder / "link.dbc").is_symlink())
        self.assertEqual(3, len(self.message_lines("real/out.dbc")))
        self.assertEqual(["out.dbc"], os.listdir(self.folder / "real"))
