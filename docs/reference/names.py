#!/usr/bin/env python3
"""Writes what the manual's search knows: names.py XML HTML puts HTML/names.js there, a name, its scope and its place each."""
import json
import sys
import xml.etree.ElementTree as xml
from pathlib import Path

SHOWN = {"class", "struct", "union", "namespace", "page", "file"}
ANCHOR = 33  # letters in the anchor of a name


def entries(index):
    for compound in index.iter("compound"):
        place, whole = compound.get("refid"), compound.findtext("name")
        if compound.get("kind") not in SHOWN or whole.endswith(".md"):
            continue
        if compound.get("kind") != "page":
            scope, _, name = whole.rpartition("::")
            if compound.get("kind") != "namespace":
                yield name, scope, f"{place}.html"
        else:
            title = xml.parse(Path(sys.argv[1]) / f"{place}.xml").findtext("compounddef/title")
            yield title, "guide", "index.html" if place == "indexpage" else f"{place}.html"
        # What a namespace holds is told on the page of its header, and found there.
        scope = "" if compound.get("kind") == "file" else whole
        for member in compound.iter("member"):
            page, _, anchor = member.get("refid").rpartition("_1")
            # An enumerator stands where its enumeration does.
            yield member.findtext("name"), scope, f"{page}.html#{anchor[:ANCHOR]}"


if __name__ == "__main__":
    known = {}
    for name, scope, place in entries(xml.parse(Path(sys.argv[1]) / "index.xml").getroot()):
        # Both a header and a namespace list what is in them.
        known[name, place] = scope or known.get((name, place), "")
    words = sorted(((name, scope, place) for (name, place), scope in known.items()), key=lambda each: each[0].lower())
    text = json.dumps(words, indent=0, ensure_ascii=False)
    (Path(sys.argv[2]) / "names.js").write_text(f"const names = {text};\n", encoding="utf-8")
