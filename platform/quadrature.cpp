#include "platform/quadrature.h"

#include <gsl/gsl_errno.h>
#include <gsl/gsl_integration.h>

#include <cmath>

namespace zomath::platform {

namespace {

struct Trampoline {
  Integrand f;
  void* data;
};

double call(double x, void* p) {
  const auto* t = static_cast<const Trampoline*>(p);
  return t->f(x, t->data);
}

// Switches GSL's abort-on-error handler off for the lifetime of the guard.
class QuietGsl {
public:
  QuietGsl() : previous_(gsl_set_error_handler_off()) {}
  ~QuietGsl() { gsl_set_error_handler(previous_); }
  QuietGsl(const QuietGsl&) = delete;
  QuietGsl& operator=(const QuietGsl&) = delete;

private:
  gsl_error_handler_t* previous_;
};

class Workspace {
public:
  explicit Workspace(int n) : w_(gsl_integration_workspace_alloc(static_cast<size_t>(n))) {}
  ~Workspace() {
    if (w_) gsl_integration_workspace_free(w_);
  }
  Workspace(const Workspace&) = delete;
  Workspace& operator=(const Workspace&) = delete;
  gsl_integration_workspace* get() const { return w_; }

private:
  gsl_integration_workspace* w_;
};

int translate(int status, NagError& fail) {
  switch (status) {
    case GSL_SUCCESS:
      return 0;
    case GSL_EMAXITER:
      return fail.fail(kQuadTooManySubintervals, "maximum number of sub-intervals reached");
    case GSL_EROUND:
      return fail.fail(kQuadRoundoff, "roundoff error prevents the tolerance from being met");
    case GSL_ESING:
      return fail.fail(kQuadBadIntegrand, "bad integrand behaviour on a sub-interval");
    case GSL_EDIVERGE:
      return fail.fail(kQuadNoConvergence, "the integral diverges or converges too slowly");
    case GSL_ENOMEM:
      return fail.fail(kQuadNoMemory, "no memory for the sub-intervals");
    default:
      return fail.fail(kQuadBadArgument, "the integration could not start", status);
  }
}

bool bad_options(const QuadratureOptions& opt) {
  return !(opt.absTolerance >= 0) || !(opt.relTolerance >= 0) || opt.maxSubintervals < 1 ||
         (opt.absTolerance == 0 && opt.relTolerance == 0);
}

}  // namespace

int integrate_finite(Integrand f, void* data, double a, double b, const QuadratureOptions& opt,
                     double* pResult, double* pAbsError, NagError& fail) {
  fail.reset();
  if (!f || !pResult || !std::isfinite(a) || !std::isfinite(b) || bad_options(opt))
    return fail.fail(kQuadBadArgument, "bad bound, tolerance or integrand");
  Workspace w(opt.maxSubintervals);
  if (!w.get()) return fail.fail(kQuadNoMemory, "no memory for the sub-intervals");
  Trampoline t{f, data};
  gsl_function g{&call, &t};
  double result = 0, abserr = 0;
  int status;
  {
    QuietGsl quiet;
    status = gsl_integration_qags(&g, a, b, opt.absTolerance, opt.relTolerance,
                                  static_cast<size_t>(opt.maxSubintervals), w.get(), &result,
                                  &abserr);
  }
  if (pAbsError) *pAbsError = abserr;
  if (status == GSL_SUCCESS && !std::isfinite(result))
    return fail.fail(kQuadNoConvergence, "the integrand is not finite");
  if (translate(status, fail) != 0) return fail.code;
  *pResult = result;
  return 0;
}

int integrate_infinite(Integrand f, void* data, double bound, InfiniteRange range,
                       const QuadratureOptions& opt, double* pResult, double* pAbsError,
                       NagError& fail) {
  fail.reset();
  if (!f || !pResult || bad_options(opt) ||
      (range != InfiniteRange::kBoth && !std::isfinite(bound)))
    return fail.fail(kQuadBadArgument, "bad bound, tolerance or integrand");
  Workspace w(opt.maxSubintervals);
  if (!w.get()) return fail.fail(kQuadNoMemory, "no memory for the sub-intervals");
  Trampoline t{f, data};
  gsl_function g{&call, &t};
  const auto limit = static_cast<size_t>(opt.maxSubintervals);
  double result = 0, abserr = 0;
  int status;
  {
    QuietGsl quiet;
    switch (range) {
      case InfiniteRange::kUpper:
        status = gsl_integration_qagiu(&g, bound, opt.absTolerance, opt.relTolerance, limit,
                                       w.get(), &result, &abserr);
        break;
      case InfiniteRange::kLower:
        status = gsl_integration_qagil(&g, bound, opt.absTolerance, opt.relTolerance, limit,
                                       w.get(), &result, &abserr);
        break;
      default:
        status = gsl_integration_qagi(&g, opt.absTolerance, opt.relTolerance, limit, w.get(),
                                      &result, &abserr);
        break;
    }
  }
  if (pAbsError) *pAbsError = abserr;
  if (status == GSL_SUCCESS && !std::isfinite(result))
    return fail.fail(kQuadNoConvergence, "the integrand is not finite");
  if (translate(status, fail) != 0) return fail.code;
  *pResult = result;
  return 0;
}

}  // namespace zomath::platform
