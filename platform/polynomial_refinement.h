// Iterative refinement of polynomial least-squares coefficients with residuals in doubled
// precision, so that an ill-conditioned design (high powers, a narrow range far from zero)
// still gives the coefficients to nearly the last digit the data carry.
#pragma once

#include "platform/error_record.h"

namespace zomath::platform {

// The design is rank deficient or not finite to working precision: nothing to refine with.
constexpr int kRefinementSingular = 481;
// The corrections stopped shrinking above 1e-12 of the coefficients (the condition number of
// the column-scaled design times the unit roundoff is not well below 1).
constexpr int kRefinementNoContraction = 482;
// A size below 1, fewer points of positive weight than coefficients, or a null array.
constexpr int kRefinementBadArgument = 483;

// n points (x, y) with weights w (null: ones; zero weights take no part) and the polynomial
// c0 + c1 x + ... of the order; with heldIntercept c0 is given and only c1.. are fitted.
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

// Improves coef (order + 1 values, a least-squares solution to working precision such as a QR
// solver gives) towards the exact solution, by refinement of the augmented system
// [W^-1 V; V' 0] [s; c] = [y; 0] (Bjorck, BIT 7, 1967) on a Householder QR of the column-scaled
// weighted design, with the residuals of both blocks formed by error-free transformations
// (compensated Horner and dot products: Graillat, Langlois and Louvet, 2009; Ogita, Rump and
// Oishi, SIAM J. Sci. Comput. 26, 2005). The limiting accuracy is then that of the data rather
// than of the square of the design's condition number. Returns 0, or a code above with coef
// unchanged.
int refine_polynomial(const PolynomialData& d, double* coef, RefinedFit& out, NagError& fail);

}  // namespace zomath::platform
