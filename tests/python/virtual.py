"""A virtual supply for tests, and what its outputs really are."""

import os
import pathlib
import re
import socket
import subprocess
import time
import unittest
from typing import List, Optional

os.environ["IVI_CONFIG_STORE"] = "/nonexistent/store.xml"
os.environ["PYTHONDONTWRITEBYTECODE"] = "1"


class Virtual:
    """A virtual supply that runs until the end of a test."""

    def __init__(self, test: unittest.TestCase, *options: str, log: bool = False) -> None:
        self._process = subprocess.Popen(
            [os.environ["VIRTUAL_SUPPLY"], "--exit-with-parent", "--for", "120", *options],
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE if log else None,
            text=True,
        )
        test.addCleanup(self.stop)
        assert self._process.stdout is not None
        self.resource = self._process.stdout.readline().split()[-1]

    def stop(self) -> None:
        """Ends the supply, and with it all connections. Idempotent."""
        if self._process.poll() is None:
            self._process.terminate()
            self._process.communicate()

    def log(self, until: str) -> List[str]:
        """Returns the log so far: connections, commands and replies. Waits up to 2 s for a text in it."""
        assert self._process.stderr is not None
        os.set_blocking(self._process.stderr.fileno(), False)
        text = ""
        for _ in range(100):
            text += self._process.stderr.read() or ""
            if until in text:
                break
            time.sleep(0.02)
        return text.splitlines()

    def ask(self, query: str, attempts: int = 4) -> str:
        """Asks over a connection of its own. A fault may hit each attempt."""
        found = re.fullmatch(r"TCPIP0::(.*)::(\d+)::SOCKET", self.resource)
        assert found
        failure: Optional[Exception] = None
        for _ in range(attempts):
            try:
                with socket.create_connection((found[1], int(found[2])), timeout=2) as connection:
                    connection.sendall(query.encode() + b"\n")
                    reply = connection.makefile("rb").readline()
                if re.fullmatch(rb"[ -~]+\r?\n", reply):
                    return reply.decode("latin-1").strip()
                failure = ConnectionError(f"reply {reply!r}")
            except OSError as error:
                failure = error
        assert failure
        raise failure

    def outputs(self, attempts: int = 4) -> List[str]:
        """Returns ON or OFF per channel."""
        return [self.ask(f":OUTP:STAT? CH{channel}", attempts).rstrip("X") for channel in (1, 2)]


class OverSupply(unittest.TestCase):
    """Tests with one virtual supply each, with 10 ohms at channel 1."""

    options: List[str] = ["--load", "1=10"]

    def setUp(self) -> None:
        self.virtual = Virtual(self, *self.options)
        self.resource = self.virtual.resource

    def expect_off(self) -> None:
        self.assertEqual(self.virtual.outputs(), ["OFF", "OFF"])


def header() -> str:
    return pathlib.Path(os.environ["PROJECT"], "include", "TARNEX_supply.h").read_text(encoding="utf-8")
