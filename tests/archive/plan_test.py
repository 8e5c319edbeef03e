"""plan: which recordings go to which new lists."""

import os
import unittest

from archive_case import ArchiveCase
from archive.recording_list import read_list
from recordings import ODD_NAMES


class Plan(ArchiveCase):
    def lists(self):
        return [
            [
                os.path.relpath(each.path, os.fsencode(self.recordings))
                for each in read_list(self.folder.list(number))
            ]
            for number in self.folder.list_numbers()
        ]

    def test_puts_neighbours_into_lists_of_limited_length(self):
        for name in ("b/2.ts", "b/1.ts", "a/x.ts", "a.ts", "c.ts"):
            self.record(name)
        said, _ = self.plan("--files", "2")
        self.assertEqual(self.lists(), [[b"a.ts", b"c.ts"], [b"a/x.ts", b"b/1.ts"], [b"b/2.ts"]])
        self.assertEqual(said, "3 new lists of 5 recordings (5 new)\n")

    def test_limits_the_bytes_of_a_list(self):
        for name, size in (("a.ts", 600), ("b.ts", 400), ("c.ts", 1), ("d.ts", 5000), ("e.ts", 1)):
            self.record(name, bytes(size))
        self.plan("--bytes", "1k")
        self.assertEqual(self.lists(), [[b"a.ts", b"b.ts"], [b"c.ts"], [b"d.ts"], [b"e.ts"]])

    def test_a_list_has_size_time_and_path(self):
        path = self.record("a\tb\n.ts", b"12345")
        os.utime(path, ns=(0, 1234567890_000000042))
        self.plan()
        text = str(self.recordings) + "/a\\tb\\n.ts"
        self.assertEqual(self.folder.list(1).read_text(), f"5\t1234567890.000000042\t{text}\n")

    def test_takes_files_with_the_suffixes_only(self):
        for name in ("a.ts", "b.TS", "c.m2ts", "d.mts", "e.trp", "f.mpg", "ts", "g.ts.txt"):
            self.record(name)
        os.mkdir(self.recordings / "folder.ts")
        self.record("folder.ts/inner.ts")
        os.mkfifo(self.recordings / "pipe.ts")
        self.plan()
        self.assertEqual(
            self.lists(), [[b"a.ts", b"b.TS", b"c.m2ts", b"d.mts", b"e.trp", b"folder.ts/inner.ts"]]
        )
        self.plan("--suffix", "mpg,.txt")
        self.assertEqual(self.lists()[1:], [[b"f.mpg", b"g.ts.txt"]])

    def test_every_name_comes_back_from_its_list(self):
        for name in ODD_NAMES:
            self.record(name)
        self.plan("--files", "5")
        self.assertEqual(sorted(sum(self.lists(), [])), sorted(ODD_NAMES))

    def test_lists_are_frozen_and_what_is_new_or_changed_goes_to_new_ones(self):
        for name in ("a.ts", "b.ts", "c.ts"):
            self.record(name)
        self.plan()
        before = self.folder.list(1).read_bytes()
        self.assertEqual(self.plan()[0], "nothing new\n")
        self.record("b.ts", b"longer than before")
        os.utime(self.recordings / "c.ts", ns=(0, 5))
        self.record("d.ts")
        self.assertEqual(self.plan()[0], "1 new list of 3 recordings (1 new, 2 changed)\n")
        self.assertEqual(self.lists(), [[b"a.ts", b"b.ts", b"c.ts"], [b"b.ts", b"c.ts", b"d.ts"]])
        self.assertEqual(self.folder.list(1).read_bytes(), before)
        self.assertEqual(self.plan()[0], "nothing new\n")

    def test_what_changed_back_is_changed_too(self):
        path = self.record("a.ts", b"one")
        os.utime(path, ns=(0, 1))
        self.plan()
        self.record("a.ts", b"other")
        self.plan()
        self.record("a.ts", b"one")
        os.utime(path, ns=(0, 1))
        self.plan()
        self.assertEqual(self.lists(), [[b"a.ts"]] * 3)

    def test_an_archive_in_another_is_listed_once(self):
        self.record("inner/a.ts")
        self.plan(self.recordings / "inner")
        self.assertEqual(self.lists(), [[b"inner/a.ts"]])

    def test_links_to_files_are_followed_and_links_to_folders_are_not(self):
        self.record("a/b.ts")
        os.symlink(self.recordings, self.recordings / "a" / "circle")
        os.symlink("b.ts", self.recordings / "a" / "link.ts")
        self.plan()
        self.assertEqual(self.lists(), [[b"a/b.ts", b"a/link.ts"]])

    def test_says_what_it_left_out(self):
        self.record("a.ts")
        os.symlink("nowhere", self.recordings / "gone.ts")
        _, said = self.plan(status=1)
        self.assertIn(f"left out '{self.recordings}/gone.ts': No such file or directory", said)
        self.assertEqual(self.lists(), [[b"a.ts"]])

    def test_an_archive_that_is_not_there_is_an_error(self):
        _, said = self.command("plan", self.scratch / "nothing", status=1)
        self.assertEqual(
            said,
            f"mpeg_ts_archive: cannot read the archive '{self.scratch}/nothing': No such file or directory\n",
        )
        self.assertEqual(self.folder.list_numbers(), [])


if __name__ == "__main__":
    unittest.main()
