"""steeldesign: steel members to EN 1993-1-1 and EN 1993-1-5, from Python.

    >>> import steeldesign as sd
    >>> sd.section("IPE 300")["A"]                     # m2
    >>> r = sd.check("IPE 300", "S355", N=-300, My=80, Vz=60)
    >>> r.verdict, r.utilizations["AxialBending"]
    >>> sd.member("HEB 300", "S355", N=-1500, My=50, lcr_y=8.0, lcr_z=5.6).verdict
    >>> results = sd.member_frame(df)                  # a DataFrame with the batch columns

Units: m, kN, kNm, kN/m2; compression is negative. A bad argument raises ValueError naming it; in a
frame a bad row is a rejected row with its field and message, as in `steeldesign batch`.
"""

import abc
import html
import io
import json

import numpy as np
import pandas as pd

from . import _core
from ._core import InputError

__all__ = ["section", "check", "member", "mcr", "check_frame", "member_frame", "report", "Result", "CheckResult",
           "MemberResult", "InputError", "RESULT_COLUMNS"]


class _Values:
    """What every result offers over its JSON document (self._values): each value of the command's JSON
    (NRd, Mcr, chi, the trace, ...) as an attribute or an item, to_dict(), the trace as text, a frame of
    the utilizations and a notebook's view."""

    def __getattr__(self, name):
        if name.startswith("__"):
            raise AttributeError(name)
        try:
            return self._values[name]
        except KeyError:
            raise AttributeError(name) from None

    def __getitem__(self, name):
        return self._values[name]

    def to_dict(self):
        """Every value of the command's --json document (SI units: m, kN, kNm, kN/m2)."""
        return dict(self._values)

    def trace_text(self):
        """The calculation trace as `steeldesign check --trace` and `member --trace` print it."""
        main = "EN 1993-1-1 "
        lines, group = ["", "calculation (clauses of EN 1993-1-1 unless named)"], None
        for t in self._values.get("trace") or []:
            if t["check"] != group:
                group = t["check"]
                lines.append("  " + group)
            clause = t["clause"][len(main):] if t["clause"].startswith(main) else t["clause"]
            line = f"    [{clause}] {t['symbol']} = {t['formula']} = {t['numbers']} = {t['result']}"
            if t["status"] != "value":
                line += "  " + t["status"]
            lines.append(line)
        return "\n".join(lines) + "\n"

    def to_frame(self):
        """The utilizations as a one-column frame (index: the checks), with the governing one marked."""
        u = self.utilizations or {}
        frame = pd.DataFrame({"utilization": pd.Series(u, dtype="float64")})
        frame["governing"] = frame.index == self.governing
        return frame

    def _repr_html_(self):
        """A notebook's view: the verdict in colour, the governing check, the utilizations, the trace folded."""
        if self._kind == "mcr":
            return "<pre>" + html.escape(repr(self)) + "</pre>"
        colours = {"fulfilled": "#1a7f37", "not fulfilled": "#cf222e", "not verified": "#9a6700",
                   "not applicable": "#57606a"}
        verdict = self.verdict or ""
        parts = [f"<div><b>{html.escape(self._kind)} {html.escape(self.section_name)} "
                 f"{html.escape(self.steel_name)}</b>: "
                 f"<span style='color:{colours.get(verdict, '#000')};font-weight:bold'>{html.escape(verdict)}</span>"]
        if self.governing is not None and self.governing_utilization is not None:
            parts.append(f", governing {html.escape(self.governing)} {self.governing_utilization:.3f}")
        if self.not_verified:
            parts.append(f"<br><i>not verified: {html.escape(self.not_verified)}</i>")
        rows = "".join(
            f"<tr><td>{html.escape(name)}</td><td style='text-align:right'>"
            f"{'-' if value is None else f'{value:.3f}'}</td></tr>"
            for name, value in (self.utilizations or {}).items())
        parts.append(f"<table><tr><th>check</th><th>utilization</th></tr>{rows}</table>")
        parts.append(f"<details><summary>calculation</summary><pre>{html.escape(self.trace_text())}</pre></details></div>")
        return "".join(parts)

    def __eq__(self, other):
        return isinstance(other, Result) and self._values == other._values

    def __repr__(self):
        if self._kind != "mcr":
            text = f"<{self._kind} {self.section_name} {self.steel_name}: {self.verdict}"
            if self.governing is not None and self.governing_utilization is not None:
                text += f", governing {self.governing} {self.governing_utilization:.3f}"
            if self.not_verified:
                text += f" (not verified: {self.not_verified})"
            return text + ">"
        v = self._values
        if v.get("Mcr") is None:
            return f"<mcr {v.get('section')} L={v.get('length')} m: none found ({v.get('reason')})>"
        c1 = f", C1 = {v['C1']:.3f}" if v.get("C1") is not None else ""
        return f"<mcr {v.get('section')} L={v.get('length')} m: Mcr = {v['Mcr']:.2f} kNm{c1}>"


def _document_key(key, doc):
    return property(lambda self: self._values.get(key), doc=doc)


class Result(_Values, metaclass=abc.ABCMeta):
    """The result of a check, a member check or an elastic critical moment. The results of check() and
    member() are objects of the compiled module (CheckResult, MemberResult: verdict, governing,
    governing_utilization, utilizations, section_class and not_verified read at once, the document made
    on the first other access); isinstance(r, Result) holds for them too. mcr() gives this class over
    its document."""

    __slots__ = ("_kind", "_values")

    def __init__(self, kind, values):
        self._kind = kind
        self._values = values

    verdict = _document_key("verdict", "fulfilled, not fulfilled, not verified (a member check: also not applicable).")
    governing = _document_key("governing", "The check with the largest utilization under the rules (None: none).")
    governing_utilization = _document_key("governingUtilization", "Its utilization (None: none computed).")
    utilizations = _document_key("utilizations", "The utilization of each check under the rules (None: not computed).")
    section_class = _document_key("class", "The cross-section class under the rules (1 to 4).")
    not_verified = _document_key("notVerified", "Why something was not verified (None: everything was).")

    def to_html(self, **_):
        """The design report of a check or member result (an mcr result has none)."""
        raise TypeError("to_html: a report is made of a check or member result, not of an mcr result")


# The compiled results take the same methods (their values of the document are attributes already); the
# document is made once, on the first access.
for _kind, _type in (("check", _core.CheckResult), ("member", _core.MemberResult)):
    for _name in ("to_dict", "trace_text", "to_frame", "_repr_html_", "__eq__", "__repr__"):
        setattr(_type, _name, _Values.__dict__[_name])
    _type._kind = _kind
    _type._values = property(_type._document)
    _type.__hash__ = None
    Result.register(_type)
del _kind, _type, _name


def section(name):
    """Dimensions and properties of a catalogue section or of one given by dimensions ("WI 1200x300x8x20")."""
    return _core.section(name)


CheckResult = _core.CheckResult
MemberResult = _core.MemberResult

# check() and member() are the compiled functions themselves: a call costs the check, not a wrapper.
check = _core.check
member = _core.member


def mcr(section, **kwargs):
    """The elastic critical moment of lateral-torsional buckling by finite elements: length, moments_y
    (start, middle, end) and diagram_y, or stations [(x, M), ...], uniform_load, point_loads [(x, P), ...],
    load_height (center, top, bottom or mm from the shear centre), start / end supports (fork,
    warping-fixed, lateral-fixed, fixed, free), lateral_restraints ["x" or "x@top"], torsional_restraints,
    c_theta, elements. The result has Mcr (kNm, None when none was found), C1 and the buckled shape."""
    return Result("mcr", _core.mcr(section, **kwargs))


# The columns of the batch's output, with the dtype each has in a result frame: pandas' nullable dtypes,
# so that a missing value (a rejected row, a check that did not run) is <NA>, never a number. `line` (the
# input line) is left out: a frame's rows keep the input frame's index instead. Utilizations are float64
# (NaN where a check did not run), exactly the batch's values (its JSON Lines, to the last bit).
_TEXT = "string"
_CODE = "Int64"
RESULT_COLUMNS = {
    "id": _TEXT, "status": _TEXT, "section": _TEXT, "steel": _TEXT,
    "class": _CODE, "errorCode": _CODE, "memberErrorCode": _CODE, "shearBucklingErrorCode": _CODE,
    "Axial": "float64", "Torsion": "float64", "Bending": "float64", "Shear": "float64",
    "AxialBending": "float64", "ShearBending": "float64", "AxialShearBending": "float64",
    "memberCompression": "float64", "memberBending": "float64", "memberCompressionBending": "float64",
    "memberShearBuckling": "float64", "governing": _TEXT, "governingUtilization": "float64",
    "fulfilled": "boolean", "verdict": _TEXT, "reason": _TEXT, "enUtilization": "float64",
    "departures": _TEXT, "field": _TEXT, "message": _TEXT,
}
_UTILIZATIONS = ("Axial", "Torsion", "Bending", "Shear", "AxialBending", "ShearBending", "AxialShearBending",
                 "memberCompression", "memberBending", "memberCompressionBending", "memberShearBuckling")


def result_columns(rules="en"):
    """The result columns and their dtypes under the rules: the other rules' governing utilization is
    `libraryUtilization` under EN rules (the default) and `enUtilization` under the library's."""
    _check_rules(rules)
    if rules == "library":
        return dict(RESULT_COLUMNS)
    return {("libraryUtilization" if name == "enUtilization" else name): kind for name, kind in RESULT_COLUMNS.items()}


def _check_rules(rules):
    if rules not in ("en", "library"):
        raise ValueError(f"rules: unknown rules {rules!r} (allowed: en, library)")


def _typed(frame):
    """The columns of a frame read from the batch's output in the dtypes of a result frame."""
    for name, kind in RESULT_COLUMNS.items():
        for column in ((name, "libraryUtilization") if name == "enUtilization" else (name,)):
            if column in frame.columns:
                frame[column] = frame[column].astype(kind)
    if "line" in frame.columns:
        frame["line"] = frame["line"].astype("int64")
    return frame


def read_results(text):
    """A result frame from the batch's output (text or a file): JSON Lines (full precision, as the batch
    computed it) or CSV (six significant digits), in the dtypes of RESULT_COLUMNS and with `line`."""
    if not isinstance(text, str):
        text = text.read()
    if text.lstrip().startswith("{"):
        rows = []
        for line in text.splitlines():
            if not line.strip():
                continue
            row = json.loads(line)
            flat = {key: value for key, value in row.items() if key != "utilizations"}
            flat["reason"] = flat.pop("notVerified", None)
            for name in _UTILIZATIONS:
                flat[name] = (row.get("utilizations") or {}).get(name)
            rows.append(flat)
        frame = pd.DataFrame.from_records(rows)
        other = "libraryUtilization" if "libraryUtilization" in frame.columns else "enUtilization"
        order = ["id", "line"] + [c for c in result_columns("library" if other == "enUtilization" else "en")
                                  if c != "id"]
        for column in order:
            if column not in frame.columns:
                frame[column] = None
        frame = frame[order]
        for name in _UTILIZATIONS + ("governingUtilization", other):
            frame[name] = pd.to_numeric(frame[name], errors="coerce").astype("float64")
        return _typed(frame)
    frame = pd.read_csv(io.StringIO(text), dtype=str, keep_default_na=False, na_values=[""])
    for column in frame.columns:
        if RESULT_COLUMNS.get(column, _TEXT if column != "libraryUtilization" else "float64") == "float64":
            frame[column] = pd.to_numeric(frame[column]).astype("float64")
    frame["fulfilled"] = frame["fulfilled"].map({"true": True, "false": False})
    return _typed(frame)


def _columns(df):
    """The columns of a frame as NumPy arrays by name, for the C++ evaluation."""
    if not isinstance(df, pd.DataFrame):
        raise ValueError(f"df: a pandas DataFrame is needed, got {type(df).__name__}")
    columns = {}
    for name in df.columns:
        if not isinstance(name, str):
            raise ValueError(f"df: column names must be text, got {name!r}")
        columns[name] = df[name].to_numpy()
    return columns


def _frame(df, jobs, member_checks, rules):
    _check_rules(rules)
    columns = _columns(df)
    if not member_checks:
        for name in ("lengthY", "lengthZ", "lengthLT", "lengthT"):
            columns.pop(name, None)
        columns["length"] = np.zeros(len(df))
    arrays = _core.evaluate_columns_to_arrays(columns, len(df), jobs, rules)
    data = {}
    for name, kind in result_columns(rules).items():
        if name == "fulfilled":
            data[name] = pd.arrays.BooleanArray(arrays["fulfilled"], arrays["fulfilledMissing"])
        elif kind == _CODE:
            data[name] = pd.arrays.IntegerArray(arrays[name], arrays["codesMissing"].copy())
        elif kind == _TEXT:
            data[name] = pd.arrays.StringArray(arrays[name])
        else:
            data[name] = arrays[name]
    return pd.DataFrame(data, index=df.index, copy=False)


def member_frame(df, jobs=0, rules="en"):
    """Every row of df (the columns of `steeldesign batch`) checked as the batch checks it: a frame of
    the batch's result columns with df's index. Evaluated in C++ on `jobs` threads (0: every core).
    rules: "en" (verdicts by EN 1993-1-1, the default) or "library" (the library's own rules)."""
    return _frame(df, jobs, True, rules)


def check_frame(df, jobs=0, rules="en"):
    """The cross-section checks alone of every row of df (its lengths are not used)."""
    return _frame(df, jobs, False, rules)


def report(df, path=None, *, jobs=0, rules="en", title="", project="", element="", client="", prepared="",
           checked="", approved="", revision=""):
    """The design report of every row of df (the columns of `steeldesign batch`): the page of
    `steeldesign report` for the same rows, as a text; also written to path when one is given (through a
    temporary file beside it, renamed when complete). The title block takes the fields given here; the
    others are blank lines to fill in by hand. At most 10,000 rows."""
    _check_rules(rules)
    columns = _columns(df)
    texts = dict(title=title, project=project, element=element, client=client, prepared=prepared,
                 checked=checked, approved=approved, revision=revision)
    for name, value in texts.items():
        if not isinstance(value, str):
            raise TypeError(f"{name}: a text is needed, got {type(value).__name__}")
    page = _core.report_of_columns(columns, len(df), jobs, rules, **texts)
    if path is not None:
        import os
        import tempfile
        target = os.fspath(path)
        folder = os.path.dirname(os.path.abspath(target))
        handle, temporary = tempfile.mkstemp(prefix="." + os.path.basename(target) + ".", dir=folder)
        try:
            with os.fdopen(handle, "w", encoding="utf-8") as f:
                f.write(page)
                f.flush()
                os.fsync(f.fileno())
            os.replace(temporary, target)
        except BaseException:
            os.unlink(temporary)
            raise
    return page
