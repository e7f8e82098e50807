"""Programs of macOS as their format describes them: load commands, and where a signature lies. Nothing here decides."""
import struct

SIGNATURE_COMMAND, SEGMENT_COMMAND, HEADER = 0x1D, 0x19, 32
SUPER_BLOB, CODE_DIRECTORY, REQUIREMENTS, WRAPPER = 0xFADE0CC0, 0xFADE0C02, 0xFADE0C01, 0xFADE0B01
# What a code directory names beside the pages of the program, counted downwards from its first.
INFORMATION_SLOT, REQUIREMENTS_SLOT, RESOURCES_SLOT = 1, 2, 3
AD_HOC = 0x2
SHA256 = 2


def load_commands(data):
    """(place, command, size) of each."""
    count, place = struct.unpack_from("<I", data, 16)[0], HEADER
    for _ in range(count):
        command, size = struct.unpack_from("<2I", data, place)
        yield place, command, size
        place += size


def segment(data, name):
    """The place of the load command of a segment."""
    for place, command, _ in load_commands(data):
        if command == SEGMENT_COMMAND and data[place + 8:place + 24].rstrip(b"\0") == name:
            return place
    return None


def first_section(data):
    """Where in the file the first section begins: what lies between it and the load commands is free."""
    return min(offset for place, command, _ in load_commands(data) if command == SEGMENT_COMMAND
               for i in range(struct.unpack_from("<I", data, place + 64)[0])
               for offset in struct.unpack_from("<I", data, place + 72 + 80 * i + 48) if offset != 0)


def signature(data):
    """(place of the load command, where the signature begins, how long it is), or None."""
    for place, command, _ in load_commands(data):
        if command == SIGNATURE_COMMAND:
            return place, *struct.unpack_from("<2I", data, place + 8)
    return None


def blobs(data, start):
    """{slot: bytes} of the signature that begins there."""
    magic, _, count = struct.unpack_from(">3I", data, start)
    if magic != SUPER_BLOB:
        return {}
    found = {}
    for i in range(count):
        slot, offset = struct.unpack_from(">2I", data, start + 12 + 8 * i)
        length = struct.unpack_from(">I", data, start + offset + 4)[0]
        found[slot] = data[start + offset:start + offset + length]
    return found


class CodeDirectory:
    def __init__(self, blob):
        (self.magic, self.length, self.version, self.flags, hashes, identifier, special, pages,
         self.limit) = struct.unpack_from(">9I", blob)
        size, self.kind, _, self.page_bits = struct.unpack_from("4B", blob, 36)
        self.identifier = blob[identifier:blob.index(b"\0", identifier)].decode()
        self.pages = [blob[hashes + size * i:hashes + size * (i + 1)] for i in range(pages)]
        self.special = {i: blob[hashes - size * i:hashes - size * (i - 1)] for i in range(1, special + 1)}
