#!/usr/bin/python3
"""Writes examples/data/peaks.csv, the sample spectrum of the demo's peak analysis.

Four bands on a sloped baseline, read every 2 cm-1 from 200 to 1800 cm-1 with white noise of
SD 0.004 (fixed seed, so the file is the same on every run). The true bands, for comparison with
what the demo finds: Gaussian at 520 (height 0.60, SD 14), Lorentzian at 860 (height 0.35,
HWHM 10), Gaussian at 1180 (height 0.25, SD 25), Lorentzian at 1450 (height 0.45, HWHM 7).
Baseline 0.10 + 4e-5 (x - 200).
Run: /usr/bin/python3 examples/make_peak_spectrum.py
"""
import os

import numpy as np

BANDS = [('gauss', 520, 0.60, 14), ('lorentz', 860, 0.35, 10), ('gauss', 1180, 0.25, 25),
         ('lorentz', 1450, 0.45, 7)]

x = np.arange(200.0, 1800.0 + 1, 2.0)
y = 0.10 + 4e-5 * (x - 200)
for kind, c, h, w in BANDS:
    u = (x - c) / w
    y += h * np.exp(-0.5 * u * u) if kind == 'gauss' else h / (1 + u * u)
y += np.random.default_rng(8).normal(0, 0.004, x.size)

out = os.path.join(os.path.dirname(os.path.abspath(__file__)), 'data', 'peaks.csv')
with open(out, 'w') as f:
    f.write('# Raman shift (cm-1),intensity: four bands on a sloped baseline with noise of SD\n')
    f.write('# 0.004, written by examples/make_peak_spectrum.py. True bands: Gaussian 520\n')
    f.write('# (0.60, SD 14), Lorentzian 860 (0.35, HWHM 10), Gaussian 1180 (0.25, SD 25),\n')
    f.write('# Lorentzian 1450 (0.45, HWHM 7); baseline 0.10 + 4e-5 (x - 200)\n')
    for a, b in zip(x, y):
        f.write(f'{a:.1f},{b:.5f}\n')
