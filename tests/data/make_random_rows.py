#!/usr/bin/env python3
"""Writes random batch rows over every catalogue family (seeded: the same file every time).

Usage: make_random_rows.py SECTIONS_LIST ROWS SEED > rows.csv
SECTIONS_LIST is the output of `steeldesign sections` (one designation a line).
"""
import random
import sys

names = [line.strip() for line in open(sys.argv[1]) if line.strip()]
rows = int(sys.argv[2])
rng = random.Random(int(sys.argv[3]))
families = {}
for n in names:
    families.setdefault(n.split(" ")[0], []).append(n)
family_names = sorted(families)
steels = ["S235", "S275", "S355", "S460"]
print("id,section,steel,N,My,Mz,Mt,Vy,Vz,length,MyStart,MyMid,MyEnd,diagramY,loadPoint,rolledMethod,cmFloor,"
      "lengthY,lengthZ,lengthLT")
for i in range(rows):
    section = rng.choice(families[rng.choice(family_names)])
    scale = rng.choice([0.1, 1.0, 10.0, 100.0])
    def force(p_zero):
        return 0.0 if rng.random() < p_zero else round(rng.uniform(-3.0, 3.0) * scale, 2)
    N = round(force(0.3) * 10, 2)
    My = force(0.3)
    Mz = round(force(0.7) / 3, 3)
    Mt = round(force(0.9) / 10, 3)
    Vy = force(0.8)
    Vz = force(0.4) * 2
    length = rng.choice([0, 0, 1.5, 3.0, 4.5, 6.0, 9.0])
    shape = rng.choice(["const", "line", "para", "poly"])
    if shape == "const":
        ms, mm, me = My, My, My
    elif shape == "line":
        psi = round(rng.uniform(-1, 1), 2)
        ms, mm, me = My, round(My * (1 + psi) / 2, 3), round(My * psi, 3)
    else:
        ms, mm, me = round(My * rng.uniform(-1, 1), 3), My, round(My * rng.uniform(-1, 1), 3)
    diagram = "parabolic" if shape == "para" else "polygonal"
    point = rng.choice(["center", "center", "top", "bottom"])
    rolled = rng.choice(["", "", "true", "false"])
    cmfloor = rng.choice(["false", "false", "true"])
    ly = lz = llt = ""
    if length and rng.random() < 0.3:
        lz = round(length * rng.choice([0.25, 0.5, 1.0]), 3)
        llt = lz
    print(f"R{i},{section},{rng.choice(steels)},{N},{My},{Mz},{Mt},{Vy},{Vz},{length},{ms},{mm},{me},{diagram},{point},"
          f"{rolled},{cmfloor},{ly},{lz},{llt}")
