"""`tabrin check`: every faulty statement with its place."""

from support import END, ProgramTest, head

AFTER_ERRORS = ("Signals that follow a faulty statement are left out up to the next message, without an error of their"
                " own.\n")


class Check(ProgramTest):
    def check(self, text, *, status=1):
        """What is printed for a file of this text."""
        self.write("a.dbc", text)
        got, output, errors = self.run_program("check", "a.dbc")
        self.assertEqual((status, ""), (got, errors))
        return output

    def lines(self, text):
        """The lines that the errors of a file of this text are said to be in."""
        found = [line.split(":")[1] for line in self.check(text).splitlines() if ": error " in line]
        return [int(number) for number in found]

    def test_file_without_errors_is_counted(self):
        self.assertEqual("a.dbc: 1 message, 0 signals, 0 errors\n",
                         self.check(head("BO_ 1 A: 8 Engine"), status=0))

    def test_each_code_is_put_in_words(self):
        good = "BO_ 9 Good: 8 Engine"
        cases = (
            (0, [], "BO_ x A: 8 Engine", "no message identifier"),
            (0, [], "BO_ 4294967296 A: 8 Engine", "no message identifier"),
            (1, [], "BO_ 1 A 8 Engine", "no message name"),
            (2, [], "BO_ 1 A: x Engine", "no message length"),
            (3, [good], 'SG_ A 0|8@1+ (1,0) [0|0] "" Gear', "no signal"),
            (4, [good], 'SG_ A : 0|x@1+ (1,0) [0|0] "" Gear', "no bits"),
            (5, [good], 'SG_ A : 0|8@1+ 1,0 [0|0] "" Gear', "no scale"),
            (6, [good], 'SG_ A : 0|8@1+ (1,0) 0|0 "" Gear', "no range"),
        )
        for code, before, statement, words in cases:
            with self.subTest(statement):
                output = self.check(head(*before, statement, END, ""))
                self.assertTrue(output.startswith(f"a.dbc:{4 + len(before)}: error {code}: {words}: "), output)
                self.assertIn(" has to follow " if code in (0, 2) else " have to follow ", output)
                self.assertTrue(output.endswith(
                    f"\n    {statement}\na.dbc: {len(before)} message{'s' * (1 - len(before))}, 0 signals, 1 error\n"
                    + AFTER_ERRORS), output)

    def test_lines_are_those_where_statements_begin(self):
        bad = "BO_ x A: 8 Engine"
        cases = (
            ("in front of another statement", head(bad, END), [4]),
            ("in front of empty lines", head("", bad, "", "", END), [5]),
            ("at the end of the file", head(bad), [4]),
            ("at the end of the file without a line end", head(bad).rstrip("\n"), [4]),
            ("at the end, behind empty lines", head("", "", bad), [6]),
            ("in front of empty lines at the end", head(bad, "", "", ""), [4]),
            ("two that are the same", head(bad, bad, END), [4, 5]),
            ("two that are the same at the end", head(END, bad, bad), [5, 6]),
            ("two in one line", head(bad + " " + bad, END), [4, 4]),
            ("over several lines", head("BO_ 1 A", "   : x", "  Engine", END), [4]),
            ("in a file with CR LF", head("", bad, "", END).replace("\n", "\r\n"), [5]),
            ("with a tab", head("BO_ x\tA: 8 Engine", "", END), [4]),
            ("behind other text", head("nothing " + bad, "", END), [4]),
        )
        for name, text, expected in cases:
            with self.subTest(name):
                self.assertEqual(expected, self.lines(text))

    def test_statement_that_the_library_repairs_has_its_line(self):
        text = head("BO_ x Bl\u00e4tter\x01: 8 Engine", "", END).encode("latin-1")
        self.assertEqual([4], self.lines(text))

    def test_long_statements_are_quoted_in_part(self):
        output = self.check(head("BO_ x A", " 1", " 2", " 3", " 4", END))
        self.assertIn("\n    BO_ x A\n     1\n     2\n    ...\na.dbc: ", output)

    def test_several_files_are_summed_up(self):
        self.write("good.dbc", head("BO_ 1 A: 8 Engine", ' SG_ S : 0|8@1+ (1,0) [0|0] "" Gear'))
        self.write("bad.dbc", head("BO_ x A: 8 Engine", "BO_ 2 B: 8 Engine", END))
        status, output, errors = self.run_program("check", "good.dbc", "bad.dbc")
        self.assertEqual((1, ""), (status, errors))
        self.assertEqual(
            "good.dbc: 1 message, 1 signal, 0 errors\n"
            "bad.dbc:4: error 0: no message identifier: a decimal number up to 4294967295 has to follow BO_\n"
            "    BO_ x A: 8 Engine\n"
            "bad.dbc: 1 message, 0 signals, 1 error\n"
            "2 files: 2 messages, 1 signal, 1 error\n" + AFTER_ERRORS, output)

    def test_a_file_that_cannot_be_read_does_not_hide_the_others(self):
        self.write("bad.dbc", head("BO_ x A: 8 Engine", END))
        status, output, errors = self.run_program("check", "none.dbc", "bad.dbc")
        self.assertEqual(2, status)
        self.assertEqual("tabrin: none.dbc: there is no such file: check its name and folder\n", errors)
        self.assertTrue(output.startswith("bad.dbc:4: error 0: "), output)
        self.assertIn("\n2 files: 0 messages, 0 signals, 1 error, 1 unreadable\n", output)
