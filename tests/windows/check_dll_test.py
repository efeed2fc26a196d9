#!/usr/bin/env python3
"""Spoils copies of a good DLL and expects check_dll.py to say what is wrong with each.

Usage: check_dll_test.py DLL EXPORTED_NAMES CONFIG_SERVER_DLL SCRATCH_FOLDER
"""

import os
import struct
import subprocess
import sys

dll, exported_names, config_server, scratch = sys.argv[1:]
with open(dll, "rb") as file:
    good = file.read()
optional = struct.unpack_from("<I", good, 0x3C)[0] + 24
DLL_CHARACTERISTICS, DIRECTORIES = optional + 70, optional + 112


def without_flag(flag):
    flags = struct.unpack_from("<H", good, DLL_CHARACTERISTICS)[0]
    return patched(DLL_CHARACTERISTICS, struct.pack("<H", flags & ~flag))


def without_directory(number):
    return patched(DIRECTORIES + 8 * number, bytes(8))


def with_text(old, new):
    assert old in good and len(new) == len(old), old
    return good.replace(old, new)


def patched(offset, replacement):
    return good[:offset] + replacement + good[offset + len(replacement) :]


def utf16(text):
    return text.encode("utf-16-le")


SPOILED = {
    "is not relocatable": without_flag(0x0040),
    "high-entropy ASLR is off": without_flag(0x0020),
    "DEP is off": without_flag(0x0100),
    "holds no relocation": without_directory(5),
    "has no version resource": without_directory(2),
    "does not import from ['visa64.dll']": with_text(b"visa64.dll\0", b"visa32.dll\0"),
    "imports from ['visa32.dll']": with_text(b"visa64.dll\0", b"visa32.dll\0"),
    "exports differ: ['TARNEX_Measure', 'TARNEX_measure']": with_text(b"TARNEX_Measure\0", b"TARNEX_measure\0"),
    "CompanyName is 'Kelton Technology'": with_text(utf16("Keltor Technology"), utf16("Kelton Technology")),
    "ProductName is 'TARNIX IVI Driver'": with_text(utf16("TARNEX IVI Driver"), utf16("TARNIX IVI Driver")),
    "FileVersion is '1.0.0.1'": with_text(utf16("1.0.0.0\0"), utf16("1.0.0.1\0")),
    "binary file version is (1, 0, 0, 1)": with_text(
        struct.pack("<IIII", 0xFEEF04BD, 0x10000, 0x10000, 0), struct.pack("<IIII", 0xFEEF04BD, 0x10000, 0x10000, 1)
    ),
}

failures = 0
os.makedirs(scratch, exist_ok=True)
copy = os.path.join(scratch, "spoiled.dll")
check = os.path.join(os.path.dirname(os.path.abspath(__file__)), "check_dll.py")
for fault, content in SPOILED.items():
    with open(copy, "wb") as file:
        file.write(content)
    run = subprocess.run(
        [sys.executable, check, copy, exported_names, config_server], capture_output=True, text=True, check=False
    )
    if run.returncode != 1 or f"check_dll: {copy}: {fault}" not in run.stderr.splitlines():
        failures += 1
        print(f"not found: {fault}\nended with {run.returncode}:\n{run.stderr}", file=sys.stderr)
print(f"{len(SPOILED) - failures} of {len(SPOILED)} faults found")
sys.exit(1 if failures else 0)
