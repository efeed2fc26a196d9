"""Runs the Python examples of the documents against a virtual supply and compares what they print."""

import os
import pathlib
import re
import subprocess
import sys
import unittest
from typing import List, Optional, Tuple

from virtual import Virtual

PROJECT = pathlib.Path(os.environ["PROJECT"])
RESOURCE = "TCPIP0::192.168.1.20::5025::SOCKET"


def examples(page: str) -> List[Tuple[str, Optional[str]]]:
    """Returns the blocks of Python, each with the block of text after it."""
    text = (PROJECT / page).read_text(encoding="utf-8")
    return re.findall(r"^```python\n(.*?)^```\n(?:\n```text\n(.*?)^```\n)?", text, re.M | re.S)


class Documents(unittest.TestCase):
    def run_example(self, code: str) -> str:
        virtual = Virtual(self, "--load", "1=10")
        self.assertIn(RESOURCE, code)
        done = subprocess.run(
            [sys.executable, "-X", "dev", "-c", code.replace(RESOURCE, virtual.resource)],
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            text=True,
            timeout=60,
            check=False,
        )
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.assertEqual(virtual.outputs(), ["OFF", "OFF"])
        return done.stdout

    def test_the_guide(self) -> None:
        found = examples("docs/python.md")
        self.assertGreaterEqual(len(found), 6)
        for code, expected in found:
            with self.subTest(code=code):
                self.assertNotEqual(expected, "")
                self.assertEqual(self.run_example(code), expected)

    def test_the_example_of_the_readme_measures(self) -> None:
        [(code, _)] = examples("README.md")
        self.assertEqual(self.run_example(code), "3.300 V, 0.330 A, 1.089 W\n")

    def test_the_guide_lists_every_setting_and_exception(self) -> None:
        import tarnex

        text = (PROJECT / "docs/python.md").read_text(encoding="utf-8")
        for name in dir(tarnex.Channel):
            if type(getattr(tarnex.Channel, name)).__name__ == "_Setting":
                self.assertIn(f"`{name}`", text)
        for name in tarnex.__all__:
            kind = getattr(tarnex, name)
            if isinstance(kind, type) and issubclass(kind, Exception):
                self.assertIn(f"| `{name}` |", text)


if __name__ == "__main__":
    unittest.main()
