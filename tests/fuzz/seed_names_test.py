#!/usr/bin/env python3
"""Checks that the fuzzer of replies has every query of the command layer, and that the first line of every seed names one of
them. The fuzzer accepts any name, so a seed for a renamed query would silently test another one.

Usage: seed_names_test.py REPLIES_CPP CORPUS_FOLDER INST_BASE_H
"""

import re
import sys
from pathlib import Path

source, corpus, operations = (Path(argument) for argument in sys.argv[1:])
queries = set(re.findall(r"^ +QUERY\((\w+)\),$", source.read_text(), re.M))
asked = set(re.findall(r"virtual ViStatus ((?:Get|Query|Measure)\w+)\(.*&", operations.read_text())) - {"QueryRaw"}
seeds = {path: path.read_bytes().partition(b"\n")[0].decode(errors="replace") for path in sorted(corpus.iterdir())}
wrong = [f"{path}: no query is named {name!r}" for path, name in seeds.items() if name not in queries]
wrong += [f"{source}: no row for the query {name}" for name in sorted(asked - queries)]
print("\n".join([*wrong, f"{len(seeds)} seeds, {len(queries)} queries"]))
sys.exit(0 if seeds and queries and asked and not wrong else 1)
