#!/usr/bin/python3
"""Reference tables for the tests on means and variances and their confidence limits.

Run with Debian's interpreter: /usr/bin/python3 tests/tools/make_tests_reference.py
Writes, under tests/data/stats/:

  test_samples.csv    the samples, one value a row in order: set, x, 1 (the reference format of
                      tests/scalar/reference.h with a unit scale)
  tests_reference.csv kind, set1, set2, tail, parameter, field, value, scale: one result of one
                      test or interval (kinds and fields below); the error of a computed value is
                      |computed - value| / scale

Every value is computed by mpmath at 50 digits from the exact binary value of each sample
point, straight from the definitions: sample means and variances (denominator n - 1), the
Student probability as the regularized incomplete beta function, the chi-square probabilities as
the regularized incomplete gamma function and the F probabilities as the incomplete beta
function, each tail directly; quantiles by Newton's method on those functions from SciPy's
values. Before writing anything the script checks SciPy against them: ttest_1samp, ttest_ind
(with and without equal variances; for a tested difference of 0, the only one it takes),
ttest_rel with each alternative, and chi2 / f sf and cdf, within 1e-12 relative (t statistics
and probabilities); scipy.stats.t.ppf, chi2.ppf and f.ppf within 1e-8 (SciPy 1.10's quantiles
are no closer). SciPy rounds the means to doubles before it subtracts them, so a t whose means
are 1e3 times their difference or more (the sets of mean 1e6) is checked against mpmath alone. Samples come from a seeded NumPy generator,
so a rerun writes the same files.
"""
import os

import mpmath as mp
import numpy as np
import scipy.stats as st

HERE = os.path.dirname(os.path.abspath(__file__))
OUT = os.path.join(HERE, "..", "data", "stats")
mp.mp.dps = 50

# Kinds of rows. Fields: tests 0 statistic, 1 probability, 2 degrees of freedom (Welch only);
# intervals 0 lower limit, 1 upper limit.
ONE, EQUAL, WELCH, PAIR, CHI, CHI_POOLED, F = 0, 1, 2, 3, 4, 5, 6
CI_MEAN, CI_VAR, CI_EQUAL, CI_WELCH, CI_PAIR, CI_RATIO = 7, 8, 9, 10, 11, 12
TAILS = [0, 1, 2]  # two-sided, upper, lower
ALTERNATIVE = {0: "two-sided", 1: "greater", 2: "less"}
LEVELS = [0.5, 0.9, 0.95, 0.999]
SCIPY_TOL = 1e-12
SCIPY_QUANTILE_TOL = 1e-8


def samples():
    rng = np.random.default_rng(20240612)
    r = lambda a, d: [float(v) for v in np.round(a, d)]
    sets = [
        [0, 0.1, 0.4, 0.9, 1.6, 2.5, 3.6, 4.9, 6.4, 8.1],   # the worked example
        r(rng.normal(5, 1, 2), 4),
        r(rng.normal(4, 1.5, 3), 4),
        r(rng.normal(10, 2, 8), 3),
        r(rng.normal(11.5, 2.5, 8), 3),
        r(rng.normal(0.3, 1, 30), 5),
    ]
    sets.append(r(np.array(sets[5]) + rng.normal(0.25, 0.4, 30), 5))   # paired with set 5
    sets.append([float(v) for v in rng.normal(100, 15, 200)])           # full doubles
    sets.append([float(v) for v in 1e-6 * rng.lognormal(0, 0.5, 57)])   # small scale
    sets.append(r(1e6 + rng.normal(0, 1, 12), 4))                        # mean 1e6 times the SD
    sets.append(r(1e6 + rng.normal(0.8, 3, 12), 4))
    sets.append(r(rng.normal(0, 1e3, 5), 2))
    return sets


SAMPLES = samples()
TWO_SAMPLE_PAIRS = [(1, 2), (3, 4), (5, 6), (7, 5), (9, 10), (11, 3), (2, 11), (8, 7)]
PAIRED = [(3, 4), (5, 6), (9, 10), (6, 5)]


def mpx(k):
    return [mp.mpf(v) for v in SAMPLES[k]]


def moments(x):
    n = len(x)
    m = mp.fsum(x) / n
    v = mp.fsum((xi - m) ** 2 for xi in x) / (n - 1)
    return n, m, v


def t_two_sided(t, df):
    return mp.betainc(df / 2, mp.mpf(1) / 2, 0, df / (df + t * t), regularized=True)


def t_tail(t, df, tail):
    p2 = t_two_sided(t, df)
    if tail == 0:
        return p2
    positive = t > 0
    return p2 / 2 if (tail == 1) == positive else 1 - p2 / 2


def chi_tails(x, df):
    lower = mp.gammainc(df / 2, 0, x / 2, regularized=True)
    upper = mp.gammainc(df / 2, x / 2, mp.inf, regularized=True)
    return lower, upper


def f_tails(f, d1, d2):
    z = d1 * f / (d1 * f + d2)
    return (mp.betainc(d1 / 2, d2 / 2, 0, z, regularized=True),
            mp.betainc(d1 / 2, d2 / 2, z, 1, regularized=True))


def pick(tail, lower, upper):
    return [2 * min(lower, upper), upper, lower][tail]


def newton(g, start):
    """The root of g near `start`, by the secant method at the working precision."""
    root = mp.findroot(g, mp.mpf(start), tol=mp.mpf(10) ** (-40))
    assert abs(g(root)) < mp.mpf(10) ** (-35), ("no root", start)
    return root


def t_quantile_central(c, df):
    """q >= 0 with P(|T| < q) = c."""
    q = newton(lambda q: t_two_sided(q, df) - (1 - mp.mpf(c)), st.t.ppf((1 + c) / 2, float(df)))
    check_quantile(q, st.t.ppf((1 + c) / 2, float(df)))
    return q


def chi_quantile(p, df, upper):
    """x with P(X > x) = p (upper) or P(X <= x) = p."""
    start = (st.chi2.isf if upper else st.chi2.ppf)(float(p), float(df))
    q = newton(lambda x: chi_tails(x, df)[1 if upper else 0] - p, start)
    check_quantile(q, start)
    return q


def f_quantile(p, d1, d2, upper):
    start = (st.f.isf if upper else st.f.ppf)(float(p), float(d1), float(d2))
    q = newton(lambda f: f_tails(f, d1, d2)[1 if upper else 0] - p, start)
    check_quantile(q, start)
    return q


def conditioned(magnitude, difference):
    """Whether SciPy's statistic can be held to SCIPY_TOL: it rounds the means to doubles first,
    which costs it 1e-16 magnitude / |difference| of a t (6e-10 on the sets of mean 1e6)."""
    return magnitude < 1e3 * abs(difference)


def check(value, scipy_value, what, tol=SCIPY_TOL):
    err = abs(mp.mpf(float(scipy_value)) - value) / max(abs(value), mp.mpf(10) ** -300)
    assert err <= tol, ("SciPy disagrees", what, float(value), float(scipy_value), float(err))


def check_quantile(q, scipy_value):
    check(q, scipy_value, "quantile", SCIPY_QUANTILE_TOL)


ROWS = []


def add(kind, s1, s2, tail, param, field, value, scale=None):
    value = mp.mpf(value)
    scale = abs(value) if scale is None else mp.mpf(scale)
    if scale == 0:
        scale = mp.mpf(1)
    ROWS.append((kind, s1, s2, tail, param, field, float(value), float(scale)))


def round6(v):
    return float("%.6g" % float(v))


def one_sample():
    for k, data in enumerate(SAMPLES):
        x = mpx(k)
        n, m, v = moments(x)
        se = mp.sqrt(v / n)
        for shift in [-1.3, 3.1] + ([14.0] if n >= 30 else []):
            mu = round6(m + shift * se)
            t = (m - mu) / se
            for tail in TAILS:
                p = t_tail(t, n - 1, tail)
                res = st.ttest_1samp(data, mu, alternative=ALTERNATIVE[tail])
                if conditioned(abs(m) + abs(mu), m - mu):
                    check(t, res.statistic, ("one", k))
                    check(p, res.pvalue, ("one p", k, tail))
                add(ONE, k, -1, tail, mu, 0, t)
                add(ONE, k, -1, tail, mu, 1, p)


def two_sample():
    for a, b in TWO_SAMPLE_PAIRS:
        x, y = mpx(a), mpx(b)
        n1, m1, v1 = moments(x)
        n2, m2, v2 = moments(y)
        df_eq = n1 + n2 - 2
        se_eq = mp.sqrt(((n1 - 1) * v1 + (n2 - 1) * v2) / df_eq * (mp.mpf(1) / n1 + mp.mpf(1) / n2))
        g1, g2 = v1 / n1, v2 / n2
        se_w = mp.sqrt(g1 + g2)
        df_w = (g1 + g2) ** 2 / (g1 ** 2 / (n1 - 1) + g2 ** 2 / (n2 - 1))
        for delta in [0.0, round6((m1 - m2) / 2 + se_eq)]:
            t_eq, t_w = (m1 - m2 - delta) / se_eq, (m1 - m2 - delta) / se_w
            for tail in TAILS:
                p_eq, p_w = t_tail(t_eq, df_eq, tail), t_tail(t_w, df_w, tail)
                if delta == 0 and conditioned(abs(m1) + abs(m2), m1 - m2):
                    alt = ALTERNATIVE[tail]
                    r_eq = st.ttest_ind(SAMPLES[a], SAMPLES[b], equal_var=True, alternative=alt)
                    r_w = st.ttest_ind(SAMPLES[a], SAMPLES[b], equal_var=False, alternative=alt)
                    check(t_eq, r_eq.statistic, ("equal", a, b))
                    check(p_eq, r_eq.pvalue, ("equal p", a, b, tail))
                    check(t_w, r_w.statistic, ("welch", a, b))
                    check(p_w, r_w.pvalue, ("welch p", a, b, tail))
                add(EQUAL, a, b, tail, delta, 0, t_eq)
                add(EQUAL, a, b, tail, delta, 1, p_eq)
                add(WELCH, a, b, tail, delta, 0, t_w)
                add(WELCH, a, b, tail, delta, 1, p_w)
                add(WELCH, a, b, tail, delta, 2, df_w)
        # Variances: the pooled chi-square test and the F test.
        ss = (n1 - 1) * v1 + (n2 - 1) * v2
        for ratio in [0.7, 1.6]:
            sigma2 = round6(ss / df_eq * ratio)
            chi = ss / sigma2
            lower, upper = chi_tails(chi, df_eq)
            check(lower, st.chi2.cdf(float(chi), df_eq), ("chi pooled lower", a, b))
            check(upper, st.chi2.sf(float(chi), df_eq), ("chi pooled upper", a, b))
            for tail in TAILS:
                add(CHI_POOLED, a, b, tail, sigma2, 0, chi)
                add(CHI_POOLED, a, b, tail, sigma2, 1, pick(tail, lower, upper))
        f = v1 / v2
        lower, upper = f_tails(f, n1 - 1, n2 - 1)
        check(lower, st.f.cdf(float(f), n1 - 1, n2 - 1), ("f lower", a, b))
        check(upper, st.f.sf(float(f), n1 - 1, n2 - 1), ("f upper", a, b))
        for tail in TAILS:
            add(F, a, b, tail, 0, 0, f)
            add(F, a, b, tail, 0, 1, pick(tail, lower, upper))
        # Intervals of the difference of means and of the ratio of variances.
        # The limits of a difference are computed from a record, which holds the means as
        # doubles: their difference is the one these limits are centred on.
        d = mp.mpf(float(m1)) - mp.mpf(float(m2))
        for c in LEVELS:
            for kind, se, df in [(CI_EQUAL, se_eq, df_eq), (CI_WELCH, se_w, df_w)]:
                half = t_quantile_central(c, df) * se
                add(kind, a, b, 0, c, 0, d - half, max(abs(d - half), half))
                add(kind, a, b, 0, c, 1, d + half, max(abs(d + half), half))
            q = (1 - mp.mpf(c)) / 2
            add(CI_RATIO, a, b, 0, c, 0, f / f_quantile(q, n1 - 1, n2 - 1, True))
            add(CI_RATIO, a, b, 0, c, 1, f / f_quantile(q, n1 - 1, n2 - 1, False))


def paired():
    for a, b in PAIRED:
        x, y = mpx(a), mpx(b)
        d = [xi - yi for xi, yi in zip(x, y)]
        n, md, vd = moments(d)
        se = mp.sqrt(vd / n)
        for delta in [0.0, round6(md + 1.7 * se)]:
            t = (md - delta) / se
            for tail in TAILS:
                p = t_tail(t, n - 1, tail)
                if delta == 0:
                    res = st.ttest_rel(SAMPLES[a], SAMPLES[b], alternative=ALTERNATIVE[tail])
                    check(t, res.statistic, ("paired", a, b))
                    check(p, res.pvalue, ("paired p", a, b, tail))
                add(PAIR, a, b, tail, delta, 0, t)
                add(PAIR, a, b, tail, delta, 1, p)
        for c in LEVELS:
            half = t_quantile_central(c, n - 1) * se
            add(CI_PAIR, a, b, 0, c, 0, md - half, max(abs(md - half), half))
            add(CI_PAIR, a, b, 0, c, 1, md + half, max(abs(md + half), half))


def one_sample_variance():
    for k in range(len(SAMPLES)):
        n, m, v = moments(mpx(k))
        for ratio in [0.6, 1.7]:
            sigma2 = round6(v * ratio)
            chi = (n - 1) * v / sigma2
            lower, upper = chi_tails(chi, n - 1)
            check(lower, st.chi2.cdf(float(chi), n - 1), ("chi lower", k))
            check(upper, st.chi2.sf(float(chi), n - 1), ("chi upper", k))
            for tail in TAILS:
                add(CHI, k, -1, tail, sigma2, 0, chi)
                add(CHI, k, -1, tail, sigma2, 1, pick(tail, lower, upper))
        for c in LEVELS:
            half = t_quantile_central(c, n - 1) * mp.sqrt(v / n)
            add(CI_MEAN, k, -1, 0, c, 0, m - half, max(abs(m - half), half))
            add(CI_MEAN, k, -1, 0, c, 1, m + half, max(abs(m + half), half))
            q = (1 - mp.mpf(c)) / 2
            s = (n - 1) * v
            add(CI_VAR, k, -1, 0, c, 0, s / chi_quantile(q, n - 1, True))
            add(CI_VAR, k, -1, 0, c, 1, s / chi_quantile(q, n - 1, False))


def main():
    one_sample()
    two_sample()
    paired()
    one_sample_variance()
    with open(os.path.join(OUT, "test_samples.csv"), "w") as out:
        out.write("# Samples of the tests of means and variances; written by\n"
                  "# tests/tools/make_tests_reference.py. One value a row, in order.\n")
        out.write("set,x,scale\n")
        for k, data in enumerate(SAMPLES):
            for v in data:
                out.write("%d,%r,1\n" % (k, v))
    with open(os.path.join(OUT, "tests_reference.csv"), "w") as out:
        out.write("# Tests and confidence limits of tests/data/stats/test_samples.csv by mpmath at 50\n"
                  "# digits; written by tests/tools/make_tests_reference.py (SciPy agrees within 1e-12).\n"
                  "# kind: 0 one-sample t, 1 pooled t, 2 Welch t, 3 paired t, 4 chi-square of a variance,\n"
                  "# 5 chi-square of the pooled variance, 6 F; 7..12 limits of a mean, a variance, a\n"
                  "# difference (pooled, Welch, paired), a variance ratio. tail: 0 two-sided, 1 upper,\n"
                  "# 2 lower. parameter: test value, or level. field: statistic or lower limit (0),\n"
                  "# probability or upper limit (1), Welch degrees of freedom (2). set2 -1: one sample.\n")
        out.write("kind,set1,set2,tail,parameter,field,value,scale\n")
        for row in ROWS:
            out.write("%d,%d,%d,%d,%r,%d,%r,%r\n" % row)
    print(len(ROWS), "rows")


if __name__ == "__main__":
    main()
