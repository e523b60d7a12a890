#!/usr/bin/python3
"""Reference tables for the analysis of variance and the comparison of means.

Run with Debian's interpreter: /usr/bin/python3 tests/tools/make_anova_reference.py
Writes, under tests/data/stats/ (every table in the format of tests/scalar/reference.h: the
arguments, the value, a scale (1 for the inputs); the error of a computed value is
|computed - value| / scale):

  anova_samples.csv     set, group, value, 1: unbalanced one-way designs, NANUM for a missing point
  anova_reference.csv   set, method, quantity, value, scale: the one-way tables (method 0) and the
                        tables of the transformed values (1 |x - mean|, 2 (x - mean)^2,
                        3 |x - median|); quantities below
  comparison_inputs.csv set, group, count, mse, dof, alpha, mean, 1: the summaries the
                        comparison of means is fed, rounded to doubles once
  comparison_reference.csv set, method, position, quantity, value, scale
  anova2_samples.csv    set, a, b, y, 1: two-way designs with levels 1.., NANUM for a missing y
  anova2_reference.csv  set, interaction, row, quantity, value, scale
  fit_table_reference.csv case, quantity, value, scale: the table of a fitted model about zero
  anova_nist_exact.csv  file number, quantity, value, scale: the exact sums of the NIST StRD
                        ANOVA data as the doubles nearest to their decimals hold them

Sums of squares are exact: rational arithmetic on the binary values of the data (Python's
Fraction), so are the F values that follow from them. Probabilities of F and t are regularized
incomplete beta functions by mpmath at 40 digits, critical values of t and F their roots by
Newton's method. The studentized range is SciPy's studentized_range: its sf is 1 - cdf, near
1e-12 absolute, and its quantile the root of that cdf, the reason the test asks more room of it.
Before writing, the script checks the independent implementations against these values:
scipy.stats.f_oneway and levene (center 'mean' and 'median') within 1e-12 in F and p (1e-7 on
the set whose mean is 1e7 times its spread, where SciPy's rounded means cost it); statsmodels'
anova_lm (type III, sum-to-zero coding) within 1e-9 in every sum, F and p;
pairwise_tukeyhsd (differences exactly, reject flags; its own probabilities and intervals come
from a three-digit approximation of the studentized range, so only to 2e-3), scipy.stats.tukey_hsd
p-values within 1e-9, and multipletests 'holm' and 'holm-sidak' reject flags exactly. Samples
come from a seeded NumPy generator, so a rerun writes the same files.
"""
import os
from fractions import Fraction

import mpmath as mp
import numpy as np
import pandas as pd
import scipy.stats as st
from scipy.optimize import brentq
import statsmodels.api as sm
import statsmodels.formula.api as smf
from statsmodels.sandbox.stats.multicomp import multipletests
from statsmodels.stats.multicomp import pairwise_tukeyhsd

HERE = os.path.dirname(os.path.abspath(__file__))
DATA = os.path.join(HERE, "..", "data")
OUT = os.path.join(DATA, "stats")
NANUM = -1.23456789e-300
mp.mp.dps = 40

# One-way quantities.
SSQ1, SSQ2, MS1, MS2, FVAL, PVAL, RSQ, GRAND, ROOTMSE = range(9)
# Comparison quantities (by position in the output arrays).
DIFF, SEM, STAT, PROB, LCL, UCL, SIG, ALPHA, INDEX = range(9)
# Two-way quantities.
DOF, SSQ, MSQ, F2, P2 = range(5)
OFFSET_SET = 4  # the one-way set of mean 1e6 and spread 0.1
NIST = ["SiRstv", "SmLs01", "SmLs02", "SmLs03", "AtmWtAg", "SmLs04", "SmLs05", "SmLs06",
        "SmLs07", "SmLs08", "SmLs09"]


def write(name, header, comment, rows):
    with open(os.path.join(OUT, name), "w") as f:
        for line in comment:
            f.write("# " + line + "\n")
        f.write(header + "\n")
        for r in rows:
            f.write(",".join(str(v) for v in r) + "\n")


def num(v):
    """A double as its shortest round-trip text."""
    return repr(float(v))


def row(args, value, scale=None):
    """A reference row: value to 17 digits; scale |value| unless given (1 for a zero)."""
    v = float(mpf(value))
    s = scale if scale is not None else (abs(v) if v != 0 else 1.0)
    return list(args) + [num(v), num(s)]


def mpf(v):
    """An mpmath number from a float, an int, an mpf or an exact Fraction."""
    if isinstance(v, Fraction):
        return mp.mpf(v.numerator) / v.denominator
    return mp.mpf(v)


def f_upper(f, d1, d2):
    """P(F > f) on d1 and d2 degrees: I_{d2 / (d2 + d1 f)}(d2 / 2, d1 / 2)."""
    f, d1, d2 = mpf(f), mpf(d1), mpf(d2)
    return mp.betainc(d2 / 2, d1 / 2, 0, d2 / (d2 + d1 * f), regularized=True)


def t_two_sided(t, d):
    t, d = mpf(t), mpf(d)
    return mp.betainc(d / 2, mp.mpf(1) / 2, 0, d / (d + t * t), regularized=True)


def t_upper_quantile(p, d):
    """The t with P(T > t) = p, by Newton's method on the incomplete beta from SciPy's value."""
    return mp.findroot(lambda t: t_two_sided(t, d) / 2 - p, mpf(st.t.isf(float(p), d)))


def f_upper_quantile(p, d1, d2):
    return mp.findroot(lambda f: f_upper(f, d1, d2) - p, mpf(st.f.isf(float(p), d1, d2)))


def tukey_critical(alpha, k, dof):
    """SciPy's studentized range quantile, the root of its cdf to 1e-14."""
    q0 = st.studentized_range.ppf(1 - alpha, k, dof)
    return mpf(brentq(lambda q: st.studentized_range.cdf(q, k, dof) - (1 - alpha),
                      q0 * (1 - 1e-6), q0 * (1 + 1e-6), xtol=1e-14))


def close(a, b, tol, what):
    a, b = float(mpf(a)), float(mpf(b))
    if not (abs(a - b) <= tol * max(abs(b), 1e-300)):
        raise SystemExit("%s: %r against %r" % (what, a, b))


# ---------------------------------------------------------------------------------------------
# One-way designs

def one_way_sets():
    rng = np.random.default_rng(20250115)
    sets = []
    shapes = [([4, 7, 5], [0, 0.6, 1.1], 1.0, 0.0),
              ([12, 3, 9, 15], [2, 2.4, 1.5, 2.2], 0.7, 0.0),
              ([2, 2, 3, 2, 4], [5, 6, 5.5, 7, 6.2], 1.3, 0.0),
              ([30, 41, 25], [0, 0.2, 0.1], 1.0, 0.0),
              ([8, 11, 6, 9], [0.1, 0.3, 0.2, 0.25], 0.1, 1e6),     # a mean 1e7 times the spread
              ([10, 14, 12], [1, 1.3, 1.1], 1e-8, 0.0),            # a scale of 1e-8
              ([6, 1, 9, 7], [3, 4, 3.5, 2], 2.0, 0.0)]            # a group of one point
    for sizes, means, sd, offset in shapes:
        groups = []
        for n, m in zip(sizes, means):
            g = offset + sd * (m + rng.standard_normal(n))
            groups.append([float(v) for v in g])
        sets.append(groups)
    # Missing points: one in the first set's second group, two in the fourth set's last.
    sets[0][1].insert(3, NANUM)
    sets[3][2][5:5] = [NANUM, NANUM]
    return sets


def exact_table(groups):
    """Between and within sums, their degrees, F and R-squared, exactly."""
    gs = [[Fraction(v) for v in g] for g in groups if g]
    n = sum(len(g) for g in gs)
    k = len(gs)
    means = [sum(g) / len(g) for g in gs]
    grand = sum(sum(g) for g in gs) / n
    between = sum(len(g) * (m - grand) ** 2 for g, m in zip(gs, means))
    within = sum(sum((v - m) ** 2 for v in g) for g, m in zip(gs, means))
    return between, within, k - 1, n - k, grand


def transformed(groups, method):
    out = []
    for g in groups:
        fr = [Fraction(v) for v in g]
        if method == 3:
            s = sorted(fr)
            c = s[len(s) // 2] if len(s) % 2 else (s[len(s) // 2 - 1] + s[len(s) // 2]) / 2
        else:
            c = sum(fr) / len(fr)
        out.append([(v - c) ** 2 if method == 2 else abs(v - c) for v in fr])
    return out


def make_one_way():
    sets = one_way_sets()
    samples, ref = [], []
    for s, groups in enumerate(sets):
        for g, values in enumerate(groups):
            samples += [[s, g, num(v), 1] for v in values]
        valid = [[v for v in values if v != NANUM] for values in groups]
        for method in (0, 1, 2, 3):
            data = valid if method == 0 else transformed(valid, method)
            b, w, d1, d2, grand = exact_table(data)
            f = (b / d1) / (w / d2) if d1 > 0 and d2 > 0 else None
            ref.append(row([s, method, SSQ1], b))
            ref.append(row([s, method, SSQ2], w))
            ref.append(row([s, method, MS1], b / d1))
            ref.append(row([s, method, MS2], w / d2))
            ref.append(row([s, method, FVAL], f))
            p = f_upper(f, d1, d2)
            ref.append(row([s, method, PVAL], p))
            if method == 0:
                ref.append(row([s, method, RSQ], b / (b + w)))
                ref.append(row([s, method, GRAND], grand))
                ref.append(row([s, method, ROOTMSE], mp.sqrt(mpf(w / d2))))
                sp = st.f_oneway(*[np.array(g) for g in valid])
            elif method == 2:
                continue
            else:
                center = "mean" if method == 1 else "median"
                sp = st.levene(*[np.array(g) for g in valid], center=center)
            # SciPy rounds the group means to doubles before it subtracts them: on the set whose
            # mean is 1e7 times its spread that costs it about 8 digits.
            tol = 1e-7 if s == OFFSET_SET else 1e-12
            close(sp.statistic, f, tol, "SciPy F, set %d method %d" % (s, method))
            close(sp.pvalue, p, tol, "SciPy p, set %d method %d" % (s, method))
    write("anova_samples.csv", "set,group,value,scale",
          ["Unbalanced one-way designs; -1.23456789e-300 (NANUM) marks a missing point.",
           "Written by tests/tools/make_anova_reference.py (seeded NumPy generator)."], samples)
    write("anova_reference.csv", "set,method,quantity,value,scale",
          ["One-way tables of anova_samples.csv: method 0 the data, 1 |x - mean|, 2 (x - mean)^2,",
           "3 |x - median| of each group. quantity: 0 SSq1, 1 SSq2, 2 MeanSq1, 3 MeanSq2, 4 F,",
           "5 P(F > F), 6 RSquare, 7 GrandMean, 8 RootMSE. Sums and F exact (rational arithmetic",
           "on the doubles), P by mpmath %s at 40 digits; SciPy %s f_oneway and levene agree"
           % (mp.__version__, __import__("scipy").__version__),
           "within 1e-12. Written by tests/tools/make_anova_reference.py."], ref)
    return sets


# ---------------------------------------------------------------------------------------------
# Comparison of means

def make_comparisons(sets):
    inputs, ref = [], []
    levels = {0: 0.05, 1: 0.05, 2: 0.1, 3: 0.01, 6: 0.05}
    for s, alpha in levels.items():
        valid = [[v for v in g if v != NANUM] for g in sets[s]]
        k = len(valid)
        counts = [len(g) for g in valid]
        means = [float(np.mean(g)) for g in valid]          # the summaries, as doubles
        _, w, _, dof, _ = exact_table(valid)
        mse = float(w / dof)
        for g in range(k):
            inputs.append([s, g, counts[g], num(mse), dof, num(alpha), num(means[g]), 1])
        m = k * (k - 1) // 2
        pairs = [(i, j) for i in range(1, k) for j in range(i)]
        diffs = [mpf(means[i]) - mpf(means[j]) for i, j in pairs]
        sems = [mp.sqrt(mpf(mse) * (mp.mpf(1) / counts[i] + mp.mpf(1) / counts[j]))
                for i, j in pairs]
        ts = [d / s_ for d, s_ in zip(diffs, sems)]
        p2 = [t_two_sided(t, dof) for t in ts]
        crit = {
            1: tukey_critical(alpha, k, dof) / mp.sqrt(2),
            2: t_upper_quantile(mpf(alpha) / (2 * m), dof),
            3: t_upper_quantile(-mp.expm1(mp.log1p(-mpf(alpha)) / m) / 2, dof),
            4: t_upper_quantile(mpf(alpha) / 2, dof),
            5: mp.sqrt((k - 1) * f_upper_quantile(alpha, k - 1, dof)),
        }
        for method in range(1, 9):
            if method == 6:
                continue
            stat, prob = [], []
            for c in range(m):
                if method == 1:
                    q = abs(ts[c]) * mp.sqrt(2)
                    stat.append(q)
                    prob.append(mp.mpf(st.studentized_range.sf(float(q), k, dof)))
                elif method == 5:
                    stat.append(ts[c] ** 2 / (k - 1))
                    prob.append(f_upper(stat[-1], k - 1, dof))
                else:
                    stat.append(ts[c])
                    prob.append({2: min(1, m * p2[c]), 3: 1 - (1 - p2[c]) ** m}.get(method, p2[c]))
            order = list(range(m))
            if method >= 7:
                order = sorted(range(m), key=lambda c: prob[c])
            for pos, c in enumerate(order):
                args = [s, method, pos]
                ref.append(row(args + [INDEX], c, 1))
                ref.append(row(args + [DIFF], diffs[c]))
                ref.append(row(args + [SEM], sems[c]))
                ref.append(row(args + [STAT], stat[c]))
                ref.append(row(args + [PROB], prob[c]))
                if method <= 5:
                    half = crit[method] * sems[c]
                    lo, hi = diffs[c] - half, diffs[c] + half
                    ref.append(row(args + [LCL], lo, float(max(abs(lo), abs(diffs[c])))))
                    ref.append(row(args + [UCL], hi, float(max(abs(hi), abs(diffs[c])))))
                    ref.append(row(args + [SIG], 1 if lo > 0 or hi < 0 else 0, 1))
                else:
                    th = (alpha / (m - pos) if method == 7
                          else -mp.expm1(mp.log1p(-alpha) / (m - pos)))
                    ref.append(row(args + [ALPHA], th))
            if method >= 7:
                reject = multipletests([float(p) for p in prob], alpha,
                                       method="holm" if method == 7 else "holm-sidak")[0]
                for pos, c in enumerate(order):
                    ref.append(row([s, method, pos, SIG], int(reject[c]), 1))
        # Independent checks: statsmodels' Tukey table and SciPy's Tukey probabilities.
        y = np.concatenate(valid)
        labels = np.repeat(np.arange(k), counts)
        hsd = pairwise_tukeyhsd(y, labels, alpha)
        # SciPy's tukey_hsd refuses a group of one point.
        sp = st.tukey_hsd(*[np.array(g) for g in valid]) if min(counts) > 1 else None
        order = list(zip(*hsd._multicomp.pairindices))
        for c, (i, j) in enumerate(pairs):
            smc = order.index((j, i))
            sf = float(st.studentized_range.sf(float(abs(ts[c]) * mp.sqrt(2)), k, dof))
            close(hsd.meandiffs[smc], diffs[c], 1e-12, "pairwise_tukeyhsd difference")
            if sp:
                close(sp.pvalue[i, j], sf, 1e-9, "tukey_hsd p")
            close(hsd.pvalues[smc], sf, 2e-3 / max(hsd.pvalues[smc], 1e-3), "pairwise_tukeyhsd p")
            lo = diffs[c] - crit[1] * sems[c]
            hi = diffs[c] + crit[1] * sems[c]
            assert bool(hsd.reject[smc]) == bool(lo > 0 or hi < 0), "reject flag"
    write("comparison_inputs.csv", "set,group,count,mse,dof,alpha,mean,scale",
          ["Group summaries of anova_samples.csv sets for the comparison of means: the mean (a",
           "double), the count, the error mean square and its degrees of freedom, the level.",
           "Written by tests/tools/make_anova_reference.py."], inputs)
    write("comparison_reference.csv", "set,method,position,quantity,value,scale",
          ["Pairwise comparisons of comparison_inputs.csv. method: 1 Tukey, 2 Bonferroni, 3 Sidak,",
           "4 LSD, 5 Scheffe, 7 Holm-Bonferroni, 8 Holm-Sidak; position: the pair number, or for",
           "7 and 8 the place after sorting by probability. quantity: 0 difference, 1 its",
           "standard error, 2 statistic, 3 probability, 4 and 5 the simultaneous limits, 6 the",
           "significance flag, 7 the Holm threshold, 8 the pair number. mpmath %s at 40 digits"
           % mp.__version__,
           "for sums and t and F probabilities; SciPy %s studentized_range (cdf, sf) for Tukey;"
           % __import__("scipy").__version__,
           "critical t and F values as roots of mpmath's; Holm flags from statsmodels %s"
           % sm.__version__,
           "multipletests, Tukey differences and flags checked against pairwise_tukeyhsd."], ref)


# ---------------------------------------------------------------------------------------------
# Two-way designs

def make_two_way():
    rng = np.random.default_rng(20250116)
    specs = [(3, 2, 40, 1.0, 0.0), (4, 3, 90, 0.5, 0.0), (2, 2, 15, 2.0, 0.0),
             (3, 4, 150, 1.0, 1e6), (2, 3, 30, 1e-6, 0.0)]
    samples, ref = [], []
    for s, (na, nb, n, sd, offset) in enumerate(specs):
        # Every cell once, the rest at random: unbalanced, no empty cell.
        rest = n - na * nb
        a = np.concatenate([np.repeat(np.arange(1, na + 1), nb), rng.integers(1, na + 1, rest)])
        b = np.concatenate([np.tile(np.arange(1, nb + 1), na), rng.integers(1, nb + 1, rest)])
        effect = 0.4 * a - 0.3 * b + 0.15 * (a * b % 3)
        y = [float(v) for v in offset + sd * (effect + rng.standard_normal(n))]
        if s in (1, 3):
            for i in rng.choice(n, 3, replace=False):
                y[i] = NANUM
        samples += [[s, int(a[i]), int(b[i]), num(y[i]), 1] for i in range(n)]
        keep = [i for i in range(n) if y[i] != NANUM]
        df = pd.DataFrame(dict(y=[y[i] - offset for i in keep], fa=a[keep], fb=b[keep]))
        yy = [Fraction(y[i]) for i in keep]
        mean = sum(yy) / len(yy)
        total = sum((v - mean) ** 2 for v in yy)
        for inter in (0, 1):
            formula = "y ~ C(fa, Sum) * C(fb, Sum)" if inter else "y ~ C(fa, Sum) + C(fb, Sum)"
            fit = smf.ols(formula, df).fit()
            tab = sm.stats.anova_lm(fit, typ=3)
            names = ["C(fa, Sum)", "C(fb, Sum)", "C(fa, Sum):C(fb, Sum)"]
            err_df, err_ss = fit.df_resid, fit.ssr
            for r, name in enumerate(names):
                if not inter and r == 2:
                    continue
                d, ss, fv, pv = (tab.loc[name, col] for col in ("df", "sum_sq", "F", "PR(>F)"))
                ms = ss / d
                fv_mp = (mp.mpf(ss) / d) / (mp.mpf(err_ss) / err_df)
                close(fv, fv_mp, 1e-12, "statsmodels F")
                p = f_upper(fv_mp, d, err_df)
                close(pv, p, 1e-9, "statsmodels p")
                for q, v in ((DOF, d), (SSQ, ss), (MSQ, ms), (F2, fv_mp), (P2, p)):
                    ref.append(row([s, inter, r, q], v))
            # Model: the corrected total less the error; total exact.
            model_ss = float(total) - err_ss
            close(fit.ess, model_ss, 1e-9, "statsmodels model sum")
            model_f = (mp.mpf(model_ss) / fit.df_model) / (mp.mpf(err_ss) / err_df)
            for q, v in ((DOF, fit.df_model), (SSQ, model_ss), (MSQ, model_ss / fit.df_model),
                         (F2, model_f), (P2, f_upper(model_f, fit.df_model, err_df))):
                ref.append(row([s, inter, 3, q], v))
            for q, v in ((DOF, err_df), (SSQ, err_ss), (MSQ, err_ss / err_df)):
                ref.append(row([s, inter, 4, q], v))
            for q, v in ((DOF, fit.df_model + err_df), (SSQ, total)):
                ref.append(row([s, inter, 5, q], v))
    write("anova2_samples.csv", "set,a,b,y,scale",
          ["Unbalanced two-way designs, levels from 1, every cell filled; -1.23456789e-300 (NANUM)",
           "marks a missing y. Written by tests/tools/make_anova_reference.py."], samples)
    write("anova2_reference.csv", "set,interaction,row,quantity,value,scale",
          ["Two-way tables of anova2_samples.csv from statsmodels %s anova_lm(typ=3) of an OLS fit"
           % sm.__version__,
           "on sum-to-zero coding of both factors (the y of a set of offset 1e6 taken less it,",
           "which the table does not see). row: 0 A, 1 B, 2 interaction, 3 model, 4 error, 5",
           "corrected total; quantity: 0 DOF, 1 SSq, 2 MeanSq, 3 F, 4 P(F > F). F from the sums",
           "and P by mpmath at 40 digits (statsmodels' own within 1e-9); the total exact.",
           "Written by tests/tools/make_anova_reference.py."], ref)


# ---------------------------------------------------------------------------------------------
# The table of a fitted model about zero; NIST

def make_fit_table():
    rng = np.random.default_rng(20250117)
    ref = []
    cases = []
    for case, (n, params, weighted) in enumerate([(12, 3, False), (25, 4, True)]):
        x = [float(v) for v in np.linspace(0, 5, n)]
        y = [float(v) for v in 2 + 0.5 * np.array(x) + rng.standard_normal(n)]
        w = [float(v) for v in rng.uniform(0.5, 2, n)] if weighted else [1.0] * n
        sse = float(np.round(rng.uniform(5, 10), 6))
        cases.append((x, y, w, weighted, params, sse))
        W = [Fraction(v) for v in w]
        Y = [Fraction(v) for v in y]
        u = sum(wi * yi * yi for wi, yi in zip(W, Y))
        mean = sum(wi * yi for wi, yi in zip(W, Y)) / sum(W)
        corrected = sum(wi * (yi - mean) ** 2 for wi, yi in zip(W, Y))
        S = Fraction(sse)
        ms1 = (u - S) / params
        ms2 = S / (n - params)
        f = ms1 / ms2
        p = f_upper(f, params - 1, n - params)
        for q, v in ((0, u - S), (1, ms1), (2, ms2), (3, u), (4, f), (5, p), (6, corrected)):
            ref.append(row([case, q], v))
        for i in range(n):
            ref.append(row([case, 10 + i], x[i], 1))
            ref.append(row([case, 1000 + i], y[i], 1))
            ref.append(row([case, 2000 + i], w[i] if weighted else NANUM, 1))
        ref.append(row([case, 3000], params, 1))
        ref.append(row([case, 3001], sse, 1))
    write("fit_table_reference.csv", "case,quantity,value,scale",
          ["Tables of a fitted model about zero: quantity 0 SSq1 = U - SSE, 1 MeanSq1, 2 MeanSq2,",
           "3 SSq3 = U = sum w y^2, 4 F, 5 P(F > F) on nParams - 1 and n - nParams degrees, 6 the",
           "corrected total sum w (y - mean)^2; the inputs as 10 + i x, 1000 + i y, 2000 + i w",
           "(NANUM for none), 3000 nParams, 3001 SSE. Exact sums, P by mpmath at 40 digits.",
           "Written by tests/tools/make_anova_reference.py."], ref)


def make_nist_exact():
    ref = []
    for number, name in enumerate(NIST):
        lines = open(os.path.join(DATA, "nist-strd", name + ".dat")).read().splitlines()
        start = [i for i, line in enumerate(lines) if line.startswith("Data:")][-1]
        groups = {}
        for line in lines[start + 1:]:
            if line.strip():
                t, v = line.split()
                groups.setdefault(int(t), []).append(float(v))
        b, w, d1, d2, _ = exact_table(list(groups.values()))
        f = (b / d1) / (w / d2)
        for q, v in ((0, b), (1, w), (2, b / d1), (3, w / d2), (4, f), (5, b / (b + w))):
            ref.append(row([number, q], v))
    write("anova_nist_exact.csv", "file,quantity,value,scale",
          ["The NIST StRD ANOVA sets (file: %s) as doubles: exact between and" % " ".join(NIST),
           "within sums (quantity 0, 1), mean squares (2, 3), F (4) and R-squared (5) of the",
           "doubles nearest to the decimal data, by rational arithmetic.",
           "Written by tests/tools/make_anova_reference.py."], ref)


if __name__ == "__main__":
    make_comparisons(make_one_way())
    make_two_way()
    make_fit_table()
    make_nist_exact()
