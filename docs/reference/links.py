#!/usr/bin/env python3
"""Whether everything in the manual that leads somewhere leads there: links.py FOLDER looks at each page in it.

Links and their anchors, what pages load, and what the search finds. Nothing leads out of the folder.
"""
import json
import re
import sys
from html.parser import HTMLParser
from pathlib import Path
from urllib.parse import unquote


class Page(HTMLParser):
    def __init__(self, path):
        super().__init__()
        self.anchors, self.links = set(), []
        self.feed(path.read_text(encoding="utf-8"))

    def handle_starttag(self, tag, attributes):
        values = dict(attributes)
        self.anchors |= {values[name] for name in ("id", "name") if values.get(name)}
        self.links += [values[name] for name in ("href", "src") if values.get(name)]


def found_by_search(folder):
    """Where each of the search's answers leads."""
    path = folder / "names.js"
    words = json.loads(path.read_text(encoding="utf-8").split("=", 1)[1].rstrip(";\n"))
    return [(path, place) for _, _, place in words]


def problems(folder):
    pages = {path.resolve(): Page(path) for path in sorted(folder.rglob("*.html"))}
    if "index.html" not in {path.name for path in pages}:
        yield f"{folder} is no manual"
    links = [(path, link) for path, page in pages.items() for link in page.links]
    answers = found_by_search(folder)
    if not answers:
        yield "the search finds nothing"
    for path, link in links + answers:
        if link.startswith("javascript:"):
            continue
        if re.match(r"[a-z]+:", link):
            yield f"{path.name}: leads outside: {link}"
            continue
        place, _, anchor = link.partition("#")
        target = (path.parent / unquote(place)).resolve() if place else path.resolve()
        if not target.exists():
            yield f"{path.name}: no such file: {link}"
        elif anchor and unquote(anchor) not in pages[target].anchors:
            yield f"{path.name}: no such place: {link}"
    print(f"{len(pages)} pages, {len(links)} links, {len(answers)} answers of the search")


if __name__ == "__main__":
    wrong = sorted(set(problems(Path(sys.argv[1]))))
    for problem in wrong[:40]:
        print(problem)
    sys.exit(1 if wrong else 0)
