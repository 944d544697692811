"""Rows per second of steeldesign.member_frame from a DataFrame already in memory: the example model
repeated to a million rows, every core. Run: PYTHONPATH=build/python python3 bench/member_frame_bench.py"""

import os
import statistics
import sys
import time

import pandas as pd

import steeldesign as sd

rows = int(sys.argv[1]) if len(sys.argv) > 1 else 1_000_000
example = pd.read_csv(os.path.join(os.path.dirname(__file__), "..", "examples", "frames.csv"),
                      keep_default_na=False, na_values=[""])
frame = pd.concat([example] * (rows // len(example) + 1), ignore_index=True).iloc[:rows]
times = []
for _ in range(3):
    start = time.perf_counter()
    sd.member_frame(frame)
    times.append(time.perf_counter() - start)
median = statistics.median(times)
print(f"member_frame: {rows} rows in {median:.2f} s (median of 3): {rows / median:,.0f} rows/s")
