"""What the tests of the companion program share: how it is started, and small DBC files for it."""

import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest


class Settings:
    """Filled from the command line by run_tests.py."""

    program = None  # the finished program
    library = None  # the finished library
    emulator = []  # what starts the program on a foreign system
    windows = False
    sources = None  # root of the source tree
    temp = None


# Ends the statement in front of it. (Not every line does: "BU_:" is no keyword for the library without a blank behind it.)
END = 'VAL_TABLE_ End 0 "none" ;'


def head(*lines):
    """A DBC file of these lines behind what every file begins with; three lines more than were given."""
    return "\n".join(['VERSION ""', "", "BU_: Engine Gear", *lines, ""])


class ProgramTest(unittest.TestCase):
    """A test that runs the real program, in an empty folder of its own."""

    maxDiff = None

    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(dir=Settings.temp))
        self.addCleanup(shutil.rmtree, self.folder)

    def write(self, name, text):
        path = self.folder / name
        path.write_bytes(text if isinstance(text, bytes) else text.encode())
        return path

    def run_program(self, *arguments, program=None, env=None, stdout=subprocess.PIPE, preexec=None):
        """Returns exit status, output and errors. Line ends are those of Unix afterwards."""
        environment = {key: value for key, value in os.environ.items() if key not in ("NO_COLOR", "LD_LIBRARY_PATH")}
        environment["LC_ALL"] = "C.UTF-8"  # what Wine takes arguments to be encoded in
        environment.update(env or {})
        command = [*Settings.emulator, str(program or Settings.program), *map(os.fspath, arguments)]
        done = subprocess.run(command, cwd=self.folder, env=environment, stdout=stdout, stderr=subprocess.PIPE,
                              stdin=subprocess.DEVNULL, timeout=120, preexec_fn=preexec, check=False)
        output = (done.stdout or b"").decode().replace("\r\n", "\n")
        return done.returncode, output, done.stderr.decode().replace("\r\n", "\n")

    def expect_failure(self, arguments, *words, **keywords):
        """The call ends with status 2, prints nothing but a complaint, and that has these words in it."""
        status, output, errors = self.run_program(*arguments, **keywords)
        self.assertEqual(2, status, errors)
        self.assertEqual("", output)
        for word in words:
            self.assertIn(word, errors)
        return errors

    def names(self):
        """What lies in the folder of the test."""
        return sorted(path.name for path in self.folder.iterdir())


def only_on_linux(reason):
    return unittest.skipIf(Settings.windows, reason)
