"""`tabrin show`: text, pictures of frames, and JSON. The expected texts and pictures are drawn by hand."""

import json

from support import END, ProgramTest, Settings, head


class ShowText(ProgramTest):
    def test_whole_file_is_shown(self):
        self.write("a.dbc", head(
            "BO_ 256 Status: 2 Engine",
            ' SG_ Speed : 4|12@1+ (0.1,0) [0|100] "km/h" Gear,Dash',
            "BO_ 257 Empty: 8 Kestrune",
            'CM_ BO_ 256 "Sent when',
            'it \\"changes\\"";',
            'CM_ SG_ 256 Speed "of the car";',
            'BA_DEF_ BO_ "GenMsgCycleTime" INT 0 1000;',
            'BA_DEF_ BO_ "GenMsgSendType" ENUM "cyclic","event";',
            'BA_DEF_ SG_ "GenSigStartValue" INT -100 100;',
            'BA_DEF_ "J1939PGN" INT 0 1;',
            'BA_ "J1939PGN" 1;',
            'BA_ "GenMsgCycleTime" BO_ 256 50;',
            'BA_ "GenMsgSendType" BO_ 256 1;',
            'BA_ "GenSigStartValue" SG_ 256 Speed 7;',
            'VAL_ 256 Speed 0 "stands" -1 "unknown" 4095 "too fast" ;',
        ))
        status, output, errors = self.run_program("show", "a.dbc")
        self.assertEqual((0, ""), (status, errors))
        # No send type is given for the second message: it has the first of the list, as in the definition.
        expected = """\
a.dbc: 2 messages, 1 signal, 0 errors
protocol: J1939, CAN FD: no

Status  0x100 (256), 2 bytes, from Engine, event, every 50 ms
  Sent when
  it "changes"

     signal  start  bits  order   type      factor  offset  minimum  maximum  unit  receivers
  a  Speed       4    12  little  unsigned     0.1       0        0      100  km/h  Gear, Dash

  byte    7    6    5    4    3    2    1    0
       ┌───────────────────┬───────────────────┐
     0 │ a Speed          ]│                   │
       │                   └───────────────────┤
     1 │[a                                     │
       └───────────────────────────────────────┘

  a Speed
    of the car
    start value (raw): 7
      -1  unknown
       0  stands
    4095  too fast

Empty  0x101 (257), 8 bytes, from Kestrune, cyclic
"""
        self.assertEqual(expected, output)

    def test_statements_left_out_are_listed_at_the_end(self):
        self.write("a.dbc", head("BO_ 1 Good: 8 Engine", "BO_ x Bad: 8 Engine", END))
        status, output, errors = self.run_program("show", "a.dbc")
        self.assertEqual((0, ""), (status, errors))
        self.assertTrue(output.endswith(
            "\nLeft out, because they cannot be read:\n"
            "a.dbc:5: error 0: no message identifier: a decimal number up to 4294967295 has to follow BO_\n"
            "    BO_ x Bad: 8 Engine\n"), output)

    def test_long_names_stand_beside_those_of_files(self):
        self.write("a.dbc", head(
            "BO_ 1 Msg: 1 Engine",
            ' SG_ Sig : 0|8@1+ (1,0) [0|0] "°C" Gear',
            'BA_DEF_ BO_ "Kestrune_Msg_Name" STRING ;',
            'BA_DEF_ SG_ "Kestrune_Sig_Name" STRING ;',
            'BA_ "Kestrune_Msg_Name" BO_ 1 "Motor heiß";',
            'BA_ "Kestrune_Sig_Name" SG_ 1 Sig "速度 Ä";',
        ))
        _, output, _ = self.run_program("show", "a.dbc", "Msg")
        # The two wide characters take two columns each.
        expected = """\
Motor heiß  0x001 (1), 1 byte, from Engine
  in files: Msg

     signal  start  bits  order   type      factor  offset  minimum  maximum  unit  receivers
  a  速度 Ä      0     8  little  unsigned       1       0        0        0  °C    Gear

  byte    7    6    5    4    3    2    1    0
       ┌───────────────────────────────────────┐
     0 │[a 速度 Ä                             ]│
       └───────────────────────────────────────┘

  a 速度 Ä
    in files: Sig
"""
        self.assertEqual(expected, output)

    def test_control_characters_do_not_reach_the_terminal(self):
        # U+009B begins a command to a terminal, as ESC [ does.
        self.write("a.dbc", head("BO_ 1 Msg: 8 Engine", 'CM_ BO_ 1 "a\u009b31mb";', END))
        _, output, _ = self.run_program("show", "a.dbc")
        self.assertIn("  a?31mb\n", output)

    def test_message_is_chosen_by_name_or_identifier(self):
        self.write("a.dbc", head(
            "BO_ 256 First: 8 Engine",
            "BO_ 2147483904 Second: 8 Engine",  # 256 too, but of 29 bits
            "BO_ 2566844672 Third: 8 Engine",
            'BA_DEF_ BO_ "Kestrune_Msg_Name" STRING ;',
            'BA_ "Kestrune_Msg_Name" BO_ 2566844672 "Third message";',
        ))
        first = "First  0x100 (256), 8 bytes, from Engine\n"
        second = "Second  0x00000100 (256, 29 bits), 8 bytes, from Engine\n"
        third = "Third message  0x18FEF100 (419361024, 29 bits), 8 bytes, from Engine\n  in files: Third\n"
        for text, expected in (("First", first), ("Second", second), ("Third", third), ("Third message", third),
                               ("256", first + "\n" + second), ("0x100", first + "\n" + second),
                               ("2147483904", second), ("0x80000100", second), ("419361024", third),
                               ("0X18fef100", third), ("2566844672", third)):
            with self.subTest(text):
                self.assertEqual((0, expected, ""), self.run_program("show", "a.dbc", text))

    def test_message_that_is_not_there_is_told(self):
        self.write("a.dbc", head("BO_ 256 EngineStatus: 8 Engine", "BO_ 257 GearStatus: 8 Engine"))
        for text in ("Engine", "first", "257x", "0x", "99999999999999999999999", "-1", "0"):
            with self.subTest(text):
                self.expect_failure(["show", "a.dbc", "--", text], f'a.dbc: there is no message "{text}"',
                                    "give its name, or its identifier")
        errors = self.expect_failure(["show", "a.dbc", "status"], "Similar names: EngineStatus, GearStatus")
        self.assertNotIn(",,", errors)


class ShowPicture(ProgramTest):
    def picture(self, length, *signals):
        """The picture of a message, and what is noted below it."""
        lines = [f' SG_ {signal} (1,0) [0|0] "" Gear' for signal in signals]
        self.write("a.dbc", head(f"BO_ 1 Msg: {length} Engine", *lines))
        status, output, errors = self.run_program("show", "a.dbc", "Msg")
        self.assertEqual((0, ""), (status, errors))
        # Behind the head and the table, each with an empty line.
        return output.split("\n\n", 2)[2]

    def test_big_endian_runs_downwards_to_the_right(self):
        self.assertEqual("""\
  byte    7    6    5    4    3    2    1    0
       ┌───────────────────┬───────────────────┐
     0 │                   │[a Angle           │
       ├───────────────────┘         ┌─────────┤
     1 │ a                          ]│         │
       └─────────────────────────────┴─────────┘
""", self.picture(2, "Angle : 3|10@0-"))

    def test_single_bits_and_names_that_do_not_fit(self):
        self.assertEqual("""\
  byte    7    6    5    4    3    2    1    0
       ┌────┬─────────┬────────────────────────┐
     0 │[a ]│[b Long…]│                        │
       └────┴─────────┴────────────────────────┘
""", self.picture(1, "Flag : 7|1@1+", "LongName : 5|2@1+"))

    def test_name_stands_where_it_fits(self):
        # Four bits in the first byte are too few for this name, the second byte is wide enough.
        self.assertEqual("""\
  byte    7    6    5    4    3    2    1    0
       ┌───────────────────┬───────────────────┐
     0 │ a                ]│                   │
       │                   └───────────────────┤
     1 │[a AVeryLongNameOfASignal              │
       └───────────────────────────────────────┘
""", self.picture(2, "AVeryLongNameOfASignal : 4|12@1+"))

    def test_bits_of_several_signals_name_them_all(self):
        self.assertEqual("""\
  byte    7    6    5    4    3    2    1    0
       ┌─────────┬────┬─────────┬──────────────┐
     0 │         │[b  │ a+b     │ a A         ]│
       └─────────┴────┴─────────┴──────────────┘
  overlap: a A, b B
""", self.picture(1, "A : 0|5@1+", "B : 3|3@1+"))

    def test_bits_outside_of_the_frame_are_noted(self):
        self.assertEqual("""\
  byte    7    6    5    4    3    2    1    0
       ┌───────────────────┬───────────────────┐
     0 │ a Wide           ]│                   │
       └───────────────────┴───────────────────┘
  outside of the frame: 4 bits of a Wide
  outside of the frame: 1 bit of b Far
""", self.picture(1, "Wide : 4|8@1+", "Far : 4294967295|1@1+"))

    def test_rows_that_look_the_same_are_joined(self):
        self.assertEqual("""\
    byte    7    6    5    4    3    2    1    0
         ┌───────────────────────────────────────┐
       0 │                                       │
         ├───────────────────────────────────────┤
       1 │ a Text                               ]│
   2..49 │ a                                     │
      50 │[a                                     │
         ├───────────────────────────────────────┤
  51..62 │                                       │
         ├───────────────────────────────────────┤
      63 │[b Crc                                ]│
         └───────────────────────────────────────┘
""", self.picture(64, "Text : 8|400@1+", "Crc : 504|8@1+"))

    def test_one_picture_for_each_value_of_the_switch(self):
        self.write("a.dbc", head(
            "BO_ 1 Msg: 2 Engine",
            ' SG_ Page M : 0|4@1+ (1,0) [0|0] "" Gear',
            ' SG_ High m1 : 8|8@1+ (1,0) [0|0] "" Gear',
            ' SG_ Low m0 : 15|4@0+ (1,0) [0|0] "" Gear',
            ' SG_ Always : 4|4@1+ (1,0) [0|0] "" Gear',
            'VAL_ 1 Page 0 "idle" 5 "unused" ;',
        ))
        _, output, _ = self.run_program("show", "a.dbc", "Msg")
        self.assertEqual("""\
     signal  mux  start  bits  order   type      factor  offset  minimum  maximum  receivers
  a  Page    M        0     4  little  unsigned       1       0        0        0  Gear
  b  High    m1       8     8  little  unsigned       1       0        0        0  Gear
  c  Low     m0      15     4  big     unsigned       1       0        0        0  Gear
  d  Always           4     4  little  unsigned       1       0        0        0  Gear

  Page = 0 (idle)
  byte    7    6    5    4    3    2    1    0
       ┌───────────────────┬───────────────────┐
     0 │[d Always         ]│[a Page           ]│
       ├───────────────────┼───────────────────┤
     1 │[c Low            ]│                   │
       └───────────────────┴───────────────────┘

  Page = 1
  byte    7    6    5    4    3    2    1    0
       ┌───────────────────┬───────────────────┐
     0 │[d Always         ]│[a Page           ]│
       ├───────────────────┴───────────────────┤
     1 │[b High                               ]│
       └───────────────────────────────────────┘

  a Page
    0  idle
    5  unused
""", output.split("\n\n", 1)[1])

    def test_switched_signals_without_a_switch_have_a_picture(self):
        self.assertEqual("""\
  switch = 7
  byte    7    6    5    4    3    2    1    0
       ┌───────────────────────────────────────┐
     0 │[a S                                  ]│
       └───────────────────────────────────────┘
""", self.picture(1, "S m7 : 0|8@1+"))

    def test_frames_without_a_picture_say_so(self):
        self.assertEqual("  outside of the frame: 8 bits of a S\n", self.picture(0, "S : 0|8@1+"))
        self.assertEqual("  (no picture: the frame is longer than 4096 bytes)\n", self.picture(4097, "S : 0|8@1+"))
        self.assertEqual("  (no picture: the frame is longer than 4096 bytes)\n",
                         self.picture(4294967295, "S : 0|4294967295@1+"))

    def test_signal_longer_than_any_frame_is_cut(self):
        self.assertEqual("""\
  byte    7    6    5    4    3    2    1    0
       ┌───────────────────────────────────────┐
     0 │ a S                                  ]│
     1 │ a                                     │
       └───────────────────────────────────────┘
  outside of the frame: 4294967279 bits of a S
""", self.picture(2, "S : 0|4294967295@1+"))

    def test_many_signals_get_keys_of_two_letters(self):
        # 28 signals of one bit: the 27th is aa, the 28th ab; cells stay wide enough for two letters and both marks.
        picture = self.picture(4, *(f"S{i} : {i}|1@1+" for i in range(28)))
        self.assertIn("     0 │[h ]│[g ]│[f ]│[e ]│[d ]│[c ]│[b ]│[a ]│\n", picture)
        self.assertIn("     3 │                   │[ab]│[aa]│[z ]│[y ]│\n", picture)


class ShowJson(ProgramTest):
    def json(self, *arguments):
        status, output, errors = self.run_program("show", *arguments, "--json")
        self.assertEqual((0, ""), (status, errors))
        return json.loads(output)

    def test_all_that_a_file_holds_is_given(self):
        self.write("a.dbc", head(
            "BO_ 2566844672 Msg: 8 Engine",
            ' SG_ Page M : 0|8@1+ (1,0) [0|3] "" Gear,Dash',
            ' SG_ Heat m3 : 15|32@0- (0.1,-40) [-40|200.5] "°C" Gear',
            "BO_ x Bad: 8 Engine",
            "BO_ 1 None: 0 Kestrune",
            'CM_ BO_ 2566844672 "say \\"hi\\"";',
            'CM_ SG_ 2566844672 Heat "degrees";',
            'BA_DEF_ "BusType" STRING ;',
            'BA_DEF_ SG_ "GenSigInactiveValue" INT -5 5;',
            'BA_DEF_DEF_ "BusType" "CAN FD";',
            'BA_DEF_DEF_ "GenSigInactiveValue" 0;',
            'BA_ "GenSigInactiveValue" SG_ 2566844672 Heat 4;',
            'VAL_ 2566844672 Page 1 "one" 0 "zero" ;',
            "SIG_VALTYPE_ 2566844672 Heat : 1;",
        ))
        self.assertEqual({
            "file": "a.dbc", "protocol": "none", "canFd": True,
            "messages": [
                {"name": "Msg", "identifierName": "Msg", "id": 0x18FEF100, "extended": True, "length": 8,
                 "transmitter": "Engine", "comment": 'say "hi"', "sendType": "", "cycleTime": 0,
                 "signals": [
                     {"name": "Page", "identifierName": "Page", "multiplexing": {"kind": "switch"}, "startBit": 0,
                      "length": 8, "byteOrder": "little", "valueType": "unsigned", "factor": 1, "offset": 0,
                      "minimum": 0, "maximum": 3, "unit": "", "receivers": ["Gear", "Dash"], "comment": "",
                      "startValue": 0, "inactiveValue": 0,
                      "values": [{"value": 0, "text": "zero"}, {"value": 1, "text": "one"}]},
                     {"name": "Heat", "identifierName": "Heat",
                      "multiplexing": {"kind": "switched", "value": 3}, "startBit": 15, "length": 32,
                      "byteOrder": "big", "valueType": "float", "factor": 0.1, "offset": -40, "minimum": -40,
                      "maximum": 200.5, "unit": "°C", "receivers": ["Gear"], "comment": "degrees", "startValue": 0,
                      "inactiveValue": 4, "values": []}]},
                {"name": "None", "identifierName": "None", "id": 1, "extended": False, "length": 0,
                 "transmitter": "Kestrune", "comment": "", "sendType": "", "cycleTime": 0, "signals": []}],
            "errors": [
                {"line": 7, "code": 0, "statement": "BO_ x Bad: 8 Engine",
                 "message": "no message identifier: a decimal number up to 4294967295 has to follow BO_"}],
        }, self.json("a.dbc"))

    def test_one_message_is_given_alone(self):
        self.write("a.dbc", head("BO_ 1 A: 8 Engine", "BO_ 2 B: 8 Engine"))
        self.assertEqual(["B"], [message["name"] for message in self.json("a.dbc", "2")["messages"]])

    def test_plain_signals_say_so(self):
        self.write("a.dbc", head("BO_ 1 A: 8 Engine", ' SG_ S : 0|64@1- (1,0) [0|0] "" Gear',
                                 "SIG_VALTYPE_ 1 S : 2;"))
        signal = self.json("a.dbc")["messages"][0]["signals"][0]
        self.assertEqual((None, "double"), (signal["multiplexing"], signal["valueType"]))

    def test_messages_of_the_sample_file_are_given(self):
        names = [message["name"] for message in self.json(Settings.sources / "examples" / "engine.dbc")["messages"]]
        self.assertEqual(["EngineStatus", "EngineTemperatures", "GearStatus", "FuelConsumption", "EngineDetails",
                          "DashboardRequest"], names)
