#!/usr/bin/env python3
"""Follows a page word for word: saves its files, runs its commands and compares what they print.

Usage: follow_page.py PAGE BUILD_FOLDER SCRATCH_FOLDER

The library is installed from BUILD_FOLDER into SCRATCH_FOLDER, which stands for the page's /usr/local. A comment in front of a
fenced block says what the block is:

    <!-- file: NAME -->              to be saved under this name
    <!-- the supply -->              starts the virtual supply; the port, 5025, becomes a free one here and further on
    <!-- not tried by the test: -->  neither run nor read

A block of sh without a comment is run; a block of text is what the command before it has to print last.
"""

import os
import re
import shutil
import subprocess
import sys
from pathlib import Path

BLOCK = re.compile(r"(?:<!-- (?P<mark>[^\n]*?) -->\n)?^```(?P<language>\w+)\n(?P<body>.*?)^```$", re.M | re.S)
PORT = "5025"


def fail(message):
    sys.exit(f"follow_page: {message}")


class Follower:
    def __init__(self, build, scratch):
        shutil.rmtree(scratch, ignore_errors=True)
        self.work = scratch / "work"
        self.work.mkdir(parents=True)
        self.build = build
        self.supply = None
        self.port = PORT
        self.printed = None
        self.counts = {"files": 0, "commands": 0, "outputs": 0, "not tried": 0}
        self.root = root = scratch / "usr-local"
        subprocess.run(["cmake", "--install", build, "--prefix", root], check=True, stdout=subprocess.DEVNULL)
        library = next(root.glob("lib*/**/libTARNEX.so")).parent
        self.environment = {
            **os.environ,
            "PKG_CONFIG_PATH": str(library / "pkgconfig"),
            "CMAKE_PREFIX_PATH": str(root),
            "LD_LIBRARY_PATH": str(library),
            "PYTHONDONTWRITEBYTECODE": "1",
            "PATH": f"{root}/bin:{os.environ['PATH']}",
            "IVI_CONFIG_STORE": str(scratch / "none.xml"),  # a store of the user's own must not redirect anything
        }

    def follow(self, page):
        for block in BLOCK.finditer(page):
            mark, language, body = block["mark"] or "", block["language"], block["body"]
            if mark.startswith("not tried by the test: "):
                self.counts["not tried"] += 1
            elif mark.startswith("file: "):
                (self.work / mark.removeprefix("file: ")).write_text(body)
                self.counts["files"] += 1
            elif mark == "the supply":
                self.start_supply(body)
            elif not mark and language == "sh":
                self.run(body)
            elif not mark and language == "text":
                self.compare(body)
            else:
                fail(f"no idea what to do with the block of {language} marked '{mark}':\n{body}")

    def start_supply(self, command):
        program, *arguments = command.split()
        if self.supply or program != "build/release/tools/virtual_supply/virtual_supply":
            fail(f"not the start of the virtual supply: {command}")
        arguments[arguments.index(PORT)] = "0"
        self.supply = subprocess.Popen(
            [self.build / "tools/virtual_supply/virtual_supply", "--for", "120", *arguments], stdout=subprocess.PIPE, text=True
        )
        ready = self.supply.stdout.readline()
        found = re.search(r"::(\d+)::SOCKET$", ready.strip())
        if not found:
            fail(f"the virtual supply says: {ready}")
        self.port = found.group(1)

    def run(self, commands):
        done = subprocess.run(
            ["bash", "-euo", "pipefail", "-c", commands.replace(PORT, self.port).replace("/usr/local", str(self.root))],
            cwd=self.work, env=self.environment, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, timeout=200,
        )
        if done.returncode != 0:
            fail(f"this ended with {done.returncode}:\n{commands}{done.stdout}")
        self.printed = done.stdout.replace(self.port, PORT)
        self.counts["commands"] += 1

    def compare(self, expected):
        if self.printed is None:
            fail(f"no command in front of the output\n{expected}")
        last = self.printed.splitlines()[-len(expected.splitlines()) :]
        if last != expected.splitlines():
            fail(f"the page promises\n{expected}and this is printed:\n{self.printed}")
        self.printed = None
        self.counts["outputs"] += 1


def main():
    page, build, scratch = (Path(argument) for argument in sys.argv[1:])
    text = page.read_text()
    follower = Follower(build, scratch)
    try:
        follower.follow(text)
    finally:
        if follower.supply:
            follower.supply.kill()
            follower.supply.wait()
    if sum(follower.counts.values()) + bool(follower.supply) != len(re.findall(r"^```\w", text, re.M)):
        fail("some blocks of the page were not recognized")
    print(f"{page.name}: " + ", ".join(f"{count} {what}" for what, count in follower.counts.items()))


main()
