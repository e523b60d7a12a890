// Arithmetic on d_complex for the containers (internal; the public type stays a plain record).
#pragma once

#include "zomath/core.h"

inline d_complex operator+(d_complex a, d_complex b) { return {a.re + b.re, a.im + b.im}; }
inline d_complex operator-(d_complex a, d_complex b) { return {a.re - b.re, a.im - b.im}; }
inline d_complex operator*(d_complex a, d_complex b) {
  return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
}
inline d_complex operator*(d_complex a, double s) { return {a.re * s, a.im * s}; }
inline bool operator==(d_complex a, d_complex b) { return a.re == b.re && a.im == b.im; }
inline bool operator!=(d_complex a, d_complex b) { return !(a == b); }
