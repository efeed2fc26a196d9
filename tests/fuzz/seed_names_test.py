#!/usr/bin/env python3
"""Checks that the first line of every seed of the fuzzer of replies names one of the fuzzer's queries. The fuzzer accepts any
name, so a seed for a renamed query would silently test another one.

Usage: seed_names_test.py REPLIES_CPP CORPUS_FOLDER
"""

import re
import sys
from pathlib import Path

source, corpus = (Path(argument) for argument in sys.argv[1:])
queries = set(re.findall(r"^ +QUERY\((\w+)\),$", source.read_text(), re.M))
seeds = {path: path.read_bytes().partition(b"\n")[0].decode(errors="replace") for path in sorted(corpus.iterdir())}
wrong = [f"{path}: no query is named {name!r}" for path, name in seeds.items() if name not in queries]
print("\n".join([*wrong, f"{len(seeds)} seeds, {len(queries)} queries"]))
sys.exit(0 if seeds and queries and not wrong else 1)
