#!/usr/bin/python3
"""Singular values of ill-conditioned test matrices at 60 digits, with mpmath.

Each matrix is built from the double values the tests use (Hilbert entries are 1/(i+j+1)
rounded to double first; Vandermonde entries are integers, exact), so the reference is the
exact singular values of the very matrix the tests decompose. Columns: matrix (1 Hilbert,
2 Vandermonde), n, index (descending order), value, scale. The scale is the largest singular
value: a backward-stable SVD has every value within a few eps of it.

Run: /usr/bin/python3 tests/tools/linalg_reference.py > tests/data/linalg_singular_values.csv
"""
import mpmath

mpmath.mp.dps = 60


def hilbert(n):
    return [[mpmath.mpf(1.0 / (i + j + 1)) for j in range(n)] for i in range(n)]


def vandermonde(n):
    return [[mpmath.mpf(float((i + 1) ** j)) for j in range(n)] for i in range(n)]


def singular_values(rows):
    s = mpmath.svd_r(mpmath.matrix(rows), compute_uv=False)
    return sorted((s[k] for k in range(len(rows))), reverse=True)


print("# Singular values (descending) of matrices built from double entries;")
print("# mpmath %s svd_r at %d digits, printed to 20 significant digits." % (mpmath.__version__, mpmath.mp.dps))
print("matrix,n,index,value,scale")
for kind, make, n in ((1, hilbert, 8), (1, hilbert, 12), (2, vandermonde, 8)):
    values = singular_values(make(n))
    for k, s in enumerate(values):
        print("%d,%d,%d,%s,%s" % (kind, n, k, mpmath.nstr(s, 20, min_fixed=1, max_fixed=0),
                                  mpmath.nstr(values[0], 20, min_fixed=1, max_fixed=0)))
