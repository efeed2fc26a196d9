#!/usr/bin/env python3
"""Compares the reference, as Doxygen reads it from the public header, with the library: the functions, the attributes with
their types and access, the status codes with their messages.

Usage: reference_test.py HEADER EXPORTED_NAMES LIBRARY SCRATCH_FOLDER     ends with 77 when Doxygen is not installed
"""

import ctypes
import os
import re
import shutil
import subprocess
import sys
from pathlib import Path
from xml.etree import ElementTree

SKIPPED = 77
INVALID_ATTRIBUTE = 0xBFFA000C
TYPES_DO_NOT_MATCH = 0xBFFA0015
ATTR_NOT_WRITABLE = 0xBFFA000D
TYPES = {"ViInt32": ctypes.c_int32, "ViReal64": ctypes.c_double, "ViBoolean": ctypes.c_uint16, "ViSession": ctypes.c_uint32}
# Where IVI places the inherent attributes and those of the IviDCPwr class, and where it places statuses.
ATTRIBUTE_RANGES = (range(1050000, 1051000), range(1250000, 1251000))
STATUS_RANGES = (range(0xBFFA0000, 0xBFFA5000), range(0x3FFA0000, 0x3FFA5000))


def text(element):
    return "" if element is None else "".join(element.itertext()).strip()


def documented(header, scratch):
    """Returns the functions' names, the attributes by identifier and the messages by status code."""
    shutil.rmtree(scratch, ignore_errors=True)
    scratch.mkdir(parents=True)
    options = {
        "INPUT": header, "OUTPUT_DIRECTORY": scratch, "QUIET": "YES", "GENERATE_XML": "YES", "GENERATE_HTML": "NO",
        "GENERATE_LATEX": "NO", "JAVADOC_AUTOBRIEF": "YES", "OPTIMIZE_OUTPUT_FOR_C": "YES", "MACRO_EXPANSION": "YES",
        "EXPAND_ONLY_PREDEF": "YES", "PREDEFINED": "_VI_FUNC=", "WARN_AS_ERROR": "YES",
    }  # fmt: skip
    lines = "".join(f'{name} = "{value}"\n' for name, value in options.items())
    subprocess.run(["doxygen", "-"], input=lines, text=True, check=True)
    functions, attributes, messages = set(), {}, {}
    entries = [e for file in (scratch / "xml").glob("*.xml") for e in ElementTree.parse(file).iter("memberdef")]
    for entry in entries:
        name, brief = text(entry.find("name")), text(entry.find("briefdescription"))
        value = text(entry.find("initializer"))
        if entry.get("kind") == "function":
            functions.add(name)
        elif name.startswith("TARNEX_ATTR_"):
            kind, access = brief.partition(":")[0].split(", ")
            attributes[int(value)] = (kind, access)
        elif name.startswith(("TARNEX_ERROR_", "TARNEX_WARN_")):
            messages[int(re.search("0x[0-9A-F]{8}", value)[0], 16)] = brief.strip('"')
    return functions, attributes, messages


def unsigned(status):
    return status & 0xFFFFFFFF


def attributes_of(library, session):
    """Returns type and access of every attribute that the library has, by identifier."""

    def get(kind, attribute):
        if kind == "ViString":
            return unsigned(library.TARNEX_GetAttributeViString(session, b"OutputChannel1", attribute, 0, None))
        value = TYPES[kind]()
        call = getattr(library, f"TARNEX_GetAttribute{kind}")
        return unsigned(call(session, b"OutputChannel1", attribute, ctypes.byref(value)))

    def set_nothing(kind, attribute):
        value = b"" if kind == "ViString" else TYPES[kind](0)
        return unsigned(getattr(library, f"TARNEX_SetAttribute{kind}")(session, b"OutputChannel1", attribute, value))

    found = {}
    for attribute in (attribute for identifiers in ATTRIBUTE_RANGES for attribute in identifiers):
        if get("ViInt32", attribute) == INVALID_ATTRIBUTE:
            continue
        kinds = [kind for kind in (*TYPES, "ViString") if get(kind, attribute) != TYPES_DO_NOT_MATCH]
        assert len(kinds) == 1, f"attribute {attribute} has the types {kinds}"
        writable = set_nothing(kinds[0], attribute) != ATTR_NOT_WRITABLE
        found[attribute] = (kinds[0], "read/write" if writable else "read-only")
    return found


def messages_of(library):
    """Returns the message of every status of the library, by code."""
    found = {}
    buffer = ctypes.create_string_buffer(256)
    for code in (code for codes in STATUS_RANGES for code in codes):
        if library.TARNEX_error_message(0, ctypes.c_int32(code), buffer) == 0:
            found[code] = buffer.value.decode()
    return found


def main():
    header, names, library_path, scratch = (Path(argument) for argument in sys.argv[1:])
    if shutil.which("doxygen") is None:
        print("reference_test: SKIPPED, Doxygen is not installed (scripts/install-deps docs)")
        sys.exit(SKIPPED)
    functions, attributes, messages = documented(header, scratch)
    os.environ["IVI_CONFIG_STORE"] = str(scratch / "none.xml")
    library = ctypes.CDLL(str(library_path))
    library.TARNEX_SetAttributeViReal64.argtypes = [
        ctypes.c_uint32, ctypes.c_char_p, ctypes.c_uint32, ctypes.c_double,
    ]  # fmt: skip
    session = ctypes.c_uint32()
    status = library.TARNEX_InitWithOptions(b"", 0, 0, b"Simulate=1", ctypes.byref(session))
    assert status >= 0, f"opening a simulated session: {unsigned(status):#x}"
    failed = False
    for what, expected, found in (
        ("functions", set(names.read_text().split()), functions),
        ("attributes", attributes_of(library, session), attributes),
        ("statuses", messages_of(library), messages),
    ):
        if not expected or found != expected:
            failed = True
            print(f"!! {what}\n   library:   {expected}\n   reference: {found}")
        print(f"{what}: {len(found)} documented, {len(expected)} in the library")
    library.TARNEX_close(session)
    sys.exit(1 if failed else 0)


main()
