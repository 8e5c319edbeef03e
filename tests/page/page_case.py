"""What tests of the page have in common: the folder of pages, and a browser."""

import pathlib
import sys
import unittest

from browser import Browser

PAGES = pathlib.Path(sys.argv.pop(1))


class PageCase(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.browser = Browser()

    @classmethod
    def tearDownClass(cls):
        cls.browser.close()

    def setUp(self):
        self.browser.show_as(1280)

    def open(self, name):
        self.browser.open(PAGES / (name + ".html"))

    def parts(self):
        return [section.get_attribute("id") for section in self.browser.all("main > section")]

    def plots(self):
        return self.browser.all(".plot")

    def windows(self):
        return {(plot.get_attribute("data-from"), plot.get_attribute("data-to")) for plot in self.plots()}
