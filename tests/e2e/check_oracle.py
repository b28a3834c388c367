# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
"""Checks the oracle against results that were worked out by hand."""

import unittest

from oracle import FIELDS, PIECE, SETS, VALUES, WHOLE, Oracle

# mode, input, find, replacement, output
CASES = [
    (WHOLE, b"aaa", "a", "b", b"bbb"),
    (WHOLE, b"aaaa", "aa", "a", b"aa"),
    (WHOLE, b"TEL tel", "tel", "x", b"TEL x"),
    (WHOLE, b"x", "x\ny", "y\nz", b"z"),
    (WHOLE, b"A1B2", "A\nB", "", b"12"),
    (WHOLE, b"a\nb\r\nc", "\n", "", b"a\nb\r\nc"),
    (WHOLE, b"\xef\xbb\xbfa", "a", "b", b"\xef\xbb\xbfb"),
    (WHOLE, b"\x81caf\xe9 \x80", "\u00e9", "\u20ac", b"\x81caf\x80 \x80"),
    (WHOLE, b"ab", "a", "\u0142\U0001f6a2", b"???b"),
    (WHOLE, b"", "a", "b", None),
    (FIELDS, b"N;CHARSET=a:ana", "a", "b", b"N;CHARSET=b:ana\r\n"),
    (VALUES, b"N;CHARSET=a:ana", "a", "b", b"N;CHARSET=a:bnb\r\n"),
    (VALUES, b"NOTE:meet a:10\r\n", "a", "b", b"NOTE:meet b\r\n"),
    (FIELDS, b"TEL;TYPE=a:\n:\r folded a\n\nX:1:2:3", "a", "b",
     b"TEL;TYPE=b:\r\n:\r\n folded a\r\n\r\nX:1\r\n"),
    (VALUES, b"A:x:y", "x:y", "z", b"A:x\r\n"),
    (VALUES, b"A:x", "x", "1\n2", b"A:1\r\n2\r\n"),
    (VALUES, b"\xef\xbb\xbfA:\xc3\xa9\xc5\x82\r\nB:1\r\n", "\u00e9", "e", b"A:e?\r\nB:1\r\n\r\n"),
    (VALUES, b"\xef\xbb\xbfA:1\nB:1\n", "1", "2", b"A:2\nB\r\n"),
    (VALUES, b"\xff\xfeA\0:\0\xe9\0\n\0", "\u00e9", "\u0142", b"\xff\xfeA\0:\0B\x01\r\0\n\0"),
    (VALUES, b"\xff\xfe", "a", "b", b"\xff\xfe\r\0\n\0"),
    (VALUES, b"\xff\xfe:\0a", "a", "b", b"\xff\xfe:\0b\0\r\0\n\0"),
]

SET_CASES = [
    (b"x", [("x", "y"), ("y", "z")], b"z"),
    (b"", [("x", "y")], b""),
    (b"\xff\xfe", [("x", "y")], b"\xff\xfe"),
    (b"\xef\xbb\xbfx\xc3\xa9\n", [("x", "\u00e9"), ("\u00e9\u00e9", "2"), ("", "3")], b"2\n"),
    (b"a:b:c", [(":b:", "-")], b"a-c"),
]


class OracleTest(unittest.TestCase):
    def test_single_pair(self):
        for mode, data, find, replacement, expected in CASES:
            with self.subTest(mode=mode, data=data, find=find):
                self.assertEqual(Oracle().result(data, mode, find, replacement), expected)

    def test_sets(self):
        for data, sets, expected in SET_CASES:
            with self.subTest(data=data, sets=sets):
                self.assertEqual(Oracle().result(data, SETS, sets=sets), expected)

    def test_no_match_across_pieces(self):
        data = b"." * (PIECE - 1) + b"xyxy"
        self.assertEqual(Oracle().result(data, WHOLE, "xy", "Z"), data[:-2] + b"Z")
        marked = b"\xef\xbb\xbf" + data
        self.assertEqual(Oracle().result(marked, SETS, sets=[("xy", "Z")]), data[:-4] + b"ZZ")

    def test_last_encoding_serves_the_whole_text(self):
        oracle = Oracle()
        oracle.result(b"\xfe\xffab", FIELDS, "x", "y")
        self.assertEqual(oracle.result(b"ab", WHOLE, "\u6261", "c"), b"\xff\xfec\0")
        oracle.result(b"\xef\xbb\xbf", SETS, sets=[])
        self.assertEqual(oracle.result(b"ab", WHOLE, "a", "c"), b"cb")

    def test_utf8_as_the_code_page(self):
        smile = "\U0001f600"
        for data, sets, expected in (
                (b"\xc3\xa9\xe9\xf0\x9f", [("\u00e9", "\u0416" + smile)], b"\xd0\x96\xf0\x9f\x98\x80\xe9\xf0\x9f"),
                (b"\xc3-\xa9", [("-", ""), ("\u00e9", "no")], b"\xc3\xa9"),
                (b"\xef\xbb\xbf\xc3\xa9\xff", [("\u00e9", "e")], b"e\xef\xbf\xbd"),
                (smile.encode(), [("\ud83d", "x")], b"x?"),
                (b"." * (PIECE - 1) + smile.encode() * 2, [(smile, "x")], b"." * (PIECE - 1) + smile.encode() + b"x")):
            with self.subTest(data=data[-20:], sets=sets):
                self.assertEqual(Oracle("UTF-8").result(data, SETS, sets=sets), expected)

    def test_find_lines_without_partner_are_reported(self):
        oracle = Oracle()
        self.assertEqual(oracle.result(b"AB", WHOLE, "A\nB\n", "1"), b"1B")
        self.assertEqual(oracle.reports, 2)


if __name__ == "__main__":
    unittest.main()
