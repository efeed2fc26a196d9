"""tarnexctl as a program of the tests, over the driver, the built-in platform runtime and a virtual supply.

Environment: TARNEXCTL and VIRTUAL_SUPPLY are the paths of the programs, TARNEXCTL_SOURCES is the folder of the manual
page and the completion.
"""

import fcntl
import json
import os
import pathlib
import pty
import struct
import subprocess
import tempfile
import termios
import time
import unittest
from typing import Callable, NamedTuple, Optional

TOOL = os.environ["TARNEXCTL"]
SOURCES = pathlib.Path(os.environ["TARNEXCTL_SOURCES"])
# Without the configuration store and the supply of the user.
ENVIRONMENT = {**os.environ, "IVI_CONFIG_STORE": "/nonexistent/store.xml"}
ENVIRONMENT.pop("TARNEX_RESOURCE", None)
NO_SUPPLY = "TCPIP0::127.0.0.1::1::SOCKET"


class Ran(NamedTuple):
    code: int
    out: str
    err: str


def run(*arguments: str, resource: Optional[str] = None) -> Ran:
    environment = ENVIRONMENT if resource is None else {**ENVIRONMENT, "TARNEX_RESOURCE": resource}
    done = subprocess.run([TOOL, *arguments], env=environment, capture_output=True, timeout=60, check=False)
    return Ran(done.returncode, done.stdout.decode(), done.stderr.decode())


class OnTerminal:
    """The tool with both outputs on a pseudo-terminal."""

    def __init__(
        self, resource: str, *arguments: str, columns: int = 80, state: Optional[pathlib.Path] = None
    ) -> None:
        self.text = ""
        self._terminal, inner = pty.openpty()
        fcntl.ioctl(inner, termios.TIOCSWINSZ, struct.pack("HHHH", 24, columns, 0, 0))
        self.process = subprocess.Popen(
            [TOOL, "-r", resource, *arguments],
            env={**ENVIRONMENT, "XDG_STATE_HOME": str(state or "/nonexistent"), "TERM": "xterm"},
            stdin=inner,
            stdout=inner,
            stderr=inner,
            start_new_session=True,  # as the job of a shell: a signal to its group does not reach the test
        )
        os.close(inner)

    def read_until(self, text: str) -> None:
        while text not in self.text and self._read():
            pass

    def type(self, text: str) -> None:
        os.write(self._terminal, text.encode())

    def finish(self) -> int:
        while self._read():
            pass
        os.close(self._terminal)
        return self.process.wait(timeout=60)

    def _read(self) -> bool:
        try:
            data = os.read(self._terminal, 4096)
        except OSError:  # the other end has closed
            return False
        self.text += data.decode().replace("\r\n", "\n")
        return bool(data)


class Tool(unittest.TestCase):
    def supply(self, *options: str) -> str:
        """Starts a virtual supply that runs until the end of the test; returns its resource."""
        supply = subprocess.Popen(
            [os.environ["VIRTUAL_SUPPLY"], "--exit-with-parent", "--for", "100", *options],
            stdout=subprocess.PIPE,
            text=True,
        )

        def stop() -> None:
            supply.terminate()
            supply.communicate()

        self.addCleanup(stop)
        assert supply.stdout is not None
        return supply.stdout.readline().split()[-1]

    def folder(self) -> pathlib.Path:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        return pathlib.Path(folder.name)

    def file(self, content: str) -> str:
        path = self.folder() / "sequence.csv"
        path.write_text(content, encoding="ascii")
        return str(path)

    def quietly(self, resource: str, *arguments: str) -> None:
        self.assertEqual(run(*arguments, resource=resource), Ran(0, "", ""))

    def output_enabled(self, resource: str) -> bool:
        enabled = json.loads(run("get", "1", "--json", resource=resource).out)[0]["output_enabled"]
        self.assertIsInstance(enabled, bool)
        return bool(enabled)

    def start(self, resource: str, *arguments: str) -> "subprocess.Popen[bytes]":
        process = subprocess.Popen(
            [TOOL, "-r", resource, *arguments], env=ENVIRONMENT, stdout=subprocess.PIPE, stderr=subprocess.PIPE
        )
        self.addCleanup(process.communicate)
        return process

    def wait_until(self, condition: Callable[[], bool]) -> None:
        end = time.monotonic() + 30
        while not condition():
            self.assertLess(time.monotonic(), end, "the condition did not become true in time")
            time.sleep(0.02)
