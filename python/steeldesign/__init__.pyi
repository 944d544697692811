# Type stubs of steeldesign: every argument with its unit, so that help() and an editor list them.
from typing import Any, Literal, Optional, Sequence, Tuple, Union

import pandas as pd

Rules = Literal["en", "library"]
Verdict = Literal["fulfilled", "not fulfilled", "not verified", "not applicable"]

class InputError(ValueError): ...

RESULT_COLUMNS: dict[str, str]

class Result:
    @property
    def verdict(self) -> Optional[Verdict]: ...
    @property
    def governing(self) -> Optional[str]: ...
    @property
    def governing_utilization(self) -> Optional[float]: ...
    @property
    def utilizations(self) -> dict[str, Optional[float]]: ...
    @property
    def section_class(self) -> Optional[int]: ...
    @property
    def not_verified(self) -> Optional[str]: ...
    def to_dict(self) -> dict[str, Any]: ...
    def to_frame(self) -> pd.DataFrame: ...
    def to_html(self, *, project: str = "", element: str = "", client: str = "", prepared: str = "",
                checked: str = "", approved: str = "", revision: str = "") -> str: ...
    def trace_text(self) -> str: ...
    def _repr_html_(self) -> str: ...
    def __getattr__(self, name: str) -> Any: ...
    def __getitem__(self, name: str) -> Any: ...

class _Compiled(Result):
    @property
    def rules(self) -> str: ...
    @property
    def section_name(self) -> str: ...
    @property
    def steel_name(self) -> str: ...

class CheckResult(_Compiled): ...
class MemberResult(_Compiled): ...

def section(name: str) -> dict[str, Any]:
    """Dimensions and properties (m, m2, m4, m6) of a catalogue designation or a dimension notation."""

def check(
    section: str,
    steel: str = "S355",
    *,
    N: float = 0.0,            # kN, compression negative
    My: float = 0.0,           # kNm
    Mz: float = 0.0,           # kNm
    Mt: float = 0.0,           # kNm
    Vy: float = 0.0,           # kN
    Vz: float = 0.0,           # kN
    leg_axes: bool = False,    # My, Mz, Vy, Vz about an angle's legs (turned into u, v); default: about u, v
    gamma_m0: Optional[float] = None,   # None: the standard's value
    elastic: bool = False,
    mode: str = "EN",          # EN, UK, RolledLTB or a mode number
    situation: str = "persistent",
    rules: Rules = "en",
) -> CheckResult:
    """The cross-section check of EN 1993-1-1 6.2."""

def member(
    section: str,
    steel: str = "S355",
    *,
    N: float = 0.0,
    My: float = 0.0,
    Mz: float = 0.0,
    Mt: float = 0.0,
    Vy: float = 0.0,
    Vz: float = 0.0,
    leg_axes: bool = False,
    length: Optional[float] = None,     # m, Lcr,y = Lcr,z = L_LT
    lcr_y: Optional[float] = None,      # m
    lcr_z: Optional[float] = None,      # m
    l_lt: Optional[float] = None,       # m
    lcr_t: Optional[float] = None,      # m, torsional buckling length (default l_lt, else lcr_z)
    gamma_m1: float = 1.0,
    moments_y: Optional[Sequence[float]] = None,   # kNm at start, middle, end
    diagram_y: Literal["polygonal", "parabolic"] = "polygonal",
    moments_z: Optional[Sequence[float]] = None,   # kNm
    diagram_z: Literal["polygonal", "parabolic"] = "polygonal",
    max_moment: Optional[float] = None,  # kNm
    load_point: Literal["center", "top", "bottom"] = "center",
    mcr: float = 0.0,                    # kNm, 0: computed
    c_theta: float = 0.0,
    shear_panel: float = 0.0,
    rolled_method: Optional[bool] = None,
    mcr_method: Literal["tables", "numerical"] = "tables",
    torsionally_deformable: bool = False,
    twist_restrained: bool = False,
    cm_floor: bool = False,
    mode: str = "EN",
    situation: str = "persistent",
    rules: Rules = "en",
) -> MemberResult:
    """The member checks of EN 1993-1-1 6.3 and EN 1993-1-5 5."""

def mcr(
    section: str,
    *,
    length: float,                                        # m
    moments_y: Optional[Sequence[float]] = None,          # kNm at start, middle, end
    diagram_y: Literal["polygonal", "parabolic"] = "polygonal",
    stations: Sequence[Tuple[float, float]] = (),         # (x m, M kNm)
    uniform_load: float = 0.0,                            # kN/m, positive downwards
    point_loads: Sequence[Tuple[float, float]] = (),      # (x m, P kN)
    lateral_restraints: Sequence[str] = (),               # "x" or "x@top"
    torsional_restraints: Sequence[float] = (),           # x m
    load_height: Union[str, float] = "center",            # center, top, bottom or mm from the shear centre
    start: str = "fork",
    end: str = "fork",
    c_theta: float = 0.0,
    elements: int = 30,
) -> Result:
    """The elastic critical moment by finite elements."""

def result_columns(rules: Rules = "en") -> dict[str, str]: ...
def read_results(text: Any) -> pd.DataFrame: ...
def member_frame(df: pd.DataFrame, jobs: int = 0, rules: Rules = "en") -> pd.DataFrame:
    """Every row of df (the batch's columns) checked as the batch checks it."""
def check_frame(df: pd.DataFrame, jobs: int = 0, rules: Rules = "en") -> pd.DataFrame:
    """The cross-section checks alone of every row of df."""
def report(df: pd.DataFrame, path: Any = None, *, jobs: int = 0, rules: Rules = "en", title: str = "",
           project: str = "", element: str = "", client: str = "", prepared: str = "", checked: str = "",
           approved: str = "", revision: str = "") -> str:
    """The design report of every row of df: the page of `steeldesign report` (also written to path)."""
