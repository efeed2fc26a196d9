#!/usr/bin/env python3
"""Holds an import library to Microsoft's short import format: one small record per function, no code.

Usage: check_import_library.py LIBRARY EXPORTED_NAMES DLL
"""

import struct
import sys

MACHINE_X64 = 0x8664
NAME_AS_IT_IS = 1  # the name of the import is the symbol's, undecorated


def members(path):
    with open(path, "rb") as file:
        data = file.read()
    if data[:8] != b"!<arch>\n":
        raise ValueError(f"{path} is not a library")
    position = 8
    while position + 60 <= len(data):
        name = data[position : position + 16].decode("ascii").rstrip()
        size = int(data[position + 48 : position + 58])
        if name not in ("/", "//"):  # indices
            yield data[position + 60 : position + 60 + size]
        position += 60 + size + size % 2


def main(library, exported_names, expected_dll):
    faults = []
    imported = []
    for member in members(library):
        first, second, _, machine = struct.unpack_from("<HHHH", member)
        if (first, second) != (0, 0xFFFF):
            continue  # the few objects that describe the DLL as a whole
        kind = struct.unpack_from("<H", member, 18)[0]
        symbol, dll = member[20:].split(b"\0")[:2]
        imported.append(symbol.decode("ascii"))
        if machine != MACHINE_X64:
            faults.append(f"{symbol} is for machine {machine:#x}")
        if kind & 3 != 0 or kind >> 2 & 7 != NAME_AS_IT_IS:
            faults.append(f"{symbol} has the import kind {kind:#x}, not: code, by its own name")
        if dll.decode("ascii") != expected_dll:
            faults.append(f"{symbol} comes from {dll}")
    with open(exported_names, encoding="ascii") as names:
        wanted = sorted(names.read().split())
    if sorted(imported) != wanted:
        faults.append(f"short imports differ: {sorted(set(imported) ^ set(wanted))}")
    for fault in faults:
        print(f"check_import_library: {library}: {fault}", file=sys.stderr)
    print(f"{len(imported)} short imports")
    return 1 if faults else 0


if __name__ == "__main__":
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    sys.exit(main(*sys.argv[1:]))
