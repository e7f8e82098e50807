#!/usr/bin/env python3
"""How many public names the manual tells something of: coverage.py FOLDER_OF_XML. Fails when it is not every one.

An enumerator is told of by its enumeration, and what overrides by what it overrides.
"""
import sys
import xml.etree.ElementTree as xml
from pathlib import Path

COMPOUNDS = {"class", "struct", "union", "namespace"}


def is_told(element):
    return any("".join(part.itertext()).strip() for part in element if part.tag in ("briefdescription", "detaileddescription"))


def names(folder):
    """Each public name, and whether something is told of it."""
    members, overrides = {}, {}
    for path in sorted(Path(folder).glob("*.xml")):
        for compound in xml.parse(path).getroot().iter("compounddef"):
            if compound.get("prot", "public") != "public":
                continue
            name = compound.findtext("compoundname")
            if compound.get("kind") in COMPOUNDS - {"namespace"}:
                members[name] = is_told(compound)
            for member in compound.iter("memberdef"):
                if member.get("prot") != "public":
                    continue
                key = member.get("id")
                members[key] = members.get(key, False) or is_told(member)
                overrides[key] = [each.get("refid") for each in member.findall("reimplements")]
                names.title[key] = f"{name}::{member.findtext('name')}"
    for key, below in overrides.items():
        while not members[key] and below and below[0] in members:
            members[key] = members[below[0]]
            below = overrides.get(below[0], [])
    return members


names.title = {}

if __name__ == "__main__":
    found = names(sys.argv[1])
    silent = sorted(names.title.get(key, key) for key, told in found.items() if not told)
    print(f"{len(found) - len(silent)} of {len(found)} public names are documented")
    for name in silent[:40]:
        print(name)
    sys.exit(1 if silent or not found else 0)
