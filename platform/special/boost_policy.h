// The Boost.Math policy of the special-function routines: no exceptions and no errno. The
// routines test their own domains before calling, and a result that overflows comes back as
// infinity, which they turn into a failure code. Double arguments are still evaluated in long
// double internally (Boost's default), which keeps phases and exponents accurate.
#pragma once

#include <boost/math/policies/policy.hpp>

namespace zomath::platform {

using QuietPolicy = boost::math::policies::policy<
    boost::math::policies::domain_error<boost::math::policies::ignore_error>,
    boost::math::policies::pole_error<boost::math::policies::ignore_error>,
    boost::math::policies::overflow_error<boost::math::policies::ignore_error>,
    boost::math::policies::underflow_error<boost::math::policies::ignore_error>,
    boost::math::policies::evaluation_error<boost::math::policies::ignore_error>,
    boost::math::policies::rounding_error<boost::math::policies::ignore_error>>;

}  // namespace zomath::platform
