// Iterative refinement of polynomial least-squares coefficients with residuals in doubled
// precision, so that an ill-conditioned design (high powers, a narrow range far from zero)
// still gives the coefficients to nearly the last digit.
#pragma once

namespace zomath::regression {

// n points (x, y) with weights w (null: ones) and the polynomial c0 + c1 x + ... of the order;
// with heldIntercept c0 is given and only c1.. are fitted.
struct PolynomialData {
  const double* x = nullptr;
  const double* y = nullptr;
  const double* w = nullptr;
  int n = 0;
  int order = 0;
  bool heldIntercept = false;
};

// What the refined coefficients leave: the weighted residual sum of squares, and the Euclidean
// norm of the plain residuals y - p(x) over all n points (zero weights included).
struct RefinedFit {
  double rss = 0;
  double residualNorm = 0;
};

// Improves coef (order + 1 values, a least-squares solution to working precision, such as a
// QR solver gives) towards the exact solution. Refinement of the augmented system
// [W^-1 V; V' 0] [s; c] = [y; 0] (Bjorck, BIT 7, 1967) on a Householder QR of the column-scaled
// weighted design, with the residuals of both blocks formed by error-free transformations
// (compensated Horner and dot products: Ogita, Rump and Oishi, SIAM J. Sci. Comput. 26, 2005;
// Graillat, Langlois and Louvet, 2009), so that the limiting accuracy is that of the data rather
// than of the square of the design's condition number. It converges while the condition number
// of the column-scaled design times the unit roundoff stays well below 1. Returns false, coef
// unchanged, for a design that is rank deficient or not finite, or when the iteration does not
// contract.
bool refine_polynomial(const PolynomialData& d, double* coef, RefinedFit& out);

}  // namespace zomath::regression
