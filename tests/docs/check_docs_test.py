#!/usr/bin/env python3
"""Runs check-docs on pages and references with errors and compares its messages.

Usage: check_docs_test.py CHECK_DOCS SCRATCH_FOLDER
"""

import shutil
import subprocess
import sys
from pathlib import Path

check_docs, scratch = sys.argv[1], Path(sys.argv[2])
shutil.rmtree(scratch, ignore_errors=True)
scratch.mkdir(parents=True)

OTHER = "# Other\n\n## In `code`, twice!\n\n## In code twice\n\n```sh\n## not a heading\n```\n"
PAGES = {  # a page: the expected message, None without an error
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

# A reference in which one function is documented and another is mentioned in its text only.
page.write_text("# Page\n")
folder = scratch / "html"
folder.mkdir()
(folder / "x.html").write_text('<div class="title">Concepts</div>\n')
(scratch / "xml").mkdir()
(scratch / "xml" / "x.xml").write_text(
    "<doxygen><memberdef><name>TARNEX_init</name><briefdescription/><detaileddescription><para>See TARNEX_close.</para>"
    "</detaileddescription></memberdef><memberdef><name>TARNEX_reset</name><briefdescription/><detaileddescription/>"
    "</memberdef></doxygen>\n"
)
REFERENCE = {  # a part of the message: whether it is expected
    "TARNEX_init is": False,
    "TARNEX_close is not documented": True,
    "TARNEX_reset is not documented": True,
    "TARNEX_ATTR_VOLTAGE_LEVEL is not documented": True,
    "no page 'Concepts'": False,
    "no page 'Security'": True,
}
done = subprocess.run([sys.executable, check_docs, "--html", folder, page], capture_output=True, text=True)
for part, expected in REFERENCE.items():
    if done.returncode != 1 or (part in done.stderr) != expected:
        failures += 1
        print(f"!! {'missing' if expected else 'wrong'}: {part}\n   said: {done.stdout}{done.stderr}")

print(f"{len(PAGES) + len(REFERENCE)} cases, {failures} failures")
sys.exit(1 if failures else 0)
