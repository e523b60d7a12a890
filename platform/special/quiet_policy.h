// The Boost.Math policy of the platform routines: errors come back as values (NaN, infinity, 0)
// that the routine turns into its own failure code; nothing throws and errno is left alone.
// Routines test their own domains before calling (Boost asserts on a NaN argument in builds with
// assertions). Double arguments are still evaluated in long double internally (Boost's
// default), which keeps phases and exponents accurate.
#pragma once

#include <boost/math/policies/policy.hpp>

namespace zomath::platform {

using QuietPolicy = boost::math::policies::policy<
    boost::math::policies::domain_error<boost::math::policies::ignore_error>,
    boost::math::policies::pole_error<boost::math::policies::ignore_error>,
    boost::math::policies::overflow_error<boost::math::policies::ignore_error>,
    boost::math::policies::underflow_error<boost::math::policies::ignore_error>,
    boost::math::policies::denorm_error<boost::math::policies::ignore_error>,
    boost::math::policies::evaluation_error<boost::math::policies::ignore_error>,
    boost::math::policies::rounding_error<boost::math::policies::ignore_error>,
    boost::math::policies::indeterminate_result_error<boost::math::policies::ignore_error>>;

}  // namespace zomath::platform
