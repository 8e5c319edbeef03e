"""Plots of the page in a real browser; page_test.py runs them."""

from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.keys import Keys

from page_case import PageCase


class PlotsTest(PageCase):
    def test_an_open_check_shows_its_places_and_marks_them_in_every_plot(self):
        self.open("faulty")
        check = self.browser.one("#check_1\\.3a")
        check.find_element("tag name", "summary").click()
        self.browser.wait_for(lambda: self.plots()[0].get_attribute("data-marks"), "marks")
        self.assertIn("expected 5, came 9", check.text)
        for plot in self.plots():
            self.assertEqual(plot.get_attribute("data-marks"), "31.5 34.8 38.1", plot.get_attribute("aria-label"))
            self.assertTrue(self.has_fault_colour_at(plot, 34.8), plot.get_attribute("aria-label"))
            self.assertFalse(self.has_fault_colour_at(plot, 33.0), plot.get_attribute("aria-label"))
        self.browser.click(check.find_element("tag name", "summary"))
        self.browser.wait_for(lambda: not self.plots()[0].get_attribute("data-marks"), "marks to go")

    def has_fault_colour_at(self, plot, seconds):
        """Whether near the top of the plot, above what is plotted, that time has the colour of faults."""
        self.browser.bring_into_view(plot)
        return self.browser.run("""
            const [plot, seconds] = arguments;
            const [from, to] = [Number(plot.dataset.from), Number(plot.dataset.to)];
            const canvas = plot.querySelector("canvas");
            const left = 70; // what stands beside the axis
            const x = Math.round(left + (canvas.clientWidth - left) * (seconds - from) / (to - from));
            const pixels = canvas.getContext("2d").getImageData((x - 4) * devicePixelRatio, 3, 9, 1).data;
            for (let at = 0; at < pixels.length; at += 4)
                if (pixels[at] > 180 && pixels[at + 1] < 60 && pixels[at + 3] > 200) return true;
            return false;""", plot, seconds)

    def test_dragging_in_one_plot_zooms_all_and_a_double_click_goes_back(self):
        self.open("faulty")
        self.assertGreater(len(self.plots()), 4)
        self.assertEqual(self.windows(), {("0", "120")})
        for number in [0, len(self.plots()) - 1]:
            plot = self.plots()[number]
            self.browser.bring_into_view(plot)
            ActionChains(self.browser.driver, duration=20).move_to_element(plot).click_and_hold().move_by_offset(
                200, 40).release().perform()
            (window,) = self.windows()
            self.assertGreater(float(window[0]), 40)
            self.assertLess(float(window[1]), 100)
            self.browser.double_click(plot)
            self.browser.wait_for(lambda: self.windows() == {("0", "120")}, "all plots to go back")

    def test_keys_zoom_and_move_all_plots(self):
        self.open("faulty")
        plot = self.plots()[0]
        plot.send_keys("+")
        self.assertEqual(self.windows(), {("30", "90")})
        plot.send_keys(Keys.ARROW_RIGHT)
        self.assertEqual(self.windows(), {("42", "102")})
        plot.send_keys("-")
        plot.send_keys("-")
        self.assertEqual(self.windows(), {("0", "120")})
        plot.send_keys("+")
        plot.send_keys(Keys.ESCAPE)
        self.assertEqual(self.windows(), {("0", "120")})

    def test_rates_are_shown_by_program_or_by_pid(self):
        self.open("multiplex")
        by_program, by_pid = self.browser.all("#rates .switch button")
        legend = self.browser.one("#rates figure .legend").text
        for text in ["Service 30", "tables and others", "null packets", "whole"]:
            self.assertIn(text, legend)
        by_pid.click()
        figures = self.browser.all("#rates figure")
        self.assertEqual([figure.is_displayed() for figure in figures], [False, True])
        self.assertIn("0x1E01 MPEG-2 video of Service 29", figures[1].text)
        self.assertIn("other PIDs", figures[1].text)
        self.browser.bring_into_view(figures[1].find_element("css selector", ".plot"))
        by_program.click()
        self.assertEqual([figure.is_displayed() for figure in figures], [True, False])

    def test_the_axis_of_pcr_intervals_has_the_limit_and_what_is_shown(self):
        self.open("faulty")
        (plot,) = [plot for plot in self.plots() if plot.get_attribute("aria-label").startswith("PCR interval")]
        self.browser.bring_into_view(plot)
        label = lambda: [label.text for label in plot.find_elements("css selector", ".dygraph-axis-label-y")][-1]
        self.assertEqual(label(), "300 ms")
        for _ in range(4):
            plot.send_keys("+")
        for _ in range(15):
            plot.send_keys(Keys.ARROW_RIGHT)
        self.browser.wait_for(lambda: label() == "100 ms", "the axis to fit")
        dashes = self.browser.run("""
            const canvas = arguments[0].querySelector("canvas");
            const {data, width, height} = canvas.getContext("2d").getImageData(0, 0, canvas.width, canvas.height);
            const is_fault = (at) => data[at + 3] > 60 && data[at] - data[at + 1] > 60;
            return Array.from({length: height}, (_, y) => Array.from({length: width}, (_, x) => 4 * (y * width + x))
                .filter(is_fault).length);""", plot)
        line = dashes.index(max(dashes))
        self.assertGreater(max(dashes), 300)
        # The axis ends at 110 % of the limit; below the plot are the marks of the time.
        self.assertAlmostEqual(line, (len(dashes) - 22) / 11, delta=3)

    def test_the_legend_hides_a_series(self):
        self.open("small")
        plot = self.plots()[0]
        self.browser.bring_into_view(plot)
        entry = self.browser.one("#rates .legend button")
        picture = "return arguments[0].querySelector('canvas').toDataURL()"
        before = self.browser.run(picture, plot)
        entry.click()
        self.assertEqual(entry.get_attribute("aria-pressed"), "false")
        self.assertNotEqual(self.browser.run(picture, plot), before)

    def test_keys_point_to_the_values_of_a_plot(self):
        self.open("faulty")
        for plot in self.plots():
            self.browser.bring_into_view(plot)
            readout = lambda: plot.find_element("xpath", "..").find_element("css selector", ".readout").text
            said = []
            for key in [Keys.ARROW_RIGHT, Keys.ARROW_RIGHT, Keys.ARROW_LEFT]:
                plot.send_keys(Keys.SHIFT, key)
                said.append(readout())
            label = plot.get_attribute("aria-label")
            self.assertRegex(said[0], r"^0:0[12]:\d\d\.\d\d\d +\S", label)
            self.assertNotEqual(said[0], said[1], label)
            self.assertEqual(said[0], said[2], label)
        self.assertEqual(self.windows(), {("0", "120")})

    def test_a_check_opens_by_the_keyboard(self):
        self.open("faulty")
        self.browser.one("#check_1\\.4 summary").send_keys(Keys.ENTER)
        self.browser.wait_for(lambda: self.plots()[0].get_attribute("data-marks"), "marks")

    def test_plots_out_of_view_are_drawn_before_one_prints(self):
        self.open("faulty")
        drawn = lambda: [bool(plot.find_elements("tag name", "canvas")) for plot in self.plots()]
        self.assertFalse(all(drawn()))
        self.browser.wait_for(lambda: all(drawn()), "all plots")
