#!/usr/bin/env python3
"""Holds a built TARNEX_64.dll to what its users and Windows rely on, by reading the file itself.

Usage: check_dll.py DLL EXPORTED_NAMES CONFIG_SERVER_DLL

EXPORTED_NAMES is a file of names, one a line; CONFIG_SERVER_DLL the file name of the configuration server's C API.
Prints what it found; ends with 1 and one line per fault when something is not as it has to be.
"""

import struct
import sys

SYSTEM_DLLS = {"kernel32.dll", "msvcrt.dll"}
MACHINE_X64 = 0x8664
RELOCATIONS_STRIPPED = 0x0001
LARGE_ADDRESS_AWARE = 0x0020
IS_DLL = 0x2000
HIGH_ENTROPY_ASLR, RELOCATABLE, DEP = 0x0020, 0x0040, 0x0100
EXPORTS, IMPORTS, RESOURCES, RELOCATIONS, DELAYED_IMPORTS = 0, 1, 2, 5, 13
VERSION_RESOURCE = 16
VERSION_SIGNATURE = 0xFEEF04BD


class PortableExecutable:
    """The parts of a 64-bit PE file that are looked at here; addresses are relative to the image base."""

    def __init__(self, path):
        with open(path, "rb") as file:
            self.data = file.read()
        header = self.number("<I", 0x3C)
        if self.data[:2] != b"MZ" or self.data[header : header + 4] != b"PE\0\0":
            raise ValueError(f"{path} is not a PE file")
        self.machine, section_count = struct.unpack_from("<HH", self.data, header + 4)
        optional_size, self.characteristics = struct.unpack_from("<HH", self.data, header + 20)
        optional = header + 24
        if self.number("<H", optional) != 0x20B:
            raise ValueError(f"{path} is not for 64 bits")
        self.image_base = self.number("<Q", optional + 24)
        self.dll_characteristics = self.number("<H", optional + 70)
        count = self.number("<I", optional + 108)
        self.directories = [struct.unpack_from("<II", self.data, optional + 112 + 8 * i) for i in range(count)]
        self.sections = [
            struct.unpack_from("<IIII", self.data, optional + optional_size + 40 * i + 8) for i in range(section_count)
        ]

    def number(self, layout, offset):
        return struct.unpack_from(layout, self.data, offset)[0]

    def offset(self, address):
        for virtual_size, start, raw_size, raw_start in self.sections:
            if start <= address < start + max(virtual_size, raw_size):
                return raw_start + address - start
        raise ValueError(f"address {address:#x} lies in no section")

    def text(self, address):
        start = self.offset(address)
        return self.data[start : self.data.index(b"\0", start)].decode("ascii")

    def exports(self):
        """How many functions there are, with or without a name, and the address of each name."""
        table = self.offset(self.directories[EXPORTS][0])
        functions, names, addresses, name_list, ordinal_list = struct.unpack_from("<IIIII", self.data, table + 20)
        found = {}
        for i in range(names):
            name = self.text(self.number("<I", self.offset(name_list) + 4 * i))
            ordinal = self.number("<H", self.offset(ordinal_list) + 2 * i)
            found[name] = self.number("<I", self.offset(addresses) + 4 * ordinal)
        return functions, found

    def imports(self):
        """File names of the DLLs that the loader must find."""
        found = []
        if self.directories[IMPORTS][1]:
            entry = self.offset(self.directories[IMPORTS][0])
            while name := self.number("<I", entry + 12):
                found.append(self.text(name))
                entry += 20
        return found

    def relocations(self):
        """How many places the loader can move."""
        address, size = self.directories[RELOCATIONS]
        count = 0
        block = self.offset(address) if size else 0
        end = block + size
        while block < end:
            block_size = self.number("<I", block + 4)
            entries = struct.unpack_from(f"<{(block_size - 8) // 2}H", self.data, block + 8)
            count += sum(1 for entry in entries if entry >> 12 != 0)
            block += block_size
        return count

    def resource(self, kind):
        """The bytes of the first resource of a kind, or None."""
        if not self.directories[RESOURCES][1]:
            return None
        root = self.offset(self.directories[RESOURCES][0])
        directory, wanted = root, kind
        while True:
            named, numbered = struct.unpack_from("<HH", self.data, directory + 12)
            entries = [struct.unpack_from("<II", self.data, directory + 16 + 8 * i) for i in range(named + numbered)]
            matching = [target for number, target in entries if wanted is None or number == wanted]
            if not matching:
                return None
            wanted = None
            if matching[0] & 0x80000000 == 0:
                address, size = struct.unpack_from("<II", self.data, root + matching[0])
                return self.data[self.offset(address) : self.offset(address) + size]
            directory = root + (matching[0] & 0x7FFFFFFF)


def version_information(block):
    """The four numbers of the file version, and the texts of a version resource."""

    def padded(position):
        return (position + 3) & ~3

    texts, fixed = {}, None

    def read(position):
        nonlocal fixed
        length, value_length, is_text = struct.unpack_from("<HHH", block, position)
        key_end = position + 6
        while block[key_end : key_end + 2] != b"\0\0":
            key_end += 2
        key = block[position + 6 : key_end].decode("utf-16-le")
        value = padded(key_end + 2)
        value_end = value + value_length * (2 if is_text else 1)
        if key == "VS_VERSION_INFO":
            signature, _, high, low = struct.unpack_from("<IIII", block, value)
            if signature == VERSION_SIGNATURE:
                fixed = (high >> 16, high & 0xFFFF, low >> 16, low & 0xFFFF)
        elif is_text and value_length:
            texts[key] = block[value:value_end].decode("utf-16-le").rstrip("\0")
        child = padded(value_end)
        while child < position + length:
            child = padded(child + read(child))
        return length

    read(0)
    return fixed, texts


def check_image(file, original, expect):
    """Checks the hardening and the version resource of a DLL whose file name is `original`."""
    relocations = file.relocations()
    expect(not file.characteristics & RELOCATIONS_STRIPPED, "its relocations are stripped")
    expect(relocations > 0, "holds no relocation")
    expect(file.dll_characteristics & RELOCATABLE, "is not relocatable")
    expect(file.dll_characteristics & HIGH_ENTROPY_ASLR, "high-entropy ASLR is off")
    expect(file.dll_characteristics & DEP, "DEP is off")
    print(f"{relocations} relocations, DLL characteristics {file.dll_characteristics:#06x}")

    resource = file.resource(VERSION_RESOURCE)
    if resource is None:
        expect(False, "has no version resource")
    else:
        fixed, texts = version_information(resource)
        expect(fixed == (1, 0, 0, 0), f"binary file version is {fixed}")
        expect(texts.get("FileVersion") == "1.0.0.0", f"FileVersion is {texts.get('FileVersion')!r}")
        expect(texts.get("CompanyName") == "Keltor Technology", f"CompanyName is {texts.get('CompanyName')!r}")
        expect("TARNEX" in texts.get("ProductName", "").split(), f"ProductName is {texts.get('ProductName')!r}")
        expect(texts.get("OriginalFilename") == original, "OriginalFilename differs")
        print(", ".join(f"{name} {text!r}" for name, text in texts.items()))


def report(dll, faults):
    """Prints the faults and returns the exit code."""
    for fault in faults:
        print(f"check_dll: {dll}: {fault}", file=sys.stderr)
    return 1 if faults else 0


def main(dll, exported_names, config_server):
    faults = []

    def expect(condition, fault):
        if not condition:
            faults.append(fault)

    file = PortableExecutable(dll)
    expect(file.machine == MACHINE_X64, f"machine is {file.machine:#x}, not x64")
    expect(file.characteristics & IS_DLL, "not marked as a DLL")
    expect(file.characteristics & LARGE_ADDRESS_AWARE, "not large-address aware, so high-entropy ASLR has no effect")
    print(f"x64 DLL for image base {file.image_base:#x}")

    with open(exported_names, encoding="ascii") as names:
        wanted = sorted(names.read().split())
    functions, exports = file.exports()
    expect(len(wanted) == 36, f"{exported_names} holds {len(wanted)} names, not 36")
    expect(sorted(exports) == wanted, f"exports differ: {sorted(set(exports) ^ set(wanted))}")
    expect(functions == len(exports), f"{functions} functions are exported under {len(exports)} names")
    expect(
        exports.get("TARNEX_ResetWithDefaults") == exports.get("TARNEX_reset"),
        "TARNEX_ResetWithDefaults is another function than TARNEX_reset",
    )
    expect(len(set(exports.values())) == 35, f"{len(set(exports.values()))} addresses are exported, not 35")
    print(f"{len(exports)} exports at {len(set(exports.values()))} addresses")

    imports = file.imports()
    platform = {"IviCShared_64.dll", config_server, "visa64.dll"}
    others = [name for name in imports if name not in platform]
    expect(platform <= set(imports), f"does not import from {sorted(platform - set(imports))}")
    strangers = [name for name in others if name.lower() not in SYSTEM_DLLS]
    expect(not strangers, f"imports from {strangers}")
    expect(DELAYED_IMPORTS >= len(file.directories) or not file.directories[DELAYED_IMPORTS][1], "has delayed imports")
    print(f"imports from {', '.join(imports)}")

    check_image(file, "TARNEX_64.dll", expect)

    return report(dll, faults)


if __name__ == "__main__":
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    sys.exit(main(*sys.argv[1:]))
