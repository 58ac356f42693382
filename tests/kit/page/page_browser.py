"""Pages of `cubekit page` in a real browser: headless Chromium, driven by Selenium.

    page_browser.py CUBENET CUBEKIT EXAMPLES [--pictures DIRECTORY]

Status 0: all holds; 1: something doesn't; 77: there is no browser here, or no Selenium. With --pictures the pages are
left in the directory as they look: light, dark, and narrow.
"""
import base64
import json
import os
import shutil
import subprocess
import sys
import tempfile

try:
    from selenium import webdriver
    from selenium.webdriver.chrome.service import Service
    from selenium.webdriver.common.keys import Keys
except ImportError:
    print("skipped: the package python3-selenium is not installed")
    sys.exit(77)

KEYS = {"tab": Keys.TAB, "escape": Keys.ESCAPE, "enter": Keys.ENTER, "right": Keys.RIGHT, "down": Keys.DOWN}


class Browser:
    """One window of a headless Chromium."""

    def __init__(self, chromium, chromedriver, directory):
        options = webdriver.ChromeOptions()
        options.binary_location = chromium
        arguments = ["--headless=new", "--disable-dev-shm-usage", "--disable-gpu", "--no-first-run",
                     "--disable-background-networking", "--disable-component-update", "--disable-sync",
                     "--user-data-dir=" + os.path.join(directory, "profile"), "--window-size=1280,900"]
        if os.geteuid() == 0:
            arguments.append("--no-sandbox")
        for argument in arguments:
            options.add_argument(argument)
        options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL"})
        self.driver = webdriver.Chrome(service=Service(chromedriver), options=options)
        self.run = self.driver.execute_script
        self.log = self.driver.get_log
        self.close = self.driver.quit

    def open(self, path):
        self.driver.get("file://" + path)

    def press(self, *keys):
        """Presses and releases the keys one after the other, wherever the focus is."""
        actions = webdriver.ActionChains(self.driver)
        for key in keys:
            actions.send_keys(KEYS.get(key, key))
        actions.perform()

    def look(self, scheme="light", width=1280):
        """The colours that the system asks for, and the width of the window."""
        self.driver.execute_cdp_cmd("Emulation.setEmulatedMedia",
                                    {"features": [{"name": "prefers-color-scheme", "value": scheme}]})
        self.driver.execute_cdp_cmd("Emulation.setDeviceMetricsOverride",
                                    {"width": width, "height": 900, "deviceScaleFactor": 1, "mobile": False})

    def picture(self, path):
        shot = self.driver.execute_cdp_cmd("Page.captureScreenshot", {"captureBeyondViewport": True, "format": "png"})
        with open(path, "wb") as file:
            file.write(base64.b64decode(shot["data"]))


def expect(holds, what):
    if not holds:
        raise AssertionError(what)


def test_quiet(browser, path):
    """Opening the page asks for nothing but the page, and nothing complains."""
    browser.log("performance")
    browser.open(path)
    events = [json.loads(entry["message"])["message"] for entry in browser.log("performance")]
    requests = [one["params"] for one in events if one["method"] == "Network.requestWillBeSent"]
    urls = [one["request"]["url"] for one in requests
            if not one["documentURL"].startswith("chrome://")]  # the browser's own first window
    expect(urls == ["file://" + path], f"requests: {urls}")
    complaints = [entry["message"] for entry in browser.log("browser")]
    expect(complaints == [], f"the console says {complaints}")


def test_nothing_comes_in(browser):
    """What a page holds can't load or run anything."""
    blocked = browser.run("""
        const before = document.title;
        const script = document.createElement("script");
        script.textContent = "document.title = 'run'";
        const styled = document.createElement("p");
        styled.setAttribute("style", "color: red");
        document.body.append(script, styled);
        const blocked = document.title === before && getComputedStyle(styled).color !== "rgb(255, 0, 0)";
        script.remove();
        styled.remove();
        return blocked;""")
    expect(blocked, "the policy lets scripts or styles in")
    browser.log("browser")  # it says so there


def test_search(browser, wanted):
    """'/' leads to the search, which lists and marks what has the text in its name; Enter goes there."""
    browser.press("/", *wanted)
    result = browser.run("""
        const names = [...document.querySelectorAll("[data-signal], g.node")];
        const name = (one) => (one.querySelector("title") ?? one).textContent;
        return {focus: document.activeElement.id, query: document.getElementById("query").value,
                marked: names.filter((one) => one.classList.contains("hit"))
                             .map(name),
                all: names.map(name),
                listed: document.querySelectorAll("#hits button").length,
                drawn: document.querySelectorAll("g.hit").length};""")
    expect(result["focus"] == "query" and result["query"] == wanted, f"typed into {result}")
    matching = [name for name in result["all"] if wanted in name.lower()]
    expect(matching and result["marked"] == matching, f"marked {result['marked']}, not {matching}")
    expect(result["listed"] == min(len(matching), 40), f"listed {result['listed']} of {len(matching)}")
    expect(result["drawn"] > 0, "no symbol of the picture is marked")
    browser.press("enter")
    expect(browser.run("return document.activeElement.textContent.toLowerCase()").find(wanted) >= 0, "Enter leads astray")
    browser.press("/", "escape")
    expect(browser.run("return document.querySelectorAll('.hit, #hits li').length") == 0, "Escape leaves marks")


def test_chosen_symbol(browser):
    """A symbol that is chosen from the list is marked together with its wires, in the middle of the picture."""
    browser.run("document.querySelector('#query').focus()")
    name = browser.run("return document.querySelector('g.node:not(.pin) title').textContent")
    browser.press(*name)
    chosen = browser.run("""
        [...document.querySelectorAll("#hits button")].find((one) => one.textContent.endsWith("symbol")).click();
        const symbol = document.querySelector("g.node.chosen"), picture = document.getElementById("picture");
        const at = symbol.getBoundingClientRect(), in_box = picture.getBoundingClientRect();
        const wires = document.querySelectorAll(".edge." + symbol.id);
        return {focus: document.activeElement.id, wires: wires.length,
                marked: document.querySelectorAll(".edge.chosen").length,
                off: Math.abs(at.x + at.width / 2 - in_box.x - in_box.width / 2)};""")
    expect(chosen["focus"] == "picture", "the picture has no focus")
    expect(chosen["wires"] > 0 and chosen["wires"] == chosen["marked"], f"wires: {chosen}")
    expect(chosen["off"] < 2, f"off the middle by {chosen['off']}")
    browser.press("/", "escape")


def test_zoom(browser):
    """With the focus in the picture, keys zoom and move it, and 0 shows all again."""
    browser.run("document.getElementById('picture').focus()")

    def view():
        numbers = browser.run("return document.querySelector('#picture svg').getAttribute('viewBox')").split()
        return [float(number) for number in numbers]

    browser.press("0")
    whole = view()
    browser.press("+", "+")
    larger = view()
    expect(larger[2] < 0.7 * whole[2] and larger[3] < 0.7 * whole[3], f"+ leads from {whole} to {larger}")
    browser.press("right", "down")
    moved = view()
    expect(moved[0] > larger[0] and moved[1] > larger[1] and moved[2] == larger[2], f"arrows lead to {moved}")
    browser.press("-", "-")
    expect(view()[2] > 1.4 * larger[2], "- does not zoom out")
    browser.press("0")
    expect(view() == whole, f"0 shows {view()}, not {whole}")
    shown = browser.run("""
        const all = document.querySelector('#picture svg > g').getBoundingClientRect();
        const box = document.getElementById('picture').getBoundingClientRect();
        return all.left >= box.left && all.right <= box.right && all.top >= box.top && all.bottom <= box.bottom;""")
    expect(shown, "the whole picture is not in its frame")


def test_tab_order(browser, path):
    """Tab comes to all that can be used, in the order of the page, each time with a visible mark."""
    browser.open(path)
    stops = browser.run("""
        window.stops = [...document.querySelectorAll("a[href], button, input, summary, [tabindex='0']")]
            .filter((one) => one.checkVisibility());
        return window.stops.length;""")
    expect(stops > 10, f"only {stops} stops")
    for stop in range(stops):
        browser.press("tab")
        at = browser.run("""
            const now = document.activeElement, look = getComputedStyle(now);
            return {at: window.stops.indexOf(now), outline: look.outlineStyle, what: now.outerHTML.slice(0, 80)};""")
        expect(at["at"] == stop, f"Tab {stop + 1} leads to {at}")
        expect(at["outline"] not in ("none", "hidden"), f"no mark around {at}")
        if stop == 0:
            browser.press("enter")
            expect(browser.run("return document.activeElement.id") == "content", "the skip link leads elsewhere")
            browser.open(path)
            browser.run("window.stops = [...document.querySelectorAll(\"a[href], button, input, summary, [tabindex='0']\")]"
                        ".filter((one) => one.checkVisibility())")
            browser.press("tab")


def luminance(color):
    parts = [float(part) / 255 for part in color[color.index("(") + 1:-1].split(",")[:3]]
    linear = [part / 12.92 if part <= 0.03928 else ((part + 0.055) / 1.055) ** 2.4 for part in parts]
    return 0.2126 * linear[0] + 0.7152 * linear[1] + 0.0722 * linear[2]


def test_contrast(browser, scheme):
    """Every text stands out from what is behind it by at least 4.5 to 1; the scheme is the one asked for."""
    browser.look(scheme)
    browser.press("/", "q", "0")
    pairs = browser.run("""
        const back = (one) => {
            for (; one !== null; one = one.parentElement) {
                const color = getComputedStyle(one).backgroundColor;
                if (!color.endsWith(", 0)")) return color;
            }
        };
        const pairs = new Map();
        const walk = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);
        while (walk.nextNode()) {
            const parent = walk.currentNode.parentElement;
            if (walk.currentNode.data.trim() === "" || !parent.checkVisibility()) continue;
            const node = parent.closest("g.node");
            const shape = node === null ? null : node.querySelector("polygon, ellipse, path");
            const color = getComputedStyle(parent)[parent.closest("svg") === null ? "color" : "fill"];
            const behind = shape === null ? back(parent) : getComputedStyle(shape).fill;
            pairs.set(color + behind, [color, behind, walk.currentNode.data.trim().slice(0, 30)]);
        }
        return [...pairs.values()];""")
    expect(len(pairs) > 4, f"too few texts: {pairs}")
    for color, behind, text in pairs:
        light, dark = sorted((luminance(color), luminance(behind)), reverse=True)
        expect((light + 0.05) / (dark + 0.05) >= 4.5, f"{scheme}: '{text}' is {color} on {behind}")
    paper = browser.run("return getComputedStyle(document.body).backgroundColor")
    expect((luminance(paper) > 0.5) == (scheme == "light"), f"{scheme}: the page is {paper}")
    browser.press("escape")
    browser.look()


def test_narrow(browser):
    """On a phone nothing stands out to the right."""
    browser.look(width=360)
    width = browser.run("return document.documentElement.scrollWidth")
    expect(width <= 360, f"360 wide, the page is {width}")
    browser.look()


def test_hostile(browser, path):
    """Names that look like markup are shown as they are and do nothing."""
    browser.open(path)
    result = browser.run("""
        return {ran: window.ran, bold: document.querySelectorAll("main b, main img, main script, h1 *").length,
                title: document.querySelector("h1").textContent,
                names: [...document.querySelectorAll("[data-signal], g.node")].map((one) => one.textContent)};""")
    expect(result["ran"] is None and result["bold"] == 0, f"markup came in: {result}")
    expect(result["title"] == "<b>x&amp'", f"titled {result['title']}")
    for name in ("</title><script>ran</script>", "<b>bold</b>", "&lt'", WILD):
        expect(any(name in one for one in result["names"]), f"{name} is not among {result['names']}")
    expect(browser.log("browser") == [], "the console complains about the hostile page")


WILD = "\"><script>ran=1</script>&lt"  # no table can have that name, but a netlist can

HOSTILE = """#$ MODULE <b>x&amp'
#$ TITLE </p><img src=x onerror=ran=1>&lt;
#$ PINS 3 </title><script>ran</script> <b>bold</b> &lt'
#$ WRONG <script>ran=1</script>
.i 2
.o 1
.ilb </title><script>ran</script> <b>bold</b>
.ob &lt'
11 1
.end
"""


def make_page(cubenet, cubekit, source, name, options, directory, rename=lambda netlist: netlist):
    """Translates the table and writes its page. Returns the path of the page."""
    subprocess.run([cubenet, "-b", "-i", source, *options, name], cwd=directory, check=True,
                   stdout=subprocess.DEVNULL)
    netlist = os.path.join(directory, name + ".nxf")
    with open(netlist, encoding="ascii") as file:
        text = rename(file.read())
    with open(netlist, "w", encoding="ascii") as file:
        file.write(text)
    subprocess.run([cubekit, "page", "-i", source, name], cwd=directory, check=True)
    return os.path.join(directory, name + ".html")


def take_pictures(browser, pages, directory):
    for path in pages:
        name = os.path.basename(path).removesuffix(".html")
        for look, scheme, width in (("light", "light", 1280), ("dark", "dark", 1280), ("narrow", "light", 400)):
            browser.look(scheme, width)
            browser.open(path)
            browser.picture(os.path.join(directory, f"{name}-{look}.png"))


def main(cubenet, cubekit, examples, pictures):
    chromium, chromedriver = shutil.which("chromium"), shutil.which("chromedriver")
    if chromium is None or chromedriver is None:
        print("skipped: the packages chromium and chromium-driver are not installed")
        return 77
    with tempfile.TemporaryDirectory() as directory:
        hostile = os.path.join(directory, "hostile.tt2")
        with open(hostile, "w", encoding="ascii") as file:
            file.write(HOSTILE)
        example = lambda name: os.path.join(examples, name, name + ".tt2")
        counter = make_page(cubenet, cubekit, example("counter"), "counter", [], directory)
        large = make_page(cubenet, cubekit, example("latch_lh"), "latch_lh", ["-and", "2", "-or", "2"], directory)
        hostile = make_page(cubenet, cubekit, hostile, "hostile", [], directory,
                            lambda netlist: netlist.replace("<b>bold</b>", WILD))
        browser = Browser(chromium, chromedriver, directory)
        try:
            for page, wanted in ((counter, "q1"), (large, "level")):
                test_quiet(browser, page)
                test_search(browser, wanted)
                test_chosen_symbol(browser)
                test_zoom(browser)
                test_tab_order(browser, page)
                for scheme in ("light", "dark"):
                    test_contrast(browser, scheme)
                test_narrow(browser)
            test_nothing_comes_in(browser)
            test_hostile(browser, hostile)
            if pictures is not None:
                take_pictures(browser, (counter, large, hostile), pictures)
        finally:
            browser.close()
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:4], sys.argv[5] if len(sys.argv) > 5 else None))
