#!/usr/bin/python3
"""Writes the reference tables tests/data/special/<function>.csv for the accuracy test of the
special functions, with mpmath at 60 significant digits or more.

Every input is a double, written with repr so that it reads back exactly, and mpmath evaluates at
that exact value, at 60 and then 120 significant digits (and more, up to 1200, until two
successive precisions agree to 32 digits: some functions lose many digits at extreme arguments,
such as erfinv(1 - 1e-300)); a point where no two precisions agree is left out.

Each row: arguments, value, scale. The scale is |value|; for a function with
zeros it is max(|f(x)|, min(|f(x - d)|, |f(x + d)|)), the size of the function a step d away on
either side, so that near a zero the error is measured against the function's magnitude there.

Run with Debian's interpreter: /usr/bin/python3 tests/tools/make_special_reference.py [name ...]
(with names, only those tables are written).
"""
import math
import os
import sys

import mpmath as mp

mp.mp.dps = 40
PRECISIONS = [60, 120, 400, 1200]


def evaluate(f, args):
    """f(*args) at rising precision until two successive values agree to 32 digits."""
    previous = None
    for dps in PRECISIONS:
        with mp.workdps(dps):
            try:
                v = f(*[mp.mpf(a) if isinstance(a, float) else a for a in args])
            except (ValueError, ZeroDivisionError):
                return None
            if previous is not None:
                diff = abs(v - previous)
                if diff <= abs(v) * mp.mpf(10) ** -32 or (v == 0 and previous == 0):
                    return +v
            previous = v
    return None
OUT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "data", "special")


def f2s(v):
    return repr(float(v))


def logspace(lo, hi, n):
    a, b = math.log10(lo), math.log10(hi)
    return [10 ** (a + (b - a) * i / (n - 1)) for i in range(n)]


def linspace(lo, hi, n):
    return [lo + (hi - lo) * i / (n - 1) for i in range(n)]


def scale_of(f, args, value, step, where):
    """|value|, or the function's size a step away where it has zeros."""
    s = abs(value)
    if step is None:
        return s
    a = list(args)
    i = where
    lo = list(a)
    hi = list(a)
    lo[i] = mp.mpf(a[i]) - step
    hi[i] = mp.mpf(a[i]) + step
    try:
        with mp.workdps(60):
            near = min(abs(f(*lo)), abs(f(*hi)))
    except (ValueError, ZeroDivisionError):
        return s
    if isinstance(near, mp.mpc):
        return s
    return max(s, near)


def write(name, header, rows, note):
    path = os.path.join(OUT, name + ".csv")
    with open(path, "w") as out:
        out.write("# %s\n" % note)
        out.write("# mpmath %s at 60 to 1200 significant digits, two precisions agreeing to 32 "
                  "(tests/tools/make_special_reference.py)\n" % mp.__version__)
        out.write(",".join(header) + "\n")
        for r in rows:
            out.write(",".join(r) + "\n")
    print("%-28s %d rows" % (name, len(rows)))


def wanted(name):
    return len(sys.argv) < 2 or name in sys.argv[1:]


def table(name, header, f, points, note, step=None, where=0, keep=None):
    """points: tuples of doubles; f evaluates at exact mpf arguments."""
    if not wanted(name):
        return
    rows = []
    seen = set()
    for p in points:
        p = tuple(float(v) if not isinstance(v, int) else v for v in p)
        if p in seen:
            continue
        seen.add(p)
        args = [mp.mpf(v) if isinstance(v, float) else v for v in p]
        v = evaluate(f, p)
        if v is None:
            continue
        if isinstance(v, mp.mpc):
            if abs(v.imag) > abs(v.real) * mp.mpf(10) ** -30:
                continue
            v = v.real
        if not mp.isfinite(v) or (v != 0 and abs(v) < mp.mpf("2.3e-308")) or abs(v) > mp.mpf("1.7e308"):
            continue
        if keep is not None and not keep(p, v):
            continue
        s = scale_of(f, args, v, step, where)
        if s == 0:
            continue
        rows.append([f2s(a) if isinstance(a, float) else str(a) for a in p] + [f2s(v), f2s(s)])
    write(name, header, rows, note)


def one(vals):
    return [(v,) for v in vals]


def both_signs(vals):
    return [v for x in vals for v in (x, -x)]


# ---- exponential, sine and cosine integrals -------------------------------------------------


def e1(x):
    return mp.e1(x) if x > 0 else -mp.ei(-x)


xs = (logspace(1e-300, 1e-5, 30) + linspace(0.01, 5, 120) + linspace(5, 60, 60) +
      logspace(60, 740, 30))
neg = (logspace(1e-12, 0.2, 30) + linspace(0.25, 0.5, 40) + linspace(0.5, 60, 80) +
       logspace(60, 709, 30))
table("exp_integral", ["x", "value", "scale"], e1, one(xs + [-v for v in neg]),
      "E1(x) = integral from x to infinity of exp(-t)/t dt; for x < 0 the principal value -Ei(-x)",
      step=0.25)

xs = (logspace(1e-300, 1e-3, 25) + linspace(0.01, 8, 160) + linspace(8, 60, 90) +
      logspace(60, 1e8, 40) + [0.6165054856207162, 3.384180422551186, 6.42704723346452])
table("cos_integral", ["x", "value", "scale"], mp.ci, one(xs),
      "Ci(x) = gamma + ln x + integral from 0 to x of (cos t - 1)/t dt, x > 0", step=0.5)
xs = logspace(1e-300, 1e-3, 20) + linspace(0.01, 8, 100) + linspace(8, 60, 60) + logspace(60, 1e8, 30)
table("sin_integral", ["x", "value", "scale"], mp.si, one(both_signs(xs)),
      "Si(x) = integral from 0 to x of sin(t)/t dt")

# ---- gamma family ---------------------------------------------------------------------------

xs = (logspace(1e-300, 1e-3, 20) + linspace(0.01, 12, 150) + linspace(12, 171.6, 60) +
      [171.62, 171.624376956302, 1.0, 2.0, 3.0, 10.0, 20.0, 100.0, 170.0])
negs = ([-n + d for n in range(1, 171, 7) for d in (1e-10, 0.3, 0.5, 0.7, 1 - 1e-9)] +
        linspace(-0.999, -1e-9, 30))
negs = [v for v in negs if v < 0 and v != math.floor(v)]
table("gamma", ["x", "value", "scale"], mp.gamma, one(xs + negs), "Gamma(x)")

xs = (logspace(1e-300, 1e-3, 30) + linspace(0.01, 4, 150) + linspace(4, 50, 50) +
      logspace(50, 1e305, 80) + [1.0, 2.0, 0.9999999999, 1.0000000001, 1.9999999, 2.00000001])
table("log_gamma", ["x", "value", "scale"], mp.loggamma, one(xs), "ln Gamma(x), x > 0", step=0.25)


def lower_p(a, x):
    return mp.gammainc(a, 0, x, regularized=True)


pts = []
for a in [1e-3, 0.1, 0.5, 1.0, 2.5, 7.0, 10.0, 23.5, 50.0, 100.0, 300.0, 1000.0]:
    for r in [1e-3, 0.01, 0.1, 0.3, 0.5, 0.7, 0.8, 0.9, 0.95, 0.99, 1.0, 1.01, 1.05, 1.1, 1.2,
              1.5, 2.0, 3.0, 5.0]:
        pts.append((a, a * r))
    for x in [1e-8, 0.5, 1.0, 3.0, 30.0, 200.0]:
        pts.append((a, x))
for a in [0.25, 1.5, 4.0, 15.0, 150.0]:
    for x in linspace(0.02, 3.0, 10):
        pts.append((a, a * x))
table("incomplete_gamma", ["a", "x", "value", "scale"], lower_p, pts,
      "P(a, x) = lower regularised incomplete gamma function, a > 0, x >= 0",
      keep=lambda p, v: v > mp.mpf("1e-200"))


def polygamma(x, k):
    return mp.psi(k, x)


pts = []
for k in range(7):
    for x in logspace(1e-6, 1e5, 30) + linspace(0.05, 6, 20) + [1.4616321449683622]:
        pts.append((x, k))
    for x in linspace(-19.9, -0.05, 25):
        if x != math.floor(x):
            pts.append((x, k))
table("real_polygamma", ["x", "k", "value", "scale"], polygamma, pts,
      "psi^(k)(x), k = 0..6", step=0.1)

# ---- error functions and the normal distribution -------------------------------------------


def phi(x):
    return mp.ncdf(x)


def phic(x):
    return mp.ncdf(-x)


xs = linspace(-37.4, 9, 240) + [-1e-300, 1e-300, -1e-8, 0.0, 1e-8] + linspace(-2, 2, 60)
table("cumul_normal", ["x", "value", "scale"], phi, one(xs), "Phi(x), standard normal")
table("cumul_normal_complem", ["x", "value", "scale"], phic, one([-v for v in xs]),
      "1 - Phi(x), standard normal")
xs = linspace(-6, 26.5, 270) + logspace(1e-300, 0.1, 40) + [-1e-10, -0.3, 0.46875, 4.0]
table("erfc", ["x", "value", "scale"], mp.erfc, one(xs), "erfc(x)")
xs = both_signs(logspace(1e-300, 0.1, 60) + linspace(0.1, 6.5, 150))
table("erf", ["x", "value", "scale"], mp.erf, one(xs), "erf(x)")


def erfcx(x):
    if x > 1e6:  # the asymptotic series, beyond the reach of mpmath's erfc
        term, total = mp.mpf(1), mp.mpf(1)
        for k in range(1, 40):
            term *= -(2 * k - 1) / (2 * x * x)
            total += term
        return total / (x * mp.sqrt(mp.pi))
    return mp.exp(x * x) * mp.erfc(x)


xs = (linspace(-26.5, 8, 220) + logspace(8, 1e300, 50) + logspace(1e-300, 0.4, 30) +
      [0.46875, 4.0, -0.46875, -4.0])
table("erfcx", ["x", "value", "scale"], erfcx, one(xs), "exp(x^2) erfc(x)")

ys = (both_signs(logspace(1e-300, 0.5, 80) + linspace(0.5, 0.999, 80) +
                 [1 - 2.0 ** -k for k in range(10, 53, 3)]))
table("erfinv", ["y", "value", "scale"], mp.erfinv, one(ys), "inverse of erf, -1 < y < 1")


def erfcinv(y):
    # The root of ln erfc(x) = ln y, well conditioned even where 1 - y would round to 1.
    if y == 1:
        return mp.mpf(0)
    start = mp.sqrt(-mp.log(y)) if y < 0.5 else mp.erfinv(1 - y)
    return mp.findroot(lambda x: mp.log(mp.erfc(x)) - mp.log(y), start)


ys = (logspace(1e-300, 0.5, 150) + linspace(0.5, 1.5, 100) + [1.0] +
      [2 - v for v in logspace(2 ** -52, 0.5, 80)] + [1 - 1e-10, 1 + 1e-10])
table("erfcinv", ["y", "value", "scale"], erfcinv, one(ys), "inverse of erfc, 0 < y < 2")

# ---- Fresnel integrals ------------------------------------------------------------------------


def fres_s(x):
    return mp.fresnels(x)


def fres_c(x):
    return mp.fresnelc(x)


xs = both_signs(logspace(1e-300, 0.1, 20) + linspace(0.1, 10, 200) + linspace(10, 60, 40) +
                logspace(60, 1e7, 30))
table("fresnel_s", ["x", "value", "scale"], fres_s, one(xs),
      "S(x) = integral from 0 to x of sin(pi t^2 / 2) dt")
table("fresnel_c", ["x", "value", "scale"], fres_c, one(xs),
      "C(x) = integral from 0 to x of cos(pi t^2 / 2) dt")

# ---- Carlson's integrals ----------------------------------------------------------------------

grid = [0.0, 1e-300, 1e-20, 1e-5, 0.1, 0.5, 1.0, 2.0, 3.7, 10.0, 1e5, 1e20, 1e150]
pts = [(x, y) for x in grid for y in grid + [-v for v in grid] if y != 0.0]
# For y < 0 (RC) and r < 0 (RJ) the integrand has a simple pole on the path of integration, and
# mpmath continues the function to one side of it; the Cauchy principal value is the real part.


def principal_rc(x, y):
    return mp.re(mp.elliprc(x, y))


def principal_rj(x, y, z, r):
    return mp.re(mp.elliprj(x, y, z, r))


table("elliptic_integral_rc", ["x", "y", "value", "scale"], principal_rc, pts,
      "RC(x, y), x >= 0, y != 0 (principal value for y < 0)")
g3 = [0.0, 1e-200, 1e-10, 1e-3, 0.3, 1.0, 1.2, 2.5, 40.0, 1e3, 1e12, 1e200]
trip = [(x, y, z) for x in g3 for y in g3 for z in g3 if x <= y <= z]
table("elliptic_integral_rf", ["x", "y", "z", "value", "scale"], mp.elliprf,
      [t for t in trip if (t[0] == 0) + (t[1] == 0) + (t[2] == 0) <= 1],
      "RF(x, y, z), at most one argument zero")
pts = [(x, y, z) for x in g3 for y in g3 for z in g3 if x <= y and z > 0 and y > 0]
table("elliptic_integral_rd", ["x", "y", "z", "value", "scale"], mp.elliprd, pts,
      "RD(x, y, z), x, y >= 0 not both zero, z > 0")
g4 = [0.0, 1e-100, 1e-5, 0.5, 1.0, 3.0, 1e5, 1e100]
pts = [(x, y, z, r) for x in g4 for y in g4 for z in g4 if x <= y <= z and (x == 0) + (y == 0) <= 1
       for r in [1e-100, 1e-3, 0.25, 1.0, 2.0, 7.5, 1e4, 1e100]]
g4 = [0.0, 1e-5, 0.5, 1.0, 3.0, 40.0]
pts += [(x, y, z, r) for x in g4 for y in g4 for z in g4 if x <= y <= z and (x == 0) + (y == 0) <= 1
        for r in [-0.5, -2.0, -1e3]]
table("elliptic_integral_rj", ["x", "y", "z", "r", "value", "scale"], principal_rj, pts,
      "RJ(x, y, z, r), at most one of x, y, z zero, r != 0 (principal value for r < 0)")

# ---- Jacobi theta -----------------------------------------------------------------------------


def theta(k, x, q):
    n = 4 if k == 0 else k
    return mp.jtheta(n, mp.pi * x, q)


pts = []
for k in range(5):
    for q in [0.0, 1e-8, 0.001, 0.02, 0.043, 0.044, 0.1, 0.3, 0.5, 0.7, 0.9, 0.97]:
        for x in [-7.3, -1.5, -0.7, -0.25, 0.0, 1e-9, 0.1, 0.25, 0.4999999, 0.5, 0.63, 0.9,
                  1.0, 2.125, 10.75]:
            pts.append((k, x, q))
table("jacobian_theta", ["k", "x", "q", "value", "scale"], theta, pts,
      "theta_k(x, q) with period 1 in x (mpmath jtheta(k, pi x, q); theta_0 = theta_4)",
      step=0.1, where=1)

# ---- Lambert W --------------------------------------------------------------------------------


def lambert(x, branch, offset):
    z = (-1 / mp.e + x) if offset else x
    return mp.lambertw(z, branch)


inv_e = float(1 / mp.e)
pts = [(x, 0, 0) for x in [-inv_e + d for d in logspace(1e-16, 0.3, 40)] +
       linspace(-0.36, 3, 60) + logspace(3, 1e300, 40) + logspace(1e-300, 0.1, 20)]
pts += [(x, -1, 0) for x in [-inv_e + d for d in logspace(1e-16, 0.3, 40)] +
        linspace(-0.36, -0.01, 40) + [-v for v in logspace(1e-300, 0.01, 30)]]
pts += [(x, 0, 1) for x in logspace(1e-300, 1e-3, 20) + logspace(1e-3, 1e10, 50)]
table("lambertW", ["x", "branch", "offset", "value", "scale"], lambert, pts,
      "Lambert W on branch 0 or -1; offset 1: z = -1/e + x")

# ---- Pearson type IV ----------------------------------------------------------------------------


def pearson(x, y0, A, xc, a, m, nu):
    k = abs(mp.gamma(m + 0.5j * nu) / mp.gamma(m)) ** 2 / (a * mp.beta(m - mp.mpf(0.5), mp.mpf(0.5)))
    u = (x - xc) / a
    return y0 + A * k * (1 + u * u) ** (-m) * mp.exp(-nu * mp.atan(u))


pts = []
for m in [0.6, 1.0, 2.5, 7.0, 20.0]:
    for nu in [-30.0, -2.0, 0.0, 0.5, 5.0]:
        for x in [-40.0, -3.0, -0.5, 0.0, 0.7, 2.0, 15.0]:
            for (xc, a) in [(0.0, 1.0), (1.5, 0.3)]:
                pts.append((x, 0.0, 1.0, xc, a, m, nu))
pts += [(1.0, 2.0, 3.5, 0.5, 2.0, 3.0, 1.0), (-1.0, -0.5, 10.0, 0.0, 5.0, 1.5, -4.0)]
table("zomath_PearsonIV", ["x", "y0", "A", "xc", "a", "m", "nu", "value", "scale"], pearson, pts,
      "Pearson type IV peak y0 + A k (1 + u^2)^-m exp(-nu atan u), u = (x - xc)/a")

# ---- complex helpers: rows (arguments..., part) with part 0 real, 1 imaginary ----------------


def complex_table(name, header, f, points, note):
    if not wanted(name):
        return
    rows = []
    for p in points:
        v = evaluate(f, p)
        if v is None:
            continue
        v = mp.mpc(v)
        s = abs(v)
        if s == 0 or s > mp.mpf("1e300") or s < mp.mpf("1e-300"):
            continue
        for part, comp in ((0, v.real), (1, v.imag)):
            rows.append([f2s(a) if isinstance(a, float) else str(a) for a in p] +
                        [str(part), f2s(comp), f2s(s)])
    write(name, header, rows, note)


zs = [(re, im) for re in [-300.0, -30.0, -3.5, -1.0, -0.25, -1e-5, 0.0, 1e-8, 0.5, 1.0, 1.5,
                          2.75, 40.0, 1e5]
      for im in [-20.0, -2.0, -0.3, -1e-12, 0.0, 1e-9, 0.6, 1.0, 5.0, 300.0 / 301.0, 7e3, 55.5]]
for name, f, note in [("sqrtz", mp.sqrt, "principal square root"), ("sinz", mp.sin, "sine"),
                      ("cosz", mp.cos, "cosine"), ("tanz", mp.tan, "tangent"),
                      ("logz", mp.log, "principal logarithm"), ("expz", mp.exp, "exponential")]:
    complex_table(name, ["re", "im", "part", "value", "scale"],
                  lambda re, im, f=f: f(mp.mpc(re, im)), zs, note + " of a complex number")
rows = []
pts = zs + [(3e200, 4e200), (1e-200, -1e-200), (-5e-310, 1e-300)] + [
    (re, im) for re in logspace(1e-250, 1e250, 35) for im in [-1e200, 1e-100, 3.0, -7.25e-5]]
table("cabsz", ["re", "im", "value", "scale"], lambda re, im: abs(mp.mpc(re, im)), pts,
      "modulus of a complex number")
complex_table("ipow", ["re", "im", "n", "part", "value", "scale"],
              lambda re, im, n: mp.mpc(re, im) ** n,
              [(re, im, n) for (re, im) in zs if (re, im) != (0.0, 0.0)
               for n in [-7, -1, 0, 1, 2, 5, 13]], "z^n for integer n")
complex_table("rpow", ["re", "im", "r", "part", "value", "scale"],
              lambda re, im, r: mp.mpc(re, im) ** r,
              [(re, im, r) for (re, im) in zs[::2] if (re, im) != (0.0, 0.0)
               for r in [-2.5, -0.5, 0.3, 1.0, 3.25]], "z^r for real r (principal branch)")
complex_table("cpowz", ["re", "im", "wre", "wim", "part", "value", "scale"],
              lambda re, im, wre, wim: mp.mpc(re, im) ** mp.mpc(wre, wim),
              [(re, im, wre, wim) for (re, im) in zs[::3] if (re, im) != (0.0, 0.0)
               for (wre, wim) in [(0.5, 0.0), (-1.5, 2.0), (2.0, -0.5), (0.0, 1.0)]],
              "z^w = exp(w log z) (principal branch)")
