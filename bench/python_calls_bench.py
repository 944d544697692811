"""Microseconds per call of steeldesign.check and steeldesign.member from Python, as a user's loop calls
them (the headline attributes read; the JSON document only where named). Best of five runs of a timeit
loop. Run: PYTHONPATH=build/python python3 bench/python_calls_bench.py

Instructions a call, which a noisy machine does not change: run one call N times and 0 times under
callgrind and divide the difference by N, e.g.
    valgrind --tool=callgrind python3 bench/python_calls_bench.py --repeat 0 5000
(0: the first call below, 1: the second, ...)."""

import sys
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

if sys.argv[1:2] == ["--repeat"]:
    call = list(CALLS.values())[int(sys.argv[2])]
    for _ in range(int(sys.argv[3])):
        call()
    sys.exit(0)

for name, call in CALLS.items():
    number = 2000 if "to_dict" in name else 20000
    best = min(timeit.repeat(call, number=number, repeat=5)) / number
    print(f"{best * 1e6:8.2f} us  {name}")
