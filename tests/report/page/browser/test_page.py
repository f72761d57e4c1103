#!/usr/bin/env python3
"""The page of ntkreport in a real browser.

test_page.py MAKEPAGES             the tests; status 77 where no browser is installed
test_page.py --picture PNG PAGE    the picture in the README, of a page that ntkreport has written
"""

import base64
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

skipped = 77
browser, driver_program = "/usr/bin/chromium", "/usr/bin/chromedriver"

try:
    from selenium import webdriver
    from selenium.webdriver.common.by import By
    from selenium.webdriver.support.ui import Select, WebDriverWait
except ImportError:
    print("skipped: python3-selenium is not installed (scripts/install.sh --tests installs it)")
    sys.exit(skipped)
for program in (browser, driver_program):
    if not os.path.exists(program):
        print(f"skipped: {program} is not there (scripts/install.sh --tests installs it)")
        sys.exit(skipped)


def start_browser(profile):
    options = webdriver.ChromeOptions()
    options.binary_location = browser
    for key in ("headless", "no-sandbox", "disable-gpu", "disable-quic", "no-first-run",
                "disable-background-networking", "disable-component-update", "disable-sync",
                "hide-scrollbars", "disable-dev-shm-usage", "force-device-scale-factor=1",
                f"user-data-dir={profile}"):
        options.add_argument("--" + key)
    options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL"})
    service = webdriver.chrome.service.Service(driver_program)
    return webdriver.Chrome(options=options, service=service)


def set_size(driver, width, height=900):
    driver.execute_cdp_cmd("Emulation.setDeviceMetricsOverride",
                           {"width": width, "height": height, "deviceScaleFactor": 1, "mobile": False})


def prefer(driver, scheme):
    driver.execute_cdp_cmd("Emulation.setEmulatedMedia",
                           {"features": [{"name": "prefers-color-scheme", "value": scheme}]})


# Whether a canvas shows more than its ground: the share of its pixels that are painted, and the
# number of their colours. Read from a copy: the browser complains of canvases that are read often.
painted = """
    const [canvas] = arguments;
    const copy = Object.assign(document.createElement("canvas"), {width: canvas.width, height: canvas.height});
    const context = copy.getContext("2d", {willReadFrequently: true});
    context.drawImage(canvas, 0, 0);
    const {data} = context.getImageData(0, 0, copy.width, copy.height);
    const colours = new Set();
    let count = 0;
    for (let i = 0; i < data.length; i += 4) {
        if (data[i + 3] > 0) { ++count; colours.add(data[i] >> 4 << 8 | data[i + 1] >> 4 << 4 | data[i + 2] >> 4); }
    }
    return [count / (data.length / 4), colours.size];
"""


class PageTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.pages = pathlib.Path(cls.folder.name) / "pages"
        subprocess.run([cls.makepages, cls.pages], check=True)
        cls.driver = start_browser(pathlib.Path(cls.folder.name) / "profile")

    @classmethod
    def tearDownClass(cls):
        cls.driver.quit()
        cls.folder.cleanup()

    def setUp(self):
        set_size(self.driver, 1280)
        prefer(self.driver, "light")
        self.driver.get("about:blank")
        self.driver.get_log("browser")
        self.driver.get_log("performance")

    def tearDown(self):
        messages = self.driver.get_log("browser")
        self.assertEqual([], [message["message"] for message in messages], "messages in the console")

    def open(self, name, choices=""):
        self.driver.get(f"file://{self.pages}/{name}.html{choices}")

    def find(self, selector):
        return self.driver.find_element(By.CSS_SELECTOR, selector)

    def find_all(self, selector):
        return self.driver.find_elements(By.CSS_SELECTOR, selector)

    def text(self, selector):
        return self.find(selector).text

    def choose(self, selector, text):
        Select(self.find(selector)).select_by_visible_text(text)

    def open_table(self, selector):
        self.find(selector + " summary").click()
        WebDriverWait(self.driver, 10).until(lambda _: self.find_all(selector + " tbody tr"))

    def open_tables(self):
        self.driver.execute_script("document.querySelectorAll('details').forEach(one => { one.open = true; })")
        WebDriverWait(self.driver, 10).until(lambda driver: driver.execute_script("""
            return [...document.querySelectorAll("details")].every(one =>
                !one.checkVisibility() || one.querySelector("table"))"""))

    def address(self):
        return self.driver.execute_script("return location.hash")

    def go_to(self, section):
        self.driver.execute_script("document.getElementById(arguments[0]).scrollIntoView()", section)

    def column(self, table, number):
        return [cell.text for cell in self.find_all(f"{table} tbody td:nth-child({number})")]

    def canvas_pixels(self, selector):
        canvas = self.find(selector)
        self.driver.execute_script("arguments[0].scrollIntoView({block: 'center'})", canvas)
        return WebDriverWait(self.driver, 10).until(
            lambda driver: (lambda shown: shown if shown[0] > 0 else None)(
                driver.execute_script(painted, canvas)))

    def assert_plot(self, selector, colours=3):
        share, shown = self.canvas_pixels(selector)
        self.assertGreater(share, 0.005, f"{selector}: hardly anything is drawn")
        self.assertGreaterEqual(shown, colours, f"{selector}: too few colours")

    # ---- What is seen

    def test_plots_are_drawn(self):
        for page, plots in {
                "plain": ["#families canvas", "#lengths canvas", "#frontier figure:nth-child(1) canvas",
                          "#frontier figure:nth-child(2) canvas", "#history canvas"],
                "builds": ["#comparison canvas"]}.items():
            self.open(page)
            for plot in plots:
                with self.subTest(page=page, plot=plot):
                    self.assert_plot(plot)

    def test_summary_says_what_was_measured(self):
        self.open("plain")
        what = self.text("#what")
        for part in ("11 functions", "6 files", "3 runs", "Some Processor @ 2.60GHz", "ntkDC 12.0.0",
                     "libntkdc.so.12", "-TSSE42", "10 Nov 2026"):
            self.assertIn(part, what.replace("\u00a0", " "))
        self.open_table("#runs")
        self.assertIn("-B -TSSE42", self.column("#runs", 6))
        self.assertEqual(3, len(self.find_all(".card")))
        self.assertIn("Nothing failed", self.text("#cards"))

    def test_slowest_for_a_file(self):
        self.open("plain")
        self.choose("#data-choice", "pic")
        self.assertIn("for pic", self.text(".card h2"))
        self.assertEqual("BWTFwd_8u", self.text(".card .figure"))
        self.assertTrue(self.text("#clocks-answer").startswith("Slowest for pic: BWTFwd_8u"))
        self.assertIn("data=pic", self.address())
        self.assertIn("dict=N: no dictionary", self.text("#clocks-names"))

    def test_another_library(self):
        self.open("foreign")
        self.assertEqual("Speed of a library, function by function", self.text("#title"))
        self.assertEqual(["EncodeLZO_8u", "Others"], [title.text for title in self.find_all("#families h3")])
        # The bytes of decoders may be the compressed ones: they are not compared.
        answer = self.text("#clocks-answer")
        self.assertTrue(answer.startswith("Slowest over all"))
        self.assertIn("Fastest: CRC32_8u", answer)
        self.assertNotIn("Decode", answer)

    def test_frontier(self):
        self.open("plain")
        self.go_to("frontier")
        self.open_table("#frontier figure:nth-child(1)")
        methods = self.column("#frontier figure:nth-child(1)", 1)
        marks = self.column("#frontier figure:nth-child(1)", 7)
        marked = {method for method, mark in zip(methods, marks) if mark == "yes"}
        # LZSS is slower than LZ4HC is not, and smaller than LZO: only one method is beaten.
        self.assertEqual({"ntksEncodeLZ4HC_8u, dict=N", "ntksEncodeLZSS_8u", "ntksEncodeLZ4_8u",
                          "ntksEncodeLZO_8u, method=ST", "ntksEncodeLZO_8u, method=ST1X"}, marked)

    def test_lengths_as_a_table(self):
        self.open("plain", "#f=ntksDecodeLZSS_8u")
        self.open_table("#lengths")
        self.assertEqual(["bib", "book1", "geo", "obj1", "paper1", "pic"], self.column("#lengths", 1))
        heads = [head.text for head in self.find_all("#lengths thead th")]
        self.assertEqual(["Data", "16K", "32K", "64K", "128K", "256K"], heads[:6])

    def test_days_of_records_and_tables(self):
        self.open("faults")
        self.assertIn("between 9 Nov 2026, 23:05 and 10 Nov 2026, 03:36", self.text("#what").replace("\u00a0", " "))

    def test_comparison(self):
        self.open("builds")
        answer = self.text("#comparison-answer")
        self.assertIn("On the whole +0.31% (mean of 4 combinations, +0.12% to +0.50%)", answer)
        for part in ("1 \u25b2 slower", "1 \u25bc faster", "1 \u25cf same", "1 \u25cb open"):
            self.assertIn(part, answer)
        changes = self.column("#comparison", 4)
        self.assertEqual(["+2.05%", "+0.22%", "+0.04%", "\u22123.80%", "\u2013"], changes)
        self.choose("#verdict-choice", "\u25bc faster")
        self.assertEqual(["ntksEncodeLZO_8u"], self.column("#comparison", 2))

    def test_groups_are_compared(self):
        self.open("builds", "#cmp=3")
        self.choose("#verdict-choice", "\u25b2 slower")
        self.assertEqual({"ntksDecodeLZ4_8u"}, set(self.column("#comparison", 2)))

    def test_function_that_the_chosen_runs_have_measured(self):
        self.open("builds")
        self.assertRegex(self.text("#lengths figure h3"), r"^ntks")
        self.choose("#group-choice", "12.0.0")
        self.choose("#function-choice", "ntksEncodeLZ4_8u")
        self.choose("#group-choice", "12.0.1 (-TSSE42)")
        self.assertNotIn("Nothing of", self.text("#lengths-answer"))
        self.assertNotIn("ntksEncodeLZ4_8u", self.text("#lengths figure h3"))

    def test_jump_in_the_history(self):
        self.open("history", "#f=ntksDecodeLZ4_8u")
        self.assertRegex(self.text("#history-answer"), r"jump at run 8, 17.Nov \(\+(19|20|21)\.")
        self.choose("#history-function", "ntksDecodeLZO_8u")
        self.assertIn("no jump", self.text("#history-answer"))
        self.open("builds", "#f=ntksDecodeLZ4_8u&group=1")
        self.assertRegex(self.text("#history-answer"), r"over 6 runs. A jump at run 4, 13.Nov \(\+1[3-6]\.")
        self.assertIn("other machines or keys", self.text("#history-note"))

    def test_failures_in_their_words(self):
        self.open("faults")
        self.assertIn("5 functions failed", self.text("#cards"))
        self.assertIn("1 function was not run", self.text("#cards"))
        said = self.text("#failures")
        for part in ("free(): double free detected in tcache 2", "Can't open file nosuch to read",
                     "line 17 has 5 cells", "did not come to its end", "the library returned a warning"):
            self.assertIn(part, said)
        self.assertEqual(11, len(self.find_all("#failures .failures li")))

    def test_nothing_measured(self):
        self.open("empty")
        self.assertIn("Nothing was measured", self.text("#what"))

    # ---- What can be chosen

    def test_sorting(self):
        self.open("plain")
        self.go_to("rows")
        head = "#rows th:nth-child(4)"
        for sign, sorted_as in (("ascending", sorted), ("descending", lambda l: sorted(l, reverse=True))):
            self.find(head + " button").click()
            clocks = [float(text) for text in self.column("#rows", 4)]
            self.assertEqual(sorted_as(clocks), clocks)
            self.assertEqual(sign, self.find(head).get_attribute("aria-sort"))
        self.assertIn("sort=-clocks", self.address())

    def test_filtering(self):
        self.open("plain")
        self.find("#rows-filter").send_keys("lzss PIC decode")
        self.assertEqual({"ntksDecodeLZSS_8u"}, set(self.column("#rows", 1)))
        self.assertEqual({"pic"}, set(self.column("#rows", 2)))
        self.assertIn("5 of", self.text("#rows caption"))

    def test_pages_of_rows(self):
        self.open("plain")
        first = self.column("#rows", 3)
        self.find("#rows .pager button:last-child").click()
        self.assertEqual(50, len(first))
        self.assertNotEqual(first, self.column("#rows", 3))
        self.assertIn("51 to 100", self.text("#rows .pager"))

    def test_choosing_a_function(self):
        self.open("plain")
        self.choose("#function-choice", "ntksEncodeLZO_8u")
        self.choose("#variant-choice", "method=ST1X (one thread, a table of 2,048 entries: faster, larger results)")
        self.assertIn("ntksEncodeLZO_8u, method=ST1X", self.text("#lengths figure h3"))
        self.assert_plot("#lengths canvas")

    def test_address_keeps_the_choices(self):
        self.open("plain", "#data=pic&f=ntksEncodeLZSS_8u&q=lz4&sort=-clocks&page=2&theme=dark")
        self.assertEqual("pic", self.find("#data-choice").get_attribute("value"))
        self.assertIn("ntksEncodeLZSS_8u", self.text("#lengths figure h3"))
        self.assertEqual("lz4", self.find("#rows-filter").get_attribute("value"))
        self.assertEqual("descending", self.find("#rows th:nth-child(4)").get_attribute("aria-sort"))
        self.assertIn("51 to", self.text("#rows .pager"))
        self.assertEqual("dark", self.find("html").get_attribute("data-theme"))
        self.choose("#data-choice", "bib")
        for part in ("data=bib", "f=ntksEncodeLZSS_8u", "q=lz4", "sort=-clocks", "theme=dark"):
            self.assertIn(part, self.address())

    def test_address_of_another_report(self):
        self.open("plain", "#data=gone&f=ntksGone_8u&page=x&group=7&cmp=9&c=gone&v=gone&at=gone&unknown=1")
        self.assertIn("over all 6 files", self.text(".card h2"))
        self.assertEqual("BWTFwd_8u", self.text(".card .figure"))
        self.assertIn("ntksEncodeLZ4_8u", self.text("#lengths figure h3"))

    # ---- How it looks and what it needs

    def ground(self):
        return self.driver.execute_script("return getComputedStyle(document.body).backgroundColor")

    def brightness(self):
        red, green, blue = [int(part) for part in self.ground().strip("rgb()").split(",")]
        return (red + green + blue) / 3

    def test_dark(self):
        self.open("plain")
        self.assertGreater(self.brightness(), 200)
        self.find("#theme").click()
        self.assertLess(self.brightness(), 60)
        self.assertIn("theme=dark", self.address())
        self.assert_plot("#families canvas")

    def test_dark_of_the_system(self):
        prefer(self.driver, "dark")
        self.open("plain")
        self.assertLess(self.brightness(), 60)
        self.find("#theme").click()
        self.assertGreater(self.brightness(), 200)

    def test_narrow(self):
        set_size(self.driver, 360, 740)
        for page in ("plain", "builds", "faults", "hostile", "empty"):
            with self.subTest(page=page):
                self.open(page)
                self.open_tables()
                self.assertEqual(360, self.driver.execute_script("return document.documentElement.scrollWidth"))
        self.open("plain")
        files = self.find_all("#lengths-files button")
        self.assertEqual(["bib", "book1", "geo", "obj1", "paper1", "pic"], [file.text for file in files])
        self.driver.execute_script("arguments[0].click()", files[5])
        self.assertIn("data=pic", self.address())
        self.assertEqual("pic", self.text("#lengths-files [aria-pressed=true]"))

    def test_texts_stay_texts(self):
        self.open("hostile")
        self.choose("#data-choice", "<img src=x onerror=\"document.title='harmed'\">")
        self.open_tables()
        self.assertEqual("ntkperf: results", self.driver.title)
        self.assertEqual([], self.find_all("img, main b, main script, td i"))
        self.assertIn("<img src=x", self.text("#failures"))
        self.assertIn("<b>vm</b> & \"co\"", self.text("#what"))

    def test_no_request_but_for_the_page(self):
        self.open("plain")
        for section in ("lengths", "frontier", "history", "rows", "failures"):
            self.go_to(section)
        log = "\n".join(entry["message"] for entry in self.driver.get_log("performance"))
        requests = [line for line in log.splitlines() if '"Network.requestWillBeSent"' in line]
        self.assertEqual(1, len(requests), requests)
        self.assertIn("plain.html", requests[0])

    def test_headings_and_names(self):
        self.open("builds")
        self.assertEqual(1, len(self.find_all("h1")))
        for canvas in self.find_all("canvas"):
            self.assertGreater(len(canvas.get_attribute("aria-label")), 20)
        nameless = self.driver.execute_script("""
            return [...document.querySelectorAll("select, input, button")].filter(control =>
                !control.closest("label") && !control.textContent.trim() && !control.ariaLabel).length""")
        self.assertEqual(0, nameless)

    def test_keyboard(self):
        self.open("plain")
        self.go_to("rows")
        button = self.find("#rows th:nth-child(1) button")
        self.driver.execute_script("arguments[0].focus()", button)
        webdriver.ActionChains(self.driver).send_keys("\ue007").perform()
        focused = self.driver.switch_to.active_element
        self.assertEqual("Function", focused.text.strip("\u25b4\u25be"))
        self.assertEqual("ascending", self.find("#rows th:nth-child(1)").get_attribute("aria-sort"))

    def test_print_shows_all_plots(self):
        self.open("plain")
        self.driver.execute_script("window.dispatchEvent(new Event('beforeprint'))")
        for canvas in self.find_all("canvas"):
            if canvas.is_displayed():
                self.assertGreater(self.driver.execute_script(painted, canvas)[0], 0)
                self.assertLessEqual(canvas.size["width"], 700) # as wide as paper

    def test_many_rows(self):
        self.open("rows")
        self.assertIn("20,000 rows", self.text("#rows caption"))
        self.assertLess(len(self.find_all("#rows tbody tr")), 200)
        times = self.driver.execute_script("""
            const at = name => Math.round(performance.getEntriesByName(name)[0]?.startTime);
            return [at("first-contentful-paint"), at("first picture")]""")
        print(f"20,000 rows: first paint after {times[0]} ms, first plot after {times[1]} ms", flush=True)
        self.find("#rows-filter").send_keys("encodenumber7_")
        self.assertEqual({"ntksEncodeNumber7_8u"}, set(self.column("#rows", 1)))


def take_picture(png, page):
    with tempfile.TemporaryDirectory() as profile:
        driver = start_browser(profile)
        set_size(driver, 1200, 1300)
        prefer(driver, "light")
        driver.get("file://" + os.path.abspath(page))
        WebDriverWait(driver, 20).until(
            lambda d: d.execute_script("return performance.getEntriesByName('first picture').length"))
        picture = driver.execute_cdp_cmd("Page.captureScreenshot", {"format": "png"})
        pathlib.Path(png).write_bytes(base64.b64decode(picture["data"]))
        driver.quit()


if __name__ == "__main__":
    if len(sys.argv) == 4 and sys.argv[1] == "--picture":
        take_picture(*sys.argv[2:])
    elif len(sys.argv) == 2:
        PageTest.makepages = sys.argv[1]
        unittest.main(argv=sys.argv[:1], verbosity=2)
    else:
        sys.exit(__doc__)
