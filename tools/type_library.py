#!/usr/bin/env python3
"""Makes of an IDL file what the library is built of.

    type_library.py IDL FOLDER COMPILER WIDL [ARGUMENT...]

runs WIDL for FOLDER/<name>.h (interfaces), <name>_i.c (identifiers) and <name>.tlb (type library).
Two things that the IDL says are more than widl takes; they are put into the type library here:

  * help strings of an enumeration's values, written before the value;
  * text as the default of a parameter by reference.

Then it writes what else is derived of the IDL (published.py):

  <name>_classes.h  the automation classes, in C++;
  <name>.manifest   by which hosts use the classes without registration;
  <name>.cs, <name>_TLB.pas   what hosts in C# and Pascal are compiled against (interop.py).
"""

import re
import struct
import subprocess
import sys
from pathlib import Path

import interop
import published

STRING = r'"((?:[^"\\]|\\.)*)"'
HAS_DEFAULTS = 0x1000  # in a function's record
PARAMETER_HAS_DEFAULT = 0x20
ENUM, DISPATCH = 0, 4
VT_BSTR = 8


def split(idl):
    """The IDL as widl takes it, {value: help string} and {(method, parameter): default}."""
    helps, defaults = {}, {}

    def enumeration(match):
        return re.sub(
            r"\[helpstring\(" + STRING + r"\)\]\s*(\w+)",
            lambda m: (helps.update({m[2]: m[1]}), m[2])[1],
            match[0],
        )

    def method(match):
        def default(m):
            defaults[match[1], m[3]] = m[1]
            return m[0].replace(f'"{m[1]}"', "0")

        return re.sub(r"defaultvalue\(" + STRING + r"\)\]\s*(BSTR)\s*\*\s*(\w+)", default, match[0])

    idl = re.sub(r"\benum\s+\w+\s*\{.*?\}", enumeration, idl, flags=re.S)
    return re.sub(r"\bHRESULT\s+(\w+)\(.*?;", method, idl, flags=re.S), helps, defaults


class TypeLibrary:
    """A type library's file: header, segments, and a block of records for each type."""

    (TYPES, _, _, _, _, GUIDS, _, NAMES, STRINGS, _, _, CONSTANTS) = range(12)
    TYPE_SIZE = 0x64

    def __init__(self, data):
        assert data[:4] == b"MSFT", "no type library"
        flags, count = struct.unpack_from("<I", data, 0x14)[0], struct.unpack_from("<I", data, 0x20)[0]
        self.directory = 0x54 + (4 if flags & 0x100 else 0) + 4 * count
        self.header = bytearray(data[: self.directory])
        self.places = [list(struct.unpack_from("<4i", data, self.directory + 16 * i)) for i in range(15)]
        self.segments = [bytearray(data[max(at, 0) : max(at, 0) + size]) for at, size, _, _ in self.places]
        self.types = [Type(self, i, data) for i in range(count)]

    def bytes(self):
        at = self.directory + 16 * len(self.places)
        directory, body = b"", b""
        order = sorted(range(15), key=lambda i: self.places[i][0] & 0xFFFFFFFF)
        for i in order:
            if self.places[i][0] >= 0:
                self.places[i][:2] = at + len(body), len(self.segments[i])
                body += self.segments[i] if i != self.TYPES else b"\0" * len(self.segments[i])
        for kind in self.types:
            struct.pack_into("<I", self.segments[self.TYPES], kind.at + 4, at + len(body))
            body += kind.block()
        start = self.places[self.TYPES][0] - at
        types = bytes(self.segments[self.TYPES])
        body = body[:start] + types + body[start + len(types) :]
        directory = b"".join(struct.pack("<4i", *place) for place in self.places)
        return bytes(self.header) + directory + body

    def append(self, segment, content):
        """Adds to a segment in whole words; the place of what was added."""
        at = len(self.segments[segment])
        content = content.ljust(8, b"W")
        self.segments[segment] += content + b"W" * (-len(content) % 4)
        return at

    def add_string(self, text):
        text = text.encode("ascii")
        return self.append(self.STRINGS, struct.pack("<H", len(text)) + text)

    def add_constant(self, text):
        text = text.encode("ascii")
        return self.append(self.CONSTANTS, struct.pack("<HI", VT_BSTR, len(text)) + text)

    def name(self, at):
        length = self.segments[self.NAMES][at + 8]
        return self.segments[self.NAMES][at + 12 : at + 12 + length].decode("ascii")


class Type:
    """A type: its place in the first segment, and its members' records."""

    def __init__(self, library, number, data):
        self.typelib = library
        self.at = number * library.TYPE_SIZE
        kind, block = struct.unpack_from("<2I", self._base(), 0)
        self.kind = kind & 0xF
        (members,) = struct.unpack_from("<I", self._base(), 0x18)
        self.name = library.name(struct.unpack_from("<i", self._base(), 0x34)[0])
        self.functions, self.records, self.index = members & 0xFFFF, [], b""
        count = self.functions + (members >> 16)
        if not count:
            return
        (size,) = struct.unpack_from("<I", data, block)
        at, end = block + 4, block + 4 + size
        while at < end:
            length = struct.unpack_from("<H", data, at)[0]
            self.records.append(bytearray(data[at : at + length]))
            at += length
        assert len(self.records) == count
        # Their ids and names, and then where the records start, which block() works out.
        self.ids = struct.unpack_from(f"<{count}i", data, end)
        self.names = [library.name(at) for at in struct.unpack_from(f"<{count}i", data, end + 4 * count)]
        self.index = data[end : end + 8 * count]

    def _base(self):
        return self.typelib.segments[self.typelib.TYPES][self.at : self.at + self.typelib.TYPE_SIZE]

    def block(self):
        if not self.records:
            return b""
        starts, at = b"", 0
        for record in self.records:
            starts += struct.pack("<I", at)
            at += len(record)
        return struct.pack("<I", at) + b"".join(self.records) + self.index + starts

    def set_help(self, member, text):
        """Of a member that has none: the record ends before it."""
        record = self.records[self.names.index(member)]
        assert len(record) == 0x14, member
        record += struct.pack("<2i", 0, self.typelib.add_string(text))
        struct.pack_into("<H", record, 0, len(record))

    def parameters(self, function):
        """Each parameter's place in the record, and its name."""
        record = self.records[function]
        (count,) = struct.unpack_from("<H", record, 0x14)
        first = len(record) - 12 * count
        places = [first + 12 * i for i in range(count)]
        return [(at, self.typelib.name(struct.unpack_from("<i", record, at + 4)[0])) for at in places]

    def set_default(self, function, parameter, text):
        record, parameters = self.records[function], self.parameters(function)
        (kinds,) = struct.unpack_from("<I", record, 0x10)
        assert kinds & HAS_DEFAULTS, parameter
        (number,) = (i for i, (_, name) in enumerate(parameters) if name == parameter)
        at = parameters[number][0]
        (flags,) = struct.unpack_from("<I", record, at + 8)
        assert flags & PARAMETER_HAS_DEFAULT, parameter
        constant = self.typelib.add_constant(text)
        struct.pack_into("<I", record, parameters[0][0] - 4 * len(parameters) + 4 * number, constant)


def main():
    source, folder, compiler, *widl = Path(sys.argv[1]), Path(sys.argv[2]), *sys.argv[3:]
    base = folder / source.stem
    text, helps, defaults = split(source.read_text("ascii"))
    reduced = folder / source.name
    reduced.write_text(text, "ascii")
    outputs = ["-h", "-H", f"{base}.h", "-u", "-U", f"{base}_i.c", "-t", "-T", f"{base}.tlb"]
    subprocess.run([*widl, *outputs, reduced], check=True)

    path = base.with_suffix(".tlb")
    library = TypeLibrary(path.read_bytes())
    assert library.bytes() == path.read_bytes(), "a type library of another kind"
    for kind in library.types:
        for name in kind.names if kind.kind == ENUM else []:
            if name in helps:
                kind.set_help(name, helps.pop(name))
        for function, name in enumerate(kind.names if kind.kind == DISPATCH else []):
            for method, parameter in [key for key in defaults if key[0] == name]:
                kind.set_default(function, parameter, defaults.pop((method, parameter)))
    assert not helps and not defaults, (helps, defaults)
    path.write_bytes(library.bytes())
    interface = published.read(source, compiler)
    processor = {1: "x86", 3: "amd64"}[library.header[0x14] & 0xF]
    Path(f"{base}_classes.h").write_text(published.shell_header(interface, source))
    base.with_suffix(".cs").write_text(interop.csharp(interface, source))
    Path(f"{base}_TLB.pas").write_text(interop.pascal(interface, source))
    base.with_suffix(".manifest").write_text(published.manifest(interface, processor))


main()
