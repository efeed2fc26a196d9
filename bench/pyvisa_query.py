"""The bench's query through pyvisa-py, for whom a script is fast enough. Usage: pyvisa_query.py RESOURCE"""

import statistics
import sys
import time

import pyvisa

instrument = pyvisa.ResourceManager("@py").open_resource(
    sys.argv[1], read_termination="\n", write_termination="\n")
times = []
for _ in range(2000):
    begin = time.perf_counter()
    float(instrument.query(":SOUR1:VOLT?"))
    times.append((time.perf_counter() - begin) * 1e6)
instrument.close()
print(f"Query through pyvisa-py, median\t{statistics.median(times):.1f} us\t\t\tnone, for comparison\tok")
