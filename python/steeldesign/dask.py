"""Batches spread over Dask: the same checks per partition, on a laptop or a dask.distributed cluster.

    >>> import steeldesign.dask as sdd
    >>> sdd.check_files("model/*.csv", "results/part-*.csv")      # every file in, CSV parts out
    >>> results = sdd.check_dask(ddf).compute()                    # a Dask DataFrame of batch rows

The result's `meta` (column names and dtypes) comes from the result columns, so that Dask needs no
computation to learn it."""

import dask
import dask.dataframe as dd
import pandas as pd

from . import check_frame, member_frame, result_columns


def meta(rules="en"):
    """An empty frame with the result columns and their dtypes: the `meta` of the Dask results."""
    return pd.DataFrame({name: pd.Series(dtype=kind) for name, kind in result_columns(rules).items()})


_meta = meta  # the older name


def check_dask(ddf, jobs=1, rules="en"):
    """member_frame applied to every partition of a Dask DataFrame (lazy; .compute() runs it).

    Each partition is evaluated by one worker with `jobs` threads; the result keeps the index of ddf,
    so its order is restored with .compute().sort_index() when partitions finish out of order."""
    return ddf.map_partitions(member_frame, jobs, rules, meta=meta(rules))


def cross_section_dask(ddf, jobs=1, rules="en"):
    """check_frame (cross-section checks alone) applied to every partition."""
    return ddf.map_partitions(check_frame, jobs, rules, meta=meta(rules))


def _client():
    try:
        from distributed import default_client
        return default_client()
    except (ImportError, ValueError):
        return None


def check_files(pattern, out, rules="en", jobs=1, blocksize="64MB", progress=True, cross_section_only=False):
    """Checks every row of the CSV files matching pattern (the batch's columns, e.g. "model/*.csv") and
    writes the results: out with a "*" (or ending ".csv") is CSV, one file per partition ("*" the
    partition's number; the input's line order kept within each); any other out is a Parquet folder
    (needs pyarrow or fastparquet). On the active dask.distributed client if there is one, else on
    Dask's local scheduler; with a progress bar on standard error unless progress is False. Returns
    the number of rows checked.

    The input is read as text (every cell, so that a column empty in one block and numbers in
    another reads the same) and each cell is read by the checks as the batch reads it."""
    if not isinstance(pattern, str) or not pattern:
        raise ValueError(f"pattern: a file name or pattern is needed, got {pattern!r}")
    if not isinstance(out, str) or not out:
        raise ValueError(f"out: a file pattern or folder is needed, got {out!r}")
    ddf = dd.read_csv(pattern, dtype=str, keep_default_na=False, na_values=[""], blocksize=blocksize)
    results = (cross_section_dask if cross_section_only else check_dask)(ddf, jobs, rules)
    if "*" in out or out.endswith(".csv"):
        target = out if "*" in out else out[:-4] + "-*.csv"
        writes = results.to_csv(target, index=False, compute=False)
    else:
        try:
            import pyarrow  # noqa: F401
        except ImportError:
            try:
                import fastparquet  # noqa: F401
            except ImportError:
                raise ValueError(f"out: Parquet ('{out}') needs pyarrow or fastparquet, neither is installed; "
                                 "write CSV parts instead (out with a '*' or ending .csv)") from None
        writes = results.to_parquet(out, compute=False, write_index=False)
    count = results.shape[0]
    client = _client()
    if client is not None:
        futures = client.compute([writes, count])
        if progress:
            from distributed import progress as show
            show(futures)
        _, rows = client.gather(futures)
    elif progress:
        from dask.diagnostics import ProgressBar
        with ProgressBar():
            _, rows = dask.compute(writes, count)
    else:
        _, rows = dask.compute(writes, count)
    return int(rows)
