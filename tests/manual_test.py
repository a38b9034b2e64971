#!/usr/bin/python3
"""Looks at the manual (build/manual) as its readers do: follows every link, and in a browser, from the
file system, searches, switches languages, and reads every page wide and narrow, light and dark.

    manual_test.py ROOT PROMPT

asks the prompt for the answers that the examples of the reference show.
"""

import re
import shutil
import subprocess
import sys
import tempfile
import traceback
from pathlib import Path
from urllib.parse import unquote, urlsplit

# Of Debian's packages, as the interpreter above is.
from selenium import webdriver
from selenium.common.exceptions import WebDriverException
from selenium.webdriver.support.ui import WebDriverWait

ROOT, PROMPT = Path(sys.argv[1]), Path(sys.argv[2]).resolve()
MANUAL = ROOT / "build/manual"
sys.path.insert(0, str(ROOT / "tools"))
import languages  # noqa: E402
import published  # noqa: E402

IDL = ROOT / "src/windows/server/ArdObjects100.idl"
WIDE, NARROW = 1400, 390
# What a reader asks, and the page that the search is to offer first or second.
QUESTIONS = {
    "GetFreeStock": "reference/Products.html#getfreestock",
    "which price does this customer get": "questions.html",
    "free in stock": "questions.html",
    "list is empty": "questions.html",
    "class cannot be created": "questions.html",
    "null empty": "values.html",
    "registry value": "settings.html",
    "blanks at their end": "questions.html",
    "thread": "threads.html",
    "symptom": "tracing.html",
    "AttemptDomainUserLogon": "settings.html",
    "dispatch id": "engine_tables.html",
}


def every_member_is_described():
    interface = published.read(str(IDL), "g++")
    missing, count = [], 0
    for kind in interface.classes:
        sections = (MANUAL / f"reference/{kind.name}.html").read_text().split('<section id="')[1:]
        found = {section.partition('"')[0]: section for section in sections}
        for member in kind.members:
            count += 1
            text = found.get(member.name.lower(), "")
            tabs = re.findall(r'class="tab-label"[^>]*>([^<]+)<', text)
            if "Neutral result" not in text or tabs != [language.name for language in languages.ALL]:
                missing.append(f"{kind.name}.{member.name}")
    assert count >= 168 and not missing, (count, missing)
    # Nothing can be left out: a member that says less is refused.
    member.neutral, member.examples = "", []
    member.meanings.pop(next(iter(member.meanings)))
    assert len(list(member.lacks())) == 3


def examples_answer_what_stands_there():
    with tempfile.TemporaryDirectory() as folder:
        shutil.copytree(ROOT / "examples/company", f"{folder}/company")
        script = (ROOT / "examples/host_database.sql").read_bytes()
        subprocess.run(["sqlite3", f"{folder}/host.db"], input=script, check=True)
        command = [sys.executable, str(ROOT / "tools/examples.py"), str(IDL), "g++", PROMPT, "company", "host.db"]
        run = subprocess.run(command, cwd=folder, capture_output=True, text=True)
        assert run.returncode == 0, run.stdout + run.stderr


def the_smallest_company_is_made_as_it_says():
    text = (ROOT / "docs/manual/simulator.md").read_text()
    making, session = re.search(r"\*\*The smallest company\*\*.*?```\n(.*?)ard_console shop\n(.*?)```", text, re.S).groups()
    session = session.replace("> ", "")
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run(making, shell=True, cwd=folder, check=True)
        questions = "".join(re.findall(r"^\?.*\n", session, re.M))
        said = subprocess.run([PROMPT, "shop"], cwd=folder, input=questions, capture_output=True, text=True, check=True).stdout
    # What is typed is repeated, but for passwords.
    assert len(said.splitlines()) == 6 and said == re.sub("LogonUser.*", "LogonUser...", session), said


class Browser:
    def __init__(self):
        options = webdriver.ChromeOptions()
        for argument in ("--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage"):
            options.add_argument(argument)
        options.binary_location = shutil.which("chromium")
        service = webdriver.chrome.service.Service(shutil.which("chromedriver"))
        self.driver = webdriver.Chrome(options=options, service=service)
        self.driver.set_page_load_timeout(120)

    def open(self, page):
        self.driver.get(f"file://{MANUAL}/{page}")

    def size(self, width):
        metrics = {"width": width, "height": 900, "deviceScaleFactor": 1, "mobile": False}
        self.driver.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", metrics)

    def scheme(self, scheme):
        features = [{"name": "prefers-color-scheme", "value": scheme}]
        self.driver.execute_cdp_cmd("Emulation.setEmulatedMedia", {"features": features})

    def ask(self, script):
        return self.driver.execute_script(f"return {script}")

    def search(self, words):
        """The links that are found, in their order."""
        self.open("search.html?q=" + words.replace(" ", "+"))
        WebDriverWait(self.driver, 60).until(
            lambda _: self.ask("document.querySelector('.search-summary')?.textContent.match(/found|did not match/)")
        )
        # They come in one by one.
        count = self.ask("Number(document.querySelector('.search-summary').textContent.match(/\\d+/) || 0)")
        WebDriverWait(self.driver, 60).until(
            lambda _: self.ask("document.querySelectorAll('ul.search li').length") >= count
        )
        links = self.ask("[...document.querySelectorAll('ul.search li > a')].map(a => a.getAttribute('href'))")
        return [re.sub(r"\?[^#]*", "", link) for link in links]


def search_finds(browser):
    wrong = {words: found[:4] for words, page in QUESTIONS.items() if page not in (found := browser.search(words))[:2]}
    assert not wrong, wrong


def languages_switch_and_stay(browser):
    shown = (
        "[...document.querySelectorAll('.tab-set')].map(set => [...set.querySelectorAll(':scope > input')]"
        ".find(input => input.checked).nextElementSibling.textContent.trim())"
    )
    names = {language.name for language in languages.ALL}
    browser.open("reference/Products.html")
    assert set(browser.ask(shown)) == {"VBScript"}
    browser.ask("[...document.querySelectorAll('.tab-label')].find(l => l.textContent.trim() === 'Python').click()")
    assert set(browser.ask(shown)) == {"Python"}
    browser.open("reference/Bank.html")
    assert set(browser.ask(shown)) == {"Python"} and "Python" in names
    assert browser.ask("getComputedStyle(document.querySelector('.tab-set > .tab-content')).display") == "none"


def pages_fit_and_links_lead_somewhere(browser):
    """Wide and narrow, light and dark: nothing sticks out, no picture is missing, and text can be read."""
    read = """(() => {
      const parts = colour => colour.match(/[\\d.]+/g).map(Number);
      const light = colour => colour.slice(0, 3).map(c => {
        c /= 255; return c <= 0.03928 ? c / 12.92 : ((c + 0.055) / 1.055) ** 2.4;
      }).reduce((sum, c, i) => sum + c * [0.2126, 0.7152, 0.0722][i], 0);
      // Colours that are seen through mix with what is behind.
      const over = ([r, g, b, alpha = 1], behind) => [r, g, b].map((c, i) => alpha * c + (1 - alpha) * behind[i]);
      const background = element => {
        if (!element) return [255, 255, 255];
        const own = parts(getComputedStyle(element).backgroundColor);
        return own.length === 3 ? own : over(own, background(element.parentElement));
      };
      const contrast = element => {
        const behind = background(element);
        const text = over(parts(getComputedStyle(element).color), behind);
        const [a, b] = [light(text), light(behind)];
        return (Math.max(a, b) + 0.05) / (Math.min(a, b) + 0.05);
      };
      const texts = document.querySelectorAll('article p, article td, article h1, article a, pre, .tab-label');
      return {
        over: document.scrollingElement.scrollWidth - innerWidth,
        missing: [...document.images].filter(i => !(i.complete && i.naturalWidth)).map(i => i.src),
        least: Math.min(21, ...[...texts].filter(t => t.offsetParent).map(contrast)),
        dark: light(background(document.body)) < 0.2,
        links: [...document.querySelectorAll('a[href], link[href], script[src]')].map(e => e.href || e.src),
        ids: [...document.querySelectorAll('[id]')].map(e => e.id),
        foreign: performance.getEntriesByType('resource').map(e => e.name).filter(n => !n.startsWith('file:')),
      };
    })()"""
    wrong, places, links, linked = [], {}, set(), {MANUAL / "search.html"}
    for width, scheme in ((WIDE, "light"), (NARROW, "dark")):
        browser.size(width)
        browser.scheme(scheme)
        for path in sorted(MANUAL.rglob("*.html")):
            page = path.relative_to(MANUAL)
            browser.open(page)
            browser.ask("document.querySelectorAll('img').forEach(i => i.loading = 'eager')")
            seen = browser.ask(read)
            places[path] = seen.pop("ids")
            links |= {(page, link) for link in seen.pop("links") if link.startswith("file:")}
            fits = seen["over"] <= 0 and not seen["missing"] and not seen["foreign"]
            if not fits or seen["least"] < 4.5 or seen["dark"] != (scheme == "dark"):
                wrong.append((str(page), width, scheme, seen))
    for page, link in links:
        file, place = Path(unquote(urlsplit(link).path)), unquote(urlsplit(link).fragment)
        linked.add(file)
        if not file.exists() or (place and file in places and place not in places[file]):
            wrong.append((str(page), link))
    wrong += set(places) - linked
    assert len(places) > 30 and len(links) > 1000 and not wrong, "\n".join(map(str, wrong))


def main():
    failed = skipped = 0
    tests = [every_member_is_described, examples_answer_what_stands_there, the_smallest_company_is_made_as_it_says]
    in_browser = [search_finds, languages_switch_and_stay, pages_fit_and_links_lead_somewhere]
    browser = None
    try:
        browser = Browser()
    except WebDriverException as error:
        skipped = len(in_browser)
        print(f"No browser: {error}")
    for test in tests + (in_browser if browser else []):
        try:
            test(*([browser] if test in in_browser else []))
            print(f"{test.__name__}: ok")
        except Exception:
            failed += 1
            print(f"{test.__name__}: FAILED")
            traceback.print_exc(file=sys.stdout)
    if browser:
        browser.driver.quit()
    print(f"{len(tests) + len(in_browser) - failed - skipped} passed, {failed} failed, {skipped} skipped")
    return failed > 0


if __name__ == "__main__":
    sys.exit(main())
