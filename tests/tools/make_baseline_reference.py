#!/usr/bin/python3
"""Reference table of the baseline tests: straight lines fitted region by region.

Writes tests/data/baseline/regions.csv. The curve is three straight stretches with noise on
unevenly spaced x, offset to 1e3 so that a fit on uncentred sums would lose digits. Each
region's least-squares line, the standard errors of intercept and slope, R = |Pearson r| and the
adjusted R^2 are computed in mpmath at 40 digits from the centred sums, and checked against
scipy.stats.linregress.

Rows: kind, a, b, value, scale.
  kind 0: a point: a = index, b = x, value = y.
  kind 1: a region: a = region number, b = quantity (0 start, 1 end, 2 intercept, 3 slope,
          4 intercept error, 5 slope error, 6 R, 7 adjusted R^2), value.
Run: /usr/bin/python3 tests/tools/make_baseline_reference.py
"""
import os

import mpmath as mp
import numpy as np
from scipy import stats

mp.mp.dps = 40
rng = np.random.default_rng(20)
n = 200
i = np.arange(n)
x = np.round(1000.0 + i + 0.3 * np.sin(i), 6)
y = np.where(i < 50, 3.0 + 0.02 * (x - 1000),
             np.where(i < 120, 4.0 - 0.015 * (x - 1050), 2.95 + 0.004 * (x - 1120)))
y = np.round(1000.0 + y + rng.normal(0, 0.05, n), 6)
regions = [(0, 49), (50, 119), (120, 199), (5, 7), (30, 160)]

rows = []
for k in range(n):
    rows.append((0, k, repr(float(x[k])), repr(float(y[k])), 1))
for r, (a, b) in enumerate(regions):
    xs = [mp.mpf(repr(float(v))) for v in x[a:b + 1]]
    ys = [mp.mpf(repr(float(v))) for v in y[a:b + 1]]
    m = len(xs)
    mx, my = mp.fsum(xs) / m, mp.fsum(ys) / m
    sxx = mp.fsum((u - mx) ** 2 for u in xs)
    syy = mp.fsum((v - my) ** 2 for v in ys)
    sxy = mp.fsum((u - mx) * (v - my) for u, v in zip(xs, ys))
    slope = sxy / sxx
    icpt = my - slope * mx
    rss = mp.fsum((v - icpt - slope * u) ** 2 for u, v in zip(xs, ys))
    s2 = rss / (m - 2)
    se_slope = mp.sqrt(s2 / sxx)
    se_icpt = mp.sqrt(s2 * (1 / mp.mpf(m) + mx ** 2 / sxx))
    r2 = 1 - rss / syy
    adj = 1 - (1 - r2) * (m - 1) / (m - 2)
    lr = stats.linregress(x[a:b + 1], y[a:b + 1])
    assert abs(float(slope) - lr.slope) <= 1e-9 * abs(lr.slope)
    assert abs(float(se_icpt) - lr.intercept_stderr) <= 1e-6 * lr.intercept_stderr
    assert abs(float(mp.sqrt(r2)) - abs(lr.rvalue)) <= 1e-9
    for q, v in enumerate([a, b, icpt, slope, se_icpt, se_slope, mp.sqrt(r2), adj]):
        v = mp.mpf(v)
        rows.append((1, r, q, mp.nstr(v, 20), mp.nstr(max(abs(v), mp.mpf(1e-300)), 5)))

out = os.path.join(os.path.dirname(__file__), '..', 'data', 'baseline', 'regions.csv')
with open(out, 'w') as f:
    f.write('# tests/tools/make_baseline_reference.py: least-squares lines by region, mpmath at 40\n')
    f.write('# digits from centred sums (checked against scipy.stats.linregress); values to 20 digits\n')
    f.write('kind,a,b,value,scale\n')
    for row in rows:
        f.write(','.join(str(c) for c in row) + '\n')
