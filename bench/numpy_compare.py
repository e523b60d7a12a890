#!/usr/bin/python3
"""Times exports of libzomath beside their NumPy or SciPy counterparts on the same data.

Run with the system Python (it has NumPy and SciPy), from the worktree after a build:

    /usr/bin/python3 bench/numpy_compare.py [--lib build/libzomath.so] [--repeat 7] [--only svd]

Each row loads the same data into both, checks that the two results agree, and prints the best
of several timed calls of each and their ratio (library time / NumPy time: below 1 the library
is faster). It is a tool for people, not a test: timings on a shared machine are noisy, so run it
twice before trusting a ratio. The header names the BLAS that NumPy and the library have mapped,
and the OpenBLAS kernel in use: a fair comparison needs the same single-threaded library in both.

To add a row: write a function that builds the data and returns a Row (see the existing ones)
and list it in ROWS.
"""

import argparse
import ctypes as C
import os
import sys
import time

import numpy as np
from scipy.interpolate import CubicSpline, splev, splrep

HERE = os.path.dirname(os.path.abspath(__file__))
NANUM = -1.23456789e-300

dp = C.POINTER(C.c_double)
ip = C.POINTER(C.c_int)
up = C.POINTER(C.c_uint)


def ptr(a, kind=dp):
    return a.ctypes.data_as(kind)


class Row:
    """One comparison: lib() and ref() each run the call once and return its result; prepare(),
    when given, runs untimed before each call (to restore an input overwritten in place);
    agree(lib_result, ref_result) says whether the results match, as a short text."""

    def __init__(self, name, size, lib, ref, ref_name, agree, prepare=None):
        self.name, self.size, self.lib, self.ref = name, size, lib, ref
        self.ref_name, self.agree, self.prepare = ref_name, agree, prepare


def best_times(row, repeat):
    """Best of `repeat` calls of each side. The two sides take turns, so that a burst of load
    from elsewhere on the machine falls on both alike."""
    best_lib = best_ref = float("inf")
    r_lib = r_ref = None
    for _ in range(repeat):
        if row.prepare:
            row.prepare()
        t0 = time.perf_counter()
        r_lib = row.lib()
        t1 = time.perf_counter()
        r_ref = row.ref()
        t2 = time.perf_counter()
        best_lib, best_ref = min(best_lib, t1 - t0), min(best_ref, t2 - t1)
    return best_lib, r_lib, best_ref, r_ref


def rel_close(a, b, rtol):
    a, b = np.asarray(a, float), np.asarray(b, float)
    scale = max(np.max(np.abs(b)), np.finfo(float).tiny)
    err = np.max(np.abs(a - b)) / scale
    return ("ok" if err <= rtol else "DIFF") + " %.1e" % err


# --- rows ------------------------------------------------------------------------------------

def row_d_sum(lib, n, rng):
    x = rng.standard_normal(n)
    lo, hi = C.c_double(), C.c_double()
    imin, imax, nv = C.c_int(), C.c_int(), C.c_int()

    def run():
        s = lib.zomath_d_sum(ptr(x), n, C.byref(lo), C.byref(hi), C.byref(imin), C.byref(imax),
                             C.byref(nv))
        return s, imin.value, imax.value

    def ref():
        return np.sum(x), int(np.argmin(x)), int(np.argmax(x))

    def agree(a, b):
        if a[1:] != b[1:]:
            return "DIFF positions"
        return rel_close(a[0], b[0], 1e-12)

    return Row("zomath_d_sum", n, run, ref, "sum+argmin+argmax", agree)


def row_f_sum(lib, n, rng):
    x = rng.standard_normal(n).astype(np.float32)
    lo, hi = C.c_float(), C.c_float()
    imin, imax = C.c_int(), C.c_int()
    fp = C.POINTER(C.c_float)

    def run():
        return lib.zomath_f_sum(ptr(x, fp), n, C.byref(lo), C.byref(hi), C.byref(imin),
                                C.byref(imax)), imin.value, imax.value

    def ref():
        return np.sum(x, dtype=np.float64), int(np.argmin(x)), int(np.argmax(x))

    def agree(a, b):
        return "DIFF positions" if a[1:] != b[1:] else rel_close(a[0], b[0], 1e-12)

    return Row("zomath_f_sum", n, run, ref, "sum(f8)+argmin+argmax", agree)


def row_d_minmax(lib, n, rng):
    x = rng.standard_normal(n)
    imin, imax = C.c_uint(), C.c_uint()

    def run():
        lib.zomath_d_minmax(ptr(x), 0, n - 1, C.byref(imin), C.byref(imax))
        return imin.value, imax.value

    def ref():
        return int(np.argmin(x)), int(np.argmax(x))

    return Row("zomath_d_minmax", n, run, ref, "argmin+argmax",
               lambda a, b: "ok" if a == b else "DIFF")


def row_d_mean_variance(lib, n, rng):
    x = 1e3 + rng.standard_normal(n)
    var, nv = C.c_double(), C.c_int()

    def run():
        return lib.zomath_d_mean_variance(ptr(x), n, C.byref(var), C.byref(nv)), var.value

    def ref():
        return np.mean(x), np.var(x, ddof=1)

    def agree(a, b):
        return rel_close(a[0], b[0], 1e-13) + ", " + rel_close(a[1], b[1], 1e-9)

    return Row("zomath_d_mean_variance", n, run, ref, "mean+var(ddof=1)", agree)


def row_d_cumulative_sum(lib, n, rng):
    x = rng.standard_normal(n)
    out = np.empty(n)
    missing = C.c_double(NANUM)

    def run():
        lib.zomath_d_cumulative_sum(ptr(x), 0, n, ptr(out), C.byref(missing))
        return out

    return Row("zomath_d_cumulative_sum", n, run, lambda: np.cumsum(x), "cumsum",
               lambda a, b: rel_close(a[-1], b[-1], 1e-9))


def row_median(lib, n, rng):
    x = rng.standard_normal(n)
    med = C.c_double()

    def run():
        lib.zomath_get_median_in_vector(n, ptr(x), C.byref(med))
        return med.value

    return Row("zomath_get_median_in_vector", n, run, lambda: np.median(x), "median",
               lambda a, b: "ok" if a == b else "DIFF %.17g %.17g" % (a, b))


def square(rng, n):
    return np.ascontiguousarray(rng.uniform(-1.0, 1.0, (n, n)))


def row_svd(lib, n, rng):
    a = square(rng, n)
    s, u, vt = np.empty(n), np.empty((n, n)), np.empty((n, n))

    def run():
        rc = lib.zomath_svd(n, n, ptr(a), ptr(s), ptr(u), ptr(vt))
        return rc, s.copy(), u.copy(), vt.copy()

    def ref():
        return np.linalg.svd(a, full_matrices=False)

    def agree(r, b):
        rc, s_, u_, vt_ = r
        if rc:
            return "DIFF code %d" % rc
        recon = (u_ * s_) @ vt_
        return ("values " + rel_close(s_, b[1], 1e-13) + ", A=USV' " + rel_close(recon, a, 1e-12))

    return Row("zomath_svd", "%dx%d" % (n, n), run, ref, "linalg.svd", agree)


def row_inverse(lib, n, rng):
    a = square(rng, n)
    work = np.empty_like(a)

    def run():
        rc = lib.zomath_inverse(ptr(work), n)
        return rc, work.copy()

    def agree(r, b):
        if r[0]:
            return "DIFF code %d" % r[0]
        return rel_close(r[1], b, 1e-9) + ", |AX-I| %.1e" % np.max(np.abs(a @ r[1] - np.eye(n)))

    return Row("zomath_inverse", "%dx%d" % (n, n), run, lambda: np.linalg.inv(a), "linalg.inv",
               agree, prepare=lambda: np.copyto(work, a))


def row_pinv(lib, n, rng):
    a = np.ascontiguousarray(rng.uniform(-1.0, 1.0, (n + n // 2, n)))
    out = np.empty((n, a.shape[0]))

    def run():
        rc = lib.zomath_pinv(ptr(a), ptr(out), a.shape[0], n, C.c_double(0.0))
        return rc, out.copy()

    def agree(r, b):
        return "DIFF code %d" % r[0] if r[0] else rel_close(r[1], b, 1e-9)

    return Row("zomath_pinv", "%dx%d" % a.shape, run, lambda: np.linalg.pinv(a), "linalg.pinv",
               agree)


def row_lu_solve(lib, n, rng):
    a = square(rng, n)
    b = rng.standard_normal(n)
    wa, wb, piv = np.empty_like(a), np.empty_like(b), np.empty(n, dtype=np.intc)

    def prepare():
        np.copyto(wa, a)
        np.copyto(wb, b)

    def run():
        rc = lib.zomath_lu_solve(ptr(wa), ptr(wb), ptr(piv, ip), n, 1)
        return rc, wb.copy()

    def agree(r, ref):
        return "DIFF code %d" % r[0] if r[0] else rel_close(r[1], ref, 1e-9)

    return Row("zomath_lu_solve", "%dx%d, 1 rhs" % (n, n), run, lambda: np.linalg.solve(a, b),
               "linalg.solve", agree, prepare=prepare)


def row_basic_summary_stats(lib, n, rng):
    import scipy.stats as st
    x = 100 + 15 * rng.standard_normal(n)
    outs = [C.c_double() for _ in range(13)]
    count, missing = C.c_int(), C.c_int()

    def run():
        lib.zomath_basic_summary_stats(n, ptr(x), C.byref(count), *[C.byref(v) for v in outs[:11]],
                                       C.byref(missing), C.byref(outs[11]), C.byref(outs[12]), 0, None)
        return outs[0].value, outs[1].value, outs[5].value, outs[6].value

    def ref():
        return (np.mean(x), np.std(x, ddof=1), st.skew(x, bias=False), st.kurtosis(x, bias=False))

    def agree(a, b):
        return rel_close(a[:2], b[:2], 1e-13) + ", shape " + rel_close(a[2:], b[2:], 1e-9)

    return Row("zomath_basic_summary_stats", n, run, ref, "mean+std+skew+kurtosis", agree)


def row_integrate(lib, n, rng):
    x = np.cumsum(rng.uniform(0.5, 1.5, n))
    y = rng.standard_normal(n)
    area = C.c_double()

    def run():
        lib.zomath_integrate(n, ptr(x), ptr(y), C.byref(area), None)
        return area.value

    return Row("zomath_integrate", n, run, lambda: np.trapz(y, x), "trapz",
               lambda a, b: rel_close(a, b, 1e-9))


def row_multiple_regression(lib, shape, rng):
    n, m = shape
    x = np.ascontiguousarray(rng.standard_normal((n, m)) * 10 + 3)
    y = 1.5 + x @ (0.1 * np.arange(1, m + 1)) + rng.standard_normal(n)
    design = np.column_stack([np.ones(n), x])
    fit = (C.c_double * (9 * (m + 1)))()  # FitParameter records: 9 words each

    def run():
        rc = lib.zomath_multiple_linear_regression(ptr(x), n, m, ptr(y), None, 0, None, fit, m + 1,
                                                   None, None, None, None, 0, 0, None, None)
        return rc, np.array([fit[9 * j] for j in range(m + 1)])

    def ref():
        return np.linalg.lstsq(design, y, rcond=None)[0]

    def agree(r, b):
        return "DIFF code %d" % r[0] if r[0] else rel_close(r[1], b, 1e-10)

    return Row("zomath_multiple_linear_regression", "%dx%d" % (n, m), run, ref,
               "linalg.lstsq([1 X], y)", agree)


def row_polynomial_fit(lib, shape, rng):
    n, order = shape
    x = np.sort(rng.uniform(0.0, 10.0, n))
    y = 2 - x + 0.3 * x ** 2 - 0.02 * x ** 3 + 0.1 * rng.standard_normal(n)
    fit = (C.c_double * (9 * (order + 1)))()

    def run():
        rc = lib.zomath_polynomial_fit(n, ptr(x), ptr(y), None, order, None, fit, order + 1, None,
                                       None, None, None, None, -1)
        return rc, np.array([fit[9 * j] for j in range(order + 1)])

    def agree(r, b):
        return "DIFF code %d" % r[0] if r[0] else rel_close(r[1], b[::-1], 1e-9)

    return Row("zomath_polynomial_fit", "%d, order %d" % (n, order), run,
               lambda: np.polyfit(x, y, order), "polyfit", agree)


def interp_source(rng, n):
    x = np.sort(rng.uniform(0.0, 100.0, n))
    return x, np.sin(x) + 0.1 * rng.standard_normal(n)


def row_interpolate_linear(lib, n, rng):
    sx, sy = interp_source(rng, n // 10)
    at = rng.uniform(-1.0, 101.0, n)
    out = np.empty(n)

    def run():
        lib.zomath_interpolate(ptr(at), ptr(out), n, ptr(sx), ptr(sy), len(sx), 0, 1.0, None,
                               None, 0, 0)
        return out

    # numpy.interp holds the end values outside; the library continues the end segments.
    inside = (at >= sx[0]) & (at <= sx[-1])
    return Row("zomath_interpolate", "%d from %d, mode 0" % (n, len(sx)), run,
               lambda: np.interp(at, sx, sy), "interp",
               lambda a, b: rel_close(a[inside], b[inside], 1e-13))


def row_interpolate_spline(lib, n, rng):
    sx, sy = interp_source(rng, n // 10)
    at = rng.uniform(sx[0], sx[-1], n)
    out = np.empty(n)

    def run():
        lib.zomath_interpolate(ptr(at), ptr(out), n, ptr(sx), ptr(sy), len(sx), 1, 1.0, None,
                               None, 0, 0)
        return out

    def ref():
        return CubicSpline(sx, sy, bc_type="natural")(at)

    return Row("zomath_interpolate", "%d from %d, mode 1" % (n, len(sx)), run, ref,
               "CubicSpline(natural)+call", lambda a, b: rel_close(a, b, 1e-12))


def row_interpolate_smoothing(lib, n, rng):
    sx = np.sort(rng.uniform(0.0, 10.0, n))
    sy = np.sin(sx) + 0.1 * rng.standard_normal(n)
    s = n * 0.01
    out = np.empty(n)

    def run():
        rc = lib.zomath_interpolate(ptr(sx), ptr(out), n, ptr(sx), ptr(sy), n, 2, s, None, None,
                                    0, 0)
        return rc, out

    def ref():
        return splev(sx, splrep(sx, sy, s=s))

    def agree(a, b):
        return "DIFF code %d" % a[0] if a[0] else rel_close(a[1], b, 1e-9)

    return Row("zomath_interpolate", "%d, mode 2, s = %g" % (n, s), run, ref, "splrep+splev",
               agree)


def row_percentiles(lib, n, rng, m=101):
    x = 100 + 15 * rng.standard_normal(n)
    p = np.linspace(0.0, 100.0, m) if m > 3 else np.array([25.0, 50.0, 75.0])
    out = np.empty(m)

    def run():
        lib.zomath_percentiles(ptr(x), n, ptr(p), m, ptr(out), 4, None)  # interpolated
        return out.copy()

    return Row("zomath_percentiles", "%d, %d percents" % (n, m), run,
               lambda: np.percentile(x, p, method="interpolated_inverted_cdf"),
               "percentile", lambda a, b: rel_close(a, b, 1e-15))


def row_quartiles(lib, n, rng):
    return row_percentiles(lib, n, rng, 3)


class HypotTestOptions(C.Structure):
    _fields_ = [("dReserved", C.c_double), ("dTestValue", C.c_double), ("TailType", C.c_int)]


class TTestMeanResults(C.Structure):
    _fields_ = [("N", C.c_int), ("Mean", C.c_double), ("SD", C.c_double), ("SEM", C.c_double),
                ("DOF", C.c_int), ("tValue", C.c_double), ("Prob", C.c_double)]


class TTestMean2SampleResults(C.Structure):
    _fields_ = [("N1", C.c_int), ("Mean1", C.c_double), ("SD1", C.c_double), ("SEM1", C.c_double),
                ("N2", C.c_int)] + [(f, C.c_double) for f in (
                    "Mean2", "SD2", "SEM2", "DiffMean", "DiffSEM", "DOF", "tValue", "Prob")]


class TTestResults(C.Structure):
    _fields_ = [("DOF", C.c_double), ("tValue", C.c_double), ("Prob", C.c_double)]


def row_one_sample_t_test(lib, n, rng):
    import scipy.stats as st
    x = 100 + 15 * rng.standard_normal(n)
    opts, res = HypotTestOptions(0, 100.01, 0), TTestMeanResults()

    def run():
        lib.zomath_one_sample_t_test(ptr(x), n, C.byref(opts), C.byref(res))
        return res.tValue, res.Prob

    def ref():
        r = st.ttest_1samp(x, 100.01)
        return r.statistic, r.pvalue

    return Row("zomath_one_sample_t_test", n, run, ref, "ttest_1samp",
               lambda a, b: rel_close(a, b, 1e-10))


def row_two_sample_t_test(lib, n, rng):
    import scipy.stats as st
    x, y = 100 + 15 * rng.standard_normal(n), 100.02 + 12 * rng.standard_normal(n)
    opts, res, welch = HypotTestOptions(0, 0, 0), TTestMean2SampleResults(), TTestResults()

    def run():
        lib.zomath_two_sample_t_test(ptr(x), n, ptr(y), n, C.byref(opts), C.byref(res),
                                     C.byref(welch))
        return res.tValue, res.Prob, welch.tValue, welch.Prob

    def ref():
        a, b = st.ttest_ind(x, y), st.ttest_ind(x, y, equal_var=False)
        return a.statistic, a.pvalue, b.statistic, b.pvalue

    return Row("zomath_two_sample_t_test", "2 x %d" % n, run, ref, "ttest_ind, both variances",
               lambda a, b: rel_close(a, b, 1e-10))


def row_row_ttest2(lib, rows, rng):
    import scipy.stats as st
    cols = 10
    a, b = rng.standard_normal((rows, cols)), 0.2 + rng.standard_normal((rows, cols))
    t, dof, p = np.empty(rows), np.empty(rows), np.empty(rows)

    def run():
        lib.zomath_row_ttest2(rows, cols, ptr(a), ptr(b), 0.0, 0, ptr(t), ptr(dof), ptr(p))
        return t, p

    def ref():
        r = st.ttest_ind(a, b, axis=1)
        return r.statistic, r.pvalue

    return Row("zomath_row_ttest2", "%d rows of %d" % (rows, cols), run, ref, "ttest_ind(axis=1)",
               lambda x, y: rel_close(x[0], y[0], 1e-10) + ", p " + rel_close(x[1], y[1], 1e-10))


class ANOVATable(C.Structure):
    _fields_ = [(f, C.c_double) for f in ("DOF1", "SSq1", "MeanSq1", "DOF2", "SSq2", "MeanSq2",
                                          "DOF3", "SSq3", "MeanSq3", "FValue", "PValue")]


def row_anova_one_way(lib, shape, rng, method=0):
    """shape: (groups, points a group); unequal group means, one array of consecutive groups."""
    import scipy.stats as st
    k, m = shape
    groups = [10 + 0.01 * g + rng.standard_normal(m) for g in range(k)]
    x, sizes, table = np.concatenate(groups), np.full(k, m, dtype=np.int32), ANOVATable()

    def run():
        lib.zomath_anova_equal_variance_test(ptr(x), x.size, k, ptr(sizes, ip), None, 0,
                                             C.byref(table), method)
        return table.FValue, table.PValue

    def ref():
        r = st.levene(*groups, center="mean") if method else st.f_oneway(*groups)
        return r.statistic, r.pvalue

    # SciPy's F tail on 10^7 degrees of freedom is 1e-10 off (mpmath agrees with the library's).
    name = "zomath_anova_equal_variance_test (Levene)" if method else "zomath_anova_one_way engine"
    return Row(name, "%d x %d" % (k, m), run, ref, "levene(center='mean')" if method else "f_oneway",
               lambda a, b: rel_close(a, b, 1e-9))


def row_levene(lib, shape, rng):
    return row_anova_one_way(lib, shape, rng, 1)


def noisy_curve(rng, n):
    return np.sin(np.arange(n) * 1e-3) + 0.2 * rng.standard_normal(n)


def row_adjave_smooth(lib, n, rng):
    from scipy.ndimage import uniform_filter1d
    x, out = noisy_curve(rng, n), np.empty(n)

    def run():
        lib.zomath_adjave_smooth(ptr(x), ptr(out), n, 50, 1, False)  # reflect
        return out

    return Row("zomath_adjave_smooth", "%d, half width 50" % n, run,
               lambda: uniform_filter1d(x, 101, mode="reflect"), "uniform_filter1d(101)",
               lambda a, b: rel_close(a, b, 1e-12))


def row_savitsky_golay(lib, n, rng):
    from scipy.signal import savgol_filter
    x, out = noisy_curve(rng, n), np.empty(n)

    def run():
        lib.zomath_savitsky_golay(ptr(x), ptr(out), n, 10, 10, 3, 0, 0)  # ends fitted
        return out

    return Row("zomath_savitsky_golay", "%d, window 21, order 3" % n, run,
               lambda: savgol_filter(x, 21, 3, mode="interp"), "savgol_filter(interp)",
               lambda a, b: rel_close(a, b, 1e-12))


def row_median_filter(lib, n, rng):
    from scipy.ndimage import median_filter
    x, out = noisy_curve(rng, n), np.empty(n)

    def run():
        lib.zomath_median_filter(n, ptr(x), ptr(out), 50, 50.0, 1, False)  # reflect
        return out

    return Row("zomath_median_filter", "%d, half width 50" % n, run,
               lambda: median_filter(x, size=101, mode="reflect"), "median_filter(size=101)",
               lambda a, b: rel_close(a, b, 0))


def row_fft_filter_smoothing(lib, n, rng):
    x, out, cutoff = noisy_curve(rng, n), np.empty(n), 0.01

    def run():
        lib.zomsp_fft_filter_smoothing(n, ptr(x), ptr(out), cutoff)
        return out

    def ref():
        # The library's response: 1 below cutoff - d, 0 above cutoff + d, a raised cosine
        # between, d half a bin; the level always passes.
        step = 1.0 / (n - 1)
        f, d = np.arange(n // 2 + 1) * step, step / 2
        h = np.clip((f - (cutoff - d)) / (2 * d), 0.0, 1.0)
        h = 0.5 * (1 + np.cos(np.pi * h))
        h[0] = 1.0
        return np.fft.irfft(np.fft.rfft(x) * h, n)

    return Row("zomsp_fft_filter_smoothing", n, run, ref, "rfft * window, irfft",
               lambda a, b: rel_close(a, b, 1e-12))


def peak_call(lib, name, x, y, *options):
    """Runs a finder of the pnSize frame and returns the indices of its peaks."""
    n = C.c_int(len(x))
    px, py, idx = np.empty(len(x)), np.empty(len(x)), np.empty(len(x), dtype=np.int32)
    getattr(lib, name)(C.byref(n), ptr(x), ptr(y), ptr(px), ptr(py), ptr(idx, ip), *options)
    return idx[:n.value]


def row_local_maximum(lib, n, rng, shape="noise", h=10):
    """The window finder beside argrelmax on the same points: positive peaks of any sign; SciPy
    also compares the first and last h points with clipped neighbours, which the library skips."""
    from scipy.signal import argrelmax
    x = np.arange(n, dtype=float)
    y = rng.standard_normal(n) if shape == "noise" else (x.copy() if shape == "rising" else -x)

    def ref():
        p = argrelmax(y, order=h)[0]
        return p[(p >= h) & (p < n - h)]

    return Row("zomath_find_peaks_by_local_maximum", "%d, %s, nHalf %d" % (n, shape, h),
               lambda: peak_call(lib, "zomath_find_peaks_by_local_maximum", x, y, 5, h), ref,
               "argrelmax(order=%d)" % h,
               lambda a, b: ("ok" if np.array_equal(a, b) else "DIFF") + " %d peaks" % len(b))


def row_local_maximum_rising(lib, n, rng):
    return row_local_maximum(lib, n, rng, "rising")


def row_local_maximum_falling(lib, n, rng):
    return row_local_maximum(lib, n, rng, "falling")


def row_first_derivative(lib, n, rng, shape="smooth"):
    """The first-derivative finder beside find_peaks: on a smooth curve they find the same
    maxima; on noise the library keeps only those whose left neighbour rises (a maximum right
    after a minimum has no rising slope before it), a subset."""
    from scipy.signal import find_peaks
    x = 0.001 * np.arange(n)
    y = (np.sin(3 * x) + 0.5 * np.sin(11.1 * x) + 0.1 * x if shape == "smooth"
         else rng.standard_normal(n))

    def agree(a, b):
        if shape == "smooth":
            return ("ok" if np.array_equal(a, b) else "DIFF") + " %d peaks" % len(b)
        return ("ok" if np.isin(a, b).all() else "DIFF") + " subset, %d of %d" % (len(a), len(b))

    return Row("zomath_find_peaks_1st_derivative", "%d, %s" % (n, shape),
               lambda: peak_call(lib, "zomath_find_peaks_1st_derivative", x, y, 5, False, 0, 0),
               lambda: find_peaks(y)[0], "find_peaks", agree)


def row_first_derivative_noise(lib, n, rng):
    return row_first_derivative(lib, n, rng, "noise")


ROWS = [
    (row_d_sum, 10_000_000),
    (row_f_sum, 10_000_000),
    (row_d_minmax, 10_000_000),
    (row_d_mean_variance, 10_000_000),
    (row_d_cumulative_sum, 10_000_000),
    (row_median, 10_000_000),
    (row_svd, 300),
    (row_inverse, 300),
    (row_pinv, 200),
    (row_lu_solve, 300),
    (row_basic_summary_stats, 10_000_000),
    (row_integrate, 10_000_000),
    (row_interpolate_linear, 1_000_000),
    (row_interpolate_spline, 1_000_000),
    (row_interpolate_smoothing, 10_000),
    (row_percentiles, 10_000_000),
    (row_quartiles, 10_000_000),
    (row_multiple_regression, (100_000, 10)),
    (row_multiple_regression, (1_000_000, 3)),
    (row_one_sample_t_test, 10_000_000),
    (row_two_sample_t_test, 1_000_000),
    (row_row_ttest2, 100_000),
    (row_polynomial_fit, (1_000_000, 2)),
    (row_polynomial_fit, (100_000, 5)),
    (row_anova_one_way, (4, 2_500_000)),
    (row_anova_one_way, (1000, 1000)),
    (row_levene, (4, 2_500_000)),
    (row_adjave_smooth, 1_000_000),
    (row_savitsky_golay, 1_000_000),
    (row_median_filter, 1_000_000),
    (row_fft_filter_smoothing, 1 << 20),
    (row_fft_filter_smoothing, 1_000_003),
    (row_local_maximum, 1_000_000),
    (row_local_maximum_rising, 1_000_000),
    (row_local_maximum_falling, 1_000_000),
    (row_first_derivative, 1_000_000),
    (row_first_derivative_noise, 1_000_000),
]


def declare(lib):
    D, I, U = C.c_double, C.c_int, C.c_uint
    sig = {
        "zomath_d_sum": (D, [dp, I, dp, dp, ip, ip, ip]),
        "zomath_f_sum": (D, [C.c_void_p, I, C.c_void_p, C.c_void_p, ip, ip]),
        "zomath_d_minmax": (I, [dp, U, U, up, up]),
        "zomath_d_mean_variance": (D, [dp, I, dp, ip]),
        "zomath_d_cumulative_sum": (I, [dp, U, U, dp, dp]),
        "zomath_get_median_in_vector": (I, [I, dp, dp]),
        "zomath_svd": (I, [I, I, dp, dp, dp, dp]),
        "zomath_inverse": (I, [dp, I]),
        "zomath_pinv": (I, [dp, dp, I, I, D]),
        "zomath_lu_solve": (I, [dp, dp, ip, I, I]),
        "zomath_basic_summary_stats": (I, [I, dp, ip] + [dp] * 11 + [ip, dp, dp, I, dp]),
        "zomath_integrate": (I, [I, dp, dp, dp, dp]),
        "zomath_interpolate": (I, [dp, dp, U, dp, dp, U, I, D, dp, dp, U, I]),
        "zomath_percentiles": (I, [dp, I, dp, I, dp, I, dp]),
        "zomath_multiple_linear_regression": (I, [dp, U, U, dp, dp, U, C.c_void_p, C.c_void_p, U,
                                                  C.c_void_p, C.c_void_p, dp, dp, U, U, dp, dp]),
        "zomath_one_sample_t_test": (I, [dp, I, C.c_void_p, C.c_void_p]),
        "zomath_two_sample_t_test": (I, [dp, I, dp, I, C.c_void_p, C.c_void_p, C.c_void_p]),
        "zomath_row_ttest2": (I, [I, I, dp, dp, D, I, dp, dp, dp]),
        "zomath_polynomial_fit": (I, [I, dp, dp, dp, I, C.c_void_p, C.c_void_p, I, C.c_void_p,
                                      C.c_void_p, dp, dp, dp, I]),
        "zomath_anova_equal_variance_test": (I, [dp, I, I, ip, C.c_void_p, I, C.c_void_p, I]),
        "zomath_adjave_smooth": (I, [dp, dp, U, I, I, C.c_bool]),
        "zomath_savitsky_golay": (I, [dp, dp, U, I, I, I, I, U]),
        "zomath_median_filter": (I, [I, dp, dp, I, D, U, C.c_bool]),
        "zomsp_fft_filter_smoothing": (I, [U, dp, dp, D]),
        "zomath_find_peaks_by_local_maximum": (I, [ip, dp, dp, dp, dp, ip, I, I]),
        "zomath_find_peaks_1st_derivative": (I, [ip, dp, dp, dp, dp, ip, I, C.c_bool, I, I]),
    }
    for name, (res, args) in sig.items():
        f = getattr(lib, name)
        f.restype, f.argtypes = res, args


def blas_report():
    """The BLAS and LAPACK files mapped into this process, and what OpenBLAS says of itself."""
    lines, seen = [], set()
    with open("/proc/self/maps") as maps:
        for line in maps:
            path = line.split()[-1]
            base = os.path.basename(path)
            if path.startswith("/") and any(k in base for k in ("blas", "lapack")) and path not in seen:
                seen.add(path)
                lines.append("  mapped: %s -> %s" % (path, os.path.realpath(path)))
    for path in sorted(seen):
        if "openblas" not in os.path.realpath(path):
            continue
        try:
            ob = C.CDLL(path)
            ob.openblas_get_corename.restype = C.c_char_p
            ob.openblas_get_config.restype = C.c_char_p
            lines.append("  %s: core %s, threads %d, %s" % (
                os.path.basename(os.path.realpath(path)), ob.openblas_get_corename().decode(),
                ob.openblas_get_num_threads(), ob.openblas_get_config().decode()))
        except (OSError, AttributeError):
            pass
    env = {k: os.environ[k] for k in os.environ if k.startswith("OPENBLAS") or k.startswith("OMP_")}
    lines.append("  environment: %s" % (env or "no OPENBLAS_* or OMP_* variables"))
    return "\n".join(lines)


def fmt_time(t):
    return "%.3g ms" % (t * 1e3) if t >= 1e-4 else "%.3g us" % (t * 1e6)


def main():
    ap = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    ap.add_argument("--lib", default=os.path.join(HERE, "..", "build", "libzomath.so"))
    ap.add_argument("--repeat", type=int, default=7, help="timed calls of each side (best kept)")
    ap.add_argument("--only", default="", help="run the rows whose export name contains this")
    args = ap.parse_args()

    lib = C.CDLL(os.path.abspath(args.lib))
    declare(lib)
    np.linalg.svd(np.eye(4))  # map NumPy's LAPACK before the report

    print("NumPy %s, library %s" % (np.__version__, os.path.realpath(args.lib)))
    print(blas_report())
    print()
    head = "| call | size | library | NumPy | counterpart | ratio | agreement |"
    print(head)
    print("|---|---|---|---|---|---|---|")
    for make, n in ROWS:
        rng = np.random.default_rng(20261122)
        row = make(lib, n, rng)
        if args.only and args.only not in row.name:
            continue
        t_lib, r_lib, t_ref, r_ref = best_times(row, args.repeat)
        print("| `%s` | %s | %s | %s | `%s` | %.2fx | %s |" % (
            row.name, row.size, fmt_time(t_lib), fmt_time(t_ref), row.ref_name, t_lib / t_ref,
            row.agree(r_lib, r_ref)))
        sys.stdout.flush()


if __name__ == "__main__":
    main()
