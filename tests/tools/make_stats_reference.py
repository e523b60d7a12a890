#!/usr/bin/python3
"""Reference tables for the summary statistics.

Run with Debian's interpreter: /usr/bin/python3 tests/tools/make_stats_reference.py
Writes, under tests/data/stats/:

  samples.csv    the weighted samples (set, x, w, has_weights; NANUM marks a missing value or
                 weight, has_weights 0 means the statistics are asked without weights)
  summary.csv    every field of the summary record for each set and moment denominator, in
                 the format of tests/scalar/reference.h: set, flag, field, value, scale
  nist_exact.csv the mean and standard deviation of the NIST StRD univariate sets as doubles
                 hold them: set, statistic (0 mean, 1 sd), value, scale

The statistics are computed by mpmath at 50 digits from the exact binary value of every number,
straight from their definitions; the NIST values in exact rational arithmetic. Where an outside
library computes the same quantity (statsmodels' weighted standard deviations with ddof 1 and 0,
SciPy's skewness and kurtosis with and without bias correction, SciPy's t quantile), the script
checks that it agrees to 1e-10 (the t quantile to 1e-8: SciPy's is no closer) before
writing anything. Samples come from a seeded NumPy
generator, so a rerun writes the same files.
"""
import math
import os
from fractions import Fraction

import mpmath as mp
import numpy as np
import scipy.stats as st
from statsmodels.stats.weightstats import DescrStatsW

HERE = os.path.dirname(os.path.abspath(__file__))
DATA = os.path.join(HERE, "..", "data")
OUT = os.path.join(DATA, "stats")
NANUM = -1.23456789e-300
LEVEL = 0.95
mp.mp.dps = 50

# DescStatResults fields in record order; the table's field column is the index.
FIELDS = ["N", "Missing", "Mean", "SD", "SEM", "LCL", "UCL", "Variance", "Sum", "Skewness",
          "Kurtosis", "UncorSumSq", "CorSumSq", "COV", "MAD", "SDx2", "SDx3", "GeoMean", "GeoSD",
          "Mode", "WeightSum"]
NIST_SETS = ["PiDigits", "Lottery", "Lew", "Mavro", "Michelso", "NumAcc1", "NumAcc2", "NumAcc3",
             "NumAcc4"]


def samples():
    """(name, x, w, has_weights) for each set."""
    rng = np.random.default_rng(20240611)
    sets = []
    x = np.round(rng.normal(50, 8, 60), 3)
    w = np.round(rng.uniform(0.2, 2.5, 60), 2)
    sets.append(("weighted normal", x, w, True))
    sets.append(("the same without weights", x, np.ones_like(x), False))
    # Missing values and weights, weights of 0 and below 0, values of both signs (an even
    # count of negative ones among the valid points, so that the geometric mean exists).
    x = rng.normal(-1, 2, 50)
    w = rng.uniform(0.1, 3.0, 50)
    x[[3, 17, 30, 44]] = NANUM
    w[[8, 21, 39]] = NANUM
    w[[5, 26, 33]] = 0.0
    w[[12, 47]] = [-0.5, -2.0]
    valid = (x != NANUM) & (w != NANUM)
    if np.sum(x[valid] < 0) % 2:
        x[np.nonzero(valid & (x < 0))[0][0]] = NANUM
    sets.append(("missing points, zero and negative weights", x, w, True))
    # A mean a hundred million times the spread.
    x = 1e6 + rng.normal(0, 0.01, 200)
    w = rng.uniform(0.1, 3.0, 200)
    sets.append(("ill-conditioned", x, w, True))
    # Small integers with ties, whole weights.
    x = rng.integers(1, 7, 40).astype(float)
    w = rng.integers(1, 5, 40).astype(float)
    sets.append(("integers with ties", x, w, True))
    # Weights all 1: the sample counts as unweighted.
    x = rng.gamma(2.0, 3.0, 25)
    sets.append(("unit weights", x, np.ones_like(x), True))
    # Far from 1 in both directions: fourth powers beyond the range of doubles.
    x = 3e-200 + 1e-200 * rng.normal(0, 1, 30)
    w = rng.uniform(0.5, 2.0, 30)
    sets.append(("tiny values", x, w, True))
    x = 2e200 + 1e200 * rng.normal(0, 1, 30)
    w = rng.uniform(0.5, 2.0, 30)
    sets.append(("huge values", x, w, True))
    return sets


def M(v):
    return mp.mpf(float(v))


def t_central(level, df):
    """The t >= 0 with P(|T| < t) = level on df degrees of freedom."""
    def central(t):
        return 1 - mp.betainc(df / 2, mp.mpf(1) / 2, 0, df / (df + t * t), regularized=True)
    return mp.findroot(lambda t: central(t) - level, mp.mpf(2))


def summarise(x, w, has_weights, flag):
    """Every field as zomath_desc_stats defines it (mpf, int, or None for NANUM)."""
    pts = [(M(a), M(b) if has_weights else mp.mpf(1)) for a, b in zip(x, w)
           if a != NANUM and (not has_weights or b != NANUM)]
    n = len(pts)
    xs = [a for a, _ in pts]
    ws = [max(b, mp.mpf(0)) for _, b in pts]  # a weight below 0 counts as 0
    weighted = has_weights and any(b != 1 for _, b in pts)
    W = mp.fsum(ws)
    S2 = mp.fsum(b * b for b in ws)
    mean = mp.fsum(b * a for a, b in zip(xs, ws)) / W
    e = [a - mean for a in xs]
    cor = mp.fsum(b * d * d for b, d in zip(ws, e))
    r = {f: None for f in FIELDS}
    r.update(N=n, Missing=len(x) - n, Mean=mean, WeightSum=W, Sum=mean * W, CorSumSq=cor,
             UncorSumSq=mp.fsum(b * a * a for a, b in zip(xs, ws)),
             MAD=mp.fsum(b * abs(d) for b, d in zip(ws, e)) / W)
    d = {0: n - 1, 1: n, 2: W - 1, 3: W, 4: W - S2 / W}[flag]
    v = cor / d
    sd = mp.sqrt(v)
    r.update(Variance=v, SD=sd, SDx2=2 * sd, SDx3=3 * sd, COV=sd / mean)
    if flag == 4:
        m3 = mp.fsum(b * t ** 3 for b, t in zip(ws, e))
        m4 = mp.fsum(b * t ** 4 for b, t in zip(ws, e))
        r.update(Skewness=m3 / (sd * v) / d, Kurtosis=m4 / (v * v) / d - 3)
    elif flag in (0, 1):
        m3 = mp.fsum(b * mp.sqrt(b) * t ** 3 for b, t in zip(ws, e))
        m4 = mp.fsum(b * b * t ** 4 for b, t in zip(ws, e))
        if flag == 0:
            nn = mp.mpf(n)
            r["Skewness"] = nn / (nn - 2) / (nn - 1) * m3 / (sd * v)
            r["Kurtosis"] = (1 / (nn - 1) * ((nn + 1) * nn / ((nn - 3) * (nn - 2))) * m4 / (v * v)
                             - 3 * (nn - 1) ** 2 / ((nn - 3) * (nn - 2)))
        else:
            r.update(Skewness=m3 / (sd * v) / n, Kurtosis=m4 / (v * v) / n - 3)
    if flag == 0 or (flag == 4 and not weighted):
        half = t_central(mp.mpf(LEVEL), mp.mpf(n - 1)) * sd / mp.sqrt(W)
        r.update(SEM=sd / mp.sqrt(W), LCL=mean - half, UCL=mean + half)
    # Geometric mean of the valid points (of |x| for an even count of negative values).
    if any(a == 0 for a in xs):
        r["GeoMean"] = mp.mpf(0)
    elif sum(a < 0 for a in xs) % 2 == 0:
        r["GeoMean"] = mp.exp(mp.fsum(mp.log(abs(a)) for a in xs) / n)
    # Geometric SD and mode look at the values alone, whatever their weights.
    values = [M(a) for a in x if a != NANUM]
    if all(a > 0 for a in values):
        logs = [mp.log(a) for a in values]
        m = mp.fsum(logs) / len(logs)
        ss = mp.fsum((t - m) ** 2 for t in logs)
        dl = {0: len(logs) - 1, 1: len(logs), 2: len(logs) - 1, 3: len(logs), 4: len(logs) - 1}[flag]
        r["GeoSD"] = mp.exp(mp.sqrt(ss / dl))
    counts = {}
    for a in values:
        counts[a] = counts.get(a, 0) + 1
    top = max(counts.values())
    if top > 1:
        r["Mode"] = min(a for a, c in counts.items() if c == top)
    if flag in (2, 3):
        r.update(Skewness=None, Kurtosis=None)
    return r


def cross_check(x, w, has_weights, flag, r):
    """Agreement with statsmodels and SciPy where they compute the same quantity."""
    xs = np.array([a for a, b in zip(x, w) if a != NANUM and b != NANUM])
    ws = np.array([max(b, 0.0) for a, b in zip(x, w) if a != NANUM and b != NANUM])
    if not has_weights:
        ws = np.ones_like(xs)

    def close(a, b, what, tol=1e-10):
        b = float(b)
        if not (math.isfinite(a) and math.isfinite(b)):
            return
        assert abs(a - b) <= tol * max(abs(b), 1e-300), (what, a, b)

    moderate = np.all((np.abs(xs) > 1e-100) & (np.abs(xs) < 1e100))  # their squares stay doubles
    if flag in (2, 3) and moderate:
        close(DescrStatsW(xs, weights=ws, ddof=3 - flag).std, r["SD"], "statsmodels std")
    if not has_weights and flag in (0, 1):
        close(st.skew(xs, bias=flag == 1), r["Skewness"], "scipy skew")
        close(st.kurtosis(xs, bias=flag == 1), r["Kurtosis"], "scipy kurtosis")
    if r["LCL"] is not None:
        t = float((r["UCL"] - r["Mean"]) / r["SEM"])
        # SciPy 1.10 inverts the t distribution to about 1e-9 only.
        close(st.t.ppf(0.5 + LEVEL / 2, len(xs) - 1), t, "scipy t quantile", 1e-8)


def number(v):
    if v is None:
        return repr(NANUM)
    if isinstance(v, int):
        return str(v)
    f = float(v)
    return repr(f) if math.isfinite(f) else ("inf" if f > 0 else "-inf")


def scale(field, v, r):
    """What the error is divided by: |value|, but the spread for a mean near 0 and at least 1
    for the shape coefficients, which pass through 0."""
    if v is None or isinstance(v, int):
        return "1"
    f = abs(float(v))
    if field == "Mean" and r["SD"] is not None:
        f = max(f, float(r["SD"]))
    if field in ("Skewness", "Kurtosis"):
        f = max(f, 1.0)
    return repr(f) if 0 < f < math.inf else "1"


def nist_exact():
    rows = []
    for k, name in enumerate(NIST_SETS):
        with open(os.path.join(DATA, "nist-strd", name + ".dat"), newline="") as f:
            lines = f.read().split("\n")
        y = [Fraction(float(t)) for t in lines[60:] if t.strip()]
        mean = sum(y) / len(y)
        var = sum((t - mean) ** 2 for t in y) / (len(y) - 1)
        sd = mp.sqrt(mp.mpf(var.numerator) / var.denominator)
        for stat, v in ((0, mp.mpf(mean.numerator) / mean.denominator), (1, sd)):
            rows.append("%d,%d,%s,%s" % (k, stat, repr(float(v)), repr(abs(float(v)))))
    return rows


def main():
    os.makedirs(OUT, exist_ok=True)
    sets = samples()
    with open(os.path.join(OUT, "samples.csv"), "w") as f:
        f.write("# Samples of the summary statistics tests, written by tests/tools/make_stats_reference.py\n")
        for k, (name, _, _, _) in enumerate(sets):
            f.write("# set %d: %s\n" % (k, name))
        f.write("set,x,w,has_weights\n")
        for k, (_, x, w, hw) in enumerate(sets):
            for a, b in zip(x, w):
                f.write("%d,%s,%s,%d\n" % (k, repr(float(a)), repr(float(b)), int(hw)))
    with open(os.path.join(OUT, "summary.csv"), "w") as f:
        f.write("# Summary statistics of tests/data/stats/samples.csv by mpmath at 50 digits, from\n")
        f.write("# the definitions of each moment denominator; written by tests/tools/make_stats_reference.py.\n")
        f.write("# field: index in DescStatResults (%s); NANUM where the statistic\n" % " ".join(FIELDS))
        f.write("# does not exist. Confidence level %.2f.\n" % LEVEL)
        f.write("set,flag,field,value,scale\n")
        for k, (_, x, w, hw) in enumerate(sets):
            for flag in range(5):
                r = summarise(x, w, hw, flag)
                cross_check(x, w, hw, flag, r)
                for i, field in enumerate(FIELDS):
                    f.write("%d,%d,%d,%s,%s\n" % (k, flag, i, number(r[field]), scale(field, r[field], r)))
    with open(os.path.join(OUT, "nist_exact.csv"), "w") as f:
        f.write("# Mean and standard deviation (n - 1) of the NIST StRD univariate sets as read into\n")
        f.write("# doubles, in exact rational arithmetic; written by tests/tools/make_stats_reference.py.\n")
        f.write("# set: %s\n" % " ".join("%d %s" % (k, s) for k, s in enumerate(NIST_SETS)))
        f.write("set,statistic,value,scale\n")
        f.write("\n".join(nist_exact()) + "\n")


if __name__ == "__main__":
    main()
