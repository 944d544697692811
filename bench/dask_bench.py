"""A 10,000,000-row run of steeldesign.dask.check_files on a two-worker LocalCluster: the example model
repeated into ten CSV files of 1,000,000 rows, the results written as CSV parts. Prints rows/s and the
peak memory of each worker. Run (a few minutes, 4 GB of disk in a temporary folder):
    PYTHONPATH=build/python python3 bench/dask_bench.py [ROWS] [FILES]"""

import os
import resource
import sys
import tempfile
import time
import warnings

import pandas as pd
from distributed import Client, LocalCluster

import steeldesign.dask as sdd

warnings.filterwarnings("ignore", category=DeprecationWarning)
def peak_rss_mb():
    return resource.getrusage(resource.RUSAGE_SELF).ru_maxrss / 1024


def main():
    rows = int(sys.argv[1]) if len(sys.argv) > 1 else 10_000_000
    files = int(sys.argv[2]) if len(sys.argv) > 2 else 10
    example = pd.read_csv(os.path.join(os.path.dirname(__file__), "..", "examples", "frames.csv"),
                          keep_default_na=False, na_values=[""])
    per_file = rows // files
    block = pd.concat([example] * (per_file // len(example) + 1), ignore_index=True).iloc[:per_file]

    with tempfile.TemporaryDirectory() as work:
        for i in range(files):
            block.to_csv(os.path.join(work, f"model-{i:02d}.csv"), index=False)
        os.mkdir(os.path.join(work, "out"))
        with LocalCluster(n_workers=2, threads_per_worker=1, processes=True, dashboard_address=None) as cluster, \
                Client(cluster) as client:
            start = time.perf_counter()
            done = sdd.check_files(os.path.join(work, "model-*.csv"), os.path.join(work, "out", "part-*.csv"),
                                   progress=False)
            seconds = time.perf_counter() - start
            peaks = client.run(peak_rss_mb)
        print(f"{done:,} rows in {seconds:.1f} s: {done / seconds:,.0f} rows/s on 2 workers (1 thread each)")
        for worker, peak in sorted(peaks.items()):
            print(f"  peak memory of worker {worker}: {peak:,.0f} MB")


if __name__ == "__main__":  # the workers are started by spawning: they import this file
    main()
