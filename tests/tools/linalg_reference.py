#!/usr/bin/python3
"""Singular values of ill-conditioned test matrices at 50 significant digits, with mpmath.

Each matrix is built from the double values the tests use (Hilbert entries are 1/(i+j+1)
rounded to double first; Vandermonde entries are integers, exact), so the reference is the
exact singular values of the very matrix the tests decompose.

Run: /usr/bin/python3 tests/tools/linalg_reference.py > tests/data/linalg_singular_values.csv
"""
import mpmath

mpmath.mp.dps = 60


def hilbert(n):
    return [[mpmath.mpf(1.0 / (i + j + 1)) for j in range(n)] for i in range(n)]


def vandermonde(n):
    return [[mpmath.mpf(float((i + 1) ** j)) for j in range(n)] for i in range(n)]


def singular_values(rows):
    a = mpmath.matrix(rows)
    s = mpmath.svd_r(a, compute_uv=False)
    return sorted((s[k] for k in range(len(rows))), reverse=True)


print("# Singular values (descending) of matrices built from double entries;")
print("# mpmath %s svd_r at %d digits, printed to 20 significant digits." % (mpmath.__version__, mpmath.mp.dps))
print("matrix,n,index,value")
for name, make, n in (("hilbert", hilbert, 8), ("hilbert", hilbert, 12), ("vandermonde", vandermonde, 8)):
    for k, s in enumerate(singular_values(make(n))):
        print("%s,%d,%d,%s" % (name, n, k, mpmath.nstr(s, 20, min_fixed=1, max_fixed=0)))
