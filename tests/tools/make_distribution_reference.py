#!/usr/bin/python3
"""Reference tables for the distribution functions, their inverses and densities.

Run with Debian's interpreter: /usr/bin/python3 tests/tools/make_distribution_reference.py [name...]
Writes tests/data/distributions/<name>.csv in the format of tests/scalar/reference.h: the
arguments, the reference value, and the scale the error is divided by (|value|: relative error).

Every value is computed by mpmath at 50 significant digits from the exact binary value of each
argument (arguments are written with repr, so the test reads back the same double), and then again
at 75 digits: a row is kept only if the two agree to 25 digits (the continued fractions lose up
to 20 digits to cancellation at shapes of 1e20). SciPy only places the variates
(its ppf and isf at chosen tail probabilities, rounded to 12 digits): no reference value comes
from it. Probabilities below 1e-300 are left out, as a relative error means nothing below the
normal range of doubles.
"""
import math
import os
import sys

import mpmath as mp
import scipy.stats as st

HERE = os.path.dirname(os.path.abspath(__file__))
OUT = os.path.join(HERE, "..", "data", "distributions")

LOWER, UPPER, TWO_SIDED, CENTRAL = 2, 1, 0, 3   # the exports' tail codes
mp.mp.dps = 50   # combinations of confirmed values (central = 1 - 2 min) keep their digits
TINY = mp.mpf("1e-300")
# Tail probabilities at which variates are placed, in each tail.
TAIL_PROBS = [1e-300, 1e-200, 1e-100, 1e-50, 1e-20, 1e-10, 1e-5, 1e-3, 0.05, 0.3, 0.5]
# Probabilities at which quantiles are checked (exact doubles).
QUANTILE_PROBS = [1e-300, 1e-100, 1e-20, 1e-8, 1e-3, 0.05, 0.25, 0.5, 0.5 + 2.0 ** -30, 0.75,
                  0.95, 0.999, 1 - 1e-8, 1 - 2.0 ** -45]


def M(x):
    """The exact value of a double, as an mpf."""
    return mp.mpf(float(x))


def stable(f, *args):
    """f(*args) at 50 digits, confirmed at 75; None if the two differ beyond 1e-25."""
    with mp.workdps(50):
        a = f(*args)
    with mp.workdps(75):
        b = f(*args)
    if a is None or b is None:
        return None
    if b == 0:
        return a if a == 0 else None
    if abs(a - b) > abs(b) * mp.mpf("1e-25"):
        print("  unstable:", f.__name__, [float(x) for x in args], mp.nstr(a, 20), mp.nstr(b, 20))
        return None
    return b


def fmt(v):
    return mp.nstr(v, 25, min_fixed=-1, max_fixed=-1)


def place(x):
    """A variate near x that is short to write: x rounded to 12 significant digits."""
    return float("%.12g" % x)


def write(name, header, comment, rows):
    os.makedirs(OUT, exist_ok=True)
    with open(os.path.join(OUT, name + ".csv"), "w") as f:
        for line in comment:
            f.write("# " + line + "\n")
        f.write(header + "\n")
        for row in rows:
            f.write(",".join(row) + "\n")
    print("%s: %d rows" % (name, len(rows)))


def provenance(what):
    return [what, "mpmath %s at 50 digits, confirmed at 75; variates placed with SciPy quantiles"
            % mp.__version__]


def variates(dist, lo=-math.inf, hi=math.inf):
    """Variates of a SciPy distribution at the tail probabilities of TAIL_PROBS, both tails."""
    xs = set()
    for p in TAIL_PROBS:
        for where in (dist.ppf, dist.isf):
            try:
                x = where(p)
            except (OverflowError, ValueError, FloatingPointError):
                continue   # SciPy could not place this one
            if math.isfinite(x) and lo < x < hi and x != 0:
                xs.add(place(x))
    return sorted(xs)


def cdf_rows(args, lower, upper, tails=(LOWER, UPPER)):
    """Rows for each tail code; lower and upper are the two one-sided probabilities."""
    rows = []
    for tail in tails:
        if tail == LOWER:
            v = lower
        elif tail == UPPER:
            v = upper
        elif lower is None or upper is None:
            v = None
        elif tail == TWO_SIDED:
            v = 2 * min(lower, upper)
        else:
            v = 1 - 2 * min(lower, upper)
        if v is not None and v >= TINY:
            rows.append([repr(a) for a in args] + [repr(tail), fmt(v), fmt(v)])
    return rows


def solve_upper(upper, pdf, q, x0):
    """x > 0 with upper(x) = q, by Newton's method on log upper(exp(u))."""
    u = mp.log(mp.mpf(x0))
    lq = mp.log(q)
    for _ in range(200):
        x = mp.exp(u)
        t = upper(x)
        step = (mp.log(t) - lq) / (-x * pdf(x) / t)
        # Damp steps that would leave the region where the start was meaningful.
        step = max(min(step, 5), -5)
        u -= step
        if abs(step) < mp.mpf(10) ** (-mp.mp.dps + 3):
            return mp.exp(u)
    raise RuntimeError("no convergence at q=%s" % q)


def solve_lower(lower, pdf, p, x0):
    """x > 0 with lower(x) = p."""
    return solve_upper(lambda x: lower(x), lambda x: -pdf(x), p, x0)


# ---- Normal ----

def normal_tails(x):
    return mp.ncdf(x), mp.ncdf(-x)


def make_normal():
    xs = sorted(set(variates(st.norm) + [1e-12, -3e-7, 0.001, 0.75, -1.25, 8.5, -20.0, 37.5]))
    rows = []
    for x in xs:
        lo = stable(lambda x: normal_tails(M(x))[0], x)
        up = stable(lambda x: normal_tails(M(x))[1], x)
        rows += cdf_rows([x], lo, up, (LOWER, UPPER, TWO_SIDED, CENTRAL))
    write("normal_cdf", "x,tail,value,scale", provenance("standard normal probabilities"), rows)

    rows = []
    for p in QUANTILE_PROBS + [1e-15, 0.5 - 2.0 ** -40]:
        q = stable(lambda p: mp.sqrt(2) * mp.erfinv(2 * M(p) - 1) if M(p) > mp.mpf("1e-10")
                   else -solve_upper(lambda x: mp.ncdf(-x), mp.npdf, M(p), -st.norm.ppf(p)), p)
        if p == 0.5:
            continue
        rows.append([repr(p), fmt(q), fmt(abs(q))])
    write("normal_quantile", "p,value,scale", provenance("standard normal quantiles"), rows)


# ---- Student t ----

def t_tails(t, nu):
    """(P(T <= t), P(T > t)): the two-sided P(|T| >= |t|) = 1 - I_z(1/2, nu/2), z = t^2 / (nu + t^2)."""
    t2 = t * t
    central, two_sided = beta_pair(mp.mpf(0.5), nu / 2, t2 / (nu + t2), nu / (nu + t2))
    small, large = two_sided / 2, 1 - two_sided / 2
    return (small, large) if t < 0 else (large, small)


def t_pdf(t, nu):
    return mp.exp(mp.loggamma((nu + 1) / 2) - mp.loggamma(nu / 2)) / mp.sqrt(nu * mp.pi) * \
        (1 + t * t / nu) ** (-(nu + 1) / 2)


T_DF = [0.1, 0.5, 1.0, 1.5, 2.0, 3.0, 5.0, 10.0, 30.0, 100.0, 1e3, 1e5, 1e8, 1e12, 1e16, 1e20]


def make_t():
    rows = []
    for nu in T_DF:
        xs = variates(st.t(nu)) + [1e-9, -2e-5, 0.5, 37.0, -1e10, 1e150]
        for x in sorted(set(xs)):
            lo = stable(lambda x, nu: t_tails(M(x), M(nu))[0], x, nu)
            up = stable(lambda x, nu: t_tails(M(x), M(nu))[1], x, nu)
            rows += cdf_rows([x, nu], lo, up, (LOWER, UPPER, TWO_SIDED, CENTRAL))
    write("t_cdf", "t,df,tail,value,scale", provenance("Student t probabilities"), rows)

    rows = []
    for nu in T_DF:
        up = lambda x: t_tails(x, M(nu))[1]
        pdf = lambda x: t_pdf(x, M(nu))
        for p in QUANTILE_PROBS:
            def upper_quantile(q):  # t > 0 with P(T > t) = q < 0.5
                x0 = st.t(nu).isf(float(q))
                if not (math.isfinite(x0) and x0 > 0):
                    return None
                return solve_upper(up, pdf, q, x0)
            cases = [(LOWER, lambda p: -upper_quantile(M(p)) if p < 0.5 else upper_quantile(1 - M(p))),
                     (UPPER, lambda p: upper_quantile(M(p)) if p < 0.5 else -upper_quantile(1 - M(p))),
                     (TWO_SIDED, lambda p: upper_quantile(M(p) / 2)),
                     (CENTRAL, lambda p: upper_quantile((1 - M(p)) / 2))]
            for tail, f in cases:
                if p == 0.5 and tail in (LOWER, UPPER):
                    continue
                try:
                    q = stable(f, p)
                except (RuntimeError, TypeError, ValueError):
                    q = None
                if q is None or q == 0 or not mp.isfinite(q) or abs(q) > 1e300:
                    continue
                rows.append([repr(p), repr(nu), repr(tail), fmt(q), fmt(abs(q))])
    write("t_quantile", "p,df,tail,value,scale", provenance("Student t quantiles"), rows)


# ---- Incomplete gamma and beta functions, both tails directly ----
# mpmath's own gammainc and betainc stall or fail for shapes beyond about 1e5 below the mean, so
# there the tails are summed here: the gamma series below the mean and the Legendre continued
# fraction above it (mpmath's upper function beyond 3 standard deviations below the mean for
# shapes of 1e4 and more, where it is fast and the continued fraction slow); the beta continued
# fraction (Numerical Recipes, betacf) on the side of the mean where it converges. The side not
# summed is one minus the other, which is at least about one half there.

def _eps():
    return mp.mpf(10) ** (-mp.mp.dps - 5)


def gamma_pq(a, z):
    """(P(a, z), Q(a, z)), the regularized incomplete gamma functions."""
    if z <= 0:
        return mp.mpf(0), mp.mpf(1)
    if a >= 10000 and z >= a - 3 * mp.sqrt(a):
        q = mp.gammainc(a, z, mp.inf, regularized=True)
        return 1 - q, q
    log_front = a * mp.log(z) - z - mp.loggamma(a)
    eps, tiny = _eps(), mp.mpf(10) ** (-mp.mp.dps * 4)
    if z < a + 1:
        s = term = mp.mpf(1)
        n = 0
        while True:
            n += 1
            term *= z / (a + n)
            s += term
            if term < eps * s:
                break
        p = mp.exp(log_front) / a * s
        return p, 1 - p
    b = z + 1 - a
    c, d = 1 / tiny, 1 / b
    h = d
    i = 0
    while True:
        i += 1
        an = -i * (i - a)
        b += 2
        d = an * d + b
        d = tiny if abs(d) < tiny else d
        c = b + an / c
        c = tiny if abs(c) < tiny else c
        d = 1 / d
        delta = d * c
        h *= delta
        if abs(delta - 1) < eps:
            break
    q = mp.exp(log_front) * h
    return 1 - q, q


def _betacf(a, b, x):
    eps, tiny = _eps(), mp.mpf(10) ** (-mp.mp.dps * 4)
    qab, qap, qam = a + b, a + 1, a - 1
    c, d = mp.mpf(1), 1 - qab * x / qap
    d = 1 / (tiny if abs(d) < tiny else d)
    h = d
    m = 0
    while True:
        m += 1
        m2 = 2 * m
        for aa in (m * (b - m) * x / ((qam + m2) * (a + m2)),
                   -(a + m) * (qab + m) * x / ((a + m2) * (qap + m2))):
            d = 1 + aa * d
            d = 1 / (tiny if abs(d) < tiny else d)
            c = 1 + aa / c
            c = tiny if abs(c) < tiny else c
            delta = d * c
            h *= delta
        if abs(delta - 1) < eps:
            return h


def beta_pair(a, b, x, xc=None):
    """(I_x(a, b), 1 - I_x(a, b)); xc = 1 - x when x is close to 1 and 1 - x would round."""
    xc = 1 - x if xc is None else xc
    if x <= 0:
        return mp.mpf(0), mp.mpf(1)
    if xc <= 0:
        return mp.mpf(1), mp.mpf(0)
    # ln x and ln(1 - x) each from the smaller of x and 1 - x.
    log_x = mp.log(x) if x < 0.5 else mp.log1p(-xc)
    log_xc = mp.log(xc) if xc < 0.5 else mp.log1p(-x)
    log_front = a * log_x + b * log_xc - mp.log(mp.beta(a, b))
    if x < (a + 1) / (a + b + 2):
        i = mp.exp(log_front) * _betacf(a, b, x) / a
        return i, 1 - i
    j = mp.exp(log_front) * _betacf(b, a, xc) / b
    return 1 - j, j


# ---- Gamma and chi-square ----

def gamma_tails(x, a, b):
    return gamma_pq(a, x / b)


def gamma_pdf(x, a, b):
    z = x / b
    return mp.exp((a - 1) * mp.log(z) - z - mp.loggamma(a)) / b


CHI_DF = [0.01, 0.5, 1.0, 2.0, 3.0, 7.5, 30.0, 100.0, 1e4, 1e6, 1e8]
GAMMA_SHAPES = [(0.001, 1.0), (0.25, 3.0), (1.0, 0.5), (2.5, 1e-3), (12.0, 7.0), (150.0, 1.0),
                (1e5, 2.0), (1e7, 1e-7)]


def continuous_quantile_rows(args, dist, lower, upper, pdf):
    """Lower-tail quantiles of a distribution on x > 0, at QUANTILE_PROBS."""
    rows = []
    for p in QUANTILE_PROBS:
        def q(p):
            x0 = dist.ppf(p) if p <= 0.5 else dist.isf(1 - p)
            if not (math.isfinite(x0) and x0 > 0):
                return None
            return solve_lower(lower, pdf, M(p), x0) if p <= 0.5 else \
                solve_upper(upper, pdf, 1 - M(p), x0)
        try:
            v = stable(q, p)
        except (RuntimeError, ValueError, ZeroDivisionError):
            v = None
        if v is None or not (mp.mpf("2.3e-308") < v < mp.mpf("1e300")):
            continue
        rows.append([repr(p)] + [repr(a) for a in args] + [fmt(v), fmt(v)])
    return rows


def make_chi2():
    rows, qrows = [], []
    for nu in CHI_DF:
        for x in variates(st.chi2(nu), 0):
            lo = stable(lambda x, nu: gamma_tails(M(x), M(nu) / 2, 2)[0], x, nu)
            up = stable(lambda x, nu: gamma_tails(M(x), M(nu) / 2, 2)[1], x, nu)
            rows += cdf_rows([x, nu], lo, up)
        qrows += continuous_quantile_rows(
            [nu], st.chi2(nu), lambda x: gamma_tails(x, M(nu) / 2, 2)[0],
            lambda x: gamma_tails(x, M(nu) / 2, 2)[1], lambda x: gamma_pdf(x, M(nu) / 2, 2))
    write("chi2_cdf", "x,df,tail,value,scale", provenance("chi-square probabilities"), rows)
    write("chi2_quantile", "p,df,value,scale", provenance("chi-square lower-tail quantiles"), qrows)


def make_gamma():
    rows, qrows = [], []
    for a, b in GAMMA_SHAPES:
        for x in variates(st.gamma(a, scale=b), 0):
            lo = stable(lambda x, a, b: gamma_tails(M(x), M(a), M(b))[0], x, a, b)
            up = stable(lambda x, a, b: gamma_tails(M(x), M(a), M(b))[1], x, a, b)
            rows += cdf_rows([x, a, b], lo, up)
        qrows += continuous_quantile_rows(
            [a, b], st.gamma(a, scale=b), lambda x: gamma_tails(x, M(a), M(b))[0],
            lambda x: gamma_tails(x, M(a), M(b))[1], lambda x: gamma_pdf(x, M(a), M(b)))
    write("gamma_cdf", "x,a,b,tail,value,scale", provenance("gamma probabilities (shape a, scale b)"), rows)
    write("gamma_quantile", "p,a,b,value,scale", provenance("gamma lower-tail quantiles"), qrows)

    rows = []
    for a, b in GAMMA_SHAPES + [(1.0, 1.0), (0.5, 2.0), (171.5, 1.0), (200.0, 3.0)]:
        for x in variates(st.gamma(a, scale=b), 0)[::2]:
            v = stable(lambda x, a, b: gamma_pdf(M(x), M(a), M(b)), x, a, b)
            if v is not None and v > TINY:
                rows.append([repr(x), repr(a), repr(b), fmt(v), fmt(v)])
    write("gamma_pdf", "x,a,b,value,scale", provenance("gamma densities"), rows)


# ---- Beta and F ----

def beta_tails(x, a, b):
    return beta_pair(a, b, x)


def beta_pdf(x, a, b):
    return mp.exp((a - 1) * mp.log(x) + (b - 1) * mp.log(1 - x) - mp.log(mp.beta(a, b)))


BETA_SHAPES = [(0.01, 0.01), (0.5, 0.5), (1.0, 3.0), (2.5, 0.05), (7.0, 7.0), (60.0, 2.0),
               (1e4, 3e4), (1e6, 5.0)]


def make_beta():
    rows, qrows, drows = [], [], []
    for a, b in BETA_SHAPES:
        for x in variates(st.beta(a, b), 0, 1):
            lo = stable(lambda x, a, b: beta_tails(M(x), M(a), M(b))[0], x, a, b)
            up = stable(lambda x, a, b: beta_tails(M(x), M(a), M(b))[1], x, a, b)
            rows += cdf_rows([x, a, b], lo, up)
            d = stable(lambda x, a, b: beta_pdf(M(x), M(a), M(b)), x, a, b)
            if d is not None and d > TINY:
                drows.append([repr(x), repr(a), repr(b), fmt(d), fmt(d)])
        qrows += continuous_quantile_rows(
            [a, b], st.beta(a, b), lambda x: beta_tails(x, M(a), M(b))[0],
            lambda x: beta_tails(x, M(a), M(b))[1], lambda x: beta_pdf(x, M(a), M(b)))
    write("beta_cdf", "x,a,b,tail,value,scale", provenance("beta probabilities"), rows)
    write("beta_quantile", "p,a,b,value,scale", provenance("beta lower-tail quantiles"), qrows)
    write("beta_pdf", "x,a,b,value,scale", provenance("beta densities"), drows)


def f_tails(x, d1, d2):
    den = d1 * x + d2
    return beta_pair(d1 / 2, d2 / 2, d1 * x / den, d2 / den)


def f_pdf(x, d1, d2):
    den = d1 * x + d2
    y, yc = d1 * x / den, d2 / den
    # dI_y/dx = beta density at y times dy/dx = d1 d2 / den^2
    a, b = d1 / 2, d2 / 2
    return mp.exp((a - 1) * mp.log(y) + (b - 1) * mp.log(yc) - mp.log(mp.beta(a, b))) * d1 * d2 / (den * den)


F_DF = [(1.0, 1.0), (0.5, 3.0), (2.0, 5.0), (5.0, 2.0), (5.0, 10.0), (10.0, 30.0), (100.0, 7.0),
        (7.5, 1e3), (1e4, 1e4), (1e6, 10.0), (3.0, 1e8), (1e9, 2.0)]


def make_f():
    rows, qrows = [], []
    for d1, d2 in F_DF:
        for x in variates(st.f(d1, d2), 0):
            lo = stable(lambda x, d1, d2: f_tails(M(x), M(d1), M(d2))[0], x, d1, d2)
            up = stable(lambda x, d1, d2: f_tails(M(x), M(d1), M(d2))[1], x, d1, d2)
            rows += cdf_rows([x, d1, d2], lo, up)
        qrows += continuous_quantile_rows(
            [d1, d2], st.f(d1, d2), lambda x: f_tails(x, M(d1), M(d2))[0],
            lambda x: f_tails(x, M(d1), M(d2))[1], lambda x: f_pdf(x, M(d1), M(d2)))
    write("f_cdf", "x,df1,df2,tail,value,scale", provenance("F probabilities"), rows)
    write("f_quantile", "p,df1,df2,value,scale", provenance("F lower-tail quantiles"), qrows)


# ---- Noncentral distributions: Poisson mixtures summed outward from the largest weight ----

def poisson_mixture(mu, term):
    """sum_j exp(-mu) mu^j / j! * term(j), summed out from j = mu until the terms are
    negligible on both sides."""
    j0 = int(mu)
    total = mp.mpf(0)
    w0 = mp.exp(-mu + j0 * mp.log(mu) - mp.loggamma(j0 + 1)) if mu > 0 else mp.mpf(1)
    eps = mp.mpf(10) ** (-mp.mp.dps - 5)
    # upward
    w, j = w0, j0
    while True:
        t = w * term(j)
        total += t
        if j > mu + 10 and abs(t) <= eps * abs(total):
            break
        j += 1
        w = w * mu / j
    # downward
    w, j = w0, j0
    while j > 0:
        w = w * j / mu
        j -= 1
        t = w * term(j)
        total += t
        if j < mu - 10 and abs(t) <= eps * abs(total):
            break
    return total


def ncchi2_tails(x, k, lam):
    mu = lam / 2
    lo = poisson_mixture(mu, lambda j: gamma_pq(k / 2 + j, x / 2)[0])
    up = poisson_mixture(mu, lambda j: gamma_pq(k / 2 + j, x / 2)[1])
    return lo, up


def ncbeta_tails(x, a, b, lam, xc=None):
    mu = lam / 2
    xc = 1 - x if xc is None else xc
    lo = poisson_mixture(mu, lambda j: beta_pair(a + j, b, x, xc)[0])
    up = poisson_mixture(mu, lambda j: beta_pair(a + j, b, x, xc)[1])
    return lo, up


def ncf_tails(x, d1, d2, lam):
    den = d1 * x + d2
    return ncbeta_tails(d1 * x / den, d1 / 2, d2 / 2, lam, d2 / den)


def nct_tails(t, nu, delta):
    """(P(T <= t), P(T > t)) by the series of Guenther / Lenth (AS 243) for t >= 0, and the
    reflection T(nu, delta) -> -T(nu, -delta) for t < 0."""
    if t < 0:
        lo, up = nct_tails(-t, nu, -delta)
        return up, lo
    y = t * t / (t * t + nu)
    yc = nu / (t * t + nu)
    mu = delta * delta / 2
    # P(T <= t) = Phi(-delta) + 1/2 sum_j [p_j I_y(j + 1/2, nu/2) + q_j I_y(j + 1, nu/2)]
    # P(T > t) = 1/2 sum_j [p_j I_yc(nu/2, j + 1/2) + q_j I_yc(nu/2, j + 1)]
    # with p_j Poisson(mu) weights and q_j = delta exp(-mu) mu^j / (sqrt 2 Gamma(j + 3/2)); the
    # q terms alternate in sign for delta < 0, hence the 60-digit confirmation.
    ratio = lambda j: mp.exp(mp.loggamma(j + 1) - mp.loggamma(j + mp.mpf(1.5))) * delta / mp.sqrt(2)
    half = mp.mpf(0.5)
    lo = mp.ncdf(-delta) + (poisson_mixture(mu, lambda j: beta_pair(j + half, nu / 2, y, yc)[0])
                            + poisson_mixture(mu, lambda j: ratio(j) * beta_pair(j + 1, nu / 2, y, yc)[0])) / 2
    up = (poisson_mixture(mu, lambda j: beta_pair(j + half, nu / 2, y, yc)[1])
          + poisson_mixture(mu, lambda j: ratio(j) * beta_pair(j + 1, nu / 2, y, yc)[1])) / 2
    return lo, up


def make_noncentral():
    rows = []
    for k, lam in [(1.0, 0.5), (2.0, 10.0), (5.5, 1.0), (10.0, 100.0), (100.0, 3.0), (3.0, 1000.0)]:
        for x in variates(st.ncx2(k, lam), 0):
            lo = stable(lambda x, k, lam: ncchi2_tails(M(x), M(k), M(lam))[0], x, k, lam)
            up = stable(lambda x, k, lam: ncchi2_tails(M(x), M(k), M(lam))[1], x, k, lam)
            rows += cdf_rows([x, k, lam], lo, up)
    write("ncchi2_cdf", "x,df,lambda,tail,value,scale", provenance("noncentral chi-square probabilities"), rows)

    rows = []
    for a, b, lam in [(0.5, 0.5, 1.0), (2.0, 3.0, 10.0), (5.0, 1.5, 50.0), (30.0, 40.0, 5.0), (1.0, 10.0, 400.0)]:
        for x in variates(st.ncf(2 * a, 2 * b, lam), 0):
            y = place(2 * a * x / (2 * a * x + 2 * b))
            if not 0 < y < 1:
                continue
            lo = stable(lambda y, a, b, lam: ncbeta_tails(M(y), M(a), M(b), M(lam))[0], y, a, b, lam)
            up = stable(lambda y, a, b, lam: ncbeta_tails(M(y), M(a), M(b), M(lam))[1], y, a, b, lam)
            rows += cdf_rows([y, a, b, lam], lo, up)
    write("ncbeta_cdf", "x,a,b,lambda,tail,value,scale", provenance("noncentral beta probabilities"), rows)

    rows = []
    for d1, d2, lam in [(1.0, 1.0, 2.0), (3.0, 12.0, 8.0), (10.0, 5.0, 0.5), (4.0, 100.0, 60.0), (25.0, 25.0, 300.0)]:
        for x in variates(st.ncf(d1, d2, lam), 0):
            lo = stable(lambda x, d1, d2, lam: ncf_tails(M(x), M(d1), M(d2), M(lam))[0], x, d1, d2, lam)
            up = stable(lambda x, d1, d2, lam: ncf_tails(M(x), M(d1), M(d2), M(lam))[1], x, d1, d2, lam)
            rows += cdf_rows([x, d1, d2, lam], lo, up)
    write("ncf_cdf", "x,df1,df2,lambda,tail,value,scale", provenance("noncentral F probabilities"), rows)

    rows = []
    for nu, delta in [(1.0, 0.5), (3.0, -2.0), (10.0, 1.0), (10.0, 6.0), (25.0, -4.0), (200.0, 12.0), (4.5, 30.0)]:
        xs = [place(x) for x in variates(st.nct(nu, delta))] + [0.0]
        for x in sorted(set(xs)):
            lo = stable(lambda x, nu, d: nct_tails(M(x), M(nu), M(d))[0], x, nu, delta)
            up = stable(lambda x, nu, d: nct_tails(M(x), M(nu), M(d))[1], x, nu, delta)
            rows += cdf_rows([x, nu, delta], lo, up)
    write("nct_cdf", "t,df,delta,tail,value,scale", provenance("noncentral t probabilities"), rows)


# ---- Discrete distributions: lower P(X <= k), upper P(X > k), point P(X = k) ----

POINT = 3   # tail code of the point probability in these tables


def discrete_rows(args, lower, upper, point):
    rows = []
    for tail, v in ((LOWER, lower), (UPPER, upper), (POINT, point)):
        if v is not None and v >= TINY:
            rows.append([str(a) if isinstance(a, int) else repr(a) for a in args] +
                        [str(tail), fmt(v), fmt(v)])
    return rows


def binomial_tails(k, n, p):
    p, q = M(p), 1 - M(p)
    point = mp.binomial(n, k) * p ** k * q ** (n - k) if 0 <= k <= n else mp.mpf(0)
    if k < 0:
        return mp.mpf(0), mp.mpf(1), point
    if k >= n:
        return mp.mpf(1), mp.mpf(0), point
    # P(X > k) = I_p(k + 1, n - k)
    upper, lower = beta_pair(mp.mpf(k + 1), mp.mpf(n - k), p, q)
    return lower, upper, point


def poisson_tails(k, lam):
    lam = M(lam)
    point = mp.exp(k * mp.log(lam) - lam - mp.loggamma(k + 1))
    upper, lower = gamma_pq(mp.mpf(k + 1), lam)   # P(X > k) = P(k + 1, lambda)
    return lower, upper, point


def hypergeometric_tails(k, m, n, l):
    """k specified items in a sample of l drawn from n items of which m are specified."""
    lo_k, hi_k = max(0, l + m - n), min(l, m)
    total = mp.binomial(n, l)
    pmf = lambda j: mp.binomial(m, j) * mp.binomial(n - m, l - j) / total
    point = pmf(k) if lo_k <= k <= hi_k else mp.mpf(0)
    lower = mp.fsum(pmf(j) for j in range(lo_k, min(k, hi_k) + 1))
    upper = mp.fsum(pmf(j) for j in range(max(k + 1, lo_k), hi_k + 1))
    return lower, upper, point


def make_discrete():
    rows = []
    for n, p in [(1, 0.5), (10, 0.3), (60, 0.01), (1000, 0.5), (5000, 1e-4), (100000, 0.2), (2000000, 0.999)]:
        mean, sd = n * p, math.sqrt(n * p * (1 - p))
        ks = {0, n, n - 1, int(mean), int(mean + 3 * sd), max(0, int(mean - 3 * sd)),
              int(mean + 12 * sd), max(0, int(mean - 12 * sd)), min(n, int(mean + 60 * sd) + 1)}
        for k in sorted(x for x in ks if 0 <= x <= n):
            v = [stable(lambda k, n, p, i=i: binomial_tails(int(k), int(n), p)[i], k, n, p) for i in range(3)]
            rows += discrete_rows([k, n, p], *v)
    write("binomial", "k,n,p,tail,value,scale", provenance("binomial probabilities"), rows)

    rows = []
    for lam in [1e-3, 0.5, 3.0, 99.5, 100.0, 1234.5, 1e6]:
        sd = math.sqrt(lam)
        ks = {0, 1, 99, 100, 101, int(lam), int(lam + 4 * sd), max(0, int(lam - 4 * sd)),
              int(lam + 30 * sd) + 5, max(0, int(lam - 25 * sd))}
        for k in sorted(ks):
            v = [stable(lambda k, lam, i=i: poisson_tails(int(k), lam)[i], k, lam) for i in range(3)]
            rows += discrete_rows([k, lam], *v)
    write("poisson", "k,lambda,tail,value,scale", provenance("Poisson probabilities"), rows)

    rows = []
    for m, n, l in [(5, 10, 4), (50, 100, 30), (7, 1000, 200), (400, 2000, 1500), (30000, 100000, 2000)]:
        lo_k, hi_k = max(0, l + m - n), min(l, m)
        mean = l * m / n
        ks = {lo_k, hi_k, int(mean), (lo_k + int(mean)) // 2, (hi_k + int(mean)) // 2, hi_k - 1}
        for k in sorted(x for x in ks if lo_k <= x <= hi_k):
            v = [stable(lambda k, m, n, l, i=i: hypergeometric_tails(int(k), int(m), int(n), int(l))[i], k, m, n, l)
                 for i in range(3)]
            rows += discrete_rows([k, m, n, l], *v)
    write("hypergeometric", "k,m,n,l,tail,value,scale", provenance("hypergeometric probabilities"), rows)


# ---- Densities with a closed form, and the Weibull functions ----

def make_simple():
    rows = []
    cases = [("1.5", "0.5", "2.0"), ("-40.0", "0.0", "1.0"), ("3e-5", "0.0", "1e-5"), ("2.0", "-1.0", "3.0")]
    for x, mu, s in cases:
        x, mu, s = float(x), float(mu), float(s)
        v = stable(lambda x, mu, s: mp.npdf(M(x), M(mu), M(s)), x, mu, s)
        rows.append(["1", repr(x), repr(mu), repr(s), fmt(v), fmt(v)])
    for x, mu, s in [(2.5, 0.3, 0.7), (1e-3, -2.0, 1.5), (40.0, 1.0, 0.25)]:
        v = stable(lambda x, mu, s: mp.npdf(mp.log(M(x)), M(mu), M(s)) / M(x), x, mu, s)
        rows.append(["2", repr(x), repr(mu), repr(s), fmt(v), fmt(v)])
    for x, mu in [(0.0, 2.0), (3.5, 0.25), (700.0, 1.0)]:
        v = stable(lambda x, mu: M(mu) * mp.exp(-M(mu) * M(x)), x, mu)
        rows.append(["3", repr(x), repr(mu), "0.0", fmt(v), fmt(v)])
    for x, a, b in [(0.0, 0.0, 1.0), (1e8, 2.0, 0.5), (-3.25, 1.0, 2.0)]:
        v = stable(lambda x, a, b: (M(b) / mp.pi) / ((M(x) - M(a)) ** 2 + M(b) ** 2), x, a, b)
        rows.append(["4", repr(x), repr(a), repr(b), fmt(v), fmt(v)])
    for x, mu, b in [(0.25, 0.0, 1.0), (-30.0, 2.0, 0.5), (5.0, 5.0, 3.0)]:
        v = stable(lambda x, mu, b: mp.exp(-abs(M(x) - M(mu)) / M(b)) / (2 * M(b)), x, mu, b)
        rows.append(["5", repr(x), repr(mu), repr(b), fmt(v), fmt(v)])
    wbl = lambda x, a, b: (M(b) / M(a)) * (M(x) / M(a)) ** (M(b) - 1) * mp.exp(-(M(x) / M(a)) ** M(b))
    for x, a, b in [(1.5, 2.0, 0.5), (0.3, 1.0, 1.0), (4.0, 1.5, 3.0), (1e-6, 2.0, 0.7)]:
        v = stable(wbl, x, a, b)
        rows.append(["6", repr(x), repr(a), repr(b), fmt(v), fmt(v)])
    wcdf = lambda x, a, b: -mp.expm1(-(M(x) / M(a)) ** M(b))
    for x, a, b in [(1.5, 2.0, 0.5), (1e-9, 1.0, 1.0), (4.0, 1.5, 3.0), (0.5, 3.0, 8.0)]:
        v = stable(wcdf, x, a, b)
        rows.append(["7", repr(x), repr(a), repr(b), fmt(v), fmt(v)])
    winv = lambda p, a, b: M(a) * (-mp.log1p(-M(p))) ** (1 / M(b))
    for p, a, b in [(0.5, 2.0, 0.5), (1e-12, 1.0, 1.0), (0.999, 1.5, 3.0)]:
        v = stable(winv, p, a, b)
        rows.append(["8", repr(p), repr(a), repr(b), fmt(v), fmt(v)])
    write("closed_form", "function,x,p1,p2,value,scale",
          provenance("closed-form densities and Weibull functions; function 1 normal, 2 lognormal,"
                     " 3 exponential (p1 the rate), 4 Cauchy, 5 Laplace, 6 Weibull density,"
                     " 7 Weibull probability, 8 Weibull quantile"), rows)

    rows = []
    for y in [-1 + 2.0 ** -50, -0.999, -0.5, -1e-10, 1e-300, 3e-8, 0.25, 0.9, 0.999999, 1 - 2.0 ** -52]:
        v = stable(lambda y: mp.erfinv(M(y)), y)
        rows.append([repr(y), fmt(v), fmt(abs(v))])
    write("inverse_erf", "y,value,scale", provenance("inverse error function"), rows)


MAKERS = {"normal": make_normal, "t": make_t, "chi2": make_chi2, "gamma": make_gamma,
          "beta": make_beta, "f": make_f, "noncentral": make_noncentral,
          "discrete": make_discrete, "simple": make_simple}

if __name__ == "__main__":
    for name in sys.argv[1:] or MAKERS:
        MAKERS[name]()
