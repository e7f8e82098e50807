#!/usr/bin/env python3
"""The commands of a build as another compiler understands them.

usage: plain_commands.py BUILD FOLDER

Writes FOLDER/compile_commands.json: that of BUILD without the headers that the build's compiler reads beforehand, which no other
one can read. A source is thereby held to what it includes itself.
"""
import json, pathlib, shlex, sys

READ_BEFOREHAND = "cmake_pch.hxx"


def plain(words):
    """The words of a command, less those about headers that are read beforehand."""
    kept = []
    for word in words:
        if word.endswith(READ_BEFOREHAND) and kept and kept[-1] == "-include":
            kept.pop()
        elif word not in ("-Winvalid-pch", "-fpch-preprocess"):
            kept.append(word)
    return kept


def main():
    build, folder = (pathlib.Path(word) for word in sys.argv[1:3])
    entries = json.loads((build / "compile_commands.json").read_text())
    commands = [{"directory": entry["directory"], "file": entry["file"], "arguments": plain(shlex.split(entry["command"]))}
                for entry in entries if READ_BEFOREHAND not in entry["file"]]
    (folder / "compile_commands.json").write_text(json.dumps(commands, indent=1))


if __name__ == "__main__":
    main()
