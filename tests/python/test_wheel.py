"""The wheels. Linux: built, installed into a fresh virtual environment, and run against a virtual supply. Windows:
built, and its content checked; this needs WINDOWS_BUILD, a build folder.

Environment: PROJECT, BUILD, VIRTUAL_SUPPLY.
"""

import base64
import csv
import email
import hashlib
import io
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
import zipfile
from typing import Dict, List

from virtual import Virtual

PROJECT = pathlib.Path(os.environ["PROJECT"])
LIBRARIES = [
    "libIviCShared.so.1",
    "libIviConfigServerCAPI.so.1",
    "libTARNEX.so",
    "libTARNEX_supply.so",
    "libivivisa.so.0",
    "libpugixml.so.1",
]
SCRIPT = """
import sys
import tarnex
from tarnex import ivi

with tarnex.Supply(sys.argv[1]) as supply:
    channel = supply[1]
    channel.voltage = 5.0
    with channel.on():
        reading: tarnex.Reading = channel.measure()
        volts: float = channel.voltage
        print(supply.identity.model, reading.volts, reading.amperes, volts)
with ivi.Supply(sys.argv[1]) as session:
    print(session.model, session["OutputChannel1"].output_enabled)
if sys.platform == "linux":
    with open("/proc/self/maps", encoding="utf-8") as maps:
        for path in sorted({line.split()[-1] for line in maps if "/lib" in line and ".so" in line}):
            print(path)
"""
WRONG_SCRIPT = """
import tarnex

tarnex.Supply("")[1].output_enabled = "off"
"""


def run(*command: object, **environment: str) -> str:
    """Runs a program without the variables that would lead it to the libraries of the build."""
    kept = {name: value for name, value in os.environ.items() if name not in ("PYTHONPATH", "TARNEX_LIBRARY")}
    done = subprocess.run(
        [str(word) for word in command],
        env={**kept, **environment},
        stdout=subprocess.PIPE,
        stderr=subprocess.STDOUT,
        text=True,
        timeout=200,
        check=False,
    )
    if done.returncode != 0:
        raise AssertionError(f"{command} ended with {done.returncode}:\n{done.stdout}")
    return done.stdout


class Wheel(unittest.TestCase):
    system = ""
    build = ""
    scratch: pathlib.Path
    wheel: pathlib.Path
    files: Dict[str, bytes]

    @classmethod
    def setUpClass(cls) -> None:
        cls.scratch = pathlib.Path(tempfile.mkdtemp())
        cls.addClassCleanup(shutil.rmtree, cls.scratch)
        cls.wheel = cls.make("first", "1700000001")
        with zipfile.ZipFile(cls.wheel) as archive:
            cls.files = {entry.filename: archive.read(entry) for entry in archive.infolist()}

    @classmethod
    def make(cls, folder: str, epoch: str) -> pathlib.Path:
        made = run(
            PROJECT / "scripts/make-wheel", cls.system, cls.build, cls.scratch / folder, SOURCE_DATE_EPOCH=epoch
        )
        return pathlib.Path(made.strip())

    def libraries(self) -> List[str]:
        return sorted(name.split("/")[-1] for name in self.files if name.startswith("tarnex/_lib/"))

    def check_content(self, tag: str) -> None:
        self.assertEqual(self.wheel.name, f"tarnex-1.0.0.0-{tag}.whl")
        info = "tarnex-1.0.0.0.dist-info"
        modules = {f"tarnex/{path.name}" for path in (PROJECT / "python/tarnex").glob("*.py")}
        self.assertIn("tarnex/py.typed", self.files)
        self.assertEqual({name for name in self.files if name.endswith(".py")}, modules)
        metadata = email.message_from_bytes(self.files[f"{info}/METADATA"])
        self.assertEqual((metadata["Metadata-Version"], metadata["Name"]), ("2.1", "tarnex"))
        self.assertEqual((metadata["Version"], metadata["Requires-Python"]), ("1.0.0.0", ">=3.8"))
        wheel = email.message_from_bytes(self.files[f"{info}/WHEEL"])
        self.assertEqual((wheel["Wheel-Version"], wheel["Root-Is-Purelib"], wheel["Tag"]), ("1.0", "false", tag))
        rows = list(csv.reader(io.StringIO(self.files[f"{info}/RECORD"].decode())))
        expected = []
        for name, content in self.files.items():
            digest = base64.urlsafe_b64encode(hashlib.sha256(content).digest()).rstrip(b"=").decode()
            own = name == f"{info}/RECORD"
            expected.append([name, "", ""] if own else [name, f"sha256={digest}", str(len(content))])
        self.assertEqual(sorted(rows), sorted(expected))
        for name, content in self.files.items():
            self.assertNotIn(str(PROJECT).encode() + b"/build", content, name)

    def check_reproducible(self) -> None:
        self.assertEqual(self.make("second", "1700000001").read_bytes(), self.wheel.read_bytes())
        self.assertNotEqual(self.make("third", "1600000001").read_bytes(), self.wheel.read_bytes())


class Linux(Wheel):
    system = "linux"
    build = os.environ["BUILD"]

    def tag(self) -> str:
        return f"py3-none-manylinux_2_{self.minor()}_x86_64"

    def minor(self) -> int:
        found = re.search(r"manylinux_2_(\d+)_", self.wheel.name)
        assert found
        return int(found[1])

    def test_content(self) -> None:
        self.check_content(self.tag())
        self.assertEqual(self.libraries(), LIBRARIES)

    def test_reproducible(self) -> None:
        self.check_reproducible()

    def test_run_path_and_versions(self) -> None:
        for name in LIBRARIES:
            path = self.scratch / name
            path.write_bytes(self.files[f"tarnex/_lib/{name}"])
            self.assertIn("runpath: [$ORIGIN]", run("readelf", "-d", "-W", path))
            for minor in re.findall(r"\(GLIBC_2\.(\d+)", run("objdump", "-T", path)):
                self.assertLessEqual(int(minor), self.minor())

    def test_a_fresh_virtual_environment(self) -> None:
        environment = self.scratch / "venv"
        run(sys.executable, "-m", "venv", environment)
        python = environment / "bin/python"
        run(python, "-m", "pip", "install", "--no-index", "--disable-pip-version-check", self.wheel)
        run(python, "-m", "pip", "check")
        script = self.scratch / "script.py"
        script.write_text(SCRIPT, encoding="utf-8")
        virtual = Virtual(self, "--load", "1=10")
        printed = run(python, "-I", script, virtual.resource).splitlines()
        self.assertEqual(printed[:2], ["TX4410 5.0 0.5 5.0", "TX4410 False"])
        self.assertEqual(virtual.outputs(), ["OFF", "OFF"])
        folder = next(environment.glob("lib/python3*/site-packages/tarnex/_lib"))
        ours = [path for path in printed[2:] if pathlib.Path(path).name in LIBRARIES]
        self.assertEqual(ours, [str(folder / name) for name in LIBRARIES])

        if shutil.which("mypy"):
            mypy = ["mypy", "--strict", "--cache-dir", self.scratch / "mypy", "--python-executable", python]
            self.assertIn("Success", run(*mypy, script))
            script.write_text(WRONG_SCRIPT, encoding="utf-8")
            with self.assertRaisesRegex(AssertionError, 'expression has type "str", variable has type "bool"'):
                run(*mypy, script)


class Windows(Wheel):
    system = "windows"
    build = os.environ.get("WINDOWS_BUILD", "")

    def test_content(self) -> None:
        self.check_content("py3-none-win_amd64")
        self.assertEqual(self.libraries(), ["TARNEX_64.dll", "TARNEX_supply_64.dll"])

    def test_reproducible(self) -> None:
        self.check_reproducible()

    def test_libraries(self) -> None:
        texts = {}
        for name in self.libraries():
            path = self.scratch / name
            path.write_bytes(self.files[f"tarnex/_lib/{name}"])
            texts[name] = run("x86_64-w64-mingw32-objdump", "-p", path)
            self.assertIn("pei-x86-64", texts[name])
            # Only what Windows, the IVI Shared Components and VISA have.
            others = {"kernel32.dll", "msvcrt.dll", "ivicshared_64.dll", "visa64.dll", "iviconfigservercapi.dll"}
            needed = {found.lower() for found in re.findall(r"DLL Name: (\S+)", texts[name])}
            self.assertLessEqual(needed, others | {"tarnex_64.dll"})
        header = (PROJECT / "include/TARNEX_supply.h").read_text(encoding="utf-8")
        functions = re.findall(r"^ViStatus _VI_FUNC (TARNEXSupply_\w+)\(", header, re.M)
        exports = re.findall(r"^\s+\[ *\d+\].* (TARNEXSupply_\w+)$", texts["TARNEX_supply_64.dll"], re.M)
        self.assertEqual(sorted(set(exports)), sorted(functions))


if __name__ == "__main__":
    unittest.main()
