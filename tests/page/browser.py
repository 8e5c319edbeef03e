"""A headless Chromium that opens pages from disk."""

import pathlib
import shutil
import tempfile
import time

from selenium import webdriver
from selenium.webdriver.chrome.options import Options
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.by import By

FLAGS = """--headless=new --no-sandbox --disable-gpu --disable-quic --no-first-run --disable-background-networking
    --disable-component-update --disable-sync --hide-scrollbars""".split()


class Browser:
    def __init__(self):
        self.profile = tempfile.mkdtemp(prefix="page_test_")
        options = Options()
        for flag in FLAGS:
            options.add_argument(flag)
        options.add_argument("--user-data-dir=" + self.profile)
        options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL"})
        self.driver = webdriver.Chrome(service=Service(shutil.which("chromedriver")), options=options)
        self.show_as(1280, dark=False)

    def close(self):
        self.driver.quit()
        shutil.rmtree(self.profile, ignore_errors=True)

    def show_as(self, width, dark=False, media=""):
        """A window of that width, with the colours that people prefer."""
        self.command("Emulation.setDeviceMetricsOverride", width=width, height=900, deviceScaleFactor=1, mobile=False)
        scheme = {"name": "prefers-color-scheme", "value": "dark" if dark else "light"}
        self.command("Emulation.setEmulatedMedia", media=media, features=[scheme])

    def command(self, name, **values):
        return self.driver.execute_cdp_cmd(name, values)

    def open(self, path):
        """Opens a page anew; the logs then hold what it said, and nothing from before."""
        self.driver.get("about:blank")
        self.driver.get_log("browser")
        self.driver.get_log("performance")
        self.driver.get(pathlib.Path(path).absolute().as_uri())

    def messages(self):
        return [entry["message"] for entry in self.driver.get_log("browser")]

    def run(self, script, *values):
        return self.driver.execute_script(script, *values)

    def all(self, selector):
        return self.driver.find_elements(By.CSS_SELECTOR, selector)

    def one(self, selector):
        return self.driver.find_element(By.CSS_SELECTOR, selector)

    def click(self, element):
        """In the middle of the window, where nothing lies over it."""
        self.run("arguments[0].scrollIntoView({block: 'center'})", element)
        element.click()

    def double_click(self, element):
        """In its middle. Two clicks of the driver are one double click only where the machine is fast enough."""
        x, y = self.run("""
            const {left, top, width, height} = arguments[0].getBoundingClientRect();
            return [left + width / 2, top + height / 2];""", element)
        for count in [1, 2]:
            for kind in ["mousePressed", "mouseReleased"]:
                self.command("Input.dispatchMouseEvent", type=kind, x=x, y=y, button="left", clickCount=count)

    def bring_into_view(self, element):
        self.run("arguments[0].scrollIntoView({block: 'center'})", element)
        self.wait_for(lambda: element.find_elements(By.TAG_NAME, "canvas"), "a plot that is drawn")

    @staticmethod
    def wait_for(condition, what, seconds=30):
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            if condition():
                return
            time.sleep(0.02)
        raise AssertionError("in vain waited for " + what)
