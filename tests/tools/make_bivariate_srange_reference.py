#!/usr/bin/python3
"""Reference tables for the bivariate normal and studentized range distribution functions.

Run with Debian's interpreter: /usr/bin/python3 tests/tools/make_bivariate_srange_reference.py
Writes tests/data/distributions/{bivariate_normal,studentized_range}.csv in the format of
tests/scalar/reference.h (args..., value, scale); scale 1 makes the test's error absolute.

Bivariate normal: P(X <= x, Y <= y) = integral_{-inf}^{x} phi(t) Phi((y - rho t) / sqrt(1 - rho^2)) dt
by mpmath quadrature at 40 digits, split where the inner argument changes sign.
Studentized range: mpmath has no routine, so the table holds SciPy's studentized_range.cdf; an
independent nested mpmath quadrature (over s, the chi / sqrt(v) variable, of the range probability
W(q s)) checks every known-variance row, and with --slow-check two finite-v rows (minutes each).
"""
import os
import sys

import mpmath as mp

HERE = os.path.dirname(os.path.abspath(__file__))
OUT = os.path.join(HERE, "..", "data", "distributions")


def write(name, header, comment, rows):
    os.makedirs(OUT, exist_ok=True)
    with open(os.path.join(OUT, name), "w") as f:
        for line in comment:
            f.write("# " + line + "\n")
        f.write(header + "\n")
        for row in rows:
            f.write(",".join(row) + "\n")


def bivariate_normal(x, y, rho):
    # The test evaluates at the doubles nearest the decimal inputs: so does the reference.
    x, y, rho = mp.mpf(float(x)), mp.mpf(float(y)), mp.mpf(float(rho))
    if rho == 1:
        return mp.ncdf(min(x, y))
    if rho == -1:
        return max(mp.mpf(0), mp.ncdf(x) + mp.ncdf(y) - 1)
    s = mp.sqrt((1 - rho) * (1 + rho))
    f = lambda t: mp.npdf(t) * mp.ncdf((y - rho * t) / s)
    points = [-mp.inf]
    if rho != 0:
        t0 = y / rho
        if t0 < x:
            points.append(t0)
    points.append(x)
    return mp.quad(f, points)


def make_bivariate():
    mp.mp.dps = 40
    xs = ["-8.0", "-5.0", "-3.0", "-1.5", "-0.5", "0.0", "0.3", "1.0", "2.5", "4.0", "7.0"]
    rhos = ["-1.0", "-0.999999", "-0.99", "-0.95", "-0.925", "-0.9", "-0.75", "-0.5", "-0.3",
            "-0.1", "0.0", "0.1", "0.2999", "0.3", "0.5", "0.7499", "0.75", "0.9", "0.92499",
            "0.925", "0.95", "0.99", "0.9999", "0.999999", "1.0"]
    rows = []
    for i, x in enumerate(xs):
        for y in xs[i:]:
            for rho in rhos:
                v = bivariate_normal(x, y, rho)
                rows.append([x, y, rho, mp.nstr(v, 25, min_fixed=-1, max_fixed=-1), "1"])
    write("bivariate_normal.csv", "x,y,rho,value,scale",
          ["P(X <= x, Y <= y) for standard bivariate normal with correlation rho",
           "mpmath %s, 40 digits, one-dimensional quadrature" % mp.__version__], rows)
    print("bivariate_normal: %d rows" % len(rows))


def range_probability(w, r):
    """P(range of r standard normals <= w), the integral folded about z = w/2."""
    if w <= 0:
        return mp.mpf(0)
    c = w / 2
    def f(u):
        d = mp.ncdf(u + c) - mp.ncdf(u - c)
        return r * (mp.npdf(c + u) + mp.npdf(c - u)) * d ** (r - 1)
    return mp.quad(f, [0, c, c + 4, c + 12])


def studentized_range(q, v, r):
    q = mp.mpf(q)
    if v == "inf":
        return range_probability(q, r)
    v = mp.mpf(v)
    a = v / 2
    logc = mp.log(2) + a * mp.log(a) - mp.loggamma(a)   # density of s: c s^(v-1) exp(-a s^2)
    dens = lambda s: mp.exp(logc + (v - 1) * mp.log(s) - a * s * s)
    mode = mp.sqrt((v - 1) / v) if v > 1 else mp.mpf("0.5")
    width = 1 / mp.sqrt(2 * v)
    pts = [0] + [p for p in (mode - 8 * width, mode - 3 * width, mode, mode + 3 * width,
                             mode + 8 * width) if p > 0] + [mp.inf]
    pts = sorted(set(pts))
    return mp.quad(lambda s: dens(s) * range_probability(q * s, r), pts)


def make_srange(slow_check):
    """SciPy's studentized_range (mpmath has none) as the table; mpmath's nested quadrature checks
    every known-variance point, and with --slow-check a few finite-v points (minutes each)."""
    import scipy
    from scipy.stats import studentized_range as sr
    mp.mp.dps = 25
    qs = ["0.25", "1.0", "2.0", "3.0", "3.5", "4.5", "6.0", "9.0", "15.0"]
    vs = ["1.0", "2.0", "5.0", "10.0", "30.0", "120.0", "2000.0", "inf"]
    groups = [2, 3, 5, 10, 30]
    rows = []
    worst = 0.0
    for v in vs:
        for r in groups:
            for q in qs:
                p = sr.cdf(float(q), r, float(v))
                if v == "inf":
                    worst = max(worst, abs(float(studentized_range(q, v, r)) - p))
                rows.append([q, v, str(r), repr(p), "1"])
    checks = [("3.5", "10.0", 3), ("1.0", "1.0", 2)] if slow_check else []
    for q, v, r in checks:
        worst = max(worst, abs(float(studentized_range(q, v, r)) - sr.cdf(float(q), r, float(v))))
    write("studentized_range.csv", "q,v,groups,value,scale",
          ["P(Q <= q) of the studentized range of `groups` normals over sqrt(chi2(v)/v)",
           "SciPy %s studentized_range.cdf; mpmath %s nested quadrature at 25 digits agrees on the"
           " known-variance rows%s to %.1e" % (scipy.__version__, mp.__version__,
                                                " and %d finite-v spot checks" % len(checks) if checks else "",
                                                worst)],
          rows)
    print("studentized_range: %d rows, largest difference from mpmath %.2e" % (len(rows), worst))


if __name__ == "__main__":
    which = sys.argv[1:] or ["bivariate", "srange"]
    if which == ["--slow-check"]:
        which = ["bivariate", "srange", "--slow-check"]
    if "bivariate" in which:
        make_bivariate()
    if "srange" in which:
        make_srange("--slow-check" in which)
