"""A designer's journey through the app in headless Chromium driven by Selenium: a new machine of
three spans, design, the verdict, US units, another package, save, reopen from the list, print
to PDF, then a crew's readings compared with the stored chart. Screenshots and PDFs are kept in
$CAUDALIS_WEB_ARTIFACTS; the plots are checked for drawn pixels."""
import base64
import os
import pathlib
import subprocess
import tempfile

import pytest
from selenium import webdriver
from selenium.webdriver.chrome.options import Options
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys
from selenium.webdriver.support.ui import Select, WebDriverWait

from conftest import EXAMPLES, Databases, Server

ARTIFACTS = pathlib.Path(os.environ.get("CAUDALIS_WEB_ARTIFACTS") or tempfile.mkdtemp(prefix="caudalis-web-"))
SPANS = [["48", "114.3", "300", "50.5", ""], ["48", "114.3", "300", "51", ""], ["40", "114.3", "300", "51.2", ""]]


@pytest.fixture(scope="module")
def app(tmp_path_factory):
    folder = tmp_path_factory.mktemp("browser")
    server = Server(Databases("sqlite", folder, None).options(), folder)
    options = Options()
    for argument in ["--headless=new", "--no-sandbox", "--disable-gpu", "--window-size=1400,1000",
                     "--host-resolver-rules=MAP * ~NOTFOUND, EXCLUDE 127.0.0.1"]:
        options.add_argument(argument)
    options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
    driver = webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)
    driver.set_page_load_timeout(60)
    ARTIFACTS.mkdir(parents=True, exist_ok=True)
    yield server, driver
    driver.quit()
    server.stop()


def wait(driver, condition, seconds=30):
    return WebDriverWait(driver, seconds).until(lambda d: condition(d))


def text(driver, element_id):
    return driver.find_element(By.ID, element_id).text


def shoot(driver, name):
    driver.save_screenshot(str(ARTIFACTS / f"{name}.png"))


def drawn_pixels(driver, canvas_id):
    """Pixels of the canvas that are not transparent: a drawn plot has thousands."""
    return driver.execute_script(
        "const c = document.getElementById(arguments[0]);"
        "const data = c.getContext('2d').getImageData(0, 0, c.width, c.height).data;"
        "let n = 0; for (let i = 3; i < data.length; i += 4) { if (data[i] > 0) n++; } return n;", canvas_id)


def print_pdf(driver, name):
    pdf = base64.b64decode(driver.execute_cdp_cmd("Page.printToPDF", {"printBackground": True})["data"])
    path = ARTIFACTS / f"{name}.pdf"
    path.write_bytes(pdf)
    return subprocess.run(["pdftotext", str(path), "-"], capture_output=True, text=True, timeout=60).stdout


def fill_machine(driver):
    for field, value in [("m-name", "Journey pivot"), ("m-pressure", "220"), ("m-flow", "20"),
                         ("m-elevation", "50"), ("m-revolution", "12")]:
        element = driver.find_element(By.ID, field)
        element.clear()
        element.send_keys(value)
    for _ in SPANS:
        driver.find_element(By.ID, "add-span").click()
    rows = driver.find_elements(By.CSS_SELECTOR, "#spans tbody tr")
    assert len(rows) == 3
    for row, values in zip(rows, SPANS):
        for element, value in zip(row.find_elements(By.TAG_NAME, "input"), values):
            element.clear()
            if value:
                element.send_keys(value)
    Select(driver.find_element(By.ID, "p-brand")).select_by_visible_text("Rotaflux")
    Select(driver.find_element(By.ID, "p-model")).select_by_visible_text("RX Spinner")


def test_every_input_has_a_label(app):
    server, driver = app
    driver.get(server.url())
    wait(driver, lambda d: text(d, "status") == "Ready.")
    unlabelled = driver.execute_script(
        "return Array.from(document.querySelectorAll('input, select, textarea'))"
        ".filter(e => e.labels.length === 0 && !e.getAttribute('aria-label')).map(e => e.id);")
    assert unlabelled == []


def test_a_designers_journey(app):
    server, driver = app
    driver.get(server.url())
    wait(driver, lambda d: text(d, "status") == "Ready.")
    shoot(driver, "01-empty")
    fill_machine(driver)
    # Keyboard: the Design button is reached and pressed without the mouse.
    driver.find_element(By.ID, "design").send_keys(Keys.ENTER)
    wait(driver, lambda d: text(d, "verdict").startswith(("Passes", "Fails")))
    verdict = text(driver, "verdict")
    assert verdict in ("Passes", "Passes with warnings", "Fails: the design has errors")
    assert len(driver.find_elements(By.CSS_SELECTOR, "#outlets tbody tr")) == 45
    assert drawn_pixels(driver, "design-plot") > 2000
    shoot(driver, "02-designed")

    Select(driver.find_element(By.ID, "units")).select_by_value("us")
    wait(driver, lambda d: "psi" in text(d, "summary"))
    assert " ft" in text(driver, "outlets")
    shoot(driver, "03-us-units")

    Select(driver.find_element(By.ID, "p-model")).select_by_visible_text("RX Spinner HF")
    wait(driver, lambda d: "RX Spinner HF" in text(d, "outlets"))
    shoot(driver, "04-other-package")

    driver.find_element(By.ID, "chart-name").send_keys("Journey <b>pivot</b>")
    driver.find_element(By.ID, "save").click()
    wait(driver, lambda d: "stored with key" in text(d, "status"))
    assert "Journey <b>pivot</b>" in text(driver, "charts")
    shoot(driver, "05-saved")

    driver.get(server.url())
    wait(driver, lambda d: text(d, "status") == "Ready.")
    driver.find_element(By.XPATH, "//button[text()='Open Journey <b>pivot</b>']").click()
    wait(driver, lambda d: "opened" in text(d, "status"))
    assert len(driver.find_elements(By.CSS_SELECTOR, "#spans tbody tr")) == 3
    assert driver.find_element(By.ID, "m-name").get_attribute("value") == "Journey pivot"
    assert Select(driver.find_element(By.ID, "p-model")).first_selected_option.text == "RX Spinner HF"
    assert drawn_pixels(driver, "design-plot") > 2000
    shoot(driver, "06-reopened")
    page = print_pdf(driver, "07-app-printed")
    assert "Passes" in page or "Fails" in page

    report = driver.find_element(By.LINK_TEXT, "Report of Journey <b>pivot</b>").get_attribute("href")
    driver.get(report)
    wait(driver, lambda d: d.execute_script("return document.readyState") == "complete")
    shoot(driver, "08-report")
    assert "Journey pivot" in print_pdf(driver, "09-report-printed")

    driver.get(server.url())
    wait(driver, lambda d: text(d, "status") == "Ready.")
    driver.find_element(By.CSS_SELECTOR, "button[data-page='field']").click()
    wait(driver, lambda d: len(d.find_elements(By.CSS_SELECTOR, "#f-compare option")) > 2)
    driver.find_element(By.ID, "f-file").send_keys(str(EXAMPLES / "evaluations" / "small-2025.csv"))
    Select(driver.find_element(By.ID, "f-compare")).select_by_index(2)
    driver.find_element(By.ID, "evaluate").click()
    wait(driver, lambda d: text(d, "f-verdict").startswith("CU "))
    assert "compared with" in text(driver, "f-figures")
    assert drawn_pixels(driver, "field-plot") > 500
    shoot(driver, "10-field-test")

    problems = [e["message"] for e in driver.get_log("browser") if e["level"] in ("SEVERE", "WARNING")]
    assert problems == []


def test_the_catalogue_page_lists_nozzles(app):
    server, driver = app
    driver.get(server.url())
    wait(driver, lambda d: text(d, "status") == "Ready.")
    driver.find_element(By.CSS_SELECTOR, "button[data-page='catalogue']").click()
    Select(driver.find_element(By.ID, "c-brand")).select_by_visible_text("Aquarion")
    driver.find_element(By.ID, "c-show").click()
    wait(driver, lambda d: len(d.find_elements(By.CSS_SELECTOR, "#nozzles tbody tr")) > 3)
    assert "Aquarion" in text(driver, "nozzles")
    shoot(driver, "11-catalogue")
    loaded = driver.execute_script("return performance.getEntriesByType('resource').map(e => e.name)")
    assert loaded and all(name.startswith(server.url()) for name in loaded)


def test_spans_are_removed_and_renumbered(app):
    server, driver = app
    driver.get(server.url())
    wait(driver, lambda d: text(d, "status") == "Ready.")
    for _ in range(3):
        driver.find_element(By.ID, "add-span").click()
    driver.find_element(By.CSS_SELECTOR, "button[aria-label='Remove span 2']").click()
    rows = driver.find_elements(By.CSS_SELECTOR, "#spans tbody tr")
    assert [row.find_element(By.TAG_NAME, "th").text for row in rows] == ["1", "2"]
    assert driver.find_elements(By.CSS_SELECTOR, "input[aria-label='Length, m of span 2']")
    assert not driver.find_elements(By.CSS_SELECTOR, "button[aria-label='Remove span 3']")
