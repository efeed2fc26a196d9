#!/usr/bin/env python3
"""Gives check-docs pages and references with something wrong and expects it to say what.

Usage: check_docs_test.py CHECK_DOCS SCRATCH_FOLDER
"""

import shutil
import subprocess
import sys
from pathlib import Path

check_docs, scratch = sys.argv[1], Path(sys.argv[2])
shutil.rmtree(scratch, ignore_errors=True)
scratch.mkdir(parents=True)

OTHER = "# Other\n\n## In `code`, twice!\n\n## In code twice\n\n```sh\n## no heading\n```\n"
PAGES = {  # a page: what is to be said of it, None when it is good
    "[a](other.md) [b](other.md#in-code-twice) [c](other.md#in-code-twice-1) [d](#top)\n# Top\n": None,
    "[a](https://example.org/x.md#y) and `[not](a-link.md)`\n\n```md\n[nor](this.md)\n```\n": None,
    "[a](missing.md)\n": "page.md:1: there is no missing.md",
    "one\n\n[a](other.md#twice)\n": "page.md:3: other.md has no heading for #twice",
    "[a](other.md#no-heading)\n": "page.md:1: other.md has no heading for #no-heading",
    "![a](other.md)\n": None,
    "![a](missing.svg)\n": "page.md:1: there is no missing.svg",
    "[a](#nowhere)\n": "page.md:1: the page has no heading for #nowhere",
    "[a](code.h#anchor)\n": "page.md:1: code.h has no heading for #anchor",
}
failures = 0


def expect(said, arguments, what):
    global failures
    done = subprocess.run([sys.executable, check_docs, *arguments], capture_output=True, text=True)
    good = done.returncode == 0 if said is None else done.returncode == 1 and said in done.stderr
    if not good:
        failures += 1
        print(f"!! {what}\n   expected: {said}\n   said: {done.stdout}{done.stderr}")


(scratch / "other.md").write_text(OTHER)
(scratch / "code.h").write_text("// # anchor\n")
page = scratch / "page.md"
for text, said in PAGES.items():
    page.write_text(text)
    expect(said, [page], text)

# A reference that mentions a function in another's text only.
page.write_text("# Page\n")
folder = scratch / "html"
folder.mkdir()
(folder / "x.html").write_text('<td class="memname">ViStatus TARNEX_init </td>\n<p>as TARNEX_close</p>\n')
expect("TARNEX_close is not documented", ["--html", folder, page], "a function that is mentioned only")
expect("TARNEX_ATTR_VOLTAGE_LEVEL is not documented", ["--html", folder, page], "an attribute that is missing")
expect("functions.html: TARNEX_init has no row", ["--html", folder, page], "a table that is missing")
expect("no page 'Security'", ["--html", folder, page], "a page that is missing")

print(f"{len(PAGES) + 4} cases, {failures} failures")
sys.exit(1 if failures else 0)
