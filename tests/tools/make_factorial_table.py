#!/usr/bin/python3
"""Writes tests/data/vector/factorial.csv: n! for n = 0..171 as the double nearest the exact
integer (Python's exact integer arithmetic, correctly rounded by float()); inf past the range.
Run by hand: /usr/bin/python3 tests/tools/make_factorial_table.py"""
import math
import os

out = os.path.join(os.path.dirname(__file__), "..", "data", "vector", "factorial.csv")
with open(out, "w") as f:
    f.write("# n! from exact integer arithmetic, rounded once to the nearest double\n")
    f.write("n,value\n")
    for n in range(172):
        exact = math.factorial(n)
        try:
            value = float(exact)
        except OverflowError:
            value = math.inf
        f.write(f"{n},{value!r}\n")
