#!/usr/bin/env python3
"""Holds what the macOS adapters use against declarations that others wrote down.

  audit.py PASCAL LIBSYSTEM OBJECT...

PASCAL is the folder of the Pascal units for the system's frameworks (univint, cocoaint), as a package has them: a
description of the same functions, constants, records, classes and selectors by other hands. LIBSYSTEM is a list of what the
system's C library exports. Facts are compared, nothing is taken. The objects are the adapters compiled for the system
(Mach-O, 64 bits): they tell which functions, classes and selectors are really used.

Prints what is not there or different, and how much was compared. Fails when anything is left that EXCEPTIONS does not name.
"""
import pathlib
import re
import struct
import sys

# What the units do not have, or name otherwise, and where it was looked up instead.
EXCEPTIONS = {
    "IOServiceMatching": "IOKit has no unit: IOKitLib.h, open source",
    "IOServiceGetMatchingServices": "IOKit has no unit: IOKitLib.h, open source",
    "IOIteratorNext": "IOKit has no unit: IOKitLib.h, open source",
    "IORegistryEntryCreateCFProperties": "IOKit has no unit: IOKitLib.h, open source",
    "IOObjectRelease": "IOKit has no unit: IOKitLib.h, open source",
    "kIOMasterPortDefault": "IOKit has no unit: IOKitLib.h, open source",
    "NSObject": "the runtime's own class: objc/NSObject.h, open source",
    "_NSRangeExceptionRaise": "GNUstep's own, inlined by its NSMakeRange; the system's header has none of it",
    "GSCurrentContext": "GNUstep's own, inlined by its NSBeep, which is a function of AppKit's",
    "OBJC_IVAR_$_NSGraphicsContext.methods": "likewise",
    "NSBeep": "likewise",
    "LSItemInfoRecord": "the units count the fields that only 32-bit programs have",
    "bestMatchFromAppearancesWithNames:": "of 10.14, later than the units: documentation of NSAppearance",
    "NSAppearanceNameDarkAqua": "of 10.14, later than the units: documentation of NSAppearance",
    "KERN_SUCCESS": "the kernel's: mach/kern_return.h, open source",
}

ROOT = pathlib.Path(__file__).resolve().parents[3]
HEADERS = ROOT / "tests/mac/frameworks/include"


def without_comments(text):
    return re.sub(r"//[^\n]*|/\*.*?\*/", " ", text, flags=re.S)


def names_between(parameters, separator):
    return len([part for part in parameters.split(separator) if part.strip()])


def number(expression):
    """The value of a constant, of either language; None for what is no number."""
    text = expression.strip()
    code = re.fullmatch(r"FourCharCode\(\s*'(.{4})'\s*\)|'(.{4})'", text, flags=re.S)
    if code:
        return int.from_bytes((code[1] or code[2]).encode("latin-1"), "big")
    text = re.sub(r"\$([0-9A-Fa-f]+)", r"0x\1", text).replace(" shl ", "<<")
    text = re.sub(r"\b(0x[0-9A-Fa-f]+|\d+)U?L?\b", r"\1", text)
    if not re.fullmatch(r"[0-9A-Fa-fx<\-()\s]+", text):
        return None
    try:
        return eval(text) & 0xFFFFFFFF  # digits, shifts and a sign alone
    except (SyntaxError, TypeError):
        return None


def declared_here():
    functions, constants, records = {}, {}, {}
    for header in sorted(HEADERS.rglob("*.h")):
        text = without_comments(header.read_text())
        text = re.sub(r"^\s*#[^\n]*", "", text, flags=re.M)
        for body in re.findall(r"\benum\b[^{;]*\{([^}]*)\}", text):
            for entry in body.split(","):
                name, _, value = entry.partition("=")
                if value:
                    constants[name.strip()] = number(value)
        for name, body in re.findall(r"\bstruct (\w+) \{([^{}]*)\}", text):
            records[name] = re.findall(r"(\w+)(?:\[\d+\])?;", body)
        text = re.sub(r"\b(enum|struct)\b[^{;]*\{[^}]*\}[^;]*;|\btypedef\b[^;]*;|@[a-z]+[^@]*@end", " ", text)
        for name, parameters in re.findall(r"\b(\w+)\(([^();]*)\);", text):
            functions[name] = 0 if parameters.strip() in ("", "void") else names_between(parameters, ",")
    return functions, constants, records


def without_pascal_comments(text):
    return re.sub(r"\{.*?\}|\(\*.*?\*\)|//[^\n]*", " ", text, flags=re.S)


def declared_there(pascal):
    functions, constants, records = {}, {}, {}
    for unit in sorted((pascal / "univint/src").glob("*.pas")):
        text = without_pascal_comments(unit.read_text(encoding="latin-1"))
        for parameters, name in re.findall(
                r"\b(?:function|procedure)\s+\w+\s*(?:\(([^)]*)\))?[^;]*;\s*external name '_(\w+)'", text):
            functions[name] = sum(names_between(group.split(":")[0], ",") for group in parameters.split(";"))
        for name, value in re.findall(r"\b(\w+)\s*=\s*([^;=]+);", text):
            if number(value) is not None:
                constants.setdefault(name, number(value))
        for name, body in re.findall(r"\b(\w+)\s*=\s*(?:packed\s+)?record\b(.*?)\bend;", text, flags=re.S):
            fields = [field.strip() for group in re.findall(r"([\w\s,]+):", body) for field in group.split(",")]
            records.setdefault(name, fields)
    return functions, constants, records


def compared(kind, here, there, complaints):
    count = 0
    for name, value in sorted(here.items()):
        if name in EXCEPTIONS:
            continue
        if name not in there:
            complaints.append(f"{kind} {name}: not among the declarations")
        elif there[name] != value:
            complaints.append(f"{kind} {name}: {value} here, {there[name]} there")
        count += 1
    return count


def known_to_objective_c(pascal):
    """The selectors, the classes, and the functions and variables of the units."""
    selectors, classes, names = set(), set(), set()
    for file in (pascal / "cocoaint/src").rglob("*.inc"):
        text = file.read_text(encoding="latin-1")
        selectors.update(re.findall(r"message '([^']+)'", text))
        classes.update(re.findall(r"^\s*(\w+) = objcclass external", text, flags=re.M))
        names.update(re.findall(r"^\s*(\w+)\s*:[^;]*; cvar; external", text, flags=re.M))
        names.update(re.findall(r"^\s*(?:function|procedure) (\w+)\b[^\n]*; cdecl; external", text, flags=re.M))
    for unit in (pascal / "univint/src").glob("*.pas"):
        names.update(re.findall(r"external name '_(\w+)'", unit.read_text(encoding="latin-1")))
    return selectors, classes, names


def c_string(data, start):
    return data[start:data.index(b"\0", start)].decode()


def used_by(path):
    """What an object names that is defined elsewhere, and the selectors in it."""
    data = path.read_bytes()
    magic, _, _, _, commands = struct.unpack_from("<5I", data)
    if magic != 0xFEEDFACF:
        raise ValueError(f"{path} is no 64-bit Mach-O object")
    undefined, selectors, place = set(), set(), 32
    for _ in range(commands):
        command, size = struct.unpack_from("<2I", data, place)
        if command == 0x19:  # a segment: sections of 80 bytes behind 72
            for i in range(struct.unpack_from("<I", data, place + 64)[0]):
                start = place + 72 + 80 * i
                length, offset = struct.unpack_from("<QI", data, start + 40)
                if data[start:start + 16].rstrip(b"\0") == b"__objc_methname":
                    selectors.update(data[offset:offset + length].rstrip(b"\0").decode().split("\0"))
        if command == 0x2:  # the symbols
            symbols, count, strings = struct.unpack_from("<3I", data, place + 8)
            for i in range(count):
                name, kind, section = struct.unpack_from("<IBB", data, symbols + 16 * i)
                if kind & 0x01 and kind & 0x0E == 0 and section == 0:
                    undefined.add(c_string(data, strings + name))
        place += size
    return undefined, selectors


def names_of_our_own(sources):
    """Selectors of the classes in the sources, and their instance variables, which stand among the selectors."""
    own = set()
    for source in sources:
        text = source.read_text()
        for body in re.findall(r"@interface [^{\n]*\{(.*?)\}", text, flags=re.S):
            own.update(re.findall(r"(\w+_);", body))
        for line in re.findall(r"^[-+] \([^\n{;]*(?:\n[^\n{;]*)*", text, flags=re.M):
            labels = re.findall(r"(\w+):\(", line)
            own.add("".join(label + ":" for label in labels) or re.match(r"[-+] \([^)]*\)(\w+)", line)[1])
    return own


def classes_of_our_own(sources):
    return {name for source in sources for name in re.findall(r"^@interface (\w+) :", source.read_text(), flags=re.M)}


def our_sources():
    return [source for ending in ("mm", "h") for source in (ROOT / "Platform").glob(f"*/mac/*.{ending}")]


def symbol_complaint(symbol, names, classes, system):
    """Why the symbol is none that the system has; None for one that it has, or that is of our own or of C++."""
    if re.match(r"__Z|__(_?objc|Unwind|Block|NSConcrete)|_objc_|__?Block_|__NSConcrete|___(cxa|gxx|stack|CFConstant|dso_handle|dynamic_cast)", symbol):
        return None
    kind = re.match(r"_OBJC_(?:CLASS|METACLASS)_\$_(\w+)", symbol)
    if kind:
        return None if kind[1] in classes or kind[1] in EXCEPTIONS else "no such class among the declarations"
    name = symbol[1:]
    if name in names or name in EXCEPTIONS or symbol in system:
        return None
    return "neither declared for the frameworks nor exported by the C library"


def main():
    pascal, library = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])
    objects = [pathlib.Path(name) for name in sys.argv[3:]]
    complaints = []
    here, there = declared_here(), declared_there(pascal)
    counts = [compared(kind, here[i], there[i], complaints)
              for i, kind in enumerate(("function", "constant", "record"))]
    known, classes, names = known_to_objective_c(pascal)
    own = names_of_our_own(our_sources())
    classes |= classes_of_our_own(our_sources())
    system = set(re.findall(r"[\w$]+", library.read_text()))
    selectors, symbols = {}, {}
    for path in objects:
        undefined, named = used_by(path)
        selectors.update({name: path.name for name in named})
        symbols.update({name: path.name for name in undefined})
    for name, path in sorted(selectors.items()):
        if name not in known and name not in own and name not in EXCEPTIONS:
            complaints.append(f"selector {name} ({path}): not among the declarations")
    for name, path in sorted(symbols.items()):
        reason = symbol_complaint(name, names, classes, system)
        if reason:
            complaints.append(f"symbol {name} ({path}): {reason}")
    counts += [len(selectors), len(symbols)]
    print("compared: {} functions, {} constants, {} records, {} selectors, {} symbols of {} objects; {} exceptions".format(
        *counts, len(objects), len(EXCEPTIONS)))
    if min(counts) == 0:
        complaints.append("something was not compared at all")
    print("\n".join(complaints), end="\n" if complaints else "")
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
