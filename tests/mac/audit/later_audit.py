#!/usr/bin/env python3
"""Holds what the macOS adapters use against a second set of declarations: those of a current SDK, for another language.

  later_audit.py TYPES OBJECT...

TYPES is the folder of type declarations that an npm package has of the system's frameworks. Compared are functions with their
numbers of parameters, records with their fields, classes, and selectors with their numbers of arguments: what is here must be
there, too. Facts are compared, nothing is taken. The objects are the adapters compiled for the system (Mach-O, 64 bits).

Prints what is not there or different, and how much was compared. Fails when anything is left that EXCEPTIONS does not name.
"""
import pathlib
import re
import sys

import audit

# What these declarations do not have, or have otherwise, and where it was looked up instead.
EXCEPTIONS = {
    "NSObject": "the runtime's own class: objc/NSObject.h, open source",
    "NSBeep": "a function of AppKit's, inlined by GNUstep's header",
} | dict.fromkeys(
    ["URLWithString:", "arrayWithArray:", "arrayWithCapacity:", "arrayWithObjects:", "bundleWithPath:",
     "dataWithBytes:length:", "dateWithTimeIntervalSince1970:", "dateWithTimeIntervalSinceNow:",
     "dictionaryWithObject:forKey:", "dictionaryWithObjects:forKeys:", "notificationWithName:object:",
     "runningApplicationWithProcessIdentifier:", "stringWithCharacters:length:", "stringWithString:"],
    "makes an object of its class: these declarations leave out such methods, and the other set has it")


def parameters_of(text, start):
    """How many parameters the list beginning at start has, and where it ends."""
    depth, count, place = 0, 0, start
    while True:
        sign = text[place]
        if sign in "([{<":
            depth += 1
        elif sign in ")]}" or (sign == ">" and text[place - 1] != "="):
            depth -= 1
            if depth == 0:
                inside = text[start + 1:place].strip()
                return (count + 1 if inside else 0), place
        elif sign == "," and depth == 1:
            count += 1
        place += 1


def declared(types):
    functions, methods, properties, classes, records = {}, {}, set(), set(), {}
    for file in sorted(types.glob("*.d.ts")):
        text = file.read_text(encoding="utf-8")
        if file.name == "Kernel.d.ts":
            continue  # the same names inside the kernel, with other types
        for found in re.finditer(r"^declare function (\w+)(?=\()", text, flags=re.M):
            functions.setdefault(found[1], set()).add(parameters_of(text, found.end())[0])
        classes.update(re.findall(r"^declare class (\w+)", text, flags=re.M))
        for name, body in re.findall(r"^declare class (\w+) \{(.*?)^\}", text, flags=re.M | re.S):
            records[name] = [field for field in re.findall(r"^  (\w+): ", body, flags=re.M)]
        for found in re.finditer(r"^  (?:static )?(\w+)(?:<[^>\n]*>)?\??(?=\()", text, flags=re.M):
            methods.setdefault(found[1], set()).add(parameters_of(text, found.end())[0])
        properties.update(re.findall(r"^  (?:static )?(?:readonly )?(?:get |set )?(\w+)\??(?:: |\()", text, flags=re.M))
    return functions, methods, properties, classes, records


def joined(selector):
    """The selector as these declarations write it."""
    first, *rest = [part for part in selector.split(":") if part]
    return first + "".join(part[0].upper() + part[1:] for part in rest)


def is_declared(selector, methods, properties):
    count = selector.count(":")
    if count in methods.get(joined(selector), ()):
        return True
    if count == 0:
        return selector in properties or "is" + selector[0].upper() + selector[1:] in properties or (
            selector.startswith("is") and selector[2:3].lower() + selector[3:] in properties)
    setter = re.fullmatch(r"set([A-Z]\w*):", selector)
    if not setter:
        return False
    name = setter[1][0].lower() + setter[1][1:]
    return name in properties or setter[1] in properties or "is" + setter[1] in properties


def main():
    types = pathlib.Path(sys.argv[1])
    functions, methods, properties, classes, records = declared(types)
    here, _, own_records = audit.declared_here()
    complaints, counts = [], [0, 0, 0, 0]
    for name, arity in sorted(here.items()):
        if name in EXCEPTIONS:
            continue
        counts[0] += 1
        if name not in functions:
            complaints.append(f"function {name}: not among the later declarations")
        elif arity not in functions[name]:
            complaints.append(f"function {name}: {arity} parameters here, {sorted(functions[name])} there")
    for name, fields in sorted(own_records.items()):
        if name in EXCEPTIONS:
            continue
        counts[1] += 1
        if records.get(name) != fields:
            complaints.append(f"record {name}: {fields} here, {records.get(name)} there")
    own = audit.names_of_our_own(audit.our_sources())
    selectors, used = set(), set()
    for path in sys.argv[2:]:
        undefined, named = audit.used_by(pathlib.Path(path))
        selectors.update(named)
        used.update(re.findall(r"_OBJC_CLASS_\$_(\w+)", " ".join(undefined)))
    for name in sorted(used - set(EXCEPTIONS)):
        counts[2] += 1
        if name not in classes and not name.startswith("KT"):
            complaints.append(f"class {name}: not among the later declarations")
    for selector in sorted(selectors):
        if selector in own or selector in EXCEPTIONS or not selector:
            continue
        counts[3] += 1
        if not is_declared(selector, methods, properties):
            complaints.append(f"selector {selector}: not among the later declarations")
    print("compared with the later declarations: {} functions, {} records, {} classes, {} selectors; {} exceptions".format(
        *counts, len(EXCEPTIONS)))
    if min(counts) == 0:
        complaints.append("something was not compared at all")
    print("\n".join(complaints), end="\n" if complaints else "")
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
