#!/usr/bin/env python3
"""Checks that a DLL of the development platform says that it is one, so that it is not mistaken for the real library.

Usage: check_development_dll.py DLL...
"""

import os
import sys

from check_dll import VERSION_RESOURCE, PortableExecutable, version_information

if len(sys.argv) < 2:
    sys.exit(__doc__)
failed = False
for path in sys.argv[1:]:
    dll = os.path.basename(path)
    expected = {
        "FileDescription": f"FOR DEVELOPMENT ONLY: stand-in for {dll}",
        "OriginalFilename": dll,
        "ProductName": "TARNEX development platform",
    }
    resource = PortableExecutable(path).resource(VERSION_RESOURCE)
    fixed, texts = version_information(resource) if resource else (None, {})
    for name, text in expected.items():
        if texts.get(name) != text:
            failed = True
            print(f"check_development_dll: {path}: {name} is {texts.get(name)!r}, not {text!r}", file=sys.stderr)
    if fixed != (0, 0, 0, 1):
        failed = True
        print(f"check_development_dll: {path}: file version is {fixed}", file=sys.stderr)
    if os.path.basename(os.path.dirname(path)) != "development-only-platform":
        failed = True
        print(f"check_development_dll: {path} does not lie in a folder development-only-platform", file=sys.stderr)
    print(f"{dll}: {texts.get('FileDescription')}")
sys.exit(1 if failed else 0)
