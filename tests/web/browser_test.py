"""The panel of phnsim in a browser: what a person does there arrives at a host, and what a host does is shown there."""

import http.server
import json
import os
import signal
import subprocess
import sys
import tempfile
import threading
import unittest

CHROMIUM, DRIVER = "/usr/bin/chromium", "/usr/bin/chromedriver"
try:
    from selenium import webdriver
    from selenium.webdriver.common.by import By
    from selenium.webdriver.common.keys import Keys
    from selenium.webdriver.support.wait import WebDriverWait
    is_there = os.path.exists(CHROMIUM) and os.path.exists(DRIVER)
except ImportError:
    is_there = False
if not is_there:
    print("chromium, chromium-driver or python3-selenium is not installed: ./dev setup browser")
    sys.exit(1 if os.environ.get("PHN_BROWSER_REQUIRED") else 77)

SECONDS = 20  # until something counts as lost
NAMED_ROLES = {"button", "checkbox", "combobox", "image", "list", "searchbox", "slider", "spinbutton", "switch", "tab",
               "tabpanel", "textbox"}


def browser():
    options = webdriver.ChromeOptions()
    options.binary_location = CHROMIUM
    for argument in ("--headless=new", "--window-size=1400,1200", "--disable-dev-shm-usage"):
        options.add_argument(argument)
    if os.geteuid() == 0:
        options.add_argument("--no-sandbox")  # Chromium's refuses to work for root
    return webdriver.Chrome(service=webdriver.chrome.service.Service(DRIVER), options=options)


class OtherPage(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        self.send_response_only(200)
        self.end_headers()
        self.wfile.write(b"<!doctype html><title>Another origin</title>")


class Panel(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        os.environ |= {"PHNNRV_DEVICES": folder.name, "PHNNRV_TIME_SCALE": "0.1", "XDG_STATE_HOME": folder.name}
        cls.phnsim = subprocess.Popen([os.environ["PHNSIM"], "--usb", "0001", "--ready", "--web"], text=True,
                                      stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        cls.addClassCleanup(cls.end_phnsim)
        cls.address = json.loads(cls.phnsim.stdout.readline())["web"]
        cls.browser = browser()
        cls.addClassCleanup(cls.browser.quit)

    @classmethod
    def end_phnsim(cls):
        with cls.phnsim:
            cls.phnsim.terminate()
        assert cls.phnsim.returncode == 0

    def setUp(self):
        self.browser.get(self.address)
        self.wait_for(lambda: self.element("link").text == "live" and self.element("model").text)

    def element(self, name):
        return self.browser.find_element(By.ID, name)

    def wait_for(self, condition):
        return WebDriverWait(self.browser, SECONDS, 0.05).until(lambda _: condition())

    def test_what_a_person_does_arrives_at_a_host(self):
        watch = subprocess.Popen([os.environ["PHNCTL"], "watch", "--json"], text=True, stdout=subprocess.PIPE)
        self.addCleanup(watch.stdout.close)
        self.addCleanup(watch.wait)
        self.addCleanup(watch.send_signal, signal.SIGINT)

        def told(event):
            lost = threading.Timer(SECONDS, watch.kill)
            lost.start()
            try:
                return next(line for line in map(json.loads, watch.stdout) if line["event"] == event)
            finally:
                lost.cancel()

        inbox = told("connected")["messages"]["box0"]
        self.element("level").send_keys(Keys.HOME, Keys.ARROW_RIGHT, Keys.ARROW_RIGHT)
        while (level := told("battery")["battery"]["uBattery2"]) != 2:
            self.assertIn(level, (0, 1))
        self.element("message").submit()
        self.assertEqual(told("messages")["messages"]["box0"], inbox + 1)
        self.element("unplug").click()
        told("disconnected")
        self.element("plug").click()
        self.assertEqual(told("connected")["battery"]["uBattery2"], 2)

    def test_what_a_host_does_is_shown(self):
        text = "<b>Ahoy</b> & <script>"
        subprocess.run([os.environ["PHNCTL"], "messages", "send", "5550100", text], check=True, stdout=subprocess.DEVNULL)
        sent = self.wait_for(lambda: self.browser.find_elements(By.CSS_SELECTOR, "#store .fresh"))[0]
        self.assertEqual(sent.find_element(By.TAG_NAME, "p").text, text)
        line = self.browser.find_element(By.CSS_SELECTOR, "#wire [data-command='16']")
        line.find_element(By.TAG_NAME, "summary").send_keys(Keys.ENTER)
        detail = self.wait_for(lambda: line.find_elements(By.CLASS_NAME, "detail"))[0].text
        for part in ("5550100", text, "Received, ", "4B 00 13 00"):
            self.assertIn(part, detail)

    def test_faults_are_switched_on_and_off(self):
        self.browser.find_element(By.CSS_SELECTOR, "[aria-label='delay: MS']").send_keys("150")
        self.element("fault-times").send_keys("3")
        for active in ("delay=150*3", ""):
            self.element("fault-delay").click()
            self.wait_for(lambda: self.browser.find_element(By.CSS_SELECTOR, "[data-active=delay]").text == active)
            self.assertEqual(self.element("fault-delay").is_selected(), active != "")
        self.element("fault-truncate").click()
        self.wait_for(lambda: 'fault "truncate*3": it is written truncate=N' in self.element("toast").text)

    def test_it_is_used_by_keyboard_and_screen_reader(self):
        tree = self.browser.execute_cdp_cmd("Accessibility.getFullAXTree", {})["nodes"]
        controls = [node for node in tree if not node["ignored"] and node["role"]["value"] in NAMED_ROLES]
        unnamed = [node["role"]["value"] for node in controls if not node.get("name", {}).get("value")
                   and (node["role"]["value"] != "list")]
        self.assertGreater(len(controls), 50)
        self.assertEqual(unnamed, [])
        self.browser.execute_script("""window.reached = new Set();
            document.addEventListener("focusin", ({target}) => reached.add(target));
            document.body.tabIndex = -1; document.body.focus();""")
        webdriver.ActionChains(self.browser, 0).send_keys(Keys.TAB * 80).perform()
        missed = self.browser.execute_script("""return [...document.querySelectorAll("input, select, button, summary")]
            .filter((one) => !one.disabled && one.role !== "tab" && one.offsetParent && !reached.has(one))
            .map((one) => one.outerHTML)""")
        self.assertEqual(missed, [])
        self.element("tab-messages").send_keys(Keys.ARROW_RIGHT)
        self.assertEqual(self.browser.switch_to.active_element.get_attribute("aria-selected"), "true")
        self.assertIn("Anna Berg", self.element("store").text)

    def test_other_pages_are_refused(self):
        control = self.address.replace("/?", "/control?")
        other = http.server.ThreadingHTTPServer(("127.0.0.1", 0), OtherPage)
        threading.Thread(target=other.serve_forever, daemon=True).start()
        self.addCleanup(other.server_close)
        self.addCleanup(other.shutdown)
        self.browser.get(f"http://127.0.0.1:{other.server_port}/")
        self.browser.execute_async_script("""const [address, done] = arguments;
            fetch(address, {method: "POST", mode: "no-cors", body: "set identity/model Stolen"}).finally(done);""", control)
        self.browser.get(self.address[:-1] + ("1" if self.address[-1] == "0" else "0"))
        self.assertIn("token included", self.browser.page_source)
        self.setUp()
        self.assertEqual(self.element("model").text, "Fjord 40")


if __name__ == "__main__":
    unittest.main()
