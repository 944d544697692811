"""Batches spread over Dask: the same checks per partition, on a laptop or a dask.distributed cluster."""

import pandas as pd

from . import result_columns, member_frame, check_frame


def _meta(rules="en"):
    return pd.DataFrame({name: pd.Series(dtype=kind) for name, kind in result_columns(rules).items()})


def check_dask(ddf, jobs=1, rules="en"):
    """member_frame applied to every partition of a Dask DataFrame (lazy; .compute() runs it).

    Each partition is evaluated by one worker with `jobs` threads; the result keeps the index of ddf,
    so its order is restored with .compute().sort_index() when partitions finish out of order."""
    return ddf.map_partitions(member_frame, jobs, rules, meta=_meta(rules))


def cross_section_dask(ddf, jobs=1, rules="en"):
    """check_frame (cross-section checks alone) applied to every partition."""
    return ddf.map_partitions(check_frame, jobs, rules, meta=_meta(rules))
