"""The index page in a real browser."""

import pathlib
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "tests" / "page"), str(ROOT / "mpeg_ts_archive")]

from archive.index_page import page_of  # noqa: E402
from archive.path_text import text_of  # noqa: E402
from browser import Browser  # noqa: E402
from recordings import ODD_NAMES  # noqa: E402


def row(
    path,
    message=None,
    failed=(0, 0, 0),
    checks=(),
    services=(),
    page=None,
    duration=12.5,
    rate=5_000_000,
    size=7_812_500,
):
    if message is not None:
        return [path, size, 0.0, message, None, None, None, None, [], [], None]
    return [
        path,
        size,
        1_795_285_643.25,
        None,
        "DVB",
        duration,
        rate,
        list(failed),
        list(services),
        list(checks),
        page,
    ]


FEW = [
    row("/a/evening news.ts", services=["One", "Two"], page="pages/000001/0001.html"),
    row(
        "/a/film.ts",
        failed=(1, 0, 1),
        checks=["1.4", "3.8"],
        services=["Cinema"],
        duration=5400.0,
        size=9_100_000_000,
    ),
    row("/b/noise.ts", message="no transport packets found", size=0),
    row("/b/quiet.ts", failed=(0, 1, 0), checks=["2.3a"], duration=None, rate=None),
]


class IndexPage(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory(prefix="index_page_")
        cls.browser = Browser()

    @classmethod
    def tearDownClass(cls):
        cls.browser.close()
        cls.folder.cleanup()

    def open(self, rows, width=1280, dark=False):
        path = pathlib.Path(self.folder.name) / "index.html"
        path.write_text(page_of(rows), encoding="utf-8")
        self.browser.show_as(width, dark)
        self.browser.open(path)
        self.assertEqual(self.browser.messages(), [])

    def column(self, number=1):
        return [cell.text for cell in self.browser.all(f"tbody td:nth-child({number})")]

    def sort_by(self, title):
        [button] = [each for each in self.browser.all(".sort") if each.text.startswith(title)]
        self.browser.click(button)

    def names(self):
        return [path.rpartition("/")[2] for path in self.column()]

    def test_shows_each_recording_with_its_verdict(self):
        self.open(FEW)
        self.assertEqual(self.browser.one("h1").text, "4 recordings")
        self.assertEqual(self.names(), ["evening news.ts", "film.ts", "noise.ts", "quiet.ts"])
        self.assertEqual(
            self.column(2),
            [
                "no check fails",
                "2 checks fail: 1.4, 3.8",
                "no transport packets found",
                "1 check fails: 2.3a",
            ],
        )
        self.assertEqual(self.column(3), ["12.5 s", "1 h 30 min 0 s", "", ""])
        self.assertEqual(self.column(4), ["5.00 Mbit/s", "5.00 Mbit/s", "", ""])
        self.assertEqual(self.column(5), ["7.81 MB", "9.10 GB", "0 bytes", "7.81 MB"])
        self.assertEqual(self.column(7), ["One, Two", "Cinema", "", ""])
        self.assertEqual(self.column(8)[0], "2026-11-21 18:27")
        self.assertEqual(len(self.browser.all("tbody .fault")), 3)
        links = self.browser.all("tbody a")
        self.assertEqual(
            [link.get_attribute("href").rpartition("/pages/")[2] for link in links], ["000001/0001.html"]
        )

    def test_is_sorted_by_any_column_in_both_directions_what_is_not_known_last(self):
        self.open(FEW)
        self.sort_by("duration")
        self.assertEqual(self.names(), ["evening news.ts", "film.ts", "noise.ts", "quiet.ts"])
        self.sort_by("duration")
        self.assertEqual(self.names(), ["film.ts", "evening news.ts", "noise.ts", "quiet.ts"])
        self.sort_by("verdict")
        self.assertEqual(self.names(), ["evening news.ts", "quiet.ts", "film.ts", "noise.ts"])
        self.sort_by("size")
        self.sort_by("size")
        self.assertEqual(self.names()[0], "film.ts")
        self.assertEqual(self.browser.one("th[aria-sort]").text.split()[0], "size")

    def test_is_filtered_by_words_and_verdict(self):
        self.open(FEW)
        for words, names in (("CINEMA", ["film.ts"]), ("/b/ packets", ["noise.ts"]), ("2.3a", ["quiet.ts"]), ("nothing", []),
                             ("", ["evening news.ts", "film.ts", "noise.ts", "quiet.ts"])):  # fmt: skip
            self.browser.run("const f = document.getElementById('filter'); f.value = arguments[0];"
                             "f.dispatchEvent(new Event('input'))", words)  # fmt: skip
            self.assertEqual(self.names(), names, words)
        self.browser.one("#filter").send_keys("film")
        self.assertEqual(self.browser.one("#count").text, "1 of 4")
        self.browser.one("#filter").clear()
        for index, names in enumerate(
            (
                4,
                ["film.ts"],
                ["film.ts", "quiet.ts"],
                ["film.ts", "quiet.ts"],
                ["evening news.ts"],
                ["noise.ts"],
            )
        ):
            self.browser.run("const v = document.getElementById('verdict'); v.value = arguments[0];"
                             "v.dispatchEvent(new Event('change'))", str(index))  # fmt: skip
            if index:
                self.assertEqual(self.names(), names)

    def test_names_are_text_and_never_markup(self):
        rows = [row(text_of(b"/" + name), services=["<i>x</i>"]) for name in ODD_NAMES]
        rows.append(row("/z", message="<img src=x onerror=alert(1)>"))
        self.open(sorted(rows))
        expected = sorted([*(text_of(b"/" + name) for name in ODD_NAMES), "/z"])
        found = self.browser.run(
            "return [...document.querySelectorAll('tbody td:first-child')].map(cell => cell.textContent)"
        )
        self.assertEqual(found, expected)
        self.assertEqual(self.browser.all("tbody i, tbody img, tbody script"), [])

    def test_many_recordings_are_shown_in_steps(self):
        self.open([row(f"/{number:06d}.ts") for number in range(30000)])
        self.assertEqual(self.browser.one("h1").text, "30 000 recordings")
        self.assertEqual(len(self.column()), 200)
        self.browser.click(self.browser.one(".more button"))
        self.assertEqual(len(self.browser.all("tbody tr")), 2000)

    def test_fits_a_small_screen_in_light_and_in_dark(self):
        papers = set()
        for width in (390, 1280):
            for dark in (False, True):
                rows = [
                    *FEW,
                    row(
                        "/" + "long" * 60 + ".ts",
                        failed=(9, 9, 9),
                        checks=["1.4"] * 27,
                        services=["name" * 20] * 9,
                    ),
                ]
                self.open(rows, width, dark)
                self.assertLessEqual(self.browser.run("return document.documentElement.scrollWidth"), width)
                papers.add((dark, self.browser.run("return getComputedStyle(document.body).backgroundColor")))
        self.assertEqual(len(papers), 2)

    def test_an_empty_archive_has_a_page_too(self):
        self.open([])
        self.assertEqual(self.browser.one("h1").text, "0 recordings")


if __name__ == "__main__":
    unittest.main()
