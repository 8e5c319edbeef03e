"""The index page as text: one file, a policy that names what may run, and data that cannot end early."""

import base64
import hashlib
import json
import re
import subprocess
import unittest

from archive_case import ROOT, ArchiveCase
from archive.index_page import page_of
from archive.path_text import text_of
from recordings import ODD_NAMES

ROW = [None, 1, 1.5, None, "DVB", 2.0, 3, [0, 0, 0], [], [], None]


def data_of(page):
    return re.search(r'<script type="application/json" id="data">\n(.*?)\n</script>', page, re.DOTALL).group(
        1
    )


class Page(unittest.TestCase):
    def test_data_come_back_whatever_is_in_them(self):
        rows = [[text_of(b"/" + name), *ROW[1:]] for name in ODD_NAMES]
        rows[0][8] = ["</script><script>alert(1)</script>", "<!--", "@STYLE@", "\u2028 \u0000"]
        rows[0][3] = "<b>bold</b>"
        page = page_of(rows)
        self.assertEqual(json.loads(data_of(page)), rows)
        self.assertNotIn("<", data_of(page))

    def test_the_policy_allows_its_own_script_and_style_only(self):
        page = page_of([])
        policy = re.search(r'Content-Security-Policy" content="(.*?)"', page).group(1)
        rules = dict(rule.split(" ", 1) for rule in policy.split("; "))
        script = re.search(r'<script type="module">(.*?)</script>', page, re.DOTALL).group(1)
        style = re.search(r"<style>(.*?)</style>", page, re.DOTALL).group(1)
        for kind, text in (("script-src", script), ("style-src", style)):
            digest = base64.b64encode(hashlib.sha256(text.encode()).digest()).decode()
            self.assertEqual(rules[kind], f"'sha256-{digest}'")
        self.assertEqual(rules["default-src"], "'none'")

    def test_it_needs_no_other_file(self):
        page = page_of([])
        self.assertEqual(re.findall(r"(?:src|href|url)\s*[=(]\s*[\"']?(?!data:)[a-z/.]+", page), [])
        self.assertNotRegex(page, "https?:")


class Unpacked(ArchiveCase):
    def task(self, number):
        self.folder.results.mkdir(exist_ok=True)
        programs = ["--overview", str(self.program), "--analysis", str(self.program)]
        self.command("task", *programs, "--keep", "json,html", str(number))

    def rows_shown(self):
        return {row[0].rpartition("/")[2]: row for row in json.loads(data_of(self.folder.index.read_text()))}

    def test_each_recording_is_linked_to_its_page(self):
        sample = (ROOT / "samples" / "dvb.ts").read_bytes()
        self.record("a.ts", sample)
        self.record("b.ts", b"")
        self.record("c.ts", (ROOT / "samples" / "atsc.ts").read_bytes())
        self.plan()
        self.task(1)
        self.assertIn("3 recordings in '", self.command("catalogue", "--html")[0])
        rows = self.rows_shown()
        self.assertEqual([rows[name][10] for name in ("a.ts", "b.ts", "c.ts")],
                         ["pages/000001/0001.html", None, "pages/000001/0003.html"])  # fmt: skip
        alone = subprocess.run(
            [self.program, "--html=-", self.recordings / "c.ts"], capture_output=True, check=True
        ).stdout
        self.assertEqual((self.work / rows["c.ts"][10]).read_bytes(), alone)
        self.assertEqual(rows["a.ts"][7:10], [[0, 0, 1], ["Sample One", "Sample Two HD"], ["X.1"]])
        self.assertEqual(rows["b.ts"][3], "no transport packets found")

        # What has changed is linked to its new page, and the old one goes nowhere.
        self.record("a.ts", sample + sample)
        self.plan()
        self.task(2)
        self.command("catalogue", "--html")
        self.assertEqual(self.rows_shown()["a.ts"][10], "pages/000002/0001.html")

    def test_without_pages_there_are_no_links(self):
        self.record("a.ts", (ROOT / "samples" / "dvb.ts").read_bytes())
        self.plan()
        self.folder.results.mkdir()
        self.command("task", "--overview", str(self.program), "--analysis", "", "1")
        self.command("catalogue", "--html")
        self.assertIsNone(self.rows_shown()["a.ts"][10])
        self.assertFalse(self.folder.pages.exists())


if __name__ == "__main__":
    unittest.main()
