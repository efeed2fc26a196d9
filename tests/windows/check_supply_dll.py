"""Checks TARNEX_supply_64.dll as a file: exports, imports, hardening, version.

Usage: check_supply_dll.py DLL EXPORTED_NAMES
"""

import pathlib
import sys

import check_dll


def main(dll, exported_names):
    file = check_dll.PortableExecutable(dll)
    faults = []

    def expect(condition, fault):
        if not condition:
            faults.append(fault)

    wanted = sorted(pathlib.Path(exported_names).read_text(encoding="ascii").split())
    functions, exports = file.exports()
    expect(wanted and sorted(exports) == wanted, f"exports differ: {sorted(set(exports) ^ set(wanted))}")
    expect(functions == len(exports), f"{functions} functions are exported under {len(exports)} names")
    libraries = {"TARNEX_64.dll", "IviCShared_64.dll", "visa64.dll"}
    imports = file.imports()
    strangers = [name for name in imports if name not in libraries and name.lower() not in check_dll.SYSTEM_DLLS]
    expect(libraries <= set(imports), f"does not import from {sorted(libraries - set(imports))}")
    expect(not strangers, f"imports from {strangers}")
    check_dll.check_image(file, "TARNEX_supply_64.dll", expect)
    return check_dll.report(dll, faults)


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    sys.exit(main(*sys.argv[1:]))
