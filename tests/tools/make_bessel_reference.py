#!/usr/bin/python3
"""Reference tables for the Bessel, Airy and Kelvin functions.

Run with Debian's Python (mpmath): /usr/bin/python3 tests/tools/make_bessel_reference.py
Writes tests/data/special/<function>.csv in the format of tests/scalar/reference.h: the
arguments, the value rounded to double, and the scale that the error at that row is divided by.

Every argument is an exactly representable double, written with repr. Each value is computed
with mpmath at 40 significant digits and checked against a second evaluation at 60 digits.

The scale is |value|, except in the oscillatory range of a function (J, Y, Airy on the negative
axis, Kelvin) where it is max(|value|, M / 8), M being the modulus of the function's pair
(sqrt(J^2 + Y^2), sqrt(Ai^2 + Bi^2), sqrt(ber^2 + bei^2), ...): near a zero the error is measured
against the size of the oscillation around it rather than against the vanishing value.
"""

import math
import os
import sys

import mpmath as mp

OUT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "data", "special")
DIGITS = 40
CHECK_DIGITS = 60

DBL_MAX = sys.float_info.max


def up(x, n=1):
    for _ in range(n):
        x = math.nextafter(x, math.inf)
    return x


def down(x, n=1):
    for _ in range(n):
        x = math.nextafter(x, -math.inf)
    return x


def logspace(a, b, n):
    la, lb = math.log10(a), math.log10(b)
    return [float(10 ** (la + (lb - la) * i / (n - 1))) for i in range(n)]


def linspace(a, b, n):
    return [a + (b - a) * i / (n - 1) for i in range(n)]


def around(x, ulps=(1, 2, 16, 1 << 20)):
    """x and neighbours at a few distances in units in the last place."""
    pts = [x]
    for u in ulps:
        pts += [up(x, u) if u < 64 else x + u * (math.nextafter(x, math.inf) - x),
                down(x, u) if u < 64 else x - u * (x - math.nextafter(x, -math.inf))]
    return pts


def nearest(v):
    return float(mp.mpf(v))


# ---- Functions: each returns (value, modulus or None) at an mpf argument ----

def modulus_pair(f, g):
    return mp.sqrt(f * f + g * g)


def j_y(order):
    def value_j(x):
        ax = abs(x)
        return mp.besselj(order, x), modulus_pair(mp.besselj(order, ax), mp.bessely(order, ax))

    def value_y(x):
        return mp.bessely(order, x), modulus_pair(mp.besselj(order, x), mp.bessely(order, x))
    return value_j, value_y


def airy(which):
    def value(x):
        d = 1 if which in ("aip", "bip") else 0
        ai, bi = mp.airyai(x, derivative=d), mp.airybi(x, derivative=d)
        return (ai if which.startswith("a") else bi), modulus_pair(ai, bi)
    return value


_kelvin_cache = {}


def kelvin(which):
    first = which in ("ber", "bei")

    def value(x):
        key = (first, x, mp.mp.dps)
        if key not in _kelvin_cache:
            _kelvin_cache[key] = (mp.ber(0, x), mp.bei(0, x)) if first else \
                (mp.ker(0, x), mp.kei(0, x))
        a, b = _kelvin_cache[key]
        return (a if which in ("ber", "ker") else b), modulus_pair(a, b)
    return value


def plain(f):
    return lambda *a: (f(*a), None)


# ---- Argument sets ----

def zeros_near(fzero, count):
    pts = []
    for k in range(1, count + 1):
        z = nearest(fzero(k))
        pts += around(z, (1, 3)) if k <= 3 else [z, up(z)]
    return pts


def j_args(zero_fn, both_signs=True):
    pos = [0.0, 5e-324, 1e-300, 1e-200, 1e-100, 1e-20, 1e-10, 1e-5, 1e-3, 0.1, 0.5]
    pos += linspace(0.25, 30.0, 120)
    pos += logspace(30.0, 1e3, 40) + logspace(1e3, 1e16, 60)
    pos += [1e16, up(1e16), 2e16, 1e20, 1e100, 1e300, DBL_MAX]
    pos += zeros_near(zero_fn, 12)
    pos += [nearest(zero_fn(k)) for k in (100, 1000, 10000)]
    pts = pos + ([-x for x in pos[::3] if x != 0.0] if both_signs else [])
    return sorted(set(pts))


def y_args(zero_fn, tiny):
    pos = [5e-324, 1e-310, tiny, up(tiny), down(tiny), 1e-300, 1e-200, 1e-100, 1e-20, 1e-10,
           1e-5, 1e-3, 0.1]
    pos += linspace(0.25, 30.0, 165)
    pos += logspace(30.0, 1e3, 40) + logspace(1e3, 1e16, 60)
    pos += [1e16, up(1e16), 1e20, 1e100, 1e300, DBL_MAX]
    pos += zeros_near(zero_fn, 12)
    pos += [nearest(zero_fn(k)) for k in (100, 1000, 10000)]
    return sorted(set(x for x in pos if x > 0))


def i_overflow_edge(f):
    """Largest double x with f(x) <= DBL_MAX."""
    x = mp.findroot(lambda t: mp.log(f(t)) - mp.log(DBL_MAX), 713.9)
    x = nearest(x)
    while f(mp.mpf(x)) > DBL_MAX:
        x = down(x)
    while f(mp.mpf(up(x))) <= DBL_MAX:
        x = up(x)
    return x


def i_args(edge):
    pos = [0.0, 5e-324, 1e-300, 1e-100, 1e-20, 1e-10, 1e-5, 1e-3, 0.1]
    pos += linspace(0.2, 40.0, 130) + logspace(40.0, 700.0, 60)
    pos += [700.9217937, up(700.9217937), 705.0, 710.0, 713.0] + around(edge, (1, 2, 1 << 30))
    pts = pos + [-x for x in pos[::2] if x != 0.0]
    return sorted(set(x for x in pts if abs(x) <= edge))


def i_scaled_args():
    pos = [0.0, 5e-324, 1e-300, 1e-100, 1e-20, 1e-10, 1e-5, 1e-3, 0.1]
    pos += linspace(0.2, 40.0, 110) + logspace(40.0, 1e6, 80)
    pos += [700.9217937, 713.0, 714.0, 800.0, 32768.0, up(32768.0), 1e10, 1e100, 1e300, DBL_MAX]
    return sorted(set(pos + [-x for x in pos[::2] if x != 0.0]))


def k_args(order):
    pos = [5e-324, 1e-310, 6e-309, 1e-307, 1e-300, 1e-200, 1e-100, 1e-20, 1e-10, 1e-5, 1e-3,
           0.1] if order else [5e-324, 1e-300, 1e-200, 1e-100, 1e-20, 1e-10, 1e-5, 1e-3, 0.1]
    pos += linspace(0.2, 40.0, 200) + logspace(40.0, 700.0, 90) + [1.5, 2.0, 2.5, 700.9217937]
    return sorted(set(pos))


def k_scaled_args(order):
    pos = k_args(order)
    pos += logspace(700.0, 1e6, 30) + [32768.0, 1e10, 1e100, 1e300, DBL_MAX]
    return sorted(set(pos))


def airy_args(zero_fn, positive_end):
    neg = [-x for x in logspace(0.01, 1e12, 130)] + linspace(-30.0, 0.0, 121)
    neg += zeros_near(zero_fn, 10) + [nearest(zero_fn(k)) for k in (100, 10000, 1000000)]
    pos = [5e-324, 1e-300, 1e-20, 1e-10, 1e-5, 1e-3] + linspace(0.0, 30.0, 61)
    pos += logspace(30.0, positive_end, 25) + around(positive_end, (1, 3))
    return sorted(set(neg + pos))


def kelvin_args(zero_seed, positive_only, end):
    pos = [5e-324, 1e-300, 1e-100, 1e-20, 1e-10, 1e-5, 1e-3, 0.1] if positive_only else \
        [0.0, 5e-324, 1e-300, 1e-100, 1e-20, 1e-10, 1e-5, 1e-3, 0.1]
    pos += linspace(0.25, 40.0, 240 if positive_only else 170) + logspace(40.0, end, 45)
    pos += around(end, (1, 3))
    pos += zero_seed
    pts = pos if positive_only else pos + [-x for x in pos[::3] if x != 0.0]
    return sorted(set(pts))


def kelvin_zeros(fn, count):
    pts = []
    x = 0.5
    prev = fn(mp.mpf(x))
    while len(pts) < count and x < 60:
        nx = x + 0.25
        cur = fn(mp.mpf(nx))
        if prev * cur < 0:
            z = nearest(mp.findroot(fn, (mp.mpf(x), mp.mpf(nx)), solver="anderson"))
            pts += [z, up(z), down(z)]
        x, prev = nx, cur
    return pts


# ---- Output ----

def scale_of(value, modulus, oscillating):
    mag = abs(value)
    if oscillating and modulus is not None:
        return max(mag, modulus / 8)
    return mag


def evaluate(fn, args, oscillating):
    """Value and scale at args; the two evaluations must agree to 1e-25 of the scale."""
    with mp.workdps(DIGITS):
        v, m = fn(*[mp.mpf(a) for a in args])
        s = scale_of(v, m, oscillating)
    with mp.workdps(CHECK_DIGITS):
        v2, _ = fn(*[mp.mpf(a) for a in args])
    if abs(v - v2) > s * mp.mpf(10) ** (-25) and abs(v - v2) > mp.mpf(10) ** -340:
        raise RuntimeError("reference unstable at %r: %s vs %s" % (args, v, v2))
    return v, s


def write(name, columns, rows_args, fn, oscillating=lambda *a: False, note=""):
    os.makedirs(OUT, exist_ok=True)
    path = os.path.join(OUT, name + ".csv")
    lines = ["# %s: mpmath %s at %d digits, checked at %d digits." % (name, mp.__version__,
                                                                    DIGITS, CHECK_DIGITS),
             "# Generated by tests/tools/make_bessel_reference.py. scale = |value|, or "
             "max(|value|, M/8) in the oscillatory range (M = modulus of the function pair)."]
    if note:
        lines.append("# " + note)
    lines.append(",".join(columns + ["value", "scale"]))
    count = 0
    for args in rows_args:
        v, s = evaluate(fn, args, oscillating(*args))
        fv, s = float(v), float(s)
        if not math.isfinite(fv):
            continue  # past overflow: no value to compare with
        if s == 0.0:
            if fv != 0.0:
                continue
            s = 1.0  # exact zero of the function at an exact argument (J1(0)): absolute error
        lines.append(",".join(repr(float(a)) for a in args) + "," + repr(fv) + "," + repr(s))
        count += 1
    with open(path, "w") as f:
        f.write("\n".join(lines) + "\n")
    print("%-22s %4d rows" % (name, count), flush=True)


def main():
    only = set(sys.argv[1:])

    def want(n):
        return not only or n in only

    mp.mp.dps = DIGITS
    j0, y0 = j_y(0)
    j1, y1 = j_y(1)
    if want("bessel_j0"):
        write("bessel_j0", ["x"], [(x,) for x in j_args(lambda k: mp.besseljzero(0, k))], j0,
              lambda x: abs(x) >= 1.5)
    if want("bessel_j1"):
        write("bessel_j1", ["x"], [(x,) for x in j_args(lambda k: mp.besseljzero(1, k))], j1,
              lambda x: abs(x) >= 2.5)
    if want("bessel_y0"):
        write("bessel_y0", ["x"], [(x,) for x in y_args(lambda k: mp.besselyzero(0, k), 1e-300)],
              y0, lambda x: x >= 0.5)
    if want("bessel_y1"):
        # Y1 ~ -2/(pi x) overflows below about 3.54e-309.
        tiny = nearest(2 / (mp.pi * DBL_MAX))
        write("bessel_y1", ["x"], [(x,) for x in y_args(lambda k: mp.besselyzero(1, k), tiny)],
              y1, lambda x: x >= 1.5)

    for order in (0, 1):
        f = (lambda o: lambda x: mp.besseli(o, x))(order)
        if want("bessel_i%d" % order):
            edge = i_overflow_edge(lambda t: f(abs(t)))
            write("bessel_i%d" % order, ["x"], [(x,) for x in i_args(edge)], plain(f),
                  note="I%d overflows past x = %r" % (order, edge))
        if want("bessel_i%d_scaled" % order):
            write("bessel_i%d_scaled" % order, ["x"], [(x,) for x in i_scaled_args()],
                  plain((lambda o: lambda x: mp.exp(-abs(x)) * mp.besseli(o, x))(order)))
        g = (lambda o: lambda x: mp.besselk(o, x))(order)
        if want("bessel_k%d" % order):
            write("bessel_k%d" % order, ["x"], [(x,) for x in k_args(order)], plain(g))
        if want("bessel_k%d_scaled" % order):
            write("bessel_k%d_scaled" % order, ["x"], [(x,) for x in k_scaled_args(order)],
                  plain((lambda o: lambda x: mp.exp(x) * mp.besselk(o, x))(order)))

    # Fractional orders nu / 4, nu = -3..3.
    def i_nu(x, nu):
        return mp.besseli(nu / 4, x), None

    def i_nu_scaled(x, nu):
        return mp.exp(-x) * mp.besseli(nu / 4, x), None

    def k_nu(x, nu):
        return mp.besselk(nu / 4, x), None

    def k_nu_scaled(x, nu):
        return mp.exp(x) * mp.besselk(nu / 4, x), None

    xs_small = [0.0, 5e-324, 1e-300, 1e-100, 1e-20, 1e-8, 1e-3, 0.1]
    xs_mid = [0.3, 0.5, 0.7, 1.0, 1.25, 1.5, 1.75, 1.99, 2.0, 2.01, 2.5, 3.0, 4.0, 5.0, 6.5, 8.0,
              10.0, 12.5, 15.0, 17.0, 18.5, 20.0, 24.0, 25.0, 26.0, 30.0, 35.0, 50.0, 80.0]
    xs_big = [120.0, 250.0, 400.0, 600.0, 700.0, 700.9217937, up(700.9217937), 713.0]
    xs_huge = [1000.0, 5000.0, 20000.0, 32768.0, up(32768.0), 1e5, 1e8, 1e15]
    orders = [-3.0, -2.0, -1.0, 0.0, 1.0, 2.0, 3.0]

    def grid(xs):
        return [(x, nu) for nu in orders for x in xs]

    if want("bessel_i_nu"):
        rows = [r for r in grid(xs_small + xs_mid + xs_big) if not (r[0] == 0 and r[1] < 0)]
        write("bessel_i_nu", ["x", "nu"], rows, i_nu, note="order nu / 4")
    if want("bessel_i_nu_scaled"):
        rows = [r for r in grid(xs_small + xs_mid + xs_big + xs_huge)
                if not (r[0] == 0 and r[1] < 0)]
        write("bessel_i_nu_scaled", ["x", "nu"], rows, i_nu_scaled, note="order nu / 4")
    if want("bessel_k_nu"):
        rows = [r for r in grid(xs_small + xs_mid + xs_big) if r[0] > 0]
        write("bessel_k_nu", ["x", "nu"], rows, k_nu, note="order nu / 4")
    if want("bessel_k_nu_scaled"):
        rows = [r for r in grid(xs_small + xs_mid + xs_big + xs_huge) if r[0] > 0]
        write("bessel_k_nu_scaled", ["x", "nu"], rows, k_nu_scaled, note="order nu / 4")

    # Airy: Ai and Ai' underflow past about x = 104, Bi and Bi' overflow past about 104.8.
    ai_end = nearest(mp.findroot(lambda t: mp.log(mp.airyai(t)) - mp.log(sys.float_info.min),
                                 104.0))
    bi_end = nearest(mp.findroot(lambda t: mp.log(mp.airybi(t)) - mp.log(DBL_MAX), 104.8))
    bip_end = nearest(mp.findroot(lambda t: mp.log(mp.airybi(t, derivative=1)) -
                                  mp.log(DBL_MAX), 104.5))
    while mp.airybi(bi_end) > DBL_MAX:
        bi_end = down(bi_end)
    while mp.airybi(bip_end, derivative=1) > DBL_MAX:
        bip_end = down(bip_end)
    for name, which, zf, end in (
            ("airy_ai", "ai", lambda k: mp.airyaizero(k), ai_end),
            ("airy_bi", "bi", lambda k: mp.airybizero(k), bi_end),
            ("airy_ai_deriv", "aip", lambda k: mp.airyaizero(k, derivative=1), ai_end),
            ("airy_bi_deriv", "bip", lambda k: mp.airybizero(k, derivative=1), bip_end)):
        if want(name):
            write(name, ["x"], [(x,) for x in airy_args(zf, end)], airy(which),
                  lambda x: x <= -0.5)

    # Kelvin: ber and bei overflow past about x = 1010; ker and kei become subnormal near 1000.
    for name, which in (("kelvin_ber", "ber"), ("kelvin_bei", "bei"), ("kelvin_ker", "ker"),
                        ("kelvin_kei", "kei")):
        if not want(name):
            continue
        fn = kelvin(which)
        seeds = kelvin_zeros(lambda t: fn(t)[0], 6)
        end = 1005.0 if which in ("ber", "bei") else 990.0
        write(name, ["x"], [(x,) for x in kelvin_args(seeds, which in ("ker", "kei"), end)], fn,
              lambda x: abs(x) >= 1.0)


if __name__ == "__main__":
    main()
