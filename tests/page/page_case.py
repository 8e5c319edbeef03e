"""What tests of the page have in common: the pages, made once, and a browser."""

import atexit
import functools
import pathlib
import subprocess
import sys
import tempfile
import unittest

from browser import Browser

MAKE_PAGES = sys.argv.pop(1)


@functools.cache
def made_pages():
    folder = tempfile.TemporaryDirectory(prefix="pages_")
    atexit.register(folder.cleanup)
    subprocess.run([MAKE_PAGES, folder.name], check=True)
    return folder


class PageCase(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = made_pages()
        cls.browser = Browser()

    @classmethod
    def tearDownClass(cls):
        cls.browser.close()

    def setUp(self):
        self.browser.show_as(1280)

    def open(self, name):
        self.browser.open(pathlib.Path(self.folder.name) / (name + ".html"))

    def parts(self):
        return [section.get_attribute("id") for section in self.browser.all("main > section")]

    def plots(self):
        return self.browser.all(".plot")

    def windows(self):
        return {(plot.get_attribute("data-from"), plot.get_attribute("data-to")) for plot in self.plots()}
