"""Any path becomes one line of text and comes back."""

import random
import unittest

import archive_case  # noqa: F401, finds the modules
from archive.path_text import path_of, text_of
from recordings import ODD_NAMES


class PathText(unittest.TestCase):
    def test_of_plain_names_is_the_name(self):
        for name in ("/a/b c.ts", "/\u00fcber/\u65e5\u672c.ts", '/it\'s "it".ts', "/100%.ts"):
            self.assertEqual(text_of(name.encode()), name)

    def test_escapes_what_a_line_cannot_hold(self):
        self.assertEqual(text_of(b"a\tb\nc\rd\\e"), "a\\tb\\nc\\rd\\\\e")
        self.assertEqual(text_of(b"\x00\x1b\x7f\xff\xe2\x82"), "\\x00\\x1b\\x7f\\xff\\xe2\\x82")
        self.assertEqual(text_of(b"\xed\xa0\x80"), "\\xed\\xa0\\x80")

    def test_comes_back_whatever_the_bytes(self):
        chance = random.Random(7)
        names = [*ODD_NAMES, *(chance.randbytes(chance.randrange(40)) for _ in range(2000))]
        names += [bytes(chance.choices(b"\\ntrx0fa\xc3\xa9\n", k=12)) for _ in range(2000)]
        texts = [text_of(name) for name in names]
        self.assertEqual([path_of(text) for text in texts], names)
        self.assertEqual(len(set(texts)), len(set(names)))
        for text in texts:
            self.assertEqual(text.encode("utf-8").decode("utf-8"), text)
            self.assertNotRegex(text, "[\x00-\x1f\x7f]")

    def test_refuses_what_is_no_escape(self):
        for text in ("a\\", "\\q", "\\x4", "\\xzz", "\\X41"):
            with self.assertRaises(ValueError):
                path_of(text)


if __name__ == "__main__":
    unittest.main()
