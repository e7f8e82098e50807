#!/usr/bin/env python3
"""Opens the manual in a real browser: browser.py FOLDER [PICTURES] looks at each page, narrow and wide, dark and light.

Whether all of a page can be read (nothing sticks out, contrast and size are enough), whether each link of a page and each
answer of the search leads to a place that is there, and whether no script of a page fails. With PICTURES some are kept.
"""
import base64
import json
import os
import select
import subprocess
import sys
import tempfile
from collections import defaultdict
from pathlib import Path

BROWSERS = ("chromium", "chromium-browser", "google-chrome")
PATIENCE = 30  # seconds for one answer
LOOKS = [(360, "dark"), (360, "light"), (1200, "dark"), (1200, "light")]
PICTURED = ("index", "guide_programs", "classhalvorn_1_1KTSystem", "classhalvorn_1_1KTProcess", "annotated")

# What the page is like, from within: answers a list of complaints, its links and its places.
LOOK = r"""
(dark) => {
  const wrong = [];
  const numbers = (color) => (color.match(/[\d.]+/g) || []).map(Number);
  const light = ([r, g, b]) => {
    const part = (v) => (v /= 255) <= 0.04045 ? v / 12.92 : ((v + 0.055) / 1.055) ** 2.4;
    return 0.2126 * part(r) + 0.7152 * part(g) + 0.0722 * part(b);
  };
  const paperOf = (element) => {
    for (; element; element = element.parentElement) {
      const paper = numbers(getComputedStyle(element).backgroundColor);
      if (paper.length === 3 || paper[3] === 1) return paper;
    }
    return dark ? [0, 0, 0] : [255, 255, 255];
  };
  if ((light(paperOf(document.body)) < 0.2) !== dark) wrong.push("is not " + (dark ? "dark" : "light"));
  const room = document.documentElement.clientWidth;
  if (document.documentElement.scrollWidth > room) {
    const wide = [...document.body.querySelectorAll("*")].filter((e) => e.getBoundingClientRect().right > room + 1);
    const name = (e) => e.tagName + (e.id ? "#" + e.id : "") + "." + e.className;
    wrong.push("sticks out: " + wide.slice(0, 3).map(name).join(" ") + " of " + room);
  }
  const words = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);
  const seen = new Set();
  while (words.nextNode()) {
    const element = words.currentNode.parentElement;
    if (seen.has(element) || !words.currentNode.data.trim() || /SCRIPT|STYLE/.test(element.tagName)) continue;
    seen.add(element);
    if (!element.checkVisibility() || !element.getClientRects().length) continue;
    const style = getComputedStyle(element);
    const [a, b] = [light(numbers(style.color)), light(paperOf(element))].sort((x, y) => x - y);
    const contrast = (b + 0.05) / (a + 0.05);
    const told = element.tagName + "." + element.className + " " + words.currentNode.data.trim().slice(0, 30);
    if (contrast < 4.5) wrong.push("contrast " + contrast.toFixed(1) + ": " + told);
    if (parseFloat(style.fontSize) < 12) wrong.push("small " + style.fontSize + ": " + told);
  }
  return JSON.stringify({wrong: wrong.slice(0, 5),
    links: [...document.links].map((a) => a.href).filter((a) => !a.startsWith("javascript:")),
    places: [...document.querySelectorAll("[id],a[name]")].map((e) => e.id || e.name)});
}"""


class Browser:
    """One browser with one page, told what to do over two pipes."""

    def __init__(self):
        program = next((each for each in BROWSERS if any((Path(f) / each).exists() for f in os.get_exec_path())), None)
        if program is None:
            sys.exit("there is no browser: one of " + ", ".join(BROWSERS))
        self.home = tempfile.TemporaryDirectory(prefix="manual-")
        told, tell = os.pipe()
        hear, say = os.pipe()
        arguments = [program, "--headless=new", "--disable-gpu", "--no-first-run", "--hide-scrollbars", "--no-sandbox",
                     "--disable-background-networking", "--remote-debugging-pipe", f"--user-data-dir={self.home.name}"]

        def connect():  # what the browser reads is its descriptor 3, what it writes 4
            low, high = os.dup(told), os.dup(say)
            os.dup2(low, 3)
            os.dup2(high, 4)

        self.process = subprocess.Popen(arguments, pass_fds=(3, 4), preexec_fn=connect, stdin=subprocess.DEVNULL,
                                        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(told)
        os.close(say)
        self.hear, self.into, self.heard = hear, os.fdopen(tell, "wb"), b""
        self.number, self.events, self.session = 0, [], None
        target = self.do("Target.createTarget", url="about:blank")["targetId"]
        self.session = self.do("Target.attachToTarget", targetId=target, flatten=True)["sessionId"]
        for part in ("Page", "Runtime", "Log"):
            self.do(f"{part}.enable")

    def close(self):
        self.into.close()
        self.process.terminate()
        self.process.wait()
        self.home.cleanup()

    def message(self):
        while b"\0" not in self.heard:
            ready, _, _ = select.select([self.hear], [], [], PATIENCE)
            more = os.read(self.hear, 1 << 20) if ready else b""
            if not more:
                sys.exit("the browser does not answer")
            self.heard += more
        text, _, self.heard = self.heard.partition(b"\0")
        return json.loads(text)

    def do(self, method, **parameters):
        self.number += 1
        command = {"id": self.number, "method": method, "params": parameters}
        if self.session:
            command["sessionId"] = self.session
        self.into.write(json.dumps(command).encode() + b"\0")
        self.into.flush()
        while True:
            answer = self.message()
            if answer.get("id") == self.number:
                if "error" in answer:
                    sys.exit(f"{method}: {answer['error']}")
                return answer["result"]
            self.events.append(answer)

    def wait_for(self, method):
        while not any(each.get("method") == method for each in self.events):
            self.events.append(self.message())

    def evaluate(self, expression):
        result = self.do("Runtime.evaluate", expression=expression, awaitPromise=True, returnByValue=True)
        if "exceptionDetails" in result:
            sys.exit(f"{expression[:60]}: {result['exceptionDetails']}")
        return result["result"].get("value")

    def open(self, url):
        self.events.clear()
        self.do("Page.navigate", url=url)
        self.wait_for("Page.loadEventFired")
        return [each["params"] for each in self.events
                if each.get("method") == "Runtime.exceptionThrown"
                or (each.get("method") == "Log.entryAdded" and each["params"]["entry"]["level"] == "error")]

    def look(self, width, scheme):
        self.do("Emulation.setDeviceMetricsOverride", width=width, height=800, deviceScaleFactor=1, mobile=width < 600)
        self.do("Emulation.setEmulatedMedia", features=[{"name": "prefers-color-scheme", "value": scheme}])

    def picture(self, path):
        data = self.do("Page.captureScreenshot", format="png")["data"]
        path.write_bytes(base64.b64decode(data))


def looked_at(browser, folder, pictures):
    """Complaints of each page, and what each has: its places and links."""
    complaints, places, links = [], {}, defaultdict(set)
    for path in sorted(folder.glob("*.html")):
        url = path.as_uri()
        for failure in browser.open(url):
            complaints.append(f"{path.name}: {json.dumps(failure)[:200]}")
        for width, scheme in LOOKS:
            browser.look(width, scheme)
            told = json.loads(browser.evaluate(f"({LOOK})({json.dumps(scheme == 'dark')})"))
            complaints += [f"{path.name} at {width}, {scheme}: {each}" for each in told["wrong"]]
            if pictures and path.stem in PICTURED:
                browser.picture(pictures / f"{path.stem}-{width}-{scheme}.png")
        places[url] = set(told["places"])
        for link in told["links"]:
            links[link].add(path.name)
    return complaints, places, links


TYPE = r"""
(words) => JSON.stringify(words.map((word) => {
  const field = document.getElementById("find");
  field.focus();
  field.value = word;
  field.dispatchEvent(new Event("input"));
  const shown = [...document.querySelectorAll("#found a")].filter((each) => each.checkVisibility());
  return shown.map((each) => [each.firstChild.data, each.href]);
}))"""


def answers_of_search(browser, folder, links):
    """Types each name that the manual knows, and takes what the search offers, which has to be the name before all else."""
    browser.open((folder / "index.html").as_uri())
    words = json.loads(browser.evaluate("JSON.stringify(names)"))
    asked = sorted({word for word, _, _ in words})
    for word, answers in zip(asked, json.loads(browser.evaluate(f"({TYPE})({json.dumps(asked)})"))):
        if word.lower() not in [name.lower() for name, _ in answers[:1]]:
            yield f"the search for {word} offers {[name for name, _ in answers[:3]]}"
        for _, link in answers:
            links[link].add("the search")
    # And once as people do it.
    browser.evaluate("(document.getElementById('find').focus(), document.getElementById('find').select())")
    browser.do("Input.insertText", text="compareversion")
    browser.events.clear()
    for kind in ("keyDown", "keyUp"):
        browser.do("Input.dispatchKeyEvent", type=kind, key="Enter", code="Enter", windowsVirtualKeyCode=13, text="\r")
    browser.wait_for("Page.loadEventFired")
    place = browser.evaluate("location.href")
    if "KTUtilitiesVersions.html#" not in place:
        yield f"Return leads to {place}"


def lost(places, links):
    for link, pages in sorted(links.items()):
        page, _, place = link.partition("#")
        if page not in places:
            yield f"{min(pages)}: leads nowhere: {link}"
        elif place and place not in places[page]:
            yield f"{min(pages)}: no such place: {link}"


def main():
    folder = Path(sys.argv[1]).resolve()
    pictures = Path(sys.argv[2]) if len(sys.argv) > 2 else None
    if pictures:
        pictures.mkdir(parents=True, exist_ok=True)
    browser = Browser()
    complaints, places, links = looked_at(browser, folder, pictures)
    of_pages = len(links)
    complaints += answers_of_search(browser, folder, links)
    complaints += lost(places, links)
    browser.close()
    print(f"{len(places)} pages in {len(LOOKS)} looks, {of_pages} places linked, {len(links) - of_pages} more found")
    for complaint in complaints[:40]:
        print(complaint)
    sys.exit(1 if complaints or not places else 0)


if __name__ == "__main__":
    main()
