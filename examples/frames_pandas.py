"""The example model checked from Python: with pandas on this machine's cores, then spread over a local
Dask cluster of two worker processes, which gives the same frame.

    make build && PYTHONPATH=build/python python3 examples/frames_pandas.py
"""

import os

import dask.dataframe as dd
import pandas as pd
from distributed import Client, LocalCluster

import steeldesign as sd
import steeldesign.dask as sdd

def main():
    here = os.path.dirname(os.path.abspath(__file__))
    model = pd.read_csv(os.path.join(here, "frames.csv"), keep_default_na=False, na_values=[""])

    # One member at a time: every value of `steeldesign member --json`.
    print(sd.member("IPE 450", "S355", N=-152, My=-318, Vz=53, length=6.0, moments_y=[0, -159, -318]))

    # The whole model with pandas: one result row per input row, the input's index kept.
    results = sd.member_frame(model)
    print(results["verdict"].value_counts().to_string(), "\n")
    print(results.nlargest(5, "governingUtilization")[["id", "section", "governing", "governingUtilization"]])

    # The same on a Dask cluster (here two local processes; a dask.distributed scheduler address works alike).
    with LocalCluster(n_workers=2, threads_per_worker=1, dashboard_address=None) as cluster, Client(cluster):
        spread = sdd.check_dask(dd.from_pandas(model, npartitions=4)).compute().sort_index()
    print("\nDask gives the same frame:", spread.equals(results))


if __name__ == "__main__":  # the workers import this file: only the main process runs it
    main()
