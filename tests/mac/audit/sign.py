#!/usr/bin/env python3
"""Signs a bundle ad hoc: its programs page by page, and with the main one its Info.plist and all of its resources.

  sign.py BUNDLE.app

What macOS asks before it runs a program is whether it is still what was signed; ad hoc says so without saying by whom. The
tool comes first: it is one of the resources. The forms are those of a code directory of version 2.4 and of an envelope of
resources of version 2.
"""
import hashlib
import pathlib
import plistlib
import re
import struct
import sys

sys.dont_write_bytecode = True
import macho  # noqa: E402 (nothing is left beside the sources)

PAGE_BITS = 12
CODE_DIRECTORY_HEADER = 88
MAIN_PROGRAM = 1
# Which files of Contents are sealed, by the rule of the greatest weight that matches. The first table is for systems before
# 10.9, and for resources alone.
OLD_RULES = {
    "^Resources/": True,
    r"^Resources/.*\.lproj/": {"optional": True, "weight": 1000.0},
    r"^Resources/.*\.lproj/locversion.plist$": {"omit": True, "weight": 1100.0},
    r"^Resources/Base\.lproj/": {"weight": 1010.0},
    "^version.plist$": True,
}
RULES = {
    r".*\.dSYM($|/)": {"weight": 11.0},
    r"^(.*/)?\.DS_Store$": {"omit": True, "weight": 2000.0},
    "^(Frameworks|SharedFrameworks|PlugIns|Plug-ins|XPCServices|Helpers|MacOS|Library/(Automator|Spotlight|LoginItems))/":
        {"nested": True, "weight": 10.0},
    "^.*": True,
    r"^Info\.plist$": {"omit": True, "weight": 20.0},
    "^PkgInfo$": {"omit": True, "weight": 20.0},
    "^Resources/": {"weight": 20.0},
    r"^Resources/.*\.lproj/": {"optional": True, "weight": 1000.0},
    r"^Resources/.*\.lproj/locversion.plist$": {"omit": True, "weight": 1100.0},
    r"^Resources/Base\.lproj/": {"weight": 1010.0},
    "^[^/]+$": {"nested": True, "weight": 10.0},
    r"^embedded\.provisionprofile$": {"weight": 20.0},
    r"^version\.plist$": {"weight": 20.0},
}


def rule_for(path, rules):
    """What the heaviest rule says of the path; None where there is none."""
    found = [rule if isinstance(rule, dict) else {} for pattern, rule in rules.items() if re.search(pattern, path)]
    return max(found, key=lambda rule: rule.get("weight", 1.0), default=None)


def envelope(contents, program):
    """The list of the resources with their digests, as bytes."""
    sealed = {"files": {}, "files2": {}, "rules": OLD_RULES, "rules2": RULES}
    for file in sorted(contents.rglob("*")):
        path = file.relative_to(contents).as_posix()
        if not file.is_file() or path.startswith("_CodeSignature/") or file == program:
            continue
        data = file.read_bytes()
        optional = {"optional": True} if (rule_for(path, RULES) or {}).get("optional") else {}
        rule, old = rule_for(path, RULES), rule_for(path, OLD_RULES)
        if rule is not None and not rule.get("omit") and not rule.get("nested"):
            sealed["files2"][path] = {"hash2": hashlib.sha256(data).digest(), **optional}
        if old is not None and not old.get("omit"):
            digest = hashlib.sha1(data).digest()
            sealed["files"][path] = {"hash": digest, **optional} if optional else digest
    return plistlib.dumps(sealed)


def blob(magic, content=b""):
    return struct.pack(">2I", magic, 8 + len(content)) + content


def code_directory(data, limit, identifier, special, text_size):
    pages = [data[at:min(at + (1 << PAGE_BITS), limit)] for at in range(0, limit, 1 << PAGE_BITS)]
    name = identifier.encode() + b"\0"
    most = max(special)
    hashes = CODE_DIRECTORY_HEADER + len(name) + 32 * most
    digests = [special.get(slot, bytes(32)) for slot in range(most, 0, -1)]
    digests += [hashlib.sha256(page).digest() for page in pages]
    fields = struct.pack(">7I", 0x20400, macho.AD_HOC, hashes, CODE_DIRECTORY_HEADER, most, len(pages), limit)
    fields += struct.pack("4B", 32, macho.SHA256, 0, PAGE_BITS) + bytes(24)
    fields += struct.pack(">3Q", 0, text_size, MAIN_PROGRAM)
    return blob(macho.CODE_DIRECTORY, fields + name + b"".join(digests))


def super_blob(parts):
    """parts: [(slot, blob)]"""
    place, index = 12 + 8 * len(parts), b""
    for slot, part in parts:
        index += struct.pack(">2I", slot, place)
        place += len(part)
    return blob(macho.SUPER_BLOB, struct.pack(">I", len(parts)) + index + b"".join(part for _, part in parts))


def room_for_signature(data):
    """The program without its signature, and the place of the load command for the next; where there is none it is added."""
    found = macho.signature(data)
    if found is not None:
        return data[:found[1]], found[0]
    count, size = struct.unpack_from("<2I", data, 16)
    place = macho.HEADER + size
    if place + 16 > macho.first_section(data):
        sys.exit("there is no room for another load command")
    struct.pack_into("<2I", data, 16, count + 1, size + 16)
    struct.pack_into("<2I", data, place, macho.SIGNATURE_COMMAND, 16)
    return data + bytes(-len(data) % 16), place


def sign(program, identifier, special):
    data, command = room_for_signature(bytearray(program.read_bytes()))
    limit = len(data)
    requirements = blob(macho.REQUIREMENTS, bytes(4))
    special = {**special, macho.REQUIREMENTS_SLOT: hashlib.sha256(requirements).digest()}
    text_size = struct.unpack_from("<Q", data, macho.segment(data, b"__TEXT") + 48)[0]

    def signature():
        return super_blob([(0, code_directory(bytes(data), limit, identifier, special, text_size)),
                           (macho.REQUIREMENTS_SLOT, requirements), (0x10000, blob(macho.WRAPPER))])

    # The size stands in the first page, which is signed too.
    size = len(signature())
    size += -size % 16
    linkedit = macho.segment(data, b"__LINKEDIT")
    start = struct.unpack_from("<Q", data, linkedit + 40)[0]
    length = limit + size - start
    struct.pack_into("<2I", data, command + 8, limit, size)
    struct.pack_into("<Q", data, linkedit + 32, length + -length % 0x4000)
    struct.pack_into("<Q", data, linkedit + 48, length)
    program.write_bytes(bytes(data) + signature().ljust(size, b"\0"))


def main():
    contents = pathlib.Path(sys.argv[1]) / "Contents"
    information = (contents / "Info.plist").read_bytes()
    described = plistlib.loads(information)
    program = contents / "MacOS" / described["CFBundleExecutable"]
    sign(contents / "Resources/train", "train", {})
    seal = envelope(contents, program)
    (contents / "_CodeSignature").mkdir(exist_ok=True)
    (contents / "_CodeSignature/CodeResources").write_bytes(seal)
    sign(program, described["CFBundleIdentifier"], {macho.INFORMATION_SLOT: hashlib.sha256(information).digest(),
                                                    macho.RESOURCES_SLOT: hashlib.sha256(seal).digest()})


if __name__ == "__main__":
    main()
