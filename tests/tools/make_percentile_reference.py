#!/usr/bin/python3
"""Reference tables for the percentiles, the five-number summary and the density percentiles.

Run with Debian's interpreter: /usr/bin/python3 tests/tools/make_percentile_reference.py
Writes, under tests/data/stats/:

  percentile_samples.csv    set, x, w, has_weights. Sets 0-19 are samples (NANUM marks a
                            missing value or weight; has_weights 0: asked without weights),
                            sets 101-120 the samples of 1 to 20 points of the five-number
                            summary, sets 201-203 density curves (the w column holds y).
                            Sets 12 and 13 are sets 2 and 5 with equal weights, which
                            count as none: they have no rows of their own.
  percentile_reference.csv  kind, set, a, b, value, scale in the format of
                            tests/scalar/reference.h:
                              kind 0: a = definition (nInterpolate 0-5, or -1 for a weighted
                                      sample, where every definition gives the same), b = the
                                      percent; value NANUM where there is none
                              kind 1: a = 0..4 (minimum, lower hinge, median, upper hinge,
                                      maximum), b = 0
                              kind 2: a = the fraction, b = 0 for the x, 1 for the index

Percentiles. Every value is computed from its definition in exact rational arithmetic from the
binary value of each number (q = n p / 100, or (n + 1) p / 100 for definition 3, exactly), and
rounded once. NumPy 1.24's percentile(method=...) computes the same definitions and the script
checks that it agrees before writing anything:

  0 averaged_inverted_cdf      2 inverted_cdf      3 weibull      4 interpolated_inverted_cdf
  1 closest_observation

with two known kinds of difference, which the check allows and nowhere else:
  - NumPy forms q as (p / 100) n in doubles, so a percent that is not exactly a multiple of
    100 / n can land on a tie (g = 0 or 0.5) by rounding, and one that is can miss it (10 % of
    30 points: 0.1 is not a double). The exact q decides the ties here, as the library's
    extended-precision (p n) / 100 does for these data. The continuous definitions 3 and 4
    differ from NumPy by the same rounding, a few units in the last place.
  - NumPy 1.24's closest_observation takes the odd-numbered observation at g = 0.5, where the
    rule (Hyndman and Fan's type 3) takes the even-numbered one.
  - NumPy forms a + b and b - a in doubles, which overflow near the largest double (set 6).
Definition 5 has no NumPy counterpart (only the extremes exist) and weighted samples neither
(NumPy 1.24 has no weights); for weighted samples the percentile is the smallest x(i) whose
cumulative weight C(i) reaches T = W p / 100, or the mean of x(i) and x(i + 1) when C(i) equals
T and x(i) is not the last, in exact arithmetic. The weighted samples have dyadic weights (sums
exact, percents that hit C(i) exactly) or random ones, and no zero weight next to a hit.

Five-number summary: Tukey's hinges as the medians of the lower and upper halves of the sorted
sample, each half holding the median when n is odd (numpy.median), checked against the depth
formulation: median at depth (n + 1) / 2, hinges at depth (floor((n + 1) / 2) + 1) / 2 from
either end, a half depth averaging two neighbours.

Density percentiles: the cumulative trapezoid areas A(i) and the target T = f A(last), exactly;
the x where the piecewise linear A reaches T, and the index of the interval's left end. Checked
against numpy.interp over scipy's cumulative_trapezoid to 1e-12 of the x range. Fractions at or
beyond 0 and 1 give the ends when equal to them to 12 digits, otherwise NANUM and index 0.

Samples come from a seeded NumPy generator, so a rerun writes the same files.
"""
import math
import os
from fractions import Fraction as F

import numpy as np
from scipy.integrate import cumulative_trapezoid

HERE = os.path.dirname(os.path.abspath(__file__))
OUT = os.path.join(HERE, "..", "data", "stats")
NANUM = -1.23456789e-300
METHODS = {0: "averaged_inverted_cdf", 1: "closest_observation", 2: "inverted_cdf",
           3: "weibull", 4: "interpolated_inverted_cdf"}
HALF = F(1, 2)
# Sets whose equal weights make them count as unweighted: their references are those of the
# unweighted set named.
EQUAL_WEIGHTS = {12: 2, 13: 5}


def fmt(v):
    if v == NANUM:
        return repr(NANUM)
    return repr(float(v))


def exact_percentile(x, p, rule):
    """Definition `rule` at percent p of the ascending values x, exactly; None where none."""
    n = len(x)
    if not 0 <= p <= 100:
        return None
    q = F(p) * (n + 1 if rule == 3 else n) / 100
    k = math.floor(q)
    g = q - k
    if k == 0:
        return F(x[0])
    if k >= n:
        return F(x[-1])
    a, b = F(x[k - 1]), F(x[k])
    if rule == 0:
        return b if g > 0 else (a + b) / 2
    if rule == 1:
        # Hyndman and Fan's type 3, in their own terms: j = floor(q - 1/2), and x(j + 1) unless
        # q - 1/2 is whole and j even.
        j = math.floor(q - HALF)
        if q - HALF == j and j % 2 == 0:
            return F(x[j - 1]) if j >= 1 else F(x[0])
        return F(x[j]) if j < n else F(x[-1])
    if rule == 2:
        return b if g > 0 else a
    if rule in (3, 4):
        return (1 - g) * a + g * b
    return None


def numpy_may_differ(n, p, rule):
    """Whether NumPy's double q may fall on the other side of a tie than the exact one."""
    q = F(p) * (n + 1 if rule == 3 else n) / 100
    qd = F((p / 100) * (n + 1 if rule == 3 else n))
    for t in (math.floor(q), math.ceil(q), math.floor(q) + HALF):
        if (q == t) != (qd == t) or abs(q - t) < F(1, 10 ** 9):
            return True
    return rule == 1 and q - math.floor(q) == HALF


def check_numpy(x, p, rule, value):
    if rule not in METHODS or value is None:
        return
    got = float(np.percentile(np.array(x), p, method=METHODS[rule]))
    want = float(value)
    span = max(abs(x[0]), abs(x[-1]), 1e-300)
    if not math.isfinite(got) and span > 1e307:
        return  # NumPy's a + b or b - a overflows near the largest double
    if rule in (3, 4):
        ok = abs(got - want) <= 8 * np.finfo(float).eps * span or numpy_may_differ(len(x), p, rule)
    else:
        ok = got == want or numpy_may_differ(len(x), p, rule)
    assert ok, (len(x), p, rule, got, want)


def weighted_percentile(x, w, p):
    """The weighted rule from the cumulative weights, exactly (x ascending, w its weights)."""
    if not 0 <= p <= 100:
        return None
    c, total = [], F(0)
    for wi in w:
        total += F(wi)
        c.append(total)
    t = total * F(p) / 100
    i = next(i for i, ci in enumerate(c) if ci >= t)
    if c[i] == t and i + 1 < len(x):
        return (F(x[i]) + F(x[i + 1])) / 2
    return F(x[i])


def percents_for(n, rng):
    ps = [0.0, 100.0, -1.0, 101.0, 25.0, 50.0, 75.0, 1e-9, 100 - 1e-9]
    step = max(1, n // 12)
    for m in (n, n + 1):  # ties of q = n p / 100 and of (n + 1) p / 100
        for j in range(0, m + 1, step):
            ps += [100.0 * j / m, 100.0 * (j + 0.5) / m]
    ps += list(np.round(rng.uniform(0, 100, 6), 3))
    return sorted(set(p for p in ps if p <= 101))


def samples(rng):
    """(x, w, has_weights) for sets 0.."""
    sets = {}
    sets[0] = ([3.5], None)
    sets[1] = ([2.0, -1.0], None)
    sets[2] = (list(rng.integers(0, 6, 10).astype(float)), None)
    x = list(np.round(rng.normal(5, 2, 13), 1))
    for i in (2, 7, 11):
        x[i] = NANUM
    x[4] = x[9]  # a tie
    sets[3] = (x, None)
    sets[4] = (list(np.round(rng.normal(0, 1, 7), 4)), None)
    sets[5] = (list(np.round(rng.normal(50, 10, 40), 0)), None)
    # Near the largest double: (a + b) / 2 in doubles would overflow.
    sets[6] = ([1.7e308, 1.6e308, -1.7e308, 1.75e308, 1.5e308, -1.6e308, 1.79e308], None)
    sets[7] = (list(rng.uniform(-1, 1, 101)), None)
    # Dyadic weights summing to 20 (so p = 2.5 j hits the cumulative sums exactly), ties in x,
    # a missing value and a missing weight.
    x = [4.0, 1.0, 3.0, 3.0, 7.0, 2.0, 5.0, NANUM, 6.0, 1.0, 8.0, 9.0, 2.0]
    w = [1.5, 2.0, 0.5, 1.0, 2.5, 3.0, 1.0, 2.0, 1.5, 0.5, 2.0, NANUM, 4.5]
    sets[10] = (x, w)
    x = list(np.round(rng.normal(10, 3, 30), 3))
    w = list(np.round(rng.uniform(0.1, 4.0, 30), 3))
    w[5], w[17] = NANUM, 0.0
    x[9] = NANUM
    sets[11] = (x, w)
    sets[12] = (sets[2][0], [2.5] * 10)  # equal weights: as if none
    sets[13] = (sets[5][0], [1.0] * 40)  # unit weights: none
    assert all(sets[s][0] == sets[t][0] for s, t in EQUAL_WEIGHTS.items())
    return sets


def five_numbers(x):
    s = np.sort(np.array(x))
    n = len(s)
    low, high = s[: (n + 1) // 2], s[n // 2:]
    five = [s[0], np.median(low), np.median(s), np.median(high), s[-1]]
    # The depth formulation must agree.
    def at(depth):
        i = math.floor(depth)
        return s[i - 1] if depth == i else (s[i - 1] + s[i]) / 2
    dm = (n + 1) / 2
    dh = (math.floor(dm) + 1) / 2
    other = [s[0], at(dh), at(dm), at(n + 1 - dh), s[-1]]
    assert five == other, (n, five, other)
    return five


def density_curves(rng):
    curves = {}
    x = np.sort(rng.uniform(-5, 5, 60))
    curves[201] = (x, 3.0 * np.exp(-x * x / 2))
    x = np.linspace(0.05, 15, 41)
    curves[202] = (x, x * x * np.exp(-x) + 0.01)
    curves[203] = (np.array([1.0, 2.0, 4.0]), np.array([0.5, 2.0, 1.0]))
    return curves


def density_percentile(x, y, f):
    """(x, index) at fraction f, or (None, 0)."""
    n = len(x)
    if f <= 0 or f >= 1:
        if abs(f) <= 1e-12 * abs(f) or f == 0:
            return F(x[0]), 0
        if abs(f - 1) <= 1e-12 * max(abs(f), 1):
            return F(x[-1]), n - 1
        return None, 0
    a = [F(0)]
    for i in range(1, n):
        a.append(a[-1] + (F(x[i]) - F(x[i - 1])) * (F(y[i]) + F(y[i - 1])) / 2)
    t = F(f) * a[-1]
    lo = max(i for i in range(n - 1) if a[i] <= t)
    hi = lo + 1
    value = F(x[lo]) + (F(x[hi]) - F(x[lo])) * (t - a[lo]) / (a[hi] - a[lo])
    # The same by NumPy and SciPy.
    ai = cumulative_trapezoid(y, x, initial=0)
    assert abs(np.interp(f * ai[-1], ai, x) - float(value)) <= 1e-12 * (x[-1] - x[0])
    return value, lo


def main():
    rng = np.random.default_rng(20240917)
    sample_rows, ref_rows = [], []

    for s, (x, w) in samples(rng).items():
        has_w = w is not None
        for i, xi in enumerate(x):
            sample_rows.append("%d,%s,%s,%d" % (s, fmt(xi), fmt(w[i] if has_w else 1.0), has_w))
        valid = [i for i in range(len(x)) if x[i] != NANUM and (not has_w or w[i] != NANUM)]
        order = sorted(valid, key=lambda i: x[i])
        xs = [x[i] for i in order]
        span = max(abs(xs[0]), abs(xs[-1])) or 1.0
        weighted = has_w and len(set(w[i] for i in valid)) > 1
        if s in EQUAL_WEIGHTS:
            continue
        for p in percents_for(len(xs), rng):
            if weighted:
                v = weighted_percentile(xs, [w[i] for i in order], p)
                ref_rows.append("0,%d,-1,%s,%s,%s" % (s, fmt(p), fmt(NANUM if v is None else v), fmt(span)))
                continue
            for rule in range(6):
                v = exact_percentile(xs, p, rule)
                with np.errstate(over="ignore", invalid="ignore"):
                    check_numpy(xs, p, rule, v)
                ref_rows.append("0,%d,%d,%s,%s,%s" % (s, rule, fmt(p), fmt(NANUM if v is None else v), fmt(span)))

    for n in range(1, 21):
        x = list(np.round(rng.permutation(rng.normal(0, 10, n)), 2))
        for xi in x:
            sample_rows.append("%d,%s,1.0,0" % (100 + n, fmt(xi)))
        for which, v in enumerate(five_numbers(x)):
            ref_rows.append("1,%d,%d,0,%s,%s" % (100 + n, which, fmt(v), fmt(max(abs(min(x)), abs(max(x))))))

    for c, (x, y) in density_curves(rng).items():
        for xi, yi in zip(x, y):
            sample_rows.append("%d,%s,%s,0" % (c, fmt(xi), fmt(yi)))
        fractions = [0.0, 1.0, -0.1, 1.1, 1e-13, -1e-13, 1 + 1e-13, 1 - 1e-13, 0.5, 0.25, 0.975,
                     0.001] + list(np.round(rng.uniform(0, 1, 5), 4))
        for f in fractions:
            v, index = density_percentile(x, y, f)
            ref_rows.append("2,%d,%s,0,%s,%s" % (c, fmt(f), fmt(NANUM if v is None else v), fmt(x[-1] - x[0])))
            ref_rows.append("2,%d,%s,1,%d,1.0" % (c, fmt(f), index))

    os.makedirs(OUT, exist_ok=True)
    with open(os.path.join(OUT, "percentile_samples.csv"), "w") as out:
        out.write("# Samples of the percentile tests, written by tests/tools/make_percentile_reference.py\n")
        out.write("set,x,w,has_weights\n")
        out.write("\n".join(sample_rows) + "\n")
    with open(os.path.join(OUT, "percentile_reference.csv"), "w") as out:
        out.write("# Percentiles (kind 0), five-number summaries (1) and density percentiles (2), exact\n")
        out.write("# rational arithmetic rounded once, checked against NumPy 1.24 and SciPy 1.10; written\n")
        out.write("# by tests/tools/make_percentile_reference.py\n")
        out.write("kind,set,a,b,value,scale\n")
        out.write("\n".join(ref_rows) + "\n")
    print("%d samples rows, %d reference rows" % (len(sample_rows), len(ref_rows)))


if __name__ == "__main__":
    main()
