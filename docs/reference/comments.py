#!/usr/bin/env python3
"""Shows the headers' plain comments to Doxygen as documentation: comments.py FOLDER puts what it shall read there.

As people read them: a comment tells of the declaration below it, and of those that follow without a blank line or a
comment between; one behind a declaration tells of that; the one at the head of a file tells of the class of its name.
Lines keep their numbers, so that a warning names the right one.
"""
import re
import sys
from pathlib import Path

COMMENT = re.compile(r"^(\s*)//(?: (.*))?$")
TRAILING = re.compile(r"^(?P<code>[^\"]*?(?:\"[^\"]*\"[^\"]*?)*\S)\s+// (?P<text>.*)$")
OPENS_BODY = re.compile(r"^\s*(template\s*<.*>\s*)?(class|struct|enum|union|namespace|extern)\b[^;]*\{?$")
NO_DECLARATION = re.compile(r"^\s*($|#|\}|public:|private:|protected:|//)")
# An operator of two of a class. As a member it has a place in the reference.
OPERATOR = re.compile(r"^(\s*)friend (\S+) (operator\S+)\(const \w+&(?: \w+)?, (const \w+&(?: \w+)?)\)(.*)$")
LIKE_ALL = {"= default;": "as the language defines it", "= delete;": "there is one of it, and no copy"}
# What every class has, and says itself.
OF_THE_LANGUAGE = re.compile(r"= (delete|default)\b|~\w+\(|\bexplicit\b|\boperator\W")
# What is told to those who work on the library, not to those who use it.
FOR_AUTHORS = re.compile(r"\bWhy: docs/\S+")
# Each of the references that an object is made of.
OF_SERVICES = "Its class says what it is for. It must outlive what is made of these services."
HEADS = re.compile(r"(?:^|(?<=[.;)\"`] ))(Thread|Fails|Logs|KEEP): ?")


def escaped(text):
    """Words, and no commands: only `code` keeps its meaning."""
    parts = re.split(r"(`[^`]*`)", FOR_AUTHORS.sub("", text))
    for at in range(0, len(parts), 2):
        plain = re.sub(r"([\\@&$#<>%])", r"\\\1", parts[at])
        parts[at] = HEADS.sub(r"<br><b>\1:</b> ", plain.replace("*", r"\*").replace("_", r"\_"))
    return "".join(parts)


def shown(text):
    """One line of a comment; what stands further to the right is an example."""
    return "    " + text if text.startswith("  ") else escaped(text)


def sentence(text):
    text = escaped(text)
    return text[:1].upper() + text[1:] + ("" if text.endswith((".", ":")) else ".")


def joined(lines):
    return "/** " + sentence(" ".join(line.strip() for line in lines)) + " */ "


def end_of_declaration(lines, start):
    """The index behind the declaration that begins at `start`."""
    depth = 0
    for at in range(start, len(lines)):
        code = re.sub(r"\s*//.*$", "", re.sub(r"\"[^\"]*\"|'.'", "", lines[at]))
        depth += sum(code.count(mark) for mark in "({[") - sum(code.count(mark) for mark in ")}]")
        if depth <= 0 and code.rstrip().endswith((";", "}")):
            return at + 1
    return len(lines)


def with_trailing(line):
    match = TRAILING.match(line)
    return f"{match['code']}  ///< {sentence(match['text'])}" if match else line


def head_of(lines, stem):
    """The comment at the head of the file, as that of the file and of the class with its name."""
    size = next(at for at, line in enumerate(lines) if not line.startswith("//"))
    told = [COMMENT.match(line)[2] or "" for line in lines[:size]]
    code = "\n".join(lines)
    place = re.search(rf"^(class|struct) {stem}\b[^;]*\{{", code, re.M)
    own = place and not code[:place.start()].rstrip("\n").split("\n")[-1].startswith("//")
    told = [f" {shown(text)}".rstrip() for text in told]
    # Two lines more, for which the include guard and the empty line behind it make room.
    begin = ["/** @file */", f"/** @{place[1]} halvorn::{stem}"] if own else ["/** @file"]
    return size + 2, begin + told + [" */"] + ([] if own else [""])


def without_private(lines):
    """The lines, those that are nobody else's business empty. The formatter has put each in its column."""
    result, hidden = [], None
    for line in lines:
        indent = len(line) - len(line.lstrip())
        if hidden is not None and line.strip() and (indent < hidden or (indent == hidden and line.endswith(":"))):
            hidden = None
        if hidden is None and line.strip() == "private:":
            hidden = indent
        result.append("" if hidden is not None else line)
    return result


def documented(lines, stem):
    lines = [OPERATOR.sub(r"\1\2 \3(\4) const\5", line) for line in without_private(lines)]
    size, result = head_of(lines, stem)
    at, told, services = size, [], False
    while at < len(lines):
        line = lines[at]
        comment = COMMENT.match(line)
        if comment and not (comment[2] or "").startswith("---"):
            told.append(comment[2] or "")
            result.append(f"{comment[1]}/// {shown(comment[2] or '')}".rstrip())
        elif not NO_DECLARATION.match(line):
            end = end_of_declaration(lines, at)
            trailing = TRAILING.match(line)
            code = trailing["code"] if trailing else line
            whole = code + lines[at + 1] if re.match(r"^\s*template\s*<.*>$", code) else code
            is_body = OPENS_BODY.match(whole) and end > at + 1
            own = any(TRAILING.match(each) for each in lines[at:end])
            follows = at > 0 and not COMMENT.match(lines[at - 1])
            if trailing and not told and (is_body or code.endswith("{") or code.lstrip().startswith("enum")):
                # Behind it, the comment would be that of what stands within.
                line = joined([trailing["text"]]) + code.lstrip()
            if is_body:
                services = code.rstrip(" {").endswith("Services")
                told = []
                end = next(each for each in range(at, len(lines)) if "{" in lines[each]) + 1
            elif services and not told and not own and line.endswith(";"):
                line = joined([OF_SERVICES]) + line.lstrip()
            elif not own and (follows or not told) and (like := LIKE_ALL.get(line[line.rfind("= ") :])):
                line = joined([like]) + line.lstrip()
            elif told and follows and not OF_THE_LANGUAGE.search(line) and not own:
                line = joined(told) + line.lstrip()
            text = ""
            for each in [line, *lines[at + 1 : end]]:
                # Within a list of parameters a comment is the author's.
                text += re.sub(r"//.*|/[*].*?[*]/", "", each)
                result.append(each if text.count("(") > text.count(")") else with_trailing(each))
            at = end - 1
        else:
            told = []
            result.append(line)
        at += 1
        if at < len(lines) and COMMENT.match(lines[at]) and not COMMENT.match(lines[at - 1]):
            told = []
    return result


def public_headers():
    for folder in ("Core", "KTStuff", "Platform"):
        for path in sorted(Path(folder).rglob("*.h")):
            if not {"linux", "posix", "null", "mac"} & set(path.parts):
                yield path


if __name__ == "__main__":
    for path in public_headers():
        target = Path(sys.argv[1]) / path
        target.parent.mkdir(parents=True, exist_ok=True)
        lines = documented(path.read_text(encoding="utf-8").split("\n"), path.stem)
        target.write_text("\n".join(lines), encoding="utf-8")
