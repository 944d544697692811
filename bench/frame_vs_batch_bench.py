"""member_frame against the batch command on the same rows, in one run: the example model repeated to
ROWS rows (default 1,000,000), every core. The frame from a DataFrame already in memory; the batch from
the same rows as a CSV file to JSON Lines on /dev/null (its whole process). Median of three each.
Run: PYTHONPATH=build/python STEELDESIGN_CLI=build/steeldesign python3 bench/frame_vs_batch_bench.py"""

import os
import statistics
import subprocess
import sys
import tempfile
import time

import pandas as pd

import steeldesign as sd

rows = int(sys.argv[1]) if len(sys.argv) > 1 else 1_000_000
cli = os.environ.get("STEELDESIGN_CLI", "steeldesign")
example = pd.read_csv(os.path.join(os.path.dirname(__file__), "..", "examples", "frames.csv"),
                      keep_default_na=False, na_values=[""])
frame = pd.concat([example] * (rows // len(example) + 1), ignore_index=True).iloc[:rows]


def median_of_three(run):
    times = []
    for _ in range(3):
        start = time.perf_counter()
        run()
        times.append(time.perf_counter() - start)
    return statistics.median(times)


with tempfile.TemporaryDirectory() as work:
    path = os.path.join(work, "model.csv")
    frame.to_csv(path, index=False)
    frame_s = median_of_three(lambda: sd.member_frame(frame))
    batch_s = median_of_three(lambda: subprocess.run([cli, "batch", path, "--format", "jsonl", "--out", "-"],
                                                     stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL))
print(f"member_frame: {rows:,} rows in {frame_s:.2f} s, {rows / frame_s:,.0f} rows/s")
print(f"batch (JSON Lines to /dev/null): {rows:,} rows in {batch_s:.2f} s, {rows / batch_s:,.0f} rows/s")
