"""Microseconds per call of steeldesign.check and steeldesign.member from Python, as a user's loop calls
them (the headline attributes read; the JSON document only where named). Best of five runs of a timeit
loop. Run: PYTHONPATH=build/python python3 bench/python_calls_bench.py"""

import timeit

import steeldesign as sd

CALLS = {
    "check(IPE 300, N, My, Vz).governing_utilization":
        lambda: sd.check("IPE 300", "S355", N=-250, My=90, Vz=60).governing_utilization,
    "member(IPE 300, N, My, Vz, length 4).governing_utilization":
        lambda: sd.member("IPE 300", "S355", N=-250, My=90, Vz=60, length=4).governing_utilization,
    "member(HEB 300, N, lcr_y 8, lcr_z 5.6).verdict":
        lambda: sd.member("HEB 300", "S235", N=-2000, lcr_y=8, lcr_z=5.6).verdict,
    "check(IPE 300, ...).to_dict() (the whole document and trace)":
        lambda: sd.check("IPE 300", "S355", N=-250, My=90, Vz=60).to_dict(),
}

for name, call in CALLS.items():
    number = 2000 if "to_dict" in name else 20000
    best = min(timeit.repeat(call, number=number, repeat=5)) / number
    print(f"{best * 1e6:8.2f} us  {name}")
