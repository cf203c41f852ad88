#!/usr/bin/env python3
"""Runs the tests of the companion program and writes a report of the form that GoogleTest has, which scripts/test.sh counts.

A program for Windows is started through an emulator; files and folders are named as on the build machine, which Wine finds
on its drive Z:."""

import argparse
import pathlib
import shutil
import sys
import time
import unittest
import xml.etree.ElementTree as ElementTree

from support import Settings


class Report(unittest.TextTestResult):
    """Keeps what became of each case."""

    def __init__(self, *arguments, **keywords):
        super().__init__(*arguments, **keywords)
        self.cases = []

    def startTest(self, test):
        super().startTest(test)
        self.cases.append([test, time.monotonic(), None, None])

    def stopTest(self, test):
        self.cases[-1][1] = time.monotonic() - self.cases[-1][1]
        super().stopTest(test)

    def addSkip(self, test, reason):
        super().addSkip(test, reason)
        self.cases[-1][2] = reason

    def addFailure(self, test, error):
        super().addFailure(test, error)
        self.cases[-1][3] = "failure"

    def addError(self, test, error):
        super().addError(test, error)
        self.cases[-1][3] = "failure"

    def addSubTest(self, test, subtest, error):
        super().addSubTest(test, subtest, error)
        if error is not None:
            self.cases[-1][3] = "failure"

    def write(self, path):
        failed = sum(1 for case in self.cases if case[3])
        root = ElementTree.Element("testsuites", tests=str(len(self.cases)), failures=str(failed), errors="0")
        suite = ElementTree.SubElement(root, "testsuite", name="program")
        for test, seconds, skipped, failure in self.cases:
            area, name = test.id().split(".")[-2:]
            case = ElementTree.SubElement(suite, "testcase", name=name, status="run", time=f"{seconds:.3f}",
                                          classname=area)
            if skipped is not None:
                ElementTree.SubElement(case, "skipped", message=skipped)
            if failure is not None:
                ElementTree.SubElement(case, "failure")
        ElementTree.indent(root)
        ElementTree.ElementTree(root).write(path, encoding="utf-8", xml_declaration=True)


def parse_arguments():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--program", type=pathlib.Path, required=True)
    parser.add_argument("--library", type=pathlib.Path, required=True)
    parser.add_argument("--sources", type=pathlib.Path, required=True)
    parser.add_argument("--temp", type=pathlib.Path, required=True)
    parser.add_argument("--emulator", default="")
    parser.add_argument("--windows", action="store_true")
    parser.add_argument("--report", type=pathlib.Path)
    parser.add_argument("names", nargs="*", help="only these, for example show_test.ShowJson")
    return parser.parse_args()


def main():
    arguments = parse_arguments()
    Settings.program = arguments.program.resolve()
    Settings.library = arguments.library.resolve()
    Settings.sources = arguments.sources.resolve()
    Settings.emulator = [arguments.emulator] if arguments.emulator else []
    Settings.windows = arguments.windows
    shutil.rmtree(arguments.temp, ignore_errors=True)
    arguments.temp.mkdir(parents=True)
    Settings.temp = arguments.temp.resolve()

    # Imported only now: decorators of the tests ask the settings.
    loader = unittest.defaultTestLoader
    folder = pathlib.Path(__file__).parent
    tests = (loader.loadTestsFromNames(arguments.names) if arguments.names
             else loader.discover(str(folder), pattern="*_test.py"))
    result = unittest.TextTestRunner(stream=sys.stdout, resultclass=Report, verbosity=2).run(tests)
    if arguments.report:
        result.write(arguments.report)
    if result.testsRun == 0:
        print("no test was found")
    return 0 if result.wasSuccessful() and result.testsRun > 0 else 1


if __name__ == "__main__":
    sys.exit(main())
